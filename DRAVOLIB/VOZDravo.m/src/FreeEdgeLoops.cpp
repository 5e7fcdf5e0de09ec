// FreeEdgeLoops.cpp: chaining the free edges, and the vote for the outer loop.
//
// The vote is the system's own rule: in the view along the stamping direction, the two lines through the mean of all
// boundary points cross loops; those that are crossed farthest out on the four sides have a vote each, and three of
// four carry. Otherwise the longest loop stands.

#include "FreeEdgeLoops.h"

#include "CATError.h"
#include "EdgeSets.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "Symmetry.h"
#include "Tip.h"
#include "VOZCatAxis.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace
{
std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// Walks on from free edge s through its end node until it is back, calling visit(edge). False at a node where the
// boundary ends or branches.
template <class Visit>
bool walkLoop(FreeEdgeSet const & edges, NodeFreeEdgeMap const & edgesAt, int s, Visit visit)
{
    int current = s;
    int node = edges.endNode(s);
    do
    {
        visit(current);
        if (node <= 0 || node > edgesAt.numNode() || edgesAt.references(node) != 2)
            return false;
        int const first = edgesAt.edge(node, 0);
        current = first != current ? first : edgesAt.edge(node, 1);
        node = edges.endNode(current) != node ? edges.endNode(current) : edges.startNode(current);
    } while (current != s);
    return true;
}

// The loops crossed highest and lowest by a line, 0 where there is no crossing.
struct Extremes
{
    int highLoop = 0;
    int lowLoop = 0;
    double high = -static_cast<double>(std::numeric_limits<float>::max());
    double low = static_cast<double>(std::numeric_limits<float>::max());

    void see(int loop, double crossing)
    {
        if (crossing > high)
        {
            high = crossing;
            highLoop = loop;
        }
        if (crossing < low)
        {
            low = crossing;
            lowLoop = loop;
        }
    }
};

// Crossings of the closed polygons (u, v) with the line u = level.
Extremes crossings(FreeEdgeLoops const & loops, std::vector<double> const & u, std::vector<double> const & v,
                   double level)
{
    Extremes extremes;
    std::size_t begin = 0;
    for (int l = 1; l <= loops.numLoops(); ++l)
    {
        std::size_t const size = at(loops.numLoopEdges(l));
        for (std::size_t i = 0; i < size; ++i)
        {
            std::size_t const k = begin + i;
            std::size_t const next = i + 1 == size ? begin : k + 1;
            bool const crosses = (level < u[k] && u[next] <= level) || (u[k] < level && level <= u[next]);
            if (crosses && std::fabs(u[next] - u[k]) > 1e-6)
                extremes.see(l, v[k] + (level - u[k]) / (u[next] - u[k]) * (v[next] - v[k]));
        }
        begin += size;
    }
    return extremes;
}

double mean(std::vector<double> const & values)
{
    double sum = 0.0;
    for (double const value : values)
        sum += value;
    return sum / static_cast<double>(values.size());
}
} // namespace

FreeEdgeLoops::FreeEdgeLoops(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh, int * io_error)
    : mNumLoops(0), mLoopSize(nullptr), mLoopStart(nullptr), mLoopEdge(nullptr), mLoopLength(nullptr), mOuterLoop(0)
{
    auto const build = [&]
    {
        std::vector<int> loopOf(at(i_edges.numEdge()) + 1, 0);
        bool const chained = chain(i_edges, i_mesh, loopOf.data());
        if (io_error && (!chained || mNumLoops == 0))
            *io_error = 1;
        if (!chained)
            return;
        measure(i_edges, i_mesh, loopOf.data());
        chooseOuterLoop(i_edges, i_mesh);
    };
    CATXHContext::Guard(build, [this] { release(); }); // no destructor runs after a constructor that throws
}

FreeEdgeLoops::~FreeEdgeLoops()
{
    release();
}

void FreeEdgeLoops::release()
{
    delete[] mLoopSize;
    delete[] mLoopStart;
    delete[] mLoopEdge;
    delete[] mLoopLength;
}

bool FreeEdgeLoops::chain(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh, int * o_loopOf)
{
    NodeFreeEdgeMap const edgesAt(i_mesh, i_edges);
    std::unique_ptr<int[]> list(new int[at(i_edges.numEdge()) + 1]());
    std::size_t position = 0;
    for (int s = 1; s <= i_edges.numEdge(); ++s)
    {
        if (o_loopOf[s] != 0)
            continue;
        ++mNumLoops;
        auto const record = [&](int k)
        {
            o_loopOf[k] = mNumLoops;
            list[++position] = k;
        };
        if (!walkLoop(i_edges, edgesAt, s, record))
            return false;
    }
    mLoopEdge = list.release();
    return true;
}

// One pass over the edges: within a loop they are summed in ascending edge number.
void FreeEdgeLoops::measure(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh, int const * i_loopOf)
{
    meshrows::Rows const rows(i_mesh);
    mLoopSize = new int[at(mNumLoops) + 1]();
    mLoopStart = new int[at(mNumLoops) + 1]();
    mLoopLength = new double[at(mNumLoops) + 1]();
    for (int k = 1; k <= i_edges.numEdge(); ++k)
    {
        ++mLoopSize[i_loopOf[k]];
        mLoopLength[i_loopOf[k]] += rowmath::distance(rows.node(i_edges.startNode(k)), rows.node(i_edges.endNode(k)));
    }
    for (int l = 1; l <= mNumLoops; ++l)
        mLoopStart[l] = mLoopStart[l - 1] + mLoopSize[l - 1];
}

void FreeEdgeLoops::chooseOuterLoop(FreeEdgeSet const & i_edges, VOZCatMesh const & i_mesh)
{
    if (mNumLoops == 0)
        return; // no loop, nothing crossed: 0
    for (int l = 1; l <= mNumLoops; ++l)
        if (mLoopLength[l] > mLoopLength[mOuterLoop])
            mOuterLoop = l;

    VOZCatAxis axis;
    Symmetry symmetry;
    int numUnderCutElem = 0;
    double maxUnderCutAngle = 0.0;
    AverageTip(i_mesh).tip(axis, symmetry, numUnderCutElem, maxUnderCutAngle);

    rowmath::Frame const frame(axis);
    meshrows::Rows const rows(i_mesh);
    std::size_t const numPoint = at(i_edges.numEdge());
    std::vector<double> x(numPoint);
    std::vector<double> y(numPoint);
    for (std::size_t i = 0; i < numPoint; ++i)
    {
        double local[3];
        frame.fromGlobal(rows.node(i_edges.startNode(mLoopEdge[i + 1])), local);
        x[i] = local[0];
        y[i] = local[1];
    }

    Extremes const vertical = crossings(*this, x, y, mean(x));
    Extremes const horizontal = crossings(*this, y, x, mean(y));
    int const votes[4] = {vertical.highLoop, vertical.lowLoop, horizontal.highLoop, horizontal.lowLoop};
    for (int const vote : votes)
        if (std::count(std::begin(votes), std::end(votes), vote) >= 3)
            mOuterLoop = vote; // 0 too: three sides without a crossing outvote the longest loop
}
