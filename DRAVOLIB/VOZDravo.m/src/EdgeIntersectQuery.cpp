// EdgeIntersectQuery.cpp: candidates of the tree against one edge: boxes first, segments last.

#include "EdgeIntersectQuery.h"

#include "EdgeIntersection.h"
#include "EdgeSets.h"
#include "MeshRows.h"

#include <algorithm>
#include <limits>

// What each visit needs stands here, unexported and inline: calls through the library's own table of names would cost
// more than the work.
namespace
{
constexpr double kLargest = std::numeric_limits<double>::max();

struct Ends
{
    int start = 0;
    int end = 0;
};

// Compared without negating the id: the lowest int has no negative.
bool isEdge(FreeEdgeSet const & freeEdges, InternalEdgeSet const & internalEdges, int id)
{
    return id > 0 ? id <= internalEdges.numEdge() : id < 0 && id >= -freeEdges.numEdge();
}

// 0 and 0 if there is no such edge.
Ends endsOf(FreeEdgeSet const & freeEdges, InternalEdgeSet const & internalEdges, int id)
{
    if (!isEdge(freeEdges, internalEdges, id))
        return {};
    if (id > 0)
        return {internalEdges.startNode(id), internalEdges.endNode(id)};
    return {freeEdges.startNode(-id), freeEdges.endNode(-id)};
}

// Lows and highs are chosen without a branch: which end is the lower cannot be foretold.
void boxOf(double const * start, double const * end, double * o_box)
{
    for (int c = 0; c < 2; ++c)
    {
        o_box[2 * c] = std::min(std::min(kLargest, start[c]), end[c]);
        o_box[2 * c + 1] = std::max(std::max(-kLargest, start[c]), end[c]);
    }
}

void cornersOf(double const * box, double * o_lower, double * o_upper)
{
    o_lower[0] = o_lower[1] = box[0];
    o_lower[2] = o_lower[3] = box[2];
    o_upper[0] = o_upper[1] = box[1];
    o_upper[2] = o_upper[3] = box[3];
}

void toFloat(double const * i_node, float * o_point)
{
    o_point[0] = static_cast<float>(i_node[0]);
    o_point[1] = static_cast<float>(i_node[1]);
}
} // namespace

EdgeIntersectQuery::EdgeIntersectQuery(int i_edge, double const * const i_lower, double const * const i_upper,
                                       VOZCatMesh const & i_mesh, FreeEdgeSet const & i_freeEdges,
                                       InternalEdgeSet const & i_internalEdges)
    : ADTreeQuery(4, i_lower, i_upper), mMesh(&i_mesh), mFreeEdges(&i_freeEdges), mInternalEdges(&i_internalEdges),
      mEdge(i_edge), mIntersectingEdge(0), mIsOverlapFailure(false), mIsFoldFailure(false)
{
}

EdgeIntersectQuery::~EdgeIntersectQuery() = default;

int EdgeIntersectQuery::startNode(int i_id) const
{
    return endsOf(*mFreeEdges, *mInternalEdges, i_id).start;
}

int EdgeIntersectQuery::endNode(int i_id) const
{
    return endsOf(*mFreeEdges, *mInternalEdges, i_id).end;
}

void EdgeIntersectQuery::generateEdgeBox(double * const o_box, int i_id) const
{
    if (!isEdge(*mFreeEdges, *mInternalEdges, i_id))
    {
        o_box[0] = o_box[2] = kLargest;
        o_box[1] = o_box[3] = -kLargest;
        return;
    }
    Ends const ends = endsOf(*mFreeEdges, *mInternalEdges, i_id);
    meshrows::Rows const rows(*mMesh);
    boxOf(rows.node(ends.start), rows.node(ends.end), o_box);
}

void EdgeIntersectQuery::getBoundsMin(double * const o_corner, double * const i_box) const
{
    double upper[4];
    cornersOf(i_box, o_corner, upper);
}

void EdgeIntersectQuery::getBoundsMax(double * const o_corner, double * const i_box) const
{
    double lower[4];
    cornersOf(i_box, lower, o_corner);
}

bool EdgeIntersectQuery::isEdgeOverlapping(int i_id) const
{
    double box[4];
    double lower[4];
    double upper[4];
    generateEdgeBox(box, i_id);
    cornersOf(box, lower, upper);
    return overlap(lower, upper);
}

void EdgeIntersectQuery::visit(int i_id)
{
    if (i_id == mEdge || mIsOverlapFailure || mIsFoldFailure || !isEdge(*mFreeEdges, *mInternalEdges, i_id))
        return;
    meshrows::Rows const rows(*mMesh);
    Ends const ends = endsOf(*mFreeEdges, *mInternalEdges, i_id);
    double const * const start = rows.node(ends.start);
    double const * const end = rows.node(ends.end);
    double box[4];
    double lower[4];
    double upper[4];
    boxOf(start, end, box);
    cornersOf(box, lower, upper);
    if (!overlap(lower, upper) || !isEdge(*mFreeEdges, *mInternalEdges, mEdge))
        return;

    Ends const own = endsOf(*mFreeEdges, *mInternalEdges, mEdge);
    float candidate[2][2];
    float tested[2][2];
    toFloat(start, candidate[0]);
    toFloat(end, candidate[1]);
    toFloat(rows.node(own.start), tested[0]);
    toFloat(rows.node(own.end), tested[1]);
    if (!EdgeIntersection().isIntersecting(candidate[0], candidate[1], tested[0], tested[1]))
        return;
    mIntersectingEdge = i_id;
    if (i_id < 0 && mEdge < 0)
        mIsOverlapFailure = true;
    else
        mIsFoldFailure = true;
}
