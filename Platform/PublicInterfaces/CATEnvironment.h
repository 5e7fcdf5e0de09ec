// CATEnvironment.h: environment values and folders of the host.

#ifndef CATENVIRONMENT_H
#define CATENVIRONMENT_H

#include "ExportedByVOZPlatform.h"

// The value, valid until the next call on this thread; null if it is not set.
ExportedByVOZPlatform char const * CATGetEnv(char const * i_name);

// The value in newly allocated text, which the caller frees with free(). 0, or -1 with *o_value null if it is not set.
ExportedByVOZPlatform int CATGetEnvValue(char const * i_name, char ** o_value);

#endif
