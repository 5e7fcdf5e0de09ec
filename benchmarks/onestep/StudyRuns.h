// StudyRuns.h: the runs of the convergence study.
//
// A Latin hypercube: each of the quantities below is cut into as many strata as there are runs, and every stratum is
// used once; the order of the strata is shuffled by a seeded generator of fixed definition, so that the list is the
// same on every machine.

#ifndef STUDYRUNS_H
#define STUDYRUNS_H

#include "OneStepProblems.h"

#include <cstdint>
#include <string>
#include <vector>

namespace study
{

struct NamedLaw
{
    std::string name;
    onesteptest::MaterialLaw law;
};

struct Run
{
    int number; // from 1
    std::string part;
    onesteptest::Cells cells;
    double size; // of an element over the example's: 0.5 to 4
    int material;
    double thickness;       // mm
    double friction;        // of the tools
    double holder;          // times the example's force per length
    std::uint64_t shuffle;  // seed of the numbering of nodes and elements
    double holderForce = 0; // N/mm, filled by buildProblem
};

std::vector<Run> drawRuns(int count, std::uint64_t seed, int materials);

// The problem of a run, its nodes and elements numbered at random.
onesteptest::Problem buildProblem(Run & io_run, std::vector<NamedLaw> const & materials);

} // namespace study

#endif
