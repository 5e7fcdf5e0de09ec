// FlatGeometry.h: plane polygons: area, perimeter, extent, hull, smallest enclosing rectangle. Closed loops without a
// repeated end.

#ifndef FLATGEOMETRY_H
#define FLATGEOMETRY_H

#include <array>
#include <utility>
#include <vector>

namespace voz::workbench
{

using Point2 = std::array<double, 2>;

double SignedArea(std::vector<Point2> const & i_loop); // positive counter-clockwise
double Perimeter(std::vector<Point2> const & i_loop);
std::pair<double, double> Extent(std::vector<Point2> const & i_points, int i_axis); // least, greatest; 0, 0 of nothing
std::vector<Point2> ConvexHull(std::vector<Point2> i_points); // counter-clockwise, without collinear points

// Long side, short side, and the angle of the long side to x in degrees, within [0, 180). One side of the smallest
// rectangle lies on the hull: H. Freeman, R. Shapira, Commun. ACM 18 (1975) 409.
std::array<double, 3> SmallestRectangle(std::vector<Point2> const & i_points);

} // namespace voz::workbench

#endif
