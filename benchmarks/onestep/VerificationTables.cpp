// verification-tables DOCS [PREFIX]: solves every verification problem on three meshes and writes what it finds; with a
// prefix only the tables whose names begin so.
//
// DOCS/verification.md keeps its text; what stands between "<!-- begin NAME -->" and "<!-- end NAME -->" is replaced.
// The pictures go to DOCS/pictures/verification-*.svg. The table of the convergence study is read from
// benchmarks/data/convergence.csv. Nothing of this depends on the machine's speed.

#include "AxisymmetricCases.h"
#include "ChannelCases.h"
#include "SpringbackTables.h"
#include "SquareCupCases.h"
#include "SvgPlot.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

namespace
{

using namespace onesteptest;

std::string text(char const * format, ...)
{
    char buffer[512];
    va_list values;
    va_start(values, format);
    std::vsnprintf(buffer, sizeof buffer, format, values);
    va_end(values);
    return buffer;
}

Solution solved(Problem const & problem, double tolerance = 1.0e-10)
{
    Settings settings;
    settings.tolerance = tolerance;
    Solution const solution = voz::onestep::Solve(problem, settings, {});
    if (solution.status != Status::Converged || solution.fallback != 0)
        throw std::runtime_error("a verification problem did not converge straight from the start: " +
                                 solution.message);
    return solution;
}

char const * nameOf(Cells cells)
{
    return cells == Cells::Quads ? "quads" : "triangles";
}

constexpr Cells kBoth[] = {Cells::Triangles, Cells::Quads};

// --- Homogeneous stretch -----------------------------------------------------------------------------------------

// A square of 100 x 100 in n x n cells, inner nodes moved by up to 0.3 of a cell, its rim taken to p / lambda.
Problem stretchedSquare(int n, Cells cells)
{
    SurfaceMesh mesh;
    unsigned state = 7;
    auto const shake = [&state]
    {
        state = state * 1664525u + 1013904223u;
        return 0.6 * (static_cast<double>(state >> 8) / 16777216.0 - 0.5);
    };
    Problem problem;
    for (int i = 0; i <= n; ++i)
        for (int j = 0; j <= n; ++j)
        {
            bool const rim = i == 0 || j == 0 || i == n || j == n;
            double const x = (i + (rim ? 0.0 : shake())) / n, y = (j + (rim ? 0.0 : shake())) / n;
            mesh.nodes.push_back({100.0 * x, 100.0 * y, 0.0});
            if (!rim)
                continue;
            int const node = static_cast<int>(mesh.nodes.size()) - 1;
            problem.constraints.push_back({node, 0.0, 0.1 * x * (1.0 / 1.2 - 1.0)});
            problem.constraints.push_back({node, kHalfPi, 0.1 * y * (1.0 / 1.1 - 1.0)});
        }
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j)
        {
            int const a = i * (n + 1) + j, b = a + n + 1;
            if (cells == Cells::Quads)
                mesh.elements.push_back({a, b, b + 1, a + 1});
            else
                mesh.elements.insert(mesh.elements.end(), {{a, b, b + 1, -1}, {a, b + 1, a + 1, -1}});
        }
    auto const constraints = problem.constraints;
    problem = problemOf(mesh, mildSteel());
    problem.constraints = constraints;
    return problem;
}

std::string stretchTable()
{
    std::string out = "| elements | n = 4 | n = 8 | n = 16 |\n|---|---|---|---|\n";
    for (Cells const cells : kBoth)
    {
        out += text("| %s |", nameOf(cells));
        for (int const n : {4, 8, 16})
        {
            Problem const problem = stretchedSquare(n, cells);
            Extremes const h = extremes(problem, solved(problem, 1.0e-13));
            double const error =
                std::max(std::fabs(h.greatestMajor - std::log(1.2)), std::fabs(h.leastMinor - std::log(1.1)));
            out += error < 1e-12 ? " < 1e-12 |" : text(" %.1e |", error);
        }
        out += "\n";
    }
    return out;
}

// --- Axisymmetric parts ------------------------------------------------------------------------------------------

constexpr int kMeshes[] = {1, 2, 4};

