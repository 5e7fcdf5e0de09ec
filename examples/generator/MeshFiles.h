// MeshFiles.h: writes example meshes as Nastran bulk data and as LS-DYNA keyword files.
//
// Lengths in mm; labels count from 1. Each call writes the whole file or throws std::runtime_error.

#ifndef MESHFILES_H
#define MESHFILES_H

#include "surfaces/Surfaces.h"

#include <string>

namespace voz::examples
{

enum class NastranField
{
    Small, // columns of 8
    Large, // columns of 16 for grid points
    Free   // separated by commas
};

enum class KeywordField
{
    Columns,
    Commas
};

struct Sheet // what a mesh file says beside the mesh
{
    std::string title;
    double thickness; // mm
};

void writeNastran(std::string const & path, SurfaceMesh const & mesh, Sheet const & sheet, NastranField field);
void writeKeyword(std::string const & path, SurfaceMesh const & mesh, Sheet const & sheet, KeywordField field);

} // namespace voz::examples

#endif
