// ElemPropertyTest.cpp: the process definition: sizes, shared and deep copies, and its records.

#include "ElemProperty.h"

#include "HostFixture.h"
#include "Mesh.h"
#include "RecordBytes.h"
#include "SampleMeshes.h"
#include "VOZMaterial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace
{
int * arrayOf(std::vector<int> const & values)
{
    int * const array = new int[values.size()];
    std::copy(values.begin(), values.end(), array);
    return array;
}

DrawBead beadWith(int edges)
{
    DrawBead bead;
    bead.edgeCount = edges;
    bead.force = 120.0;
    bead.uplift = 3.0;
    bead.edges = new EdgeProperty[static_cast<std::size_t>(edges)];
    for (int i = 0; i < edges; ++i)
        bead.edges[i].element = 10 + i;
    bead.xyzCount = 2;
    bead.xyz = new double[6]{1, 2, 3, 4, 5, 6};
    return bead;
}

BlankHolder holderWith(int edges)
{
    BlankHolder holder;
    holder.edgeCount = edges;
    holder.force = 5000.0;
    holder.values[2] = 7.0;
    holder.edges = new EdgeProperty[static_cast<std::size_t>(edges)];
    for (int i = 0; i < edges; ++i)
        holder.edges[i].node1 = 20 + i;
    return holder;
}

DispBC tableWith(std::vector<int> const & nodes)
{
    DispBC table(static_cast<int>(nodes.size()));
    std::copy(nodes.begin(), nodes.end(), table.nodes);
    return table;
}
} // namespace

static_assert(sizeof(FullBlankHolder) == 24 && sizeof(EdgeProperty) == 48);
static_assert(offsetof(DrawBead, force) == 8 && offsetof(DrawBead, xyz) == 40);
static_assert(offsetof(BlankHolder, values) == 16 && offsetof(BlankHolder, edges) == 40);
static_assert(std::is_same_v<decltype(std::declval<DrawBead &>() = std::declval<DrawBead const &>()), DrawBead>);
static_assert(
    std::is_same_v<decltype(std::declval<BlankHolder &>() = std::declval<BlankHolder const &>()), BlankHolder>);
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

TEST(EdgeProperty, StartsAtZeroAndCopiesAllFields)
{
    EdgeProperty edge;
    EXPECT_EQ(edge.element + edge.node1 + edge.node2, 0);
    for (double const value : edge.edgeValues)
        EXPECT_EQ(value, 0.0);
    edge.node2 = 4;
    edge.edgeValues[3] = 0.5;
    EdgeProperty const copy(edge);
    EdgeProperty assigned;
    assigned = edge;
    EXPECT_EQ(copy.node2 + assigned.node2, 8);
    EXPECT_EQ(copy.edgeValues[3] + assigned.edgeValues[3], 1.0);
}

//   4---3---6
//   | 1 |2/
//   1---2   5     element 2 is the triangle 2, 6, 3; no element holds node 5
class EdgeNaturalCoord : public HostFixture
{
protected:
    EdgeNaturalCoord()
        : mesh(samples::mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {2, 1, 0}},
                             {{{1, 2, 3, 4}}, {{2, 6, 3, 2}}}))
    {
    }

    std::vector<double> coord(int element, int node1, int node2, int end)
    {
        EdgeProperty edge;
        edge.element = element;
        edge.node1 = node1;
        edge.node2 = node2;
        double xi = 9.0;
        double eta = 9.0;
        edge.naturalCoord(&mesh, end, xi, eta);
        return {xi, eta};
    }

    VOZCatMesh mesh;
};

using Pair = std::vector<double>;

TEST_F(EdgeNaturalCoord, IsThatOfTheCorner)
{
    EXPECT_EQ(coord(1, 1, 2, 1), Pair({-1, -1}));
    EXPECT_EQ(coord(1, 1, 2, 2), Pair({1, -1}));
    EXPECT_EQ(coord(1, 3, 4, 1), Pair({1, 1}));
    EXPECT_EQ(coord(1, 3, 4, 0), Pair({-1, 1})); // any end but 1 is the second
    EXPECT_EQ(coord(2, 2, 6, 1), Pair({0, 0}));
    EXPECT_EQ(coord(2, 2, 6, 2), Pair({1, 0}));
    EXPECT_EQ(coord(2, 6, 3, 2), Pair({0, 1}));
}

TEST_F(EdgeNaturalCoord, StaysForANodeOutsideTheElementOrNoMesh)
{
    EXPECT_EQ(coord(1, 5, 6, 1), Pair({9, 9}));
    EdgeProperty edge;
    edge.element = 1;
    edge.node1 = 1;
    double xi = 7.0;
    double eta = 8.0;
    edge.naturalCoord(nullptr, 1, xi, eta);
    EXPECT_EQ(xi, 7.0);
    EXPECT_EQ(eta, 8.0);
}

