// ElementPattern.cpp: built once per solve.

#include "onestep/ElementPattern.h"

#include <algorithm>

namespace voz::onestep
{

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// Nodes that share a cell with i_node, itself included, ascending.
void collectNeighbours(geometry::SurfaceMesh const & i_mesh, geometry::NodeCells const & i_cells, int i_node,
                       std::vector<int> & o_nodes)
{
    o_nodes.assign(1, i_node);
    for (int c = i_cells.start[at(i_node)]; c < i_cells.start[at(i_node) + 1]; ++c)
    {
        geometry::Cell const & cell = i_mesh.cells[at(i_cells.cell[at(c)])];
        o_nodes.insert(o_nodes.end(), cell.node.begin(), cell.node.begin() + cell.count);
    }
    std::sort(o_nodes.begin(), o_nodes.end());
    o_nodes.erase(std::unique(o_nodes.begin(), o_nodes.end()), o_nodes.end());
}

} // namespace

ElementPattern::ElementPattern(geometry::SurfaceMesh const & i_mesh, std::vector<int> const & i_firstUnknown)
{
    geometry::NodeCells const cells = geometry::buildNodeCells(i_mesh);
    std::vector<int> neighbours;
    m_sparse.size = i_firstUnknown.back();
    m_sparse.rowStart.push_back(0);
    for (int node = 0; node < static_cast<int>(i_mesh.position.size()); ++node)
    {
        collectNeighbours(i_mesh, cells, node, neighbours);
        for (int row = i_firstUnknown[at(node)]; row < i_firstUnknown[at(node) + 1]; ++row)
        {
            for (int const other : neighbours)
                for (int column = i_firstUnknown[at(other)]; column < i_firstUnknown[at(other) + 1]; ++column)
                    m_sparse.column.push_back(column);
            m_sparse.rowStart.push_back(static_cast<int>(m_sparse.column.size()));
        }
    }
    for (int row = 0; row < m_sparse.size; ++row)
        m_diagonal.push_back(m_sparse.find(row, row));
    m_slots.resize(i_mesh.cells.size());
    for (std::size_t c = 0; c < i_mesh.cells.size(); ++c)
    {
        geometry::Cell const & cell = i_mesh.cells[c];
        m_slots[c].fill(-1);
        for (int k = 0; k < cell.count; ++k)
            for (int l = 0; l < cell.count; ++l)
            {
                int const row = cell.node[at(k)], column = cell.node[at(l)];
                if (i_firstUnknown[at(row)] < i_firstUnknown[at(row) + 1] &&
                    i_firstUnknown[at(column)] < i_firstUnknown[at(column) + 1])
                    m_slots[c][at(4 * k + l)] = m_sparse.find(i_firstUnknown[at(row)], i_firstUnknown[at(column)]);
            }
    }
}

} // namespace voz::onestep
