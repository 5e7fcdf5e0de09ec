// VOZUtilitySolving.h: the door of the kernel: runs the solver on a job's records.
//
// The callback gets the percentage done, from 0 to 100 and never backwards, with the two pointers that came with it, on
// the caller's thread; a nonzero answer ends the run. It may be null.

#ifndef VOZUTILITYSOLVING_H
#define VOZUTILITYSOLVING_H

#include "ExportedByVOZAPINew.h"

struct VOZMultiStageSolverIOData_s;

typedef int (*VOZProgressCallback)(double i_dPercent, void * i_pTask, void * i_pReserved);

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
};

#endif
