// HoleFillTest.cpp.

#include "HoleFill.h"

#include "MeshCheck.h"
#include "MeshFixture.h"
#include "SyntheticOutcome.h"

#include <cmath>
#include <numbers>
#include <numeric>

namespace voz::workbench
{

namespace
{
double const kHole = 16.0 * 100.0 * std::sin(std::numbers::pi / 16.0); // of 32 sides, mm2

// A plate of 80 x 60 mm with a round hole of radius 10.
MeshModel Plate()
{
    MeshModel model;
    model.format = MeshFormat::Nastran;
    model.mesh = test::plateWithHole(80.0, 60.0, 10.0, 32, 4).part;
    model.nodeIds.resize(static_cast<std::size_t>(model.mesh.numNode()));
    std::iota(model.nodeIds.begin(), model.nodeIds.end(), 501);
    model.elementIds.resize(static_cast<std::size_t>(model.mesh.numElem()));
    std::iota(model.elementIds.begin(), model.elementIds.end(), 901);
    ElementSet all;
    all.id = 7;
    all.thickness = 0.8;
    all.elements.resize(model.elementIds.size());
    std::iota(all.elements.begin(), all.elements.end(), 1);
    model.sets = {all};
    return model;
}
} // namespace

TEST(HoleFill, ClosesTheHoleAndNoMore)
{
    MeshModel model = Plate();
    MeshModel const before = model;
    HoleFill const done = FillHoles(model, "plate.bdf");
    EXPECT_EQ(done.holes, 1);
    EXPECT_GT(done.elements, 30);
    EXPECT_EQ(model.mesh.numElem(), before.mesh.numElem() + done.elements);
    EXPECT_EQ(model.mesh.numNode(), before.mesh.numNode() + done.nodes);
    MeshReport const report = CheckMesh(model);
    ASSERT_EQ(report.loops.size(), 1U);
    EXPECT_NEAR(report.loops[0].length, CheckMesh(before).loops[0].length, 1e-9) << "the outer edge";
    EXPECT_NEAR(report.area, CheckMesh(before).area + kHole, 1e-3);
    EXPECT_FALSE(report.HasErrors());
    for (int n = 1; n <= before.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            ASSERT_EQ(model.mesh.NodeValue(n, c), before.mesh.NodeValue(n, c)) << "no node moves";
}

TEST(HoleFill, NewIdsGoOnFromTheHighestAndNewElementsAreASetOfTheirOwn)
{
    MeshModel model = Plate();
    int const oldElements = model.mesh.numElem();
    std::size_t const oldNodes = model.nodeIds.size();
    HoleFill const done = FillHoles(model, "plate.bdf");
    EXPECT_EQ(model.nodeIds[oldNodes], 501 + static_cast<int>(oldNodes));
    EXPECT_EQ(model.elementIds.back(), 900 + oldElements + done.elements);
    ASSERT_EQ(model.sets.size(), 2U);
    EXPECT_EQ(model.sets[1].id, 8);
    EXPECT_EQ(model.sets[1].name, "filled");
    EXPECT_EQ(model.sets[1].thickness, 0.8) << "it is the same sheet";
    EXPECT_EQ(static_cast<int>(model.sets[1].elements.size()), done.elements);
    EXPECT_EQ(model.sets[1].elements.front(), oldElements + 1);
}

TEST(HoleFill, WhatWasFilledIsWrittenAndReadBack)
{
    meshtest::Folder const folder;
    double const area = CheckMesh(Plate()).area + kHole;
    for (char const * const name : {"filled.bdf", "filled.k", "filled.obj", "filled.stl"})
    {
        MeshModel model = Plate();
        FillHoles(model, "plate.bdf");
        WriteMesh(model, folder / name);
        MeshReport const report = CheckMesh(ReadMesh(folder / name));
        EXPECT_EQ(report.loops.size(), 1U) << name;
        EXPECT_NEAR(report.area, area, 1e-2) << name;
    }
}

TEST(HoleFill, AMeshWithoutHolesStaysAsItIs)
{
    MeshModel model = meshtest::SampleModel();
    MeshModel const before = model;
    EXPECT_EQ(FillHoles(model, "sample.bdf").holes, 0);
    meshtest::ExpectSameModel(model, before);
}

TEST(HoleFill, RefusesABoundaryThatCannotBeFollowed)
{
    // Two triangles that meet at a node.
    double const nodes[5][3] = {{0, 0, 0}, {10, 0, 0}, {5, 5, 0}, {0, 10, 0}, {10, 10, 0}};
    int const elems[2][4] = {{1, 2, 3, 1}, {3, 5, 4, 3}};
    MeshModel model;
    model.mesh = VOZCatMesh(5, 2, nodes, elems);
    model.nodeIds = {1, 2, 3, 4, 5};
    model.elementIds = {1, 2};
    std::string const message = meshtest::MessageOf([&] { FillHoles(model, "bow.bdf"); });
    EXPECT_NE(message.find("bow.bdf: its holes cannot be told"), std::string::npos) << message;
    EXPECT_EQ(model.mesh.numElem(), 2) << "nothing is touched";
}

TEST(HoleFill, NoIdIsHandedOutBeyondTheLast)
{
    MeshModel model = Plate();
    model.nodeIds.back() = 2147483640;
    std::string const message = meshtest::MessageOf([&] { FillHoles(model, "plate.bdf"); });
    EXPECT_NE(message.find("there are no ids left behind 2147483640"), std::string::npos) << message;
}

} // namespace voz::workbench
