// LoopFilters.cpp: large inner loops, symmetry edges of the outer loop, and the edges that the full blank holder gets.

#include "LoopFilters.h"

#include "CATError.h"
#include "EdgeSets.h"
#include "ElemProperty.h"
#include "FreeEdgeLoops.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{
std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}
} // namespace

LoopSizeFilter::LoopSizeFilter(FreeEdgeLoops const & i_loops, float const & i_ratio)
    : mNumFilteredInnerEdges(0), mNumFilteredInnerLoops(0), mMark(new int[at(i_loops.numLoops()) + 1]())
{
    int const outer = i_loops.outerLoopNum();
    for (int l = 1; l <= i_loops.numLoops(); ++l)
    {
        if (l == outer || !(static_cast<double>(i_ratio) * i_loops.loopLength(outer) <= i_loops.loopLength(l)))
            continue;
        mMark[l] = 1;
        ++mNumFilteredInnerLoops;
        mNumFilteredInnerEdges += i_loops.numLoopEdges(l);
    }
}

LoopSizeFilter::~LoopSizeFilter()
{
    delete[] mMark;
}

namespace
{
// The distance from the plane within which an edge of that length lies on it.
double planeTolerance(double edgeLength)
{
    return std::max(0.333 * edgeLength, 0.0001);
}

// Sets the mark of each outer edge whose ends both lie on the plane local[normalAxis] = 0. Returns their count.
int markPlane(meshrows::Rows const & rows, FreeEdgeSet const & edges, FreeEdgeLoops const & loops,
              rowmath::Frame const & frame, int normalAxis, int mark, int * io_marks)
{
    int count = 0;
    for (int i = 1; i <= loops.numOuter(); ++i)
    {
        double s[3];
        double t[3];
        frame.fromGlobal(rows.node(edges.startNode(loops.edge(i))), s);
        frame.fromGlobal(rows.node(edges.endNode(loops.edge(i))), t);
        double const tolerance = planeTolerance(rowmath::distance(s, t));
        if (std::fabs(s[normalAxis]) <= tolerance && std::fabs(t[normalAxis]) <= tolerance)
        {
            io_marks[i] = mark;
            ++count;
        }
    }
    return count;
}

// The distinct nodes of the edges with that mark, in order of first use. Returns their count; o_nodes has room for two
// per edge.
int collectNodes(FreeEdgeSet const & edges, FreeEdgeLoops const & loops, int mark, int const * marks, int * o_nodes)
{
    int highest = 0;
    for (int i = 1; i <= loops.numOuter(); ++i)
        if (marks[i] == mark)
            highest = std::max({highest, edges.startNode(loops.edge(i)), edges.endNode(loops.edge(i))});
    std::vector<char> seen(at(highest) + 1, 0);
    int count = 0;
    auto const append = [&](int node)
    {
        if (seen[at(node)])
            return;
        seen[at(node)] = 1;
        o_nodes[count++] = node;
    };
    for (int i = 1; i <= loops.numOuter(); ++i)
        if (marks[i] == mark)
        {
            append(edges.startNode(loops.edge(i)));
            append(edges.endNode(loops.edge(i)));
        }
    return count;
}
} // namespace

LoopSymmetryFilter::LoopSymmetryFilter(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges,
                                       FreeEdgeLoops const & i_loops, Symmetry const & i_symmetry,
                                       VOZCatAxis const & i_axis)
    : mNumXZ(0), mNumYZ(0), mMark(nullptr), mXZNode(nullptr), mYZNode(nullptr)
{
    auto const build = [&]
    {
        mMark = new int[at(i_loops.numOuter()) + 1]();
        mMark[0] = i_loops.numOuter();
        rowmath::Frame const frame(i_axis);
        meshrows::Rows const rows(i_mesh);
        if (i_symmetry.xzSymmetry())
        {
            int const count = markPlane(rows, i_edges, i_loops, frame, 1, 1, mMark);
            mXZNode = new int[2 * at(count)];
            mNumXZ = collectNodes(i_edges, i_loops, 1, mMark, mXZNode);
        }
        // Last, over all positions: at a corner an edge on both planes ends as the second's, in both lists.
        if (i_symmetry.yzSymmetry())
        {
            int const count = markPlane(rows, i_edges, i_loops, frame, 0, 2, mMark);
            mYZNode = new int[2 * at(count)];
            mNumYZ = collectNodes(i_edges, i_loops, 2, mMark, mYZNode);
        }
    };
    CATXHContext::Guard(build, [this] { release(); });
}

LoopSymmetryFilter::~LoopSymmetryFilter()
{
    release();
}

void LoopSymmetryFilter::release()
{
    for (int ** const array : {&mMark, &mXZNode, &mYZNode})
    {
        delete[] * array;
        *array = nullptr;
    }
}

int LoopSymmetryFilter::isSymmetryEdge(int i) const
{
    return i >= 1 && i <= mMark[0] ? mMark[i] : 0;
}

namespace
{
// Calls loop(l) behind the edges of each loop that takes part, and edge(k) for each of its edges that the holder gets.
// The mark is that of the outer loop at the same position, for inner loops too: required as it stands.
template <class Edge, class Loop>
void forEachHeldEdge(FreeEdgeLoops const & loops, LoopSymmetryFilter const & onPlane, LoopSizeFilter const & large,
                     Edge edge, Loop loop)
{
    for (int l = 1; l <= loops.numLoops(); ++l)
    {
        if (l != loops.outerLoopNum() && large.isFilteredLoop(l) == 0)
            continue;
        for (int i = 1; i <= loops.numLoopEdges(l); ++i)
            if (onPlane.isSymmetryEdge(i) == 0)
                edge(loops.loopEdge(l, i));
        loop(l);
    }
}
} // namespace

ProcessEdgeSequence::ProcessEdgeSequence(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges,
                                         FreeEdgeLoops const & i_loops, Symmetry const &,
                                         LoopSymmetryFilter const & i_onPlane, FullBlankHolder const & i_holder,
                                         LoopSizeFilter const & i_large)
    : mNumBlankHolder(0), mOuterBHolderCount(0), mEdge(nullptr), mOuterBHLength(0.0)
{
    if (!i_holder.isActive())
        return;
    forEachHeldEdge(
        i_loops, i_onPlane, i_large, [this](int) { ++mNumBlankHolder; }, [this](int) { ++mOuterBHolderCount; });

    auto const fill = [&]
    {
        mEdge = new int[at(mNumBlankHolder) + 1]();
        meshrows::Rows const rows(i_mesh);
        int position = 0;
        auto const append = [&](int k)
        {
            mEdge[++position] = k;
            mOuterBHLength += rowmath::distance(rows.node(i_edges.startNode(k)), rows.node(i_edges.endNode(k)));
        };
        forEachHeldEdge(i_loops, i_onPlane, i_large, append, [](int) {});
    };
    CATXHContext::Guard(fill, [this] { delete[] mEdge; });
}

ProcessEdgeSequence::~ProcessEdgeSequence()
{
    delete[] mEdge;
}
