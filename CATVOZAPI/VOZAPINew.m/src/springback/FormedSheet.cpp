// FormedSheet.cpp: strains from the two meshes, stresses, resultants, triangles.
//
// Curvature comes from the whole formed surface: what was trimmed away was there when the sheet was bent. A
// quadrilateral is cut along its shorter diagonal; where both are as long it is cut both ways with half the stiffness
// each, so that neither its first corner nor rounding decides. The resultants at the centre of a triangle are the
// bilinear mean of those at the quadrilateral's four points.

#include "springback/FormedSheet.h"

#include "TextOf.h"
#include "geometry/Orientation.h"
#include "onestep/Partition.h"
#include "onestep/Results.h"
#include "springback/Resultants.h"

#include <algorithm>
#include <cmath>

namespace voz::springback
{

using geometry::Cell;
using geometry::IntegrationPoint;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kEqualDiagonals = 1.0e-6;
constexpr double kSqrt3 = 1.7320508075688772935;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

Eigen::Vector3d spaceVector(Vec3 a)
{
    return {a.x, a.y, a.z};
}

struct Corner3 // a triangle within a cell
{
    std::array<int, 3> corner;
    double share;
};

class SheetBuilder
{
public:
    explicit SheetBuilder(Problem const & i_problem) : m_problem(i_problem)
    {
        for (onestep::MaterialLaw const & law : i_problem.materials)
            m_laws.emplace_back(law, material::LawOptions{});
    }

    FormedSheet build()
    {
        std::vector<int> dropped;
        m_whole = onestep::buildWhole(m_problem.formed, m_problem.elements, dropped);
        if (!dropped.empty())
            m_sheet.warnings.push_back(
                TextOf(dropped.size(), " elements without area carry nothing, the first is element ", dropped.front()));
        centre();
        if (orientCells() && findStresses())
            cutCells();
        return std::move(m_sheet);
    }

private:
    void centre()
    {
        auto const share = 1.0 / static_cast<double>(m_problem.formed.size());
        Vec3 middle, flatMiddle;
        for (std::size_t i = 0; i < m_problem.formed.size(); ++i)
        {
            middle = middle + share * m_whole.mesh.position[i];
            flatMiddle = flatMiddle + share * Vec3{m_problem.flat[i][0], m_problem.flat[i][1], 0.0};
        }
        for (Vec3 & x : m_whole.mesh.position)
            x = x - middle;
        for (auto const & x : m_problem.flat)
            m_flat.push_back({x[0] - flatMiddle.x, x[1] - flatMiddle.y});
        m_sheet.position = m_whole.mesh.position;
    }

    bool orientCells()
    {
        if (m_whole.mesh.cells.empty())
        {
            m_sheet.refusal = "no element of the part has an area";
            return false;
        }
        m_sides = geometry::buildSideTable(m_whole.mesh);
        geometry::Pieces const pieces = geometry::orient(m_sides, m_whole.mesh);
        if (m_sides.crowded >= 0)
            m_sheet.refusal = TextOf("more than two elements share a side of element ",
                                     m_whole.elementOf[at(m_sides.crowded)], ": the part is no single sheet");
        else if (pieces.twisted >= 0)
            m_sheet.refusal = TextOf("the surface has one side only: its winding comes back reversed at element ",
                                     m_whole.elementOf[at(pieces.twisted)]);
        if (!m_sheet.refusal.empty())
            return false;
        m_points = geometry::buildIntegrationPoints(m_whole.mesh);
        turnWithFlat(pieces);
        return true;
    }

    // A piece whose flat lies on its back (a tube that was cut open) has its winding turned.
    void turnWithFlat(geometry::Pieces const & i_pieces)
    {
        std::vector<double> area(at(i_pieces.count), 0.0);
        for (IntegrationPoint const & point : m_points.points)
            area[at(i_pieces.ofCell[at(point.cell)])] += point.area * det(onestep::inverseGradient(point, m_flat));
        bool turned = false;
        for (std::size_t c = 0; c < m_whole.mesh.cells.size(); ++c)
            if (area[at(i_pieces.ofCell[c])] < 0.0)
            {
                m_whole.mesh.cells[c].sign = -m_whole.mesh.cells[c].sign;
                turned = true;
            }
        if (turned)
            m_points = geometry::buildIntegrationPoints(m_whole.mesh);
    }

