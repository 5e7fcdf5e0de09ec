// Curvature.cpp: slope of the node normals over a cell,  K_ab = sym( sum (e_a . N_k) dN_kb ).
//
// A sharp fold is no radius: the normal of a corner is averaged only over cells within 60 degrees of the corner's own.
// At a free rim the mean is one-sided and would halve K in the last row; there, across the rim, 2 n_e - N_in serves
// (n_e: mean normal of the node's cells, N_in: mean normal of their nodes off the rim), which is exact to second order
// on a cylinder. Along the rim the mean has both its sides and stays: on triangles n_e and N_in are not taken in the
// middle there.
//
// Where a bend ends in a flat the mean smears the turn of the bend's last cells over the flat's first row, an error of
// first order whose size is that row's length. Sharp ends mend it: the turning at a node is the covariance of its
// cells' normals, reflected at planes of symmetry. Along each principal direction of it a cell counts the more the less
// its other nodes turn in that direction, once one of them turns by less than a quarter; a flat then keeps its own
// normal, which is that of the surface there. Nodes of the rim see one side only and do not judge. Where the turning is
// even, and at a crease between two flats, the mean stays. The rule is this solver's own.

#include "geometry/Curvature.h"

#include <algorithm>

namespace voz::geometry
{

namespace
{

constexpr double kFoldCosine = 0.5; // 60 degrees
constexpr double kSymmetryCosine = 0.5;
constexpr double kCornerCosine = 0.5;
constexpr double kUneven = 0.25;          // share of a node's turning below which a cell counts more
constexpr double kGreatestWeight = 1.0e4; // of a flat: noise in two flats must not decide a crease between them
constexpr double kLeastTurning = 1.0e-18; // square of an angle: less is rounding

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

class CornerNormals
{
public:
    CornerNormals(SurfaceMesh const & i_mesh, std::vector<SymmetryNode> const & i_symmetry,
                  std::vector<Side> const & i_rimSides, BendEnds i_bendEnds)
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
        if (i_bendEnds == BendEnds::Sharp)
            for (int node = 0; node < static_cast<int>(i_mesh.position.size()); ++node)
                m_turning.push_back(turningAt(node));
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

    // Covariance of the cells' normals at a node.
    struct Turning
    {
        std::array<double, 6> sum{}; // xx, yy, zz, xy, yz, zx

        void add(double i_weight, Vec3 d)
        {
            std::array<double, 6> const product = {d.x * d.x, d.y * d.y, d.z * d.z, d.x * d.y, d.y * d.z, d.z * d.x};
            for (std::size_t k = 0; k < 6; ++k)
                sum[k] += i_weight * product[k];
        }
        double between(Vec3 a, Vec3 b) const
        {
            return sum[0] * a.x * b.x + sum[1] * a.y * b.y + sum[2] * a.z * b.z + sum[3] * (a.x * b.y + a.y * b.x) +
                   sum[4] * (a.y * b.z + a.z * b.y) + sum[5] * (a.z * b.x + a.x * b.z);
        }
    };

    // The weighted corner normal of a cell at one of its nodes.
    Vec3 cornerAt(int i_cell, int i_node) const
    {
        Cell const & cell = m_mesh.cells[at(i_cell)];
        auto const corner = std::find(cell.node.begin(), cell.node.end(), i_node);
        return m_corner[4 * at(i_cell) + static_cast<std::size_t>(corner - cell.node.begin())];
    }

    Turning turningAt(int i_node) const
    {
        std::vector<Vec3> corners;
        for (int i = m_cells.start[at(i_node)]; i < m_cells.start[at(i_node) + 1]; ++i)
            corners.push_back(cornerAt(m_cells.cell[at(i)], i_node));
        forEachPlane(i_node,
                     [&](Vec3 along)
                     {
                         for (std::size_t k = 0, count = corners.size(); k < count; ++k)
                             corners.push_back(corners[k] - 2.0 * dot(corners[k], along) * along);
                     });
        Vec3 mean;
        double angle = 0.0;
        for (Vec3 const & corner : corners)
        {
            mean = mean + corner;
            angle += length(corner);
        }
        Turning turning;
        if (angle > 0.0)
            for (Vec3 const & corner : corners)
                if (double const size = length(corner); size > 0.0)
                    turning.add(size / angle, (1.0 / size) * corner - (1.0 / angle) * mean);
        return turning;
    }

