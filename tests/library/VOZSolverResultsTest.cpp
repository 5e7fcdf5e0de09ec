// VOZSolverResultsTest.cpp: from log strains to the three stores, against a second reading of the chain in doubles.

#include "VOZSolver.h"

#include "BaseResultsFixture.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

TEST_F(BaseResults, APointIsReadAtItsPlaceInItsLayer)
{
    for (int l : {0, 1, 2, 3, -1})
        for (int e = 1; e <= 2; ++e)
            for (int i = 0; i < 4; ++i)
            {
                VOZResult const got = driver.GetResults(i, e, property.material(1)->m_dRValue, 0.0008, l);
                Point const wanted = reference(i, e, l == 0 || l == 2 ? l : 1);
                EXPECT_NEAR(got.m_fMajorStrain, wanted.major, 2e-5);
                EXPECT_NEAR(got.m_fMinorStrain, wanted.minor, 2e-5);
                EXPECT_NEAR(got.m_fThicknessStrain, wanted.thicknessStrain, 2e-5);
                EXPECT_NEAR(got.m_fThickness, wanted.thickness, 1e-9);
                EXPECT_NEAR(got.m_fEquivalentStrain, wanted.equivalent, 2e-5);
                EXPECT_EQ(got.m_fEquivalentStress, static_cast<float>(wanted.stress)); // the first of three
                EXPECT_NEAR(got.m_fTheta, wanted.theta, 1e-5);
                EXPECT_EQ(got.m_nSafety, 0);
                EXPECT_EQ(got.m_nForming, 0);
                EXPECT_EQ(got.m_nNeighbourElems, 0);
            }
}

// Single precision where it is named: the percent values are those of the float strains.
TEST_F(BaseResults, StrainsPassThroughSinglePrecision)
{
    double const strains[3] = {0.123456789, -0.0456789123, 0.0};
    std::copy(strains, strains + 3, record.m_padStrainComponentsMid);
    VOZResult const got = driver.GetResults(0, 1, 1.0, 0.0008, 1);
    float const major = static_cast<float>(0.123456789);
    float const minor = static_cast<float>(-0.0456789123);
    float const across = -(major + minor);
    auto const percentOf = [](float value) { return static_cast<float>((std::exp(double{value}) - 1.0) * 100.0); };
    EXPECT_EQ(got.m_fMajorStrain, percentOf(major));
    EXPECT_EQ(got.m_fMinorStrain, percentOf(minor));
    EXPECT_EQ(got.m_fThicknessStrain, percentOf(across));
    EXPECT_EQ(got.m_fThickness, static_cast<float>(0.0008 * std::exp(double{across})));
    EXPECT_EQ(got.m_fTheta, 0.0F);
}

TEST_F(BaseResults, NoStrainIsNoMeasureAndTheSheetsThickness)
{
    std::fill_n(record.m_padStrainComponentsMid, 24, 0.0);
    VOZResult const got = driver.GetResults(0, 1, 1.0, 0.0008, 1);
    EXPECT_EQ(got.m_fEquivalentStrain, 0.0F);
    EXPECT_EQ(got.m_fThickness, static_cast<float>(0.0008));
    EXPECT_EQ(got.m_fMajorStrain, 0.0F);
    EXPECT_EQ(got.m_fTheta, 0.0F);
}

TEST_F(BaseResults, StoresFillAsTheChainSaysForMixedElements)
{
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    expectStores(stores);
    EXPECT_EQ(stores.top.theta(1), 0.0F); // a quadrilateral has no angle
    EXPECT_NE(stores.top.theta(2), 0.0F);
    EXPECT_EQ(stores.top.PunchForce(), static_cast<float>(12345.678));
    EXPECT_EQ(stores.mid.PunchForce(), 0.0F);
    EXPECT_EQ(stores.bottom.PunchForce(), 0.0F);
}

TEST_F(BaseResultsOfADome, StoresFillAsTheChainSaysWithOnePointAnElement)
{
    property.sizeProperty(2);
    property.material(2)->m_dThickness = 0.002;
    property.material(2)->m_dRValue = 0.7;
    for (int e = 1; e <= part.numElem(); ++e)
        property.propertyId(e, 1 + e % 2);
    for (unsigned seed = 1; seed <= 3; ++seed)
    {
        fillRecord(1, seed);
        LayerStores stores(part);
        ASSERT_EQ(driver.GetResults(stores.layers()), 0);
        expectStores(stores);
    }
}

