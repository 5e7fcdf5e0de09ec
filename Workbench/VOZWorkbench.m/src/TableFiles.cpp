// TableFiles.cpp: results as comma-separated tables, a header with units, a row per node or element.

#include "Exports.h"
#include "OutputFile.h"

#include <initializer_list>

namespace voz::workbench
{
namespace
{

void row(OutputFile & file, std::size_t number, std::initializer_list<double> values, std::initializer_list<int> codes)
{
    file << static_cast<int>(number);
    for (double const value : values)
        file << ',' << Shortest(value);
    for (int const code : codes)
        file << ',' << code;
    file << '\n';
}

void writeNodes(Outcome const & outcome, std::string const & path)
{
    OutputFile file(path);
    file << "node,x (mm),y (mm),z (mm),flat x (mm),flat y (mm),dx (mm),dy (mm),dz (mm),thickness (mm),major strain "
            "(%),minor strain (%),safety zone,forming zone\n";
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
    {
        double const * const p = outcome.part.GetNodeData()[n + 1];
        NodeOutcome const & node = outcome.nodes[n];
        Point3 const & d = node.displacement;
        row(file, n + 1,
            {p[0], p[1], p[2], node.flat[0], node.flat[1], d[0], d[1], d[2], node.thickness, node.major, node.minor},
            {node.safety, node.forming});
    }
    file.Commit();
}

void writeElements(Outcome const & outcome, std::string const & path)
{
    OutputFile file(path);
    file << "element,thickness (mm),thinning (%),major strain (%),minor strain (%),thickness strain (%),angle "
            "(rad),equivalent strain (%),equivalent stress (MPa),area (mm2),safety zone,forming zone\n";
    for (std::size_t e = 0; e < outcome.elements.size(); ++e)
    {
        ElementOutcome const & element = outcome.elements[e];
        row(file, e + 1,
            {element.thickness, element.thinning, element.major, element.minor, element.thicknessStrain, element.angle,
             element.equivalentStrain, element.stress, element.area},
            {element.safety, element.forming});
    }
    file.Commit();
}

void writeForming(Outcome const & outcome, std::string const & path)
{
    OutputFile file(path);
    file << "element,minor strain (%),major strain (%),limit at this minor strain (%),margin (%),safety zone\n";
    for (std::size_t e = 0; e < outcome.elements.size(); ++e)
    {
        ElementOutcome const & element = outcome.elements[e];
        double const limit = outcome.limit.limitCurveMajor(element.minor);
        row(file, e + 1, {element.minor, element.major, limit, limit - element.major}, {element.safety});
    }
    file.Commit();
}

} // namespace

void WriteTables(Outcome const & i_outcome, std::string const & i_folder)
{
    writeNodes(i_outcome, i_folder + "/nodes.csv");
    writeElements(i_outcome, i_folder + "/elements.csv");
    writeForming(i_outcome, i_folder + "/fld.csv");
}

} // namespace voz::workbench
