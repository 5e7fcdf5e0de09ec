// MembraneSystem.cpp: element forces and their exact derivative, scattered into a fixed pattern.
//
// Equilibrium is taken in the final configuration, along the tool surface: balancing the two horizontal directions
// instead, as the first inverse methods did, is singular on vertical walls. J. L. Batoz, Y. Q. Guo, F. Mercier, Eng.
// Comput. 15 (1998) 864.

#include "onestep/MembraneSystem.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::onestep
{

using geometry::IntegrationPoint;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kYieldStrain = 0.002;
constexpr double kForceFloorShare = 1.0e-6;
constexpr double kRounding = 8.0 * std::numeric_limits<double>::epsilon(); // of the strain times its arm

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// A variation from the eigenbasis to the point's frame.
material::PlaneTensor turned(PointStrain const & i_strain, StrainVariation const & i_dh)
{
    double const c = i_strain.cosine, s = i_strain.sine;
    double const mixed = 2.0 * s * c * i_dh.h12;
    return {c * c * i_dh.h11 + s * s * i_dh.h22 - mixed, s * s * i_dh.h11 + c * c * i_dh.h22 + mixed,
            s * c * (i_dh.h11 - i_dh.h22) + (c * c - s * s) * i_dh.h12};
}

Vec2 onSide(material::PlaneTensor const & i_force, Vec2 i_shape)
{
    return {i_force.m11 * i_shape.x + i_force.m12 * i_shape.y, i_force.m12 * i_shape.x + i_force.m22 * i_shape.y};
}

} // namespace

material::PlaneTensor strainTensor(PointStrain const & i_strain)
{
    double const c = i_strain.cosine, s = i_strain.sine;
    return {i_strain.h1 * c * c + i_strain.h2 * s * s, i_strain.h1 * s * s + i_strain.h2 * c * c,
            (i_strain.h1 - i_strain.h2) * s * c};
}

MembraneSystem::MembraneSystem(Piece const & i_piece, Freedoms const & i_freedoms,
                               std::vector<MaterialLaw> const & i_materials, material::LawOptions const & i_options)
    : m_piece(i_piece), m_freedoms(i_freedoms), m_materials(i_materials), m_pattern(i_piece.mesh, i_freedoms.first),
      m_constant(i_piece.mesh.position.size()), m_pads(i_piece)
{
    setLaw(i_options);
    m_rows.resize(i_piece.points.points.size());
    for (std::size_t q = 0; q < m_rows.size(); ++q)
    {
        IntegrationPoint const & point = i_piece.points.points[q];
        for (int k = 0; k < point.count; ++k)
        {
            int const first = m_freedoms.first[at(point.node[at(k)])];
            int const last = m_freedoms.first[at(point.node[at(k)]) + 1];
            for (int e = first; e < last; ++e)
                m_rows[q].row[k][e - first] = {dot(m_freedoms.equation[at(e)], point.e1),
                                               dot(m_freedoms.equation[at(e)], point.e2)};
        }
    }
}

void MembraneSystem::setLaw(material::LawOptions const & i_options)
{
    m_laws.clear();
    double strongest = 0.0;
    for (MaterialLaw const & law : m_materials)
    {
        m_laws.emplace_back(law, i_options);
        strongest = std::max(strongest, m_laws.back().curve().stress(kYieldStrain) * law.thickness);
    }
    m_forceFloor = kForceFloorShare * strongest * std::sqrt(m_piece.area);
}

void MembraneSystem::addPadForces(std::span<Vec2 const> i_flat, std::vector<Vec3> & io_outer) const
{
    for (int place = 0; place < static_cast<int>(m_pads.cells().size()); ++place)
    {
        geometry::Cell const & cell = m_piece.mesh.cells[at(m_pads.cells()[at(place)])];
        for (int k = 0; k < cell.count; ++k)
        {
            Vec3 & sum = io_outer[at(cell.node[at(k)])];
            sum = sum + m_pads.evaluate(place, k, i_flat).force;
        }
    }
}

double MembraneSystem::pointForces(std::size_t i_point, std::span<Vec2 const> i_flat, Vec2 * o_force) const
{
    IntegrationPoint const & point = m_piece.points.points[i_point];
    geometry::Mat2 const g = inverseGradient(point, i_flat);
    if (m_history.empty())
    {
        PointStrain const strain = evaluateStrain(g);
        material::MembraneLaw::Forces const forces = law(point.cell).forces(strain.h1, strain.h2);
        for (int k = 0; k < point.count; ++k)
        {
            Vec2 const shape = toEigenbasis(strain, point.gradient[at(k)]);
            o_force[k] = point.area * fromEigenbasis(strain, {forces.n1 * shape.x, forces.n2 * shape.y});
        }
        return forces.stiffness;
    }
    PointHistory const & history = m_history[i_point];
    PointStrain const strain = evaluateStrain(history.stretch * g);
    material::SteppedForces const forces = steppedForces(law(point.cell), history.law, strainTensor(strain));
    for (int k = 0; k < point.count; ++k)
        o_force[k] = point.area * onSide(forces.force, point.gradient[at(k)]);
    return forces.stiffness;
}