    template <class Visit>
    void forEachPlane(int i_node, Visit visit) const
    {
        auto held = std::lower_bound(m_symmetry.begin(), m_symmetry.end(), i_node,
                                     [](SymmetryNode const & a, int node) { return a.node < node; });
        for (; held != m_symmetry.end() && held->node == i_node; ++held)
            visit(lifted(held->direction));
    }

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
        forEachCellNear(i_node, i_reference, [&](int c) { sum = sum + cornerAt(c, i_node); });
        Vec3 const mean = unit(sum);
        return m_turning.empty() ? mean : besideFlats(i_node, i_reference, mean);
    }

    // The mean normal, along each principal direction of the turning drawn to the cells that hardly turn.
    Vec3 besideFlats(int i_node, Vec3 i_reference, Vec3 i_mean) const
    {
        Vec3 farthest; // from the mean, of the cells' normals
        forEachCellNear(i_node, i_reference,
                        [&](int c)
                        {
                            Vec3 const off = m_normal[at(c)] - dot(m_normal[at(c)], i_mean) * i_mean;
                            if (dot(off, off) > dot(farthest, farthest))
                                farthest = off;
                        });
        if (!(dot(farthest, farthest) > kLeastTurning))
            return i_mean;
        Vec3 const first = unit(farthest), second = cross(i_mean, first);
        Turning const & turning = m_turning[at(i_node)];
        double const angle = 0.5 * std::atan2(2.0 * turning.between(first, second),
                                              turning.between(first, first) - turning.between(second, second));
        Vec3 const one = std::cos(angle) * first + std::sin(angle) * second;
        Vec3 normal = i_mean;
        for (Vec3 const direction : {one, cross(i_mean, one)})
        {
            double const most = turning.between(direction, direction);
            if (!(most > kLeastTurning))
                continue;
            double drawn = 0.0, weights = 0.0;
            forEachCellNear(i_node, i_reference,
                            [&](int c)
                            {
                                Vec3 const corner = cornerAt(c, i_node);
                                double const weight = weightOf(c, direction, most);
                                drawn += weight * dot(corner, direction);
                                weights += weight * length(corner);
                            });
            if (weights > 0.0)
                normal = normal + (drawn / weights) * direction;
        }
        return unit(normal);
    }

    double weightOf(int i_cell, Vec3 i_direction, double i_most) const
    {
        Cell const & cell = m_mesh.cells[at(i_cell)];
        double least = i_most;
        for (int corner = 0; corner < cell.count; ++corner)
            if (int const node = cell.node[at(corner)]; !m_rim[at(node)].isRim)
                least = std::min(least, m_turning[at(node)].between(i_direction, i_direction));
        double const even = kUneven * kUneven * i_most;
        return least >= even ? 1.0 : std::min(even / std::max(least, kLeastTurning), kGreatestWeight);
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
        forEachPlane(i_node,
                     [&](Vec3 along)
                     {
                         if (std::abs(dot(i_normal, along)) < kSymmetryCosine)
                             i_normal = unit(i_normal - dot(i_normal, along) * along);
                     });
        return i_normal;
    }

    SurfaceMesh const & m_mesh;
    std::vector<RimNode> m_rim;
    NodeCells m_cells;
    std::vector<SymmetryNode> m_symmetry; // ascending by node
    std::vector<Vec3> m_normal;           // per cell
    std::vector<Vec3> m_corner;           // four per cell, weighted by the corner's angle
    std::vector<Turning> m_turning;       // per node; empty: bends end with the mean
};

} // namespace

std::vector<Curvature> pointCurvatures(SurfaceMesh const & i_mesh, PointTable const & i_points,
                                       std::vector<SymmetryNode> const & i_symmetry,
                                       std::vector<Side> const & i_rimSides, BendEnds i_bendEnds)
{
    CornerNormals const normals(i_mesh, i_symmetry, i_rimSides, i_bendEnds);
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
