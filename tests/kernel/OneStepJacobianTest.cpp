// OneStepJacobianTest.cpp: the Jacobian against central differences of the residual, along random directions.

#include "OneStepMeshes.h"
#include "onestep/Constraints.h"
#include "onestep/MembraneSystem.h"
#include "onestep/Partition.h"
#include "onestep/SymmetricDirichlet.h"
#include "onestep/TangentFrame.h"

#include <gtest/gtest.h>

#include <random>

using namespace onesteptest;
using namespace voz::onestep;
using voz::geometry::Vec2;

namespace
{

struct Case
{
    char const * name;
    Problem problem;
};

// A dome of 60 x 60 mm, 8 mm high.
voz::examples::Point3 dome(double u, double v)
{
    return {60.0 * u, 60.0 * v, 128.0 * u * (1.0 - u) * v * (1.0 - v)};
}

std::vector<Case> cases()
{
    Problem const triangles = gridPart(5, 6, Cells::Triangles, dome);
    Problem const quads = gridPart(5, 6, Cells::Quads, dome);
    std::vector<Case> list{{"triangles", triangles},
                           {"quadrilaterals", quads},
                           {"friction", quads},
                           {"pads", triangles},
                           {"constraints and turned cells", triangles}};
    list[2].problem.toolFriction = 0.15;
    list[3].problem.padShear.assign(triangles.elements.size(), 2.0e6);
    holdSymmetryPlanes(list[4].problem);
    list[4].problem.constraints.push_back({20, 0.7, 0.001});
    for (std::size_t e = 0; e < triangles.elements.size(); e += 3)
        std::swap(list[4].problem.elements[e].nodes[1], list[4].problem.elements[e].nodes[2]);
    return list;
}

// Everything a residual needs.
struct Bench
{
    explicit Bench(Problem const & i_problem)
        : parts(partition(i_problem)), piece(parts.pieces.at(0)),
          frames(buildTangentFrames(piece, i_problem.toolFriction)),
          freedoms(heldFreedoms(piece.holds, frames.tangent, frames.projection)),
          system(piece, freedoms, i_problem.materials, {})
    {
    }
    std::vector<Vec2> projected() const
    {
        std::vector<Vec2> flat;
        for (auto const & p : piece.mesh.position)
            flat.push_back(horizontal(p));
        return flat;
    }
    Partition parts;
    Piece & piece;
    TangentFrames frames;
    Freedoms freedoms;
    MembraneSystem system;
};

// Relative error of J y against (R(X + h y) - R(X - h y)) / 2h.
double jacobianError(Bench & io_bench, std::vector<Vec2> const & i_flat, std::mt19937 & io_random)
{
    std::normal_distribution<double> number;
    auto const size = at(io_bench.freedoms.size);
    std::vector<double> direction(size), values, plus, minus, product(size, 0.0);
    for (double & d : direction)
        d = number(io_random);
    double const step = 1.0e-6 * 0.06 * 1e-2;
    std::vector<Vec2> moved;
    io_bench.system.move(direction, step, i_flat, moved);
    io_bench.system.residual(moved, plus);
    io_bench.system.move(direction, -step, i_flat, moved);
    io_bench.system.residual(moved, minus);
    io_bench.system.jacobian(i_flat, values);
    SparsePattern const & pattern = io_bench.system.pattern().sparse();
    double error = 0.0, scale = 0.0;
    for (std::size_t row = 0; row < size; ++row)
    {
        for (int k = pattern.rowStart[row]; k < pattern.rowStart[row + 1]; ++k)
            product[row] += values[at(k)] * direction[at(pattern.column[at(k)])];
        double const quotient = (plus[row] - minus[row]) / (2.0 * step);
        error += (product[row] - quotient) * (product[row] - quotient);
        scale += quotient * quotient;
    }
    return std::sqrt(error / scale);
}

} // namespace

