// OneStepNewtonTest.cpp: the linear system of a step, and runs that used to need a detour.

#include "OneStepFixture.h"

#include "onestep/Partition.h"
#include "onestep/PieceSolver.h"

namespace
{

using namespace onesteptest;

// A sheet whose sides stay in their planes: on its walls a motion along x meets no horizontal tangent.
Problem heldHat(MaterialLaw const & law, double force, double friction)
{
    SurfaceMesh const mesh = wholeHat({}, 60.0, 3, 9, Cells::Triangles);
    Problem problem = problemOf(mesh, law);
    hold(
        problem, mesh, [](Point3 const & p) { return p[1] == 0.0 || p[1] == 60.0; }, kHalfPi);
    double const end = mesh.nodes.back()[0];
    restrain(problem, mesh, force, [end](Point3 const & p) { return std::fabs(p[0]) == end; });
    problem.toolFriction = friction;
    return problem;
}

TEST(OneStepNewton, AStepSolvesItsBorderedSystem)
{
    Problem const problem = heldHat(mildSteel(), 60.0, 0.0);
    voz::onestep::Partition parts = voz::onestep::partition(problem);
    voz::onestep::Progress const silent;
    voz::onestep::Monitor monitor(silent);
    voz::onestep::Settings const settings;
    voz::onestep::PieceSolver solver(problem, settings, parts.pieces.front(), monitor);
    ASSERT_EQ(solver.solve(), Status::Converged);
    auto & system = solver.system();
    voz::onestep::RigidHolding holding(solver.piece(), system.freedoms(), solver.flat());
    ASSERT_EQ(holding.count(), 1);
    voz::onestep::SparsePattern const & pattern = system.pattern().sparse();
    voz::onestep::SparseSolver sparse(pattern, voz::onestep::SparseSolver::Kind::Unsymmetric);
    std::vector<double> values, step;
    system.jacobian(solver.flat(), values);
    std::vector<double> const jacobian = values; // pins change the other one
    ASSERT_TRUE(holding.factorise(system.pattern(), values, sparse));
    std::vector<double> right;
    for (int i = 0; i < pattern.size; ++i)
        right.push_back(1.0 + i % 5);
    ASSERT_TRUE(holding.solve(right, step));
    std::vector<double> rest = right;
    for (std::size_t row = 0; row < rest.size(); ++row)
        for (int k = pattern.rowStart[row]; k < pattern.rowStart[row + 1]; ++k)
            rest[row] -= jacobian[static_cast<std::size_t>(k)] *
                         step[static_cast<std::size_t>(pattern.column[static_cast<std::size_t>(k)])];
    holding.removeHeldPart(rest);
    double worst = 0.0;
    for (double const r : rest)
        worst = std::max(worst, std::fabs(r));
    EXPECT_LT(worst, 1e-8 * static_cast<double>(rest.size()));
}

// Ten times the force that the sheet bears: an equilibrium at strains past all reason, told as such, without a detour.
TEST(OneStepNewton, ASheetThatTearsConvergesStraightAndSaysSo)
{
    Problem const problem = heldHat(swift(976.0, 0.0007, 0.14, 1.0, 0.386), 2500.0, 0.005);
    Solution const solution = solve(problem);
    EXPECT_EQ(solution.fallback, 0);
    EXPECT_GT(solution.neckingPoints, 0);
    ASSERT_FALSE(solution.warnings.empty());
    EXPECT_NE(solution.warnings.front().find("necking is expected at element"), std::string::npos);
}

TEST(OneStepNewton, TheDeepCupTakesNoMoreStepsOnAFinerMesh)
{
    for (int const k : {1, 3})
    {
        SurfaceMesh const mesh = cup({}, k, Extent::Whole, Cells::Triangles);
        Problem problem = problemOf(mesh, mildSteel());
        restrain(problem, mesh, 20.0, [](Point3 const &) { return true; });
        Solution const solution = solve(problem);
        EXPECT_LE(solution.newtonSteps, 12) << k;
        EXPECT_EQ(solution.fallback, 0) << k;
    }
}

} // namespace
