// Curvature.cpp: slope of the node normals over a cell,  K_ab = sym( sum (e_a . N_k) dN_kb ).
//
// A sharp fold is no radius: the normal of a corner is averaged only over cells within 60 degrees of the corner's own.
// At a free rim the mean is one-sided and would halve K in the last row; there, across the rim, 2 n_e - N_in serves
// (n_e: mean normal of the node's cells, N_in: mean normal of their nodes off the rim), which is exact to second order
// on a cylinder. Along the rim the mean has both its sides and stays: on triangles n_e and N_in are not taken in the
// middle there.

#include "geometry/Curvature.h"

#include <algorithm>

namespace voz::geometry
{

namespace
{

constexpr double kFoldCosine = 0.5; // 60 degrees
constexpr double kSymmetryCosine = 0.5;
constexpr double kCornerCosine = 0.5;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

class CornerNormals
{
public:
    CornerNormals(SurfaceMesh const & i_mesh, std::vector<SymmetryNode> const & i_symmetry,
                  std::vector<Side> const & i_rimSides)
        : m_mesh(i_mesh), m_cells(buildNodeCells(i_mesh)), m_symmetry(i_symmetry)
    {
        layRim(i_rimSides);
        std::stable_sort(m_symmetry.begin(), m_symmetry.end(),
                         [](SymmetryNode const & a, SymmetryNode const & b) { return a.node < b.node; });
        for (Cell const & cell : i_mesh.cells)
        {
            m_normal.push_back(unit(vectorArea(i_mesh, cell)));
            for (int corner = 0; corner < 4; ++corner)
                m_corner.push_back(corner < cell.count ? weightedCornerNormal(i_mesh, cell, corner) : Vec3{});
        }
    }

    // Normal of a node as the cell sees it.
    Vec3 evaluate(int i_node, int i_cell) const
    {
        Vec3 const reference = m_normal[at(i_cell)];
        Vec3 const normal = m_rim[at(i_node)].isRim ? rimNormal(i_node, reference) : meanNormal(i_node, reference);
        return withoutSymmetry(i_node, normal);
    }

private:
    struct RimNode
    {
        bool isRim = false;
        Vec3 arriving, leaving; // unit, along the rim's sides
    };

    template <class Visit>
    void forEachCellNear(int i_node, Vec3 i_reference, Visit visit) const
    {
        for (int i = m_cells.start[at(i_node)]; i < m_cells.start[at(i_node) + 1]; ++i)
        {
            int const c = m_cells.cell[at(i)];
            if (dot(m_normal[at(c)], i_reference) >= kFoldCosine)
                visit(c);
        }
    }

    Vec3 meanNormal(int i_node, Vec3 i_reference) const
    {
        Vec3 sum;
        forEachCellNear(i_node, i_reference,
                        [&](int c)
                        {
                            Cell const & cell = m_mesh.cells[at(c)];
                            auto const corner = std::find(cell.node.begin(), cell.node.end(), i_node);
                            sum = sum + m_corner[4 * at(c) + static_cast<std::size_t>(corner - cell.node.begin())];
                        });
        return unit(sum);
    }

    Vec3 rimNormal(int i_node, Vec3 i_reference) const
    {
        Vec3 cells, inside;
        int cellCount = 0, insideCount = 0;
        forEachCellNear(i_node, i_reference,
                        [&](int c)
                        {
                            Cell const & cell = m_mesh.cells[at(c)];
                            cells = cells + m_normal[at(c)];
                            ++cellCount;
                            for (int corner = 0; corner < cell.count; ++corner)
                                if (int const other = cell.node[at(corner)]; !m_rim[at(other)].isRim)
                                {
                                    inside = inside + withoutSymmetry(other, meanNormal(other, i_reference));
                                    ++insideCount;
                                }
                        });
        if (insideCount == 0)
            return meanNormal(i_node, i_reference);
        Vec3 const beyond = unit((2.0 / cellCount) * cells - (1.0 / insideCount) * inside);
        RimNode const & rim = m_rim[at(i_node)];
        if (dot(rim.arriving, rim.leaving) < kCornerCosine)
            return beyond; // a corner of the rim is one-sided in all directions
        Vec3 const mean = meanNormal(i_node, i_reference);
        Vec3 const across = unit(cross(rim.arriving + rim.leaving, mean));
        return unit(mean + dot(beyond - mean, across) * across);
    }

