// Ladder.cpp: detours of the system's own.
//
// Each rung is a series of easier problems that ends at the full one: a soft elastic line, a straight hardening line, a
// stronger floor, outer forces that grow. It begins at the last state that solved one of them, else at the start.

#include "onestep/Ladder.h"

#include "TextOf.h"

namespace voz::onestep
{

using geometry::Vec2;

namespace
{

constexpr double kEasyTolerance = 1.0e-3;      // of the problems on the way
constexpr double kLeastIncrement = 1.0 / 64.0; // of the outer forces

class Climber
{
public:
    Climber(Settings const & i_settings, Newton & io_newton, MembraneSystem & io_system, Monitor & io_monitor,
            std::vector<Vec2> & io_flat)
        : m_settings(i_settings), m_newton(io_newton), m_system(io_system), m_monitor(io_monitor), m_best(io_flat),
          m_passed(io_flat)
    {
    }

    LadderOutcome run()
    {
        bool done = solveFull(Newton::From::Afar);
        if (!done && !m_monitor.stopped())
            remark("no convergence straight from the start; fallback: soft elastic line");
        done = done || climb(1, {{law(0.01, 0.0)}, {law(0.1, 0.0)}});
        done = done || climb(2, {{law(1.0, 1.0)}, {law(1.0, 0.5)}});
        material::LawOptions strong = law(1.0, 0.0);
        strong.kappa = 2.0;
        strong.theta = 0.5;
        done = done || climb(3, {strong});
        done = done || rampForces();
        m_outcome.converged = done;
        m_outcome.stopped = m_monitor.stopped();
        setFull();
        m_outcome.state = m_newton.measure(m_best);
        return m_outcome;
    }

private:
    material::LawOptions law(double i_youngsFactor, double i_lineShare) const
    {
        return {m_settings.kappa, m_settings.theta, i_lineShare, i_youngsFactor};
    }
    void remark(std::string const & i_text) const { m_monitor.log(i_text); }
    void setFull()
    {
        m_system.setLaw(law(1.0, 0.0));
        m_system.setLoadFactor(1.0);
    }

    // One run from the last state that passed; a state that passes takes its place.
    bool solve(double i_tolerance, std::vector<Vec2> & o_flat, Newton::From i_from = Newton::From::Near)
    {
        o_flat = m_passed;
        Newton::Outcome const outcome = m_newton.run(i_tolerance, m_settings.maxSteps, m_monitor, o_flat, i_from);
        m_outcome.steps += outcome.steps;
        m_lastRelative = outcome.state.relative;
        if (outcome.passed)
            m_passed = o_flat;
        return outcome.passed;
    }

    bool solveFull(Newton::From i_from = Newton::From::Near)
    {
        setFull();
        std::vector<Vec2> flat;
        bool const passed = solve(m_settings.tolerance, flat, i_from);
        if (m_bestRelative < 0.0 || m_lastRelative < m_bestRelative)
        {
            m_bestRelative = m_lastRelative;
            m_best = flat;
        }
        return passed;
    }

    bool climb(int i_rung, std::vector<material::LawOptions> const & i_laws)
    {
        if (m_monitor.stopped())
            return false;
        m_outcome.rung = i_rung;
        std::vector<Vec2> flat;
        for (material::LawOptions const & options : i_laws)
        {
            m_system.setLaw(options);
            remark("fallback " + std::to_string(i_rung) + ": easier law");
            if (!solve(kEasyTolerance, flat) || m_monitor.stopped())
                break;
        }
        return !m_monitor.stopped() && solveFull();
    }

    bool rampForces()
    {
        if (m_monitor.stopped())
            return false;
        m_outcome.rung = 4;
        m_system.setLaw(law(1.0, 0.0));
        double reached = 0.0, increment = 0.25;
        std::vector<Vec2> flat;
        while (increment >= kLeastIncrement && !m_monitor.stopped())
        {
            if (reached + increment >= 1.0) // the last increment is halved like any other
            {
                if (solveFull())
                    return true;
                increment *= 0.5;
                continue;
            }
            m_system.setLoadFactor(reached + increment);
            remark(TextOf("fallback 4: outer forces at ", reached + increment));
            if (solve(kEasyTolerance, flat))
                reached += increment;
            else
                increment *= 0.5;
        }
        return !m_monitor.stopped() && solveFull();
    }

    Settings const & m_settings;
    Newton & m_newton;
    MembraneSystem & m_system;
    Monitor & m_monitor;
    std::vector<Vec2> & m_best;
    std::vector<Vec2> m_passed;
    double m_bestRelative = -1.0, m_lastRelative = 0.0;
    LadderOutcome m_outcome;
};

} // namespace

LadderOutcome climbLadder(Settings const & i_settings, Newton & io_newton, MembraneSystem & io_system,
                          Monitor & io_monitor, std::vector<Vec2> & io_flat)
{
    return Climber(i_settings, io_newton, io_system, io_monitor, io_flat).run();
}

} // namespace voz::onestep
