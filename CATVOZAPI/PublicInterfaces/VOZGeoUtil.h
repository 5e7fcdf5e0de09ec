// VOZGeoUtil.h: frames, lengths, polylines. Points are 3 doubles; a matrix is 9, its rows the frame's axes.

#ifndef VOZGEOUTIL_H
#define VOZGEOUTIL_H

#include "ExportedByVOZAPINew.h"

class ExportedByVOZAPINew VOZGeoUtil
{
public:
    VOZGeoUtil() = delete;

    // A right-handed frame of unit axes whose third is along i_adVector; for (0, 0, 1) the identity. The first axis is
    // the x axis less its part along the vector, the y axis for a vector along x. A vector of no length, or no finite
    // one: the identity.
    static void EvalLocalCoordSystemMatrix(double const * i_adVector, double * o_adMatrix);

    // In place. A point of the frame with that origin to global coordinates, and back.
    static void ConvertCoordLocalToGlobal(double const * i_adOrigin, double const * i_adMatrix, double * io_adPoint);
    static void ConvertCoordGlobalToLocal(double const * i_adOrigin, double const * i_adMatrix, double * io_adPoint);

    static double EvalLength3D(double const * i_adVector);
    // The cross product of the two, which o_adCross may be one of.
    static void EvalCross3D(double const * i_adFirst, double const * i_adSecond, double * o_adCross);
    static void Normalize3D(double * io_adVector); // to the length 1; one of no length, or no finite one, stays

    // What normalises the polyline's size: (point - offsets) * scale lies in the unit cube, one side of which it fills.
    // The scale is 0 for no points, for points all in one place and where a coordinate is not finite; the offsets are 0
    // for no points and in that last case.
    static void EvalScaleParametersForPolyline3D(int i_nNum, double const * i_padPoints, double & o_dScale,
                                                 double * o_adOffsets);

    // The polyline less the points that lie within i_dTolerance of what is left of it; the first and the last stay, and
    // the order. A negative tolerance drops none, and a point that is no number stays. o_padNewPoints is new, by new[],
    // the caller's; null, with the count 0, for no points. n log n on outlines, n^2 at worst.
    // Source: Douglas and Peucker, Cartographica 10 (1973) 112.
    static void DeletePointsPolyline3D(int i_nNum, double const * i_padPoints, double i_dTolerance, int & o_nNewNum,
                                       double *& o_padNewPoints);
};

#endif
