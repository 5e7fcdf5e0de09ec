// SpringbackElementTest.cpp: the triangles of the shell, one by one.

#include "springback/NearestNode.h"
#include "springback/ShellTriangle.h"

#include <Eigen/Eigenvalues>

#include <gtest/gtest.h>

#include <random>

using namespace voz::springback;
using Eigen::Quaterniond;
using Eigen::Vector3d;
using voz::geometry::Vec2;
using voz::geometry::Vec3;

namespace
{

class Dice
{
public:
    explicit Dice(unsigned i_seed) : m_engine(i_seed) {}
    double number() { return m_normal(m_engine); }
    Vector3d vector(double i_size) { return i_size * Vector3d(number(), number(), number()); }
    Quaterniond turn(double i_size)
    {
        Vector3d const v = vector(i_size);
        return Quaterniond(Eigen::AngleAxisd(v.norm(), v.normalized()));
    }

private:
    std::mt19937 m_engine;
    std::normal_distribution<double> m_normal;
};

std::array<Vector3d, 3> randomPoints(Dice & io_dice)
{
    std::array<Vector3d, 3> points;
    do
        for (Vector3d & x : points)
            x = io_dice.vector(1.0);
    while ((points[1] - points[0]).cross(points[2] - points[0]).norm() < 0.5);
    return points;
}

ShellTriangle randomTriangle(Dice & io_dice, double i_thickness = 0.1)
{
    ShellTriangle triangle = shellTriangle(randomPoints(io_dice), {0, 1, 2});
    triangle.thickness = i_thickness;
    triangle.youngsModulus = 1.0;
    triangle.poisson = 0.3;
    setInitialForce(io_dice.vector(0.01), io_dice.vector(0.001), triangle);
    return triangle;
}

Vector3d pointOf(ShellTriangle const & i_triangle, std::size_t i_corner)
{
    return i_triangle.frame * Vector3d(i_triangle.corner[i_corner].x, i_triangle.corner[i_corner].y, 0.0);
}

CornerState formed()
{
    CornerState state;
    state.displacement.fill(Vector3d::Zero());
    state.rotation.fill(Quaterniond::Identity());
    return state;
}

// The triangle moved as a body.
CornerState carried(ShellTriangle const & i_triangle, Quaterniond const & i_turn, Vector3d const & i_shift)
{
    CornerState state = formed();
    for (std::size_t i = 0; i < 3; ++i)
    {
        Vector3d const x = pointOf(i_triangle, i);
        state.displacement[i] = i_turn * x - x + i_shift;
        state.rotation[i] = i_turn;
    }
    return state;
}

Vector18 forceOf(ShellTriangle const & i_triangle, CornerState const & i_state, double i_load)
{
    Vector18 force;
    evaluate(i_triangle, i_state, i_load, force, nullptr);
    return force;
}

int zeroEigenvalues(Eigen::MatrixXd const & i_matrix)
{
    Eigen::VectorXd const values = Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(i_matrix).eigenvalues();
    int count = 0;
    for (double const value : values)
        count += std::abs(value) < 1e-12 * values.maxCoeff();
    EXPECT_GT(values.minCoeff(), -1e-12 * values.maxCoeff());
    return count;
}

} // namespace

TEST(SpringbackPlate, ReproducesEveryConstantCurvatureExactly)
{
    Dice dice(3);
    for (int repeat = 0; repeat < 20; ++repeat)
    {
        Corners const corner = randomTriangle(dice).corner;
        double const a = dice.number(), b = dice.number(), c = dice.number(); // w = a x^2/2 + b y^2/2 + c x y
        Eigen::Matrix<double, 9, 1> u;
        for (int i = 0; i < 3; ++i)
        {
            Vec2 const x = corner[static_cast<std::size_t>(i)];
            u.segment<3>(3 * i) << 0.5 * a * x.x * x.x + 0.5 * b * x.y * x.y + c * x.x * x.y, b * x.y + c * x.x,
                -(a * x.x + c * x.y);
        }
        for (auto const & place : {std::array{1.0, 0.0, 0.0}, std::array{0.2, 0.5, 0.3}})
            EXPECT_LT((plateCurvature(corner, place) * u - Vector3d(-a, -b, -2.0 * c)).norm(), 1e-11);
    }
}

TEST(SpringbackPlate, KnowsNoOtherFreeMotionThanTheRigidOnes)
{
    Dice dice(4);
    for (int repeat = 0; repeat < 10; ++repeat)
        EXPECT_EQ(zeroEigenvalues(plateStiffness(randomTriangle(dice).corner, planeStress(1.0, 0.3))), 3);
}

