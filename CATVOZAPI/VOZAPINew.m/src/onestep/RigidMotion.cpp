// RigidMotion.cpp: bordering without dense rows.
//
// Dense rows in a sparse factor cost more than all the rest. Instead the unknowns E are tied to the equations Q by
// alpha, the mean size of the diagonal, and with J_s = J + alpha Q E^T, [z, Zb, Zq] = J_s^-1 [-R, Br, Q]:
//
//     [ -Cr^T Zb   alpha Cr^T Zq    ] [lambda]   [ -Cr^T z ]
//     [ -E^T Zb    alpha E^T Zq - 1 ] [  mu  ] = [ -E^T z  ],    dX = z - Zb lambda + alpha Zq mu
//
// J_s is regular where E meets the motions and Q meets the holding forces. Unknown and equation of a node need not
// point the same way (on a wall that faces x, a motion along x meets no tangent), so each pin is the pair that meets
// both best.
//
// Placing without holds is the plane problem of Procrustes in closed form. With holds the angle is searched for: for
// each angle the best shift follows from a small linear system; a slight pull towards the projection decides what the
// holds leave open.

#include "onestep/RigidMotion.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace voz::onestep
{

using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kFreeShare = 1.0e-10;     // of the largest eigenvalue of the constraint rows' Gram matrix
constexpr double kPullToProjection = 1e-8; // against the holds
constexpr int kAngles = 72;                // of the first search
constexpr double kSolveResidual = 1.0e-9;  // of the right side
constexpr int kRefinements = 4;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

double squaresOf(std::vector<double> const & i_values)
{
    double squares = 0.0;
    for (double const v : i_values)
        squares += v * v;
    return squares;
}

// Takes as much of i_column from io_other that its entry i_at vanishes.
void eliminate(std::vector<double> const & i_column, std::size_t i_at, std::vector<double> & io_other)
{
    double const share = io_other[i_at] / i_column[i_at];
    for (std::size_t i = 0; i < i_column.size(); ++i)
        io_other[i] -= share * i_column[i];
    io_other[i_at] = 0.0;
}

Vec2 centreOf(std::span<Vec2 const> i_flat)
{
    Vec2 sum;
    for (Vec2 const x : i_flat)
        sum = sum + x;
    return (1.0 / static_cast<double>(i_flat.size())) * sum;
}

double sizeOf(std::span<Vec2 const> i_flat, Vec2 i_centre)
{
    double greatest = 0.0;
    for (Vec2 const x : i_flat)
        greatest = std::max(greatest, dot(x - i_centre, x - i_centre));
    return greatest > 0.0 ? std::sqrt(greatest) : 1.0;
}

struct Modes
{
    Vec2 centre;
    double size;
    explicit Modes(std::span<Vec2 const> i_flat) : centre(centreOf(i_flat)), size(sizeOf(i_flat, centre)) {}
    Vec2 displacement(RigidMotion const & i_motion, Vec2 i_x) const
    {
        Vec2 const turn = (i_motion[2] / size) * turnedLeft(i_x - centre);
        return {i_motion[0] + turn.x, i_motion[1] + turn.y};
    }
};

// Mean-square distance to the holds as a quadratic form in q = (cos, sin, shift x, shift y):  q^T A q - 2 b^T q + c.
struct PlacingForm
{
    Eigen::Matrix4d a = Eigen::Matrix4d::Zero();
    Eigen::Vector4d b = Eigen::Vector4d::Zero();
    double c = 0.0;

    void add(double i_weight, Vec2 i_direction, Vec2 i_x, double i_target)
    {
        Eigen::Vector4d const row(dot(i_direction, i_x), dot(i_direction, turnedLeft(i_x)), i_direction.x,
                                  i_direction.y);
        a += i_weight * row * row.transpose();
        b += i_weight * i_target * row;
        c += i_weight * i_target * i_target;
    }
    // Best value over the shift for an angle, and the shift.
    double value(double i_angle, Eigen::Vector2d & o_shift) const
    {
        Eigen::Vector2d const turn(std::cos(i_angle), std::sin(i_angle));
        Eigen::Vector2d const right = b.tail<2>() - a.bottomLeftCorner<2, 2>() * turn;
        o_shift = a.bottomRightCorner<2, 2>().ldlt().solve(right);
        return turn.dot(a.topLeftCorner<2, 2>() * turn) - 2.0 * b.head<2>().dot(turn) - o_shift.dot(right) + c;
    }
};

struct Placing
{
    double angle, value;
    Eigen::Vector2d shift;
};

// The least value between two angles, by golden section.
Placing refinedPlacing(PlacingForm const & i_form, double i_low, double i_high)
{
    double const golden = 0.5 * (std::sqrt(5.0) - 1.0);
    double low = i_low, high = i_high;
    for (int i = 0; i < 80; ++i)
    {
        double const left = high - golden * (high - low), right = low + golden * (high - low);
        Eigen::Vector2d shift;
        bool const leftIsBetter = i_form.value(left, shift) < i_form.value(right, shift);
        (leftIsBetter ? high : low) = leftIsBetter ? right : left;
    }
    Placing placing{0.5 * (low + high), 0.0, {}};
    placing.value = i_form.value(placing.angle, placing.shift);
    return placing;
}

// Holds may be met at more than one angle: each trough is followed to its bottom before the projection decides.
Placing bestPlacing(PlacingForm const & i_form)
{
    double const step = 2.0 * std::numbers::pi / kAngles;
    std::array<double, kAngles> value{};
    for (int i = 0; i < kAngles; ++i)
    {
        Eigen::Vector2d shift;
        value[at(i)] = i_form.value(i * step, shift);
    }
    Placing best{0.0, std::numeric_limits<double>::infinity(), {}};
    for (int i = 0; i < kAngles; ++i)
    {
        if (value[at(i)] > value[at((i + kAngles - 1) % kAngles)] || value[at(i)] > value[at((i + 1) % kAngles)])
            continue;
        Placing const trough = refinedPlacing(i_form, (i - 1) * step, (i + 1) * step);
        if (trough.value < best.value)
            best = trough;
    }
    return best;
}

// Both sets of points are taken about their own centres, so that a part far from the origin loses no digits.
struct PlacingProblem
{
    Vec2 flatCentre, partCentre;
    PlacingForm form;
    bool hasHolds = false;
};

PlacingProblem buildPlacing(Piece const & i_piece, std::span<Vec2 const> i_flat)
{
    PlacingProblem problem;
    for (std::size_t i = 0; i < i_flat.size(); ++i)
    {
        double const w = i_piece.weight[i] / i_piece.area;
        problem.flatCentre = problem.flatCentre + w * i_flat[i];
        problem.partCentre = problem.partCentre + w * horizontal(i_piece.mesh.position[i]);
        problem.hasHolds = problem.hasHolds || i_piece.holds[i].count > 0;
    }
    for (std::size_t i = 0; i < i_flat.size(); ++i)
    {
        Vec2 const x = i_flat[i] - problem.flatCentre;
        Vec2 const p = horizontal(i_piece.mesh.position[i]) - problem.partCentre;
        double const pull = (problem.hasHolds ? kPullToProjection : 1.0) * i_piece.weight[i] / i_piece.area;
        problem.form.add(pull, {1.0, 0.0}, x, p.x);
        problem.form.add(pull, {0.0, 1.0}, x, p.y);
        Hold const & hold = i_piece.holds[i];
        for (int h = 0; h < hold.count; ++h)
            problem.form.add(1.0, hold.direction[at(h)], x,
                             hold.target[at(h)] - dot(problem.partCentre, hold.direction[at(h)]));
    }
    return problem;
}

} // namespace

