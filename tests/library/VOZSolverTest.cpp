// VOZSolverTest.cpp: the life of a driver, its protocol and its folders.

#include "VOZSolver.h"

#include "CATIProgressTaskUI.h"
#include "DriverFixture.h"
#include "EdgeSets.h"
#include "FolderFixture.h"
#include "FreeEdgeLoops.h"
#include "LoopFilters.h"
#include "VOZSolverIOData.h"
#include "VOZSolverMultiStage.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

namespace
{
std::string narrow(unsigned short const * text)
{
    return CATUnicodeString(text).ConvertToChar();
}

class Probe : public VOZSolver
{
public:
    using VOZSolver::EvalBoundaries;
    using VOZSolver::GetFilesFoldersPaths;

    using VOZSolver::m_adDisp;
    using VOZSolver::m_bProcessFlag;
    using VOZSolver::m_dBlankHolderForce;
    using VOZSolver::m_nCurrentStepIndex;
    using VOZSolver::m_nLoopError;
    using VOZSolver::m_nMesh;
    using VOZSolver::m_nNbIntegrationPoints;
    using VOZSolver::m_nProcessMode;
    using VOZSolver::m_nToolOffsetMode;
    using VOZSolver::m_pAxis;
    using VOZSolver::m_pElemProperty;
    using VOZSolver::m_pFreeEdge;
    using VOZSolver::m_pFreeLoops;
    using VOZSolver::m_pFriction;
    using VOZSolver::m_pFullBlankHolder;
    using VOZSolver::m_ppMesh;
    using VOZSolver::m_pProcessEdges;
    using VOZSolver::m_pResultMesh;
    using VOZSolver::m_pSizeFilter;
    using VOZSolver::m_pSolverIOData;
    using VOZSolver::m_pSymmetry;
    using VOZSolver::m_pSymmetryFilter;
    using VOZSolver::m_strPartName;
    using VOZSolver::m_strTemplateName;
    using VOZSolver::m_szSummaryFile;
    using VOZSolver::m_szWorkDir;
};

class Progress : public CATIProgressTaskUI
{
public:
    void SetProgress(short i_percent) override { shown.push_back(i_percent); }
    std::vector<short> shown;
};
} // namespace

TEST(Driver, IsAnExternalClassOfItsNameOverTheHostsBase)
{
    EXPECT_STREQ(VOZSolver::ClassName(), "VOZSolver");
    EXPECT_EQ(VOZSolver::MetaObject()->ClassType(), 1);
    EXPECT_EQ(VOZSolver::MetaObject()->Base(), CATBaseUnknown::MetaObject());
    EXPECT_STREQ(VOZSolver::MetaObject()->Extended(), "CATNull");
    EXPECT_STREQ(VOZSolver::MetaObject()->Kind(), "External");
    EXPECT_EQ(VOZSolver::MetaObject(), fct_RetrieveMetaObject("VOZSolver", 1, nullptr, "", ""));
    EXPECT_STREQ(VOZSolverMultiStage::ClassName(), "VOZSolverMultiStage");
    EXPECT_EQ(VOZSolverMultiStage::MetaObject()->Base(), VOZSolver::MetaObject());
    EXPECT_STREQ(VOZSolverMultiStage::MetaObject()->Extended(), "CATNull");
    VOZSolverMultiStage const driver;
    EXPECT_STREQ(driver.IsA(), "VOZSolverMultiStage");
    EXPECT_EQ(driver.IsAKindOf("VOZSolver"), 1);
    EXPECT_EQ(driver.IsAKindOf("CATBaseUnknown"), 1);
    EXPECT_EQ(driver.IsAKindOf("VOZSolverIncremental"), 0);
}

