// MeshRepairTest.cpp: what is mended, what is left, and that a second repair finds nothing more to do.

#include "MeshFixture.h"

#include "MeshCheck.h"
#include "PointGrid.h"

#include <limits>
#include <random>

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
MeshModel read(std::string const & obj)
{
    return ReadMeshText(obj, "part.obj");
}

std::vector<std::string> textsOf(std::vector<RepairStep> const & steps)
{
    std::vector<std::string> texts;
    for (RepairStep const & step : steps)
        texts.push_back((step.isDone ? "" : "not: ") + step.text);
    return texts;
}
using Texts = std::vector<std::string>;

//   4---3 6---7
//   | 1 | | 2 |     3 and 6, 2 and 5 lie together: a seam
//   1---2 5---8
constexpr char const * kSeam =
    "v 0 0 0\nv 10 0 0\nv 10 10 0\nv 0 10 0\nv 10 1e-5 0\nv 10 10 1e-5\nv 20 10 0\nv 20 0 0\n"
    "g left\nf 1 2 3 4\ng right\nf 5 8 7 6\n";
std::string const kSquares = "v 0 0 0\nv 10 0 0\nv 20 0 0\nv 0 10 0\nv 10 10 0\nv 20 10 0\n"; // 4-5-6 over 1-2-3
} // namespace

TEST(MeshRepair, JoinsASeamAndKeepsIdsAndSets)
{
    MeshModel model = read(kSeam);
    std::vector<RepairStep> const steps = RepairMesh(model);
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_EQ(steps[0].text.substr(0, 38), "joined 2 nodes to another within 0.000");
    EXPECT_EQ(steps[0].ids, (std::vector<int>{5, 6}));
    EXPECT_EQ(model.nodeIds, (std::vector<int>{1, 2, 3, 4, 7, 8}));
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 3, 4}, {2, 6, 5, 3}}));
    EXPECT_EQ(PointsOf(model)[1], (Point{10, 0, 0})); // the first stays where it is
    ASSERT_EQ(model.sets.size(), 2U);
    EXPECT_EQ(model.sets[1].elements, std::vector<int>{2});
    EXPECT_EQ(CheckMesh(model).freeEdges, 6);
}

TEST(MeshRepair, JoinsNothingBeyondTheTolerance)
{
    MeshModel model = read(kSeam);
    RepairOptions options;
    options.pairTolerance = 0.0;
    EXPECT_TRUE(RepairMesh(model, options).empty());
    EXPECT_EQ(model.mesh.numNode(), 8);
}

TEST(MeshRepair, MakesTrianglesOfQuadrilateralsWithARepeatedCornerAndDropsWhatIsLess)
{
    MeshModel model = read(kSquares + "f 1 2 5 4\nf 2 3 6 6\nf 3 3 6\ng x\nf 2 5 2 6\n");
    EXPECT_EQ(textsOf(RepairMesh(model)), (Texts{"made 1 quadrilateral with a repeated corner triangles",
                                                 "took out 2 elements without three different corners"}));
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 5, 4}, {2, 3, 6, 2}}));
    EXPECT_EQ(model.elementIds, (std::vector<int>{1, 2}));
    EXPECT_EQ(model.sets.size(), 1U); // a set that lost all its elements goes
}

TEST(MeshRepair, TakesOutRepeatsAndLoneNodes)
{
    MeshModel model = read(kSquares + "v 5 5 5\nf 1 2 5 4\nf 4 5 2 1\nf 2 3 6 5\n");
    std::vector<RepairStep> const steps = RepairMesh(model);
    EXPECT_EQ(textsOf(steps),
              (Texts{"took out 1 element that repeats an earlier one", "took out 1 node without elements"}));
    EXPECT_EQ(steps[0].ids, std::vector<int>{2});
    EXPECT_EQ(steps[1].ids, std::vector<int>{7});
    EXPECT_EQ(model.elementIds, (std::vector<int>{1, 3}));
}

TEST(MeshRepair, TurnsElementsToRunLikeMostOfTheirPiece)
{
    MeshModel model = read(kSquares + "v 30 0 0\nv 30 10 0\nf 1 4 5 2\nf 2 3 6\nf 2 6 5\nf 3 7 8 6\n");
    std::vector<RepairStep> const steps = RepairMesh(model);
    EXPECT_EQ(textsOf(steps), Texts{"turned 1 element to run like the rest of their piece"});
    EXPECT_EQ(steps[0].ids, std::vector<int>{1});
    EXPECT_EQ(RowsOf(model)[0], (Row{1, 2, 5, 4}));
    EXPECT_FALSE(CheckMesh(model).HasErrors());
}

