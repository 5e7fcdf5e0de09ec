#include "PointAlignment.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace pointalignment
{
namespace
{
constexpr double kNoLength = 1e-20;
constexpr double kNoTurn = 1e-05; // of the cross product, mm2
constexpr double kStraight = 0.001;
constexpr double kMillimetres = 1000.0;

constexpr double kIdentity[16] = {1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 0.0, 1.0};

bool anyNull(std::initializer_list<void const *> i_pointers)
{
    return std::find(i_pointers.begin(), i_pointers.end(), nullptr) != i_pointers.end();
}

void difference(float const * a, float const * b, float * o_difference)
{
    for (int i = 0; i < 3; ++i)
        o_difference[i] = a[i] - b[i];
}

void cross(float const * a, float const * b, float * o_product)
{
    o_product[0] = a[1] * b[2] - a[2] * b[1];
    o_product[1] = a[2] * b[0] - a[0] * b[2];
    o_product[2] = a[0] * b[1] - a[1] * b[0];
}

double dot(float const * a, float const * b)
{
    double sum = 0.0;
    for (int i = 0; i < 3; ++i)
        sum += static_cast<double>(a[i]) * static_cast<double>(b[i]);
    return sum;
}

double length(float const * a)
{
    return std::sqrt(dot(a, a));
}

// Component i of the turned point.
double turned(double const * i_matrix, float const * b, int i)
{
    double const * const row = i_matrix + 4 * i;
    return row[0] * static_cast<double>(b[0]) + row[1] * static_cast<double>(b[1]) + row[2] * static_cast<double>(b[2]);
}

// Moves the translation by a share of what is left at a pair.
void correct(float const * a, float const * b, double i_divisor, double * io_matrix)
{
    for (int i = 0; i < 3; ++i)
    {
        double & t = io_matrix[4 * i + 3];
        t += (static_cast<double>(a[i]) - (turned(io_matrix, b, i) + t)) / i_divisor;
    }
}

void normalOf(float const * const (&p)[3], float * o_normal)
{
    float u[3];
    float v[3];
    difference(p[1], p[0], u);
    difference(p[2], p[0], v);
    cross(u, v, o_normal);
}

// Four points of one triple after the other, to the first that settles the matter.
bool anyTripleCollinear(float const (&p)[4][3])
{
    constexpr int kTriples[4][3] = {{0, 1, 2}, {1, 2, 3}, {0, 2, 3}, {0, 1, 3}};
    for (auto const & triple : kTriples)
    {
        int flag = 0;
        int const failed = IsCollinear(p[triple[0]], p[triple[1]], p[triple[2]], &flag);
        if (failed != 0 || flag != 0)
            return flag != 0;
    }
    return false;
}
} // namespace

int MatrixIdentity(double * o_matrix)
{
    return MatrixCopy(kIdentity, o_matrix);
}

int MatrixCopy(double const * i_matrix, double * o_matrix)
{
    if (anyNull({i_matrix, o_matrix}))
        return 1;
    std::copy_n(i_matrix, 16, o_matrix);
    return 0;
}

int RotationFromAxis(double * o_matrix, double i_sinA, double i_cosA, float const * i_axis)
{
    if (anyNull({o_matrix, i_axis}))
        return 1;
    double const x = static_cast<double>(i_axis[0]);
    double const y = static_cast<double>(i_axis[1]);
    double const z = static_cast<double>(i_axis[2]);
    double const s = i_sinA;
    double const c = i_cosA;
    double const rows[3][3] = {
        {(1.0 - x * x) * c + x * x, x * y * (1.0 - c) - z * s, x * z * (1.0 - c) + y * s},
        {x * y * (1.0 - c) + z * s, (1.0 - y * y) * c + y * y, y * z * (1.0 - c) - x * s},
        {x * z * (1.0 - c) - y * s, y * z * (1.0 - c) + x * s, (1.0 - z * z) * c + z * z},
    };
    MatrixIdentity(o_matrix);
    for (int i = 0; i < 3; ++i)
        std::copy_n(rows[i], 3, o_matrix + 4 * i);
    return 0;
}

int RotationBetween(float const * i_from, float const * i_to, double * o_matrix)
{
    if (anyNull({i_from, i_to, o_matrix}))
        return 1;
    MatrixIdentity(o_matrix);
    double const fromLength = length(i_from);
    double const toLength = length(i_to);
    if (fromLength <= kNoLength || toLength <= kNoLength)
        return 1;
    float axis[3];
    cross(i_from, i_to, axis);
    double const axisLength = length(axis);
    if (!(axisLength > kNoTurn))
        return 0;
    double const c = dot(i_from, i_to) / (toLength * fromLength);
    double const s = std::sqrt(std::fabs(1.0 - c * c));
    for (float & component : axis)
        component = static_cast<float>(static_cast<double>(component) / axisLength);
    return RotationFromAxis(o_matrix, s, c, axis);
}

int FitTwoPoints(float const * a0, float const * a1, float const * b0, float const * b1, double * io_matrix)
{
    if (anyNull({a0, a1, b0, b1, io_matrix}))
        return 1;
    float from[3];
    float to[3];
    difference(b1, b0, from);
    difference(a1, a0, to);
    double rotation[16];
    if (RotationBetween(from, to, rotation) != 0)
        return 1;
    for (int i = 0; i < 3; ++i)
        rotation[4 * i + 3] = static_cast<double>(a1[i]) - turned(rotation, b1, i);
    return MatrixCopy(rotation, io_matrix);
}

int FitPlaneNormals(float const * na, float const * nb, float const * const (&a)[3], float const * const (&b)[3],
                    double * o_matrix)
{
    if (anyNull({na, nb, a[0], a[1], a[2], b[0], b[1], b[2], o_matrix}))
        return 1;
    RotationBetween(nb, na, o_matrix); // a normal without length gives no turn
    for (int i = 0; i < 3; ++i)
    {
        double sum = 0.0;
        for (int k = 0; k < 3; ++k)
            sum += static_cast<double>(a[k][i]) - turned(o_matrix, b[k], i);
        o_matrix[4 * i + 3] = sum / 3.0;
    }
    return 0;
}

int FitThreePoints(float const * const (&a)[3], float const * const (&b)[3], int i_mode, double * io_matrix)
{
    if (anyNull({a[0], a[1], a[2], b[0], b[1], b[2], io_matrix}))
        return 1;
    if (i_mode == kTranslation)
    {
        MatrixIdentity(io_matrix);
        for (int i = 0; i < 3; ++i)
        {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k)
                sum += static_cast<double>(a[k][i]) - static_cast<double>(b[k][i]);
            io_matrix[4 * i + 3] = sum / 3.0;
        }
        return 0;
    }
    if (i_mode == kCollinear)
    {
        FitTwoPoints(a[0], a[1], b[0], b[1], io_matrix); // where it fails the matrix given is corrected
        correct(a[2], b[2], 3.0, io_matrix);
        return 0;
    }
    if (i_mode != kPlane)
        return 1;
    float na[3];
    float nb[3];
    normalOf(a, na);
    normalOf(b, nb);
    return FitPlaneNormals(na, nb, a, b, io_matrix);
}

