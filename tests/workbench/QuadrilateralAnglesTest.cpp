// QuadrilateralAnglesTest.cpp: directions of strains, on single elements of known stretch and on bent surfaces.

#include "QuadrilateralAngles.h"

#include "SampleMeshes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace voz::workbench
{
namespace
{
constexpr double kPi = 3.14159265358979323846;
constexpr double kUnset = 9.0;

Outcome outcomeOf(samples::Points const & points, samples::Quads const & elements)
{
    Outcome outcome;
    outcome.part = samples::mesh(points, elements);
    ElementOutcome element;
    element.angle = kUnset;
    element.thickness = 1.0;
    outcome.elements.assign(elements.size(), element);
    outcome.top = outcome.elements;
    outcome.bottom = outcome.elements;
    outcome.nodes.resize(points.size());
    for (std::size_t n = 0; n < points.size(); ++n)
        outcome.nodes[n].flat = {points[n][0], points[n][1], points[n][2]};
    return outcome;
}

double between(double i_angle, double i_other) // of two axes
{
    return std::abs(std::remainder(i_angle - i_other, kPi));
}
} // namespace

// x = Q(phi) diag(1.3, 0.9) Q(psi) X in a plane that lies anyhow in space: the major axis is at phi.
TEST(QuadrilateralAngles, AreThoseOfAHomogeneousStretch)
{
    std::mt19937 generator(20261121);
    std::uniform_real_distribution<double> turn(0.0, 2.0 * kPi);
    std::uniform_real_distribution<double> shake(-0.25, 0.25);
    for (int trial = 0; trial < 500; ++trial)
    {
        double const phi = turn(generator), psi = turn(generator), tilt = turn(generator);
        double const corner[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        samples::Points points;
        std::vector<Point3> flat;
        double side[2] = {};
        for (int k = 0; k < 4; ++k)
        {
            double const u = corner[k][0] + shake(generator), v = corner[k][1] + shake(generator);
            side[0] += k == 0 ? -u : k == 1 ? u : 0.0;
            side[1] += k == 0 ? -v : k == 1 ? v : 0.0;
            points.push_back({u, std::cos(tilt) * v, std::sin(tilt) * v});
            double const a = (std::cos(phi) * u + std::sin(phi) * v) / 1.3;
            double const b = (-std::sin(phi) * u + std::cos(phi) * v) / 0.9;
            flat.push_back({std::cos(psi) * a - std::sin(psi) * b, std::sin(psi) * a + std::cos(psi) * b, 4.0});
        }
        Outcome outcome = outcomeOf(points, {{1, 2, 3, 4}});
        for (std::size_t n = 0; n < 4; ++n)
            outcome.nodes[n].flat = flat[n];
        FillQuadrilateralAngles(outcome);
        double const wanted = phi - std::atan2(side[1], side[0]);
        for (auto const * layer : {&outcome.elements, &outcome.top, &outcome.bottom})
        {
            EXPECT_LT(between((*layer)[0].angle, wanted), 1e-9) << trial;
            EXPECT_GE((*layer)[0].angle, 0.0);
            EXPECT_LT((*layer)[0].angle, kPi);
        }
    }
}

// A strip bent along x over a radius of 10, flat of the same size: nothing in the middle, stretched along x above and
// compressed below. The second element is wound the other way round: its sides change places.
TEST(QuadrilateralAngles, FollowTheBendInTheLayers)
{
    double const step = 0.05;
    samples::Points points;
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i < 4; ++i)
            points.push_back({10.0 * std::sin(step * i), static_cast<double>(row), 10.0 * std::cos(step * i)});
    Outcome outcome = outcomeOf(points, {{1, 2, 6, 5}, {2, 6, 7, 3}, {3, 4, 8, 7}});
    for (int row = 0; row < 2; ++row)
        for (int i = 0; i < 4; ++i)
            outcome.nodes[static_cast<std::size_t>(4 * row + i)].flat = {20.0 * std::sin(0.5 * step) * i,
                                                                         static_cast<double>(row), 0.0};
    FillQuadrilateralAngles(outcome);
    for (auto const & element : outcome.elements)
        EXPECT_EQ(element.angle, kUnset) << "no direction";
    EXPECT_LT(between(outcome.top[0].angle, 0.0), 1e-6);
    EXPECT_LT(between(outcome.bottom[0].angle, 0.5 * kPi), 1e-6);
    EXPECT_LT(between(outcome.top[1].angle, 0.0), 1e-6) << "side 1-2 along y, top where the normal points: below";
    EXPECT_LT(between(outcome.bottom[1].angle, 0.5 * kPi), 1e-6);
}

TEST(QuadrilateralAngles, LeaveTrianglesAndWhatHasNoAreaAlone)
{
    Outcome outcome = outcomeOf({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {2, 1, 0}},
                                {{1, 2, 3, 1}, {1, 2, 3, 4}, {2, 2, 2, 3}, {2, 5, 6, 3}});
    for (NodeOutcome & node : outcome.nodes)
        node.flat = {5, 5, 0};
    outcome.nodes[5].flat = {6, 7, 0}; // the last element is a line
    outcome.top.clear();
    outcome.bottom.clear();
    FillQuadrilateralAngles(outcome);
    for (std::size_t e = 0; e < 4; ++e)
        EXPECT_EQ(outcome.elements[e].angle, kUnset) << e;
}
} // namespace voz::workbench
