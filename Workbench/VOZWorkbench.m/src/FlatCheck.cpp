// FlatCheck.cpp: one tree over the boxes of all edges, one query an edge.
//
// An edge enters the tree as the point (x low, x high, y low, y high). With R the tree's region, the boxes that overlap
// the edge's own are the points from (R x low, x low, R y low, y low) to (x high, R x high, y high, R y high). The tree
// does not balance itself: edges enter in a shuffled order, always the same. Queries go through the pattern along a
// curve that fills the plane (G. M. Morton, 1966), so that what a query walks is still at hand from the one before.

#include "FlatCheck.h"

#include "ADTree.h"
#include "EdgeIntersectQuery.h"
#include "EdgeSets.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <random>

namespace voz::workbench
{

namespace
{
using Box = std::array<double, 4>; // x low, x high, y low, y high
using Pair = std::array<double, 2>;

constexpr unsigned kSeed = 20;
constexpr double kEdgeLength = 10.0; // of the mean edge, once the pattern has its size

// What single precision makes of the ends of neighbours that lie nearly in line is no crossing.
class StrangersQuery : public EdgeIntersectQuery
{
public:
    StrangersQuery(int i_edge, Box const & i_low, Box const & i_high, VOZCatMesh const & i_mesh,
                   FreeEdgeSet const & i_free, InternalEdgeSet const & i_inner)
        : EdgeIntersectQuery(i_edge, i_low.data(), i_high.data(), i_mesh, i_free, i_inner), mStart(startNode(i_edge)),
          mEnd(endNode(i_edge))
    {
    }

    void visit(int i_id) override
    {
        int const a = startNode(i_id);
        int const b = endNode(i_id);
        if (a != mStart && a != mEnd && b != mStart && b != mEnd)
            EdgeIntersectQuery::visit(i_id);
    }

private:
    int mStart;
    int mEnd;
};

// The pattern around the origin, its mean edge of one length whatever it was.
class Pattern
{
public:
    explicit Pattern(VOZCatMesh const & i_mesh) : mMesh(i_mesh), mFree(mMesh), mInner(mMesh)
    {
        for (int k = 1; k <= mFree.numEdge(); ++k)
            mIds.push_back(-k);
        for (int k = 1; k <= mInner.numEdge(); ++k)
            mIds.push_back(k);
        BringToSize();
    }

    std::vector<int> const & Ids() const { return mIds; } // free edges first
    Box const & Region() const { return mRegion; }
    int Start(int i_id) const { return i_id > 0 ? mInner.startNode(i_id) : mFree.startNode(-i_id); }
    int End(int i_id) const { return i_id > 0 ? mInner.endNode(i_id) : mFree.endNode(-i_id); }

    Box BoxOf(int i_id) const
    {
        double const * const p = mMesh.GetNodeData()[Start(i_id)];
        double const * const q = mMesh.GetNodeData()[End(i_id)];
        return {std::min(p[0], q[0]), std::max(p[0], q[0]), std::min(p[1], q[1]), std::max(p[1], q[1])};
    }

    int PartnerOf(int i_id, ADTree & io_tree) const // 0: none
    {
        Box const box = BoxOf(i_id);
        StrangersQuery query(i_id, {mRegion[0], box[0], mRegion[2], box[2]}, {box[1], mRegion[1], box[3], mRegion[3]},
                             mMesh, mFree, mInner);
        io_tree.query(query);
        return query.intersectingEdge();
    }

private:
    void BringToSize()
    {
        constexpr double kFar = std::numeric_limits<double>::max();
        Box box = {kFar, -kFar, kFar, -kFar};
        double length = 0.0;
        for (int const id : mIds)
        {
            Box const edge = BoxOf(id);
            box = {std::min(box[0], edge[0]), std::max(box[1], edge[1]), std::min(box[2], edge[2]),
                   std::max(box[3], edge[3])};
            length += std::hypot(edge[1] - edge[0], edge[3] - edge[2]) / static_cast<double>(mIds.size());
        }
        double const factor = length > 0.0 && std::isfinite(length) ? kEdgeLength / length : 1.0;
        double const middle[2] = {0.5 * (box[0] + box[1]), 0.5 * (box[2] + box[3])};
        for (int n = 1; n <= mMesh.numNode(); ++n)
            for (int c = 0; c < 2; ++c)
            {
                double & x = mMesh.GetNodeData()[n][c];
                x = (x - middle[c]) * factor;
            }
        for (std::size_t i = 0; i < 4; ++i)
            mRegion[i] = (box[i] - middle[i / 2]) * factor;
    }

