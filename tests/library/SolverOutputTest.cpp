// SolverOutputTest.cpp: the solver program's text, read into a Result.

#include "CommaLocale.h"
#include "DeckJobs.h"
#include "FolderFixture.h"

#include "CATError.h"
#include "FormingLimit.h"
#include "Result.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <random>

using deckjobs::goldenFolder;
using deckjobs::Job;
using deckjobs::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;

namespace
{
constexpr double kPi = 3.14159265358979323846;
constexpr int kNumNode = 6;

// The pieces of an output for the job "plain": a quadrilateral 1 2 3 4 and the triangles 4 3 5 and 5 3 6.
constexpr char kHead[] = "* one\n* two\n* three\n";
constexpr char kNodes[] = "1 1 0 0 1.5 0 0\n"
                          "2 2 0 0 2.5 0 0\n"
                          "3 2 1 1 2 1 0\n"
                          "4 1 1 0 1 1 0\n"
                          "5 1 2 0 1 2 0\n"
                          "6 2 2 -0.5 2 2.25 0\n";
constexpr char kQuad[] = "1 0.01 -1 4 100 9 0.1\n"
                         "1 0.02 -2 5 200 9 0.2\n"
                         "1 0.03 -3 6 300 9 0.3\n"
                         "1 0.06 -4 9 400 9 0.6\n";
constexpr char kTriangles[] = "2 0.05 -10 20 1000 30 0.5\n"
                              "3 0.04 -8 -2 2000 40 1.5\n";
constexpr char kTail[] = "*\n*\npunch force 10\n";

// Splits like the class itself.
class OpenSolver : public Solver
{
public:
    explicit OpenSolver(Solver const & i_solver) : Solver(i_solver) {}
    using Solver::tokens;
};

class SolverOutput : public FolderFixture
{
protected:
    SolverOutput() : job(goldenFolder() / "plain.json"), result(job.mesh)
    {
        config("ThinningLimit=-0.2877\nThinningMargin=-0.2231\nShearLimit=1.2\nShearMargin=1.0\nWrinkleLimit=0.05\n");
        for (int p = 1; p <= 2; ++p)
            job.property.formingLimit(p) = FormingLimit(1.5, 0.22, 0.00127, 10.0, 5.0, 30.0 * p, 0);
        for (int i = 0; i <= kNumNode; ++i)
        {
            result.EquivalentStrain(i, 0.0f);
            result.stress(i, 0.0f);
        }
    }

    void read(std::string const & text, std::string const & name = "deck.fpo")
    {
        writeFile(name, text);
        job.solver().read(name.c_str(), result, false);
    }
    static std::string whole() { return std::string(kHead) + kNodes + "*\n" + kQuad + kTriangles + kTail; }
    std::array<float, 3> disp(int n) const { return {result.disp1(n, 0), result.disp1(n, 1), result.disp1(n, 2)}; }
    std::array<float, 3> onBinder(int n) const
    {
        return {result.dispOnBinder1(n, 0), result.dispOnBinder1(n, 1), result.dispOnBinder1(n, 2)};
    }
    static std::array<float, 3> row(double x, double y, double z)
    {
        return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    }

    Job job;
    Result result;
};
} // namespace

// Frame: local x is global y, local y is global -x, origin (10, 20, 30). Node 1 lies at local (25.4, 0, 0).
TEST_F(SolverOutput, TurnsPositionsInInchesIntoGlobalDisplacements)
{
    read(whole());
    auto const isAbout = [](std::array<float, 3> const & got, double x, double y, double z)
    { return std::hypot(got[0] - x, got[1] - y, got[2] - z) < 2.0e-6; };
    EXPECT_TRUE(isAbout(onBinder(1), 0, 0, 0));
    EXPECT_TRUE(isAbout(disp(1), 0, 12.7, 0)); // half an inch along local x
    EXPECT_TRUE(isAbout(disp(3), 0, 0, -25.4));
    float const x = static_cast<float>(2.25 * 25.4); // positions go through single precision before they are turned
    EXPECT_EQ(disp(6),
              row(10.0 - static_cast<double>(x) + 40.8, static_cast<double>(50.8f) + 20.0 - 70.8, 30.0 - 17.3));
}

