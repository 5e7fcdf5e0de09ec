// VOZSolverIncrementalRunTest.cpp: a whole run, step by step: what each one leaves behind, and in which order.

#include "VOZSolverIncremental.h"

#include "IncrementalFixture.h"
#include "KeywordDeck.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

namespace
{
// Notes which blocks are written, and writes them.
class Recorder : public IncrementalProbe
{
public:
    std::vector<std::string> called;
    bool isDeckAheadOfMeshes = false;
    double forceAtTheMeshes = -1.0;

    void WriteMeshData() override
    {
        called.push_back("WriteMeshData");
        forceAtTheMeshes = m_dBlankHolderForce;
        isDeckAheadOfMeshes = std::filesystem::exists(m_strWorkingFolder.ConvertToChar() + std::string("/inputls.dyn"));
        IncrementalProbe::WriteMeshData();
    }
    void WriteTitleBlock() override
    {
        called.push_back("WriteTitleBlock");
        IncrementalProbe::WriteTitleBlock();
    }
    void WriteControlCardsData() override
    {
        called.push_back("WriteControlCardsData");
        IncrementalProbe::WriteControlCardsData();
    }
    void WriteASCIIOutputControlCards() override
    {
        called.push_back("WriteASCIIOutputControlCards");
        IncrementalProbe::WriteASCIIOutputControlCards();
    }
    void WriteBlankHolderDataBlock() override
    {
        called.push_back("WriteBlankHolderDataBlock");
        IncrementalProbe::WriteBlankHolderDataBlock();
    }
    void WriteIncludedBlankToolingMeshFiles() override
    {
        called.push_back("WriteIncludedBlankToolingMeshFiles");
        IncrementalProbe::WriteIncludedBlankToolingMeshFiles();
    }
};

// The job has a stroke of 40 mm and a sheet of 0.8 mm; the settings are a test's own and all different.
class IncrementalRun : public IncrementalJob
{
protected:
    IncrementalRun()
    {
        VOZIncrementalSettings & settings = *driver.m_pSettings;
        settings.m_nIntegrationPoints = 7;
        settings.m_dPunchAcceleration = 8000.0;
        settings.m_dPunchVelocityFlagSet = 2.0;
        settings.m_dPunchVelocityFlagClear = 4.0;
        settings.m_nAdaptivityLevel = 3;
        settings.m_nAdaptivePasses = 9;
        settings.m_dStrokeThreshold = 0.060;
        settings.m_dAdaptSizeFactor = 2.5;
        settings.m_nIadpn90 = 6;
        settings.m_dAdaptEnergyFactor = 0.3;
        settings.m_dAdaptThicknessFactor = 0.4;
        settings.m_dDT2MSFactor = 0.8;
        settings.m_dBinderGapFactor = 0.15;
        settings.m_dBinderAccelFactor = 0.7;
        settings.m_bSmoothContact = true;
        settings.m_nHourglassType = 4;
        double const positions[] = {0.0, 25.0, 50.0, 75.0, 100.0};
        settings.SetOutputPositions(5, positions);
        property.material(1)->m_dYield = 150.0e6;
    }

    long run(unsigned char i_flag = 0, int i_mode = 0, int i_toolMode = 0)
    {
        driver.SetBoundaryConditions(meshes.data(), meshCount, &property, &symmetry, &friction, &fullHolder, &axis,
                                     i_flag, i_mode, i_toolMode);
        return driver.Run(nullptr);
    }

    // Tools that are apart by i_stroke mm at the rim of their domes.
    void setStroke(double i_stroke)
    {
        int const first = die.GetFirstNodeNumber();
        int const firstElement = die.GetFirstElementNumber();
        take(die, plate(12, 8, i_stroke - 10.0, 12.0, "VOZDie"));
        die.IdsOffset(first, firstElement);
    }

    // What the binder's curve in the deck ends with.
    double force() const { return keyworddeck::Deck(work.Path("inputls.dyn")).curve(101).back().second; }

    Recorder driver;
};
} // namespace

