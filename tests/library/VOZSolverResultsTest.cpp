// VOZSolverResultsTest.cpp: from log strains to the three stores, against a second reading of the chain in doubles.

#include "VOZSolver.h"

#include "DriverFixture.h"
#include "VOZMaterialUtility.h"
#include "VOZSolverIOData.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using testing::ElementsAre;

namespace
{
constexpr double kPi = 3.14159265358979323846;

class Probe : public VOZSolver
{
public:
    using VOZSolver::ConvertAngleToO_PiInterval;
    using VOZSolver::EvalEquivalentStrain;
    using VOZSolver::EvalPrincipalAngle;
    using VOZSolver::EvalPrincipalStrains;
    using VOZSolver::EvalThickness;
    using VOZSolver::EvalZones;
    using VOZSolver::GetResults;
    using VOZSolver::SetDisplacementResults;
    using VOZSolver::SetElemResults;
    using VOZSolver::SetNodeResults;
    using VOZSolver::SetStressStrainResults;

    using VOZSolver::m_nNbIntegrationPoints;
    using VOZSolver::m_pResultMesh;
    using VOZSolver::m_pSolverIOData;
};

struct Strains
{
    double e11, e22, s;
};

std::vector<Strains> randomStrains(int count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> strain(-0.4, 0.4);
    std::vector<Strains> result;
    for (int i = 0; i < count; ++i)
        result.push_back({strain(generator), strain(generator), 2.0 * strain(generator)});
    return result;
}

// By the stretch of fibres: the elongation along a direction, its extremes found by halving a search grid.
struct Principal
{
    double major, minor, angle;
};

Principal principalBySearch(Strains const & strains)
{
    auto const along = [&](double a)
    {
        double const c = std::cos(a);
        double const s = std::sin(a);
        return strains.e11 * c * c + strains.e22 * s * s + strains.s * c * s;
    };
    double best = 0.0;
    for (double a = 0.0; a < kPi; a += kPi / 256)
        if (along(a) > along(best))
            best = a;
    for (double step = kPi / 256; step > 1e-12; step /= 2)
        for (double const a : {best - step, best + step})
            if (along(a) > along(best))
                best = a;
    best = best < 0.0 ? best + kPi : best > kPi ? best - kPi : best;
    return {along(best), along(best + kPi / 2), best};
}

double percent(double log)
{
    return 100.0 * std::expm1(log);
}
} // namespace

// Formulas

