// AxisymmetricReference.h: the axisymmetric membrane as an ordinary differential equation, integrated along the
// meridian. Shares no code with the solver: the reference that the finite elements must tend to.
//
// Meridian r(s), z(s), slope a(s) to the horizontal; h1 = -ln(dR/ds) along it, h2 = ln(r/R) round it;
//
//     d(r N1)/ds = N2 dr/ds + mu r (N1 da/ds + N2 sin(a)/r)
//
// with the forces per length N1, N2 of the point law below. The pole has h1 = h2; shooting on that strain meets the
// rim.

#ifndef AXISYMMETRICREFERENCE_H
#define AXISYMMETRICREFERENCE_H

#include <array>
#include <cmath>
#include <functional>
#include <stdexcept>
#include <vector>

namespace onesteptest
{

// A number with its derivatives to h1 and h2.
struct Dual
{
    double v = 0.0, d1 = 0.0, d2 = 0.0;

    Dual() = default;
    Dual(double value) : v(value) {}
    Dual(double value, double first, double second) : v(value), d1(first), d2(second) {}

    Dual chain(double f, double slope) const { return {f, slope * d1, slope * d2}; }
};

inline Dual operator+(Dual a, Dual b)
{
    return {a.v + b.v, a.d1 + b.d1, a.d2 + b.d2};
}
inline Dual operator-(Dual a, Dual b)
{
    return {a.v - b.v, a.d1 - b.d1, a.d2 - b.d2};
}
inline Dual operator*(Dual a, Dual b)
{
    return {a.v * b.v, a.d1 * b.v + a.v * b.d1, a.d2 * b.v + a.v * b.d2};
}
inline Dual operator/(Dual a, Dual b)
{
    double const q = a.v / b.v;
    return {q, (a.d1 - q * b.d1) / b.v, (a.d2 - q * b.d2) / b.v};
}
inline Dual exp(Dual a)
{
    return a.chain(std::exp(a.v), std::exp(a.v));
}
inline Dual log(Dual a)
{
    return a.chain(std::log(a.v), 1.0 / a.v);
}
inline Dual sqrt(Dual a)
{
    return a.chain(std::sqrt(a.v), 0.5 / std::sqrt(a.v));
}
inline Dual cosh(Dual a)
{
    return a.chain(std::cosh(a.v), std::sinh(a.v));
}
inline Dual pow(Dual a, double p)
{
    return a.chain(std::pow(a.v, p), p * std::pow(a.v, p - 1.0));
}

// The point law: Swift curve with hardening floor, elastic line, moderated thickness. N, mm, MPa.
struct PointLaw
{
    double k = 565.32, e0 = 0.007117, n = 0.2589, r = 1.79, thickness = 0.78, young = 210000.0;
    double kappa = 1.2, theta = 0.9;

    double floorBegins() const // where n / (e0 + e) falls below kappa tanh(e)
    {
        double low = 0.0;
        double high = 5.0;
        for (int i = 0; i < 200; ++i)
        {
            double const e = 0.5 * (low + high);
            (n / (e0 + e) > kappa * std::tanh(e) ? low : high) = e;
        }
        return low;
    }

    template <class Number>
    Number curve(Number e, double begins) const
    {
        using std::cosh;
        using std::pow;
        if (value(e) <= begins)
            return Number(k) * pow(Number(e0) + e, n);
        return Number(k * std::pow(e0 + begins, n)) * pow(cosh(e) / Number(std::cosh(begins)), kappa);
    }

