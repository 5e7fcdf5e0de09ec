// VOZBHFConfigTest.cpp: the blank-holder force, step by step and against a second reading of the steps.
//
// The blank is a rectangle of 300 mm x 200 mm: its outer edge is 1 m long.

#include "VOZBHFConfig.h"

#include "BoundaryFixture.h"
#include "ConfigFixture.h"
#include "ElemProperty.h"
#include "LoopFilters.h"
#include "Material.h"
#include "SampleMeshes.h"
#include "Symmetry.h"
#include "VOZMaterial.h"
#include "VOZMechanicalProp.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <random>
#include <sstream>

namespace
{
struct Outcome
{
    double force;
    double restraint;
    double length;
};

FullBlankHolder holderWith(double factor, double totalForce, int option)
{
    FullBlankHolder holder;
    holder.factor(factor);
    holder.totalForce(totalForce);
    holder.option(option);
    return holder;
}

class BlankHolderForce : public ConfigFixture
{
protected:
    BlankHolderForce() : mMesh(samples::mesh({{0, 0, 0}, {300, 0, 0}, {300, 200, 0}, {0, 200, 0}}, {{{1, 2, 3, 4}}}))
    {
        property.sizeProperty(2);
        property.material(1)->m_dThickness = 0.001;
        property.material(2)->m_dThickness = 0.003; // mean 0.002
        property.material(1)->m_dYield = 100e6;
        property.material(2)->m_dYield = 300e6; // mean 200 MPa
        friction.coefficient(0.1);
        config("");
    }

    // i_edgeHolder decides whether there is an edge to hold; the force comes from i_holder.
    Outcome outcome(FullBlankHolder const & i_holder, FullBlankHolder const & i_edgeHolder,
                    VOZMechanicalProp_s const * i_records = nullptr, int i_count = 1)
    {
        Chained const chained(mMesh);
        VOZCatAxis const axis;
        Symmetry const symmetry;
        LoopSizeFilter const large(chained.loops, 0.2F);
        LoopSymmetryFilter const onPlane(mMesh, chained.edges, chained.loops, symmetry, axis);
        ProcessEdgeSequence const sequence(mMesh, chained.edges, chained.loops, symmetry, onPlane, i_edgeHolder, large);
        VOZBHFConfig * const evaluation = new VOZBHFConfig(&friction, &i_holder, &property, &sequence);
        double const force = evaluation->EvalForce(i_records, i_count);
        Outcome const result{evaluation->m_dForce, evaluation->m_dRestraint, evaluation->m_dLength};
        EXPECT_TRUE(force == result.force || (std::isnan(force) && std::isnan(result.force)));
        evaluation->Release();
        return result;
    }

    Outcome outcome(FullBlankHolder const & i_holder, VOZMechanicalProp_s const * i_records = nullptr, int i_count = 1)
    {
        return outcome(i_holder, holderWith(1.0, 0.0, -1), i_records, i_count);
    }

    Friction friction;
    ElemProperty property;

private:
    VOZCatMesh mMesh;
};

double const kThicknessYield = 0.002 * 200e6; // N/m at a factor of 1
} // namespace

TEST_F(BlankHolderForce, IsAnExternalClassOfItsName)
{
    EXPECT_STREQ(VOZBHFConfig::ClassName(), "VOZBHFConfig");
    EXPECT_STREQ(VOZBHFConfig::MetaObject()->Kind(), "External");
    EXPECT_STREQ(VOZBHFConfig::MetaObject()->Extended(), "CATNull");
    FullBlankHolder const holder;
    VOZBHFConfig const evaluation(&friction, &holder, &property, nullptr);
    EXPECT_EQ(evaluation.IsAKindOf("CATBaseUnknown"), 1);
    EXPECT_EQ(evaluation.m_dForce, 0.0);
    EXPECT_EQ(evaluation.m_dRestraint, 0.0);
    EXPECT_EQ(evaluation.m_dLength, 0.0);
}