TEST(ResultFormulas, AnglesAreBroughtIntoZeroToPiWithBothEnds)
{
    Probe driver;
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(kPi), kPi);
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(0.0), 0.0);
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(-kPi), 0.0);
    EXPECT_DOUBLE_EQ(driver.ConvertAngleToO_PiInterval(-0.5), kPi - 0.5);
    EXPECT_DOUBLE_EQ(driver.ConvertAngleToO_PiInterval(3.0 * kPi + 0.25), 0.25);
    double const above = std::nextafter(kPi, 4.0);
    EXPECT_EQ(driver.ConvertAngleToO_PiInterval(above), above - kPi);
    EXPECT_TRUE(std::isnan(driver.ConvertAngleToO_PiInterval(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_TRUE(std::isinf(driver.ConvertAngleToO_PiInterval(std::numeric_limits<double>::infinity())));
}

TEST(ResultFormulas, PrincipalStrainsAndAngleAreThoseOfTheMostStretchedFibre)
{
    Probe driver;
    for (Strains const & strains : randomStrains(300, 11))
    {
        float major = 0.0F;
        float minor = 0.0F;
        driver.EvalPrincipalStrains(strains.e11, strains.e22, strains.s, major, minor);
        double const angle = driver.EvalPrincipalAngle(strains.e11, strains.e22, 0.5 * strains.s);
        Principal const expected = principalBySearch(strains);
        EXPECT_NEAR(major, expected.major, 1e-6);
        EXPECT_NEAR(minor, expected.minor, 1e-6);
        EXPECT_NEAR(std::sin(angle - expected.angle), 0.0, 1e-5);
        EXPECT_GE(angle, 0.0);
        EXPECT_LE(angle, kPi);
    }
}

// The measure belongs to the state, not to the axes it is written in: it equals that of the principal strains.
TEST(ResultFormulas, TheEquivalentStrainIsThatOfThePrincipalStrains)
{
    Probe driver;
    for (Strains const & strains : randomStrains(300, 12))
        for (double const r : {0.5, 1.0, 2.3})
        {
            Principal const p = principalBySearch(strains);
            double const sum = (p.major * p.major + p.minor * p.minor) * (r + 1.0) + 2.0 * r * p.major * p.minor;
            double const expected = std::sqrt((r + 2.0) / (3.0 * (r + 0.5)) * sum);
            EXPECT_NEAR(driver.EvalEquivalentStrain(r, strains.e11, strains.e22, strains.s), expected, 1e-9);
        }
}

// With r = 1 and constant volume a bar's measure is its elongation.
TEST(ResultFormulas, UniaxialTensionOfAnIsotropicSheetIsItsOwnMeasure)
{
    Probe driver;
    EXPECT_NEAR(driver.EvalEquivalentStrain(1.0, 0.2, -0.1, 0.0), 0.2, 1e-15);
    EXPECT_EQ(driver.EvalEquivalentStrain(1.0, 0.0, 0.0, 0.0), 0.0);
    EXPECT_EQ(driver.EvalThickness(0.8, 0.0), 0.8);
    EXPECT_DOUBLE_EQ(driver.EvalThickness(0.8, std::log(0.5)), 0.4);
}

class ResultContracts : public HostFixture
{
};

TEST_F(ResultContracts, RValueAndThicknessMustBePositiveAndTheWorkGoesOn)
{
    Probe driver;
    double const nan = std::numeric_limits<double>::quiet_NaN();
    for (double const bad : {0.0, -1.0, nan})
    {
        host.reports.clear();
        driver.EvalEquivalentStrain(bad, 0.1, 0.1, 0.0);
        ASSERT_EQ(host.reports.size(), 1U);
        EXPECT_EQ(host.reports[0].text, "i_dRValue > 0.0");
        host.reports.clear();
        double const thickness = driver.EvalThickness(bad, 0.0);
        EXPECT_TRUE(thickness == bad || std::isnan(bad));
        ASSERT_EQ(host.reports.size(), 1U);
        EXPECT_EQ(host.reports[0].text, "i_dInitialThickness > 0.0");
    }
}

// The record's fields

namespace
{
//   4---3---6
//   | 1 |2 /        one quadrilateral, one triangle
//   1---2 5: apart
VOZCatMesh pair()
{
    return samples::mesh(samples::Points{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {20, 10, 0}},
                         samples::Quads{{1, 2, 3, 4}, {2, 5, 3, 2}});
}

class BaseResults : public DriverFixture
{
protected:
    explicit BaseResults(VOZCatMesh const & i_part = pair()) : DriverFixture(i_part)
    {
        driver.m_pSolverIOData = &record;
        give(driver);
        fillRecord(4, 77);
    }

    // Random strains and stresses of a stride of i_points.
    void fillRecord(int i_points, unsigned i_seed)
    {
        points = i_points;
        driver.m_nNbIntegrationPoints = i_points;
        std::size_t const size = 3 * static_cast<std::size_t>(i_points * part.numElem());
        std::mt19937 generator(i_seed);
        std::uniform_real_distribution<double> value(-0.3, 0.3);
        for (auto field : {&VOZSolverIOData::m_padStrainComponentsTop, &VOZSolverIOData::m_padStrainComponentsMid,
                           &VOZSolverIOData::m_padStrainComponentsBot, &VOZSolverIOData::m_padEquivalentStress})
        {
            delete[](record.*field);
            record.*field = new double[size];
            for (std::size_t i = 0; i < size; ++i)
                (record.*field)[i] = value(generator);
        }
        for (std::size_t i = 0; i < size; ++i)
            record.m_padEquivalentStress[i] = std::fabs(record.m_padEquivalentStress[i]) * 1e9;
        if (record.m_pdPunchForce == nullptr)
            record.m_pdPunchForce = new double[1]{12345.678};
    }

    double const * layer(int i_layer) const
    {
        return i_layer == 0   ? record.m_padStrainComponentsTop
               : i_layer == 1 ? record.m_padStrainComponentsMid
                              : record.m_padStrainComponentsBot;
    }

    struct Point
    {
        double major = 0, minor = 0, theta = 0, thicknessStrain = 0, thickness = 0, equivalent = 0, stress = 0;
        int safety = 0, forming = 0;
    };

    Point reference(int i_point, int i_element, int i_layer) const
    {
        int const at = 3 * (points * (i_element - 1) + i_point);
        double const * const e = layer(i_layer) + at;
        VOZMaterial const & material = *property.material(property.propertyIndex(i_element));
        Principal const p = principalBySearch({e[0], e[1], e[2]});
        double const r = material.m_dRValue;
        double const v = (p.major * p.major + p.minor * p.minor) * (r + 1.0) + 2.0 * r * p.major * p.minor;
        Point result;
        result.major = percent(p.major);
        result.minor = percent(p.minor);
        result.theta = p.angle;
        result.thicknessStrain = percent(-p.major - p.minor);
        result.thickness = material.m_dThickness * std::exp(-p.major - p.minor);
        result.equivalent = percent(std::sqrt((r + 2.0) * v / (3.0 * r + 1.5)));
        result.stress = record.m_padEquivalentStress[at];
        return result;
    }

    Point elementReference(int e, int i_layer) const
    {
        bool const triangle = part.isTriangle(e) == 1;
        Point mean;
        int const count = triangle ? 1 : 4;
        for (int i = 0; i < count; ++i)
        {
            Point const point = reference(i, e, i_layer);
            mean.major += point.major / count;
            mean.minor += point.minor / count;
            mean.thicknessStrain += point.thicknessStrain / count;
            mean.thickness += point.thickness / count;
            mean.equivalent += point.equivalent / count;
            mean.stress += point.stress / count;
            mean.theta = triangle ? point.theta : 0.0;
        }
        VOZMaterial const * const material = property.material(property.propertyIndex(e));
        VOZMaterialUtility::EvalFormingSafetyZones(material, std::log1p(mean.major / 100), std::log1p(mean.minor / 100),
                                                   mean.forming, mean.safety);
        mean.safety = mean.safety == 5 ? 2 : mean.safety;
        mean.forming = mean.forming == 6 ? 1 : mean.forming;
        return mean;
    }

    // The stores against the whole chain in doubles.
    void expectStores(LayerStores & stores)
    {
        std::vector<std::vector<Point>> sums(3, std::vector<Point>(static_cast<std::size_t>(part.numNode()) + 1));
        std::vector<int> counts(static_cast<std::size_t>(part.numNode()) + 1);
        for (int e = 1; e <= part.numElem(); ++e)
            for (int l = 0; l < 3; ++l)
            {
                Point const wanted = elementReference(e, l);
                Result const & got = stores[static_cast<std::size_t>(l)];
                EXPECT_NEAR(got.strain(e, 0), wanted.major, 2e-5);
                EXPECT_NEAR(got.strain(e, 1), wanted.minor, 2e-5);
                EXPECT_NEAR(got.strain(e, 2), wanted.thicknessStrain, 2e-5);
                EXPECT_NEAR(got.thickness(e), wanted.thickness, 1e-9);
                EXPECT_NEAR(got.equivalentStrain(e), wanted.equivalent, 2e-5);
                EXPECT_NEAR(got.theta(e), wanted.theta, 1e-5);
                EXPECT_EQ(got.safety(e), wanted.safety) << e << " " << l;
                EXPECT_EQ(got.forming(e), wanted.forming) << e << " " << l;
                for (int k = 0; k < (part.isTriangle(e) == 1 ? 3 : 4); ++k)
                {
                    std::size_t const n = static_cast<std::size_t>(part.elem(e, k));
                    Point & sum = sums[static_cast<std::size_t>(l)][n];
                    sum.major += wanted.major;
                    sum.minor += wanted.minor;
                    sum.thicknessStrain += wanted.thicknessStrain;
                    sum.thickness += wanted.thickness;
                    sum.equivalent += wanted.equivalent;
                    sum.stress += wanted.stress;
                    sum.safety += wanted.safety;
                    sum.forming += wanted.forming;
                    counts[n] += l == 0 ? 1 : 0;
                }
            }
        for (int n = 1; n <= part.numNode(); ++n)
            for (int l = 0; l < 3; ++l)
            {
                std::size_t const i = static_cast<std::size_t>(n);
                Point const & wanted = sums[static_cast<std::size_t>(l)][i];
                Point const & mid = sums[1][i];
                int const count = counts[i];
                Result const & got = stores[static_cast<std::size_t>(l)];
                EXPECT_NEAR(got.nstrain(n, 0), wanted.major / count, 2e-5);
                EXPECT_NEAR(got.nstrain(n, 1), wanted.minor / count, 2e-5);
                EXPECT_NEAR(got.nstrain(n, 2), mid.thicknessStrain / count, 2e-5);
                EXPECT_NEAR(got.NodeThickness(n), wanted.thickness / count, 1e-9);
                EXPECT_NEAR(got.EquivalentStrain(n), wanted.equivalent / count, 2e-5);
                EXPECT_NEAR(got.stress(n), wanted.stress / count, 100.0);
                EXPECT_EQ(got.nsafety(n), mid.safety / count) << n;
                EXPECT_EQ(got.nforming(n), mid.forming / count) << n;
            }
    }

    int points = 4;
    VOZSolverIOData record;
    Probe driver;
};

class BaseResultsOfADome : public BaseResults
{
protected:
    BaseResultsOfADome() : BaseResults(dome(7, 5, true)) {}
};
} // namespace

TEST_F(BaseResults, APointIsReadAtItsPlaceInItsLayer)
{
    for (int l : {0, 1, 2, 3, -1})
        for (int e = 1; e <= 2; ++e)
            for (int i = 0; i < 4; ++i)
            {
                VOZResult const got = driver.GetResults(i, e, property.material(1)->m_dRValue, 0.0008, l);
                Point const wanted = reference(i, e, l == 0 || l == 2 ? l : 1);
                EXPECT_NEAR(got.m_fMajorStrain, wanted.major, 2e-5);
                EXPECT_NEAR(got.m_fMinorStrain, wanted.minor, 2e-5);
                EXPECT_NEAR(got.m_fThicknessStrain, wanted.thicknessStrain, 2e-5);
                EXPECT_NEAR(got.m_fThickness, wanted.thickness, 1e-9);
                EXPECT_NEAR(got.m_fEquivalentStrain, wanted.equivalent, 2e-5);
                EXPECT_EQ(got.m_fEquivalentStress, static_cast<float>(wanted.stress)); // the first of three
                EXPECT_NEAR(got.m_fTheta, wanted.theta, 1e-5);
                EXPECT_EQ(got.m_nSafety, 0);
                EXPECT_EQ(got.m_nForming, 0);
                EXPECT_EQ(got.m_nNeighbourElems, 0);
            }
}

// Single precision where it is named: the percent values are those of the float strains.
TEST_F(BaseResults, StrainsPassThroughSinglePrecision)
{
    double const strains[3] = {0.123456789, -0.0456789123, 0.0};
    std::copy(strains, strains + 3, record.m_padStrainComponentsMid);
    VOZResult const got = driver.GetResults(0, 1, 1.0, 0.0008, 1);
    float const major = static_cast<float>(0.123456789);
    float const minor = static_cast<float>(-0.0456789123);
    float const across = -(major + minor);
    auto const percentOf = [](float value) { return static_cast<float>((std::exp(double{value}) - 1.0) * 100.0); };
    EXPECT_EQ(got.m_fMajorStrain, percentOf(major));
    EXPECT_EQ(got.m_fMinorStrain, percentOf(minor));
    EXPECT_EQ(got.m_fThicknessStrain, percentOf(across));
    EXPECT_EQ(got.m_fThickness, static_cast<float>(0.0008 * std::exp(double{across})));
    EXPECT_EQ(got.m_fTheta, 0.0F);
}

TEST_F(BaseResults, NoStrainIsNoMeasureAndTheSheetsThickness)
{
    std::fill_n(record.m_padStrainComponentsMid, 24, 0.0);
    VOZResult const got = driver.GetResults(0, 1, 1.0, 0.0008, 1);
    EXPECT_EQ(got.m_fEquivalentStrain, 0.0F);
    EXPECT_EQ(got.m_fThickness, static_cast<float>(0.0008));
    EXPECT_EQ(got.m_fMajorStrain, 0.0F);
    EXPECT_EQ(got.m_fTheta, 0.0F);
}

TEST_F(BaseResults, StoresFillAsTheChainSaysForMixedElements)
{
    LayerStores stores(part);
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    expectStores(stores);
    EXPECT_EQ(stores.top.theta(1), 0.0F); // a quadrilateral has no angle
    EXPECT_NE(stores.top.theta(2), 0.0F);
    EXPECT_EQ(stores.top.PunchForce(), static_cast<float>(12345.678));
    EXPECT_EQ(stores.mid.PunchForce(), 0.0F);
    EXPECT_EQ(stores.bottom.PunchForce(), 0.0F);
}

TEST_F(BaseResultsOfADome, StoresFillAsTheChainSaysWithOnePointAnElement)
{
    property.sizeProperty(2);
    property.material(2)->m_dThickness = 0.002;
    property.material(2)->m_dRValue = 0.7;
    for (int e = 1; e <= part.numElem(); ++e)
        property.propertyId(e, 1 + e % 2);
    for (unsigned seed = 1; seed <= 3; ++seed)
    {
        fillRecord(1, seed);
        LayerStores stores(part);
        ASSERT_EQ(driver.GetResults(stores.layers()), 0);
        expectStores(stores);
    }
}

TEST_F(BaseResultsOfADome, LabelsThatAreShiftedChangeNothing)
{
    LayerStores before(part);
    ASSERT_EQ(driver.GetResults(before.layers()), 0);
    part.IdsOffset(500, 900);
    LayerStores after(part);
    ASSERT_EQ(driver.GetResults(after.layers()), 0);
    for (int n = 1; n <= part.numNode(); ++n)
        EXPECT_EQ(before.top.nstrain(n, 0), after.top.nstrain(n, 0));
}

// Zones

TEST_F(BaseResults, StrainsBecomeLogarithmsAboveMinus98PercentAndAFixedValueFromThereOn)
{
    struct
    {
        float major, minor;
        double logMajor, logMinor;
    } const rows[] = {
        {-97.9F, -97.9F, std::log(static_cast<double>(-97.9F) / 100.0 + 1.0),
         std::log(static_cast<double>(-97.9F) / 100.0 + 1.0)},
        {-97.9F, -98.0F, std::log(static_cast<double>(-97.9F) / 100.0 + 1.0), -3.91},
        {10.0F, -98.0F, std::log(0.1 + 1.0), -3.91},
        {-98.0F, -99.5F, -3.91, -3.91},
        {20.0F, 5.0F, std::log(0.2 + 1.0), std::log(0.05 + 1.0)},
    };
    for (auto const & row : rows)
    {
        VOZResult got;
        got.m_fMajorStrain = row.major;
        got.m_fMinorStrain = row.minor;
        driver.EvalZones(1, got);
        int forming = 0;
        int safety = 0;
        VOZMaterialUtility::EvalFormingSafetyZones(property.material(1), row.logMajor, row.logMinor, forming, safety);
        EXPECT_EQ(got.m_nForming, forming) << row.major;
        EXPECT_EQ(got.m_nSafety, safety) << row.major;
    }
}

TEST_F(BaseResults, SheetThatIsNotStrainedShowsTheCodesThatTheStoresKnow)
{
    int forming = 0;
    int safety = 0;
    VOZMaterialUtility::EvalFormingSafetyZones(property.material(1), 0.0, 0.0, forming, safety);
    ASSERT_EQ(forming, 6); // the kernel's own
    ASSERT_EQ(safety, 5);
    VOZResult got;
    driver.EvalZones(1, got);
    EXPECT_EQ(got.m_nForming, 1);
    EXPECT_EQ(got.m_nSafety, 2);
}

TEST_F(BaseResults, ZonesTakeTheMaterialOfTheElement)
{
    property.sizeProperty(2);
    property.material(2)->m_dFldZero = 5.0; // a sheet that tears at once
    property.material(1)->m_dFldZero = 50.0;
    property.propertyId(2, 2);
    for (int e : {1, 2})
    {
        VOZResult got;
        got.m_fMajorStrain = 20.0F;
        driver.EvalZones(e, got);
        EXPECT_EQ(got.m_nSafety, e == 1 ? 2 : 0);
    }
}

TEST_F(BaseResults, AnElementWithoutAMaterialHasNoZone)
{
    for (int const bad : {-1, 2, 1000000})
    {
        property.propertyId(1, bad);
        VOZResult got;
        got.m_fMajorStrain = 20.0F;
        got.m_nSafety = 9;
        driver.EvalZones(1, got);
        EXPECT_EQ(got.m_nSafety, 9);
    }
    property.sizePropertyIndex(0); // an index that is too short
    VOZResult got;
    driver.EvalZones(2, got); // is that of property 0
    driver.SetBoundaryConditions(meshes.data(), 1, nullptr, &symmetry, &friction, &fullHolder, &axis, 0, 0, 0);
    driver.EvalZones(1, got);
}

// A mean of zones falls to the lower one: 2, 2 and 0 make 1.
TEST_F(BaseResults, ZonesAtANodeAreTruncatedMeans)
{
    VOZResult sum;
    LayerStores stores(part);
    sum.m_nSafety = 3;
    sum.m_nForming = 4;
    driver.SetNodeResults(2, sum, stores.top);
    EXPECT_EQ(stores.top.nsafety(2), 3);
    EXPECT_EQ(stores.top.nforming(2), 4);
    property.material(1)->m_dFldZero = 30.0;
    // Element 1 lies in zone 0 (torn), element 2 in zone 2 or 3: nodes 2 and 3 have both.
    for (double * field :
         {record.m_padStrainComponentsTop, record.m_padStrainComponentsMid, record.m_padStrainComponentsBot})
    {
        std::fill_n(field, 24, 0.0);
        for (int i = 0; i < 4; ++i)
            field[3 * i] = 0.5;
        field[12] = 0.05;
    }
    ASSERT_EQ(driver.GetResults(stores.layers()), 0);
    int const safety = stores.mid.safety(1) + stores.mid.safety(2);
    int const forming = stores.mid.forming(1) + stores.mid.forming(2);
    EXPECT_NE(stores.mid.safety(1), stores.mid.safety(2));
    for (int l = 0; l < 3; ++l)
    {
        EXPECT_EQ(stores[static_cast<std::size_t>(l)].nsafety(2), safety / 2);
        EXPECT_EQ(stores[static_cast<std::size_t>(l)].nforming(3), forming / 2);
    }
}

TEST_F(BaseResults, FieldsGoToTheirPlacesInTheStore)
{
    VOZResult given;
    given.m_fMajorStrain = 1.0F;
    given.m_fMinorStrain = 2.0F;
    given.m_fTheta = 3.0F;
    given.m_fThicknessStrain = 4.0F;
    given.m_fThickness = 5.0F;
    given.m_fEquivalentStrain = 6.0F;
    given.m_fEquivalentStress = 7.0F;
    given.m_nSafety = 8;
    given.m_nForming = 9;
    Result result(part);
    driver.SetElemResults(2, given, result);
    EXPECT_EQ(result.strain(2, 0), 1.0F);
    EXPECT_EQ(result.strain(2, 1), 2.0F);
    EXPECT_EQ(result.strain(2, 2), 4.0F);
    EXPECT_EQ(result.theta(2), 3.0F);
    EXPECT_EQ(result.thickness(2), 5.0F);
    EXPECT_EQ(result.equivalentStrain(2), 6.0F);
    EXPECT_EQ(result.safety(2), 8);
    EXPECT_EQ(result.forming(2), 9);
    EXPECT_EQ(result.stress(2), 0.0F); // stress is the nodes'
    driver.SetNodeResults(4, given, result);
    EXPECT_EQ(result.nstrain(4, 0), 1.0F);
    EXPECT_EQ(result.nstrain(4, 1), 2.0F);
    EXPECT_EQ(result.nstrain(4, 2), 4.0F);
    EXPECT_EQ(result.NodeThickness(4), 5.0F);
    EXPECT_EQ(result.EquivalentStrain(4), 6.0F);
    EXPECT_EQ(result.stress(4), 7.0F);
    EXPECT_EQ(result.nsafety(4), 8);
    EXPECT_EQ(result.nforming(4), 9);
}

// Displacements

TEST_F(BaseResults, DisplacementsLeadFromThePartToTheFlatInMetres)
{
    record.m_padNodalCoordsFlatBlank = new double[15];
    for (int i = 0; i < 15; ++i)
        record.m_padNodalCoordsFlatBlank[i] = 0.01 * i - 0.05;
    LayerStores stores(part);
    driver.SetDisplacementResults(stores.layers());
    for (int n = 1; n <= 5; ++n)
        for (int k = 0; k < 3; ++k)
        {
            float const flat = static_cast<float>(record.m_padNodalCoordsFlatBlank[3 * (n - 1) + k]);
            float const wanted = static_cast<float>(flat - part.node(n, k) * 0.001);
            EXPECT_EQ(stores.top.disp(n, k), wanted);
            EXPECT_EQ(stores.top.dispOnBinder(n, k), wanted);
            EXPECT_EQ(stores.mid.disp(n, k), 0.0F);
            EXPECT_EQ(stores.bottom.dispOnBinder(n, k), 0.0F);
        }
}

TEST_F(BaseResults, WithABinderTheSecondDisplacementLeadsToTheBlankOnIt)
{
    record.m_padNodalCoordsFlatBlank = new double[15]();
    record.m_padNodalCoordsBlankOnBinder = new double[15];
    std::fill_n(record.m_padNodalCoordsBlankOnBinder, 15, 0.5);
    binder = dome(2, 2);
    meshes[1] = &binder;
    for (int const count : {1, 2})
    {
        meshCount = count;
        give(driver);
        LayerStores stores(part);
        driver.SetDisplacementResults(stores.layers());
        EXPECT_EQ(stores.top.disp(2, 0), static_cast<float>(-10.0 * 0.001));
        EXPECT_EQ(stores.top.dispOnBinder(2, 0), static_cast<float>((count == 2 ? 0.5 : 0.0) - 10.0 * 0.001));
    }
}

// What is missing

TEST_F(BaseResults, ANodeOutsideEveryElementIsReportedForEachLayer)
{
    part = samples::mesh(samples::Points{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {5, 5, 5}}, samples::Triangles{{1, 2, 3}});
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:pNodeRes[i][k].m_nNeighbourElems > 0",
                                        "AssertionFailed:pNodeRes[i][k].m_nNeighbourElems > 0",
                                        "AssertionFailed:pNodeRes[i][k].m_nNeighbourElems > 0"));
    EXPECT_EQ(stores.mid.nstrain(4, 0), 0.0F);
    EXPECT_NE(stores.mid.nstrain(3, 0), 0.0F);
}

