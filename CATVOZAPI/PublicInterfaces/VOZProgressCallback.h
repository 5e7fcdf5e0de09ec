// VOZProgressCallback.h: how an operation of the kernel tells its progress, and is told to stop.
//
// The callback gets the percentage done, from 0 to 100 and never backwards, with the two pointers that came with it, on
// the caller's thread; a nonzero answer ends the run. It may be null.

#ifndef VOZPROGRESSCALLBACK_H
#define VOZPROGRESSCALLBACK_H

typedef int (*VOZProgressCallback)(double i_dPercent, void * i_pTask, void * i_pReserved);

// Asked between the steps of the operations that take one; a nonzero answer ends the run. It may be null.
typedef int (*VOZStopFunction)();

#endif
