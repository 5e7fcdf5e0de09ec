// VOZSolverIncrementalImportTest.cpp: a record of "output.voz" as a mesh and as results on it.

#include "VOZSolverIncremental.h"

#include "FailingNew.h"
#include "IncrementalFixture.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"
#include "VozRecords.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

using vozrecords::bytes;
using vozrecords::Record;
using vozrecords::sample;

namespace
{
class IncrementalImport : public IncrementalJob
{
protected:
    IncrementalImport()
    {
        give(driver);
        index(2);
    }
    ~IncrementalImport() override
    {
        for (VOZCatMesh const * const mesh : earlier)
            delete mesh;
    }

    // A result mesh that a further call replaces is the caller's.
    void keepMesh() { earlier.push_back(driver.GetResultMesh()); }

    void write(std::string const & i_bytes) const { work.Write("output.voz", i_bytes); }

    // As the workbench does it: the mesh first, then stores of its size.
    long import()
    {
        if (driver.GetResults(nullptr) != 0)
            return E_FAIL;
        keepMesh();
        stores = std::make_unique<LayerStores>(*driver.GetResultMesh());
        return driver.GetResults(stores->layers());
    }

    IncrementalProbe driver;
    std::unique_ptr<LayerStores> stores;
    std::vector<VOZCatMesh const *> earlier;
};

double percent(double i_trueStrain)
{
    return (std::exp(i_trueStrain) - 1.0) * 100.0;
}
} // namespace

TEST_F(IncrementalImport, TakesTheNinthStepUnlessToldOtherwise)
{
    write(sample(8).text() + sample(9).text());
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    EXPECT_EQ(driver.GetResultMesh()->numElem(), 2);
    keepMesh();
    driver.SetCurrentStepIndex(8);
    EXPECT_EQ(driver.GetResults(nullptr), 0);
    driver.SetCurrentStepIndex(7);
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalImport, BuildsTheMeshInMillimetres)
{
    write(sample(9).text());
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    VOZCatMesh const & mesh = *driver.GetResultMesh();
    ASSERT_EQ(mesh.numNode(), 5);
    EXPECT_EQ(mesh.GetFirstNodeNumber(), 0);
    EXPECT_EQ(mesh.GetFirstElementNumber(), 0);
    Record const record = sample(9);
    for (int n = 1; n <= 5; ++n)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(mesh.NodeValue(n, c),
                      static_cast<double>(record.nodes[static_cast<std::size_t>(3 * (n - 1) + c)]) * 1000.0);
}

