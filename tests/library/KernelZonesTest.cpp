// KernelZonesTest.cpp: the kernel's zone codes, folded as the read-back folds them, are those of FormingLimit::zones
// for the same strains: at random, and on and beside every border.

#include "FormingLimit.h"
#include "VOZMaterial.h"
#include "VOZMaterialUtility.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <set>

namespace
{

struct Destroyed
{
    void operator()(VOZMaterial * material) const { material->Destroy(); }
};
using MaterialPtr = std::unique_ptr<VOZMaterial, Destroyed>;

struct Zones
{
    int forming = -99, safety = -99;
};

FormingLimit limitOf(VOZMaterial const & m)
{
    return FormingLimit(m.m_dRValue, m.m_dNValue, m.m_dThickness, m.m_dSafetyMargin, m.m_dPlaneStrainTol, m.m_dFldZero,
                        m.m_nFldType);
}

double trueStrain(double percent) // as the read-back makes it
{
    return percent > -98.0 ? std::log(percent / 100.0 + 1.0) : -3.91;
}

Zones kernelZones(VOZMaterial const & material, double major, double minor)
{
    Zones zones;
    VOZMaterialUtility::EvalFormingSafetyZones(&material, trueStrain(major), trueStrain(minor), zones.forming,
                                               zones.safety);
    zones.safety = zones.safety == 5 ? 2 : zones.safety;
    zones.forming = zones.forming == 6 ? 1 : zones.forming;
    return zones;
}

void expectSame(VOZMaterial const & m, double major, double minor, char const * where)
{
    Zones library;
    limitOf(m).zones(major, minor, library.forming, library.safety, m.m_dThinningLimit, m.m_dThinningMargin,
                     m.m_dShearLimit, m.m_dShearMargin, m.m_dWrinkleLimit);
    Zones const kernel = kernelZones(m, major, minor);
    EXPECT_EQ(kernel.forming, library.forming) << where << ", major " << major << ", minor " << minor;
    EXPECT_EQ(kernel.safety, library.safety) << where << ", major " << major << ", minor " << minor;
}

class KernelZones : public testing::Test
{
protected:
    double pick(double least, double greatest) { return std::uniform_real_distribution(least, greatest)(random); }
    bool toss() { return pick(0.0, 1.0) < 0.5; }

    MaterialPtr anyMaterial()
    {
        MaterialPtr m(VOZMaterial::Create());
        m->m_dThickness = pick(0.0002, 0.006);
        m->m_dNValue = pick(0.02, 0.4);
        m->m_dRValue = pick(0.3, 3.0);
        m->m_dFldZero = toss() ? pick(5.0, 60.0) : 0.0;
        m->m_nFldType = toss() ? 1 : 0;
        m->m_dSafetyMargin = toss() ? pick(0.0, 20.0) : 0.0;
        m->m_dPlaneStrainTol = toss() ? pick(0.0, 20.0) : 0.0;
        m->m_dThinningLimit = toss() ? -pick(0.05, 0.4) : 0.0;
        m->m_dThinningMargin = toss() ? -pick(0.05, 0.4) : 0.0;
        m->m_dShearLimit = toss() ? pick(0.05, 0.6) : 0.0;
        m->m_dShearMargin = toss() ? pick(0.0, 0.6) : 0.0;
        m->m_dWrinkleLimit = pick(-1.0, 1.0);
        return m;
    }

    std::mt19937 random{20261121};
};

TEST_F(KernelZones, AreTheLibrarysForRandomStrainsAndMaterials)
{
    std::set<int> forming, safety;
    for (int i = 0; i < 300; ++i)
    {
        MaterialPtr const material = anyMaterial();
        for (int k = 0; k < 300; ++k)
        {
            double const major = pick(-30.0, 90.0);
            double const minor = pick(-60.0, toss() ? 60.0 : 0.0);
            expectSame(*material, major, minor, "random");
            Zones const zones = kernelZones(*material, major, minor);
            forming.insert(zones.forming);
            safety.insert(zones.safety);
        }
    }
    EXPECT_EQ(forming, (std::set<int>{-1, 0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(safety, (std::set<int>{-1, 0, 1, 2, 3, 4}));
}

TEST_F(KernelZones, AreTheLibrarysOnTheCurvesAndBesideThem)
{
    for (int i = 0; i < 2000; ++i)
    {
        MaterialPtr const material = anyMaterial();
        FormingLimit const limit = limitOf(*material);
        double const minor = i % 4 == 0 ? 0.0 : pick(-30.0, 30.0);
        for (double offset : {0.0, 1e-7, -1e-7, 1e-3, -1e-3})
        {
            expectSame(*material, limit.limitCurveMajor(minor) + offset, minor, "limit curve");
            expectSame(*material, limit.safetyCurveMajor(minor) + offset, minor, "safety curve");
        }
    }
}

TEST_F(KernelZones, AreTheLibrarysOnTheLinesOfTheStrainState)
{
    for (int i = 0; i < 2000; ++i)
    {
        MaterialPtr const material = anyMaterial();
        double const r = material->m_dRValue;
        double const major = pick(0.0, 0.6); // true
        double const band = major * material->m_dPlaneStrainTol / 100.0;
        for (double minor : {0.0, band, -band, major, -r * major / (r + 1.0), -major, -(r + 1.0) * major / r})
            for (double scale : {1.0, 1.0 + 1e-14, 1.0 - 1e-14, 1.001, 0.999})
                expectSame(*material, limitOf(*material).trueToEngStrain(major),
                           limitOf(*material).trueToEngStrain(minor * scale), "strain state");
        for (double minor : {-1.0, 0.0, 1.0})
            for (double turned : {0.0, -0.0, -1e-9, -5.0})
                expectSame(*material, turned, minor, "no stretching");
    }
}

TEST_F(KernelZones, AreTheLibrarysOnTheThinningAndShearLimits)
{
    for (int i = 0; i < 2000; ++i)
    {
        MaterialPtr const material = anyMaterial();
        double const minor = pick(-0.3, 0.1); // true
        for (double thinning : {material->m_dThinningLimit, material->m_dThinningMargin})
            for (double offset : {0.0, 1e-14, -1e-14, 1e-6, -1e-6})
                expectSame(*material, limitOf(*material).trueToEngStrain(-thinning - minor + offset),
                           limitOf(*material).trueToEngStrain(minor), "thinning");
        for (double shear : {material->m_dShearLimit, material->m_dShearMargin})
            for (double offset : {0.0, 1e-14, -1e-14, 1e-6, -1e-6})
                expectSame(*material, limitOf(*material).trueToEngStrain(2.0 * std::log(shear + 1.0) + minor + offset),
                           limitOf(*material).trueToEngStrain(minor), "shear");
    }
}

TEST_F(KernelZones, AreTheLibrarysForNoStrainAndForTheLeastThatTheReadBackKnows)
{
    for (int i = 0; i < 500; ++i)
    {
        MaterialPtr const material = anyMaterial();
        for (double major : {0.0, 1e-7, 1e-3, 0.01, 0.02, -1e-3})
            for (double minor : {0.0, 1e-8, -1e-8, 1e-4, 0.01, -0.01, -0.02})
                expectSame(*material, major, minor, "hardly strained");
        expectSame(*material, 0.0, -97.9, "squeezed");
        expectSame(*material, -50.0, -97.9, "squeezed");
    }
}

} // namespace
