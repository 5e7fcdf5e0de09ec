// MembraneLawTest.cpp. Hand values for mild steel, t0 = 0.78 mm: strains, then N/mm.

#include "material/MembraneLaw.h"
#include "OneStepMeshes.h"

#include <gtest/gtest.h>

using namespace voz::material;
using onesteptest::mildSteel;

namespace
{

// Least determinant of the acoustic tensor over all directions: it relates the force on a cut with normal nu to a jump
// of the flat's gradient along nu. Components in the eigenbasis; c are the eigenvalues of C.
double leastAcousticDeterminant(MembraneLaw const & i_law, double h1, double h2)
{
    MembraneLaw::Tangent const t = i_law.tangent(h1, h2);
    double const c1 = std::exp(-2.0 * h1), c2 = std::exp(-2.0 * h2);
    double const lam = std::abs(h1 - h2) < 1e-9 ? 1.0 / c1 : 2.0 * (h2 - h1) / (c1 - c2);
    double least = 1e300;
    for (int i = 0; i < 360; ++i)
    {
        double const x = std::cos(i * std::numbers::pi / 360), y = std::sin(i * std::numbers::pi / 360);
        double const shear = 0.5 * t.shear * lam;
        double const a11 = t.n11 * x * x / c1 + shear * y * y, a12 = t.n12 * x * y / c2 + shear * x * y;
        double const a21 = t.n21 * x * y / c1 + shear * x * y, a22 = t.n22 * y * y / c2 + shear * x * x;
        least = std::min(least, a11 * a22 - a12 * a21);
    }
    return least;
}

// Equivalent strain at which the tensor first becomes singular along a strain ratio; 2.5 if not before.
double limitStrain(MembraneLaw const & i_law, double i_ratio)
{
    for (int i = 1; i <= 1250; ++i)
    {
        double const e = 0.002 * i;
        double const h1 = e / i_law.equivalentStrain(1.0, i_ratio);
        if (!(leastAcousticDeterminant(i_law, h1, i_ratio * h1) > 0.0))
            return e;
    }
    return 2.5;
}

} // namespace

TEST(MembraneLaw, GivesTheHandValuesOfMildSteel)
{
    MembraneLaw const law(mildSteel(), {});
    double const rows[][9] = {
        {0.1, -0.05, 0.101689, 268.1251, 55.8889, 1410.513, 1791.612, 2003.848, 3793.121},
        {0.1, 0.1, 0.236220, 295.7431, 295.7431, 402.782, -242.945, -242.945, 402.782},
        {0.3, 0, 0.391104, 345.3107, 221.5434, 86.950, -56.140, 55.785, 641.227},
        {0.2, -0.3, 0.300160, 15.2604, -348.0828, 2010.947, 1323.818, 1677.303, 1501.710},
        {0.6, -0.6, 0.662271, 226.1036, -226.1036, 787.144, 613.481, 938.781, 1112.443},
        {0.002, -0.001, 0.002034, 147.4686, 30.7388, 32635.436, 53706.345, 53823.075, 105235.603}};
    for (auto const & row : rows)
    {
        MembraneLaw::Tangent const t = law.tangent(row[0], row[1]);
        EXPECT_NEAR(t.forces.strain, row[2], 6e-7);
        EXPECT_NEAR(t.forces.n1 * 1e-3, row[3], 6e-5 * 1.5);
        EXPECT_NEAR(t.forces.n2 * 1e-3, row[4], 6e-5 * 1.5);
        EXPECT_NEAR(t.n11 * 1e-3, row[5], 1e-3);
        EXPECT_NEAR(t.n12 * 1e-3, row[6], 1e-3);
        EXPECT_NEAR(t.n21 * 1e-3, row[7], 1e-3);
        EXPECT_NEAR(t.n22 * 1e-3, row[8], 1e-3);
        EXPECT_DOUBLE_EQ(law.forces(row[0], row[1]).n1, t.forces.n1);
    }
}

TEST(MembraneLaw, ShearStiffnessIsTheQuotientOfStressesAndStrains)
{
    MembraneLaw const law(mildSteel(), {});
    MembraneLaw::Tangent const t = law.tangent(0.2, -0.3);
    EXPECT_NEAR(t.shear / ((t.forces.n1 - t.forces.n2) / 0.5), 1.0, 1e-12);
}

TEST(MembraneLaw, UniaxialTestGivesTheCurve)
{
    for (double const r : {0.6, 1.0, 1.79, 2.5})
    {
        voz::onestep::MaterialLaw steel = mildSteel();
        steel.rValue = r;
        MembraneLaw const law(steel, {});
        double const h1 = 0.1, h2 = -h1 * r / (1.0 + r);
        EXPECT_NEAR(law.equivalentStrain(h1, h2), h1, 1e-15);
        MembraneLaw::Forces const f = law.forces(h1, h2);
        EXPECT_NEAR(f.n1, law.curve().stress(h1) * steel.thickness * std::exp(-(h1 + h2)), 1e-6);
        EXPECT_NEAR(f.n2, 0.0, 1e-6);
    }
}

TEST(MembraneLaw, ElasticAtTheOrigin)
{
    MembraneLaw::Tangent const t = MembraneLaw(mildSteel(), {}).tangent(0.0, 0.0);
    EXPECT_EQ(t.forces.n1, 0.0);
    EXPECT_EQ(t.forces.strain, 0.0);
    double const k2 = 2.79 * 2.79 / (1.0 + 2.0 * 1.79);
    EXPECT_NEAR(t.n11 / (210e9 * 0.78e-3 * k2), 1.0, 1e-12);
}

TEST(MembraneLaw, ThePlainLawLosesEllipticityWhereTheTableSaysSo)
{
    LawOptions plain;
    plain.kappa = plain.theta = 0.0;
    double const ratios[6] = {0.0, -0.27, -0.58, -1.0, -1.7, 1.0};
    struct
    {
        double n, r, limit[6];
    } const rows[] = {{0.2589, 1.79, {0.34, 0.38, 0.42, 0.54, 0.92, 0.56}},
                      {0.2, 1.0, {0.24, 0.26, 0.34, 0.46, 0.80, 0.54}},
                      {0.1, 1.0, {0.12, 0.14, 0.20, 0.32, 0.68, 0.44}}};
    for (auto const & row : rows)
    {
        voz::onestep::MaterialLaw steel = mildSteel();
        steel.nValue = row.n;
        steel.rValue = row.r;
        steel.yield = steel.kValue * std::pow(0.007117, row.n);
        MembraneLaw const law(steel, plain);
        for (std::size_t i = 0; i < 6; ++i)
            EXPECT_NEAR(limitStrain(law, ratios[i]), row.limit[i], 0.03) << "n " << row.n << " ratio " << ratios[i];
    }
}

TEST(MembraneLaw, FloorAndModerationKeepItEllipticToAStrainOfTwoAndAHalf)
{
    double const materials[][2] = {{0.259, 1.79}, {0.2, 1.0}, {0.1, 1.0}, {0.2, 0.6}};
    for (auto const & material : materials)
    {
        voz::onestep::MaterialLaw steel = mildSteel();
        steel.nValue = material[0];
        steel.rValue = material[1];
        steel.yield = steel.kValue * std::pow(0.007117, steel.nValue);
        MembraneLaw const law(steel, {});
        for (double const ratio : {0.0, -0.27, -0.58, -1.0, -1.7, 1.0})
            EXPECT_EQ(limitStrain(law, ratio), 2.5)
                << "n " << material[0] << " r " << material[1] << " ratio " << ratio;
    }
}