struct AxisymmetricRow
{
    Case const * c;
    Cells cells;
    std::array<Errors, 3> errors;
    std::array<double, 3> blank; // blank radius, mm
    double order() const { return std::log2(errors[1].radius / errors[2].radius); }
};

std::vector<AxisymmetricRow> axisymmetricRows()
{
    std::vector<AxisymmetricRow> rows;
    for (Case const & c : kCases)
        for (Cells const cells : kBoth)
        {
            AxisymmetricRow row{&c, cells, {}, {}};
            for (std::size_t i = 0; i < 3; ++i)
            {
                Model const model = modelOf(c, kMeshes[i], cells);
                Solution const solution = solved(model.problem);
                row.errors[i] = errorsOf(c, kMeshes[i], cells, model, solution);
                double mean = 0.0; // of the rim
                int const nodes = static_cast<int>(model.mesh.nodes.size());
                for (int node = nodes - model.rays; node < nodes; ++node)
                    mean += flatRadius(solution, node) / model.rays;
                row.blank[i] = mean;
            }
            rows.push_back(row);
        }
    return rows;
}

std::string radiusTable(std::vector<AxisymmetricRow> const & rows)
{
    std::string out =
        "| case | elements | blank radius, reference | k = 4 | error of R, k = 1 | k = 2 | k = 4 | order |\n"
        "|---|---|---|---|---|---|---|---|\n";
    for (AxisymmetricRow const & row : rows)
        out += text("| %s | %s | %.5f | %.5f | %.4f | %.4f | %.4f | %.2f |\n", row.c->name, nameOf(row.cells),
                    row.c->blankRadius, row.blank[2], row.errors[0].radius, row.errors[1].radius, row.errors[2].radius,
                    row.order());
    return out;
}

std::string thicknessTable(std::vector<AxisymmetricRow> const & rows)
{
    std::string out =
        "| case | elements | error of h3, k = 1 | k = 2 | k = 4 | punch force, reference | k = 1 | k = 2 | "
        "k = 4 | error |\n|---|---|---|---|---|---|---|---|---|---|\n";
    for (AxisymmetricRow const & row : rows)
    {
        out += text("| %s | %s | %.4f | %.4f | %.4f |", row.c->name, nameOf(row.cells), row.errors[0].thickness,
                    row.errors[1].thickness, row.errors[2].thickness);
        if (row.c->dome)
            out += " – | | | | |\n";
        else
            out += text(" %.1f | %.1f | %.1f | %.1f | %+.2f %% |\n", row.c->punchForce, row.errors[0].punchForce,
                        row.errors[1].punchForce, row.errors[2].punchForce,
                        100.0 * (row.errors[2].punchForce / row.c->punchForce - 1.0));
    }
    return out;
}

std::string orderPlot(std::vector<AxisymmetricRow> const & rows)
{
    std::vector<plot::Series> series;
    for (AxisymmetricRow const & row : rows)
        if (row.cells == Cells::Triangles && row.c->name != std::string("A1") && row.c->name != std::string("D3"))
        {
            plot::Series one{row.c->name, {}};
            for (std::size_t i = 0; i < 3; ++i)
                one.points.push_back({1.0 / kMeshes[i], row.errors[i].radius});
            series.push_back(one);
        }
    series.push_back({"order 2", {{0.25, 0.006}, {1.0, 0.096}}, true, false, true});
    return plot::svgOf({"Triangles: largest error of the flat radius", "element size, 1/k", "error, mm", true}, series);
}

// h3 along the meridian: the reference as lines, ring means of the elements at k = 4 as marks.
std::string meridianPlot()
{
    std::vector<plot::Series> series;
    for (char const * const name : {"A1", "A3", "A5"})
    {
        Case const & c = named(name);
        plot::Series exact{std::string(name) + ", ODE", {}, true, false},
            mesh{std::string(name) + ", k = 4", {}, false};
        for (int i = 1; i <= 120; ++i)
        {
            double const s = c.length * i / 120.0;
            exact.points.push_back({s, reference(c).at(s).h3()});
        }
        Model const model = modelOf(c, 4, Cells::Quads);
        Solution const solution = solved(model.problem);
        std::vector<double> const s = arcLengths(c, 4);
        std::size_t e = 0;
        for (std::size_t row = 0; row + 1 < s.size(); ++row)
        {
            double mean = 0.0;
            for (int ray = 0; ray + 1 < model.rays; ++ray)
                mean += thicknessStrain(model.problem, solution, e++) / (model.rays - 1);
            if (row % 2 == 1)
                mesh.points.push_back({0.5 * (s[row] + s[row + 1]), mean});
        }
        series.push_back(exact);
        series.push_back(mesh);
    }
    return plot::svgOf({"Cups: thickness strain along the meridian", "arc length s, mm", "h3", false}, series);
}

