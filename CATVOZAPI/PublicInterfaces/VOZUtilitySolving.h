// VOZUtilitySolving.h: the door of the kernel: runs the solver on a job's records.

#ifndef VOZUTILITYSOLVING_H
#define VOZUTILITYSOLVING_H

#include "ExportedByVOZAPINew.h"
#include "VOZProgressCallback.h"

#include <cstdio>

struct VOZMultiStageSolverIOData_s;
struct VOZSolverAutoBC_s;

class ExportedByVOZAPINew VOZUtilitySolving
{
public:
    enum
    {
        Done = 0,
        Stopped = 1 // by the callback: no results
    };

    // Solves the first stage without a binder, and writes the stage's forming result and the coordinates of its blank
    // mesh. Beside them a summary file (under the record's name) and a log with the iteration table ("<stem>.log")
    // go to the working folder; a job without a summary name writes neither, and a file that cannot be written is no
    // failure.
    //
    // Records that cannot be solved, and a solve that fails, raise a CATError whose text says what was found, where
    // (element, node, record) and what was expected; so does a want of memory. The stage is then without a forming
    // result: arrays null, punch force 0, the blank mesh as it came.
    static int Evaluate(VOZMultiStageSolverIOData_s * io_psData, VOZProgressCallback i_callback, void * i_pTask,
                        void * i_pReserved);

    // The same with a binder: the blank closes on it first, and where it then lies goes to the coordinates of the
    // record's blank-on-binder mesh; the strains are those of the whole way from the flat. A failure leaves that mesh
    // as it came, too. i_pLog, where not null, takes the log and stays the caller's; i_strFolder, where not empty, is
    // where the summary goes instead of the record's folder. The log's value and name are those of
    // VOZMultiStageSolver::OpenLogFile; there is one format, and nothing depends on them. i_stop is asked before each
    // call of the callback, and between the steps where there is none.
    static int TwoStagesWithBinder(double i_dLogValue, std::FILE * i_pLog, unsigned short const * i_strLogName,
                                   unsigned short const * i_strFolder, VOZStopFunction i_stop,
                                   VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved,
                                   VOZMultiStageSolverIOData_s * io_psData);

    // The same with the restraint that brings the major log strain of the mid layer at one or two nodes to given
    // values, to 1e-4. It acts along the edges of the job's holders, whatever their force, or, without any, along all
    // free edges but those in planes of symmetry; the holders' mean force is the first guess. Where the strains cannot
    // be had the nearest that was reached stands. Log and summary tell levels and strains, and whether they were met.
    // Neither node set: as Evaluate. A job with a binder gets the blank on it, too.
    static int EvaluateAutoStrain(VOZMultiStageSolverIOData_s * io_psData, VOZSolverAutoBC_s const * i_psWanted,
                                  VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved);
};

#endif
