// solver-comparison [K ...]: sparse direct solvers on the matrices of the one-step solve, one row of a table each.
//
// For each K a quarter of cup A2 with 168 K^2 - 6 K triangles (8, 24: about 10^4 and 10^5) is solved by the kernel;
// the unsymmetric tangent at the solution and the definite matrix of the start there go to every solver that was found
// when this was built. CPU seconds of this process with BLAS on one thread (set OPENBLAS_NUM_THREADS=1): analysis, the
// better of two numeric factorisations, one solve; entries of the factors; |b - A x| / |b|. Solvers under the GPL are
// here for comparison alone: nothing of the product links them.

#include "OneStepProblems.h"

#include "onestep/Partition.h"
#include "onestep/PieceSolver.h"
#include "onestep/SimplicialLu.h"
#include "onestep/SymmetricDirichlet.h"

#include <Eigen/OrderingMethods>
#include <Eigen/SparseCholesky>
#include <Eigen/SparseLU>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>

#ifdef VOZ_HAVE_MUMPS
#include <dmumps_c.h>
#endif
#ifdef VOZ_COMPARE_SUITESPARSE
#include <cholmod.h>
#include <klu.h>
#include <umfpack.h>
#endif
#ifdef VOZ_COMPARE_SUPERLU
#include <slu_ddefs.h>
#endif

