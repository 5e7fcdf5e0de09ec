// SquareCup.cpp: the square cup of NUMISHEET'93.
//
// A section normal to the outline is the same all round: bottom, punch arc, wall along the common tangent of the two
// arcs, die arc, flange. The outline is a square with round corners whose centre moves from the punch's to the die's
// over the wall. Offsets are mid-surface: half the sheet, 0.39 mm, inside the die and outside the punch.

#include "Surfaces.h"

#include <cmath>

namespace voz::examples
{
namespace
{

constexpr double kHalfPi = 1.5707963267948966;
constexpr double kBottomHalfWidth = 27.0; // punch half width 35 less its profile radius 8
constexpr double kPunchArc = 8.39;
constexpr double kDieArc = 5.39;
constexpr double kDieArcCentre = 42.0; // die half opening 37 plus its profile radius 5
constexpr double kPunchCornerCentre = 25.0;
constexpr double kDieCornerCentre = 24.0;

struct SectionRow
{
    double offset; // from the middle plane of the straight side
    double z;
    double cornerCentre;
};

// The wall is the inner tangent: its normal n, pointing out of the punch, satisfies (c2 - c1) . n = r1 + r2.
std::vector<SectionRow> section(SquareCup const & shape)
{
    double const across = kDieArcCentre - kBottomHalfWidth;
    double const up = shape.depth - kDieArc - kPunchArc;
    double const normal = std::atan2(up, across) - std::acos((kPunchArc + kDieArc) / std::hypot(across, up));
    double const wall = std::sqrt(across * across + up * up - (kPunchArc + kDieArc) * (kPunchArc + kDieArc));
    double const turn = kHalfPi + normal;

    Profile profile({kBottomHalfWidth, 0.0}, 0.0);
    profile.arc(kPunchArc, turn, shape.rowsArc).line(wall, shape.rowsWall).arc(kDieArc, -turn, shape.rowsArc);

    std::vector<SectionRow> rows;
    int row = 0;
    for (Point2 const & p : profile.points())
    {
        double const share = std::fmin(1.0, std::fmax(0.0, static_cast<double>(row - shape.rowsArc) / shape.rowsWall));
        rows.push_back({p[0], p[1], kPunchCornerCentre + share * (kDieCornerCentre - kPunchCornerCentre)});
        ++row;
    }
    rows.back() = {kDieArcCentre, shape.depth, kDieCornerCentre}; // the flange is flat to the last bit
    return rows;
}

// The outline with a given offset and corner centre, at a ray of the quarter.
Point2 onOutline(SquareCup const & shape, SectionRow const & row, int ray)
{
    int const corner = ray - shape.cellsSide;
    if (corner <= 0)
        return {row.offset, row.cornerCentre * ray / shape.cellsSide};
    if (corner >= shape.cellsCorner)
        return {row.cornerCentre * (2 * shape.cellsSide + shape.cellsCorner - ray) / shape.cellsSide, row.offset};
    double const angle = kHalfPi * corner / shape.cellsCorner;
    double const radius = row.offset - row.cornerCentre;
    return {row.cornerCentre + radius * std::cos(angle), row.cornerCentre + radius * std::sin(angle)};
}

// Half of the rim's quarter, u(v) for v from 0 to c, between the measured points; the other half is its mirror.
double rim(SquareCup const & shape, double v)
{
    double const corner = shape.diagonal / std::sqrt(2.0); // c
    double const w = v / (0.33 * corner);
    double const whole = 1.0 - std::exp(-1.0 / (0.33 * 0.33));
    return shape.side + (corner - shape.side) * (1.0 - std::exp(-w * w)) / whole;
}

// The rays fan out over the flange: those of the straight side reach the rim at v up to kStraightShare c, those of
// the corner share the rest, each evenly. The share is the one with which the blank and the strains of the
// benchmark's reference solutions, quadrilaterals and triangles of several sizes, are met best.
constexpr double kStraightShare = 5.0 / 12.0;

Point2 onRim(SquareCup const & shape, int ray)
{
    int const rays = 2 * shape.cellsSide + shape.cellsCorner;
    if (2 * ray > rays)
    {
        Point2 const mirrored = onRim(shape, rays - ray);
        return {mirrored[1], mirrored[0]};
    }
    double const corner = shape.diagonal / std::sqrt(2.0);
    if (2 * ray == rays)
        return {corner, corner};
    double const share = ray <= shape.cellsSide ? kStraightShare * ray / shape.cellsSide
                                                : kStraightShare + (1.0 - kStraightShare) * 2.0 *
                                                                       (ray - shape.cellsSide) / shape.cellsCorner;
    return {rim(shape, share * corner), share * corner};
}

} // namespace

SquareCup squareCup40()
{
    return {};
}

SquareCup squareCup15()
{
    SquareCup shape;
    shape.depth = 15.0;
    shape.side = 75.0 - 6.17;
    shape.diagonal = 106.06601717798213 - 3.24;
    return shape;
}

SurfaceMesh squareCup(SquareCup const & shape, Extent extent, Cells cells)
{
    std::vector<SectionRow> const rows = section(shape);
    int const lastOfSection = shape.rowsBottom + static_cast<int>(rows.size()) - 1;
    auto const node = [&](int row, int ray) -> Point3
    {
        if (row <= shape.rowsBottom) // rings of the bottom shrink to the middle
        {
            Point2 const p = onOutline(shape, rows.front(), ray);
            double const share = static_cast<double>(row) / shape.rowsBottom;
            return {share * p[0], share * p[1], 0.0};
        }
        if (row <= lastOfSection)
        {
            SectionRow const & at = rows[static_cast<std::size_t>(row - shape.rowsBottom)];
            Point2 const p = onOutline(shape, at, ray);
            return {p[0], p[1], at.z};
        }
        Point2 const p = onOutline(shape, rows.back(), ray);
        Point2 const q = onRim(shape, ray);
        double const share = static_cast<double>(row - lastOfSection) / shape.rowsFlange;
        return {p[0] + share * (q[0] - p[0]), p[1] + share * (q[1] - p[1]), shape.depth};
    };
    return radial({lastOfSection + shape.rowsFlange, 2 * shape.cellsSide + shape.cellsCorner, node}, extent, cells);
}

} // namespace voz::examples
