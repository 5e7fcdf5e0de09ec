// EdgeTreeBench.cpp: the search for crossing edges in a flat pattern: one tree of all edges, one query per edge.
//
// Each row is a plate with a hole, of about 10^4, 10^5 and 10^6 triangles, its nodes moved a little within their cells.
// Order 0 inserts its edges as they are numbered, 1 at random, 2 has the nodes and elements themselves numbered at
// random. Queries run in the order of the numbers. The probe does the same work on plain arrays: numbered links, boxes
// made once, nothing else. per_edge_log is seconds over n log2 n. Goals: 10^5 below 1 s; order 1 grows by at most 1.2
// times n log n from 10^4 to 10^6.

#include "ADTree.h"
#include "BenchMeshes.h"
#include "EdgeIntersectQuery.h"
#include "EdgeIntersection.h"
#include "EdgeSets.h"

#include <benchmark/benchmark.h>

#include <array>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace
{
using Box = std::array<double, 4>; // x low, x high, y low, y high

struct Pattern
{
    VOZCatMesh mesh;
    std::unique_ptr<FreeEdgeSet> freeEdges;
    std::unique_ptr<InternalEdgeSet> internalEdges;
    std::vector<int> ids; // of the edges, in the order of insertion
    Box lower;            // of the tree's region
    Box upper;

    int numEdge() const { return freeEdges->numEdge() + internalEdges->numEdge(); }
};

Pattern makePattern(int triangles, std::int64_t order)
{
    Pattern pattern;
    pattern.mesh = benchmeshes::dome(triangles, order == 2);
    std::mt19937 random(2);
    double const shake = 40.0 / std::sqrt(triangles); // about an eighth of a cell
    std::uniform_real_distribution<double> number(-shake, shake);
    double low[2] = {1e300, 1e300};
    double high[2] = {-1e300, -1e300};
    for (int n = 1; n <= pattern.mesh.numNode(); ++n)
        for (int c = 0; c < 2; ++c)
        {
            double & x = pattern.mesh.GetNodeData()[n][c];
            x += number(random);
            low[c] = std::min(low[c], x);
            high[c] = std::max(high[c], x);
        }
    pattern.lower = {low[0], low[0], low[1], low[1]};
    pattern.upper = {high[0], high[0], high[1], high[1]};
    pattern.freeEdges = std::make_unique<FreeEdgeSet>(pattern.mesh);
    pattern.internalEdges = std::make_unique<InternalEdgeSet>(pattern.mesh);
    for (int k = 1; k <= pattern.freeEdges->numEdge(); ++k)
        pattern.ids.push_back(-k);
    for (int k = 1; k <= pattern.internalEdges->numEdge(); ++k)
        pattern.ids.push_back(k);
    if (order == 1)
        std::shuffle(pattern.ids.begin(), pattern.ids.end(), random);
    return pattern;
}

Pattern const & patternOf(benchmark::State const & state)
{
    static std::map<std::pair<std::int64_t, std::int64_t>, Pattern> patterns;
    auto const key = std::make_pair(state.range(0), state.range(1));
    auto at = patterns.find(key);
    if (at == patterns.end())
        at = patterns.emplace(key, makePattern(static_cast<int>(state.range(0)), state.range(1))).first;
    return at->second;
}

// The pattern is clean: what is reported are ends shared by two edges nearly in line, by rounding.
void report(benchmark::State & state, Pattern const & pattern, int failures)
{
    double const n = pattern.numEdge();
    state.counters["edges"] = n;
    state.counters["reported"] = failures;
    state.counters["per_edge_log"] = benchmark::Counter(
        n * std::log2(n), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

struct Ends
{
    double const * start;
    double const * end;

    Ends(Pattern const & pattern, int id)
        : start(pattern.mesh
                    .GetNodeData()[id > 0 ? pattern.internalEdges->startNode(id) : pattern.freeEdges->startNode(-id)]),
          end(pattern.mesh.GetNodeData()[id > 0 ? pattern.internalEdges->endNode(id) : pattern.freeEdges->endNode(-id)])
    {
    }
};

Box boxOf(Ends const & ends)
{
    double const * const p = ends.start;
    double const * const q = ends.end;
    return {std::min(p[0], q[0]), std::max(p[0], q[0]), std::min(p[1], q[1]), std::max(p[1], q[1])};
}

int failuresOfTree(Pattern const & pattern)
{
    ADTree tree(pattern.lower.data(), pattern.upper.data(), 4);
    for (int const id : pattern.ids)
        tree.insert(boxOf(Ends(pattern, id)).data(), id);
    int failures = 0;
    auto const run = [&](int id)
    {
        Box const box = boxOf(Ends(pattern, id));
        double const low[4] = {pattern.lower[0], box[0], pattern.lower[2], box[2]};
        double const high[4] = {box[1], pattern.upper[1], box[3], pattern.upper[3]};
        EdgeIntersectQuery query(id, low, high, pattern.mesh, *pattern.freeEdges, *pattern.internalEdges);
        tree.query(query);
        failures += query.intersectingEdge() != 0 ? 1 : 0;
    };
    for (int k = 1; k <= pattern.freeEdges->numEdge(); ++k)
        run(-k);
    for (int k = 1; k <= pattern.internalEdges->numEdge(); ++k)
        run(k);
    return failures;
}

// The same tree as rows of an array, and the same search on boxes and ends made beforehand.
class Probe
{
public:
    explicit Probe(Pattern const & i_pattern) : mPattern(i_pattern)
    {
        int const numFree = i_pattern.freeEdges->numEdge();
        for (int i = 0; i < i_pattern.numEdge(); ++i)
        {
            Ends const ends(i_pattern, i < numFree ? -(i + 1) : i - numFree + 1);
            mBoxes.push_back(boxOf(ends));
            mEnds.push_back({static_cast<float>(ends.start[0]), static_cast<float>(ends.start[1]),
                             static_cast<float>(ends.end[0]), static_cast<float>(ends.end[1])});
        }
        mLinks.resize(mBoxes.size(), {{-1, -1}});
        for (int const id : i_pattern.ids)
            insert(id < 0 ? -id - 1 : numFree + id - 1);
    }

    int failures()
    {
        int count = 0;
        for (int i = 0; i < mPattern.numEdge(); ++i)
            count += crossed(i) ? 1 : 0;
        return count;
    }

private:
    struct Link
    {
        int branch[2];
    };
    struct Frame
    {
        int link;
        int coordinate;
        Box lower;
        Box upper;
    };

    static std::size_t at(int i) { return static_cast<std::size_t>(i); }

    void insert(int i)
    {
        if (mRoot < 0)
        {
            mRoot = i;
            return;
        }
        Box lower = mPattern.lower;
        Box upper = mPattern.upper;
        Box const & key = mBoxes[at(i)];
        int link = mRoot;
        for (std::size_t c = 0;; c = (c + 1) & 3)
        {
            double const mid = (lower[c] + upper[c]) * 0.5;
            int const right = key[c] >= mid ? 1 : 0;
            int & next = mLinks[at(link)].branch[right];
            if (next < 0)
            {
                next = i;
                return;
            }
            (right != 0 ? lower : upper)[c] = mid;
            link = next;
        }
    }

    bool crossed(int i)
    {
        Box const & box = mBoxes[at(i)];
        mFrames.assign(1, {mRoot, 0, mPattern.lower, mPattern.upper});
        while (!mFrames.empty())
        {
            Frame frame = mFrames.back();
            mFrames.pop_back();
            if (box[1] < frame.lower[0] || frame.upper[1] < box[0] || box[3] < frame.lower[2] ||
                frame.upper[3] < box[2])
                continue;
            if (isFailure(frame.link, i))
                return true;
            std::size_t const c = at(frame.coordinate);
            double const mid = (frame.lower[c] + frame.upper[c]) * 0.5;
            frame.coordinate = (frame.coordinate + 1) & 3;
            Link const link = mLinks[at(frame.link)];
            double const whole = frame.upper[c];
            frame.upper[c] = mid;
            frame.link = link.branch[0];
            if (frame.link >= 0)
                mFrames.push_back(frame);
            frame.upper[c] = whole;
            frame.lower[c] = mid;
            frame.link = link.branch[1];
            if (frame.link >= 0)
                mFrames.push_back(frame);
        }
        return false;
    }

    bool isFailure(int i, int j) const
    {
        Box const & a = mBoxes[at(i)];
        Box const & b = mBoxes[at(j)];
        if (i == j || a[1] < b[0] || b[1] < a[0] || a[3] < b[2] || b[3] < a[2])
            return false;
        std::array<float, 4> const & p = mEnds[at(i)];
        std::array<float, 4> const & q = mEnds[at(j)];
        return EdgeIntersection().isIntersecting(p.data(), p.data() + 2, q.data(), q.data() + 2);
    }

    Pattern const & mPattern;
    int mRoot = -1;
    std::vector<Box> mBoxes;
    std::vector<std::array<float, 4>> mEnds;
    std::vector<Link> mLinks;
    std::vector<Frame> mFrames;
};

void crossingEdges(benchmark::State & state)
{
    Pattern const & pattern = patternOf(state);
    int failures = 0;
    for (auto _ : state)
        failures = failuresOfTree(pattern);
    report(state, pattern, failures);
}

void plainArrayProbe(benchmark::State & state)
{
    Pattern const & pattern = patternOf(state);
    int failures = 0;
    for (auto _ : state)
        failures = Probe(pattern).failures();
    report(state, pattern, failures);
}

void sizes(benchmark::internal::Benchmark * series)
{
    series->ArgNames({"triangles", "order"})->Unit(benchmark::kMillisecond);
    for (int const order : {0, 1, 2})
        for (int const triangles : {10000, 100000, 1000000})
            series->Args({triangles, order});
}

BENCHMARK(crossingEdges)->Apply(sizes);
BENCHMARK(plainArrayProbe)->Apply(sizes);
} // namespace
