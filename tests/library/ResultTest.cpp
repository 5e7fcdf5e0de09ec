// ResultTest.cpp: the result store: its arrays, and their bounds row by row.

#include "ResultFixture.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

using namespace resulttest;

namespace
{
std::string const kNodeBound = "AssertionFailed:node >= 0 && node < (mNumNodeResult+1)";
std::string const kElemBound = "AssertionFailed:elem >= 0 && elem < (mNumElemResult+1)";
std::string const kAllocBound = "AssertionFailed:node >= 0 && node < (mAlloc+1)";
} // namespace

static_assert(std::has_virtual_destructor_v<Result>);

TEST_F(ResultStore, IsSizedAndZeroedFromTheMesh)
{
    EXPECT_EQ(result.numNodeResult(), 6);
    EXPECT_EQ(result.numElemResult(), 2);
    EXPECT_EQ(result.PunchForce(), 0.0F);
    for (int node = 0; node <= 6; ++node)
    {
        for (int comp = 0; comp < 3; ++comp)
            EXPECT_EQ(result.disp(node, comp) + result.disp2d(node, comp) + result.dispOnBinder(node, comp) +
                          result.nstrain(node, comp),
                      0.0F);
        EXPECT_EQ(result.nsafety(node) + result.nforming(node), 0);
        EXPECT_EQ(result.dsafety(node) + result.dforming(node), 0.0);
    }
    for (int elem = 0; elem <= 2; ++elem)
    {
        for (int comp = 0; comp < 3; ++comp)
            EXPECT_EQ(result.strain(elem, comp), 0.0F);
        EXPECT_EQ(result.thickness(elem) + result.thickStrain(elem) + result.theta(elem), 0.0F);
        EXPECT_EQ(result.safety(elem) + result.forming(elem), 0);
    }
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, EveryArrayKeepsItsOwnValues)
{
    float next = 0.0F;
    auto const value = [&next] { return next += 1.0F; };
    for (int node = 0; node <= 6; ++node)
    {
        for (int comp = 0; comp < 3; ++comp)
        {
            result.disp(node, comp, value());
            result.disp2d(node, comp, value());
            result.dispOnBinder(node, comp, value());
            result.nstrain(node, comp, value());
        }
        result.nsafety(node, static_cast<int>(value()));
        result.nforming(node, static_cast<int>(value()));
        result.dsafety(node, static_cast<double>(value()));
        result.dforming(node, static_cast<double>(value()));
        result.NodeThickness(node, value());
        result.EquivalentStrain(node, value());
        result.stress(node, value());
    }
    for (int elem = 0; elem <= 2; ++elem)
    {
        for (int comp = 0; comp < 3; ++comp)
            result.strain(elem, comp, value());
        result.thickness(elem, value());
        result.thickStrain(elem, value());
        result.safety(elem, static_cast<int>(value()));
        result.forming(elem, static_cast<int>(value()));
        result.equivalentStrain(elem, value());
        result.theta(elem, value());
    }

    next = 0.0F;
    Result const & read = result;
    for (int node = 0; node <= 6; ++node)
    {
        for (int comp = 0; comp < 3; ++comp)
        {
            EXPECT_EQ(read.disp(node, comp), value());
            EXPECT_EQ(read.disp1(node, comp), read.disp(node, comp));
            EXPECT_EQ(read.disp2d(node, comp), value());
            EXPECT_EQ(read.dispOnBinder(node, comp), value());
            EXPECT_EQ(read.dispOnBinder1(node, comp), read.dispOnBinder(node, comp));
            EXPECT_EQ(read.nstrain(node, comp), value());
        }
        EXPECT_EQ(read.nsafety(node), static_cast<int>(value()));
        EXPECT_EQ(read.nforming(node), static_cast<int>(value()));
        EXPECT_EQ(read.dsafety(node), static_cast<double>(value()));
        EXPECT_EQ(read.dforming(node), static_cast<double>(value()));
        EXPECT_EQ(read.NodeThickness(node), value());
        EXPECT_EQ(read.EquivalentStrain(node), value());
        EXPECT_EQ(read.stress(node), value());
    }
    for (int elem = 0; elem <= 2; ++elem)
    {
        for (int comp = 0; comp < 3; ++comp)
            EXPECT_EQ(read.strain(elem, comp), value());
        EXPECT_EQ(read.thickness(elem), value());
        EXPECT_EQ(read.thickStrain(elem), value());
        EXPECT_EQ(read.safety(elem), static_cast<int>(value()));
        EXPECT_EQ(read.forming(elem), static_cast<int>(value()));
        EXPECT_EQ(read.equivalentStrain(elem), value());
        EXPECT_EQ(read.theta(elem), value());
    }
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, VectorsGoInAndOutAsSinglePrecision)
{
    double const row[3] = {0.1, -2.5, 1e9 + 1.0};
    result.disp(2, Vec(row));
    result.dispOnBinder(3, Vec(row));
    EXPECT_EQ(result.disp(2, 0), 0.1F);
    EXPECT_EQ(result.disp(2, 2), 1e9F);
    Vec const disp = result.disp(2);
    EXPECT_EQ(disp[0], static_cast<double>(0.1F));
    EXPECT_EQ(disp[1], -2.5);
    EXPECT_EQ(result.dispOnBinder(3)[2], 1e9);
    EXPECT_EQ(result.dispOnBinder(2)[0], 0.0);
}

