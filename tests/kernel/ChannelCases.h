// ChannelCases.h: the hat channel in plane strain.

#ifndef CHANNELCASES_H
#define CHANNELCASES_H

#include "OneStepProblems.h"

namespace onesteptest
{

constexpr double kWidth = 10.0;
constexpr int kRowsPerArc = 12;

inline double facetLength(std::vector<Point2> const & points)
{
    double length = 0.0;
    for (std::size_t i = 1; i < points.size(); ++i)
        length += std::hypot(points[i][0] - points[i - 1][0], points[i][1] - points[i - 1][1]);
    return length;
}

struct Channel
{
    SurfaceMesh mesh;
    Problem problem;
    double profileLength; // of the facets
};

// Half a channel: symmetry at x = 0, plane strain between y = 0 and y = width, force at the far end.
inline Channel channel(double force, Cells cells, int rowsPerArc = kRowsPerArc)
{
    Hat const hat;
    SurfaceMesh const mesh = halfHat(hat, kWidth, rowsPerArc, 2, cells);
    Channel result{mesh, problemOf(mesh, mildSteel()), facetLength(halfProfile(hat, rowsPerArc).points())};
    double const end = mesh.nodes.back()[0];
    hold(result.problem, mesh, onPlaneX, 0.0);
    hold(
        result.problem, mesh, [](Point3 const & p) { return p[1] == 0.0 || p[1] == kWidth; }, kHalfPi);
    restrain(result.problem, mesh, force, [end](Point3 const & p) { return p[0] == end; });
    return result;
}

} // namespace onesteptest

#endif
