// ShellTriangle.cpp: element-independent co-rotation.
//
// The frame T has the present plane of the corners and the in-plane turn of the polar decomposition of the triangle's
// deformation gradient: sum g_i x x_i = 0, g_i the gradients of the area coordinates as formed. So a plain stretch
// turns no frame. With x_i in the frame, X_i as formed and R_i the corner's rotation
//
//     d_i = (x_i - X_i,  log(T^T R_i T0)),   (n, m) = K d + load f0
//
// A change of the corners turns the frame by w = sum G_i dx_i; what is left deforms: dx_i - w x x_i, spin_i - w. With H
// the derivative of the logarithm, m^ = H^T m and S = sum (x_i x n_i + m^_i), the forces are
//
//     f_i = n_i - G_i^T S,   moments m^_i
//
// S is what the turned frame leaves unbalanced, small of second order. The tangent keeps every term. Deformations come
// from displacements, as T^T (u_i - u_c) + (T^T T0 - 1) X_i: the difference of positions would lose the digits that a
// stiff sliver needs.

#include "springback/ShellTriangle.h"

#include <cmath>

namespace voz::springback
{

using Eigen::Matrix3d;
using Eigen::Vector3d;

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

Matrix3d crossMatrix(Vector3d const & a)
{
    Matrix3d m;
    m << 0.0, -a.z(), a.y(), a.z(), 0.0, -a.x(), -a.y(), a.x(), 0.0;
    return m;
}

Vector3d logarithm(Matrix3d const & i_rotation)
{
    Eigen::Quaterniond const q(i_rotation);
    double const sine = q.vec().norm(); // of half the angle
    double const sign = q.w() < 0.0 ? -1.0 : 1.0;
    if (sine < 1.0e-8)
        return 2.0 * sign * q.vec();
    return (2.0 * std::atan2(sine, std::abs(q.w())) / sine) * sign * q.vec();
}

// H = I - 1/2 [a] + eta [a]^2 and what its own derivative needs.
struct LogarithmDerivative
{
    explicit LogarithmDerivative(Vector3d const & a) : angle(a), spin(crossMatrix(a))
    {
        double const square = a.squaredNorm();
        if (square < 1.0e-4)
        {
            eta = 1.0 / 12.0 + square / 720.0 + square * square / 30240.0;
            mu = 1.0 / 360.0 + square / 7560.0;
        }
        else
        {
            double const size = std::sqrt(square), half = std::sin(0.5 * size);
            eta = (1.0 - 0.5 * size / std::tan(0.5 * size)) / square;
            mu = (square + 4.0 * std::cos(size) + size * std::sin(size) - 4.0) / (4.0 * square * square * half * half);
        }
        h = Matrix3d::Identity() - 0.5 * spin + eta * spin * spin;
    }

    // Derivative of H^T m by a spin, m held.
    Matrix3d ofTransposedTimes(Vector3d const & m) const
    {
        Vector3d const once = angle.cross(m);
        return (-0.5 * crossMatrix(m) - eta * (crossMatrix(once) + spin * crossMatrix(m)) +
                mu * angle.cross(once) * angle.transpose()) *
               h;
    }