TEST_F(BlankHolderForce, FollowsFactorThicknessAndYield)
{
    Outcome const result = outcome(holderWith(0.5, 0.0, -1));
    EXPECT_DOUBLE_EQ(result.length, 1.0);
    EXPECT_DOUBLE_EQ(result.restraint, 0.5 * kThicknessYield);
    EXPECT_DOUBLE_EQ(result.force, 0.5 * kThicknessYield / 0.2);
}

TEST_F(BlankHolderForce, OptionsStandForFactors)
{
    struct
    {
        int option;
        double factor;
    } const rows[] = {{-1, 0.0}, {0, 0.0}, {1, 0.1}, {2, 0.35}, {3, 0.6}, {4, 4448220000.0}, {6, 0.0}, {-2, 0.0}};
    for (auto const & row : rows)
        EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 0.0, row.option)).restraint, row.factor * kThicknessYield)
            << row.option;
}

TEST_F(BlankHolderForce, AFactorAboveZeroGoesBeforeTheOption)
{
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 0.0, 2)).restraint, 0.5 * kThicknessYield);
    EXPECT_DOUBLE_EQ(outcome(holderWith(-0.5, 0.0, 2)).restraint, 0.35 * kThicknessYield);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 1e6, 5)).restraint, 0.5 * kThicknessYield);
}

TEST_F(BlankHolderForce, EightTenthsLocksTheEdge)
{
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.8, 0.0, -1)).restraint, 4448220000.0 * kThicknessYield);
    EXPECT_DOUBLE_EQ(outcome(holderWith(std::nextafter(0.8, 1.0), 0.0, -1)).restraint, 0.8 * kThicknessYield);
    EXPECT_DOUBLE_EQ(outcome(holderWith(std::nextafter(0.8, 0.0), 0.0, 4)).restraint, 0.8 * kThicknessYield);
    EXPECT_EQ(holderWith(0.0, 0.0, 4).factor(), 0.8); // the holder itself reports what it has
}

TEST_F(BlankHolderForce, AGivenTotalForceComesThrough)
{
    Outcome const result = outcome(holderWith(0.0, 50000.0, 5));
    EXPECT_DOUBLE_EQ(result.restraint, 0.1 * 2.0 * 50000.0);
    EXPECT_DOUBLE_EQ(result.force, 50000.0);
}

TEST_F(BlankHolderForce, WithoutFrictionThereIsARestraintButNoForce)
{
    for (double const mu : {0.0, 0.001, -0.1})
    {
        friction.coefficient(mu);
        Outcome const result = outcome(holderWith(0.5, 0.0, -1));
        EXPECT_DOUBLE_EQ(result.restraint, 0.5 * kThicknessYield) << mu;
        EXPECT_EQ(result.force, 0.0) << mu;
    }
    friction.coefficient(0.0011);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 0.0, -1)).force, 0.5 * kThicknessYield / 0.0022);
}

TEST_F(BlankHolderForce, AGivenForceWithoutAnEdgeIsABrokenContract)
{
    Outcome const result = outcome(holderWith(0.0, 50000.0, 5), FullBlankHolder());
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].text, "AssertionFailed:m_dLength > 0.0");
    EXPECT_EQ(host.reports[0].file, "VOZBHFConfig");
    EXPECT_EQ(result.length, 0.0);
    EXPECT_TRUE(std::isinf(result.restraint)); // it goes on, by the formulas
    EXPECT_TRUE(std::isnan(result.force));
}

TEST_F(BlankHolderForce, WithoutAnEdgeAFactorGivesNoForce)
{
    Outcome const result = outcome(holderWith(0.5, 0.0, -1), FullBlankHolder());
    EXPECT_TRUE(host.reports.empty());
    EXPECT_DOUBLE_EQ(result.restraint, 0.5 * kThicknessYield);
    EXPECT_EQ(result.force, 0.0);
}

TEST_F(BlankHolderForce, WithoutAConfigurationPathNothingIsSet)
{
    host.environment.clear();
    Outcome const result = outcome(holderWith(0.5, 0.0, -1));
    EXPECT_EQ(result.force, 0.0);
    EXPECT_EQ(result.restraint, 0.0);
    EXPECT_EQ(result.length, 0.0);
}

