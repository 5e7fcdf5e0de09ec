// Verbs.h: the verbs of the command. Each adds its options to the application and, once parsed, does its work.

#ifndef VERBS_H
#define VERBS_H

#include <CLI/CLI.hpp>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

using Action = std::function<int()>; // returns the exit code

// Each sets io_action when its verb was chosen.
void AddRun(CLI::App & io_app, Action & io_action);
void AddCheck(CLI::App & io_app, Action & io_action);
void AddExplain(CLI::App & io_app, Action & io_action);
void AddImport(CLI::App & io_app, Action & io_action);
void AddInspect(CLI::App & io_app, Action & io_action);
void AddConvert(CLI::App & io_app, Action & io_action);
void AddMaterials(CLI::App & io_app, Action & io_action);
void AddInit(CLI::App & io_app, Action & io_action);
void AddCompletion(CLI::App & io_app, Action & io_action);
int ShowVersion(bool i_asJson);

// JSON as the command prints it: indented, one line feed at the end, texts that are no UTF-8 mended.
void PrintJson(nlohmann::json const & i_json);

// Refuses to replace a file unless it is forced. Throws OutputError.
void ProtectFile(std::string const & i_path, bool i_isForced);

#endif
