// DeckJobs.h: jobs of tests/golden/deck as objects of the library, and files of a test.
//
// The job's format stands in tests/golden/deck/reference_deck.py.

#ifndef DECKJOBS_H
#define DECKJOBS_H

#include "GoldenText.h"

#include "ElemProperty.h"
#include "Material.h"
#include "Mesh.h"
#include "Solver.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VOZMaterial.h"

#include <nlohmann/json.hpp>

#include <array>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace deckjobs
{
namespace fs = std::filesystem;
using Json = nlohmann::json;

inline fs::path goldenFolder()
{
    return fs::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "deck";
}

using goldentext::firstDifference;
using goldentext::linesOf;
using goldentext::readFile;
using goldentext::writeFile;

// The lines between a block's label and its separator.
inline std::vector<std::string> blockOf(std::string const & deck, std::string const & label)
{
    std::vector<std::string> block;
    bool inside = false;
    for (std::string const & line : linesOf(deck))
    {
        if (inside && line[0] == '*')
            break;
        if (inside)
            block.push_back(line);
        inside = inside || line == label;
    }
    return block;
}

class Job
{
public:
    explicit Job(Json const & i_json)
        : mesh(static_cast<int>(i_json["nodes"].size()), static_cast<int>(i_json["elems"].size())),
          material(makeMaterial(i_json["material"])), symmetry(i_json["symmetry"][0], i_json["symmetry"][1]),
          noRestraints(i_json["noRestraints"]), controlFlag(i_json["controlFlag"]), controlValue(i_json["controlValue"])
    {
        FillMesh(i_json);
        FillProperties(i_json);
        FillActions(i_json);
        friction.coefficient(i_json["friction"]);
        fullHolder.factor(i_json["full"]["factor"]);
        fullHolder.totalForce(i_json["full"]["totalForce"]);
        fullHolder.option(i_json["full"]["option"]);
        for (Json const & line : i_json["config"])
            config += line.get<std::string>() + "\n";
        for (int i = 0; i < 3; ++i)
            axis.axis(i, vec(i_json["axis"]["rows"][static_cast<std::size_t>(i)]));
        axis.origin(vec(i_json["axis"]["origin"]));
    }
    explicit Job(fs::path const & i_file) : Job(Json::parse(readFile(i_file))) {}
    Job(Job const &) = delete;
    Job & operator=(Job const &) = delete;

    Solver solver(std::string i_folder = "folder")
    {
        return Solver(mesh, material, property, symmetry, friction, fullHolder, axis, i_folder.data());
    }
    int write(fs::path const & i_deck)
    {
        return solver().write(i_deck.string().c_str(), noRestraints, controlFlag, controlValue);
    }

    VOZCatMesh mesh;
    Material material;
    ElemProperty property;
    VOZCatAxis axis;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder fullHolder;
    std::string config; // the text of the configuration file
    bool noRestraints;
    bool controlFlag;
    int controlValue;

private:
    static Vec vec(Json const & row)
    {
        double const values[3] = {row[0], row[1], row[2]};
        return Vec(static_cast<double const *>(values));
    }

    static Material makeMaterial(Json const & json)
    {
        return Material(json["thickness"], json["rBar"], json["nvalue"], json["intercept"], json["yield"]);
    }

    void FillMesh(Json const & json)
    {
        for (std::size_t n = 0; n < json["nodes"].size(); ++n)
            for (std::size_t c = 0; c < 3; ++c)
                mesh.GetNodeData()[n + 1][c] = json["nodes"][n][c];
        for (std::size_t e = 0; e < json["elems"].size(); ++e)
            for (std::size_t k = 0; k < 4; ++k)
                mesh.GetElemData()[e + 1][k] = json["elems"][e][k];
        mesh.IdsOffset(json["firstNode"], json["firstElem"]);
    }

    void FillProperties(Json const & json)
    {
        Json const & points = json["material"]["ss"];
        if (!points.empty())
            material.sizeSSData(static_cast<int>(points.size()));
        for (std::size_t row = 0; row < points.size(); ++row)
            for (std::size_t col = 0; col < 2; ++col)
                material.setSSData(static_cast<int>(row), static_cast<int>(col), points[row][col]);
        property.sizeProperty(static_cast<int>(json["properties"].size()));
        for (std::size_t p = 0; p < json["properties"].size(); ++p)
        {
            VOZMaterial & kernel = *property.material(static_cast<int>(p) + 1);
            kernel.m_dThickness = json["properties"][p]["thickness"];
            kernel.m_dYield = json["properties"][p]["yield"];
        }
        property.sizePropertyIndex(mesh.numElem());
        for (int e = 1; e <= mesh.numElem(); ++e)
            property.propertyId(e, json["propertyIndex"][static_cast<std::size_t>(e) - 1]);
    }

    static EdgeProperty * makeEdges(Json const & json)
    {
        auto * const edges = new EdgeProperty[json.size() + 1];
        for (std::size_t k = 0; k < json.size(); ++k)
        {
            edges[k].element = json[k][0];
            edges[k].node1 = json[k][1];
            edges[k].node2 = json[k][2];
            for (std::size_t i = 3; i < json[k].size(); ++i)
                edges[k].edgeValues[i - 3] = json[k][i];
        }
        return edges;
    }

    void FillActions(Json const & json)
    {
        auto const count = [&json](char const * key) { return static_cast<int>(json[key].size()); };
        auto const at = [&json](char const * key, int i) -> Json const &
        { return json[key][static_cast<std::size_t>(i) - 1]; };
        property.sizePressPads(count("pads"));
        for (int i = 1; i <= count("pads"); ++i)
        {
            Json const & nodes = at("pads", i)["nodes"];
            property.pressPadVal(i, at("pads", i)["value"]);
            property.pressPadSize(i, static_cast<int>(nodes.size()));
            for (std::size_t k = 0; k < nodes.size(); ++k)
                property.pressPads(i, static_cast<int>(k) + 1, nodes[k]);
        }
        property.sizeDrawBeads(count("beads"));
        for (int i = 1; i <= count("beads"); ++i)
        {
            DrawBead & bead = property.drawBeads(i);
            bead.force = at("beads", i)["force"];
            bead.edgeCount = static_cast<int>(at("beads", i)["edges"].size());
            bead.edges = makeEdges(at("beads", i)["edges"]);
        }
        property.sizeBlankHolders(count("holders"));
        for (int i = 1; i <= count("holders"); ++i)
        {
            BlankHolder & holder = property.blankHolders(i);
            holder.force = at("holders", i)["force"];
            holder.edgeCount = static_cast<int>(at("holders", i)["edges"].size());
            holder.edges = makeEdges(at("holders", i)["edges"]);
        }
        property.sizeDispBC(count("dispBCs"));
        for (int i = 1; i <= count("dispBCs"); ++i)
        {
            Json const & table = at("dispBCs", i);
            DispBC & bc = property.dispBCs(i);
            bc.setSize(static_cast<int>(table["nodes"].size()));
            bc.tableFlag = table["tableFlag"];
            for (std::size_t k = 0; k < table["nodes"].size(); ++k)
                bc.nodes[k] = table["nodes"][k];
            for (std::size_t k = 0; k < 6; ++k)
            {
                bc.flags[k] = table["flags"][k];
                bc.values[k] = table["values"][k];
            }
        }
    }
};
} // namespace deckjobs

#endif
