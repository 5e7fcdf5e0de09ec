// NastranReaderTest.cpp: bulk data in each of its forms. Cards stand as a pre-processor writes them.

#include "MeshFixture.h"

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
// clang-format off
constexpr char const * kSmall =
    "$ a square and a triangle\n"
    "GRID           1              0.      0.      0.\n"
    "GRID           2             10.      0.      0.\n"
    "GRID           3             10.     10.      0.\n"
    "GRID           4              0.     10.  1.5-3\n"
    "GRID           7             20.      5.   -2.+1\n"
    "CQUAD4        11       5       1       2       3       4    30.0     0.5\n"
    "                             0.8     0.8     0.8     0.8\n"
    "CTRIA3        12       6       2       7       3\n"
    "PSHELL         5       1      .8       1\n"
    "PSHELL         6       1    1.25       1\n"
    "ENDDATA\n";
constexpr char const * kFree =
    "GRID,1,,0.,0.,0.\n"
    "GRID,2,,10.,0.,0.\n"
    "GRID,3,,10.,10.,0.\n"
    "GRID,4,,0.,10.,1.5-3\n"
    "GRID,7,,20.,5.,-2.+1\n"
    "CQUAD4,11,5,1,2,3,4,30.0,0.5,+C1\n"
    "+C1,,,0.8,0.8,0.8,0.8\n"
    "CTRIA3,12,6,2,7,3\n"
    "PSHELL,5,1,.8,1\n"
    "PSHELL,6,1,1.25,1\n"
    "ENDDATA\n";
constexpr char const * kLarge =
    "GRID*                  1                              0.              0.*G1\n"
    "*G1                   0.\n"
    "GRID*                  2                             10.              0.*\n"
    "*                     0.\n"
    "GRID*                  3                             10.             10.\n"
    "*\n"
    "GRID*                  4                              0.             10.\n"
    "*               1.5D-3\n"
    "GRID*                  7                             20.              5.\n"
    "                -2.+1\n"
    "CQUAD4*               11               5               1               2\n"
    "*                      3               4            30.0             0.5\n"
    "CTRIA3*               12               6               2               7\n"
    "*                      3\n"
    "PSHELL*                5               1              .8               1\n"
    "*\n"
    "PSHELL*                6               1            1.25               1\n"
    "*\n"
    "ENDDATA\n";
constexpr char const * kLargeFree =
    "GRID*,1,,0.,0.,*A\n*A,0.\nGRID*,2,,10.,0.\n*,0.\nGRID*,3,,10.,10.\n,0.\nGRID*,4,,0.,10.\n*,1.5e-3\n"
    "GRID*,7,,20.,5.\n*,-20.\n"
    "CQUAD4*,11,5,1,2\n*,3,4,30.0,0.5\nCTRIA3*,12,6,2,7\n*,3\nPSHELL,5,1,.8\nPSHELL,6,1,1.25\nENDDATA\n";
// clang-format on

void expectSquareAndTriangle(MeshModel const & model)
{
    EXPECT_EQ(PointsOf(model), (std::vector<Point>{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0.0015}, {20, 5, -20}}));
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 3, 4}, {2, 5, 3, 2}}));
    EXPECT_EQ(model.nodeIds, (std::vector<int>{1, 2, 3, 4, 7}));
    EXPECT_EQ(model.elementIds, (std::vector<int>{11, 12}));
    ASSERT_EQ(model.sets.size(), 2U);
    EXPECT_EQ(model.sets[0].id, 5);
    EXPECT_EQ(model.sets[0].thickness, 0.8);
    EXPECT_EQ(model.sets[0].elements, std::vector<int>{1});
    EXPECT_EQ(model.sets[1].id, 6);
    EXPECT_EQ(model.sets[1].thickness, 1.25);
    EXPECT_EQ(model.sets[1].elements, std::vector<int>{2});
    EXPECT_TRUE(model.skipped.empty());
    EXPECT_TRUE(model.remarks.empty());
}

std::string const kNodes = "GRID,1,,0.,0.,0.\nGRID,2,,10.,0.,0.\nGRID,3,,0.,10.,0.\n";
} // namespace

