// NastranWriter.cpp: bulk data with the coordinates in large field, all else in small.

#include "CardText.h"
#include "MeshReaders.h"
#include "OutputFile.h"

namespace voz::workbench
{
namespace
{
// Ids beyond eight digits need the large field.
void writeElement(OutputFile & file, std::string const & name, std::vector<int> const & fields)
{
    bool isWide = false;
    for (int const field : fields)
        isWide = isWide || field > 99999999;
    if (!isWide)
    {
        file << LeftIn(name, 8);
        for (int const field : fields)
            file << SmallField(field);
        file << '\n';
        return;
    }
    file << LeftIn(name + "*", 8);
    for (std::size_t k = 0; k < fields.size(); ++k)
        file << (k == 4 ? "\n*       " : "") << LargeField(fields[k]);
    file << '\n';
}
} // namespace

void WriteNastran(MeshModel const & i_model, OutputFile & io_file)
{
    io_file << "$ Lengths in mm.\nBEGIN BULK\n";
    VOZCatMesh const & mesh = i_model.mesh;
    for (int n = 1; n <= mesh.numNode(); ++n)
        io_file << GridCard(i_model.nodeIds[static_cast<std::size_t>(n - 1)], mesh.GetNodeData()[n]);
    std::vector<int> const setOf = SetOfElements(i_model);
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        bool const isTriangle = IsTriangleRow(mesh.GetElemData()[e]);
        std::vector<int> fields{i_model.elementIds[static_cast<std::size_t>(e - 1)],
                                setOf[static_cast<std::size_t>(e)]};
        for (int k = 0; k < (isTriangle ? 3 : 4); ++k)
            fields.push_back(i_model.nodeIds[static_cast<std::size_t>(mesh.ElementValue(e, k) - 1)]);
        writeElement(io_file, isTriangle ? "CTRIA3" : "CQUAD4", fields);
    }
    for (ElementSet const & set : i_model.sets)
        if (set.thickness > 0.0)
            io_file << "PSHELL* " << LargeField(set.id) << std::string(16, ' ') << LargeField(set.thickness) << "\n*\n";
    io_file << "ENDDATA\n";
}

} // namespace voz::workbench
