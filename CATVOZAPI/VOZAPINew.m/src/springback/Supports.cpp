// Supports.cpp: rigid motions by their six coordinates.
//
// A rigid motion about the centre, (t, f/L) with L the size of the piece, moves the point p along d by (d, (p x d)/L) .
// (t, f). The held unknowns span the motions that are stopped; the null space of their Gram matrix is what is left.

#include "springback/Supports.h"

#include <Eigen/Eigenvalues>
#include <Eigen/Geometry>

#include <cmath>

namespace voz::springback
{

using Eigen::Vector3d;
using geometry::SymmetryNode;
using geometry::Vec3;

namespace
{

using Vector6 = Eigen::Matrix<double, 6, 1>;

constexpr double kHeld = 1.0e-8;   // share of the greatest eigenvalue below which a motion is not held
constexpr double kTie = 1.0e-6;    // of a distance: nodes as far as another are left out
constexpr double kParallel = 1e-6; // sine of the angle between two planes

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

class Supporter
{
public:
    Supporter(std::vector<Vec3> const & i_position, Holds const & i_holds) : m_holds(i_holds)
    {
        Vector3d centre = Vector3d::Zero();
        for (Vec3 const & x : i_position)
            m_place.emplace_back(x.x, x.y, x.z);
        for (Vector3d const & x : m_place)
            centre += x / static_cast<double>(m_place.size());
        for (Vector3d & x : m_place)
        {
            x -= centre;
            m_size = std::max(m_size, x.norm());
        }
        m_supports.of.resize(i_position.size());
    }

    Supports support()
    {
        holdPlanes();
        for (int const node : m_holds.fixed)
            holdAll(node, 3);
        for (int const node : m_holds.clamped)
            holdAll(node, 6);
        findFreeMotions();
        if (m_supports.freeMotions == 6)
            pinThreeNodes();
        else
            for (int k = 0; k < m_supports.freeMotions; ++k)
                pinBest();
        return std::move(m_supports);
    }

private:
    void holdAll(int i_node, int i_count)
    {
        for (int k = 0; k < i_count; ++k)
            m_supports.of[at(i_node)].held[at(k)] = true;
    }

    // A plane of normal d lets a node move within it and turn about d alone.
    void holdPlanes()
    {
        for (SymmetryNode const & plane : m_holds.symmetry)
        {
            Support & support = m_supports.of[at(plane.node)];
            Vector3d const d(plane.direction.x, plane.direction.y, 0.0);
            if (!support.held[0])
            {
                support.frame.col(0) = d;
                support.frame.col(1) = Vector3d(-d.y(), d.x(), 0.0);
                support.held = {true, false, false, false, true, true};
            }
            else if (std::abs(support.frame.col(1).dot(d)) > kParallel) // a second plane: only up and down is left
                support.held = {true, true, false, true, true, true};
        }
    }

    Vector6 motionOf(int i_node, int i_component) const
    {
        Vector3d const d = m_supports.of[at(i_node)].frame.col(i_component % 3);
        Vector6 row;
        if (i_component < 3)
            row << d, m_place[at(i_node)].cross(d) / m_size;
        else
            row << Vector3d::Zero(), d;
        return row;
    }

    void findFreeMotions()
    {
        Eigen::Matrix<double, 6, 6> gram = Eigen::Matrix<double, 6, 6>::Zero();
        for (int i = 0; i < static_cast<int>(m_place.size()); ++i)
            for (int k = 0; k < 6; ++k)
                if (m_supports.of[at(i)].held[at(k)])
                    gram += motionOf(i, k) * motionOf(i, k).transpose();
        Eigen::SelfAdjointEigenSolver<Eigen::Matrix<double, 6, 6>> const solver(gram); // values ascend
        double const greatest = solver.eigenvalues()(5);
        while (m_supports.freeMotions < 6 && !(solver.eigenvalues()(m_supports.freeMotions) > kHeld * greatest))
            ++m_supports.freeMotions;
        m_free = solver.eigenvectors().leftCols(m_supports.freeMotions);
    }

    // Takes from the free motions the one that this unknown stops.
    void pin(int i_node, int i_component)
    {
        m_supports.of[at(i_node)].held[at(i_component)] = true;
        m_supports.pins.push_back({i_node, i_component});
        if (m_free.cols() == 0)
            return;
        Vector6 const stopped = m_free * (m_free.transpose() * motionOf(i_node, i_component));
        Vector6 const unit = stopped.normalized();
        m_free -= unit * (unit.transpose() * m_free);
    }

    void pinBest()
    {
        double best = 0.0;
        Pin choice{0, 0};
        for (int i = 0; i < static_cast<int>(m_place.size()); ++i)
            for (int k = 0; k < 3; ++k)
                if (double const size = (m_free.transpose() * motionOf(i, k)).norm();
                    !m_supports.of[at(i)].held[at(k)] && size > best * (1.0 + kTie))
                {
                    best = size;
                    choice = {i, k};
                }
        pin(choice.node, choice.component);
    }

    template <class Measure>
    int farthest(Measure measure) const
    {
        double best = -1.0;
        int choice = 0;
        for (int i = 0; i < static_cast<int>(m_place.size()); ++i)
            if (double const far = measure(m_place[at(i)]); far > best + kTie * m_size)
            {
                best = far;
                choice = i;
            }
        return choice;
    }

    void pinThreeNodes()
    {
        int const a = farthest([](Vector3d const & x) { return x.norm(); });
        int const b = farthest([&](Vector3d const & x) { return (x - m_place[at(a)]).norm(); });
        Vector3d const line = (m_place[at(b)] - m_place[at(a)]).normalized();
        int const c = farthest([&](Vector3d const & x) { return line.cross(x - m_place[at(a)]).norm(); });
        Eigen::Matrix3d frame;
        frame.col(0) = line;
        frame.col(2) = line.cross(m_place[at(c)] - m_place[at(a)]).normalized();
        frame.col(1) = frame.col(2).cross(line);
        for (int const node : {a, b, c})
            m_supports.of[at(node)].frame = frame;
        for (Pin const & held : {Pin{a, 0}, Pin{a, 1}, Pin{a, 2}, Pin{b, 1}, Pin{b, 2}, Pin{c, 2}})
            pin(held.node, held.component);
    }

    Holds const & m_holds;
    std::vector<Vector3d> m_place; // about the centre
    double m_size = 0.0;
    Supports m_supports;
    Eigen::Matrix<double, 6, Eigen::Dynamic> m_free;
};

} // namespace

Supports supportPiece(std::vector<Vec3> const & i_position, Holds const & i_holds)
{
    return Supporter(i_position, i_holds).support();
}

} // namespace voz::springback