TEST_F(SolverOutput, ReadsATriangleFromOneLine)
{
    read(whole());
    EXPECT_FLOAT_EQ(result.thickness(2), 0.05f * 25.4f);
    EXPECT_EQ(result.strain(2, 0), 20.0f);
    EXPECT_EQ(result.strain(2, 1), -10.0f);
    EXPECT_FLOAT_EQ(result.strain(2, 2), static_cast<float>(0.5 * 180.0 / kPi));
    EXPECT_EQ(result.stress(2), 1000.0f * 6895.0f);
    EXPECT_EQ(result.EquivalentStrain(2), 30.0f);
}

TEST_F(SolverOutput, ReadsAQuadrilateralFromFourWithItsOwnRules)
{
    read(whole());
    EXPECT_FLOAT_EQ(result.thickness(1), 0.03f * 25.4f);
    EXPECT_EQ(result.strain(1, 0), 6.0f);
    EXPECT_EQ(result.strain(1, 1), -2.5f);
    EXPECT_FLOAT_EQ(result.strain(1, 2), static_cast<float>(1.2 * 180.0 / kPi)); // four times the mean
    EXPECT_EQ(result.stress(1), 250.0f);                                         // no factor
    EXPECT_EQ(result.EquivalentStrain(1), 0.0f);                                 // not written
}

TEST_F(SolverOutput, AveragesStrainsAtTheNodes)
{
    read(whole());
    // Corner k of the quadrilateral brings line k: node 1 has line 1 alone, node 3 line 3 and both triangles.
    EXPECT_EQ(result.nstrain(1, 0), 4.0f);
    EXPECT_EQ(result.nstrain(1, 1), -1.0f);
    EXPECT_FLOAT_EQ(result.nstrain(3, 0), static_cast<float>((6.0 + 20.0 - 2.0) / 3.0));
    EXPECT_FLOAT_EQ(result.nstrain(3, 1), static_cast<float>((-3.0 - 10.0 - 8.0) / 3.0));
    EXPECT_FLOAT_EQ(result.nstrain(4, 0), 14.5f);
    double const thinning = 100.0 * (1.0 / (1.04 * 0.99) - 1.0); // constant volume
    EXPECT_NEAR(result.nstrain(1, 2), thinning, 1.0e-5);
}

TEST_F(SolverOutput, JudgesEachElementByTheLimitOfItsProperty)
{
    read(whole());
    for (int e = 1; e <= 3; ++e)
    {
        int forming = 0;
        int safety = 0;
        job.property.formingLimit(e == 1 ? 1 : 2)
            .zones(result.strain(e, 0), result.strain(e, 1), forming, safety, -0.2877, -0.2231, 1.2, 1.0, 0.05);
        EXPECT_EQ(result.forming(e), forming) << e;
        EXPECT_EQ(result.safety(e), safety) << e;
    }
    EXPECT_NE(result.safety(2), result.safety(3)); // or the test would see nothing
}

TEST_F(SolverOutput, CutsTheMeanOfZoneCodesTowardsZero)
{
    read(whole());
    auto const mean = [](std::initializer_list<int> codes)
    {
        int sum = 0;
        for (int const code : codes)
            sum += code;
        return sum / static_cast<int>(codes.size());
    };
    EXPECT_EQ(result.nsafety(3), mean({result.safety(1), result.safety(2), result.safety(3)}));
    EXPECT_EQ(result.nforming(3), mean({result.forming(1), result.forming(2), result.forming(3)}));
    EXPECT_EQ(result.nsafety(5), mean({result.safety(2), result.safety(3)}));
    EXPECT_EQ(result.nsafety(1), result.safety(1));
    EXPECT_EQ(result.nsafety(0), 0);
}

TEST_F(SolverOutput, ReadsThePunchForceInNewtons)
{
    read(whole());
    EXPECT_EQ(result.PunchForce(), static_cast<float>(44.48222));
}

