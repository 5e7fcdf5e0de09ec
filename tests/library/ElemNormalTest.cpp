// ElemNormalTest.cpp: element normals, and the walk that makes orientations agree.

#include "ElemNormal.h"

#include "ElemEdgeTable.h"
#include "HostFixture.h"
#include "SampleMeshes.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace
{
using samples::Grid;
using samples::Ints;
using samples::Quads;
using samples::Sample;

using Values = std::array<double, 3>;

Ints rowOf(VOZCatMesh const & mesh, int e)
{
    return {mesh.ElementValue(e, 0), mesh.ElementValue(e, 1), mesh.ElementValue(e, 2), mesh.ElementValue(e, 3)};
}

std::vector<Ints> allRows(VOZCatMesh const & mesh)
{
    std::vector<Ints> result;
    for (int e = 1; e <= mesh.numElem(); ++e)
        result.push_back(rowOf(mesh, e));
    return result;
}

int repair(VOZCatMesh & mesh)
{
    return ElemNormal(mesh).CheckFlipAllElemNormals(&mesh);
}

// Reverses elements at random, with a private copy of the rule.
void scramble(VOZCatMesh & mesh, std::mt19937 & random)
{
    for (int e = 1; e <= mesh.numElem(); ++e)
        if (random() % 2)
            std::swap(mesh.GetElemData()[e][1], mesh.GetElemData()[e][mesh.isTriangle(e) ? 2 : 3]);
}

TEST(ElemNormal, OfAUnitSquareIsTwiceItsArea)
{
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, Quads{{1, 2, 3, 4}});
    EXPECT_EQ(values(ElemNormal(mesh).normal(1)), (Values{0, 0, 2}));
}

TEST(ElemNormal, OfATriangleIsTheProductOfItsEdges)
{
    VOZCatMesh const mesh = samples::mesh({{1, 0, 0}, {4, 0, 0}, {1, 5, 0}}, Quads{{1, 2, 3, 1}, {1, 3, 2, 1}});
    ElemNormal const normals(mesh);
    EXPECT_EQ(normals.numNormal(), 2);
    EXPECT_EQ(normals.normal(1, 2), 15);
    EXPECT_EQ(normals.normal(2, 2), -15);
}

TEST(ElemNormal, OfATwistedQuadrilateralIsTheProductOfItsDiagonals)
{
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {2, 0, 1}, {3, 4, 0}, {0, 1, 5}}, Quads{{1, 2, 3, 4}});
    EXPECT_EQ(ElemNormal(mesh).normal(1), vec(3, 4, 0).cross(vec(-2, 1, 4)));
}

TEST(ElemNormal, OfNothingIsEmptyAndADegenerateElementGivesAZeroRow)
{
    EXPECT_EQ(ElemNormal().numNormal(), 0);
    EXPECT_EQ(ElemNormal(VOZCatMesh()).numNormal(), 0);
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {1, 1, 1}}, Quads{{1, 2, 2, 1}, {1, 1, 1, 1}});
    EXPECT_EQ(values(ElemNormal(mesh).normal(1)), (Values{0, 0, 0}));
    EXPECT_EQ(values(ElemNormal(mesh).normal(2)), (Values{0, 0, 0}));
}

TEST(ElemNormal, ANormalIsAViewAndComputingAnewStartsAfresh)
{
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, Quads{{1, 2, 3, 4}});
    ElemNormal normals(mesh);
    Vec view = normals.normal(1);
    view /= 2.0;
    EXPECT_EQ(normals.normal(1, 2), 1);
    normals.compute(samples::hat());
    EXPECT_EQ(normals.numNormal(), 10);
    normals.compute(mesh);
    EXPECT_EQ(normals.numNormal(), 1);
    EXPECT_EQ(normals.normal(1, 2), 2);
}

TEST(ElemNormal, LabelOffsetsChangeNothing)
{
    for (Sample & sample : samples::cleanSamples())
    {
        ElemNormal const before(sample.mesh);
        sample.mesh.IdsOffset(1000, 2000);
        ElemNormal const after(sample.mesh);
        for (int e = 1; e <= sample.mesh.numElem(); ++e)
            EXPECT_EQ(before.normal(e), after.normal(e)) << sample.name;
    }
}

class ElemNormalContract : public HostFixture
{
};

TEST_F(ElemNormalContract, ABadCornerIsReportedAndTakenAsRowZero)
{
    VOZCatMesh const mesh = samples::mesh({{1, 0, 0}, {0, 1, 0}}, Quads{{9, 1, 2, 9}});
    EXPECT_EQ(values(ElemNormal(mesh).normal(1)), (Values{0, 0, 1}));
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].text, "n > 0 && n <= mNumNode && c < 3");
    EXPECT_EQ(host.reports[0].file, "Mesh");
}

