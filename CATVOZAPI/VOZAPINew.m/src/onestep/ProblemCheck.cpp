// ProblemCheck.cpp

#include "onestep/ProblemCheck.h"

#include "TextOf.h"

#include <cmath>

namespace voz::onestep
{

namespace
{

std::string checkNodes(Problem const & i_problem)
{
    if (i_problem.nodes.empty() || i_problem.elements.empty())
        return "the part has no elements";
    for (std::size_t i = 0; i < i_problem.nodes.size(); ++i)
        for (double const x : i_problem.nodes[i])
            if (!std::isfinite(x))
                return TextOf("node ", i, ": a coordinate is not a finite number");
    return {};
}

std::string checkElements(Problem const & i_problem)
{
    auto const count = static_cast<int>(i_problem.nodes.size());
    for (std::size_t e = 0; e < i_problem.elements.size(); ++e)
    {
        Element const & element = i_problem.elements[e];
        for (std::size_t corner = 0; corner < 4; ++corner)
        {
            int const node = element.nodes[corner];
            bool const absent = corner == 3 && node == -1;
            if (!absent && (node < 0 || node >= count))
                return TextOf("element ", e, ": node ", node, " does not exist; expected 0 to ", count - 1);
        }
        if (element.material < 0 || element.material >= static_cast<int>(i_problem.materials.size()))
            return TextOf("element ", e, ": material ", element.material, " does not exist; there are ",
                          i_problem.materials.size());
    }
    return {};
}

std::string checkTable(std::size_t i_material, std::vector<std::array<double, 2>> const & i_table)
{
    if (i_table.size() == 1)
        return TextOf("material ", i_material, ": a stress-strain table needs at least two points");
    for (std::size_t i = 0; i < i_table.size(); ++i)
    {
        double const strain = i_table[i][0], stress = i_table[i][1];
        bool const ascends = i == 0 ? strain >= 0.0 : strain > i_table[i - 1][0];
        if (!ascends || !std::isfinite(strain))
            return TextOf("material ", i_material, ": strain ", strain, " of point ", i,
                          " of the table does not ascend");
        bool const origin = i == 0 && strain == 0.0 && stress == 0.0;
        if (!origin && !(stress > 0.0 && std::isfinite(stress)))
            return TextOf("material ", i_material, ": stress ", stress, " of point ", i,
                          " of the table; expected a positive number");
    }
    return {};
}

std::string checkMaterials(Problem const & i_problem)
{
    for (std::size_t m = 0; m < i_problem.materials.size(); ++m)
    {
        MaterialLaw const & law = i_problem.materials[m];
        struct
        {
            char const * name;
            double value;
            bool mayBeZero;
        } const numbers[] = {{"thickness", law.thickness, false},
                             {"r value", law.rValue, false},
                             {"Young's modulus", law.youngsModulus, false},
                             {"yield stress", law.yield, true},
                             {"n value", law.table.empty() ? law.nValue : 0.0, true},
                             {"strength coefficient K", law.table.empty() ? law.kValue : 1.0, false}};
        for (auto const & number : numbers)
            if (!std::isfinite(number.value) || number.value < 0.0 || (number.value == 0.0 && !number.mayBeZero))
                return TextOf("material ", m, ": ", number.name, " is ", number.value, "; expected a positive number");
        if (std::string const problem = checkTable(m, law.table); !problem.empty())
            return problem;
    }
    return {};
}

bool areNeighbours(Element const & i_element, int i_corner1, int i_corner2)
{
    int const corners = i_element.nodes[3] == -1 ? 3 : 4;
    if (i_corner1 < 0 || i_corner1 >= corners || i_corner2 < 0 || i_corner2 >= corners)
        return false;
    return (i_corner1 + 1) % corners == i_corner2 || (i_corner2 + 1) % corners == i_corner1;
}

std::string checkActions(Problem const & i_problem)
{
    auto const elements = static_cast<int>(i_problem.elements.size());
    for (std::size_t i = 0; i < i_problem.holders.size(); ++i)
    {
        HolderEdge const & edge = i_problem.holders[i];
        if (edge.element < 0 || edge.element >= elements)
            return TextOf("holder edge ", i, ": element ", edge.element, " does not exist");
        if (!areNeighbours(i_problem.elements[static_cast<std::size_t>(edge.element)], edge.corner1, edge.corner2))
            return TextOf("holder edge ", i, ": positions ", edge.corner1, " and ", edge.corner2,
                          " are no side of element ", edge.element);
        if (!std::isfinite(edge.force))
            return TextOf("holder edge ", i, " on element ", edge.element, ": the force is not a finite number");
    }
    for (std::size_t i = 0; i < i_problem.beads.size(); ++i)
    {
        BeadSegment const & bead = i_problem.beads[i];
        if (bead.element < 0 || bead.element >= elements)
            return TextOf("bead segment ", i, ": element ", bead.element, " does not exist");
        bool finite = std::isfinite(bead.force);
        for (double const coordinate : bead.natural)
            finite = finite && std::isfinite(coordinate);
        if (!finite)
            return TextOf("bead segment ", i, " on element ", bead.element, ": a number is not finite");
    }
    return {};
}

std::string checkRest(Problem const & i_problem)
{
    if (!i_problem.padShear.empty() && i_problem.padShear.size() != i_problem.elements.size())
        return TextOf("pad pressures: ", i_problem.padShear.size(), " values for ", i_problem.elements.size(),
                      " elements");
    for (std::size_t e = 0; e < i_problem.padShear.size(); ++e)
        if (!std::isfinite(i_problem.padShear[e]))
            return TextOf("pad pressure of element ", e, ": not a finite number");
    if (!i_problem.curvatures.empty() && i_problem.curvatures.size() != i_problem.elements.size())
        return TextOf("curvatures: ", i_problem.curvatures.size(), " rows for ", i_problem.elements.size(),
                      " elements");
    for (std::size_t e = 0; e < i_problem.curvatures.size(); ++e)
        for (double const value : i_problem.curvatures[e])
            if (!std::isfinite(value))
                return TextOf("curvature of element ", e, ": not a finite number");
    auto const nodes = static_cast<int>(i_problem.nodes.size());
    for (std::size_t i = 0; i < i_problem.constraints.size(); ++i)
    {
        NodeConstraint const & c = i_problem.constraints[i];
        bool const used = c.node >= 0 && c.node < nodes;
        if (used && (!std::isfinite(c.angle) || !std::isfinite(c.value)))
            return TextOf("constraint ", i, " on node ", c.node, ": angle or value is not a finite number");
    }
    return {};
}

std::string checkSettings(Problem const & i_problem, Settings const & i_settings)
{
    if (!std::isfinite(i_problem.toolFriction) || i_problem.toolFriction < 0.0)
        return TextOf("tool friction is ", i_problem.toolFriction, "; expected zero or a positive number");
    bool const good = i_settings.kappa >= 0.0 && i_settings.theta >= 0.0 && i_settings.tolerance > 0.0 &&
                      i_settings.maxSteps > 0 && std::isfinite(i_settings.kappa) && std::isfinite(i_settings.theta);
    if (!good)
        return "settings of the solver: a number is out of range";
    if (i_settings.steps < 1 || i_settings.steps > 3)
        return TextOf("steps of the stroke: ", i_settings.steps, "; expected 1, 2 or 3");
    return {};
}

} // namespace

std::string checkProblem(Problem const & i_problem, Settings const & i_settings)
{
    for (auto const check : {checkNodes, checkElements, checkMaterials, checkActions, checkRest})
        if (std::string problem = check(i_problem); !problem.empty())
            return problem;
    return checkSettings(i_problem, i_settings);
}

} // namespace voz::onestep
