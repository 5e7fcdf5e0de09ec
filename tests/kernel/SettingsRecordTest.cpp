// SettingsRecordTest.cpp: the kernel's texts and arrays of pointers, the record of incremental settings, the plain
// mesh.

#include "CATUnicodeString.h"
#include "SettingsNumbers.h"
#include "VOZAPIMesh.h"
#include "VOZIncrementalSettings.h"
#include "VOZString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace
{

using settingsnumbers::numbersOf;

TEST(KernelText, IsEmptyWithoutATextAndStillClosedByAZero)
{
    for (VOZString const & text :
         {VOZString(), VOZString(""), VOZString(static_cast<char const *>(nullptr)),
          VOZString(static_cast<unsigned short const *>(nullptr)), VOZString(CATUnicodeString())})
    {
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_EQ(text.GetLength(), 0);
        EXPECT_EQ(text.GetText()[0], 0);
    }
}

TEST(KernelText, HoldsUnitsOfSixteenBits)
{
    VOZString const text("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\xA7"); // a, a umlaut, euro, a character of two units
    EXPECT_EQ(text.GetLength(), 5);
    unsigned short const expected[] = {'a', 0xE4, 0x20AC, 0xD83D, 0xDD27, 0};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(text.GetText()[i], expected[i]);
    EXPECT_STREQ(text.ToUnicodeString().ConvertToChar(), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x94\xA7");
    EXPECT_EQ(VOZString(text.GetText()).SortCompare(text), 0);
}

TEST(KernelText, ComparesUnitByUnitAndPutsAShorterTextFirst)
{
    std::vector<char const *> const rising = {"", "A", "Ab", "B", "a", "aa", "ab", "\xC3\xA4"};
    for (std::size_t i = 0; i < rising.size(); ++i)
        for (std::size_t k = 0; k < rising.size(); ++k)
        {
            int const order = VOZString(rising[i]).SortCompare(VOZString(rising[k]));
            EXPECT_EQ((order > 0) - (order < 0), (i > k) - (i < k)) << rising[i] << " " << rising[k];
        }
}

TEST(KernelText, ACopyIsATextOfItsOwnAndAssignmentToItselfIsHarmless)
{
    VOZString text("steel");
    VOZString const copy(text);
    EXPECT_NE(copy.GetText(), text.GetText());
    VOZString const & same = text;
    text = same;
    EXPECT_STREQ(text.ToUnicodeString().ConvertToChar(), "steel");
    text = VOZString("aluminium");
    EXPECT_STREQ(copy.ToUnicodeString().ConvertToChar(), "steel");
    EXPECT_STREQ(text.ToUnicodeString().ConvertToChar(), "aluminium");
    text = VOZString();
    EXPECT_TRUE(text.IsEmpty());
}

TEST(PointerArray, GrowsKeepsItsOrderAndReadsNullOutside)
{
    for (int capacity : {-1, 0, 1, 10})
    {
        VOZTPtrArray<int, int> array(capacity);
        EXPECT_EQ(array.GetSize(), 0);
        std::vector<int> values(25);
        for (int i = 0; i < 25; ++i)
            EXPECT_EQ(array.Add(&values[static_cast<std::size_t>(i)]), i);
        for (int i = 0; i < 25; ++i)
            EXPECT_EQ(array[i], &values[static_cast<std::size_t>(i)]);
        EXPECT_EQ(array[-1], nullptr);
        EXPECT_EQ(array[25], nullptr);
        array.SetAt(3, nullptr);
        array.SetAt(25, &values[0]);
        array.SetAt(-1, &values[0]);
        EXPECT_EQ(array[3], nullptr);
        EXPECT_EQ(array.GetSize(), 25);
        array.RemoveAll();
        EXPECT_EQ(array.GetSize(), 0);
        EXPECT_EQ(array[0], nullptr);
    }
}

TEST(PointerArray, DeletesItsEntriesWhenAskedAlone)
{
    struct Counted
    {
        explicit Counted(int & count) : alive(count) { ++alive; }
        ~Counted() { --alive; }
        int & alive;
    };
    int alive = 0;
    {
        VOZTPtrArray<Counted, int> array(2);
        for (int i = 0; i < 5; ++i)
            array.Add(new Counted(alive));
        array.Add(nullptr);
        array.DeleteAll();
        EXPECT_EQ(alive, 0);
        EXPECT_EQ(array.GetSize(), 0);
    }
}

// What the first lines of docs/incremental-settings.md promise for 1 mm of mild steel and a stroke of 40 mm.
TEST(IncrementalSettings, TheDefaultsMakeASensibleRunOfAnOrdinaryPart)
{
    VOZIncrementalSettings const settings;
    constexpr double kThickness = 0.001;
    constexpr double kStroke = 0.04;
    double const v = settings.m_dPunchVelocityFlagClear;
    double const a = settings.m_dPunchAcceleration;
    double const end = kStroke / v + v / a;
    EXPECT_NEAR(end, 0.009, 1e-12);
    EXPECT_GT(kStroke, v * v / a); // the punch reaches its velocity
    // The passes over a stroke at the threshold are the ones that the 2 mm rule gives beyond it.
    EXPECT_DOUBLE_EQ(settings.m_dStrokeThreshold * 1000.0 * 0.5, settings.m_nAdaptivePasses);
    // 8 mm elements, refined level by level, end at the thickness and under the cap of the refinement.
    double const finest = 0.008 / std::pow(2.0, settings.m_nAdaptivityLevel - 1);
    EXPECT_DOUBLE_EQ(finest, kThickness);
    EXPECT_LE(finest, kThickness * settings.m_dAdaptSizeFactor);
    double const timeStep = finest * settings.m_dDT2MSFactor / 5100.0;
    EXPECT_GT(end / timeStep, 40000.0);
    EXPECT_LT(end / timeStep, 80000.0);
    // The plate's own wave speed: the finest element is not slowed by more mass than that of rounding.
    EXPECT_LE(timeStep, finest / std::sqrt(210.0e9 / (7850.0 * (1.0 - 0.09))));
    // The kinetic energy of the sheet at full speed against 5 % of strain at 200 MPa.
    EXPECT_LT(0.5 * 7850.0 * v * v, 0.02 * 0.05 * 200.0e6);
    // The binder closes within the punch's ramp.
    EXPECT_LT(std::sqrt(2.0 * kThickness * settings.m_dBinderGapFactor / (settings.m_dBinderAccelFactor * a)), v / a);
}

TEST(IncrementalSettings, TheDefaultsAreTheDocumentedOnes)
{
    VOZIncrementalSettings const s;
    EXPECT_TRUE(s.m_strName.IsEmpty());
    EXPECT_THAT(numbersOf(s), testing::ElementsAre(5, 2, 5000, 2.5, 5, 4, 20, 0.04, 2, -1, 2, 0.8, 0.9, 0.1, 0.9, 0, 4,
                                                   10, 0, 10, 25, 40, 55, 70, 80, 90, 95, 100));
    EXPECT_EQ(s.GetID(), 0);
    EXPECT_EQ(s.GetType(), VOZIncrementalSettings::kType);
    EXPECT_EQ(s.GetParent(), nullptr);
}

// Every field with a value of its own.
void fill(VOZIncrementalSettings & s)
{
    int value = 101;
    for (settingsnumbers::Field const & field : settingsnumbers::fields())
        std::visit([&](auto member) { s.*member = static_cast<std::decay_t<decltype(s.*member)>>(value++); }, field);
    s.m_strName = VOZString("filled");
    double const positions[] = {0.0, 33.0, 100.0};
    s.SetOutputPositions(3, positions);
}

void expectEqual(VOZIncrementalSettings const & a, VOZIncrementalSettings const & b)
{
    EXPECT_EQ(a.m_strName.SortCompare(b.m_strName), 0);
    EXPECT_EQ(numbersOf(a), numbersOf(b));
}

TEST(IncrementalSettings, CopiesAreWholeAndDeep)
{
    VOZIncrementalSettings filled;
    fill(filled);
    filled.SetID(7);
    filled.SetParent(&filled);
    VOZIncrementalSettings const copy(filled);
    std::unique_ptr<VOZIncrementalSettings> const clone(filled.Clone());
    VOZIncrementalSettings assigned;
    assigned.SetID(3);
    assigned = filled;
    for (VOZIncrementalSettings const * other : {&copy, static_cast<VOZIncrementalSettings const *>(clone.get()),
                                                 static_cast<VOZIncrementalSettings const *>(&assigned)})
    {
        expectEqual(*other, filled);
        EXPECT_NE(other->m_padOutputPositions, filled.m_padOutputPositions);
        EXPECT_EQ(other->GetParent(), nullptr);
    }
    EXPECT_EQ(copy.GetID(), 0);
    EXPECT_EQ(assigned.GetID(), 3);
    EXPECT_EQ(filled.GetParent(), &filled);
    filled.m_padOutputPositions[1] = 50.0;
    EXPECT_EQ(copy.m_padOutputPositions[1], 33.0);
}

TEST(IncrementalSettings, AssignmentToItselfChangesNothing)
{
    VOZIncrementalSettings settings;
    fill(settings);
    VOZIncrementalSettings const before(settings);
    VOZIncrementalSettings const & same = settings;
    settings = same;
    expectEqual(settings, before);
}

TEST(IncrementalSettings, PositionsMayComeFromTheRecordItselfAndFromNowhere)
{
    VOZIncrementalSettings settings;
    settings.SetOutputPositions(3, settings.m_padOutputPositions + 7);
    ASSERT_EQ(settings.m_nOutputPoints, 3);
    EXPECT_EQ(settings.m_padOutputPositions[0], 90.0);
    EXPECT_EQ(settings.m_padOutputPositions[2], 100.0);
    for (int count : {0, -4, 5})
    {
        settings.SetOutputPositions(count, nullptr);
        EXPECT_EQ(settings.m_nOutputPoints, 0);
        EXPECT_EQ(settings.m_padOutputPositions, nullptr);
    }
    VOZIncrementalSettings const copy(settings);
    EXPECT_EQ(copy.m_nOutputPoints, 0);
}

TEST(PlainMesh, StartsEmptyAndItsTablesStartWithZerosAndNoCorners)
{
    std::unique_ptr<VOZAPIMesh> const mesh(VOZAPIMesh::Create());
    EXPECT_EQ(mesh->GetNumNodes(), 0);
    EXPECT_EQ(mesh->GetElements(), nullptr);
    EXPECT_EQ(mesh->GetNodeCoord(0), nullptr);
    mesh->SetNumNodes(3);
    mesh->SetNumElements(2);
    EXPECT_EQ(mesh->GetNodeCoord(0), nullptr); // not before the tables are made
    EXPECT_EQ(mesh->GetElements(), nullptr);
    ASSERT_TRUE(mesh->AllocateData());
    for (int node = 0; node < 3; ++node)
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(mesh->GetNodeCoord(node)[i], 0.0);
    for (int e = 0; e < 2; ++e)
        for (int corner = 0; corner < 4; ++corner)
            EXPECT_EQ(mesh->GetElements()[e][corner], -1);
}

TEST(PlainMesh, KeepsCoordinatesAndIgnoresNodesThatAreNotThere)
{
    std::unique_ptr<VOZAPIMesh> const mesh(VOZAPIMesh::Create());
    mesh->SetNumNodes(2);
    mesh->SetNumElements(1);
    ASSERT_TRUE(mesh->AllocateData());
    double point[] = {1.0, 2.0, 3.0};
    for (int node : {-1, 1, 2, 1000000})
        mesh->SetNodeCoord(node, point);
    mesh->SetNumNodes(1000000); // the table is still the old one
    mesh->SetNodeCoord(999999, point);
    EXPECT_EQ(mesh->GetNodeCoord(999999), nullptr);
    EXPECT_EQ(mesh->GetNodeCoord(-1), nullptr);
    EXPECT_EQ(mesh->GetNodeCoord(0)[2], 0.0);
    EXPECT_EQ(mesh->GetNodeCoord(1)[2], 3.0);
}

TEST(PlainMesh, GivesNoElementsWhereTheirCountWasChangedAfterwards)
{
    std::unique_ptr<VOZAPIMesh> const mesh(VOZAPIMesh::Create());
    mesh->SetNumElements(1);
    ASSERT_TRUE(mesh->AllocateData());
    EXPECT_NE(mesh->GetElements(), nullptr);
    mesh->SetNumElements(9);
    EXPECT_EQ(mesh->GetElements(), nullptr);
    ASSERT_TRUE(mesh->AllocateData());
    EXPECT_EQ(mesh->GetElements()[8][3], -1);
    mesh->Clear();
    EXPECT_EQ(mesh->GetNumElements(), 0);
    EXPECT_EQ(mesh->GetElements(), nullptr);
}

TEST(PlainMesh, RefusesNegativeCounts)
{
    std::unique_ptr<VOZAPIMesh> const mesh(VOZAPIMesh::Create());
    mesh->SetNumNodes(-1);
    EXPECT_FALSE(mesh->AllocateData());
    EXPECT_EQ(mesh->GetNodeCoord(0), nullptr);
    mesh->SetNumNodes(1);
    mesh->SetNumElements(-5);
    EXPECT_FALSE(mesh->AllocateData());
    EXPECT_EQ(mesh->GetElements(), nullptr);
}

} // namespace
