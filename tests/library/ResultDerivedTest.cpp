// ResultDerivedTest.cpp: the derived values against second readings of their rules.

#include "ResultFixture.h"

#include "ElemProperty.h"
#include "Material.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>
#include <type_traits>

using namespace resulttest;

static_assert(std::has_virtual_destructor_v<EnergyCalculator>);

namespace
{
// Hands the protected averaging out.
class OpenResult : public Result
{
public:
    using Result::AverageResultsAtNodes;
    using Result::Result;
};

ElemProperty propertyWith(FormingLimit const & first, FormingLimit const & second, int elems)
{
    ElemProperty property;
    property.sizeProperty(2);
    property.formingLimit(1) = first;
    property.formingLimit(2) = second;
    property.sizePropertyIndex(elems);
    for (int e = 1; e <= elems; ++e)
        property.propertyId(e, 1 + e % 2);
    return property;
}
} // namespace

TEST_F(ResultStore, ComputeGivesThicknessStrainAndZonesByTheElementsOwnLimit)
{
    config("ThinningLimit=-0.3\nThinningMargin=-0.2\nShearLimit=0.5\nShearMargin=0.4\nWrinkleLimit=0.1\n");
    FormingLimit const one(1.0, 0.2, 1.0, 10.0, 5.0, 40.0, 0);
    FormingLimit const two(1.0, 0.2, 1.0, 10.0, 5.0, 15.0, 0);
    ElemProperty const property = propertyWith(one, two, 2);
    for (int e = 1; e <= 2; ++e)
    {
        result.strain(e, 0, 18.0F);
        result.strain(e, 1, 5.0F);
    }
    result.compute(property);
    float const expected = static_cast<float>((std::exp(-std::log(1.18) - std::log(1.05)) - 1.0) * 100.0);
    EXPECT_FLOAT_EQ(result.thickStrain(1), expected);
    EXPECT_FLOAT_EQ(result.thickStrain(2), expected);
    EXPECT_EQ(result.forming(1), 0);
    EXPECT_EQ(result.safety(2), 1); // limit 1: E3 is -0.214, beyond the margin
    EXPECT_EQ(result.safety(1), 1); // limit 2: in its marginal band
    result.strain(1, 0, 60.0F);
    result.compute(property);
    EXPECT_EQ(result.safety(1), 0);
    EXPECT_EQ(result.safety(2), 1);
    EXPECT_EQ(result.thickStrain(0), 0.0F); // index 0 is no element
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, ComputeStoresFormingAndSafetyApart)
{
    config("");
    FormingLimit const limit(1.0, 0.2, 1.0, 10.0, 5.0, 80.0, 0);
    result.strain(1, 0, 10.0F);
    result.strain(1, 1, -30.0F);
    result.compute(propertyWith(limit, limit, 2));
    EXPECT_EQ(result.forming(1), 5);
    EXPECT_EQ(result.safety(1), 4);
}

TEST_F(ResultStore, ComputeTakesTheFormingLimitsOwnStrainConversion)
{
    config("");
    FormingLimit const limit(1.0, 0.2, 1.0, 10.0, 5.0, 80.0, 0);
    result.strain(1, 0, 0.0F);
    result.strain(1, 1, -99.5F);
    result.compute(propertyWith(limit, limit, 2));
    EXPECT_FLOAT_EQ(result.thickStrain(1), static_cast<float>((std::exp(5.0) - 1.0) * 100.0));
}

