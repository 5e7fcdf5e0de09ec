// RestraintEdges.cpp: given edges or the rim; lengths weigh the forces that were given.

#include "autostrain/RestraintEdges.h"

#include "material/HardeningCurve.h"
#include "onestep/Constraints.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace voz::autostrain
{

using geometry::Vec2;
using geometry::Vec3;
using onestep::HolderEdge;
using onestep::Piece;
using onestep::Problem;

namespace
{

constexpr double kFirstGuess = 0.05;     // of the yield force per length
constexpr double kGreatestGuess = 0.025; // of a lock's force: a quarter of what the sheet can carry
constexpr double kYieldStrain = 0.002;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

Vec3 corner(Piece const & i_piece, HolderEdge const & i_edge, int i_corner)
{
    return i_piece.mesh.position[at(i_piece.mesh.cells[at(i_edge.element)].node[at(i_corner)])];
}

struct Strength // of a material, N/m
{
    double yield, lock;
};

} // namespace

std::vector<HolderEdge> restraintEdges(Problem const & i_problem, Piece const & i_piece)
{
    std::vector<HolderEdge> edges;
    std::set<std::tuple<int, int, int>> seen;
    if (i_problem.holders.empty())
        for (geometry::Side const & side : i_piece.rimSides)
            edges.push_back({side.cell, side.corner, i_piece.mesh.cells[at(side.cell)].next(side.corner), 0.0});
    else
        for (HolderEdge const & edge : i_piece.holders)
            if (seen.insert({edge.element, std::min(edge.corner1, edge.corner2), std::max(edge.corner1, edge.corner2)})
                    .second)
                edges.push_back({edge.element, edge.corner1, edge.corner2, 0.0});
    return edges;
}

FirstLevel firstLevel(Problem const & i_problem, std::vector<Piece> const & i_pieces, double i_guessFactor)
{
    std::vector<Strength> strengths;
    for (onestep::MaterialLaw const & law : i_problem.materials)
        strengths.push_back(
            {law.thickness * material::HardeningCurve(law, {}).stress(kYieldStrain), onestep::lockStrength(law)});
    double given = 0.0, givenLength = 0.0, yield = 0.0, lock = 0.0, whole = 0.0;
    for (Piece const & piece : i_pieces)
    {
        auto const strengthAt = [&](HolderEdge const & edge)
        { return strengths[at(piece.material[at(edge.element)])]; };
        auto const lengthOf = [&](HolderEdge const & edge)
        { return length(corner(piece, edge, edge.corner1) - corner(piece, edge, edge.corner2)); };
        for (HolderEdge const & edge : piece.holders)
            if (edge.force > 0.0 && edge.force <= strengthAt(edge).lock)
            {
                given += edge.force * lengthOf(edge);
                givenLength += lengthOf(edge);
            }
        for (HolderEdge const & edge : restraintEdges(i_problem, piece))
        {
            yield += strengthAt(edge).yield * lengthOf(edge);
            lock += strengthAt(edge).lock * lengthOf(edge);
            whole += lengthOf(edge);
        }
    }
    if (!(whole > 0.0))
        return {0.0, 0.0}; // nothing to restrain
    double const scale = kFirstGuess * yield / whole;
    double const level = i_guessFactor * (given > 0.0 ? given / givenLength : scale);
    return {std::min(level, kGreatestGuess * lock / whole), scale};
}

Pair levelShares(Piece const & i_piece, HolderEdge const & i_edge, std::array<Vec2, 2> const & i_at)
{
    Vec2 const middle = 0.5 * (horizontal(corner(i_piece, i_edge, i_edge.corner1)) +
                               horizontal(corner(i_piece, i_edge, i_edge.corner2)));
    double const first = length(middle - i_at[0]), second = length(middle - i_at[1]);
    if (!(first + second > 0.0))
        return {0.5, 0.5};
    double const share = second / (first + second);
    return {share, 1.0 - share};
}

} // namespace voz::autostrain
