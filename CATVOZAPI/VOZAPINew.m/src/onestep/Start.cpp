// Start.cpp: Tutte, symmetric Dirichlet energy, placing, penalties.

#include "onestep/Start.h"

#include "onestep/Kinematics.h"
#include "onestep/RigidMotion.h"
#include "onestep/SymmetricDirichlet.h"
#include "onestep/Tutte.h"

#include <algorithm>

namespace voz::onestep
{

using geometry::IntegrationPoint;
using geometry::Vec2;

namespace
{

constexpr double kLastPenalty = 1000.0;
constexpr double kPenalties[] = {0.1, 10.0, kLastPenalty};
constexpr double kLatePenalties[] = {1.0e5, 1.0e7}; // only where setting the held values would still fold a cell
constexpr double kStartShare = 0.05;                // of the progress

double medianDeterminant(Piece const & i_piece, std::span<Vec2 const> i_flat)
{
    std::vector<double> values;
    values.reserve(i_piece.points.points.size());
    for (IntegrationPoint const & point : i_piece.points.points)
        values.push_back(det(inverseGradient(point, i_flat)));
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The first folded cell; -1: none.
int foldedCell(Piece const & i_piece, std::span<Vec2 const> i_flat)
{
    for (IntegrationPoint const & point : i_piece.points.points)
        if (!(det(inverseGradient(point, i_flat)) > 0.0))
            return point.cell;
    return -1;
}

void mirror(std::vector<Vec2> & io_flat)
{
    for (Vec2 & x : io_flat)
        x.x = -x.x;
}

std::vector<Vec2> embed(Piece const & i_piece)
{
    for (bool const crossed : {false, true})
    {
        std::vector<Vec2> flat = embedByTutte(i_piece, crossed);
        if (flat.empty())
            continue;
        if (medianDeterminant(i_piece, flat) < 0.0)
            mirror(flat);
        if (foldedCell(i_piece, flat) < 0)
            return flat;
    }
    return {};
}

// A piece that faces up as much as down shows by its constraints which way it was opened.
void settleWinding(std::vector<Vec2> & io_flat, Piece & io_piece)
{
    std::vector<Vec2> mirrored = io_flat;
    mirror(mirrored);
    if (!(placingError(io_piece, mirrored) < placingError(io_piece, io_flat)))
        return;
    for (geometry::Cell & cell : io_piece.mesh.cells)
        cell.sign = -cell.sign;
    completePiece(io_piece);
    io_flat = std::move(mirrored);
}

std::vector<Vec2> heldFlat(Piece const & i_piece, std::vector<Vec2> i_flat)
{
    for (std::size_t i = 0; i < i_flat.size(); ++i)
        i_flat[i] = heldPosition(i_piece.holds[i], i_flat[i]);
    return i_flat;
}

// Brings the constraints in. False: the constrained flat folds.
bool applyHolds(Piece const & i_piece, std::function<bool()> const & i_stop, SymmetricDirichlet & io_energy,
                Start & io_start)
{
    for (double const penalty : kPenalties)
    {
        auto const aim = penalty == kLastPenalty ? SymmetricDirichlet::Aim::Final : SymmetricDirichlet::Aim::OnTheWay;
        io_start.steps += io_energy.minimise(penalty, aim, i_stop, io_start.flat);
    }
    std::vector<Vec2> held = heldFlat(i_piece, io_start.flat);
    for (double const penalty : kLatePenalties)
    {
        if (foldedCell(i_piece, held) < 0)
            break;
        io_start.steps += io_energy.minimise(penalty, SymmetricDirichlet::Aim::Final, i_stop, io_start.flat);
        held = heldFlat(i_piece, io_start.flat);
    }
    io_start.flat = std::move(held);
    return foldedCell(i_piece, io_start.flat) < 0;
}

} // namespace

Start findStart(Monitor & io_monitor, Piece & io_piece)
{
    Start start;
    auto const fail = [&](std::string const & i_reason)
    {
        start.flat.clear();
        start.reason = i_reason;
        return start;
    };
    start.flat = embed(io_piece);
    if (start.flat.empty())
        return fail(
            "no flat without folds was found for the mesh; look for elements that overlap or hang by a single node");
    auto const stop = [&] { return io_monitor.report(0.0); };
    SymmetricDirichlet energy(io_piece);
    bool const held =
        std::any_of(io_piece.holds.begin(), io_piece.holds.end(), [](Hold const & hold) { return hold.count > 0; });
    auto const aim = held ? SymmetricDirichlet::Aim::OnTheWay : SymmetricDirichlet::Aim::Final;
    start.steps = energy.minimise(0.0, aim, stop, start.flat);
    if (io_piece.windingIsOpen)
        settleWinding(start.flat, io_piece);
    placeOverPart(io_piece, start.flat);
    if (held && !applyHolds(io_piece, stop, energy, start))
    {
        int const cell = foldedCell(io_piece, start.flat);
        return fail("the constraints fold the flat at element " +
                    std::to_string(io_piece.elementOf[static_cast<std::size_t>(cell)]));
    }
    io_monitor.report(kStartShare);
    return start;
}

} // namespace voz::onestep