TEST_F(ResultStore, ALimitThatIsMissingIsOff)
{
    FormingLimit const limit(1.0, 0.2, 1.0, 10.0, 5.0, 500.0, 0);
    ElemProperty const property = propertyWith(limit, limit, 2);
    result.strain(1, 0, 60.0F);
    result.strain(1, 1, -10.0F);
    struct
    {
        char const * text;
        int safety;
    } const rows[] = {{"", 2},
                      {"ThinningLimit=-0.1\nShearLimit=0.1\n", 0},
                      {"ThinningLimit=-0.9\n", 1}, // its margin is 0
                      {"ThinningMargin=-0.01\nShearMargin=0.01\n", 2},
                      {"ShearLimit=0.9\n", 1},
                      {"ShearLimit=0.9\nShearMargin=0.8\n", 2},
                      {"ShearLimit=0.2\n", 0}};
    for (auto const & row : rows)
    {
        config(row.text);
        result.compute(property);
        EXPECT_EQ(result.safety(1), row.safety) << row.text;
    }
}

TEST_F(ResultStore, ComputeWithoutAConfigurationFileChangesNothing)
{
    host.environment.clear();
    FormingLimit const limit(1.0, 0.2, 1.0, 10.0, 5.0, 10.0, 0);
    result.strain(1, 0, 60.0F);
    result.safety(1, 77);
    result.forming(1, 78);
    result.thickStrain(1, 79.0F);
    result.compute(propertyWith(limit, limit, 2));
    EXPECT_EQ(result.safety(1), 77);
    EXPECT_EQ(result.forming(1), 78);
    EXPECT_EQ(result.thickStrain(1), 79.0F);
    EXPECT_TRUE(host.reports.empty());
}

// Values worked out apart from this program, with each product rounded where the definition rounds it.
TEST_F(ResultStore, EquivalentStrainIsTheSquaredFormInItsMixedPrecision)
{
    struct
    {
        double r;
        float major, minor;
        float expected;
    } const rows[] = {{1.4, 12.34F, -5.67F, 0x1.6f3608p-7F},
                      {1.9, 33.3F, 7.7F, 0x1.6f68e6p-3F},
                      {0.7, 0.1F, -0.3F, 0x1.241ef6p-17F},
                      {1.0, 80.1F, -44.4F, 0x1.07a836p-1F}};
    for (auto const & row : rows)
    {
        result.strain(2, 0, row.major);
        result.strain(2, 1, row.minor);
        result.EquivalentStrain(Material(1.0, row.r, 0.2, 500.0, 200.0));
        EXPECT_EQ(result.EquivalentStrain(2), row.expected) << row.r;
    }
}

// The product of two floats is exact in double, so that rounding it once is the product in single precision.
TEST_F(ResultStore, EquivalentStrainAgreesWithASecondReadingOnRandomStrains)
{
    auto const single = [](double x) { return static_cast<double>(static_cast<float>(x)); };
    std::mt19937 random(31);
    std::uniform_real_distribution<float> strains(-70.0F, 120.0F);
    std::uniform_real_distribution<double> anisotropies(0.3, 2.8);
    int inDoubleAlone = 0;
    for (int i = 0; i < 5000; ++i)
    {
        float const major = strains(random);
        float const minor = strains(random);
        double const r = anisotropies(random);
        result.strain(1, 0, major);
        result.strain(1, 1, minor);
        result.EquivalentStrain(Material(1.0, r, 0.2, 500.0, 200.0));
        double const e1 = major;
        double const e2 = minor;
        double const e3 = -e1 * 0.01 - e2 * 0.01;
        double const shared = single(0.5 / (r + 1.0)) * e3 * e3;
        double const mixed = single(r / (r + 1.0)) * 2.0 * e1 * e2 * 0.01 * 0.01;
        float const expected =
            static_cast<float>(single(e2 * e2) * 0.01 * 0.01 + single(e1 * e1) * 0.01 * 0.01 + shared + mixed);
        ASSERT_EQ(result.EquivalentStrain(1), expected) << major << ' ' << minor << ' ' << r;
        float const wide = static_cast<float>(e2 * e2 * 1e-4 + e1 * e1 * 1e-4 + 0.5 / (r + 1.0) * e3 * e3 +
                                              r / (r + 1.0) * 2.0 * e1 * e2 * 1e-4);
        inDoubleAlone += wide == expected;
    }
    EXPECT_LT(inDoubleAlone, 5000); // the roundings show
}

