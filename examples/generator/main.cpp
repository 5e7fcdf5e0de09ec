// make-examples FOLDER: writes the mesh of every example into FOLDER/<example>/.

#include "MeshFiles.h"

#include <cstdio>
#include <exception>
#include <filesystem>

namespace
{

using namespace voz::examples;

void writeAll(std::filesystem::path const & folder)
{
    auto const file = [&folder](char const * example, char const * name)
    {
        std::filesystem::create_directories(folder / example);
        return (folder / example / name).string();
    };
    Hat const hat;
    writeNastran(file("square_cup", "square_cup.bdf"), squareCup(squareCup40(), Extent::Whole, Cells::Triangles),
                 {"Square cup of NUMISHEET'93, 40 mm deep", 0.78}, NastranField::Free);
    writeKeyword(file("square_cup_15", "square_cup_15.k"), squareCup(squareCup15(), Extent::Whole, Cells::Triangles),
                 {"Square cup of NUMISHEET'93, 15 mm deep", 0.78}, KeywordField::Commas);
    writeNastran(file("square_cup_quarter", "square_cup_quarter.bdf"),
                 squareCup(squareCup40(), Extent::Quarter, Cells::Triangles),
                 {"Quarter of the square cup of NUMISHEET'93, 40 mm deep", 0.78}, NastranField::Large);
    writeKeyword(file("cylindrical_cup", "cylindrical_cup.k"), cup(Cup{}, 3, Extent::Whole, Cells::Quads),
                 {"Cylindrical cup with flange, punch 80, die arc 5", 0.78}, KeywordField::Columns);
    writeNastran(file("hat_section", "hat_section.nas"), wholeHat(hat, 60.0, 8, 24, Cells::Quads),
                 {"Hat section, 60 wide", 1.0}, NastranField::Small);
    writeNastran(file("bracket", "bracket.bdf"), bracket(Bracket{}, Cells::Triangles),
                 {"Bracket with a hole and a bent flange", 1.2}, NastranField::Large);
    writeKeyword(
        file("square_cup_quads", "square_cup_quads.k"), squareCup(squareCup40(), Extent::Quarter, Cells::Quads),
        {"Quarter of the square cup of NUMISHEET'93, 40 mm deep, in quadrilaterals", 0.78}, KeywordField::Columns);
    writeNastran(file("v_bend", "v_bend.bdf"), vBend(VBend{}, 60.0, 20, Cells::Quads),
                 {"V bend of 90 degrees, mid radius 10", 0.78}, NastranField::Large);
    writeNastran(file("tube", "tube.bdf"), bulgedTube(BulgedTube{}, Cells::Quads), {"Tube of 60, bulged by 12", 1.5},
                 NastranField::Large);
    Panel const shape;
    writeNastran(file("curved_binder", "panel.bdf"), panel(shape, Cells::Triangles),
                 {"Pocket in a panel that is bent to a radius of 300", 0.8}, NastranField::Large);
    // Wider than the blank, in facets of a millimetre: the blank lies within a micrometre of the cylinder.
    SurfaceMesh binder = cylinder(shape.radius, 0.36, 216, 150.0, 3, Cells::Quads);
    for (Point3 & node : binder.nodes)
        node[1] -= 75.0; // its middle under the panel's
    writeNastran(file("curved_binder", "binder.bdf"), binder, {"Binder surface, radius 300", 0.8}, NastranField::Large);
}

} // namespace

int main(int argc, char ** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "use: make-examples FOLDER\n");
        return 2;
    }
    try
    {
        writeAll(argv[1]);
    }
    catch (std::exception const & error)
    {
        std::fprintf(stderr, "make-examples: %s\n", error.what());
        return 5;
    }
    return 0;
}
