// HostSettings.h: the method's settings that a host may ask for beside the job's records.

#ifndef HOSTSETTINGS_H
#define HOSTSETTINGS_H

#include "onestep/OneStep.h"

// The defaults, with what the host's environment asks for, read anew at each call:
//     VOZStrokeSteps   1, 2 or 3 steps of the stroke (OneStep.h); not set or empty: 1
// Throws JobError for any other value.
voz::onestep::Settings HostSettings();

#endif
