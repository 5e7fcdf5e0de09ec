// MaterialTest.cpp: defaults, tables, and what each of the two ways of copying takes along.

#include "Material.h"

#include "RecordBytes.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace
{
Material withTables()
{
    return Material(0.8, 1.9, 0.23, 540.0, 160.0, 4, 2);
}

void fill(Material & io_material)
{
    for (int row = 0; row < io_material.numSSPoints(); ++row)
        for (int col = 0; col < 2; ++col)
            io_material.setSSData(row, col, 10.0 * row + col + 0.5);
    for (int row = 0; row < io_material.numFLCPoints(); ++row)
        for (int col = 0; col < 2; ++col)
            io_material.setFLCData(row, col, -10.0 * row - col - 0.5);
    CATUnicodeString name("DC04");
    io_material.SetName(name);
}
} // namespace

TEST(Material, StartsAsAMildSteelWithoutTablesAndName)
{
    Material const material;
    EXPECT_EQ(material.thickness(), 1.0);
    EXPECT_EQ(material.rBar(), 1.4);
    EXPECT_EQ(material.nvalue(), 0.21);
    EXPECT_EQ(material.intercept(), 586.054);
    EXPECT_EQ(material.yield(), 227.527);
    EXPECT_EQ(material.numSSPoints(), 0);
    EXPECT_EQ(material.numFLCPoints(), 0);
    EXPECT_TRUE(material.GetName().IsNull());
}

static_assert(!std::is_polymorphic_v<Material> && sizeof(Material) == 72 + sizeof(CATUnicodeString));

TEST(Material, FieldsStandInTheirOrder)
{
    Material const material = withTables();
    EXPECT_EQ(valueAt<double>(&material, 0), material.thickness());
    EXPECT_EQ(valueAt<double>(&material, 8), material.rBar());
    EXPECT_EQ(valueAt<double>(&material, 16), material.nvalue());
    EXPECT_EQ(valueAt<double>(&material, 24), material.intercept());
    EXPECT_EQ(valueAt<double>(&material, 32), material.yield());
    EXPECT_EQ(valueAt<int>(&material, 40), 4);
    EXPECT_NE(valueAt<void *>(&material, 48), nullptr);
    EXPECT_EQ(valueAt<int>(&material, 56), 2);
    EXPECT_NE(valueAt<void *>(&material, 64), nullptr);
}

TEST(Material, TakesItsFiveNumbersInOrder)
{
    Material const material(0.8, 1.9, 0.23, 540.0, 160.0);
    EXPECT_EQ(material.thickness(), 0.8);
    EXPECT_EQ(material.rBar(), 1.9);
    EXPECT_EQ(material.nvalue(), 0.23);
    EXPECT_EQ(material.exponent(), 0.23);
    EXPECT_EQ(material.intercept(), 540.0);
    EXPECT_EQ(material.yield(), 160.0);
    EXPECT_EQ(material.numSSPoints(), 0);
    EXPECT_EQ(material.numFLCPoints(), 0);
}

TEST(Material, ThicknessCanBeSet)
{
    Material material;
    material.setThickness(2.5);
    EXPECT_EQ(material.thickness(), 2.5);
}

TEST(Material, TablesAreZeroDownToTheSpareRow)
{
    Material const material = withTables();
    EXPECT_EQ(material.numSSPoints(), 4);
    EXPECT_EQ(material.numFLCPoints(), 2);
    for (int row = 0; row <= 4; ++row)
        for (int col = 0; col < 2; ++col)
            EXPECT_EQ(material.SSPoint(row, col), 0.0);
    for (int row = 0; row <= 2; ++row)
        for (int col = 0; col < 2; ++col)
            EXPECT_EQ(material.FLCPoint(row, col), 0.0);
}

TEST(Material, TablesKeepWhatIsSetAndApart)
{
    Material material = withTables();
    fill(material);
    EXPECT_EQ(material.SSPoint(0, 0), 0.5);
    EXPECT_EQ(material.SSPoint(3, 1), 31.5);
    EXPECT_EQ(material.FLCPoint(1, 0), -10.5);
    EXPECT_EQ(material.FLCPoint(1, 1), -11.5);
}

