// VOZGeoUtil.cpp: frames, lengths, polylines.

#include "VOZGeoUtil.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace
{
using Point = std::array<double, 3>;

Point PointAt(double const * i_padPoints, std::size_t i)
{
    return {i_padPoints[3 * i], i_padPoints[3 * i + 1], i_padPoints[3 * i + 2]};
}

Point Difference(Point const & i_a, Point const & i_b)
{
    return {i_a[0] - i_b[0], i_a[1] - i_b[1], i_a[2] - i_b[2]};
}

double Dot(Point const & i_a, Point const & i_b)
{
    return i_a[0] * i_b[0] + i_a[1] * i_b[1] + i_a[2] * i_b[2];
}

// False for a vector of no length, or of none that can be told. Divided by its largest component first, so that no
// square leaves the range of doubles.
bool Normalised(double const * i_adVector, Point & o_unit)
{
    double const largest = std::max({std::fabs(i_adVector[0]), std::fabs(i_adVector[1]), std::fabs(i_adVector[2])});
    if (!(largest > 0.0))
        return false;
    for (std::size_t i = 0; i < 3; ++i)
        o_unit[i] = i_adVector[i] / largest;
    double const length = std::sqrt(Dot(o_unit, o_unit));
    for (double & component : o_unit)
        component /= length;
    return std::isfinite(Dot(o_unit, o_unit));
}

// The first axis of the frame whose third is this unit vector u: x - (x.u) u over its length s. Written with
// 1 - ux^2 = s^2, so that nothing cancels where the vector is nearly along x.
Point FirstAxis(Point const & i_u)
{
    constexpr double kAlongX = 1e-12; // sine of the angle to x from which x tells no direction
    double const s = std::hypot(i_u[1], i_u[2]);
    if (s > kAlongX)
        return {s, -i_u[0] * i_u[1] / s, -i_u[0] * i_u[2] / s};
    double const t = std::hypot(i_u[0], i_u[2]); // the same with y
    return {-i_u[1] * i_u[0] / t, t, -i_u[1] * i_u[2] / t};
}

double SquaredDistanceToSegment(Point const & i_point, Point const & i_start, Point const & i_end)
{
    Point const along = Difference(i_end, i_start);
    Point rest = Difference(i_point, i_start);
    double const squaredLength = Dot(along, along);
    double const t = squaredLength > 0.0 ? std::clamp(Dot(rest, along) / squaredLength, 0.0, 1.0) : 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        rest[i] -= t * along[i];
    return Dot(rest, rest);
}

// The point strictly between the two that is farthest from their segment, or i_end where none is beyond the tolerance.
// A distance that is no number counts as beyond it: such a point is kept.
std::size_t FarthestBeyond(double const * i_padPoints, std::size_t i_start, std::size_t i_end, double i_dTolerance)
{
    Point const start = PointAt(i_padPoints, i_start);
    Point const end = PointAt(i_padPoints, i_end);
    double largest = i_dTolerance * i_dTolerance;
    std::size_t farthest = i_end;
    for (std::size_t i = i_start + 1; i < i_end; ++i)
    {
        double const squared = SquaredDistanceToSegment(PointAt(i_padPoints, i), start, end);
        if (std::isnan(squared))
            return i;
        if (squared > largest)
        {
            largest = squared;
            farthest = i;
        }
    }
    return farthest;
}

// Which points stay. Pieces wait on a list of our own: a recursion could go as deep as there are points.
std::vector<bool> PointsThatStay(std::size_t i_nNum, double const * i_padPoints, double i_dTolerance)
{
    std::vector<bool> stays(i_nNum, !(i_dTolerance >= 0.0)); // no tolerance at all: all stay
    stays.front() = stays.back() = true;
    std::vector<std::pair<std::size_t, std::size_t>> pieces;
    if (i_dTolerance >= 0.0)
        pieces.emplace_back(0, i_nNum - 1);
    while (!pieces.empty())
    {
        auto const [start, end] = pieces.back();
        pieces.pop_back();
        std::size_t const farthest = FarthestBeyond(i_padPoints, start, end, i_dTolerance);
        if (farthest == end)
            continue;
        stays[farthest] = true;
        pieces.emplace_back(start, farthest);
        pieces.emplace_back(farthest, end);
    }
    return stays;
}
} // namespace

