// BlankMesh.h: the blank's shells in one root of the results.
//
// The blank is the part with one label; all else is tools. Nodes and shells stand in ascending order of their labels,
// so that an unrefined blank keeps the order that it has in the deck.

#ifndef BLANKMESH_H
#define BLANKMESH_H

#include "D3plotLayout.h"

#include <array>

namespace voz::launch
{
struct BlankMesh
{
    struct Shell
    {
        std::int64_t place = 0;      // among all shells of the root, from 0
        std::int64_t row = 0;        // among those with values in the states, from 0
        std::array<int, 4> corner{}; // index in nodes; a triangle's last is -1
    };

    std::vector<std::int64_t> nodes; // places in the root's table of nodes, from 0
    std::vector<Shell> shells;
};

// Throws ResultsError if the root has no shells of that part, or connects nodes that it does not have.
BlankMesh ReadBlankMesh(WordReader & io_reader, D3plotLayout const & i_layout, int i_part);
} // namespace voz::launch

#endif
