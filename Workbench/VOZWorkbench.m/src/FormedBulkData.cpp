// FormedBulkData.cpp: the formed blank as a NASTRAN deck that runs as it stands: free vibration, no loads. A property
// and a material for each material of the job, the thickness at the corners of each element. mm, N, t, s, MPa.

#include "CardText.h"
#include "FormedParts.h"
#include "Job.h"
#include "OutputFile.h"

namespace voz::workbench
{
namespace
{
constexpr double kTonnePerCubicMillimetre = 1e-12; // of a kilogram per cubic metre
constexpr char const * kBlank = "        ";

constexpr char const * kHead = "$ The formed blank with its thickness at the corners of each element.\n"
                               "$ Units: mm, N, t, s, MPa (density t/mm^3).\n"
                               "$ As it stands: free vibration, ten modes. Put your own case in its place.\n"
                               "SOL 103\n"
                               "CEND\n"
                               "TITLE = FORMED BLANK\n"
                               "METHOD = 1\n"
                               "BEGIN BULK\n"
                               "EIGRL   1                       10\n";

void writeElement(OutputFile & file, Outcome const & outcome, int e, int property)
{
    VOZCatMesh const & mesh = outcome.part;
    bool const isTriangle = mesh.isTriangle(e) != 0;
    int const corners = isTriangle ? 3 : 4;
    file << (isTriangle ? "CTRIA3  " : "CQUAD4  ") << SmallField(e) << SmallField(property);
    for (int k = 0; k < corners; ++k)
        file << SmallField(mesh.elem(e, k));
    file << "\n+       " << kBlank << kBlank;
    for (int k = 0; k < corners; ++k)
        file << SmallField(outcome.nodes[static_cast<std::size_t>(mesh.elem(e, k) - 1)].thickness);
    file << '\n';
}
} // namespace

void WriteFormedBulkData(Outcome const & i_outcome, std::vector<JobMaterial> const & i_materials,
                         std::string const & i_path)
{
    OutputFile file(i_path);
    file << kHead;
    VOZCatMesh const & mesh = i_outcome.part;
    for (int n = 1; n <= mesh.numNode(); ++n)
        file << GridCard(n, mesh.GetNodeData()[n]);
    for (int e = 1; e <= mesh.numElem(); ++e)
        writeElement(file, i_outcome, e,
                     i_outcome.materials.empty() ? 1 : 1 + i_outcome.materials[static_cast<std::size_t>(e - 1)]);
    for (std::size_t m = 0; m < i_materials.size(); ++m)
    {
        JobMaterial const & material = i_materials[m];
        int const id = static_cast<int>(m) + 1;
        file << "PSHELL  " << SmallField(id) << SmallField(id) << SmallField(i_outcome.firstThickness) << SmallField(id)
             << kBlank << SmallField(id) << '\n';
        file << "MAT1    " << SmallField(id) << SmallField(material.modulus) << kBlank << SmallField(material.poisson)
             << SmallField(material.density * kTonnePerCubicMillimetre) << '\n';
    }
    file << "ENDDATA\n";
    file.Commit();
}

} // namespace voz::workbench