    // Forces per length, and whatever the number type carries.
    template <class Number>
    std::array<Number, 2> forces(Number h1, Number h2, double begins) const
    {
        using std::exp;
        using std::log;
        using std::pow;
        using std::sqrt;
        double const rho = r / (1.0 + r);
        double const k2 = (1.0 + r) * (1.0 + r) / (1.0 + 2.0 * r);
        Number const e = sqrt(Number(k2) * (h1 * h1 + h2 * h2 + Number(2.0 * rho) * h1 * h2));
        Number const q = pow(Number(young) * e / curve(e, begins), 4.0);
        Number const secant = Number(young) * pow(Number(1.0) + q, -0.25);
        double const ea = theta * n;
        Number const share = value(e) <= ea ? Number(1.0) : Number(ea) / e * (Number(1.0) + log(e / Number(ea)));
        Number const t = Number(thickness) * exp(Number(-1.0) * share * (h1 + h2));
        return {t * secant * Number(k2) * (h1 + Number(rho) * h2), t * secant * Number(k2) * (h2 + Number(rho) * h1)};
    }

    static double value(double e) { return e; }
    static double value(Dual const & e) { return e.v; }
};

// A smooth piece of a meridian.
struct MeridianPiece
{
    double length, curvature, slope0; // curvature: change of slope per length
};

struct Meridian
{
    std::vector<MeridianPiece> pieces;

    double length() const
    {
        double sum = 0.0;
        for (MeridianPiece const & piece : pieces)
            sum += piece.length;
        return sum;
    }
};

inline Meridian cupMeridian(double bottom, double punch, double wall, double die, double flange)
{
    double const quarter = 1.5707963267948966;
    return {{{bottom, 0.0, 0.0},
             {punch * quarter, 1.0 / punch, 0.0},
             {wall, 0.0, quarter},
             {die * quarter, -1.0 / die, quarter},
             {flange, 0.0, 0.0}}};
}

inline Meridian domeMeridianOf(double radius, double halfAngle)
{
    return {{{radius * halfAngle, -1.0 / radius, 0.0}}};
}

struct Station
{
    double s, r, slope, R, h1, h2, n1, n2;

    double h3() const { return -(h1 + h2); }
};

class AxisymmetricSolution
{
public:
    enum class Rim
    {
        Force, // N1 = value, N/mm
        Fixed  // R = r
    };

    AxisymmetricSolution(Meridian meridian, PointLaw law, double friction, Rim rim, double value)
        : mMeridian(std::move(meridian)), mLaw(law), mFriction(friction), mBegins(law.floorBegins())
    {
        double low = 1e-7; // pole strains: the rim's force, and its radius's excess, grow with it
        double high = 0.9;
        for (int i = 0; i < 80 && high - low > 1e-13; ++i)
        {
            double const pole = 0.5 * (low + high);
            bool const finite = integrate(pole, false);
            Station const & end = mStations.back();
            bool const tooHigh = !finite || (rim == Rim::Force ? end.n1 > value : end.R < end.r);
            (tooHigh ? high : low) = pole;
        }
        if (!integrate(low, true))
            throw std::runtime_error("the reference has no solution");
        mPole = low;
    }

    double pole() const { return mPole; }
    double blankRadius() const { return mStations.back().R; }
    Station const & rim() const { return mStations.back(); }
    std::vector<Station> const & stations() const { return mStations; }

    // Interpolated between the dense stations of the integration (cubic in R, linear in strains: steps are tiny).
    Station at(double s) const
    {
        std::size_t i = 1;
        while (i + 1 < mStations.size() && mStations[i].s < s)
            ++i;
        Station const & a = mStations[i - 1];
        Station const & b = mStations[i];
        double const w = (s - a.s) / (b.s - a.s);
        auto const mix = [w](double p, double q) { return p + w * (q - p); };
        double const h = b.s - a.s;
        double const hermite = (1.0 + 2.0 * w) * (1.0 - w) * (1.0 - w) * a.R + w * w * (3.0 - 2.0 * w) * b.R +
                               h * w * (1.0 - w) * (1.0 - w) * std::exp(-a.h1) -
                               h * w * w * (1.0 - w) * std::exp(-b.h1);
        return {s,
                mix(a.r, b.r),
                mix(a.slope, b.slope),
                hermite,
                mix(a.h1, b.h1),
                mix(a.h2, b.h2),
                mix(a.n1, b.n1),
                mix(a.n2, b.n2)};
    }

private:
    struct State
    {
        double R, h1;
    };

