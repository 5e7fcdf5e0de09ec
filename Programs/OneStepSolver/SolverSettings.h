// SolverSettings.h: what the deck has no field for: "solver.cfg" in the folder that the program is given.
//
// Lines of the form key=value; empty lines and lines that begin with "#" count for nothing. All keys are optional, and
// so is the file. An unknown key, a key that comes twice and a value out of range are errors.

#ifndef SOLVERSETTINGS_H
#define SOLVERSETTINGS_H

#include <optional>
#include <string>
#include <string_view>

namespace voz::deck
{

struct SolverSettings
{
    double youngsModulus = 210.0e9; // Pa
    double poissonsRatio = 0.3;
    std::optional<bool> toolFriction; // not set: the deck's control flag says
    std::optional<int> steps;         // of the stroke, 1 to 3; not set: VOZStrokeSteps of the environment
};

// Throws DeckError.
SolverSettings ParseSettings(std::string const & i_name, std::string_view i_text);
SolverSettings ReadSettings(std::string const & i_path); // the defaults where there is no such file

} // namespace voz::deck

#endif
