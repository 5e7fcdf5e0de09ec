#include "SolverSearch.h"

#include "CATEnvironment.h"
#include "VOZCatConfigPaser.h"
#include "VOZTemplatePath.h"

#include <filesystem>
#include <string_view>

namespace voz::launch
{
namespace
{
constexpr char kVariable[] = "VOZDynaSolver";
constexpr char kKey[] = "DynaSolver";
constexpr std::size_t kValueSize = 256; // of an entry of the configuration

// Those of a system without a drive "C:" are not there on one with it, and the other way round.
constexpr char const * kUsualFolders[] = {
    "/opt/ls-dyna",
    "/opt/ls-dyna/bin",
    "/opt/lsdyna",
    "/opt/lsdyna/bin",
    "/opt/lstc",
    "/opt/lstc/bin",
    "/usr/local/bin",
    "C:/LSDYNA",
    "C:/LSDYNA/program",
    "C:/LSTC",
    "C:/LSTC/program",
    "C:/Program Files/LSTC",
    "C:/Program Files/LSTC/LS-DYNA",
};
constexpr char const * kNames[] = {"ls-dyna",   "lsdyna",    "ls-dyna_smp_d", "ls-dyna_smp_s", "ls-dyna_d",
                                   "ls-dyna_s", "lsdyna_dp", "lsdyna_sp",     "lsdyna_d",      "lsdyna_s"};

bool isFile(std::filesystem::path const & path)
{
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

// With the suffix of programs where only that is there.
std::optional<std::string> programAt(std::filesystem::path const & path)
{
    if (isFile(path))
        return path.string();
    std::filesystem::path const withSuffix = path.string() + ".exe";
    return isFile(withSuffix) ? std::optional<std::string>(withSuffix.string()) : std::nullopt;
}

// The whole text if that is a file, else what stands in quotes or ahead of the first blank.
std::optional<Solver> fromSetting(std::string const & setting)
{
    if (auto const whole = programAt(setting))
        return Solver{*whole, ""};
    bool const isQuoted = setting.front() == '"';
    std::string_view const rest = std::string_view(setting).substr(isQuoted ? 1 : 0);
    std::size_t const end = rest.find(isQuoted ? '"' : ' ');
    auto const program = programAt(std::string(rest.substr(0, end)));
    if (!program)
        return std::nullopt;
    std::string_view arguments = end == std::string_view::npos ? "" : rest.substr(end + 1);
    while (!arguments.empty() && arguments.front() == ' ')
        arguments.remove_prefix(1);
    return Solver{*program, std::string(arguments)};
}

std::vector<std::string> searchedFolders()
{
    std::vector<std::string> folders(std::begin(kUsualFolders), std::end(kUsualFolders));
    char const separator = std::filesystem::path::preferred_separator == '\\' ? ';' : ':';
    char const * const path = CATGetEnv("PATH");
    std::string_view rest = path != nullptr ? path : "";
    while (!rest.empty())
    {
        std::size_t const end = std::min(rest.find(separator), rest.size());
        if (end > 0)
            folders.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return folders;
}
} // namespace

SolverSearch ReadSettings()
{
    SolverSearch search;
    if (char const * const value = CATGetEnv(kVariable))
        search.variable = value;
    char config[VOZTemplatePath::kPathSize] = "";
    if (VOZTemplatePath::GetConfigPath(config) == 0)
    {
        search.configFile = config;
        VOZCatConfigPaser parser(config);
        char key[sizeof(kKey)];
        std::copy(std::begin(kKey), std::end(kKey), key);
        char value[kValueSize] = "";
        if (parser.ReadAndPaser() == 0 && parser.GetString(key, value) >= 0)
            search.configuration = value;
    }
    search.folders = searchedFolders();
    return search;
}

std::optional<Solver> FindSolver(SolverSearch const & i_search, std::string & o_message)
{
    std::string const configFile = i_search.configFile.empty() ? "config.cfg" : i_search.configFile;
    for (auto const & [setting, where] : {std::pair(i_search.variable, std::string("the variable ") + kVariable),
                                          std::pair(i_search.configuration, std::string(kKey) + " of " + configFile)})
    {
        if (setting.empty())
            continue;
        auto solver = fromSetting(setting);
        if (!solver)
            o_message = where + " names \"" + setting + "\", which is no file; set it to the path of the solver";
        return solver;
    }
    for (std::string const & folder : i_search.folders)
        for (char const * const name : kNames)
            if (auto const program = programAt(std::filesystem::path(folder) / name))
                return Solver{*program, ""};
    o_message = std::string("no LS-DYNA solver was found; set the variable ") + kVariable + ", or " + kKey + " in " +
                configFile + ", to its path";
    return std::nullopt;
}
} // namespace voz::launch