    struct Place
    {
        double r, slope, curvature;
    };

    // The place on a piece that begins at radius r0.
    static Place placeOn(MeridianPiece const & piece, double r0, double s)
    {
        double const slope = piece.slope0 + piece.curvature * s;
        double const r = piece.curvature == 0.0 ? r0 + s * std::cos(piece.slope0)
                                                : r0 + (std::sin(slope) - std::sin(piece.slope0)) / piece.curvature;
        return {r, slope, piece.curvature};
    }

    State rate(Place const & p, State const & y) const
    {
        double const h2 = std::log(p.r / y.R);
        auto const [n1, n2] = mLaw.forces(Dual(y.h1, 1.0, 0.0), Dual(h2, 0.0, 1.0), mBegins);
        double const dr = std::cos(p.slope);
        double const dR = std::exp(-y.h1);
        double const dh2 = dr / p.r - dR / y.R;
        double const dn1 = (n2.v - n1.v) * dr / p.r + mFriction * (n1.v * p.curvature + n2.v * std::sin(p.slope) / p.r);
        return {dR, (dn1 - n1.d2 * dh2) / n1.d1};
    }

    Station stationOf(double s, Place const & p, State const & y) const
    {
        double const h2 = std::log(p.r / y.R);
        auto const n = mLaw.forces(y.h1, h2, mBegins);
        return {s, p.r, p.slope, y.R, y.h1, h2, n[0], n[1]};
    }

    // Classical Runge-Kutta of fourth order; on the first piece the steps grow from the pole.
    bool integrate(double pole, bool keep)
    {
        mStations.clear();
        double s0 = 0.0;
        double r0 = 0.0;
        State y{0.0, pole};
        for (std::size_t i = 0; i < mMeridian.pieces.size(); ++i)
        {
            MeridianPiece const & piece = mMeridian.pieces[i];
            double s = 0.0;
            if (i == 0) // near the pole the strains are equal up to the square of the distance
            {
                s = 1e-4 * piece.length;
                y = {placeOn(piece, 0.0, s).r * std::exp(-pole), pole};
                mStations.push_back(stationOf(s, placeOn(piece, 0.0, s), y));
            }
            double const coarse = piece.length / (keep ? 3000.0 : 1000.0);
            while (s < piece.length * (1.0 - 1e-13))
            {
                double const h = std::fmin(std::fmin(coarse, i == 0 ? 0.05 * s : coarse), piece.length - s);
                State const k1 = rate(placeOn(piece, r0, s), y);
                Place const middle = placeOn(piece, r0, s + 0.5 * h);
                State const k2 = rate(middle, {y.R + 0.5 * h * k1.R, y.h1 + 0.5 * h * k1.h1});
                State const k3 = rate(middle, {y.R + 0.5 * h * k2.R, y.h1 + 0.5 * h * k2.h1});
                Place const end = placeOn(piece, r0, s + h);
                State const k4 = rate(end, {y.R + h * k3.R, y.h1 + h * k3.h1});
                y.R += h / 6.0 * (k1.R + 2.0 * k2.R + 2.0 * k3.R + k4.R);
                y.h1 += h / 6.0 * (k1.h1 + 2.0 * k2.h1 + 2.0 * k3.h1 + k4.h1);
                s += h;
                if (!std::isfinite(y.R) || !std::isfinite(y.h1) || y.R <= 0.0 || std::fabs(y.h1) > 5.0)
                    return false;
                if (keep)
                    mStations.push_back(stationOf(s0 + s, end, y));
            }
            r0 = placeOn(piece, r0, piece.length).r;
            s0 += piece.length;
            if (!keep)
                mStations.push_back(stationOf(s0, {r0, piece.slope0 + piece.curvature * piece.length, 0.0}, y));
        }
        return true;
    }

    Meridian mMeridian;
    PointLaw mLaw;
    double mFriction;
    double mBegins;
    double mPole = 0.0;
    std::vector<Station> mStations;
};

} // namespace onesteptest

#endif
