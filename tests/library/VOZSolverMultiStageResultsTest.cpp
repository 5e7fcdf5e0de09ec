// VOZSolverMultiStageResultsTest.cpp: what the kernel left in the stage, in the three stores.

#include "VOZSolverMultiStage.h"

#include "DriverFixture.h"
#include "VOZFormingResult.h"
#include "VOZMaterialUtility.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

using testing::ElementsAre;

namespace
{
class Probe : public VOZSolverMultiStage
{
public:
    using VOZSolverMultiStage::FillInXenSolverData;
    using VOZSolverMultiStage::GetResults;
    using VOZSolverMultiStage::SetDisplacementResults;

    using VOZSolverMultiStage::m_nNbIntegrationPoints;
    using VOZSolverMultiStage::m_psFormingResult;
    using VOZSolverMultiStage::m_psIOData;
    using VOZSolverMultiStage::m_pSolverIOData;

    VOZSolverStage_s & stage() { return *m_psIOData->m_pasStages; }
};

// The base driver over the same strains: both read-backs are to say the same.
class BaseProbe : public VOZSolver
{
public:
    using VOZSolver::GetResults;
    using VOZSolver::m_nNbIntegrationPoints;
    using VOZSolver::m_pSolverIOData;
};

double * newRandom(int size, std::mt19937 & io_generator, double low, double high)
{
    std::uniform_real_distribution<double> value(low, high);
    auto * const values = new double[static_cast<std::size_t>(size)];
    for (int i = 0; i < size; ++i)
        values[i] = value(io_generator);
    return values;
}

class StageResults : public DriverFixture
{
protected:
    explicit StageResults(VOZCatMesh const & i_part = dome(4, 3, false)) : DriverFixture(i_part)
    {
        axis.axis(0, Vec(0.6, 0.8, 0.0));
        axis.axis(1, Vec(-0.8, 0.6, 0.0));
        axis.origin(Vec(300.0, -200.0, 50.0));
        give(driver);
    }

    void fillStage() { ASSERT_EQ(driver.FillInXenSolverData(), 0); }

    // As a solve would: four places per element, a stride of the driver's.
    void fillAnswer(unsigned i_seed)
    {
        std::mt19937 generator(i_seed);
        int const nodes = 3 * part.numNode();
        int const places = 12 * part.numElem();
        VOZFormingResult_s & forming = *driver.stage().m_psFormingResult;
        forming.Clear();
        forming.m_padStrainComponentsTop = newRandom(places, generator, -0.3, 0.3);
        forming.m_padStrainComponentsMid = newRandom(places, generator, -0.3, 0.3);
        forming.m_padStrainComponentsBot = newRandom(places, generator, -0.3, 0.3);
        forming.m_padEquivalentStress = newRandom(places, generator, 0.0, 5e8);
        forming.m_dPunchForce = 98765.4321;
        for (VOZMesh_s * mesh : {driver.stage().m_psBlankMesh, driver.m_psIOData->m_psBlankOnBinderMesh})
            if (mesh != nullptr)
            {
                double * const moved = newRandom(nodes, generator, -0.2, 0.2);
                std::copy(moved, moved + nodes, mesh->m_padNodalCoords);
                delete[] moved;
            }
    }

    // Local x and y of the way from p to q, by the rows of the frame.
    std::array<double, 3> planar(double const * p, double const * q) const
    {
        std::array<double, 3> result = {0.0, 0.0, 0.0};
        for (int i = 0; i < 2; ++i)
            for (int j = 0; j < 3; ++j)
                result[static_cast<std::size_t>(i)] += axis.axis(i, j) * (q[j] - p[j]);
        return result;
    }

    Probe driver;
};

class StageResultsOfTriangles : public StageResults
{
protected:
    StageResultsOfTriangles() : StageResults(dome(4, 3, true)) {}
};
} // namespace

TEST_F(StageResults, NoStageIsTheOneFailure)
{
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
    fillStage();
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    stores.pointers[2] = nullptr;
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
}

TEST_F(StageResults, DisplacementsLeadToTheFlatInMetresGloballyAndInTheSheetPlane)
{
    fillStage();
    fillAnswer(3);
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
    {
        double const * const p = driver.stage().m_psPartMesh->m_padNodalCoords + 3 * (n - 1);
        double const * const b = driver.stage().m_psBlankMesh->m_padNodalCoords + 3 * (n - 1);
        std::array<double, 3> const flat = planar(p, b);
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(stores.top.disp(n, k), static_cast<float>(b[k] - p[k]));
            EXPECT_EQ(stores.top.dispOnBinder(n, k), static_cast<float>(b[k] - p[k]));
            EXPECT_NEAR(stores.top.disp2d(n, k), flat[static_cast<std::size_t>(k)], 1e-7);
            EXPECT_EQ(stores.mid.disp(n, k), 0.0F); // the first store alone
            EXPECT_EQ(stores.bottom.disp2d(n, k), 0.0F);
        }
        EXPECT_EQ(stores.top.disp2d(n, 2), 0.0F);
    }
}

