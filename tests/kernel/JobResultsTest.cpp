// JobResultsTest.cpp: an answer of the solver that cannot be written.

#include "records/JobResults.h"
#include "JobFixture.h"
#include "SpoiledJobs.h"
#include "records/JobProblem.h"

#include <gtest/gtest.h>

#include <functional>

namespace
{

using namespace jobtest;
using voz::binder::Closing;
using voz::onestep::Problem;
using voz::onestep::Solution;

struct Answer
{
    Solution solution;
    Closing closing;
};

struct JobResults : testing::Test
{
    Job job = jobOf(patch(Cells::Triangles));
    Problem problem = ProblemOf(*job.data, *job.stage);
    Answer sound;

    JobResults()
    {
        for (auto const & x : problem.nodes)
            sound.solution.flat.push_back({x[0], x[1]});
        sound.closing.position = problem.nodes;
        for (std::vector<double> * const field : {&sound.solution.strains.mid, &sound.solution.strains.top,
                                                  &sound.solution.strains.bottom, &sound.solution.equivalentStress})
            field->assign(3 * problem.elements.size(), 0.01);
    }
};

TEST_F(JobResults, ASoundAnswerHasNoFlaw)
{
    EXPECT_EQ(FlawOf(problem, sound.solution, &sound.closing), "");
    EXPECT_EQ(FlawOf(problem, sound.solution, nullptr), "");
}

TEST_F(JobResults, AValueThatIsNoNumberIsAFlawWhereverItStands)
{
    std::function<void(Answer &)> const spoils[] = {
        [](Answer & a) { a.solution.flat[7][1] = kNaN; },
        [](Answer & a) { a.solution.strains.mid[100] = kInfinity; },
        [](Answer & a) { a.solution.strains.top[100] = kNaN; },
        [](Answer & a) { a.solution.strains.bottom.back() = kNaN; },
        [](Answer & a) { a.solution.equivalentStress[0] = kNaN; },
        [](Answer & a) { a.solution.punchForce = -kInfinity; },
        [](Answer & a) { a.closing.position.back()[2] = kNaN; },
    };
    for (auto const & spoil : spoils)
    {
        Answer answer = sound;
        spoil(answer);
        EXPECT_NE(FlawOf(problem, answer.solution, &answer.closing).find("no number"), std::string::npos);
    }
}

TEST_F(JobResults, AFieldOfAnotherSizeIsAFlaw)
{
    std::function<void(Answer &)> const spoils[] = {
        [](Answer & a) { a.solution.flat.pop_back(); },
        [](Answer & a) { a.solution.strains.mid.clear(); },
        [](Answer & a) { a.solution.strains.top.push_back(0.0); },
        [](Answer & a) { a.solution.equivalentStress.resize(3); },
        [](Answer & a) { a.solution.stride = 4; },
        [](Answer & a) { a.closing.position.clear(); },
    };
    for (auto const & spoil : spoils)
    {
        Answer answer = sound;
        spoil(answer);
        EXPECT_NE(FlawOf(problem, answer.solution, &answer.closing).find("another size"), std::string::npos);
    }
}

} // namespace