TEST_F(IncrementalRun, WritesTheDeckBehindTheMeshes)
{
    ASSERT_EQ(run(), 0);
    EXPECT_THAT(driver.called,
                testing::ElementsAre("WriteMeshData", "WriteTitleBlock", "WriteControlCardsData",
                                     "WriteASCIIOutputControlCards", "WriteIncludedBlankToolingMeshFiles"));
    EXPECT_FALSE(driver.isDeckAheadOfMeshes);
    EXPECT_TRUE(std::filesystem::exists(work.Path("inputls.dyn")));
    for (char const * const name : {"VOZBlank.mod", "VOZPunch.mod", "VOZDie.mod"})
        EXPECT_TRUE(std::filesystem::exists(work.Path(name))) << name;
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalRun, MovesThePunchByTheSmallestGap)
{
    ASSERT_EQ(run(), 0);
    double const stroke = driver.m_dPunchStroke;
    EXPECT_NEAR(stroke, 0.040, 1e-9);
    EXPECT_EQ(driver.m_dStrokeAsDZmax, stroke);
    EXPECT_EQ(driver.m_dPunchVelocity, 4.0);
    EXPECT_EQ(driver.m_dPunchAcceleration, 8000.0);
    EXPECT_EQ(driver.m_nAdaptivityLevel, 3);
    EXPECT_EQ(driver.m_dPunchRampTime, 4.0 / 8000.0);
    EXPECT_EQ(driver.m_dTerminationTime, stroke / 4.0 + 4.0 / 8000.0);
    EXPECT_EQ(driver.m_dPunchPlateauTime, driver.m_dTerminationTime - 2.0 * driver.m_dPunchRampTime);
    EXPECT_EQ(driver.m_dAsciiOutputInterval, driver.m_dTerminationTime / -10.0);
    EXPECT_EQ(driver.m_dBinaryOutputInterval, driver.m_dTerminationTime / 4.0);
    EXPECT_EQ(driver.m_dBinderCloseTime, std::sqrt((0.0008 * 0.15 * 2) / (0.7 * 8000.0)));
}

TEST_F(IncrementalRun, WritesItsNumbersIntoTheDeck)
{
    ASSERT_EQ(run(), 0);
    keyworddeck::Deck const deck(work.Path("inputls.dyn"));
    EXPECT_NEAR(deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM"), driver.m_dTerminationTime, 1e-5);
    EXPECT_NEAR(deck.one("CONTROL_TIMESTEP").card(0).real("DT2MS"), -driver.m_dMassScalingTimeStep,
                1e-3 * driver.m_dMassScalingTimeStep);
    EXPECT_EQ(deck.one("CONTROL_ADAPTIVE").card(0).integer("MAXLVL"), 3);
}

TEST_F(IncrementalRun, ThePadsOfTheProcessStandInTheDeck)
{
    // Two outlines in arrays of two: what stands behind them is not looked at.
    property.setNbPressurePads(2);
    property.pressPadSize(new int[2]{3, 4});
    property.pressPadVal(new double[2]{2.0e6, 3.0e6});
    auto ** const outlines = new double *[2];
    outlines[0] = new double[9]{0, 0, 0, 50, 0, 0, 0, 40, 0};
    outlines[1] = new double[12]{60, 0, 0, 90, 0, 0, 90, 30, 0, 60, 30, 0};
    property.pressPadXYZ(outlines);
    ASSERT_EQ(run(), 0);
    keyworddeck::Deck const deck(work.Path("inputls.dyn"));
    EXPECT_EQ(deck.all("LOAD_MASK").size(), 2U);
    EXPECT_EQ(deck.curve(800).back().second, 2.0e6);
    EXPECT_EQ(deck.curve(803).back().second, 3.0e6);
    EXPECT_THAT(deck.curve(801),
                testing::ElementsAre(testing::Pair(0, 0), testing::Pair(0.05, 0), testing::Pair(0, 0.04)));
    EXPECT_EQ(deck.curve(804).size(), 4U);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalRun, TakesTheVelocityByTheProcessFlag)
{
    ASSERT_EQ(run(1), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 2.0);
}

TEST_F(IncrementalRun, TakesTheOtherVelocityForAnyFlagButOne)
{
    ASSERT_EQ(run(2), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 4.0);
}

TEST_F(IncrementalRun, CopiesTheSettings)
{
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dBinderGapFactor, 0.15);
    EXPECT_EQ(driver.m_dBinderAccelFactor, 0.7);
    EXPECT_EQ(driver.m_bSmoothContact, 1);
    EXPECT_EQ(driver.m_nIadpn90, 6);
    EXPECT_EQ(driver.m_nOutputPoints, 5);
    EXPECT_EQ(driver.m_dMaxStrain, 0.8);
    EXPECT_EQ(driver.m_nSteps, 21);
    EXPECT_EQ(driver.m_nHourglassType, 4);
    EXPECT_EQ(driver.m_dBlankIntegrationPoints, 7.0);
    EXPECT_EQ(driver.m_dToolIntegrationPoints, 7.0);
    EXPECT_EQ(driver.m_bMassScaling, 1);
}