TEST_F(StageResults, WithABinderTheFlatGivesWayToTheBlankOnItButForTheGlobalOne)
{
    binder = dome(3, 3, true);
    meshes[1] = &binder;
    meshCount = 2;
    give(driver);
    fillStage();
    fillAnswer(4);
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
    {
        double const * const p = driver.stage().m_psPartMesh->m_padNodalCoords + 3 * (n - 1);
        double const * const b = driver.stage().m_psBlankMesh->m_padNodalCoords + 3 * (n - 1);
        double const * const q = driver.m_psIOData->m_psBlankOnBinderMesh->m_padNodalCoords + 3 * (n - 1);
        std::array<double, 3> const onBinder = planar(p, q);
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(stores.top.disp(n, k), static_cast<float>(b[k] - p[k]));
            EXPECT_EQ(stores.top.dispOnBinder(n, k), static_cast<float>(q[k] - p[k]));
            EXPECT_NEAR(stores.top.disp2d(n, k), onBinder[static_cast<std::size_t>(k)], 1e-7);
        }
        EXPECT_EQ(stores.top.disp2d(n, 2), 0.0F);
    }
    meshCount = 1; // a binder that no longer counts
    give(driver);
    LayerStores others(part);
    driver.SetDisplacementResults(others.layers());
    EXPECT_EQ(others.top.dispOnBinder(2, 0), others.top.disp(2, 0));
}

TEST_F(StageResults, MeshesOfTwoSizesAreReportedAndTheShorterOneCounts)
{
    fillStage();
    fillAnswer(5);
    auto * const topology = new VOZTopologyMesh_s;
    topology->SetNodesElements(2, 0, nullptr);
    driver.stage().m_psBlankMesh->SetData(new double[6]{1, 2, 3, 4, 5, 6}, nullptr, nullptr, true, topology);
    LayerStores stores(part);
    driver.SetDisplacementResults(stores.layers());
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:iBlankMeshNodes == iPartMeshNodes"));
    EXPECT_NE(stores.top.disp(2, 0), 0.0F);
    EXPECT_EQ(stores.top.disp(3, 0), 0.0F);
}

TEST_F(StageResults, WithoutBothMeshesTheDisplacementsStayZero)
{
    fillStage();
    fillAnswer(6);
    LayerStores stores(part);
    driver.stage().m_psBlankMesh->SetData(nullptr, nullptr, nullptr, false, driver.stage().m_psPartMesh->m_psTopology);
    driver.SetDisplacementResults(stores.layers());
    driver.stage().SetBlankMeshData(nullptr);
    driver.SetDisplacementResults(stores.layers());
    EXPECT_EQ(stores.top.disp(2, 0), 0.0F);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_NE(stores.top.strain(1, 0), 0.0F); // the rest is there
}

// The chain from strains on is that of the base driver, which is tested against a second reading of its own.
TEST_F(StageResults, StrainsGoTheWayOfTheBaseDriver)
{
    for (unsigned seed = 1; seed <= 3; ++seed)
    {
        property.material(1)->m_dFldZero = 25.0;
        fillStage();
        fillAnswer(seed);
        LayerStores stores(part);
        ASSERT_EQ(driver.GetResults(stores.layers()), 0);

        VOZFormingResult_s & forming = *driver.stage().m_psFormingResult;
        VOZSolverIOData record;
        BaseProbe base;
        base.m_pSolverIOData = &record;
        base.m_nNbIntegrationPoints = driver.m_nNbIntegrationPoints;
        give(base);
        record.m_padStrainComponentsTop = forming.m_padStrainComponentsTop;
        record.m_padStrainComponentsMid = forming.m_padStrainComponentsMid;
        record.m_padStrainComponentsBot = forming.m_padStrainComponentsBot;
        record.m_padEquivalentStress = forming.m_padEquivalentStress;
        LayerStores expected(part);
        ASSERT_EQ(base.VOZSolver::GetResults(expected.layers()), 0);
        record.m_padStrainComponentsTop = record.m_padStrainComponentsMid = record.m_padStrainComponentsBot = nullptr;
        record.m_padEquivalentStress = nullptr; // the forming result's

        for (std::size_t l = 0; l < 3; ++l)
        {
            for (int e = 1; e <= part.numElem(); ++e)
            {
                for (int k = 0; k < 3; ++k)
                    EXPECT_EQ(stores[l].strain(e, k), expected[l].strain(e, k));
                EXPECT_EQ(stores[l].thickness(e), expected[l].thickness(e));
                EXPECT_EQ(stores[l].safety(e), expected[l].safety(e));
                EXPECT_EQ(stores[l].forming(e), expected[l].forming(e));
                EXPECT_EQ(stores[l].theta(e), 0.0F); // quadrilaterals
            }
            for (int n = 1; n <= part.numNode(); ++n)
            {
                for (int k = 0; k < 3; ++k)
                    EXPECT_EQ(stores[l].nstrain(n, k), expected[l].nstrain(n, k));
                EXPECT_EQ(stores[l].stress(n), expected[l].stress(n));
                EXPECT_EQ(stores[l].nsafety(n), expected[l].nsafety(n));
                EXPECT_EQ(stores[l].nforming(n), expected[l].nforming(n));
            }
        }
    }
}

