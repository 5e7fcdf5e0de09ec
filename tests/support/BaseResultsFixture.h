// BaseResultsFixture.h: the base driver over a record of random strains, and a second reading of the chain in doubles.

#ifndef BASERESULTSFIXTURE_H
#define BASERESULTSFIXTURE_H

#include "DriverFixture.h"
#include "VOZMaterialUtility.h"
#include "VOZSolverIOData.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace strainsearch
{
constexpr double kPi = 3.14159265358979323846;

struct Strains
{
    double e11, e22, s;
};

inline std::vector<Strains> randomStrains(int count, unsigned seed)
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

inline Principal principalBySearch(Strains const & strains)
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

inline double percent(double log)
{
    return 100.0 * std::expm1(log);
}
} // namespace strainsearch

class ResultsProbe : public VOZSolver
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

//   4---3---6
//   | 1 |2 /        one quadrilateral, one triangle
//   1---2 5: apart
inline VOZCatMesh pairOfElements()
{
    return samples::mesh(samples::Points{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}, {20, 10, 0}},
                         samples::Quads{{1, 2, 3, 4}, {2, 5, 3, 2}});
}

class BaseResults : public DriverFixture
{
protected:
    explicit BaseResults(VOZCatMesh const & i_part = pairOfElements()) : DriverFixture(i_part)
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
        strainsearch::Principal const p = strainsearch::principalBySearch({e[0], e[1], e[2]});
        double const r = material.m_dRValue;
        double const v = (p.major * p.major + p.minor * p.minor) * (r + 1.0) + 2.0 * r * p.major * p.minor;
        Point result;
        result.major = strainsearch::percent(p.major);
        result.minor = strainsearch::percent(p.minor);
        result.theta = p.angle;
        result.thicknessStrain = strainsearch::percent(-p.major - p.minor);
        result.thickness = material.m_dThickness * std::exp(-p.major - p.minor);
        result.equivalent = strainsearch::percent(std::sqrt((r + 2.0) * v / (3.0 * r + 1.5)));
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
    ResultsProbe driver;
};

class BaseResultsOfADome : public BaseResults
{
protected:
    BaseResultsOfADome() : BaseResults(dome(7, 5, true)) {}
};

#endif
