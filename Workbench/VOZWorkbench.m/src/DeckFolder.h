// DeckFolder.h: the folder of a deck for an explicit solver, and the library's environment in it.
//
// The folder holds what the library reads besides the meshes: the job's limits (config.cfg), its material as a database
// of one (materials.xml), and the settings database (Increment), so that a later import finds what the deck was made
// with. The deck's own files: inputls.dyn, a .mod file per mesh; the launcher's: output.voz, launch.status, launch.log.

#ifndef DECKFOLDER_H
#define DECKFOLDER_H

#include "OpenSolverDeck.h"
#include "RouteParts.h"

#include <string>
#include <vector>

namespace voz::workbench
{

constexpr char const * kDeckFile = "inputls.dyn";
constexpr char const * kRecordsFile = "output.voz";

// Writes config.cfg, materials.xml and Increment. Throws OutputError; InputError for a material that no database can
// hold.
void PrepareDeckFolder(Job const & i_job, std::string const & i_folder);

// The material database of a job, as a text.
std::string MaterialDatabaseText(Job const & i_job);

// Refuses a template that the settings database of the installation does not have, with the names that it has, and one
// with fewer than three output points. Throws InputError.
void CheckTemplate(Job const & i_job);

// The table of the job, or its defaults.
JobIncremental IncrementalOf(Job const & i_job);

// The library's environment in that folder.
class DeckHost : public RouteHost
{
public:
    explicit DeckHost(std::string const & i_folder);
};

// The library's driver, whose numbers are read behind its run.
class DeckSolver : public OpenDeckSolver
{
public:
    explicit DeckSolver(Job const & i_job); // takes the template

    long FindFolder(); // settings and working folder, for a launch or an import without a run
    IncrementalFigures Figures() const;
};

} // namespace voz::workbench

#endif
