// ElemPropertyTest.cpp: the process definition: sizes, and shared and deep copies.

#include "ElemProperty.h"

#include "ProcessRecordsFixture.h"
#include "VOZMaterial.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <type_traits>
#include <vector>

static_assert(std::has_virtual_destructor_v<ElemProperty>);

TEST(ElemProperty, StartsEmpty)
{
    ElemProperty const property;
    EXPECT_EQ(property.sizeProperty(), 0);
    EXPECT_EQ(property.sizePressPads(), 0);
    EXPECT_EQ(property.getNbPressurePads(), 0);
    EXPECT_EQ(property.pressPadSize(), nullptr);
    EXPECT_EQ(property.pressPadVal(), nullptr);
    EXPECT_EQ(property.pressPadXYZ(), nullptr);
    EXPECT_EQ(property.sizeDrawBeads(), 0);
    EXPECT_EQ(property.sizeBlankHolders(), 0);
    EXPECT_EQ(property.sizeDispBC(), 0);
    EXPECT_EQ(property.totalDBEdges(), 0);
    EXPECT_EQ(property.totalBHEdges(), 0);
    EXPECT_EQ(property.totalDispBCNodes(), 0);
    EXPECT_FALSE(property.getSprinkbackFixity());
    EXPECT_EQ(property.getAlignmentSize(), 0);
    EXPECT_EQ(property.getAlignment(), nullptr);
    EXPECT_EQ(property.getTrimmingSize(), 0);
    EXPECT_EQ(property.getTrimming(), nullptr);
}

TEST(ElemProperty, PropertiesHaveAMaterialAndALimitFromZeroToP)
{
    ElemProperty property;
    property.sizeProperty(2);
    EXPECT_EQ(property.sizeProperty(), 2);
    for (int i = 0; i <= 2; ++i)
    {
        ASSERT_NE(property.material(i), nullptr);
        EXPECT_EQ(property.formingLimit(i).fldZero(), 0.0);
    }
    EXPECT_NE(property.material(1), property.material(2));
    property.formingLimit(2) = FormingLimit(1.0, 0.2, 1.0, 10.0, 5.0, 33.0, 0);
    EXPECT_EQ(property.formingLimit(2).fldZero(), 33.0);
    property.sizeProperty(2); // once more, with the same size
    EXPECT_EQ(property.formingLimit(2).fldZero(), 0.0);
    property.sizeProperty(5); // and with another
    EXPECT_NE(property.material(5), nullptr);
    property.sizeProperty(0);
    EXPECT_EQ(property.sizeProperty(), 0);
    EXPECT_NE(property.material(0), nullptr);
}

TEST(ElemProperty, ElementsHaveAPropertyNumber)
{
    ElemProperty property;
    property.sizePropertyIndex(3);
    for (int e = 0; e <= 3; ++e)
        EXPECT_EQ(property.propertyIndex(e), 0);
    property.propertyId(3, 2);
    property.propertyIndex(1) = 5;
    EXPECT_EQ(property.propertyIndex(3), 2);
    EXPECT_EQ(property.propertyIndex(1), 5);
    property.sizePropertyIndex(1);
    EXPECT_EQ(property.propertyIndex(1), 0);
}

TEST(ElemProperty, AveragesRunOverThePropertiesFromOne)
{
    ElemProperty property;
    property.sizeProperty(3);
    double const thickness[] = {99.0, 0.001, 0.002, 0.006};
    double const yield[] = {99.0, 1e8, 2e8, 6e8};
    for (int i = 0; i <= 3; ++i)
    {
        property.material(i)->m_dThickness = thickness[i];
        property.material(i)->m_dYield = yield[i];
    }
    EXPECT_DOUBLE_EQ(property.averageThickness(), 0.003);
    EXPECT_DOUBLE_EQ(property.averageYield(), 3e8);
}

TEST(ElemProperty, AveragesWithoutAPropertyAreNoNumber)
{
    ElemProperty property;
    EXPECT_TRUE(std::isnan(property.averageThickness()));
    property.sizeProperty(0);
    EXPECT_TRUE(std::isnan(property.averageThickness()));
    EXPECT_TRUE(std::isnan(property.averageYield()));
}

