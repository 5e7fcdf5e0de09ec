// FileRouteOutcome.cpp: what the file route read back, checked and turned into the workbench's one form.

#include "FileRouteParts.h"
#include "QuadrilateralAngles.h"
#include "Quantity.h"
#include "RouteParts.h"
#include "TextFile.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace voz::workbench
{

namespace
{
constexpr double kMegapascalPerPascal = 1e-6;
constexpr double kRadianPerDegree = 0.017453292519943295;
constexpr int kPointsOfQuadrilateral = 4; // whose angles the library adds up

// The lines of a text, counted.
class Lines
{
public:
    explicit Lines(std::string_view i_text) : mRest(i_text) {}

    bool Next()
    {
        if (mRest.empty())
            return false;
        std::size_t const end = mRest.find('\n');
        line = mRest.substr(0, end);
        mRest.remove_prefix(end == std::string_view::npos ? mRest.size() : end + 1);
        ++number;
        return true;
    }
    bool IsSeparator() const { return line.starts_with('*'); }

    std::string_view line;
    long number = 0;

private:
    std::string_view mRest;
};

class SolverText
{
public:
    SolverText(std::string const & i_path, std::string_view i_text) : mPath(i_path), mLines(i_text) {}

    void SkipSeparators(int i_count, char const * i_what)
    {
        while (i_count > 0)
        {
            if (!mLines.Next())
                Fail(std::string("ends ahead of ") + i_what);
            if (mLines.IsSeparator())
                --i_count;
        }
    }

    void SkipLines(int i_count, char const * i_what)
    {
        for (int i = 0; i < i_count; ++i)
            if (!mLines.Next())
                Fail(std::string("ends ahead of ") + i_what);
    }

    // i_count rows of at least i_columns numbers behind the row's own number; then a separator.
    void Rows(long i_count, int i_columns, char const * i_what)
    {
        for (long row = 0; row < i_count; ++row)
        {
            if (!mLines.Next() || mLines.IsSeparator())
                Fail("has " + std::to_string(row) + " rows of " + i_what + ", expected " + std::to_string(i_count));
            CheckRow(i_columns);
        }
    }

    void Separator(char const * i_what)
    {
        if (!mLines.Next() || !mLines.IsSeparator())
            Fail(std::string("has more rows of ") + i_what + " than the mesh, or ends behind them");
    }

    void CheckRow(int i_columns) const
    {
        std::string_view rest = mLines.line;
        for (int column = 0; column <= i_columns; ++column)
        {
            std::string_view const token = NextToken(rest);
            if (token.empty())
                Fail("has " + std::to_string(column) + " columns, expected " + std::to_string(i_columns + 1));
            CheckNumber(token, column);
        }
    }

    // A row whose third token counts, whatever stands ahead of it.
    void ThirdToken(char const * i_what)
    {
        if (!mLines.Next() || mLines.IsSeparator())
            Fail(std::string("has no ") + i_what);
        std::string_view rest = mLines.line;
        for (int column = 0;; ++column)
        {
            std::string_view const token = NextToken(rest);
            if (token.empty())
                Fail(std::string("has no third column for the ") + i_what);
            if (column == 2)
                return CheckNumber(token, column);
        }
    }

private:
    static std::string_view NextToken(std::string_view & io_rest)
    {
        constexpr std::string_view kBlanks = " \t\r";
        io_rest.remove_prefix(std::min(io_rest.size(), io_rest.find_first_not_of(kBlanks)));
        std::string_view const token = io_rest.substr(0, io_rest.find_first_of(kBlanks));
        io_rest.remove_prefix(token.size());
        return token;
    }

    void CheckNumber(std::string_view i_token, int i_column) const
    {
        std::optional<double> const value = ParseNumber(i_token);
        if (!value || !std::isfinite(*value))
            Fail("column " + std::to_string(i_column + 1) + ": \"" + std::string(i_token) + "\" is no finite number");
    }

    [[noreturn]] void Fail(std::string const & i_message) const
    {
        throw SolverError("the solver's result cannot be used: " + mPath + ":" + std::to_string(mLines.number) + ": " +
                          i_message);
    }

    std::string const & mPath;
    Lines mLines;
};
} // namespace

namespace
{
std::string WholeText(std::string const & i_path)
{
    try
    {
        return ReadTextFile(i_path, std::size_t{1} << 40);
    }
    catch (InputError const & error)
    {
        throw SolverError(std::string("the solver's result cannot be used: ") + error.what());
    }
}
} // namespace

void CheckSolverText(std::string const & i_path, VOZCatMesh const & i_mesh)
{
    std::string const content = WholeText(i_path);
    long rows = 0;
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        rows += i_mesh.isTriangle(e) != 0 ? 1 : kPointsOfQuadrilateral;
    SolverText text(i_path, content);
    text.SkipSeparators(3, "the node section");
    text.Rows(i_mesh.numNode(), 6, "nodes");
    text.Separator("nodes");
    text.Rows(rows, 6, "elements");
    text.SkipSeparators(2, "the punch force");
    text.ThirdToken("punch force");
}

void CheckSpringbackText(std::string const & i_path, VOZCatMesh const & i_mesh)
{
    std::string const content = WholeText(i_path);
    SolverText text(i_path, content);
    text.SkipSeparators(7, "the node section");
    text.SkipLines(2, "the node section");
    text.Rows(i_mesh.numNode(), 3, "nodes");
}

double EquivalentStrainPercent(double i_major, double i_minor, double i_anisotropy)
{
    double const r = i_anisotropy;
    double const e1 = std::log1p(std::max(i_major, -99.0) / 100.0);
    double const e2 = std::log1p(std::max(i_minor, -99.0) / 100.0);
    double const k2 = (1.0 + r) * (1.0 + r) / (1.0 + 2.0 * r);
    double const rho = r / (1.0 + r);
    double const conjugate = std::sqrt(std::max(0.0, k2 * (e1 * e1 + e2 * e2 + 2.0 * rho * e1 * e2)));
    return 100.0 * std::expm1(conjugate * std::sqrt(2.0 * (2.0 + r) / (3.0 * (1.0 + r))));
}

void FillUnsetSlots(VOZCatMesh const & i_mesh, double i_anisotropy, Result & io_result)
{
    for (int e = 1; e <= i_mesh.numElem(); ++e)
    {
        if (i_mesh.isTriangle(e) == 0)
            io_result.EquivalentStrain(e, static_cast<float>(EquivalentStrainPercent(
                                              io_result.strain(e, 0), io_result.strain(e, 1), i_anisotropy)));
        io_result.equivalentStrain(e, io_result.EquivalentStrain(e));
    }
    io_result.AverageNodeThickness(i_mesh);
}

namespace
{
ElementOutcome ConvertElement(Result const & i_result, int e, bool i_isTriangle, FormingLimit const & i_limit,
                              double i_firstThickness)
{
    ElementOutcome element;
    element.thickness = i_result.thickness(e);
    element.thinning = 100.0 * (1.0 - element.thickness / i_firstThickness);
    element.major = i_result.strain(e, 0);
    element.minor = i_result.strain(e, 1);
    element.thicknessStrain = ThicknessStrain(i_limit, element.major, element.minor);
    double const degrees = i_result.strain(e, 2);
    element.angle = kRadianPerDegree * (i_isTriangle ? degrees : degrees / kPointsOfQuadrilateral);
    element.equivalentStrain = i_result.equivalentStrain(e);
    element.stress = kMegapascalPerPascal * static_cast<double>(i_result.stress(e));
    element.safety = i_result.safety(e);
    element.forming = i_result.forming(e);
    SettleZones(element.major, element.minor, element.safety, element.forming);
    return element;
}

NodeOutcome ConvertNode(Result const & i_result, int n, VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame)
{
    NodeOutcome node;
    for (int c = 0; c < 3; ++c)
    {
        auto const i = static_cast<std::size_t>(c);
        node.displacement[i] = i_result.disp(n, c);
        node.onBinder[i] = i_result.dispOnBinder(n, c);
    }
    node.flat = FlatPlace(i_mesh.GetNodeData()[n], node.displacement, i_frame);
    node.thickness = i_result.NodeThickness(n);
    node.major = i_result.nstrain(n, 0);
    node.minor = i_result.nstrain(n, 1);
    node.safety = i_result.nsafety(n);
    node.forming = i_result.nforming(n);
    SettleZones(node.major, node.minor, node.safety, node.forming);
    return node;
}
} // namespace

void ConvertFileResult(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Result & i_result,
                       Outcome & o_outcome)
{
    VOZCatMesh const & mesh = i_model.mesh.mesh;
    o_outcome.route = kFileRoute;
    FillHead(i_job, i_model, i_tipping, o_outcome);
    o_outcome.summary.punchForce = i_result.PunchForce();
    for (int e = 1; e <= mesh.numElem(); ++e)
        o_outcome.elements.push_back(
            ConvertElement(i_result, e, mesh.isTriangle(e) != 0, o_outcome.limit, i_job.thickness));
    for (int n = 1; n <= mesh.numNode(); ++n)
        o_outcome.nodes.push_back(ConvertNode(i_result, n, mesh, i_tipping.frame));
    FillQuadrilateralAngles(o_outcome);
    Summarise(o_outcome);
}

std::string SolverWords(std::string const & i_logPath)
{
    std::string const raw = ReadTextFile(i_logPath, std::size_t{1} << 30);
    std::string words;
    Lines lines(raw);
    while (lines.Next())
        if (!lines.line.starts_with("Program Name: ") && !lines.line.starts_with("0x"))
            words += std::string(lines.line) + "\n";
    return words;
}

} // namespace voz::workbench
