// PointGrid.h: the points near a place, by cells of a hashed grid.
//
// Indices of points are the caller's. Points kept in the grid lie apart by more than the tolerance when each was added
// only after FindNear gave none; a cell then holds a bounded number, and a search costs a bounded time.

#ifndef POINTGRID_H
#define POINTGRID_H

#include <array>
#include <vector>

namespace voz::workbench
{

class PointGrid
{
public:
    // i_points: rows 0 .. i_count, row 0 unused, outlive the grid; i_tolerance: 0 or above, in their unit.
    PointGrid(double const (*i_points)[3], int i_count, double i_tolerance);

    int FindNear(int i_point) const; // nearest of those added within the tolerance, lowest at a tie; 0 if none
    void Add(int i_point);

private:
    using Cell = std::array<long long, 3>;
    std::size_t slotOf(Cell const & cell) const;
    long long cellOf(double x) const;

    double const (*mPoints)[3];
    double mTolerance;
    double mCell;
    std::vector<int> mHead; // per slot: a point, or 0
    std::vector<int> mNext; // per point: the next in its slot, or 0
};

} // namespace voz::workbench

#endif
