// RunFiles.h: the summary and the log that a run leaves in the working folder.
//
// Both are optional: where a file cannot be opened or written the run goes on without it. Numbers have a decimal point
// whatever the locale, and neither file holds a time, so that equal jobs leave equal files: lines of the solver that
// begin with "time:" are left out.

#ifndef RUNFILES_H
#define RUNFILES_H

#include "onestep/OneStep.h"

#include <cstdio>
#include <memory>
#include <string>

struct VOZMultiStageSolverIOData_s;

class RunFiles
{
public:
    explicit RunFiles(VOZMultiStageSolverIOData_s const & i_data);
    RunFiles(unsigned short const * i_strFolder, unsigned short const * i_strSummaryName); // either may be null

    // The log is the caller's, open and possibly null. i_strFolder, where not empty, stands for the record's.
    RunFiles(VOZMultiStageSolverIOData_s const & i_data, unsigned short const * i_strFolder, std::FILE * i_pLog);

    void Log(std::string const & i_line);
    // i_rows: more of them, each with its line end.
    void Summarise(voz::onestep::Problem const & i_problem, voz::onestep::Solution const & i_solution,
                   std::string const & i_rows = {});
    void Refused(std::string const & i_reason); // a job that never reached the solver
    void Failed(std::string const & i_reason);  // a job that the solver left without an answer of any kind
    void Write(std::string const & i_text);     // the summary

private:
    void EndedWithout(char const * i_strOutcome, std::string const & i_reason);

    struct Closed
    {
        void operator()(std::FILE * i_pFile) const { std::fclose(i_pFile); }
    };
    std::unique_ptr<std::FILE, Closed> m_pOwnLog;
    std::FILE * m_pLog = nullptr; // null: no log
    std::string m_summaryPath;    // empty: no summary
};

// The area of the flat blank, m^2.
double FlatArea(voz::onestep::Problem const & i_problem, voz::onestep::Solution const & i_solution);

// "folder/name" in UTF-8; empty if there is no name.
std::string PathInFolder(unsigned short const * i_strFolder, unsigned short const * i_strName);

#endif