TEST_F(BaseResultsOfADome, LabelsThatAreShiftedChangeNothing)
{
    LayerStores before(part);
    ASSERT_EQ(driver.GetResults(before.layers()), 0);
    part.IdsOffset(500, 900);
    LayerStores after(part);
    ASSERT_EQ(driver.GetResults(after.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
        EXPECT_EQ(before.top.nstrain(n, 0), after.top.nstrain(n, 0));
}

// Zones

TEST_F(BaseResults, StrainsBecomeLogarithmsAboveMinus98PercentAndAFixedValueFromThereOn)
{
    struct
    {
        float major, minor;
        double logMajor, logMinor;
    } const rows[] = {
        {-97.9F, -97.9F, std::log(static_cast<double>(-97.9F) / 100.0 + 1.0),
         std::log(static_cast<double>(-97.9F) / 100.0 + 1.0)},
        {-97.9F, -98.0F, std::log(static_cast<double>(-97.9F) / 100.0 + 1.0), -3.91},
        {10.0F, -98.0F, std::log(0.1 + 1.0), -3.91},
        {-98.0F, -99.5F, -3.91, -3.91},
        {20.0F, 5.0F, std::log(0.2 + 1.0), std::log(0.05 + 1.0)},
    };
    for (auto const & row : rows)
    {
        VOZResult got;
        got.m_fMajorStrain = row.major;
        got.m_fMinorStrain = row.minor;
        driver.EvalZones(1, got);
        int forming = 0;
        int safety = 0;
        VOZMaterialUtility::EvalFormingSafetyZones(property.material(1), row.logMajor, row.logMinor, forming, safety);
        EXPECT_EQ(got.m_nForming, forming) << row.major;
        EXPECT_EQ(got.m_nSafety, safety) << row.major;
    }
}

TEST_F(BaseResults, SheetThatIsNotStrainedShowsTheCodesThatTheStoresKnow)
{
    int forming = 0;
    int safety = 0;
    VOZMaterialUtility::EvalFormingSafetyZones(property.material(1), 0.0, 0.0, forming, safety);
    ASSERT_EQ(forming, 6); // the kernel's own
    ASSERT_EQ(safety, 5);
    VOZResult got;
    driver.EvalZones(1, got);
    EXPECT_EQ(got.m_nForming, 1);
    EXPECT_EQ(got.m_nSafety, 2);
}

TEST_F(BaseResults, ZonesTakeTheMaterialOfTheElement)
{
    property.sizeProperty(2);
    property.material(2)->m_dFldZero = 5.0; // a sheet that tears at once
    property.material(1)->m_dFldZero = 50.0;
    property.propertyId(2, 2);
    for (int e : {1, 2})
    {
        VOZResult got;
        got.m_fMajorStrain = 20.0F;
        driver.EvalZones(e, got);
        EXPECT_EQ(got.m_nSafety, e == 1 ? 2 : 0);
    }
}

TEST_F(BaseResults, AnElementWithoutAMaterialHasNoZone)
{
    for (int const bad : {-1, 2, 1000000})
    {
        property.propertyId(1, bad);
        VOZResult got;
        got.m_fMajorStrain = 20.0F;
        got.m_nSafety = 9;
        driver.EvalZones(1, got);
        EXPECT_EQ(got.m_nSafety, 9);
    }
    property.sizePropertyIndex(0); // an index that is too short
    VOZResult got;
    driver.EvalZones(2, got); // is that of property 0
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    driver.EvalZones(1, got);
}

// A mean of zones that falls between two goes to the one nearer to 0: 2 and 3 make 2.
TEST_F(BaseResults, ZonesAtANodeAreTruncatedMeans)
{
    VOZResult sum;
    LayerStores stores(part);
    sum.m_nSafety = 3;
    sum.m_nForming = 4;
    driver.SetNodeResults(2, sum, stores.top);
    EXPECT_EQ(stores.top.nsafety(2), 3);
    EXPECT_EQ(stores.top.nforming(2), 4);
    property.material(1)->m_dFldZero = 30.0;
    // Element 1 lies in zone 0 (torn), element 2 in zone 2 or 3: nodes 2 and 3 have both.
    for (double * field :
         {record.m_padStrainComponentsTop, record.m_padStrainComponentsMid, record.m_padStrainComponentsBot})
    {
        std::fill_n(field, 24, 0.0);
        for (int i = 0; i < 4; ++i)
            field[3 * i] = 0.5;
        field[12] = 0.05;
    }
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    int const safety = stores.mid.safety(1) + stores.mid.safety(2);
    int const forming = stores.mid.forming(1) + stores.mid.forming(2);
    EXPECT_NE(stores.mid.safety(1), stores.mid.safety(2));
    for (int l = 0; l < 3; ++l)
    {
        EXPECT_EQ(stores[static_cast<std::size_t>(l)].nsafety(2), safety / 2);
        EXPECT_EQ(stores[static_cast<std::size_t>(l)].nforming(3), forming / 2);
    }
}

TEST_F(BaseResults, FieldsGoToTheirPlacesInTheStore)
{
    VOZResult given;
    given.m_fMajorStrain = 1.0F;
    given.m_fMinorStrain = 2.0F;
    given.m_fTheta = 3.0F;
    given.m_fThicknessStrain = 4.0F;
    given.m_fThickness = 5.0F;
    given.m_fEquivalentStrain = 6.0F;
    given.m_fEquivalentStress = 7.0F;
    given.m_nSafety = 8;
    given.m_nForming = 9;
    Result result(part);
    driver.SetElemResults(2, given, result);
    EXPECT_EQ(result.strain(2, 0), 1.0F);
    EXPECT_EQ(result.strain(2, 1), 2.0F);
    EXPECT_EQ(result.strain(2, 2), 4.0F);
    EXPECT_EQ(result.theta(2), 3.0F);
    EXPECT_EQ(result.thickness(2), 5.0F);
    EXPECT_EQ(result.equivalentStrain(2), 6.0F);
    EXPECT_EQ(result.safety(2), 8);
    EXPECT_EQ(result.forming(2), 9);
    EXPECT_EQ(result.stress(2), 0.0F); // stress is the nodes'
    driver.SetNodeResults(4, given, result);
    EXPECT_EQ(result.nstrain(4, 0), 1.0F);
    EXPECT_EQ(result.nstrain(4, 1), 2.0F);
    EXPECT_EQ(result.nstrain(4, 2), 4.0F);
    EXPECT_EQ(result.NodeThickness(4), 5.0F);
    EXPECT_EQ(result.EquivalentStrain(4), 6.0F);
    EXPECT_EQ(result.stress(4), 7.0F);
    EXPECT_EQ(result.nsafety(4), 8);
    EXPECT_EQ(result.nforming(4), 9);
}

// Displacements

TEST_F(BaseResults, DisplacementsLeadFromThePartToTheFlatInMetres)
{
    record.m_padNodalCoordsFlatBlank = new double[15];
    for (int i = 0; i < 15; ++i)
        record.m_padNodalCoordsFlatBlank[i] = 0.01 * i - 0.05;
    LayerStores stores(part);
    driver.SetDisplacementResults(stores.layers());
    for (int n = 1; n <= 5; ++n)
        for (int k = 0; k < 3; ++k)
        {
            float const flat = static_cast<float>(record.m_padNodalCoordsFlatBlank[3 * (n - 1) + k]);
            float const wanted = static_cast<float>(flat - part.node(n, k) * 0.001);
            EXPECT_EQ(stores.top.disp(n, k), wanted);
            EXPECT_EQ(stores.top.dispOnBinder(n, k), wanted);
            EXPECT_EQ(stores.mid.disp(n, k), 0.0F);
            EXPECT_EQ(stores.bottom.dispOnBinder(n, k), 0.0F);
        }
}

TEST_F(BaseResults, WithABinderTheSecondDisplacementLeadsToTheBlankOnIt)
{
    record.m_padNodalCoordsFlatBlank = new double[15]();
    record.m_padNodalCoordsBlankOnBinder = new double[15];
    std::fill_n(record.m_padNodalCoordsBlankOnBinder, 15, 0.5);
    binder = dome(2, 2);
    meshes[1] = &binder;
    for (int const count : {1, 2})
    {
        meshCount = count;
        give(driver);
        LayerStores stores(part);
        driver.SetDisplacementResults(stores.layers());
        EXPECT_EQ(stores.top.disp(2, 0), static_cast<float>(-10.0 * 0.001));
        EXPECT_EQ(stores.top.dispOnBinder(2, 0), static_cast<float>((count == 2 ? 0.5 : 0.0) - 10.0 * 0.001));
    }
}

TEST_F(BaseResults, ABinderWhoseBlankIsMissingLeavesTheFlat)
{
    record.m_padNodalCoordsFlatBlank = new double[15];
    std::fill_n(record.m_padNodalCoordsFlatBlank, 15, 0.25);
    binder = dome(2, 2);
    meshes[1] = &binder;
    meshCount = 2;
    give(driver);
    LayerStores stores(part);
    driver.SetDisplacementResults(stores.layers());
    EXPECT_EQ(stores.top.disp(2, 0), static_cast<float>(0.25 - 10.0 * 0.001));
    EXPECT_EQ(stores.top.dispOnBinder(2, 0), stores.top.disp(2, 0));
}

// What is missing

TEST_F(BaseResults, ANodeOutsideEveryElementIsReportedForEachLayer)
{
    part = samples::mesh(samples::Points{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 5, 5}}, samples::Triangles{{1, 2, 3}});
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:pNodeRes[i][k].m_nNeighbourElems > 0",
                                        "AssertionFailed:pNodeRes[i][k].m_nNeighbourElems > 0",
                                        "AssertionFailed:pNodeRes[i][k].m_nNeighbourElems > 0"));
    EXPECT_EQ(stores.mid.nstrain(4, 0), 0.0F);
    EXPECT_NE(stores.mid.nstrain(3, 0), 0.0F);
}

