// SpringbackTables.cpp: springback against closed forms.

#include "SpringbackTables.h"

#include "SpringbackCases.h"
#include "springback/Resultants.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <stdexcept>

namespace
{

using namespace springtest;

std::string text(char const * format, ...)
{
    char buffer[512];
    va_list values;
    va_start(values, format);
    std::vsnprintf(buffer, sizeof buffer, format, values);
    va_end(values);
    return buffer;
}

Solution solved(Problem const & problem)
{
    Solution solution = voz::springback::Solve(problem, {}, {});
    if (solution.status != Status::Converged)
        throw std::runtime_error("a springback problem did not converge: " + solution.message);
    return solution;
}

char const * nameOf(Cells cells)
{
    return cells == Cells::Quads ? "quads" : "triangles";
}

constexpr Cells kBoth[] = {Cells::Triangles, Cells::Quads};
constexpr double kDegrees = 180.0 / kPi;

std::string small(double value, double least)
{
    return value < least ? text("< %.0e", least) : text("%.1e", value);
}

} // namespace

std::string springbackMomentTable()
{
    voz::material::MembraneLaw const law(mildSteel(), {});
    std::string out =
        "| R | M, closed form | M, 2 x 6 points | error | R/R_sprung | R_sprung |\n|---|---|---|---|---|---|\n";
    for (double const radius : {5.0, 10.0, 20.0, 50.0, 100.0})
    {
        double const exact = moment(mildSteel(), 0.001 * radius), ratio = springRatio(mildSteel(), 0.001 * radius);
        double const computed =
            voz::springback::integrateStress(law, {}, {1000.0 / radius, 0.0, 0.0}, mildSteel().thickness).moment(0);
        out += text("| %g | %.5f | %.5f | %+.1e | %.6f | %.4f |\n", radius, exact, computed, computed / exact - 1.0,
                    ratio, radius / ratio);
    }
    return out;
}

std::string springbackRotationTable()
{
    std::string out =
        "| R | angle | closed form | triangles | error | quads | error | steps |\n|---|---|---|---|---|---|---|---|\n";
    for (auto [radius, turn] :
         {std::array{5.0, 0.6}, std::array{10.0, 0.6}, std::array{20.0, 0.6}, std::array{50.0, 0.2}})
    {
        double const exact = turn * (1.0 - springRatio(mildSteel(), 0.001 * radius));
        out += text("| %g | %g | %.6f |", radius, turn, exact);
        int steps = 0;
        for (Cells const cells : kBoth)
        {
            Problem const problem = sector(radius, turn, 24, 2, cells);
            Solution const solution = solved(problem);
            double const rotation = endRotation(problem, solution);
            out += text(" %.6f | %+.3f %% |", rotation, 100.0 * (rotation / exact - 1.0));
            steps = std::max(steps, solution.newtonSteps);
        }
        out += text(" %d |\n", steps);
    }
    return out;
}

std::string springbackTipTable()
{
    std::string out = "| R | angle | elements | tip moves | error, 6 rows | 12 | 24 | order, 6 to 12 | 12 to 24 |\n"
                      "|---|---|---|---|---|---|---|---|---|\n";
    for (auto [radius, turn] : {std::array{20.0, 0.6}, std::array{100.0, 2.0}})
        for (Cells const cells : kBoth)
        {
            std::array<Tip, 3> tip{};
            for (std::size_t i = 0; i < 3; ++i)
            {
                Problem const problem = sector(radius, turn, 6 << i, 2, cells);
                tip[i] = tipOf(problem, solved(problem), radius, turn);
            }
            out += text("| %g | %g | %s | %.4f |", radius, turn, nameOf(cells), 1000.0 * tip[0].move);
            for (Tip const & t : tip)
                out += text(" %.5f |", 1000.0 * t.error);
            out += text(" %.2f | %.2f |\n", std::log2(tip[0].error / tip[1].error),
                        std::log2(tip[1].error / tip[2].error));
        }
    return out;
}

std::string springbackVeeTable()
{
    std::string out =
        text("| elements | rows of the legs | error of %.4f degrees, 6 rows in the arc | 12 | 24 | 48 |\n",
             kDegrees * veeOpening()) +
        "|---|---|---|---|---|---|\n";
    for (Cells const cells : kBoth)
        for (int const legRows : {15, 30, 60})
        {
            out += text("| %s | %g mm |", nameOf(cells), 30.0 / legRows);
            for (int const arcRows : {6, 12, 24, 48})
            {
                Problem const problem = vee(arcRows, legRows, cells);
                out += text(" %+.3f %% |", 100.0 * (opening(problem, solved(problem)) / veeOpening() - 1.0));
            }
            out += "\n";
        }
    return out;
}

std::string springbackPatchTable()
{
    std::string out = "| problem | measured | largest error |\n|---|---|---|\n";
    for (auto const & [e1, e2] : {std::array{0.1, -0.05}, std::array{0.05, 0.03}})
        for (Cells const cells : kBoth)
        {
            Problem const problem = stretched(e1, e2, cells);
            Solution const solution = solved(problem);
            out += text(
                "| sheet stretched by (%g, %g), %s | all distances against N/(E t) with Poisson's widening, of the "
                "contraction | %s |\n",
                e1, e2, nameOf(cells), small(contractionError(problem, solution, e1, e2), 1e-7).c_str());
            out += text("| | deflection, mm | %s |\n", small(1000.0 * deflection(solution), 1e-12).c_str());
        }
    Problem const flat = unstressed();
    out += text("| stresses cut off, flat rest | move, mm | %s |\n",
                small(1000.0 * solved(flat).greatestMove, 1e-9).c_str());
    return out;
}
