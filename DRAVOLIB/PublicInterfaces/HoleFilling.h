// HoleFilling.h: new triangles for the holes of a mesh, and for any closed wire of points.
//
// A patch begins as a star from the wire's centroid; its longest interior edge is split again and again, with edge
// flips and smoothing after each split, until interior edges are about as short as the wire's own, or the budget of
// rounds is used up. The wire's points stay where they are and keep their numbers.
//
// All arrays are C memory: malloc, calloc or realloc, and free. Not for two threads on one mesh.

#ifndef HOLEFILLING_H
#define HOLEFILLING_H

#include "ExportedByVOZDravo.h"

// Fills every free-edge loop of a mesh but the outer one, and makes the orientation of all elements agree.
//
// io_nodes: io_numNode rows of coordinates (mm), rows from 0; io_elems: io_numElem rows of node numbers from 1, a
// triangle as a, b, c, a. Both are grown by realloc. New nodes are numbered from the old io_numNode + 1 in the order of
// their creation, new triangles stand behind the old elements; no old node moves. A boundary that is no set of simple
// closed curves is not noticed: it is as one without holes.
//
// 0; or 1 if memory runs out or anything raises (a message goes to standard error; the holes that were filled until
// then stay), or if a count is negative or an array missing (nothing is touched).
ExportedByVOZDravo int FillAllHoles(int & io_numNode, double (**io_nodes)[3], int & io_numElem, int (**io_elems)[4]);

// Grows the patch of one closed wire.
//
// In: io_ids and io_coords hold io_numPoint (at least 3) points in order around the wire, rows from 0; io_nextId is
// the number of the first new point; i_maxLevel limits the rounds: there are at most i_maxLevel - 2 splits. Below 1 it
// stands for the number of points of the wire. Points that coincide or are not all finite: the star alone.
//
// Out: the given arrays are freed. io_numPoint, io_ids and io_coords hold the new points only: row k of io_coords
// belongs to the number io_nextId + k (its value on entry), while io_ids runs from the newest point to the oldest.
// io_nextId has grown by their count. o_faces has o_numFace + 1 rows, row 0 clear: three ids and the first again. The
// three arrays are the caller's, to be freed with free().
//
// 1; or 0 if memory runs out, a pointer is null or the wire has fewer than 3 points: io_numPoint and o_numFace are then
// 0 and o_faces null (where they can be reached), and the given arrays are as they were, still the caller's.
ExportedByVOZDravo int MeshBoundaryWire(int * io_numPoint, int ** io_ids, float (**io_coords)[3], int * io_nextId,
                                        int * o_numFace, int (**o_faces)[4], int i_maxLevel);

#endif
