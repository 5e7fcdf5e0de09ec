// SparseSolver.cpp: the choice of the engine.

#include "onestep/SparseSolver.h"

#include "onestep/SparseEngines.h"

#include <algorithm>

namespace voz::onestep
{

namespace
{

#ifdef VOZ_HAVE_MUMPS
// Below this size a simplicial factorisation of a definite matrix beats the fronts of a multifrontal one.
constexpr int kMultifrontalFrom = 40000;
#endif

std::unique_ptr<SparseSolver::Engine> makeEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind)
{
#ifdef VOZ_HAVE_MUMPS
    if (i_kind == SparseSolver::Kind::Unsymmetric || i_pattern.size >= kMultifrontalFrom)
        return makeMumpsEngine(i_pattern, i_kind);
#endif
    return makeEigenEngine(i_pattern, i_kind);
}

} // namespace

int SparsePattern::find(int i_row, int i_column) const
{
    auto const row = static_cast<std::size_t>(i_row);
    auto const first = column.begin() + rowStart[row];
    auto const last = column.begin() + rowStart[row + 1];
    auto const place = std::lower_bound(first, last, i_column);
    return place != last && *place == i_column ? static_cast<int>(place - column.begin()) : -1;
}

SparseSolver::SparseSolver(SparsePattern const & i_pattern, Kind i_kind) : m_engine(makeEngine(i_pattern, i_kind)) {}

} // namespace voz::onestep