TEST(Driver, BeginsEmptyWithOnePointAndStepOne)
{
    Probe driver;
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 1);
    EXPECT_EQ(driver.m_nCurrentStepIndex, 1);
    EXPECT_EQ(driver.m_nLoopError, 0);
    EXPECT_EQ(driver.m_dBlankHolderForce, 0.0);
    EXPECT_EQ(driver.m_pSolverIOData, nullptr);
    EXPECT_EQ(driver.m_pFreeLoops, nullptr);
    EXPECT_EQ(driver.m_pSymmetryFilter, nullptr);
    EXPECT_EQ(driver.m_pProcessEdges, nullptr);
    EXPECT_EQ(driver.m_pSizeFilter, nullptr);
    EXPECT_EQ(driver.m_pFreeEdge, nullptr);
    EXPECT_EQ(driver.GetResultMesh(), nullptr);
    EXPECT_TRUE(driver.m_strPartName.IsNull());
    EXPECT_TRUE(driver.m_strTemplateName.IsNull());
    for (unsigned short const c : driver.m_szSummaryFile)
        EXPECT_EQ(c, 0);
    for (unsigned short const c : driver.m_szWorkDir)
        EXPECT_EQ(c, 0);
    EXPECT_EQ(sizeof driver.m_szSummaryFile, 520U);
    EXPECT_EQ(sizeof driver.m_szWorkDir, 520U);
}

// The fields are read by their places in the object: each lies behind the one before it.
TEST(Driver, HasItsFieldsInTheirOrder)
{
    Probe driver;
    char const * const places[] = {
        reinterpret_cast<char *>(&driver.m_ppMesh),
        reinterpret_cast<char *>(&driver.m_pElemProperty),
        reinterpret_cast<char *>(&driver.m_pSymmetry),
        reinterpret_cast<char *>(&driver.m_pFriction),
        reinterpret_cast<char *>(&driver.m_pFullBlankHolder),
        reinterpret_cast<char *>(&driver.m_pAxis),
        reinterpret_cast<char *>(&driver.m_adDisp),
        reinterpret_cast<char *>(&driver.m_nMesh),
        reinterpret_cast<char *>(&driver.m_nProcessMode),
        reinterpret_cast<char *>(&driver.m_nToolOffsetMode),
        reinterpret_cast<char *>(&driver.m_bProcessFlag),
        reinterpret_cast<char *>(&driver.m_strPartName),
        reinterpret_cast<char *>(&driver.m_strTemplateName),
        reinterpret_cast<char *>(&driver.m_pFreeLoops),
        reinterpret_cast<char *>(&driver.m_pSymmetryFilter),
        reinterpret_cast<char *>(&driver.m_pProcessEdges),
        reinterpret_cast<char *>(&driver.m_pSizeFilter),
        reinterpret_cast<char *>(&driver.m_pFreeEdge),
        reinterpret_cast<char *>(&driver.m_szSummaryFile),
        reinterpret_cast<char *>(&driver.m_szWorkDir),
        reinterpret_cast<char *>(&driver.m_pSolverIOData),
        reinterpret_cast<char *>(&driver.m_nNbIntegrationPoints),
        reinterpret_cast<char *>(&driver.m_nCurrentStepIndex),
        reinterpret_cast<char *>(&driver.m_pResultMesh),
        reinterpret_cast<char *>(&driver.m_dBlankHolderForce),
        reinterpret_cast<char *>(&driver.m_nLoopError),
    };
    for (std::size_t i = 1; i < std::size(places); ++i)
        EXPECT_LT(places[i - 1], places[i]) << i;
}

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
// Where members are pointed to as the common ABI of these compilers has it: 1 + the offset in the virtual table.
template <class Function>
std::ptrdiff_t slotOf(Function i_function)
{
    std::ptrdiff_t value = 0;
    static_assert(sizeof i_function >= sizeof value);
    std::memcpy(&value, &i_function, sizeof value);
    return (value - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
}

template <class Driver>
void expectSlots()
{
    std::ptrdiff_t const last = slotOf(&CATBaseUnknown::IsAKindOf);
    EXPECT_EQ(slotOf(static_cast<int (Driver::*)(char const *) const>(&Driver::IsAKindOf)), last);
    EXPECT_EQ(slotOf(&Driver::Run), last + 1);
    EXPECT_EQ(slotOf(&Driver::RunLSDyna), last + 2);
    EXPECT_EQ(slotOf(static_cast<long (Driver::*)(Result **)>(&Driver::GetResults)), last + 3);
    EXPECT_EQ(slotOf(&Driver::SetCurrentStepIndex), last + 4);
    EXPECT_EQ(slotOf(&Driver::SetNbIntegrationPoints), last + 5);
    EXPECT_EQ(slotOf(&Driver::GetResultMesh), last + 6);
}

TEST(Driver, HasItsVirtualOperationsBehindTheBasesInTheirOrder)
{
    expectSlots<VOZSolver>();
    expectSlots<VOZSolverMultiStage>();
}
#endif

TEST_F(DriverFixture, ADriverStoresWhatItIsGivenAndNothingElse)
{
    Probe driver;
    driver.SetBoundaryConditions(meshes.data(), 3, &property, &symmetry, &friction, &fullHolder, &axis, 7, 11, 13);
    EXPECT_EQ(driver.m_ppMesh, meshes.data());
    EXPECT_EQ(driver.m_nMesh, 3);
    EXPECT_EQ(driver.m_pElemProperty, &property);
    EXPECT_EQ(driver.m_pSymmetry, &symmetry);
    EXPECT_EQ(driver.m_pFriction, &friction);
    EXPECT_EQ(driver.m_pFullBlankHolder, &fullHolder);
    EXPECT_EQ(driver.m_pAxis, &axis);
    EXPECT_EQ(driver.m_bProcessFlag, 7);
    EXPECT_EQ(driver.m_nProcessMode, 11);
    EXPECT_EQ(driver.m_nToolOffsetMode, 13);
    EXPECT_EQ(driver.m_pFreeEdge, nullptr);

    CATUnicodeString door("door");
    CATUnicodeString fine("fine");
    driver.SetPartName(door);
    driver.SetTemplate(fine);
    EXPECT_STREQ(driver.m_strPartName.ConvertToChar(), "door");
    EXPECT_STREQ(driver.m_strTemplateName.ConvertToChar(), "fine");
    double const rows[1][3] = {{1.0, 2.0, 3.0}};
    driver.SetDisplacements(rows);
    EXPECT_EQ(driver.m_adDisp, rows);
    driver.SetCurrentStepIndex(9);
    driver.SetNbIntegrationPoints(4);
    EXPECT_EQ(driver.m_nCurrentStepIndex, 9);
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 4);
    EXPECT_EQ(driver.RunLSDyna(), 0);
}

