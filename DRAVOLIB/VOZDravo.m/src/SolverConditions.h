// SolverConditions.h: what acts on the sheet, walked in one order for the records of both in-process drivers.
//
// The visitors get 0-based elements, forces in N/m and pressures in Pa; nodes stay as the process definition holds
// them. A record without its array of rows is passed over, but the counts take it at its word.

#ifndef SOLVERCONDITIONS_H
#define SOLVERCONDITIONS_H

#include "EdgeSets.h"
#include "ElemProperty.h"
#include "LoopFilters.h"
#include "MeshRows.h"
#include "SolverRows.h"
#include "Symmetry.h"

#include <algorithm>
#include <limits>

namespace conditions
{
constexpr double kUpliftPerForce = 8.9934075e-07; // of the kernel's records; the deck has a factor of its own
constexpr float kLargeLoop = 0.2F;                // of the outer loop's length

// A count that is claimed may be any number: beyond the range its end stands for it.
inline int CountOf(long long i_nCount)
{
    return static_cast<int>(std::min<long long>(i_nCount, std::numeric_limits<int>::max()));
}

// The sum of rows over the entries 1 .. count; a negative one is none.
template <class RowsOf>
int CountRows(int i_nCount, RowsOf const & i_rowsOf)
{
    long long nSum = 0;
    for (int i = 1; i <= i_nCount; ++i)
        nSum += std::max(i_rowsOf(i), 0);
    return CountOf(nSum);
}

inline int CountHeldEdges(ElemProperty const & i_property, ProcessEdgeSequence const & i_processEdges)
{
    long long const nSingle =
        CountRows(i_property.sizeBlankHolders(), [&](int i) { return i_property.blankHolders(i).edgeCount; });
    return CountOf(nSingle + i_processEdges.numBlankHolder());
}

inline int CountBeadEdges(ElemProperty const & i_property)
{
    return CountRows(i_property.sizeDrawBeads(), [&](int i) { return i_property.drawBeads(i).edgeCount; });
}

// A pad without a row lists no elements. One that is handed over as an outline has none, and its arrays begin at 0:
// they are not to be read here.
inline int CountPadElements(ElemProperty const & i_property)
{
    if (i_property.pressPadSize() == nullptr)
        return 0;
    return CountRows(i_property.sizePressPads(),
                     [&](int i) { return i_property.pressPadRow(i) != nullptr ? i_property.pressPadSize(i) : 0; });
}

inline int CountTableNodes(ElemProperty const & i_property)
{
    return CountRows(i_property.sizeDispBC(), [&](int i) { return i_property.dispBCs(i).size; });
}

// With one plane, whichever it is, the list is that of the yz plane.
inline int CountSymmetryNodes(Symmetry const & i_symmetry, LoopSymmetryFilter const & i_onPlane)
{
    return (i_symmetry.halfSymmetry() ? i_onPlane.numYZsymmetry() : 0) +
           (i_symmetry.quarterSymmetry() ? i_onPlane.numXZsymmetry() : 0);
}

// The restraint of a single holder along its edges; one without a length has none.
inline double HolderRestraint(BlankHolder const & i_holder, VOZCatMesh const & i_mesh, double i_dFriction)
{
    double const dLength = i_holder.length(&i_mesh) / solverrows::kMillimetresPerMetre;
    return dLength > 0.0 ? i_dFriction * 2.0 * i_holder.force / dLength : 0.0;
}

// visit(element, force, first, second): the process edges, then the single holders in order. The last two are the
// local positions of the edge's nodes in the element.
template <class Visit>
void ForEachHeldEdge(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges, ProcessEdgeSequence const & i_processEdges,
                     ElemProperty const & i_property, double i_dRestraint, double i_dFriction, Visit i_visit)
{
    auto const visitEdge = [&](int element, double force, int node1, int node2)
    {
        i_visit(meshrows::positionOf(element, 1), force, i_mesh.GetElementNodePosition(element, node1),
                i_mesh.GetElementNodePosition(element, node2));
    };
    for (int i = 1; i <= i_processEdges.numBlankHolder(); ++i)
    {
        int const k = i_processEdges.blankHolderEdge(i);
        visitEdge(i_edges.elem(k), i_dRestraint, i_edges.startNode(k), i_edges.endNode(k));
    }
    for (int i = 1; i <= i_property.sizeBlankHolders(); ++i)
    {
        BlankHolder const & holder = i_property.blankHolders(i);
        if (holder.edges == nullptr)
            continue;
        double const dForce = HolderRestraint(holder, i_mesh, i_dFriction);
        for (int k = 0; k < holder.edgeCount; ++k)
            visitEdge(holder.edges[k].element, dForce, holder.edges[k].node1, holder.edges[k].node2);
    }
}

// visit(edge, force, uplift)
template <class Visit>
void ForEachBeadEdge(ElemProperty const & i_property, Visit i_visit)
{
    for (int i = 1; i <= i_property.sizeDrawBeads(); ++i)
    {
        DrawBead const & bead = i_property.drawBeads(i);
        for (int k = 0; bead.edges != nullptr && k < bead.edgeCount; ++k)
            i_visit(bead.edges[k], bead.force, bead.force * kUpliftPerForce);
    }
}

// The rows of a pad list elements here. A later pad overwrites an earlier one; what is no element is passed over.
inline void FillPadShear(ElemProperty const & i_property, double i_dFriction, int i_nNumElements, double * io_padShear)
{
    if (i_property.pressPadVal() == nullptr)
        return;
    for (int i = 1; i <= i_property.sizePressPads(); ++i)
    {
        int const * const panRow = i_property.pressPadRow(i);
        if (panRow == nullptr)
            continue;
        double const dShear = i_property.pressPadVal(i) * i_dFriction;
        for (int k = 1; k <= i_property.pressPadSize(i); ++k)
            if (panRow[k] >= 1 && panRow[k] <= i_nNumElements)
                io_padShear[panRow[k] - 1] = dShear;
    }
}

// visit(node, table)
template <class Visit>
void ForEachTableNode(ElemProperty const & i_property, Visit i_visit)
{
    for (int i = 1; i <= i_property.sizeDispBC(); ++i)
    {
        DispBC const & table = i_property.dispBCs(i);
        for (int k = 0; table.nodes != nullptr && k < table.size; ++k)
            i_visit(table.nodes[k], table);
    }
}

// visit(node, onYZ): the yz list, then the xz list.
template <class Visit>
void ForEachSymmetryNode(Symmetry const & i_symmetry, LoopSymmetryFilter const & i_onPlane, Visit i_visit)
{
    for (int i = 0; i_symmetry.halfSymmetry() && i < i_onPlane.numYZsymmetry(); ++i)
        i_visit(i_onPlane.yzNode(i), true);
    for (int i = 0; i_symmetry.quarterSymmetry() && i < i_onPlane.numXZsymmetry(); ++i)
        i_visit(i_onPlane.xzNode(i), false);
}
} // namespace conditions

#endif