TEST_F(IncrementalImport, ClosesATriangleWhoseFourthNodeIsZeroWithItsFirst)
{
    write(sample(9).text());
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    VOZCatMesh const & mesh = *driver.GetResultMesh();
    EXPECT_THAT(rowsOf(mesh.GetElemData()[1], 4), testing::ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(rowsOf(mesh.GetElemData()[2], 4), testing::ElementsAre(2, 5, 3, 2));
    EXPECT_EQ(mesh.isTriangle(1), 0);
    EXPECT_EQ(mesh.isTriangle(2), 1);
}

TEST_F(IncrementalImport, OfTheMeshAloneLeavesTheRecordUntouched)
{
    write(sample(9).text());
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    EXPECT_EQ(driver.m_pSolverIOData, nullptr);
    keepMesh();
    driver.m_pSolverIOData = new VOZSolverIOData; // the driver's from here on
    driver.m_pSolverIOData->m_padEquivalentStress = new double[1]{42.0};
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    EXPECT_EQ(driver.m_pSolverIOData->m_padEquivalentStress[0], 42.0);
    EXPECT_EQ(driver.m_pSolverIOData->m_padStrainComponentsMid, nullptr);
}

TEST_F(IncrementalImport, PutsAllComponentsIntoTheRecord)
{
    write(sample(9).text());
    ASSERT_EQ(import(), 0);
    VOZSolverIOData const & data = *driver.m_pSolverIOData;
    Record const record = sample(9);
    for (std::size_t i = 0; i < 24; ++i)
    {
        EXPECT_EQ(data.m_padStrainComponentsMid[i], static_cast<double>(record.middle[i]));
        EXPECT_EQ(data.m_padStrainComponentsTop[i], static_cast<double>(record.top[i]));
        EXPECT_EQ(data.m_padStrainComponentsBot[i], static_cast<double>(record.bottom[i]));
        EXPECT_EQ(data.m_padEquivalentStress[i], static_cast<double>(record.stress[i]));
    }
}

TEST_F(IncrementalImport, FillsTheStoresFromThePointsOfTheirElements)
{
    write(sample(9).text());
    ASSERT_EQ(import(), 0);
    Record const record = sample(9);
    std::vector<float> const * const layers[3] = {&record.top, &record.middle, &record.bottom};
    for (std::size_t layer = 0; layer < 3; ++layer)
    {
        // The triangle has the first of its four points: component 12 on.
        double const e11 = (*layers[layer])[12];
        double const e22 = (*layers[layer])[13];
        double const shear = (*layers[layer])[14];
        double const span = std::hypot(e11 - e22, shear);
        double const major = (e11 + e22 + span) / 2.0;
        double const minor = (e11 + e22 - span) / 2.0;
        Result const & store = (*stores)[layer];
        EXPECT_NEAR(store.strain(2, 0), percent(major), 1e-4);
        EXPECT_NEAR(store.strain(2, 1), percent(minor), 1e-4);
        EXPECT_NEAR(store.strain(2, 2), percent(-major - minor), 1e-4);
        EXPECT_NEAR(store.thickness(2), 0.0008 * std::exp(-major - minor), 1e-9);
        // Node 5 is a corner of the triangle alone.
        EXPECT_NEAR(store.stress(5), record.stress[12], 1e-2);
        EXPECT_NEAR(store.nstrain(5, 0), percent(major), 1e-4);
    }
    // Node 1 is a corner of the quadrilateral alone: the mean of its four points, components 0, 3, 6 and 9.
    EXPECT_NEAR(stores->mid.stress(1), (record.stress[0] + record.stress[9]) / 2.0, 1e-2);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalImport, SetsTheDisplacementsOfTheFirstStoreToZero)
{
    write(sample(9).text());
    ASSERT_EQ(import(), 0);
    keepMesh();
    for (int n = 1; n <= 5; ++n)
        for (std::size_t layer = 0; layer < 3; ++layer)
            (*stores)[layer].disp(n, 1, 7.0F);
    ASSERT_EQ(driver.GetResults(stores->layers()), 0);
    for (int n = 1; n <= 5; ++n)
    {
        EXPECT_EQ(stores->top.disp(n, 1), 0.0F);
        EXPECT_EQ(stores->mid.disp(n, 1), 7.0F);
        EXPECT_EQ(stores->bottom.disp(n, 1), 7.0F);
    }
}

TEST_F(IncrementalImport, ReportsAStoreThatCountsMoreNodesThanItHas)
{
    write(sample(9).text());
    ASSERT_EQ(import(), 0);
    keepMesh();
    stores->top.numNodeResult(6);
    ASSERT_EQ(driver.GetResults(stores->layers()), 0);
    SUCCEED() << "within its arrays, which the sanitizers watch";
}

TEST_F(IncrementalImport, ReadsStepsOfDifferentMeshesOneAfterTheOther)
{
    Record refined = sample(1);
    refined.nodes.insert(refined.nodes.end(), {0.2F, 0.1F, 0.06F});
    refined.elements.insert(refined.elements.end(), {5, 6, 3, 0});
    for (std::vector<float> * const values : {&refined.stress, &refined.top, &refined.bottom, &refined.middle})
        values->resize(3 * 4 * 3, 0.01F);
    write(sample(0).text() + refined.text());
    for (int step : {1, 0, 1})
    {
        index(step == 1 ? 3 : 2);
        driver.SetCurrentStepIndex(step);
        ASSERT_EQ(import(), 0) << step;
        keepMesh();
        EXPECT_EQ(driver.GetResultMesh()->numNode(), step == 1 ? 6 : 5);
        EXPECT_EQ(driver.GetResultMesh()->numElem(), step == 1 ? 3 : 2);
        EXPECT_EQ(stores->top.numElemResult(), step == 1 ? 3 : 2);
        EXPECT_GT(stores->mid.thickness(2), 0.0F);
    }
    earlier.pop_back(); // the last one is the driver's
    EXPECT_THAT(reported(), testing::IsEmpty());
}

// What replaces the mesh of the first call leaves that one alone: whoever asked for it may still hold it.
TEST_F(IncrementalImport, LeavesTheMeshOfAnEarlierCallAlone)
{
    write(sample(9).text());
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    VOZCatMesh const * const first = driver.GetResultMesh();
    keepMesh();
    ASSERT_EQ(driver.GetResults(nullptr), 0);
    EXPECT_NE(driver.GetResultMesh(), first);
    EXPECT_EQ(first->numNode(), 5);
    EXPECT_EQ(first->NodeValue(5, 2), static_cast<double>(0.05F) * 1000.0);
}

TEST_F(IncrementalImport, NeedsNothingOfARun)
{
    write(sample(9).text());
    IncrementalProbe fresh; // no boundary conditions, no folder, no settings yet
    EXPECT_EQ(fresh.GetResults(nullptr), 0);
    EXPECT_EQ(fresh.GetResultMesh()->numNode(), 5);
    EXPECT_STREQ(fresh.m_strWorkingFolder.ConvertToChar(), work.Path().c_str());
    LayerStores empty{*fresh.GetResultMesh()};
    IncrementalProbe without; // materials, too: there is nothing to make thicknesses of
    EXPECT_EQ(without.GetResults(empty.layers()), 0);
    EXPECT_EQ(empty.mid.thickness(1), 0.0F);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalImport, ReadsInTheFolderOfThePart)
{
    CATUnicodeString name("/cup");
    driver.SetPartName(name);
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL) << "the folder is made, but holds nothing";
    work.Write("cup/output.voz", sample(9).text());
    EXPECT_EQ(driver.GetResults(nullptr), 0);
}

