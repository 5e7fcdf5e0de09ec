// Constraints.cpp: elimination of what is prescribed.
//
// A node with one constraint of direction d keeps the unknown along d', d turned by a right angle, and of its two
// tangential equations the row along T d' (T: horizontal components of the tangents), or, where d' is seen almost along
// the normal, the row across T d.

#include "onestep/Constraints.h"

#include "material/HardeningCurve.h"

#include <algorithm>
#include <cmath>

namespace voz::onestep
{

using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kBothComponents = 1000.0; // angles above it
constexpr double kSameDirection = 1.0e-6;  // sine of the angle between two directions
constexpr double kLeastTangent = 0.3;      // |T d'| below which the row is taken across T d
constexpr double kLockFactor = 10.0;       // times the strength of the sheet: no load but a lock

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

struct PlaneRecord
{
    int node;
    Vec2 direction; // its sign does not count
};

bool samePlane(geometry::SurfaceMesh const & i_mesh, PlaneRecord const & i_one, PlaneRecord const & i_other)
{
    if (std::abs(cross(i_one.direction, i_other.direction)) > kSameDirection)
        return false;
    Vec3 const gap = i_mesh.position[at(i_one.node)] - i_mesh.position[at(i_other.node)];
    return std::abs(dot(horizontal(gap), i_one.direction)) <= 1.0e-3 * length(gap);
}

bool liesInSymmetryPlane(Piece const & i_piece, int i_a, int i_b)
{
    auto const of = [&](int node) // the list ascends by node
    {
        return std::equal_range(i_piece.symmetry.begin(), i_piece.symmetry.end(), geometry::SymmetryNode{node, {}},
                                [](auto const & a, auto const & b) { return a.node < b.node; });
    };
    auto const ofA = of(i_a), ofB = of(i_b);
    for (auto a = ofA.first; a != ofA.second; ++a)
        for (auto b = ofB.first; b != ofB.second; ++b)
            if (samePlane(i_piece.mesh, {i_a, a->direction}, {i_b, b->direction}))
                return true;
    return false;
}

} // namespace

void addHold(Vec2 i_direction, double i_target, Hold & io_hold)
{
    if (io_hold.count == 2)
        return;
    if (io_hold.count == 1 && std::abs(cross(i_direction, io_hold.direction[0])) <= kSameDirection)
        return;
    io_hold.direction[at(io_hold.count)] = i_direction;
    io_hold.target[at(io_hold.count)] = i_target;
    ++io_hold.count;
}

void holdWholly(Vec2 i_position, Hold & io_hold)
{
    io_hold = {2, {Vec2{1.0, 0.0}, Vec2{0.0, 1.0}}, {i_position.x, i_position.y}};
}

std::vector<geometry::SymmetryNode> findSymmetry(geometry::SurfaceMesh const & i_mesh,
                                                 geometry::SideTable const & i_sides,
                                                 std::vector<NodeConstraint> const & i_constraints)
{
    std::vector<PlaneRecord> records;
    for (NodeConstraint const & constraint : i_constraints)
        if (constraint.angle <= kBothComponents && constraint.value == 0.0)
            records.push_back({constraint.node, {std::cos(constraint.angle), std::sin(constraint.angle)}});
    std::stable_sort(records.begin(), records.end(),
                     [](PlaneRecord const & a, PlaneRecord const & b) { return a.node < b.node; });
    auto const of = [&](int node)
    {
        return std::equal_range(records.begin(), records.end(), PlaneRecord{node, {}},
                                [](PlaneRecord const & a, PlaneRecord const & b) { return a.node < b.node; });
    };
    std::vector<char> used(records.size(), 0);
    for (geometry::Side const & side : i_sides.free)
    {
        auto const ofA = of(side.a), ofB = of(side.b);
        for (auto a = ofA.first; a != ofA.second; ++a)
            for (auto b = ofB.first; b != ofB.second; ++b)
                if (samePlane(i_mesh, *a, *b))
                    used[at(static_cast<int>(a - records.begin()))] = used[at(static_cast<int>(b - records.begin()))] =
                        1;
    }
    std::vector<geometry::SymmetryNode> symmetry;
    for (std::size_t i = 0; i < records.size(); ++i)
        if (used[i] != 0)
            symmetry.push_back({records[i].node, records[i].direction});
    return symmetry;
}

