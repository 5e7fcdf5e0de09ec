// ToolSurface.h: what the tools are made of: a surface in the stamping frame, its offset, its extension, its regions.
//
// Lengths mm; nodes, elements and rows 0-based. A surface is one sheet whose elements all run one way; "up" is the side
// of their normals. Seen from above its outer rim runs counter-clockwise.

#ifndef TOOLSURFACE_H
#define TOOLSURFACE_H

#include "Mesh.h"
#include "PointMath.h"

#include <array>
#include <string>
#include <vector>

namespace voz::workbench
{

struct Surface
{
    std::vector<Point3> nodes;
    std::vector<std::array<int, 4>> elements; // a triangle repeats its first corner

    static int Corners(std::array<int, 4> const & i_row) { return i_row[0] == i_row[3] ? 3 : 4; }
    Point3 const & At(int i_node) const { return nodes[static_cast<std::size_t>(i_node)]; }
    Point3 AreaVector(std::array<int, 4> const & i_row) const; // along the normal, as long as the area
    double Area() const;
    PointBox Box() const;
};

Surface SurfaceOf(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame); // places in the frame
VOZCatMesh MeshOf(Surface const & i_surface);
Surface Subset(Surface const & i_surface, std::vector<char> const & i_isTaken); // with the nodes it needs, in order
void Reverse(Surface & io_surface);
void Lift(Surface & io_surface, double i_height);

// The part as the tools take it: places in the frame, facing up, holes filled. Throws std::runtime_error.
Surface PartSurface(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame, int & o_filledHoles);

// Sides of one element alone, in its sense, by the lower of their nodes. Throws std::runtime_error where elements do
// not run one way.
struct RimEdge
{
    int from;
    int to;
    int element;
};
std::vector<RimEdge> FreeEdgesOf(Surface const & i_surface);

// Closed walks along the free sides. Throws std::runtime_error where they do not form simple loops, too.
using RimLoop = std::vector<RimEdge>;
std::vector<RimLoop> RimsOf(Surface const & i_surface);

// Elements beyond each side: CSR rows per element.
class ElementNeighbours
{
public:
    explicit ElementNeighbours(Surface const & i_surface);
    template <class Visit>
    void ForEach(int i_element, Visit visit) const
    {
        auto const e = static_cast<std::size_t>(i_element);
        for (std::size_t i = mBegin[e]; i < mBegin[e + 1]; ++i)
            visit(mEntries[i]);
    }

private:
    std::vector<std::size_t> mBegin;
    std::vector<int> mEntries;
};

// --- Offset ----------------------------------------------------------------------------------------------------------

struct OffsetResult
{
    Surface surface;
    int mended = 0; // elements that would have folded over
    int folded = 0; // elements that still do
};

// The surface at a distance (above 0: up). At each node the elements' planes are moved and the node goes where they
// meet again, so that the planes of a fillet and both sides of a sharp edge lie at the distance, not the nodes alone.
// Where a fillet is tighter than the offset the folded elements are smoothed out, away from the sheet.
OffsetResult OffsetSurface(Surface const & i_surface, double i_distance);

// Elements of the second that face against those of the first, or have shrunk to nothing; same rows in both.
std::vector<int> FoldedElements(Surface const & i_surface, Surface const & i_moved);

// --- Extension -------------------------------------------------------------------------------------------------------

struct ExtensionRequest
{
    double dieRadius = 0.0;      // of the shoulder behind a rim that ends steeply
    double margin = 0.0;         // beyond the outline
    std::vector<Point3> outline; // what is to be covered, seen from above
};

// The surface with rows beyond its outer rim: a shoulder of the die radius where the rim ends steeply, then level rows
// outward until they cover the outline. Notches of the rim are closed first.
struct ExtendedSurface
{
    Surface surface;                // the given one first, its rows unchanged
    std::vector<char> isHolderNode; // of the level rows: behind a flange (given) or a shoulder
    std::vector<char> isLevel;      // per element: of the level rows, or closing a notch
    double steepest = 0.0;          // degrees by which the rim slopes at most
    double reach = 0.0;             // mm from the rim's hull to the new outline
};

// i_isFlange: per element of the surface. Throws std::runtime_error for a rim that crosses itself seen from above.
ExtendedSurface ExtendSurface(Surface const & i_surface, std::vector<char> const & i_isFlange,
                              ExtensionRequest const & i_request);

// Triangles of a simple polygon, counter-clockwise: indices into it. Empty where it is not simple. Cost: k^2.
std::vector<std::array<int, 3>> TrianglesOf(std::vector<std::array<double, 2>> const & i_polygon);

// --- Regions ---------------------------------------------------------------------------------------------------------

// Per element: 1 on the flange, the land along the rim from which the part goes up. i_sharpest: the radius, mm, from
// which on a bend is none but a curved land.
std::vector<char> FlangeOf(Surface const & i_surface, double i_sharpest);

// Per element: 1 where the die's shoulder forms the part, between flange and walls.
std::vector<char> ShoulderOf(Surface const & i_surface, std::vector<char> const & i_isFlange);

} // namespace voz::workbench

#endif
