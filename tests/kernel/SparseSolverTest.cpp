// SparseSolverTest.cpp

#include "onestep/SparseEngines.h"

#include <gtest/gtest.h>

#include <Eigen/Dense>

#include <random>

using namespace voz::onestep;

namespace
{

// A random structurally symmetric pattern with full diagonal.
SparsePattern randomPattern(int i_size, std::mt19937 & io_random)
{
    std::vector<std::vector<char>> has(static_cast<std::size_t>(i_size),
                                       std::vector<char>(static_cast<std::size_t>(i_size), 0));
    std::uniform_int_distribution<int> pick(0, i_size - 1);
    for (int i = 0; i < i_size; ++i)
        has[static_cast<std::size_t>(i)][static_cast<std::size_t>(i)] = 1;
    for (int k = 0; k < 3 * i_size; ++k)
    {
        auto const a = static_cast<std::size_t>(pick(io_random)), b = static_cast<std::size_t>(pick(io_random));
        has[a][b] = has[b][a] = 1;
    }
    SparsePattern pattern;
    pattern.size = i_size;
    pattern.rowStart.push_back(0);
    for (auto const & row : has)
    {
        for (int c = 0; c < i_size; ++c)
            if (row[static_cast<std::size_t>(c)] != 0)
                pattern.column.push_back(c);
        pattern.rowStart.push_back(static_cast<int>(pattern.column.size()));
    }
    return pattern;
}

Eigen::MatrixXd dense(SparsePattern const & i_pattern, std::vector<double> const & i_values)
{
    Eigen::MatrixXd matrix = Eigen::MatrixXd::Zero(i_pattern.size, i_pattern.size);
    for (int row = 0; row < i_pattern.size; ++row)
        for (int k = i_pattern.rowStart[static_cast<std::size_t>(row)];
             k < i_pattern.rowStart[static_cast<std::size_t>(row) + 1]; ++k)
            matrix(row, i_pattern.column[static_cast<std::size_t>(k)]) = i_values[static_cast<std::size_t>(k)];
    return matrix;
}

} // namespace

TEST(SparseSolver, FindsEntriesOfThePattern)
{
    SparsePattern const pattern{3, {0, 2, 3, 5}, {0, 2, 1, 0, 2}};
    EXPECT_EQ(pattern.find(0, 2), 1);
    EXPECT_EQ(pattern.find(2, 2), 4);
    EXPECT_EQ(pattern.find(0, 1), -1);
}

TEST(SparseSolver, SolvesUnsymmetricSystemsAgainAndAgainOnOnePattern)
{
    std::mt19937 random(11);
    std::normal_distribution<double> number;
    SparsePattern const pattern = randomPattern(60, random);
    SparseSolver solver(pattern, SparseSolver::Kind::Unsymmetric);
    for (int repeat = 0; repeat < 3; ++repeat)
    {
        std::vector<double> values(pattern.column.size());
        for (double & v : values)
            v = number(random);
        for (int i = 0; i < pattern.size; ++i)
            values[static_cast<std::size_t>(pattern.find(i, i))] += 5.0;
        std::vector<double> sides(120);
        for (double & v : sides)
            v = number(random);
        Eigen::MatrixXd const right = Eigen::Map<Eigen::MatrixXd>(sides.data(), 60, 2);
        ASSERT_TRUE(solver.factorise(values));
        ASSERT_TRUE(solver.solve(sides, 2));
        Eigen::MatrixXd const solution = Eigen::Map<Eigen::MatrixXd>(sides.data(), 60, 2);
        EXPECT_LT((dense(pattern, values) * solution - right).norm(), 1e-11 * right.norm());
    }
}

TEST(SparseSolver, SolvesDefiniteSystemsFromTheirUpperHalf)
{
    std::mt19937 random(12);
    std::normal_distribution<double> number;
    SparsePattern const pattern = randomPattern(50, random);
    std::vector<double> values(pattern.column.size());
    for (int row = 0; row < 50; ++row)
        for (int column = row; column < 50; ++column)
            if (int const k = pattern.find(row, column); k >= 0)
            {
                double const v = row == column ? 20.0 : number(random);
                values[static_cast<std::size_t>(k)] = values[static_cast<std::size_t>(pattern.find(column, row))] = v;
            }
    std::vector<double> side(50, 1.0);
    SparseSolver solver(pattern, SparseSolver::Kind::PositiveDefinite);
    ASSERT_TRUE(solver.factorise(values));
    ASSERT_TRUE(solver.solve(side, 1));
    Eigen::VectorXd const x = Eigen::Map<Eigen::VectorXd>(side.data(), 50);
    EXPECT_LT((dense(pattern, values) * x - Eigen::VectorXd::Ones(50)).norm(), 1e-12);
}

TEST(SparseSolver, ReportsASingularMatrixAndNumbersThatAreNone)
{
    SparsePattern const pattern{2, {0, 2, 4}, {0, 1, 0, 1}};
    SparseSolver solver(pattern, SparseSolver::Kind::Unsymmetric);
    std::vector<double> side{1.0, 2.0};
    EXPECT_FALSE(solver.solve(side, 1)); // nothing factorised yet
    EXPECT_FALSE(solver.factorise(std::vector<double>{1.0, 2.0, 2.0, 4.0}) && solver.solve(side, 1));
    EXPECT_FALSE(solver.factorise(std::vector<double>{1.0, std::nan(""), 2.0, 4.0}));
    side = {1.0, 2.0};
    EXPECT_TRUE(solver.factorise(std::vector<double>{2.0, 0.0, 0.0, 4.0}));
    EXPECT_TRUE(solver.solve(side, 1));
    EXPECT_DOUBLE_EQ(side[0], 0.5);
    EXPECT_DOUBLE_EQ(side[1], 0.5);
}

// The engine of builds without a multifrontal solver.
TEST(SparseSolver, EigenSolvesTheSameSystems)
{
    std::mt19937 random(13);
    std::normal_distribution<double> number;
    SparsePattern const pattern = randomPattern(80, random);
    auto const engine = makeEigenEngine(pattern, SparseSolver::Kind::Unsymmetric);
    for (double const diagonal : {5.0, 0.0}) // without weight on the diagonal its pivots do not serve
    {
        std::vector<double> values(pattern.column.size());
        for (double & v : values)
            v = number(random);
        for (int i = 0; i < pattern.size; ++i)
            values[static_cast<std::size_t>(pattern.find(i, i))] = diagonal;
        std::vector<double> sides(240);
        for (double & v : sides)
            v = number(random);
        Eigen::MatrixXd const right = Eigen::Map<Eigen::MatrixXd>(sides.data(), 80, 3);
        ASSERT_TRUE(engine->factorise(values));
        ASSERT_TRUE(engine->solve(sides, 3));
        Eigen::MatrixXd const solution = Eigen::Map<Eigen::MatrixXd>(sides.data(), 80, 3);
        EXPECT_LT((dense(pattern, values) * solution - right).norm(), 1e-9 * right.norm());
    }
    EXPECT_FALSE(engine->factorise(std::vector<double>(pattern.column.size(), std::nan(""))));
}

TEST(SparseSolver, EigenReportsASingularMatrix)
{
    SparsePattern const pattern{2, {0, 2, 4}, {0, 1, 0, 1}};
    auto const engine = makeEigenEngine(pattern, SparseSolver::Kind::Unsymmetric);
    std::vector<double> side{1.0, 3.0};
    EXPECT_FALSE(engine->factorise(std::vector<double>{1.0, 2.0, 2.0, 4.0}) && engine->solve(side, 1));
}