TEST(NastranReader, ReadsTheFourFormsAlike)
{
    for (std::string const text : {kSmall, kFree, kLarge, kLargeFree})
    {
        SCOPED_TRACE(text);
        expectSquareAndTriangle(ReadMeshText(text, "part.bdf"));
    }
}

TEST(NastranReader, ReadsTabsCarriageReturnsAByteOrderMarkAndLowerCase)
{
    MeshModel const model = ReadMeshText("\xEF\xBB\xBFgrid\t1\t\t0.\t0.\t0.\r\ngrid\t2\t\t1.\t0.\t0.\r\n"
                                         "Grid\t3\t\t0.\t1.\t0.\r\nctria3\t1\t1\t1\t2\t3\r\n",
                                         "part.nas");
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 3, 1}}));
    EXPECT_EQ(PointsOf(model)[1], (Point{1, 0, 0}));
}

TEST(NastranReader, ForgetsTheStatementsBeforeBeginBulk)
{
    MeshModel const model = ReadMeshText("SOL 101\nCEND\nTITLE = a part, with commas\n  SUBCASE 1\nBEGIN BULK\n" +
                                             kNodes + "CBAR,9,1,1,2\nCTRIA3,1,1,1,2,3\nENDDATA\nGRID,rubbish\n",
                                         "part.bdf");
    EXPECT_EQ(model.mesh.numElem(), 1);
    ASSERT_EQ(model.skipped.size(), 1U);
    EXPECT_EQ(SkippedOf(model, "CBAR"), 1);
}

TEST(NastranReader, TakesTheCornersOfQuadraticElements)
{
    MeshModel const model =
        ReadMeshText(kNodes + "GRID,4,,10.,10.,0.\nCTRIA6,1,1,1,2,3,91,92,93\n"
                              "CQUAD8         2       1       1       2       4       3      95      96+Q\n"
                              "+Q            97      98\n",
                     "part.bdf");
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 3, 1}, {1, 2, 4, 3}}));
}

TEST(NastranReader, GivesAnElementWithoutPropertyTheSetOfItsOwnId)
{
    MeshModel const model = ReadMeshText(kNodes + "CTRIA3,8,,1,2,3\n", "part.bdf");
    ASSERT_EQ(model.sets.size(), 1U);
    EXPECT_EQ(model.sets[0].id, 8);
}

TEST(NastranReader, TakesBlankCoordinatesAsZeroAndElementsBeforeTheirNodes)
{
    MeshModel const model = ReadMeshText("CTRIA3,1,1,1,2,3\nGRID,1\nGRID,2,0,1.\nGRID,3,,,1.\n", "part.bdf");
    EXPECT_EQ(PointsOf(model), (std::vector<Point>{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}));
}

TEST(NastranReader, CutsACommentBehindACardAndSkipsOthersByName)
{
    MeshModel const model = ReadMeshText(
        kNodes +
            "CTRIA3,1,1,1,2,3 $ first, and only\nMAT1,1,2.1+5,,.3\nMAT1,2,2.1+5,,.3\nCHEXA,1,1,1,2,3,4,5,6\n+,7,8\n",
        "part.bdf");
    EXPECT_EQ(SkippedOf(model, "MAT1"), 2);
    EXPECT_EQ(SkippedOf(model, "CHEXA"), 1);
    EXPECT_EQ(model.mesh.numElem(), 1);
}

TEST(NastranReader, ScalesLengthsAndThicknessByTheUnit)
{
    ReadOptions options;
    options.unitLength = 25.4;
    MeshModel const model = ReadMeshText(kSmall, "part.bdf", options);
    EXPECT_EQ(PointsOf(model)[1][0], 254.0);
    EXPECT_EQ(model.sets[0].thickness, 0.8 * 25.4);
}

TEST(NastranReader, FollowsIncludesBesideTheFileThatNamesThem)
{
    Folder const folder;
    folder.Write("sub/nodes.bdf", "INCLUDE 'more.inc'\nGRID,2,,10.,0.,0.\nGRID,3,,0.,10.,0.\n");
    folder.Write("sub/more.inc", "GRID,1,,0.,0.,0.\n");
    std::string const path = folder.Write("part.bdf", "include 'sub/\n nodes.bdf'\nCTRIA3,1,1,1,2,3\n");
    EXPECT_EQ(RowsOf(ReadMesh(path)), (std::vector<Row>{{1, 2, 3, 1}}));
}

