// VOZSolverIncrementalTest.cpp: the incremental driver as it is made, its slots, folder, settings and material.

#include "VOZSolverIncremental.h"

#include "FailingNew.h"
#include "IncrementalFixture.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace
{
class IncrementalDriver : public IncrementalJob
{
protected:
    IncrementalDriver() { give(driver); }

    std::string folder() const { return driver.m_strWorkingFolder.ConvertToChar(); }

    IncrementalProbe driver;
};

// Memory in which an object is made so that what its constructor forgets is seen.
struct Patterned
{
    Patterned()
    {
        std::memset(bytes, 0x5A, sizeof bytes);
        object = new (bytes) IncrementalProbe;
    }
    ~Patterned() { object->~IncrementalProbe(); }
    Patterned(Patterned const &) = delete;
    Patterned & operator=(Patterned const &) = delete;

    alignas(IncrementalProbe) unsigned char bytes[sizeof(IncrementalProbe)];
    IncrementalProbe * object;
};
} // namespace

TEST(Incremental, IsAClassOfItsNameOverTheBaseDriver)
{
    EXPECT_STREQ(VOZSolverIncremental::ClassName(), "VOZSolverIncremental");
    EXPECT_EQ(VOZSolverIncremental::MetaObject()->Base(), VOZSolver::MetaObject());
    VOZSolverIncremental const driver;
    EXPECT_STREQ(driver.IsA(), "VOZSolverIncremental");
    EXPECT_EQ(driver.IsAKindOf("VOZSolver"), 1);
    EXPECT_EQ(driver.IsAKindOf("VOZSolverMultiStage"), 0);
    EXPECT_EQ(&VOZSolverIncremental::ClassId(), driver.GetMetaObject());
    static_assert(!std::is_copy_constructible_v<VOZSolverIncremental>);
    static_assert(!std::is_copy_assignable_v<VOZSolverIncremental>);
}

TEST_F(IncrementalDriver, BeginsWithTheDefaultsOfTheProcess)
{
    Patterned const made;
    IncrementalProbe const & d = *made.object;
    EXPECT_TRUE(d.m_strWorkingFolder.IsNull());
    for (CATUnicodeString const & file : d.m_astrMeshFiles)
        EXPECT_TRUE(file.IsNull());
    EXPECT_EQ(d.m_pStream, nullptr);
    EXPECT_EQ(d.m_dTerminationTime, 0.0);
    EXPECT_EQ(d.m_dPunchVelocity, 5.0);
    EXPECT_EQ(d.m_dPunchAcceleration, 5000.0);
    EXPECT_EQ(d.m_dMassScalingTimeStep, 0.0);
    EXPECT_EQ(d.m_dAsciiOutputInterval, 0.0);
    EXPECT_EQ(d.m_dBinaryOutputInterval, 0.0);
    EXPECT_EQ(d.m_dAdaptFrequency, 0.0);
    EXPECT_EQ(d.m_nAdaptivityLevel, 4);
    EXPECT_EQ(d.m_nIadpn90, -1);
    EXPECT_EQ(d.m_bMassScaling, 1);
    EXPECT_EQ(d.m_padOutputPoints, nullptr);
    EXPECT_EQ(d.m_nOutputPoints, 10);
    EXPECT_EQ(d.m_bSmoothContact, 0);
    EXPECT_EQ(d.m_dBinderAccelFactor, 0.9);
    EXPECT_EQ(d.m_dBinderGapFactor, 0.1);
    EXPECT_NE(d.m_pSettings, nullptr);
    EXPECT_TRUE(d.m_strPartName.IsNull());
    EXPECT_TRUE(d.m_strTemplateName.IsNull());
    EXPECT_EQ(d.m_nNbIntegrationPoints, 4);
    EXPECT_EQ(d.m_nCurrentStepIndex, 9);
    EXPECT_EQ(d.m_pSolverIOData, nullptr);
    EXPECT_EQ(d.m_pResultMesh, nullptr);
    EXPECT_EQ(d.m_dBlankHolderForce, 0.0);
}