// --- Channel -----------------------------------------------------------------------------------------------------

std::string channelTable()
{
    struct Row
    {
        double force, strain;
    };
    std::string out =
        "| force, N/mm | h1, reference | elements | 3 rows an arc | 6 | 12 | error of the blank's length, mm |\n"
        "|---|---|---|---|---|---|---|\n";
    for (Row const & row :
         {Row{120, 0.000470}, Row{180, 0.003315}, Row{240, 0.023293}, Row{300, 0.078937}, Row{330, 0.163804}})
        for (Cells const cells : kBoth)
        {
            out += text("| %g | %.6f | %s |", row.force, row.strain, nameOf(cells));
            double worst = 0.0;
            for (int const rows : {3, 6, 12})
            {
                Channel const c = channel(row.force, cells, rows);
                Solution const solution = solved(c.problem);
                double const strain = extremes(c.problem, solution).greatestMajor;
                double blank = 0.0;
                for (std::size_t i = 0; i < c.mesh.nodes.size(); ++i)
                    blank = std::max(blank, flat(solution, static_cast<int>(i))[0]);
                worst = std::max(worst, std::fabs(blank - c.profileLength * std::exp(-strain)));
                out += text(" %.6f |", strain);
            }
            out += worst < 1e-6 ? " < 1e-6 |\n" : text(" %.1e |\n", worst);
        }
    return out;
}

std::string ropeTable()
{
    constexpr double kSmooth = 0.048990; // of the smooth rope, 275.9626 N/mm
    std::string out = "| elements | 6 rows an arc | 12 | 24 | order |\n|---|---|---|---|---|\n";
    for (Cells const cells : kBoth)
    {
        std::vector<double> wall;
        for (int const rows : {6, 12, 24})
        {
            Channel c = channel(240.0, cells, rows);
            c.problem.toolFriction = 0.1;
            Solution const solution = solved(c.problem);
            std::size_t const element =
                static_cast<std::size_t>((3 * rows + rows / 2) * (cells == Cells::Quads ? 2 : 4));
            wall.push_back(strainAt(solution, element, 0, solution.strains.mid).major);
        }
        out += text("| %s | %.6f | %.6f | %.6f | %.2f |\n", nameOf(cells), wall[0], wall[1], wall[2],
                    std::log2((wall[0] - kSmooth) / (wall[1] - kSmooth)));
    }
    return out;
}

// --- Developable parts -------------------------------------------------------------------------------------------

struct Developable
{
    double strain, length, layer; // largest mid strain; error of a diagonal, mm; error of top less mid, relative
};

Developable unroll(SurfaceMesh const & mesh, int a, int b, double diagonal, double layer)
{
    Problem const problem = problemOf(mesh, mildSteel());
    Solution const solution = solved(problem, 1.0e-8);
    Extremes const h = extremes(problem, solution);
    Point2 const p = flat(solution, a), q = flat(solution, b);
    double worst = 0.0;
    for (std::size_t e = 0; e < problem.elements.size() && layer > 0.0; ++e)
        worst = std::max(worst, std::fabs(strainAt(solution, e, 0, solution.strains.top).major / layer - 1.0));
    return {std::max(std::fabs(h.greatestMajor), std::fabs(h.leastMinor)),
            std::fabs(std::hypot(p[0] - q[0], p[1] - q[1]) - diagonal), worst};
}