TEST(NastranReader, NamesTheIncludedFileInAnError)
{
    Folder const folder;
    std::string const nodes = folder.Write("nodes.bdf", "GRID,1,,0.,0.,0.\nGRID,2,,x,0.,0.\n");
    std::string const path = folder.Write("part.bdf", "INCLUDE nodes.bdf\n");
    EXPECT_EQ(MessageOf([&] { ReadMesh(path); }), nodes + ":2:9: GRID: found \"x\", expected x, a finite number");
}

TEST(NastranReader, RefusesAMissingIncludeAndALoop)
{
    Folder const folder;
    std::string const missing = folder.Write("missing.bdf", "\nINCLUDE 'none.bdf'\n");
    EXPECT_EQ(MessageOf([&] { ReadMesh(missing); }),
              missing + ":2:9: includes \"none.bdf\", expected a file of that name beside this one");
    folder.Write("a.bdf", "INCLUDE 'b.bdf'\n");
    std::string const b = folder.Write("b.bdf", "INCLUDE 'a.bdf'\n");
    EXPECT_EQ(MessageOf([&] { ReadMesh(folder / "a.bdf"); }),
              b + ":1:9: includes \"a.bdf\", which includes this file in turn: a loop");
}

TEST(NastranReader, TellsWhereAndWhatWasExpected)
{
    struct Case
    {
        std::string text, message;
    };
    Case const cases[] = {
        {"GRID,1,5,0.,0.,0.\n",
         "part.bdf:1:8: GRID stands in the coordinate system \"5\", expected blank or 0: write the "
         "mesh in the basic system"},
        {"GRDSET,,3\n",
         "part.bdf:1:9: GRDSET stands in the coordinate system \"3\", expected blank or 0: write the mesh in "
         "the basic system"},
        {"GRID           1             nan      0.      0.\n",
         "part.bdf:1:30: GRID: found \"nan\", expected x, a finite number"},
        {"GRID,1,,0.,inf,0.\n", "part.bdf:1:12: GRID: found \"inf\", expected y, a finite number"},
        {"GRID,1,,0.,0.,1e999\n", "part.bdf:1:15: GRID: found \"1e999\", expected z, a finite number"},
        {"GRID,1,,0.,0.,1.+30\n", "part.bdf:1: GRID 1 has a coordinate of 1e+30 mm, expected at most 1e9 mm"},
        {"GRID,0,,0.,0.,0.\n", "part.bdf:1:6: GRID: found \"0\", expected the id of a node (1 to 2147483647)"},
        {"GRID,99999999999\n",
         "part.bdf:1:6: GRID: found \"99999999999\", expected the id of a node (1 to 2147483647)"},
        {kNodes + "CTRIA3,1,1,1,2,8\n", "part.bdf:4:16: element 1 names GRID 8, which the file does not have"},
        {"CTRIA3,1,1,1,2,8\n", "part.bdf:1:12: element 1 names GRID 1, which the file does not have"},
        {kNodes + "CTRIA3,1,1,1,2\n", "part.bdf:4: CTRIA3: found nothing, expected the id of a corner's node (1 to "
                                      "2147483647)"},
        {kNodes + "GRID,2,,10.,1.,0.\nCTRIA3,1,1,1,2,3\n",
         "part.bdf:4: GRID 2 stands at another place already in line 2 of part.bdf, expected each id once"},
        {kNodes + "CTRIA3,1,1,1,2,3\nCTRIA3,1,1,1,3,2\n",
         "part.bdf:5: element 1 stands with other data already in line 4 of part.bdf, expected each id once"},
        {"GRID,1,,0.,0.,0.,,,,+A\n+B,\n",
         "part.bdf:2:1: found the continuation \"+B\", expected \"A\" of the card above"},
        {"=,*(1),=\n", "part.bdf:1:1: replication (\"=\") is not read, expected every card written out"},
        {"PSHELL,1,1,-1.\n", "part.bdf:1:12: PSHELL: found \"-1.\", expected a thickness of 0 or more"},
        {"PSHELL,1,1,1.\nPSHELL,1,1,1.\nPSHELL,1,1,2.\n",
         "part.bdf:3:8: PSHELL 1 stands with another thickness already, expected each id once"},
        {"INCLUDE 'x\n", "part.bdf:1:9: the name of an include has no closing quote"},
        {kNodes,
         "part.bdf: has no triangles or quadrilaterals; found 3 nodes, expected a Nastran bulk data surface mesh"},
        {"", "part.bdf: is empty, expected a surface mesh"},
    };
    for (Case const & one : cases)
        EXPECT_EQ(MessageOfText(one.text, "part.bdf"), one.message) << one.text;
}

