// Monitor.h: the way out for progress, log lines and the wish to stop.
//
// Percent never runs backwards. Once the caller has asked for a stop the answer stays.

#ifndef MONITOR_H
#define MONITOR_H

#include "onestep/OneStep.h"

namespace voz::onestep
{

class Monitor
{
public:
    explicit Monitor(Progress const & i_progress) : m_progress(i_progress) {}

    // The next reports cover this part of the whole: pieces are solved one after the other.
    void setRange(double i_from, double i_to)
    {
        m_from = i_from;
        m_to = i_to;
    }

    double from() const { return m_from; }
    double to() const { return m_to; }

    // i_share: of the present range, 0 to 1. True: the caller wants to stop.
    bool report(double i_share);
    bool stopped() const { return m_stopped; }
    void log(std::string const & i_line) const;

private:
    Progress const & m_progress; // outlives this
    double m_from = 0.0, m_to = 100.0, m_last = 0.0;
    bool m_stopped = false;
};

} // namespace voz::onestep

#endif
