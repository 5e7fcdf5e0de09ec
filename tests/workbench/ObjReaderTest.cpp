// ObjReaderTest.cpp: vertices, faces and groups.

#include "MeshFixture.h"

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
constexpr char const * kTwoGroups = "# two groups\nmtllib x.mtl\no body\nv 0 0 0\nv 10 0 0\nv 10 10 0.5 1.0\nv 0 10 0\n"
                                    "vt 0 0\nvn 0 0 1\ng floor\nusemtl grey\ns off\nf 1/1/1 2//1 3/1 4\nv 20 0 0\n"
                                    "g wall\nf -1 3 2\nl 1 2\nl 2 3\n";
std::string const kVertices = "v 0 0 0\nv 10 0 0\nv 10 10 0\nv 0 10 0\nv -5 5 0\n";
} // namespace

TEST(ObjReader, ReadsVerticesFacesAndGroups)
{
    MeshModel const model = ReadMeshText(kTwoGroups, "part.obj");
    EXPECT_EQ(PointsOf(model), (std::vector<Point>{{0, 0, 0}, {10, 0, 0}, {10, 10, 0.5}, {0, 10, 0}, {20, 0, 0}}));
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 3, 4}, {5, 3, 2, 5}}));
    EXPECT_EQ(model.elementIds, (std::vector<int>{1, 2}));
    ASSERT_EQ(model.sets.size(), 2U); // "body" has no faces of its own
    EXPECT_EQ(model.sets[0].name, "floor");
    EXPECT_EQ(model.sets[1].name, "wall");
    EXPECT_EQ(SkippedOf(model, "l"), 2);
    EXPECT_EQ(model.skipped.size(), 1U);
}

TEST(ObjReader, FansPolygonsFromTheirFirstCornerAndSaysSo)
{
    MeshModel const model = ReadMeshText(kVertices + "f 1 2 3 4 5\nf 1 2 3 4 5\n", "part.obj");
    EXPECT_EQ(RowsOf(model),
              (std::vector<Row>{{1, 2, 3, 1}, {1, 3, 4, 1}, {1, 4, 5, 1}, {1, 2, 3, 1}, {1, 3, 4, 1}, {1, 4, 5, 1}}));
    ASSERT_EQ(model.remarks.size(), 1U);
    EXPECT_EQ(model.remarks[0], "Faces of more than four corners were cut into triangles, the first in line 6.");
}

TEST(ObjReader, JoinsLinesThatEndInABackslash)
{
    EXPECT_EQ(RowsOf(ReadMeshText(kVertices + "f 1 2 \\\n 3\\\n 4\n", "part.obj")), (std::vector<Row>{{1, 2, 3, 4}}));
}

TEST(ObjReader, ReturnsToAGroupOfTheSameName)
{
    MeshModel const model = ReadMeshText(kVertices + "g a\nf 1 2 3\ng b\nf 1 3 4\ng a\nf 1 4 5\n", "part.obj");
    ASSERT_EQ(model.sets.size(), 2U);
    EXPECT_EQ(model.sets[0].elements, (std::vector<int>{1, 3}));
}

TEST(ObjReader, TellsWhereAndWhatWasExpected)
{
    struct Case
    {
        std::string text, message;
    };
    Case const cases[] = {
        {"v 0 0\n", "part.obj:1:6: found nothing, expected a coordinate, a finite number"},
        {"v 0 nan 0\n", "part.obj:1:5: found \"nan\", expected a coordinate, a finite number"},
        {"v 0 1e999 0\n", "part.obj:1:5: found \"1e999\", expected a coordinate, a finite number"},
        {"v 0 0 1.5-3\n", "part.obj:1:7: found \"1.5-3\", expected a coordinate, a finite number"},
        {"v 0 0 1e12\n", "part.obj:1: vertex 1 has a coordinate of 1e+12 mm, expected at most 1e9 mm"},
        {kVertices + "f 1 2 6\n",
         "part.obj:6:7: found vertex 6, expected 1 to 5 or -1 to -5, the vertices above this line"},
        {kVertices + "f 1 2 0\n",
         "part.obj:6:7: found vertex 0, expected 1 to 5 or -1 to -5, the vertices above this line"},
        {kVertices + "f -6 2 3\n",
         "part.obj:6:3: found vertex -6, expected 1 to 5 or -1 to -5, the vertices above this line"},
        {kVertices + "f -2147483648 2 3\n",
         "part.obj:6:3: found vertex -2147483648, expected 1 to 5 or -1 to -5, the vertices above this line"},
        {kVertices + "f 1 x 3\n", "part.obj:6:5: found \"x\", expected the number of a vertex"},
        {kVertices + "f 1 2\n", "part.obj:6:1: found a face of 2 corners, expected 3 or more"},
        {kVertices, "part.obj: has no triangles or quadrilaterals; found 5 nodes, expected a OBJ surface mesh"},
        {"", "part.obj: is empty, expected a surface mesh"},
        {std::string("\xFF\xFE"
                     "v\0",
                     4),
         "part.obj: the text is UTF-16, expected ASCII, Latin-1 or UTF-8"},
    };
    for (Case const & one : cases)
        EXPECT_EQ(MessageOfText(one.text, "part.obj"), one.message) << one.text;
}

TEST(ObjReader, RefusesALineWithoutEnd)
{
    EXPECT_EQ(MessageOfText(std::string(3 << 20, 'v'), "part.obj"),
              "part.obj:1: a line of more than 1048576 characters, expected text");
}

TEST(ObjReader, SurvivesEveryPrefixOfAGoodFile)
{
    ReadEveryPrefix(kTwoGroups, "part.obj");
}

TEST(ObjWriter, WritesWhatReadsBackEqual)
{
    Folder const folder;
    MeshModel const model = SampleModel();
    WriteMesh(model, folder / "again.obj");
    ExpectSameModel(ReadMesh(folder / "again.obj"), model);
}

TEST(ObjWriter, WritesNoGroupForOneSetWithoutName)
{
    Folder const folder;
    MeshModel const model = ReadMeshText(kVertices + "f 1 2 3\n", "part.obj");
    WriteMesh(model, folder / "again.obj");
    EXPECT_EQ(ContentOf(folder / "again.obj"),
              "# Lengths in mm.\nv 0 0 0\nv 10 0 0\nv 10 10 0\nv 0 10 0\nv -5 5 0\nf 1 2 3\n");
    ExpectSameModel(ReadMesh(folder / "again.obj"), model);
}
