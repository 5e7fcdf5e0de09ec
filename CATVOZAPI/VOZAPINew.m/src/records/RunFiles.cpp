// RunFiles.cpp: the summary and the log of a run.

#include "RunFiles.h"

#include "CATUnicodeString.h"
#include "TextOf.h"
#include "VOZFile.h"
#include "VOZMultiStageSolver.h"
#include "VOZMultiStageSolverIOData.h"

#include <cmath>
#include <cstddef>

using voz::onestep::Problem;
using voz::onestep::Solution;
using voz::onestep::Status;

std::string PathInFolder(unsigned short const * i_strFolder, unsigned short const * i_strName)
{
    if (!i_strName || i_strName[0] == 0)
        return {};
    std::string name = CATUnicodeString(i_strName).ConvertToChar();
    if (!i_strFolder || i_strFolder[0] == 0)
        return name;
    return TextOf(CATUnicodeString(i_strFolder).ConvertToChar(), "/", name);
}

double FlatArea(Problem const & i_problem, Solution const & i_solution)
{
    double area = 0.0;
    for (voz::onestep::Element const & element : i_problem.elements)
    {
        std::size_t const corners = element.nodes[3] < 0 ? 3 : 4;
        double twice = 0.0;
        for (std::size_t i = 0; i < corners; ++i)
        {
            auto const & a = i_solution.flat[static_cast<std::size_t>(element.nodes[i])];
            auto const & b = i_solution.flat[static_cast<std::size_t>(element.nodes[(i + 1) % corners])];
            twice += a[0] * b[1] - a[1] * b[0];
        }
        area += 0.5 * std::fabs(twice);
    }
    return area;
}

namespace
{

char const * Outcome(Status i_status)
{
    switch (i_status)
    {
    case Status::Converged:
        return "converged";
    case Status::Accepted:
        return "accepted with a warning";
    case Status::Failed:
        return "failed";
    case Status::Refused:
        return "refused";
    case Status::Stopped:
        break;
    }
    return "stopped";
}

} // namespace

RunFiles::RunFiles(VOZMultiStageSolverIOData_s const & i_data)
    : RunFiles(i_data.m_strWorkingDir, i_data.m_strSummaryFileName)
{
}

RunFiles::RunFiles(unsigned short const * i_strFolder, unsigned short const * i_strSummaryName)
    : m_summaryPath(PathInFolder(i_strFolder, i_strSummaryName))
{
    double logValue = 0.0;
    std::basic_string<unsigned short> logName;
    VOZMultiStageSolver::OpenLogFile(i_strSummaryName, i_strFolder, logValue, logName, m_pLog);
    m_pOwnLog.reset(m_pLog);
}

RunFiles::RunFiles(VOZMultiStageSolverIOData_s const & i_data, unsigned short const * i_strFolder, std::FILE * i_pLog)
    : m_pLog(i_pLog),
      m_summaryPath(PathInFolder(i_strFolder && i_strFolder[0] != 0 ? i_strFolder : i_data.m_strWorkingDir,
                                 i_data.m_strSummaryFileName))
{
}

void RunFiles::Log(std::string const & i_line)
{
    if (!m_pLog || i_line.starts_with("time:"))
        return;
    std::fwrite(i_line.data(), 1, i_line.size(), m_pLog);
    std::fputc('\n', m_pLog);
    std::fflush(m_pLog); // a run that is killed leaves what it has said
}

void RunFiles::Write(std::string const & i_text)
{
    if (m_summaryPath.empty())
        return;
    std::unique_ptr<std::FILE, Closed> const pFile(VOZOpenFile(m_summaryPath.c_str(), "wb"));
    if (pFile)
        std::fwrite(i_text.data(), 1, i_text.size(), pFile.get());
}

void RunFiles::EndedWithout(char const * i_strOutcome, std::string const & i_reason)
{
    Log(TextOf(i_strOutcome, ": ", i_reason));
    Write(TextOf("outcome              ", i_strOutcome, "\nreason               ", i_reason, "\n"));
}

void RunFiles::Refused(std::string const & i_reason)
{
    EndedWithout(Outcome(Status::Refused), i_reason);
}

void RunFiles::Failed(std::string const & i_reason)
{
    EndedWithout(Outcome(Status::Failed), i_reason);
}

void RunFiles::Summarise(Problem const & i_problem, Solution const & i_solution, std::string const & i_rows)
{
    std::string text = TextOf("outcome              ", Outcome(i_solution.status), "\n");
    if (!i_solution.message.empty())
        text += TextOf("reason               ", i_solution.message, "\n");
    text +=
        TextOf("nodes                ", i_problem.nodes.size(), "\nelements             ", i_problem.elements.size(),
               "\nmaterials            ", i_problem.materials.size(), "\niterations           ", i_solution.newtonSteps,
               "\nresidual             ", NumberText(i_solution.residual, 3), "\nholding share        ",
               NumberText(i_solution.holdingShare, 3), "\n");
    if (!i_solution.flat.empty())
        text += TextOf("least determinant    ", NumberText(i_solution.leastDeterminant, 6), "\ngreatest strain      ",
                       NumberText(i_solution.greatestStrain, 6), "\nnecking points       ", i_solution.neckingPoints,
                       "\npunch force N        ", i_solution.punchForce, "\nwork of forming J    ", i_solution.work,
                       "\nblank area m2        ", FlatArea(i_problem, i_solution), "\n");
    text += i_rows;
    for (std::string const & warning : i_solution.warnings)
        text += TextOf("warning              ", warning, "\n");
    Write(text);
    Log(TextOf(Outcome(i_solution.status), i_solution.message.empty() ? "" : ": ", i_solution.message));
}
