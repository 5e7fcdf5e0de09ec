// CATEnvironment.h: environment values and folders of the host.

#ifndef CATENVIRONMENT_H
#define CATENVIRONMENT_H

#include "ExportedByVOZPlatform.h"

// The value, valid until the next call on this thread; null if it is not set.
ExportedByVOZPlatform char const * CATGetEnv(char const * i_name);

// The value in newly allocated text, which the caller frees with free(). 0, or -1 with *o_value null if it is not set.
ExportedByVOZPlatform int CATGetEnvValue(char const * i_name, char ** o_value);

// An open folder. Paths are UTF-8, with a slash or a backslash between folders. Operations return 0 or -1.
class CATDirectory;
ExportedByVOZPlatform int CATOpenDirectory(char const * i_path, CATDirectory ** o_directory); // -1: *o_directory null
ExportedByVOZPlatform int CATCloseDirectory(CATDirectory * i_directory);                      // -1 for null
ExportedByVOZPlatform int CATCreateDirectory(char const * i_path); // one level; -1 if it stands or cannot be made

#endif