TEST_F(IncrementalImport, FailsWithoutTheFileOrTheStepAndSaysNothing)
{
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    EXPECT_EQ(driver.GetResultMesh(), nullptr);
    write(sample(1).text() + sample(2).text());
    LayerStores untouched{part};
    EXPECT_EQ(driver.GetResults(untouched.layers()), E_FAIL);
    EXPECT_EQ(driver.m_pSolverIOData, nullptr);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalImport, FailsWithoutAnInstallation)
{
    write(sample(9).text());
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    host.environment["VOZDRAVO3D"] = root.Path();
    host.environment.erase("CATTemp");
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
}

TEST_F(IncrementalImport, SeesNoRecordBeyondTheNumberOfOutputPoints)
{
    IncrementalProbe const made;
    int const points = made.m_pSettings->m_nOutputPoints;
    std::string file;
    for (int step = 0; step <= points; ++step)
        file += sample(step).text();
    write(file);
    driver.SetCurrentStepIndex(points - 1);
    EXPECT_EQ(driver.GetResults(nullptr), 0);
    driver.SetCurrentStepIndex(points);
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    EXPECT_EQ(driver.m_nOutputPoints, points);
}

TEST_F(IncrementalImport, LeavesWhatTheRecordLacksAtZero)
{
    write(sample(9, 1).text()); // a point per element, where four are expected
    ASSERT_EQ(import(), 0);
    VOZSolverIOData const & data = *driver.m_pSolverIOData;
    EXPECT_NE(data.m_padStrainComponentsTop[5], 0.0);
    for (std::size_t i = 6; i < 24; ++i)
    {
        EXPECT_EQ(data.m_padStrainComponentsTop[i], 0.0);
        EXPECT_EQ(data.m_padEquivalentStress[i], 0.0);
    }
    EXPECT_NEAR(stores->top.thickness(2), 0.0008, 1e-10) << "the triangle's points are not there: no strain";
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalImport, TakesNoMoreOfARecordThanItsPoints)
{
    driver.SetNbIntegrationPoints(1);
    write(sample(9, 4).text());
    ASSERT_EQ(import(), 0);
    Record const record = sample(9, 4);
    // One point per element: the triangle's is component 3.
    double const span = std::hypot(record.middle[3] - record.middle[4], record.middle[5]);
    EXPECT_NEAR(stores->mid.strain(2, 0), percent((record.middle[3] + record.middle[4] + span) / 2.0), 1e-4);
    // The quadrilateral's mean asks for four points; of the two that there are the first is its own, and the rest
    // reads as no strain or as its neighbour's, never from outside.
    EXPECT_TRUE(std::isfinite(stores->mid.strain(1, 0)));
}

TEST_F(IncrementalImport, StaysWithinItsArraysForAnyNumberOfPoints)
{
    write(sample(9).text());
    for (int points : {0, -1, std::numeric_limits<int>::min(), 3, 17})
    {
        driver.SetNbIntegrationPoints(points);
        EXPECT_EQ(import(), 0) << points;
        keepMesh();
    }
    earlier.pop_back();
}

