// VtuFiles.cpp: results for ParaView: VTK XML unstructured grids with appended, deflated blocks.
//
// The layout follows the published VTK XML file formats: each array is a block "blocks, block size, last size,
// compressed sizes" of 64-bit counts, then the deflated blocks, all in one raw appended section; offsets count from the
// byte behind its underscore.

#include "Exports.h"
#include "OutputFile.h"

#include <zlib.h>

#include <algorithm>
#include <bit>
#include <cmath>
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
    OnBinder,
    Blank,
    Tube // to begin with
};

// Nodes of the mesh, each moved by step(n), n 0-based.
template <class Step>
void writePoints(VtuWriter & vtu, VOZCatMesh const & mesh, Step step)
{
    std::vector<double> points;
    points.reserve(3 * static_cast<std::size_t>(mesh.numNode()));
    for (int n = 1; n <= mesh.numNode(); ++n)
    {
        Point3 const moved = step(static_cast<std::size_t>(n) - 1);
        for (std::size_t c = 0; c < 3; ++c)
            points.push_back(mesh.GetNodeData()[n][c] + moved[c]);
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
void writeVectors(VtuWriter & vtu, std::string_view name, std::vector<Row> const & rows, Get get)
{
    std::vector<float> values;
    values.reserve(3 * rows.size());
    for (Row const & row : rows)
        for (double const component : get(row))
            values.push_back(static_cast<float>(component));
    vtu.Array<float>(name, 3, values);
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

std::vector<double> limitMargins(Outcome const & outcome)
{
    std::vector<double> margins;
    for (std::size_t e = 0; e < outcome.elements.size(); ++e)
        margins.push_back(outcome.LimitOf(e).limitCurveMajor(outcome.elements[e].minor) - outcome.elements[e].major);
    return margins;
}

void writeLayer(VtuWriter & vtu, std::string const & layer, std::vector<ElementOutcome> const & rows)
{
    using E = ElementOutcome;
    if (rows.empty())
        return;
    writeField(vtu, "major strain, " + layer + " (%)", rows, [](E const & e) { return e.major; });
    writeField(vtu, "minor strain, " + layer + " (%)", rows, [](E const & e) { return e.minor; });
    writeField(vtu, "equivalent strain, " + layer + " (%)", rows, [](E const & e) { return e.equivalentStrain; });
    writeCode(vtu, "safety zone, " + layer, rows, [](E const & e) { return e.safety; });
    writeCode(vtu, "forming zone, " + layer, rows, [](E const & e) { return e.forming; });
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
    writeField(vtu, "margin to limit curve (%)", limitMargins(outcome), [](double margin) { return margin; });
    writeCode(vtu, "safety zone", rows, [](E const & e) { return e.safety; });
    writeCode(vtu, "forming zone", rows, [](E const & e) { return e.forming; });
    if (outcome.undercut.size() == rows.size())
        writeCode(vtu, "undercut", outcome.undercut, [](int mark) { return mark; });
    if (!outcome.materials.empty())
        writeCode(vtu, "material", outcome.materials, [](int material) { return material + 1; });
    writeLayer(vtu, "top", outcome.top);
    writeLayer(vtu, "bottom", outcome.bottom);
    vtu.Head("</CellData>\n");
}

void writePointFields(VtuWriter & vtu, Outcome const & outcome)
{
    using N = NodeOutcome;
    auto const & rows = outcome.nodes;
    vtu.Head("<PointData>\n");
    if (outcome.hasBlank)
        writeVectors(vtu, "displacement part to blank (mm)", rows, [](N const & n) { return n.displacement; });
    if (outcome.hasBinder)
        writeVectors(vtu, "displacement part to binder (mm)", rows, [](N const & n) { return n.onBinder; });
    writeField(vtu, "thickness at nodes (mm)", rows, [](N const & n) { return n.thickness; });
    writeField(vtu, "major strain at nodes (%)", rows, [](N const & n) { return n.major; });
    writeField(vtu, "minor strain at nodes (%)", rows, [](N const & n) { return n.minor; });
    writeCode(vtu, "safety zone at nodes", rows, [](N const & n) { return n.safety; });
    writeCode(vtu, "forming zone at nodes", rows, [](N const & n) { return n.forming; });
    vtu.Head("</PointData>\n");
}

// The doubles of the seam's nodes lie on them again.
Point3 wrappedShift(TubeOutcome const & tube, std::size_t n)
{
    auto const closed = static_cast<std::size_t>(tube.closedNodes);
    return tube.wrapped[n < closed ? n : static_cast<std::size_t>(tube.seam[n - closed])];
}

void writeGrid(Outcome const & outcome, Shape shape, std::string const & path)
{
    VtuWriter vtu(path);
    vtu.Head("<UnstructuredGrid>\n<Piece NumberOfPoints=\"" + std::to_string(outcome.nodes.size()) +
             "\" NumberOfCells=\"" + std::to_string(outcome.elements.size()) + "\">\n");
    writePointFields(vtu, outcome);
    writeCellFields(vtu, outcome);
    writePoints(
        vtu, outcome.part,
        [&](std::size_t n)
        {
            NodeOutcome const & node = outcome.nodes[n];
            if (shape == Shape::Tube)
                return wrappedShift(*outcome.tube, n);
            return shape == Shape::Blank ? node.displacement : shape == Shape::OnBinder ? node.onBinder : Point3{};
        });
    writeCells(vtu, outcome.part);
    vtu.Head("</Piece>\n</UnstructuredGrid>\n");
    vtu.Commit();
}

// The sprung shape of the whole part.
void writeSprung(Outcome const & outcome, std::string const & path)
{
    SpringbackOutcome const & springback = *outcome.springback;
    VtuWriter vtu(path);
    vtu.Head("<UnstructuredGrid>\n<Piece NumberOfPoints=\"" + std::to_string(springback.part.numNode()) +
             "\" NumberOfCells=\"" + std::to_string(springback.part.numElem()) + "\">\n");
    vtu.Head("<PointData Scalars=\"deviation (mm)\">\n");
    auto const same = [](Point3 const & shift) { return shift; };
    writeField(vtu, "deviation (mm)", springback.Shown(),
               [](Point3 const & shift) { return std::hypot(shift[0], shift[1], shift[2]); });
    writeVectors(vtu, "springback (mm)", springback.Shown(), same);
    if (!springback.after.empty())
        writeVectors(vtu, "springback before alignment (mm)", springback.before, same);
    vtu.Head("</PointData>\n<CellData>\n");
    writeCode(vtu, "cut off", springback.trimmed, [](int mark) { return mark; });
    vtu.Head("</CellData>\n");
    writePoints(vtu, springback.part, [&](std::size_t n) { return springback.Shown()[n]; });
    writeCells(vtu, springback.part);
    vtu.Head("</Piece>\n</UnstructuredGrid>\n");
    vtu.Commit();
}

struct SeriesStage
{
    std::string time;
    std::string name; // of the stage and of its file
};

void writeSeries(std::vector<SeriesStage> const & stages, std::string const & path)
{
    OutputFile series(path);
    series << "<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n";
    for (SeriesStage const & stage : stages)
        series << "<DataSet timestep=\"" << stage.time << "\" part=\"0\" name=\"" << stage.name << "\" file=\""
               << stage.name << ".vtu\"/>\n";
    series << "</Collection>\n</VTKFile>\n";
    series.Commit();
}

// The steps of an explicit solver, by their numbers where the times are not known.
std::vector<SeriesStage> writeSteps(Outcome const & outcome, std::string const & folder)
{
    bool const isTimed = std::ranges::any_of(outcome.steps, [](Outcome const & step)
                                             { return step.imported && step.imported->output.time > 0.0; });
    std::vector<SeriesStage> stages;
    for (Outcome const & step : outcome.steps)
    {
        int const number = step.imported ? step.imported->step : 0;
        stages.push_back({isTimed ? Shortest(step.imported->output.time) : std::to_string(number),
                          "step-" + std::to_string(number)});
        writeGrid(step, Shape::Part, folder + "/" + stages.back().name + ".vtu");
    }
    return stages;
}

} // namespace

void WriteVtu(Outcome const & i_outcome, std::string const & i_folder)
{
    if (!i_outcome.steps.empty())
        return writeSeries(writeSteps(i_outcome, i_folder), i_folder + "/results.pvd");
    std::vector<SeriesStage> stages;
    auto const add = [&stages](char const * name) { stages.push_back({std::to_string(stages.size()), name}); };
    if (i_outcome.tube)
    {
        add("tube");
        writeGrid(i_outcome, Shape::Tube, i_folder + "/tube.vtu");
    }
    if (i_outcome.hasBlank)
    {
        add("blank");
        writeGrid(i_outcome, Shape::Blank, i_folder + "/blank.vtu");
    }
    if (i_outcome.hasBinder)
    {
        add("binder");
        writeGrid(i_outcome, Shape::OnBinder, i_folder + "/binder.vtu");
    }
    add("part");
    writeGrid(i_outcome, Shape::Part, i_folder + "/part.vtu");
    if (i_outcome.springback)
    {
        add("springback");
        writeSprung(i_outcome, i_folder + "/springback.vtu");
    }
    writeSeries(stages, i_folder + "/results.pvd");
}

} // namespace voz::workbench
