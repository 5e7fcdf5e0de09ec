// FormedSurface.h: the surface of the finished part, to bring nodes back on it that have slid along chords.

#ifndef FORMEDSURFACE_H
#define FORMEDSURFACE_H

#include "onestep/Piece.h"

#include <set>
#include <utility>

namespace voz::multistep
{

class FormedSurface
{
public:
    explicit FormedSurface(onestep::Piece const & i_piece); // outlives this

    // The nearest point of the surface, for a point that lies about an element's size or less away from it. A point
    // beyond the rim, and one that is farther away, stays as it is: the surface goes on there as the sheet does.
    geometry::Vec3 nearest(geometry::Vec3 i_point) const;

private:
    struct Foot // nearest point of a triangle
    {
        geometry::Vec3 point;
        double square; // of the distance
        bool onRim;
    };
    void layGrid();
    std::array<int, 3> box(geometry::Vec3 i_point) const;
    std::size_t index(int i_x, int i_y, int i_z) const;
    Foot footOn(int i_triangle, geometry::Vec3 i_point) const;

    onestep::Piece const & m_piece;
    std::vector<std::array<int, 3>> m_triangles;
    std::set<std::pair<int, int>> m_rim; // sides, lesser node first
    std::vector<bool> m_onRim;           // per node
    geometry::Vec3 m_corner;             // of the grid
    double m_width = 0.0;                // of a box
    std::array<int, 3> m_count{1, 1, 1};
    std::vector<std::vector<int>> m_boxes; // triangles
};

} // namespace voz::multistep

#endif
