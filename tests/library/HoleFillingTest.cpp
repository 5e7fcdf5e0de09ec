// HoleFillingTest.cpp. The patch is compared, to the bit, with Star: the same method on a table of directed edges
// instead of linked half edges. Wires are C arrays, as the operation takes and gives them.

#include "HoleFilling.h"

#include "BoundaryFixture.h"
#include "CATError.h"
#include "ElemNormal.h"
#include "HoleMemory.h"
#include "HostFixture.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace
{
using samples::Grid;
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;

using FloatPoint = std::array<float, 3>;
using Wire = std::vector<FloatPoint>;
using Face = std::array<int, 4>;

template <class Item>
Item * cArray(std::vector<Item> const & values)
{
    Item * const result = static_cast<Item *>(std::malloc(sizeof(Item) * (values.size() + 1)));
    std::copy(values.begin(), values.end(), result);
    return result;
}

// A call of MeshBoundaryWire on a wire numbered 1, 2, ... (or by the numbers given), with the next number 101.
struct Patch
{
    int numPoint;
    int * ids;
    float (*coords)[3];
    int nextId = 101;
    int numFace = -1;
    int (*faces)[4] = nullptr;
    int result;

    explicit Patch(Wire const & wire, int maxLevel, HoleMemory const & memory = HoleMemory(),
                   std::vector<int> numbers = {})
        : numPoint(static_cast<int>(wire.size()))
    {
        if (numbers.empty())
            numbers = oneTo(numPoint);
        ids = cArray(numbers);
        coords = reinterpret_cast<float(*)[3]>(cArray(wire));
        result = MeshBoundaryWire(&numPoint, &ids, &coords, &nextId, &numFace, &faces, maxLevel, memory);
    }
    Patch(Patch const &) = delete;
    Patch & operator=(Patch const &) = delete;
    ~Patch()
    {
        std::free(ids);
        std::free(coords);
        std::free(faces);
    }

    std::vector<int> allIds() const { return std::vector<int>(ids, ids + numPoint); }
    Wire allCoords() const
    {
        Wire rows;
        for (int i = 0; i < numPoint; ++i)
            rows.push_back({coords[i][0], coords[i][1], coords[i][2]});
        return rows;
    }
    std::vector<Face> allFaces() const // without row 0
    {
        std::vector<Face> rows;
        for (int i = 1; i <= numFace; ++i)
            rows.push_back({faces[i][0], faces[i][1], faces[i][2], faces[i][3]});
        return rows;
    }
};

// The method on a table: the apex on the left of each directed edge. Vertices are indices: the wire in its list order,
// the centre, the midpoints.
class Star
{
public:
    Star(Wire wire, std::vector<int> numbers, int maxLevel)
    {
        int const n = static_cast<int>(wire.size());
        double sum = 0.0;
        for (std::size_t i = 0; i + 2 < wire.size(); ++i)
            sum += (double(wire[i + 1][1]) - double(wire[i][1])) * (double(wire[i + 1][0]) + double(wire[i][0]));
        if (sum < 0.0)
        {
            std::reverse(wire.begin(), wire.end());
            std::reverse(numbers.begin(), numbers.end());
        }
        positions = wire;
        ids = numbers;
        numWire = n;
        levels.assign(wire.size(), 0);
        firsts.assign(wire.size(), -1);
        double squares = 0.0;
        for (int i = 0; i < n; ++i)
            squares += square(i, (i + 1) % n) + square((i + 1) % n, i);
        double const mean = squares / (2.0 * n);
        star(meanOf(oneTo(n), 1), oneToMinus(n), 1);
        double longest = mean + 1.0;
        for (int level = 2; mean <= longest && level < (maxLevel < 1 ? n : maxLevel); ++level)
        {
            longest = split(level);
            flip();
            for (int pass = 0; pass < 5; ++pass)
                for (int v = last(); v >= numWire; --v)
                    positions[at(v)] = meanOf(neighbours(v), 0);
        }
    }

    Wire newPoints() const { return Wire(positions.begin() + numWire, positions.end()); }

    std::vector<Face> faces() const
    {
        std::vector<Face> rows;
        std::set<std::set<int>> seen;
        for (int v = last(); v >= numWire; --v)
            for (int const w : neighbours(v))
            {
                int const x = apex.at({v, w});
                if (seen.insert({v, w, x}).second)
                    rows.push_back({ids[at(v)], ids[at(w)], ids[at(x)], ids[at(v)]});
            }
        return rows;
    }

private:
    static std::size_t at(int i) { return static_cast<std::size_t>(i); }
    static std::vector<int> oneToMinus(int n)
    {
        std::vector<int> result;
        for (int i = 0; i < n; ++i)
            result.push_back(i);
        return result;
    }
    int last() const { return static_cast<int>(positions.size()) - 1; }

    double square(int a, int b) const
    {
        double sum = 0.0;
        for (std::size_t c = 0; c < 3; ++c)
            sum += (double(positions[at(b)][c]) - double(positions[at(a)][c])) *
                   (double(positions[at(b)][c]) - double(positions[at(a)][c]));
        return sum;
    }

    FloatPoint meanOf(std::vector<int> const & vertices, int base) const
    {
        FloatPoint mean{};
        for (std::size_t c = 0; c < 3; ++c)
        {
            double sum = 0.0;
            for (int const v : vertices)
                sum += double(positions[at(v - base)][c]);
            mean[c] = static_cast<float>(sum / static_cast<double>(vertices.size()));
        }
        return mean;
    }

    std::vector<int> neighbours(int v) const // counter-clockwise
    {
        std::vector<int> result;
        int w = firsts[at(v)];
        do
        {
            result.push_back(w);
            w = apex.at({v, w});
        } while (w != firsts[at(v)]);
        return result;
    }

    void triangle(int a, int b, int c)
    {
        apex[{a, b}] = c;
        apex[{b, c}] = a;
        apex[{c, a}] = b;
    }

    void star(FloatPoint const & position, std::vector<int> const & corners, int level)
    {
        positions.push_back(position);
        levels.push_back(level);
        firsts.push_back(corners.front());
        ids.push_back(101 + last() - numWire);
        for (std::size_t i = 0; i < corners.size(); ++i)
            triangle(corners[i], corners[(i + 1) % corners.size()], last());
    }

    void leave(int a, int b) // a loses its neighbour b
    {
        if (firsts[at(a)] == b)
            firsts[at(a)] = apex.at({a, b});
    }

    double split(int level)
    {
        double longest = 0.0;
        int a = -1;
        int b = -1;
        for (int v = last(); v >= numWire; --v)
            for (int const w : neighbours(v))
                if (square(v, w) > longest)
                {
                    longest = square(v, w);
                    a = v;
                    b = w;
                }
        if (a < 0)
            return 0.0;
        int const p = apex.at({a, b});
        int const q = apex.at({b, a});
        leave(a, b);
        leave(b, a);
        apex.erase({a, b});
        apex.erase({b, a});
        star(meanOf({a, b}, 0), {b, p, a, q}, level);
        return longest;
    }

    void flip()
    {
        for (int v = last(); v > numWire; --v)
        {
            int w = firsts[at(v)];
            do
            {
                while (flipAcross(v, w))
                    ++flips;
                w = apex.at({v, w});
            } while (w != firsts[at(v)]);
        }
    }

    bool flipAcross(int v, int w)
    {
        int const x = apex.at({v, w});
        if (levels[at(w)] == 0 && levels[at(x)] == 0)
            return false;
        int const y = apex.at({x, w});
        if (apex.count({v, y}) > 0 || !(std::sqrt(square(v, y)) < std::sqrt(square(w, x))))
            return false;
        leave(w, x);
        leave(x, w);
        apex.erase({w, x});
        apex.erase({x, w});
        triangle(v, w, y);
        triangle(v, y, x);
        return true;
    }

    Wire positions;
    std::vector<int> ids;
    std::vector<int> levels;
    std::vector<int> firsts;
    std::map<std::pair<int, int>, int> apex;
    int numWire = 0;

public:
    int flips = 0;
};

Wire polygon(int n, double radius = 1.0)
{
    Wire wire;
    for (int i = 0; i < n; ++i)
        wire.push_back({static_cast<float>(radius * std::cos(6.283185307179586 * i / n)),
                        static_cast<float>(radius * std::sin(6.283185307179586 * i / n)), 0.0F});
    return wire;
}

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

std::set<std::set<int>> cornerSets(std::vector<Face> const & faces)
{
    std::set<std::set<int>> result;
    for (Face const & face : faces)
        result.insert({face[0], face[1], face[2]});
    return result;
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

// Memory that ends after a number of calls.
int s_callsLeft = 0;

void * allocateUntil(std::size_t count, std::size_t size)
{
    return s_callsLeft-- > 0 ? std::calloc(count, size) : nullptr;
}

void * growUntil(void * old, std::size_t size)
{
    return s_callsLeft-- > 0 ? std::realloc(old, size) : nullptr;
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

// A mesh as C arrays, with its holes filled.
struct Filled
{
    int numNode;
    double (*nodes)[3];
    int numElem;
    int (*elems)[4];
    int result;

    explicit Filled(VOZCatMesh const & mesh, HoleMemory const & memory = HoleMemory())
        : numNode(mesh.numNode()), numElem(mesh.numElem())
    {
        nodes = static_cast<double(*)[3]>(std::malloc(sizeof(double[3]) * static_cast<std::size_t>(numNode + 1)));
        elems = static_cast<int(*)[4]>(std::malloc(sizeof(int[4]) * static_cast<std::size_t>(numElem + 1)));
        for (int n = 0; n < numNode; ++n)
            std::copy_n(mesh.GetNodeData()[n + 1], 3, nodes[n]);
        for (int e = 0; e < numElem; ++e)
            std::copy_n(mesh.GetElemData()[e + 1], 4, elems[e]);
        result = FillAllHoles(numNode, &nodes, numElem, &elems, memory);
    }
    Filled(Filled const &) = delete;
    Filled & operator=(Filled const &) = delete;
    ~Filled()
    {
        std::free(nodes);
        std::free(elems);
    }

    VOZCatMesh mesh() const { return VOZCatMesh(numNode, numElem, nodes, elems); }
};

Grid plateWithTwoHoles()
{
    Grid grid;
    grid.columns = 9;
    grid.rows = 5;
    grid.x1 = 9;
    grid.y1 = 5;
    grid.surface = [](double x, double y) { return Point{x, y, 0.1 * x * y}; };
    grid.drop = [](int column, int row)
    { return (row == 2 && column >= 1 && column <= 3) || (row >= 1 && row <= 3 && column >= 5 && column <= 7); };
    return grid;
}

//   4---3
//   | 1 |
//   1---2
TEST(FillAllHoles, AMeshWithAnOuterLoopAloneGetsNothing)
{
    Filled const filled(samples::quads({{1, 2, 3, 4}}));
    EXPECT_EQ(filled.result, 0);
    EXPECT_EQ(filled.numNode, 4);
    EXPECT_EQ(filled.numElem, 1);
    EXPECT_EQ(Ints(filled.elems[0], filled.elems[0] + 4), (Ints{1, 2, 3, 4}));
}

//   4---3---6
//   | 1 | 2 |      2 runs the other way
//   1---2---5
TEST(FillAllHoles, OrientationIsMadeToAgreeWhereThereIsNoHoleToo)
{
    Filled const filled(samples::quads({{1, 2, 3, 4}, {2, 3, 6, 5}}));
    EXPECT_EQ(filled.result, 0);
    EXPECT_EQ(Ints(filled.elems[1], filled.elems[1] + 4), (Ints{2, 5, 6, 3}));
}

TEST(FillAllHoles, LeavesOneLoopAndAgreeingOrientation)
{
    VOZCatMesh const mesh = plateWithTwoHoles().mesh();
    Filled const filled(mesh);
    EXPECT_EQ(filled.result, 0);
    VOZCatMesh closed = filled.mesh();
    Chained const chained(closed);
    EXPECT_EQ(chained.error, 0);
    EXPECT_EQ(chained.loops.numLoops(), 1);
    EXPECT_EQ(chained.loops.numLoopEdges(1), 2 * (9 + 5));
    for (int e = 1; e <= closed.numElem(); ++e)
        EXPECT_GT(ElemNormal(closed).normal(e, 2), 0.0) << e;
}

TEST(FillAllHoles, NewNodesAreNumberedWithoutGapsHoleAfterHole)
{
    VOZCatMesh const mesh = plateWithTwoHoles().mesh();
    Chained const chained(mesh);
    ASSERT_EQ(chained.loops.numLoops(), 3);
    Filled const filled(mesh);

    int nextId = mesh.numNode() + 1;
    int row = mesh.numNode();
    std::set<std::set<int>> faces;
    for (int l = 1; l <= 3; ++l)
    {
        if (l == chained.loops.outerLoopNum())
            continue;
        std::vector<int> numbers;
        Wire wire;
        for (int const k : walk(chained.loops, l))
        {
            int const n = chained.edges.startNode(k);
            numbers.push_back(n);
            wire.push_back({static_cast<float>(mesh.node(n, 0)), static_cast<float>(mesh.node(n, 1)),
                            static_cast<float>(mesh.node(n, 2))});
        }
        Patch const patch(wire, static_cast<int>(wire.size()), HoleMemory(), numbers);
        for (int i = 0; i < patch.numPoint; ++i, ++row)
            for (int c = 0; c < 3; ++c)
                EXPECT_EQ(filled.nodes[row][c], static_cast<double>(patch.coords[i][c]));
        for (Face face : patch.allFaces())
        {
            for (int & corner : face)
                corner += corner > 100 ? nextId - 101 : 0;
            faces.insert({face[0], face[1], face[2]});
        }
        nextId += patch.numPoint;
    }
    EXPECT_EQ(filled.numNode, row);
    std::vector<Face> added;
    for (int e = mesh.numElem(); e < filled.numElem; ++e)
        added.push_back({filled.elems[e][0], filled.elems[e][1], filled.elems[e][2], filled.elems[e][3]});
    EXPECT_EQ(cornerSets(added), faces);
    EXPECT_EQ(added.size(), faces.size());
}

TEST(FillAllHoles, NoOldNodeMovesAndNoOldElementChangesItsCorners)
{
    VOZCatMesh const mesh = plateWithTwoHoles().mesh();
    Filled const filled(mesh);
    for (int n = 1; n <= mesh.numNode(); ++n)
        EXPECT_EQ(std::memcmp(mesh.GetNodeData()[n], filled.nodes[n - 1], sizeof(double[3])), 0);
    for (int e = 1; e <= mesh.numElem(); ++e)
        EXPECT_EQ(Ints(mesh.GetElemData()[e], mesh.GetElemData()[e] + 4),
                  Ints(filled.elems[e - 1], filled.elems[e - 1] + 4));
}

TEST(FillAllHoles, ATriangularHoleGetsItsCentreAndOneRound)
{
    //      6
    //     /|\        a triangle 1 2 3 left out of the middle of 4 5 6
    //    / 3 \       .
    //   / / \ \      .
    //  /.1---2.\     .
    // 4---------5
    VOZCatMesh const mesh =
        samples::mesh(Points{{-1, 0, 0}, {1, 0, 0}, {0, 1.7, 0}, {-5, -2, 0}, {5, -2, 0}, {0, 7, 0}},
                      Quads{{4, 5, 2, 1}, {5, 6, 3, 2}, {6, 4, 1, 3}});
    Filled const filled(mesh);
    EXPECT_EQ(filled.numNode, 6 + 2);
    EXPECT_EQ(filled.numElem, 3 + 5);
}

TEST(FillAllHoles, EverySampleEndsWithTheOuterLoopAlone)
{
    for (samples::Sample const & sample : samples::cleanSamples())
    {
        Chained const before(sample.mesh);
        Filled const filled(sample.mesh);
        EXPECT_EQ(filled.result, 0) << sample.name;
        if (before.loops.outerLoopNum() == 0)
            continue;
        Chained const after(filled.mesh());
        EXPECT_EQ(after.loops.numLoops(), 1) << sample.name;
    }
}

//       6---7
//       | 2 |
//   4---3---5      node 3 has four free edges
//   | 1 |
//   1---2
TEST(FillAllHoles, ABrokenBoundaryIsNotNoticedAndNothingIsFilled)
{
    Filled const filled(samples::quads({{1, 2, 3, 4}, {3, 5, 7, 6}}));
    EXPECT_EQ(filled.result, 0);
    EXPECT_EQ(filled.numElem, 2);
    Filled const closed(samples::closedBox());
    EXPECT_EQ(closed.result, 0);
    EXPECT_EQ(closed.numElem, 6);
}

class FillAllHolesOnAHost : public HostFixture
{
};

TEST_F(FillAllHolesOnAHost, BadCornersAreReportedAndHarmNothing)
{
    std::mt19937 random(5);
    testing::internal::CaptureStdout(); // the adjacency's own messages
    for (int run = 0; run < 300; ++run)
    {
        VOZCatMesh mesh = plateWithTwoHoles().mesh();
        for (int i = 0; i < 3; ++i)
        {
            int const bad[] = {0, -1, 10000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 7};
            mesh.GetElemData()[1 + random() % 30][random() % 4] = bad[random() % 6];
        }
        Filled const filled(mesh);
        EXPECT_EQ(filled.result, 0);
    }
    EXPECT_NE(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(host.reports.empty());
}

TEST_F(FillAllHolesOnAHost, NothingIsTouchedForANegativeCountOrAMissingArray)
{
    int numNode = 3;
    int numElem = 1;
    double(*nodes)[3] = nullptr;
    int(*elems)[4] = nullptr;
    EXPECT_EQ(FillAllHoles(numNode, nullptr, numElem, &elems), 1);
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, nullptr), 1);
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, &elems), 1);
    numNode = -1;
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, &elems), 1);
    numNode = 0;
    numElem = 0;
    EXPECT_EQ(FillAllHoles(numNode, &nodes, numElem, &elems), 0);
    EXPECT_EQ(nodes, nullptr);
}