TEST_F(BaseResults, ResultsGoOnTheResultMeshWhereThereIsOne)
{
    driver.m_pResultMesh = new VOZCatMesh(samples::triangles({{1, 2, 3}}));
    driver.m_nNbIntegrationPoints = 1;
    LayerStores stores(*driver.m_pResultMesh);
    driver.SetStressStrainResults(stores.layers());
    EXPECT_TRUE(host.reports.empty());
    EXPECT_NE(stores.mid.strain(1, 0), 0.0F);
}

TEST_F(BaseResults, WithoutAnyMeshItIsReported)
{
    meshes[0] = nullptr;
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:pMesh != NULL"));
}

TEST_F(BaseResults, MissingArraysReadAsZerosAndAMissingRecordAsNone)
{
    for (auto field : {&VOZSolverIOData::m_padStrainComponentsTop, &VOZSolverIOData::m_padEquivalentStress})
    {
        delete[](record.*field);
        record.*field = nullptr;
    }
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_EQ(stores.top.strain(1, 0), 0.0F);
    EXPECT_NE(stores.mid.strain(1, 0), 0.0F);
    EXPECT_EQ(stores.mid.stress(1), 0.0F);
    driver.m_pSolverIOData = nullptr;
    LayerStores others(part);
    EXPECT_EQ(driver.GetResults(others.layers()), 0);
    EXPECT_EQ(others.top.PunchForce(), 0.0F);
    EXPECT_EQ(others.mid.thickness(1), static_cast<float>(0.0008));
}

TEST_F(BaseResults, StoresThatAreMissingAreRefused)
{
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    LayerStores stores(part);
    stores.pointers[1] = nullptr;
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
}

TEST_F(BaseResults, PointsBeyondTheRecordsMeshReadAsZeros)
{
    record.m_psMesh = new VOZBasicMeshData_s;
    record.m_psMesh->m_nNumElements = 2;
    record.m_nNodesPerElement = 4;
    driver.m_nNbIntegrationPoints = 1000000;
    EXPECT_EQ(driver.GetResults(0, 2, 1.0, 0.0008, 1).m_fMajorStrain, 0.0F);
    EXPECT_EQ(driver.GetResults(0, 0, 1.0, 0.0008, 1).m_fMajorStrain, 0.0F);
    EXPECT_NE(driver.GetResults(0, 1, 1.0, 0.0008, 1).m_fMajorStrain, 0.0F);
}
