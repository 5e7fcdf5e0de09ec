// FlatMap.h: a formed mesh as a map from its flat, continued beyond the rim.
//
//     x(X) on the mesh where X lies in its flat;  beyond the rim, with e the nearest point of the flat's boundary,
//     x(X) = x(e) + F(e) (X - e),   F: dx/dX, mean of the elements at the rim's nodes
//
// Material that the end of the stroke has drawn in lay beyond the rim before: the sheet goes on there as it ends.
// Metres, 0-based.

#ifndef FLATMAP_H
#define FLATMAP_H

#include "onestep/Piece.h"

#include <span>

namespace voz::multistep
{

// The cells as triangles, in order; a quadrilateral is cut from its first corner to its third.
std::vector<std::array<int, 3>> trianglesOf(geometry::SurfaceMesh const & i_mesh);

class FlatMap
{
public:
    // i_flat: of the piece's mesh, without folds. All outlive this.
    FlatMap(onestep::Piece const & i_piece, std::span<geometry::Vec2 const> i_flat);

    geometry::Vec3 position(geometry::Vec2 i_place) const;

private:
    struct Gradient // dx/dX: its columns
    {
        geometry::Vec3 first, second;
    };
    void layGradients();
    void layGrid();
    std::size_t box(geometry::Vec2 i_place) const;
    bool holds(int i_triangle, geometry::Vec2 i_place, std::array<double, 3> & o_share) const;
    geometry::Vec3 beyondRim(geometry::Vec2 i_place) const;

    onestep::Piece const & m_piece;
    std::span<geometry::Vec2 const> m_flat;
    std::vector<std::array<int, 3>> m_triangles;
    std::vector<Gradient> m_gradients; // per node
    geometry::Vec2 m_corner;           // of the grid
    double m_width = 0.0;              // of a box
    int m_columns = 1, m_rows = 1;
    std::vector<std::vector<int>> m_boxes; // triangles
};

} // namespace voz::multistep

#endif
