// SparseSolverMumps.cpp: the multifrontal engine.
//
// Centralised triplets whose index arrays never change; ordering on A + A^T; diagonal pivots preferred. The dense
// kernels of BLAS are held to one thread: a sum split over threads would not repeat to the last bit.

#ifdef VOZ_HAVE_MUMPS

#include "onestep/SparseEngines.h"

#include <dmumps_c.h>

#include <algorithm>
#include <cmath>
#include <mutex>

extern "C" void openblas_set_num_threads(int) __attribute__((weak)); // absent where BLAS is another one

namespace voz::onestep
{

namespace
{

constexpr int kUseWorldCommunicator = -987654;
constexpr double kPivotThreshold = 0.01;
constexpr int kOrderingAmf = 2; // minimum fill: repeats itself to the last bit, and takes any pattern
constexpr int kWorkspaceTooSmall1 = -8, kWorkspaceTooSmall2 = -9;
constexpr int kGreatestWorkspaceIncrease = 2000; // percent

enum Job
{
    kStart = -1,
    kEnd = -2,
    kAnalyse = 1,
    kFactorise = 2,
    kSolve = 3
};

// The engine keeps state of its own between calls of one process.
std::mutex & engineMutex()
{
    static std::mutex mutex;
    return mutex;
}

class MumpsEngine final : public SparseSolver::Engine
{
public:
    MumpsEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind);
    ~MumpsEngine() override;
    MumpsEngine(MumpsEngine const &) = delete;
    MumpsEngine & operator=(MumpsEngine const &) = delete;
    bool factorise(std::span<double const> i_values) override;
    bool solve(std::span<double> io_sides, int i_count) override;

private:
    void run(Job i_job);
    int & control(int i_number) { return m_id.icntl[i_number - 1]; } // numbered from 1, as its manual does

    DMUMPS_STRUC_C m_id{};
    std::vector<int> m_row, m_column;
    std::vector<double> m_values;
    std::vector<int> m_entry; // symmetric kind: index of each kept entry in the caller's values
    bool m_analysed = false, m_factorised = false;
};

MumpsEngine::MumpsEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind)
{
    std::scoped_lock const lock(engineMutex());
    bool const symmetric = i_kind != SparseSolver::Kind::Unsymmetric;
    for (int row = 0; row < i_pattern.size; ++row)
        for (int k = i_pattern.rowStart[static_cast<std::size_t>(row)];
             k < i_pattern.rowStart[static_cast<std::size_t>(row) + 1]; ++k)
        {
            int const column = i_pattern.column[static_cast<std::size_t>(k)];
            if (symmetric && column < row)
                continue;
            m_row.push_back(row + 1);
            m_column.push_back(column + 1);
            if (symmetric)
                m_entry.push_back(k);
        }
    m_values.assign(m_row.size(), 0.0);
    m_id.sym = i_kind == SparseSolver::Kind::PositiveDefinite ? 1 : symmetric ? 2 : 0;
    m_id.par = 1;
    m_id.comm_fortran = kUseWorldCommunicator;
    run(kStart);
    for (int unit = 1; unit <= 4; ++unit)
        control(unit) = unit == 4 ? 0 : -1; // no output
    control(6) = 0;                         // no column permutation: the diagonal is good
    control(7) = kOrderingAmf;
    control(8) = 0; // no scaling: forces of one kind throughout
    control(14) = 40;
    control(16) = 1; // one thread
    m_id.cntl[0] = kPivotThreshold;
    m_id.n = i_pattern.size;
    m_id.nnz = static_cast<MUMPS_INT8>(m_row.size());
    m_id.irn = m_row.data();
    m_id.jcn = m_column.data();
    m_id.a = m_values.data();
    if (i_pattern.size > 0)
        run(kAnalyse);
    m_analysed = i_pattern.size > 0 && m_id.infog[0] >= 0;
}

MumpsEngine::~MumpsEngine()
{
    std::scoped_lock const lock(engineMutex());
    run(kEnd);
}

void MumpsEngine::run(Job i_job)
{
    if (openblas_set_num_threads != nullptr)
        openblas_set_num_threads(1);
    m_id.job = i_job;
    dmumps_c(&m_id);
}

bool MumpsEngine::factorise(std::span<double const> i_values)
{
    std::scoped_lock const lock(engineMutex());
    m_factorised = false;
    if (!m_analysed)
        return false;
    if (m_entry.empty())
        std::copy(i_values.begin(), i_values.end(), m_values.begin());
    else
        for (std::size_t k = 0; k < m_entry.size(); ++k)
            m_values[k] = i_values[static_cast<std::size_t>(m_entry[k])];
    if (!std::all_of(m_values.begin(), m_values.end(), [](double v) { return std::isfinite(v); }))
        return false;
    run(kFactorise);
    while ((m_id.infog[0] == kWorkspaceTooSmall1 || m_id.infog[0] == kWorkspaceTooSmall2) &&
           control(14) < kGreatestWorkspaceIncrease)
    {
        control(14) *= 2;
        run(kFactorise);
    }
    m_factorised = m_id.infog[0] >= 0;
    return m_factorised;
}

bool MumpsEngine::solve(std::span<double> io_sides, int i_count)
{
    std::scoped_lock const lock(engineMutex());
    if (!m_factorised)
        return false;
    m_id.rhs = io_sides.data();
    m_id.nrhs = i_count;
    m_id.lrhs = m_id.n;
    run(kSolve);
    return m_id.infog[0] >= 0 &&
           std::all_of(io_sides.begin(), io_sides.end(), [](double v) { return std::isfinite(v); });
}

} // namespace

std::unique_ptr<SparseSolver::Engine> makeMumpsEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind)
{
    return std::make_unique<MumpsEngine>(i_pattern, i_kind);
}

} // namespace voz::onestep

#endif
