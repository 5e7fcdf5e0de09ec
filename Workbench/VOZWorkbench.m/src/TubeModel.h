// TubeModel.h: a closed tube as the solvers of open sheets can take it, and what they give wrapped round again.
//
// The tube's frame: x along its axis from the end at its origin, z from the axis to the seam. The developed tube lies
// in its xy plane, y being the arc from the line opposite to the seam: both lips lie at half the circumference.

#ifndef TUBEMODEL_H
#define TUBEMODEL_H

#include "JobModel.h"

class Result;

namespace voz::workbench
{

constexpr int kLipTables = 2; // of prescribed displacements, which BuildProcess leaves free at the end

struct OpenedTube
{
    JobModel model;      // opened, global; the doubles of the seam's nodes stand behind, with ids behind the highest
    Tipping tipping;     // its frame, and no undercuts: nothing is stamped
    ElemProperty lips;   // the two tables that push the lips apart
    double radius = 0.0; // mm, of the tube to begin with
    int closedNodes = 0;
    std::vector<int> seam; // 0-based, along the path
    std::vector<std::string> warnings;
};

// Throws InputError for a mesh that is no tube with two ends, and for a seam that finds no way along it.
OpenedTube OpenTube(Job const & i_job, JobModel const & i_model);

// Puts the lips' tables where BuildProcess left room for them.
void TakeLips(OpenedTube const & i_tube, ElemProperty & io_property);

// The tube to begin with, from the displacements of the in-process route (m), which it takes over; fills o_outcome.tube
// and the checks of it.
void WrapTube(OpenedTube const & i_tube, Result & io_result, Outcome & io_outcome);

} // namespace voz::workbench

#endif
