// Surfaces.h: analytic mid-surface meshes, so that every size and radius is exact.
//
// Lengths in mm, angles in radians, node indices 0-based; a triangle has -1 in the fourth place. Every node lies on its
// surface to rounding; elements are wound so that the flat parts face +z, which is the stamping direction.

#ifndef SURFACES_H
#define SURFACES_H

#include <array>
#include <functional>
#include <vector>

namespace voz::examples
{

using Point2 = std::array<double, 2>;
using Point3 = std::array<double, 3>;

struct SurfaceMesh
{
    std::vector<Point3> nodes;
    std::vector<std::array<int, 4>> elements;
};

enum class Cells
{
    Triangles,
    Quads // where a cell has four corners: the cells at a pole stay triangles
};

enum class Extent // of a part with two symmetry planes
{
    Quarter, // x >= 0 and y >= 0
    Half,    // x >= 0
    Whole
};

double area(SurfaceMesh const & mesh); // of its facets; a quadrilateral counts as two triangles

// A chain of lines and circular arcs in a plane, each piece cut into equal rows. It starts in a point with a heading
// (the angle to the first axis) and goes on without corners.
class Profile
{
public:
    Profile(Point2 start, double heading);

    Profile & line(double length, int rows);
    Profile & arc(double radius, double turn, int rows); // turn above 0: to the left

    std::vector<Point2> const & points() const { return mPoints; }
    double length() const { return mLength; } // of the true curve
    double heading() const { return mHeading; }

private:
    std::vector<Point2> mPoints;
    double mHeading;
    double mLength = 0.0;
};

// The rings of a part that looks the same after a quarter turn: node (row, ray) with row 0 the pole, ray 0 the x
// axis and ray `raysPerQuarter` the y axis.
struct RadialGrid
{
    int rows;
    int raysPerQuarter;
    std::function<Point3(int row, int ray)> node;
};

SurfaceMesh radial(RadialGrid const & grid, Extent extent, Cells cells);

// A surface of revolution about z: (radius, z) of the profile, which begins on the axis.
SurfaceMesh revolve(Profile const & meridian, int raysPerQuarter, Extent extent, Cells cells);

// A strip surface: the profile in the x-z plane, drawn along y from 0 to width.
SurfaceMesh extrude(Profile const & profile, double width, int strips, Cells cells);

// --- Axisymmetric parts; k scales the mesh: 6 k elements round a quarter -----------------------------------------

struct Cup // bottom at z = 0, vertical wall, radii of the mid-surface
{
    double bottom = 32.0; // radius of the flat bottom
    double punchArc = 8.0;
    double wall = 7.0;
    double dieArc = 5.0;
    double flange = 12.0;
    int wallRows = 2; // times k
};

Profile meridian(Cup const & cup, int k);                     // rows: bottom 4 k, arcs 3 k, flange 2 k
Profile domeMeridian(double radius, double halfAngle, int k); // rows: 6 k; the pole at z = 0, the rim below it
SurfaceMesh cup(Cup const & cup, int k, Extent extent, Cells cells);
SurfaceMesh dome(double radius, double halfAngle, int k, Extent extent, Cells cells);

// --- Strips ------------------------------------------------------------------------------------------------------

struct Hat // half of its profile, from the middle of the bottom to the edge of the flange
{
    double bottom = 25.0; // half width of the flat bottom
    double punchArc = 8.0;
    double wall = 20.0;
    double dieArc = 5.0;
    double flange = 15.0;
    double wallAngle = 1.3962634015954636; // to the horizontal: 80 degrees
};

Profile halfProfile(Hat const & hat, int rowsPerArc); // from x = 0
SurfaceMesh halfHat(Hat const & hat, double width, int rowsPerArc, int strips, Cells cells);
SurfaceMesh wholeHat(Hat const & hat, double width, int rowsPerArc, int strips, Cells cells);

// Two flat legs and an arc between them, symmetric about x = 0, the arc's lowest point at z = 0.
struct VBend
{
    double leg = 40.0;
    double radius = 10.0;             // of the mid-surface
    double turn = 1.5707963267948966; // of the arc: what the legs enclose is its supplement
    double near = 4.0;                // of each leg, beside the arc: in elements as short as the arc's
    int rowsFar = 9;
    int rowsNear = 16;
    int rowsArc = 64;
};

SurfaceMesh vBend(VBend const & bend, double width, int strips, Cells cells);

// --- Panels ------------------------------------------------------------------------------------------------------

// A rectangle on a cylinder with its axis along y, top at z = radius, with a pocket in its middle that sinks towards
// the axis by depth cos^2 over each half side.
struct Panel
{
    double radius = 300.0;
    double halfLength = 80.0; // along the arc
    double halfWidth = 60.0;
    double pocketHalfLength = 45.0;
    double pocketHalfWidth = 35.0;
    double depth = 6.0;
    int rows = 40; // along the arc
    int strips = 30;
};

SurfaceMesh panel(Panel const & shape, Cells cells);

// --- Developable parts ---------------------------------------------------------------------------------------------

// Axis along y, from -halfAngle to halfAngle, top at z = radius.
SurfaceMesh cylinder(double radius, double halfAngle, int strips, double length, int rows, Cells cells);

// A closed tube along x from 0 to length, its bulge in the middle: radius + bulge cos^2 over the bulge's half length.
// A row of nodes lies at +z; elements face outward.
struct BulgedTube
{
    double radius = 30.0;
    double length = 160.0;
    double bulge = 12.0;
    double halfBulge = 50.0; // along the axis
    int rows = 64;           // along the axis
    int around = 48;