TEST(NastranReader, TakesEqualDuplicatesOnceAndSaysSo)
{
    MeshModel const model = ReadMeshText(
        kNodes + "GRID,2,,10.,0.,0.\nGRID,9,,5.,5.,1.\nCTRIA3,2,1,2,9,3\nCTRIA3,1,1,1,2,3\nCTRIA3,1,1,1,2,3\n",
        "part.bdf");
    EXPECT_EQ(model.nodeIds, (std::vector<int>{1, 2, 3, 9}));
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{2, 4, 3, 2}, {1, 2, 3, 1}}));
    EXPECT_TRUE(HasRemark(model, "1 nodes are given more than once"));
    EXPECT_TRUE(HasRemark(model, "1 elements are given more than once"));
}

TEST(NastranReader, FindsNodesWhoseIdsLieFarApart)
{
    MeshModel const model = ReadMeshText("GRID,2147483647,,0.,0.,0.\nGRID,5,,10.,0.,0.\nGRID,1000000000,,0.,10.,0.\n"
                                         "CTRIA3,7,1,5,1000000000,2147483647\n",
                                         "part.bdf");
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{2, 3, 1, 2}}));
}

TEST(NastranReader, SaysThatADeckWithoutEnddataMayBeCut)
{
    EXPECT_TRUE(HasRemark(ReadMeshText("BEGIN BULK\n" + kNodes + "CTRIA3,1,1,1,2,3\n", "part.bdf"), "no ENDDATA"));
}

TEST(NastranReader, WarnsOfABoxThatIsNoPart)
{
    MeshModel const model =
        ReadMeshText("GRID,1,,0.,0.,0.\nGRID,2,,.2,0.,0.\nGRID,3,,0.,.1,0.\nCTRIA3,1,1,1,2,3\n", "part.bdf");
    EXPECT_TRUE(HasRemark(model, "The bounding box is 0.2 x 0.1 x 0 mm with the file's lengths taken as mm"));
}

TEST(NastranReader, SurvivesEveryPrefixOfAGoodFile)
{
    for (std::string const text : {kSmall, kFree, kLarge, kLargeFree})
        ReadEveryPrefix(text, "part.bdf");
}

TEST(NastranWriter, WritesWhatReadsBackEqual)
{
    Folder const folder;
    for (std::string const text : {kSmall, kFree, kLarge})
    {
        MeshModel const model = ReadMeshText(text, "part.bdf");
        WriteMesh(model, folder / "again.bdf");
        ExpectSameModel(ReadMesh(folder / "again.bdf"), model);
    }
}

TEST(NastranWriter, KeepsWideIdsAndSixteenColumnsOfACoordinate)
{
    Folder const folder;
    MeshModel model = SampleModel();
    model.nodeIds = {1, 2, 3, 4, 5, 2000000000};
    model.elementIds = {1, 2, 300000000};
    model.sets[0].name.clear();
    model.sets[1].name.clear();
    WriteMesh(model, folder / "wide.nas");
    MeshModel const back = ReadMesh(folder / "wide.nas");
    EXPECT_EQ(back.nodeIds, model.nodeIds);
    EXPECT_EQ(back.elementIds, model.elementIds);
    EXPECT_EQ(RowsOf(back), RowsOf(model));
    for (std::size_t n = 0; n < 6; ++n)
        EXPECT_NEAR(PointsOf(back)[n][2], PointsOf(model)[n][2], 1e-13 * std::abs(PointsOf(model)[n][2]));
    WriteMesh(back, folder / "again.nas"); // what was cut once is cut no further
    EXPECT_EQ(ContentOf(folder / "again.nas"), ContentOf(folder / "wide.nas"));
}