    void layRim(std::vector<Side> const & i_rimSides)
    {
        m_rim.resize(m_mesh.position.size());
        for (Side const & side : i_rimSides)
        {
            bool const turned = m_mesh.cells[at(side.cell)].sign < 0.0;
            int const from = turned ? side.b : side.a, to = turned ? side.a : side.b;
            Vec3 const along = unit(m_mesh.position[at(to)] - m_mesh.position[at(from)]);
            m_rim[at(from)].isRim = m_rim[at(to)].isRim = true;
            m_rim[at(from)].leaving = along;
            m_rim[at(to)].arriving = along;
        }
        for (RimNode & rim : m_rim) // where the rim ends at a plane of symmetry it goes on straight
            if (dot(rim.leaving, rim.leaving) == 0.0)
                rim.leaving = rim.arriving;
            else if (dot(rim.arriving, rim.arriving) == 0.0)
                rim.arriving = rim.leaving;
    }

    Vec3 withoutSymmetry(int i_node, Vec3 i_normal) const
    {
        auto held = std::lower_bound(m_symmetry.begin(), m_symmetry.end(), i_node,
                                     [](SymmetryNode const & a, int node) { return a.node < node; });
        for (; held != m_symmetry.end() && held->node == i_node; ++held)
        {
            Vec3 const along = lifted(held->direction);
            if (std::abs(dot(i_normal, along)) < kSymmetryCosine)
                i_normal = unit(i_normal - dot(i_normal, along) * along);
        }
        return i_normal;
    }

    SurfaceMesh const & m_mesh;
    std::vector<RimNode> m_rim;
    NodeCells m_cells;
    std::vector<SymmetryNode> m_symmetry; // ascending by node
    std::vector<Vec3> m_normal;           // per cell
    std::vector<Vec3> m_corner;           // four per cell, weighted by the corner's angle
};

} // namespace

std::vector<Curvature> pointCurvatures(SurfaceMesh const & i_mesh, PointTable const & i_points,
                                       std::vector<SymmetryNode> const & i_symmetry,
                                       std::vector<Side> const & i_rimSides)
{
    CornerNormals const normals(i_mesh, i_symmetry, i_rimSides);
    std::vector<Curvature> curvatures;
    curvatures.reserve(i_points.points.size());
    for (IntegrationPoint const & point : i_points.points)
    {
        Curvature k;
        for (int corner = 0; corner < point.count; ++corner)
        {
            Vec3 const normal = normals.evaluate(point.node[at(corner)], point.cell);
            Vec2 const along{dot(point.e1, normal), dot(point.e2, normal)};
            Vec2 const shape = point.gradient[at(corner)];
            k.k11 += along.x * shape.x;
            k.k22 += along.y * shape.y;
            k.k12 += 0.5 * (along.x * shape.y + along.y * shape.x);
        }
        curvatures.push_back(k);
    }
    return curvatures;
}

PrincipalCurvature principalCurvature(Curvature const & i_curvature)
{
    double const mean = 0.5 * (i_curvature.k11 + i_curvature.k22);
    double const half = 0.5 * (i_curvature.k11 - i_curvature.k22);
    double const radius = std::hypot(half, i_curvature.k12);
    double const angle = 0.5 * std::atan2(i_curvature.k12, half);
    double const cosine = std::cos(angle), sine = std::sin(angle);
    if (mean >= 0.0)
        return {mean + radius, mean - radius, cosine, sine};
    return {mean - radius, mean + radius, -sine, cosine}; // the other direction is the more curved one
}

} // namespace voz::geometry
