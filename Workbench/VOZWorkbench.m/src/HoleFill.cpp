// HoleFill.cpp: what has to hold before holes are filled, and the mesh afterwards.

#include "HoleFill.h"

#include "HoleFilling.h"
#include "MeshCheck.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

namespace voz::workbench
{

namespace
{
struct Freed
{
    void operator()(void * i_memory) const { std::free(i_memory); }
};
template <class Row>
using Rows = std::unique_ptr<Row[], Freed>; // C memory, as the filling asks for

using NodeRow = double[3];
using ElemRow = int[4];

template <class Row>
Rows<Row> CopyOf(Row const * i_rows, int i_count)
{
    auto const count = static_cast<std::size_t>(i_count);
    Rows<Row> rows(static_cast<Row *>(std::malloc(std::max<std::size_t>(count, 1) * sizeof(Row))));
    if (!rows)
        throw std::bad_alloc();
    for (std::size_t i = 0; i < count; ++i)
        std::ranges::copy(i_rows[i + 1], rows[i]);
    return rows;
}

// The filling does not notice a boundary that it cannot follow.
void RequireHoles(MeshModel const & i_model, MeshReport const & i_report, std::string const & i_name)
{
    for (FindingKind const kind : {FindingKind::RepeatedNode, FindingKind::NonManifoldEdge, FindingKind::NotOrientable,
                                   FindingKind::OpenBoundary, FindingKind::SeparatePiece})
        if (long const count = i_report.Count(kind); count > 0)
            throw InputError(i_name, 0, 0,
                             "its holes cannot be told: " + std::to_string(count) + " x " + NameOf(kind).text +
                                 "; \"dravo inspect\" names them, and --repair mends what is safe");
    if (i_model.mesh.GetFirstNodeNumber() != 0)
        throw InputError(i_name, 0, 0, "its nodes are not numbered by position");
}

// The ids go on behind the highest.
void NumberOn(std::vector<int> & io_ids, std::size_t i_count, std::string const & i_name)
{
    long long next = io_ids.empty() ? 0 : *std::ranges::max_element(io_ids);
    if (next + static_cast<long long>(i_count - io_ids.size()) > std::numeric_limits<int>::max())
        throw InputError(i_name, 0, 0, "there are no ids left behind " + std::to_string(next));
    while (io_ids.size() < i_count)
        io_ids.push_back(static_cast<int>(++next));
}
} // namespace

HoleFill FillHoles(MeshModel & io_model, std::string const & i_name)
{
    MeshReport const report = CheckMesh(io_model);
    RequireHoles(io_model, report, i_name);
    HoleFill done;
    if (report.loops.size() < 2)
        return done;
    VOZCatMesh & mesh = io_model.mesh;
    int numNode = mesh.numNode();
    int numElem = mesh.numElem();
    int const oldElements = numElem;
    NodeRow * nodes = CopyOf<NodeRow>(mesh.GetNodeData(), numNode).release();
    ElemRow * elements = CopyOf<ElemRow>(mesh.GetElemData(), numElem).release();
    int const failed = FillAllHoles(numNode, &nodes, numElem, &elements);
    Rows<NodeRow> const ownNodes(nodes); // grown, and perhaps moved
    Rows<ElemRow> const ownElements(elements);
    if (failed != 0)
        throw InputError(i_name, 0, 0, "its holes could not be filled: there is not enough memory for the patches");
    done.nodes = numNode - mesh.numNode();
    done.elements = numElem - oldElements;
    NumberOn(io_model.nodeIds, static_cast<std::size_t>(numNode), i_name);
    NumberOn(io_model.elementIds, static_cast<std::size_t>(numElem), i_name);
    mesh = VOZCatMesh(numNode, numElem, nodes, elements);
    ElementSet filled;
    filled.name = "filled";
    for (ElementSet const & set : io_model.sets)
    {
        filled.id = std::max(filled.id, set.id);
        filled.thickness = std::max(filled.thickness, set.thickness);
    }
    ++filled.id;
    for (int e = oldElements + 1; e <= numElem; ++e)
        filled.elements.push_back(e);
    io_model.sets.push_back(std::move(filled));
    std::size_t const left = CheckMesh(io_model).loops.size();
    if (left == 0 || left == report.loops.size())
        throw InputError(i_name, 0, 0,
                         "its holes cannot be told from its outer edge: it has " + std::to_string(report.loops.size()) +
                             " loops of free edges, and none encloses the others in the view along its mean normal");
    done.holes = static_cast<int>(report.loops.size() - left);
    return done;
}

} // namespace voz::workbench