TEST_F(SolverOutput, HasNoPunchForceWithoutItsLine)
{
    result.PunchForce(7.0);
    read(std::string(kHead) + kNodes + "*\n" + kQuad + kTriangles + "*\n*\n");
    EXPECT_EQ(result.PunchForce(), 0.0f);
    result.PunchForce(7.0);
    read(std::string(kHead) + kNodes + "*\n" + kQuad + kTriangles + "*\n*\n\n");
    EXPECT_EQ(result.PunchForce(), 0.0f);
}

TEST_F(SolverOutput, DoesNotReadTheNumbersAtTheHeadOfARow)
{
    std::string text = whole();
    read(text);
    auto const before = disp(1);
    text.replace(text.find("1 1 0 0 1.5"), 1, "999");
    read(text);
    EXPECT_EQ(disp(1), before);
}

TEST_F(SolverOutput, KeepsOldValuesWhereTheElementsEndEarly)
{
    for (char const * end : {"", "*\n*\n"})
    {
        result.thickness(3, 77.0f);
        result.strain(3, 0, 50.0f);
        result.strain(3, 1, -20.0f);
        result.forming(3, 99);
        read(std::string(kHead) + kNodes + "*\n" + kQuad + "2 0.05 -10 20 1000 30 0.5\n" + end);
        EXPECT_EQ(result.thickness(3), 77.0f);
        EXPECT_EQ(result.strain(3, 0), 50.0f);
        EXPECT_NE(result.forming(3), 99); // zones are found for all elements
        EXPECT_EQ(result.thickness(2), 0.05f * 25.4f);
        EXPECT_EQ(result.nstrain(6, 0), 0.0f); // no element reached it
        EXPECT_EQ(result.nstrain(6, 2), 0.0f);
        EXPECT_EQ(result.PunchForce(), 0.0f);
    }
}

TEST_F(SolverOutput, LeavesAQuadrilateralAloneThatBreaksOff)
{
    result.thickness(1, 77.0f);
    read(std::string(kHead) + kNodes + "*\n1 0.01 -1 4 100 9 0.1\n1 0.02 -2 5 200 9 0.2\n");
    EXPECT_EQ(result.thickness(1), 77.0f);
    EXPECT_EQ(result.nstrain(1, 0), 0.0f);
}

TEST_F(SolverOutput, AddsTheZonesOfNodesThatNoLineReached)
{
    read(std::string(kHead) + kNodes + "*\n"); // no element rows: every count is 0, sums stay sums
    EXPECT_EQ(result.nsafety(3), result.safety(1) + result.safety(2) + result.safety(3));
}

TEST_F(SolverOutput, RaisesAnErrorWhereTheElementSectionIsNotOpened)
{
    for (std::string const & text :
         {std::string(kHead) + kNodes,                                    // ends with the nodes
          std::string(kHead) + kNodes + kQuad,                            // no separator
          std::string(kHead) + "1 1 0 0 1 0 0\n*\n" + kQuad + kTriangles, // the separator ends the nodes instead
          std::string(kHead) + kNodes + "7 0 0 0 0 0 0\n*\n" + kQuad, std::string()})
    {
        try
        {
            read(text);
            ADD_FAILURE() << "read without an error: " << text;
        }
        catch (CATMfErrUpdate const & error)
        {
            EXPECT_STREQ(error.File(), "Solver");
            EXPECT_GT(error.Line(), 0);
            EXPECT_THAT(error.Message(), HasSubstr("separator"));
        }
    }
}

TEST_F(SolverOutput, RaisesAnErrorWhereTheFileCannotBeOpened)
{
    try
    {
        job.solver().read("missing.fpo", result, true);
        FAIL();
    }
    catch (CATMfErrUpdate const & error)
    {
        EXPECT_STREQ(error.File(), "Solver");
        EXPECT_GT(error.Line(), 0);
        EXPECT_THAT(error.Message(), HasSubstr("missing.fpo"));
    }
    EXPECT_THROW(job.solver().read(".", result, false), CATMfErrUpdate); // a folder
}

