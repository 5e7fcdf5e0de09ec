// MeshExtension.h: the parts of VOZSolver::MeshExtension that stand on their own.

#ifndef MESHEXTENSION_H
#define MESHEXTENSION_H

#include <cstdio>
#include <vector>

class VOZCatMesh;

namespace meshextension
{
// The outer loop of a part: node positions and their coordinates, 3 each, in order around it.
struct Wire
{
    std::vector<int> ids;
    std::vector<double> points;
    std::vector<double> normals; // 3 each
    double perimeter = 0.0;      // mm
};

// Joins the part to the offset polyline of its outer loop by a patch, and makes all orientations agree. False, with the
// mesh left alone, if there is no patch: fewer than 2 points on either line, no number, no memory.
bool Extend(VOZCatMesh & io_mesh, Wire const & i_wire, std::vector<double> const & i_polyline,
            double i_iterationFactor);

// The extended mesh as a NASTRAN deck; quadrilaterals by their first three corners.
void WriteRecord(std::FILE * i_file, VOZCatMesh const & i_mesh);
} // namespace meshextension

#endif
