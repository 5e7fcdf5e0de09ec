// Monitor.cpp

#include "onestep/Monitor.h"

#include <algorithm>

namespace voz::onestep
{

bool Monitor::report(double i_share)
{
    m_last = std::max(m_last, m_from + (m_to - m_from) * std::clamp(i_share, 0.0, 1.0));
    if (!m_stopped && m_progress.report && m_progress.report(m_last) != 0)
        m_stopped = true;
    return m_stopped;
}

void Monitor::log(std::string const & i_line) const
{
    if (m_progress.log)
        m_progress.log(i_line);
}

} // namespace voz::onestep
