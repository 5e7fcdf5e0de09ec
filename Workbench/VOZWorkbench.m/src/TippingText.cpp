// TippingText.cpp: a stamping frame for people and for scripts.

#include "TippingText.h"

#include "OutputFile.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace voz::workbench
{

namespace
{
// Between the stamping direction and the global z axis, degrees.
double AngleToZ(VOZCatAxis const & i_frame)
{
    constexpr double kDegrees = 180.0 / 3.14159265358979323846;
    return kDegrees * std::atan2(std::hypot(i_frame.axis(2, 0), i_frame.axis(2, 1)), i_frame.axis(2, 2));
}

std::string Row(VOZCatAxis const & i_frame, int i_row)
{
    return Fixed(i_frame.axis(i_row, 0), 6) + " " + Fixed(i_frame.axis(i_row, 1), 6) + " " +
           Fixed(i_frame.axis(i_row, 2), 6);
}

char const * PlanesOf(Symmetry const & i_symmetry)
{
    return i_symmetry.quarterSymmetry() ? "two planes: local x = 0 and local y = 0"
           : i_symmetry.yzSymmetry()    ? "one plane: local x = 0"
           : i_symmetry.xzSymmetry()    ? "one plane: local y = 0"
                                        : "none";
}
} // namespace

std::string TippingAsText(Tipping const & i_tipping)
{
    VOZCatAxis const & frame = i_tipping.frame;
    return "Stamping frame\n  local x    " + Row(frame, 0) + "\n  local y    " + Row(frame, 1) + "\n  direction  " +
           Row(frame, 2) + "\n  origin     " + Fixed(frame.origin(0), 4) + " " + Fixed(frame.origin(1), 4) + " " +
           Fixed(frame.origin(2), 4) + " mm\n  to z       " + Fixed(AngleToZ(frame), 3) + " deg\n  symmetry   " +
           PlanesOf(i_tipping.symmetry) + "\nDraw depth: " + Fixed(i_tipping.drawDepth, 3) +
           " mm\nUndercuts: " + std::to_string(i_tipping.undercutElements) + " elements, " +
           Fixed(i_tipping.undercutArea, 2) + " mm2, up to " + Fixed(i_tipping.undercutAngle, 2) + " deg\n";
}

nlohmann::json TippingAsJson(Tipping const & i_tipping, MeshModel const & i_model)
{
    VOZCatAxis const & frame = i_tipping.frame;
    nlohmann::json json;
    for (int row = 0; row < 3; ++row)
        json["axes"].push_back({frame.axis(row, 0), frame.axis(row, 1), frame.axis(row, 2)});
    json["origin_mm"] = {frame.origin(0), frame.origin(1), frame.origin(2)};
    json["direction_to_z_deg"] = AngleToZ(frame);
    json["symmetry"] = {{"local_x", i_tipping.symmetry.yzSymmetry()}, {"local_y", i_tipping.symmetry.xzSymmetry()}};
    json["draw_depth_mm"] = i_tipping.drawDepth;
    json["undercut_count"] = i_tipping.undercutElements;
    json["undercut_area_mm2"] = i_tipping.undercutArea;
    json["undercut_angle_deg"] = i_tipping.undercutAngle;
    json["undercut_elements"] = nlohmann::json::array();
    for (std::size_t e = 0; e < i_tipping.undercut.size(); ++e)
        if (i_tipping.undercut[e] != 0)
            json["undercut_elements"].push_back(i_model.elementIds[e]);
    return json;
}

} // namespace voz::workbench
