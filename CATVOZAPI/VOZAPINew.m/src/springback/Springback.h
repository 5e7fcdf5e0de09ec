// Springback.h: the shape of a formed part after the tools let go.
//
// Elastic unloading: the stresses of forming, with their moments through the thickness, stay in the sheet as initial
// stresses and come to balance without tools. Positions are in the stamping frame (third axis = stamping direction), in
// metres; forces in newtons; indices 0-based. The door of the library (VOZSolverSpringback) checks and converts its
// records into a Problem; this header knows no record.

#ifndef SPRINGBACK_H
#define SPRINGBACK_H

#include "geometry/NodeNormals.h"
#include "onestep/OneStep.h"

namespace voz::springback
{

struct Problem
{
    std::vector<std::array<double, 3>> formed; // the formed mid-surface
    std::vector<std::array<double, 3>> flat;   // the same nodes in the flat blank
    std::vector<onestep::Element> elements;
    std::vector<int> trimmed; // per element, nonzero: it was cut away and carries nothing; empty: none
    std::vector<onestep::MaterialLaw> materials;
    std::vector<std::array<double, 3>> curvatures; // per element: two principal values 1/m and an angle; empty: none
    std::vector<int> fixed;                        // nodes that do not move; others may turn. Not in the mesh: skipped
    std::vector<int> clamped;                      // nodes that neither move nor turn
    std::vector<geometry::SymmetryNode> symmetry;  // nodes of vertical planes of symmetry, which keep to them
};

struct Settings
{
    double tolerance = 1.0e-8;   // of the forces out of balance, against the forces of the stresses
    double firstLoadStep = 0.25; // share of the stresses that is let go in one step; halved where that fails
    double leastLoadStep = 1.0 / 64.0;
    int maxSteps = 30; // of Newton's method in one load step
};

enum class Status
{
    Converged,
    Accepted,  // forces out of balance between the tolerance and 1e-5: a shape with a warning
    NoForming, // both meshes have the same lengths: the shape is the part's
    Failed,    // no shape; `message` tells where
    Refused,   // the problem cannot be posed (no elements, a folded blank, ...)
    Stopped    // on request
};

struct Solution
{
    Status status = Status::Failed;
    std::string message; // empty, or the reason in plain words
    std::vector<std::string> warnings;
    std::vector<std::array<double, 3>> shape; // after springback, per node; empty without a shape
    int pieces = 0;
    int loadSteps = 0;         // of the piece that needed most
    int newtonSteps = 0;       // likewise, over all load steps
    double residual = 0.0;     // relative, at the end
    double imbalance = 0.0;    // of the initial forces: sums of forces and moments against their sizes
    double pinReaction = 0.0;  // forces in the pins that hold the rigid motion, against the forces of the stresses
    double greatestMove = 0.0; // m
    int greatestMoveNode = -1;
};

// Reports percent through onestep::Progress; a nonzero answer stops the run. Never throws for bad geometry: status and
// message tell. Deterministic to the last bit.
Solution Solve(Problem const & i_problem, Settings const & i_settings, onestep::Progress const & i_progress);

} // namespace voz::springback

#endif
