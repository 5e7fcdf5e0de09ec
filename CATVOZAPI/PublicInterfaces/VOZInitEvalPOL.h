// VOZInitEvalPOL.h: the offset of a closed polyline.

#ifndef VOZINITEVALPOL_H
#define VOZINITEVALPOL_H

#include "ExportedByVOZAPINew.h"

// The closed polyline of io_nCount points (3 coordinates each, in order, the last not repeating the first), moved
// outward by i_dOffset in the plane normal to i_padAverageNormal; i_padNormals holds the surface's normal at each
// point. Convex corners get an arc or a mitre, concave ones no self-crossing. i_dMinEdge is the least edge length and
// i_dMinAngle the least corner angle (radians) of the answer, 0 for the function's own choice.
//
// Returns a new array of 3 * io_nCount coordinates with io_nCount set anew; the caller frees it with delete[]. Null,
// with the count 0, where there is no offset polyline (fewer than 3 points, a value that is no finite number).
ExportedByVOZAPINew double * VOZInitEvalPOLNew(int & io_nCount, double * i_padPoints, double * i_padNormals,
                                               double const * i_padAverageNormal, double i_dOffset, double i_dMinEdge,
                                               double i_dMinAngle);

#endif
