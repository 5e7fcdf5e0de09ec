// SparseSolverEigen.cpp: small definite systems, and all systems of builds without a multifrontal solver.
//
// Supernodal LU (J. W. Demmel et al., SIAM J. Matrix Anal. Appl. 20 (1999) 720) with minimum degree on A + A^T;
// simplicial LDL^T for the symmetric kind.

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
using Rows = Eigen::Map<Eigen::SparseMatrix<double, Eigen::RowMajor, int> const>;
using Kind = SparseSolver::Kind;

class EigenEngine final : public SparseSolver::Engine
{
public:
    EigenEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind) : m_pattern(i_pattern), m_kind(i_kind)
    {
        std::vector<double> const ones(m_pattern.column.size(), 1.0);
        m_matrix = rows(ones);
        m_lu.isSymmetric(true);
        m_lu.setPivotThreshold(kPivotThreshold);
        if (m_kind == Kind::Unsymmetric)
            m_lu.analyzePattern(m_matrix);
        else
            m_ldlt.analyzePattern(m_matrix);
    }

    bool factorise(std::span<double const> i_values) override
    {
        m_factorised = false;
        if (m_pattern.size == 0 ||
            !std::all_of(i_values.begin(), i_values.end(), [](double v) { return std::isfinite(v); }))
            return false;
        m_matrix = rows(i_values);
        if (m_kind == Kind::Unsymmetric)
            m_lu.factorize(m_matrix);
        else
            m_ldlt.factorize(m_matrix);
        m_factorised = (m_kind == Kind::Unsymmetric ? m_lu.info() : m_ldlt.info()) == Eigen::Success;
        return m_factorised;
    }

    bool solve(std::span<double> io_sides, int i_count) override
    {
        if (!m_factorised)
            return false;
        Eigen::Map<Eigen::MatrixXd> sides(io_sides.data(), m_pattern.size, i_count);
        Eigen::MatrixXd const solution =
            m_kind == Kind::Unsymmetric ? Eigen::MatrixXd(m_lu.solve(sides)) : Eigen::MatrixXd(m_ldlt.solve(sides));
        sides = solution;
        return sides.allFinite();
    }

private:
    Rows rows(std::span<double const> i_values) const
    {
        return Rows(m_pattern.size, m_pattern.size, static_cast<Eigen::Index>(m_pattern.column.size()),
                    m_pattern.rowStart.data(), m_pattern.column.data(), i_values.data());
    }

    SparsePattern m_pattern;
    Kind m_kind;
    Matrix m_matrix;
    Eigen::SparseLU<Matrix, Eigen::AMDOrdering<int>> m_lu;
    Eigen::SimplicialLDLT<Matrix, Eigen::Upper> m_ldlt;
    bool m_factorised = false;
};

} // namespace

std::unique_ptr<SparseSolver::Engine> makeEigenEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind)
{
    return std::make_unique<EigenEngine>(i_pattern, i_kind);
}

} // namespace voz::onestep
