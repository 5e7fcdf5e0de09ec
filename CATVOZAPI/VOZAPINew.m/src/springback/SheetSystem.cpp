// SheetSystem.cpp: assembly in the frames of the supports.
//
// Spins enter times a length of the size of an element, moments over it: displacements and turns then weigh alike in
// pivots, norms and tolerances. The exact tangent is symmetric at balance (the moments at each node cancel); on the way
// there its symmetric part serves.

#include "springback/SheetSystem.h"

#include <algorithm>
#include <cmath>

namespace voz::springback
{

using Eigen::Matrix3d;
using Eigen::Vector3d;

namespace
{

constexpr double kGreatestTurn = 0.3;    // radians in one step
constexpr double kLeastStrain = 1e-10;   // stresses of smaller elastic strains are rounding
constexpr double kLeastReference = 1e-3; // of the unassembled forces: stresses may balance but for rounding

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

std::vector<int> numberUnknowns(SheetPiece const & i_piece, std::vector<int> & o_component)
{
    std::vector<int> first(1, 0);
    for (Support const & support : i_piece.supports.of)
    {
        for (int k = 0; k < 6; ++k)
            if (!support.held[at(k)])
                o_component.push_back(k);
        first.push_back(static_cast<int>(o_component.size()));
    }
    return first;
}

geometry::SurfaceMesh trianglesOf(SheetPiece const & i_piece)
{
    geometry::SurfaceMesh mesh;
    mesh.position = i_piece.position;
    for (ShellTriangle const & triangle : i_piece.triangles)
    {
        geometry::Cell cell;
        std::copy(triangle.node.begin(), triangle.node.end(), cell.node.begin());
        mesh.cells.push_back(cell);
    }
    return mesh;
}

} // namespace

SheetState formedState(SheetPiece const & i_piece)
{
    SheetState state;
    state.displacement.assign(i_piece.position.size(), Vector3d::Zero());
    state.rotation.assign(i_piece.position.size(), Eigen::Quaterniond::Identity());
    return state;
}

SheetSystem::SheetSystem(SheetPiece const & i_piece)
    : m_piece(i_piece), m_first(numberUnknowns(i_piece, m_component)), m_pattern(trianglesOf(i_piece), m_first)
{
    double area = 0.0;
    for (ShellTriangle const & triangle : i_piece.triangles)
        area += areaOf(triangle.corner) / static_cast<double>(i_piece.triangles.size());
    m_length = std::sqrt(2.0 * area);
    m_nodeForce.resize(6 * i_piece.position.size());
    m_residual.resize(at(size()));
    m_tangent.resize(m_pattern.sparse().column.size());
    weighInitialForces();
}

void SheetSystem::weighInitialForces()
{
    Vector3d force = Vector3d::Zero(), moment = Vector3d::Zero();
    double forces = 0.0, moments = 0.0, squares = 0.0;
    double rigid = 0.0; // squares of the corner forces at strain one
    std::vector<Vector3d> sum(2 * m_piece.position.size(), Vector3d::Zero());
    for (ShellTriangle const & triangle : m_piece.triangles)
    {
        double const corner = triangle.youngsModulus * triangle.thickness * m_length;
        rigid += 3.0 * corner * corner;
        for (int k = 0; k < 3; ++k)
        {
            Vector3d const f = triangle.frame * triangle.initialForce.segment<3>(6 * k);
            Vector3d const m = triangle.frame * triangle.initialForce.segment<3>(6 * k + 3);
            geometry::Vec3 const x = m_piece.position[at(triangle.node[at(k)])];
            Vector3d const place(x.x, x.y, x.z);
            force += f;
            moment += m + place.cross(f);
            forces += f.norm();
            moments += m.norm() + place.norm() * f.norm();
            squares += f.squaredNorm() + m.squaredNorm() / (m_length * m_length);
            sum[2 * at(triangle.node[at(k)])] += f;
            sum[2 * at(triangle.node[at(k)]) + 1] += m / m_length;
        }
    }
    double assembled = 0.0;
    for (Vector3d const & nodal : sum)
        assembled += nodal.squaredNorm();
    if (std::sqrt(squares) > kLeastStrain * std::sqrt(rigid))
        m_reference = std::max(std::sqrt(assembled), kLeastReference * std::sqrt(squares));
    m_imbalance = forces > 0.0 ? std::max(force.norm() / forces, moment.norm() / moments) : 0.0;
}

void SheetSystem::evaluate(SheetState const & i_state, double i_load, bool i_withTangent)
{
    std::fill(m_nodeForce.begin(), m_nodeForce.end(), 0.0);
    if (i_withTangent)
        std::fill(m_tangent.begin(), m_tangent.end(), 0.0);
    Vector18 force;
    Matrix18 tangent;
    CornerState corners;
    for (std::size_t t = 0; t < m_piece.triangles.size(); ++t)
    {
        ShellTriangle const & triangle = m_piece.triangles[t];
        for (std::size_t k = 0; k < 3; ++k)
        {
            corners.displacement[k] = i_state.displacement[at(triangle.node[k])];
            corners.rotation[k] = i_state.rotation[at(triangle.node[k])];
        }
        springback::evaluate(triangle, corners, i_load, force, i_withTangent ? &tangent : nullptr);
        for (int part = 0; part < 6; ++part)
        {
            int const node = triangle.node[at(part / 2)];
            Vector3d const local = m_piece.supports.of[at(node)].frame.transpose() * force.segment<3>(3 * part);
            for (int k = 0; k < 3; ++k)
                m_nodeForce[at(6 * node + 3 * (part % 2) + k)] += local(k) / (part % 2 == 0 ? 1.0 : m_length);
        }
        if (i_withTangent)
            assembleTangent(t, tangent);
    }
    for (int node = 0; node < static_cast<int>(m_piece.position.size()); ++node)
        for (int u = m_first[at(node)]; u < m_first[at(node) + 1]; ++u)
            m_residual[at(u)] = m_nodeForce[at(6 * node + m_component[at(u)])];
}

void SheetSystem::assembleTangent(std::size_t i_triangle, Matrix18 const & i_tangent)
{
    ShellTriangle const & triangle = m_piece.triangles[i_triangle];
    Matrix18 k = 0.5 * (i_tangent + i_tangent.transpose());
    for (int part = 0; part < 6; ++part)
    {
        Matrix3d frame = m_piece.supports.of[at(triangle.node[at(part / 2)])].frame;
        if (part % 2 == 1)
            frame /= m_length;
        k.middleRows<3>(3 * part) = (frame.transpose() * k.middleRows<3>(3 * part)).eval();
        k.middleCols<3>(3 * part) *= frame;
    }
    for (int i = 0; i < 3; ++i)
    {
        int const row = triangle.node[at(i)];
        for (int j = 0; j < 3; ++j)
        {
            int const column = triangle.node[at(j)];
            int const slot = m_pattern.slot(static_cast<int>(i_triangle), i, j);
            if (slot < 0)
                continue;
            for (int u = m_first[at(row)]; u < m_first[at(row) + 1]; ++u)
            {
                double * const entry =
                    &m_tangent[at(slot + (u - m_first[at(row)]) * m_pattern.rowLength(m_first[at(row)]))];
                for (int v = m_first[at(column)]; v < m_first[at(column) + 1]; ++v)
                    entry[v - m_first[at(column)]] += k(6 * i + m_component[at(u)], 6 * j + m_component[at(v)]);
            }
        }
    }
}

double SheetSystem::pinReaction() const
{
    double greatest = 0.0;
    for (Pin const & pin : m_piece.supports.pins)
        greatest = std::max(greatest, std::abs(m_nodeForce[at(6 * pin.node + pin.component)]));
    return greatest;
}

bool SheetSystem::move(std::vector<double> const & i_change, SheetState & io_state) const
{
    double greatest = 0.0;
    for (std::size_t u = 0; u < i_change.size(); ++u)
    {
        if (!std::isfinite(i_change[u]))
            return false;
        if (m_component[u] >= 3)
            greatest = std::max(greatest, std::abs(i_change[u]) / m_length);
    }
    double const share = greatest > kGreatestTurn ? kGreatestTurn / greatest : 1.0;
    for (int node = 0; node < static_cast<int>(m_piece.position.size()); ++node)
    {
        Vector3d displacement = Vector3d::Zero(), spin = Vector3d::Zero();
        for (int u = m_first[at(node)]; u < m_first[at(node) + 1]; ++u)
        {
            int const component = m_component[at(u)];
            (component < 3 ? displacement : spin)(component % 3) = share * i_change[at(u)];
        }
        Matrix3d const & frame = m_piece.supports.of[at(node)].frame;
        io_state.displacement[at(node)] += frame * displacement;
        double const angle = spin.norm() / m_length;
        if (angle > 0.0)
            io_state.rotation[at(node)] =
                (Eigen::Quaterniond(Eigen::AngleAxisd(angle, frame * spin.normalized())) * io_state.rotation[at(node)])
                    .normalized();
    }
    return true;
}

int SheetSystem::nodeOfUnknown(int i_unknown) const
{
    auto const past = std::upper_bound(m_first.begin(), m_first.end(), i_unknown);
    return static_cast<int>(past - m_first.begin()) - 1;
}

} // namespace voz::springback
