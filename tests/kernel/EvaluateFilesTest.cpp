// EvaluateFilesTest.cpp: what a run leaves in the working folder.

#include "CommaLocale.h"
#include "EvaluateFixture.h"
#include "SpoiledJobs.h"
#include "VOZMultiStageSolver.h"
#include "VOZSolverAutoBC.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <new>
#include <sstream>

namespace
{

using namespace jobtest;
using testing::HasSubstr;

class EvaluateFiles : public testing::Test
{
protected:
    EvaluateFiles()
    {
        auto const * const info = testing::UnitTest::GetInstance()->current_test_info();
        folder = std::filesystem::temp_directory_path() / (std::string("voz_evaluate_") + info->name());
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~EvaluateFiles() override { std::filesystem::remove_all(folder); }

    void name(Job & job, std::string const & summary)
    {
        job.data->SetWorkingDir(wide(folder.string()).c_str());
        job.data->SetSummaryFileName(wide(summary).c_str());
    }

    std::string read(std::string const & file)
    {
        std::ostringstream text;
        text << std::ifstream(folder / file, std::ios::binary).rdbuf();
        return text.str();
    }

    std::filesystem::path folder;
};

TEST_F(EvaluateFiles, SummaryAndLogGoToTheWorkingFolder)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Triangles);
    Job job = jobOf(mesh);
    quarterSymmetry(job, mesh);
    name(job, "sum.txt");
    solve(job);
    std::string const summary = read("sum.txt");
    EXPECT_THAT(summary, HasSubstr("outcome              converged\n"));
    EXPECT_THAT(summary, HasSubstr("elements             162\n"));
    EXPECT_THAT(summary, HasSubstr("punch force N "));
    EXPECT_THAT(summary, HasSubstr("blank area m2 "));
    std::string const log = read("sum.log");
    EXPECT_GT(std::count(log.begin(), log.end(), '\n'), 8); // the iteration table
    EXPECT_THAT(log, HasSubstr("planes of symmetry: punch force"));
    EXPECT_THAT(log, HasSubstr("converged"));
}

TEST_F(EvaluateFiles, EqualJobsLeaveEqualFilesUnderACommaLocaleToo)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Triangles);
    auto const filesOf = [&]
    {
        Job job = jobOf(mesh);
        quarterSymmetry(job, mesh);
        name(job, "sum.txt");
        solve(job);
        return read("sum.txt") + read("sum.log");
    };
    std::string const before = filesOf();
    EXPECT_EQ(filesOf(), before);
    CommaLocale const comma;
    ASSERT_TRUE(comma.inForce());
    EXPECT_EQ(filesOf(), before);
}

TEST_F(EvaluateFiles, AWarningStandsInTheLogOnce)
{
    Job job = jobOf(patch(Cells::Triangles));
    job.bc->SetDrawbeads(1, new VOZSolverDrawbead_s[1]);
    job.bc->m_pasDrawbeads[0].m_nElement = 3; // without coordinates: skipped
    name(job, "sum.txt");
    solve(job);
    std::string const log = read("sum.log");
    std::size_t const first = log.find("warning: 1 draw-bead segments");
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(log.find("warning: ", first + 1), std::string::npos);
    EXPECT_EQ(log.find("planes of symmetry"), std::string::npos); // it has none
}

TEST_F(EvaluateFiles, ARefusalStandsInBothFiles)
{
    Job job = jobOf(patch(Cells::Triangles));
    job.part->GetElements()[3].m_anNodeIndices[1] = 500;
    name(job, "sum.txt");
    EXPECT_THAT(errorOf(job), HasSubstr("names node 500"));
    EXPECT_THAT(read("sum.txt"), HasSubstr("outcome              refused\nreason               element 3"));
    EXPECT_THAT(read("sum.log"), HasSubstr("refused: element 3"));
}

