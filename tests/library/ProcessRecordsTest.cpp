// ProcessRecordsTest.cpp: the records of the process definition.

#include "ElemProperty.h"

#include "HostFixture.h"
#include "Mesh.h"
#include "ProcessRecordsFixture.h"
#include "RecordBytes.h"
#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

static_assert(sizeof(FullBlankHolder) == 24 && sizeof(EdgeProperty) == 48);
static_assert(offsetof(DrawBead, force) == 8 && offsetof(DrawBead, xyz) == 40);
static_assert(offsetof(BlankHolder, values) == 16 && offsetof(BlankHolder, edges) == 40);
static_assert(std::is_same_v<decltype(std::declval<DrawBead &>() = std::declval<DrawBead const &>()), DrawBead>);
static_assert(
    std::is_same_v<decltype(std::declval<BlankHolder &>() = std::declval<BlankHolder const &>()), BlankHolder>);

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
