// RunChecks.cpp: the checks of a result, each with its limit.

#include "RunChecks.h"

#include "OutputFile.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr double kVolumeTolerance = 1.0; // percent
constexpr double kFlatTolerance = 0.001; // mm

// Incompressibility: what the formed sheet holds must be what the blank held.
OutcomeCheck VolumeCheck(Outcome const & i_outcome)
{
    double formed = 0.0;
    for (ElementOutcome const & element : i_outcome.elements)
        formed += element.area * element.thickness;
    double const blank = i_outcome.summary.blankArea * i_outcome.firstThickness;
    double const percent = blank > 0.0 ? 100.0 * std::abs(formed - blank) / blank : 100.0;
    return {"volume of the formed sheet against the blank", Fixed(percent, 3) + " %",
            "at most " + Fixed(kVolumeTolerance, 1) + " %", percent <= kVolumeTolerance, false};
}

OutcomeCheck FlatCheck(Outcome const & i_outcome)
{
    double low = 0.0;
    double high = 0.0;
    for (std::size_t n = 0; n < i_outcome.nodes.size(); ++n)
    {
        double const z = i_outcome.nodes[n].flat[2];
        low = n == 0 ? z : std::min(low, z);
        high = n == 0 ? z : std::max(high, z);
    }
    double const depth = high - low;
    return {"flatness of the blank", Fixed(depth, 5) + " mm", "at most " + Fixed(kFlatTolerance, 3) + " mm",
            depth <= kFlatTolerance, false};
}

std::string OnBlank(double i_x, double i_y)
{
    return ", first at " + Fixed(i_x, 2) + ", " + Fixed(i_y, 2) + " mm of the blank";
}

OutcomeCheck CrossingCheck(Outcome const & i_outcome)
{
    std::vector<FlatCrossing> const & crossings = i_outcome.flat.crossings;
    std::string value = std::to_string(crossings.size());
    if (!crossings.empty())
        value += OnBlank(crossings.front().place[0], crossings.front().place[1]);
    return {"edges of the blank that cross others", value, "0", crossings.empty(), true};
}

OutcomeCheck TurnedCheck(Outcome const & i_outcome)
{
    std::vector<int> const & turned = i_outcome.flat.turned;
    std::string value = std::to_string(turned.size());
    if (!turned.empty())
    {
        int const node = i_outcome.part.elem(turned.front(), 0) - 1;
        Point3 const & place = i_outcome.nodes[static_cast<std::size_t>(node)].flat;
        value += OnBlank(place[0], place[1]);
    }
    return {"elements that the blank turns over", value, "0", turned.empty(), true};
}

OutcomeCheck ZoneCheck(Outcome const & i_outcome, int i_code, char const * i_name)
{
    double const percent = 100.0 * i_outcome.summary.safetyShare[static_cast<std::size_t>(i_code + 1)];
    return {i_name, Fixed(percent, 2) + " % of the elements", "0 %", percent == 0.0, true};
}

// Under stretching the curve rises to a crest; what is stretched further is judged by a branch that was never measured.
OutcomeCheck CurveCheck(Outcome const & i_outcome)
{
    constexpr double kStretched = 1.0; // percent: where the curve's branch of stretching is asked for
    double a = 0.0;
    double b = 0.0;
    i_outcome.limit.factors(kStretched, a, b);
    double const crest = -a / (2.0 * b);
    double greatest = 0.0;
    for (ElementOutcome const & element : i_outcome.elements)
        greatest = std::max(greatest, element.minor);
    return {"minor strain within the limit curve", Fixed(greatest, 2) + " %",
            "at most " + Fixed(crest, 1) + " %, where the curve ends", greatest <= crest, true};
}
} // namespace

std::vector<OutcomeCheck> CheckOutcome(Job const & i_job, Outcome const & i_outcome)
{
    if (!i_outcome.HasResults())
        return {};
    std::vector<OutcomeCheck> checks;
    if (i_outcome.hasBlank)
        checks = {VolumeCheck(i_outcome), FlatCheck(i_outcome), CrossingCheck(i_outcome), TurnedCheck(i_outcome)};
    checks.push_back(ZoneCheck(i_outcome, 0, "elements beyond the limit (failure)"));
    checks.push_back(ZoneCheck(i_outcome, -1, "elements with an impossible strain pair"));
    if (int const undercut = i_outcome.summary.undercutElements; !i_outcome.undercut.empty())
        checks.push_back({"undercut elements", std::to_string(undercut), "0", undercut == 0, true});
    checks.push_back(CurveCheck(i_outcome));
    if (!i_outcome.hasBlank)
        return checks;
    if (std::optional<OutcomeCheck> const symmetry = SymmetryCheck(i_job, i_outcome))
        checks.push_back(*symmetry);
    return checks;
}

} // namespace voz::workbench