TEST_F(IncrementalRun, FillsTheAdaptivityCardFromTheThickness)
{
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dThickness, 0.0008);
    EXPECT_EQ(driver.m_dAdaptSize, 0.0008 * 2.5);
    EXPECT_EQ(driver.m_nAdaptPass, 1);
    EXPECT_EQ(driver.m_nAdaptRefine, 0);
    EXPECT_EQ(driver.m_dAdaptEnergy, 0.0008 * 0.3);
    EXPECT_EQ(driver.m_dAdaptThickness, 0.0008 * 0.4);
    EXPECT_EQ(driver.m_dBeadDepth, 0.0008);
    // 10 mm elements halved twice are above the 2 mm of the thickness: those count.
    EXPECT_DOUBLE_EQ(driver.m_dMassScalingTimeStep, 0.002 * 0.8 / 5100.0);
}

TEST_F(IncrementalRun, SpreadsItsRefinementsOverAShortStroke)
{
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dAdaptFrequency, driver.m_dTerminationTime / 9);
}

TEST_F(IncrementalRun, RefinesEveryTwoMillimetresBeyondTheThreshold)
{
    driver.m_pSettings->m_dStrokeThreshold = 0.039;
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dAdaptFrequency, driver.m_dTerminationTime / (driver.m_dPunchStroke * 1000.0 * 0.5));
}

TEST_F(IncrementalRun, RefinesEveryTwoMillimetresOfALongStrokeWhateverTheThreshold)
{
    driver.m_pSettings->m_dStrokeThreshold = 1.0;
    setStroke(80.001);
    ASSERT_EQ(run(), 0);
    EXPECT_NEAR(driver.m_dPunchStroke, 0.080001, 1e-9);
    EXPECT_EQ(driver.m_dAdaptFrequency, driver.m_dTerminationTime / (driver.m_dPunchStroke * 1000.0 * 0.5));
}

TEST_F(IncrementalRun, KeepsTheFirstRuleUpToAStrokeOfEightyMillimetres)
{
    driver.m_pSettings->m_dStrokeThreshold = 1.0;
    setStroke(79.999);
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dAdaptFrequency, driver.m_dTerminationTime / 9);
}

// The punch's rim at z = 0, so that the gap is the die's height to the last bit.
TEST_F(IncrementalRun, KeepsTheFirstRuleAtAStrokeOfJustEightyMillimetres)
{
    driver.m_pSettings->m_dStrokeThreshold = 0.080; // which is not exceeded either
    int const nodes = punch.GetFirstNodeNumber();
    int const elements = punch.GetFirstElementNumber();
    take(punch, plate(12, 8, 0.0, 11.0, "VOZPunch"));
    punch.IdsOffset(nodes, elements);
    setStroke(90.0); // above the punch's usual place
    ASSERT_EQ(run(), 0);
    ASSERT_EQ(driver.m_dPunchStroke, 0.080);
    EXPECT_EQ(driver.m_dAdaptFrequency, driver.m_dTerminationTime / 9);
}

TEST_F(IncrementalRun, OffsetsPunchAndBinderInToolModeOne)
{
    ASSERT_EQ(run(0, 0, 1), 0);
    EXPECT_EQ(driver.m_dOffsetDie, 0.0);
    EXPECT_EQ(driver.m_dOffsetPunch, -0.0008);
    EXPECT_EQ(driver.m_dOffsetBinder, -0.0008);
}

TEST_F(IncrementalRun, OffsetsNothingInAnyOtherToolMode)
{
    driver.m_dOffsetDie = driver.m_dOffsetPunch = driver.m_dOffsetBinder = 3.0;
    ASSERT_EQ(run(0, 0, 2), 0);
    EXPECT_EQ(driver.m_dOffsetDie, 0.0);
    EXPECT_EQ(driver.m_dOffsetPunch, 0.0);
    EXPECT_EQ(driver.m_dOffsetBinder, 0.0);
}