TEST_F(EdgeNaturalCoord, TakesNodePositionsAndElementPositionsOrLabels)
{
    mesh.IdsOffset(1000, 500);
    EXPECT_EQ(coord(1, 3, 4, 1), Pair({1, 1}));
    EXPECT_EQ(coord(502, 2, 6, 2), Pair({1, 0}));
    EXPECT_EQ(coord(1, 1003, 4, 1), Pair({9, 9})); // a label is no position
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(EdgeNaturalCoord, AnElementThatIsNotThereIsABrokenContract)
{
    EXPECT_EQ(coord(3, 1, 2, 1), Pair({9, 9}));
    EXPECT_EQ(coord(0, 1, 2, 1), Pair({9, 9}));
    EXPECT_EQ(host.reports.size(), 2U);
    EXPECT_EQ(host.reports[0].file, "Mesh");
}

TEST(DrawBead, CopiesAreDeepAndAssignmentReturnsACopy)
{
    DrawBead const source = beadWith(2);
    DrawBead target = beadWith(5);
    DrawBead const returned = (target = source);
    for (DrawBead const * bead : {static_cast<DrawBead const *>(&target), &returned})
    {
        EXPECT_EQ(bead->edgeCount, 2);
        EXPECT_EQ(bead->force, 120.0);
        EXPECT_EQ(bead->uplift, 3.0);
        EXPECT_EQ(bead->edges[1].element, 11);
        EXPECT_EQ(bead->xyzCount, 2);
        EXPECT_EQ(bead->xyz[5], 6.0);
        EXPECT_NE(bead->edges, source.edges);
        EXPECT_NE(bead->xyz, source.xyz);
    }
    EXPECT_NE(returned.edges, target.edges);
    DrawBead const & itself = target;
    target = itself;
    EXPECT_EQ(target.edges[1].element, 11);
    target = DrawBead();
    EXPECT_EQ(target.edges, nullptr);
    EXPECT_EQ(target.xyz, nullptr);
}

TEST(BlankHolder, CopiesAreDeepAndAssignmentReturnsACopy)
{
    BlankHolder const source = holderWith(2);
    BlankHolder target = holderWith(5);
    BlankHolder const returned = (target = source);
    for (BlankHolder const * holder : {static_cast<BlankHolder const *>(&target), &returned})
    {
        EXPECT_EQ(holder->edgeCount, 2);
        EXPECT_EQ(holder->force, 5000.0);
        EXPECT_EQ(holder->values[2], 7.0);
        EXPECT_EQ(holder->edges[1].node1, 21);
        EXPECT_NE(holder->edges, source.edges);
    }
    EXPECT_NE(returned.edges, target.edges);
    BlankHolder const & itself = target;
    target = itself;
    EXPECT_EQ(target.edges[1].node1, 21);
}

TEST(BlankHolder, LengthIsTheSumOverItsEdges)
{
    VOZCatMesh const mesh = samples::mesh({{0, 0, 0}, {3, 4, 0}, {3, 4, 12}}, samples::Triangles{{{1, 2, 3}}});
    BlankHolder holder = holderWith(2);
    holder.edges[0].node1 = 1;
    holder.edges[0].node2 = 2;
    holder.edges[1].node1 = 3;
    holder.edges[1].node2 = 2;
    EXPECT_DOUBLE_EQ(holder.length(&mesh), 17.0);
    EXPECT_EQ(holder.length(nullptr), 0.0);
    EXPECT_EQ(BlankHolder().length(&mesh), 0.0);
}

TEST(DispBC, SizeZeroesWhatItHolds)
{
    DispBC table = tableWith({7, 8});
    table.kind = 3;
    table.tableFlag = 4;
    table.setCode(0x3F);
    table.values[5] = 1.0;
    table.setSize(3);
    EXPECT_EQ(table.size, 3);
    EXPECT_EQ(table.tableFlag, 0);
    EXPECT_EQ(table.kind, 3);
    for (int k = 0; k < 6; ++k)
    {
        EXPECT_EQ(table.flags[k], 0);
        EXPECT_EQ(table.values[k], 0.0);
    }
    for (int i = 0; i <= 3; ++i)
        EXPECT_EQ(table.nodes[i], 0);
    table.setSize(-1);
    EXPECT_EQ(table.size, 0);
}

TEST(DispBC, CodeBitsAreFlags)
{
    DispBC table;
    table.setCode(0b000011);
    EXPECT_EQ(std::vector<int>(table.flags, table.flags + 6), std::vector<int>({1, 1, 0, 0, 0, 0}));
    table.setCode(0b100100);
    EXPECT_EQ(std::vector<int>(table.flags, table.flags + 6), std::vector<int>({0, 0, 1, 0, 0, 1}));
    table.setCode(0x40); // no seventh flag
    EXPECT_EQ(std::vector<int>(table.flags, table.flags + 6), std::vector<int>({0, 0, 0, 0, 0, 0}));
}

TEST(DispBC, EqualTablesHaveTheSameNodesInTheSameOrder)
{
    DispBC const table = tableWith({1, 2, 3});
    DispBC other = tableWith({1, 2, 3});
    other.values[0] = 5.0;
    other.tableFlag = 2;
    other.setCode(7);
    EXPECT_TRUE(table == other);
    EXPECT_FALSE(table == tableWith({1, 3, 2}));
    EXPECT_FALSE(table == tableWith({1, 2}));
    EXPECT_TRUE(DispBC() == DispBC(0));
}

TEST(DispBC, AssignmentIsDeepAndLeavesTheKind)
{
    double const origin[3] = {1.0, 2.0, 3.0};
    DispBC source = tableWith({7, 8});
    source.kind = 3;
    source.tableFlag = 4;
    source.setCode(5);
    source.values[2] = -1.5;
    source.frame.origin(Vec(origin));
    DispBC target(9);
    target.kind = 1;
    EXPECT_EQ(&(target = source), &target);
    DispBC const copy(source);
    source.nodes[1] = -1;
    EXPECT_EQ(target.kind, 1);
    EXPECT_EQ(copy.kind, 0);
    for (DispBC const * table : {static_cast<DispBC const *>(&target), &copy})
    {
        EXPECT_EQ(table->size, 2);
        EXPECT_EQ(table->nodes[1], 8);
        EXPECT_EQ(table->nodes[2], 0);
        EXPECT_EQ(table->tableFlag, 4);
        EXPECT_EQ(table->flags[2], 1);
        EXPECT_EQ(table->values[2], -1.5);
        EXPECT_EQ(table->frame.origin(2), 3.0);
    }
    DispBC const & itself = target;
    target = itself;
    EXPECT_EQ(target.nodes[1], 8);
}

TEST(DispBC, ClearTakesEverythingBack)
{
    double const origin[3] = {1.0, 2.0, 3.0};
    DispBC table = tableWith({7, 8});
    table.kind = 3;
    table.tableFlag = 4;
    table.setCode(5);
    table.values[2] = -1.5;
    table.frame.origin(Vec(origin));
    table.Clear();
    EXPECT_EQ(table.kind, 0);
    EXPECT_EQ(table.tableFlag, 0);
    EXPECT_EQ(table.size, 0);
    EXPECT_EQ(table.nodes, nullptr);
    EXPECT_EQ(table.flags[0] + table.flags[2], 0);
    EXPECT_EQ(table.values[2], 0.0);
    EXPECT_EQ(table.frame.origin(2), 0.0);
}

TEST(FullBlankHolder, StartsInactive)
{
    FullBlankHolder const holder;
    EXPECT_EQ(holder.factor(), 0.0);
    EXPECT_EQ(holder.totalForce(), 0.0);
    EXPECT_EQ(holder.option(), -1);
    EXPECT_FALSE(holder.isActive());
}

TEST(FullBlankHolder, FieldsStandInTheirOrder)
{
    FullBlankHolder holder;
    holder.factor(0.3);
    holder.totalForce(5e4);
    holder.option(2);
    EXPECT_EQ(valueAt<double>(&holder, 0), 0.3);
    EXPECT_EQ(valueAt<double>(&holder, 8), 5e4);
    EXPECT_EQ(valueAt<int>(&holder, 16), 2);
}

TEST(FullBlankHolder, IsActiveByAnyOfItsThree)
{
    FullBlankHolder factor;
    factor.factor(0.1);
    EXPECT_TRUE(factor.isActive());
    FullBlankHolder force;
    force.totalForce(1.0);
    EXPECT_TRUE(force.isActive());
    FullBlankHolder option;
    option.option(1);
    EXPECT_TRUE(option.isActive());
    option.option(0);
    option.factor(-1.0);
    option.totalForce(-1.0);
    EXPECT_FALSE(option.isActive());
}

TEST(FullBlankHolder, FactorComesFromTheFieldOrTheOption)
{
    double const table[] = {0.0, 0.1, 0.35, 0.6, 0.8, -1.0};
    FullBlankHolder holder;
    for (int option = 0; option <= 5; ++option)
    {
        holder.option(option);
        holder.factor(0.0);
        EXPECT_EQ(holder.factor(), table[option]) << option;
        holder.factor(-2.0);
        EXPECT_EQ(holder.factor(), table[option]) << option;
        holder.factor(0.77);
        EXPECT_EQ(holder.factor(), 0.77) << option;
    }
    holder.factor(0.0);
    for (int const option : {-1, 6, 100, -100})
    {
        holder.option(option);
        EXPECT_EQ(holder.factor(), 0.0) << option;
    }
}
