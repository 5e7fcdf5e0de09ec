// SheetCheck.cpp: what a springback problem must have before anything is computed.

#include "TextOf.h"
#include "onestep/ProblemCheck.h"
#include "springback/FormedSheet.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::springback
{

namespace
{

constexpr double kSameLength = 1.0e-3;
constexpr double kRounding = 1.0e-6;
constexpr double kFlat = 0.05; // of the part's extent along the stamping direction

double extent(std::vector<std::array<double, 3>> const & i_nodes, std::size_t i_axis)
{
    double least = std::numeric_limits<double>::infinity(), greatest = -least;
    for (auto const & x : i_nodes)
    {
        least = std::min(least, x[i_axis]);
        greatest = std::max(greatest, x[i_axis]);
    }
    return greatest - least;
}

double distance(std::array<double, 3> const & a, std::array<double, 3> const & b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

} // namespace

std::string checkProblem(Problem const & i_problem, Settings const & i_settings)
{
    onestep::Problem common; // what both solvers take
    common.nodes = i_problem.formed;
    common.elements = i_problem.elements;
    common.materials = i_problem.materials;
    common.curvatures = i_problem.curvatures;
    if (std::string wrong = onestep::checkProblem(common, {}); !wrong.empty())
        return wrong;
    for (std::size_t m = 0; m < i_problem.materials.size(); ++m)
        if (double const nu = i_problem.materials[m].poisson; !(nu >= 0.0 && nu < 0.5))
            return TextOf("material ", m, ": Poisson's ratio is ", nu, "; expected 0 to less than 0.5");
    if (i_problem.flat.size() != i_problem.formed.size())
        return TextOf("the flat mesh has ", i_problem.flat.size(), " nodes; expected ", i_problem.formed.size(),
                      " like the part");
    for (std::size_t i = 0; i < i_problem.flat.size(); ++i)
        for (double const x : i_problem.flat[i])
            if (!std::isfinite(x))
                return TextOf("node ", i, " of the flat mesh: a coordinate is not a finite number");
    if (!i_problem.trimmed.empty() && i_problem.trimmed.size() != i_problem.elements.size())
        return TextOf("there are ", i_problem.trimmed.size(), " marks of trimming for ", i_problem.elements.size(),
                      " elements");
    for (geometry::SymmetryNode const & held : i_problem.symmetry)
        if (held.node < 0 || held.node >= static_cast<int>(i_problem.formed.size()) ||
            !(std::abs(length(held.direction) - 1.0) < kRounding))
            return TextOf("a plane of symmetry names node ", held.node, " with a normal of length ",
                          length(held.direction), "; expected a node of the part and a unit normal");
    bool const good = i_settings.tolerance > 0.0 && i_settings.firstLoadStep > 0.0 && i_settings.firstLoadStep <= 1.0 &&
                      i_settings.leastLoadStep > 0.0 && i_settings.maxSteps > 0;
    return good ? std::string{} : "settings of the springback solver: a number is out of range";
}

bool isUnformed(Problem const & i_problem)
{
    double const formed = extent(i_problem.formed, 2), flat = extent(i_problem.flat, 2);
    double const floor = kRounding * std::max(extent(i_problem.formed, 0), extent(i_problem.formed, 1));
    if (std::abs(formed - flat) > kSameLength * (1.0 + kRounding) * std::max(formed, flat) + floor)
        return false;
    double change = 0.0, all = 0.0;
    for (onestep::Element const & element : i_problem.elements)
    {
        std::size_t const corners = element.nodes[3] < 0 ? 3 : 4;
        for (std::size_t k = 0; k < corners; ++k)
        {
            auto const a = static_cast<std::size_t>(element.nodes[k]);
            auto const b = static_cast<std::size_t>(element.nodes[(k + 1) % corners]);
            double const before = distance(i_problem.flat[a], i_problem.flat[b]);
            double const after = distance(i_problem.formed[a], i_problem.formed[b]);
            change += std::abs(after - before);
            all += std::max(after, before);
        }
    }
    return change <= kSameLength * (1.0 + kRounding) * all;
}

std::string checkFlatness(Problem const & i_problem)
{
    double const formed = extent(i_problem.formed, 2), flat = extent(i_problem.flat, 2);
    double const size = std::max(extent(i_problem.formed, 0), extent(i_problem.formed, 1));
    if (flat <= kFlat * formed || flat <= kFlat * kFlat * size)
        return {};
    return TextOf("neither mesh is flat: along the stamping direction one extends over ", formed, " m, the other over ",
                  flat, " m; expected a blank of no extent");
}

} // namespace voz::springback
