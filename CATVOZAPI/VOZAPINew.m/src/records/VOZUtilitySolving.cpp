// VOZUtilitySolving.cpp: the doors of the kernel.
//
// Records in, one-step solve, records out. Nothing of the stage changes until the answer is there and sound.

#include "VOZUtilitySolving.h"

#include "CATError.h"
#include "HostSettings.h"
#include "JobProblem.h"
#include "JobResults.h"
#include "RunFiles.h"
#include "TextOf.h"
#include "VOZFormingResult.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverAutoBC.h"

#include <new>
#include <optional>

namespace
{

using voz::autostrain::Reached;
using voz::autostrain::Task;
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

struct Work
{
    BinderUse binder = BinderUse::None;
    bool bToStrains = false;
    VOZSolverAutoBC_s const * pWanted = nullptr; // read only where strains are wanted
};

bool IsSolved(Solution const & i_solution)
{
    return i_solution.status == Status::Converged || i_solution.status == Status::Accepted;
}

// Whatever else is wrong with a job, an old answer must not be taken for a new one.
void ClearOldResult(VOZMultiStageSolverIOData_s & io_data)
{
    if (io_data.m_nNumStages > 0 && io_data.m_pasStages && io_data.m_pasStages[0].m_psFormingResult)
        io_data.m_pasStages[0].m_psFormingResult->Clear();
}

// Rows of the summary; empty where no strain is wanted.
std::string RestraintRows(Task const & i_task, Reached const & i_reached)
{
    std::string rows;
    auto const add =
        [&](char const * i_strWhich, voz::autostrain::Wish const & i_wish, double i_dLevel, double i_dStrain)
    {
        if (i_wish.node < 0)
            return;
        auto const row = [&](std::string const & i_name, std::string const & i_value)
        {
            std::string name = TextOf(i_strWhich, " ", i_name);
            name.resize(21, ' ');
            rows += TextOf(name, i_value, "\n");
        };
        row("node", std::to_string(i_wish.node));
        row("wanted", NumberText(i_wish.strain, 8));
        if (!i_reached.searched)
            return;
        row("strain", NumberText(i_dStrain, 8));
        row("level N/m", NumberText(i_dLevel, 8));
    };
    add("target", i_task.target, i_reached.targetLevel, i_reached.targetStrain);
    add("reference", i_task.reference, i_reached.referenceLevel, i_reached.referenceStrain);
    if (rows.empty())
        return rows;
    return TextOf("auto strain          ", i_reached.met ? "met" : "not met", i_reached.met ? "" : ", ",
                  i_reached.reason, "\nrounds               ", i_reached.rounds, "\n", rows);
}

int Solve(VOZMultiStageSolverIOData_s & io_data, Work const & i_work, Caller const & i_caller, RunFiles & io_files)
{
    ClearOldResult(io_data);
    VOZSolverStage_s & stage = StageOf(io_data);
    Problem const problem = ProblemOf(io_data, stage);
    std::optional<Task> task;
    if (i_work.bToStrains)
        task = TaskOf(i_work.pWanted, problem);
    voz::onestep::Settings settings = HostSettings();
    if (task && (task->target.node >= 0 || task->reference.node >= 0) && settings.steps > 1)
    {
        io_files.Log("steps of the stroke: one, since strains are prescribed");
        settings.steps = 1;
    }
    bool const bBinder =
        i_work.binder == BinderUse::Always ||
        (i_work.binder == BinderUse::WhereGiven && io_data.m_psBinderMesh && io_data.m_psBlankOnBinderMesh);
    Reached reached;
    auto const solvePart = [&](Progress const & progress)
    {
        return task ? voz::autostrain::solve(problem, settings, *task, progress, reached)
                    : voz::onestep::Solve(problem, settings, progress);
    };
    Progress const progress = i_caller.ProgressTo(io_files);
    TwoStages stages;
    if (bBinder)
        stages = voz::binder::solveWithBinder(problem, BinderOf(io_data, stage), {}, progress, solvePart);
    else
        stages.part = solvePart(progress);
    voz::binder::Closing const * const pClosing = bBinder ? &stages.closing : nullptr;
    if (std::string flaw = IsSolved(stages.part) ? FlawOf(problem, stages.part, pClosing) : ""; !flaw.empty())
    {
        stages.part.status = Status::Failed;
        stages.part.message = std::move(flaw);
    }
    bool const bSolved = IsSolved(stages.part);
    io_files.Summarise(problem, stages.part, task && bSolved ? RestraintRows(*task, reached) : "");
    if (stages.part.status == Status::Stopped)
        return VOZUtilitySolving::Stopped;
    if (!bSolved)
        RaiseKernelError(stages.part.message);
    WriteResults(problem, stages.part, pClosing, io_data, stage);
    return VOZUtilitySolving::Done;
}

int SolveOrRaise(VOZMultiStageSolverIOData_s & io_data, Work const & i_work, Caller const & i_caller,
                 RunFiles & io_files)
{
    try
    {
        return Solve(io_data, i_work, i_caller, io_files);
    }
    catch (JobError const & error)
    {
        io_files.Refused(error.what());
        RaiseKernelError(error.what());
    }
    catch (std::bad_alloc const &)
    {
        constexpr char const * kReason = "there is not enough memory to solve the job";
        io_files.Failed(kReason);
        RaiseKernelError(kReason);
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
    return SolveOrRaise(*io_psData, {}, {nullptr, i_callback, i_pTask, i_pReserved}, files);
}

int VOZUtilitySolving::TwoStagesWithBinder(double, std::FILE * i_pLog, unsigned short const *,
                                           unsigned short const * i_strFolder, VOZStopFunction i_stop,
                                           VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved,
                                           VOZMultiStageSolverIOData_s * io_psData)
{
    ExpectJob(io_psData);
    RunFiles files(*io_psData, i_strFolder, i_pLog);
    return SolveOrRaise(*io_psData, {BinderUse::Always}, {i_stop, i_callback, i_pTask, i_pReserved}, files);
}

int VOZUtilitySolving::EvaluateAutoStrain(VOZMultiStageSolverIOData_s * io_psData, VOZSolverAutoBC_s const * i_psWanted,
                                          VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved)
{
    ExpectJob(io_psData);
    RunFiles files(*io_psData);
    return SolveOrRaise(*io_psData, {BinderUse::WhereGiven, true, i_psWanted},
                        {nullptr, i_callback, i_pTask, i_pReserved}, files);
}