    VOZCatMesh mMesh;
    FreeEdgeSet mFree;
    InternalEdgeSet mInner;
    std::vector<int> mIds;
    Box mRegion{};
};

// The bits of two numbers in turn.
std::uint64_t Interleaved(std::uint32_t i_x, std::uint32_t i_y)
{
    std::uint64_t code = 0;
    for (int bit = 0; bit < 16; ++bit)
        code |= (static_cast<std::uint64_t>(i_x >> bit & 1U) << (2 * bit)) |
                (static_cast<std::uint64_t>(i_y >> bit & 1U) << (2 * bit + 1));
    return code;
}

std::vector<std::size_t> AlongThePlane(Pattern const & i_pattern)
{
    Box const & region = i_pattern.Region();
    auto const step = [&](double i_low, double i_high, std::size_t i_axis)
    {
        double const span = region[2 * i_axis + 1] - region[2 * i_axis];
        double const share = span > 0.0 ? (0.5 * (i_low + i_high) - region[2 * i_axis]) / span : 0.0;
        return static_cast<std::uint32_t>(std::clamp(share, 0.0, 1.0) * 65535.0);
    };
    std::vector<std::uint64_t> codes;
    for (int const id : i_pattern.Ids())
    {
        Box const box = i_pattern.BoxOf(id);
        codes.push_back(Interleaved(step(box[0], box[1], 0), step(box[2], box[3], 1)));
    }
    std::vector<std::size_t> order(codes.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return codes[i]; });
    return order;
}

std::vector<int> PartnersOf(Pattern const & i_pattern)
{
    std::vector<int> shuffled = i_pattern.Ids();
    std::mt19937 random(kSeed);
    for (std::size_t i = shuffled.size(); i > 1; --i) // std::shuffle differs from library to library
        std::swap(shuffled[i - 1], shuffled[random() % i]);
    Box const & region = i_pattern.Region();
    Box const low = {region[0], region[0], region[2], region[2]};
    Box const high = {region[1], region[1], region[3], region[3]};
    ADTree tree(low.data(), high.data(), 4);
    for (int const id : shuffled)
        tree.insert(i_pattern.BoxOf(id).data(), id);
    std::vector<int> partners(shuffled.size(), 0);
    for (std::size_t const i : AlongThePlane(i_pattern))
        partners[i] = i_pattern.PartnerOf(i_pattern.Ids()[i], tree);
    return partners;
}

// Where the lines of both segments meet.
Pair PlaceOf(VOZCatMesh const & i_mesh, FlatEdge const & i_edge, FlatEdge const & i_partner)
{
    double const * const a = i_mesh.GetNodeData()[i_edge.start];
    double const * const b = i_mesh.GetNodeData()[i_edge.end];
    double const * const c = i_mesh.GetNodeData()[i_partner.start];
    double const * const d = i_mesh.GetNodeData()[i_partner.end];
    double const r[2] = {b[0] - a[0], b[1] - a[1]};
    double const s[2] = {d[0] - c[0], d[1] - c[1]};
    double const denominator = r[0] * s[1] - r[1] * s[0];
    double const t =
        denominator != 0.0 ? ((c[0] - a[0]) * s[1] - (c[1] - a[1]) * s[0]) / denominator : 0.5; // never parallel
    return {a[0] + t * r[0], a[1] + t * r[1]};
}

double SignedArea(VOZCatMesh const & i_mesh, int e)
{
    int const * const row = i_mesh.GetElemData()[e];
    auto const corner = [&](int k) { return i_mesh.GetNodeData()[row[k] - i_mesh.GetFirstNodeNumber()]; };
    bool const isTriangle = row[0] == row[3];
    double const * const from[2] = {corner(0), isTriangle ? corner(0) : corner(1)};
    double const * const to[2] = {isTriangle ? corner(1) : corner(2), isTriangle ? corner(2) : corner(3)};
    double const first[2] = {to[0][0] - from[0][0], to[0][1] - from[0][1]};
    double const second[2] = {to[1][0] - from[1][0], to[1][1] - from[1][1]};
    return 0.5 * (first[0] * second[1] - first[1] * second[0]);
}

std::vector<int> TurnedElements(VOZCatMesh const & i_mesh)
{
    std::vector<double> areas;
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        areas.push_back(SignedArea(i_mesh, e));
    double const whole = std::accumulate(areas.begin(), areas.end(), 0.0);
    std::vector<int> turned;
    for (std::size_t i = 0; i < areas.size(); ++i)
        if (areas[i] * whole < 0.0)
            turned.push_back(static_cast<int>(i) + 1);
    return turned;
}
} // namespace

FlatFaults CheckFlat(VOZCatMesh const & i_pattern)
{
    FlatFaults faults;
    Pattern const pattern(i_pattern);
    if (pattern.Ids().empty())
        return faults;
    auto const edge = [&](int i_id) { return FlatEdge{pattern.Start(i_id), pattern.End(i_id), i_id < 0}; };
    std::vector<int> const partners = PartnersOf(pattern);
    for (std::size_t i = 0; i < partners.size(); ++i)
    {
        if (partners[i] == 0)
            continue;
        FlatCrossing crossing{edge(pattern.Ids()[i]), edge(partners[i]), {}, false};
        crossing.place = PlaceOf(i_pattern, crossing.edge, crossing.partner);
        crossing.isOverlap = crossing.edge.isFree && crossing.partner.isFree;
        faults.crossings.push_back(crossing);
    }
    faults.turned = TurnedElements(i_pattern);
    double low = std::numeric_limits<double>::max();
    double high = -low;
    for (int n = 1; n <= i_pattern.numNode(); ++n)
    {
        low = std::min(low, i_pattern.GetNodeData()[n][2]);
        high = std::max(high, i_pattern.GetNodeData()[n][2]);
    }
    faults.depth = std::max(high - low, 0.0);
    return faults;
}

} // namespace voz::workbench
