// MembraneTriangle.cpp: the optimal member of the ANDES family.
//
// C. A. Felippa, Comput. Methods Appl. Mech. Eng. 192 (2003) 2125. The stiffness is K = L C L^T / A + 3/4 beta0 T^T Kt
// T: a basic part that lumps constant stress to the corners (alpha = 3/2), and a higher-order part over the corners'
// rotations less the mean rotation of the triangle, from natural strains at the middles of the sides, with
//
//     beta0 = max((1 - 4 nu^2)/2, 0.01),   beta1..9 = 1, 2, 1, 0, 1, -1, -1, -1, -2,
//
// for which a rectangle of any aspect bends in its plane without error.

#include "springback/MembraneTriangle.h"

#include <algorithm>

namespace voz::springback
{

namespace
{

constexpr double kAlpha = 1.5;
constexpr double kLeastBeta0 = 0.01; // keeps the element stiff against drilling near nu = 1/2

geometry::Vec2 between(Corners const & i_corners, int i_to, int i_from)
{
    return i_corners[static_cast<std::size_t>(i_to)] - i_corners[static_cast<std::size_t>(i_from)];
}

struct Sides // x_ij = x_i - x_j and the squares of the lengths
{
    explicit Sides(Corners const & c)
        : d12(between(c, 0, 1)), d23(between(c, 1, 2)), d31(between(c, 2, 0)), l12(dot(d12, d12)), l23(dot(d23, d23)),
          l31(dot(d31, d31))
    {
    }
    geometry::Vec2 d12, d23, d31;
    double l12, l23, l31;
};

// Natural strains (along the sides 12, 23, 31) to Cartesian ones.
Eigen::Matrix3d naturalToCartesian(Sides const & s, double i_area)
{
    double const x12 = s.d12.x, y12 = s.d12.y, x23 = s.d23.x, y23 = s.d23.y, x31 = s.d31.x, y31 = s.d31.y;
    double const x21 = -x12, y21 = -y12, x32 = -x23, y32 = -y23, x13 = -x31, y13 = -y31;
    Eigen::Matrix3d t;
    t << y23 * y13 * s.l12, y31 * y21 * s.l23, y12 * y32 * s.l31, //
        x23 * x13 * s.l12, x31 * x21 * s.l23, x12 * x32 * s.l31,  //
        (y23 * x31 + x32 * y13) * s.l12, (y31 * x12 + x13 * y21) * s.l23, (y12 * x23 + x21 * y32) * s.l31;
    return t / (4.0 * i_area * i_area);
}

// Natural strains at the three corners from the corners' rotations.
std::array<Eigen::Matrix3d, 3> cornerStrains(Sides const & s, double i_area)
{
    constexpr double b1 = 1.0, b2 = 2.0, b3 = 1.0, b4 = 0.0, b5 = 1.0, b6 = -1.0, b7 = -1.0, b8 = -1.0, b9 = -2.0;
    std::array<Eigen::Matrix3d, 3> q;
    q[0] << b1, b2, b3, b4, b5, b6, b7, b8, b9;
    q[1] << b9, b7, b8, b3, b1, b2, b6, b4, b5;
    q[2] << b5, b6, b4, b8, b9, b7, b2, b3, b1;
    Eigen::Vector3d const scale(1.0 / s.l12, 1.0 / s.l23, 1.0 / s.l31);
    for (Eigen::Matrix3d & corner : q)
        corner = (2.0 * i_area / 3.0) * (scale.asDiagonal() * corner);
    return q;
}

// Corner rotations less the mean rotation of the triangle.
Eigen::Matrix<double, 3, 9> relativeRotation(Sides const & s, double i_area)
{
    double const c = 1.0 / (4.0 * i_area);
    Eigen::Matrix<double, 1, 9> mean;
    mean << -c * s.d23.x, -c * s.d23.y, 0.0, -c * s.d31.x, -c * s.d31.y, 0.0, -c * s.d12.x, -c * s.d12.y, 0.0;
    Eigen::Matrix<double, 3, 9> t;
    for (int corner = 0; corner < 3; ++corner)
    {
        t.row(corner) = mean;
        t(corner, 3 * corner + 2) = 1.0;
    }
    return t;
}

} // namespace

double areaOf(Corners const & i_corners)
{
    return 0.5 * cross(between(i_corners, 1, 0), between(i_corners, 2, 0));
}

std::array<geometry::Vec2, 3> areaGradients(Corners const & i_corners)
{
    double const doubled = 2.0 * areaOf(i_corners);
    std::array<geometry::Vec2, 3> gradient;
    for (int k = 0; k < 3; ++k)
        gradient[static_cast<std::size_t>(k)] =
            (1.0 / doubled) * turnedLeft(between(i_corners, (k + 2) % 3, (k + 1) % 3));
    return gradient;
}

Eigen::Matrix3d planeStress(double i_youngsModulus, double i_poisson)
{
    Eigen::Matrix3d c;
    c << 1.0, i_poisson, 0.0, i_poisson, 1.0, 0.0, 0.0, 0.0, 0.5 * (1.0 - i_poisson);
    return i_youngsModulus / (1.0 - i_poisson * i_poisson) * c;
}

Eigen::Matrix<double, 9, 3> membraneLumping(Corners const & i_corners)
{
    Eigen::Matrix<double, 9, 3> lumping;
    for (int corner = 0; corner < 3; ++corner)
    {
        int const next = (corner + 1) % 3, last = (corner + 2) % 3;
        geometry::Vec2 const across = between(i_corners, next, last); // of the side opposite the corner
        geometry::Vec2 const in = between(i_corners, corner, last), out = between(i_corners, next, corner);
        lumping.row(3 * corner) << across.y, 0.0, -across.x;
        lumping.row(3 * corner + 1) << 0.0, -across.x, across.y;
        lumping.row(3 * corner + 2) << kAlpha / 6.0 * across.y * (in.y - out.y),
            kAlpha / 6.0 * -across.x * (-in.x + out.x), kAlpha / 3.0 * (-in.x * in.y + out.x * out.y);
    }
    return 0.5 * lumping;
}

Matrix9 membraneStiffness(Corners const & i_corners, Eigen::Matrix3d const & i_elastic, double i_poisson)
{
    double const area = areaOf(i_corners);
    Sides const sides(i_corners);
    Eigen::Matrix<double, 9, 3> const lumping = membraneLumping(i_corners);
    Eigen::Matrix3d const toCartesian = naturalToCartesian(sides, area);
    Eigen::Matrix3d const natural = toCartesian.transpose() * i_elastic * toCartesian;
    auto const q = cornerStrains(sides, area);
    Eigen::Matrix3d rotational = Eigen::Matrix3d::Zero();
    for (std::size_t corner = 0; corner < 3; ++corner)
    {
        Eigen::Matrix3d const middle = 0.5 * (q[corner] + q[(corner + 1) % 3]);
        rotational += area * (middle.transpose() * natural * middle);
    }
    double const beta0 = std::max(0.5 * (1.0 - 4.0 * i_poisson * i_poisson), kLeastBeta0);
    Eigen::Matrix<double, 3, 9> const relative = relativeRotation(sides, area);
    Matrix9 k = lumping * (i_elastic / area) * lumping.transpose();
    k += (0.75 * beta0) * (relative.transpose() * rotational * relative);
    return k;
}

} // namespace voz::springback
