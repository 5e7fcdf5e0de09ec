// StateIndex.h: where the states of a family stand and when they are, found without reading their values.

#ifndef STATEINDEX_H
#define STATEINDEX_H

#include "D3plotLayout.h"

namespace voz::launch
{
struct StateEntry
{
    double time = 0.0; // s
    std::size_t root = 0;
    Place place; // the state's first word
};

// What stops short is told in o_notes, a line each; the whole states ahead of it are listed.
struct StateIndex
{
    std::vector<D3plotLayout> layouts; // one per root that could be read, in order
    std::vector<FamilyRoot> roots;     // the same
    std::vector<StateEntry> states;    // in the order of the run
};

// O(states). A state is taken for whole if all its words are there. Times must not fall within a root.
StateIndex IndexStates(std::filesystem::path const & i_folder, std::vector<std::string> & o_notes);
} // namespace voz::launch

#endif
