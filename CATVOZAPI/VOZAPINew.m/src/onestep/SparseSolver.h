// SparseSolver.h: direct solution of the sparse systems of the kernel.
//
// The pattern is structurally symmetric, given once and analysed once; values may be factorised anew as often as
// needed. With VOZ_HAVE_MUMPS large and unsymmetric systems go to MUMPS (P. R. Amestoy, I. S. Duff, J. Koster, J.-Y.
// L'Excellent, SIAM J. Matrix Anal. Appl. 23 (2001) 15), else all go to Eigen. Serial and deterministic.

#ifndef SPARSESOLVER_H
#define SPARSESOLVER_H

#include <memory>
#include <span>
#include <vector>

namespace voz::onestep
{

// Compressed rows, columns ascending within a row, 0-based. Every diagonal entry is present.
struct SparsePattern
{
    int size = 0;
    std::vector<int> rowStart; // size + 1
    std::vector<int> column;

    int find(int i_row, int i_column) const; // index of the entry; -1: not in the pattern
};

class SparseSolver
{
public:
    enum class Kind
    {
        Unsymmetric,
        PositiveDefinite, // only entries on and above the diagonal are read
        Symmetric         // the same, with pivots of either sign
    };

    // The pattern is copied where it is needed later and may go away.
    SparseSolver(SparsePattern const & i_pattern, Kind i_kind);

    // Values in the order of the pattern. False: singular to working accuracy, or not enough memory.
    bool factorise(std::span<double const> i_values) { return m_engine->factorise(i_values); }

    // Right sides one after the other, replaced by the solutions. False before a successful factorisation or where
    // a solution is not finite.
    bool solve(std::span<double> io_sides, int i_count) { return m_engine->solve(io_sides, i_count); }

    // What does the work; one implementation per library.
    class Engine
    {
    public:
        virtual ~Engine() = default;
        virtual bool factorise(std::span<double const> i_values) = 0;
        virtual bool solve(std::span<double> io_sides, int i_count) = 0;
    };

private:
    std::unique_ptr<Engine> m_engine;
};

} // namespace voz::onestep

#endif
