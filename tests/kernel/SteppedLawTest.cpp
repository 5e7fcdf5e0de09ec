// SteppedLawTest.cpp: the law of a step that finds the sheet strained and stressed.

#include "material/SteppedLaw.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using voz::material::LawOptions;
using voz::material::MembraneLaw;
using voz::material::PlaneTensor;
using voz::material::StepHistory;

MembraneLaw mildSteel()
{
    voz::onestep::MaterialLaw law;
    law.thickness = 0.78e-3;
    law.rValue = 1.79;
    law.nValue = 0.2589;
    law.kValue = 565.32e6;
    law.yield = law.kValue * std::pow(0.007117, law.nValue);
    return MembraneLaw(law, LawOptions{});
}

PlaneTensor sum(PlaneTensor const & a, double factor, PlaneTensor const & b)
{
    return {a.m11 + factor * b.m11, a.m22 + factor * b.m22, a.m12 + factor * b.m12};
}

double size(PlaneTensor const & a)
{
    return std::sqrt(a.m11 * a.m11 + a.m22 * a.m22 + 2.0 * a.m12 * a.m12);
}

PlaneTensor drawn(std::mt19937 & random, double largest)
{
    std::uniform_real_distribution<double> part(-largest, largest);
    double const a = part(random), b = part(random);
    return {a, b, part(random)};
}

TEST(SteppedLaw, WithoutHistoryIsTheMembraneLaw)
{
    MembraneLaw const law = mildSteel();
    StepHistory const none = noHistory(law);
    for (double const h1 : {-0.4, -0.001, 0.0003, 0.1, 0.5})
        for (double const h2 : {-0.3, 0.0, 0.002, 0.3})
        {
            auto const plain = law.forces(h1, h2);
            auto const stepped = steppedForces(law, none, {h1, h2, 0.0});
            EXPECT_NEAR(stepped.force.m11, plain.n1, 1e-12 * std::abs(plain.stiffness));
            EXPECT_NEAR(stepped.force.m22, plain.n2, 1e-12 * std::abs(plain.stiffness));
            EXPECT_EQ(stepped.force.m12, 0.0);
            EXPECT_NEAR(stepped.stiffness, plain.stiffness, 1e-12 * plain.stiffness);
            EXPECT_NEAR(hardenedStrain(law, none, {h1, h2, 0.0}), plain.strain, 1e-14);
        }
}

TEST(SteppedLaw, ItsTangentIsTheDifferenceQuotient)
{
    MembraneLaw const law = mildSteel();
    std::mt19937 random(5);
    for (int trial = 0; trial < 200; ++trial)
    {
        StepHistory const history = afterStep(law, noHistory(law), drawn(random, 0.4));
        PlaneTensor const step = drawn(random, trial % 2 == 0 ? 0.3 : 0.01), way = drawn(random, 1.0);
        double const d = 1.0e-6;
        PlaneTensor const high = steppedForces(law, history, sum(step, d, way)).force;
        PlaneTensor const low = steppedForces(law, history, sum(step, -d, way)).force;
        PlaneTensor const slope = steppedTangent(law, history, step).along(way);
        PlaneTensor const quotient{(high.m11 - low.m11) / (2.0 * d), (high.m22 - low.m22) / (2.0 * d),
                                   (high.m12 - low.m12) / (2.0 * d)};
        EXPECT_LT(size(sum(quotient, -1.0, slope)), 1e-5 * size(slope)) << "trial " << trial;
    }
}

// A path cut in two is the path: stress, hardening and thickness of a proportional strain.
TEST(SteppedLaw, AContinuedStepLeavesNoTraceOfTheCut)
{
    MembraneLaw const law = mildSteel();
    for (double const share : {0.3, 0.5, 0.9})
    {
        PlaneTensor const whole{0.21, -0.12, 0.03};
        StepHistory const history = afterStep(law, noHistory(law), sum({}, share, whole));
        PlaneTensor const rest = sum({}, 1.0 - share, whole);
        PlaneTensor const once = steppedForces(law, noHistory(law), whole).force;
        PlaneTensor const twice = steppedForces(law, history, rest).force;
        EXPECT_LT(size(sum(once, -1.0, twice)), 1e-3 * size(once)) << share;
        EXPECT_NEAR(hardenedStrain(law, history, rest), hardenedStrain(law, noHistory(law), whole), 1e-12);
        EXPECT_NEAR(afterStep(law, history, rest).thickness, law.thickness() * std::exp(-0.09), 1e-12);
    }
}

TEST(SteppedLaw, TheStressAtTheBeginningIsThatOfTheEndBefore)
{
    MembraneLaw const law = mildSteel();
    PlaneTensor const first{0.3, -0.2, 0.0};
    PlaneTensor const end = steppedForces(law, noHistory(law), first).force;
    PlaneTensor const begin = steppedForces(law, afterStep(law, noHistory(law), first), {}).force;
    // The force before has the moderated thickness of its step, the one after the true one.
    EXPECT_NEAR(begin.m11 / begin.m22, end.m11 / end.m22, 1e-9);
    EXPECT_NEAR(begin.m11 / end.m11, 1.0, 0.02);
}

TEST(SteppedLaw, AReversalTurnsTheStressAboutAndKeepsTheHardening)
{
    MembraneLaw const law = mildSteel();
    StepHistory const history = afterStep(law, noHistory(law), {0.3, -0.15, 0.0});
    PlaneTensor const forward = steppedForces(law, history, {}).force;
    PlaneTensor const back = steppedForces(law, history, {-0.05, 0.025, 0.0}).force;
    EXPECT_GT(forward.m11, 0.0);
    EXPECT_LT(back.m11, -0.9 * forward.m11); // as strong the other way: isotropic hardening
    // A small return unloads and hardens nothing.
    double const reached = hardenedStrain(law, history, {});
    EXPECT_EQ(hardenedStrain(law, history, {-0.0005, 0.00025, 0.0}), reached);
    EXPECT_GT(hardenedStrain(law, history, {-0.05, 0.025, 0.0}), reached + 0.03);
}

} // namespace