TEST_F(ResultStore, TheVectorIsACopy)
{
    Vec disp = result.disp(2);
    disp[0] = 5.0;
    EXPECT_EQ(result.disp(2, 0), 0.0F);
}

TEST_F(ResultStore, PunchForceIsNarrowed)
{
    result.PunchForce(0.1);
    EXPECT_EQ(result.PunchForce(), 0.1F);
    result.PunchForce(16777217.0);
    EXPECT_EQ(result.PunchForce(), 16777216.0F);
}

TEST_F(ResultStore, AccessOutsideTheNodesIsReportedAndGoesToIndexZero)
{
    struct
    {
        char const * name;
        std::function<void(int)> set;
        std::function<double(int)> get;
        bool setterChecks;
    } const rows[] = {
        {"disp", [this](int i) { result.disp(i, 1, 3.0F); }, [this](int i) { return result.disp(i, 1); }, true},
        {"disp1", [this](int i) { result.disp(i, 1, 3.0F); }, [this](int i) { return result.disp1(i, 1); }, true},
        {"disp2d", [this](int i) { result.disp2d(i, 1, 3.0F); }, [this](int i) { return result.disp2d(i, 1); }, true},
        {"dispOnBinder", [this](int i) { result.dispOnBinder(i, 1, 3.0F); },
         [this](int i) { return result.dispOnBinder(i, 1); }, true},
        {"dispOnBinder1", [this](int i) { result.dispOnBinder(i, 1, 3.0F); },
         [this](int i) { return result.dispOnBinder1(i, 1); }, true},
        {"nstrain", [this](int i) { result.nstrain(i, 1, 3.0F); }, [this](int i) { return result.nstrain(i, 1); },
         true},
        {"nforming", [this](int i) { result.nforming(i, 3); }, [this](int i) { return result.nforming(i); }, true},
        {"dforming", [this](int i) { result.dforming(i, 3.0); }, [this](int i) { return result.dforming(i); }, true},
        {"NodeThickness", [this](int i) { result.NodeThickness(i, 3.0F); },
         [this](int i) { return result.NodeThickness(i); }, true},
        {"nsafety", [this](int) { result.nsafety(0, 3); }, [this](int i) { return result.nsafety(i); }, false},
        {"dsafety", [this](int) { result.dsafety(0, 3.0); }, [this](int i) { return result.dsafety(i); }, false},
    };
    for (auto const & row : rows)
        for (int const index : {-1, 7, 1000000, -2000000000})
        {
            row.set(index);
            EXPECT_EQ(reported().size(), row.setterChecks ? 1U : 0U) << row.name;
            EXPECT_EQ(row.get(index), 3.0) << row.name; // what the setter put to index 0
            EXPECT_EQ(reported(), std::vector<std::string>({kNodeBound})) << row.name;
            EXPECT_EQ(row.get(0), 3.0) << row.name;
            EXPECT_EQ(row.get(6), 0.0) << row.name;
            EXPECT_TRUE(host.reports.empty()) << row.name;
        }
}

