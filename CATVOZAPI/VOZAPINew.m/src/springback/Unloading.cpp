// Unloading.cpp: load steps and Newton's method.
//
// The residual of a thin shell rises before it falls (the turn of an element stretches it at first), so that it is no
// measure for a line search. A load step has failed when the residual has not come down in a row of steps, when a
// number is not finite or when the matrix is singular; it is then halved, from the last balance.

#include "springback/Unloading.h"

#include "TextOf.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace voz::springback
{

namespace
{

constexpr double kAcceptable = 1.0e-5; // residual at which a shape is still given, with a warning
constexpr double kRounding = 1.0e-9;   // of a load step: no step of its own for what ten tenths leave of one
constexpr int kPatience = 8;           // steps without a lower residual
constexpr double kHopeless = 1.0e8;    // residual at which a load step is given up

using Clock = std::chrono::steady_clock;

double since(Clock::time_point i_begin)
{
    return std::chrono::duration<double>(Clock::now() - i_begin).count();
}

class Unloader
{
public:
    Unloader(SheetSystem & io_system, Settings const & i_settings, onestep::Monitor & io_monitor, SheetState & io_state)
        : m_system(io_system), m_settings(i_settings), m_monitor(io_monitor), m_state(io_state)
    {
    }

    UnloadingOutcome run()
    {
        auto const begin = Clock::now();
        if (m_system.referenceForce() > 0.0 && m_system.size() > 0)
        {
            m_solver =
                std::make_unique<onestep::SparseSolver>(m_system.pattern(), onestep::SparseSolver::Kind::Symmetric);
            m_outcome.cost.analysis = since(begin);
            letGo();
        }
        else // nothing pulls
            m_outcome.status = Status::Converged;
        m_outcome.cost.total = since(begin);
        return m_outcome;
    }

private:
    enum class Step
    {
        Balanced,
        Nearly, // the residual stays between tolerance and acceptable
        Lost,
        Stopped
    };

    void letGo()
    {
        double step = m_settings.firstLoadStep;
        while (m_outcome.load < 1.0)
        {
            double const left = 1.0 - m_outcome.load;
            double const load = step * (1.0 + kRounding) < left ? m_outcome.load + step : 1.0;
            SheetState const last = m_state;
            Step const result = balance(load);
            if (result == Step::Stopped)
            {
                m_outcome.status = Status::Stopped;
                return;
            }
            if (result == Step::Balanced || result == Step::Nearly)
            {
                m_outcome.load = load;
                ++m_outcome.loadSteps;
                m_outcome.status = result == Step::Nearly ? Status::Accepted : Status::Converged;
                continue;
            }
            m_state = last;
            step *= 0.5;
            m_monitor.log(TextOf("no balance at load ", load, ": back to ", m_outcome.load, ", step ", step));
            if (step < m_settings.leastLoadStep)
            {
                m_outcome.status = Status::Failed;
                return;
            }
        }
    }

    Step balance(double i_load)
    {
        double least = std::numeric_limits<double>::infinity();
        for (int step = 0, lastGain = 0;; ++step)
        {
            assemble(i_load);
            double const residual = measure();
            m_monitor.log(TextOf("load ", NumberText(i_load, 6), "  step ", step, "  residual ",
                                 NumberText(residual, 3, std::chars_format::scientific)));
            double const share = std::clamp(std::log10(std::max(residual, 1.0e-30)) / std::log10(m_settings.tolerance),
                                            0.0, 1.0); // of this load step
            if (m_monitor.report(m_outcome.load + share * (i_load - m_outcome.load)))
                return Step::Stopped;
            if (residual <= m_settings.tolerance)
                return Step::Balanced;
            if (!(residual < kHopeless))
                return Step::Lost;
            if (residual < 0.5 * least)
                lastGain = step;
            least = std::min(least, residual);
            if (step - lastGain >= kPatience) // as low as it gets
                return residual <= kAcceptable ? Step::Nearly : Step::Lost;
            if (step == m_settings.maxSteps)
                return Step::Lost;
            if (!advance())
                return Step::Lost;
        }
    }

    void assemble(double i_load)
    {
        auto const begin = Clock::now();
        m_system.evaluate(m_state, i_load, true);
        m_outcome.cost.assembly += since(begin);
    }

    double measure()
    {
        double square = 0.0, worst = -1.0;
        for (std::size_t u = 0; u < m_system.residual().size(); ++u)
        {
            double const force = m_system.residual()[u];
            square += force * force;
            if (std::abs(force) > worst)
            {
                worst = std::abs(force);
                m_outcome.worstNode = m_system.nodeOfUnknown(static_cast<int>(u));
            }
        }
        m_outcome.pinReaction = m_system.pinReaction() / m_system.referenceForce();
        return m_outcome.residual = std::sqrt(square) / m_system.referenceForce();
    }

    bool advance()
    {
        auto begin = Clock::now();
        ++m_outcome.newtonSteps;
        ++m_outcome.cost.factorisations;
        bool const factorised = m_solver->factorise(m_system.tangent());
        m_outcome.cost.factorisation += since(begin);
        if (!factorised)
            return false;
        begin = Clock::now();
        m_change = m_system.residual();
        for (double & force : m_change)
            force = -force;
        bool const solved = m_solver->solve(m_change, 1);
        m_outcome.cost.solves += since(begin);
        return solved && m_system.move(m_change, m_state);
    }

    SheetSystem & m_system;
    Settings const & m_settings;
    onestep::Monitor & m_monitor;
    SheetState & m_state;
    std::unique_ptr<onestep::SparseSolver> m_solver;
    std::vector<double> m_change;
    UnloadingOutcome m_outcome;
};

} // namespace

UnloadingOutcome unload(SheetSystem & io_system, Settings const & i_settings, onestep::Monitor & io_monitor,
                        SheetState & io_state)
{
    return Unloader(io_system, i_settings, io_monitor, io_state).run();
}

} // namespace voz::springback
