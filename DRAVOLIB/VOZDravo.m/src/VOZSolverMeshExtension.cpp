// VOZSolverMeshExtension.cpp: a part mesh grown outward to an offset of its outer loop.
//
// The patch between the two lines is that of one closed wire: along the part's boundary, over a bridge to the offset
// line, around it, and back over the bridge. The bridge's points and both ends of it are nodes of their own, so the
// extension stays open along it.
//
// The star from which such a patch grows has its centre inside the part, and the rounds that follow do not unfold it:
// the new elements cover the part as well, once each way, and the ring in between by their signed area alone. On a
// square cup (100 mm, cells of 2.5 mm, offset 10 mm) 437 of 1032 new elements face the other way. Where degenerate
// triangles are dropped the boundary can come out refused, as it does there with cells of 5 and 10 mm.
//
// Of the example meshes, with 10 mm: the bracket, the hat section, the V bend and the binder get a ring that lies
// beside the part (1 new element at most faces the other way); on the cups and the panel 45 to 47 of 100 do. The
// boundary of the result is refused on the binder, the panel and the cylindrical cup.

#include "CATFatalError.h"
#include "CATMathSetOfPointsND.h"
#include "EdgeSets.h"
#include "ElemNormal.h"
#include "FreeEdgeLoops.h"
#include "HoleFilling.h"
#include "MeshExtension.h"
#include "MeshRows.h"
#include "RowMath.h"
#include "VOZCatConfigPaser.h"
#include "VOZFile.h"
#include "VOZInitEvalPOL.h"
#include "VOZSolver.h"
#include "VOZTemplatePath.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

namespace meshextension
{
namespace
{
constexpr double kDegenerate = 0.001; // of a cross product, mm2
constexpr char kRecordFile[] = "C:\\tmp\\mesh.dat";

using NodeRow = double[3];
using ElemRow = int[4];

// Truncates; false beyond the range and for no number.
bool toInt(double i_value, int & o_value)
{
    if (!(std::fabs(i_value) < static_cast<double>(std::numeric_limits<int>::max())))
        return false;
    o_value = static_cast<int>(i_value);
    return true;
}

CATMathSetOfPointsND setOf(std::vector<double> const & i_points)
{
    CATMathSetOfPointsND set(3);
    for (std::size_t i = 0; i + 3 <= i_points.size(); i += 3)
        set.AddPoint(i_points.data() + i);
    return set;
}

// The set from its point k on, cyclically.
CATMathSetOfPointsND startingAt(CATMathSetOfPointsND const & i_set, int k)
{
    CATMathSetOfPointsND turned(3);
    int const count = i_set.GetNumberOfPoints();
    for (int i = 0; i < count; ++i)
    {
        double row[3];
        i_set.GetPoint((k + i) % count, row);
        turned.AddPoint(row);
    }
    return turned;
}

// s equal steps from a towards b, both ends included; without a step a alone.
CATMathSetOfPointsND bridgeOf(double const * a, double const * b, int s)
{
    CATMathSetOfPointsND bridge(3);
    bridge.AddPoint(a);
    double direction[3];
    rowmath::subtract(b, a, direction);
    double const d = rowmath::length(direction);
    if (d > 0.0)
        rowmath::divide(direction, d);
    for (int i = 1; i <= s; ++i)
    {
        double row[3];
        for (int c = 0; c < 3; ++c)
            row[c] = a[c] + i * (d / s) * direction[c];
        bridge.AddPoint(row);
    }
    return bridge;
}

// The wire of the patch; empty if there is none.
CATMathSetOfPointsND closedWire(Wire const & i_wire, std::vector<double> const & i_polyline)
{
    CATMathSetOfPointsND a = setOf(i_wire.points);
    CATMathSetOfPointsND b = setOf(i_polyline);
    double const spacing = a.Length() / a.GetNumberOfPoints();
    b.RemoveMultiplePoints(spacing, 0);
    int numSteps = 0;
    if (a.GetNumberOfPoints() < 2 || b.GetNumberOfPoints() < 2 || !toInt(spacing, numSteps))
        return CATMathSetOfPointsND(3);

    double a0[3];
    double a1[3];
    double b0[3];
    double b1[3];
    a.GetPoint(0, a0);
    a.GetPoint(1, a1);
    int nearest = 0;
    b.DistanceMin(a0, nearest, CATGetDefaultTolerance());
    b = startingAt(b, nearest);
    b.GetPoint(0, b0);
    b.GetPoint(1, b1);
    CATMathSetOfPointsND bridge = bridgeOf(a0, b0, numSteps);
    double alongA[3];
    double alongB[3];
    rowmath::subtract(a1, a0, alongA);
    rowmath::subtract(b1, b0, alongB);
    if (rowmath::dot(alongB, alongA) > 0.0) // the two lines run opposite ways around the wire
        b.AutoInvert();
    a.AddSet(bridge);
    a.AddSet(b);
    bridge.AutoInvert();
    a.AddSet(bridge);
    return a;
}

// The arrays of MeshBoundaryWire, freed with it.
struct Patch
{
    int numPoint = 0;
    int * ids = nullptr;
    float (*coords)[3] = nullptr;
    int nextId = 0;
    int numFace = 0;
    int (*faces)[4] = nullptr;

