// HoleMemory.h: hole filling with its memory functions given, so that each of its failures can be brought about.

#ifndef HOLEMEMORY_H
#define HOLEMEMORY_H

#include <cstddef>
#include <cstdlib>

struct HoleMemory
{
    void * (*allocate)(std::size_t i_count, std::size_t i_size) = std::calloc;
    void * (*grow)(void * i_old, std::size_t i_size) = std::realloc;
};

// As the operations without the last argument, which take the C library's own functions.
int FillAllHoles(int & io_numNode, double (**io_nodes)[3], int & io_numElem, int (**io_elems)[4],
                 HoleMemory const & i_memory);
int MeshBoundaryWire(int * io_numPoint, int ** io_ids, float (**io_coords)[3], int * io_nextId, int * o_numFace,
                     int (**o_faces)[4], int i_maxLevel, HoleMemory const & i_memory);

#endif
