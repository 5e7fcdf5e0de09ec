// ToolMeshesOffset.cpp: the surface at a distance from another one.
//
// A node goes by the vector d that brings the planes of its elements to the distance: n_i . d = 1 for each unit normal,
// by least squares weighted with the angles w_i at the node,
//
//     (sum w n n^T + e I) d = sum w n + e d0
//
// with d0 the best vector along the mean normal. On a smooth surface the equations all but agree and e holds d to d0;
// at an edge or a corner of a box d is the exact meeting point of the moved planes.

#include "ToolSurface.h"

#include <utility>

namespace voz::workbench
{

namespace
{
constexpr double kHold = 1e-3;   // e: of the sum of weights
constexpr double kLongest = 2.0; // of the distance: no spike at an edge folded sharper than 60 degrees
constexpr double kShrunk = 0.02; // of its area: an element that has shrunk to less is as good as folded
constexpr double kMended = 0.5;  // cosine to its normal: smoothing goes on until no element is turned further
constexpr int kMostRings = 20;   // around folded elements, in which smoothing is tried
constexpr int kSweeps = 200;     // of smoothing: the region then spans its border like a film of soap

struct NodePlanes // sums over the elements at a node
{
    double nn[6] = {}; // xx, yy, zz, xy, xz, yz of sum w n n^T
    Point3 n{};        // sum w n
    double weight = 0.0;

    void Add(Point3 const & i_normal, double i_weight)
    {
        nn[0] += i_weight * i_normal[0] * i_normal[0];
        nn[1] += i_weight * i_normal[1] * i_normal[1];
        nn[2] += i_weight * i_normal[2] * i_normal[2];
        nn[3] += i_weight * i_normal[0] * i_normal[1];
        nn[4] += i_weight * i_normal[0] * i_normal[2];
        nn[5] += i_weight * i_normal[1] * i_normal[2];
        n = Sum(n, i_normal, i_weight);
        weight += i_weight;
    }

    Point3 Direction() const;
};

Point3 NodePlanes::Direction() const
{
    Point3 const mean = Unit(n);
    double const quadratic = nn[0] * mean[0] * mean[0] + nn[1] * mean[1] * mean[1] + nn[2] * mean[2] * mean[2] +
                             2.0 * (nn[3] * mean[0] * mean[1] + nn[4] * mean[0] * mean[2] + nn[5] * mean[1] * mean[2]);
    if (!(quadratic > 0.0))
        return mean;
    Point3 const start = Scaled(mean, Dot(n, mean) / quadratic);
    double const hold = kHold * weight;
    Point3 const rowX{nn[0] + hold, nn[3], nn[4]};
    Point3 const rowY{nn[3], nn[1] + hold, nn[5]};
    Point3 const rowZ{nn[4], nn[5], nn[2] + hold};
    Point3 const right = Sum(n, start, hold);
    Point3 const yz = Cross(rowY, rowZ);
    Point3 const zx = Cross(rowZ, rowX);
    Point3 const xy = Cross(rowX, rowY);
    double const determinant = Dot(rowX, yz); // above 0: the matrix is positive definite
    Point3 const solved = Scaled(Sum(Sum(Scaled(yz, right[0]), zx, right[1]), xy, right[2]), 1.0 / determinant);
    double const length = Length(solved);
    return length > kLongest ? Scaled(solved, kLongest / length) : solved;
}

// visit(corner's place in the row, its node, the node before, the node after)
template <class Visit>
void ForEachCorner(std::array<int, 4> const & i_row, Visit visit)
{
    int const corners = Surface::Corners(i_row);
    for (int k = 0; k < corners; ++k)
        visit(i_row[static_cast<std::size_t>(k)], i_row[static_cast<std::size_t>((k + corners - 1) % corners)],
              i_row[static_cast<std::size_t>((k + 1) % corners)]);
}

Point3 CornerNormal(Surface const & i_surface, int i_node, int i_before, int i_after)
{
    Point3 const & p = i_surface.At(i_node);
    return Cross(Difference(i_surface.At(i_after), p), Difference(i_surface.At(i_before), p));
}

std::vector<NodePlanes> PlanesOf(Surface const & i_surface)
{
    std::vector<NodePlanes> planes(i_surface.nodes.size());
    for (std::array<int, 4> const & row : i_surface.elements)
        ForEachCorner(
            row,
            [&](int node, int before, int after)
            {
                Point3 const & p = i_surface.At(node);
                Point3 const cross = CornerNormal(i_surface, node, before, after);
                double const cosine = Dot(Difference(i_surface.At(after), p), Difference(i_surface.At(before), p));
                double const sine = Length(cross);
                if (sine > 0.0)
                    planes[static_cast<std::size_t>(node)].Add(Scaled(cross, 1.0 / sine), std::atan2(sine, cosine));
            });
    return planes;
}

// --- Mending ---------------------------------------------------------------------------------------------------------

// Nodes across an edge. A node of the rim knows those of the rim alone, so that smoothing keeps the rim's run.
class NodeNeighbours
{
public:
    explicit NodeNeighbours(Surface const & i_surface) : mRows(i_surface.nodes.size())
    {
        for (std::array<int, 4> const & row : i_surface.elements)
            ForEachCorner(row,
                          [this](int node, int before, int after)
                          {
                              Row(node).push_back(before);
                              Row(node).push_back(after);
                          });
        std::vector<RimEdge> const rim = FreeEdgesOf(i_surface);
        for (RimEdge const & edge : rim)
        {
            Row(edge.from).clear();
            Row(edge.to).clear();
        }
        for (RimEdge const & edge : rim)
        {
            Row(edge.from).push_back(edge.to);
            Row(edge.to).push_back(edge.from);
        }
        for (std::vector<int> & row : mRows)
        {
            std::ranges::sort(row);
            row.erase(std::unique(row.begin(), row.end()), row.end());
        }
    }
    std::vector<int> const & Of(std::size_t i_node) const { return mRows[i_node]; }

private:
    std::vector<int> & Row(int i_node) { return mRows[static_cast<std::size_t>(i_node)]; }