int FitFourPoints(float const * const (&a)[4], float const * const (&b)[4], int i_mode, double * io_matrix)
{
    if (anyNull({a[3], b[3]}) || FitThreePoints({a[0], a[1], a[2]}, {b[0], b[1], b[2]}, i_mode, io_matrix) != 0)
        return 1;
    correct(a[3], b[3], 4.0, io_matrix);
    return 0;
}

int IsCollinear(float const * p0, float const * p1, float const * p2, int * o_flag)
{
    if (anyNull({p0, p1, p2, o_flag}))
        return 1;
    float u[3];
    float v[3];
    difference(p1, p0, u);
    difference(p2, p0, v);
    double const uLength = length(u);
    if (uLength <= kNoLength)
        return 1;
    double const c = dot(u, v) / (length(v) * uLength); // no number if p2 is p0: not collinear then
    *o_flag = std::fabs(c - 1.0) <= kStraight || std::fabs(c + 1.0) <= kStraight ? 1 : 0;
    return 0;
}

void AlignPoints(double const * i_target, double const * i_source, int i_count, double * o_matrix)
{
    if (!o_matrix)
        return;
    double matrix[16];
    MatrixIdentity(matrix);
    int const count = anyNull({i_target, i_source}) ? 0 : std::min(i_count, 4);
    float p[4][3] = {};
    float q[4][3] = {};
    for (int n = 0; n < count; ++n)
        for (int i = 0; i < 3; ++i)
        {
            p[n][i] = static_cast<float>(i_target[3 * n + i] * kMillimetres);
            q[n][i] = static_cast<float>(i_source[3 * n + i] * kMillimetres);
        }
    if (count == 1)
        for (int i = 0; i < 3; ++i)
            matrix[4 * i + 3] = static_cast<double>(p[0][i]) - static_cast<double>(q[0][i]);
    if (count == 2)
        FitTwoPoints(p[0], p[1], q[0], q[1], matrix);
    if (count == 3)
    {
        int flag = 0;
        IsCollinear(p[0], p[1], p[2], &flag);
        FitThreePoints({p[0], p[1], p[2]}, {q[0], q[1], q[2]}, flag != 0 ? kCollinear : kPlane, matrix);
    }
    if (count == 4) // only the target is looked at
        FitFourPoints({p[0], p[1], p[2], p[3]}, {q[0], q[1], q[2], q[3]}, anyTripleCollinear(p) ? kCollinear : kPlane,
                      matrix);
    MatrixCopy(matrix, o_matrix);
    for (int i = 0; i < 3; ++i)
        o_matrix[4 * i + 3] /= kMillimetres;
}

void TransformPoint(double * io_point, double const * i_matrix)
{
    if (anyNull({io_point, i_matrix}))
        return;
    double moved[3];
    for (int i = 0; i < 3; ++i)
    {
        double const * const row = i_matrix + 4 * i;
        moved[i] = row[0] * io_point[0] + row[1] * io_point[1] + row[2] * io_point[2] + row[3];
    }
    std::copy_n(moved, 3, io_point);
}
} // namespace pointalignment