TEST_F(StageResultsOfTriangles, ATriangleReadsItsFirstPointAlone)
{
    fillStage();
    fillAnswer(8);
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    double const r = property.material(1)->m_dRValue;
    for (int const stride : {1, 4})
    {
        driver.SetNbIntegrationPoints(stride);
        ASSERT_EQ(driver.GetResults(stores.layers()), 0);
        for (int e = 1; e <= part.numElem(); ++e)
        {
            double const * const strains =
                driver.stage().m_psFormingResult->m_padStrainComponentsBot + 3 * stride * (e - 1);
            double const sum = strains[0] + strains[1];
            EXPECT_NEAR(stores.bottom.thickness(e), 0.0008 * std::exp(-sum), 1e-9);
            VOZResult const point = driver.GetResults(0, e, r, 0.0008, 2);
            EXPECT_EQ(stores.bottom.strain(e, 0), point.m_fMajorStrain);
            EXPECT_EQ(stores.bottom.theta(e), point.m_fTheta);
        }
    }
}

TEST_F(StageResults, AMissingLayerReadsAsNoStrainAndMissingStressAsNone)
{
    fillStage();
    fillAnswer(9);
    VOZFormingResult_s & forming = *driver.stage().m_psFormingResult;
    for (auto field : {&VOZFormingResult_s::m_padStrainComponentsTop, &VOZFormingResult_s::m_padEquivalentStress})
    {
        delete[](forming.*field);
        forming.*field = nullptr;
    }
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    for (int e = 1; e <= part.numElem(); ++e)
    {
        EXPECT_EQ(stores.top.strain(e, 0), 0.0F);
        EXPECT_EQ(stores.top.equivalentStrain(e), 0.0F);
        EXPECT_EQ(stores.top.thickness(e), static_cast<float>(0.0008));
        EXPECT_NE(stores.mid.strain(e, 0), 0.0F);
    }
    EXPECT_EQ(stores.top.nstrain(1, 0), 0.0F);
    EXPECT_EQ(stores.top.nstrain(1, 2), stores.mid.nstrain(1, 2)); // thickness strain is the mid-plane's
    EXPECT_EQ(stores.mid.stress(1), 0.0F);
}

TEST_F(StageResults, ThePunchForceIsThatOfTheFormingResultWhereThereIsOne)
{
    fillStage();
    fillAnswer(10);
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_EQ(stores.top.PunchForce(), static_cast<float>(98765.4321));
    EXPECT_EQ(stores.mid.PunchForce(), 0.0F);
    EXPECT_EQ(driver.m_psFormingResult, driver.stage().m_psFormingResult);

    driver.stage().SetFormingResult(nullptr);
    LayerStores others(part);
    ASSERT_EQ(driver.GetResults(others.layers()), 0);
    EXPECT_EQ(others.top.PunchForce(), 0.0F);
    EXPECT_EQ(others.top.strain(1, 0), 0.0F);
    EXPECT_NE(others.top.disp(1, 0), 0.0F);
}

TEST_F(StageResults, PlacesBeyondTheRecordReadAsZeros)
{
    fillStage();
    fillAnswer(11);
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_NE(driver.GetResults(3, part.numElem(), 1.0, 1.0, 1).m_fMajorStrain, 0.0F);
    EXPECT_EQ(driver.GetResults(4, part.numElem(), 1.0, 1.0, 1).m_fMajorStrain, 0.0F);
    EXPECT_EQ(driver.GetResults(0, 0, 1.0, 1.0, 1).m_fMajorStrain, 0.0F);
    driver.SetNbIntegrationPoints(1000000000);
    EXPECT_EQ(driver.GetResults(0, part.numElem(), 1.0, 1.0, 1).m_fMajorStrain, 0.0F);
}
