// LevelSearch.cpp: bounds, bracket, stop.

#include "autostrain/LevelSearch.h"

#include <algorithm>
#include <cmath>

namespace voz::autostrain
{

namespace
{

constexpr double kTolerance = 1.0e-4; // of a log strain
constexpr int kRounds = 20;
constexpr double kLeastChange = 1.0e-6; // of a level: a smaller step leads nowhere
constexpr double kNothing = 1.0e-9;     // of the scale: a level below it is rounding
constexpr double kSingular = 1.0e-10;   // of the squared slopes: a determinant below it has no answer

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

LevelSearch::LevelSearch(int i_count, Pair i_wanted, double i_scale)
    : m_count(i_count), m_wanted(i_wanted), m_scale(i_scale)
{
}

double LevelSearch::error(Sample const & i_sample, int i) const
{
    return i_sample.value[at(i)] - m_wanted[at(i)];
}

double LevelSearch::size(Sample const & i_sample) const
{
    double greatest = std::abs(error(i_sample, 0));
    if (m_count == 2)
        greatest = std::max(greatest, std::abs(error(i_sample, 1)));
    return greatest;
}

double LevelSearch::merit(Sample const & i_sample) const
{
    return m_count == 1 ? size(i_sample) : std::hypot(error(i_sample, 0), error(i_sample, 1));
}

bool LevelSearch::end(std::string i_reason)
{
    m_reason = std::move(i_reason);
    return false;
}

bool LevelSearch::tryLevel(Pair const & i_level)
{
    if (m_rounds == kRounds)
        return end("the wanted strain was not met in " + std::to_string(kRounds) + " rounds");
    double change = 0.0;
    for (int i = 0; i < m_count; ++i)
        change =
            std::max(change, std::abs(i_level[at(i)] - m_last.level[at(i)]) / std::max(m_last.level[at(i)], m_scale));
    if (!(change > kLeastChange))
        return end("no restraint comes nearer to the wanted strain");
    ++m_rounds;
    m_next = i_level;
    return true;
}

double LevelSearch::bounded(double i_from, double i_to) const
{
    double const high = std::max(2.0 * i_from, m_scale);
    return std::clamp(i_to, i_to > 0.0 ? 0.5 * i_from : 0.0, high);
}

bool LevelSearch::accept(Sample const & i_sample)
{
    bool const better = !m_any || merit(i_sample) < merit(m_best);
    if (better)
        m_best = i_sample;
    m_any = true;
    m_last = i_sample;
    m_met = size(m_best) <= kTolerance;
    if (m_met)
        return false;
    bool const tooLittle = error(i_sample, 0) < 0.0 || (m_count == 2 && error(i_sample, 1) < 0.0);
    if (i_sample.torn && tooLittle)
        return end("the sheet would tear before the wanted strain is reached");
    if (m_count == 1)
        return stepOne(i_sample);
    if (better)
        return stepTwo(i_sample);
    return tryLevel({0.5 * (m_best.level[0] + i_sample.level[0]), 0.5 * (m_best.level[1] + i_sample.level[1])});
}

bool LevelSearch::reject()
{
    if (m_count == 1 && m_next[0] > m_last.level[0])
        m_high = m_next[0];
    Pair level = m_last.level;
    double gap = 0.0;
    for (int i = 0; i < m_count; ++i)
    {
        gap = std::max(gap, std::abs(m_next[at(i)] - level[at(i)]) / std::max(level[at(i)], m_scale));
        level[at(i)] = 0.5 * (level[at(i)] + m_next[at(i)]);
    }
    if (gap < 1.0e-3)
        return end("no equilibrium was found beyond the restraint that was reached");
    return tryLevel(level);
}

bool LevelSearch::stepOne(Sample const & i_sample)
{
    double const s = i_sample.level[0], e = error(i_sample, 0);
    if (e > 0.0 && s == 0.0)
        return end("the strain is above the wanted one without any restraint");
    (e < 0.0 ? m_low : m_high) = s;
    double const slope = i_sample.slope[0][0];
    bool const steers = i_sample.hasSlope && slope > 0.0 && std::isfinite(e / slope);
    double next = bounded(s, steers ? s - e / slope : e < 0.0 ? 2.0 * s + m_scale : 0.5 * s);
    bool const left = (m_low >= 0.0 && next <= m_low) || (m_high >= 0.0 && next >= m_high);
    if (left && m_low >= 0.0 && m_high >= 0.0)
        next = 0.5 * (m_low + m_high);
    return tryLevel({next, 0.0});
}

bool LevelSearch::stepTwo(Sample const & i_sample)
{
    Pair const e{error(i_sample, 0), error(i_sample, 1)};
    Pair const s = i_sample.level;
    Pair next = s;
    auto const & k = i_sample.slope;
    double const determinant = k[0][0] * k[1][1] - k[0][1] * k[1][0];
    double const squares = k[0][0] * k[0][0] + k[0][1] * k[0][1] + k[1][0] * k[1][0] + k[1][1] * k[1][1];
    bool const steers = i_sample.hasSlope && std::isfinite(squares) && squares > 0.0;
    Pair step{};
    for (int i = 0; i < 2; ++i)
        step[at(i)] = e[at(i)] < 0.0 ? s[at(i)] + m_scale : -0.5 * s[at(i)]; // where nothing better is known
    if (steers && std::abs(determinant) > kSingular * squares)
        step = {-(k[1][1] * e[0] - k[0][1] * e[1]) / determinant, -(k[0][0] * e[1] - k[1][0] * e[0]) / determinant};
    for (std::size_t i = 0; i < 2; ++i)
        if (s[i] == 0.0 && step[i] < 0.0) // stays; the other one alone, in the least squares
        {
            std::size_t const j = 1 - i;
            double const own = k[0][j] * k[0][j] + k[1][j] * k[1][j];
            step[i] = 0.0;
            step[j] = steers && own > 0.0 ? -(k[0][j] * e[0] + k[1][j] * e[1]) / own : 0.0;
        }
    // one factor for both, or the step would turn away from where it leads
    double factor = 1.0;
    for (std::size_t i = 0; i < 2; ++i)
    {
        if (step[i] > 0.0)
            factor = std::min(factor, std::max(s[i], m_scale - s[i]) / step[i]);
        else if (step[i] < 0.0)
            factor = std::min(factor, (s[i] + step[i] < 0.0 ? 1.0 : 0.5) * s[i] / -step[i]);
    }
    for (std::size_t i = 0; i < 2; ++i)
    {
        next[i] = s[i] + factor * step[i];
        if (next[i] < kNothing * m_scale)
            next[i] = 0.0;
    }
    return tryLevel(next);
}

} // namespace voz::autostrain