    bool isTrimmed(int i_cell) const
    {
        return !m_problem.trimmed.empty() && m_problem.trimmed[at(m_whole.elementOf[at(i_cell)])] != 0;
    }

    std::vector<geometry::Side> rimSides() const
    {
        std::vector<char> symmetric(m_problem.formed.size(), 0);
        for (geometry::SymmetryNode const & held : m_problem.symmetry)
            symmetric[at(held.node)] = 1;
        std::vector<geometry::Side> rim;
        for (geometry::Side const & side : m_sides.free)
            if (symmetric[at(side.a)] == 0 || symmetric[at(side.b)] == 0)
                rim.push_back(side);
        return rim;
    }

    bool findStresses()
    {
        auto const curvatures = geometry::pointCurvatures(m_whole.mesh, m_points, m_problem.symmetry, rimSides(),
                                                          geometry::BendEnds::Sharp);
        m_resultants.resize(m_points.points.size());
        for (std::size_t q = 0; q < m_points.points.size(); ++q)
        {
            IntegrationPoint const & point = m_points.points[q];
            if (isTrimmed(point.cell))
                continue;
            int const element = m_whole.elementOf[at(point.cell)];
            geometry::Mat2 const gradient = onestep::inverseGradient(point, m_flat);
            if (!(det(gradient) > 0.0))
            {
                m_sheet.refusal =
                    TextOf("element ", element, " is folded over in the flat mesh; expected the blank of this part");
                return false;
            }
            onestep::PointStrain const strain = onestep::evaluateStrain(gradient);
            material::MembraneLaw const & law = lawOf(element);
            double const thickness = law.thickness() * strain.j;
            auto const * const given = m_problem.curvatures.empty() ? nullptr : &m_problem.curvatures[at(element)];
            m_resultants[q] = integrateStress(law, onestep::midStrain(strain),
                                              onestep::bendingCurvature(curvatures[q], given, thickness), thickness);
            if (!m_resultants[q].force.allFinite() || !m_resultants[q].moment.allFinite())
            {
                m_sheet.refusal = TextOf("the stresses of element ", element, " are no numbers (thickness ", thickness,
                                         " m); expected strains that a sheet can have");
                return false;
            }
        }
        return true;
    }

    material::MembraneLaw const & lawOf(int i_element) const
    {
        return m_laws[at(m_problem.elements[at(i_element)].material)];
    }

    void cutCells()
    {
        for (int c = 0; c < static_cast<int>(m_whole.mesh.cells.size()); ++c)
            if (!isTrimmed(c))
                cutCell(c);
        if (m_sheet.triangles.empty())
            m_sheet.refusal = "all elements of the part are trimmed away; expected one or more that stay";
    }

    void cutCell(int i_cell)
    {
        Cell const & cell = m_whole.mesh.cells[at(i_cell)];
        std::array<int, 4> const & of = m_points.reported[at(i_cell)];
        if (cell.count == 3)
            return add(i_cell, {{0, 1, 2}, 1.0}, turnedInto(i_cell, {0, 1, 2}, of[0]));
        if (m_points.points[at(of[0])].count == 3) // solved as two triangles: each has its own point
        {
            addOwn(i_cell, of[0]);
            for (int const place : {2, 3})
                if (of[at(place)] != of[0])
                    addOwn(i_cell, of[at(place)]);
            return;
        }
        auto const x = [&](int corner) { return m_whole.mesh.position[at(cell.node[at(corner)])]; };
        double const d02 = length(x(2) - x(0)), d13 = length(x(3) - x(1));
        bool const equal = std::abs(d02 - d13) <= kEqualDiagonals * (d02 + d13);
        double const share = equal ? 0.5 : 1.0;
        if (equal || d02 < d13)
            for (auto const & corner : {std::array<int, 3>{0, 1, 2}, std::array<int, 3>{0, 2, 3}})
                add(i_cell, {corner, share}, bilinearMean(i_cell, corner));
        if (equal || d13 < d02)
            for (auto const & corner : {std::array<int, 3>{0, 1, 3}, std::array<int, 3>{1, 2, 3}})
                add(i_cell, {corner, share}, bilinearMean(i_cell, corner));
    }

