// MeshCheck.h: what is wrong with a mesh, named by the ids of its file, and the mending of what is safe to mend.
//
// Lengths mm, areas mm^2, angles degrees. Ids are those of MeshModel::nodeIds and elementIds. Cost n log n.

#ifndef MESHCHECK_H
#define MESHCHECK_H

#include "MeshFile.h"

#include <array>
#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace voz::workbench
{

enum class FindingKind
{
    RepeatedNode,    // element: fewer than three different corners, or one met twice
    ZeroArea,        // element; value: area, mm^2
    Duplicate,       // element: the same corners as an earlier one (other)
    NonManifoldEdge, // edge node-other node; element: the third on it; value: elements on it
    Flipped,         // element: runs against the rest of its piece
    NotOrientable,   // element, other element: neighbours that no choice of directions makes run alike
    OpenBoundary,    // node: boundary edges do not form simple loops there; value: edges that meet
    ClosePair,       // node, other node: nearer than the tolerance; value: distance, mm
    LoneNode,        // node: no element uses it
    Sliver,          // element; value: smallest corner angle, degrees
    Aspect,          // element; value: longest over shortest side
    Warp,            // element; value: angle between its halves, degrees
    Concave,         // element: a quadrilateral that is not convex, or crosses itself; value: largest angle
    SeparatePiece,   // element: the lowest of a piece beyond the first; value: elements in it
    Count
};
constexpr int kFindingKinds = static_cast<int>(FindingKind::Count);

struct Finding
{
    FindingKind kind = FindingKind::Count;
    int element = 0;               // id; 0: none
    int otherElement = 0;          // id; 0: none
    int node = 0;                  // id; 0: none
    int otherNode = 0;             // id; 0: none
    double value = 0.0;            // see the kind
    std::array<double, 3> place{}; // mm: the node, the middle of the edge or of the element
};

// What the kind is called, in the text and as a key of the JSON.
struct FindingKindName
{
    char const * key;  // "non_manifold_edge"
    char const * text; // "non-manifold edge"
    char const * unit; // of the value; empty if it has none or is a count
    bool isError;      // a solver would stumble; else a matter of quality
};
FindingKindName const & NameOf(FindingKind i_kind);

struct CheckOptions
{
    double pairTolerance = -1.0; // mm; below 0: 1e-5 of the bounding box's diagonal
    double sliverAngle = 10.0;   // degrees: a corner below it
    double aspectLimit = 10.0;   // longest over shortest side above it
    double warpLimit = 15.0;     // degrees above it
    std::size_t listed = 100;    // findings kept of each kind; all are counted
};

struct BoundaryLoop
{
    int edges = 0;
    double length = 0.0;           // mm
    int firstNode = 0;             // id, of the lowest position
    std::array<double, 3> place{}; // mm, of that node
    bool isClosed = true;          // simple and closed
};

struct MeshPiece
{
    int elements = 0;
    double area = 0.0;    // mm^2
    int firstElement = 0; // id, of the lowest position
};

struct MeshReport
{
    int nodes = 0;
    int elements = 0;
    int triangles = 0;
    int quadrilaterals = 0;
    std::array<double, 3> boxLow{};  // mm
    std::array<double, 3> boxHigh{}; // mm
    double area = 0.0;               // mm^2
    double shortestEdge = 0.0;       // mm
    double longestEdge = 0.0;
    double meanEdge = 0.0;
    double pairTolerance = 0.0; // mm, as used
    int freeEdges = 0;
    int innerEdges = 0;              // two elements or more
    std::vector<BoundaryLoop> loops; // longest first
    std::vector<MeshPiece> pieces;   // joined by edges; largest first
    std::array<long, kFindingKinds> counts{};
    std::vector<Finding> findings; // by kind, then position; at most CheckOptions::listed of a kind
    CheckOptions limits;

    long Count(FindingKind i_kind) const { return counts[static_cast<std::size_t>(i_kind)]; }
    bool HasErrors() const; // any finding of a kind that is an error
};

MeshReport CheckMesh(MeshModel const & i_model, CheckOptions const & i_options = {});

// Units in the text, "schema" and units in the key names in JSON.
std::string ReportAsText(MeshModel const & i_model, MeshReport const & i_report);
nlohmann::json ReportAsJson(MeshModel const & i_model, MeshReport const & i_report);

struct RepairOptions
{
    double pairTolerance = -1.0; // mm, as in CheckOptions; 0 joins only nodes at the same place
};

// One thing done, or (isDone false) one left alone because it is not safe.
struct RepairStep
{
    std::string text;
    std::vector<int> ids; // nodes or elements of the file, as the text says
    bool isDone = true;
};

// Joins nodes nearer than the tolerance (the first of them stays where it is), turns a quadrilateral with a repeated
// corner into a triangle, takes out elements that have become none, repeat another, or have no area and fewer than two
// neighbours, makes each piece run the way most of its elements do, takes out lone nodes. Sets follow. A piece
// that cannot be oriented stays.
std::vector<RepairStep> RepairMesh(MeshModel & io_model, RepairOptions const & i_options = {});

} // namespace voz::workbench

#endif