TEST_F(ResultStore, VectorAccessIsBoundedAsTheComponentsAre)
{
    double const row[3] = {1.0, 2.0, 3.0};
    result.disp(7, Vec(row));
    result.dispOnBinder(-1, Vec(row));
    EXPECT_EQ(result.disp(99)[1], 2.0);
    EXPECT_EQ(result.dispOnBinder(99)[2], 3.0);
    EXPECT_EQ(reported(), std::vector<std::string>(4, kNodeBound));
}

TEST_F(ResultStore, AccessOutsideTheElementsIsReportedAndGoesToIndexZero)
{
    struct
    {
        char const * name;
        std::function<void(int)> set;
        std::function<double(int)> get;
    } const rows[] = {
        {"thickness", [this](int i) { result.thickness(i, 3.0F); }, [this](int i) { return result.thickness(i); }},
        {"thickStrain", [this](int i) { result.thickStrain(i, 3.0F); },
         [this](int i) { return result.thickStrain(i); }},
        {"safety", [this](int i) { result.safety(i, 3); }, [this](int i) { return result.safety(i); }},
        {"forming", [this](int i) { result.forming(i, 3); }, [this](int i) { return result.forming(i); }},
        {"theta", [this](int i) { result.theta(i, 3.0F); }, [this](int i) { return result.theta(i); }},
        {"equivalentStrain", [this](int i) { result.equivalentStrain(i, 3.0F); },
         [this](int i) { return result.equivalentStrain(i); }},
    };
    for (auto const & row : rows)
        for (int const index : {-1, 3, 7})
        {
            row.set(index);
            EXPECT_EQ(row.get(index), 3.0) << row.name;
            EXPECT_EQ(reported(), std::vector<std::string>(2, kElemBound)) << row.name;
        }
    result.strain(3, 2, 4.0F); // of this pair only the setter looks
    EXPECT_EQ(reported(), std::vector<std::string>({kElemBound}));
    EXPECT_EQ(result.strain(0, 2), 4.0F);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, RawAccessReportsNothingAndGoesToIndexZeroBeyondTheArray)
{
    for (int const index : {-1, 7, 1000000, 2000000000, -2000000000})
    {
        result.nsafety(0, 0);
        result.nsafety(index, 3);
        EXPECT_EQ(result.nsafety(0), 3) << index;
        result.dsafety(0, 0.0);
        result.dsafety(index, 4.0);
        EXPECT_EQ(result.dsafety(0), 4.0) << index;
        result.stress(0, 0.0F);
        result.stress(index, 5.0F);
        EXPECT_EQ(result.stress(0), 5.0F) << index;
        EXPECT_EQ(result.stress(index), 5.0F) << index;
        result.strain(0, 0, 6.0F);
        EXPECT_EQ(result.strain(index, 2), 6.0F) << index;
    }
    result.numNodeResult(2); // the count alone: the rows are there
    result.nsafety(6, 9);
    result.numNodeResult(6);
    EXPECT_EQ(result.nsafety(6), 9);
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(ResultStore, ReportsNameTheirSource)
{
    result.thickness(3);
    ASSERT_EQ(host.reports.size(), 1U);
    EXPECT_EQ(host.reports[0].file, "Result");
}

TEST_F(ResultStore, TheSecondEquivalentStrainIsBoundedByTheLargerCount)
{
    for (auto const & [nodes, elems] : {std::pair(9, 3), std::pair(4, 11)})
    {
        VOZCatMesh const uneven = meshOf(nodes, elems);
        Result store(uneven);
        int const last = std::max(nodes, elems);
        store.EquivalentStrain(0, 0.0F);
        store.EquivalentStrain(last, 2.0F);
        store.stress(last, 5.0F);
        EXPECT_EQ(store.EquivalentStrain(last), 2.0F);
        EXPECT_EQ(store.stress(last), 5.0F);
        EXPECT_TRUE(host.reports.empty());
        store.EquivalentStrain(last + 1, 7.0F);
        EXPECT_EQ(store.EquivalentStrain(-1), 7.0F);
        EXPECT_EQ(store.EquivalentStrain(0), 7.0F);
        EXPECT_EQ(reported(), std::vector<std::string>(2, kAllocBound));
    }
}

TEST_F(ResultStore, AConstStoreIsWrittenWhereItsReadersNeedIt)
{
    Result const & read = result;
    read.strain(1, 0, 1.0F);
    read.nstrain(1, 0, 2.0F);
    read.stress(1, 3.0F);
    EXPECT_EQ(result.strain(1, 0), 1.0F);
    EXPECT_EQ(result.nstrain(1, 0), 2.0F);
    EXPECT_EQ(result.stress(1), 3.0F);
}

TEST_F(ResultStore, TheNodeCountMovesTheBoundAndNoMemory)
{
    result.nforming(5, 1);
    result.numNodeResult(4);
    EXPECT_EQ(result.numNodeResult(), 4);
    EXPECT_EQ(result.nforming(5), 0);
    EXPECT_EQ(reported(), std::vector<std::string>({kNodeBound}));
    result.numNodeResult(1000); // beyond what there is: still reported, still index 0
    EXPECT_EQ(result.nforming(5), 1);
    EXPECT_EQ(result.nforming(7), 0);
    EXPECT_EQ(reported(), std::vector<std::string>({kNodeBound}));
    result.numNodeResult(INT_MAX);
    EXPECT_EQ(result.nforming(5), 1);
    EXPECT_TRUE(host.reports.empty());
    result.numNodeResult(-2); // not even index 0 is within
    EXPECT_EQ(result.nforming(0), 0);
    EXPECT_EQ(reported(), std::vector<std::string>({kNodeBound}));
}

TEST_F(ResultStore, CopiesShareTheArraysButNotTheNumbers)
{
    auto first = std::make_unique<Result>(mesh);
    first->PunchForce(3.0);
    Result copy(*first);
    Result assigned(meshOf(3, 1));
    EXPECT_EQ(&(assigned = copy), &assigned);
    copy.thickness(2, 0.7F);
    EXPECT_EQ(first->thickness(2), 0.7F);
    EXPECT_EQ(assigned.thickness(2), 0.7F);
    EXPECT_EQ(assigned.numNodeResult(), 6);
    copy.PunchForce(4.0);
    copy.numNodeResult(2);
    EXPECT_EQ(first->PunchForce(), 3.0F);
    EXPECT_EQ(assigned.PunchForce(), 3.0F);
    EXPECT_EQ(first->numNodeResult(), 6);
    first.reset();
    EXPECT_EQ(assigned.thickness(2), 0.7F); // the last of them frees
}

TEST_F(ResultStore, OfAnEmptyMeshHasIndexZeroAlone)
{
    Result store{VOZCatMesh()};
    store.disp(0, 2, 1.0F);
    store.strain(0, 2, 1.0F);
    store.EquivalentStrain(0, 1.0F);
    EXPECT_TRUE(host.reports.empty());
    EXPECT_EQ(store.disp(1, 2), 1.0F);
    EXPECT_EQ(reported(), std::vector<std::string>({kNodeBound}));
    EXPECT_EQ(store.AverageNodeThickness(VOZCatMesh()), 0);
}