void applyConstraints(std::vector<NodeConstraint> const & i_constraints, Piece & io_piece)
{
    io_piece.holds.assign(io_piece.mesh.position.size(), {});
    for (NodeConstraint const & constraint : i_constraints)
    {
        Vec2 const position = horizontal(io_piece.mesh.position[at(constraint.node)]);
        Hold & hold = io_piece.holds[at(constraint.node)];
        if (constraint.angle > kBothComponents)
        {
            holdWholly(position, hold);
            continue;
        }
        Vec2 const direction{std::cos(constraint.angle), std::sin(constraint.angle)};
        addHold(direction, dot(position, direction) + constraint.value, hold);
    }
    io_piece.symmetry = findSymmetry(io_piece.mesh, io_piece.sides, i_constraints);
}

double lockStrength(MaterialLaw const & i_law)
{
    return kLockFactor * i_law.thickness * material::HardeningCurve(i_law, {}).stress(1.0);
}

int applyLocks(std::vector<MaterialLaw> const & i_materials, Piece & io_piece)
{
    std::vector<double> strength;
    for (MaterialLaw const & law : i_materials)
        strength.push_back(lockStrength(law));
    int locked = 0;
    std::vector<HolderEdge> kept;
    for (HolderEdge const & edge : io_piece.holders)
    {
        geometry::Cell const & cell = io_piece.mesh.cells[at(edge.element)];
        int const a = cell.node[at(edge.corner1)], b = cell.node[at(edge.corner2)];
        if (liesInSymmetryPlane(io_piece, a, b))
            continue;
        if (edge.force > strength[at(io_piece.material[at(edge.element)])])
        {
            for (int const node : {a, b})
                holdWholly(horizontal(io_piece.mesh.position[at(node)]), io_piece.holds[at(node)]);
            ++locked;
        }
        else
            kept.push_back(edge);
    }
    io_piece.holders = std::move(kept);
    return locked;
}

Vec2 heldPosition(Hold const & i_hold, Vec2 i_flat)
{
    if (i_hold.count == 0)
        return i_flat;
    Vec2 const d = i_hold.direction[0];
    if (i_hold.count == 1)
        return i_flat + (i_hold.target[0] - dot(i_flat, d)) * d;
    Vec2 const e = i_hold.direction[1];
    double const inverse = 1.0 / cross(d, e);
    return {inverse * (i_hold.target[0] * e.y - i_hold.target[1] * d.y),
            inverse * (i_hold.target[1] * d.x - i_hold.target[0] * e.x)};
}

Freedoms freeFreedoms(std::size_t i_nodes)
{
    Freedoms freedoms;
    freedoms.size = static_cast<int>(2 * i_nodes);
    for (std::size_t i = 0; i <= i_nodes; ++i)
        freedoms.first.push_back(static_cast<int>(2 * i));
    for (std::size_t i = 0; i < i_nodes; ++i)
    {
        freedoms.column.push_back({1.0, 0.0});
        freedoms.column.push_back({0.0, 1.0});
    }
    return freedoms;
}

Freedoms heldFreedoms(std::vector<Hold> const & i_holds, std::vector<std::array<Vec3, 2>> const & i_tangent,
                      std::vector<std::array<Vec3, 2>> const & i_projection)
{
    Freedoms freedoms;
    freedoms.first.push_back(0);
    for (std::size_t i = 0; i < i_holds.size(); ++i)
    {
        auto const & row = i_projection[i];
        if (i_holds[i].count == 0)
        {
            freedoms.column.insert(freedoms.column.end(), {Vec2{1.0, 0.0}, Vec2{0.0, 1.0}});
            freedoms.equation.insert(freedoms.equation.end(), {row[0], row[1]});
        }
        else if (i_holds[i].count == 1)
        {
            Vec2 const held = i_holds[i].direction[0];
            Vec2 const across = turnedLeft(held);
            auto const & t = i_tangent[i];
            Vec2 along{dot(horizontal(t[0]), across), dot(horizontal(t[1]), across)};
            if (length(along) < kLeastTangent)
                along = turnedLeft(Vec2{dot(horizontal(t[0]), held), dot(horizontal(t[1]), held)});
            along = unit(along);
            freedoms.column.push_back(across);
            freedoms.equation.push_back(along.x * row[0] + along.y * row[1]);
        }
        freedoms.first.push_back(static_cast<int>(freedoms.column.size()));
    }
    freedoms.size = freedoms.first.back();
    return freedoms;
}

} // namespace voz::onestep