TEST_F(IncrementalRun, ShortensTheStrokeInModeTwo)
{
    ASSERT_EQ(run(0, -2), 0);
    EXPECT_NEAR(driver.m_dPunchStroke, 0.0392, 1e-9);
    EXPECT_EQ(driver.m_dTerminationTime, driver.m_dPunchStroke / 4.0 + 4.0 / 8000.0);
}

TEST_F(IncrementalRun, GivesAllToolsTheFrictionOfTheJob)
{
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dFrictionPunch, 0.12);
    EXPECT_EQ(driver.m_dFrictionDie, 0.12);
    EXPECT_EQ(driver.m_dFrictionBinder, 0.12);
}

TEST_F(IncrementalRun, MakesTheToolsOfAThinSheetTenTimesDenser)
{
    property.material(1)->m_dThickness = 0.0009;
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dToolDensityFactor, 10.0);
}

TEST_F(IncrementalRun, MakesTheToolsOfAMillimetreSheetAsDenseAsIt)
{
    property.material(1)->m_dThickness = 0.001;
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dToolDensityFactor, 1.0);
}

TEST_F(IncrementalRun, TimesTheOutputByThePunchsWay)
{
    ASSERT_EQ(run(), 0);
    double const ramp = 4.0 * 4.0 / 2.0 / 8000.0; // 1 mm
    double const stroke = driver.m_dPunchStroke;
    ASSERT_GT(0.25 * stroke, ramp);
    EXPECT_EQ(driver.m_padOutputPoints[0], 0.0);
    for (int i : {1, 2, 3})
        EXPECT_DOUBLE_EQ(driver.m_padOutputPoints[i], 0.00025 + i * 0.25 * stroke / 4.0);
    EXPECT_NEAR(driver.m_padOutputPoints[4], driver.m_dTerminationTime, 1e-9);
}

TEST_F(IncrementalRun, ReportsTooFewOutputPointsAndGoesOn)
{
    double const positions[] = {0.0, 100.0};
    driver.m_pSettings->SetOutputPositions(2, positions);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:i_nNumPoints > 2 && i_padPunchPositions"));
}

TEST_F(IncrementalRun, ReportsThatThereAreNoOutputPointsAndGoesOn)
{
    driver.m_pSettings->SetOutputPositions(0, nullptr);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:i_nNumPoints > 2 && i_padPunchPositions",
                                                 "AssertionFailed:m_padOutputPoints"));
    EXPECT_EQ(driver.m_padOutputPoints, nullptr);
}

TEST_F(IncrementalRun, ReportsAMaterialThatNobodyKnowsAndKeepsItsOwn)
{
    property.material(1)->m_strName = CATUnicodeString("unobtainium");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(reported(), testing::ElementsAre("bMat == TRUE"));
    EXPECT_EQ(driver.m_dYoungsModulus, 2.0e11);
    EXPECT_EQ(driver.m_dThickness, 0.0008);
}

// A stroke of zero: every breach that follows from it is told, nothing is lost.
TEST_F(IncrementalRun, ReportsToolsThatHaveNoWayToGo)
{
    setStroke(0.0);
    take(die, plate(12, 8, -40.0, 12.0, "VOZDie"));
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(reported(),
                testing::ElementsAre("dMinDistance > 0.0 && dMaxDistance > 0.0 && dMinDistance < dMaxDistance",
                                     "AssertionFailed:i_dPunchStroke > 0.0 && i_dPunchVelocity > 0.0 && "
                                     "i_dPunchAcceleration > 0.0"));
}

// The three ways to say how hard the sheet is held. The outer edge of the blank is 400 mm long, the friction 0.12.
TEST_F(IncrementalRun, PressesTheBinderInNewtonsByALevel)
{
    fullHolder.factor(0.1);
    ASSERT_EQ(run(), 0);
    double const expected = 0.4 * 0.1 * 0.0008 * 150.0e6 / (2.0 * 0.12);
    EXPECT_NEAR(driver.m_dBlankHolderForce, expected, 1e-9 * expected); // 20 kN
    EXPECT_NEAR(force(), expected, 1e-4 * expected);
    EXPECT_EQ(driver.forceAtTheMeshes, driver.m_dBlankHolderForce) << "known ahead of the binder's file";
    EXPECT_TRUE(std::filesystem::exists(work.Path("VOZBinder.mod")));
    EXPECT_THAT(driver.called, testing::Contains("WriteBlankHolderDataBlock"));
}

