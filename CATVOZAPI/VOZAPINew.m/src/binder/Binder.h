// Binder.h: the one-step solve of a part that is formed after the blank has closed on a binder.
//
// The strains are those of the whole way from the flat, as without a binder; the binder decides where the blank lies
// before the part is drawn. Everything is in the stamping frame, as in OneStep.h.

#ifndef BINDER_H
#define BINDER_H

#include "binder/BinderClosing.h"

namespace voz::binder
{

struct BinderSurface // materials of its elements do not count
{
    std::vector<std::array<double, 3>> nodes; // m
    std::vector<onestep::Element> elements;
};

struct TwoStages
{
    onestep::Solution binder; // stage one: the binder laid flat
    onestep::Solution part;   // stage two; where stage one failed its status and a message that begins with "binder: "
    Closing closing;          // empty where a stage failed
};

// Stage one takes 30 % of the progress. A stop in either stage ends both. i_solvePart, where it is given, solves the
// part in place of onestep::Solve.
using PartSolve = std::function<onestep::Solution(onestep::Progress const &)>;
TwoStages solveWithBinder(onestep::Problem const & i_part, BinderSurface const & i_binder,
                          onestep::Settings const & i_settings, onestep::Progress const & i_progress,
                          PartSolve const & i_solvePart = {});

// The first stage alone. i_part lends the material, and its planes of symmetry: sides of the binder's rim that lie in
// one are held to it, or a cut binder would be laid flat off the plane.
onestep::Problem binderProblem(onestep::Problem const & i_part, BinderSurface const & i_binder);

// The flat image of a binder that stage one has solved.
FlatImage imageOf(onestep::Problem const & i_binder, onestep::Solution const & i_solution);

} // namespace voz::binder

#endif