std::string messagesOf(VOZCatMesh const & mesh, int calls, int & o_result, int & o_numElem)
{
    s_callsLeft = calls;
    testing::internal::CaptureStderr();
    Filled const filled(mesh, {allocateUntil, growUntil});
    o_result = filled.result;
    o_numElem = filled.numElem;
    return testing::internal::GetCapturedStderr();
}

// For one hole: coordinates, numbers; ids, coordinates and faces of the patch; nodes and elements grown.
TEST(FillAllHoles, SaysWhichMemoryRanOut)
{
    VOZCatMesh const mesh = samples::plateWithHole().mesh();
    int result = 0;
    int numElem = 0;
    EXPECT_EQ(messagesOf(mesh, 0, result, numElem), "cannot allocal memory for hole nodal coord.\n");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(messagesOf(mesh, 1, result, numElem), "cannot allocal memory for hole nodal Id.\n");
    EXPECT_EQ(result, 1);
    for (int calls = 2; calls < 5; ++calls) // the hole stays open, and that is no failure
    {
        EXPECT_EQ(messagesOf(mesh, calls, result, numElem), "Error in fill hole.\n");
        EXPECT_EQ(result, 0);
        EXPECT_EQ(numElem, mesh.numElem());
    }
    for (int calls = 5; calls < 7; ++calls)
    {
        EXPECT_EQ(messagesOf(mesh, calls, result, numElem), "smffll catch exception.\n");
        EXPECT_EQ(result, 1);
    }
    EXPECT_EQ(messagesOf(mesh, 7, result, numElem), "");
    EXPECT_EQ(result, 0);
}

class RaisingHost : public VOZMemoryHost
{
public:
    void BrokenContract(std::string const & text, std::string const &, int) override
    {
        throw CATError(CATUnicodeString(text.c_str()), "RaisingHost", 1);
    }
};

TEST(FillAllHoles, AHostThatRaisesIsCaughtWithAMessage)
{
    RaisingHost host;
    VOZHost::Install(&host);
    VOZCatMesh mesh = samples::plateWithHole().mesh();
    mesh.GetElemData()[1][0] = 99999;
    testing::internal::CaptureStderr();
    Filled const filled(mesh);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "smffll catch exception.\n");
    EXPECT_EQ(filled.result, 1);
    VOZHost::Install(nullptr);
}
} // namespace
