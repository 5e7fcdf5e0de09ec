// DeckChecks.h: whether a deck for an explicit solver holds together, by its numbers and by its text.

#ifndef DECKCHECKS_H
#define DECKCHECKS_H

#include "Outcome.h"

#include <string>
#include <vector>

namespace voz::workbench
{

struct GapFigures // mm, from the punch to the die along z
{
    double least = 0.0;
    double greatest = 0.0;
};

// Throws InputError where the two nowhere lie above each other.
GapFigures GapOf(VOZCatMesh const & i_punch, VOZCatMesh const & i_die);

// i_folder: the deck's. Throws OutputError where the deck, or a mesh that it includes, is missing or does not end with
// *END, as a full disk leaves it.
void RequireWholeDeck(std::string const & i_folder);

// i_wantsBinder: the job has a holder's force. i_folder: the deck's. Fills the names of its files.
std::vector<OutcomeCheck> CheckDeck(IncrementalFigures & io_figures, bool i_wantsBinder, std::string const & i_folder);

} // namespace voz::workbench

#endif
