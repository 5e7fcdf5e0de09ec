// FlatImage.h: a surface and its flat image, and the way from a place in the flat back to the surface.
//
// A place inside an element of the image goes to the same natural coordinates of the element in space. Beyond the rim
// the surface goes on straight: from the nearest point of the rim with the slope dx/dY of the element there. Metres,
// 0-based, stamping frame.

#ifndef FLATIMAGE_H
#define FLATIMAGE_H

#include "geometry/SurfaceMesh.h"

#include <vector>

namespace voz::binder
{

class FlatImage
{
public:
    struct Part // a connected piece of the surface
    {
        geometry::SurfaceMesh mesh;          // positions in space
        std::vector<geometry::Vec2> flat;    // of its nodes
        std::vector<std::vector<int>> loops; // of its boundary
        std::vector<geometry::Side> free;    // the sides of the boundary
    };

    // Cells without area in the flat are never hit.
    explicit FlatImage(std::vector<Part> i_parts);

    // The points of the surface whose image is i_x, to a tolerance of 1e-9 of the image's size; by cell. Points that
    // differ by rounding alone, as on a common side, are one. More than one: the image lies over itself.
    std::vector<geometry::Vec3> find(geometry::Vec2 i_x) const;

    // Whether i_x lies within an inner loop of the boundary.
    bool overOpening(geometry::Vec2 i_x) const;

    // Linear continuation beyond the nearest point of the outer boundary.
    geometry::Vec3 beyondRim(geometry::Vec2 i_x) const;

    double size() const { return m_size; } // diagonal of the image's box

private:
    struct Face // a cell with its image
    {
        int count;
        std::array<geometry::Vec3, 4> x;
        std::array<geometry::Vec2, 4> y;
    };
    struct RimSide
    {
        int face;
        int corner;
    };

    void addPart(Part const & i_part);
    void addLoops(Part const & i_part, std::vector<int> const & i_faceOf);
    void buildGrid();
    bool locate(Face const & i_face, geometry::Vec2 i_x, geometry::Vec2 & o_natural) const;

    std::vector<Face> m_faces;
    std::vector<RimSide> m_rim;                          // of outer loops
    std::vector<std::vector<geometry::Vec2>> m_openings; // inner loops
    geometry::Vec2 m_low, m_step;                        // of the grid
    int m_columns = 1, m_rows = 1;
    std::vector<int> m_start, m_entry; // faces by grid cell
    double m_size = 0.0, m_tolerance = 0.0;
};

} // namespace voz::binder

#endif
