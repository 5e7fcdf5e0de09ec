// SpringbackRun.cpp: between records and the springback solve.

#include "SpringbackRun.h"

#include "TextOf.h"
#include "VOZMesh.h"
#include "VOZSolverBCData.h"
#include "VOZSolverSpringback.h"

#include <algorithm>
#include <cmath>

using voz::springback::Problem;
using voz::springback::Solution;
using voz::springback::Status;

namespace
{

constexpr int kTrimmedAway = 1; // status of an element

char const * Outcome(Status i_status)
{
    switch (i_status)
    {
    case Status::Converged:
        return "converged";
    case Status::Accepted:
        return "accepted with a warning";
    case Status::NoForming:
        return "no forming";
    case Status::Failed:
        return "failed";
    case Status::Refused:
        return "refused";
    case Status::Stopped:
        break;
    }
    return "stopped";
}

double Extent(std::vector<std::array<double, 3>> const & i_nodes)
{
    auto const range =
        std::minmax_element(i_nodes.begin(), i_nodes.end(), [](auto const & a, auto const & b) { return a[2] < b[2]; });
    return (*range.second)[2] - (*range.first)[2];
}

void MarkTrimmed(VOZMesh_s const & i_mesh, Problem & io_problem)
{
    if (!i_mesh.m_panElementsStatus)
        return;
    io_problem.trimmed.resize(io_problem.elements.size(), 0);
    for (std::size_t e = 0; e < io_problem.trimmed.size(); ++e)
        if (i_mesh.m_panElementsStatus[e] == kTrimmedAway)
            io_problem.trimmed[e] = 1;
}

void ReadFixed(VOZSBConstraints_s const & i_constraints, Problem & io_problem)
{
    if (i_constraints.m_nCount < 0)
        throw JobError(
            TextOf("the number of nodes that springback holds is ", i_constraints.m_nCount, "; expected 0 or more"));
    if (i_constraints.m_nCount > 0 && !i_constraints.m_panNodeIndices)
        throw JobError(TextOf("there are ", i_constraints.m_nCount,
                              " nodes that springback holds without an array; expected one"));
    auto const nNumNodes = static_cast<int>(io_problem.formed.size());
    for (int i = 0; i < i_constraints.m_nCount; ++i)
        if (int const node = i_constraints.m_panNodeIndices[i]; node >= 0 && node < nNumNodes)
            io_problem.fixed.push_back(node);
}

void Summarise(Problem const & i_problem, Solution const & i_solution, RunFiles & io_files)
{
    std::string text = TextOf("outcome              ", Outcome(i_solution.status), "\n");
    if (!i_solution.message.empty())
        text += TextOf("reason               ", i_solution.message, "\n");
    auto const trimmed =
        std::count_if(i_problem.trimmed.begin(), i_problem.trimmed.end(), [](int s) { return s != 0; });
    text += TextOf("nodes                ", i_problem.formed.size(), "\nelements             ",
                   i_problem.elements.size(), "\ntrimmed elements     ", trimmed, "\nfixed nodes          ",
                   i_problem.fixed.size(), "\npieces               ", i_solution.pieces, "\nload steps           ",
                   i_solution.loadSteps, "\niterations           ", i_solution.newtonSteps, "\nresidual             ",
                   NumberText(i_solution.residual, 3), "\n");
    if (!i_solution.shape.empty() && i_solution.status != Status::NoForming)
        text += TextOf("greatest move m      ", i_solution.greatestMove, "\nat node              ",
                       i_solution.greatestMoveNode, "\n");
    for (std::string const & warning : i_solution.warnings)
        text += TextOf("warning              ", warning, "\n");
    io_files.Write(text);
    io_files.Log(TextOf(Outcome(i_solution.status), i_solution.message.empty() ? "" : ": ", i_solution.message));
}

} // namespace

void CheckMesh(VOZMesh_s const * i_pMesh, char const * i_strMesh)
{
    if (!i_pMesh || !i_pMesh->m_psTopology || !i_pMesh->GetElements() || !i_pMesh->m_padNodalCoords)
        throw JobError(TextOf("there is no ", i_strMesh, "; expected one with topology, elements and coordinates"));
    if (i_pMesh->GetNumNodes() < 1 || i_pMesh->GetNumElements() < 1)
        throw JobError(TextOf("the ", i_strMesh, " has ", i_pMesh->GetNumNodes(), " nodes and ",
                              i_pMesh->GetNumElements(), " elements; expected one or more of each"));
}

Problem SpringbackProblemOf(StageFrame const & i_frame, VOZMesh_s const * i_pOne, VOZMesh_s const * i_pOther,
                            VOZSBConstraints_s const * i_pConstraints, std::vector<voz::onestep::MaterialLaw> i_laws)
{
    CheckMesh(i_pOne, "blank mesh");
    CheckMesh(i_pOther, "deformed mesh");
    if (i_pOne->GetNumNodes() != i_pOther->GetNumNodes() || i_pOne->GetNumElements() != i_pOther->GetNumElements())
        throw JobError(TextOf("the blank mesh has ", i_pOne->GetNumNodes(), " nodes and ", i_pOne->GetNumElements(),
                              " elements, the deformed mesh ", i_pOther->GetNumNodes(), " and ",
                              i_pOther->GetNumElements(), "; expected the same mesh twice"));
    Problem problem;
    problem.materials = std::move(i_laws);
    problem.formed = NodesOf(*i_pOne, i_frame, "blank mesh");
    problem.flat = NodesOf(*i_pOther, i_frame, "deformed mesh");
    VOZMesh_s const * pFormed = i_pOne;
    if (Extent(problem.formed) < Extent(problem.flat))
    {
        std::swap(problem.formed, problem.flat);
        pFormed = i_pOther;
    }
    problem.elements = ElementsOf(*i_pOne, static_cast<int>(problem.materials.size()), "blank mesh");
    problem.curvatures = CurvaturesOf(*pFormed);
    MarkTrimmed(*i_pOne, problem);
    MarkTrimmed(*i_pOther, problem);
    if (i_pConstraints)
        ReadFixed(*i_pConstraints, problem);
    return problem;
}

int RunSpringback(Problem const & i_problem, StageFrame const & i_frame, SpringbackCalls const & i_calls,
                  RunFiles & io_files, double * o_padXYZ)
{
    voz::onestep::Progress progress;
    progress.report = [&i_calls](double percent)
    {
        int const answer = i_calls.callback ? i_calls.callback(percent, i_calls.task, i_calls.reserved) : 0;
        return answer == 0 && i_calls.stop ? i_calls.stop() : answer;
    };
    progress.log = [&io_files](std::string const & line) { io_files.Log(line); };
    Solution const solution = voz::springback::Solve(i_problem, {}, progress);
    Summarise(i_problem, solution, io_files);
    if (solution.status == Status::Stopped)
        return VOZSolverSpringback::Stopped;
    if (solution.shape.empty())
        return VOZSolverSpringback::Failed;
    double * padPoint = o_padXYZ;
    for (auto const & x : solution.shape)
    {
        std::array<double, 3> const point = i_frame.Global(x.data());
        padPoint = std::copy(point.begin(), point.end(), padPoint);
    }
    return VOZSolverSpringback::Done;
}