TEST_F(IncrementalDriver, BeginsWithTheDefaultsOfTheTools)
{
    Patterned const made;
    IncrementalProbe const & d = *made.object;
    EXPECT_EQ(d.m_dFrictionPunch, 0.125);
    EXPECT_EQ(d.m_dFrictionDie, 0.125);
    EXPECT_EQ(d.m_dFrictionBinder, 0.125);
    int const ids[][4] = {
        {d.m_nPartDie, d.m_nPartPunch, d.m_nPartBinder, d.m_nPartBlank},
        {d.m_nSectionDie, d.m_nSectionPunch, d.m_nSectionBinder, d.m_nSectionBlank},
        {d.m_nMaterialDie, d.m_nMaterialPunch, d.m_nMaterialBinder, d.m_nMaterialBlank},
        {d.m_nSetDie, d.m_nSetPunch, d.m_nSetBinder, d.m_nSetBlank},
    };
    for (int const(&row)[4] : ids)
        EXPECT_THAT(row, testing::ElementsAre(1, 2, 3, 5));
    EXPECT_EQ(d.m_nVectorId, 555);
    EXPECT_THAT(d.m_adTippingVector, testing::ElementsAre(0.0, 0.0, 1.0));
    EXPECT_EQ(d.m_nCurvePunch, 100);
    EXPECT_EQ(d.m_nCurveBinder, 101);
    EXPECT_EQ(d.m_nCurveStressStrain, 99);
    EXPECT_EQ(d.m_nFirstPadCurve, 800);
    EXPECT_EQ(d.m_nFirstBeadCurve, 900);
    EXPECT_EQ(d.m_nFirstBeadSet, 11);
    EXPECT_EQ(d.m_nBeadNodeCounter, 10000000);
    EXPECT_EQ(d.m_dBlankIntegrationPoints, 3.0);
    EXPECT_EQ(d.m_dToolIntegrationPoints, 3.0);
    for (VOZCatMesh const * const mesh : {d.m_pPunchMesh, d.m_pDieMesh, d.m_pBinderMesh, d.m_pBlankMesh})
        EXPECT_EQ(mesh, nullptr);
    for (char const * const name : {d.m_achPunchName, d.m_achDieName, d.m_achBinderName, d.m_achBlankName})
        EXPECT_TRUE(std::all_of(name, name + 260, [](char c) { return c == 0; }));
}

TEST_F(IncrementalDriver, BeginsWithTheDefaultsOfTheSheet)
{
    Patterned const made;
    IncrementalProbe const & d = *made.object;
    EXPECT_EQ(d.m_dDensity, 7800.0);
    EXPECT_EQ(d.m_dYoungsModulus, 2.0e11);
    EXPECT_EQ(d.m_dPoisson, 0.3);
    EXPECT_EQ(d.m_dYieldStress, 1.8e8);
    EXPECT_EQ(d.m_dTangentModulus, 5.4e8);
    EXPECT_EQ(d.m_dRValue, 1.555);
    EXPECT_EQ(d.m_dNValue, 0.2);
    EXPECT_EQ(d.m_dKValue, 6.0e8);
    EXPECT_EQ(d.m_nSteps, 251);
    EXPECT_EQ(d.m_dMaxStrain, 0.5);
    EXPECT_EQ(d.m_nCurveType, 0);
    EXPECT_EQ(d.m_nNumPoints, 0);
    EXPECT_EQ(d.m_padPoints, nullptr);
    EXPECT_EQ(d.m_dMaxBlankElementSize, 0.0);
    EXPECT_EQ(d.m_dMinBlankElementSize, 0.0);
}

// What a run always sets first is no one's default, but it is no leftover of the memory either.
TEST_F(IncrementalDriver, BeginsWithNothingLeftOverFromItsMemory)
{
    Patterned const made;
    IncrementalProbe const & d = *made.object;
    for (double const value : {d.m_dPunchStroke, d.m_dBinderCloseTime, d.m_dPunchRampTime, d.m_dPunchPlateauTime,
                               d.m_dThickness, d.m_dOffsetDie, d.m_dOffsetPunch, d.m_dOffsetBinder, d.m_dBeadDepth,
                               d.m_dStrokeAsDZmax, d.m_dAdaptSize, d.m_dAdaptEnergy, d.m_dAdaptThickness})
        EXPECT_EQ(value, 0.0);
    EXPECT_EQ(d.m_nAdaptPass, 1);
    EXPECT_EQ(d.m_nAdaptRefine, 0);
    EXPECT_EQ(d.m_nHourglassType, 0);
    EXPECT_EQ(d.m_dToolDensityFactor, 1.0);
}

