// Curvature.cpp: slope of the node normals over a cell,  K_ab = sym( sum (e_a . N_k) dN_kb ).
//
// A sharp fold is no radius: the normal of a corner is averaged only over cells within 60 degrees of the corner's own.
// At a free rim the mean is one-sided and would halve K in the last row; there the unit vector of 2 n_e - N_in serves
// (n_e: mean normal of the node's cells, N_in: mean normal of their nodes off the rim), which is exact to second order
// on a cylinder.

#include "geometry/Curvature.h"

#include <algorithm>

namespace voz::geometry
{

namespace
{

constexpr double kFoldCosine = 0.5; // 60 degrees
constexpr double kSymmetryCosine = 0.5;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

class CornerNormals
{
public:
    CornerNormals(SurfaceMesh const & i_mesh, std::vector<SymmetryNode> const & i_symmetry,
                  std::vector<bool> const & i_rim)
        : m_mesh(i_mesh), m_rim(i_rim), m_cells(buildNodeCells(i_mesh)), m_symmetry(i_symmetry)
    {
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
        Vec3 const normal = m_rim[at(i_node)] ? rimNormal(i_node, reference) : meanNormal(i_node, reference);
        return withoutSymmetry(i_node, normal);
    }

private:
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
        Vec3 cells, beside, anywhere;
        int cellCount = 0, besideCount = 0, anywhereCount = 0;
        forEachCellNear(i_node, i_reference,
                        [&](int c)
                        {
                            Cell const & cell = m_mesh.cells[at(c)];
                            cells = cells + m_normal[at(c)];
                            ++cellCount;
                            for (int corner = 0; corner < cell.count; ++corner)
                            {
                                int const other = cell.node[at(corner)];
                                if (m_rim[at(other)])
                                    continue;
                                Vec3 const normal = withoutSymmetry(other, meanNormal(other, i_reference));
                                anywhere = anywhere + normal;
                                ++anywhereCount;
                                if (cell.node[at(cell.next(corner))] == i_node ||
                                    cell.node[at(cell.previous(corner))] == i_node)
                                {
                                    beside = beside + normal;
                                    ++besideCount;
                                }
                            }
                        });
        if (anywhereCount == 0)
            return meanNormal(i_node, i_reference);
        // The far corner of a quadrilateral counts only where no side leads off the rim: beside a corner of the sheet
        // it would pull the mean along the rim.
        Vec3 const inside = besideCount > 0 ? (1.0 / besideCount) * beside : (1.0 / anywhereCount) * anywhere;
        return unit((2.0 / cellCount) * cells - inside);
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
    std::vector<bool> const & m_rim;
    NodeCells m_cells;
    std::vector<SymmetryNode> m_symmetry; // ascending by node
    std::vector<Vec3> m_normal;           // per cell
    std::vector<Vec3> m_corner;           // four per cell, weighted by the corner's angle
};

} // namespace

std::vector<Curvature> pointCurvatures(SurfaceMesh const & i_mesh, PointTable const & i_points,
                                       std::vector<SymmetryNode> const & i_symmetry, std::vector<bool> const & i_rim)
{
    CornerNormals const normals(i_mesh, i_symmetry, i_rim);
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