std::string developableTable()
{
    std::string out =
        "| part | elements | strips | largest mid strain | error of the diagonal, mm | error of top less mid |\n"
        "|---|---|---|---|---|---|\n";
    auto const row = [&out](char const * part, Cells cells, int strips, Developable const & d, bool layers)
    {
        out += text("| %s | %s | %d | %s | %s |", part, nameOf(cells), strips,
                    d.strain < 1e-12 ? "< 1e-12" : text("%.1e", d.strain).c_str(),
                    d.length < 1e-9 ? "< 1e-9" : text("%.1e", d.length).c_str());
        out += layers ? text(" %.3f %% |\n", 100.0 * d.layer) : std::string(" – |\n");
    };
    for (Cells const cells : kBoth)
        for (int const strips : {12, 24, 48})
        {
            int const rows = strips * 5 / 6;
            double const across = strips * 2.0 * 20.0 * std::sin(0.6 / strips);
            row("cylinder", cells, strips,
                unroll(cylinder(20.0, 0.6, strips, 30.0, rows, cells), 0, strips * (rows + 1) + rows,
                       std::hypot(across, 30.0), std::log(1.0 + 0.39 / 20.0)),
                true);
        }
    for (Cells const cells : kBoth)
        for (int const strips : {12, 24, 48})
        {
            int const rows = strips * 2 / 3;
            // facets: each strip turns the flat by the angle between its two generators
            double const chord = 2.0 * std::sin(0.6) * std::sin(1.0 / strips); // per unit of slant
            double const turn = strips * 2.0 * std::asin(0.5 * chord);
            double const diagonal = std::sqrt(20.0 * 20.0 + 60.0 * 60.0 - 2.0 * 20.0 * 60.0 * std::cos(turn));
            row("cone", cells, strips,
                unroll(cone(0.6, 20.0, 60.0, 1.0, strips, rows, cells), 0, rows * (strips + 1) + strips, diagonal, 0.0),
                false);
        }
    return out;
}

// --- Square cup --------------------------------------------------------------------------------------------------

std::string squareCupTable()
{
    struct Row
    {
        double depth, restraint, friction, side, diagonal, least, greatest, area;
    };
    std::string out = "| depth, restraint, mu | | side | diagonal | least h3 | greatest h3 | quarter area | steps |\n"
                      "|---|---|---|---|---|---|---|---|\n";
    for (Row const & row : {Row{15, 0, 0, 75.79, 106.41, -0.0666, 0.0650, 5691.7},
                            Row{15, 9.4, 0, 75.72, 106.34, -0.0723, 0.0617, 5681.5},
                            Row{15, 9.4, 0.144, 75.71, 106.30, -0.0826, 0.0621, 5677.0},
                            Row{40, 0, 0, 78.41, 106.65, -0.1067, 0.2895, 5746.9},
                            Row{40, 9.4, 0, 78.36, 106.46, -0.1128, 0.2832, 5726.2},
                            Row{40, 9.4, 0.144, 78.64, 105.61, -0.1957, 0.2956, 5659.9},
                            Row{40, 100, 0, 77.49, 104.41, -0.1957, 0.2124, 5497.4},
                            Row{40, 200, 0, 73.55, 100.66, -0.4974, 0.0985, 5012.4}})
    {
        Quarter const model = quarter(row.depth == 15 ? squareCup15() : squareCup40(), row.restraint, row.friction);
        Solution const solution = solved(model.problem, 1.0e-8);
        Extremes const h = extremes(model.problem, solution);
        int const last = static_cast<int>(model.mesh.nodes.size());
        out += text("| %g mm, %g N/mm, %g | reference | %.2f | %.2f | %.4f | %.4f | %.1f | |\n", row.depth,
                    row.restraint, row.friction, row.side, row.diagonal, row.least, row.greatest, row.area);
        out += text("| | computed | %.2f | %.2f | %.4f | %.4f | %.1f | %d |\n", flatRadius(solution, last - 29),
                    flatRadius(solution, last - 15), h.leastThickness, h.greatestThickness,
                    flatArea(model.problem, solution), solution.newtonSteps);
    }
    return out;
}

