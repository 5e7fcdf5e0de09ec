// MeshCheck.cpp: each fault once, at its cause: an element that is none takes no part in edges, nor does one that
// repeats another; one without area is not judged by its angles.

#include "MeshCheck.h"

#include "ElementShape.h"
#include "MeshTopology.h"
#include "ModelEdit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::workbench
{
namespace
{
constexpr double kPairFraction = 1e-5; // of the diagonal

class MeshChecker
{
public:
    MeshChecker(MeshModel const & model, CheckOptions const & options)
        : mModel(model), mMesh(model.mesh), mRows(model.mesh.GetElemData()),
          mIsWhole(static_cast<std::size_t>(model.mesh.numElem()) + 1, 0)
    {
        mReport.limits = options;
        mReport.pairTolerance =
            options.pairTolerance >= 0.0 ? options.pairTolerance : FractionOfDiagonal(model.mesh, kPairFraction);
    }

    MeshReport Run()
    {
        countAll();
        findBroken();
        findTwins();
        EdgeTable const edges(mMesh, mIsWhole);
        Neighbours const neighbours(edges, mMesh.numElem());
        judgeEdges(edges);
        judgeDirections(neighbours);
        judgeShapes();
        judgePieces(neighbours);
        judgeNodes();
        for (std::vector<Finding> const & ofKind : mFindings)
            mReport.findings.insert(mReport.findings.end(), ofKind.begin(), ofKind.end());
        return std::move(mReport);
    }

private:
    static std::size_t at(int position) { return static_cast<std::size_t>(position); }
    int nodeId(int position) const { return mModel.nodeIds[at(position - 1)]; }
    int elementId(int position) const { return mModel.elementIds[at(position - 1)]; }

    std::array<double, 3> nodePlace(int n) const
    {
        return {mMesh.NodeValue(n, 0), mMesh.NodeValue(n, 1), mMesh.NodeValue(n, 2)};
    }

    std::array<double, 3> middleOf(int a, int b) const
    {
        std::array<double, 3> middle = nodePlace(a);
        for (std::size_t c = 0; c < 3; ++c)
            middle[c] = 0.5 * (middle[c] + mMesh.NodeValue(b, static_cast<int>(c)));
        return middle;
    }

    double lengthOf(int a, int b) const
    {
        return std::hypot(mMesh.NodeValue(a, 0) - mMesh.NodeValue(b, 0), mMesh.NodeValue(a, 1) - mMesh.NodeValue(b, 1),
                          mMesh.NodeValue(a, 2) - mMesh.NodeValue(b, 2));
    }

    void add(FindingKind kind, Finding finding)
    {
        auto const k = static_cast<std::size_t>(kind);
        finding.kind = kind;
        ++mReport.counts[k];
        if (mFindings[k].size() < mReport.limits.listed)
            mFindings[k].push_back(finding);
    }

    void addElement(FindingKind kind, int e, double value)
    {
        Finding finding;
        finding.element = elementId(e);
        finding.value = value;
        finding.place = ShapeOf(mMesh, mRows[e]).middle;
        add(kind, finding);
    }

    void countAll()
    {
        mReport.nodes = mMesh.numNode();
        mReport.elements = mMesh.numElem();
        for (int e = 1; e <= mMesh.numElem(); ++e)
            ++(mRows[e][0] == mRows[e][3] ? mReport.triangles : mReport.quadrilaterals);
        for (int n = 1; n <= mMesh.numNode(); ++n)
            for (std::size_t c = 0; c < 3; ++c)
            {
                double const x = mMesh.NodeValue(n, static_cast<int>(c));
                mReport.boxLow[c] = n == 1 ? x : std::min(mReport.boxLow[c], x);
                mReport.boxHigh[c] = n == 1 ? x : std::max(mReport.boxHigh[c], x);
            }
    }

    void findBroken()
    {
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            int row[4];
            std::copy_n(mRows[e], 4, row);
            int const had = row[0] == row[3] ? 3 : 4;
            mIsWhole[at(e)] = ReduceRow(row) == had ? 1 : 0;
            if (!mIsWhole[at(e)])
                addElement(FindingKind::RepeatedNode, e, 0.0);
        }
    }

    void findTwins()
    {
        std::vector<int> const twin = EarlierTwins(mMesh, mIsWhole);
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            if (twin[at(e)] == 0)
                continue;
            mIsWhole[at(e)] = 0;
            Finding finding;
            finding.element = elementId(e);
            finding.otherElement = elementId(twin[at(e)]);
            finding.place = ShapeOf(mMesh, mRows[e]).middle;
            add(FindingKind::Duplicate, finding);
        }
    }

    void judgeEdges(EdgeTable const & edges)
    {
        std::vector<std::pair<int, int>> freeEdges;
        double sum = 0.0;
        mReport.shortestEdge = std::numeric_limits<double>::infinity();
        edges.ForEachEdge(
            [&](int low, int high, std::span<EdgeSide const> sides)
            {
                double const length = lengthOf(low, high);
                sum += length;
                mReport.shortestEdge = std::min(mReport.shortestEdge, length);
                mReport.longestEdge = std::max(mReport.longestEdge, length);
                if (sides.size() == 1)
                    freeEdges.emplace_back(low, high);
                else
                    ++mReport.innerEdges;
                if (sides.size() > 2)
                {
                    Finding finding;
                    finding.node = nodeId(low);
                    finding.otherNode = nodeId(high);
                    finding.element = elementId(sides[2].element);
                    finding.value = static_cast<double>(sides.size());
                    finding.place = middleOf(low, high);
                    add(FindingKind::NonManifoldEdge, finding);
                }
            });
        mReport.freeEdges = static_cast<int>(freeEdges.size());
        int const count = mReport.freeEdges + mReport.innerEdges;
        mReport.meanEdge = count > 0 ? sum / count : 0.0;
        if (count == 0)
            mReport.shortestEdge = 0.0;
        chain(freeEdges);
    }

    // Free edges joined at their nodes; a loop where each node has two of them.
    void chain(std::vector<std::pair<int, int>> const & edges)
    {
        std::vector<std::size_t> begin(at(mMesh.numNode()) + 2, 0);
        for (auto const & [a, b] : edges)
        {
            ++begin[at(a) + 1];
            ++begin[at(b) + 1];
        }
        for (std::size_t n = 1; n < begin.size(); ++n)
            begin[n] += begin[n - 1];
        std::vector<int> others(begin.back()); // the far nodes of the edges at each node
        std::vector<std::size_t> next(begin);
        for (auto const & [a, b] : edges)
        {
            others[next[at(a)]++] = b;
            others[next[at(b)]++] = a;
        }
        std::vector<char> isSeen(at(mMesh.numNode()) + 1, 0);
        std::vector<int> stack;
        for (int first = 1; first <= mMesh.numNode(); ++first)
        {
            if (isSeen[at(first)] || begin[at(first)] == begin[at(first) + 1])
                continue;
            BoundaryLoop loop;
            loop.firstNode = nodeId(first);
            loop.place = nodePlace(first);
            isSeen[at(first)] = 1;
            for (stack.assign(1, first); !stack.empty();)
            {
                int const n = stack.back();
                stack.pop_back();
                std::size_t const degree = begin[at(n) + 1] - begin[at(n)];
                if (degree != 2)
                {
                    loop.isClosed = false;
                    mOpenNodes.emplace_back(n, degree);
                }
                for (std::size_t i = begin[at(n)]; i < begin[at(n) + 1]; ++i)
                {
                    if (n < others[i]) // each edge once
                    {
                        ++loop.edges;
                        loop.length += lengthOf(n, others[i]);
                    }
                    if (!std::exchange(isSeen[at(others[i])], char{1}))
                        stack.push_back(others[i]);
                }
            }
            mReport.loops.push_back(loop);
        }
        std::stable_sort(mReport.loops.begin(), mReport.loops.end(),
                         [](BoundaryLoop const & a, BoundaryLoop const & b) { return a.length > b.length; });
        std::sort(mOpenNodes.begin(), mOpenNodes.end());
        for (auto const & [n, degree] : mOpenNodes)
        {
            Finding finding;
            finding.node = nodeId(n);
            finding.value = static_cast<double>(degree);
            finding.place = nodePlace(n);
            add(FindingKind::OpenBoundary, finding);
        }
    }

    void judgeDirections(Neighbours const & neighbours)
    {
        Directions const directions = DirectionsOf(neighbours, mIsWhole);
        for (int e = 1; e <= mMesh.numElem(); ++e)
            if (directions.isFlipped[at(e)])
                addElement(FindingKind::Flipped, e, 0.0);
        for (auto const & [a, b] : directions.contradictions)
        {
            Finding finding;
            finding.element = elementId(a);
            finding.otherElement = elementId(b);
            finding.place = ShapeOf(mMesh, mRows[a]).middle;
            add(FindingKind::NotOrientable, finding);
        }
    }

    void judgeShapes()
    {
        mAreas.assign(at(mMesh.numElem()) + 1, 0.0);
        CheckOptions const & limits = mReport.limits;
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            if (!mIsWhole[at(e)])
                continue;
            ElementShape const shape = ShapeOf(mMesh, mRows[e]);
            mAreas[at(e)] = shape.area;
            mReport.area += shape.area;
            if (shape.hasNoArea)
            {
                addElement(FindingKind::ZeroArea, e, shape.area);
                continue;
            }
            if (shape.smallestAngle < limits.sliverAngle)
                addElement(FindingKind::Sliver, e, shape.smallestAngle);
            if (shape.longest > limits.aspectLimit * shape.shortest)
                addElement(FindingKind::Aspect, e, shape.longest / shape.shortest);
            if (shape.isConcave)
                addElement(FindingKind::Concave, e, shape.largestAngle);
            else if (shape.warp > limits.warpLimit)
                addElement(FindingKind::Warp, e, shape.warp);
        }
    }

    void judgePieces(Neighbours const & neighbours)
    {
        std::vector<int> const pieceOf = PiecesOf(neighbours, mIsWhole);
        std::vector<int> firstOf;
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            if (pieceOf[at(e)] == 0)
                continue;
            std::size_t const piece = at(pieceOf[at(e)] - 1);
            if (piece == firstOf.size())
            {
                firstOf.push_back(e);
                mReport.pieces.push_back({0, 0.0, elementId(e)});
            }
            ++mReport.pieces[piece].elements;
            mReport.pieces[piece].area += mAreas[at(e)];
        }
        for (std::size_t piece = 1; piece < firstOf.size(); ++piece)
            addElement(FindingKind::SeparatePiece, firstOf[piece], mReport.pieces[piece].elements);
        std::stable_sort(mReport.pieces.begin(), mReport.pieces.end(),
                         [](MeshPiece const & a, MeshPiece const & b) { return a.elements > b.elements; });
    }

    void judgeNodes()
    {
        std::vector<char> isUsed(at(mMesh.numNode()) + 1, 0);
        for (int e = 1; e <= mMesh.numElem(); ++e)
            for (int const n : mRows[e])
                isUsed[at(n)] = 1;
        std::vector<int> const near = NearestEarlier(mMesh, mReport.pairTolerance);
        for (int n = 1; n <= mMesh.numNode(); ++n)
        {
            Finding finding;
            finding.node = nodeId(n);
            finding.place = nodePlace(n);
            if (!isUsed[at(n)])
                add(FindingKind::LoneNode, finding);
            if (near[at(n)] == n)
                continue;
            finding.otherNode = nodeId(near[at(n)]);
            finding.value = lengthOf(n, near[at(n)]);
            add(FindingKind::ClosePair, finding);
        }
    }

    MeshModel const & mModel;
    VOZCatMesh const & mMesh;
    int (*mRows)[4];
    MeshReport mReport;
    std::vector<char> mIsWhole; // takes part in edges: corners all different, not a repeat
    std::vector<double> mAreas;
    std::vector<std::pair<int, std::size_t>> mOpenNodes;
    std::array<std::vector<Finding>, kFindingKinds> mFindings;
};
} // namespace

bool MeshReport::HasErrors() const
{
    for (int k = 0; k < kFindingKinds; ++k)
        if (counts[static_cast<std::size_t>(k)] > 0 && NameOf(static_cast<FindingKind>(k)).isError)
            return true;
    return false;
}

MeshReport CheckMesh(MeshModel const & i_model, CheckOptions const & i_options)
{
    return MeshChecker(i_model, i_options).Run();
}

} // namespace voz::workbench