std::vector<RigidMotion> freeRigidMotions(std::vector<Hold> const & i_holds, std::span<Vec2 const> i_flat)
{
    Modes const modes(i_flat);
    Eigen::Matrix3d gram = Eigen::Matrix3d::Zero();
    for (std::size_t i = 0; i < i_holds.size(); ++i)
        for (int h = 0; h < i_holds[i].count; ++h)
        {
            Eigen::Vector3d row;
            for (int m = 0; m < 3; ++m)
            {
                RigidMotion motion{0.0, 0.0, 0.0};
                motion[at(m)] = 1.0;
                row[m] = dot(i_holds[i].direction[at(h)], modes.displacement(motion, i_flat[i]));
            }
            gram += row * row.transpose();
        }
    Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> const solver(gram); // eigenvalues ascend
    std::vector<RigidMotion> free;
    double const limit = kFreeShare * std::max(solver.eigenvalues()[2], 0.0);
    for (int i = 0; i < 3; ++i)
        if (solver.eigenvalues()[i] <= limit)
            free.push_back({solver.eigenvectors()(0, i), solver.eigenvectors()(1, i), solver.eigenvectors()(2, i)});
    return free;
}

void placeOverPart(Piece const & i_piece, std::vector<Vec2> & io_flat)
{
    PlacingProblem const problem = buildPlacing(i_piece, io_flat);
    double angle = 0.0;
    Vec2 shift = problem.partCentre;
    if (problem.hasHolds)
    {
        Placing const best = bestPlacing(problem.form);
        angle = best.angle;
        shift = shift + Vec2{best.shift.x(), best.shift.y()};
    }
    else
        angle = std::atan2(problem.form.b[1], problem.form.b[0]);
    double const cosine = std::cos(angle), sine = std::sin(angle);
    for (Vec2 & x : io_flat)
    {
        Vec2 const r = x - problem.flatCentre;
        x = Vec2{cosine * r.x - sine * r.y, sine * r.x + cosine * r.y} + shift;
    }
}

