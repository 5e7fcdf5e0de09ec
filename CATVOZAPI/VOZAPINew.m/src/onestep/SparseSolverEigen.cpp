// SparseSolverEigen.cpp: small definite systems, and all systems of builds without a multifrontal solver.
//
// Simplicial LDL^T for the definite kind, and for the symmetric one, whose pivots stay where they are. The unsymmetric
// kind keeps its diagonal pivots as long as they serve; where they do not, supernodal LU with exchanges takes over for
// that matrix (J. W. Demmel et al., SIAM J. Matrix Anal. Appl. 20 (1999) 720), which is far slower on these patterns.

#include "onestep/SimplicialLu.h"
#include "onestep/SparseEngines.h"

#include <Eigen/SparseCholesky>
#include <Eigen/SparseLU>

#include <algorithm>
#include <cmath>

namespace voz::onestep
{

namespace
{
constexpr double kPivotThreshold = 0.01;
using Matrix = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;

// The rows read as columns: the transpose of the matrix.
Eigen::Map<Matrix const> view(SparsePattern const & i_pattern, std::span<double const> i_values)
{
    return {i_pattern.size,
            i_pattern.size,
            static_cast<Eigen::Index>(i_pattern.column.size()),
            i_pattern.rowStart.data(),
            i_pattern.column.data(),
            i_values.data()};
}

bool allFinite(std::span<double const> i_values)
{
    return std::all_of(i_values.begin(), i_values.end(), [](double v) { return std::isfinite(v); });
}

class DefiniteEngine final : public SparseSolver::Engine
{
public:
    explicit DefiniteEngine(SparsePattern const & i_pattern) : m_pattern(i_pattern)
    {
        std::vector<double> const ones(m_pattern.column.size(), 1.0);
        if (m_pattern.size > 0)
            m_ldlt.analyzePattern(matrix(ones));
    }

    bool factorise(std::span<double const> i_values) override
    {
        m_factorised = false;
        if (m_pattern.size == 0 || !allFinite(i_values))
            return false;
        m_ldlt.factorize(matrix(i_values));
        m_factorised = m_ldlt.info() == Eigen::Success;
        return m_factorised;
    }

    bool solve(std::span<double> io_sides, int i_count) override
    {
        if (!m_factorised)
            return false;
        Eigen::Map<Eigen::MatrixXd> sides(io_sides.data(), m_pattern.size, i_count);
        sides = Eigen::MatrixXd(m_ldlt.solve(sides));
        return sides.allFinite();
    }

private:
    // Compressed rows of the upper half are compressed columns of the lower one.
    Matrix matrix(std::span<double const> i_values) const { return view(m_pattern, i_values); }

    SparsePattern m_pattern;
    Eigen::SimplicialLDLT<Matrix, Eigen::Lower> m_ldlt;
    bool m_factorised = false;
};

class UnsymmetricEngine final : public SparseSolver::Engine
{
public:
    explicit UnsymmetricEngine(SparsePattern const & i_pattern) : m_pattern(i_pattern), m_diagonal(i_pattern) {}

    bool factorise(std::span<double const> i_values) override
    {
        m_state = State::None;
        if (m_pattern.size == 0 || !allFinite(i_values))
            return false;
        m_values.assign(i_values.begin(), i_values.end());
        if (m_diagonal.factorise(i_values))
            m_state = State::Diagonal;
        else
            exchange();
        return m_state != State::None;
    }

    bool solve(std::span<double> io_sides, int i_count) override
    {
        auto const size = static_cast<std::size_t>(m_pattern.size);
        std::vector<double> const given(io_sides.begin(), io_sides.end());
        bool good = m_state == State::Diagonal;
        for (std::size_t k = 0; k < static_cast<std::size_t>(i_count) && good; ++k)
            good = m_diagonal.solve(io_sides.subspan(k * size, size));
        if (good)
            return allFinite(io_sides);
        if (m_state == State::Diagonal)
            exchange();
        if (m_state != State::Exchanged)
            return false;
        Eigen::Map<Eigen::MatrixXd const> const right(given.data(), m_pattern.size, i_count);
        Eigen::Map<Eigen::MatrixXd> sides(io_sides.data(), m_pattern.size, i_count);
        sides = m_exchanging.solve(right);
        return sides.allFinite();
    }

private:
    enum class State
    {
        None,
        Diagonal,
        Exchanged
    };

    void exchange()
    {
        Matrix const matrix = view(m_pattern, m_values).transpose();
        m_exchanging.setPivotThreshold(kPivotThreshold);
        m_exchanging.compute(matrix);
        m_state = m_exchanging.info() == Eigen::Success ? State::Exchanged : State::None;
    }

    SparsePattern m_pattern;
    std::vector<double> m_values;
    SimplicialLu m_diagonal;
    Eigen::SparseLU<Matrix, Eigen::COLAMDOrdering<int>> m_exchanging;
    State m_state = State::None;
};

} // namespace

std::unique_ptr<SparseSolver::Engine> makeEigenEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind)
{
    if (i_kind != SparseSolver::Kind::Unsymmetric)
        return std::make_unique<DefiniteEngine>(i_pattern);
    return std::make_unique<UnsymmetricEngine>(i_pattern);
}

} // namespace voz::onestep
