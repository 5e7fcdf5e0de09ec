// MaterialDatabase.h: the material database as the workbench shows it: mm and MPa in place of the kernel's m and Pa.

#ifndef MATERIALDATABASE_H
#define MATERIALDATABASE_H

#include "Job.h"

#include <string>
#include <vector>

namespace voz::workbench
{

struct DatabaseMaterial
{
    JobMaterial material;
    std::string group; // "mild steel"
};

// The folder or file of the installation in force; empty if there is no installation.
std::string DefaultDatabase();

// All materials, in the order of the database. Throws InputError, with the reader's own words, if it cannot be read.
std::vector<DatabaseMaterial> ReadDatabase(std::string const & i_path);

// The material of that name. Throws InputError, with the nearest name, if i_path has none.
DatabaseMaterial const & FindMaterial(std::vector<DatabaseMaterial> const & i_database, std::string const & i_name,
                                      std::string const & i_path);

} // namespace voz::workbench

#endif
