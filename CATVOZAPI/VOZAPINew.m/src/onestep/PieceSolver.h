// PieceSolver.h: one connected piece from its start to its results.
//
// After solve() everything that the solution rests on stays at hand for what is built on top of it: the system with its
// law and forces, the holding, and Newton with its last factorisation.

#ifndef PIECESOLVER_H
#define PIECESOLVER_H

#include "onestep/Ladder.h"
#include "onestep/Results.h"
#include "onestep/TangentFrame.h"

namespace voz::onestep
{

class PieceTuner;

class PieceSolver
{
public:
    // All outlive this.
    PieceSolver(Problem const & i_problem, Settings const & i_settings, Piece & io_piece, Monitor & io_monitor);

    // Status and, where it is not Converged, the reason. Failed, Refused and Stopped leave no flat.
    // io_pTuner may be null; it is called when the piece is in equilibrium.
    Status solve(PieceTuner * io_pTuner = nullptr);

    // For tuners: equilibrium under other constant outer forces, from i_from. False: none was found, or the caller
    // asked for a stop; forces and flat are then what they were.
    bool resolve(std::vector<geometry::Vec3> i_forces, std::vector<geometry::Vec2> i_from);

    // The same from a flat without folds that is near the answer, for material with a history (empty: without). The
    // flat is not placed anew, so that directions in it keep their meaning.
    Status solveFrom(std::vector<geometry::Vec2> i_flat, std::vector<PointHistory> i_history);
    void place(); // lays the flat over the part where the constraints leave it free

    std::string const & message() const { return m_message; }
    std::vector<std::string> const & warnings() const { return m_warnings; }
    void warn(std::string i_warning) { m_warnings.push_back(std::move(i_warning)); }

    std::vector<geometry::Vec2> const & flat() const { return m_flat; }
    LadderOutcome const & outcome() const { return m_outcome; }
    int startSteps() const { return m_startSteps; }
    int lockedEdges() const { return m_lockedEdges; }
    double startSeconds() const { return m_startSeconds; }
    Piece const & piece() const { return m_piece; }
    MembraneSystem & system() { return *m_system; } // after solve()
    Newton & newton() { return *m_newton; }
    Monitor & monitor() { return m_monitor; }

private:
    void buildSystem();
    Status judge();

    Problem const & m_problem;
    Settings const & m_settings;
    Piece & m_piece;
    Monitor & m_monitor;
    TangentFrames m_frames;
    Freedoms m_freedoms;
    std::unique_ptr<MembraneSystem> m_system;
    std::unique_ptr<RigidHolding> m_holding;
    std::unique_ptr<Newton> m_newton;
    std::vector<geometry::Vec2> m_flat;
    LadderOutcome m_outcome;
    int m_startSteps = 0, m_lockedEdges = 0;
    double m_startSeconds = 0.0;
    std::string m_message;
    std::vector<std::string> m_warnings;
};

} // namespace voz::onestep

#endif
