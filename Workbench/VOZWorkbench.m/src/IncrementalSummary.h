// IncrementalSummary.h: the figures of a deck and of imported steps, for people and for scripts.

#ifndef INCREMENTALSUMMARY_H
#define INCREMENTALSUMMARY_H

#include "Outcome.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

namespace voz::workbench
{

// Names and values, with units. Empty for an outcome of another route.
std::vector<std::pair<std::string, std::string>> IncrementalRows(Outcome const & i_outcome);

// The process numbers, each with its unit, as the report lists them: name, value.
std::vector<std::vector<std::string>> ProcessNumbers(IncrementalFigures const & i_figures);

// Keys "incremental", "imported" and "steps", as far as the outcome has them; units in their names.
nlohmann::json IncrementalJson(Outcome const & i_outcome);

} // namespace voz::workbench

#endif
