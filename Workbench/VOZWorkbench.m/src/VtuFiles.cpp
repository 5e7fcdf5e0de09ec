// VtuFiles.cpp: results for ParaView: VTK XML unstructured grids with appended, deflated blocks.
//
// The layout follows the published VTK XML file formats: each array is a block "blocks, block size, last size,
// compressed sizes" of 64-bit counts, then the deflated blocks, all in one raw appended section; offsets count from the
// byte behind its underscore.

#include "Exports.h"
#include "OutputFile.h"

#include <zlib.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

namespace voz::workbench
{
namespace
{

static_assert(std::endian::native == std::endian::little, "the files say LittleEndian");
constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

class VtuWriter
{
public:
    explicit VtuWriter(std::string i_path) : mPath(std::move(i_path)) {}

    template <class T>
    void Array(std::string_view name, int components, std::span<T const> values)
    {
        mHead += "<DataArray type=\"" + std::string(typeName(T{})) + "\" Name=\"" + std::string(name) +
                 "\" NumberOfComponents=\"" + std::to_string(components) + "\" format=\"appended\" offset=\"" +
                 std::to_string(mBlocks.size()) + "\"/>\n";
        append(std::as_bytes(values));
    }

    void Head(std::string_view text) { mHead += text; }

    void Commit()
    {
        OutputFile file(mPath);
        file << "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" "
                "byte_order=\"LittleEndian\" "
                "header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n"
             << mHead << "<AppendedData encoding=\"raw\">\n_" << mBlocks << "\n</AppendedData>\n</VTKFile>\n";
        file.Commit();
    }

private:
    static char const * typeName(double) { return "Float64"; }
    static char const * typeName(float) { return "Float32"; }
    static char const * typeName(std::int32_t) { return "Int32"; }
    static char const * typeName(std::uint8_t) { return "UInt8"; }

    void append(std::span<std::byte const> bytes)
    {
        std::uint64_t const blocks = (bytes.size() + kBlockBytes - 1) / kBlockBytes;
        std::vector<std::uint64_t> header{blocks, kBlockBytes, bytes.size() % kBlockBytes};
        std::string deflated;
        for (std::size_t at = 0; at < bytes.size(); at += kBlockBytes)
        {
            std::span<std::byte const> const block = bytes.subspan(at, std::min(kBlockBytes, bytes.size() - at));
            uLongf size = compressBound(static_cast<uLong>(block.size()));
            std::string out(size, '\0');
            if (compress2(reinterpret_cast<Bytef *>(out.data()), &size, reinterpret_cast<Bytef const *>(block.data()),
                          static_cast<uLong>(block.size()), Z_DEFAULT_COMPRESSION) != Z_OK)
                throw OutputError(mPath, "the results cannot be compressed");
            header.push_back(size);
            deflated.append(out.data(), size);
        }
        mBlocks.append(reinterpret_cast<char const *>(header.data()), header.size() * sizeof(std::uint64_t));
        mBlocks += deflated;
    }

