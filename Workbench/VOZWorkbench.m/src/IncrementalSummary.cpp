// IncrementalSummary.cpp: the figures of a deck and of imported steps.

#include "IncrementalSummary.h"

#include "OutputFile.h"

#include <nlohmann/json.hpp>

namespace voz::workbench
{

namespace
{
constexpr double kMillisecondsPerSecond = 1000.0;

std::string Milliseconds(double i_seconds)
{
    return Fixed(kMillisecondsPerSecond * i_seconds, 4) + " ms";
}

std::string SettingsName(IncrementalFigures const & i_figures)
{
    return i_figures.settings.empty() ? "the settings' own defaults" : i_figures.settings;
}

nlohmann::json JsonOf(IncrementalFigures const & i_figures)
{
    nlohmann::json json = {{"settings", i_figures.settings},
                           {"stroke_mm", i_figures.stroke},
                           {"least_gap_mm", i_figures.leastGap},
                           {"greatest_gap_mm", i_figures.greatestGap},
                           {"punch_velocity_m_per_s", i_figures.velocity},
                           {"punch_acceleration_m_per_s2", i_figures.acceleration},
                           {"ramp_time_s", i_figures.rampTime},
                           {"plateau_time_s", i_figures.plateauTime},
                           {"end_time_s", i_figures.endTime},
                           {"binder_close_time_s", i_figures.binderCloseTime},
                           {"adapt_frequency_s", i_figures.adaptFrequency},
                           {"adaptivity_level", i_figures.adaptivityLevel},
                           {"adapt_size_mm", i_figures.adaptSize},
                           {"mass_scaling_time_step_s", i_figures.massScalingTimeStep},
                           {"binder_force_N", i_figures.binderForce},
                           {"friction", i_figures.friction},
                           {"tool_offset_mm", i_figures.toolOffset},
                           {"greatest_blank_element_mm", i_figures.greatestElement},
                           {"least_blank_element_mm", i_figures.leastElement},
                           {"outputs", nlohmann::json::array()},
                           {"meshes", nlohmann::json::array()},
                           {"remarks", i_figures.remarks},
                           {"files", i_figures.files}};
    for (auto const & [keyword, reason] : i_figures.openDeck)
        json["open_solver_deck"].push_back({{"keyword", keyword}, {"reason", reason}});
    for (IncrementalOutput const & output : i_figures.outputs)
        json["outputs"].push_back({{"position_percent", output.position}, {"time_s", output.time}});
    for (IncrementalMesh const & mesh : i_figures.meshes)
        json["meshes"].push_back(
            {{"role", mesh.role}, {"origin", mesh.origin}, {"nodes", mesh.nodes}, {"elements", mesh.elements}});
    return json;
}

nlohmann::json JsonOf(ImportedStep const & i_step)
{
    return {{"step", i_step.step},
            {"steps", i_step.steps},
            {"position_percent", i_step.output.position},
            {"time_s", i_step.output.time}};
}
} // namespace

std::vector<std::vector<std::string>> ProcessNumbers(IncrementalFigures const & f)
{
    std::vector<std::vector<std::string>> rows = {
        {"Settings", SettingsName(f)},
        {"Stroke of the punch", Fixed(f.stroke, 3) + " mm"},
        {"Gap from punch to die at the start", Fixed(f.leastGap, 3) + " to " + Fixed(f.greatestGap, 3) + " mm"},
        {"Velocity of the punch", Fixed(f.velocity, 3) + " m/s"},
        {"Acceleration of the punch", Fixed(f.acceleration, 1) + " m/s2"},
        {"Time to reach the velocity", Milliseconds(f.rampTime)},
        {"Time at the velocity", Milliseconds(f.plateauTime)},
        {"End of the simulation", Milliseconds(f.endTime)},
        {"Binder and pads at their full force", Milliseconds(f.binderCloseTime)},
        {"Binder force", f.binderForce > 0.0 ? Fixed(f.binderForce / 1000.0, 3) + " kN" : "no binder"},
        {"Friction of all tools", Fixed(f.friction, 4)},
        {"Offset of punch and binder in contact", Fixed(f.toolOffset, 3) + " mm"},
        {"Elements of the blank", Fixed(f.leastElement, 3) + " to " + Fixed(f.greatestElement, 3) + " mm"},
        {"Levels of refinement, the mesh itself the first", std::to_string(f.adaptivityLevel)},
        {"Smallest element of refinement", Fixed(f.adaptSize, 3) + " mm"},
        {"Time between refinements", Milliseconds(f.adaptFrequency)},
        {"Time step kept by mass scaling", Fixed(1e6 * f.massScalingTimeStep, 4) + " us"}};
    return rows;
}

std::vector<std::pair<std::string, std::string>> IncrementalRows(Outcome const & i_outcome)
{
    std::vector<std::pair<std::string, std::string>> rows;
    if (i_outcome.incremental)
    {
        IncrementalFigures const & f = *i_outcome.incremental;
        rows.emplace_back("Deck", "for an LS-DYNA solver, settings: " + SettingsName(f));
        rows.emplace_back("Stroke", Fixed(f.stroke, 3) + " mm at " + Fixed(f.velocity, 2) + " m/s, " +
                                        Milliseconds(f.endTime) + ", " + std::to_string(f.outputs.size()) +
                                        " output states");
        rows.emplace_back("Binder", f.binderForce > 0.0 ? Fixed(f.binderForce / 1000.0, 3) + " kN" : "none");
        for (IncrementalMesh const & mesh : f.meshes)
            rows.emplace_back("Mesh of the " + mesh.role, mesh.origin + ": " + std::to_string(mesh.nodes) + " nodes, " +
                                                              std::to_string(mesh.elements) + " elements");
    }
    if (i_outcome.imported)
    {
        ImportedStep const & imported = *i_outcome.imported;
        std::string const time = imported.output.time > 0.0 || imported.step == 0
                                     ? ": " + Milliseconds(imported.output.time) + ", " +
                                           Fixed(imported.output.position, 1) + " % of the stroke"
                                     : "";
        rows.emplace_back("Step",
                          std::to_string(imported.step) + " of 0 to " + std::to_string(imported.steps - 1) + time);
    }
    return rows;
}

nlohmann::json IncrementalJson(Outcome const & i_outcome)
{
    nlohmann::json json = nlohmann::json::object();
    if (i_outcome.incremental)
        json["incremental"] = JsonOf(*i_outcome.incremental);
    if (i_outcome.imported)
        json["imported"] = JsonOf(*i_outcome.imported);
    for (Outcome const & step : i_outcome.steps)
        if (step.imported)
        {
            nlohmann::json row = JsonOf(*step.imported);
            row["nodes"] = step.nodes.size();
            row["elements"] = step.elements.size();
            row["least_thickness_mm"] = step.summary.leastThickness;
            row["share_failed"] = step.summary.safetyShare[1];
            json["steps"].push_back(std::move(row));
        }
    return json;
}

} // namespace voz::workbench
