// FormedSheet.h: the formed part as shell triangles that carry the stresses of forming.

#ifndef FORMEDSHEET_H
#define FORMEDSHEET_H

#include "springback/ShellTriangle.h"
#include "springback/Springback.h"

namespace voz::springback
{

struct FormedSheet
{
    std::vector<geometry::Vec3> position; // all nodes of the problem, about their centre
    std::vector<ShellTriangle> triangles; // elements ascending; without the trimmed and the degenerate ones
    std::vector<int> elementOf;           // per triangle
    std::string refusal;                  // not empty: there is no sheet
    std::vector<std::string> warnings;
};

// The problem must have passed checkProblem.
FormedSheet buildSheet(Problem const & i_problem);

// Empty, or what is wrong with indices, counts and numbers.
std::string checkProblem(Problem const & i_problem, Settings const & i_settings);

// Whether the flat mesh has the lengths of the formed one: nothing was formed, or displacements came in another unit.
bool isUnformed(Problem const & i_problem);

// Empty, or that the flat mesh is none.
std::string checkFlatness(Problem const & i_problem);

} // namespace voz::springback

#endif
