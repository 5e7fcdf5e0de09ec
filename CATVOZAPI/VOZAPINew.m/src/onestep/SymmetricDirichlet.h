// SymmetricDirichlet.h: the flat of least distortion, by projected Newton.
//
//     E = sum A (|G|^2 + |G^-1|^2)/2 + pen/2 sum (X . d - target)^2          m^2; pen is a pure number
//
// The energy grows without bound where a point is about to fold, so a start without folds stays without.

#ifndef SYMMETRICDIRICHLET_H
#define SYMMETRICDIRICHLET_H

#include "onestep/ElementPattern.h"

#include <functional>

namespace voz::onestep
{

class SymmetricDirichlet
{
public:
    explicit SymmetricDirichlet(Piece const & i_piece);

    enum class Aim
    {
        OnTheWay, // another run follows: a decrement of a fifth of the root of the energy is enough
        Final     // a hundredth
    };
    // Improves a flat without folds until the Newton decrement is small. i_penalty 0: holds do not act. i_stop: asked
    // before each step. Returns the steps taken.
    int minimise(double i_penalty, Aim i_aim, std::function<bool()> const & i_stop,
                 std::vector<geometry::Vec2> & io_flat);

    double energy(std::span<geometry::Vec2 const> i_flat, double i_penalty) const; // infinite where a point folds

    // Gradient (x and y per node) and the values of the projected Hessian, in the order of the pattern.
    void derivatives(std::span<geometry::Vec2 const> i_flat, double i_penalty, std::vector<double> & o_gradient,
                     std::vector<double> & o_values) const;
    ElementPattern const & pattern() const { return m_pattern; }

private:
    void addPoint(geometry::IntegrationPoint const & i_point, std::span<geometry::Vec2 const> i_flat,
                  std::vector<double> & io_gradient, std::vector<double> & io_values) const;
    double greatestStep(std::span<geometry::Vec2 const> i_flat, std::span<geometry::Vec2 const> i_step) const;
    // The factor of the step, the flat there and its energy.
    double search(std::span<geometry::Vec2 const> i_flat, std::span<geometry::Vec2 const> i_step, double i_penalty,
                  double i_now, double i_slope, std::vector<geometry::Vec2> & o_trial, double & o_next) const;
    void pin(std::span<geometry::Vec2 const> i_flat, double i_penalty, std::vector<double> & io_values) const;

    Piece const & m_piece; // outlives this
    ElementPattern m_pattern;
    SparseSolver m_solver;
};

} // namespace voz::onestep

#endif
