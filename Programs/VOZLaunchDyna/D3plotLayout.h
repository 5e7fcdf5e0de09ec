// D3plotLayout.h: what the control words of a root say: the width of its words and where everything stands.
//
// Behind 64 control words (and EXTRA more) come, as far as there is any of each: the material types (NUMRBE, NUMMAT, a
// type per material), the fluids' materials, the first coordinates, the solids, thick shells, beams and shells with
// their materials, the user's labels, the parents of adapted elements, the further nodes of elements of higher order;
// then the titles behind a mark of the end, and the states. A state is: its time, the global values, the nodes' values
// (coordinates first), the values of solids, thick shells, beams and shells, the table of deletions.
//
// Shells of rigid materials (type 20) have no values in the states where the material types are given.
//
// All offsets are in words. Every count is held against the words that the files have, before anything is made of it.

#ifndef D3PLOTLAYOUT_H
#define D3PLOTLAYOUT_H

#include "D3plotFamily.h"

namespace voz::launch
{
struct D3plotLayout
{
    static constexpr std::int64_t kNone = -1;

    WordFormat format;
    std::int64_t numNodes = 0;
    std::int64_t numShells = 0;
    std::int64_t numRigidShells = 0; // of numShells: without values in the states
    std::int64_t numMaterials = 0;   // of the labels
    std::int64_t numTypes = 0;       // of the material types; 0 if they are not given

    // From the root's first word.
    std::int64_t typesAt = kNone;       // one per material, numTypes of them
    std::int64_t coordinatesAt = kNone; // 3 per node
    std::int64_t shellsAt = kNone;      // 5 per shell: nodes, material, all from 1
    std::int64_t nodeLabelsAt = kNone;  // kNone: the places from 1 are the labels
    std::int64_t shellLabelsAt = kNone;
    std::int64_t partsAt = kNone; // twice numMaterials: the part labels ascending, and in the order of the materials
    std::int64_t geometryEnd = 0;

    // From a state's first word.
    std::int64_t stateWords = 0;
    std::int64_t nodesInState = kNone;    // 3 per node, where they are now; kNone: the shape does not change
    std::int64_t shellsInState = kNone;   // shellWords per shell that is not rigid
    std::int64_t deletionInState = kNone; // one per shell, or per node: 0 is deleted
    bool isDeletionByNode = false;

    // From a shell's first word in a state.
    std::int64_t shellWords = 0;
    std::int64_t numLayers = 0;    // points through the thickness: mid, inner, outer, further ones
    std::int64_t layerWords = 0;   // of a point: six stresses first
    std::int64_t strainAt = kNone; // six of the inner surface, six of the outer one
    bool hasStress = false;
};

// Finds width and order of the words and reads the layout. Throws ResultsError for a file that is no d3plot, is too
// short for its geometry, or holds what is not known here (particles, road surfaces, rigid bodies' own states).
D3plotLayout ReadLayout(WordReader & io_reader);
} // namespace voz::launch

#endif
