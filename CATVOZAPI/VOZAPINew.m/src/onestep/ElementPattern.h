// ElementPattern.h: the sparse pattern of a surface mesh, and where each element's entries go.
//
// Entry (row u of corner k, row v of corner l) of a cell stands at slot(cell, k, l) + u * rowLength(first row of k) +
// v: the rows of a node have the same columns, and the columns of a node are neighbours. Nothing is searched during
// assembly.

#ifndef ELEMENTPATTERN_H
#define ELEMENTPATTERN_H

#include "onestep/Constraints.h"
#include "onestep/SparseSolver.h"

namespace voz::onestep
{

class ElementPattern
{
public:
    ElementPattern(geometry::SurfaceMesh const & i_mesh, std::vector<int> const & i_firstUnknown);

    SparsePattern const & sparse() const { return m_sparse; }
    int slot(int i_cell, int i_rowCorner, int i_columnCorner) const
    {
        return m_slots[static_cast<std::size_t>(i_cell)][static_cast<std::size_t>(4 * i_rowCorner + i_columnCorner)];
    }
    int rowLength(int i_row) const
    {
        auto const row = static_cast<std::size_t>(i_row);
        return m_sparse.rowStart[row + 1] - m_sparse.rowStart[row];
    }
    int diagonal(int i_row) const { return m_diagonal[static_cast<std::size_t>(i_row)]; }

private:
    SparsePattern m_sparse;
    std::vector<std::array<int, 16>> m_slots; // -1 where a corner has no unknown
    std::vector<int> m_diagonal;
};

} // namespace voz::onestep

#endif