TEST_F(SolverOutput, RaisesAnErrorForARowThatBreaksOff)
{
    EXPECT_THROW(read(std::string(kHead) + "1 1 0 0 1\n" + kNodes), CATMfErrUpdate);
    EXPECT_THROW(read(std::string(kHead) + kNodes + "*\n1 0.01 -1\n"), CATMfErrUpdate);
}

#if defined(__linux__)
TEST_F(SolverOutput, ClosesItsFileOnEveryWay)
{
    auto const openFiles = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    };
    auto const before = openFiles();
    read(whole());
    read(whole(), "deck.spo");
    EXPECT_THROW(read(kHead), CATMfErrUpdate);
    host.environment.clear();
    read(whole());
    EXPECT_EQ(openFiles(), before);
}
#endif

TEST_F(SolverOutput, FillsNodeStrainsButNoZonesWithoutAConfiguration)
{
    host.environment.clear();
    result.PunchForce(7.0);
    result.forming(2, 99);
    result.nsafety(3, 98);
    read(whole());
    EXPECT_EQ(result.nstrain(1, 0), 4.0f);
    EXPECT_EQ(result.forming(2), 99);
    EXPECT_EQ(result.nsafety(3), 98);
    EXPECT_EQ(result.PunchForce(), 7.0f);
}

TEST_F(SolverOutput, NamesACornerThatIsNoNodeAndStaysInsideItsArrays)
{
    for (int const bad : {-5, kNumNode + 2, 2000000000})
    {
        job.mesh.elem(2, 1, bad + job.mesh.GetFirstNodeNumber());
        testing::internal::CaptureStdout();
        read(whole());
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "Solver::read--nums over limit\n") << bad;
        EXPECT_FLOAT_EQ(result.nstrain(3, 0), 2.0f); // the row went elsewhere
    }
    job.mesh.elem(2, 1, kNumNode + 1 + job.mesh.GetFirstNodeNumber());
    testing::internal::CaptureStdout();
    read(whole());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(SolverOutput, StaysInsideAResultOfASmallerMesh)
{
    VOZCatMesh const small(2, 1);
    Result few(small);
    writeFile("deck.fpo", whole());
    job.solver().read("deck.fpo", few, false);
    EXPECT_FALSE(host.reports.empty());
    EXPECT_EQ(few.strain(1, 0), 6.0f);
    EXPECT_EQ(few.stress(1), 250.0f);
    EXPECT_EQ(few.nstrain(1, 0), 4.0f);
}

TEST_F(SolverOutput, SplitsLinesLongerThan254Characters)
{
    // The rest of such a line counts as a line of its own: here it is the row of node 2.
    std::string nodes = kNodes;
    std::string first = nodes.substr(0, nodes.find('\n'));
    first.resize(254, ' ');
    nodes.erase(nodes.find('\n'), 1);
    nodes.replace(0, std::string("1 1 0 0 1.5 0 0").size(), first);
    read(std::string(kHead) + nodes + "*\n" + kQuad + kTriangles + kTail);
    EXPECT_EQ(disp(2), row(0, 12.7f, 0));
    EXPECT_EQ(result.PunchForce(), static_cast<float>(44.48222));
}

TEST_F(SolverOutput, NeverLeavesItsMemoryWhereverTheTextEnds)
{
    std::string const text = whole();
    for (std::size_t length = 0; length <= text.size(); ++length)
        try
        {
            read(text.substr(0, length));
        }
        catch (CATMfErrUpdate const &)
        {
        }
    SUCCEED();
}

