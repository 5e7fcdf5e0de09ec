// EdgeIntersection.cpp: the crossing of two segments, in single precision.
//
//     a + t r = c + u s,   r = b - a, s = d - c, q = c - a;   den = s x r,  t = s x q / den,  u = r x q / den
//
// with the cross product of the plane.

#include "EdgeIntersection.h"

#include <cmath>

namespace
{
// The single-precision values of 1e-05, 1.00001 and 0.99999. The wide range is the tolerance with which a crossing is
// on the segments at all; within it a crossing at an end is then refused, so that the narrow range alone decides.
constexpr float kTolerance = 9.999999747378752e-06F;
constexpr float kBeyondEnd = 1.0000100135803223F;
constexpr float kBeforeEnd = 0.9999899864196777F;
constexpr double kParallel = 1e-06;

bool within(float value, float low, float high)
{
    return low <= value && value <= high;
}
} // namespace

EdgeIntersection::~EdgeIntersection() = default;

bool EdgeIntersection::isIntersecting(float const * const a, float const * const b, float const * const c,
                                      float const * const d)
{
    float const r[2] = {b[0] - a[0], b[1] - a[1]};
    float const s[2] = {d[0] - c[0], d[1] - c[1]};
    float const q[2] = {c[0] - a[0], c[1] - a[1]};
    mIsIntersecting = false;
    float const den = s[0] * r[1] - s[1] * r[0];
    if (std::fabs(static_cast<double>(den)) < kParallel)
        return false;
    float const t = (q[1] * s[0] - q[0] * s[1]) / den;
    float const u = (q[1] * r[0] - q[0] * r[1]) / den;
    bool const onBoth = within(t, -kTolerance, kBeyondEnd) && within(u, -kTolerance, kBeyondEnd);
    mIsIntersecting = onBoth && within(t, kTolerance, kBeforeEnd) && within(u, kTolerance, kBeforeEnd);
    return mIsIntersecting;
}