    Patch() = default;
    Patch(Patch const &) = delete;
    Patch & operator=(Patch const &) = delete;
    ~Patch()
    {
        std::free(ids);
        std::free(coords);
        std::free(faces);
    }
};

// The first points keep their ids; every further one is numbered from i_numNode + 1 on.
bool growPatch(CATMathSetOfPointsND const & i_wire, std::vector<int> const & i_ids, int i_numNode, int i_budget,
               Patch & o_patch)
{
    std::size_t const count = static_cast<std::size_t>(i_wire.GetNumberOfPoints());
    o_patch.ids = static_cast<int *>(std::calloc(count, sizeof(int)));
    o_patch.coords = static_cast<float(*)[3]>(std::calloc(count, sizeof(float[3])));
    if (o_patch.ids == nullptr || o_patch.coords == nullptr)
        return false;
    o_patch.nextId = i_numNode + 1;
    for (std::size_t i = 0; i < count; ++i)
    {
        o_patch.ids[i] = i < i_ids.size() ? i_ids[i] : o_patch.nextId++;
        double row[3];
        i_wire.GetPoint(static_cast<int>(i), row);
        for (int c = 0; c < 3; ++c)
            o_patch.coords[i][c] = static_cast<float>(row[c]);
    }
    o_patch.numPoint = static_cast<int>(count);
    return MeshBoundaryWire(&o_patch.numPoint, &o_patch.ids, &o_patch.coords, &o_patch.nextId, &o_patch.numFace,
                            &o_patch.faces, i_budget) != 0;
}

void append(std::vector<double> & io_rows, double const * i_row)
{
    io_rows.insert(io_rows.end(), i_row, i_row + 3);
}

// All nodes of the mesh, the wire's points beyond the first i_numGiven, the nodes of the patch.
std::vector<double> allNodes(VOZCatMesh const & i_mesh, CATMathSetOfPointsND const & i_wire, std::size_t i_numGiven,
                             Patch const & i_patch)
{
    meshrows::Rows const rows(i_mesh);
    std::vector<double> nodes;
    for (int n = 1; n <= rows.numNode; ++n)
        append(nodes, rows.nodes[n]);
    double row[3];
    for (int i = static_cast<int>(i_numGiven); i < i_wire.GetNumberOfPoints(); ++i)
    {
        i_wire.GetPoint(i, row);
        append(nodes, row);
    }
    for (int i = 0; i < i_patch.numPoint; ++i)
    {
        for (int c = 0; c < 3; ++c)
            row[c] = static_cast<double>(i_patch.coords[i][c]);
        append(nodes, row);
    }
    return nodes;
}

bool isDegenerate(std::vector<double> const & i_nodes, int const * i_face)
{
    for (int corner = 0; corner < 3; ++corner)
    {
        double const * p[3];
        for (int k = 0; k < 3; ++k)
            p[k] = i_nodes.data() + 3 * (static_cast<std::size_t>(i_face[(corner + k) % 3]) - 1);
        double u[3];
        double v[3];
        double product[3];
        rowmath::subtract(p[1], p[0], u);
        rowmath::subtract(p[2], p[0], v);
        rowmath::cross(u, v, product);
        if (rowmath::length(product) < kDegenerate)
            return true;
    }
    return false;
}

std::vector<int> allElements(VOZCatMesh const & i_mesh, std::vector<double> const & i_nodes, Patch const & i_patch)
{
    meshrows::Rows const rows(i_mesh);
    std::vector<int> elems;
    for (int e = 1; e <= rows.numElem; ++e)
        for (int k = 0; k < 4; ++k)
            elems.push_back(rows.corner(e, k));
    for (int i = 1; i <= i_patch.numFace; ++i)
        if (!isDegenerate(i_nodes, i_patch.faces[i]))
            elems.insert(elems.end(), i_patch.faces[i], i_patch.faces[i] + 4);
    return elems;
}

void writeRecordFile(VOZCatMesh const & i_mesh)
{
    std::FILE * const file = VOZOpenFile(kRecordFile, "w");
    if (file == nullptr)
        return;
    WriteRecord(file, i_mesh);
    std::fclose(file);
}
} // namespace

bool Extend(VOZCatMesh & io_mesh, Wire const & i_wire, std::vector<double> const & i_polyline, double i_iterationFactor)
{
    CATMathSetOfPointsND const wire = closedWire(i_wire, i_polyline);
    int budget = 0;
    if (wire.GetNumberOfPoints() == 0 || !toInt(wire.GetNumberOfPoints() * i_iterationFactor, budget))
        return false;
    Patch patch;
    if (!growPatch(wire, i_wire.ids, io_mesh.numNode(), budget, patch))
        return false;
    std::vector<double> const nodes = allNodes(io_mesh, wire, i_wire.ids.size(), patch);
    std::vector<int> const elems = allElements(io_mesh, nodes, patch);
    io_mesh =
        VOZCatMesh(static_cast<int>(nodes.size() / 3), static_cast<int>(elems.size() / 4),
                   reinterpret_cast<NodeRow const *>(nodes.data()), reinterpret_cast<ElemRow const *>(elems.data()));
    ElemNormal normals;
    normals.compute(io_mesh);
    normals.CheckFlipAllElemNormals(&io_mesh);
    writeRecordFile(io_mesh);
    return true;
}
} // namespace meshextension

