// Partition.cpp: pieces that hang together by sides are solved one by one.

#include "onestep/Partition.h"

#include "geometry/Orientation.h"
#include "onestep/Constraints.h"

#include <algorithm>

namespace voz::onestep
{

using geometry::Cell;
using geometry::SurfaceMesh;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kDegenerateShare = 1.0e-12; // of the mean area

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// A quadrilateral may be given as four nodes of which two neighbours are the same: it is a triangle. Fewer than three
// different nodes leave a cell of no area.
Cell cellOf(Element const & i_element)
{
    Cell cell;
    cell.node = i_element.nodes;
    cell.count = i_element.nodes[3] == -1 ? 3 : 4;
    if (cell.count == 4 && (cell.node[3] == cell.node[2] || cell.node[3] == cell.node[0]))
    {
        cell.node[3] = -1;
        cell.count = 3;
    }
    return cell;
}

bool repeatsNode(Cell const & i_cell)
{
    for (int a = 0; a < i_cell.count; ++a)
        for (int b = a + 1; b < i_cell.count; ++b)
            if (i_cell.node[at(a)] == i_cell.node[at(b)])
                return true;
    return false;
}

// Index maps from the problem into one piece, reset after each.
struct Maps
{
    std::vector<int> node, cell;
};

void copyCells(Problem const & i_problem, Whole const & i_whole, std::vector<int> const & i_cells, Maps & io_maps,
               Piece & o_piece)
{
    for (int const c : i_cells)
    {
        Cell cell = i_whole.mesh.cells[at(c)];
        for (int corner = 0; corner < cell.count; ++corner)
        {
            int const node = cell.node[at(corner)];
            if (io_maps.node[at(node)] < 0)
            {
                io_maps.node[at(node)] = 0; // numbered below
                o_piece.nodeOf.push_back(node);
            }
        }
        io_maps.cell[at(i_whole.elementOf[at(c)])] = static_cast<int>(o_piece.elementOf.size());
        o_piece.elementOf.push_back(i_whole.elementOf[at(c)]);
        o_piece.material.push_back(i_problem.elements[at(o_piece.elementOf.back())].material);
        o_piece.mesh.cells.push_back(cell);
    }
    std::sort(o_piece.nodeOf.begin(), o_piece.nodeOf.end());
    for (std::size_t i = 0; i < o_piece.nodeOf.size(); ++i)
    {
        io_maps.node[at(o_piece.nodeOf[i])] = static_cast<int>(i);
        o_piece.mesh.position.push_back(i_whole.mesh.position[at(o_piece.nodeOf[i])]);
    }
    for (Cell & cell : o_piece.mesh.cells)
        for (int corner = 0; corner < cell.count; ++corner)
            cell.node[at(corner)] = io_maps.node[at(cell.node[at(corner)])];
}

Vec2 centre(Piece & io_piece)
{
    Vec2 middle;
    for (Vec3 const & x : io_piece.mesh.position)
        middle = middle + (1.0 / static_cast<double>(io_piece.mesh.position.size())) * horizontal(x);
    for (Vec3 & x : io_piece.mesh.position)
        x = x - lifted(middle);
    return middle;
}

void copyActions(Problem const & i_problem, Maps const & i_maps, Piece & io_piece)
{
    for (HolderEdge edge : i_problem.holders)
        if ((edge.element = i_maps.cell[at(edge.element)]) >= 0)
        {
            Cell const & cell = io_piece.mesh.cells[at(edge.element)];
            // the repeated corner of a triangle that was given as a quadrilateral stands for its first or third
            auto const corner = [&](int given) { return given < cell.count ? given : 0; };
            edge.corner1 = corner(edge.corner1);
            edge.corner2 = corner(edge.corner2);
            if (edge.corner1 != edge.corner2)
                io_piece.holders.push_back(edge);
        }
    for (BeadSegment bead : i_problem.beads)
        if ((bead.element = i_maps.cell[at(bead.element)]) >= 0)
            io_piece.beads.push_back(bead);
    if (!i_problem.padShear.empty())
        for (int const element : io_piece.elementOf)
            io_piece.padShear.push_back(i_problem.padShear[at(element)]);
    std::vector<NodeConstraint> constraints;
    for (NodeConstraint constraint : i_problem.constraints)
    {
        if (constraint.node < 0 || constraint.node >= static_cast<int>(i_problem.nodes.size()))
            continue;
        if ((constraint.node = i_maps.node[at(constraint.node)]) >= 0)
            constraints.push_back(constraint);
    }
    applyConstraints(constraints, io_piece);
}

std::string refusalOf(Piece const & i_piece)
{
    std::string const where = "the piece with element " + std::to_string(i_piece.elementOf.front());
    if (i_piece.loops.empty())
        return where + " is closed: a surface without a free edge cannot be laid flat";
    auto const count = [](auto const & list) { return static_cast<long>(list.size()); };
    long const faces = count(i_piece.mesh.cells) + count(i_piece.loops);
    if (count(i_piece.mesh.position) - i_piece.sides.numberOfEdges + faces != 2)
        return where + " has a handle or a tunnel: it cannot be laid flat without a cut";
    return {};
}

void warnAboutSharedNodes(std::vector<Piece> const & i_pieces, std::size_t i_nodes,
                          std::vector<std::string> & io_warnings)
{
    std::vector<int> seen(i_nodes, 0);
    int shared = 0, example = -1;
    for (Piece const & piece : i_pieces)
        for (int const node : piece.nodeOf)
            if (++seen[at(node)] == 2)
            {
                ++shared;
                example = node;
            }
    if (shared > 0)
        io_warnings.push_back(std::to_string(shared) + " nodes join pieces of the mesh without a common side (node " +
                              std::to_string(example) + "); the pieces were solved apart");
}

} // namespace