TEST_F(ResultStore, EquivalentStrainIsWrittenPerElementAlone)
{
    for (int i = 0; i <= 6; ++i)
        result.EquivalentStrain(i, 9.0F);
    result.EquivalentStrain(Material());
    EXPECT_EQ(result.EquivalentStrain(0), 9.0F);
    EXPECT_EQ(result.EquivalentStrain(1), 0.0F);
    EXPECT_EQ(result.EquivalentStrain(2), 0.0F);
    EXPECT_EQ(result.EquivalentStrain(3), 9.0F);
}

TEST_F(ResultStore, NodeThicknessIsTheMeanOfTheElementsAtTheNode)
{
    result.thickness(1, 1.0F);
    result.thickness(2, 4.0F);
    result.NodeThickness(6, 8.0F); // whatever stood there
    EXPECT_EQ(result.AverageNodeThickness(mesh), 0);
    float const expected[] = {0.0F, 1.0F, 2.5F, 2.5F, 1.0F, 4.0F, 0.0F};
    for (int node = 0; node <= 6; ++node)
        EXPECT_EQ(result.NodeThickness(node), expected[node]) << node;
}

TEST_F(ResultStore, StrainAndStressAreAveragedIntoTheCallersArray)
{
    result.EquivalentStrain(1, 1.0F);
    result.EquivalentStrain(2, 4.0F);
    result.stress(1, 10.0F);
    result.stress(2, 40.0F);
    std::vector<float> strain(7, -1.0F);
    std::vector<float> stress(7, -1.0F);
    EXPECT_EQ(result.AverageNodeStrain(mesh, strain.data()), 0);
    EXPECT_EQ(result.AverageNodeStress(mesh, stress.data()), 0);
    EXPECT_EQ(strain, std::vector<float>({0.0F, 1.0F, 2.5F, 2.5F, 1.0F, 4.0F, 0.0F}));
    EXPECT_EQ(stress, std::vector<float>({0.0F, 10.0F, 25.0F, 25.0F, 10.0F, 40.0F, 0.0F}));
}

TEST_F(ResultStore, AveragingSeesPositionsNotLabels)
{
    result.thickness(1, 1.0F);
    result.thickness(2, 4.0F);
    mesh.IdsOffset(1000, 2000);
    EXPECT_EQ(result.AverageNodeThickness(mesh), 0);
    EXPECT_EQ(result.NodeThickness(2), 2.5F);
}

// The bound is the mesh's count, not the store's.
TEST_F(ResultStore, CornersAboveTheMeshsCountAreSkipped)
{
    result.thickness(1, 1.0F);
    result.thickness(2, 4.0F);
    result.numNodeResult(4);
    EXPECT_EQ(result.AverageNodeThickness(mesh), 0);
    result.numNodeResult(6);
    EXPECT_EQ(result.NodeThickness(5), 4.0F);
    result.NodeThickness(5, -1.0F);
    mesh.numNode(4);
    EXPECT_EQ(result.AverageNodeThickness(mesh), 0);
    EXPECT_EQ(result.NodeThickness(5), -1.0F); // neither zeroed nor written
    EXPECT_EQ(result.NodeThickness(3), 2.5F);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, AveragingWithoutAnOutputIsABrokenContract)
{
    EXPECT_EQ(result.AverageNodeStrain(mesh, nullptr), 1);
    OpenResult open(mesh);
    float output[7] = {5.0F};
    EXPECT_EQ(open.AverageResultsAtNodes(mesh, nullptr, output), 1);
    EXPECT_EQ(output[0], 5.0F);
    EXPECT_EQ(reported(), std::vector<std::string>(2, "AssertionFailed:i_pElemRes != NULL && o_pNodeRes != NULL"));
}

