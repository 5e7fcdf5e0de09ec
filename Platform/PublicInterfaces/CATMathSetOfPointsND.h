// CATMathSetOfPointsND.h: the host's ordered set of points of any dimension, read as a polyline where a length is
// asked.
//
// Points are counted from 0. A value class. A position outside the set, or a point of no coordinates, is a broken
// contract; where the reporter returns, nothing is done (GetPoint gives zeros).

#ifndef CATMATHSETOFPOINTSND_H
#define CATMATHSETOFPOINTSND_H

#include "ExportedByVOZPlatform.h"

#include <cstddef>
#include <vector>

// The length below which the host takes two points for one: 0.001 (mm).
ExportedByVOZPlatform double CATGetDefaultTolerance();

class ExportedByVOZPlatform CATMathSetOfPointsND
{
public:
    explicit CATMathSetOfPointsND(int i_dimension); // below 1: 1

    int GetNumberOfPoints() const;
    void GetPoint(int i_index, double * o_coordinates) const;
    void AddPoint(double const * i_coordinates);     // as many as the dimension; appended
    void AddSet(CATMathSetOfPointsND const & i_set); // its points, appended in order; the same dimension
    double Length() const;                           // of the open polyline; 0 below two points
    void AutoInvert();                               // the last point first

    // Takes out each point that lies within the tolerance of the one kept before it; with i_closed not 0 the last ones
    // too, that lie so near the first.
    void RemoveMultiplePoints(double i_tolerance, int i_closed);

    // The distance of the point to the nearest of the set, and which that is: the first of those that are nearest to
    // within the tolerance. -1 and index -1 for an empty set.
    double DistanceMin(double const * i_coordinates, int & o_index, double i_tolerance) const;

private:
    double const * row(int i_index) const
    {
        return mCoordinates.data() + mDimension * static_cast<std::size_t>(i_index);
    }
    double distance(double const * a, double const * b) const;

    std::size_t mDimension;
    std::vector<double> mCoordinates;
};

#endif
