// KernelRun.h: what the runs of the library's drivers share: progress, and errors in words.

#ifndef KERNELRUN_H
#define KERNELRUN_H

#include "Route.h"

#include "CATIProgressTaskUI.h"

#include <functional>

namespace voz::workbench
{

// Passes the kernel's percentage on, and ends the run when the user asks for it.
class RouteTask : public CATIProgressTaskUI
{
public:
    explicit RouteTask(RunObserver & io_observer) : mObserver(io_observer) {}
    void SetProgress(short i_percent) override
    {
        if (mObserver.IsInterrupted())
            throw Interrupted();
        mObserver.Progress(i_percent);
    }

private:
    RunObserver & mObserver;
};

constexpr char const * kKernelLog = "sum.log";
constexpr char const * kKernelSummary = "sum.txt";

// Runs one step of a driver. An error of the platform and a failure without a text become a SolverError with the last
// words of the log in i_folder. i_what: "the kernel could not form the part".
void Driven(std::string const & i_what, std::string const & i_folder, std::function<long()> const & i_step);

} // namespace voz::workbench

#endif