TEST(FindNeighbour, IsTheFirstThatDiffers)
{
    ElemNormal normals;
    int list[3] = {4, 4, 7};
    EXPECT_EQ(normals.FindNeighbour(4, list, 3), 2);
    EXPECT_EQ(normals.FindNeighbour(4, list, 2), -1);
    EXPECT_EQ(normals.FindNeighbour(7, list, 3), 0);
    EXPECT_EQ(normals.FindNeighbour(7, list, 0), -1);
}

TEST(FlipOneNormal, ExchangesTheCornersBesideTheFirstAndKeepsTheRows)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 1}, {1, 2, 3, 4}});
    ElemNormal normals(mesh);
    double const before = normals.normal(1, 2);
    normals.FlipOneNormal(1, &mesh);
    normals.FlipOneNormal(2, &mesh);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 3, 2, 1}));
    EXPECT_EQ(rowOf(mesh, 2), (Ints{1, 4, 3, 2}));
    EXPECT_EQ(normals.normal(1, 2), before);
    normals.FlipOneNormal(1, nullptr);
}

TEST(FlipOneNormal, StoresPositionsWhateverTheOffset)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}});
    mesh.IdsOffset(100, 0);
    ElemNormal normals;
    normals.FlipOneNormal(1, &mesh);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{101, 4, 103, 2}));
}

//   4---3---6
//   | 1 | 2 |
//   1---2---5
TEST(IsCorrectDirection, HoldsForOppositeRunsThroughTheEdge)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}, {2, 5, 6, 3}, {2, 3, 6, 5}});
    ElemNormal normals;
    EXPECT_EQ(normals.IsCorrectDirection(1, 2, 2, 3, &mesh), 1);
    EXPECT_EQ(normals.IsCorrectDirection(1, 2, 3, 2, &mesh), 1);
    EXPECT_EQ(normals.IsCorrectDirection(1, 3, 2, 3, &mesh), 0);
    EXPECT_EQ(normals.IsCorrectDirection(1, 2, 2, 3, nullptr), 0);
}

TEST(IsCorrectDirection, WithoutAMatchTheLastSidesStand)
{
    // last sides: 4-1 and 5-4
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}, {4, 6, 7, 5}, {8, 9, 1, 8}});
    ElemNormal normals;
    EXPECT_EQ(normals.IsCorrectDirection(1, 2, 90, 91, &mesh), 1); // 4 == 4
    EXPECT_EQ(normals.IsCorrectDirection(1, 3, 90, 91, &mesh), 1); // the triangle's last side is 1-8
    EXPECT_EQ(normals.IsCorrectDirection(2, 3, 90, 91, &mesh), 0);
}

TEST(CheckFlip, RefusesANullMeshAndAMeshWithoutElements)
{
    ElemNormal normals;
    VOZCatMesh empty;
    VOZCatMesh nodesOnly(5, 0);
    VOZCatMesh counted;
    counted.numElem(3);
    EXPECT_EQ(normals.CheckFlipAllElemNormals(nullptr), 1);
    EXPECT_EQ(normals.CheckFlipAllElemNormals(&empty), 1);
    EXPECT_EQ(normals.CheckFlipAllElemNormals(&nodesOnly), 1);
    EXPECT_EQ(normals.CheckFlipAllElemNormals(&counted), 1);
}

TEST(CheckFlip, OfOneElementFlipsNothing)
{
    VOZCatMesh mesh = samples::triangles({{1, 3, 2}});
    EXPECT_EQ(repair(mesh), 0);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 3, 2, 1}));
}

TEST(CheckFlip, NeighboursTakeTheOrientationOfTheFirst)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}, {2, 3, 6, 5}, {5, 7, 6, 5}});
    EXPECT_EQ(repair(mesh), 0);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(rowOf(mesh, 2), (Ints{2, 5, 6, 3}));
    EXPECT_EQ(rowOf(mesh, 3), (Ints{5, 7, 6, 5}));
}

TEST(CheckFlip, EachPieceKeepsTheOrientationOfItsLowestElement)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 3, 4}, {7, 6, 5, 8}, {2, 3, 10, 9}, {8, 5, 11, 12}});
    EXPECT_EQ(repair(mesh), 0);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(rowOf(mesh, 2), (Ints{7, 6, 5, 8}));
    EXPECT_EQ(rowOf(mesh, 3), (Ints{2, 9, 10, 3}));
    EXPECT_EQ(rowOf(mesh, 4), (Ints{8, 5, 11, 12})); // 2 runs 5-8, 4 runs 8-5: they agree
}