MembraneSystem::Measure MembraneSystem::residual(std::span<Vec2 const> i_flat, std::vector<double> & o_residual) const
{
    o_residual.assign(at(m_freedoms.size), 0.0);
    double squares = 0.0, rounding = 0.0, farthest = 0.0;
    for (Vec2 const x : i_flat)
        farthest = std::max({farthest, std::abs(x.x), std::abs(x.y)});
    for (std::size_t q = 0; q < m_rows.size(); ++q)
    {
        IntegrationPoint const & point = m_piece.points.points[q];
        Vec2 force[4];
        double const stiffness = pointForces(q, i_flat, force);
        double shape = 0.0;
        for (int k = 0; k < point.count; ++k)
            shape = std::max(shape, dot(point.gradient[at(k)], point.gradient[at(k)]));
        double const noise = point.area * stiffness * shape * farthest * kRounding;
        rounding += noise * noise;
        for (int k = 0; k < point.count; ++k)
        {
            int const first = m_freedoms.first[at(point.node[at(k)])];
            int const last = m_freedoms.first[at(point.node[at(k)]) + 1];
            for (int e = first; e < last; ++e)
            {
                double const part = dot(m_rows[q].row[k][e - first], force[k]);
                o_residual[at(e)] += part;
                squares += part * part;
            }
        }
    }
    std::vector<Vec3> outer = m_constant;
    addPadForces(i_flat, outer);
    for (std::size_t i = 0; i < outer.size(); ++i)
        for (int e = m_freedoms.first[i]; e < m_freedoms.first[i + 1]; ++e)
            o_residual[at(e)] -= m_loadFactor * dot(m_freedoms.equation[at(e)], outer[i]);
    return {std::sqrt(squares), std::sqrt(rounding)};
}

std::vector<Vec3> MembraneSystem::nodeForces(std::span<Vec2 const> i_flat) const
{
    std::vector<Vec3> total(m_piece.mesh.position.size());
    for (std::size_t q = 0; q < m_rows.size(); ++q)
    {
        IntegrationPoint const & point = m_piece.points.points[q];
        Vec2 force[4];
        pointForces(q, i_flat, force);
        for (int k = 0; k < point.count; ++k)
        {
            Vec3 & sum = total[at(point.node[at(k)])];
            sum = sum + force[k].x * point.e1 + force[k].y * point.e2;
        }
    }
    std::vector<Vec3> outer = m_constant;
    addPadForces(i_flat, outer);
    for (std::size_t i = 0; i < total.size(); ++i)
        total[i] = total[i] - m_loadFactor * outer[i];
    return total;
}

void MembraneSystem::jacobian(std::span<Vec2 const> i_flat, std::vector<double> & o_values, double i_secantShare) const
{
    o_values.assign(m_pattern.sparse().column.size(), 0.0);
    for (std::size_t q = 0; q < m_rows.size(); ++q)
        m_history.empty() ? addPointJacobian(q, i_flat, i_secantShare, o_values)
                          : addSteppedJacobian(q, i_flat, o_values);
    addPadJacobian(i_flat, o_values);
}

// As addPointJacobian, in the point's own frame: stress and strain of a material with a history share no axes. Always
// the exact one: steps begin near their answer.
void MembraneSystem::addSteppedJacobian(std::size_t i_point, std::span<Vec2 const> i_flat,
                                        std::vector<double> & io_values) const
{
    IntegrationPoint const & point = m_piece.points.points[i_point];
    PointHistory const & history = m_history[i_point];
    geometry::Mat2 const g = history.stretch * inverseGradient(point, i_flat);
    PointStrain const strain = evaluateStrain(g);
    material::SteppedTangent const tangent = steppedTangent(law(point.cell), history.law, strainTensor(strain));
    StrainDerivative const derivative(g, strain);
    for (int l = 0; l < point.count; ++l)
    {
        int const firstColumn = m_freedoms.first[at(point.node[at(l)])];
        int const columns = m_freedoms.first[at(point.node[at(l)]) + 1] - firstColumn;
        Vec2 const shape = toEigenbasis(strain, point.gradient[at(l)]);
        for (int u = 0; u < columns; ++u)
        {
            Vec2 const way = history.stretch * m_freedoms.column[at(firstColumn + u)];
            material::PlaneTensor const dn = tangent.along(turned(strain, derivative.along(shape, way)));
            for (int k = 0; k < point.count; ++k)
            {
                int const first = m_freedoms.first[at(point.node[at(k)])];
                int const count = m_freedoms.first[at(point.node[at(k)]) + 1] - first;
                Vec2 const df = point.area * onSide(dn, point.gradient[at(k)]);
                int const place = m_pattern.slot(point.cell, point.corner[at(k)], point.corner[at(l)]) + u;
                for (int e = 0; e < count; ++e)
                    io_values[at(place + e * m_pattern.rowLength(first))] += dot(m_rows[i_point].row[k][e], df);
            }
        }
    }
}

