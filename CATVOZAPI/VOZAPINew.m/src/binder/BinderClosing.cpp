// BinderClosing.cpp: the nodes that are over the binder, then those beyond its rim, then those over its openings.

#include "binder/BinderClosing.h"

#include "binder/HarmonicFill.h"
#include "onestep/Partition.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace voz::binder
{

using geometry::Cell;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kSameDirection = 1.0e-6; // sine of the angle between two directions

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// Nodes that share a side of an element, per node.
std::vector<std::vector<int>> neighboursOf(std::vector<Cell> const & i_cells, std::size_t i_nodes)
{
    std::vector<std::vector<int>> neighbours(i_nodes);
    for (Cell const & cell : i_cells)
        for (int k = 0; k < cell.count; ++k)
        {
            int const a = cell.node[at(k)], b = cell.node[at(cell.next(k))];
            neighbours[at(a)].push_back(b);
            neighbours[at(b)].push_back(a);
        }
    return neighbours;
}

class Closer
{
public:
    Closer(onestep::Problem const & i_part, std::vector<std::array<double, 2>> const & i_flat,
           FlatImage const & i_image)
        : m_image(i_image), m_place(i_flat.size()), m_known(i_flat.size(), false), m_onRim(i_flat.size(), false)
    {
        for (auto const & [x, y] : i_flat)
            m_flat.push_back({x, y});
        onestep::Partition const parts = onestep::partition(i_part);
        for (onestep::Piece const & piece : parts.pieces)
        {
            for (Cell cell : piece.mesh.cells)
            {
                for (int k = 0; k < cell.count; ++k)
                    cell.node[at(k)] = piece.nodeOf[at(cell.node[at(k)])];
                m_cells.push_back(cell);
            }
            for (geometry::SymmetryNode const & held : piece.symmetry)
                m_symmetry.push_back({piece.nodeOf[at(held.node)], held.direction});
            for (geometry::Side const & side : piece.rimSides)
                m_onRim[at(piece.nodeOf[at(side.a)])] = m_onRim[at(piece.nodeOf[at(side.b)])] = true;
        }
        m_neighbours = neighboursOf(m_cells, m_flat.size());
    }

    Closing close()
    {
        findOnBinder();
        std::vector<bool> const opening = overOpening();
        for (std::size_t i = 0; i < m_flat.size(); ++i)
            if (!m_known[i] && !opening[i])
                continueBeyondRim(i);
        fillOpenings();
        for (std::size_t i = 0; i < m_flat.size(); ++i) // what hangs together with no node that lies on the binder
            if (!m_known[i])
                continueBeyondRim(i);
        for (Vec3 const & q : m_place)
            m_closing.position.push_back({q.x, q.y, q.z});
        return std::move(m_closing);
    }

private:
    void know(std::size_t i_node, Vec3 i_place)
    {
        m_place[i_node] = i_place;
        m_known[i_node] = true;
    }

    void findOnBinder()
    {
        std::vector<std::vector<Vec3>> choices(m_flat.size());
        for (std::size_t i = 0; i < m_flat.size(); ++i)
        {
            choices[i] = m_image.find(m_flat[i]);
            if (choices[i].size() == 1)
                know(i, choices[i].front());
            m_closing.onBinder += choices[i].empty() ? 0 : 1;
            m_closing.overlapped += choices[i].size() > 1 ? 1 : 0;
        }
        if (m_closing.overlapped > 0)
            settleOverlaps(choices);
    }

    // From the nodes with one place outwards; where there is none to begin with, from the first choice of the first.
    void settleOverlaps(std::vector<std::vector<Vec3>> const & i_choices)
    {
        std::deque<std::size_t> open;
        std::vector<bool> queued(m_flat.size(), false);
        auto const queue = [&](std::size_t node)
        {
            if (!queued[node] && !m_known[node] && i_choices[node].size() > 1)
                open.push_back(node);
            queued[node] = queued[node] || !m_known[node];
        };
        for (std::size_t i = 0; i < m_flat.size(); ++i)
            if (m_known[i])
                for (int const neighbour : m_neighbours[i])
                    queue(at(neighbour));
        for (std::size_t next = 0; next < m_flat.size() || !open.empty();)
        {
            if (open.empty())
            {
                queue(next++);
                continue;
            }
            std::size_t const node = open.front();
            open.pop_front();
            know(node, nearestInHeight(node, i_choices[node]));
            for (int const neighbour : m_neighbours[node])
                queue(at(neighbour));
        }
    }

    Vec3 nearestInHeight(std::size_t i_node, std::vector<Vec3> const & i_choices) const
    {
        int nearest = -1;
        for (int const neighbour : m_neighbours[i_node])
            if (m_known[at(neighbour)] && (nearest < 0 || length(m_flat[at(neighbour)] - m_flat[i_node]) <
                                                              length(m_flat[at(nearest)] - m_flat[i_node])))
                nearest = neighbour;
        if (nearest < 0)
            return i_choices.front();
        double const height = m_place[at(nearest)].z;
        return *std::min_element(i_choices.begin(), i_choices.end(),
                                 [=](Vec3 a, Vec3 b) { return std::abs(a.z - height) < std::abs(b.z - height); });
    }

    // Per node that is not known yet.
    std::vector<bool> overOpening() const
    {
        std::vector<bool> opening(m_flat.size(), false), seen = m_known;
        std::vector<std::size_t> group;
        for (std::size_t first = 0; first < m_flat.size(); ++first)
        {
            if (seen[first])
                continue;
            seen[first] = true;
            group.assign(1, first);
            bool reachesRim = false, touchesKnown = false;
            for (std::size_t i = 0; i < group.size(); ++i)
            {
                reachesRim = reachesRim || m_onRim[group[i]];
                for (int const neighbour : m_neighbours[group[i]])
                {
                    touchesKnown = touchesKnown || m_known[at(neighbour)];
                    if (seen[at(neighbour)])
                        continue;
                    seen[at(neighbour)] = true;
                    group.push_back(at(neighbour));
                }
            }
            for (std::size_t const node : group)
                opening[node] = (touchesKnown && !reachesRim) || m_image.overOpening(m_flat[node]);
        }
        return opening;
    }

    void continueBeyondRim(std::size_t i_node)
    {
        know(i_node, m_image.beyondRim(m_flat[i_node]));
        ++m_closing.beyondRim;
    }

    // Not the place is filled but the way from the flat: over a flat binder nothing moves sideways. Nodes of a plane of
    // symmetry stay on it: along its normal their way is none, which is as if the other half were there. Planes that
    // stand neither along nor across the first one are left out of this.
    void fillOpenings()
    {
        Vec2 const first = m_symmetry.empty() ? Vec2{1.0, 0.0} : m_symmetry.front().direction;
        Vec2 const axis[2] = {first, turnedLeft(first)};
        std::array<std::vector<double>, 3> way;
        for (std::size_t i = 0; i < m_flat.size(); ++i)
        {
            Vec3 const q = m_place[i] - lifted(m_flat[i]);
            way[0].push_back(dot(horizontal(q), axis[0]));
            way[1].push_back(dot(horizontal(q), axis[1]));
            way[2].push_back(q.z);
        }
        std::vector<bool> filled = m_known;
        if (!fillHarmonically(m_cells, m_flat, way[2], filled))
            return;
        for (std::size_t k = 0; k < 2; ++k)
        {
            std::vector<bool> given = m_known;
            for (geometry::SymmetryNode const & held : m_symmetry)
                if (!m_known[at(held.node)] && std::abs(cross(held.direction, axis[k])) < kSameDirection)
                {
                    given[at(held.node)] = true;
                    way[k][at(held.node)] = 0.0;
                }
            if (!fillHarmonically(m_cells, m_flat, way[k], given))
                return;
        }
        for (std::size_t i = 0; i < m_flat.size(); ++i)
            if (filled[i] && !m_known[i])
            {
                Vec2 const sideways = way[0][i] * axis[0] + way[1][i] * axis[1];
                know(i, lifted(m_flat[i] + sideways) + Vec3{0.0, 0.0, way[2][i]});
                ++m_closing.overOpening;
            }
    }

    FlatImage const & m_image;
    std::vector<Vec2> m_flat;
    std::vector<Vec3> m_place;
    std::vector<bool> m_known;
    std::vector<bool> m_onRim;                      // of the blank, where it is no plane of symmetry
    std::vector<geometry::SymmetryNode> m_symmetry; // nodes of the part
    std::vector<Cell> m_cells;                      // in the numbers of the part
    std::vector<std::vector<int>> m_neighbours;
    Closing m_closing;
};

} // namespace

Closing closeOnBinder(onestep::Problem const & i_part, std::vector<std::array<double, 2>> const & i_flat,
                      FlatImage const & i_image)
{
    return Closer(i_part, i_flat, i_image).close();
}

} // namespace voz::binder