TEST(Material, CountsThatAreNotAboveZeroMakeNoTable)
{
    Material const material(1.0, 1.0, 0.2, 500.0, 200.0, 0, -3);
    EXPECT_EQ(material.numSSPoints(), 0);
    EXPECT_EQ(material.numFLCPoints(), 0);
}

TEST(Material, SizingToZeroLeavesTheCountAlone)
{
    Material material = withTables();
    fill(material);
    material.sizeSSData(0);
    material.sizeSSData(-1);
    material.sizeFLCData(0);
    EXPECT_EQ(material.numSSPoints(), 4);
    EXPECT_EQ(material.SSPoint(3, 1), 31.5);
    EXPECT_EQ(material.numFLCPoints(), 2);
}

TEST(Material, SizingAFreshObjectMakesZeroRows)
{
    Material material;
    material.sizeSSData(3);
    material.sizeFLCData(1);
    EXPECT_EQ(material.numSSPoints(), 3);
    EXPECT_EQ(material.SSPoint(3, 1), 0.0);
    EXPECT_EQ(material.numFLCPoints(), 1);
    EXPECT_EQ(material.FLCPoint(1, 1), 0.0);
}

TEST(Material, CopyConstructionTakesTheFiveNumbersAlone)
{
    Material source(0.8, 1.9, 0.23, 540.0, 160.0, 4, 2);
    fill(source);
    Material const copy(source);
    EXPECT_EQ(copy.thickness(), 0.8);
    EXPECT_EQ(copy.rBar(), 1.9);
    EXPECT_EQ(copy.nvalue(), 0.23);
    EXPECT_EQ(copy.intercept(), 540.0);
    EXPECT_EQ(copy.yield(), 160.0);
    EXPECT_EQ(copy.numSSPoints(), 0);
    EXPECT_EQ(copy.numFLCPoints(), 0);
    EXPECT_TRUE(copy.GetName().IsNull());
}

TEST(Material, AssignmentIsDeep)
{
    Material source(0.8, 1.9, 0.23, 540.0, 160.0, 4, 2);
    fill(source);
    Material target(1.0, 1.0, 0.1, 1.0, 1.0, 7, 0); // its table is replaced
    EXPECT_EQ(&(target = source), &target);
    source.setSSData(3, 1, -1.0);
    EXPECT_EQ(target.thickness(), 0.8);
    EXPECT_EQ(target.yield(), 160.0);
    EXPECT_EQ(target.numSSPoints(), 4);
    EXPECT_EQ(target.SSPoint(3, 1), 31.5);
    EXPECT_EQ(target.SSPoint(4, 0), 0.0);
    EXPECT_EQ(target.numFLCPoints(), 2);
    EXPECT_EQ(target.FLCPoint(1, 1), -11.5);
    EXPECT_EQ(target.GetName(), CATUnicodeString("DC04"));
}

TEST(Material, AssignmentOfAPlainMaterialTakesTheTablesAway)
{
    Material target(0.8, 1.9, 0.23, 540.0, 160.0, 4, 2);
    fill(target);
    target = Material();
    EXPECT_EQ(target.numSSPoints(), 0);
    EXPECT_EQ(target.numFLCPoints(), 0);
    EXPECT_TRUE(target.GetName().IsNull());
}

TEST(Material, AssignmentToItselfChangesNothing)
{
    Material material(0.8, 1.9, 0.23, 540.0, 160.0, 4, 2);
    fill(material);
    Material const & itself = material;
    material = itself;
    EXPECT_EQ(material.numSSPoints(), 4);
    EXPECT_EQ(material.SSPoint(3, 1), 31.5);
    EXPECT_EQ(material.GetName(), CATUnicodeString("DC04"));
}

TEST(Friction, StartsAtFifteenHundredths)
{
    EXPECT_EQ(Friction().coefficient(), 0.15);
}

TEST(Friction, IsSetAndCopied)
{
    Friction friction;
    friction.coefficient(0.08);
    Friction const copy(friction);
    Friction assigned;
    assigned = friction;
    EXPECT_EQ(friction.coefficient(), 0.08);
    EXPECT_EQ(copy.coefficient(), 0.08);
    EXPECT_EQ(assigned.coefficient(), 0.08);
    static_assert(sizeof(Friction) == sizeof(double));
}
