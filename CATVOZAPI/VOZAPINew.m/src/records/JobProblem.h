// JobProblem.h: from a job's records to the problem that the one-step solver takes.
//
// Positions go into the frame of the first stage. Everything is tested before the solver sees it: indices, counts,
// null arrays, NaN, and values that no sheet can have.

#ifndef JOBPROBLEM_H
#define JOBPROBLEM_H

#include "autostrain/AutoStrain.h"
#include "binder/Binder.h"
#include "onestep/OneStep.h"

#include <span>
#include <stdexcept>

struct VOZMechanicalProp_s;
struct VOZMesh_s;
struct VOZMultiStageSolverIOData_s;
struct VOZSolverAutoBC_s;
struct VOZSolverStage_s;

// A record that cannot be solved; the text says what was found, where, and what was expected.
class JobError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The frame of a stage: three rows at right angles, and an origin in metres.
class StageFrame
{
public:
    StageFrame(double const * i_padRows, double const * i_padOrigin); // 9 and 3; tested; both outlive this

    std::array<double, 3> Local(double const * i_padPoint) const;
    std::array<double, 3> Global(double const * i_padLocal) const;

private:
    std::span<double const, 9> m_rows;
    std::span<double const, 3> m_origin;
};

// A mesh that has topology, elements and coordinates, tested and converted; i_strMesh is its name in messages.
std::vector<std::array<double, 3>> NodesOf(VOZMesh_s const & i_mesh, StageFrame const & i_frame,
                                           char const * i_strMesh); // in the frame
std::vector<voz::onestep::Element> ElementsOf(VOZMesh_s const & i_mesh, int i_nNumMaterials, char const * i_strMesh);
std::vector<std::array<double, 3>> CurvaturesOf(VOZMesh_s const & i_mesh); // empty: the mesh brings none

std::vector<voz::onestep::MaterialLaw> LawsOf(int i_nNumMaterials, double const * i_padThicknesses,
                                              VOZMechanicalProp_s const * i_pasMaterials);

// The first stage with a part, a blank on the same topology and a place for the forming result.
VOZSolverStage_s & StageOf(VOZMultiStageSolverIOData_s & io_data);

voz::onestep::Problem ProblemOf(VOZMultiStageSolverIOData_s const & i_data, VOZSolverStage_s const & i_stage);

// The binder, in the frame of the stage. The job must have a place for the blank on it, too.
voz::binder::BinderSurface BinderOf(VOZMultiStageSolverIOData_s const & i_data, VOZSolverStage_s const & i_stage);

voz::autostrain::Task TaskOf(VOZSolverAutoBC_s const * i_pWanted, voz::onestep::Problem const & i_problem);

#endif
