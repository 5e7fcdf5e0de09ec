// SymmetricDirichlet.cpp: J. Smith, S. Schaefer, ACM Trans. Graph. 34 (2015) 70 (energy, step to the first fold); B.
// Smith, F. de Goes, T. Kim, ACM Trans. Graph. 38 (2019) 3 (eigenpairs of the Hessian).
//
// With G = U diag(s1, s2) V^T and j = s1 s2:  psi_i = s_i - s_i^-3,  psi_ii = 1 + 3 s_i^-4,  psi_12 = 0. Eigenpairs in
// the space of G:
//     scalings  psi_11: U diag(1, 0) V^T,  psi_22: U diag(0, 1) V^T
//     twist     (psi_1 + psi_2)/(s1 + s2) = 1 - (s1^2 - s1 s2 + s2^2)/j^3,   U [0 -1; 1 0] V^T/sqrt2
//     flip      (psi_1 - psi_2)/(s1 - s2) = 1 + (s1^2 + s1 s2 + s2^2)/j^3,   U [0  1; 1 0] V^T/sqrt2
// The quotients are divided out, so that equal singular values need no limit. Only the twist can be negative; it is
// clamped.

#include "onestep/SymmetricDirichlet.h"

#include "onestep/Kinematics.h"
#include "onestep/RigidMotion.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::onestep
{

using geometry::IntegrationPoint;
using geometry::Mat2;
using geometry::Vec2;

namespace
{

constexpr double kLeastEigenvalue = 1.0e-9;
constexpr double kFoldShare = 0.9; // of the way to the first fold
constexpr double kArmijo = 1.0e-4;
constexpr double kDecrement = 1.0e-2, kWayDecrement = 0.2; // sqrt(-slope/E) at which a run ends
constexpr double kNearDecrement = 0.3; // a full step from here leads below that of the way: no need to look
constexpr double kFarDecrement = 0.3;  // steps from farther away may be lengthened
constexpr double kLengthening = 1.25;
constexpr int kGreatestSteps = 60, kHalvings = 30;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

struct SingularValues
{
    double s1, s2;
    Mat2 u, v; // rotations
};

Mat2 rotation(Vec2 a)
{
    return {a.x, -a.y, a.y, a.x};
}

// Closed form for det > 0: angle sum and difference of the two rotations.
SingularValues decompose(Mat2 const & g)
{
    double const e = 0.5 * (g.m11 + g.m22), f = 0.5 * (g.m11 - g.m22);
    double const h = 0.5 * (g.m21 + g.m12), k = 0.5 * (g.m21 - g.m12);
    double const q = std::sqrt(e * e + k * k), r = std::sqrt(f * f + h * h);
    Vec2 const sum = geometry::halfAngle(e, k, q), difference = geometry::halfAngle(f, h, r); // cosine and sine
    Mat2 const u = rotation({difference.x * sum.x - difference.y * sum.y, difference.y * sum.x + difference.x * sum.y});
    Mat2 const v = rotation({difference.x * sum.x + difference.y * sum.y, difference.y * sum.x - difference.x * sum.y});
    double const s1 = q + r;
    return {s1, det(g) / s1, u, v};
}

// U m V^T
Mat2 between(SingularValues const & i_svd, Mat2 const & m)
{
    Mat2 const vt{i_svd.v.m11, i_svd.v.m21, i_svd.v.m12, i_svd.v.m22};
    return i_svd.u * (m * vt);
}

// Smallest positive root of det(G + a D) = 0; infinite if there is none.
double firstFold(Mat2 const & g, Mat2 const & d)
{
    double const a = det(d), c = det(g);
    double const b = g.m11 * d.m22 + d.m11 * g.m22 - g.m12 * d.m21 - d.m12 * g.m21;
    double const infinite = std::numeric_limits<double>::infinity();
    double const root = b * b - 4.0 * a * c;
    if (root < 0.0)
        return infinite;
    double const q = -0.5 * (b + std::copysign(std::sqrt(root), b));
    double const first = a != 0.0 ? q / a : infinite;
    double const second = q != 0.0 ? c / q : infinite;
    double best = infinite;
    for (double const x : {first, second})
        if (x > 0.0 && x < best)
            best = x;
    return best;
}

} // namespace

SymmetricDirichlet::SymmetricDirichlet(Piece const & i_piece)
    : m_piece(i_piece), m_pattern(i_piece.mesh, freeFreedoms(i_piece.mesh.position.size()).first),
      m_solver(m_pattern.sparse(), SparseSolver::Kind::PositiveDefinite)
{
}

double SymmetricDirichlet::energy(std::span<Vec2 const> i_flat, double i_penalty) const
{
    double sum = 0.0;
    for (IntegrationPoint const & point : m_piece.points.points)
    {
        Mat2 const g = inverseGradient(point, i_flat);
        double const j = det(g);
        if (!(j > 0.0))
            return std::numeric_limits<double>::infinity();
        double const squares = g.m11 * g.m11 + g.m12 * g.m12 + g.m21 * g.m21 + g.m22 * g.m22;
        sum += 0.5 * point.area * squares * (1.0 + 1.0 / (j * j)); // |G^-1| = |G|/j in the plane
    }
    for (std::size_t i = 0; i < i_flat.size() && i_penalty > 0.0; ++i)
        for (int h = 0; h < m_piece.holds[i].count; ++h)
        {
            double const gap = dot(i_flat[i], m_piece.holds[i].direction[at(h)]) - m_piece.holds[i].target[at(h)];
            sum += 0.5 * i_penalty * gap * gap;
        }
    return sum;
}

void SymmetricDirichlet::addPoint(IntegrationPoint const & i_point, std::span<Vec2 const> i_flat,
                                  std::vector<double> & io_gradient, std::vector<double> & io_values) const
{
    SingularValues const svd = decompose(inverseGradient(i_point, i_flat));
    double const s1 = svd.s1, s2 = svd.s2, j = s1 * s2, cube = j * j * j, half = std::sqrt(0.5);
    double const psi1 = s1 - 1.0 / (s1 * s1 * s1), psi2 = s2 - 1.0 / (s2 * s2 * s2);
    Mat2 const stress = between(svd, {psi1, 0.0, 0.0, psi2});
    struct Pair
    {
        double value;
        Mat2 vector;
    };
    Pair const pairs[4] = {
        {1.0 + 3.0 / (s1 * s1 * s1 * s1), between(svd, {1.0, 0.0, 0.0, 0.0})},
        {1.0 + 3.0 / (s2 * s2 * s2 * s2), between(svd, {0.0, 0.0, 0.0, 1.0})},
        {std::max(kLeastEigenvalue, 1.0 - (s1 * s1 - s1 * s2 + s2 * s2) / cube), between(svd, {0.0, -half, half, 0.0})},
        {1.0 + (s1 * s1 + s1 * s2 + s2 * s2) / cube, between(svd, {0.0, half, half, 0.0})}};

    Vec2 slope[4][4]; // per pair and node: derivative of G along the eigenvector
    for (int k = 0; k < i_point.count; ++k)
    {
        Vec2 const shape = i_point.gradient[at(k)];
        Vec2 const force = i_point.area * (stress * shape);
        io_gradient[at(2 * i_point.node[at(k)])] += force.x;
        io_gradient[at(2 * i_point.node[at(k)] + 1)] += force.y;
        for (int p = 0; p < 4; ++p)
            slope[p][k] = pairs[p].vector * shape;
    }
    for (int k = 0; k < i_point.count; ++k)
        for (int l = 0; l < i_point.count; ++l)
        {
            Mat2 block;
            for (int p = 0; p < 4; ++p)
            {
                Vec2 const row = (i_point.area * pairs[p].value) * slope[p][k];
                block.m11 += row.x * slope[p][l].x;
                block.m12 += row.x * slope[p][l].y;
                block.m21 += row.y * slope[p][l].x;
                block.m22 += row.y * slope[p][l].y;
            }
            int const place = m_pattern.slot(i_point.cell, i_point.corner[at(k)], i_point.corner[at(l)]);
            int const below = place + m_pattern.rowLength(2 * i_point.node[at(k)]);
            io_values[at(place)] += block.m11;
            io_values[at(place + 1)] += block.m12;
            io_values[at(below)] += block.m21;
            io_values[at(below + 1)] += block.m22;
        }
}

void SymmetricDirichlet::derivatives(std::span<Vec2 const> i_flat, double i_penalty, std::vector<double> & o_gradient,
                                     std::vector<double> & o_values) const
{
    o_gradient.assign(2 * i_flat.size(), 0.0);
    o_values.assign(m_pattern.sparse().column.size(), 0.0);
    for (IntegrationPoint const & point : m_piece.points.points)
        addPoint(point, i_flat, o_gradient, o_values);
    for (std::size_t i = 0; i < i_flat.size() && i_penalty > 0.0; ++i)
        for (int h = 0; h < m_piece.holds[i].count; ++h)
        {
            Vec2 const d = m_piece.holds[i].direction[at(h)];
            double const gap = dot(i_flat[i], d) - m_piece.holds[i].target[at(h)];
            int const row = static_cast<int>(2 * i);
            o_gradient[2 * i] += i_penalty * gap * d.x;
            o_gradient[2 * i + 1] += i_penalty * gap * d.y;
            int const upper = m_pattern.diagonal(row), lower = m_pattern.diagonal(row + 1);
            o_values[at(upper)] += i_penalty * d.x * d.x;
            o_values[at(upper + 1)] += i_penalty * d.x * d.y;
            o_values[at(lower - 1)] += i_penalty * d.x * d.y;
            o_values[at(lower)] += i_penalty * d.y * d.y;
        }
}

// The energy does not change along free rigid motions; pinning one unknown for each makes the matrix definite and picks
// one of the equally good steps.
void SymmetricDirichlet::pin(std::span<Vec2 const> i_flat, double i_penalty, std::vector<double> & io_values) const
{
    std::vector<Hold> const none(i_flat.size());
    Freedoms const all = freeFreedoms(i_flat.size());
    double mean = 0.0;
    for (int row = 0; row < all.size; ++row)
        mean += io_values[at(m_pattern.diagonal(row))] / all.size;
    for (int const row : rigidPins(i_penalty > 0.0 ? m_piece.holds : none, i_flat))
        io_values[at(m_pattern.diagonal(row))] += mean;
}

double SymmetricDirichlet::greatestStep(std::span<Vec2 const> i_flat, std::span<Vec2 const> i_step) const
{
    double least = std::numeric_limits<double>::infinity();
    for (IntegrationPoint const & point : m_piece.points.points)
        least = std::min(least, firstFold(inverseGradient(point, i_flat), inverseGradient(point, i_step)));
    return kFoldShare * least;
}

// Armijo's rule from the full step down; where the full step is granted, longer ones as long as the energy falls: far
// from the answer, where nearly folded points rule, the step of Newton's method is much too short. 0: no step lowers
// the energy.
double SymmetricDirichlet::search(std::span<Vec2 const> i_flat, std::span<Vec2 const> i_step, double i_penalty,
                                  double i_now, double i_slope, std::vector<Vec2> & o_trial, double & o_next) const
{
    auto const energyAt = [&](double i_factor, std::vector<Vec2> & o_flat)
    {
        for (std::size_t i = 0; i < o_flat.size(); ++i)
            o_flat[i] = i_flat[i] + i_factor * i_step[i];
        return energy(o_flat, i_penalty);
    };
    double const greatest = greatestStep(i_flat, i_step);
    double factor = std::min(1.0, greatest);
    for (int halving = 0; !((o_next = energyAt(factor, o_trial)) <= i_now + kArmijo * factor * i_slope); ++halving)
    {
        if (halving == kHalvings)
            return 0.0;
        factor *= 0.5;
    }
    if (factor < 1.0 || -i_slope < kFarDecrement * kFarDecrement * i_now)
        return factor;
    std::vector<Vec2> longer(o_trial.size());
    while (kLengthening * factor <= greatest)
    {
        double const next = energyAt(kLengthening * factor, longer);
        if (!(next < o_next))
            break;
        factor *= kLengthening;
        o_next = next;
        o_trial.swap(longer);
    }
    return factor;
}

int SymmetricDirichlet::minimise(double i_penalty, Aim i_aim, std::function<bool()> const & i_stop,
                                 std::vector<Vec2> & io_flat)
{
    std::vector<double> gradient, values, side(2 * io_flat.size());
    std::vector<Vec2> step(io_flat.size()), trial(io_flat.size());
    double const limit = i_aim == Aim::Final ? kDecrement : kWayDecrement;
    double now = energy(io_flat, i_penalty);
    for (int count = 0; count < kGreatestSteps; ++count)
    {
        if (i_stop())
            return count;
        derivatives(io_flat, i_penalty, gradient, values);
        pin(io_flat, i_penalty, values);
        std::transform(gradient.begin(), gradient.end(), side.begin(), [](double g) { return -g; });
        if (!m_solver.factorise(values) || !m_solver.solve(side, 1))
            return count;
        double slope = 0.0;
        for (std::size_t i = 0; i < step.size(); ++i)
        {
            step[i] = {side[2 * i], side[2 * i + 1]};
            slope += gradient[2 * i] * step[i].x + gradient[2 * i + 1] * step[i].y;
        }
        double const decrement = slope < 0.0 ? std::sqrt(-slope / now) : 0.0;
        if (decrement < limit)
            return count;
        double next = now;
        double const factor = search(io_flat, step, i_penalty, now, slope, trial, next);
        if (factor == 0.0)
            return count;
        // What the quadratic model missed is about half the slope that the next step would find.
        double const left = std::sqrt(2.0 * std::abs(next - now - 0.5 * slope) / next);
        io_flat.swap(trial);
        now = next;
        if (factor == 1.0 && (left < limit || (i_aim == Aim::OnTheWay && decrement < kNearDecrement)))
            return count + 1;
    }
    return kGreatestSteps;
}

} // namespace voz::onestep
