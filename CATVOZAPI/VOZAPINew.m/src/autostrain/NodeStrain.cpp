// NodeStrain.cpp: see Kinematics.h for strain and variation.

#include "autostrain/NodeStrain.h"

#include "onestep/Kinematics.h"

#include <algorithm>

namespace voz::autostrain
{

using geometry::IntegrationPoint;
using geometry::Vec2;

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

NodeStrain::NodeStrain(onestep::Piece const & i_piece, int i_node)
{
    for (IntegrationPoint const & point : i_piece.points.points)
    {
        auto const & corners = i_piece.mesh.cells[at(point.cell)].node;
        if (std::find(corners.begin(), corners.end(), i_node) == corners.end())
            continue;
        m_points.push_back(&point);
        m_area += point.area;
    }
}

double NodeStrain::value(std::span<Vec2 const> i_flat) const
{
    double sum = 0.0;
    for (IntegrationPoint const * const pPoint : m_points)
        sum += pPoint->area * onestep::evaluateStrain(onestep::inverseGradient(*pPoint, i_flat)).h2;
    return sum / m_area;
}

double NodeStrain::slope(std::span<Vec2 const> i_flat, std::span<Vec2 const> i_motion) const
{
    double sum = 0.0;
    for (IntegrationPoint const * const pPoint : m_points)
    {
        geometry::Mat2 const g = onestep::inverseGradient(*pPoint, i_flat);
        onestep::PointStrain const strain = onestep::evaluateStrain(g);
        onestep::StrainDerivative const derivative(g, strain);
        for (int k = 0; k < pPoint->count; ++k)
        {
            Vec2 const shape = toEigenbasis(strain, pPoint->gradient[at(k)]);
            sum += pPoint->area * derivative.along(shape, i_motion[at(pPoint->node[at(k)])]).h22;
        }
    }
    return sum / m_area;
}

} // namespace voz::autostrain
