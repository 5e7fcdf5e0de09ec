// ShellFrame.h: tensors of a shell brought from the global axes into its own.
//
// x along the side from corner 0 to corner 1, brought into the tangent plane; z along the normal: of a quadrilateral
// the cross product of its diagonals, of a triangle that of two sides; y completes a right-handed frame. A shell
// without area keeps the global axes.

#ifndef SHELLFRAME_H
#define SHELLFRAME_H

#include <array>
#include <cmath>

namespace voz::launch
{
using Row3 = std::array<double, 3>;

inline double Dot(Row3 const & a, Row3 const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

inline Row3 Cross(Row3 const & a, Row3 const & b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline Row3 Difference(Row3 const & a, Row3 const & b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

inline Row3 Scaled(double factor, Row3 const & a)
{
    return {factor * a[0], factor * a[1], factor * a[2]};
}

struct ShellFrame
{
    Row3 x{1.0, 0.0, 0.0};
    Row3 y{0.0, 1.0, 0.0};
};

// The corners' positions; a triangle has three.
inline ShellFrame FrameOf(Row3 const * i_corners, bool i_isTriangle)
{
    Row3 const side = Difference(i_corners[1], i_corners[0]);
    Row3 const normal = i_isTriangle
                            ? Cross(side, Difference(i_corners[2], i_corners[0]))
                            : Cross(Difference(i_corners[2], i_corners[0]), Difference(i_corners[3], i_corners[1]));
    double const square = Dot(normal, normal);
    if (!(square > 0.0))
        return {};
    // A first side without length: the other diagonal is in the plane as well.
    Row3 const along = Dot(side, side) > 0.0 ? side : Difference(i_corners[2], i_corners[0]);
    Row3 const flat = Difference(along, Scaled(Dot(along, normal) / square, normal));
    double const length = std::sqrt(Dot(flat, flat));
    if (!(length > 0.0))
        return {};
    ShellFrame frame;
    frame.x = Scaled(1.0 / length, flat);
    frame.y = Scaled(1.0 / std::sqrt(square), Cross(normal, frame.x));
    return frame;
}

// The membrane part of a symmetric tensor (xx, yy, zz, xy, yz, zx): along x, along y, and twice the mixed component,
// the engineering shear of a strain.
inline std::array<float, 3> MembranePart(ShellFrame const & i_frame, float const * i_tensor)
{
    auto const applied = [i_tensor](Row3 const & v) -> Row3
    {
        double const xx = i_tensor[0], yy = i_tensor[1], zz = i_tensor[2];
        double const xy = i_tensor[3], yz = i_tensor[4], zx = i_tensor[5];
        return {xx * v[0] + xy * v[1] + zx * v[2], xy * v[0] + yy * v[1] + yz * v[2],
                zx * v[0] + yz * v[1] + zz * v[2]};
    };
    Row3 const alongX = applied(i_frame.x);
    Row3 const alongY = applied(i_frame.y);
    return {static_cast<float>(Dot(i_frame.x, alongX)), static_cast<float>(Dot(i_frame.y, alongY)),
            static_cast<float>(2.0 * Dot(i_frame.x, alongY))};
}

// The equivalent stress of von Mises; the axes do not matter.
inline float EquivalentStress(float const * i_tensor)
{
    double const xx = i_tensor[0], yy = i_tensor[1], zz = i_tensor[2];
    double const xy = i_tensor[3], yz = i_tensor[4], zx = i_tensor[5];
    double const direct = (xx - yy) * (xx - yy) + (yy - zz) * (yy - zz) + (zz - xx) * (zz - xx);
    return static_cast<float>(std::sqrt(0.5 * direct + 3.0 * (xy * xy + yz * yz + zx * zx)));
}
} // namespace voz::launch

#endif
