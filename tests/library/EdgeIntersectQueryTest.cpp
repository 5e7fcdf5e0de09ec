// EdgeIntersectQueryTest.cpp. Flat patterns are drawn as they lie.

#include "EdgeIntersectQuery.h"

#include "EdgeIntersection.h"
#include "EdgeSets.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <set>

namespace
{
using samples::Ints;
using samples::Points;
using samples::Quads;
using samples::Triangles;

constexpr double kLargest = std::numeric_limits<double>::max();

class Query : public EdgeIntersectQuery
{
public:
    using EdgeIntersectQuery::EdgeIntersectQuery;
    using EdgeIntersectQuery::endNode;
    using EdgeIntersectQuery::generateEdgeBox;
    using EdgeIntersectQuery::getBoundsMax;
    using EdgeIntersectQuery::getBoundsMin;
    using EdgeIntersectQuery::isEdgeOverlapping;
    using EdgeIntersectQuery::startNode;
};

// A pattern with its edges, and queries over the whole plane.
struct Pattern
{
    VOZCatMesh mesh;
    FreeEdgeSet freeEdges;
    InternalEdgeSet internalEdges;

    explicit Pattern(VOZCatMesh const & i_mesh) : mesh(i_mesh), freeEdges(mesh), internalEdges(mesh) {}
    Pattern(Pattern const &) = delete;
    Pattern & operator=(Pattern const &) = delete;

    Query query(int i_edge) const
    {
        double const low[4] = {-kLargest, -kLargest, -kLargest, -kLargest};
        double const high[4] = {kLargest, kLargest, kLargest, kLargest};
        return Query(i_edge, low, high, mesh, freeEdges, internalEdges);
    }

    Ints ids() const // of all edges: the free ones, then the internal ones
    {
        Ints result;
        for (int k = 1; k <= freeEdges.numEdge(); ++k)
            result.push_back(-k);
        for (int k = 1; k <= internalEdges.numEdge(); ++k)
            result.push_back(k);
        return result;
    }

