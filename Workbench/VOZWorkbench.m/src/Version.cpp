// Version.cpp: what this build is made of.

#include "Version.h"

#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <toml++/toml.h>
#include <zlib.h>

namespace voz::workbench
{

char const * const kVersion = VOZ_VERSION;
char const * const kCommit = VOZ_COMMIT;
char const * const kCompiler = VOZ_COMPILER;

namespace
{
std::string Dotted(int i_major, int i_minor, int i_patch)
{
    return std::to_string(i_major) + "." + std::to_string(i_minor) + "." + std::to_string(i_patch);
}
} // namespace

std::vector<std::pair<std::string, std::string>> LibraryVersions()
{
    return {
        {"nlohmann-json",
         Dotted(NLOHMANN_JSON_VERSION_MAJOR, NLOHMANN_JSON_VERSION_MINOR, NLOHMANN_JSON_VERSION_PATCH)},
        {"pugixml", Dotted(PUGIXML_VERSION / 1000, PUGIXML_VERSION / 10 % 100, PUGIXML_VERSION % 10)},
        {"tomlplusplus", Dotted(TOML_LIB_MAJOR, TOML_LIB_MINOR, TOML_LIB_PATCH)},
        {"zlib", zlibVersion()},
    };
}

} // namespace voz::workbench
