// EdgeIntersection.h: whether two segments of the plane cross in their inner parts.

#ifndef EDGEINTERSECTION_H
#define EDGEINTERSECTION_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo EdgeIntersection
{
public:
    EdgeIntersection() : mIsIntersecting(false) {}
    virtual ~EdgeIntersection();

    // Segments ab and cd, two floats a point, in single precision. A crossing within 1e-05 of the length of a segment
    // from its end does not count, so that segments which share an end do not cross, but for some that are in line to
    // within a hundredth, where rounding is larger than that. Parallel and degenerate segments never cross, nor those
    // so short that the product of their lengths and the sine between them is below 1e-06.
    bool isIntersecting(float const * const a, float const * const b, float const * const c, float const * const d);

private:
    bool mIsIntersecting; // the last result
};

#endif
