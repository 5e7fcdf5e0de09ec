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

// What is possible but unusual, as warnings that name the number and the usual range.
void CheckSense(Job const & i_job, std::vector<std::string> & io_warnings);

// i_path as it stands if it is absolute or empty, else from i_folder.
std::string FromFolder(std::string const & i_folder, std::string const & i_path);

} // namespace voz::workbench

#endif
