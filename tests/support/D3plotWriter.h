// D3plotWriter.h: small d3plot files for the tests, word by word after the database manual's description.
//
// A model is its first geometry with labels; a state is where the nodes are and what each shell holds. Both give bytes
// that may be put into one file or many.

#ifndef D3PLOTWRITER_H
#define D3PLOTWRITER_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace d3plot
{
using Tensor = std::array<double, 6>; // xx, yy, zz, xy, yz, zx
using Point = std::array<double, 3>;

struct Shell
{
    std::array<int, 4> node{}; // from 1; a triangle repeats its third
    int material = 1;          // from 1
};

struct ShellValues
{
    std::vector<Tensor> stress; // per point through the thickness: middle, inner, outer, further ones
    Tensor inner{}, outer{};    // strains
    double thickness = 0.0;
};

struct State
{
    double time = 0.0;
    std::vector<Point> nodes;
    std::vector<ShellValues> shells; // all of the model; those of rigid materials are passed over
    std::vector<double> alive;       // the table of deletions, as the options say
};

struct Options
{
    int wordBytes = 4;
    bool bigEndian = false;
    int layers = 3;             // MAXINT without its marks
    int extraOfPoint = 0;       // NEIPS
    int globals = 6;            // NGLBV
    int it = 0;                 // of temperatures and added mass
    bool hasCoordinates = true; // IU
    bool hasVelocities = false;
    bool hasAccelerations = false;
    bool hasStrain = true;
    bool hasStress = true;
    bool hasPlastic = true;
    bool hasResultants = true;
    bool hasThickness = true;
    int deletion = 0; // MDLOPT: 1 by node, 2 by element
    bool hasTitles = false;
    int extraWords = 0;        // EXTRA, behind the control words
    int solidTemperatures = 0; // NT3D, the second of these
};

struct Model
{
    Options options;
    std::vector<Point> nodes;
    std::vector<Shell> shells;
    std::vector<int> nodeLabels;   // empty: no labels at all
    std::vector<int> shellLabels;  // with nodeLabels
    std::vector<int> parts;        // labels of the materials 1, 2, ...; empty: none
    std::vector<int> orderedParts; // empty: parts, ascending
    std::vector<int> types;        // of the materials; empty: none given
    int numSolids = 0;             // of nodes 1 .. 8 and material 1
    int numBeams = 0;
    int numThickShells = 0;
};

constexpr int kSolidWords = 7, kBeamWords = 6, kThickShellWords = 21;
constexpr int kRigid = 20;

class Writer
{
public:
    explicit Writer(Model const & model) : m(model) {}

    // NDIM 5 says that the materials' types follow; shells of type 20 have no values then.
    std::string Geometry() const
    {
        std::string out;
        Control(out);
        if (!m.types.empty())
        {
            Integer(out, NumRigid());
            Integer(out, static_cast<int>(m.types.size()));
            for (int const type : m.types)
                Integer(out, type);
        }
        for (Point const & p : m.nodes)
            for (double const x : p)
                Real(out, x);
        Elements(out);
        Labels(out);
        if (m.options.hasTitles)
            Titles(out);
        return out;
    }

    std::string Of(State const & state) const
    {
        std::string out;
        Real(out, state.time);
        for (int i = 0; i < m.options.globals; ++i)
            Real(out, 1000.0 + i);
        Nodes(out, state);
        Fill(out, m.numSolids * m.options.solidTemperatures, 290.0);
        Fill(out, m.numSolids * kSolidWords + m.numThickShells * kThickShellWords + m.numBeams * kBeamWords, 7.0e6);
        for (std::size_t i = 0; i < m.shells.size(); ++i)
            if (!IsRigid(m.shells[i]))
                Values(out, state.shells[i]);
        for (double const a : state.alive)
            Real(out, a);
        return out;
    }

    std::string EndMark() const
    {
        std::string out;
        Real(out, -999999.0);
        return out;
    }

    std::int64_t NumRigid() const
    {
        return std::count_if(m.shells.begin(), m.shells.end(), [this](Shell const & s) { return IsRigid(s); });
    }

    int ShellWords() const
    {
        Options const & o = m.options;
        return o.layers * (6 * o.hasStress + 1 * o.hasPlastic + o.extraOfPoint) + 8 * o.hasResultants +
               4 * o.hasThickness + 12 * o.hasStrain;
    }

    void Integer(std::string & out, std::int64_t value) const
    {
        if (m.options.wordBytes == 4)
            Bytes(out, static_cast<std::int32_t>(value));
        else
            Bytes(out, value);
    }

    void Real(std::string & out, double value) const
    {
        if (m.options.wordBytes == 4)
            Bytes(out, static_cast<float>(value));
        else
            Bytes(out, value);
    }

private:
    template <class Value>
    void Bytes(std::string & out, Value value) const
    {
        char bytes[sizeof(Value)];
        std::memcpy(bytes, &value, sizeof(Value));
        if (m.options.bigEndian)
            std::reverse(std::begin(bytes), std::end(bytes));
        out.append(bytes, sizeof(Value));
    }

    void Fill(std::string & out, int count, double value) const
    {
        for (int i = 0; i < count; ++i)
            Real(out, value + i);
    }

    bool IsRigid(Shell const & shell) const
    {
        return !m.types.empty() && m.types[static_cast<std::size_t>(shell.material - 1)] == kRigid;
    }

    int NumLabels() const
    {
        if (m.nodeLabels.empty())
            return 0;
        int const elements = static_cast<int>(m.shells.size()) + m.numSolids + m.numBeams + m.numThickShells;
        int const parts = static_cast<int>(m.parts.size());
        return (parts > 0 ? 16 + 3 * parts : 10) + static_cast<int>(m.nodes.size()) + elements;
    }

    // 64 words; those that are not named are 0.
    void Control(std::string & out) const
    {
        Options const & o = m.options;
        std::array<std::int64_t, 64> words{};
        words[11] = 1;                                         // a d3plot
        words[15] = m.types.empty() ? 4 : 5;                   // NDIM
        words[16] = static_cast<std::int64_t>(m.nodes.size()); // NUMNP
        words[17] = 6;                                         // ICODE
        words[18] = o.globals;
        words[19] = o.it;
        words[20] = o.hasCoordinates;
        words[21] = o.hasVelocities;
        words[22] = o.hasAccelerations;
        words[23] = m.numSolids;
        words[27] = kSolidWords;
        words[28] = m.numBeams;
        words[30] = kBeamWords;
        words[31] = static_cast<std::int64_t>(m.shells.size());
        words[33] = ShellWords();
        words[35] = o.extraOfPoint;
        words[36] = o.deletion == 0 ? o.layers : o.deletion == 1 ? -o.layers : -(10000 + o.layers); // MAXINT
        words[39] = NumLabels();
        words[40] = m.numThickShells;
        words[42] = kThickShellWords;
        words[43] = o.hasStress ? 1000 : 0;
        words[44] = o.hasPlastic ? 1000 : 0;
        words[45] = o.hasResultants ? 1000 : 0;
        words[46] = o.hasThickness ? 1000 : 0;
        words[51] = static_cast<std::int64_t>(std::max(m.parts.size(), m.types.size())); // NMMAT
        words[57] = o.extraWords;
        for (std::int64_t const word : words)
            Integer(out, word);
        for (int i = 0; i < o.extraWords; ++i)
            Integer(out, i == 1 ? o.solidTemperatures : 0);
    }

    void Elements(std::string & out) const
    {
        for (int i = 0; i < m.numSolids + m.numThickShells; ++i)
            for (int k = 0; k < 9; ++k)
                Integer(out, k < 8 ? k + 1 : 1);
        for (int i = 0; i < m.numBeams; ++i)
            for (int k = 0; k < 6; ++k)
                Integer(out, k < 5 ? k % 3 + 1 : 1);
        for (Shell const & shell : m.shells)
        {
            for (int const node : shell.node)
                Integer(out, node);
            Integer(out, shell.material);
        }
    }

    // NSORT (negative with parts), nine or fifteen further words, then labels: nodes, solids, beams, shells, thick
    // shells; the parts ascending, as they came, and where each went.
    void Labels(std::string & out) const
    {
        if (m.nodeLabels.empty())
            return;
        bool const hasParts = !m.parts.empty();
        Integer(out, hasParts ? -static_cast<int>(m.nodes.size()) : static_cast<int>(m.nodes.size()));
        for (int i = 1; i < (hasParts ? 16 : 10); ++i)
            Integer(out, i == 15 ? static_cast<int>(m.parts.size()) : 0);
        for (int const label : m.nodeLabels)
            Integer(out, label);
        for (int i = 0; i < m.numSolids + m.numBeams; ++i)
            Integer(out, 900000 + i);
        for (int const label : m.shellLabels)
            Integer(out, label);
        for (int i = 0; i < m.numThickShells; ++i)
            Integer(out, 950000 + i);
        if (!hasParts)
            return;
        std::vector<int> ordered = m.orderedParts.empty() ? m.parts : m.orderedParts;
        if (m.orderedParts.empty())
            std::sort(ordered.begin(), ordered.end());
        for (auto const & list : {ordered, m.parts, ordered})
            for (int const part : list)
                Integer(out, part);
    }

    // The mark, the titles of the parts, the mark again: as the solver closes a first file.
    void Titles(std::string & out) const
    {
        out += EndMark();
        Integer(out, 90001);
        Integer(out, static_cast<int>(m.parts.size()));
        for (int const part : m.parts)
        {
            Integer(out, part);
            out.append(72, ' '); // bytes, of narrow and of wide words
        }
        out += EndMark();
    }

    void Nodes(std::string & out, State const & state) const
    {
        Options const & o = m.options;
        int const nodes = static_cast<int>(m.nodes.size());
        if (o.hasCoordinates)
            for (Point const & p : state.nodes)
                for (double const x : p)
                    Real(out, x);
        constexpr int kTemperatures[] = {0, 1, 4, 6};
        Fill(out, nodes * (kTemperatures[o.it % 10] + o.it / 10), 300.0);
        if (o.hasVelocities)
            Fill(out, 3 * nodes, -5.0);
        if (o.hasAccelerations)
            Fill(out, 3 * nodes, 9.0e3);
    }

    // The points, eight resultants, thickness and two values, the strains, the energy.
    void Values(std::string & out, ShellValues const & values) const
    {
        Options const & o = m.options;
        for (int layer = 0; layer < o.layers; ++layer)
        {
            for (int k = 0; k < 6 && o.hasStress; ++k)
                Real(out, values.stress[static_cast<std::size_t>(layer)][static_cast<std::size_t>(k)]);
            Fill(out, 1 * o.hasPlastic + o.extraOfPoint, 0.25);
        }
        Fill(out, 8 * o.hasResultants, 40.0);
        if (o.hasThickness)
        {
            Real(out, values.thickness);
            Fill(out, 2, 77.0);
        }
        for (Tensor const * strain : {&values.inner, &values.outer})
            for (double const e : *strain)
                if (o.hasStrain)
                    Real(out, e);
        if (o.hasThickness)
            Real(out, 1.0e-3);
    }

    Model const & m;
};
} // namespace d3plot

#endif