TEST(SpringbackMembrane, ConstantStrainGivesTheForcesOfItsConstantStress)
{
    Dice dice(5);
    for (int repeat = 0; repeat < 20; ++repeat)
    {
        Corners const corner = randomTriangle(dice).corner;
        Vector3d const strain = dice.vector(1.0);
        double const spin = dice.number();
        Eigen::Matrix<double, 9, 1> u;
        for (int i = 0; i < 3; ++i)
        {
            Vec2 const x = corner[static_cast<std::size_t>(i)];
            u.segment<3>(3 * i) << strain(0) * x.x + (0.5 * strain(2) - spin) * x.y,
                (0.5 * strain(2) + spin) * x.x + strain(1) * x.y, spin;
        }
        Eigen::Matrix3d const elastic = planeStress(2.0, 0.3);
        Eigen::Matrix<double, 9, 1> const force = membraneStiffness(corner, elastic, 0.3) * u;
        EXPECT_LT((force - membraneLumping(corner) * (elastic * strain)).norm(), 1e-11 * force.norm());
        EXPECT_NEAR(u.dot(force), areaOf(corner) * strain.dot(elastic * strain), 1e-11 * std::abs(u.dot(force)));
    }
}

TEST(SpringbackMembrane, KnowsNoOtherFreeMotionThanTheRigidOnes)
{
    Dice dice(6);
    for (int repeat = 0; repeat < 10; ++repeat)
        for (double const poisson : {0.0, 0.3, 0.499})
            EXPECT_EQ(
                zeroEigenvalues(membraneStiffness(randomTriangle(dice).corner, planeStress(1.0, poisson), poisson)), 3);
}

// The rectangle of both pairs of triangles, each with half the thickness, holds exactly the energy of a beam.
TEST(SpringbackMembrane, ARectangleOfAnyAspectBendsInItsPlaneWithoutError)
{
    for (double const poisson : {0.0, 0.3})
        for (double const aspect : {1.0, 2.0, 8.0, 32.0})
        {
            std::array<Vec2, 4> const p = {{{0, 0}, {aspect, 0}, {aspect, 1}, {0, 1}}};
            Eigen::Matrix<double, 12, 1> u;
            for (int i = 0; i < 4; ++i)
            {
                Vec2 const x = p[static_cast<std::size_t>(i)] - Vec2{0.5 * aspect, 0.5};
                u.segment<3>(3 * i) << x.x * x.y, -0.5 * x.x * x.x - 0.5 * poisson * x.y * x.y, -x.x;
            }
            double energy = 0.0;
            for (auto const & nodes : {std::array{0, 1, 2}, {0, 2, 3}, {0, 1, 3}, {1, 2, 3}})
            {
                Corners corner;
                Vec2 centre;
                Eigen::Matrix<double, 9, 1> part;
                for (std::size_t i = 0; i < 3; ++i)
                {
                    corner[i] = p[static_cast<std::size_t>(nodes[i])];
                    centre = centre + (1.0 / 3.0) * corner[i];
                    part.segment<3>(static_cast<int>(3 * i)) = u.segment<3>(3 * nodes[i]);
                }
                for (Vec2 & x : corner)
                    x = x - centre;
                energy += 0.5 * part.dot(membraneStiffness(corner, 0.5 * planeStress(1.0, poisson), poisson) * part);
            }
            EXPECT_NEAR(energy, 0.5 * aspect / 12.0, 1e-8 * energy) << aspect << " " << poisson;
        }
}

TEST(SpringbackTriangle, TangentIsTheDerivativeOfTheForce)
{
    Dice dice(7);
    for (int repeat = 0; repeat < 20; ++repeat)
    {
        ShellTriangle const triangle = randomTriangle(dice);
        CornerState state = carried(triangle, dice.turn(1.0), dice.vector(1.0));
        for (std::size_t i = 0; i < 3; ++i)
        {
            state.displacement[i] += dice.vector(0.1);
            state.rotation[i] = dice.turn(repeat % 2 == 0 ? 0.3 : 0.001) * state.rotation[i];
        }
        Vector18 force;
        Matrix18 tangent, difference;
        evaluate(triangle, state, 0.7, force, &tangent);
        double const step = 1e-6;
        for (int column = 0; column < 18; ++column)
        {
            auto const moved = [&](double by)
            {
                CornerState other = state;
                auto const corner = static_cast<std::size_t>(column / 6);
                Vector3d const axis = Vector3d::Unit(column % 3);
                if (column % 6 < 3)
                    other.displacement[corner] += by * axis;
                else
                    other.rotation[corner] = Quaterniond(Eigen::AngleAxisd(by, axis)) * other.rotation[corner];
                return forceOf(triangle, other, 0.7);
            };
            difference.col(column) = (moved(step) - moved(-step)) / (2.0 * step);
        }
        EXPECT_LT((difference - tangent).norm(), 1e-7 * tangent.norm());
    }
}

