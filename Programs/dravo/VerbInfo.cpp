// VerbInfo.cpp: materials, init and the version.

#include "Console.h"
#include "ExitCode.h"
#include "Job.h"
#include "MaterialDatabase.h"
#include "MaterialDeck.h"
#include "OutputFile.h"
#include "Verbs.h"
#include "Version.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>

namespace
{
using namespace voz::workbench;

struct InfoArguments
{
    std::string name;
    std::string database;
    std::string deck;
    std::string path = "job.toml";
    bool isJson = false;
    bool isForced = false;
};

nlohmann::json JsonOf(DatabaseMaterial const & i_entry)
{
    JobMaterial const & m = i_entry.material;
    nlohmann::json json = {{"name", m.name},
                           {"group", i_entry.group},
                           {"K_MPa", m.strength},
                           {"n", m.exponent},
                           {"r", m.anisotropy},
                           {"yield_MPa", m.yield},
                           {"E_MPa", m.modulus},
                           {"poisson", m.poisson},
                           {"density_kg_per_m3", m.density},
                           {"source", m.source},
                           {"curve", nlohmann::json::array()}};
    for (auto const & [strain, stress] : m.curve)
        json["curve"].push_back({{"plastic_strain", strain}, {"stress_MPa", stress}});
    return json;
}

std::string Padded(std::string i_text, std::size_t i_width)
{
    i_text.append(i_text.size() < i_width ? i_width - i_text.size() : 1, ' ');
    return i_text;
}

std::string TableOf(std::vector<DatabaseMaterial> const & i_materials)
{
    std::size_t width = 0;
    std::size_t groupWidth = 0;
    for (DatabaseMaterial const & entry : i_materials)
    {
        width = std::max(width, entry.material.name.size() + 2);
        groupWidth = std::max(groupWidth, entry.group.size() + 2);
    }
    std::string text = Padded("Name", width) + Padded("Group", groupWidth) + "  yield MPa     K MPa      n      r\n";
    for (DatabaseMaterial const & entry : i_materials)
    {
        auto const right = [](std::string const & i_number, std::size_t i_width)
        { return std::string(i_number.size() < i_width ? i_width - i_number.size() : 0, ' ') + i_number; };
        JobMaterial const & m = entry.material;
        text += Padded(m.name, width) + Padded(entry.group, groupWidth) + right(Fixed(m.yield, 1), 11) +
                right(Fixed(m.strength, 1), 10) + right(Fixed(m.exponent, 3), 7) + right(Fixed(m.anisotropy, 2), 7) +
                "\n";
    }
    return text;
}

std::string SheetOf(DatabaseMaterial const & i_entry)
{
    JobMaterial const & m = i_entry.material;
    std::string text = m.name + " (" + i_entry.group + ")\n";
    text += "  K        " + Fixed(m.strength, 3) + " MPa\n";
    text += "  n        " + Fixed(m.exponent, 4) + "\n";
    text += "  r        " + Fixed(m.anisotropy, 3) + "\n";
    text += "  yield    " + Fixed(m.yield, 3) + " MPa\n";
    text += "  E        " + Fixed(m.modulus / 1000.0, 2) + " GPa\n";
    text += "  poisson  " + Fixed(m.poisson, 3) + "\n";
    text += "  density  " + Fixed(m.density, 1) + " kg/m3\n";
    for (auto const & [strain, stress] : m.curve)
        text += "  curve    " + Fixed(strain, 5) + "  " + Fixed(stress, 3) + " MPa\n";
    return text + "  source   " + m.source + "\n";
}

// The entry goes to standard output alone, so that it can be sent into a file of a database.
int ShowDeck(InfoArguments const & i_arguments)
{
    MaterialDeck const deck = ReadMaterialDeck(i_arguments.deck);
    if (i_arguments.isJson)
    {
        nlohmann::json entry = JsonOf(deck.entry);
        entry["thickness_mm"] = deck.thickness;
        PrintJson({{"schema", 1}, {"deck", i_arguments.deck}, {"remarks", deck.remarks}, {"materials", {entry}}});
        return ExitDone;
    }
    Console console(Talk::Usual);
    for (std::string const & remark : deck.remarks)
        console.Note(remark);
    Console::Print(DatabaseText(deck));
    return ExitDone;
}

int Materials(InfoArguments const & i_arguments)
{
    if (!i_arguments.deck.empty())
        return ShowDeck(i_arguments);
    std::string const path = i_arguments.database.empty() ? DefaultDatabase() : i_arguments.database;
    if (path.empty())
        throw InputError("VOZDRAVO3D", 0, 0, "names no installation with a material database; --database names one");
    std::vector<DatabaseMaterial> materials = ReadDatabase(path);
    if (!i_arguments.name.empty())
    {
        DatabaseMaterial const found = FindMaterial(materials, i_arguments.name, path);
        materials = {found};
    }
    if (i_arguments.isJson)
    {
        nlohmann::json json = {{"schema", 1}, {"database", path}, {"materials", nlohmann::json::array()}};
        for (DatabaseMaterial const & entry : materials)
            json["materials"].push_back(JsonOf(entry));
        PrintJson(json);
    }
    else
        Console::Print(i_arguments.name.empty() ? TableOf(materials) : SheetOf(materials.front()));
    return ExitDone;
}

int Init(InfoArguments const & i_arguments)
{
    if (i_arguments.path == "-")
    {
        Console::Print(StarterJob());
        return ExitDone;
    }
    ProtectFile(i_arguments.path, i_arguments.isForced);
    OutputFile file(i_arguments.path);
    file << StarterJob();
    file.Commit();
    Console::Print(i_arguments.path + "\n");
    return ExitDone;
}
} // namespace

void AddMaterials(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<InfoArguments>();
    CLI::App * const verb = io_app.add_subcommand("materials", "List the material database, or show one material");
    CLI::Option * const name = verb->add_option("NAME", arguments->name, "Material to show with its sources");
    CLI::Option * const database =
        verb->add_option("--database", arguments->database, "Folder or file in place of the installation's");
    verb->add_option("--deck", arguments->deck, "Show the material of a one-step deck, as an entry of a database")
        ->excludes(name)
        ->excludes(database);
    verb->add_flag("--json", arguments->isJson, "One JSON document");
    verb->footer("Example: dravo materials mild-140-270");
    verb->callback([&io_action, arguments] { io_action = [arguments] { return Materials(*arguments); }; });
}

void AddInit(CLI::App & io_app, Action & io_action)
{
    auto const arguments = std::make_shared<InfoArguments>();
    CLI::App * const verb = io_app.add_subcommand("init", "Write a commented job file to begin with");
    verb->add_option("PATH", arguments->path, "File to write; - writes to standard output; default job.toml");
    verb->add_flag("--force", arguments->isForced, "Replace a file that is there");
    verb->footer("Example: dravo init door.toml");
    verb->callback([&io_action, arguments] { io_action = [arguments] { return Init(*arguments); }; });
}

int ShowVersion(bool i_asJson)
{
    if (!i_asJson)
    {
        Console::Print(std::string("dravo ") + kVersion + "\n");
        return ExitDone;
    }
    nlohmann::json json = {{"schema", 1}, {"version", kVersion}, {"commit", kCommit}, {"compiler", kCompiler}};
    for (auto const & [name, version] : LibraryVersions())
        json["libraries"][name] = version;
    json["libraries"]["CLI11"] = CLI11_VERSION;
    PrintJson(json);
    return ExitDone;
}