TEST_F(BlankHolderForce, WithoutTheFileTheDefaultsStand)
{
    std::filesystem::remove(root.Path("config.cfg"));
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 0.0, -1)).force, 0.5 * kThicknessYield / 0.2);
}

TEST_F(BlankHolderForce, RangeOneTakesTheYieldFromTheRecords)
{
    config("VOZBHRange=1\n");
    VOZMechanicalProp_s records[2];
    records[0].m_dYield = 150e6;
    records[1].m_dYield = 250e6;
    FullBlankHolder const holder = holderWith(1.0, 0.0, -1);
    EXPECT_DOUBLE_EQ(outcome(holder, records, 1).restraint, 0.002 * 150e6);
    EXPECT_DOUBLE_EQ(outcome(holder, records, 2).restraint, 0.002 * 200e6);
    EXPECT_EQ(outcome(holder, records, 0).restraint, 0.0);
    EXPECT_EQ(outcome(holder, nullptr, 1).restraint, 0.0);
    config("VOZBHRange=2\n");
    EXPECT_DOUBLE_EQ(outcome(holder, records, 1).restraint, kThicknessYield);
}

TEST_F(BlankHolderForce, AValueOverrulesAsATotalForce)
{
    config("BHFValue2=30000\n");
    Outcome const result = outcome(holderWith(0.0, 0.0, 2));
    EXPECT_DOUBLE_EQ(result.restraint, 2.0 * 0.1 * 30000.0);
    EXPECT_DOUBLE_EQ(result.force, 30000.0);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 0.0, 1)).restraint, 0.1 * kThicknessYield); // a key per option
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.7, 0.0, 2)).force, 30000.0);                   // whatever the factor
}

TEST_F(BlankHolderForce, AValueOverrulesAsAForcePerLength)
{
    config("BHFValueUnits=1\nBHFValue3=40\n");
    Outcome const result = outcome(holderWith(0.0, 0.0, 3));
    EXPECT_DOUBLE_EQ(result.restraint, 40000.0);
    EXPECT_DOUBLE_EQ(result.force, 40000.0 / 0.2);
}

TEST_F(BlankHolderForce, ANegativeValueLeavesTheForceAlone)
{
    for (char const * const text : {"BHFValue2=-1\n", "BHFValue2=-0.0005\n", "BHFValueUnits=1\nBHFValue2=-7\n"})
    {
        config(text);
        EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 0.0, 2)).force, 0.35 * kThicknessYield / 0.2) << text;
    }
}

TEST_F(BlankHolderForce, AValueOfAboutZeroMeansNoForce)
{
    for (char const * const text : {"BHFValue2=0\n", "BHFValue2=0.0009\n", "BHFValueUnits=1\nBHFValue2=0\n"})
    {
        config(text);
        Outcome const result = outcome(holderWith(0.0, 0.0, 2));
        EXPECT_EQ(result.force, 0.0) << text;
        EXPECT_EQ(result.restraint, 0.0) << text;
        EXPECT_DOUBLE_EQ(result.length, 1.0) << text;
    }
    config("BHFValue2=0.001\n");
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 0.0, 2)).force, 0.001);
}

TEST_F(BlankHolderForce, OptionsWithoutAKeyAreNotOverruled)
{
    config("BHFValue0=9\nBHFValue6=9\nBHFValue1=9\nBHFValueUnits=1\n");
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 0.0, 0)).force, 0.5 * kThicknessYield / 0.2);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 0.0, 6)).force, 0.5 * kThicknessYield / 0.2);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.5, 0.0, -1)).force, 0.5 * kThicknessYield / 0.2);
}

TEST_F(BlankHolderForce, OptionFiveCountsTheUsersForceNotTheValues)
{
    for (char const * const text : {"BHFValue5=1\n", "BHFValue5=12345\n"})
    {
        config(text);
        Outcome const result = outcome(holderWith(0.0, 50000.0, 5));
        EXPECT_DOUBLE_EQ(result.force, 50000.0) << text;
        EXPECT_DOUBLE_EQ(result.restraint, 10000.0) << text;
    }
    config("BHFValueUnits=1\nBHFValue5=1\n");
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 50.0, 5)).restraint, 50000.0);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 50.0, 5)).force, 50000.0 / 0.2);
    config("BHFValue5=0\n");
    EXPECT_EQ(outcome(holderWith(0.0, 50000.0, 5)).force, 0.0);
    config("BHFValue5=-1\n");
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 50000.0, 5)).force, 50000.0);
}

