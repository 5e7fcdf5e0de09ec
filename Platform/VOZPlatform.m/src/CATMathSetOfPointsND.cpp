#include "CATMathSetOfPointsND.h"

#include "CATFatalError.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr double kDefaultTolerance = 0.001;
}

double CATGetDefaultTolerance()
{
    return kDefaultTolerance;
}

CATMathSetOfPointsND::CATMathSetOfPointsND(int i_dimension)
    : mDimension(static_cast<std::size_t>(std::max(i_dimension, 1)))
{
}

int CATMathSetOfPointsND::GetNumberOfPoints() const
{
    return static_cast<int>(mCoordinates.size() / mDimension);
}

void CATMathSetOfPointsND::GetPoint(int i_index, double * o_coordinates) const
{
    if (!VOZ_ASSERTION(o_coordinates != nullptr, "o_coordinates != NULL"))
        return;
    std::fill_n(o_coordinates, mDimension, 0.0);
    if (VOZ_ASSERTION(i_index >= 0 && i_index < GetNumberOfPoints(), "i_index >= 0 && i_index < GetNumberOfPoints()"))
        std::copy_n(row(i_index), mDimension, o_coordinates);
}

void CATMathSetOfPointsND::AddPoint(double const * i_coordinates)
{
    if (!VOZ_ASSERTION(i_coordinates != nullptr, "i_coordinates != NULL"))
        return;
    std::vector<double> const copy(i_coordinates, i_coordinates + mDimension); // the row may be one of the set
    mCoordinates.insert(mCoordinates.end(), copy.begin(), copy.end());
}

void CATMathSetOfPointsND::AddSet(CATMathSetOfPointsND const & i_set)
{
    if (!VOZ_ASSERTION(i_set.mDimension == mDimension, "i_set.mDimension == mDimension"))
        return;
    std::vector<double> const tail = i_set.mCoordinates; // i_set may be this very set
    mCoordinates.insert(mCoordinates.end(), tail.begin(), tail.end());
}

double CATMathSetOfPointsND::Length() const
{
    double sum = 0.0;
    for (int i = 1; i < GetNumberOfPoints(); ++i)
        sum += distance(row(i - 1), row(i));
    return sum;
}

void CATMathSetOfPointsND::AutoInvert()
{
    for (int low = 0, high = GetNumberOfPoints() - 1; low < high; ++low, --high)
    {
        double * const first = mCoordinates.data() + mDimension * static_cast<std::size_t>(low);
        std::swap_ranges(first, first + mDimension, mCoordinates.data() + mDimension * static_cast<std::size_t>(high));
    }
}

void CATMathSetOfPointsND::RemoveMultiplePoints(double i_tolerance, int i_closed)
{
    CATMathSetOfPointsND kept(static_cast<int>(mDimension));
    for (int i = 0; i < GetNumberOfPoints(); ++i)
        if (i == 0 || !(distance(kept.row(kept.GetNumberOfPoints() - 1), row(i)) <= i_tolerance))
            kept.AddPoint(row(i));
    while (i_closed != 0 && kept.GetNumberOfPoints() > 1 &&
           distance(kept.row(kept.GetNumberOfPoints() - 1), kept.row(0)) <= i_tolerance)
        kept.mCoordinates.resize(kept.mCoordinates.size() - mDimension);
    mCoordinates = kept.mCoordinates;
}

double CATMathSetOfPointsND::DistanceMin(double const * i_coordinates, int & o_index, double i_tolerance) const
{
    o_index = -1;
    double nearest = -1.0;
    if (!VOZ_ASSERTION(i_coordinates != nullptr, "i_coordinates != NULL"))
        return nearest;
    for (int i = 0; i < GetNumberOfPoints(); ++i)
    {
        double const d = distance(row(i), i_coordinates);
        nearest = i == 0 || d < nearest ? d : nearest;
    }
    for (int i = 0; i < GetNumberOfPoints() && o_index < 0; ++i)
        if (!(distance(row(i), i_coordinates) > nearest + i_tolerance))
            o_index = i;
    return nearest;
}

double CATMathSetOfPointsND::distance(double const * a, double const * b) const
{
    double sum = 0.0;
    for (std::size_t i = 0; i < mDimension; ++i)
        sum += (b[i] - a[i]) * (b[i] - a[i]);
    return std::sqrt(sum);
}