namespace
{

using namespace voz::onestep;
using Matrix = Eigen::SparseMatrix<double, Eigen::ColMajor, int>;
using Vector = Eigen::VectorXd;

struct System
{
    Matrix matrix; // by columns
    Vector right;
};

double now()
{
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

double timed(std::function<void()> const & work)
{
    double const begin = now();
    work();
    return now() - begin;
}

struct Candidate
{
    std::function<void()> analyse, factorise;
    std::function<void(Vector & io_x)> solve;
    std::function<double()> entries = [] { return 0.0; };
};

void compare(char const * name, char const * licence, System const & system, Candidate const & candidate)
{
    double const analysis = timed(candidate.analyse);
    double factorisation = timed(candidate.factorise);
    factorisation = std::min(factorisation, timed(candidate.factorise));
    Vector x = system.right;
    double const solution = timed([&] { candidate.solve(x); });
    double const error = (system.right - system.matrix * x).norm() / system.right.norm();
    std::printf("| %s | %s | %.3f | %.3f | %.3f | %.1f | %.0e |\n", name, licence, analysis, factorisation, solution,
                1e-6 * candidate.entries(), error);
    std::fflush(stdout);
}

#ifdef VOZ_HAVE_MUMPS
class Mumps
{
public:
    Mumps(Matrix const & matrix, bool definite, int ordering)
    {
        for (int c = 0; c < matrix.outerSize(); ++c)
            for (Matrix::InnerIterator it(matrix, c); it; ++it)
                if (!definite || it.row() >= it.col())
                {
                    m_row.push_back(static_cast<int>(it.row()) + 1);
                    m_column.push_back(static_cast<int>(it.col()) + 1);
                    m_values.push_back(it.value());
                }
        m_id.sym = definite ? 1 : 0;
        m_id.par = 1;
        m_id.comm_fortran = -987654;
        run(-1);
        for (int unit = 0; unit < 4; ++unit)
            m_id.icntl[unit] = unit == 3 ? 0 : -1;
        m_id.icntl[5] = 0;
        m_id.icntl[6] = ordering;
        m_id.icntl[7] = 0;
        m_id.icntl[13] = 40;
        m_id.icntl[15] = 1;
        m_id.cntl[0] = 0.01;
        m_id.n = static_cast<int>(matrix.rows());
        m_id.nnz = static_cast<MUMPS_INT8>(m_row.size());
        m_id.irn = m_row.data();
        m_id.jcn = m_column.data();
        m_id.a = m_values.data();
    }
    ~Mumps() { run(-2); }
    Mumps(Mumps const &) = delete;
    Mumps & operator=(Mumps const &) = delete;

    void run(int job)
    {
        m_id.job = job;
        dmumps_c(&m_id);
        if (m_id.infog[0] < 0)
            std::printf("MUMPS: job %d ends with %d\n", job, m_id.infog[0]);
    }
    void solve(Vector & io_x)
    {
        m_id.rhs = io_x.data();
        m_id.nrhs = 1;
        m_id.lrhs = m_id.n;
        run(3);
    }
    double entries() const { return m_id.infog[28] < 0 ? -1e6 * m_id.infog[28] : m_id.infog[28]; }

private:
    DMUMPS_STRUC_C m_id{};
    std::vector<int> m_row, m_column;
    std::vector<double> m_values;
};

void compareMumps(char const * name, System const & system, bool definite, int ordering)
{
    Mumps mumps(system.matrix, definite, ordering);
    compare(name, "CeCILL-C", system,
            {[&] { mumps.run(1); }, [&] { mumps.run(2); }, [&](Vector & x) { mumps.solve(x); },
             [&] { return mumps.entries(); }});
}
#endif

void compareEigenLu(System const & system)
{
    Eigen::SparseLU<Matrix, Eigen::COLAMDOrdering<int>> lu;
    lu.setPivotThreshold(0.01);
    compare("Eigen SparseLU, COLAMD", "MPL-2.0", system,
            {[&] { lu.analyzePattern(system.matrix); }, [&] { lu.factorize(system.matrix); },
             [&](Vector & x) { x = lu.solve(x).eval(); }, [&] { return static_cast<double>(lu.nnzL() + lu.nnzU()); }});
}

void compareEigenLdlt(System const & system)
{
    Eigen::SimplicialLDLT<Matrix, Eigen::Lower> ldlt;
    compare("Eigen SimplicialLDLT, AMD", "MPL-2.0", system,
            {[&] { ldlt.analyzePattern(system.matrix); }, [&] { ldlt.factorize(system.matrix); },
             [&](Vector & x) { x = ldlt.solve(x).eval(); },
             [&] { return static_cast<double>(ldlt.matrixL().nestedExpression().nonZeros()); }});
}

void compareOwnLu(System const & system)
{
    Matrix const rows = system.matrix.transpose();
    SparsePattern pattern;
    pattern.size = static_cast<int>(rows.rows());
    pattern.rowStart.assign(rows.outerIndexPtr(), rows.outerIndexPtr() + rows.rows() + 1);
    pattern.column.assign(rows.innerIndexPtr(), rows.innerIndexPtr() + rows.nonZeros());
    std::unique_ptr<SimplicialLu> lu;
    std::span<double const> const values(rows.valuePtr(), static_cast<std::size_t>(rows.nonZeros()));
    compare("ours, simplicial LDU, AMD (builds without MUMPS)", "ours", system,
            {[&] { lu = std::make_unique<SimplicialLu>(pattern); }, [&] { lu->factorise(values); },
             [&](Vector & x) {
                 lu->solve({x.data(), static_cast<std::size_t>(x.size())});
             }});
}

#ifdef VOZ_COMPARE_SUITESPARSE
void compareUmfpack(System const & system)
{
    Matrix const & a = system.matrix;
    double control[UMFPACK_CONTROL], info[UMFPACK_INFO];
    umfpack_di_defaults(control);
    control[UMFPACK_STRATEGY] = UMFPACK_STRATEGY_SYMMETRIC;
    void *symbolic = nullptr, *numeric = nullptr;
    int const n = static_cast<int>(a.rows());
    compare(
        "UMFPACK, symmetric strategy", "GPL-2", system,
        {[&]
         { umfpack_di_symbolic(n, n, a.outerIndexPtr(), a.innerIndexPtr(), a.valuePtr(), &symbolic, control, info); },
         [&]
         {
             umfpack_di_free_numeric(&numeric);
             umfpack_di_numeric(a.outerIndexPtr(), a.innerIndexPtr(), a.valuePtr(), symbolic, &numeric, control, info);
         },
         [&](Vector & x)
         {
             Vector const b = x;
             umfpack_di_solve(UMFPACK_A, a.outerIndexPtr(), a.innerIndexPtr(), a.valuePtr(), x.data(), b.data(),
                              numeric, control, info);
         },
         [&] { return info[UMFPACK_LNZ] + info[UMFPACK_UNZ]; }});
    umfpack_di_free_numeric(&numeric);
    umfpack_di_free_symbolic(&symbolic);
}

void compareKlu(System const & system)
{
    Matrix a = system.matrix;
    klu_common common;
    klu_defaults(&common);
    int const n = static_cast<int>(a.rows());
    klu_symbolic * symbolic = nullptr;
    klu_numeric * numeric = nullptr;
    compare("KLU, AMD", "LGPL-2.1", system,
            {[&] { symbolic = klu_analyze(n, a.outerIndexPtr(), a.innerIndexPtr(), &common); },
             [&]
             {
                 if (numeric != nullptr)
                     klu_refactor(a.outerIndexPtr(), a.innerIndexPtr(), a.valuePtr(), symbolic, numeric, &common);
                 else
                     numeric = klu_factor(a.outerIndexPtr(), a.innerIndexPtr(), a.valuePtr(), symbolic, &common);
             },
             [&](Vector & x) { klu_solve(symbolic, numeric, n, 1, x.data(), &common); },
             [&] { return static_cast<double>(numeric->lnz + numeric->unz); }});
    klu_free_numeric(&numeric, &common);
    klu_free_symbolic(&symbolic, &common);
}

void compareCholmod(System const & system)
{
    Matrix lower = system.matrix.triangularView<Eigen::Lower>();
    cholmod_common common;
    cholmod_start(&common);
    common.supernodal = CHOLMOD_SUPERNODAL;
    cholmod_sparse a{};
    a.nrow = a.ncol = static_cast<std::size_t>(lower.rows());
    a.nzmax = static_cast<std::size_t>(lower.nonZeros());
    a.p = lower.outerIndexPtr();
    a.i = lower.innerIndexPtr();
    a.x = lower.valuePtr();
    a.stype = -1;
    a.itype = CHOLMOD_INT;
    a.xtype = CHOLMOD_REAL;
    a.dtype = CHOLMOD_DOUBLE;
    a.sorted = a.packed = 1;
    cholmod_factor * factor = nullptr;
    compare("CHOLMOD, supernodal", "GPL-2", system,
            {[&] { factor = cholmod_analyze(&a, &common); }, [&] { cholmod_factorize(&a, factor, &common); },
             [&](Vector & x)
             {
                 cholmod_dense b{};
                 b.nrow = b.d = b.nzmax = a.nrow;
                 b.ncol = 1;
                 b.x = x.data();
                 b.xtype = CHOLMOD_REAL;
                 b.dtype = CHOLMOD_DOUBLE;
                 cholmod_dense * result = cholmod_solve(CHOLMOD_A, factor, &b, &common);
                 std::copy_n(static_cast<double *>(result->x), x.size(), x.data());
                 cholmod_free_dense(&result, &common);
             },
             [&] { return common.lnz; }});
    cholmod_free_factor(&factor, &common);
    cholmod_finish(&common);
}
#endif

#ifdef VOZ_COMPARE_SUPERLU
// Analysis and factorisation in one: the library's simple driver's own pieces, with a symmetric strategy.
void compareSuperLu(System const & system)
{
    Matrix a = system.matrix;
    int const n = static_cast<int>(a.rows());
    SuperMatrix store, permuted, lower, upper;
    dCreate_CompCol_Matrix(&store, n, n, static_cast<int>(a.nonZeros()), a.valuePtr(), a.innerIndexPtr(),
                           a.outerIndexPtr(), SLU_NC, SLU_D, SLU_GE);
    superlu_options_t options;
    set_default_options(&options);
    options.SymmetricMode = YES;
    options.DiagPivotThresh = 0.01;
    std::vector<int> columns(static_cast<std::size_t>(n)), rows(columns), tree(columns);
    SuperLUStat_t stat;
    StatInit(&stat);
    GlobalLU_t global;
    int info = 0;
    bool factorised = false;
    compare("SuperLU, minimum degree on A + A^T", "BSD-3", system,
            {[&]
             {
                 get_perm_c(MMD_AT_PLUS_A, &store, columns.data());
                 sp_preorder(&options, &store, columns.data(), tree.data(), &permuted);
             },
             [&]
             {
                 if (factorised)
                 {
                     Destroy_SuperNode_Matrix(&lower);
                     Destroy_CompCol_Matrix(&upper);
                 }
                 dgstrf(&options, &permuted, sp_ienv(2), sp_ienv(1), tree.data(), nullptr, 0, columns.data(),
                        rows.data(), &lower, &upper, &global, &stat, &info);
                 factorised = true;
             },
             [&](Vector & x)
             {
                 SuperMatrix b;
                 dCreate_Dense_Matrix(&b, n, 1, x.data(), n, SLU_DN, SLU_D, SLU_GE);
                 dgstrs(NOTRANS, &lower, &upper, columns.data(), rows.data(), &b, &stat, &info);
                 Destroy_SuperMatrix_Store(&b);
             },
             [&]
             {
                 return static_cast<double>(static_cast<SCformat *>(lower.Store)->nnz +
                                            static_cast<NCformat *>(upper.Store)->nnz);
             }});
    StatFree(&stat);
    Destroy_SuperNode_Matrix(&lower);
    Destroy_CompCol_Matrix(&upper);
    Destroy_CompCol_Permuted(&permuted);
    Destroy_SuperMatrix_Store(&store);
}
#endif

System systemOf(SparsePattern const & pattern, std::vector<double> const & values)
{
    Eigen::Map<Eigen::SparseMatrix<double, Eigen::RowMajor, int> const> const rows(
        pattern.size, pattern.size, static_cast<Eigen::Index>(values.size()), pattern.rowStart.data(),
        pattern.column.data(), values.data());
    System system{Matrix(rows), Vector(pattern.size)};
    for (int i = 0; i < pattern.size; ++i)
        system.right[i] = 1.0 + i % 7;
    return system;
}

void comparePart(int k)
{
    using namespace onesteptest;
    SurfaceMesh const mesh = cup({}, k, Extent::Quarter, Cells::Triangles);
    Problem problem = onesteptest::problemOf(mesh, mildSteel());
    quarterSymmetry(problem, mesh); // regular without a border
    restrain(problem, mesh, 20.0, [](Point3 const &) { return true; });
    Partition parts = partition(problem);
    Progress const silent;
    Monitor monitor(silent);
    PieceSolver solver(problem, {}, parts.pieces.front(), monitor);
    if (solver.solve() != Status::Converged)
        return;
    std::vector<double> values, gradient;
    solver.system().jacobian(solver.flat(), values);
    System const tangent = systemOf(solver.system().pattern().sparse(), values);
    std::printf("\nTangent, %zu triangles, %td unknowns, %td entries\n\n", problem.elements.size(),
                tangent.matrix.rows(), tangent.matrix.nonZeros());
    std::printf("| solver | licence | analysis s | factorisation s | solve s | 10^6 entries | residual |\n"
                "|---|---|---|---|---|---|---|\n");
#ifdef VOZ_HAVE_MUMPS
    compareMumps("MUMPS, minimum fill", tangent, false, 2);
    compareMumps("MUMPS, minimum degree", tangent, false, 0);
    compareMumps("MUMPS, SCOTCH", tangent, false, 3);
    compareMumps("MUMPS, METIS", tangent, false, 5);
#endif
    compareOwnLu(tangent);
#ifdef VOZ_COMPARE_SUPERLU
    compareSuperLu(tangent);
#endif
    compareEigenLu(tangent);
#ifdef VOZ_COMPARE_SUITESPARSE
    compareUmfpack(tangent);
    compareKlu(tangent);
#endif
    SymmetricDirichlet const energy(solver.piece());
    energy.derivatives(solver.flat(), 1000.0, gradient, values);
    System const start = systemOf(energy.pattern().sparse(), values);
    std::printf("\nStart, definite, %td unknowns\n\n", start.matrix.rows());
    std::printf("| solver | licence | analysis s | factorisation s | solve s | 10^6 entries | residual |\n"
                "|---|---|---|---|---|---|---|\n");
#ifdef VOZ_HAVE_MUMPS
    compareMumps("MUMPS, minimum fill", start, true, 2);
    compareMumps("MUMPS, METIS", start, true, 5);
#endif
    compareEigenLdlt(start);
#ifdef VOZ_COMPARE_SUITESPARSE
    compareCholmod(start);
#endif
}

} // namespace

int main(int argc, char ** argv)
{
    if (argc < 2)
    {
        comparePart(8);
        comparePart(24);
    }
    for (int i = 1; i < argc; ++i)
        comparePart(std::atoi(argv[i]));
    return 0;
}