TEST_F(IncrementalRun, PressesTheBinderInNewtonsByATotalForceInKilonewtons)
{
    fullHolder.option(5);
    fullHolder.totalForce(55.0);
    ASSERT_EQ(run(), 0);
    EXPECT_NEAR(driver.m_dBlankHolderForce, 55000.0, 1e-6);
    EXPECT_NEAR(force(), 55000.0, 5.0);
}

TEST_F(IncrementalRun, PressesTheBinderInNewtonsByAForcePerLength)
{
    config("BHFValueUnits=1\nBHFValue2=30\n"); // N/mm
    fullHolder.option(2);
    ASSERT_EQ(run(), 0);
    double const expected = 0.4 * 30000.0 / (2.0 * 0.12);
    EXPECT_NEAR(driver.m_dBlankHolderForce, expected, 1e-9 * expected); // 50 kN
    EXPECT_NEAR(force(), expected, 1e-4 * expected);
}

TEST_F(IncrementalRun, WritesNoBinderWithoutForce)
{
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
    EXPECT_ANY_THROW(force()) << "no curve";
    EXPECT_FALSE(std::filesystem::exists(work.Path("VOZBinder.mod")));
    EXPECT_DOUBLE_EQ(holder.NodeValue(holder.numNode(), 0), 0.120) << "the mesh was brought to metres all the same";
}

TEST_F(IncrementalRun, WritesNoBinderWithoutFriction)
{
    fullHolder.option(5);
    fullHolder.totalForce(55.0);
    friction.coefficient(0.0);
    ASSERT_EQ(run(), 0);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
}

TEST_F(IncrementalRun, DoesWithoutABinderMesh)
{
    meshCount = 3;
    ASSERT_EQ(run(), 0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalRun, DoesWithoutConditions)
{
    driver.SetBoundaryConditions(meshes.data(), 4, &property, nullptr, nullptr, nullptr, &axis, 0, 0, 0);
    EXPECT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(driver.m_dFrictionDie, 0.125);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
}

TEST_F(IncrementalRun, EndsAtTheFirstStepWithoutAFolder)
{
    host.environment.erase("CATTemp");
    EXPECT_EQ(run(), E_FAIL);
    EXPECT_EQ(blank.NodeValue(blank.numNode(), 0), 120.0) << "the meshes are as they were";
}

TEST_F(IncrementalRun, EndsAtTheSecondStepWithoutItsMeshes)
{
    punch.SetName("punch");
    EXPECT_EQ(run(), E_FAIL);
    EXPECT_EQ(driver.m_nSteps, 251) << "the settings were not reached";
    EXPECT_THAT(driver.called, testing::IsEmpty());
}

// The settings lie under the first variable alone, the rest under either.
TEST_F(IncrementalRun, EndsAtTheThirdStepWithoutSettings)
{
    host.environment["KELM7DRAVO3D"] = root.Path();
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(run(), E_FAIL);
    EXPECT_DOUBLE_EQ(blank.NodeValue(blank.numNode(), 0), 0.120) << "the meshes were";
    EXPECT_EQ(driver.m_dThickness, 0.0) << "the material was not";
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalRun, EndsWhereTheDeckCannotBeMade)
{
    std::filesystem::create_directory(work.Path("inputls.dyn"));
    EXPECT_EQ(run(), E_FAIL);
}

TEST_F(IncrementalRun, FailsWhereTheFolderOfThePartCannotBeMade)
{
    work.Write("file", "in the way");
    CATUnicodeString name("/file/cup");
    driver.SetPartName(name);
    EXPECT_EQ(run(), E_FAIL);
    EXPECT_EQ(work.Read("file"), "in the way");
}

TEST_F(IncrementalRun, WritesOneDeckLikeAnother)
{
    ASSERT_EQ(run(), 0);
    std::string const first = work.Read("inputls.dyn");
    ASSERT_FALSE(first.empty());
    for (VOZCatMesh * const mesh : {&blank, &punch, &die, &holder})
        for (int n = 1; n <= mesh->numNode(); ++n)
            for (int c = 0; c < 3; ++c)
                mesh->GetNodeData()[n][c] *= 1000.0;
    ASSERT_EQ(run(), 0); // on the same object, whose arrays and roles are taken anew
    EXPECT_NEAR(driver.m_dPunchStroke, 0.040, 1e-9);
    EXPECT_EQ(work.Read("inputls.dyn"), first);
}
