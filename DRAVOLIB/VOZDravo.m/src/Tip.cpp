// Tip.cpp: the five tips: where each takes its direction from, how it lays the frame, where it puts the origin.
//
//     tip                  direction n                              rows 0, 1, 2                       origin
//     average              mean normal                              snapped, or n x Z, n x row 0, n    lower corner
//     average, die line    die line, on the mean normal's side      the same                           lower corner
//     half                 mean normal in the plane                 plane, n x row 0, n                on the plane
//     half, die line       die line, on that normal's side          the same                           on the plane
//     fourth               mean normal on the planes' line          second plane, first plane, n       on that line

#include "Tip.h"

#include "BoundBox.h"
#include "ElemNormal.h"
#include "MeshNormal.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "Symmetry.h"
#include "UnderCutFilter.h"
#include "VOZCatAxis.h"

#include <utility>

static_assert(sizeof(Tip) == 2 * sizeof(void *), "a tip is its mesh, and nothing else");

Tip::Tip(VOZCatMesh const & i_mesh) : mMesh(&i_mesh) {}

Tip::~Tip() = default;

void Tip::inwards(Plane & io_plane)
{
    rowmath::PlaneRow const plane(io_plane);
    meshrows::Rows const rows(*mMesh);
    int balance = 0;
    for (int n = 1; n <= rows.numNode; ++n)
    {
        double const height = rowmath::height(plane.coefficient, rows.nodes[n]);
        balance += (height > 0.0 ? 1 : 0) - (height < 0.0 ? 1 : 0);
    }
    if (balance < 0)
        io_plane.reverse();
}

void Tip::extents(VOZCatAxis & i_axis, BoundBox & o_box) const
{
    rowmath::Frame const frame(i_axis);
    meshrows::Rows const rows(*mMesh);
    double local[3];
    Vec const view(local);
    o_box.reset();
    for (int n = 1; n <= rows.numNode; ++n)
    {
        frame.fromGlobal(rows.nodes[n], local);
        o_box.encompass(view);
    }
}

void Tip::intersect(Vec & o_point, Plane const & a, Plane const & b, Plane const & c) const
{
    o_point = a.normal() * -a.offset() - b.normal() * b.offset() - c.normal() * c.offset();
}

Vec Tip::lowerCorner(VOZCatAxis & io_axis) const
{
    io_axis.origin(Vec()); // an earlier origin would cancel but for rounding
    BoundBox box;
    extents(io_axis, box);
    return io_axis.toGlobal(box.lower());
}

void Tip::layHalfFrame(VOZCatAxis & o_axis, Plane const & i_plane, Vec const & i_direction) const
{
    Vec const x = i_plane.normal();
    Vec const y = i_direction.cross(x);
    o_axis.axis(0, x);
    o_axis.axis(1, y);
    o_axis.axis(2, i_direction);
    Vec const corner = lowerCorner(o_axis);
    Plane const bottom(i_direction, -i_direction.dot(corner));
    Plane const side(y, -y.dot(corner));
    Vec origin;
    intersect(origin, side, i_plane, bottom);
    o_axis.origin(origin);
}

namespace
{
// How far a direction's z may be from 1 or -1 and still snap to the global frame.
constexpr double kSnap = 0.0001;

constexpr double kUpRows[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
constexpr double kDownRows[3][3] = {{0.0, -1.0, 0.0}, {-1.0, 0.0, 0.0}, {0.0, 0.0, -1.0}}; // not the mirror of up

void setRows(VOZCatAxis & o_axis, double const (&rows)[3][3])
{
    for (int i = 0; i < 3; ++i)
        o_axis.axis(i, Vec(rows[i]));
}

// The frame of a direction. A direction that snaps is left as it is; any other is divided by its length.
void layFrame(VOZCatAxis & o_axis, Vec & io_direction)
{
    double const z = static_cast<Vec const &>(io_direction)[2];
    if (1.0 - z <= kSnap)
    {
        setRows(o_axis, kUpRows);
        return;
    }
    if (z + 1.0 <= kSnap)
    {
        setRows(o_axis, kDownRows);
        return;
    }
    Vec x = io_direction.cross(Vec(kUpRows[2]));
    x.unit();
    Vec y = io_direction.cross(x);
    y.unit();
    io_direction.unit();
    o_axis.axis(0, x);
    o_axis.axis(1, y);
    o_axis.axis(2, io_direction);
}

void countUnderCuts(ElemNormal const & normals, Vec const & direction, int & o_count, double & o_maxAngle)
{
    UnderCutFilter const filter(normals, direction);
    o_count = filter.numUnderCutElem();
    o_maxAngle = static_cast<double>(filter.maxUnderCutAngle());
}

void setSymmetry(Symmetry & o_symmetry, bool xz, bool yz)
{
    o_symmetry.xzSymmetry(xz);
    o_symmetry.yzSymmetry(yz);
}

// The die line with the sense of the normal; a tie goes to the reversed one.
Vec towards(Vec const & dieLine, Vec const & normal)
{
    return dieLine.dot(normal) <= 0.0 ? -dieLine : dieLine;
}

// The undercuts are counted against n as orient has left it, which a frame that snapped does not have as its z.
template <class Orient, class LowerCorner>
void tipAverage(VOZCatMesh const & mesh, VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem,
                double & o_maxUnderCutAngle, Orient orient, LowerCorner lowerCorner)
{
    ElemNormal const normals(mesh);
    Vec n = MeshNormal(normals).normal();
    orient(n);
    o_axis.origin(lowerCorner());
    setSymmetry(o_symmetry, false, false);
    countUnderCuts(normals, n, o_numUnderCutElem, o_maxUnderCutAngle);
}
} // namespace

AverageTip::AverageTip(VOZCatMesh const & i_mesh) : Tip(i_mesh) {}

AverageTip::~AverageTip() = default;

void AverageTip::tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem, double & o_maxUnderCutAngle)
{
    tipAverage(
        *mMesh, o_axis, o_symmetry, o_numUnderCutElem, o_maxUnderCutAngle, [&](Vec & n) { orient(o_axis, n); },
        [&] { return lowerCorner(o_axis); });
}

