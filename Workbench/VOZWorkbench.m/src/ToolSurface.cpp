// ToolSurface.cpp: surfaces of tools: in and out of meshes, rims, neighbours.

#include "ToolSurface.h"

#include "HoleFilling.h"

#include <cstdlib>
#include <memory>
#include <numeric>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace voz::workbench
{

namespace
{
// Each side of each element, by its nodes in ascending order, so that both elements of an edge stand together.
struct Side
{
    int low;
    int high;
    int element;
    bool isUpward; // the element runs from low to high
};

std::vector<Side> SidesOf(Surface const & i_surface)
{
    std::vector<Side> sides;
    sides.reserve(4 * i_surface.elements.size());
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
    {
        std::array<int, 4> const & row = i_surface.elements[e];
        int const corners = Surface::Corners(row);
        for (int k = 0; k < corners; ++k)
        {
            int const a = row[static_cast<std::size_t>(k)];
            int const b = row[static_cast<std::size_t>((k + 1) % corners)];
            sides.push_back({std::min(a, b), std::max(a, b), static_cast<int>(e), a < b});
        }
    }
    std::ranges::sort(sides, [](Side const & a, Side const & b)
                      { return std::tie(a.low, a.high, a.element) < std::tie(b.low, b.high, b.element); });
    return sides;
}

// visit(first, count) for the sides of each edge.
template <class Visit>
void ForEachEdge(std::vector<Side> const & i_sides, Visit visit)
{
    for (std::size_t i = 0; i < i_sides.size();)
    {
        std::size_t end = i + 1;
        while (end < i_sides.size() && i_sides[end].low == i_sides[i].low && i_sides[end].high == i_sides[i].high)
            ++end;
        visit(i_sides.data() + i, end - i);
        i = end;
    }
}

struct FreeMemory
{
    void operator()(void * i_memory) const { std::free(i_memory); }
};
using NodeRows = std::unique_ptr<double[][3], FreeMemory>;
using ElementRows = std::unique_ptr<int[][4], FreeMemory>;

// FillAllHoles takes and gives C memory, element rows numbered from 1.
int FillHoles(Surface & io_surface)
{
    std::size_t const holes = RimsOf(io_surface).size() - 1;
    if (holes == 0)
        return 0;
    int numNode = static_cast<int>(io_surface.nodes.size());
    int numElem = static_cast<int>(io_surface.elements.size());
    NodeRows nodes(static_cast<double(*)[3]>(std::malloc(io_surface.nodes.size() * sizeof(double[3]))));
    ElementRows elements(static_cast<int(*)[4]>(std::malloc(io_surface.elements.size() * sizeof(int[4]))));
    if (!nodes || !elements)
        throw std::bad_alloc();
    for (std::size_t n = 0; n < io_surface.nodes.size(); ++n)
        std::ranges::copy(io_surface.nodes[n], nodes[n]);
    for (std::size_t e = 0; e < io_surface.elements.size(); ++e)
        for (std::size_t k = 0; k < 4; ++k)
            elements[e][k] = io_surface.elements[e][k] + 1;
    double(*rawNodes)[3] = nodes.release();
    int(*rawElements)[4] = elements.release();
    int const failed = FillAllHoles(numNode, &rawNodes, numElem, &rawElements);
    nodes.reset(rawNodes);
    elements.reset(rawElements);
    if (failed != 0)
        throw std::runtime_error("the holes of the part could not be filled");
    io_surface.nodes.resize(static_cast<std::size_t>(numNode));
    io_surface.elements.resize(static_cast<std::size_t>(numElem));
    for (std::size_t n = 0; n < io_surface.nodes.size(); ++n)
        std::copy_n(nodes[n], 3, io_surface.nodes[n].begin());
    for (std::size_t e = 0; e < io_surface.elements.size(); ++e)
        for (std::size_t k = 0; k < 4; ++k)
            io_surface.elements[e][k] = elements[e][k] - 1;
    return static_cast<int>(holes);
}

double AreaUp(Surface const & i_surface)
{
    double area = 0.0;
    for (std::array<int, 4> const & row : i_surface.elements)
        area += i_surface.AreaVector(row)[2];
    return area;
}

void RequireOnePiece(Surface const & i_surface)
{
    ElementNeighbours const neighbours(i_surface);
    std::vector<char> isReached(i_surface.elements.size(), 0);
    std::vector<int> queue{0};
    isReached[0] = 1;
    for (std::size_t i = 0; i < queue.size(); ++i)
        neighbours.ForEach(queue[i],
                           [&](int e)
                           {
                               if (isReached[static_cast<std::size_t>(e)] == 0)
                               {
                                   isReached[static_cast<std::size_t>(e)] = 1;
                                   queue.push_back(e);
                               }
                           });
    if (queue.size() != i_surface.elements.size())
        throw std::runtime_error("the part falls into pieces that share no edges");
}
} // namespace

Point3 Surface::AreaVector(std::array<int, 4> const & i_row) const
{
    Point3 const & a = At(i_row[0]);
    Point3 const & b = At(i_row[1]);
    Point3 const & c = At(i_row[2]);
    return Corners(i_row) == 3 ? Scaled(Cross(Difference(b, a), Difference(c, a)), 0.5)
                               : Scaled(Cross(Difference(c, a), Difference(At(i_row[3]), b)), 0.5);
}

double Surface::Area() const
{
    double area = 0.0;
    for (std::array<int, 4> const & row : elements)
        area += Length(AreaVector(row));
    return area;
}

PointBox Surface::Box() const
{
    PointBox box;
    for (Point3 const & p : nodes)
        box.Add(p);
    return box;
}

Surface SurfaceOf(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame)
{
    Surface surface;
    Point3 const origin{i_frame.origin(0), i_frame.origin(1), i_frame.origin(2)};
    std::array<Point3, 3> const axes{AxisOf(i_frame, 0), AxisOf(i_frame, 1), AxisOf(i_frame, 2)};
    for (int n = 1; n <= i_mesh.numNode(); ++n)
    {
        Point3 const p = Difference(NodeOf(i_mesh, n), origin);
        surface.nodes.push_back({Dot(axes[0], p), Dot(axes[1], p), Dot(axes[2], p)});
    }
    for (int e = 1; e <= i_mesh.numElem(); ++e)
    {
        std::array<int, 4> row{};
        for (int k = 0; k < 4; ++k)
            row[static_cast<std::size_t>(k)] = i_mesh.elem(e, k) - 1;
        surface.elements.push_back(row);
    }
    return surface;
}

VOZCatMesh MeshOf(Surface const & i_surface)
{
    VOZCatMesh mesh(static_cast<int>(i_surface.nodes.size()), static_cast<int>(i_surface.elements.size()));
    for (std::size_t n = 0; n < i_surface.nodes.size(); ++n)
        std::ranges::copy(i_surface.nodes[n], mesh.GetNodeData()[n + 1]);
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
        for (std::size_t k = 0; k < 4; ++k)
            mesh.GetElemData()[e + 1][k] = i_surface.elements[e][k] + 1;
    return mesh;
}

Surface Subset(Surface const & i_surface, std::vector<char> const & i_isTaken)
{
    std::vector<int> position(i_surface.nodes.size(), -1);
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
        if (i_isTaken[e] != 0)
            for (int const n : i_surface.elements[e])
                position[static_cast<std::size_t>(n)] = 0;
    Surface subset;
    for (std::size_t n = 0; n < position.size(); ++n)
        if (position[n] == 0)
        {
            position[n] = static_cast<int>(subset.nodes.size());
            subset.nodes.push_back(i_surface.nodes[n]);
        }
    for (std::size_t e = 0; e < i_surface.elements.size(); ++e)
    {
        if (i_isTaken[e] == 0)
            continue;
        std::array<int, 4> row = i_surface.elements[e];
        for (int & n : row)
            n = position[static_cast<std::size_t>(n)];
        subset.elements.push_back(row);
    }
    return subset;
}

void Reverse(Surface & io_surface)
{
    for (std::array<int, 4> & row : io_surface.elements)
        std::swap(row[1], row[Surface::Corners(row) == 3 ? 2 : 3]);
}

void Lift(Surface & io_surface, double i_height)
{
    for (Point3 & p : io_surface.nodes)
        p[2] += i_height;
}

Surface PartSurface(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame, int & o_filledHoles)
{
    Surface surface = SurfaceOf(i_mesh, i_frame);
    surface = Subset(surface, std::vector<char>(surface.elements.size(), 1)); // without lone nodes
    if (surface.elements.empty())
        throw std::runtime_error("the part has no elements");
    RequireOnePiece(surface);
    if (RimsOf(surface).empty())
        throw std::runtime_error("the part is closed: it has no rim");
    o_filledHoles = FillHoles(surface);
    if (AreaUp(surface) < 0.0)
        Reverse(surface);
    if (RimsOf(surface).size() != 1)
        throw std::runtime_error("the part has more than one outer rim");
    return surface;
}

std::vector<RimEdge> FreeEdgesOf(Surface const & i_surface)
{
    std::vector<RimEdge> edges;
    ForEachEdge(SidesOf(i_surface),
                [&edges](Side const * i_sides, std::size_t i_count)
                {
                    if (i_count > 2 || (i_count == 2 && i_sides[0].isUpward == i_sides[1].isUpward))
                        throw std::runtime_error("elements of the part do not run one way, or three meet at an edge");
                    if (i_count == 1)
                        edges.push_back(i_sides->isUpward ? RimEdge{i_sides->low, i_sides->high, i_sides->element}
                                                          : RimEdge{i_sides->high, i_sides->low, i_sides->element});
                });
    return edges;
}

std::vector<RimLoop> RimsOf(Surface const & i_surface)
{
    std::vector<RimEdge> const edges = FreeEdgesOf(i_surface);
    std::vector<int> edgeFrom(i_surface.nodes.size(), -1);
    for (std::size_t i = 0; i < edges.size(); ++i)
        if (std::exchange(edgeFrom[static_cast<std::size_t>(edges[i].from)], static_cast<int>(i)) >= 0)
            throw std::runtime_error("two rims of the part touch at a node");
    std::vector<RimLoop> loops;
    std::vector<char> isWalked(edges.size(), 0);
    for (std::size_t first = 0; first < edges.size(); ++first)
    {
        if (isWalked[first] != 0)
            continue;
        RimLoop loop;
        for (std::size_t i = first; isWalked[i] == 0;)
        {
            isWalked[i] = 1;
            loop.push_back(edges[i]);
            i = static_cast<std::size_t>(edgeFrom[static_cast<std::size_t>(edges[i].to)]);
        }
        loops.push_back(std::move(loop));
    }
    return loops;
}

ElementNeighbours::ElementNeighbours(Surface const & i_surface) : mBegin(i_surface.elements.size() + 2, 0)
{
    std::vector<Side> const sides = SidesOf(i_surface);
    auto const forEachPair = [&sides](auto visit)
    {
        ForEachEdge(sides,
                    [&visit](Side const * i_sides, std::size_t i_count)
                    {
                        for (std::size_t a = 0; a < i_count; ++a)
                            for (std::size_t b = 0; b < i_count; ++b)
                                if (a != b)
                                    visit(static_cast<std::size_t>(i_sides[a].element), i_sides[b].element);
                    });
    };
    forEachPair([this](std::size_t e, int) { ++mBegin[e + 2]; });
    std::partial_sum(mBegin.begin(), mBegin.end(), mBegin.begin());
    mEntries.resize(mBegin.back());
    forEachPair([this](std::size_t e, int other) { mEntries[mBegin[e + 1]++] = other; });
    mBegin.pop_back();
}

} // namespace voz::workbench
