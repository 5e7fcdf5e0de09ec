// BoundaryWireTest.cpp. The patch is compared, to the bit, with Star: the same method on a table of directed edges
// instead of linked half edges.

#include "HoleFilling.h"

#include "HoleFixture.h"
#include "PatchReference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <set>

using namespace holes;

namespace
{
Wire randomWire(std::mt19937 & random)
{
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    int const n = 3 + static_cast<int>(random() % 30);
    double const length = 1.0 + 20.0 * unit(random); // long and narrow ones too
    double const rough = unit(random);
    double const turn = random() % 2 == 0 ? 1.0 : -1.0;
    Wire wire;
    for (int i = 0; i < n; ++i)
    {
        double const angle = turn * 6.283185307179586 * (i + 0.3 * unit(random)) / n;
        double const radius = 1.0 - rough * 0.8 * unit(random);
        wire.push_back({static_cast<float>(length * radius * std::cos(angle) + 3.0),
                        static_cast<float>(radius * std::sin(angle)), static_cast<float>(0.5 * unit(random))});
    }
    return wire;
}

TEST(MeshBoundaryWire, MakesTheSamePatchAsTheMethodOnATableOfEdges)
{
    std::mt19937 random(4711);
    int flips = 0;
    for (int run = 0; run < 300; ++run)
    {
        Wire const wire = randomWire(random);
        int const maxLevel = static_cast<int>(random() % 80) - 5;
        Patch const patch(wire, maxLevel);
        Star const star(wire, oneTo(static_cast<int>(wire.size())), maxLevel);
        ASSERT_EQ(patch.result, 1);
        ASSERT_EQ(patch.allCoords(), star.newPoints()) << run;
        ASSERT_EQ(patch.allFaces(), star.faces()) << run;
        flips += star.flips;
    }
    EXPECT_GT(flips, 500) << "the comparison says something about flips";
}

TEST(MeshBoundaryWire, TiesInLengthAreSettledAlike)
{
    for (int const n : {3, 4, 5, 6, 8, 12, 24})
        for (int const maxLevel : {0, 3, 50})
        {
            Wire wire = polygon(n, 64.0);
            for (FloatPoint & point : wire) // whole numbers: many equal lengths
                point = {std::round(point[0]), std::round(point[1]), 0.0F};
            Patch const patch(wire, maxLevel);
            Star const star(wire, oneTo(n), maxLevel);
            EXPECT_EQ(patch.allCoords(), star.newPoints()) << n;
            EXPECT_EQ(patch.allFaces(), star.faces()) << n;
        }
}

TEST(MeshBoundaryWire, ABudgetOfTwoIsTheStarAlone)
{
    Patch const patch(polygon(6), 2);
    EXPECT_EQ(patch.result, 1);
    EXPECT_EQ(patch.numPoint, 1);
    EXPECT_EQ(patch.ids[0], 101);
    EXPECT_EQ(patch.nextId, 102);
    EXPECT_NEAR(patch.coords[0][0], 0.0, 1e-7);
    EXPECT_EQ(cornerSets(patch.allFaces()),
              (std::set<std::set<int>>{{1, 2, 101}, {2, 3, 101}, {3, 4, 101}, {4, 5, 101}, {5, 6, 101}, {6, 1, 101}}));
    for (Face const & face : patch.allFaces())
        EXPECT_EQ(face[3], face[0]);
}

TEST(MeshBoundaryWire, RowZeroOfTheFacesIsClear)
{
    Patch const patch(polygon(5), 0);
    EXPECT_EQ(Ints(patch.faces[0], patch.faces[0] + 4), (Ints{0, 0, 0, 0}));
}

// Of three points all round the centre, the ring outside is a triangle too: it is no face.
TEST(MeshBoundaryWire, AHoleOfThreePointsIsACentreAndThreeTriangles)
{
    Patch const patch(polygon(3), 1);
    EXPECT_EQ(patch.numPoint, 1);
    EXPECT_EQ(cornerSets(patch.allFaces()), (std::set<std::set<int>>{{1, 2, 101}, {2, 3, 101}, {3, 1, 101}}));
    EXPECT_EQ(patch.numFace, 3);
}

// mean is compared with the longest edge of the round before, and that one starts above it: one round always runs.
TEST(MeshBoundaryWire, TheFirstRoundRunsEvenWhereNoEdgeIsLong)
{
    Patch const three(polygon(3), 0); // the wire's size as budget: one round of three points
    EXPECT_EQ(three.numPoint, 2);
    EXPECT_EQ(three.numFace, 5);
    Patch const many(polygon(3), 1000); // all inner edges are shorter than the wire's: the second round does not come
    EXPECT_EQ(many.numPoint, 2);
}

TEST(MeshBoundaryWire, ABudgetBelowOneIsTheNumberOfPoints)
{
    Wire wire;
    for (int i = 0; i < 12; ++i) // a strip of 11 by 1
        wire.push_back({static_cast<float>(i), 0.0F, 0.0F});
    for (int i = 11; i >= 0; --i)
        wire.push_back({static_cast<float>(i), 1.0F, 0.0F});
    Patch const whole(wire, 24);
    for (int const maxLevel : {0, -1, -1000})
    {
        Patch const patch(wire, maxLevel);
        EXPECT_EQ(patch.allFaces(), whole.allFaces());
        EXPECT_EQ(patch.allCoords(), whole.allCoords());
    }
}

TEST(MeshBoundaryWire, ALongNarrowHoleTakesUpToAsManyRoundsAsItHasPoints)
{
    Wire wire;
    for (int i = 0; i < 40; ++i)
        wire.push_back({static_cast<float>(i), 0.0F, 0.0F});
    for (int i = 39; i >= 0; --i)
        wire.push_back({static_cast<float>(i), 1.0F, 0.0F});
    Patch const narrow(wire, 0);
    Patch const round(polygon(80, 13.0), 0);
    EXPECT_GT(narrow.numPoint, 20);
    EXPECT_LE(narrow.numPoint, 1 + 80 - 2);
    EXPECT_LE(round.numPoint, 1 + 80 - 2);
}

TEST(MeshBoundaryWire, NumbersRunFromTheNewestPointAndCoordinatesFromTheOldest)
{
    Patch const patch(polygon(20, 10.0), 12);
    ASSERT_EQ(patch.numPoint, 11);
    EXPECT_EQ(patch.allIds(), (Ints{111, 110, 109, 108, 107, 106, 105, 104, 103, 102, 101}));
    EXPECT_EQ(patch.nextId, 112);
    Star const star(polygon(20, 10.0), oneTo(20), 12);
    EXPECT_EQ(patch.allCoords(), star.newPoints());
}

TEST(MeshBoundaryWire, ClockwiseAndCounterClockwiseWiresMakeTheSameFan)
{
    Wire wire = polygon(7, 5.0);
    std::vector<int> numbers = oneTo(7);
    Patch const patch(wire, 2, HoleMemory(), numbers);
    std::reverse(wire.begin(), wire.end());
    std::reverse(numbers.begin(), numbers.end());
    Patch const turned(wire, 2, HoleMemory(), numbers);
    EXPECT_EQ(patch.allFaces(), turned.allFaces());
    for (int c = 0; c < 3; ++c) // summed in the order of the turned list: the same
        EXPECT_EQ(patch.coords[0][c], turned.coords[0][c]);
}

// The sum that decides leaves out the last segment and the one that closes the ring. Of three points it holds one
// segment, and its sign depends on where the origin lies.
TEST(MeshBoundaryWire, TheTurningSenseIsThatOfTheChainWithoutItsLastTwoSegments)
{
    auto const turns = [](Wire const & wire) // the first face's wire corners tell the way round
    {
        Patch const patch(wire, 1);
        Face const face = patch.allFaces().front();
        return !(face[1] % 3 + 1 == face[2]);
    };
    EXPECT_FALSE(turns({{1, 0, 0}, {2, 1, 0}, {0, 2, 0}}));
    EXPECT_TRUE(turns({{-3, 0, 0}, {-2, 1, 0}, {-4, 2, 0}})); // the same triangle, shifted: 1 x -5 is below 0
    EXPECT_FALSE(turns({{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}));   // a sum of exactly 0 turns nothing
}

TEST(MeshBoundaryWire, EachPatchIsADiscOnItsWire)
{
    std::mt19937 random(99);
    for (int run = 0; run < 100; ++run)
    {
        Wire const wire = randomWire(random);
        int const n = static_cast<int>(wire.size());
        Patch const patch(wire, 60);
        EXPECT_EQ(patch.numFace, n + 2 * (patch.numPoint - 1)); // Euler: a triangulated disc
        std::map<std::set<int>, int> sides;
        for (Face const & face : patch.allFaces())
            for (std::size_t k = 0; k < 3; ++k)
                ++sides[{face[k], face[(k + 1) % 3]}];
        int free = 0;
        for (auto const & side : sides)
        {
            ASSERT_LE(side.second, 2);
            free += side.second == 1 ? 1 : 0;
            EXPECT_TRUE(side.second == 2 || *side.first.rbegin() <= n) << "a free side lies on the wire";
        }
        EXPECT_EQ(free, n);
    }
}

TEST(MeshBoundaryWire, PointsThatCoincideOrAreNoNumberEndTheRefinement)
{
    Patch const coincide(Wire(8, FloatPoint{1.0F, 2.0F, 3.0F}), 0);
    EXPECT_EQ(coincide.result, 1);
    EXPECT_EQ(coincide.numPoint, 1); // no edge has a length
    EXPECT_EQ(coincide.numFace, 8);
    for (float const bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                            -std::numeric_limits<float>::infinity()})
    {
        Wire wire = polygon(8);
        wire[3][1] = bad;
        Patch const patch(wire, 0);
        EXPECT_EQ(patch.result, 1);
        EXPECT_EQ(patch.numPoint, 1) << bad;
    }
}

// A round that has nothing to split is the last: the largest budget there is comes back at once.
TEST(MeshBoundaryWire, TheBudgetIsNotWaitedOutWhereNothingIsLeftToSplit)
{
    int const most = std::numeric_limits<int>::max();
    EXPECT_EQ(Patch(Wire(8, FloatPoint{1.0F, 2.0F, 3.0F}), most).numPoint, 1);
    Wire wire = polygon(8);
    wire[0][2] = std::numeric_limits<float>::infinity();
    EXPECT_EQ(Patch(wire, most).numPoint, 1);
    EXPECT_EQ(Patch(polygon(3), most).numPoint, 2);
}

TEST(MeshBoundaryWire, ANumberOnTheWireBeyondTheNextOneHarmsNothing)
{
    Patch const patch(polygon(5), 0, HoleMemory(), {900, 901, 902, 903, 904});
    EXPECT_EQ(patch.result, 1);
    EXPECT_EQ(patch.ids[patch.numPoint - 1], 101);
}

TEST(MeshBoundaryWire, RefusesAWireOfTwoPoints)
{
    for (int const n : {0, 1, 2})
    {
        Patch const patch(polygon(n), 0);
        EXPECT_EQ(patch.result, 0);
        EXPECT_EQ(patch.numPoint, 0);
        EXPECT_EQ(patch.numFace, 0);
        EXPECT_EQ(patch.faces, nullptr);
        EXPECT_EQ(patch.nextId, 101);
    }
    EXPECT_EQ(MeshBoundaryWire(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, 0), 0);
}

TEST(MeshBoundaryWire, IsZeroWithTheGivenArraysKeptIfMemoryRunsOut)
{
    for (int calls = 0; calls < 3; ++calls)
    {
        s_callsLeft = calls;
        Patch const patch(polygon(6), 0, {allocateUntil, growUntil});
        EXPECT_EQ(patch.result, 0);
        EXPECT_EQ(patch.numPoint, 0);
        EXPECT_EQ(patch.numFace, 0);
        EXPECT_EQ(patch.faces, nullptr);
        EXPECT_EQ(patch.nextId, 101);
        EXPECT_EQ(Ints(patch.ids, patch.ids + 6), oneTo(6));
        EXPECT_EQ(patch.coords[0][0], 1.0F);
    }
    s_callsLeft = 3;
    EXPECT_EQ(Patch(polygon(6), 0, {allocateUntil, growUntil}).result, 1);
}

} // namespace
