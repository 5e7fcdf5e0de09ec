// Version.h: what this build is made of.

#ifndef WORKBENCH_VERSION_H
#define WORKBENCH_VERSION_H

#include <string>
#include <utility>
#include <vector>

namespace voz::workbench
{

extern char const * const kVersion;  // "0.1.0"
extern char const * const kCommit;   // of the sources when the build was configured; empty if it is not known
extern char const * const kCompiler; // "GNU 12.2.0"

// The libraries within, by name and version.
std::vector<std::pair<std::string, std::string>> LibraryVersions();

} // namespace voz::workbench

#endif