void AverageTip::orient(VOZCatAxis & o_axis, Vec & io_normal) const
{
    layFrame(o_axis, io_normal);
}

AverageDieLineTip::AverageDieLineTip(VOZCatMesh const & i_mesh, Vec const & i_dieLine) : Tip(i_mesh)
{
    mDieLine = i_dieLine;
}

AverageDieLineTip::~AverageDieLineTip() = default;

void AverageDieLineTip::tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem,
                            double & o_maxUnderCutAngle)
{
    tipAverage(
        *mMesh, o_axis, o_symmetry, o_numUnderCutElem, o_maxUnderCutAngle, [&](Vec & n) { orient(o_axis, n); },
        [&] { return lowerCorner(o_axis); });
}

void AverageDieLineTip::orient(VOZCatAxis & o_axis, Vec & io_normal) const
{
    io_normal = towards(mDieLine, io_normal);
    io_normal.unit();
    layFrame(o_axis, io_normal);
}

HalfSymmetryTip::HalfSymmetryTip(VOZCatMesh const & i_mesh, Plane const & i_plane) : Tip(i_mesh), mPlane(i_plane) {}

HalfSymmetryTip::~HalfSymmetryTip() = default;

void HalfSymmetryTip::tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem,
                          double & o_maxUnderCutAngle)
{
    ElemNormal const normals(*mMesh);
    inwards(mPlane);
    Vec n = MeshNormal(normals, mPlane).normal();
    n.unit();
    layHalfFrame(o_axis, mPlane, n);
    setSymmetry(o_symmetry, false, true);
    countUnderCuts(normals, n, o_numUnderCutElem, o_maxUnderCutAngle);
}

HalfSymmetryDieLineTip::HalfSymmetryDieLineTip(VOZCatMesh const & i_mesh, Plane const & i_plane, Vec const & i_dieLine)
    : Tip(i_mesh), mPlane(i_plane)
{
    mDieLine = i_dieLine;
}

HalfSymmetryDieLineTip::~HalfSymmetryDieLineTip() = default;

void HalfSymmetryDieLineTip::tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem,
                                 double & o_maxUnderCutAngle)
{
    ElemNormal const normals(*mMesh);
    inwards(mPlane);
    Vec n = MeshNormal(normals, mPlane).normal();
    n.unit();
    if (mDieLine.length() < 0.001)
        return; // nobody is told
    n = towards(mDieLine, n);
    n.unit();
    layHalfFrame(o_axis, mPlane, n);
    setSymmetry(o_symmetry, false, true);
    countUnderCuts(normals, n, o_numUnderCutElem, o_maxUnderCutAngle);
}

FourthSymmetryTip::FourthSymmetryTip(VOZCatMesh const & i_mesh, Plane const & i_first, Plane const & i_second)
    : Tip(i_mesh), mFirst(i_first), mSecond(i_second)
{
}

FourthSymmetryTip::~FourthSymmetryTip() = default;

void FourthSymmetryTip::tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem,
                            double & o_maxUnderCutAngle)
{
    ElemNormal const normals(*mMesh);
    inwards(mFirst);
    inwards(mSecond);
    Vec n = MeshNormal(normals, mFirst, mSecond).normal();
    n.unit();
    if (n.dot(mSecond.normal().cross(mFirst.normal())) <= 0.0)
        std::swap(mFirst, mSecond); // so that the frame is right-handed with n as its z
    o_axis.axis(0, mSecond.normal());
    o_axis.axis(1, mFirst.normal());
    o_axis.axis(2, n);
    Vec const corner = lowerCorner(o_axis);
    Plane const bottom(n, -n.dot(corner));
    Vec origin;
    intersect(origin, mFirst, mSecond, bottom);
    o_axis.origin(origin);
    setSymmetry(o_symmetry, true, true);
    countUnderCuts(normals, n, o_numUnderCutElem, o_maxUnderCutAngle);
}
