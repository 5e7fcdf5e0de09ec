// Plots.h: a formed blank as NASTRAN bulk data, and its displacements as a table.
//
// Both write to a stream of the caller, number by position, and return 0, or -1 for a null stream. Values go out in the
// unit that they are held in.

#ifndef PLOTS_H
#define PLOTS_H

#include "ExportedByVOZDravo.h"

#include <cstdio>

class Result;
class VOZCatMesh;

// GRID*, CTRIA3 (property 3) and CQUAD4 (property 4) with the thickness at each corner: the mean over the elements
// there. A node without an element breaks a contract.
ExportedByVOZDravo int WriteNastranFile(std::FILE * i_pStream, VOZCatMesh & i_mesh, Result & i_result);

// Tab-separated: place and displacement of each node; i_strUnit names the unit in the head.
ExportedByVOZDravo int WriteDisplacements(std::FILE * i_pStream, VOZCatMesh & i_mesh, Result & i_result,
                                          char const * i_strUnit);

#endif
