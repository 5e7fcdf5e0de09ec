// SolverText.cpp: from the solved records to the text of the file route.

#include "SolverText.h"

#include "DeckRecords.h"

#include "VOZFile.h"
#include "VOZFormingResult.h"
#include "VOZMesh.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace voz::deck
{

namespace
{
constexpr double kMetresPerInch = 0.0254;
constexpr double kPaPerPsi = 6895.0;       // of the stress column of triangles
constexpr double kNewtonPerLbf = 4.448222; // of the punch force
constexpr double kPi = 3.14159265358979323846;
constexpr int kDigits = 17;

// clang-format off
constexpr char kHead[] =
    "* one-step result in the stamping frame; lengths in inches\n"
    "* the blank is flat: without a binder both positions are the same\n"
    "* node, position on the binder (x y z), position in the flat blank (x y z)\n";
constexpr char kShapeHead[] =
    "* shape after springback in the stamping frame; lengths in inches\n"
    "* the stresses of a one-step solve of the same deck, let go without tools\n"
    "* a part that no plane of symmetry holds is pinned at three nodes\n"
    "*\n"
    "*\n"
    "*\n"
    "*\n"
    "node, position after springback (x y z)\n"
    "\n";
constexpr char kShapeEnd[] = "* end of the nodes\n";
constexpr char kElements[] =
    "* element, thickness, minor %, major %, stress, equivalent strain %, angle rad; a line per corner of a quadrilateral\n";
constexpr char kForce[] =
    "* end of the elements\n"
    "* punch force in pounds-force\n"
    "punch force";
// clang-format on

// The strains of one integration point, as the file route takes them.
struct PointRow
{
    double thickness;  // m
    double minor;      // engineering percent
    double major;      // engineering percent
    double stress;     // Pa
    double equivalent; // engineering percent
    double angle;      // of the major strain from the first side, [0, pi)
};

double percent(double logStrain)
{
    return 100.0 * std::expm1(logStrain);
}

// The equivalent strain that the library reports: the work-conjugate one of normal anisotropy, times
// sqrt(2 (2 + r) / (3 (1 + r))).
double equivalentStrain(double h1, double h2, double r)
{
    double const k2 = (1.0 + r) * (1.0 + r) / (1.0 + 2.0 * r);
    double const rho = r / (1.0 + r);
    double const conjugate = std::sqrt(std::max(0.0, k2 * (h1 * h1 + h2 * h2 + 2.0 * rho * h1 * h2)));
    return conjugate * std::sqrt(2.0 * (2.0 + r) / (3.0 * (1.0 + r)));
}

// strain: e11, e22 and the engineering shear, log strains of the mid layer.
PointRow pointRow(double const * strain, double stress, MaterialRecord const & material)
{
    double const centre = 0.5 * (strain[0] + strain[1]);
    double const half = 0.5 * (strain[0] - strain[1]);
    double const radius = std::hypot(half, 0.5 * strain[2]);
    double const h1 = centre + radius;
    double const h2 = centre - radius;
    double angle = 0.5 * std::atan2(0.5 * strain[2], half);
    if (angle < 0.0)
        angle += kPi;
    if (angle >= kPi) // an angle a hair below 0
        angle = 0.0;
    return {material.thickness * kMetresPerInch * std::exp(-(h1 + h2)), percent(h2), percent(h1), stress,
            percent(equivalentStrain(h1, h2, material.rValue)),         angle};
}

class Text
{
public:
    void Literal(std::string_view i_text) { mText += i_text; }
    void Int(int i_value) { mText += std::to_string(i_value); }
    void Real(double i_value, char const * i_what, int i_number)
    {
        if (!std::isfinite(i_value))
            throw ResultError("the solver gave no number for " + std::string(i_what) + " " + std::to_string(i_number));
        std::array<char, 64> buffer;
        auto const end =
            std::to_chars(buffer.data(), buffer.data() + buffer.size(), i_value, std::chars_format::general, kDigits)
                .ptr;
        mText += ' ';
        mText.append(buffer.data(), end);
    }
    void End() { mText += '\n'; }
    std::string Taken() { return std::move(mText); }

private:
    std::string mText;
};

void writeNodes(VOZMesh_s const & blank, Text & io_text)
{
    for (int n = 0; n < blank.GetNumNodes(); ++n)
    {
        io_text.Int(n + 1);
        for (int triple = 0; triple < 2; ++triple)
            for (int c = 0; c < 3; ++c)
                io_text.Real(blank.m_padNodalCoords[3 * static_cast<std::ptrdiff_t>(n) + c] / kMetresPerInch,
                             "the position of node", n + 1);
        io_text.End();
    }
}

void writePoint(int element, PointRow const & row, bool isTriangle, Text & io_text)
{
    io_text.Int(element);
    double const columns[] = {row.thickness / kMetresPerInch,
                              row.minor,
                              row.major,
                              isTriangle ? row.stress / kPaPerPsi : row.stress,
                              row.equivalent,
                              row.angle};
    for (double const value : columns)
        io_text.Real(value, "element", element);
    io_text.End();
}

void writeElements(Deck const & deck, VOZFormingResult_s const & result, Text & io_text)
{
    bool const hasQuadrilateral =
        std::any_of(deck.elements.begin(), deck.elements.end(), [](Element const & e) { return e.corners == 4; });
    std::size_t const stride = hasQuadrilateral ? 4 : 1;
    for (std::size_t e = 0; e < deck.elements.size(); ++e)
    {
        Element const & element = deck.elements[e];
        MaterialRecord const & material = deck.materials[static_cast<std::size_t>(MaterialOf(deck, element))];
        std::size_t const points = element.corners == 4 ? 4 : 1;
        for (std::size_t point = 0; point < points; ++point)
        {
            std::size_t const at = 3 * (stride * e + point);
            writePoint(static_cast<int>(e) + 1,
                       pointRow(result.m_padStrainComponentsMid + at, result.m_padEquivalentStress[at], material),
                       points == 1, io_text);
        }
    }
}
} // namespace

std::string ResultText(Deck const & i_deck, VOZMultiStageSolverIOData_s const & i_data)
{
    VOZSolverStage_s const & stage = i_data.m_pasStages[0];
    VOZFormingResult_s const & result = *stage.m_psFormingResult;
    if (result.m_padStrainComponentsMid == nullptr || result.m_padEquivalentStress == nullptr)
        throw ResultError("the solver gave no strains");
    Text text;
    text.Literal(kHead);
    writeNodes(*stage.m_psBlankMesh, text);
    text.Literal(kElements);
    writeElements(i_deck, result, text);
    text.Literal(kForce);
    text.Real(result.m_dPunchForce / kNewtonPerLbf, "the punch force of stage", 1);
    text.End();
    return text.Taken();
}

std::string ShapeText(Deck const & i_deck, double const * i_padXYZ)
{
    Text text;
    text.Literal(kShapeHead);
    for (std::size_t n = 0; n < i_deck.nodes.size(); ++n)
    {
        int const number = static_cast<int>(n) + 1;
        text.Int(number);
        for (std::size_t c = 0; c < 3; ++c)
            text.Real(i_padXYZ[3 * n + c] / kMetresPerInch, "the position of node", number);
        text.End();
    }
    text.Literal(kShapeEnd);
    return text.Taken();
}

void CommitText(std::string const & i_path, std::string_view i_text)
{
    std::string const temporary = i_path + ".part";
    auto const refuse = [&i_path](std::string const & reason)
    { throw WriteError("cannot write " + i_path + ": " + reason); };
    errno = 0;
    std::FILE * const file = VOZOpenFile(temporary.c_str(), "wb");
    if (file == nullptr)
        refuse(std::strerror(errno));
    bool const isWhole = std::fwrite(i_text.data(), 1, i_text.size(), file) == i_text.size();
    bool const isClosed = std::fclose(file) == 0;
    int const reason = errno;
    std::error_code error;
    if (isWhole && isClosed)
        std::filesystem::rename(temporary, i_path, error);
    if (isWhole && isClosed && !error)
        return;
    std::error_code ignored;
    std::filesystem::remove(temporary, ignored);
    refuse(error ? error.message() : std::strerror(reason));
}

} // namespace voz::deck
