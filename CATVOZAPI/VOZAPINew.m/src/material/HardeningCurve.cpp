// HardeningCurve.cpp: hardening with a floor.
//
// 1. Base s(e): K (e0 + e)^n with e0 = (yield/K)^(1/n), or a monotone cubic through the points of a table
//    (F. N. Fritsch, R. E. Carlson, SIAM J. Numer. Anal. 17 (1980) 238) and a power law beyond the last one.
// 2. Floor: with H = s'/s, d(ln s)/de = max(H, kappa tanh e). Both branches have closed forms, s = c s_base and
//    s = c (cosh e)^kappa, so only the crossings are searched for. The form comes from the limit n = h tanh h of plane
//    strain: J. W. Hutchinson, V. Tvergaard, Int. J. Solids Struct. 17 (1981) 451.
// 3. Elastic line by a smooth minimum of order 4:  q = (E e/s)^4,  S = E (1+q)^(-1/4),
//    Et = S/(1+q) + S e q/(1+q) s'/s.  S is not divided by e, so the origin needs no care unless s(0) = 0.

#include "material/HardeningCurve.h"

#include <algorithm>
#include <cmath>

namespace voz::material
{

namespace
{

constexpr double kLeastTailExponent = 0.01;
constexpr double kNoStressStrain = 1.0e-9; // below it a curve that starts at zero stress is the elastic line
constexpr double kLeastNecking = 0.02, kGreatestNecking = 0.5;
constexpr int kFloorScan = 4000; // graded intervals searched for crossings

// Eight-point Gauss-Legendre rule on [-1, 1], the positive half.
constexpr double kGaussPoint[4] = {0.18343464249564980, 0.52553240991632899, 0.79666647741362674, 0.96028985649753623};
constexpr double kGaussWeight[4] = {0.36268378337836198, 0.31370664587788729, 0.22238103445337447, 0.10122853629037626};

} // namespace

HardeningCurve::HardeningCurve(onestep::MaterialLaw const & i_law, LawOptions const & i_options)
    : m_isTable(!i_law.table.empty()), m_strength(i_law.kValue), m_exponent(i_law.nValue), m_kappa(i_options.kappa),
      m_youngsModulus(i_law.youngsModulus * i_options.youngsFactor)
{
    if (m_isTable)
        layTable(i_law);
    else if (i_law.yield > 0.0 && i_law.nValue > 0.0)
        m_prestrain = std::pow(i_law.yield / i_law.kValue, 1.0 / i_law.nValue);
    m_neckingStrain = findNeckingStrain(); // of the user's curve, before a line is blended in
    m_lineShare = i_options.lineShare;
    m_lineModulus = m_isTable ? tableValue(1.0).stress : m_strength;
    layFloor();
}

void HardeningCurve::layTable(onestep::MaterialLaw const & i_law)
{
    std::size_t const count = i_law.table.size();
    for (auto const & point : i_law.table)
    {
        m_strain.push_back(point[0]);
        m_stress.push_back(point[1]);
    }
    m_slope.assign(count, 0.0);
    std::vector<double> secant(count, 0.0);
    for (std::size_t i = 0; i + 1 < count; ++i)
        secant[i] = (m_stress[i + 1] - m_stress[i]) / (m_strain[i + 1] - m_strain[i]);
    if (count > 1)
    {
        m_slope.front() = secant[0];
        m_slope.back() = secant[count - 2];
    }
    for (std::size_t i = 1; i + 1 < count; ++i)
        m_slope[i] = secant[i - 1] * secant[i] > 0.0 ? 0.5 * (secant[i - 1] + secant[i]) : 0.0;
    for (std::size_t i = 0; i + 1 < count; ++i)
    {
        if (secant[i] == 0.0)
        {
            m_slope[i] = m_slope[i + 1] = 0.0;
            continue;
        }
        double const a = m_slope[i] / secant[i], b = m_slope[i + 1] / secant[i];
        double const size = std::hypot(a, b);
        if (size > 3.0) // outside the circle of radius 3 the cubic may overshoot
        {
            m_slope[i] = 3.0 * a / size * secant[i];
            m_slope[i + 1] = 3.0 * b / size * secant[i];
        }
    }
    double tail = 0.0;
    if (count > 1 && m_strain[count - 2] > 0.0 && m_stress[count - 2] > 0.0)
        tail =
            std::log(m_stress[count - 1] / m_stress[count - 2]) / std::log(m_strain[count - 1] / m_strain[count - 2]);
    else if (count > 1) // the segment leaves the origin: its logarithmic slope at the last point
        tail = secant[count - 2] * m_strain[count - 1] / m_stress[count - 1];
    m_tailExponent = std::max(kLeastTailExponent, tail);
}

HardeningCurve::Plastic HardeningCurve::tableValue(double i_strain) const
{
    if (i_strain <= m_strain.front())
        return {m_stress.front(), 0.0};
    if (i_strain >= m_strain.back())
    {
        double const stress = m_stress.back() * std::pow(i_strain / m_strain.back(), m_tailExponent);
        return {stress, m_tailExponent * stress / i_strain};
    }
    auto const upper = std::upper_bound(m_strain.begin(), m_strain.end(), i_strain);
    auto const i = static_cast<std::size_t>(upper - m_strain.begin()) - 1;
    double const width = m_strain[i + 1] - m_strain[i];
    double const t = (i_strain - m_strain[i]) / width;
    double const rise = m_stress[i + 1] - m_stress[i];
    // s = s_i + t (w m_i + t (c2 + t c3)): the cubic of Hermite in Horner's form
    double const c2 = 3.0 * rise - width * (2.0 * m_slope[i] + m_slope[i + 1]);
    double const c3 = width * (m_slope[i] + m_slope[i + 1]) - 2.0 * rise;
    return {m_stress[i] + t * (width * m_slope[i] + t * (c2 + t * c3)),
            m_slope[i] + t * (2.0 * c2 + t * 3.0 * c3) / width};
}

HardeningCurve::Plastic HardeningCurve::base(double i_strain) const
{
    Plastic value{};
    if (m_isTable)
        value = tableValue(i_strain);
    else
    {
        double const shifted = m_prestrain + i_strain;
        value.stress = m_strength * std::pow(shifted, m_exponent);
        value.slope = m_exponent > 0.0 ? m_exponent * value.stress / shifted : 0.0;
    }
    if (m_lineShare > 0.0)
    {
        value.stress = (1.0 - m_lineShare) * value.stress + m_lineShare * m_lineModulus * i_strain;
        value.slope = (1.0 - m_lineShare) * value.slope + m_lineShare * m_lineModulus;
    }
    return value;
}

double HardeningCurve::logSlope(double i_strain) const
{
    Plastic const value = base(i_strain);
    return value.slope / value.stress;
}

double HardeningCurve::crossing(double i_low, double i_high) const
{
    auto const excess = [this](double e) { return logSlope(e) - m_kappa * std::tanh(e); };
    bool const lowIsAbove = excess(i_low) > 0.0;
    for (int i = 0; i < 60; ++i)
    {
        double const middle = 0.5 * (i_low + i_high);
        ((excess(middle) > 0.0) == lowIsAbove ? i_low : i_high) = middle;
    }
    return 0.5 * (i_low + i_high);
}

void HardeningCurve::layFloor()
{
    m_spans.assign(1, {0.0, false, 1.0});
    if (!(m_kappa > 0.0))
        return;
    double const last = std::max(3.0, m_isTable ? 2.0 * m_strain.back() : 0.0);
    double before = 1.0e-8;
    for (int i = 1; i <= kFloorScan; ++i)
    {
        double const share = static_cast<double>(i) / kFloorScan;
        double const here = last * share * share * share;
        if (here <= before)
            continue;
        bool const floorHolds = !(logSlope(here) > m_kappa * std::tanh(here));
        if (floorHolds != m_spans.back().isFloor)
        {
            double const at = crossing(before, here);
            double const stress = plastic(at).stress;
            double const unscaled = floorHolds ? std::pow(std::cosh(at), m_kappa) : base(at).stress;
            m_spans.push_back({at, floorHolds, stress / unscaled});
        }
        before = here;
    }
}

HardeningCurve::Plastic HardeningCurve::plastic(double i_strain) const
{
    std::size_t i = m_spans.size() - 1;
    while (i > 0 && i_strain < m_spans[i].start)
        --i;
    Span const & span = m_spans[i];
    if (span.isFloor)
    {
        double const stress = span.factor * std::pow(std::cosh(i_strain), m_kappa);
        return {stress, m_kappa * std::tanh(i_strain) * stress};
    }
    Plastic const value = base(i_strain);
    return {span.factor * value.stress, span.factor * value.slope};
}

double HardeningCurve::floorStart() const
{
    for (Span const & span : m_spans)
        if (span.isFloor)
            return span.start;
    return -1.0;
}

HardeningCurve::Moduli HardeningCurve::moduli(double i_strain, double i_before) const
{
    double const young = m_youngsModulus;
    Plastic const value = plastic(i_before + i_strain);
    if (i_strain < kNoStressStrain && !(value.stress > young * kNoStressStrain))
        return {young, young};
    double const ratio = young * i_strain / value.stress;
    double const q = (ratio * ratio) * (ratio * ratio);
    double const secant = young / std::sqrt(std::sqrt(1.0 + q));
    double const plasticShare = q / (1.0 + q);
    return {secant, secant / (1.0 + q) + secant * i_strain * plasticShare * value.slope / value.stress};
}

double HardeningCurve::work(double i_strain) const
{
    // The knee at the end of the elastic line is resolved by intervals that grow from it geometrically.
    double const knee = 0.25 * plastic(0.0).stress / m_youngsModulus;
    double sum = 0.0, low = 0.0;
    double high = std::min(i_strain, std::max(knee, 1.0e-5));
    while (low < i_strain)
    {
        double const middle = 0.5 * (low + high), half = 0.5 * (high - low);
        for (int g = 0; g < 4; ++g)
            sum += half * kGaussWeight[g] *
                   (stress(middle - half * kGaussPoint[g]) + stress(middle + half * kGaussPoint[g]));
        low = high;
        high = std::min(i_strain, 2.0 * high);
    }
    return sum;
}

double HardeningCurve::findNeckingStrain() const
{
    if (!m_isTable)
        return m_exponent;
    if (!(logSlope(kLeastNecking) > 1.0))
        return kLeastNecking;
    double low = kLeastNecking, high = kLeastNecking;
    while (high < kGreatestNecking && logSlope(high) > 1.0)
    {
        low = high;
        high += 0.001;
    }
    for (int i = 0; i < 60 && high < kGreatestNecking; ++i)
    {
        double const middle = 0.5 * (low + high);
        (logSlope(middle) > 1.0 ? low : high) = middle;
    }
    return std::min(high, kGreatestNecking);
}

} // namespace voz::material
