// SolverText.h: the text that the file route reads: positions, thickness, strains, stress, punch force.
//
// The format stands in docs/solver-program.md. Numbers have 17 digits; no line reaches 254 characters.

#ifndef SOLVERTEXT_H
#define SOLVERTEXT_H

#include "DeckReader.h"

#include <stdexcept>
#include <string>
#include <string_view>

struct VOZMultiStageSolverIOData_s;

namespace voz::deck
{

// The solver's records hold no usable result; the text says which.
class ResultError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The text cannot be written; names path and reason.
class WriteError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

std::string ResultText(Deck const & i_deck, VOZMultiStageSolverIOData_s const & i_data); // throws ResultError

// The shape after springback: i_padXYZ holds 3 per node of the deck, metres, stamping frame. Throws ResultError.
std::string ShapeText(Deck const & i_deck, double const * i_padXYZ);

// Writes under "<path>.part" and renames: nothing half written ever stands under the path. Throws WriteError.
void CommitText(std::string const & i_path, std::string_view i_text);

} // namespace voz::deck

#endif