TEST(ElemProperty, PadsHaveAValueAndNodesFromOne)
{
    ElemProperty property;
    property.sizePressPads(2);
    EXPECT_EQ(property.sizePressPads(), 2);
    EXPECT_EQ(property.getNbPressurePads(), 2);
    EXPECT_EQ(property.pressPadXYZ(), nullptr);
    for (int i = 0; i <= 2; ++i)
    {
        EXPECT_EQ(property.pressPadSize(i), 0);
        EXPECT_EQ(property.pressPadVal(i), 0.0);
    }
    property.pressPadSize(2, 3);
    property.pressPadVal(2, 5e6);
    EXPECT_EQ(property.pressPadSize(2), 3);
    EXPECT_EQ(property.pressPadVal(2), 5e6);
    EXPECT_EQ(property.pressPads(2, 3), 0);
    for (int k = 1; k <= 3; ++k)
        property.pressPads(2, k, 40 + k);
    EXPECT_EQ(property.pressPads(2, 1), 41);
    EXPECT_EQ(property.pressPads(2, 3), 43);
    property.pressPadSize(2, 1); // replaces the row
    EXPECT_EQ(property.pressPadSize(2), 1);
    EXPECT_EQ(property.pressPads(2, 1), 0);
}

TEST(ElemProperty, APadOfSizeZeroHasARowOfOne)
{
    ElemProperty property;
    property.sizePressPads(1);
    property.pressPadSize(1, 0);
    EXPECT_EQ(property.pressPadSize(1), 0);
    EXPECT_EQ(property.pressPads(1, 0), 0);
}

// One row behind the last pad passes; nothing beyond it does.
TEST(ElemProperty, PadsBeyondTheCountAreIgnored)
{
    ElemProperty property;
    property.pressPadSize(0, 3); // there is no row at all
    property.pressPadSize(1, 3);
    property.sizePressPads(1);
    property.pressPadSize(2, 3);
    property.pressPadSize(3, 3);
    property.pressPadSize(-1, 3);
    property.pressPadSize(1000000, 3);
    EXPECT_EQ(property.pressPadSize(1), 0);
    property.setNbPressurePads(50); // the count alone
    property.pressPadSize(40, 3);
    EXPECT_EQ(property.sizePressPads(), 50);
}

TEST(ElemProperty, TakesWholePadArraysAndTheirRows)
{
    ElemProperty property;
    property.setNbPressurePads(2);
    int * const sizes = arrayOf({3, 4});
    double * const values = new double[2]{1e6, 2e6};
    double ** const xyz = new double * [2] { new double[9]{}, nullptr };
    property.pressPadSize(sizes);
    property.pressPadVal(values);
    property.pressPadXYZ(xyz);
    EXPECT_EQ(property.pressPadSize(), sizes);
    EXPECT_EQ(property.pressPadVal(), values);
    EXPECT_EQ(property.pressPadXYZ(), xyz);
    EXPECT_EQ(property.pressPadSize(1), 4);
    int const first = 0; // a plain 0 could be a pointer
    EXPECT_EQ(property.pressPadVal(first), 1e6);
    property.pressPadSize(sizes); // the same once more is no new array
    property.pressPadXYZ(xyz);
    property.pressPadSize(arrayOf({5, 6})); // another replaces it
    EXPECT_EQ(property.pressPadSize(first), 5);
}

TEST(ElemProperty, ClearingPadsZeroesThem)
{
    ElemProperty property;
    property.sizePressPads(2);
    property.pressPadSize(1, 4);
    property.pressPadXYZ(new double * [2]
                         {
                             new double[3]{}, new double[3] {}
                         });
    property.clearPressPads();
    EXPECT_EQ(property.sizePressPads(), 0);
    EXPECT_EQ(property.pressPadSize(), nullptr);
    EXPECT_EQ(property.pressPadVal(), nullptr);
    EXPECT_EQ(property.pressPadXYZ(), nullptr);
    property.clearPressPads();
}

// The bare pointers went to another object, which frees them.
TEST(ElemProperty, ZeroingPadsDoesNotFreeThem)
{
    ElemProperty owner;
    owner.setNbPressurePads(1);
    owner.pressPadSize(arrayOf({3, 3}));
    owner.pressPadVal(new double[2]{1.0, 2.0});
    ElemProperty guest;
    guest.setNbPressurePads(1);
    guest.pressPadSize(owner.pressPadSize());
    guest.pressPadVal(owner.pressPadVal());
    guest.setPressurePad();
    EXPECT_EQ(guest.sizePressPads(), 0);
    EXPECT_EQ(guest.pressPadSize(), nullptr);
    EXPECT_EQ(owner.pressPadVal(1), 2.0);
}

