// JobParts.h: the parts of reading a job that stand in sources of their own.

#ifndef JOBPARTS_H
#define JOBPARTS_H

#include "Job.h"
#include "JobTable.h"

#include <string>

namespace voz::workbench
{

// The tables "material": from the database, inline, or the one with changes of the other.
void ReadMaterials(JobTable & io_root, Job & io_job);

// Turns the points of a measured curve into log plastic strain and true stress; refuses one that is no curve.
void ReadCurve(JobTable & io_curve, JobMaterial & io_material);

// Holders, beads, pads and constraints.
void ReadActions(JobTable & io_root, Job & io_job);

// The tables "binder", "auto_strain", "springback" and "tube".
void ReadModes(JobTable & io_root, Job & io_job);

// The table "incremental".
void ReadIncremental(JobTable & io_root, Job & io_job);

// Set, ids (under i_idsKey) and box of a table; refuses one that selects nothing.
JobSelection ReadSelection(JobTable & io_table, std::string const & i_idsKey);

double ReadLengthUnit(JobTable & io_table); // "length_unit": mm per unit, 0 where the key is missing
double NotNegative(JobTable const & i_table, std::string const & i_key, double i_value); // i_value, or refuses

// What is possible but unusual, as warnings that name the number and the usual range.
void CheckSense(Job const & i_job, std::vector<std::string> & io_warnings);

// i_path as it stands if it is absolute or empty, else from i_folder.
std::string FromFolder(std::string const & i_folder, std::string const & i_path);

} // namespace voz::workbench

#endif