    std::string mPath;
    std::string mHead;
    std::string mBlocks;
};

enum class Shape
{
    Part,
    Blank
};

void writePoints(VtuWriter & vtu, Outcome const & outcome, Shape shape)
{
    std::vector<double> points;
    points.reserve(3 * outcome.nodes.size());
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
    {
        double const * const row = outcome.part.GetNodeData()[n + 1];
        Point3 const & step = outcome.nodes[n].displacement;
        for (std::size_t c = 0; c < 3; ++c)
            points.push_back(row[c] + (shape == Shape::Blank ? step[c] : 0.0));
    }
    vtu.Head("<Points>\n");
    vtu.Array<double>("Points", 3, points);
    vtu.Head("</Points>\n");
}

void writeCells(VtuWriter & vtu, VOZCatMesh const & mesh)
{
    constexpr std::uint8_t kTriangle = 5;
    constexpr std::uint8_t kQuad = 9;
    std::vector<std::int32_t> connectivity;
    std::vector<std::int32_t> offsets;
    std::vector<std::uint8_t> types;
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        int const * const row = mesh.GetElemData()[e];
        bool const triangle = row[0] == row[3];
        for (int k = 0; k < (triangle ? 3 : 4); ++k)
            connectivity.push_back(row[k] - mesh.GetFirstNodeNumber() - 1);
        offsets.push_back(static_cast<std::int32_t>(connectivity.size()));
        types.push_back(triangle ? kTriangle : kQuad);
    }
    vtu.Head("<Cells>\n");
    vtu.Array<std::int32_t>("connectivity", 1, connectivity);
    vtu.Array<std::int32_t>("offsets", 1, offsets);
    vtu.Array<std::uint8_t>("types", 1, types);
    vtu.Head("</Cells>\n");
}

template <class Row, class Get>
void writeField(VtuWriter & vtu, std::string_view name, std::vector<Row> const & rows, Get get)
{
    std::vector<float> values;
    values.reserve(rows.size());
    for (Row const & row : rows)
        values.push_back(static_cast<float>(get(row)));
    vtu.Array<float>(name, 1, values);
}

template <class Row, class Get>
void writeCode(VtuWriter & vtu, std::string_view name, std::vector<Row> const & rows, Get get)
{
    std::vector<std::int32_t> values;
    values.reserve(rows.size());
    for (Row const & row : rows)
        values.push_back(get(row));
    vtu.Array<std::int32_t>(name, 1, values);
}

double limitMargin(FormingLimit const & limit, ElementOutcome const & element)
{
    return limit.limitCurveMajor(element.minor) - element.major;
}

void writeCellFields(VtuWriter & vtu, Outcome const & outcome)
{
    using E = ElementOutcome;
    auto const & rows = outcome.elements;
    vtu.Head("<CellData Scalars=\"thinning (%)\">\n");
    writeField(vtu, "thickness (mm)", rows, [](E const & e) { return e.thickness; });
    writeField(vtu, "thinning (%)", rows, [](E const & e) { return e.thinning; });
    writeField(vtu, "major strain (%)", rows, [](E const & e) { return e.major; });
    writeField(vtu, "minor strain (%)", rows, [](E const & e) { return e.minor; });
    writeField(vtu, "major strain angle (rad)", rows, [](E const & e) { return e.angle; });
    writeField(vtu, "equivalent strain (%)", rows, [](E const & e) { return e.equivalentStrain; });
    writeField(vtu, "equivalent stress (MPa)", rows, [](E const & e) { return e.stress; });
    writeField(vtu, "margin to limit curve (%)", rows, [&](E const & e) { return limitMargin(outcome.limit, e); });
    writeCode(vtu, "safety zone", rows, [](E const & e) { return e.safety; });
    writeCode(vtu, "forming zone", rows, [](E const & e) { return e.forming; });
    if (outcome.undercut.size() == rows.size())
        writeCode(vtu, "undercut", outcome.undercut, [](int mark) { return mark; });
    vtu.Head("</CellData>\n");
}

void writePointFields(VtuWriter & vtu, Outcome const & outcome)
{
    using N = NodeOutcome;
    auto const & rows = outcome.nodes;
    vtu.Head("<PointData>\n");
    std::vector<float> displacement;
    displacement.reserve(3 * rows.size());
    for (N const & node : rows)
        for (double const c : node.displacement)
            displacement.push_back(static_cast<float>(c));
    vtu.Array<float>("displacement part to blank (mm)", 3, displacement);
    writeField(vtu, "thickness at nodes (mm)", rows, [](N const & n) { return n.thickness; });
    writeField(vtu, "major strain at nodes (%)", rows, [](N const & n) { return n.major; });
    writeField(vtu, "minor strain at nodes (%)", rows, [](N const & n) { return n.minor; });
    writeCode(vtu, "safety zone at nodes", rows, [](N const & n) { return n.safety; });
    writeCode(vtu, "forming zone at nodes", rows, [](N const & n) { return n.forming; });
    vtu.Head("</PointData>\n");
}

void writeGrid(Outcome const & outcome, Shape shape, std::string const & path)
{
    VtuWriter vtu(path);
    vtu.Head("<UnstructuredGrid>\n<Piece NumberOfPoints=\"" + std::to_string(outcome.nodes.size()) +
             "\" NumberOfCells=\"" + std::to_string(outcome.elements.size()) + "\">\n");
    writePointFields(vtu, outcome);
    writeCellFields(vtu, outcome);
    writePoints(vtu, outcome, shape);
    writeCells(vtu, outcome.part);
    vtu.Head("</Piece>\n</UnstructuredGrid>\n");
    vtu.Commit();
}

} // namespace

void WriteVtu(Outcome const & i_outcome, std::string const & i_folder)
{
    writeGrid(i_outcome, Shape::Blank, i_folder + "/blank.vtu");
    writeGrid(i_outcome, Shape::Part, i_folder + "/part.vtu");
    OutputFile series(i_folder + "/results.pvd");
    series << "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n"
              "<DataSet timestep=\"0\" part=\"0\" name=\"blank\" file=\"blank.vtu\"/>\n"
              "<DataSet timestep=\"1\" part=\"0\" name=\"part\" file=\"part.vtu\"/>\n"
              "</Collection>\n</VTKFile>\n";
    series.Commit();
}

} // namespace voz::workbench
