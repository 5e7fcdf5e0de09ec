// BenchClock.h: the time of a piece of work beside another's, for a ratio that a goal names.

#ifndef BENCHCLOCK_H
#define BENCHCLOCK_H

#include <algorithm>
#include <ctime>
#include <limits>

namespace benchclock
{
// The best of five runs. Of this process's own time: what else runs on the machine does not count.
template <class Work>
double bestSeconds(Work work)
{
    double best = std::numeric_limits<double>::infinity();
    for (int run = 0; run < 5; ++run)
    {
        std::clock_t const start = std::clock();
        work();
        best = std::min(best, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return best;
}
} // namespace benchclock

#endif
