// VOZFile.h: the functions through which files are opened and removed.
//
// A backslash in the path is a separator on every system. A path with a drive letter ("C:...") is refused off Windows.
// A folder is refused when opened for reading. Null on failure, with errno set.

#ifndef VOZFILE_H
#define VOZFILE_H

#include "ExportedByVOZPlatform.h"

#include <cstdio>

ExportedByVOZPlatform std::FILE * VOZOpenFile(char const * i_path, char const * i_mode);
ExportedByVOZPlatform int VOZRemoveFile(char const * i_path); // 0, or -1; a folder is no file

#endif