namespace
{
using meshextension::Wire;

struct Settings
{
    int extend = 0;
    double offsetFactor = 1.0;
    double iterationFactor = 1.0;
};

// False if there is no configuration file. A key counts from the second entry on: that on the first is as if absent.
bool readSettings(Settings & o_settings)
{
    char path[VOZTemplatePath::kPathSize] = "";
    if (VOZTemplatePath::GetConfigPath(path) != 0)
        return false;
    VOZCatConfigPaser file(path);
    if (file.ReadAndPaser() != 0)
        return false;
    char extendKey[] = "ExtendMeshPart";
    char offsetKey[] = "ExtendMeshOffsetFactor";
    char iterationKey[] = "ExtendMeshIterationFactor";
    Settings found;
    if (file.GetInteger(extendKey, found.extend) > 0)
        o_settings.extend = found.extend;
    if (file.GetDouble(offsetKey, found.offsetFactor) > 0)
        o_settings.offsetFactor = found.offsetFactor;
    if (file.GetDouble(iterationKey, found.iterationFactor) > 0)
        o_settings.iterationFactor = found.iterationFactor;
    return true;
}

// Empty if the boundary is refused or has no outer loop.
Wire outerLoop(VOZCatMesh const & i_mesh)
{
    Wire wire;
    double * lent = nullptr;
    i_mesh.EvalNodesNormal(lent);
    std::unique_ptr<double[]> const padNodesNormals(lent);
    if (!VOZ_ASSERTION(padNodesNormals != nullptr, "padNodesNormals != NULL"))
        return wire;
    FreeEdgeSet const edges(i_mesh);
    int error = 0;
    FreeEdgeLoops const loops(edges, i_mesh, &error);
    if (error != 0)
        return wire;
    meshrows::Rows const rows(i_mesh);
    for (int i = 1; i <= loops.numOuter(); ++i)
    {
        int const a = edges.startNode(loops.edge(i));
        int const b = edges.endNode(loops.edge(i));
        if (!rows.isNode(a)) // reported by the normals
            return Wire();
        wire.ids.push_back(a);
        meshextension::append(wire.points, rows.node(a));
        meshextension::append(wire.normals, padNodesNormals.get() + 3 * (static_cast<std::size_t>(a) - 1));
        wire.perimeter += rowmath::distance(rows.node(b), rows.node(a));
    }
    return wire;
}
} // namespace

void VOZSolver::MeshExtension(VOZCatMesh & io_mesh, double i_dOffset, double i_dPolylineA, double i_dPolylineB)
{
    Settings settings;
    if (!readSettings(settings) || settings.extend <= 0)
        return;
    Wire wire = outerLoop(io_mesh);
    if (wire.ids.empty())
        return;
    double average[3];
    io_mesh.EvalAverageNormal(average);
    double const offset = i_dOffset <= 0.001 ? wire.perimeter * settings.offsetFactor * 0.02 : i_dOffset;
    int count = static_cast<int>(wire.ids.size());
    std::unique_ptr<double[]> const polyline(
        VOZInitEvalPOLNew(count, wire.points.data(), wire.normals.data(), average, offset, i_dPolylineA, i_dPolylineB));
    if (polyline == nullptr)
        return;
    std::vector<double> const points(polyline.get(), polyline.get() + 3 * static_cast<std::size_t>(count));
    meshextension::Extend(io_mesh, wire, points, settings.iterationFactor);
}