double placingError(Piece const & i_piece, std::span<Vec2 const> i_flat)
{
    PlacingProblem const problem = buildPlacing(i_piece, i_flat);
    return problem.hasHolds ? bestPlacing(problem.form).value : 0.0;
}

std::vector<int> choosePins(std::vector<std::vector<double>> i_columns)
{
    std::vector<int> pins;
    for (std::size_t c = 0; c < i_columns.size(); ++c)
    {
        auto const & column = i_columns[c];
        auto const largest = std::max_element(column.begin(), column.end(),
                                              [](double a, double b) { return std::abs(a) < std::abs(b); });
        if (largest == column.end() || *largest == 0.0)
            break;
        auto const pin = static_cast<std::size_t>(largest - column.begin());
        pins.push_back(static_cast<int>(pin));
        for (std::size_t other = c + 1; other < i_columns.size(); ++other)
            eliminate(column, pin, i_columns[other]);
    }
    return pins;
}

std::vector<int> rigidPins(std::vector<Hold> const & i_holds, std::span<Vec2 const> i_flat)
{
    Modes const modes(i_flat);
    std::vector<std::vector<double>> columns;
    for (RigidMotion const & motion : freeRigidMotions(i_holds, i_flat))
    {
        std::vector<double> column(2 * i_flat.size());
        for (std::size_t i = 0; i < i_flat.size(); ++i)
        {
            Vec2 const move = modes.displacement(motion, i_flat[i]);
            column[2 * i] = move.x;
            column[2 * i + 1] = move.y;
        }
        columns.push_back(std::move(column));
    }
    return choosePins(std::move(columns));
}