TEST_F(SolverOutput, SurvivesDamagedText)
{
    std::mt19937 random(20261121);
    auto const below = [&random](std::size_t n)
    { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random); };
    constexpr char kBytes[] = "0123456789 -.*\n\teEnaif\0\r";
    for (int trial = 0; trial < 600; ++trial)
    {
        std::string text = whole();
        for (std::size_t i = below(5) + 1; i > 0; --i)
        {
            std::size_t const at = below(text.size());
            if (below(2) == 0)
                text[at] = kBytes[below(sizeof kBytes)];
            else
                text.insert(at, text.substr(below(text.size()), below(300)));
        }
        for (char const * name : {"deck.fpo", "deck.spo"})
            try
            {
                read(text, name);
            }
            catch (CATMfErrUpdate const &)
            {
            }
    }
    SUCCEED();
}

// Springback

TEST_F(SolverOutput, ReadsCoordinatesFromSpringbackText)
{
    std::string const head = "*1\n*2\n*3\nskipped\n*4\n*5\n*6\n*7\nheading\nheading\n";
    result.disp(1, 0, 5.0f);
    read(head + "1 1 2 3\n2 -1 0.5 0\n*\n", "deck.spo");
    EXPECT_EQ(onBinder(1), row(25.4, 50.8, 76.2)); // millimetres, neither turned nor taken from the mesh
    EXPECT_EQ(onBinder(2), row(-25.4, 12.7, 0));
    EXPECT_EQ(onBinder(3), row(0, 0, 0));
    EXPECT_EQ(result.disp1(1, 0), 5.0f);
}

TEST_F(SolverOutput, TakesAPathWithSpoAnywhereForSpringback)
{
    std::filesystem::create_directory("job.spoiled");
    read("*\n*\n*\n*\n*\n*\n*\n\n\n1 1 2 3\n", "job.spoiled/deck.fpo");
    EXPECT_EQ(onBinder(1), row(25.4, 50.8, 76.2));
}

TEST_F(SolverOutput, ReadsNothingFromASpringbackTextThatEndsEarly)
{
    read("*\n*\n*\n*\n*\n", "deck.spo");
    EXPECT_EQ(onBinder(1), row(0, 0, 0));
}

// Tokens

TEST_F(SolverOutput, SplitsALineIntoAtMostTenTokens)
{
    OpenSolver solver(job.solver());
    std::array<char *, 10> slots{};
    auto const count = [&](std::string line)
    {
        slots.fill(nullptr);
        return solver.tokens(line.data(), slots.data());
    };
    EXPECT_EQ(count(""), 2);
    EXPECT_EQ(slots[0], nullptr);
    EXPECT_EQ(slots[1], nullptr);
    EXPECT_EQ(count(" \t\n"), 2);
    EXPECT_EQ(count("one"), 2);
    EXPECT_EQ(count(" a \t b\tc\n"), 4);
    EXPECT_EQ(count("1 2 3 4 5 6 7 8 9"), 10);
    EXPECT_EQ(slots[9], nullptr);
    EXPECT_EQ(count("1 2 3 4 5 6 7 8 9 10 11 12"), 10);

    std::string line = "\t1.5  two\nthree";
    slots.fill(nullptr);
    EXPECT_EQ(solver.tokens(line.data(), slots.data()), 4);
    EXPECT_STREQ(slots[0], "1.5");
    EXPECT_STREQ(slots[1], "two");
    EXPECT_STREQ(slots[2], "three");
    EXPECT_EQ(slots[3], nullptr);
}

// Locale

TEST_F(SolverOutput, RoundsThroughSinglePrecisionUnderALocaleWithADecimalComma)
{
    double const inches = 0.1;
    auto const exact = static_cast<float>(inches * 25.4);
    auto const rounded = static_cast<float>(static_cast<double>(static_cast<float>(inches)) * 25.4);
    std::string const text = "*\n*\n*\n*\n*\n*\n*\n\n\n1 0.1 2.5 -1e-1\n";
    read(text, "deck.spo");
    EXPECT_EQ(result.dispOnBinder1(1, 0), exact);
    CommaLocale const comma;
    if (std::localeconv()->decimal_point[0] != ',')
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    read(text, "deck.spo");
    EXPECT_EQ(result.dispOnBinder1(1, 0), rounded);
    EXPECT_EQ(result.dispOnBinder1(1, 1), 63.5f); // the point is the point
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
}
