// NearestNode.h: the nearest of a set of points, by halving the set along its longest extent.

#ifndef NEARESTNODE_H
#define NEARESTNODE_H

#include "geometry/SmallVector.h"

#include <vector>

namespace voz::springback
{

class NearestNode
{
public:
    // i_nodes: the points to be found, as indices into i_position, which outlives this.
    NearestNode(std::vector<geometry::Vec3> const & i_position, std::vector<int> i_nodes);

    int find(geometry::Vec3 i_place) const; // the lowest index among equally near ones; -1: the set is empty

private:
    struct Best
    {
        double square;
        int node;
    };
    void sort(std::size_t i_from, std::size_t i_to);
    void search(std::size_t i_from, std::size_t i_to, geometry::Vec3 i_place, Best & io_best) const;

    std::vector<geometry::Vec3> const & m_position;
    std::vector<int> m_node; // the middle of a range parts it
    std::vector<int> m_axis; // of the part at the middle
};

} // namespace voz::springback

#endif