RigidHolding::RigidHolding(Piece const & i_piece, Freedoms const & i_freedoms, std::span<Vec2 const> i_start)
{
    Modes const modes(i_start);
    for (RigidMotion const & motion : freeRigidMotions(i_piece.holds, i_start))
    {
        std::vector<double> force(at(i_freedoms.size)), row(at(i_freedoms.size));
        for (std::size_t i = 0; i < i_start.size(); ++i)
        {
            Vec2 const move = i_piece.weight[i] * modes.displacement(motion, i_start[i]);
            for (int e = i_freedoms.first[i]; e < i_freedoms.first[i + 1]; ++e)
            {
                force[at(e)] = dot(i_freedoms.equation[at(e)], lifted(move));
                row[at(e)] = dot(i_freedoms.column[at(e)], move);
            }
        }
        for (auto const & earlier : m_forces) // Gram-Schmidt; the modes are far from parallel
        {
            double share = 0.0;
            for (std::size_t e = 0; e < force.size(); ++e)
                share += earlier[e] * force[e];
            for (std::size_t e = 0; e < force.size(); ++e)
                force[e] -= share * earlier[e];
        }
        double squares = 0.0;
        for (double const f : force)
            squares += f * f;
        if (!(squares > 0.0))
            continue;
        for (double & f : force)
            f /= std::sqrt(squares);
        m_forces.push_back(std::move(force));
        m_rows.push_back(std::move(row));
    }
    m_pins = choosePairs(i_freedoms, m_forces, m_rows);
    m_forces.resize(m_pins.size());
    m_rows.resize(m_pins.size());
}

double RigidHolding::removeHeldPart(std::vector<double> & io_residual) const
{
    double squares = 0.0;
    for (auto const & force : m_forces)
    {
        double share = 0.0;
        for (std::size_t e = 0; e < force.size(); ++e)
            share += force[e] * io_residual[e];
        for (std::size_t e = 0; e < force.size(); ++e)
            io_residual[e] -= share * force[e];
        squares += share * share;
    }
    return std::sqrt(squares);
}

std::vector<RigidHolding::Pin> RigidHolding::choosePairs(Freedoms const & i_freedoms,
                                                         std::vector<std::vector<double>> i_forces,
                                                         std::vector<std::vector<double>> i_rows)
{
    std::vector<Pin> pins;
    for (std::size_t c = 0; c < i_rows.size(); ++c)
    {
        Pin best{-1, -1};
        double greatest = 0.0;
        for (std::size_t node = 0; node + 1 < i_freedoms.first.size(); ++node)
            for (int q = i_freedoms.first[node]; q < i_freedoms.first[node + 1]; ++q)
                for (int p = i_freedoms.first[node]; p < i_freedoms.first[node + 1]; ++p)
                    if (double const size = std::abs(i_forces[c][at(q)] * i_rows[c][at(p)]); size > greatest)
                    {
                        greatest = size;
                        best = {q, p};
                    }
        if (best.unknown < 0)
            break;
        pins.push_back(best);
        for (std::size_t other = c + 1; other < i_rows.size(); ++other)
        {
            eliminate(i_rows[c], at(best.unknown), i_rows[other]);
            eliminate(i_forces[c], at(best.equation), i_forces[other]);
        }
    }
    return pins;
}

bool RigidHolding::factorise(ElementPattern const & i_pattern, std::vector<double> & io_values,
                             SparseSolver & io_solver)
{
    int const size = i_pattern.sparse().size;
    m_alpha = 0.0;
    for (int row = 0; row < size; ++row)
        m_alpha += std::abs(io_values[at(i_pattern.diagonal(row))]) / size;
    for (Pin const & pin : m_pins)
        io_values[at(i_pattern.sparse().find(pin.equation, pin.unknown))] += m_alpha;
    m_border.clear();
    m_pattern = &i_pattern.sparse();
    m_values = &io_values;
    m_solver = &io_solver;
    return io_solver.factorise(io_values);
}

std::vector<double> RigidHolding::motionOf(std::vector<double> const & i_step) const
{
    std::vector<double> motion;
    for (auto const & row : m_rows)
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < i_step.size(); ++i)
            sum += row[i] * i_step[i];
        motion.push_back(sum);
    }
    return motion;
}

// Of the equations of equilibrium, less what the holding forces can take.
void RigidHolding::residualOf(std::vector<double> const & i_right, std::vector<double> const & i_step,
                              std::vector<double> & o_residual) const
{
    o_residual = i_right;
    for (std::size_t row = 0; row < i_step.size(); ++row)
        for (int k = m_pattern->rowStart[row]; k < m_pattern->rowStart[row + 1]; ++k)
            o_residual[row] -= (*m_values)[at(k)] * i_step[at(m_pattern->column[at(k)])];
    for (Pin const & pin : m_pins)
        o_residual[at(pin.equation)] += m_alpha * i_step[at(pin.unknown)];
    removeHeldPart(o_residual);
}

