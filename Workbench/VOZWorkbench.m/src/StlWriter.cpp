// StlWriter.cpp: binary where that says it all, else text with all digits.

#include "MeshReaders.h"
#include "NumberText.h"
#include "OutputFile.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace voz::workbench
{
namespace
{
using Normal = std::array<double, 3>;

bool isSingle(VOZCatMesh const & mesh)
{
    for (int n = 1; n <= mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            if (static_cast<double>(static_cast<float>(mesh.NodeValue(n, c))) != mesh.NodeValue(n, c))
                return false;
    return true;
}

Normal normalOf(VOZCatMesh const & mesh, std::array<int, 3> const & corners)
{
    Normal a, b;
    for (int c = 0; c < 3; ++c)
    {
        auto const i = static_cast<std::size_t>(c);
        a[i] = mesh.NodeValue(corners[1], c) - mesh.NodeValue(corners[0], c);
        b[i] = mesh.NodeValue(corners[2], c) - mesh.NodeValue(corners[0], c);
    }
    Normal normal{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    double const length = std::hypot(normal[0], normal[1], normal[2]);
    for (double & x : normal)
        x = length > 0.0 ? x / length : 0.0;
    return normal;
}

// Calls visit(corners) for each triangle of element e: a quadrilateral is cut along its first diagonal.
template <class Visit>
void forEachTriangle(VOZCatMesh const & mesh, int e, Visit visit)
{
    int const(&row)[4] = mesh.GetElemData()[e];
    visit(std::array<int, 3>{row[0], row[1], row[2]});
    if (!IsTriangleRow(row))
        visit(std::array<int, 3>{row[0], row[2], row[3]});
}

void appendBytes(std::string & text, std::uint32_t value)
{
    for (unsigned k = 0; k < 4; ++k)
        text += static_cast<char>((value >> (8U * k)) & 0xFFU);
}

void appendSingle(std::string & text, double value)
{
    auto const single = static_cast<float>(value);
    std::uint32_t bits = 0;
    std::memcpy(&bits, &single, sizeof bits);
    appendBytes(text, bits);
}

void writeBinary(VOZCatMesh const & mesh, OutputFile & file)
{
    std::string & text = file.Text();
    std::string head = "Lengths in mm.";
    head.resize(80, ' ');
    std::uint32_t count = 0;
    for (int e = 1; e <= mesh.numElem(); ++e)
        forEachTriangle(mesh, e, [&](auto const &) { ++count; });
    text.reserve(84 + std::size_t{50} * count);
    text += head;
    appendBytes(text, count);
    for (int e = 1; e <= mesh.numElem(); ++e)
        forEachTriangle(mesh, e,
                        [&](std::array<int, 3> const & corners)
                        {
                            for (double const x : normalOf(mesh, corners))
                                appendSingle(text, x);
                            for (int const n : corners)
                                for (int c = 0; c < 3; ++c)
                                    appendSingle(text, mesh.NodeValue(n, c));
                            text.append(2, '\0');
                        });
}

void writeSolid(VOZCatMesh const & mesh, ElementSet const & set, OutputFile & file)
{
    std::string const name = set.name.empty() ? "" : " " + AsUtf8(set.name);
    file << "solid" << name << '\n';
    for (int const e : set.elements)
        forEachTriangle(mesh, e,
                        [&](std::array<int, 3> const & corners)
                        {
                            Normal const normal = normalOf(mesh, corners);
                            file << "facet normal " << Shortest(normal[0]) << ' ' << Shortest(normal[1]) << ' '
                                 << Shortest(normal[2]) << "\n outer loop\n";
                            for (int const n : corners)
                                file << "  vertex " << Shortest(mesh.NodeValue(n, 0)) << ' '
                                     << Shortest(mesh.NodeValue(n, 1)) << ' ' << Shortest(mesh.NodeValue(n, 2)) << '\n';
                            file << " endloop\nendfacet\n";
                        });
    file << "endsolid" << name << '\n';
}
} // namespace

void WriteStl(MeshModel const & i_model, OutputFile & io_file)
{
    bool const isOneSolid = i_model.sets.size() == 1 && i_model.sets[0].name.empty();
    if (isOneSolid && isSingle(i_model.mesh))
    {
        writeBinary(i_model.mesh, io_file);
        return;
    }
    for (ElementSet const & set : i_model.sets)
        writeSolid(i_model.mesh, set, io_file);
}

} // namespace voz::workbench
