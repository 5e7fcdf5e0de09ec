// SparseEngines.h: the libraries behind SparseSolver.

#ifndef SPARSEENGINES_H
#define SPARSEENGINES_H

#include "onestep/SparseSolver.h"

namespace voz::onestep
{

std::unique_ptr<SparseSolver::Engine> makeEigenEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind);

#ifdef VOZ_HAVE_MUMPS
std::unique_ptr<SparseSolver::Engine> makeMumpsEngine(SparsePattern const & i_pattern, SparseSolver::Kind i_kind);
#endif

} // namespace voz::onestep

#endif