TEST_F(BlankHolderForce, OptionFiveIsAForcePerLengthByTheUnitsAlone)
{
    config("BHFValueUnits=1\n");
    Outcome const result = outcome(holderWith(0.0, 50.0, 5));
    EXPECT_DOUBLE_EQ(result.restraint, 50000.0);
    EXPECT_DOUBLE_EQ(result.force, 50000.0 / 0.2);
    EXPECT_DOUBLE_EQ(outcome(holderWith(0.0, 0.0, 2)).force, 0.35 * kThicknessYield / 0.2); // the others need a value
}

namespace
{
struct Case
{
    double mu, factor, totalForce, thickness, yield, length;
    int option, units;
    std::optional<double> value;
};

// The steps once more, as one straight run.
Outcome reference(Case const & c)
{
    double f = c.factor;
    if (f > 0.0 && f == 0.8)
        f = 4448220000.0;
    else if (!(f > 0.0))
        f = c.option == 1   ? 0.1
            : c.option == 2 ? 0.35
            : c.option == 3 ? 0.6
            : c.option == 4 ? 4448220000.0
            : c.option == 5 ? -1.0
                            : 0.0;
    auto const force = [&c](double restraint) { return c.mu > 0.001 ? c.length * restraint / (2.0 * c.mu) : 0.0; };
    Outcome out{0.0, std::fabs(f) * c.thickness * c.yield, c.length};
    if (f < 0.0)
        out.restraint = c.mu * 2.0 * c.totalForce / c.length;
    out.force = force(out.restraint);
    if (c.option < 1 || c.option > 5)
        return out;
    if (!c.value)
    {
        if (c.option == 5 && c.units > 0)
        {
            out.restraint = out.force * 1000.0;
            out.force = force(out.restraint);
        }
        return out;
    }
    double v = *c.value;
    if (v < 0.0)
        return out;
    if (std::fabs(v) < 0.001)
        return {0.0, 0.0, c.length};
    if (c.option == 5)
        v = out.force;
    out.restraint = c.units > 0 ? v * 1000.0 : 2.0 * c.mu * v / c.length;
    out.force = force(out.restraint);
    return out;
}
} // namespace

TEST_F(BlankHolderForce, AgreesWithASecondReadingOnRandomCases)
{
    std::mt19937 random(5);
    auto const oneOf = [&random](std::initializer_list<double> values)
    { return *(values.begin() + random() % values.size()); };
    for (int i = 0; i < 400; ++i)
    {
        Case c{};
        c.mu = oneOf({0.0, 0.0005, 0.1, 0.15, 0.3});
        c.factor = oneOf({0.0, -1.0, 0.3, 0.8, 1.5});
        c.totalForce = oneOf({0.0, 123.0, 45000.0});
        c.option = static_cast<int>(random() % 8) - 1;
        c.units = static_cast<int>(random() % 3) - 1;
        if (random() % 3)
            c.value = oneOf({-2.0, -0.0005, 0.0, 0.0005, 0.001, 12.5, 30000.0});
        c.thickness = property.averageThickness();
        c.yield = property.averageYield();
        std::ostringstream text;
        text << "BHFValueUnits=" << c.units << '\n';
        if (c.value)
            text << "BHFValue" << c.option << '=' << *c.value << '\n';
        config(text.str());
        friction.coefficient(c.mu);
        Outcome const result = outcome(holderWith(c.factor, c.totalForce, c.option));
        c.length = result.length;
        Outcome const expected = reference(c);
        ASSERT_DOUBLE_EQ(result.length, 1.0);
        ASSERT_EQ(result.restraint, expected.restraint) << "case " << i;
        ASSERT_EQ(result.force, expected.force) << "case " << i;
    }
}