void MembraneSystem::addPointJacobian(std::size_t i_point, std::span<Vec2 const> i_flat, double i_secantShare,
                                      std::vector<double> & io_values) const
{
    IntegrationPoint const & point = m_piece.points.points[i_point];
    geometry::Mat2 const g = inverseGradient(point, i_flat);
    PointStrain const strain = evaluateStrain(g);
    material::MembraneLaw::Tangent const t = law(point.cell).tangent(strain.h1, strain.h2, i_secantShare);
    StrainDerivative const derivative(g, strain);

    // Rows and shapes in the eigenbasis.
    Vec2 shape[4], row[4][2];
    int first[4], count[4], stride[4];
    for (int k = 0; k < point.count; ++k)
    {
        int const node = point.node[at(k)];
        first[k] = m_freedoms.first[at(node)];
        count[k] = m_freedoms.first[at(node) + 1] - first[k];
        stride[k] = count[k] > 0 ? m_pattern.rowLength(first[k]) : 0;
        shape[k] = toEigenbasis(strain, point.gradient[at(k)]);
        for (int e = 0; e < count[k]; ++e)
            row[k][e] = point.area * toEigenbasis(strain, m_rows[i_point].row[k][e]);
    }
    for (int l = 0; l < point.count; ++l)
        for (int u = 0; u < count[l]; ++u)
        {
            StrainVariation const dh = derivative.along(shape[l], m_freedoms.column[at(first[l] + u)]);
            double const dn11 = t.n11 * dh.h11 + t.n12 * dh.h22;
            double const dn22 = t.n21 * dh.h11 + t.n22 * dh.h22;
            double const dn12 = t.shear * dh.h12;
            for (int k = 0; k < point.count; ++k)
            {
                Vec2 const df{dn11 * shape[k].x + dn12 * shape[k].y, dn12 * shape[k].x + dn22 * shape[k].y};
                int const place = m_pattern.slot(point.cell, point.corner[at(k)], point.corner[at(l)]) + u;
                for (int e = 0; e < count[k]; ++e)
                    io_values[at(place + e * stride[k])] += dot(row[k][e], df);
            }
        }
}

void MembraneSystem::addPadJacobian(std::span<Vec2 const> i_flat, std::vector<double> & io_values) const
{
    for (int place = 0; place < static_cast<int>(m_pads.cells().size()); ++place)
    {
        int const c = m_pads.cells()[at(place)];
        geometry::Cell const & cell = m_piece.mesh.cells[at(c)];
        for (int k = 0; k < cell.count; ++k)
        {
            int const first = m_freedoms.first[at(cell.node[at(k)])];
            int const count = m_freedoms.first[at(cell.node[at(k)]) + 1] - first;
            PadForce const pad = m_pads.evaluate(place, k, i_flat);
            for (int e = 0; e < count; ++e)
                for (int u = 0; u < count; ++u)
                {
                    Vec2 const column = m_freedoms.column[at(first + u)];
                    Vec3 const slope = column.x * pad.slope[0] + column.y * pad.slope[1];
                    int const entry = m_pattern.slot(c, k, k) + e * m_pattern.rowLength(first) + u;
                    io_values[at(entry)] -= m_loadFactor * dot(m_freedoms.equation[at(first + e)], slope);
                }
        }
    }
}

double MembraneSystem::leastDeterminant(std::span<Vec2 const> i_flat) const
{
    double least = std::numeric_limits<double>::infinity();
    for (IntegrationPoint const & point : m_piece.points.points)
    {
        double const here = det(inverseGradient(point, i_flat));
        if (!std::isfinite(here))
            return -1.0; // as bad as folded
        least = std::min(least, here);
    }
    return least;
}

double MembraneSystem::hardeningStrain(std::size_t i_point, std::span<Vec2 const> i_flat) const
{
    IntegrationPoint const & point = m_piece.points.points[i_point];
    geometry::Mat2 const g = inverseGradient(point, i_flat);
    if (m_history.empty())
    {
        PointStrain const strain = evaluateStrain(g);
        return law(point.cell).equivalentStrain(strain.h1, strain.h2);
    }
    PointHistory const & history = m_history[i_point];
    return hardenedStrain(law(point.cell), history.law, strainTensor(evaluateStrain(history.stretch * g)));
}

void MembraneSystem::move(std::span<double const> i_step, double i_factor, std::span<Vec2 const> i_from,
                          std::vector<Vec2> & o_to) const
{
    o_to.assign(i_from.begin(), i_from.end());
    for (std::size_t i = 0; i < o_to.size(); ++i)
        for (int u = m_freedoms.first[i]; u < m_freedoms.first[i + 1]; ++u)
            o_to[i] = o_to[i] + (i_factor * i_step[at(u)]) * m_freedoms.column[at(u)];
}

} // namespace voz::onestep