TEST_F(ResultStore, ACornerBelowZeroIsReportedAndGoesToIndexZero)
{
    result.thickness(1, 1.0F);
    result.thickness(2, 4.0F);
    mesh.GetElemData()[1][2] = -3;
    EXPECT_EQ(result.AverageNodeThickness(mesh), 0);
    EXPECT_EQ(reported(), std::vector<std::string>({"AssertionFailed:m.elem(i,j) <(nNumNodeResult+1)"}));
    EXPECT_EQ(result.NodeThickness(3), 4.0F);
}

TEST_F(ResultStore, AnotherMeshNeverLeadsOutsideTheArrays)
{
    EXPECT_EQ(result.AverageNodeThickness(meshOf(60, 2)), 1); // more nodes than there is room for
    EXPECT_EQ(reported(), std::vector<std::string>({"AssertionFailed:m.elem(i,j) <(nNumNodeResult+1)"}));
    result.thickness(1, 2.0F);
    result.thickness(2, 4.0F);
    EXPECT_EQ(result.AverageNodeThickness(meshOf(4, 1)), 0); // fewer elements: those that it has
    EXPECT_EQ(result.NodeThickness(1), 2.0F);
    EXPECT_EQ(result.AverageNodeThickness(meshOf(4, 50)), 0); // more elements: those that the store has
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, AveragingAgreesWithASecondReadingOnRandomMeshes)
{
    std::mt19937 random(77);
    for (int round = 0; round < 50; ++round)
    {
        int const nodes = 4 + static_cast<int>(random() % 30);
        int const elems = static_cast<int>(random() % 60);
        VOZCatMesh some(nodes, elems);
        std::vector<std::vector<float>> at(static_cast<std::size_t>(nodes) + 1);
        Result store(some);
        for (int e = 1; e <= elems; ++e)
        {
            int corners[4];
            for (int & corner : corners)
                corner = 1 + static_cast<int>(random() % static_cast<unsigned>(nodes + 1)); // one above the count
            if (random() % 3 == 0)
                corners[3] = corners[0];
            std::copy(corners, corners + 4, some.GetElemData()[e]);
            float const value = static_cast<float>(random() % 1000) * 0.013F;
            store.stress(e, value);
            for (int k = 0; k < (corners[0] == corners[3] ? 3 : 4); ++k)
                if (corners[k] <= nodes)
                    at[static_cast<std::size_t>(corners[k])].push_back(value);
        }
        std::vector<float> output(static_cast<std::size_t>(nodes) + 1, -1.0F);
        ASSERT_EQ(store.AverageNodeStress(some, output.data()), 0);
        for (std::size_t n = 1; n < at.size(); ++n)
        {
            float sum = 0.0F;
            for (float const value : at[n])
                sum += value;
            ASSERT_EQ(output[n], at[n].empty() ? 0.0F : sum / static_cast<float>(at[n].size())) << n;
        }
    }
}

TEST_F(ResultStore, StrainEnergyFollowsThePowerLaw)
{
    Material const material(1.0, 1.4, 0.25, 500.0, 200.0);
    result.equivalentStrain(1, 0.0F);
    result.equivalentStrain(2, 0.3F);
    auto const energy = std::make_unique<EnergyCalculator>(result, material);
    EXPECT_EQ(energy->strainEnergyDensity(1), 0.0);
    EXPECT_EQ(energy->strainEnergyDensity(2), std::pow(static_cast<double>(0.3F), 1.25) * 500.0 / 1.25);
}

TEST_F(ResultStore, EnergyCalculatorsShareTheirArray)
{
    result.equivalentStrain(1, 0.1F);
    result.equivalentStrain(2, 0.3F);
    auto first = std::make_unique<EnergyCalculator>(result, Material());
    double const expected = first->strainEnergyDensity(2);
    EnergyCalculator const copy(*first);
    EnergyCalculator assigned(result, Material(1.0, 1.0, 0.1, 1.0, 1.0));
    assigned = *first;
    first.reset();
    EXPECT_EQ(copy.strainEnergyDensity(2), expected);
    EXPECT_EQ(assigned.strainEnergyDensity(2), expected);
}