    void addOwn(int i_cell, int i_point)
    {
        auto const & corner = m_points.points[at(i_point)].corner;
        std::array<int, 3> const three = {corner[0], corner[1], corner[2]};
        add(i_cell, {three, 1.0}, turnedInto(i_cell, three, i_point));
    }

    // The triangle in space, counter-clockwise about the cell's normal.
    ShellTriangle bare(int i_cell, std::array<int, 3> i_corner) const
    {
        Cell const & cell = m_whole.mesh.cells[at(i_cell)];
        if (cell.sign < 0.0)
            std::swap(i_corner[1], i_corner[2]);
        std::array<Eigen::Vector3d, 3> x;
        std::array<int, 3> nodes{};
        for (std::size_t k = 0; k < 3; ++k)
        {
            nodes[k] = cell.node[at(i_corner[k])];
            x[k] = spaceVector(m_whole.mesh.position[at(nodes[k])]);
        }
        return shellTriangle(x, nodes);
    }

    // The resultants of a point in the axes of a triangle of its cell.
    Resultants turnedInto(int i_cell, std::array<int, 3> const & i_corner, int i_point) const
    {
        return turnedInto(bare(i_cell, i_corner), i_point);
    }

    Resultants turnedInto(ShellTriangle const & i_triangle, int i_point) const
    {
        Eigen::Vector3d const axis = spaceVector(m_points.points[at(i_point)].e1);
        double const c = axis.dot(i_triangle.frame.col(0)), s = axis.dot(i_triangle.frame.col(1));
        double const size = std::hypot(c, s);
        return turned(m_resultants[at(i_point)], c / size, s / size);
    }

    Resultants bilinearMean(int i_cell, std::array<int, 3> const & i_corner) const
    {
        constexpr std::array<double, 4> kXi = {-1.0, 1.0, 1.0, -1.0}, kEta = {-1.0, -1.0, 1.0, 1.0};
        double xi = 0.0, eta = 0.0; // of the triangle's centre
        for (int const corner : i_corner)
        {
            xi += kXi[at(corner)] / 3.0;
            eta += kEta[at(corner)] / 3.0;
        }
        ShellTriangle const triangle = bare(i_cell, i_corner);
        Resultants mean;
        for (std::size_t k = 0; k < 4; ++k)
        {
            double const weight = 0.25 * (1.0 + kSqrt3 * xi * kXi[k]) * (1.0 + kSqrt3 * eta * kEta[k]);
            Resultants const r = turnedInto(triangle, m_points.reported[at(i_cell)][k]);
            mean.force += weight * r.force;
            mean.moment += weight * r.moment;
            mean.thickness += weight * r.thickness;
        }
        return mean;
    }

    void add(int i_cell, Corner3 const & i_cut, Resultants const & i_resultants)
    {
        int const element = m_whole.elementOf[at(i_cell)];
        onestep::MaterialLaw const & law = m_problem.materials[at(m_problem.elements[at(element)].material)];
        ShellTriangle triangle = bare(i_cell, i_cut.corner);
        triangle.thickness = i_resultants.thickness;
        triangle.youngsModulus = law.youngsModulus;
        triangle.poisson = law.poisson;
        triangle.share = i_cut.share;
        setInitialForce(i_resultants.force, i_resultants.moment, triangle);
        m_sheet.triangles.push_back(triangle);
        m_sheet.elementOf.push_back(element);
    }

    Problem const & m_problem;
    std::vector<material::MembraneLaw> m_laws;
    onestep::Whole m_whole;
    geometry::SideTable m_sides;
    geometry::PointTable m_points;
    std::vector<Vec2> m_flat;
    std::vector<Resultants> m_resultants; // per point
    FormedSheet m_sheet;
};

} // namespace

FormedSheet buildSheet(Problem const & i_problem)
{
    return SheetBuilder(i_problem).build();
}

} // namespace voz::springback
