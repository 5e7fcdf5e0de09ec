// OuterActions.cpp: restraint of holder, beads and pads.

#include "onestep/OuterActions.h"

#include <cmath>

namespace voz::onestep
{

using geometry::Cell;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kDirectionShare = 1.0e-3; // of the element's size: a displacement below it does not tell a direction
constexpr double kPadSmoothing = 1.0e-3;   // of the part's size

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

void addHolder(Piece const & i_piece, HolderEdge const & i_edge, std::vector<Vec3> & io_force)
{
    Cell const & cell = i_piece.mesh.cells[at(i_edge.element)];
    bool const forward = cell.next(i_edge.corner1) == i_edge.corner2;
    int const a = cell.node[at(forward ? i_edge.corner1 : i_edge.corner2)];
    int const b = cell.node[at(forward ? i_edge.corner2 : i_edge.corner1)];
    Vec3 const side = i_piece.mesh.position[at(b)] - i_piece.mesh.position[at(a)];
    // Side and normal both turn with the winding, so the given one serves.
    Vec3 const normal = cell.sign * unit(vectorArea(i_piece.mesh, cell));
    Vec3 const half = (0.5 * i_edge.force * length(side)) * unit(cross(side, normal));
    io_force[at(a)] = io_force[at(a)] + half;
    io_force[at(b)] = io_force[at(b)] + half;
}

std::array<double, 4> shapeFunctions(int i_count, double i_xi, double i_eta)
{
    if (i_count == 3)
        return {1.0 - i_xi - i_eta, i_xi, i_eta, 0.0};
    return {0.25 * (1.0 - i_xi) * (1.0 - i_eta), 0.25 * (1.0 + i_xi) * (1.0 - i_eta),
            0.25 * (1.0 + i_xi) * (1.0 + i_eta), 0.25 * (1.0 - i_xi) * (1.0 + i_eta)};
}

// +1 or -1: which side of a bead is the outer one.
double outerSign(Piece const & i_piece, Cell const & i_cell, Vec3 i_across, Vec3 i_meshCentre,
                 std::span<Vec2 const> i_start)
{
    Vec3 drift, centre;
    for (int k = 0; k < i_cell.count; ++k)
    {
        Vec3 const p = i_piece.mesh.position[at(i_cell.node[at(k)])];
        drift = drift + (1.0 / i_cell.count) * lifted(i_start[at(i_cell.node[at(k)])] - horizontal(p));
        centre = centre + (1.0 / i_cell.count) * p;
    }
    double const size = std::sqrt(cellArea(i_piece.mesh, i_cell));
    double measure = dot(i_across, drift);
    if (std::abs(measure) < kDirectionShare * size)
        measure = dot(i_across, centre - i_meshCentre);
    return measure < 0.0 ? -1.0 : 1.0;
}

bool addBead(Piece const & i_piece, BeadSegment const & i_bead, Vec3 i_meshCentre, std::span<Vec2 const> i_start,
             std::vector<Vec3> & io_force)
{
    auto const & q = i_bead.natural;
    if (q[0] == 0.0 && q[1] == 0.0 && q[2] == 0.0 && q[3] == 0.0)
        return false;
    Cell const & cell = i_piece.mesh.cells[at(i_bead.element)];
    auto const first = shapeFunctions(cell.count, q[0], q[1]);
    auto const second = shapeFunctions(cell.count, q[2], q[3]);
    Vec3 along;
    for (int k = 0; k < cell.count; ++k)
        along = along + (second[at(k)] - first[at(k)]) * i_piece.mesh.position[at(cell.node[at(k)])];
    Vec3 const normal = unit(vectorArea(i_piece.mesh, cell));
    Vec3 const across = unit(cross(along, normal));
    double const sign = outerSign(i_piece, cell, across, i_meshCentre, i_start);
    Vec3 const force = (sign * i_bead.force * length(along)) * across;
    for (int k = 0; k < cell.count; ++k)
    {
        Vec3 & sum = io_force[at(cell.node[at(k)])];
        sum = sum + (0.5 * (first[at(k)] + second[at(k)])) * force;
    }
    return true;
}

} // namespace

void addHolderForces(Piece const & i_piece, std::vector<HolderEdge> const & i_edges, std::vector<Vec3> & io_force)
{
    for (HolderEdge const & edge : i_edges)
        addHolder(i_piece, edge, io_force);
}

ConstantForces buildConstantForces(Piece const & i_piece, std::span<Vec2 const> i_start)
{
    ConstantForces forces;
    forces.force.assign(i_piece.mesh.position.size(), {});
    addHolderForces(i_piece, i_piece.holders, forces.force);
    Vec3 centre;
    for (std::size_t i = 0; i < i_piece.mesh.position.size(); ++i)
        centre = centre + (i_piece.weight[i] / i_piece.area) * i_piece.mesh.position[i];
    for (BeadSegment const & bead : i_piece.beads)
        if (!addBead(i_piece, bead, centre, i_start, forces.force))
            ++forces.beadsSkipped;
    return forces;
}

PadFriction::PadFriction(Piece const & i_piece) : m_piece(i_piece), m_delta(kPadSmoothing * std::sqrt(i_piece.area))
{
    for (int c = 0; c < static_cast<int>(i_piece.padShear.size()); ++c)
    {
        if (i_piece.padShear[at(c)] == 0.0)
            continue;
        Cell const & cell = i_piece.mesh.cells[at(c)];
        m_cells.push_back(c);
        m_normal.push_back(unit(vectorArea(i_piece.mesh, cell)));
        m_share.push_back(i_piece.padShear[at(c)] * cellArea(i_piece.mesh, cell) / cell.count);
    }
}

PadForce PadFriction::evaluate(int i_place, int i_corner, std::span<Vec2 const> i_flat) const
{
    int const node = m_piece.mesh.cells[at(m_cells[at(i_place)])].node[at(i_corner)];
    Vec3 const normal = m_normal[at(i_place)];
    auto const inPlane = [&](Vec3 a) { return a - dot(a, normal) * normal; };
    Vec3 const u = inPlane(lifted(i_flat[at(node)] - horizontal(m_piece.mesh.position[at(node)])));
    double const w = std::sqrt(dot(u, u) + m_delta * m_delta);
    double const share = m_share[at(i_place)];
    PadForce result{(share / w) * u, {}};
    for (int i = 0; i < 2; ++i)
    {
        Vec3 const du = inPlane(i == 0 ? Vec3{1.0, 0.0, 0.0} : Vec3{0.0, 1.0, 0.0});
        result.slope[i] = (share / w) * (du - (dot(u, du) / (w * w)) * u);
    }
    return result;
}

} // namespace voz::onestep
