// VOZSolverIncrementalMeshTest.cpp: the four meshes told apart, oriented, scaled, turned, measured and written.

#include "VOZSolverIncremental.h"

#include "FailingNew.h"
#include "IncrementalFixture.h"
#include "VOZAPIMesh.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace
{
class MeshHandOver : public IncrementalJob
{
protected:
    MeshHandOver()
    {
        give(driver);
        driver.m_strWorkingFolder = CATUnicodeString(work.Path().c_str());
    }

    // 1 if the normals point up, -1 if down, 0 if the mesh stands upright.
    static double facing(VOZCatMesh const & i_mesh)
    {
        int const * const row = i_mesh.GetElemData()[1];
        double const(*nodes)[3] = i_mesh.GetNodeData();
        int const first = i_mesh.GetFirstNodeNumber();
        double const * const a = nodes[row[0] - first];
        double const * const b = nodes[row[1] - first];
        double const * const c = nodes[row[2] - first];
        double const z = (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
        return z > 0.0 ? 1.0 : z < 0.0 ? -1.0 : 0.0;
    }

    // The labels of a keyword file's section, that is the first two columns of its lines.
    std::vector<int> labels(std::string const & i_file, std::string const & i_keyword, std::size_t i_width) const
    {
        std::vector<int> found;
        std::istringstream lines(work.Read(i_file));
        bool inside = false;
        for (std::string line; std::getline(lines, line);)
            if (line.rfind("*", 0) == 0)
                inside = line.rfind(i_keyword, 0) == 0;
            else if (inside && line.rfind("$", 0) != 0)
                found.push_back(std::stoi(line.substr(0, i_width)));
        return found;
    }

    IncrementalProbe driver;
};

std::vector<int> count(int i_first, int i_number)
{
    std::vector<int> numbers;
    for (int i = 0; i < i_number; ++i)
        numbers.push_back(i_first + i);
    return numbers;
}
} // namespace

TEST_F(MeshHandOver, KnowsTheFourNames)
{
    std::memset(driver.m_achDieName, 'x', 260);
    EXPECT_EQ(driver.GetMeshDisplayName(), 0);
    EXPECT_STREQ(driver.m_achDieName, "VOZDie");
    EXPECT_STREQ(driver.m_achPunchName, "VOZPunch");
    EXPECT_STREQ(driver.m_achBinderName, "VOZBinder");
    EXPECT_STREQ(driver.m_achBlankName, "VOZBlank");
    EXPECT_TRUE(std::all_of(driver.m_achDieName + 6, driver.m_achDieName + 260, [](char c) { return c == 0; }));
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(driver.GetMeshDisplayName(), E_FAIL);
}

TEST_F(MeshHandOver, FindsTheRolesByName)
{
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_EQ(driver.m_pBlankMesh, &blank);
    EXPECT_EQ(driver.m_pDieMesh, &die);
    EXPECT_EQ(driver.m_pPunchMesh, &punch);
    EXPECT_EQ(driver.m_pBinderMesh, &holder);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(MeshHandOver, NamesTheFilesByThePlaceOfTheMesh)
{
    meshes = {&die, nullptr, &blank, &punch};
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_STREQ(driver.m_astrMeshFiles[0].ConvertToChar(), work.Path("VOZDie.mod").c_str());
    EXPECT_TRUE(driver.m_astrMeshFiles[1].IsNull());
    EXPECT_STREQ(driver.m_astrMeshFiles[2].ConvertToChar(), work.Path("VOZBlank.mod").c_str());
    EXPECT_STREQ(driver.m_astrMeshFiles[3].ConvertToChar(), work.Path("VOZPunch.mod").c_str());
    EXPECT_EQ(driver.m_pBinderMesh, nullptr);
}

TEST_F(MeshHandOver, BringsTheMeshesToMetresInPlace)
{
    VOZCatMesh const before(punch);
    EXPECT_EQ(driver.SetMesh(), 0);
    for (int n = 1; n <= punch.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            ASSERT_EQ(punch.NodeValue(n, c), before.NodeValue(n, c) * 0.001);
}

TEST_F(MeshHandOver, MeasuresTheBlankInMetres)
{
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_NEAR(driver.m_dMaxBlankElementSize, 0.010, 1e-15);
    EXPECT_NEAR(driver.m_dMinBlankElementSize, 0.010, 1e-15);
}

TEST_F(MeshHandOver, TellsTheBlanksLongestEdgeFromItsShortest)
{
    take(blank, plate(6, 8, 0.0, 0.0, "VOZBlank")); // 20 mm x 10 mm
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_NEAR(driver.m_dMaxBlankElementSize, 0.020, 1e-15);
    EXPECT_NEAR(driver.m_dMinBlankElementSize, 0.010, 1e-15);
}

TEST_F(MeshHandOver, TurnsTheDieDownPunchAndBinderUpAndTheBlankNever)
{
    for (bool const isReversed : {false, true})
    {
        take(blank, plate(12, 8, 0.0, 0.0, "VOZBlank"));
        take(die, plate(12, 8, 30.0, 12.0, "VOZDie"));
        take(punch, plate(12, 8, -10.0, 11.0, "VOZPunch"));
        take(holder, plate(6, 4, -1.0, 0.0, "VOZBinder"));
        if (isReversed)
            for (VOZCatMesh * const mesh : {&blank, &die, &punch, &holder})
                mesh->reverse();
        EXPECT_EQ(driver.SetMesh(), 0);
        EXPECT_EQ(facing(die), -1.0) << isReversed;
        EXPECT_EQ(facing(punch), 1.0) << isReversed;
        EXPECT_EQ(facing(holder), 1.0) << isReversed;
        EXPECT_EQ(facing(blank), isReversed ? -1.0 : 1.0);
    }
}

TEST_F(MeshHandOver, LeavesAMeshThatStandsAcrossTheTippingVector)
{
    for (bool const isReversed : {false, true})
    {
        // One upright quadrilateral per tool: its normal is along y, to the last bit.
        for (VOZCatMesh * const mesh : {&die, &punch, &holder})
        {
            char const * const name = mesh->GetName();
            *mesh = samples::mesh({{0, 5, 0}, {8, 5, 0}, {8, 5, 8}, {0, 5, 8}}, {{{1, 2, 3, 4}}});
            mesh->SetName(name);
            if (isReversed)
                mesh->reverse();
        }
        VOZCatMesh const before(die);
        EXPECT_EQ(driver.SetMesh(), 0);
        for (VOZCatMesh const * const mesh : {&die, &punch, &holder})
            EXPECT_EQ(rowsOf(mesh->GetElemData()[1], 4), rowsOf(before.GetElemData()[1], 4));
    }
}

// The tipping vector is the third column of the frame's matrix, whose rows are the axes.
TEST_F(MeshHandOver, TakesTheTippingVectorFromTheThirdColumn)
{
    axis.axis(0, Vec(0.0, 0.0, 1.0));
    axis.axis(1, Vec(1.0, 0.0, 0.0));
    axis.axis(2, Vec(0.0, 1.0, 0.0));
    driver.SetMesh();
    EXPECT_THAT(driver.m_adTippingVector, testing::ElementsAre(1.0, 0.0, 0.0));
}

// Along y the local frame has the rows x, and two more that make it right-handed with y as the third.
TEST_F(MeshHandOver, TurnsTheMeshesByTheRowsOfTheTippingFrame)
{
    axis.axis(0, Vec(1.0, 0.0, 0.0));
    axis.axis(1, Vec(0.0, 0.0, 1.0));
    axis.axis(2, Vec(0.0, -1.0, 0.0)); // third column: (0, 1, 0)
    VOZCatMesh const before(blank);
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_THAT(driver.m_adTippingVector, testing::ElementsAre(0.0, 1.0, 0.0));
    // X = (1, 0, 0), Z = (0, 1, 0), so Y = Z x X = (0, 0, -1); a point q goes to q.x X + q.y Y + q.z Z.
    for (int n = 1; n <= blank.numNode(); ++n)
    {
        ASSERT_NEAR(blank.NodeValue(n, 0), 0.001 * before.NodeValue(n, 0), 1e-15);
        ASSERT_NEAR(blank.NodeValue(n, 1), 0.001 * before.NodeValue(n, 2), 1e-15);
        ASSERT_NEAR(blank.NodeValue(n, 2), -0.001 * before.NodeValue(n, 1), 1e-15);
    }
}

TEST_F(MeshHandOver, EndsAtAMeshOfAnotherNameWithTheEarlierOnesChanged)
{
    char const * const names[] = {"vozdie", "VOZDie ", "Die", "", nullptr};
    for (char const * const name : names)
    {
        take(blank, plate(12, 8, 0.0, 0.0, "VOZBlank"));
        take(die, plate(12, 8, 30.0, 12.0, name));
        take(punch, plate(12, 8, -10.0, 11.0, "VOZPunch"));
        EXPECT_EQ(driver.SetMesh(), E_FAIL);
        EXPECT_DOUBLE_EQ(blank.NodeValue(blank.numNode(), 0), 0.120) << "ahead of it: in metres";
        EXPECT_DOUBLE_EQ(die.NodeValue(die.numNode(), 0), 0.120) << "itself, too";
        EXPECT_DOUBLE_EQ(punch.NodeValue(punch.numNode(), 0), 120.0) << "behind it: untouched";
    }
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
}

TEST_F(MeshHandOver, FailsWithoutAFrameMeshesAFolderOrAnInstallation)
{
    driver.m_strWorkingFolder = CATUnicodeString();
    EXPECT_EQ(driver.SetMesh(), E_FAIL);
    driver.m_strWorkingFolder = CATUnicodeString(work.Path().c_str());
    driver.SetBoundaryConditions(meshes.data(), 4, &property, &symmetry, &friction, &fullHolder, nullptr, 0, 0, 0);
    EXPECT_EQ(driver.SetMesh(), E_FAIL);
    driver.SetBoundaryConditions(nullptr, 4, &property, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.SetMesh(), E_FAIL);
    give(driver);
    host.environment.erase("VOZDRAVO3D"); // nor without an installation
    EXPECT_EQ(driver.SetMesh(), E_FAIL);
    EXPECT_EQ(blank.NodeValue(blank.numNode(), 0), 120.0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(MeshHandOver, ReportsMoreThanFourMeshesAndTakesFour)
{
    VOZCatMesh fifth = plate(2, 2, 0.0, 0.0, "VOZBlank");
    meshes.push_back(&fifth);
    meshCount = 5;
    give(driver);
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:m_nMesh <= 4"));
    EXPECT_EQ(fifth.NodeValue(fifth.numNode(), 0), 120.0);
}

TEST_F(MeshHandOver, ReportsTheRolesThatNobodyHas)
{
    std::fill(meshes.begin(), meshes.end(), nullptr);
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_THAT(reported(),
                testing::ElementsAre("AssertionFailed:m_pDieMesh", "AssertionFailed:m_pBlankMesh",
                                     "AssertionFailed:m_pPunchMesh", "AssertionFailed:m_dMaxBlankElementSize > 0.0"));
    host.reports.clear();
    driver.WriteMeshData();
    EXPECT_TRUE(std::filesystem::is_empty(work.Path()));
}

TEST_F(MeshHandOver, ReportsABlankWithoutASize)
{
    blank.sizeElem(0);
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:m_dMaxBlankElementSize > 0.0"));
}

TEST_F(MeshHandOver, ForgetsTheRolesOfAnEarlierJob)
{
    EXPECT_EQ(driver.SetMesh(), 0);
    meshes[3] = nullptr;
    EXPECT_EQ(driver.SetMesh(), 0);
    EXPECT_EQ(driver.m_pBinderMesh, nullptr);
    EXPECT_TRUE(driver.m_astrMeshFiles[3].IsNull());
}

TEST_F(MeshHandOver, GivesTheKernelAMeshFromZeroOn)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 1}, {2, 0, 3}, {2, 2, 5}, {0, 2, 7}, {4, 0, 9}},
                                    samples::Quads{{1, 2, 3, 4}, {2, 5, 3, 2}});
    mesh.IdsOffset(700, 30);
    std::unique_ptr<VOZAPIMesh> const made(driver.CreateAPIMesh(&mesh));
    ASSERT_NE(made, nullptr);
    ASSERT_EQ(made->GetNumNodes(), 5);
    ASSERT_EQ(made->GetNumElements(), 2);
    for (int n = 0; n < 5; ++n)
        EXPECT_EQ(rowsOf(made->GetNodeCoord(n), 3), rowsOf(mesh.GetNodeData()[n + 1], 3));
    EXPECT_THAT(rowsOf(made->GetElements()[0], 4), testing::ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(rowsOf(made->GetElements()[1], 4), testing::ElementsAre(1, 4, 2, -1));
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(MeshHandOver, ReportsAMeshThatIsNotThereOrEmpty)
{
    std::unique_ptr<VOZAPIMesh> made(driver.CreateAPIMesh(nullptr));
    EXPECT_THAT(reported(), testing::ElementsAre("i_pMesh && pAPIMesh"));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetNumNodes(), 0);
    host.reports.clear();
    VOZCatMesh empty;
    made.reset(driver.CreateAPIMesh(&empty));
    EXPECT_THAT(reported(), testing::ElementsAre("pAPIMesh->GetNumNodes() > 0", "pAPIMesh->GetNumElements() > 0",
                                                 "padCoord", "padElems"));
    ASSERT_NE(made, nullptr);
    host.reports.clear();
    VOZCatMesh miscounted;
    miscounted.numNode(3);
    miscounted.numElem(-2);
    made.reset(driver.CreateAPIMesh(&miscounted));
    EXPECT_THAT(reported(), testing::ElementsAre("pAPIMesh->GetNumElements() > 0", "padCoord", "padElems"));
}

TEST_F(MeshHandOver, ReportsCornersThatAreNoNodes)
{
    VOZCatMesh mesh = samples::mesh({{0, 0, 0}, {2, 0, 0}, {2, 2, 0}},
                                    samples::Quads{{1, 2, 9, 1}, {0, 2, 3, 0}, {1, 2, 3, -2147483647 - 1}});
    std::unique_ptr<VOZAPIMesh> const made(driver.CreateAPIMesh(&mesh));
    EXPECT_THAT(reported(), testing::Each("nNodeId >= 0 && nNodeId < pAPIMesh->GetNumNodes()"));
    EXPECT_EQ(host.reports.size(), 3U);
    EXPECT_THAT(rowsOf(made->GetElements()[0], 4), testing::ElementsAre(0, 1, -1, -1));
    EXPECT_THAT(rowsOf(made->GetElements()[1], 4), testing::ElementsAre(-1, 1, 2, -1));
}

TEST_F(MeshHandOver, MeasuresTheStrokeAsTheSmallestGapFromPunchToDie)
{
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.PunchStrokeAsDZmax();
    EXPECT_NEAR(driver.m_dStrokeAsDZmax, 0.040, 1e-9);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(MeshHandOver, ShortensTheStrokeByAThicknessInModeTwoOfEitherSign)
{
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.m_dThickness = 0.0015;
    for (int mode : {2, -2, 1, -1, 3, -2147483647 - 1})
    {
        give(driver, 0, mode);
        driver.PunchStrokeAsDZmax();
        EXPECT_NEAR(driver.m_dStrokeAsDZmax, mode == 2 || mode == -2 ? 0.0385 : 0.040, 1e-9) << mode;
    }
}

TEST_F(MeshHandOver, ReportsAStrokeThatIsNone)
{
    std::string const text = "dMinDistance > 0.0 && dMaxDistance > 0.0 && dMinDistance < dMaxDistance";
    driver.m_pDieMesh = &punch; // the die below the punch: negative gaps
    driver.m_pPunchMesh = &die;
    driver.PunchStrokeAsDZmax();
    EXPECT_THAT(reported(), testing::ElementsAre(text));
    host.reports.clear();
    take(holder, plate(4, 4, 500.0, 0.0, "VOZBinder")); // a gap that is the same everywhere
    driver.m_pDieMesh = &holder;
    driver.m_pPunchMesh = &blank;
    driver.PunchStrokeAsDZmax();
    EXPECT_THAT(reported(), testing::ElementsAre(text));
}

TEST_F(MeshHandOver, MeasuresNoStrokeWithoutTools)
{
    driver.PunchStrokeAsDZmax();
    EXPECT_EQ(driver.m_dStrokeAsDZmax, 0.0);
    EXPECT_THAT(reported(),
                testing::ElementsAre("i_pMesh && pAPIMesh", "i_pMesh && pAPIMesh",
                                     "dMinDistance > 0.0 && dMaxDistance > 0.0 && dMinDistance < dMaxDistance"));
}

TEST_F(MeshHandOver, MeasuresNoStrokeWithoutMemoryForTheKernelsMeshes)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP();
    ASSERT_EQ(driver.SetMesh(), 0);
    std::string const noStroke = "dMinDistance > 0.0 && dMaxDistance > 0.0 && dMinDistance < dMaxDistance";
    // The meshes themselves are the first and the fourth; behind each come its two tables.
    std::vector<std::vector<std::string>> const reports = {
        {"AssertionFailed:pMeshDie != NULL", noStroke},   {noStroke}, {noStroke},
        {"AssertionFailed:pMeshPunch != NULL", noStroke}, {noStroke}, {noStroke}};
    for (std::size_t i = 0; i < reports.size(); ++i)
    {
        host.reports.clear();
        driver.m_dStrokeAsDZmax = 1.0;
        FailingNew const failing(static_cast<int>(i) + 1);
        driver.PunchStrokeAsDZmax();
        EXPECT_TRUE(failing.refused());
        EXPECT_EQ(reported(), reports[i]) << i;
        EXPECT_EQ(driver.m_dStrokeAsDZmax, 0.0);
    }
    FailingNew const failing(1);
    EXPECT_EQ(driver.CreateAPIMesh(&die), nullptr);
}

TEST_F(MeshHandOver, WritesBlankPunchAndDieWithTheirParts)
{
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.WriteMeshData();
    struct File
    {
        char const * name;
        VOZCatMesh const & mesh;
        int part;
    };
    for (File const & file :
         {File{"VOZBlank.mod", blank, 5}, File{"VOZPunch.mod", punch, 2}, File{"VOZDie.mod", die, 1}})
    {
        EXPECT_EQ(labels(file.name, "*NODE", 8), count(file.mesh.GetFirstNodeNumber() + 1, file.mesh.numNode()));
        EXPECT_EQ(labels(file.name, "*ELEMENT_SHELL", 8),
                  count(file.mesh.GetFirstElementNumber() + 1, file.mesh.numElem()));
        std::string const text = work.Read(file.name);
        std::size_t const row = text.find('\n', text.find("*ELEMENT_SHELL"));
        std::istringstream lines(text.substr(row + 1));
        for (std::string line; std::getline(lines, line);)
        {
            if (line.rfind("*", 0) == 0 || line.rfind("$", 0) == 0)
                continue;
            ASSERT_EQ(std::stoi(line.substr(8, 8)), file.part) << file.name;
        }
        EXPECT_NE(text.find("*END"), std::string::npos);
    }
    EXPECT_FALSE(std::filesystem::exists(work.Path("VOZBinder.mod"))) << "nothing presses it";
}

TEST_F(MeshHandOver, WritesTheBinderOnlyUnderForce)
{
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.m_dBlankHolderForce = -5.0;
    driver.WriteMeshData();
    EXPECT_FALSE(std::filesystem::exists(work.Path("VOZBinder.mod")));
    driver.m_dBlankHolderForce = 5.0;
    driver.WriteMeshData();
    EXPECT_EQ(labels("VOZBinder.mod", "*NODE", 8), count(holder.GetFirstNodeNumber() + 1, holder.numNode()));
    std::filesystem::remove(work.Path("VOZBinder.mod"));
    driver.m_pBinderMesh = nullptr;
    driver.WriteMeshData();
    EXPECT_FALSE(std::filesystem::exists(work.Path("VOZBinder.mod")));
}

TEST_F(MeshHandOver, LetsTheBlanksLabelsBeginAtOneAndMovesTheToolsUpByWhatItGaveBack)
{
    blank.IdsOffset(5000, 300);
    int const punchNodes = punch.GetFirstNodeNumber();
    int const punchElements = punch.GetFirstElementNumber();
    int const dieCorner = die.GetElemData()[1][0];
    int const holderNodes = holder.GetFirstNodeNumber();
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.WriteMeshData();
    EXPECT_EQ(blank.GetFirstNodeNumber(), 0);
    EXPECT_EQ(blank.GetFirstElementNumber(), 0);
    EXPECT_EQ(blank.GetElemData()[1][0], 1);
    EXPECT_EQ(punch.GetFirstNodeNumber(), punchNodes + 5000);
    EXPECT_EQ(punch.GetFirstElementNumber(), punchElements + 300);
    EXPECT_EQ(holder.GetFirstNodeNumber(), holderNodes + 5000);
    EXPECT_EQ(facing(die), -1.0);
    EXPECT_EQ(die.GetFirstNodeNumber() + die.elem(1, 0), die.GetElemData()[1][0]);
    EXPECT_NE(die.GetElemData()[1][0], dieCorner);
    EXPECT_EQ(labels("VOZBlank.mod", "*NODE", 8), count(1, blank.numNode()));
}

TEST_F(MeshHandOver, LeavesAllLabelsWhereTheBlankHasNoOffset)
{
    blank.SetFirstElementNumber(40); // its nodes alone decide
    int const punchNodes = punch.GetFirstNodeNumber();
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.WriteMeshData();
    EXPECT_EQ(punch.GetFirstNodeNumber(), punchNodes);
    EXPECT_EQ(blank.GetFirstElementNumber(), 40);
}

TEST_F(MeshHandOver, WritesNothingIntoAFolderThatIsNotThere)
{
    ASSERT_EQ(driver.SetMesh(), 0);
    driver.m_strWorkingFolder = CATUnicodeString(work.Path("nowhere").c_str());
    driver.WriteMeshData();
    EXPECT_FALSE(std::filesystem::exists(work.Path("nowhere")));
}
