// SimplicialLu.h: A = L D U for a matrix of symmetric pattern, with diagonal pivots in a fixed order.
//
// L and U^T share one pattern, that of a Cholesky factor, found once. Nothing is exchanged for size: a pivot that
// vanishes makes the factorisation fail, and a solution is improved against the matrix itself until its residual is
// small or it is given up.

#ifndef SIMPLICIALLU_H
#define SIMPLICIALLU_H

#include "onestep/SparseSolver.h"

namespace voz::onestep
{

class SimplicialLu
{
public:
    explicit SimplicialLu(SparsePattern const & i_pattern);

    bool factorise(std::span<double const> i_values); // false: a pivot vanishes
    bool solve(std::span<double> io_side) const;      // false: the residual stays large

private:
    void analyse();
    int reach(int i_row, std::vector<int> & io_mark, std::vector<int> & o_path) const;
    void substitute(std::vector<double> & io_permuted) const;

    SparsePattern m_pattern;
    std::vector<int> m_order, m_place;     // permuted -> given, given -> permuted
    std::vector<int> m_parent, m_start;    // elimination tree; columns of L
    std::vector<int> m_row;                // of the entries of L
    std::vector<double> m_lower, m_upper;  // L by columns, U by rows: one pattern
    std::vector<double> m_pivot, m_values; // D; the matrix
};

} // namespace voz::onestep

#endif