TEST(CheckFlip, RestoresScrambledSamplesUpToTheFirstElementsOrientation)
{
    std::mt19937 random(17);
    for (Sample const & sample : samples::cleanSamples())
        for (int round = 0; round < 20; ++round)
        {
            VOZCatMesh expected(sample.mesh);
            VOZCatMesh mesh(sample.mesh);
            scramble(mesh, random);
            if (sample.name == "two patches")
                continue; // its pieces keep an orientation each
            if (rowOf(mesh, 1) != rowOf(expected, 1))
                expected.reverse();
            EXPECT_EQ(repair(mesh), 0);
            EXPECT_EQ(allRows(mesh), allRows(expected)) << sample.name;
        }
}

//   a strip of four quadrilaterals whose ends are joined with a twist
TEST(CheckFlip, EndsOnAMoebiusStripAndLeavesASeam)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 5, 1, 8}});
    EXPECT_EQ(repair(mesh), 0);
    EXPECT_EQ(rowOf(mesh, 1), (Ints{1, 2, 6, 5}));
    std::vector<Ints> const once = allRows(mesh);
    EXPECT_EQ(repair(mesh), 0);
    EXPECT_EQ(allRows(mesh), once);
}

// Depth first: the neighbour that was pushed last goes on. On the twisted strip this decides where the seam is:
// element 1 pushes 2 over its side 2-6, then 4 over 5-1; 4 goes on, to 3.
TEST(CheckFlip, GoesOnFromTheNeighbourPushedLast)
{
    VOZCatMesh mesh = samples::quads({{1, 2, 6, 5}, {2, 3, 7, 6}, {3, 4, 8, 7}, {4, 5, 1, 8}});
    repair(mesh);
    EXPECT_EQ(rowOf(mesh, 2), (Ints{2, 3, 7, 6}));
    EXPECT_EQ(rowOf(mesh, 4), (Ints{4, 8, 1, 5}));
    EXPECT_EQ(rowOf(mesh, 3), (Ints{3, 7, 8, 4}));
}

//   Three triangles on the edge 1-2: the table has room for two, and the third lands in the next edge's record.
TEST(ElemEdgeTable, AThirdElementLandsInTheNextEdgesFirstSlot)
{
    VOZCatMesh const mesh = samples::triangles({{3, 1, 2}, {4, 1, 2}, {5, 1, 2}});
    ElemEdgeTable table(mesh);
    ASSERT_EQ(table.numEdge(), 7);
    EXPECT_EQ(table.low(2), 1); // edges 1: 1-3, 2: 1-2, 3: 2-3, 4: 1-4, 5: 2-4, 6: 1-5, 7: 2-5
    EXPECT_EQ(table.high(2), 2);
    EXPECT_EQ(table.edgeElems(2)[0], 1);
    EXPECT_EQ(table.edgeElems(2)[1], 2);
    EXPECT_EQ(table.edgeElems(3)[0], 3); // was 1
    EXPECT_EQ(table.edgeElems(3)[1], 0);
    EXPECT_EQ(table.elemEdge(3, 1), 2);
}

TEST(ElemEdgeTable, OverflowBehindTheLastEdgeStaysInItsOwnMemory)
{
    // the two-cornered rows have one edge only, and every element is on it
    Quads rows(40, {1, 2, 2, 1});
    VOZCatMesh mesh = samples::quads(rows);
    ElemEdgeTable table(mesh);
    EXPECT_EQ(table.edgeElems(1)[0], 1);
    EXPECT_EQ(repair(mesh), 0);
}

TEST(ElemEdgeTable, NumbersEdgesInOrderOfFirstAppearance)
{
    for (Sample const & sample : samples::cleanSamples())
    {
        ElemEdgeTable table(sample.mesh);
        std::map<std::pair<int, int>, int> numbers;
        std::map<int, Ints> elems;
        for (int e = 1; e <= sample.mesh.numElem(); ++e)
        {
            int const corners = sample.mesh.isTriangle(e) ? 3 : 4;
            ASSERT_EQ(table.localEdges(e), corners);
            for (int i = 0; i < corners; ++i)
            {
                int const a = sample.mesh.elem(e, i);
                int const b = sample.mesh.elem(e, (i + 1) % corners);
                int const next = static_cast<int>(numbers.size()) + 1;
                int const k = numbers.emplace(std::minmax(a, b), next).first->second;
                EXPECT_EQ(table.elemEdge(e, i), k) << sample.name;
                EXPECT_EQ(table.low(k), std::min(a, b));
                EXPECT_EQ(table.high(k), std::max(a, b));
                elems[k].push_back(e);
            }
        }
        EXPECT_EQ(table.numEdge(), static_cast<int>(numbers.size()));
        EXPECT_EQ(table.numNode(), sample.mesh.numNode());
        for (auto & [k, list] : elems)
        {
            list.resize(2, 0);
            EXPECT_EQ((Ints{table.edgeElems(k)[0], table.edgeElems(k)[1]}), list) << sample.name;
        }
    }
}