TEST_F(IncrementalDriver, ReportsThatThereIsNoMemoryForItsSettings)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP();
    std::unique_ptr<IncrementalProbe> poor;
    {
        FailingNew const failing(1);
        poor = std::make_unique<IncrementalProbe>();
    }
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:m_pSettings != NULL"));
    EXPECT_EQ(poor->m_pSettings, nullptr);
    EXPECT_EQ(poor->GetTemplateSettings(), E_FAIL);
    give(*poor);
    EXPECT_EQ(poor->Run(nullptr), E_FAIL);
    EXPECT_EQ(poor->GetResults(nullptr), E_FAIL);
}

TEST_F(IncrementalDriver, FreesWhatItOwns)
{
    driver.m_padOutputPoints = new double[3];
    driver.m_padPoints = new double[4];
    driver.m_pSolverIOData = new VOZSolverIOData;
    driver.m_pResultMesh = new VOZCatMesh(3, 1);
    SUCCEED() << "the leak checker watches";
}

TEST_F(IncrementalDriver, LeavesTheToolsWhereTheyAre)
{
    VOZCatMesh const before(punch);
    driver.EvalToolsPosition();
    for (int n = 1; n <= punch.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            ASSERT_EQ(punch.NodeValue(n, c), before.NodeValue(n, c));
}

#if defined(__GNUC__) && !defined(_MSC_VER) && !defined(__aarch64__)
namespace
{
// The place of a virtual operation in its class's table: in this compiler's form of a pointer to it, 1 + 8 * place.
template <class Operation>
std::size_t slot(Operation i_operation)
{
    std::size_t words[sizeof(Operation) / sizeof(std::size_t)];
    std::memcpy(words, &i_operation, sizeof words);
    return (words[0] - 1) / sizeof(void *);
}
} // namespace

TEST(Incremental, HasItsOperationsInTheOrderOfTheirSlots)
{
    using S = VOZSolverIncremental;
    std::size_t const slots[] = {
        slot(static_cast<long (S::*)(CATIProgressTaskUI *)>(&S::Run)),
        slot(static_cast<long (S::*)()>(&S::RunLSDyna)),
        slot(static_cast<long (S::*)(Result **)>(&S::GetResults)),
        slot(&S::SetCurrentStepIndex),
        slot(&S::SetNbIntegrationPoints),
        slot(&S::GetResultMesh),
        slot(&S::WriteTitleBlock),
        slot(&S::WriteControlCardsData),
        slot(&S::WriteASCIIOutputControlCards),
        slot(&S::WriteBINARYOutputControlCards),
        slot(&S::WriteCONTROL_BULK_VISCOSITY_Card),
        slot(&S::WriteLocalCoordinateSystemDefinitionBlock),
        slot(&S::WriteToolingTitleBlock),
        slot(&S::WriteBlankDataBlock),
        slot(&S::WritePunchDataBlock),
        slot(&S::WriteDieDataBlock),
        slot(&S::WriteBlankHolderDataBlock),
        slot(&S::WriteCurveLoadPunch),
        slot(&S::WriteCurveLoadBHolder),
        slot(static_cast<void (S::*)(int, double, bool)>(&S::WritePressurePadData)),
        slot(static_cast<void (S::*)()>(&S::WritePressurePadData)),
        slot(&S::WriteMeshData),
        slot(&S::WritePressurePadID),
        slot(&S::WriteXYforPressurePad),
        slot(&S::WritePressurePadTitleBlock),
        slot(&S::WriteDrawBeadTitleBlock),
        slot(static_cast<void (S::*)(int, int, double)>(&S::WriteDrawBeadData)),
        slot(static_cast<void (S::*)()>(&S::WriteDrawBeadData)),
        slot(&S::WriteDrawBeadID),
        slot(&S::WriteXYZDrawBead),
        slot(&S::WriteDrawBeadNodeSetID),
        slot(&S::WriteCurveBlankStressStrain),
        slot(&S::WriteIncludedBlankToolingMeshFiles),
        slot(&S::WriteThickness),
        slot(&S::WriteRigidMaterialProperties),
        slot(&S::WriteFriction_Card23),
        slot(&S::WriteFriction_Card4_ShootingLogic),
        slot(&S::DoubleWrite),
    };
    std::size_t const first = slots[0];
    EXPECT_GE(first, 2U) << "behind those of the host's base, which begin with two destructors";
    for (std::size_t i = 0; i < std::size(slots); ++i)
        EXPECT_EQ(slots[i], first + i) << i;
}
#endif

TEST_F(IncrementalDriver, WorksInTheFolderOfTheBaseDriver)
{
    EXPECT_EQ(driver.GetWorkingFolder(), 0);
    EXPECT_EQ(folder(), work.Path());
}

TEST_F(IncrementalDriver, WorksInTheConfiguredFolderWhereThereIsOne)
{
    config("TmpDirectory=" + database.Path() + "\n");
    EXPECT_EQ(driver.GetWorkingFolder(), 0);
    EXPECT_EQ(folder(), database.Path());
}

TEST_F(IncrementalDriver, JoinsFolderAndPartNameWithNothingBetween)
{
    CATUnicodeString name("cup");
    driver.SetPartName(name);
    EXPECT_EQ(driver.GetWorkingFolder(), 0);
    EXPECT_EQ(folder(), work.Path() + "cup");
    EXPECT_TRUE(std::filesystem::is_directory(folder())) << "beside the folder, not in it";
    std::filesystem::remove(folder());
}

TEST_F(IncrementalDriver, MakesTheFolderOfThePartOnce)
{
    CATUnicodeString name("/cup");
    driver.SetPartName(name);
    EXPECT_EQ(driver.GetWorkingFolder(), 0);
    EXPECT_TRUE(std::filesystem::is_directory(work.Path("cup")));
    work.Write("cup/kept.txt", "x");
    EXPECT_EQ(driver.GetWorkingFolder(), 0);
    EXPECT_EQ(folder(), work.Path() + "/cup") << "the name is appended to the path anew each time";
    EXPECT_EQ(work.Read("cup/kept.txt"), "x");
}

TEST_F(IncrementalDriver, DoesNotLookWhetherTheFolderCouldBeMade)
{
    work.Write("file", "in the way");
    CATUnicodeString name("/file/cup");
    driver.SetPartName(name);
    EXPECT_EQ(driver.GetWorkingFolder(), 0);
    EXPECT_EQ(folder(), work.Path() + "/file/cup");
    EXPECT_FALSE(std::filesystem::exists(work.Path("file/cup")));
}

TEST_F(IncrementalDriver, HasNoFolderWithoutAnInstallationOrAPlaceForIt)
{
    host.environment.erase("CATTemp");
    EXPECT_EQ(driver.GetWorkingFolder(), E_FAIL);
    host.environment["CATTemp"] = work.Path();
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(driver.GetWorkingFolder(), E_FAIL);
    EXPECT_TRUE(driver.m_strWorkingFolder.IsNull());
}

// These tests have the library's objects in the program itself: there is no module beside which a launcher could lie.
TEST_F(IncrementalDriver, StartsNothingWhereTheLibraryIsNoModule)
{
    EXPECT_EQ(driver.RunLSDyna(), E_FAIL);
    VOZSolver & asBase = driver;
    EXPECT_EQ(asBase.RunLSDyna(), E_FAIL) << "the base's own would do nothing and return 0";
}

TEST_F(IncrementalDriver, TakesTheSheetFromTheJobAndTheSteelFromTheDatabase)
{
    EXPECT_EQ(driver.GetMatProperties(), 1);
    EXPECT_EQ(driver.m_dThickness, 0.0008) << "the job's, not the database's 1.7 mm";
    EXPECT_DOUBLE_EQ(driver.m_dDensity, 7851.0);
    EXPECT_DOUBLE_EQ(driver.m_dYoungsModulus, 207.0e9);
    EXPECT_EQ(driver.m_dTangentModulus, driver.m_dYoungsModulus);
    EXPECT_DOUBLE_EQ(driver.m_dPoisson, 0.29);
    EXPECT_DOUBLE_EQ(driver.m_dYieldStress, 142.0e6);
    EXPECT_DOUBLE_EQ(driver.m_dKValue, 543.0e6);
    EXPECT_DOUBLE_EQ(driver.m_dNValue, 0.23);
    EXPECT_DOUBLE_EQ(driver.m_dRValue, 1.81);
    EXPECT_EQ(driver.m_nCurveType, 0);
    EXPECT_EQ(driver.m_nNumPoints, 0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalDriver, KeepsTheJobsSheetAndItsOwnSteelWhereTheDatabaseHasNoSuchName)
{
    VOZMaterial & sheet = *property.material(1);
    sheet.m_strName = CATUnicodeString("TEST-STEEL"); // names are equal letter by letter
    sheet.m_dNValue = 0.31;
    sheet.m_dKValue = 4.1e8;
    sheet.m_dRValue = 0.91;
    EXPECT_EQ(driver.GetMatProperties(), 0);
    EXPECT_EQ(driver.m_dThickness, 0.0008);
    EXPECT_EQ(driver.m_dNValue, 0.31);
    EXPECT_EQ(driver.m_dKValue, 4.1e8);
    EXPECT_EQ(driver.m_dRValue, 0.91);
    EXPECT_EQ(driver.m_dDensity, 7800.0);
    EXPECT_EQ(driver.m_dYoungsModulus, 2.0e11);
    EXPECT_EQ(driver.m_dTangentModulus, 5.4e8);
    EXPECT_EQ(driver.m_dYieldStress, 1.8e8);
}

TEST_F(IncrementalDriver, HasNoSteelWithoutADatabase)
{
    database.Write("test.xml", "<materials>");
    EXPECT_EQ(driver.GetMatProperties(), 0);
    host.environment["VOZMaterialDB"] = database.Path("nowhere");
    EXPECT_EQ(driver.GetMatProperties(), 0);
    host.environment.erase("VOZMaterialDB");
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(driver.GetMatProperties(), 0);
    EXPECT_EQ(driver.m_dThickness, 0.0008);
}

TEST_F(IncrementalDriver, HasNoSteelWithoutAProcess)
{
    IncrementalProbe bare;
    EXPECT_EQ(bare.GetMatProperties(), 0);
    property.sizeProperty(0);
    EXPECT_EQ(driver.GetMatProperties(), 0);
}

TEST_F(IncrementalDriver, CopiesTheTableOfTheJobsSheet)
{
    VOZMaterial & sheet = *property.material(1);
    sheet.m_nNumPoints = 3;
    sheet.m_padPoints = new double[6]{0.0, 1.5e8, 0.1, 2.5e8, 0.4, 3.5e8};
    for (int call = 0; call < 2; ++call) // the second one takes the place of the first
    {
        EXPECT_EQ(driver.GetMatProperties(), 1);
        EXPECT_EQ(driver.m_nCurveType, 2);
        ASSERT_EQ(driver.m_nNumPoints, 3);
        EXPECT_NE(driver.m_padPoints, sheet.m_padPoints);
        EXPECT_THAT(rowsOf(driver.m_padPoints, 6), testing::ElementsAre(0.0, 1.5e8, 0.1, 2.5e8, 0.4, 3.5e8));
    }
    EXPECT_EQ(driver.EvalEquStress(0.25), 3.0e8);
}

TEST_F(IncrementalDriver, ReportsThatThereIsNoMemoryForTheTable)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP();
    VOZMaterial & sheet = *property.material(1);
    sheet.m_nNumPoints = 2;
    sheet.m_padPoints = new double[4]{0.0, 1.0, 1.0, 2.0};
    {
        FailingNew const failing(1);
        EXPECT_EQ(driver.GetMatProperties(), 1);
    }
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:m_padPoints"));
    EXPECT_EQ(driver.EvalEquStress(0.5), 0.0);
}