Whole buildWhole(std::vector<std::array<double, 3>> const & i_nodes, std::vector<Element> const & i_elements,
                 std::vector<int> & o_dropped)
{
    Whole whole;
    for (auto const & x : i_nodes)
        whole.mesh.position.push_back({x[0], x[1], x[2]});
    std::vector<double> areas;
    double mean = 0.0;
    for (Element const & element : i_elements)
    {
        Cell const cell = cellOf(element);
        areas.push_back(repeatsNode(cell) ? 0.0 : cellArea(whole.mesh, cell));
        mean += areas.back() / static_cast<double>(i_elements.size());
    }
    for (std::size_t e = 0; e < areas.size(); ++e)
    {
        if (areas[e] > kDegenerateShare * mean)
        {
            whole.mesh.cells.push_back(cellOf(i_elements[e]));
            whole.elementOf.push_back(static_cast<int>(e));
        }
        else
            o_dropped.push_back(static_cast<int>(e));
    }
    return whole;
}

Partition partition(Problem const & i_problem)
{
    Partition result;
    Whole whole = buildWhole(i_problem.nodes, i_problem.elements, result.dropped);
    if (!result.dropped.empty())
        result.warnings.push_back(std::to_string(result.dropped.size()) +
                                  " elements without area were left out, the first is element " +
                                  std::to_string(result.dropped.front()));
    if (whole.mesh.cells.empty())
    {
        result.refusal = "no element of the part has an area";
        return result;
    }
    geometry::SideTable const sides = buildSideTable(whole.mesh);
    geometry::Pieces const pieces = orient(sides, whole.mesh);
    if (sides.crowded >= 0)
        result.refusal = "more than two elements share a side of element " +
                         std::to_string(whole.elementOf[at(sides.crowded)]) + ": the part is no single sheet";
    else if (pieces.twisted >= 0)
        result.refusal = "the surface has one side only: its winding comes back reversed at element " +
                         std::to_string(whole.elementOf[at(pieces.twisted)]);
    if (!result.refusal.empty())
        return result;

    std::vector<std::vector<int>> cellsOf(at(pieces.count));
    for (int c = 0; c < static_cast<int>(whole.mesh.cells.size()); ++c)
        cellsOf[at(pieces.ofCell[at(c)])].push_back(c);
    Maps maps{std::vector<int>(i_problem.nodes.size(), -1), std::vector<int>(i_problem.elements.size(), -1)};
    for (std::size_t i = 0; i < cellsOf.size() && result.refusal.empty(); ++i)
    {
        Piece piece;
        copyCells(i_problem, whole, cellsOf[i], maps, piece);
        piece.windingIsOpen = pieces.windingIsOpen[i];
        result.shift.push_back(centre(piece));
        piece.sides = buildSideTable(piece.mesh);
        piece.loops = traceLoops(piece.mesh, piece.sides);
        result.refusal = refusalOf(piece);
        copyActions(i_problem, maps, piece);
        for (int const node : piece.nodeOf)
            maps.node[at(node)] = -1;
        for (int const element : piece.elementOf)
            maps.cell[at(element)] = -1;
        completePiece(piece);
        result.pieces.push_back(std::move(piece));
    }
    warnAboutSharedNodes(result.pieces, i_problem.nodes.size(), result.warnings);
    return result;
}

} // namespace voz::onestep