TEST_F(BaseResults, ResultsGoOnTheResultMeshWhereThereIsOne)
{
    driver.m_pResultMesh = new VOZCatMesh(samples::triangles({{1, 2, 3}}));
    driver.m_nNbIntegrationPoints = 1;
    LayerStores stores(*driver.m_pResultMesh);
    driver.SetStressStrainResults(stores.layers());
    EXPECT_TRUE(host.reports.empty());
    EXPECT_NE(stores.mid.strain(1, 0), 0.0F);
}

TEST_F(BaseResults, WithoutAnyMeshItIsReported)
{
    meshes[0] = nullptr;
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_THAT(reported(), ElementsAre("AssertionFailed:pMesh != NULL"));
}

TEST_F(BaseResults, MissingArraysReadAsZerosAndAMissingRecordAsNone)
{
    for (auto field : {&VOZSolverIOData::m_padStrainComponentsTop, &VOZSolverIOData::m_padEquivalentStress})
    {
        delete[](record.*field);
        record.*field = nullptr;
    }
    LayerStores stores(part);
    EXPECT_EQ(driver.GetResults(stores.layers()), 0);
    EXPECT_EQ(stores.top.strain(1, 0), 0.0F);
    EXPECT_NE(stores.mid.strain(1, 0), 0.0F);
    EXPECT_EQ(stores.mid.stress(1), 0.0F);
    driver.m_pSolverIOData = nullptr;
    LayerStores others(part);
    EXPECT_EQ(driver.GetResults(others.layers()), 0);
    EXPECT_EQ(others.top.PunchForce(), 0.0F);
    EXPECT_EQ(others.mid.thickness(1), static_cast<float>(0.0008));
}

TEST_F(BaseResults, StoresThatAreMissingAreRefused)
{
    EXPECT_EQ(driver.GetResults(nullptr), E_FAIL);
    LayerStores stores(part);
    stores.pointers[1] = nullptr;
    EXPECT_EQ(driver.GetResults(stores.layers()), E_FAIL);
}

TEST_F(BaseResults, PointsBeyondTheRecordsMeshReadAsZeros)
{
    record.m_psMesh = new VOZBasicMeshData_s;
    record.m_psMesh->m_nNumElements = 2;
    record.m_nNodesPerElement = 4;
    driver.m_nNbIntegrationPoints = 1000000;
    EXPECT_EQ(driver.GetResults(0, 2, 1.0, 0.0008, 1).m_fMajorStrain, 0.0F);
    EXPECT_EQ(driver.GetResults(0, 0, 1.0, 0.0008, 1).m_fMajorStrain, 0.0F);
    EXPECT_NE(driver.GetResults(0, 1, 1.0, 0.0008, 1).m_fMajorStrain, 0.0F);
}