TEST(ElemProperty, BeadsAreAssignedDeeply)
{
    ElemProperty property;
    property.sizeDrawBeads(2);
    EXPECT_EQ(property.sizeDrawBeads(), 2);
    EXPECT_EQ(property.drawBeads(2).edgeCount, 0);
    {
        DrawBead bead = beadWith(3);
        property.drawBeads(1, bead);
        property.drawBeads(2, bead);
    }
    EXPECT_EQ(property.drawBeads(1).edges[2].element, 12);
    EXPECT_NE(property.drawBeads(1).edges, property.drawBeads(2).edges);
    EXPECT_EQ(property.drawBeads(2).xyz[5], 6.0);
    EXPECT_EQ(property.totalDBEdges(), 6);
    property.updateDrawBeads(1);
    EXPECT_EQ(property.sizeDrawBeads(), 1);
    EXPECT_EQ(property.totalDBEdges(), 3);
    property.sizeDrawBeads(1);
    EXPECT_EQ(property.totalDBEdges(), 0);
    property.clearDrawBeads();
    EXPECT_EQ(property.sizeDrawBeads(), 0);
}

TEST(ElemProperty, BlankHoldersAreAssignedDeeply)
{
    ElemProperty property;
    property.sizeBlankHolders(2);
    {
        BlankHolder holder = holderWith(4);
        property.blankHolders(2, holder);
    }
    EXPECT_EQ(property.sizeBlankHolders(), 2);
    EXPECT_EQ(property.blankHolders(2).edges[3].node1, 23);
    EXPECT_EQ(property.totalBHEdges(), 4);
    property.updateBlankHolders(1);
    EXPECT_EQ(property.totalBHEdges(), 0);
    property.clearBlankHolders();
    EXPECT_EQ(property.sizeBlankHolders(), 0);
}

// Row 0 is no bead, whatever stands in it.
TEST(ElemProperty, TotalsLeaveRowZeroOut)
{
    ElemProperty property;
    property.sizeDrawBeads(1);
    property.sizeBlankHolders(1);
    property.sizeDispBC(1);
    DrawBead bead = beadWith(2);
    BlankHolder holder = holderWith(2);
    DispBC table(2);
    property.drawBeads(0, bead);
    property.blankHolders(0, holder);
    property.dispBCs(0, table);
    EXPECT_EQ(property.totalDBEdges(), 0);
    EXPECT_EQ(property.totalBHEdges(), 0);
    EXPECT_EQ(property.totalDispBCNodes(), 0);
}

TEST(ElemProperty, TablesOfDisplacementsAreAssignedByNumber)
{
    ElemProperty property;
    property.sizeDispBC(2);
    DispBC table = tableWith({7, 8, 9});
    double const origin[3] = {1.0, 2.0, 3.0};
    VOZCatAxis frame;
    frame.origin(Vec(origin));
    property.dispBCs(1, table);
    property.dispBCs(2, table);
    property.dispBCs(2, frame);
    property.prescDispBC(2, 1, -0.25);
    EXPECT_EQ(property.sizeDispBC(), 2);
    EXPECT_EQ(property.totalDispBCNodes(), 6);
    EXPECT_EQ(property.dispBCs(2).nodes[2], 9);
    EXPECT_EQ(property.dispBCs(2).frame.origin(1), 2.0);
    EXPECT_EQ(property.dispBCs(1).frame.origin(1), 0.0);
    EXPECT_EQ(property.dispBCs(2).values[1], -0.25);
    EXPECT_EQ(property.dispBCs(1).values[1], 0.0);
}

TEST(ElemProperty, TablesBeyondTheCountAreIgnored)
{
    ElemProperty property;
    property.sizeDispBC(1);
    DispBC table = tableWith({7});
    VOZCatAxis frame;
    property.dispBCs(2, table);
    property.dispBCs(2, frame);
    EXPECT_EQ(property.totalDispBCNodes(), 0);
    property.clearDispBC();
    property.dispBCs(1, table);
    EXPECT_EQ(property.sizeDispBC(), 0);
}

