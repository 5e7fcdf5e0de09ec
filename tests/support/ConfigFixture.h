// ConfigFixture.h: a test with an install root of its own, whose configuration file it writes.

#ifndef CONFIGFIXTURE_H
#define CONFIGFIXTURE_H

#include "HostFixture.h"
#include "TempFolder.h"

#include <string>

class ConfigFixture : public HostFixture
{
protected:
    ConfigFixture() { host.environment["VOZDRAVO3D"] = root.Path(); }

    // Byte for byte; the path of the file.
    std::string config(std::string const & text) const { return root.Write("config.cfg", text); }

    TempFolder root;
};

#endif