    int edge(int a, int b) const // its id, 0 if there is none
    {
        for (int const id : ids())
        {
            Query const any = query(id);
            if (std::set<int>{any.startNode(id), any.endNode(id)} == std::set<int>{a, b})
                return id;
        }
        return 0;
    }
};

//   4---3---6
//   | 1 | 2 |     free edges 1: 1-2, 2: 3-4, 3: 4-1, 4: 2-5, 5: 5-6, 6: 6-3; internal edge 1: 3-2
//   1---2---5
VOZCatMesh twoCells()
{
    return samples::mesh({{0, 0, 0}, {1, 0, 0}, {1, 2, 0}, {0, 2, 0}, {3, 0, 0}, {3, 2, 0}},
                         Quads{{1, 2, 3, 4}, {2, 5, 6, 3}});
}

TEST(EdgeIntersectQuery, PositiveIdsAreInternalEdgesAndNegativeOnesFree)
{
    Pattern const pattern(twoCells());
    Query const query = pattern.query(1);
    EXPECT_EQ(query.startNode(1), 3);
    EXPECT_EQ(query.endNode(1), 2);
    EXPECT_EQ(query.startNode(-1), 1);
    EXPECT_EQ(query.endNode(-1), 2);
    EXPECT_EQ(query.startNode(-6), 6);
    EXPECT_EQ(query.endNode(-6), 3);
}

TEST(EdgeIntersectQuery, StartsWithoutAnEdgeAndWithoutAFailure)
{
    Pattern const pattern(twoCells());
    Query const query = pattern.query(1);
    EXPECT_EQ(query.intersectingEdge(), 0);
    EXPECT_FALSE(query.isOverlapFailure());
    EXPECT_FALSE(query.isFoldFailure());
}

TEST(EdgeIntersectQuery, ABoxHoldsXLowXHighYLowYHigh)
{
    VOZCatMesh const mesh = samples::mesh({{5, -1, 9}, {2, 3, -9}, {4, 4, 0}}, Triangles{{1, 2, 3}});
    Pattern const pattern(mesh);
    Query const query = pattern.query(-1);
    double box[4];
    double corner[4];
    query.generateEdgeBox(box, -1);
    EXPECT_EQ((std::vector<double>(box, box + 4)), (std::vector<double>{2, 5, -1, 3}));
    query.getBoundsMin(corner, box);
    EXPECT_EQ((std::vector<double>(corner, corner + 4)), (std::vector<double>{2, 2, -1, -1}));
    query.getBoundsMax(corner, box);
    EXPECT_EQ((std::vector<double>(corner, corner + 4)), (std::vector<double>{5, 5, 3, 3}));
}

TEST(EdgeIntersectQuery, AnEdgeOverlapsAQueryBoxThatItTouches)
{
    Pattern const pattern(twoCells()); // edge -1 from (0, 0) to (1, 0)
    auto const overlaps = [&](double xl, double xh, double yl, double yh)
    {
        double const low[4] = {-10, xl, -10, yl};
        double const high[4] = {xh, 10, yh, 10};
        return Query(1, low, high, pattern.mesh, pattern.freeEdges, pattern.internalEdges).isEdgeOverlapping(-1);
    };
    EXPECT_TRUE(overlaps(0.2, 0.3, -1, 1));
    EXPECT_TRUE(overlaps(1, 2, 0, 1));
    EXPECT_TRUE(overlaps(-2, 0, -1, 0));
    EXPECT_FALSE(overlaps(1.01, 2, 0, 1));
    EXPECT_FALSE(overlaps(-2, -0.01, 0, 1));
    EXPECT_FALSE(overlaps(0, 1, 0.01, 1));
    EXPECT_FALSE(overlaps(0, 1, -1, -0.01));
}

//     6              the tip of triangle 2 pokes through the side 1-2 of triangle 1
//   3 |\.
//   |\| 5
//   1-+--2
//     4
VOZCatMesh twoTriangles()
{
    return samples::mesh({{0, 0, 0}, {4, 0, 0}, {0, 4, 0}, {1, -1, 7}, {2, 5, 8}, {1, 5, 9}},
                         Triangles{{1, 2, 3}, {4, 5, 6}});
}

TEST(EdgeIntersectQuery, CrossingFreeEdgesAreAnOverlap)
{
    Pattern const pattern(twoTriangles());
    int const side = pattern.edge(1, 2);
    int const cut = pattern.edge(4, 5);
    Query query = pattern.query(side);
    query.visit(cut);
    EXPECT_EQ(query.intersectingEdge(), cut);
    EXPECT_TRUE(query.isOverlapFailure());
    EXPECT_FALSE(query.isFoldFailure());
}

//   4-----3
//   |  1  |        triangle 3 of nodes 5, 6, 7 lies across the internal edge 2-1 ... 3-1 of the fan below
TEST(EdgeIntersectQuery, ACrossingWithAnInternalEdgeIsAFoldWhicheverIsTested)
{
    VOZCatMesh const mesh =
        samples::mesh({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {1, 2.5, 0}, {3, 1, 0}, {3.5, 1.5, 0}},
                      Triangles{{1, 2, 3}, {1, 3, 4}, {5, 6, 7}});
    Pattern const pattern(mesh);
    int const diagonal = pattern.edge(1, 3);
    int const across = pattern.edge(5, 6);
    ASSERT_GT(diagonal, 0);
    ASSERT_LT(across, 0);
    for (int const tested : {diagonal, across})
    {
        Query query = pattern.query(tested);
        query.visit(tested == diagonal ? across : diagonal);
        EXPECT_TRUE(query.isFoldFailure());
        EXPECT_FALSE(query.isOverlapFailure());
        EXPECT_EQ(query.intersectingEdge(), tested == diagonal ? across : diagonal);
    }
}

TEST(EdgeIntersectQuery, TwoInternalEdgesThatCrossAreAFold)
{
    VOZCatMesh const mesh =
        samples::mesh({{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {0, 4, 0}, {1, 0, 0}, {5, 1, 0}, {1, 3, 0}, {-1, 1, 0}},
                      Triangles{{1, 2, 3}, {1, 3, 4}, {5, 6, 7}, {5, 7, 8}});
    Pattern const pattern(mesh);
    int const first = pattern.edge(1, 3);
    int const second = pattern.edge(5, 7);
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    Query query = pattern.query(first);
    query.visit(second);
    EXPECT_TRUE(query.isFoldFailure());
    EXPECT_FALSE(query.isOverlapFailure());
}

TEST(EdgeIntersectQuery, EdgesThatShareANodeDoNotIntersect)
{
    Pattern const pattern(samples::plateWithHole(5, true).mesh());
    for (int const edge : pattern.ids())
    {
        Query query = pattern.query(edge);
        for (int const id : pattern.ids())
            query.visit(id);
        EXPECT_EQ(query.intersectingEdge(), 0) << edge;
    }
}

TEST(EdgeIntersectQuery, AVisitOfTheEdgeUnderTestDoesNothing)
{
    Pattern const pattern(twoTriangles());
    Query query = pattern.query(-1);
    query.visit(-1);
    EXPECT_EQ(query.intersectingEdge(), 0);
}

TEST(EdgeIntersectQuery, AfterAFailureFurtherVisitsChangeNothing)
{
    Pattern const pattern(twoTriangles());
    int const side = pattern.edge(1, 2);
    Query query = pattern.query(side);
    query.visit(pattern.edge(4, 6));
    ASSERT_TRUE(query.isOverlapFailure());
    query.visit(pattern.edge(4, 5));
    EXPECT_EQ(query.intersectingEdge(), pattern.edge(4, 6));
}

TEST(EdgeIntersectQuery, ACandidateOutsideTheQueryBoxIsNotTested)
{
    Pattern const pattern(twoTriangles());
    int const side = pattern.edge(1, 2);
    double const low[4] = {-10, 2.5, -10, -10}; // beyond the cut's x
    double const high[4] = {10, 10, 10, 10};
    Query query(side, low, high, pattern.mesh, pattern.freeEdges, pattern.internalEdges);
    query.visit(pattern.edge(4, 5));
    EXPECT_EQ(query.intersectingEdge(), 0);
}

TEST(EdgeIntersectQuery, NumbersOfNoEdgeCrossNothing)
{
    Pattern const pattern(twoTriangles());
    int const lowest = std::numeric_limits<int>::min();
    for (int const id : {0, 1, 7, -7, 1000000, lowest, std::numeric_limits<int>::max()})
    {
        Query query = pattern.query(-1);
        query.visit(id);
        EXPECT_EQ(query.intersectingEdge(), 0) << id;
        EXPECT_EQ(query.startNode(id), 0);
        EXPECT_EQ(query.endNode(id), 0);
        double box[4];
        query.generateEdgeBox(box, id);
        EXPECT_EQ((std::vector<double>(box, box + 4)), (std::vector<double>{kLargest, -kLargest, kLargest, -kLargest}));

        Query lost = pattern.query(id);
        for (int const other : pattern.ids())
            lost.visit(other);
        EXPECT_EQ(lost.intersectingEdge(), 0) << id;
    }
}

// All edges of a pattern in one tree, as the header says.
class Search
{
public:
    explicit Search(Pattern const & i_pattern) : mPattern(i_pattern)
    {
        double low[4] = {kLargest, kLargest, kLargest, kLargest};
        double high[4] = {-kLargest, -kLargest, -kLargest, -kLargest};
        for (int n = 1; n <= i_pattern.mesh.numNode(); ++n)
            for (int c = 0; c < 4; ++c)
            {
                low[c] = std::min(low[c], i_pattern.mesh.NodeValue(n, c / 2));
                high[c] = std::max(high[c], i_pattern.mesh.NodeValue(n, c / 2));
            }
        mTree = std::make_unique<ADTree>(low, high, 4);
        for (int const id : i_pattern.ids())
        {
            double key[4];
            i_pattern.query(id).generateEdgeBox(key, id);
            mTree->insert(key, id);
        }
    }

    // As a derived query sees it: the candidates, in the tree's order.
    Query run(int i_edge, Ints * o_candidates = nullptr)
    {
        struct Listed : Query
        {
            using Query::Query;
            void visit(int i_id) override
            {
                if (isEdgeOverlapping(i_id))
                    seen.push_back(i_id);
                Query::visit(i_id);
            }
            Ints seen;
        };
        double box[4];
        mPattern.query(i_edge).generateEdgeBox(box, i_edge);
        double lower[4];
        double upper[4];
        mTree->getRegion(lower, upper);
        double const low[4] = {lower[0], box[0], lower[2], box[2]};
        double const high[4] = {box[1], upper[1], box[3], upper[3]};
        Listed query(i_edge, low, high, mPattern.mesh, mPattern.freeEdges, mPattern.internalEdges);
        mTree->query(query);
        if (o_candidates)
            *o_candidates = query.seen;
        return query;
    }

private:
    Pattern const & mPattern;
    std::unique_ptr<ADTree> mTree;
};

bool boxesTouch(Pattern const & pattern, int i, int j)
{
    double a[4];
    double b[4];
    pattern.query(i).generateEdgeBox(a, i);
    pattern.query(j).generateEdgeBox(b, j);
    return a[0] <= b[1] && b[0] <= a[1] && a[2] <= b[3] && b[2] <= a[3];
}

bool segmentsCross(Pattern const & pattern, int candidate, int tested)
{
    float p[4][2];
    Query const any = pattern.query(1);
    int const nodes[4] = {any.startNode(candidate), any.endNode(candidate), any.startNode(tested), any.endNode(tested)};
    for (int i = 0; i < 4; ++i)
        for (int c = 0; c < 2; ++c)
            p[i][c] = static_cast<float>(pattern.mesh.NodeValue(nodes[i], c));
    return EdgeIntersection().isIntersecting(p[0], p[1], p[2], p[3]);
}

TEST(EdgeIntersectQuery, OnRandomPatternsTheTreeFindsWhatAllPairsFind)
{
    std::mt19937 random(852);
    int failures = 0;
    int clean = 0;
    for (int round = 0; round < 60; ++round)
    {
        samples::Grid grid;
        grid.columns = 2 + static_cast<int>(random() % 6);
        grid.rows = 2 + static_cast<int>(random() % 6);
        grid.split = round % 2 == 0;
        VOZCatMesh mesh = grid.mesh();
        double const shake = 0.02 * (round % 20);
        std::uniform_real_distribution<double> number(-shake, shake);
        for (int n = 1; n <= mesh.numNode(); ++n)
            for (int c = 0; c < 3; ++c)
                mesh.GetNodeData()[n][c] += number(random);
        Pattern const pattern(mesh);
        Search search(pattern);
        for (int const tested : pattern.ids())
        {
            Ints candidates;
            Query const query = search.run(tested, &candidates);
            Ints wanted;
            for (int const id : pattern.ids())
                if (boxesTouch(pattern, id, tested))
                    wanted.push_back(id);
            ASSERT_EQ(std::multiset<int>(candidates.begin(), candidates.end()),
                      std::multiset<int>(wanted.begin(), wanted.end()));

            int first = 0; // in the tree's order
            for (int const id : candidates)
                if (first == 0 && id != tested && segmentsCross(pattern, id, tested))
                    first = id;
            ASSERT_EQ(query.intersectingEdge(), first) << "round " << round << " edge " << tested;
            EXPECT_EQ(query.isOverlapFailure(), first < 0 && tested < 0);
            EXPECT_EQ(query.isFoldFailure(), first != 0 && !(first < 0 && tested < 0));
            (first != 0 ? failures : clean) += 1;
        }
    }
    EXPECT_GT(failures, 500);
    EXPECT_GT(clean, 500);
}
} // namespace
