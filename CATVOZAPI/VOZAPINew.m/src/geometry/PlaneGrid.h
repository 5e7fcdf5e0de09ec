// PlaneGrid.h: triangles over a plane, and which of them is the highest above a point of it.

#ifndef PLANEGRID_H
#define PLANEGRID_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <vector>

// A triangle in space, seen along z. Points that lie outside by rounding alone count as inside.
class PlaneTriangle
{
public:
    using Corner = std::array<double, 3>;

    PlaneTriangle() = default;
    explicit PlaneTriangle(std::array<Corner, 3> const & i_corners); // not one that stands on its edge

    Corner const & At(std::size_t i_corner) const { return m_corners[i_corner]; }

    // Its plane's height above the point, within the heights of its corners.
    double HeightAt(double i_x, double i_y) const;

    // The height above a point of the triangle; minus infinity for a point outside.
    double HeightInside(double i_x, double i_y) const
    {
        constexpr double kInside = -1e-9;
        double const x = i_x - m_corners[0][0];
        double const y = i_y - m_corners[0][1];
        double const part1 = m_part1[0] * x + m_part1[1] * y;
        double const part2 = m_part2[0] * x + m_part2[1] * y;
        if (!(part1 >= kInside && part2 >= kInside && 1.0 - part1 - part2 >= kInside))
            return -std::numeric_limits<double>::infinity();
        return m_corners[0][2] + part1 * m_rise1 + part2 * m_rise2;
    }

private:
    std::array<Corner, 3> m_corners{};
    std::array<double, 2> m_part1{}; // gradients of the second and third corners' shares of a point
    std::array<double, 2> m_part2{};
    double m_rise1 = 0.0; // from the first corner to the second and third
    double m_rise2 = 0.0;
};

// Cells in rows; each lists the triangles over it. A crowded cell that is asked again and again gets a grid of its own:
// as soon as the walks through its list have cost as much as that grid will, so that fine regions in coarse meshes and
// fans of slender triangles cost at most twice what the better of both ways costs. Built in time and memory
// proportional to the number of triangles; asked in constant time on even meshes, in log n on graded ones.
class PlaneGrid
{
public:
    struct Box
    {
        std::array<double, 2> least;
        std::array<double, 2> greatest;
    };
    struct Hit
    {
        std::uint32_t triangle = 0;
        double height = -std::numeric_limits<double>::infinity(); // that, where nothing was hit
    };

    // The triangles, at least one, are lent and outlive the grid. No cell is larger than i_dLargestCell, as far as
    // memory in proportion to the number of triangles allows.
    PlaneGrid(std::span<PlaneTriangle const> i_triangles, double i_dLargestCell);

    Hit Highest(double i_x, double i_y);

private:
    using Ids = std::vector<std::uint32_t>;

    // What a crowded cell has been asked, and its own grid.
    struct Crowd
    {
        int nAsked = 0;
        std::unique_ptr<PlaneGrid> pFiner;
    };

    PlaneGrid(std::span<PlaneTriangle const> i_triangles, std::span<std::uint32_t const> i_ids, Box const & i_box,
              int i_nDepth);

    void Build(std::span<std::uint32_t const> i_ids, double i_dCell);
    void ChooseCells(double i_dCell);
    PlaneGrid * Finer(std::size_t i_cell);
    std::size_t Index(double i_value, std::size_t i_axis) const;
    template <class Visit>
    void ForEachCell(PlaneTriangle const & i_triangle, Visit const & i_visit) const;

    std::span<PlaneTriangle const> m_triangles;
    Box m_box;
    int m_nDepth = 0;
    double m_cell = 1.0;
    std::array<std::size_t, 2> m_counts = {1, 1};
    std::vector<std::size_t> m_starts; // per cell, and the end: where its triangles begin in m_ids
    Ids m_ids;
    std::vector<Crowd> m_crowds; // per cell; empty as long as no crowded cell was asked
};

#endif
