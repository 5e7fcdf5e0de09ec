// Pending.cpp: operations that are declared and not yet built. Each raises.

#include "CATError.h"
#include "VOZMeshGenerator.h"
#include "VOZSolverSpringback.h"

namespace
{
[[noreturn]] void RaiseNotBuilt(char const * i_name)
{
    throw CATError(CATUnicodeString(i_name), "not built yet", __LINE__);
}
} // namespace

void VOZMeshGenerator::ModifyMeshTopolgyForSpringBack(VOZMesh_s *, unsigned short const *, VOZProgressCallback, void *,
                                                      void *)
{
    RaiseNotBuilt("ModifyMeshTopolgyForSpringBack");
}

int VOZSolverSpringback::Unfold(unsigned short const *, unsigned short const *, int, int, double const *,
                                VOZMechanicalProp_s const *, double const *, double const *, VOZStopFunction,
                                VOZProgressCallback, void *, void *, VOZMesh_s *, VOZSBConstraints_s const *, void *,
                                float *, float *, float *, VOZMesh_s *, bool, double *)
{
    RaiseNotBuilt("Unfold");
}
