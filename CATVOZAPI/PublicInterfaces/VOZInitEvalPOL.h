// VOZInitEvalPOL.h: the offset of a closed polyline.

#ifndef VOZINITEVALPOL_H
#define VOZINITEVALPOL_H

#include "ExportedByVOZAPINew.h"

// The closed polyline of io_nCount points (3 coordinates each, in order, the last not repeating the first), moved
// outward, away from the area that it encloses, by i_dOffset in the plane normal to i_padAverageNormal; across that
// plane a point keeps the height of the one that it comes from. i_padNormals holds the surface's normal at each point.
//
// The answer is the outer boundary of all that lies inside the line or within i_dOffset of it: no point of it is nearer
// than that, and it meets itself nowhere; a slot narrower than twice the offset is closed. A convex corner is a mitre
// or a chain of tangents to its arc, each of which turns by at least i_dMinAngle (radians; 0: 15 degrees). Edges
// shorter than i_dMinEdge (0: a thousandth of the offset) are merged with their neighbours where that keeps the
// distance. It runs in the sense of the line given, whatever that is. Quadratic in the points.
//
// Returns a new array of 3 * io_nCount coordinates with io_nCount set anew; the caller frees it with delete[]. Null,
// with the count 0, where there is no offset polyline: fewer than 3 distinct points, a null pointer, a value that is no
// finite number, an average normal of no length, an offset that is not above 0, a line that crosses itself so that no
// line lies outside it at that distance.
ExportedByVOZAPINew double * VOZInitEvalPOLNew(int & io_nCount, double * i_padPoints, double * i_padNormals,
                                               double const * i_padAverageNormal, double i_dOffset, double i_dMinEdge,
                                               double i_dMinAngle);

#endif
