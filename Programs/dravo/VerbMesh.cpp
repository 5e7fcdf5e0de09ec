// VerbMesh.cpp: convert: a mesh in another format, or with its holes closed.

#include "Console.h"
#include "ExitCode.h"
#include "HoleFill.h"
#include "MeshArguments.h"
#include "OutputFile.h"
#include "Verbs.h"

#include <memory>

namespace
{
using namespace voz::workbench;

struct ConvertArguments
{
    MeshArguments mesh;
    std::string out;
    bool isFilled = false;
};

// A filled mesh is the same mesh otherwise, and so is its format.
std::string Fill(ConvertArguments const & i_arguments, MeshModel & io_model)
{
    if (MeshFormat const format = FormatOfPath(i_arguments.out); format != io_model.format)
        throw InputError(i_arguments.out, 0, 0,
                         std::string("a filled mesh stays in the format of its input, which is ") +
                             NameOf(io_model.format) + ", and this extension tells " + NameOf(format) +
                             "; convert it in a second step");
    HoleFill const done = FillHoles(io_model, i_arguments.mesh.in);
    if (done.holes == 0)
        return "no holes to fill\n";
    return "filled: " + std::to_string(done.holes) + (done.holes == 1 ? " hole with " : " holes with ") +
           std::to_string(done.elements) + " triangles and " + std::to_string(done.nodes) + " new nodes\n";
}

int Convert(ConvertArguments const & i_arguments)
{
    MeshModel model = i_arguments.mesh.Read();
    std::string const filled = i_arguments.isFilled ? Fill(i_arguments, model) : std::string();
    ProtectFile(i_arguments.out, i_arguments.mesh.isForced);
    WriteMesh(model, i_arguments.out);
    Console::Print(filled + i_arguments.out + ": " + std::to_string(model.mesh.numNode()) + " nodes, " +
                   std::to_string(model.mesh.numElem()) + " elements\n");
    return ExitDone;
}

// Empty for a file whose extension tells a format that can be written.
std::string CheckExtension(std::string const & i_path)
{
    if (FormatOfPath(i_path) != MeshFormat::Unknown && !i_path.ends_with(".gz")) // nothing is written zipped
        return {};
    std::string known;
    for (MeshFormatName const & format : MeshFormats())
        known += (known.empty() ? "" : " ") + std::string(format.extensions);
    return "\"" + i_path + "\" has no extension of a mesh format; expected one of " + known;
}
} // namespace

void AddConvert(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<ConvertArguments>();
    CLI::App * const verb = io_app.add_subcommand("convert", "Write a mesh in another format, in millimetres");
    arguments->mesh.AddTo(*verb);
    verb->add_option("OUT", arguments->out, "File to write; its extension tells the format")
        ->required()
        ->check(CheckExtension);
    verb->add_flag("--fill", arguments->isFilled, "Close the holes; OUT is then of the format of MESH");
    verb->footer("Example: dravo convert part.k part.bdf");
    verb->callback([&io_action, arguments] { io_action = [arguments] { return Convert(*arguments); }; });
}
