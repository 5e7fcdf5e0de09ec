// MeshArguments.cpp: the options of a mesh to read.

#include "MeshArguments.h"

#include "Console.h"

void MeshArguments::AddTo(CLI::App & io_verb)
{
    io_verb.add_option("MESH", in, "Nastran bulk data, LS-DYNA keyword, OBJ or STL; - reads standard input")
        ->required();
    io_verb.add_option("--length-unit", unitLength, "Of the file: mm, cm, m, um, in")
        ->transform(CLI::CheckedTransformer(
            std::map<std::string, double>{{"mm", 1.0}, {"cm", 10.0}, {"m", 1000.0}, {"um", 0.001}, {"in", 25.4}}));
    io_verb.add_flag("--force", isForced, "Replace a file that is there");
}

voz::workbench::MeshModel MeshArguments::Read() const
{
    voz::workbench::ReadOptions options;
    options.unitLength = unitLength;
    voz::workbench::MeshModel model = ReadMesh(in, options);
    Console console(Talk::Usual);
    for (std::string const & remark : model.remarks)
        console.Note(remark);
    for (voz::workbench::SkippedItem const & item : model.skipped)
        console.Note("skipped: " + std::to_string(item.count) + " x " + item.name);
    return model;
}
