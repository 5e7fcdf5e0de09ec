// RouteParts.h: what the routes share: the environment of a run, its files, and the part of the outcome that does not
// depend on the route.

#ifndef ROUTEPARTS_H
#define ROUTEPARTS_H

#include "Route.h"

#include "VOZHost.h"

#include <map>

namespace voz::workbench
{

// The host in force, with the route's folder for an install root, a folder for the kernel's files, the job's steps of
// the stroke, and without a document: the settings of the job are all that counts.
class RouteHost : public VOZHost
{
public:
    RouteHost(std::string i_root, std::string i_files, int i_steps)
        : mValues{{"VOZDRAVO3D", std::move(i_root)},
                  {"CATTemp", std::move(i_files)},
                  {"VOZStrokeSteps", std::to_string(i_steps)}},
          mOuter(VOZHost::Current())
    {
        Install(this);
    }
    ~RouteHost() override { Install(&mOuter); }
    RouteHost(RouteHost const &) = delete;
    RouteHost & operator=(RouteHost const &) = delete;

    std::optional<std::string> EnvironmentValue(std::string const & i_name) override
    {
        if (auto const own = mValues.find(i_name); own != mValues.end())
            return own->second;
        return mOuter.EnvironmentValue(i_name);
    }
    std::shared_ptr<VOZHostDocument> CurrentDocument() override { return nullptr; }
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override
    {
        mOuter.BrokenContract(i_text, i_file, i_line);
    }

protected:
    void Set(std::string const & i_name, std::string const & i_value) { mValues[i_name] = i_value; }

private:
    std::map<std::string, std::string> mValues;
    VOZHost & mOuter;
};

constexpr char const * kConfiguration = "config.cfg";

std::string InFolder(std::string const & i_folder, char const * i_name);
void WriteText(std::string const & i_path, std::string const & i_text); // throws OutputError
std::string TextIfThere(std::string const & i_path);
std::string LastLines(std::string const & i_text, int i_count); // without the closing line feed

// Tests that hold for a route's folder whatever the route: throws InputError. i_route: "file".
void CheckFolderPath(std::string const & i_folder, std::string const & i_route);
[[noreturn]] void RefuseFolder(std::string const & i_folder, std::string const & i_route, std::string const & i_reason);

// A solver's log without its times, which differ from run to run.
std::string WithoutTimes(std::string const & i_log);

// What a solver says of its own solve in a summary of lines with a name and a value.
std::vector<OutcomeCheck> SolverChecks(std::string const & i_summary);

// Title, part, frame, material, limit, undercuts.
void FillHead(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Outcome & o_outcome);

// Far below any yielding the signs of the strains are rounding and would scatter over all zones: such a pair counts as
// (0, 0), plane strain and safe.
void SettleZones(double i_major, double i_minor, int & io_safety, int & io_forming);

// Place in the flat blank, stamping frame, of a node that moves by i_displacement (global).
Point3 FlatPlace(double const * i_node, Point3 const & i_displacement, VOZCatAxis const & i_frame);

// The strain through the thickness from the two in the sheet, constant volume; percent all three.
double ThicknessStrain(FormingLimit const & i_limit, double i_major, double i_minor);

} // namespace voz::workbench

#endif