std::string squareCupMeshes()
{
    struct Row
    {
        Cells cells;
        int m;
        double side, diagonal;
    };
    std::string out = "| elements | side, reference | computed | diagonal, reference | computed | steps |\n"
                      "|---|---|---|---|---|---|\n";
    for (Row const & row : {Row{Cells::Triangles, 1, 77.72, 106.72}, Row{Cells::Triangles, 2, 78.37, 106.48},
                            Row{Cells::Triangles, 4, 78.43, 106.35}, Row{Cells::Quads, 1, 78.57, 106.44},
                            Row{Cells::Quads, 2, 78.50, 106.37}, Row{Cells::Quads, 4, 78.44, 106.30}})
    {
        Quarter const model = quarter(meshed(row.m), kRestraint, 0.0, mildSteel(), row.cells);
        Solution const solution = solved(model.problem, 1.0e-8);
        int const rays = 14 * row.m + 1, first = static_cast<int>(model.mesh.nodes.size()) - rays;
        out += text("| %zu %s | %.2f | %.2f | %.2f | %.2f | %d |\n", model.mesh.elements.size(), nameOf(row.cells),
                    row.side, flatRadius(solution, first), row.diagonal, flatRadius(solution, first + rays / 2),
                    solution.newtonSteps);
    }
    return out;
}

std::string squareCupPlot()
{
    using Points = std::vector<std::array<double, 2>>;
    struct Line
    {
        char const * name;
        int ray;
        double friction;
        Points stations;
    };
    std::vector<Line> const lines = {{"side",
                                      0,
                                      0.0,
                                      {{27.0, -0.001},
                                       {37.2, 0.000},
                                       {53.2, 0.002},
                                       {63.9, 0.031},
                                       {68.3, 0.074},
                                       {71.5, 0.121},
                                       {74.8, 0.162},
                                       {79.9, 0.197}}},
                                     {"diagonal",
                                      14,
                                      0.0,
                                      {{28.0, -0.018},
                                       {37.4, -0.052},
                                       {42.5, -0.061},
                                       {47.6, -0.047},
                                       {52.8, -0.065},
                                       {58.2, -0.087},
                                       {63.5, -0.078},
                                       {74.3, -0.032},
                                       {81.9, 0.048},
                                       {85.2, 0.060},
                                       {98.1, 0.016},
                                       {123.9, 0.000}}},
                                     {"diagonal, mu",
                                      14,
                                      0.144,
                                      {{28.0, -0.013},
                                       {37.4, -0.036},
                                       {42.5, -0.059},
                                       {47.6, -0.079},
                                       {52.8, -0.159},
                                       {58.2, -0.184},
                                       {63.5, -0.164},
                                       {74.3, -0.080},
                                       {81.9, 0.047},
                                       {85.2, 0.061},
                                       {98.1, 0.015},
                                       {123.9, 0.000}}}};
    std::vector<plot::Series> series;
    for (Line const & line : lines)
    {
        Quarter const model = quarter(squareCup40(), kRestraint, line.friction);
        std::vector<double> const h3 = nodalThicknessStrain(model.problem, model.mesh, solved(model.problem, 1.0e-8));
        plot::Series computed{line.name, {}, true, false};
        double s = 0.0;
        Point3 before = model.mesh.nodes[0];
        for (int row = 1; row <= 40; ++row)
        {
            auto const node = static_cast<std::size_t>(1 + (row - 1) * 29 + line.ray);
            Point3 const & p = model.mesh.nodes[node];
            s += std::hypot(p[0] - before[0], p[1] - before[1], p[2] - before[2]);
            before = p;
            computed.points.push_back({s, h3[node]});
        }
        series.push_back(computed);
        series.push_back({std::string(line.name) + ", ref.", line.stations, false, true});
    }
    return plot::svgOf({"Square cup, 40 mm: thickness strain", "arc length s, mm", "h3", false}, series);
}

// --- The convergence study ---------------------------------------------------------------------------------------

std::vector<std::string> fieldsOf(std::string const & line)
{
    std::vector<std::string> fields;
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, ',');)
        fields.push_back(field);
    fields.resize(std::max<std::size_t>(fields.size(), 19));
    return fields;
}

struct StudySum
{
    int runs = 0, converged = 0, straight = 0, necking = 0;
    std::vector<int> steps;