    std::vector<std::vector<int>> mRows;
};

// Nodes of the elements and of so many rings around them, ascending.
std::vector<std::size_t> RegionAround(Surface const & i_surface, NodeNeighbours const & i_neighbours,
                                      std::vector<int> const & i_elements, int i_rings)
{
    std::vector<std::size_t> region;
    std::vector<char> isIn(i_surface.nodes.size(), 0);
    auto const add = [&](std::size_t node)
    {
        if (std::exchange(isIn[node], char{1}) == 0)
            region.push_back(node);
    };
    for (int const e : i_elements)
        for (int const n : i_surface.elements[static_cast<std::size_t>(e)])
            add(static_cast<std::size_t>(n));
    std::size_t begin = 0;
    for (int ring = 0; ring < i_rings; ++ring)
    {
        std::size_t const end = region.size();
        for (; begin < end; ++begin)
            for (int const n : i_neighbours.Of(region[begin]))
                add(static_cast<std::size_t>(n));
    }
    std::ranges::sort(region);
    return region;
}

void Smooth(Surface & io_surface, NodeNeighbours const & i_neighbours, std::vector<std::size_t> const & i_region)
{
    std::vector<Point3> means;
    for (std::size_t const node : i_region)
    {
        Point3 mean{};
        for (int const n : i_neighbours.Of(node))
            mean = Sum(mean, io_surface.At(n), 1.0 / static_cast<double>(i_neighbours.Of(node).size()));
        means.push_back(mean);
    }
    for (std::size_t i = 0; i < i_region.size(); ++i)
        io_surface.nodes[i_region[i]] = means[i];
}

// Elements with a corner whose normal, as long as twice its area, has gone from one vector to another that isBad.
template <class IsBad>
std::vector<int> ElementsWhere(Surface const & i_surface, Surface const & i_moved, IsBad isBad)
{
    std::vector<int> found;
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
    {
        bool isFound = false;
        ForEachCorner(i_surface.elements[e],
                      [&](int node, int before, int after)
                      {
                          isFound = isFound || isBad(CornerNormal(i_surface, node, before, after),
                                                     CornerNormal(i_moved, node, before, after));
                      });
        if (isFound)
            found.push_back(static_cast<int>(e));
    }
    return found;
}

bool IsFolded(Point3 const & i_first, Point3 const & i_then)
{
    return Dot(i_first, i_then) < kShrunk * Dot(i_first, i_first);
}
} // namespace

std::vector<int> FoldedElements(Surface const & i_surface, Surface const & i_moved)
{
    return ElementsWhere(i_surface, i_moved, IsFolded);
}

OffsetResult OffsetSurface(Surface const & i_surface, double i_distance)
{
    OffsetResult result{i_surface, 0, 0};
    std::vector<NodePlanes> const planes = PlanesOf(i_surface);
    for (std::size_t n = 0; n < planes.size(); ++n)
        result.surface.nodes[n] = Sum(i_surface.nodes[n], planes[n].Direction(), i_distance);
    std::vector<int> folded = FoldedElements(i_surface, result.surface);
    if (folded.empty())
        return result;
    NodeNeighbours const neighbours(i_surface);
    Surface const offset = result.surface;
    auto const isBad = [](Point3 const & before, Point3 const & then)
    { return IsFolded(before, then) || Dot(before, then) < kMended * Length(before) * Length(then); };
    for (int rings = 0; rings <= kMostRings;
         ++rings) // until the border lies where the moved walls have not yet crossed
    {
        std::vector<std::size_t> const region = RegionAround(i_surface, neighbours, folded, rings);
        result.surface = offset;
        for (int sweep = 0; sweep < kSweeps; ++sweep)
            Smooth(result.surface, neighbours, region);
        if (ElementsWhere(i_surface, result.surface, isBad).empty())
            break;
    }
    std::size_t const first = folded.size();
    result.folded = static_cast<int>(FoldedElements(i_surface, result.surface).size());
    result.mended = std::max(0, static_cast<int>(first) - result.folded);
    return result;
}

} // namespace voz::workbench
