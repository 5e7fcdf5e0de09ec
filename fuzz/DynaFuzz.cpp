// DynaFuzz.cpp: any bytes give a mesh or an InputError; see MeshFuzz.h.

#include "MeshFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    return voz::workbench::FuzzMesh(data, size, voz::workbench::MeshFormat::Dyna, "mesh.k");
}