TEST(ElemProperty, AutoStrainIsOffAndUntouchedByDefault)
{
    ElemProperty const property;
    double * target = nullptr;
    double * ref = nullptr;
    double targetStrain = 1.0;
    double refStrain = 1.0;
    double value = 1.0;
    EXPECT_FALSE(property.getAutoStrain(target, ref, targetStrain, refStrain, value));
    EXPECT_EQ(target, nullptr);
    EXPECT_EQ(ref, nullptr);
    EXPECT_EQ(targetStrain, 0.0);
    EXPECT_EQ(refStrain, 0.0);
    EXPECT_EQ(value, 0.0);
}

TEST(ElemProperty, AutoStrainCopiesItsPointsBothWays)
{
    ElemProperty property;
    double point[3] = {1.0, 2.0, 3.0};
    double other[3] = {4.0, 5.0, 6.0};
    property.setAutoStrain(point, other, 10.0, 20.0, 30.0, true);
    point[0] = -1.0;
    property.setAutoStrain(nullptr, point, 11.0, 21.0, 31.0, true); // the first point stays
    double * target = nullptr;
    double * ref = nullptr;
    double targetStrain = 0.0;
    double refStrain = 0.0;
    double value = 0.0;
    EXPECT_TRUE(property.getAutoStrain(target, ref, targetStrain, refStrain, value));
    std::unique_ptr<double[]> const ownTarget(target);
    std::unique_ptr<double[]> const ownRef(ref);
    ASSERT_NE(target, nullptr);
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(target[0], 1.0);
    EXPECT_EQ(target[2], 3.0);
    EXPECT_EQ(ref[0], -1.0);
    EXPECT_EQ(ref[2], 3.0);
    EXPECT_EQ(targetStrain, 11.0);
    EXPECT_EQ(refStrain, 21.0);
    EXPECT_EQ(value, 31.0);
    property.setAutoStrain(nullptr, nullptr, 0.0, 0.0, 0.0, false);
    EXPECT_FALSE(property.getAutoStrain(target, ref, targetStrain, refStrain, value));
    delete[] target;
    delete[] ref;
}

TEST(ElemProperty, SpringbackListsPassIntoItsHands)
{
    ElemProperty property;
    property.setSprinkbackFixity(true);
    property.setAlignmentSize(3);
    property.setAlignment(arrayOf({1, 2, 3}));
    property.setTrimmingSize(2);
    property.setTrimming(arrayOf({1001, 1002}));
    EXPECT_TRUE(property.getSprinkbackFixity());
    EXPECT_EQ(property.getAlignmentSize(), 3);
    EXPECT_EQ(property.getAlignment()[2], 3);
    EXPECT_EQ(property.getTrimmingSize(), 2);
    EXPECT_EQ(property.getTrimming()[1], 1002);
    property.setAlignment(arrayOf({9}));
    property.setAlignment(property.getAlignment());
    EXPECT_EQ(property.getAlignment()[0], 9);
    property.setTrimming(nullptr);
    EXPECT_EQ(property.getTrimming(), nullptr);
}

namespace
{
std::unique_ptr<ElemProperty> filled()
{
    auto property = std::make_unique<ElemProperty>();
    property->sizeProperty(1);
    property->sizePropertyIndex(4);
    property->propertyId(2, 1);
    property->sizePressPads(1);
    property->pressPadSize(1, 2);
    property->pressPadXYZ(new double * [1]
                          {
                              new double[3] {}
                          });
    property->sizeDrawBeads(1);
    DrawBead bead = beadWith(2);
    property->drawBeads(1, bead);
    property->sizeBlankHolders(1);
    BlankHolder holder = holderWith(2);
    property->blankHolders(1, holder);
    property->sizeDispBC(1);
    DispBC table = tableWith({5});
    property->dispBCs(1, table);
    double const point[3] = {1.0, 2.0, 3.0};
    property->setAutoStrain(point, point, 1.0, 2.0, 3.0, true);
    property->setSprinkbackFixity(true);
    property->setAlignmentSize(1);
    property->setAlignment(arrayOf({1}));
    property->setTrimmingSize(1);
    property->setTrimming(arrayOf({2}));
    return property;
}
} // namespace