    double radiusAt(double x) const;
};

SurfaceMesh bulgedTube(BulgedTube const & shape, Cells cells);

// Apex at the origin, axis along -z; generators from `inner` to `outer` along the slant, turned about z from -turn to
// turn. The surface is the one of a cone with the given half apex angle.
SurfaceMesh cone(double halfApex, double inner, double outer, double turn, int strips, int rows, Cells cells);

// An angle bracket: a plate with a round hole, a bend along one side, and a flange. The flat blank is known exactly.
struct Bracket
{
    double plate = 60.0; // along x
    double width = 50.0; // along y
    double hole = 10.0;  // radius; centre in the middle of the plate
    double bendRadius = 5.39;
    double bendAngle = 1.3962634015954636; // 80 degrees
    double flange = 25.0;
    int cellsAcross = 20; // along y; along the plate in proportion
    int rowsRound = 10;   // rings between hole and edge of the plate
    int rowsPerArc = 8;
    int rowsFlange = 10;
};

SurfaceMesh bracket(Bracket const & shape, Cells cells);
SurfaceMesh bracketBlank(Bracket const & shape, Cells cells); // the same mesh unrolled facet by facet, at z = 0

// --- The square cup of NUMISHEET'93 ----------------------------------------------------------------------------------

// Mid-surface of the cup drawn from 150 x 150 x 0.78 by a punch of 70 x 70 (profile radius 8, corner 10) into a die of
// 74 x 74 (profile 5, corner 13). The rim goes through the measured points of the benchmark (A. Makinouchi et
// al. (ed.), Proc. NUMISHEET'93, Isehara 1993): its distance on the middle of a side and on the diagonal.
struct SquareCup
{
    double depth = 40.0;
    double side = 75.0 - 27.96;                   // rim on the middle of a side
    double diagonal = 106.06601717798213 - 15.36; // rim on the diagonal
    int rowsBottom = 8;
    int rowsArc = 5;
    int rowsWall = 10;
    int rowsFlange = 12;
    int cellsSide = 8; // on the straight half of each side
    int cellsCorner = 12;
};

SquareCup squareCup15(); // the benchmark's two depths
SquareCup squareCup40();
SurfaceMesh squareCup(SquareCup const & shape, Extent extent, Cells cells);

} // namespace voz::examples

#endif