    void add(std::vector<std::string> const & fields)
    {
        bool const good = fields[9] == "converged";
        ++runs;
        converged += good ? 1 : 0;
        straight += good && fields[10] == "0" ? 1 : 0;
        necking += fields[17] != "0" ? 1 : 0;
        steps.push_back(std::stoi(fields[12]));
    }
    std::string row(std::string const & name)
    {
        std::sort(steps.begin(), steps.end());
        return text("| %s | %d | %d | %d | %d | %d | %d | %d |\n", name.c_str(), runs, converged, straight, necking,
                    steps[steps.size() / 2], steps[steps.size() * 95 / 100], steps.back());
    }
};

std::string studyTable()
{
    std::ifstream file(VOZ_SOURCE_DIR "/benchmarks/data/convergence.csv");
    std::string line,
        out = "| part | runs | converged | without a fall-back | necking told | steps, median | 95 % | most |\n"
              "|---|---|---|---|---|---|---|---|\n";
    std::map<std::string, StudySum> parts;
    StudySum all;
    std::getline(file, line);
    while (std::getline(file, line))
    {
        auto const fields = fieldsOf(line);
        parts[fields[1]].add(fields);
        all.add(fields);
    }
    if (all.runs == 0)
        throw std::runtime_error("benchmarks/data/convergence.csv: no runs");
    for (auto & [name, sum] : parts)
        out += sum.row(name);
    return out + all.row("all");
}

// --- The document ------------------------------------------------------------------------------------------------

std::string readAll(std::string const & path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error(path + ": cannot be read");
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeAll(std::string const & path, std::string const & bytes)
{
    std::ofstream file(path, std::ios::binary);
    if (!(file << bytes).flush())
        throw std::runtime_error(path + ": cannot be written");
}

void replaceBlock(std::string & document, std::string const & name, std::string const & block)
{
    std::string const begin = "<!-- begin " + name + " -->\n", end = "<!-- end " + name + " -->";
    std::size_t const from = document.find(begin), to = document.find(end);
    if (from == std::string::npos || to == std::string::npos || to < from)
        throw std::runtime_error("the document has no block " + name);
    document.replace(from + begin.size(), to - from - begin.size(), "\n" + block + "\n");
}

// i_prefix: only the blocks whose names begin so; empty: all, and the pictures.
void writeTables(std::string const & docs, std::string const & prefix)
{
    std::vector<AxisymmetricRow> computed;
    auto const rows = [&computed]() -> std::vector<AxisymmetricRow> const &
    {
        if (computed.empty())
            computed = axisymmetricRows();
        return computed;
    };
    struct Block
    {
        char const * name;
        std::function<std::string()> table;
    };
    Block const blocks[] = {{"stretch", stretchTable},
                            {"radius", [&] { return radiusTable(rows()); }},
                            {"thickness", [&] { return thicknessTable(rows()); }},
                            {"channel", channelTable},
                            {"rope", ropeTable},
                            {"developable", developableTable},
                            {"square-cup", squareCupTable},
                            {"square-cup-meshes", squareCupMeshes},
                            {"convergence", studyTable},
                            {"springback-moment", springbackMomentTable},
                            {"springback-rotation", springbackRotationTable},
                            {"springback-tip", springbackTipTable},
                            {"springback-vee", springbackVeeTable},
                            {"springback-patch", springbackPatchTable}};
    std::string document = readAll(docs + "/verification.md");
    for (Block const & block : blocks)
        if (std::string(block.name).starts_with(prefix))
            replaceBlock(document, block.name, block.table());
    writeAll(docs + "/verification.md", document);
    if (!prefix.empty())
        return;
    writeAll(docs + "/pictures/verification-order.svg", orderPlot(rows()));
    writeAll(docs + "/pictures/verification-cups.svg", meridianPlot());
    writeAll(docs + "/pictures/verification-square-cup.svg", squareCupPlot());
}

} // namespace

int main(int argc, char ** argv)
{
    if (argc != 2 && argc != 3)
    {
        std::fprintf(stderr, "use: verification-tables DOCS [PREFIX]\n");
        return 2;
    }
    try
    {
        writeTables(argv[1], argc == 3 ? argv[2] : "");
    }
    catch (std::exception const & error)
    {
        std::fprintf(stderr, "verification-tables: %s\n", error.what());
        return 5;
    }
    return 0;
}
