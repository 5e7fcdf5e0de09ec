// NodeStrain.h: the major log strain of the mid layer at a node, as a mean over its elements by their areas.

#ifndef NODESTRAIN_H
#define NODESTRAIN_H

#include "onestep/Piece.h"

#include <span>

namespace voz::autostrain
{

class NodeStrain
{
public:
    // The node is one of the piece, which must not be completed anew while this lives.
    NodeStrain(onestep::Piece const & i_piece, int i_node);

    double value(std::span<geometry::Vec2 const> i_flat) const;

    // Change of the value for a change of the flat, per node; exact where the two principal strains differ.
    double slope(std::span<geometry::Vec2 const> i_flat, std::span<geometry::Vec2 const> i_motion) const;

private:
    std::vector<geometry::IntegrationPoint const *> m_points;
    double m_area = 0.0;
};

} // namespace voz::autostrain

#endif
