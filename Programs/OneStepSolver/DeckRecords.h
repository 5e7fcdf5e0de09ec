// DeckRecords.h: from a deck to the kernel's records, in metres, newtons and pascals.
//
// The deck stands in the stamping frame, so the stage's frame is the identity. See docs/deck.md for what each field
// becomes.

#ifndef DECKRECORDS_H
#define DECKRECORDS_H

#include "DeckReader.h"
#include "SolverSettings.h"

#include "VOZMultiStageSolverIOData.h"

#include <memory>

namespace voz::deck
{

// The records of one job with one stage, ready to be solved. Throws DeckError, with the line, for rows that contradict
// one another.
std::unique_ptr<VOZMultiStageSolverIOData_s> MakeRecords(Deck const & i_deck, SolverSettings const & i_settings);

// The index of an element's material in the records, and the record of the deck behind it.
int MaterialOf(Deck const & i_deck, Element const & i_element); // -1 if no record has that number

} // namespace voz::deck

#endif