TEST_F(EvaluateFiles, WithoutASummaryNameNothingIsWritten)
{
    Job job = jobOf(patch(Cells::Triangles));
    job.data->SetWorkingDir(wide(folder.string()).c_str());
    solve(job);
    EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(EvaluateFiles, AFolderThatIsNotThereIsNoFailure)
{
    Job job = jobOf(patch(Cells::Triangles));
    job.data->SetWorkingDir(wide((folder / "missing").string()).c_str());
    job.data->SetSummaryFileName(wide("sum.txt").c_str());
    solve(job);
}

TEST_F(EvaluateFiles, TheLogStandsUnderTheSummarysStem)
{
    for (auto const & [summary, log] : {std::pair<std::string, std::string>{"sum.txt", "sum.log"},
                                        {"a.b.txt", "a.b.log"},
                                        {"sum", "sum.log"},
                                        {".txt", ".txt.log"},
                                        {"sum.log", "sum.log.log"}})
    {
        double value = 0.0;
        std::basic_string<unsigned short> logName;
        std::FILE * file = nullptr;
        VOZMultiStageSolver::OpenLogFile(wide(summary).c_str(), wide(folder.string()).c_str(), value, logName, file);
        ASSERT_NE(file, nullptr);
        std::fclose(file);
        EXPECT_TRUE(std::filesystem::exists(folder / log)) << log;
        EXPECT_EQ(std::string(logName.begin(), logName.end()), log);
        EXPECT_EQ(value, 1.0);
    }
    double value = 0.0;
    std::basic_string<unsigned short> logName;
    std::FILE * file = nullptr;
    VOZMultiStageSolver::OpenLogFile(nullptr, nullptr, value, logName, file);
    EXPECT_EQ(file, nullptr);
    EXPECT_TRUE(logName.empty());
}

// --- Auto strain -----------------------------------------------------------------------------------------------------

// The value of a row of the summary; NaN where there is none.
double rowOf(std::string const & summary, std::string name)
{
    name.resize(21, ' ');
    std::size_t const place = ("\n" + summary).find("\n" + name);
    return place == std::string::npos ? kNaN : std::stod(summary.substr(place + name.size()));
}

TEST_F(EvaluateFiles, TheSummaryTellsTheRestraintThatBringsTheWantedStrain)
{
    SurfaceMesh const mesh = cup({}, 1, Extent::Quarter, Cells::Quads);
    for (double const wantedStrain : {0.0167, 0.00001})
    {
        Job job = jobOf(mesh);
        quarterSymmetry(job, mesh);
        name(job, "sum.txt");
        VOZSolverAutoBC_s wanted;
        wanted.m_nReferenceNode = 0; // the pole
        wanted.m_dReferenceStrain = wantedStrain;
        ASSERT_EQ(VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), &wanted, nullptr, nullptr, nullptr),
                  VOZUtilitySolving::Done);
        std::string const summary = read("sum.txt");
        EXPECT_EQ(rowOf(summary, "reference node"), 0.0);
        EXPECT_EQ(rowOf(summary, "reference wanted"), wantedStrain);
        EXPECT_GE(rowOf(summary, "rounds"), 1.0);
        EXPECT_TRUE(std::isnan(rowOf(summary, "target level N/m"))) << "only the reference was asked for";
        if (wantedStrain > 0.001)
        {
            EXPECT_THAT(summary, HasSubstr("auto strain          met\n"));
            EXPECT_NEAR(rowOf(summary, "reference strain"), wantedStrain, 1.0e-4);
            EXPECT_NEAR(rowOf(summary, "reference level N/m"), 100.0e3, 10.0e3); // the mesh is coarse
        }
        else
        {
            EXPECT_THAT(summary, HasSubstr("auto strain          not met, the strain is above the wanted one without"));
            EXPECT_EQ(rowOf(summary, "reference level N/m"), 0.0);
            EXPECT_GT(rowOf(summary, "reference strain"), wantedStrain);
        }
    }
}

TEST_F(EvaluateFiles, WithoutAWantedStrainTheSummaryTellsNoRestraint)
{
    Job job = jobOf(patch(Cells::Triangles));
    name(job, "sum.txt");
    VOZSolverAutoBC_s const none;
    ASSERT_EQ(VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), &none, nullptr, nullptr, nullptr),
              VOZUtilitySolving::Done);
    EXPECT_THAT(read("sum.txt"), Not(HasSubstr("auto strain")));
}

TEST_F(EvaluateFiles, AMissingRecordOfWantedStrainsStandsInBothFilesAndNoOldResultStays)
{
    Job job = jobOf(patch(Cells::Triangles));
    name(job, "sum.txt");
    solve(job);
    EXPECT_THROW(VOZUtilitySolving::EvaluateAutoStrain(job.data.get(), nullptr, nullptr, nullptr, nullptr), CATError);
    EXPECT_THAT(read("sum.txt"), HasSubstr("outcome              refused\nreason               there is no record"));
    EXPECT_THAT(read("sum.log"), HasSubstr("refused: there is no record of wanted strains"));
    EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
}

// --- Want of memory --------------------------------------------------------------------------------------------------

TEST_F(EvaluateFiles, AWantOfMemoryIsAnErrorOfTheKernelAndStandsInBothFiles)
{
    Job job = jobOf(patch(Cells::Triangles));
    name(job, "sum.txt");
    auto const starve = [](double, void *, void *) -> int { throw std::bad_alloc(); };
    try
    {
        VOZUtilitySolving::Evaluate(job.data.get(), starve, nullptr, nullptr);
        ADD_FAILURE() << "solved";
    }
    catch (CATError const & error)
    {
        EXPECT_THAT(std::string(error.Message()), HasSubstr("not enough memory"));
    }
    EXPECT_EQ(job.result->m_padStrainComponentsMid, nullptr);
    EXPECT_EQ(job.blank->m_padNodalCoords[3], 0.0);
    EXPECT_THAT(read("sum.txt"), HasSubstr("outcome              failed\nreason               there is not enough"));
    EXPECT_THAT(read("sum.log"), HasSubstr("failed: there is not enough memory"));
}

} // namespace
