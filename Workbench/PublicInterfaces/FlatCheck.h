// FlatCheck.h: whether a flat pattern lies over itself: edges that cross others, and elements that are turned over.
//
// The pattern lies in the xy plane of its mesh; z is not looked at. Two edges that share a node never cross. Segments
// are compared in single precision, on the pattern moved to the origin and brought to one size: a crossing nearer than
// 1e-5 of a side to its end does not count, nor do edges that lie along each other. Cost: n log n in the edges, for
// patterns whose edges are of like size.

#ifndef FLATCHECK_H
#define FLATCHECK_H

#include "MeshFile.h"

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace voz::workbench
{

struct FlatEdge
{
    int start = 0; // node positions, 1-based
    int end = 0;
    bool isFree = false; // on the boundary
};

struct FlatCrossing
{
    FlatEdge edge;
    FlatEdge partner;              // one of those that it crosses
    std::array<double, 2> place{}; // mm
    bool isOverlap = false;        // two free edges: the outline crosses itself; else the sheet is folded
};

struct FlatFaults
{
    std::vector<FlatCrossing> crossings; // every edge that crosses another: free ones first, then inner, by number
    std::vector<int> turned; // elements that run against the pattern as a whole, positions from 1, ascending
    double depth = 0.0;      // mm, extent along z: what is not flat is judged by its x and y alone

    bool AreThere() const { return !crossings.empty() || !turned.empty(); }
};

FlatFaults CheckFlat(VOZCatMesh const & i_pattern);

// Ids are those of the mesh file. The text names i_listed of a kind and counts all; JSON has all.
std::string FlatFaultsAsText(FlatFaults const & i_faults, MeshModel const & i_model, std::size_t i_listed);
nlohmann::json FlatFaultsAsJson(FlatFaults const & i_faults, MeshModel const & i_model);

} // namespace voz::workbench

#endif