TEST(Driver, ShowsProgressAsWholePercentAndWhatIsNoneAsHundred)
{
    Progress task;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (double const percent : {0.0, 0.9, 12.0, 99.99, 100.0, -1.0, 250.0, -1e-9, 1e300, nan})
        EXPECT_EQ(VOZSolver::ProgressIndicator(percent, static_cast<CATIProgressTaskUI *>(&task), nullptr), 0);
    EXPECT_EQ(task.shown, (std::vector<short>{0, 0, 12, 99, 100, 100, 100, 100, 100, 100}));
    EXPECT_EQ(VOZSolver::ProgressIndicator(50.0, nullptr, nullptr), 0);
}

TEST_F(DriverFixture, BoundaryObjectsAreTheDriversAndAreMadeAnewAtASecondTime)
{
    Probe driver;
    give(driver);
    ASSERT_EQ(driver.EvalBoundaries(), 0);
    ASSERT_EQ(driver.EvalBoundaries(), 0); // what the first one left is freed: leaks are errors
    EXPECT_EQ(driver.m_pFreeLoops->numLoops(), 1);
    EXPECT_EQ(driver.m_pFreeLoops->numOuter(), driver.m_pFreeEdge->numEdge());
    EXPECT_EQ(driver.m_pProcessEdges->numBlankHolder(), 0); // an inactive holder holds nothing
    EXPECT_EQ(driver.m_pSizeFilter->numFilteredInnerLoops(), 0);
    driver.m_pResultMesh = new VOZCatMesh(part); // and this is freed as well
    EXPECT_EQ(driver.GetResultMesh(), driver.m_pResultMesh);
}

// The limit is the float 0.2, which lies a little above a fifth.
TEST_F(DriverFixture, ALoopIsLargeAboveAFifthOfTheOuterOne)
{
    for (int const cells : {4, 5, 6})
    {
        part = samples::plateWithHole(cells).mesh();
        Probe driver;
        give(driver);
        ASSERT_EQ(driver.EvalBoundaries(), 0);
        EXPECT_EQ(driver.m_pSizeFilter->numFilteredInnerLoops(), cells == 4 ? 1 : 0); // 4 of 16, of 20, of 24
    }
}

