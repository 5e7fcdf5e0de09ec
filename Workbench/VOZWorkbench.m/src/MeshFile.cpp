// MeshFile.cpp: which reader a file goes to.

#include "MeshFile.h"

#include "MeshReaders.h"
#include "NumberText.h"
#include "OutputFile.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace voz::workbench
{
namespace
{
constexpr std::size_t kSniffed = 1 << 16; // bytes looked at to tell a format

std::string extensionOf(std::string const & path)
{
    std::string const upper = Upper(std::filesystem::path(path).extension().string());
    return upper;
}

// The first word that each line starts with tells; comments tell nothing.
MeshFormat formatOfLine(std::string_view line)
{
    if (line.empty() || line[0] == '$' || line[0] == '#')
        return MeshFormat::Unknown;
    if (line[0] == '*' && line.size() > 1 && std::isalpha(static_cast<unsigned char>(line[1])) != 0)
        return MeshFormat::Dyna;
    std::string_view rest = line;
    std::string const word = Upper(NextWord(rest));
    if (word == "V" || word == "F" || word == "VN" || word == "VT" || word == "MTLLIB")
        return MeshFormat::Obj;
    if (word == "SOLID" || word == "FACET")
        return MeshFormat::Stl;
    for (char const * card : {"GRID", "CTRIA3", "CQUAD4", "CTRIA6", "CQUAD8", "BEGIN", "CEND", "SOL", "PSHELL"})
        if (word.rfind(card, 0) == 0)
            return MeshFormat::Nastran;
    return MeshFormat::Unknown;
}

MeshFormat formatOfContent(ByteSource & source)
{
    std::string_view start = source.Peek(kSniffed);
    if (start.substr(0, 512).find('\0') != std::string_view::npos)
        return MeshFormat::Stl;
    if (start.substr(0, 3) == "\xEF\xBB\xBF")
        start.remove_prefix(3);
    while (!start.empty())
    {
        std::size_t const end = std::min(start.find('\n'), start.size());
        if (MeshFormat const format = formatOfLine(Trimmed(start.substr(0, end))); format != MeshFormat::Unknown)
            return format;
        start.remove_prefix(std::min(end + 1, start.size()));
    }
    return MeshFormat::Unknown;
}

MeshModel readFrom(ByteSource & source, std::string const & path, ReadOptions const & options, Includes includes)
{
    if (source.Peek(1).empty())
        throw InputError(source.Name(), 0, 0, "is empty, expected a surface mesh");
    MeshFormat format = options.format == MeshFormat::Unknown ? FormatOfPath(path) : options.format;
    bool const isShared = extensionOf(path) == ".DAT"; // an extension of everybody
    if (format == MeshFormat::Unknown || (isShared && options.format == MeshFormat::Unknown))
        if (MeshFormat const told = formatOfContent(source); told != MeshFormat::Unknown)
            format = told;
    switch (format)
    {
    case MeshFormat::Nastran:
        return ReadNastran(source, options, includes);
    case MeshFormat::Dyna:
        return ReadDyna(source, options, includes);
    case MeshFormat::Obj:
        return ReadObj(source, options);
    case MeshFormat::Stl:
        return ReadStl(source, options);
    case MeshFormat::Unknown:
        break;
    }
    std::string known;
    for (MeshFormatName const & one : MeshFormats())
        known += (known.empty() ? "" : "; ") + std::string(one.name) + " (" + one.extensions + ")";
    throw InputError(source.Name(), 0, 0, "neither name nor content tell a mesh format, expected " + known);
}
} // namespace

std::vector<MeshFormatName> const & MeshFormats()
{
    static std::vector<MeshFormatName> const formats{
        {MeshFormat::Nastran, "Nastran bulk data", ".bdf .nas .dat"},
        {MeshFormat::Dyna, "LS-DYNA keyword", ".k .key .dyn .mod"},
        {MeshFormat::Obj, "OBJ", ".obj"},
        {MeshFormat::Stl, "STL", ".stl"},
    };
    return formats;
}

char const * NameOf(MeshFormat i_format)
{
    for (MeshFormatName const & one : MeshFormats())
        if (one.format == i_format)
            return one.name;
    return "unknown";
}

MeshFormat FormatOfPath(std::string const & i_path)
{
    std::string extension = extensionOf(i_path);
    if (extension == ".GZ")
        extension = extensionOf(std::filesystem::path(i_path).stem().string());
    if (extension.empty())
        return MeshFormat::Unknown;
    for (MeshFormatName const & one : MeshFormats())
    {
        std::string_view rest = one.extensions;
        for (std::string_view own = NextWord(rest); !own.empty(); own = NextWord(rest))
            if (Upper(own) == extension)
                return one.format;
    }
    return MeshFormat::Unknown;
}

MeshModel ReadMesh(std::string const & i_path, ReadOptions const & i_options)
{
    ByteSource source = ByteSource::File(i_path);
    return readFrom(source, i_path, i_options, Includes::Followed);
}

MeshModel ReadMeshText(std::string_view i_content, std::string const & i_name, ReadOptions const & i_options)
{
    ByteSource source = ByteSource::Memory(i_name, i_content);
    return readFrom(source, i_name, i_options, Includes::Refused);
}

std::vector<int> SetOfElements(MeshModel const & i_model)
{
    std::vector<int> setOf(static_cast<std::size_t>(i_model.mesh.numElem()) + 1, 1);
    for (ElementSet const & set : i_model.sets)
        for (int const e : set.elements)
            setOf[static_cast<std::size_t>(e)] = set.id;
    return setOf;
}

void WriteMesh(MeshModel const & i_model, std::string const & i_path)
{
    OutputFile file(i_path);
    bool const isZipped = extensionOf(i_path) == ".GZ";
    switch (isZipped ? MeshFormat::Unknown : FormatOfPath(i_path))
    {
    case MeshFormat::Nastran:
        WriteNastran(i_model, file);
        break;
    case MeshFormat::Dyna:
        WriteDyna(i_model, file);
        break;
    case MeshFormat::Obj:
        WriteObj(i_model, file);
        break;
    case MeshFormat::Stl:
        WriteStl(i_model, file);
        break;
    case MeshFormat::Unknown:
        throw OutputError(i_path, isZipped ? "meshes are not written zipped; leave out .gz"
                                           : "its extension tells no mesh format (.bdf, .k, .obj, .stl, ...)");
    }
    file.Commit();
}

} // namespace voz::workbench