void VOZGeoUtil::EvalLocalCoordSystemMatrix(double const * i_adVector, double * o_adMatrix)
{
    Point u{};
    if (!Normalised(i_adVector, u))
        u = {0.0, 0.0, 1.0};
    Point const a = FirstAxis(u);
    Point b{};
    EvalCross3D(u.data(), a.data(), b.data());
    for (std::size_t i = 0; i < 3; ++i)
    {
        o_adMatrix[i] = a[i] + 0.0; // a sum with 0 leaves no -0
        o_adMatrix[3 + i] = b[i] + 0.0;
        o_adMatrix[6 + i] = u[i] + 0.0;
    }
}

void VOZGeoUtil::ConvertCoordLocalToGlobal(double const * i_adOrigin, double const * i_adMatrix, double * io_adPoint)
{
    Point const local = PointAt(io_adPoint, 0);
    for (std::size_t i = 0; i < 3; ++i)
        io_adPoint[i] =
            i_adOrigin[i] + local[0] * i_adMatrix[i] + local[1] * i_adMatrix[3 + i] + local[2] * i_adMatrix[6 + i];
}

void VOZGeoUtil::ConvertCoordGlobalToLocal(double const * i_adOrigin, double const * i_adMatrix, double * io_adPoint)
{
    Point const fromOrigin = Difference(PointAt(io_adPoint, 0), PointAt(i_adOrigin, 0));
    for (std::size_t i = 0; i < 3; ++i)
        io_adPoint[i] = Dot(fromOrigin, PointAt(i_adMatrix, i));
}

double VOZGeoUtil::EvalLength3D(double const * i_adVector)
{
    return std::hypot(i_adVector[0], i_adVector[1], i_adVector[2]);
}

void VOZGeoUtil::EvalCross3D(double const * i_adFirst, double const * i_adSecond, double * o_adCross)
{
    Point const a = PointAt(i_adFirst, 0);
    Point const b = PointAt(i_adSecond, 0);
    for (std::size_t i = 0; i < 3; ++i)
        o_adCross[i] = a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3];
}

void VOZGeoUtil::Normalize3D(double * io_adVector)
{
    Point unit{};
    if (Normalised(io_adVector, unit))
        std::copy(unit.begin(), unit.end(), io_adVector);
}

void VOZGeoUtil::EvalScaleParametersForPolyline3D(int i_nNum, double const * i_padPoints, double & o_dScale,
                                                  double * o_adOffsets)
{
    o_dScale = 0.0;
    std::fill_n(o_adOffsets, 3, 0.0);
    if (i_nNum <= 0 || !i_padPoints)
        return;

    std::size_t const nValues = 3 * static_cast<std::size_t>(i_nNum);
    if (!std::all_of(i_padPoints, i_padPoints + nValues, [](double value) { return std::isfinite(value); }))
        return;
    Point least = PointAt(i_padPoints, 0);
    Point greatest = least;
    for (std::size_t i = 3; i < nValues; ++i)
    {
        least[i % 3] = std::min(least[i % 3], i_padPoints[i]);
        greatest[i % 3] = std::max(greatest[i % 3], i_padPoints[i]);
    }
    Point const sides = Difference(greatest, least);
    double const scale = 1.0 / std::max({sides[0], sides[1], sides[2]});
    std::copy(least.begin(), least.end(), o_adOffsets);
    if (std::isfinite(scale)) // not for points in one place, nor for a size below what has a reciprocal
        o_dScale = scale;
}

void VOZGeoUtil::DeletePointsPolyline3D(int i_nNum, double const * i_padPoints, double i_dTolerance, int & o_nNewNum,
                                        double *& o_padNewPoints)
{
    o_nNewNum = 0;
    o_padNewPoints = nullptr;
    if (i_nNum <= 0 || !i_padPoints)
        return;

    std::vector<bool> const stays = PointsThatStay(static_cast<std::size_t>(i_nNum), i_padPoints, i_dTolerance);
    o_nNewNum = static_cast<int>(std::count(stays.begin(), stays.end(), true));
    o_padNewPoints = new double[3 * static_cast<std::size_t>(o_nNewNum)];
    double * pNext = o_padNewPoints;
    for (std::size_t i = 0; i < stays.size(); ++i)
        if (stays[i])
            pNext = std::copy(i_padPoints + 3 * i, i_padPoints + 3 * i + 3, pNext);
}
