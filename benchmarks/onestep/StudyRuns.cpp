// StudyRuns.cpp: drawing and building.

#include "StudyRuns.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace study
{

using namespace onesteptest;

namespace
{

// The engine is defined to the bit; the distributions of the standard library are not.
class Random
{
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}
    double unit() { return static_cast<double>(m_engine() >> 11) * 0x1.0p-53; } // [0, 1)
    void shuffle(std::vector<int> & values)
    {
        for (std::size_t i = values.size(); i > 1; --i)
            std::swap(values[i - 1], values[static_cast<std::size_t>(unit() * static_cast<double>(i))]);
    }
    std::uint64_t word() { return m_engine(); }

private:
    std::mt19937_64 m_engine;
};

std::vector<double> strata(int count, Random & random)
{
    std::vector<int> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    random.shuffle(order);
    std::vector<double> values;
    for (int const stratum : order)
        values.push_back((stratum + random.unit()) / count);
    return values;
}

int atLeastOne(double value)
{
    return std::max(1, static_cast<int>(std::lround(value)));
}

SurfaceMesh squareCupOf(SquareCup shape, Extent extent, double rows, Cells cells)
{
    for (int * count :
         {&shape.rowsBottom, &shape.rowsArc, &shape.rowsWall, &shape.rowsFlange, &shape.cellsSide, &shape.cellsCorner})
        *count = atLeastOne(rows * *count);
    return squareCup(shape, extent, cells);
}

SurfaceMesh cylindricalCupOf(double rows, Cells cells)
{
    Cup const shape;
    Profile const meridian = Profile({0.0, 0.0}, 0.0)
                                 .line(shape.bottom, atLeastOne(12 * rows))
                                 .arc(shape.punchArc, kHalfPi, atLeastOne(9 * rows))
                                 .line(shape.wall, atLeastOne(6 * rows))
                                 .arc(shape.dieArc, -kHalfPi, atLeastOne(9 * rows))
                                 .line(shape.flange, atLeastOne(6 * rows));
    return revolve(meridian, atLeastOne(18 * rows), Extent::Whole, cells);
}

SurfaceMesh bracketOf(double rows, Cells cells)
{
    Bracket shape;
    for (int * count : {&shape.cellsAcross, &shape.rowsRound, &shape.rowsPerArc, &shape.rowsFlange})
        *count = atLeastOne(rows * *count);
    shape.cellsAcross += shape.cellsAcross % 2;
    return bracket(shape, cells);
}

constexpr char const * kParts[] = {"square_cup",      "square_cup_15", "square_cup_quarter",
                                   "cylindrical_cup", "hat_section",   "bracket"};

void renumber(Random & random, Problem & io_problem)
{
    std::vector<int> place(io_problem.nodes.size()), order(io_problem.elements.size()), where(order.size());
    std::iota(place.begin(), place.end(), 0);
    std::iota(order.begin(), order.end(), 0);
    random.shuffle(place);
    random.shuffle(order);
    Problem const given = io_problem;
    for (std::size_t i = 0; i < place.size(); ++i)
        io_problem.nodes[static_cast<std::size_t>(place[i])] = given.nodes[i];
    for (std::size_t e = 0; e < order.size(); ++e)
    {
        io_problem.elements[e] = given.elements[static_cast<std::size_t>(order[e])];
        where[static_cast<std::size_t>(order[e])] = static_cast<int>(e);
        for (int & node : io_problem.elements[e].nodes)
            node = node < 0 ? node : place[static_cast<std::size_t>(node)];
    }
    for (auto & holder : io_problem.holders)
        holder.element = where[static_cast<std::size_t>(holder.element)];
    for (auto & constraint : io_problem.constraints)
        constraint.node = place[static_cast<std::size_t>(constraint.node)];
}

bool everywhere(Point3 const &)
{
    return true;
}

Problem buildPart(Run & io_run, MaterialLaw const & law)
{
    double const rows = 1.0 / io_run.size;
    auto const normal = [&io_run](double force) { return io_run.holderForce = io_run.holder * force; };
    if (io_run.part == "hat_section") // the sides y = 0 and y = 60 stay in their planes
    {
        SurfaceMesh const mesh = wholeHat({}, 60.0, atLeastOne(8 * rows), atLeastOne(24 * rows), io_run.cells);
        Problem problem = problemOf(mesh, law);
        hold(
            problem, mesh, [](Point3 const & p) { return p[1] == 0.0 || p[1] == 60.0; }, kHalfPi);
        double const end = mesh.nodes.back()[0];
        restrain(problem, mesh, normal(307.692), [end](Point3 const & p) { return std::fabs(p[0]) == end; });
        return problem;
    }
    if (io_run.part == "bracket") // nothing is drawn: the example has no holder force, and ten times none is none
        return problemOf(bracketOf(rows, io_run.cells), law);
    bool const quarter = io_run.part == "square_cup_quarter", round = io_run.part == "cylindrical_cup";
    SquareCup const square = io_run.part == "square_cup_15" ? squareCup15() : squareCup40();
    SurfaceMesh const mesh = round ? cylindricalCupOf(rows, io_run.cells)
                                   : squareCupOf(square, quarter ? Extent::Quarter : Extent::Whole, rows, io_run.cells);
    Problem problem = problemOf(mesh, law);
    if (quarter)
        quarterSymmetry(problem, mesh);
    restrain(problem, mesh, normal(round ? 20.0 : 9.4), everywhere); // sides in a plane of symmetry are left out
    return problem;
}

} // namespace

std::vector<Run> drawRuns(int count, std::uint64_t seed, int materials)
{
    Random random(seed);
    auto const part = strata(count, random), cells = strata(count, random), size = strata(count, random),
               material = strata(count, random), thickness = strata(count, random), friction = strata(count, random),
               holder = strata(count, random);
    std::vector<Run> runs;
    for (int i = 0; i < count; ++i)
    {
        auto const k = static_cast<std::size_t>(i);
        runs.push_back({i + 1, kParts[static_cast<std::size_t>(part[k] * static_cast<double>(std::size(kParts)))],
                        cells[k] < 0.5 ? Cells::Triangles : Cells::Quads, 0.5 * std::pow(8.0, size[k]),
                        static_cast<int>(material[k] * materials), 0.3 * std::pow(10.0, thickness[k]),
                        0.3 * friction[k], 10.0 * holder[k], random.word()});
    }
    return runs;
}

Problem buildProblem(Run & io_run, std::vector<NamedLaw> const & materials)
{
    MaterialLaw law = materials[static_cast<std::size_t>(io_run.material)].law;
    law.thickness = 0.001 * io_run.thickness;
    Problem problem = buildPart(io_run, law);
    problem.toolFriction = io_run.friction;
    Random random(io_run.shuffle);
    renumber(random, problem);
    return problem;
}

} // namespace study