TEST(ElemProperty, ClearZeroesEverything)
{
    std::unique_ptr<ElemProperty> const property = filled();
    property->clear();
    EXPECT_EQ(property->sizeProperty(), 0);
    EXPECT_EQ(property->sizePressPads(), 0);
    EXPECT_EQ(property->sizeDrawBeads(), 0);
    EXPECT_EQ(property->sizeBlankHolders(), 0);
    EXPECT_EQ(property->sizeDispBC(), 0);
    EXPECT_FALSE(property->getSprinkbackFixity());
    EXPECT_EQ(property->getAlignmentSize(), 0);
    EXPECT_EQ(property->getAlignment(), nullptr);
    EXPECT_EQ(property->getTrimmingSize(), 0);
    EXPECT_EQ(property->getTrimming(), nullptr);
    double * target = nullptr;
    double * ref = nullptr;
    double numbers[3] = {9.0, 9.0, 9.0};
    EXPECT_FALSE(property->getAutoStrain(target, ref, numbers[0], numbers[1], numbers[2]));
    EXPECT_EQ(target, nullptr);
    EXPECT_EQ(numbers[2], 0.0);
    property->sizeProperty(1); // and it can be filled anew
    EXPECT_NE(property->material(1), nullptr);
}

TEST(ElemProperty, ACopyHasTheSameArraysAndItsOwnCounts)
{
    std::unique_ptr<ElemProperty> source = filled();
    ElemProperty copy(*source);
    EXPECT_EQ(copy.material(1), source->material(1));
    EXPECT_EQ(&copy.formingLimit(1), &source->formingLimit(1));
    EXPECT_EQ(copy.pressPadSize(), source->pressPadSize());
    EXPECT_EQ(copy.pressPadXYZ(), source->pressPadXYZ());
    EXPECT_EQ(&copy.drawBeads(1), &source->drawBeads(1));
    EXPECT_EQ(copy.getAlignment(), source->getAlignment());
    EXPECT_TRUE(copy.getSprinkbackFixity());
    copy.propertyId(3, 8);
    EXPECT_EQ(source->propertyIndex(3), 8);
    copy.updateDrawBeads(0);
    copy.setAlignmentSize(0);
    EXPECT_EQ(source->sizeDrawBeads(), 1);
    EXPECT_EQ(source->getAlignmentSize(), 1);
    source.reset(); // the copy keeps what it shares
    EXPECT_EQ(copy.propertyIndex(3), 8);
    EXPECT_EQ(copy.blankHolders(1).edges[1].node1, 21);
    EXPECT_EQ(copy.dispBCs(1).nodes[0], 5);
}

TEST(ElemProperty, AssignmentSharesAndClearingOneLeavesTheOther)
{
    std::unique_ptr<ElemProperty> const source = filled();
    std::unique_ptr<ElemProperty> const target = filled();
    EXPECT_EQ(&(*target = *source), target.get());
    EXPECT_EQ(&target->drawBeads(1), &source->drawBeads(1));
    ElemProperty const & itself = *target;
    *target = itself;
    source->clear();
    EXPECT_EQ(target->totalDBEdges(), 2);
    EXPECT_EQ(target->pressPadSize(1), 2);
    target->sizeDrawBeads(3); // an array of its own from here on
    EXPECT_EQ(target->sizeDrawBeads(), 3);
}

TEST(ElemProperty, ZeroingTheFamiliesOfACopyLeavesTheSource)
{
    std::unique_ptr<ElemProperty> const source = filled();
    ElemProperty copy(*source);
    copy.setPressurePad();
    copy.setDrawBeads();
    copy.setBlankHolders();
    copy.setDispBC();
    EXPECT_EQ(copy.sizePressPads() + copy.sizeDrawBeads() + copy.sizeBlankHolders() + copy.sizeDispBC(), 0);
    EXPECT_EQ(source->pressPadSize(1), 2);
    EXPECT_EQ(source->totalDBEdges(), 2);
    EXPECT_EQ(source->totalBHEdges(), 2);
    EXPECT_EQ(source->totalDispBCNodes(), 1);
}

TEST(ElemProperty, SizesBelowZeroCountAsZero)
{
    ElemProperty property;
    property.sizeProperty(-3);
    property.sizePropertyIndex(-3);
    property.sizePressPads(-3);
    property.sizeDrawBeads(-3);
    property.sizeBlankHolders(-3);
    property.sizeDispBC(-3);
    EXPECT_EQ(property.sizeProperty(), 0);
    EXPECT_EQ(property.sizePressPads() + property.sizeDrawBeads() + property.sizeBlankHolders() + property.sizeDispBC(),
              0);
}