TEST_F(IncrementalImport, RefusesMorePointsThanARecordCanCount)
{
    write(sample(9).text());
    driver.SetNbIntegrationPoints(std::numeric_limits<int>::max() / 6 + 1); // 3 values each, of 2 elements
    EXPECT_EQ(import(), E_FAIL);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalImport, GetsByWithACutRecordThatHasItsMesh)
{
    std::string const whole = sample(9).text();
    write(whole.substr(0, 4 * 60)); // within the top's components: the stress alone is whole
    ASSERT_EQ(import(), 0);
    EXPECT_NE(driver.m_pSolverIOData->m_padEquivalentStress[23], 0.0);
    EXPECT_EQ(driver.m_pSolverIOData->m_padStrainComponentsTop[0], 0.0);
    EXPECT_NEAR(stores->top.thickness(2), 0.0008, 1e-10);
}

TEST_F(IncrementalImport, FailsWhereverTheMeshIsCutOrWrong)
{
    std::string const nodes = "AssertionFailed:nNodes > 0";
    std::string const noNodes = "AssertionFailed:pfNodes != NULL";
    std::string const elements = "AssertionFailed:nElems > 0";
    std::string const noElements = "AssertionFailed:pnElems != NULL";
    std::string const whole = sample(9).text();
    for (std::size_t nWords = 1; nWords < 26; ++nWords)
    {
        host.reports.clear();
        write(whole.substr(0, 4 * nWords));
        EXPECT_EQ(driver.GetResults(nullptr), E_FAIL) << nWords;
        if (nWords < 2)
            EXPECT_THAT(reported(), testing::ElementsAre(nodes, noNodes));
        else if (nWords < 17)
            EXPECT_THAT(reported(), testing::ElementsAre(noNodes));
        else if (nWords < 18)
            EXPECT_THAT(reported(), testing::ElementsAre(elements, noElements));
        else
            EXPECT_THAT(reported(), testing::ElementsAre(noElements));
    }
    EXPECT_EQ(driver.GetResultMesh(), nullptr);
    write(bytes(9) + bytes(-3));
    host.reports.clear();
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:m_nNumNodes > 0", nodes, noNodes));
}

// Corners that are no nodes: the mesh's own rule, with its reports.
TEST_F(IncrementalImport, SurvivesCornersThatAreNoNodes)
{
    Record record = sample(9);
    record.elements = {1, 2, 3, 2147483647, -7, 99, 3, 0};
    write(record.text());
    EXPECT_EQ(import(), 0);
    EXPECT_EQ(driver.GetResultMesh()->numElem(), 2);
}

TEST_F(IncrementalImport, SurvivesStoresThatAreNotAllThere)
{
    write(sample(9).text());
    ASSERT_EQ(import(), 0);
    keepMesh();
    Result * two[3] = {&stores->top, nullptr, &stores->bottom};
    EXPECT_EQ(driver.GetResults(two), 0);
    keepMesh();
    Result * none[3] = {nullptr, nullptr, nullptr};
    EXPECT_EQ(driver.GetResults(none), 0);
}

TEST_F(IncrementalImport, ReportsEachArrayThatThereIsNoMemoryFor)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP();
    write(sample(9).text());
    ASSERT_EQ(import(), 0);
    keepMesh();
    std::vector<std::string> seen;
    for (int number = 1;; ++number)
    {
        host.reports.clear();
        VOZCatMesh const * const before = driver.GetResultMesh();
        FailingNew const failing(number);
        driver.GetResults(stores->layers());
        if (driver.GetResultMesh() != nullptr && driver.GetResultMesh() != before)
            keepMesh();
        if (!failing.refused())
            break;
        for (std::string const & text : reported())
            seen.push_back(text);
    }
    earlier.pop_back();
    for (char const * text : {"AssertionFailed:ar_dNodes", "AssertionFailed:ar_nElems",
                              "AssertionFailed:m_pSolverIOData->m_padStrainComponentsMid",
                              "AssertionFailed:m_pSolverIOData->m_padStrainComponentsTop",
                              "AssertionFailed:m_pSolverIOData->m_padStrainComponentsBot",
                              "AssertionFailed:m_pSolverIOData->m_padEquivalentStress"})
        EXPECT_THAT(seen, testing::Contains(text));
}
