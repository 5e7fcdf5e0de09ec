// Exports.h: the files that leave the workbench beside the report: blank outline as DXF and SVG, results as VTU, tables
// as CSV, the formed blank as LS-DYNA deck, as NASTRAN bulk data, and its displacements.
//
// Each throws OutputError (OutputFile.h). Same outcome, same bytes.

#ifndef EXPORTS_H
#define EXPORTS_H

#include "Outcome.h"

#include <string>
#include <vector>

namespace voz::workbench
{

struct JobMaterial;

// A piece of an outline: a line, or an arc that leaves its start with the tangent of a quarter of its angle ("bulge",
// positive when it turns left).
struct OutlineVertex
{
    double x = 0.0; // mm
    double y = 0.0;
    double bulge = 0.0; // tan(angle / 4) of the arc to the next vertex; 0: a line
};

struct FittedOutline
{
    std::vector<OutlineVertex> vertices; // closed: the last piece runs to the first vertex
    double deviation = 0.0;              // mm, the largest distance between the loop and its pieces
};

// Lines and arcs that stay within i_tolerance (mm) of the closed loop. n log n in the number of points.
FittedOutline FitOutline(std::vector<std::array<double, 2>> const & i_loop, double i_tolerance);

enum class DxfVersion
{
    R12,  // POLYLINE
    R2000 // LWPOLYLINE
};

struct BlankExportOptions
{
    double tolerance = 0.05; // mm
    DxfVersion version = DxfVersion::R2000;
};

// Layers OUTLINE, HOLES, TRIM, ROLLING_DIRECTION, TEXT; millimetres. Returns the largest deviation in mm.
double WriteBlankDxf(Outcome const & i_outcome, BlankExportOptions const & i_options, std::string const & i_path);
double WriteBlankSvg(Outcome const & i_outcome, BlankExportOptions const & i_options, std::string const & i_path);

// The formed part ("part.vtu"), the flat blank ("blank.vtu"), where the outcome has them the blank on the binder
// ("binder.vtu") and the sprung shape ("springback.vtu"), and the series of all ("results.pvd") in i_folder.
// Float64 points, Float32 fields, appended and deflated. Field names carry their units.
void WriteVtu(Outcome const & i_outcome, std::string const & i_folder);

// "nodes.csv", "elements.csv", "fld.csv", and where the outcome has them "elements_top.csv", "elements_bottom.csv" and
// "springback.csv", in i_folder: UTF-8, decimal point, a header with units.
void WriteTables(Outcome const & i_outcome, std::string const & i_folder);

// "formed.k", the formed blank in SI units with thickness, strains and plastic strain, without a keyword line, and
// "formed_main.k", which includes it and has part, section and material; in i_folder. The elements are one part, of
// the first material. i_materials: those of the job, one at least; here and below.
void WriteFormedDyna(Outcome const & i_outcome, std::vector<JobMaterial> const & i_materials,
                     std::string const & i_folder);

// "formed.nas", nodes and elements with their thickness at the corners, and "formed.bdf", the same as a deck that a
// solver runs, with properties and materials; in i_folder. mm, N, t, MPa.
void WriteFormedNastran(Outcome const & i_outcome, std::vector<JobMaterial> const & i_materials,
                        std::string const & i_folder);

// The way of each node from the part to the flat, mm, tab-separated.
void WriteDisplacementTable(Outcome const & i_outcome, std::string const & i_path);

} // namespace voz::workbench

#endif
