// SolverOutput.cpp: reading the solver program's text into a Result.
//
// Lines have at most 254 characters; one that begins with "*" separates sections. The first token of a row, the number
// of its node or element, is not read: rows belong to nodes and elements by their order. Triangles and quadrilaterals
// are read differently on purpose: a quadrilateral's angle is the sum of its four, its stress has no factor, its
// equivalent strain is left out.

#include "Solver.h"

#include "DeckNumber.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "ZoneLimits.h"

#include "CATError.h"
#include "ElemProperty.h"
#include "FormingLimit.h"
#include "Result.h"
#include "VOZFile.h"
#include "VOZUserUnitBase.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace
{
constexpr double kPaPerPsi = 6895.0;       // of the stress column of triangles
constexpr double kNewtonPerLbf = 4.448222; // of the punch force
constexpr double kPi = 3.14159265358979323846;

constexpr int kLineLength = 254;
constexpr int kTokenSlots = 10;
constexpr char const * kSpringbackMark = ".spo";

// Splits at blanks, tabs and line feeds, in place. The first token goes to slot 0, null for an empty line; the next
// ones follow until one is null or ten slots are full. Returns the slots filled, nulls included: 2 for an empty line.
int splitLine(char * line, char ** o_tokens)
{
    auto const isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\n'; };
    auto const next = [&line, isBlank]() -> char *
    {
        while (isBlank(*line))
            ++line;
        if (*line == '\0')
            return nullptr;
        char * const token = line;
        while (*line != '\0' && !isBlank(*line))
            ++line;
        if (*line != '\0')
            *line++ = '\0';
        return token;
    };
    int filled = 0;
    o_tokens[filled++] = next();
    do
        o_tokens[filled++] = next();
    while (o_tokens[filled - 1] != nullptr && filled < kTokenSlots);
    return filled;
}

// The lines of a stream. A longer line goes on as the next one.
class OutputLines
{
public:
    explicit OutputLines(std::FILE * i_file) : mFile(i_file), mBlock(std::size_t{1} << 16) {}

    bool Next(); // false at the end of the file
    bool IsSeparator() const { return mLine[0] == '*'; }
    bool NextRow() { return Next() && !IsSeparator(); } // false at the end of the section, too: the separator is spent
    void Split();                                       // the line into its tokens
    double Value(int i_token) const;                    // of the split line; raises an error if it is not there
    bool HasToken(int i_token) const { return mTokens[static_cast<std::size_t>(i_token)] != nullptr; }
    void SkipSeparators(int i_count); // the end of the file counts as all of them

private:
    bool Fill();

    std::FILE * mFile;
    std::vector<char> mBlock;
    std::size_t mBegin = 0; // of what is unread in the block
    std::size_t mEnd = 0;
    long mNumber = 0;
    char mLine[kLineLength + 1] = {};
    std::array<char *, kTokenSlots> mTokens{};
};

// Moves what is unread to the front and reads behind it. False if there is nothing more.
bool OutputLines::Fill()
{
    std::copy(mBlock.begin() + static_cast<std::ptrdiff_t>(mBegin), mBlock.begin() + static_cast<std::ptrdiff_t>(mEnd),
              mBlock.begin());
    mEnd -= mBegin;
    mBegin = 0;
    std::size_t const got = std::fread(mBlock.data() + mEnd, 1, mBlock.size() - mEnd, mFile);
    mEnd += got;
    return got > 0;
}

bool OutputLines::Next()
{
    if (mEnd - mBegin < kLineLength)
        Fill();
    std::size_t const most = std::min<std::size_t>(mEnd - mBegin, kLineLength);
    if (most == 0)
    {
        mLine[0] = '\0';
        return false;
    }
    char const * const from = mBlock.data() + mBegin;
    void const * const feed = std::memchr(from, '\n', most);
    std::size_t const length =
        feed == nullptr ? most : static_cast<std::size_t>(static_cast<char const *>(feed) - from) + 1;
    std::memcpy(mLine, from, length);
    mLine[length] = '\0';
    mBegin += length;
    ++mNumber;
    return true;
}

void OutputLines::Split()
{
    mTokens.fill(nullptr);
    splitLine(mLine, mTokens.data());
}

double OutputLines::Value(int i_token) const
{
    if (!HasToken(i_token))
    {
        std::string const text = "line " + std::to_string(mNumber) +
                                 " of the solver's output has no number in column " + std::to_string(i_token + 1);
        throw CATMfErrUpdate(text.c_str(), "Solver", __LINE__);
    }
    return ParseDeckDouble(mTokens[static_cast<std::size_t>(i_token)]);
}

void OutputLines::SkipSeparators(int i_count)
{
    while (i_count > 0 && Next())
        if (IsSeparator())
            --i_count;
}

// Per node: how many element corners met there, and their sums.
struct NodeSums
{
    explicit NodeSums(int numNode)
        : count(new (std::nothrow) int[static_cast<std::size_t>(numNode) + 1]()),
          major(new (std::nothrow) double[static_cast<std::size_t>(numNode) + 1]()),
          minor(new (std::nothrow) double[static_cast<std::size_t>(numNode) + 1]())
    {
    }
    bool isComplete() const { return count && major && minor; }

    std::unique_ptr<int[]> count;
    std::unique_ptr<double[]> major;
    std::unique_ptr<double[]> minor;
};

// One line of the element section.
struct ElementRow
{
    double thickness; // inches
    double minor;     // percent
    double major;     // percent
    double stress;
    double equivalent; // 0 where it is not read
    double angle;      // radians
};

class FormingOutput
{
public:
    FormingOutput(VOZCatMesh const & i_mesh, VOZCatAxis const & i_axis, ElemProperty const & i_property,
                  Result & io_result, OutputLines & io_lines)
        : mRows(i_mesh), mAxis(i_axis), mProperty(i_property), mResult(io_result), mLines(io_lines)
    {
    }

    void ReadNodes();
    void ReadElements(NodeSums & io_sums);
    void SetNodeStrains(NodeSums const & i_sums);
    bool SetZones(NodeSums const & i_sums); // false without memory or configuration: nothing is set
    void ReadPunchForce();

private:
    bool ReadElementRow(bool i_isTriangle, ElementRow & o_row);
    void SetTriangle(int e, ElementRow const & i_row);
    void SetQuadrilateral(int e, ElementRow const (&i_rows)[4]);
    std::size_t NodeRow(int e, int i_corner) const;

    meshrows::Rows mRows;
    VOZCatAxis const & mAxis;
    ElemProperty const & mProperty;
    Result & mResult;
    OutputLines & mLines;
};

void readTriple(OutputLines const & lines, int firstToken, double (&o_row)[3])
{
    for (int c = 0; c < 3; ++c)
        o_row[c] = VOZUserUnitBase::InchToMm(lines.Value(firstToken + c));
}

void FormingOutput::ReadNodes()
{
    double row[3];
    Vec const view(row);
    for (int n = 1; n <= mRows.numNode && mLines.NextRow(); ++n)
    {
        mLines.Split();
        readTriple(mLines, 1, row);
        mResult.dispOnBinder(n, view);
        readTriple(mLines, 4, row);
        mResult.disp(n, view);
    }
    // All nodes, those that the section left out too. The positions have gone through single precision by now.
    rowmath::Frame const frame(mAxis);
    auto const toDisplacement = [&](int n, double x, double y, double z)
    {
        double const local[3] = {x, y, z};
        double global[3];
        frame.toGlobal(local, global);
        rowmath::subtract(global, mRows.nodes[n], row);
    };
    for (int n = 1; n <= mRows.numNode; ++n)
    {
        toDisplacement(n, mResult.disp1(n, 0), mResult.disp1(n, 1), mResult.disp1(n, 2));
        mResult.disp(n, view);
        toDisplacement(n, mResult.dispOnBinder1(n, 0), mResult.dispOnBinder1(n, 1), mResult.dispOnBinder1(n, 2));
        mResult.dispOnBinder(n, view);
    }
}

bool FormingOutput::ReadElementRow(bool i_isTriangle, ElementRow & o_row)
{
    if (!mLines.NextRow())
        return false;
    mLines.Split();
    o_row.thickness = mLines.Value(1);
    o_row.minor = mLines.Value(2);
    o_row.major = mLines.Value(3);
    o_row.stress = mLines.Value(4);
    o_row.equivalent = i_isTriangle ? mLines.Value(5) : 0.0;
    o_row.angle = mLines.Value(6);
    return true;
}

// The row of the per-node arrays for a corner: row 0, which is no node, for one that lies outside them.
std::size_t FormingOutput::NodeRow(int e, int i_corner) const
{
    int const n = mRows.corner(e, i_corner);
    return n < 0 || n > mRows.numNode ? 0 : static_cast<std::size_t>(n);
}

void FormingOutput::ReadElements(NodeSums & io_sums)
{
    for (int e = 1; e <= mRows.numElem; ++e)
    {
        int const corners = meshrows::cornerCount(mRows.elems[e]);
        ElementRow rows[4];
        for (int line = 0; line < (corners == 3 ? 1 : 4); ++line)
            if (!ReadElementRow(corners == 3, rows[line]))
                return;
        if (corners == 3)
            SetTriangle(e, rows[0]);
        else
            SetQuadrilateral(e, rows);
        for (int corner = 0; corner < corners; ++corner)
        {
            int const position = mRows.corner(e, corner);
            if (position < 0 || position > mRows.numNode + 1)
                std::puts("Solver::read--nums over limit");
            ElementRow const & row = rows[corners == 3 ? 0 : corner];
            std::size_t const n = NodeRow(e, corner);
            io_sums.major[n] += row.major;
            io_sums.minor[n] += row.minor;
            ++io_sums.count[n];
        }
    }
}

void FormingOutput::SetTriangle(int e, ElementRow const & i_row)
{
    mResult.thickness(e, static_cast<float>(VOZUserUnitBase::InchToMm(i_row.thickness)));
    mResult.strain(e, 0, static_cast<float>(i_row.major));
    mResult.strain(e, 1, static_cast<float>(i_row.minor));
    mResult.strain(e, 2, static_cast<float>(i_row.angle * 180.0 / kPi));
    mResult.EquivalentStrain(e, static_cast<float>(i_row.equivalent));
    mResult.stress(e, static_cast<float>(i_row.stress * kPaPerPsi));
}

void FormingOutput::SetQuadrilateral(int e, ElementRow const (&i_rows)[4])
{
    ElementRow sum{};
    for (ElementRow const & row : i_rows)
    {
        sum.thickness += row.thickness;
        sum.minor += row.minor;
        sum.major += row.major;
        sum.stress += row.stress;
        sum.angle += row.angle;
    }
    mResult.thickness(e, static_cast<float>(VOZUserUnitBase::InchToMm(sum.thickness) * 0.25));
    mResult.strain(e, 0, static_cast<float>(sum.major * 0.25));
    mResult.strain(e, 1, static_cast<float>(sum.minor * 0.25));
    mResult.strain(e, 2, static_cast<float>(sum.angle * 180.0 / kPi)); // the sum: never divided by four
    mResult.stress(e, static_cast<float>(sum.stress * 0.25));
}

void FormingOutput::SetNodeStrains(NodeSums const & i_sums)
{
    FormingLimit const limit;
    for (int n = 1; n <= mRows.numNode; ++n)
    {
        auto const row = static_cast<std::size_t>(n);
        if (i_sums.count[row] > 0)
        {
            mResult.nstrain(n, 0, static_cast<float>(i_sums.major[row] / i_sums.count[row]));
            mResult.nstrain(n, 1, static_cast<float>(i_sums.minor[row] / i_sums.count[row]));
        }
        double const first = limit.engToTrueStrain(static_cast<double>(mResult.nstrain(n, 0)));
        double const second = limit.engToTrueStrain(static_cast<double>(mResult.nstrain(n, 1)));
        mResult.nstrain(n, 2, static_cast<float>(limit.trueToEngStrain(-first - second)));
    }
}

bool FormingOutput::SetZones(NodeSums const & i_sums)
{
    int const numNode = mRows.numNode;
    auto const rows = static_cast<std::size_t>(numNode) + 1;
    std::unique_ptr<int[]> const safetySum(new (std::nothrow) int[rows]());
    std::unique_ptr<int[]> const formingSum(new (std::nothrow) int[rows]());
    ZoneLimits limits;
    if (!safetySum || !formingSum || !limits.Read())
        return false;
    for (int e = 1; e <= mRows.numElem; ++e)
    {
        int forming = 0;
        int safety = 0;
        limits.Classify(mProperty.formingLimit(mProperty.propertyIndex(e)), static_cast<double>(mResult.strain(e, 0)),
                        static_cast<double>(mResult.strain(e, 1)), forming, safety);
        mResult.forming(e, forming);
        mResult.safety(e, safety);
        for (int corner = 0; corner < meshrows::cornerCount(mRows.elems[e]); ++corner)
        {
            std::size_t const n = NodeRow(e, corner);
            safetySum[n] += safety;
            formingSum[n] += forming;
        }
    }
    for (int n = 0; n <= numNode; ++n)
    {
        auto const row = static_cast<std::size_t>(n);
        int const divisor = i_sums.count[row] == 0 ? 1 : i_sums.count[row];
        mResult.nsafety(n, safetySum[row] / divisor); // means of codes, cut towards 0
        mResult.nforming(n, formingSum[row] / divisor);
    }
    return true;
}

void FormingOutput::ReadPunchForce()
{
    mLines.SkipSeparators(2);
    double force = 0.0;
    if (mLines.Next())
    {
        mLines.Split();
        if (mLines.HasToken(2)) // a line that breaks off is as good as none
            force = mLines.Value(2) * kNewtonPerLbf;
    }
    mResult.PunchForce(force);
}

void readSpringback(int numNode, Result & io_result, OutputLines & io_lines)
{
    io_lines.SkipSeparators(4);
    io_lines.Next();
    io_lines.Next();
    double row[3];
    Vec const view(row);
    for (int n = 1; n <= numNode && io_lines.NextRow(); ++n)
    {
        io_lines.Split();
        readTriple(io_lines, 1, row);
        io_result.dispOnBinder(n, view);
    }
}

// Returns whether the file is to be closed: where memory runs out, it stays open.
bool readForming(FormingOutput & output, OutputLines & lines, int numNode)
{
    output.ReadNodes();
    NodeSums sums(numNode);
    if (!sums.isComplete())
    {
        std::puts("Memory Allocation Failure");
        return false;
    }
    if (!lines.Next() || !lines.IsSeparator())
        throw CATMfErrUpdate("the solver's output has no separator ahead of its element section", "Solver", __LINE__);
    output.ReadElements(sums);
    output.SetNodeStrains(sums);
    if (output.SetZones(sums))
        output.ReadPunchForce();
    return true;
}
} // namespace

int Solver::tokens(char * const i_line, char ** const o_tokens)
{
    return splitLine(i_line, o_tokens);
}

void Solver::read(char const * i_file, Result & io_result, bool)
{
    std::FILE * file = nullptr;
    auto const close = [&file]
    {
        if (file != nullptr)
            std::fclose(file);
    };
    auto const readAll = [&]
    {
        file = VOZOpenFile(i_file, "r");
        if (file == nullptr)
        {
            std::string const text = std::string("cannot open the solver's output ") + i_file;
            throw CATMfErrUpdate(text.c_str(), "Solver", __LINE__);
        }
        OutputLines lines(file);
        lines.SkipSeparators(3);
        if (std::strstr(i_file, kSpringbackMark) != nullptr)
        {
            readSpringback(mMesh.numNode(), io_result, lines);
            close();
            return;
        }
        FormingOutput output(mMesh, mAxis, mElemProperty, io_result, lines);
        if (readForming(output, lines, mMesh.numNode()))
            close();
    };
    CATXHContext::Guard(readAll, close);
}
