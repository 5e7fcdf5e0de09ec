// QuadrilateralAngles.cpp: the tensor of the strains at the middle of a quadrilateral, from its places in the flat.
//
// Frame of the middle: n at right angles to both diagonals, e1 along side 1-2 as that lies in the plane, e2 = n x e1.
// With N_k the bilinear functions of the corners, dN_k their gradients in that frame, X_k the corners in the flat and
// M_k the normals of the formed surface there:
//
//     G_a = sum X_k dN_ka,  C_ab = G_a . G_b,  K_ab = sym sum (e_a . M_k) dN_kb
//     strain of the middle = -ln(C) / 2;  of the layer at z = that + ln(1 + z K)
//
// the same kinematics as the kernel's, which has four points where this has one. Major and minor strain stay those of
// the drivers: only the direction is taken from here.

#include "QuadrilateralAngles.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{
constexpr double kPi = 3.14159265358979323846;
constexpr double kGreatestBend = 0.95;                // of z K, as in the kernel
constexpr double kNoArea = 1e-12;                     // of the flat, squared, over the fourth power of its extent
constexpr double kSameStrain = 1e-5;                  // log strains that differ by less have no direction
constexpr double kSharpestFold = 0.5;                 // cosine: beyond it the neighbours are no part of a bend
constexpr double kXi[4] = {-0.25, 0.25, 0.25, -0.25}; // derivatives of the N_k at the middle
constexpr double kEta[4] = {-0.25, -0.25, 0.25, 0.25};