TEST_F(DriverFixture, ABoundaryThatIsNoSetOfCurvesIsRefused)
{
    VOZCatMesh const clean = part;
    part = samples::quads({{1, 2, 3, 4}, {3, 5, 6, 7}}); // two cells that meet at a node
    Probe driver;
    give(driver);
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    EXPECT_EQ(driver.m_nLoopError, 1);
    VOZCatMesh const refused = part;
    part = clean;
    EXPECT_EQ(driver.EvalBoundaries(), 0);
    EXPECT_EQ(driver.m_nLoopError, 0);
    EXPECT_NE(driver.m_pProcessEdges, nullptr);
    part = refused; // and then nothing is left that numbers the edges of the clean one
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    EXPECT_EQ(driver.m_pSymmetryFilter, nullptr);
    EXPECT_EQ(driver.m_pSizeFilter, nullptr);
    EXPECT_EQ(driver.m_pProcessEdges, nullptr);
}

TEST_F(DriverFixture, BoundariesNeedAMeshAFrameAHolderAndASymmetry)
{
    Probe driver;
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    VOZCatMesh const * const none[1] = {nullptr};
    VOZCatMesh const ** const noMesh = const_cast<VOZCatMesh const **>(none);
    driver.SetBoundaryConditions(noMesh, 1, &property, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 0, &property, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, nullptr, &friction, &fullHolder, &axis, 0, 0, 0);
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, nullptr, &axis, 0, 0, 0);
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    driver.SetBoundaryConditions(meshes.data(), 1, &property, &symmetry, &friction, &fullHolder, nullptr, 0, 0, 0);
    EXPECT_EQ(driver.EvalBoundaries(), E_FAIL);
    EXPECT_EQ(driver.m_pFreeEdge, nullptr);
}

// The working folder

TEST_F(DriverFixture, TheConfiguredFolderIsTriedAndTaken)
{
    config("#\nTmpDirectory=" + work.Path() + "\n");
    host.environment.erase("CATTemp");
    Probe driver;
    ASSERT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(narrow(driver.m_szWorkDir), work.Path());
    EXPECT_EQ(narrow(driver.m_szSummaryFile), "sum.txt"); // a bare name
    EXPECT_FALSE(std::filesystem::exists(work.Path("test.txt")));
}

TEST_F(DriverFixture, ThePlaceOfTheKeyDoesNotMatterHere)
{
    config("TmpDirectory=" + work.Path() + "\n");
    host.environment.erase("CATTemp");
    Probe driver;
    EXPECT_EQ(driver.GetFilesFoldersPaths(), 0);
}

TEST_F(DriverFixture, WithoutAFolderThatTakesFilesTheEnvironmentsIsTaken)
{
    std::vector<std::string> const texts = {"", "Other=1\n", "TmpDirectory=" + work.Path("missing") + "\n",
                                            "TmpDirectory=" + work.Write("file", "") + "\n"};
    for (std::string const & text : texts)
    {
        config(text);
        Probe driver;
        ASSERT_EQ(driver.GetFilesFoldersPaths(), 0) << text;
        EXPECT_EQ(narrow(driver.m_szWorkDir), work.Path()) << text;
        EXPECT_EQ(narrow(driver.m_szSummaryFile), "sum.txt") << text;
    }
    std::filesystem::remove(root.Path("config.cfg"));
    Probe driver;
    EXPECT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(narrow(driver.m_szWorkDir), work.Path());
}

TEST_F(DriverFixture, WithoutAnyFolderNothingRuns)
{
    host.environment.erase("CATTemp");
    Probe driver;
    EXPECT_EQ(driver.GetFilesFoldersPaths(), E_FAIL);
    EXPECT_EQ(driver.m_szWorkDir[0], 0);
    host.environment["CATTemp"] = work.Path();
    host.environment.erase("VOZDRAVO3D"); // and so without an install root
    EXPECT_EQ(driver.GetFilesFoldersPaths(), E_FAIL);
}

TEST_F(DriverFixture, AFolderOfTwoCharactersIsRefusedAndOneOfThreeIsNot)
{
    Probe driver;
    host.environment["CATTemp"] = "ab";
    EXPECT_EQ(driver.GetFilesFoldersPaths(), E_FAIL);
    host.environment["CATTemp"] = "";
    EXPECT_EQ(driver.GetFilesFoldersPaths(), E_FAIL);
    host.environment["CATTemp"] = "abc"; // not tried: the environment is believed
    EXPECT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(narrow(driver.m_szWorkDir), "abc");
}

class DriverInAFolder : public FolderFixture
{
};

