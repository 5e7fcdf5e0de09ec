// DynaWriter.cpp: a keyword deck of nodes, shells, parts and sections; I10 where an id needs more than eight columns.

#include "CardText.h"
#include "MeshReaders.h"
#include "OutputFile.h"

#include <algorithm>

namespace voz::workbench
{
namespace
{
std::size_t idWidth(MeshModel const & model)
{
    int largest = 0;
    for (int const id : model.nodeIds)
        largest = std::max(largest, id);
    for (int const id : model.elementIds)
        largest = std::max(largest, id);
    for (ElementSet const & set : model.sets)
        largest = std::max(largest, set.id);
    return largest > 9999999 ? 10 : 8; // eight digits would touch the field before
}

// A title is one line that neither a comment nor a keyword begins.
std::string titleOf(ElementSet const & set)
{
    std::string_view title = Trimmed(set.name);
    while (!title.empty() && (title[0] == '$' || title[0] == '*'))
        title = Trimmed(title.substr(1));
    return std::string(title); // blank for a set without a name
}
} // namespace

void WriteDyna(MeshModel const & i_model, OutputFile & io_file)
{
    VOZCatMesh const & mesh = i_model.mesh;
    std::size_t const width = idWidth(i_model);
    char const * const mark = width == 10 ? " %" : "";
    io_file << "$ Lengths in mm.\n*KEYWORD\n*NODE" << mark << '\n';
    for (int n = 1; n <= mesh.numNode(); ++n)
    {
        io_file << KeywordField(i_model.nodeIds[static_cast<std::size_t>(n - 1)], width);
        for (int c = 0; c < 3; ++c)
            io_file << KeywordField(mesh.NodeValue(n, c), 16);
        io_file << '\n';
    }
    std::vector<int> const setOf = SetOfElements(i_model);
    io_file << "*ELEMENT_SHELL" << mark << '\n';
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        bool const isTriangle = IsTriangleRow(mesh.GetElemData()[e]);
        io_file << KeywordField(i_model.elementIds[static_cast<std::size_t>(e - 1)], width)
                << KeywordField(setOf[static_cast<std::size_t>(e)], width);
        for (int k = 0; k < 4; ++k)
        {
            int const position = mesh.ElementValue(e, isTriangle ? std::min(k, 2) : k);
            io_file << KeywordField(i_model.nodeIds[static_cast<std::size_t>(position - 1)], width);
        }
        io_file << '\n';
    }
    for (ElementSet const & set : i_model.sets)
    {
        int const section = set.thickness > 0.0 ? set.id : 0;
        io_file << "*PART\n"
                << titleOf(set) << '\n'
                << KeywordField(set.id, 10) << KeywordField(section, 10) << KeywordField(0, 10) << '\n';
        if (section != 0)
        {
            io_file << "*SECTION_SHELL\n" << KeywordField(section, 10) << KeywordField(2, 10) << '\n';
            for (int k = 0; k < 4; ++k)
                io_file << KeywordField(set.thickness, 10);
            io_file << '\n';
        }
    }
    io_file << "*END\n";
}

} // namespace voz::workbench
