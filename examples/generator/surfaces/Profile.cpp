// Profile.cpp: chains of lines and arcs.

#include "Surfaces.h"

#include <cmath>

namespace voz::examples
{

Profile::Profile(Point2 start, double heading) : mPoints{start}, mHeading(heading) {}

Profile & Profile::line(double length, int rows)
{
    Point2 const from = mPoints.back();
    for (int row = 1; row <= rows; ++row)
    {
        double const s = length * row / rows;
        mPoints.push_back({from[0] + s * std::cos(mHeading), from[1] + s * std::sin(mHeading)});
    }
    mLength += length;
    return *this;
}

// The centre stands at a right angle to the heading, on the side of the turn.
Profile & Profile::arc(double radius, double turn, int rows)
{
    double const side = turn > 0.0 ? 1.0 : -1.0;
    Point2 const from = mPoints.back();
    Point2 const centre{from[0] - side * radius * std::sin(mHeading), from[1] + side * radius * std::cos(mHeading)};
    for (int row = 1; row <= rows; ++row)
    {
        double const heading = mHeading + turn * row / rows;
        mPoints.push_back(
            {centre[0] + side * radius * std::sin(heading), centre[1] - side * radius * std::cos(heading)});
    }
    mHeading += turn;
    mLength += radius * std::fabs(turn);
    return *this;
}

} // namespace voz::examples
