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
    // (element, node, record) and what was expected. The stage is then without a forming result: arrays null, punch
    // force 0, the blank mesh as it came.
    static int Evaluate(VOZMultiStageSolverIOData_s * io_psData, VOZProgressCallback i_callback, void * i_pTask,
                        void * i_pReserved);

    // The same with a binder: the blank closes on the binder first, and where it lies then goes to the coordinates of
    // the record's blank-on-binder mesh; the strains are those of the whole way from the flat. i_pLog, where not null,
    // takes the log and stays the caller's.
    static int TwoStagesWithBinder(double i_dLogValue, std::FILE * i_pLog, unsigned short const * i_strLogName,
                                   unsigned short const * i_strFolder, VOZStopFunction i_stop,
                                   VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved,
                                   VOZMultiStageSolverIOData_s * io_psData);

    // The same with the restraint along the free edges that brings the strains at one or two nodes to given values.
    static int EvaluateAutoStrain(VOZMultiStageSolverIOData_s * io_psData, VOZSolverAutoBC_s const * i_psWanted,
                                  VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved);
};

#endif
