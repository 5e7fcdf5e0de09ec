// VOZMeshGenerator.cpp: the springback mesh is checked and stays as it is.

#include "VOZMeshGenerator.h"

#include "CATError.h"
#include "SpringbackRun.h"
#include "VOZMesh.h"

#include <limits>

void VOZMeshGenerator::ModifyMeshTopolgyForSpringBack(VOZMesh_s * io_psMesh, unsigned short const *,
                                                      VOZProgressCallback, void *, void *)
{
    constexpr double kRows[9] = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0}, kOrigin[3] = {0.0, 0.0, 0.0};
    constexpr int kAnyMaterial = std::numeric_limits<int>::max(); // their number comes with the solve
    try
    {
        CheckMesh(io_psMesh, "blank mesh");
        NodesOf(*io_psMesh, StageFrame(kRows, kOrigin), "blank mesh");
        ElementsOf(*io_psMesh, kAnyMaterial, "blank mesh");
    }
    catch (JobError const & error)
    {
        throw CATError(CATUnicodeString(error.what()), "VOZMeshGenerator", __LINE__);
    }
}