// The walk as it is told, on maps and lists that grow: slow, and independent of the flat table.
int slowRepair(VOZCatMesh & mesh)
{
    std::map<std::pair<int, int>, int> numbers;
    std::vector<std::array<int, 2>> nodes(1);
    std::vector<Ints> elemEdges(static_cast<std::size_t>(mesh.numElem()) + 1);
    std::vector<int> slots(static_cast<std::size_t>(10 * mesh.numElem()) + 10, 0);
    std::map<int, int> entered;
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        int const corners = mesh.isTriangle(e) ? 3 : 4;
        for (int i = 0; i < corners; ++i)
        {
            std::pair<int, int> const ends = std::minmax({mesh.elem(e, i), mesh.elem(e, (i + 1) % corners)});
            int const k = numbers.emplace(ends, static_cast<int>(numbers.size()) + 1).first->second;
            if (nodes.size() == static_cast<std::size_t>(k))
                nodes.push_back({ends.first, ends.second});
            elemEdges[static_cast<std::size_t>(e)].push_back(k);
            slots[static_cast<std::size_t>(2 * k + entered[k]++)] = e;
        }
    }
    ElemNormal normals;
    std::vector<bool> visited(static_cast<std::size_t>(mesh.numElem()) + 1, false);
    Ints stack;
    for (int seed = 1; seed <= mesh.numElem(); ++seed)
    {
        if (visited[static_cast<std::size_t>(seed)])
            continue;
        visited[static_cast<std::size_t>(seed)] = true;
        stack.push_back(seed);
        while (!stack.empty())
        {
            int const c = stack.back();
            stack.pop_back();
            for (int const k : elemEdges[static_cast<std::size_t>(c)])
            {
                int const * const pair = slots.data() + 2 * k;
                int const neighbour = pair[0] != c ? pair[0] : pair[1] != c ? pair[1] : 0;
                if (neighbour <= 0 || visited[static_cast<std::size_t>(neighbour)])
                    continue;
                visited[static_cast<std::size_t>(neighbour)] = true;
                stack.push_back(neighbour);
                std::array<int, 2> const & ends = nodes[static_cast<std::size_t>(k)];
                if (!normals.IsCorrectDirection(c, neighbour, ends[0], ends[1], &mesh))
                    normals.FlipOneNormal(neighbour, &mesh);
            }
        }
    }
    return 0;
}

TEST(CheckFlip, AgreesWithTheSlowWalkOnRandomTangles)
{
    std::mt19937 random(23);
    for (int round = 0; round < 400; ++round)
    {
        int const numNode = 4 + static_cast<int>(random() % 12);
        auto const node = [&] { return 1 + static_cast<int>(random() % static_cast<unsigned>(numNode)); };
        Quads rows(1 + random() % 25);
        for (std::array<int, 4> & row : rows)
        {
            for (int & entry : row)
                entry = node();
            if (random() % 2)
                row[3] = row[0];
        }
        samples::Points points(static_cast<std::size_t>(numNode), samples::Point{0, 0, 0});
        VOZCatMesh mesh = samples::mesh(points, rows);
        VOZCatMesh slow(mesh);
        EXPECT_EQ(repair(mesh), 0);
        slowRepair(slow);
        ASSERT_EQ(allRows(mesh), allRows(slow)) << "round " << round;
    }
}

TEST_F(ElemNormalContract, CheckFlipSurvivesNumbersThatAreNoNodes)
{
    VOZCatMesh mesh =
        samples::mesh({{0, 0, 0}, {1, 0, 0}}, Quads{{1, 2, -7, 2000000000}, {2000000000, -7, 5, 1}, {0, 0, 0, 0}});
    EXPECT_EQ(repair(mesh), 0);
    mesh.SetFirstNodeNumber(77);
    EXPECT_EQ(repair(mesh), 0);
}

TEST(CheckFlip, WalksALongStripWithoutTheCallStack)
{
    Grid grid;
    grid.columns = 20000;
    grid.rows = 1;
    grid.split = true;
    VOZCatMesh mesh = grid.mesh();
    VOZCatMesh const before(mesh);
    std::mt19937 random(29);
    scramble(mesh, random);
    std::copy_n(before.GetElemData()[1], 4, mesh.GetElemData()[1]);
    EXPECT_EQ(repair(mesh), 0);
    EXPECT_EQ(allRows(mesh), allRows(before));
}
} // namespace