    Vector3d angle;
    Matrix3d spin, h;
    double eta, mu;
};

// Unknowns of the plate and of the membrane among the six of a corner.
constexpr std::array<int, 3> kMembrane = {0, 1, 5};
constexpr std::array<int, 3> kPlate = {2, 3, 4};

int place(std::array<int, 3> const & i_of, int i_k)
{
    return 6 * (i_k / 3) + i_of[at(i_k % 3)];
}

void addScattered(Matrix9 const & i_part, std::array<int, 3> const & i_of, Matrix18 & io_whole)
{
    for (int row = 0; row < 9; ++row)
        for (int column = 0; column < 9; ++column)
            io_whole(place(i_of, row), place(i_of, column)) += i_part(row, column);
}

// Everything of a state that does not ask for the stiffness.
struct Kinematics
{
    Matrix3d frame;                         // T
    std::array<Vector3d, 3> local;          // x_i
    std::array<geometry::Vec2, 3> gradient; // of the area coordinates, present triangle
    double stretch = 0.0;                   // D = sum g_i . x_i
    std::array<Matrix3d, 3> turn;           // G_i
    std::array<LogarithmDerivative, 3> rotation;
    Vector18 deformation;
};

Matrix3d presentFrame(ShellTriangle const & i_triangle, std::array<Vector3d, 3> const & i_fromCentre)
{
    Vector3d const side = i_fromCentre[1] - i_fromCentre[0];
    Vector3d const normal = side.cross(i_fromCentre[2] - i_fromCentre[0]).normalized();
    Vector3d const first = side.normalized(), second = normal.cross(first);
    double sine = 0.0, cosine = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
    {
        geometry::Vec2 const x{first.dot(i_fromCentre[i]), second.dot(i_fromCentre[i])};
        sine += cross(i_triangle.slope[i], x);
        cosine += dot(i_triangle.slope[i], x);
    }
    double const size = std::hypot(sine, cosine);
    sine /= size;
    cosine /= size;
    Matrix3d frame;
    frame.col(0) = cosine * first + sine * second;
    frame.col(1) = cosine * second - sine * first;
    frame.col(2) = normal;
    return frame;
}

Kinematics kinematicsOf(ShellTriangle const & i_triangle, CornerState const & i_state)
{
    auto const & u = i_state.displacement;
    Vector3d const drift = (u[0] + u[1] + u[2]) / 3.0;
    std::array<Vector3d, 3> fromCentre;
    for (std::size_t i = 0; i < 3; ++i)
        fromCentre[i] =
            i_triangle.frame.leftCols<2>() * Eigen::Vector2d(i_triangle.corner[i].x, i_triangle.corner[i].y) +
            (u[i] - drift);
    Matrix3d const frame = presentFrame(i_triangle, fromCentre);
    Matrix3d const back = frame.transpose() * i_triangle.frame - Matrix3d::Identity();
    auto const angleOf = [&](std::size_t i)
    {
        Matrix3d const r = i_state.rotation[i].toRotationMatrix();
        return LogarithmDerivative(logarithm(frame.transpose() * r * i_triangle.frame));
    };
    Kinematics k{frame, {}, {}, 0.0, {}, {angleOf(0), angleOf(1), angleOf(2)}, {}};
    Corners present;
    for (std::size_t i = 0; i < 3; ++i)
    {
        k.local[i] = frame.transpose() * fromCentre[i];
        k.local[i].z() = 0.0; // rounding: the corners span the plane
        present[i] = {k.local[i].x(), k.local[i].y()};
        k.stretch += dot(i_triangle.slope[i], present[i]);
    }
    k.gradient = areaGradients(present);
    for (std::size_t i = 0; i < 3; ++i)
    {
        geometry::Vec2 const reference = i_triangle.corner[i], slope = i_triangle.slope[i];
        k.turn[i] << 0.0, 0.0, k.gradient[i].y, 0.0, 0.0, -k.gradient[i].x, -slope.y / k.stretch, slope.x / k.stretch,
            0.0;
        auto const row = static_cast<Eigen::Index>(6 * i);
        Vector3d const stretch =
            back.leftCols<2>() * Eigen::Vector2d(reference.x, reference.y) + frame.transpose() * (u[i] - drift);
        k.deformation.segment<3>(row) << stretch.x(), stretch.y(), 0.0;
        k.deformation.segment<3>(row + 3) = k.rotation[i].angle;
    }
    return k;
}

// Forces in the frame: n and m^ from the stiffness, then f.
struct LocalForces
{
    Vector18 conjugate;             // n_i, m^_i
    Vector18 moments;               // m_i in the last three places of a corner
    Vector3d unbalanced;            // S
    std::array<Vector3d, 3> turned; // G_i^T S
    Vector18 force;
};

LocalForces forcesOf(Kinematics const & k, Vector18 const & i_linear)
{
    LocalForces f;
    f.conjugate = f.moments = i_linear;
    f.unbalanced.setZero();
    for (int i = 0; i < 3; ++i)
    {
        Vector3d const n = i_linear.segment<3>(6 * i);
        Vector3d const m = k.rotation[at(i)].h.transpose() * i_linear.segment<3>(6 * i + 3);
        f.conjugate.segment<3>(6 * i + 3) = m;
        f.unbalanced += k.local[at(i)].cross(n) + m;
    }
    f.force = f.conjugate;
    for (int i = 0; i < 3; ++i)
    {
        f.turned[at(i)] = k.turn[at(i)].transpose() * f.unbalanced;
        f.force.segment<3>(6 * i) -= f.turned[at(i)];
    }
    return f;
}

// Deformation from displacements and spins in the frame.
Matrix18 projector(Kinematics const & k)
{
    Matrix18 p = Matrix18::Identity();
    for (int i = 0; i < 3; ++i)
    {
        Matrix3d const arm = crossMatrix(k.local[at(i)]);
        for (int j = 0; j < 3; ++j)
        {
            p.block<3, 3>(6 * i, 6 * j) += arm * k.turn[at(j)];
            p.block<3, 3>(6 * i + 3, 6 * j) -= k.turn[at(j)];
        }
    }
    return p;
}

// What the change of G_i and of the arms adds to the tangent.
void addTurningTerms(ShellTriangle const & i_triangle, Kinematics const & k, LocalForces const & f,
                     Matrix18 const & i_projector, Matrix18 & io_tangent)
{
    Eigen::Matrix<double, 3, 18> lever = Eigen::Matrix<double, 3, 18>::Zero(); // - d S of the arms
    Eigen::Matrix<double, 1, 18> stretch = Eigen::Matrix<double, 1, 18>::Zero();
    Eigen::Matrix<double, 3, 18> turn = Eigen::Matrix<double, 3, 18>::Zero(); // w
    for (int j = 0; j < 3; ++j)
    {
        auto const moved = i_projector.middleRows<3>(6 * j);
        lever += crossMatrix(f.conjugate.segment<3>(6 * j)) * moved;
        stretch += i_triangle.slope[at(j)].x * moved.row(0) + i_triangle.slope[at(j)].y * moved.row(1);
        turn.middleCols<3>(6 * j) = k.turn[at(j)];
    }
    for (int i = 0; i < 3; ++i)
    {
        auto rows = io_tangent.middleRows<3>(6 * i);
        rows += k.turn[at(i)].transpose() * lever;
        rows.row(0) += (f.turned[at(i)].x() / k.stretch) * stretch;
        rows.row(1) += (f.turned[at(i)].y() / k.stretch) * stretch;
        for (int j = 0; j < 3; ++j)
        {
            auto const moved = i_projector.middleRows<3>(6 * j);
            rows.row(2) +=
                f.turned[at(j)].z() * (k.gradient[at(i)].x * moved.row(0) + k.gradient[at(i)].y * moved.row(1));
        }
        rows -= crossMatrix(f.force.segment<3>(6 * i)) * turn;
        io_tangent.middleRows<3>(6 * i + 3) -= crossMatrix(f.force.segment<3>(6 * i + 3)) * turn;
    }
}

Matrix18 tangentOf(ShellTriangle const & i_triangle, Kinematics const & k, LocalForces const & f,
                   Matrix18 const & i_stiffness)
{
    Matrix18 inner = i_stiffness; // H^T K H and the derivative of H^T
    for (int i = 0; i < 3; ++i)
    {
        Matrix3d const & h = k.rotation[at(i)].h;
        inner.middleCols<3>(6 * i + 3) *= h;
        inner.middleRows<3>(6 * i + 3) = (h.transpose() * inner.middleRows<3>(6 * i + 3)).eval();
    }
    for (int i = 0; i < 3; ++i)
        inner.block<3, 3>(6 * i + 3, 6 * i + 3) += k.rotation[at(i)].ofTransposedTimes(f.moments.segment<3>(6 * i + 3));
    Matrix18 const p = projector(k);
    Matrix18 const right = inner * p;
    Matrix18 tangent = p.transpose() * right;
    addTurningTerms(i_triangle, k, f, p, tangent);
    return tangent;
}

} // namespace