TEST(SpringbackTriangle, ARigidMotionMakesNoForceAndTurnsTheForcesOfTheStresses)
{
    Dice dice(8);
    for (int repeat = 0; repeat < 20; ++repeat)
    {
        ShellTriangle const triangle = randomTriangle(dice);
        Quaterniond const turn = dice.turn(2.0);
        CornerState const state = carried(triangle, turn, dice.vector(10.0));
        Vector18 const stresses = forceOf(triangle, formed(), 1.0);
        EXPECT_LT(forceOf(triangle, state, 0.0).norm(), 1e-14);
        Vector18 const turned = forceOf(triangle, state, 1.0);
        for (int i = 0; i < 6; ++i)
            EXPECT_LT((turned.segment<3>(3 * i) - turn * stresses.segment<3>(3 * i)).norm(), 1e-13);
    }
}

TEST(SpringbackTriangle, ForcesBalanceInEveryState)
{
    Dice dice(9);
    for (int repeat = 0; repeat < 20; ++repeat)
    {
        ShellTriangle const triangle = randomTriangle(dice);
        CornerState state = formed();
        for (std::size_t i = 0; i < 3; ++i)
        {
            state.displacement[i] = dice.vector(0.2);
            state.rotation[i] = dice.turn(0.2);
        }
        Vector18 const force = forceOf(triangle, state, 1.0);
        Vector3d sum = Vector3d::Zero(), moment = Vector3d::Zero();
        for (std::size_t i = 0; i < 3; ++i)
        {
            auto const row = static_cast<int>(6 * i);
            sum += force.segment<3>(row);
            moment += force.segment<3>(row + 3) +
                      (pointOf(triangle, i) + state.displacement[i]).cross(Vector3d(force.segment<3>(row)));
        }
        EXPECT_LT(sum.norm(), 1e-14);
        EXPECT_LT(moment.norm(), 1e-14);
    }
}

// What keeps the answer from depending on which corner is named first.
TEST(SpringbackTriangle, TheFirstCornerDoesNotMatter)
{
    Dice dice(10);
    std::array<Vector3d, 3> const points = randomPoints(dice);
    CornerState state = formed();
    for (std::size_t i = 0; i < 3; ++i)
    {
        state.displacement[i] = dice.vector(0.05);
        state.rotation[i] = dice.turn(0.05);
    }
    ShellTriangle one = shellTriangle(points, {0, 1, 2});
    ShellTriangle other = shellTriangle({points[1], points[2], points[0]}, {1, 2, 0});
    for (ShellTriangle * const triangle : {&one, &other})
    {
        triangle->thickness = 0.1;
        triangle->youngsModulus = 1.0;
        triangle->poisson = 0.3;
    }
    CornerState const shifted{{state.displacement[1], state.displacement[2], state.displacement[0]},
                              {state.rotation[1], state.rotation[2], state.rotation[0]}};
    Vector18 const a = forceOf(one, state, 0.0), b = forceOf(other, shifted, 0.0);
    EXPECT_LT((a.segment<12>(6) - b.segment<12>(0)).norm(), 1e-14);
    EXPECT_LT((a.segment<6>(0) - b.segment<6>(12)).norm(), 1e-14);
}

TEST(SpringbackNearestNode, FindsWhatALookAtEveryNodeFinds)
{
    Dice dice(11);
    std::vector<Vec3> position;
    std::vector<int> nodes;
    for (int i = 0; i < 500; ++i)
    {
        // a coarse lattice, so that many are equally near
        position.push_back(
            {std::round(2.0 * dice.number()), std::round(2.0 * dice.number()), std::round(dice.number())});
        if (i % 3 != 0)
            nodes.push_back(i);
    }
    NearestNode const nearest(position, nodes);
    for (int i = 0; i < 500; ++i)
    {
        Vec3 const place = {2.0 * dice.number(), std::round(dice.number()), dice.number()};
        int best = -1;
        double least = 1e300;
        for (int const node : nodes)
        {
            Vec3 const gap = position[static_cast<std::size_t>(node)] - place;
            if (dot(gap, gap) < least)
            {
                least = dot(gap, gap);
                best = node;
            }
        }
        EXPECT_EQ(nearest.find(place), best);
    }
    EXPECT_EQ(NearestNode(position, {}).find({}), -1);
}
