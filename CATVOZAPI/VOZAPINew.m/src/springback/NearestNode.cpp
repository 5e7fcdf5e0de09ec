// NearestNode.cpp: J. L. Bentley, Commun. ACM 18 (1975) 509, laid out in one array.

#include "springback/NearestNode.h"

#include <algorithm>
#include <limits>

namespace voz::springback
{

using geometry::Vec3;

namespace
{

double along(Vec3 a, int i_axis)
{
    return i_axis == 0 ? a.x : i_axis == 1 ? a.y : a.z;
}

} // namespace

NearestNode::NearestNode(std::vector<Vec3> const & i_position, std::vector<int> i_nodes)
    : m_position(i_position), m_node(std::move(i_nodes)), m_axis(m_node.size(), 0)
{
    sort(0, m_node.size());
}

void NearestNode::sort(std::size_t i_from, std::size_t i_to)
{
    if (i_to - i_from < 2)
        return;
    constexpr double kHuge = std::numeric_limits<double>::infinity();
    double extent = -1.0;
    int axis = 0;
    for (int k = 0; k < 3; ++k)
    {
        double least = kHuge, greatest = -kHuge;
        for (std::size_t i = i_from; i < i_to; ++i)
        {
            double const x = along(m_position[static_cast<std::size_t>(m_node[i])], k);
            least = std::min(least, x);
            greatest = std::max(greatest, x);
        }
        if (greatest - least > extent)
        {
            extent = greatest - least;
            axis = k;
        }
    }
    std::size_t const middle = i_from + (i_to - i_from) / 2;
    auto const place = [this](std::size_t i) { return m_node.begin() + static_cast<std::ptrdiff_t>(i); };
    std::nth_element(place(i_from), place(middle), place(i_to),
                     [&](int a, int b)
                     {
                         double const xa = along(m_position[static_cast<std::size_t>(a)], axis);
                         double const xb = along(m_position[static_cast<std::size_t>(b)], axis);
                         return xa != xb ? xa < xb : a < b;
                     });
    m_axis[middle] = axis;
    sort(i_from, middle);
    sort(middle + 1, i_to);
}

void NearestNode::search(std::size_t i_from, std::size_t i_to, Vec3 i_place, Best & io_best) const
{
    if (i_from == i_to)
        return;
    std::size_t const middle = i_from + (i_to - i_from) / 2;
    Vec3 const x = m_position[static_cast<std::size_t>(m_node[middle])];
    double const square = dot(x - i_place, x - i_place);
    if (square < io_best.square || (square == io_best.square && m_node[middle] < io_best.node))
        io_best = {square, m_node[middle]};
    double const beyond = along(i_place, m_axis[middle]) - along(x, m_axis[middle]);
    bool const lowFirst = beyond < 0.0;
    for (bool const low : {lowFirst, !lowFirst})
        if (low == lowFirst || beyond * beyond <= io_best.square)
            low ? search(i_from, middle, i_place, io_best) : search(middle + 1, i_to, i_place, io_best);
}

int NearestNode::find(Vec3 i_place) const
{
    Best best{std::numeric_limits<double>::infinity(), -1};
    search(0, m_node.size(), i_place, best);
    return best.node;
}

} // namespace voz::springback