Point3 minus(Point3 const & a, Point3 const & b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

void add(Point3 & io_sum, double factor, Point3 const & a)
{
    for (std::size_t c = 0; c < 3; ++c)
        io_sum[c] += factor * a[c];
}

double dot(Point3 const & a, Point3 const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Point3 cross(Point3 const & a, Point3 const & b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Point3 unit(Point3 const & a) // zero stays zero
{
    double const size = std::hypot(a[0], a[1], a[2]);
    return size > 0.0 ? Point3{a[0] / size, a[1] / size, a[2] / size} : a;
}

struct Tensor
{
    double xx = 0.0, yy = 0.0, xy = 0.0;
};

// The tensor with the same axes and the function's values.
template <class Function>
Tensor ofPrincipal(Tensor const & t, Function function)
{
    double const half = 0.5 * (t.xx - t.yy);
    double const mean = 0.5 * (t.xx + t.yy);
    double const radius = std::hypot(half, t.xy);
    double const larger = function(mean + radius);
    double const smaller = function(mean - radius);
    double const newMean = 0.5 * (larger + smaller);
    double const share = radius > 0.0 ? 0.5 * (larger - smaller) / radius : 0.0;
    return {newMean + share * half, newMean - share * half, share * t.xy};
}

void setAngle(Tensor const & strain, ElementOutcome & io_element)
{
    double const difference = strain.xx - strain.yy;
    if (!(std::hypot(difference, 2.0 * strain.xy) > kSameStrain)) // NaN too
        return;
    double const angle = 0.5 * std::atan2(2.0 * strain.xy, difference);
    io_element.angle = angle < 0.0 ? angle + kPi : angle;
}

// Frame and gradients at the middle.
struct Middle
{
    Point3 e1{}, e2{};
    double gradient[4][2] = {};
    bool isSound = false;

    explicit Middle(std::array<Point3, 4> const & corners)
    {
        Point3 g1{};
        Point3 g2{};
        for (std::size_t k = 0; k < 4; ++k)
        {
            add(g1, kXi[k], corners[k]);
            add(g2, kEta[k], corners[k]);
        }
        Point3 const normal = unit(cross(g1, g2));
        Point3 side = minus(corners[1], corners[0]);
        add(side, -dot(side, normal), normal);
        e1 = unit(side);
        e2 = cross(normal, e1);
        double const j11 = dot(g1, e1), j12 = dot(g1, e2), j21 = dot(g2, e1), j22 = dot(g2, e2);
        double const det = j11 * j22 - j12 * j21;
        isSound = det > 0.0;
        if (!isSound)
            return;
        for (std::size_t k = 0; k < 4; ++k)
        {
            gradient[k][0] = (j22 * kXi[k] - j12 * kEta[k]) / det;
            gradient[k][1] = (j11 * kEta[k] - j21 * kXi[k]) / det;
        }
    }
};

class Quadrilaterals
{
public:
    explicit Quadrilaterals(Outcome const & i_outcome) : mOutcome(i_outcome), mMesh(i_outcome.part)
    {
        auto const count = static_cast<std::size_t>(mMesh.numElem());
        mNormals.reserve(count);
        mFirst.assign(static_cast<std::size_t>(mMesh.numNode()) + 2, 0);
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            mNormals.push_back(normalOf(e));
            for (int k = 0; k < cornersOf(e); ++k)
                ++mFirst[node(e, k) + 1];
        }
        for (std::size_t n = 1; n < mFirst.size(); ++n)
            mFirst[n] += mFirst[n - 1];
        mElements.resize(mFirst.back());
        std::vector<std::size_t> next(mFirst);
        for (int e = 1; e <= mMesh.numElem(); ++e)
            for (int k = 0; k < cornersOf(e); ++k)
                mElements[next[node(e, k)]++] = static_cast<std::size_t>(e - 1);
    }

    // Strains of the middle and of the layers at z = t/2 and -t/2; false for a quadrilateral turned over or without
    // area, formed or flat.
    bool strains(int e, Tensor & o_middle, Tensor & o_top, Tensor & o_bottom) const
    {
        std::array<Point3, 4> corners;
        for (int k = 0; k < 4; ++k)
            corners[static_cast<std::size_t>(k)] = place(e, k);
        Middle const middle(corners);
        if (!middle.isSound)
            return false;
        Point3 g[2] = {};
        double bend[2][2] = {};
        for (std::size_t k = 0; k < 4; ++k)
        {
            Point3 const & flat = mOutcome.nodes[node(e, static_cast<int>(k)) - 1].flat;
            Point3 const normal = cornerNormal(e, static_cast<int>(k));
            for (std::size_t a = 0; a < 2; ++a)
            {
                add(g[a], middle.gradient[k][a], flat);
                bend[0][a] += dot(middle.e1, normal) * middle.gradient[k][a];
                bend[1][a] += dot(middle.e2, normal) * middle.gradient[k][a];
            }
        }
        Tensor const c = {dot(g[0], g[0]), dot(g[1], g[1]), dot(g[0], g[1])};
        if (!(c.xx * c.yy - c.xy * c.xy > kNoArea * (c.xx + c.yy) * (c.xx + c.yy)))
            return false;
        o_middle = ofPrincipal(c, [](double value) { return -0.5 * std::log(value); });
        double const z = 0.5 * mOutcome.elements[static_cast<std::size_t>(e - 1)].thickness;
        Tensor const curvature = {bend[0][0], bend[1][1], 0.5 * (bend[0][1] + bend[1][0])};
        o_top = layer(o_middle, curvature, z);
        o_bottom = layer(o_middle, curvature, -z);
        return true;
    }

private:
    static Tensor layer(Tensor const & middle, Tensor const & curvature, double z)
    {
        Tensor const bent = ofPrincipal(curvature, [z](double k)
                                        { return std::log1p(std::clamp(z * k, -kGreatestBend, kGreatestBend)); });
        return {middle.xx + bent.xx, middle.yy + bent.yy, middle.xy + bent.xy};
    }

    int cornersOf(int e) const { return mMesh.isTriangle(e) != 0 ? 3 : 4; }
    std::size_t node(int e, int k) const { return static_cast<std::size_t>(mMesh.elem(e, k)); }

    Point3 place(int e, int k) const
    {
        double const * const row = mMesh.GetNodeData()[node(e, k)];
        return {row[0], row[1], row[2]};
    }

    Point3 normalOf(int e) const // as long as twice the area
    {
        return cornersOf(e) == 3 ? cross(minus(place(e, 1), place(e, 0)), minus(place(e, 2), place(e, 0)))
                                 : cross(minus(place(e, 2), place(e, 0)), minus(place(e, 3), place(e, 1)));
    }

    // Of the elements at the corner that go on smoothly from this one, on its side.
    Point3 cornerNormal(int e, int k) const
    {
        Point3 const own = unit(mNormals[static_cast<std::size_t>(e - 1)]);
        Point3 sum{};
        std::size_t const n = node(e, k);
        for (std::size_t i = mFirst[n]; i < mFirst[n + 1]; ++i)
        {
            Point3 const & other = mNormals[mElements[i]];
            double const along = dot(unit(other), own);
            if (std::abs(along) >= kSharpestFold)
                add(sum, along > 0.0 ? 1.0 : -1.0, other);
        }
        return unit(sum);
    }

    Outcome const & mOutcome;
    VOZCatMesh const & mMesh;
    std::vector<Point3> mNormals;       // per element
    std::vector<std::size_t> mFirst;    // of node n (from 1), in the next
    std::vector<std::size_t> mElements; // 0-based
};
} // namespace

void FillQuadrilateralAngles(Outcome & io_outcome)
{
    Quadrilaterals const quadrilaterals(io_outcome);
    for (int e = 1; e <= io_outcome.part.numElem(); ++e)
    {
        Tensor middle, top, bottom;
        if (io_outcome.part.isTriangle(e) != 0 || !quadrilaterals.strains(e, middle, top, bottom))
            continue;
        auto const i = static_cast<std::size_t>(e - 1);
        setAngle(middle, io_outcome.elements[i]);
        if (!io_outcome.top.empty())
            setAngle(top, io_outcome.top[i]);
        if (!io_outcome.bottom.empty())
            setAngle(bottom, io_outcome.bottom[i]);
    }
}

} // namespace voz::workbench
