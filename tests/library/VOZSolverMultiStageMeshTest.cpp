// VOZSolverMultiStageMeshTest.cpp: a mesh on its way into the kernel's record.

#include "VOZSolverMultiStage.h"

#include "StageFixture.h"
#include "VOZMesh.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

using testing::ElementsAre;

namespace
{
class StageMesh : public Stage
{
};

class TriangleStageMesh : public TriangleStage
{
};
} // namespace

TEST_F(StageMesh, AMeshGoesInMetresWithZeroBasedCorners)
{
    part.IdsOffset(100, 200);
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    ASSERT_EQ(mesh.GetNumNodes(), part.numNode());
    ASSERT_EQ(mesh.GetNumElements(), part.numElem());
    for (int e = 1; e <= part.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ(mesh.GetElements()[e - 1].m_anNodeIndices[k], part.elem(e, k) - 1);
    double * normals = nullptr;
    part.EvalNodesNormal(normals);
    for (int n = 1; n <= part.numNode(); ++n)
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(mesh.m_padNodalCoords[3 * (n - 1) + k], part.node(n, k) * 0.001);
            EXPECT_EQ(mesh.m_padNodalNormals[3 * (n - 1) + k], normals[3 * (n - 1) + k]);
        }
    delete[] normals;
    EXPECT_EQ(mesh.m_padCurvatures, nullptr);
    EXPECT_EQ(mesh.m_bOwnsTopology, 1);
    EXPECT_EQ(mesh.GetElements()[0].m_nMaterialIndex, 0);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(TriangleStageMesh, TrianglesLeaveTheFourthCornerAndTheOnePoint)
{
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    EXPECT_EQ(mesh.GetElements()[0].m_anNodeIndices[3], -1);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 1);
    VOZCatMesh const quads = dome(2, 2, false);
    VOZMesh_s second;
    ASSERT_EQ(driver.ConvertMeshData(&quads, second), 0);
    VOZMesh_s third;
    ASSERT_EQ(driver.ConvertMeshData(&part, third), 0);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4); // nothing sets it back
}

TEST_F(TriangleStageMesh, ABinderOfQuadrilateralsGivesAllElementsFourPoints)
{
    giveBinder();
    binder = dome(2, 2, false);
    fillStage();
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4);
}

TEST_F(StageMesh, CurvaturesBecomeInverseMetresButForTheThird)
{
    int const count = part.numElem();
    auto * const rows = new double[static_cast<std::size_t>(count) + 1][3];
    for (int e = 0; e <= count; ++e)
        for (int k = 0; k < 3; ++k)
            rows[e][k] = 0.003 * e - 0.2 * k;
    part.SetCurvatureValues(rows);
    VOZMesh_s mesh;
    ASSERT_EQ(driver.ConvertMeshData(&part, mesh), 0);
    EXPECT_THAT(rowsOf(mesh.m_padCurvatures + 3, 3), ElementsAre(rows[2][0] / 0.001, rows[2][1] / 0.001, rows[2][2]));
}

TEST_F(StageMesh, AnEmptyMeshIsReportedAndFails)
{
    VOZCatMesh const empty;
    VOZMesh_s mesh;
    EXPECT_EQ(driver.ConvertMeshData(&empty, mesh), E_FAIL);
    EXPECT_THAT(reported(), ElementsAre("nNumNodes > 0 && padNodesXYZ", "padNodalNormals"));
    EXPECT_EQ(driver.ConvertMeshData(nullptr, mesh), E_FAIL);
}

TEST_F(StageMesh, ACornerThatIsNoNodeIsReportedByItsPlaceAndFails)
{
    struct
    {
        int corner, label;
        std::vector<std::string> texts;
    } const rows[] = {
        {0, 99, {"panNodeIndices[0] < nNumNodes && panNodeIndices[0] >= 0"}},
        {1, 0, {"panNodeIndices[1] < nNumNodes && panNodeIndices[1] >= 0"}},
        {2, -5, {"panNodeIndices[2] < nNumNodes && panNodeIndices[2] >= 0"}},
        {2,
         99,
         {"panNodeIndices[2] < nNumNodes && panNodeIndices[2] >= 0",
          "panNodeIndices[2] < nNumNodes && panNodeIndices[3] >= 0"}},
        {3, 0, {"panNodeIndices[2] < nNumNodes && panNodeIndices[3] >= 0"}},
        {3, std::numeric_limits<int>::min(), {}}, // wraps round to a number above all nodes
        {3, 99, {}},                              // nobody looks at this bound before the boundaries are evaluated
    };
    for (auto const & row : rows)
    {
        VOZCatMesh mesh(part);
        mesh.GetElemData()[2][row.corner] = row.label;
        host.reports.clear();
        VOZMesh_s record;
        EXPECT_EQ(driver.ConvertMeshData(&mesh, record), E_FAIL) << row.corner << " " << row.label;
        std::vector<std::string> contracts;
        for (std::string const & text : reported())
            if (text.find("panNodeIndices") != std::string::npos)
                contracts.push_back(text);
        EXPECT_EQ(contracts, row.texts) << row.corner << " " << row.label;
    }
}
