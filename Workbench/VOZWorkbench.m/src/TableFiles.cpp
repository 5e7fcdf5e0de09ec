// TableFiles.cpp: results as comma-separated tables, a header with units, a row per node or element.

#include "Exports.h"
#include "OutputFile.h"

#include <cmath>
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
    file << "node,x (mm),y (mm),z (mm)" << (outcome.hasBlank ? ",flat x (mm),flat y (mm),dx (mm),dy (mm),dz (mm)" : "")
         << ",thickness (mm),major strain (%),minor strain (%),safety zone,forming zone\n";
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
    {
        double const * const p = outcome.part.GetNodeData()[n + 1];
        NodeOutcome const & node = outcome.nodes[n];
        Point3 const & d = node.displacement;
        if (outcome.hasBlank)
            row(file, n + 1,
                {p[0], p[1], p[2], node.flat[0], node.flat[1], d[0], d[1], d[2], node.thickness, node.major,
                 node.minor},
                {node.safety, node.forming});
        else
            row(file, n + 1, {p[0], p[1], p[2], node.thickness, node.major, node.minor}, {node.safety, node.forming});
    }
    file.Commit();
}

void writeElements(std::vector<ElementOutcome> const & elements, std::string const & path)
{
    OutputFile file(path);
    file << "element,thickness (mm),thinning (%),major strain (%),minor strain (%),thickness strain (%),angle "
            "(rad),equivalent strain (%),equivalent stress (MPa),area (mm2),safety zone,forming zone\n";
    for (std::size_t e = 0; e < elements.size(); ++e)
    {
        ElementOutcome const & element = elements[e];
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
        double const limit = outcome.LimitOf(e).limitCurveMajor(element.minor);
        row(file, e + 1, {element.minor, element.major, limit, limit - element.major}, {element.safety});
    }
    file.Commit();
}

double length(Point3 const & vector)
{
    return std::hypot(vector[0], vector[1], vector[2]);
}

// A row per node of the whole part.
void writeSpringback(SpringbackOutcome const & springback, std::string const & path)
{
    OutputFile file(path);
    file << "node,x (mm),y (mm),z (mm),dx before alignment (mm),dy before alignment (mm),dz before alignment "
            "(mm),deviation before alignment (mm),dx (mm),dy (mm),dz (mm),deviation (mm)\n";
    for (std::size_t n = 0; n < springback.before.size(); ++n)
    {
        double const * const p = springback.part.GetNodeData()[n + 1];
        Point3 const & before = springback.before[n];
        Point3 const & shown = springback.Shown()[n];
        row(file, n + 1,
            {p[0], p[1], p[2], before[0], before[1], before[2], length(before), shown[0], shown[1], shown[2],
             length(shown)},
            {});
    }
    file.Commit();
}

} // namespace

void WriteTables(Outcome const & i_outcome, std::string const & i_folder)
{
    writeNodes(i_outcome, i_folder + "/nodes.csv");
    writeElements(i_outcome.elements, i_folder + "/elements.csv");
    if (!i_outcome.top.empty())
    {
        writeElements(i_outcome.top, i_folder + "/elements_top.csv");
        writeElements(i_outcome.bottom, i_folder + "/elements_bottom.csv");
    }
    if (i_outcome.springback)
        writeSpringback(*i_outcome.springback, i_folder + "/springback.csv");
    writeForming(i_outcome, i_folder + "/fld.csv");
}

} // namespace voz::workbench