ShellTriangle shellTriangle(std::array<Vector3d, 3> const & i_points, std::array<int, 3> const & i_nodes)
{
    ShellTriangle triangle;
    triangle.node = i_nodes;
    Vector3d const side = i_points[1] - i_points[0];
    Vector3d const normal = side.cross(i_points[2] - i_points[0]).normalized();
    triangle.frame.col(0) = side.normalized();
    triangle.frame.col(1) = normal.cross(triangle.frame.col(0));
    triangle.frame.col(2) = normal;
    Vector3d const centre = (i_points[0] + i_points[1] + i_points[2]) / 3.0;
    for (std::size_t i = 0; i < 3; ++i)
        triangle.corner[i] = {triangle.frame.col(0).dot(i_points[i] - centre),
                              triangle.frame.col(1).dot(i_points[i] - centre)};
    triangle.slope = areaGradients(triangle.corner);
    triangle.initialForce.setZero();
    return triangle;
}

void setInitialForce(Vector3d const & i_force, Vector3d const & i_moment, ShellTriangle & io_triangle)
{
    constexpr std::array<double, 3> kCentre = {1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0};
    Eigen::Matrix<double, 9, 1> const membrane = membraneLumping(io_triangle.corner) * i_force;
    Eigen::Matrix<double, 9, 1> const plate =
        areaOf(io_triangle.corner) * (plateCurvature(io_triangle.corner, kCentre).transpose() * i_moment);
    for (int k = 0; k < 9; ++k)
    {
        io_triangle.initialForce(place(kMembrane, k)) = io_triangle.share * membrane(k);
        io_triangle.initialForce(place(kPlate, k)) = io_triangle.share * plate(k);
    }
}

Matrix18 linearStiffness(ShellTriangle const & i_triangle)
{
    double const t = i_triangle.thickness;
    Matrix3d const elastic = i_triangle.share * planeStress(i_triangle.youngsModulus, i_triangle.poisson);
    Matrix18 k = Matrix18::Zero();
    addScattered(membraneStiffness(i_triangle.corner, t * elastic, i_triangle.poisson), kMembrane, k);
    addScattered(plateStiffness(i_triangle.corner, (t * t * t / 12.0) * elastic), kPlate, k);
    return k;
}

void evaluate(ShellTriangle const & i_triangle, CornerState const & i_state, double i_load, Vector18 & o_force,
              Matrix18 * o_tangent)
{
    Matrix18 const stiffness = linearStiffness(i_triangle);
    Kinematics const k = kinematicsOf(i_triangle, i_state);
    LocalForces const f = forcesOf(k, stiffness * k.deformation + i_load * i_triangle.initialForce);
    for (int i = 0; i < 6; ++i)
        o_force.segment<3>(3 * i) = k.frame * f.force.segment<3>(3 * i);
    if (!o_tangent)
        return;
    Matrix18 const local = tangentOf(i_triangle, k, f, stiffness);
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 6; ++j)
            o_tangent->block<3, 3>(3 * i, 3 * j) = k.frame * local.block<3, 3>(3 * i, 3 * j) * k.frame.transpose();
}

} // namespace voz::springback
