// MeshFuzz.h: what the fuzz targets of the mesh readers share. A mesh that reads is checked and mended, too.

#ifndef MESHFUZZ_H
#define MESHFUZZ_H

#include "MeshCheck.h"
#include "MeshFile.h"

#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace voz::workbench
{

inline void ExpectWhole(MeshModel const & model)
{
    VOZCatMesh const & mesh = model.mesh;
    std::size_t inSets = 0;
    for (ElementSet const & set : model.sets)
        inSets += set.elements.size();
    bool isWhole = model.nodeIds.size() == static_cast<std::size_t>(mesh.numNode()) &&
                   model.elementIds.size() == static_cast<std::size_t>(mesh.numElem()) &&
                   inSets == model.elementIds.size();
    for (int e = 1; e <= mesh.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
            isWhole = isWhole && mesh.ElementValue(e, k) >= 1 && mesh.ElementValue(e, k) <= mesh.numNode();
    if (!isWhole)
        std::abort();
}

inline int FuzzMesh(std::uint8_t const * data, std::size_t size, MeshFormat format, char const * name)
{
    ReadOptions options;
    options.format = format;
    try
    {
        MeshModel model = ReadMeshText({reinterpret_cast<char const *>(data), size}, name, options);
        ExpectWhole(model);
        MeshReport const report = CheckMesh(model);
        ReportAsText(model, report);
        ReportAsJson(model, report).dump(); // throws on a name that is not UTF-8
        RepairMesh(model);
        ExpectWhole(model);
    }
    catch (InputError const &)
    {
    }
    return 0;
}

} // namespace voz::workbench

#endif