// Node 2 lies on the side 1-3 of the triangle 1-3-4, and the triangle 1-2-3 without area closes the seam.
TEST(MeshRepair, LeavesAnElementWithoutAreaThatJoinsOthers)
{
    MeshModel model = read("v 0 0 0\nv 10 0 0\nv 20 0 0\nv 10 10 0\nv 10 -10 0\nf 1 3 4\nf 1 2 3\nf 1 5 2\nf 2 5 3\n");
    std::vector<RepairStep> const steps = RepairMesh(model);
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_FALSE(steps[0].isDone);
    EXPECT_EQ(steps[0].text,
              "left 1 element without area that join others: without them a seam would open; remesh there");
    EXPECT_EQ(steps[0].ids, std::vector<int>{2});
    EXPECT_EQ(model.mesh.numElem(), 4);
}

TEST(MeshRepair, TakesOutAnElementWithoutAreaThatHangsOnTheBoundary)
{
    MeshModel model = read(kSquares + "f 1 2 5 4\nf 2 3 6 5\nf 1 3 2\n");
    EXPECT_EQ(model.mesh.numElem(), 3);
    std::vector<RepairStep> const steps = RepairMesh(model);
    ASSERT_EQ(steps.size(), 1U);
    EXPECT_FALSE(steps[0].isDone); // it lies on both squares' sides

    model = read(kSquares + "f 1 2 5 4\nf 2 3 6 5\nv 30 0 0\nf 2 7 3\n");
    EXPECT_EQ(textsOf(RepairMesh(model)),
              (Texts{"took out 1 element without area", "took out 1 node without elements"}));
    EXPECT_EQ(model.mesh.numElem(), 2);
}

TEST(MeshRepair, FindsNothingMoreToDoASecondTime)
{
    std::mt19937 random(5);
    for (int round = 0; round < 100; ++round)
    {
        std::string text;
        for (int n = 0; n < 30; ++n)
            text += "v " + std::to_string(random() % 4) + " " + std::to_string(random() % 4) + " " +
                    std::to_string(random() % 2) + "\n";
        for (int e = 0; e < 40; ++e)
        {
            text += "f";
            for (unsigned k = 0; k < 3 + random() % 2; ++k)
                text += " " + std::to_string(1 + random() % 30);
            text += "\n";
        }
        // Faces may come out with two corners by the loop's limit: give each a third.
        std::string fixed;
        std::stringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            fixed += line + (line[0] == 'f' && std::count(line.begin(), line.end(), ' ') < 3 ? " 1 2" : "") + "\n";
        MeshModel model = read(fixed);
        RepairMesh(model);
        if (model.mesh.numElem() == 0)
            continue;
        for (RepairStep const & step : RepairMesh(model))
            EXPECT_FALSE(step.isDone && step.text.substr(0, 6) == "joined") << step.text;
        MeshReport const report = CheckMesh(model);
        EXPECT_EQ(report.Count(FindingKind::RepeatedNode), 0);
        EXPECT_EQ(report.Count(FindingKind::Duplicate), 0);
        EXPECT_EQ(report.Count(FindingKind::LoneNode), 0);
        EXPECT_EQ(report.Count(FindingKind::ClosePair), 0);
        EXPECT_EQ(report.Count(FindingKind::Flipped), 0);
    }
}

TEST(PointGrid, FindsTheNearestLikeASlowSearch)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> unit(-1.0, 1.0);
    for (double const tolerance : {0.0, 1e-9, 0.05, 0.3, 5.0, std::numeric_limits<double>::infinity()})
    {
        constexpr int kCount = 400;
        std::vector<std::array<double, 3>> points(kCount + 1);
        for (auto & p : points)
            p = {unit(random), unit(random), 0.1 * unit(random)};
        for (int k = 1; k < 50; ++k)
            points[static_cast<std::size_t>(k + 300)] = points[static_cast<std::size_t>(k)];
        auto const * const rows = reinterpret_cast<double const(*)[3]>(points.data());
        PointGrid grid(rows, kCount, tolerance);
        std::vector<int> added;
        for (int n = 1; n <= kCount; ++n)
        {
            int best = 0;
            double bestSquare = tolerance * tolerance;
            for (int const other : added)
            {
                double square = 0.0;
                for (std::size_t c = 0; c < 3; ++c)
                {
                    double const d =
                        points[static_cast<std::size_t>(n)][c] - points[static_cast<std::size_t>(other)][c];
                    square += d * d;
                }
                if (square < bestSquare || (square == bestSquare && best == 0))
                {
                    best = other;
                    bestSquare = square;
                }
            }
            ASSERT_EQ(grid.FindNear(n), best) << tolerance;
            if (best == 0)
            {
                grid.Add(n);
                added.push_back(n);
            }
        }
    }
}
