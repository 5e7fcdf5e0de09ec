// VOZUtilitySolving.cpp: the doors of the kernel.
//
// Records in, one-step solve, records out. Nothing of the stage changes until the answer is there and sound.

#include "VOZUtilitySolving.h"

#include "CATError.h"
#include "HostSettings.h"
#include "JobProblem.h"
#include "JobResults.h"
#include "RunFiles.h"
#include "VOZFormingResult.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverAutoBC.h"

#include <optional>

namespace
{

using voz::binder::TwoStages;
using voz::onestep::Problem;
using voz::onestep::Progress;
using voz::onestep::Solution;
using voz::onestep::Status;

struct Caller
{
    VOZStopFunction stop;
    VOZProgressCallback callback;
    void * pTask;
    void * pReserved;

    Progress ProgressTo(RunFiles & io_files) const
    {
        Progress progress;
        if (stop || callback)
            progress.report = [*this](double percent)
            {
                if (stop && stop() != 0)
                    return 1;
                return callback ? callback(percent, pTask, pReserved) : 0;
            };
        progress.log = [&io_files](std::string const & line) { io_files.Log(line); };
        return progress;
    }
};

enum class BinderUse
{
    None,
    WhereGiven, // both its mesh and one for the blank on it
    Always
};

// i_pWanted: null, or the strains to reach.
int Solve(VOZMultiStageSolverIOData_s & io_data, BinderUse i_use, VOZSolverAutoBC_s const * i_pWanted,
          Caller const & i_caller, RunFiles & io_files)
{
    VOZSolverStage_s & stage = StageOf(io_data);
    stage.m_psFormingResult->Clear();
    Problem const problem = ProblemOf(io_data, stage);
    std::optional<voz::autostrain::Task> task;
    if (i_pWanted)
        task = TaskOf(*i_pWanted, problem);
    voz::onestep::Settings const settings = HostSettings();
    if (task && settings.steps > 1)
        io_files.Log("steps of the stroke: one, since strains are prescribed");
    bool const bBinder = i_use == BinderUse::Always ||
                         (i_use == BinderUse::WhereGiven && io_data.m_psBinderMesh && io_data.m_psBlankOnBinderMesh);
    auto const solvePart = [&](Progress const & progress)
    {
        voz::autostrain::Reached reached;
        return task ? voz::autostrain::solve(problem, {}, *task, progress, reached)
                    : voz::onestep::Solve(problem, settings, progress);
    };
    Progress const progress = i_caller.ProgressTo(io_files);
    TwoStages stages;
    if (bBinder)
        stages = voz::binder::solveWithBinder(problem, BinderOf(io_data, stage), {}, progress, solvePart);
    else
        stages.part = solvePart(progress);
    io_files.Summarise(problem, stages.part);
    if (stages.part.status == Status::Stopped)
        return VOZUtilitySolving::Stopped;
    if (stages.part.status == Status::Failed || stages.part.status == Status::Refused)
        RaiseKernelError(stages.part.message);
    WriteResults(problem, stages.part, bBinder ? &stages.closing : nullptr, io_data, stage);
    return VOZUtilitySolving::Done;
}

int SolveOrRaise(VOZMultiStageSolverIOData_s & io_data, BinderUse i_use, VOZSolverAutoBC_s const * i_pWanted,
                 Caller const & i_caller, RunFiles & io_files)
{
    try
    {
        return Solve(io_data, i_use, i_pWanted, i_caller, io_files);
    }
    catch (JobError const & error)
    {
        io_files.Refused(error.what());
        RaiseKernelError(error.what());
    }
}

void ExpectJob(VOZMultiStageSolverIOData_s const * i_psData)
{
    if (!i_psData)
        RaiseKernelError("there is no job record; expected one");
}

} // namespace

int VOZUtilitySolving::Evaluate(VOZMultiStageSolverIOData_s * io_psData, VOZProgressCallback i_callback, void * i_pTask,
                                void * i_pReserved)
{
    ExpectJob(io_psData);
    RunFiles files(*io_psData);
    return SolveOrRaise(*io_psData, BinderUse::None, nullptr, {nullptr, i_callback, i_pTask, i_pReserved}, files);
}

int VOZUtilitySolving::TwoStagesWithBinder(double, std::FILE * i_pLog, unsigned short const *,
                                           unsigned short const * i_strFolder, VOZStopFunction i_stop,
                                           VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved,
                                           VOZMultiStageSolverIOData_s * io_psData)
{
    ExpectJob(io_psData);
    RunFiles files(*io_psData, i_strFolder, i_pLog);
    return SolveOrRaise(*io_psData, BinderUse::Always, nullptr, {i_stop, i_callback, i_pTask, i_pReserved}, files);
}

int VOZUtilitySolving::EvaluateAutoStrain(VOZMultiStageSolverIOData_s * io_psData, VOZSolverAutoBC_s const * i_psWanted,
                                          VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved)
{
    ExpectJob(io_psData);
    RunFiles files(*io_psData);
    if (!i_psWanted)
        RaiseKernelError("there is no record of wanted strains; expected one");
    return SolveOrRaise(*io_psData, BinderUse::WhereGiven, i_psWanted, {nullptr, i_callback, i_pTask, i_pReserved},
                        files);
}
