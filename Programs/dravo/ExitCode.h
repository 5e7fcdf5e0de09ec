// ExitCode.h: what the command's exit code says. docs/command.md tells the same to users.

#ifndef EXITCODE_H
#define EXITCODE_H

enum ExitCode
{
    ExitDone = 0,
    ExitCheckFailed = 1, // done, but a check failed; with --strict also for a warning
    ExitWrongUse = 2,
    ExitInputRefused = 3,
    ExitNoResult = 4, // the solver did not converge or gave no result
    ExitNotWritten = 5,
    ExitInterrupted = 130
};

#endif