bool RigidHolding::solve(std::vector<double> const & i_right, std::vector<double> & o_step)
{
    if (m_solver == nullptr || !solveOnce(i_right, std::vector<double>(m_rows.size(), 0.0), o_step))
        return false;
    std::vector<double> residual, correction, improved, held = i_right;
    removeHeldPart(held);
    double const goal = kSolveResidual * std::sqrt(squaresOf(held));
    residualOf(i_right, o_step, residual);
    double size = std::sqrt(squaresOf(residual));
    for (int i = 0; i < kRefinements && size > goal; ++i)
    {
        std::vector<double> motion = motionOf(o_step);
        for (double & m : motion)
            m = -m;
        if (!solveOnce(residual, motion, correction))
            return false;
        improved = o_step;
        for (std::size_t e = 0; e < improved.size(); ++e)
            improved[e] += correction[e];
        residualOf(i_right, improved, residual);
        double const next = std::sqrt(squaresOf(residual));
        if (!(next < size))
            break;
        size = next;
        o_step.swap(improved);
    }
    return true;
}

// i_motion: what Cr^T of the step is to be.
bool RigidHolding::solveOnce(std::vector<double> const & i_right, std::vector<double> const & i_motion,
                             std::vector<double> & o_step)
{
    std::size_t const size = i_right.size(), n = m_forces.size();
    std::vector<double> sides = i_right;
    if (m_border.empty() && n > 0)
    {
        sides.resize(size * (1 + 2 * n), 0.0);
        for (std::size_t k = 0; k < n; ++k)
        {
            std::copy(m_forces[k].begin(), m_forces[k].end(),
                      sides.begin() + static_cast<std::ptrdiff_t>(size * (1 + k)));
            sides[size * (1 + n + k) + at(m_pins[k].equation)] = 1.0;
        }
    }
    if (!m_solver->solve(sides, static_cast<int>(sides.size() / size)))
        return false;
    if (m_border.empty())
        m_border.assign(sides.begin() + static_cast<std::ptrdiff_t>(size), sides.end());
    o_step.assign(sides.begin(), sides.begin() + static_cast<std::ptrdiff_t>(size));
    if (n == 0)
        return true;
    auto const side = [&](std::size_t column, std::size_t i)
    { return column == 0 ? sides[i] : m_border[size * (column - 1) + i]; };
    auto const along = [&](std::size_t row, std::size_t column)
    {
        double sum = 0.0;
        for (std::size_t i = 0; i < size; ++i)
            sum += m_rows[row][i] * side(column, i);
        return sum;
    };
    auto const count = static_cast<Eigen::Index>(n);
    Eigen::MatrixXd small(2 * count, 2 * count);
    Eigen::VectorXd right(2 * count);
    for (std::size_t r = 0; r < n; ++r)
    {
        auto const i = static_cast<Eigen::Index>(r);
        right[i] = i_motion[r] - along(r, 0);
        right[count + i] = -side(0, at(m_pins[r].unknown));
        for (std::size_t c = 0; c < n; ++c)
        {
            auto const j = static_cast<Eigen::Index>(c);
            small(i, j) = -along(r, 1 + c);
            small(i, count + j) = m_alpha * along(r, 1 + n + c);
            small(count + i, j) = -side(1 + c, at(m_pins[r].unknown));
            small(count + i, count + j) = m_alpha * side(1 + n + c, at(m_pins[r].unknown)) - (r == c ? 1.0 : 0.0);
        }
    }
    Eigen::VectorXd const share = small.fullPivLu().solve(right);
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t k = 0; k < n; ++k)
        {
            auto const j = static_cast<Eigen::Index>(k);
            o_step[i] += m_alpha * share[count + j] * side(1 + n + k, i) - share[j] * side(1 + k, i);
        }
    return share.allFinite();
}

} // namespace voz::onestep
