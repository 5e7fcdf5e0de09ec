// AutoStrain.h: the one-step solve with the restraint that brings strains at one or two nodes to given values.
//
// The strain of a node is the major log strain of the mid layer, averaged over its elements by their areas. The force
// per length of an edge is s_t w_t + s_r w_r with the levels of the target and the reference node and
// w_t = d_r/(d_t + d_r), w_r = 1 - w_t, d the distances of the edge's middle to the nodes in the plane of the frame;
// with one node there is one level on all edges.
//
// The edges are those of the problem's holders, whatever their force (an edge that stands twice counts once); without
// any, all free sides but those in planes of symmetry. The levels begin at the mean of the holders' forces (those that
// mean a lock say nothing), without any at 0.05 of the sheet's yield force.

#ifndef AUTOSTRAIN_H
#define AUTOSTRAIN_H

#include "onestep/OneStep.h"

namespace voz::autostrain
{

struct Wish
{
    int node = -1;       // of the problem; -1: none
    double strain = 0.0; // log
};

struct Task
{
    Wish target, reference;
    double guessFactor = 1.0; // times the levels to begin with
};

struct Reached // of target and reference; zeros where a node is absent
{
    bool met = false; // to 1e-4; else the nearest value that was reached stands, and `reason` says why
    std::string reason;
    bool searched = false; // else the first solve came only near equilibrium; levels and strains are not known
    double targetLevel = 0.0, referenceLevel = 0.0; // N/m
    double targetStrain = 0.0, referenceStrain = 0.0;
    int rounds = 0;
};

// With neither node a plain solve, which changes nothing of the holders' forces. Both nodes must lie in one connected
// piece of the part; a node that no element with an area holds, and a part without an edge to restrain, are refused.
onestep::Solution solve(onestep::Problem const & i_problem, onestep::Settings const & i_settings, Task const & i_task,
                        onestep::Progress const & i_progress, Reached & o_reached);

} // namespace voz::autostrain

#endif