TEST(OneStepJacobian, AgreesWithDifferencesOnDistortedStates)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> shake(-0.001, 0.001);
    for (Case const & c : cases())
    {
        Bench bench(c.problem);
        for (int trial = 0; trial < 5; ++trial)
        {
            std::vector<Vec2> flat = bench.projected();
            for (Vec2 & x : flat)
                x = Vec2{1.08 * x.x + 0.05 * x.y + shake(random), 0.95 * x.y + shake(random)};
            ASSERT_GT(bench.system.leastDeterminant(flat), 0.1) << c.name;
            EXPECT_LT(jacobianError(bench, flat, random), 1.0e-6) << c.name;
        }
    }
}

// All strains are zero there: equal eigenvalues, and the direction of the principal axes is arbitrary.
TEST(OneStepJacobian, AgreesWithDifferencesOnTheProjectionOfAFlatMesh)
{
    std::mt19937 random(6);
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Bench bench(gridPart(4, 4, cells,
                             [](double u, double v) {
                                 return voz::examples::Point3{60 * u, 60 * v, 5.0};
                             }));
        EXPECT_LT(jacobianError(bench, bench.projected(), random), 1.0e-6);
        std::vector<Vec2> scaled = bench.projected();
        for (Vec2 & x : scaled)
            x = 1.1 * x; // equal strains in all directions, plastic
        EXPECT_LT(jacobianError(bench, scaled, random), 1.0e-6);
    }
}

TEST(OneStepJacobian, AnEqualBiaxialStateGivesNoTangentialForceInside)
{
    Bench bench(gridPart(4, 4, Cells::Quads,
                         [](double u, double v) {
                             return voz::examples::Point3{60 * u, 60 * v, 5.0};
                         }));
    std::vector<Vec2> scaled = bench.projected();
    for (Vec2 & x : scaled)
        x = 0.9 * x;
    std::vector<double> residual;
    bench.system.residual(scaled, residual);
    int const inside = bench.freedoms.first[12]; // the node in the middle
    EXPECT_NEAR(residual[at(inside)], 0.0, 1e-8);
    EXPECT_NEAR(residual[at(inside + 1)], 0.0, 1e-8);
}

TEST(StartEnergy, GradientAndHessianAgreeWithDifferences)
{
    std::mt19937 random(8);
    std::normal_distribution<double> number;
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Problem problem = gridPart(4, 4, cells, dome);
        holdSymmetryPlanes(problem);
        Bench bench(problem);
        SymmetricDirichlet energy(bench.piece);
        std::vector<Vec2> flat = bench.projected();
        for (Vec2 & x :
             flat) // shrunk: the twist's eigenvalue is positive nowhere near the clamp when stretched, so stretch
            x = Vec2{1.3 * x.x + 0.1 * x.y, 1.2 * x.y};
        std::vector<double> gradient, values, plus, minus, unused;
        energy.derivatives(flat, 0.5, gradient, values);
        std::vector<Vec2> forward = flat, backward = flat;
        std::vector<double> direction(gradient.size());
        double const step = 1e-8;
        double slope = 0.0;
        for (std::size_t i = 0; i < direction.size(); ++i)
        {
            direction[i] = number(random);
            slope += gradient[i] * direction[i];
            double const move = step * direction[i];
            (i % 2 == 0 ? forward[i / 2].x : forward[i / 2].y) += move;
            (i % 2 == 0 ? backward[i / 2].x : backward[i / 2].y) -= move;
        }
        double const quotient = (energy.energy(forward, 0.5) - energy.energy(backward, 0.5)) / (2.0 * step);
        EXPECT_NEAR(quotient / slope, 1.0, 1e-6);
        energy.derivatives(forward, 0.5, plus, unused);
        energy.derivatives(backward, 0.5, minus, unused);
        SparsePattern const & pattern = energy.pattern().sparse();
        double error = 0.0, scale = 0.0;
        for (std::size_t row = 0; row < direction.size(); ++row)
        {
            double product = 0.0;
            for (int k = pattern.rowStart[row]; k < pattern.rowStart[row + 1]; ++k)
                product += values[at(k)] * direction[at(pattern.column[at(k)])];
            double const difference = (plus[row] - minus[row]) / (2.0 * step);
            error += (product - difference) * (product - difference);
            scale += difference * difference;
        }
        EXPECT_LT(std::sqrt(error / scale), 1e-5);
    }
}
