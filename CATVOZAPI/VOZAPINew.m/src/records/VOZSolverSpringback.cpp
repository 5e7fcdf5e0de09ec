// VOZSolverSpringback.cpp: the door of the springback solve.

#include "VOZSolverSpringback.h"

#include "CATError.h"
#include "SpringbackRun.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"
#include "onestep/Constraints.h"
#include "onestep/Partition.h"

#include <algorithm>

namespace
{

[[noreturn]] void Raise(std::string const & i_text)
{
    throw CATError(CATUnicodeString(i_text.c_str()), "VOZSolverSpringback", __LINE__);
}

// Runs i_solve; what it finds wrong with the records goes to the files and is raised.
template <class SolveRecords>
int WithFiles(RunFiles & io_files, SolveRecords i_solve)
{
    try
    {
        return i_solve();
    }
    catch (JobError const & error)
    {
        io_files.Refused(error.what());
        Raise(error.what());
    }
}

// The planes of symmetry of the stage's constraints: those that show by a free side on which not both nodes are held in
// both directions.
std::vector<voz::geometry::SymmetryNode> SymmetryOf(voz::onestep::Problem const & i_problem)
{
    using voz::geometry::SymmetryNode;
    std::vector<int> dropped;
    auto const whole = voz::onestep::buildWhole(i_problem.nodes, i_problem.elements, dropped);
    auto sides = voz::geometry::buildSideTable(whole.mesh);
    std::vector<SymmetryNode> const all = voz::onestep::findSymmetry(whole.mesh, sides, i_problem.constraints);
    std::vector<int> directions(i_problem.nodes.size(), 0);
    for (SymmetryNode const & held : all)
        ++directions[static_cast<std::size_t>(held.node)];
    std::erase_if(sides.free,
                  [&](voz::geometry::Side const & side) {
                      return directions[static_cast<std::size_t>(side.a)] > 1 &&
                             directions[static_cast<std::size_t>(side.b)] > 1;
                  });
    return voz::onestep::findSymmetry(whole.mesh, sides, i_problem.constraints);
}

} // namespace

int VOZSolverSpringback::Unfold(unsigned short const * i_strSummaryName, unsigned short const * i_strFolder, int,
                                int i_nNumMaterials, double const * i_padThicknesses,
                                VOZMechanicalProp_s const * i_pasMaterials, double const * i_padLocalCS,
                                double const * i_padOrigin, VOZStopFunction i_stop, VOZProgressCallback i_callback,
                                void * i_pTask, void * i_pReserved, VOZMesh_s * i_psBlankMesh,
                                VOZSBConstraints_s const * i_psConstraints, void *, float *, float *, float *,
                                VOZMesh_s * i_psDeformedMesh, bool, double * o_padXYZ)
{
    RunFiles files(i_strFolder, i_strSummaryName);
    return WithFiles(
        files,
        [&]
        {
            if (!i_padLocalCS || !i_padOrigin)
                throw JobError("there is no frame; expected nine values and an origin of three");
            if (!o_padXYZ)
                throw JobError("there is no array for the shape; expected three values per node");
            StageFrame const frame(i_padLocalCS, i_padOrigin);
            auto const problem = SpringbackProblemOf(frame, i_psBlankMesh, i_psDeformedMesh, i_psConstraints,
                                                     LawsOf(i_nNumMaterials, i_padThicknesses, i_pasMaterials));
            return RunSpringback(problem, frame, {i_stop, i_callback, i_pTask, i_pReserved}, files, o_padXYZ);
        });
}

int VOZSolverSpringback::UnfoldStage(VOZMultiStageSolverIOData_s * i_psData, VOZStopFunction i_stop,
                                     VOZProgressCallback i_callback, void * i_pTask, void * i_pReserved,
                                     double * o_padXYZ)
{
    if (!i_psData)
        Raise("there is no job record; expected one");
    RunFiles files(*i_psData);
    return WithFiles(
        files,
        [&]
        {
            if (!o_padXYZ)
                throw JobError("there is no array for the shape; expected three values per node");
            VOZSolverStage_s const & stage = StageOf(*i_psData);
            StageFrame const frame(stage.m_adLocalCS, stage.m_adOrigin);
            voz::onestep::Problem const formed = ProblemOf(*i_psData, stage);
            VOZSBConstraints_s const * const pHeld = stage.m_psBCData ? stage.m_psBCData->m_psSBConstraints : nullptr;
            auto problem = SpringbackProblemOf(frame, stage.m_psPartMesh, stage.m_psBlankMesh, pHeld, formed.materials);
            problem.symmetry = SymmetryOf(formed);
            return RunSpringback(problem, frame, {i_stop, i_callback, i_pTask, i_pReserved}, files, o_padXYZ);
        });
}