TEST_F(DriverInAFolder, AConfiguredFolderOfTwoCharactersIsRefusedAlthoughItTakesFiles)
{
    host.environment["CATTemp"] = folder.string();
    config("TmpDirectory=./\n");
    Probe driver;
    EXPECT_EQ(driver.GetFilesFoldersPaths(), E_FAIL);
    config("TmpDirectory=.//\n");
    EXPECT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(narrow(driver.m_szWorkDir), ".//");
}

TEST_F(DriverFixture, AFolderThatDoesNotFitIsRefusedNotCut)
{
    Probe driver;
    host.environment["CATTemp"] = std::string(259, 'x');
    EXPECT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(narrow(driver.m_szWorkDir), std::string(259, 'x'));
    host.environment["CATTemp"] = std::string(260, 'y');
    EXPECT_EQ(driver.GetFilesFoldersPaths(), E_FAIL);
    EXPECT_EQ(narrow(driver.m_szWorkDir), std::string(259, 'x'));
    host.environment["CATTemp"] = "short"; // nothing of the longer one stays behind it
    EXPECT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(driver.m_szWorkDir[5], 0);
    EXPECT_EQ(driver.m_szWorkDir[6], 0);
}

TEST_F(DriverFixture, AFolderIsWidenedFromUtf8)
{
    host.environment["CATTemp"] = "/tmp/bl\xC3\xA4"
                                  "tter";
    Probe driver;
    ASSERT_EQ(driver.GetFilesFoldersPaths(), 0);
    EXPECT_EQ(driver.m_szWorkDir[7], 0xE4);
    EXPECT_EQ(driver.m_szWorkDir[8], 't');
}

// The run of the base class

TEST_F(DriverFixture, TheBaseClassByItselfDoesNotRun)
{
    VOZSolver driver;
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
}

class BaseRun : public DriverFixture
{
protected:
    BaseRun() { driver.m_pSolverIOData = &record; }

    VOZSolverIOData record;
    Probe driver;
};

TEST_F(BaseRun, FillsTheRecordOfTheOneWhoMadeIt)
{
    give(driver, 1, 5);
    EXPECT_EQ(driver.Run(nullptr), 0);
    ASSERT_NE(record.m_psMesh, nullptr);
    EXPECT_EQ(record.m_psMesh->m_nNumNodes, part.numNode());
    EXPECT_EQ(record.m_psFlags->m_nProcessMode, 5);
    EXPECT_EQ(record.m_nNumNodesBinder, 0);
    EXPECT_EQ(narrow(record.m_strSumFileName), "sum.txt");
    EXPECT_EQ(record.m_nSumFileNameLength, 7);
    EXPECT_EQ(narrow(record.m_strWorkDir), work.Path());
    EXPECT_EQ(record.m_nWorkDirLength, static_cast<int>(work.Path().size()));
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(BaseRun, ASecondRunLeavesNothingOfTheFirst)
{
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), 0);
    part = dome(3, 3, false);
    index(part.numElem());
    EXPECT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(record.m_psMesh->m_nNumElements, 9);
    EXPECT_EQ(record.m_nNodesPerElement, 4);
}

TEST_F(BaseRun, EvaluatesABinderFirstWhereThereIsOneOfTwoMeshes)
{
    binder = dome(2, 2, false);
    meshes[1] = &binder;
    meshCount = 2;
    index(std::max(part.numElem(), binder.numElem()));
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(record.m_nNumNodesBinder, 9);
    EXPECT_EQ(record.m_nNumElementsBinder, 4);
    EXPECT_EQ(record.m_psMesh->m_nNumElements, part.numElem()); // and the part after it
    EXPECT_EQ(driver.m_nNbIntegrationPoints, 1);
}

TEST_F(BaseRun, IgnoresASecondMeshThatIsNotCounted)
{
    binder = dome(2, 2, false);
    meshes[1] = &binder;
    meshCount = 1;
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(record.m_nNumNodesBinder, 0);
    meshCount = 2;
    meshes[1] = nullptr;
    give(driver);
    EXPECT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(record.m_nNumNodesBinder, 0);
}

TEST_F(BaseRun, FailsWithoutAFolderAPartOrACleanBoundary)
{
    give(driver);
    host.environment.erase("CATTemp");
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    host.environment["CATTemp"] = work.Path();
    meshes[0] = nullptr;
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    meshes[0] = &part;
    part = VOZCatMesh();
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
    part = samples::closedBox(); // no free edge
    EXPECT_EQ(driver.Run(nullptr), E_FAIL);
}
