// DynaReaderTest.cpp: keyword decks in each width, with parts, sections and includes.

#include "MeshFixture.h"

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
// clang-format off
constexpr char const * kStandard =
    "$ blechteil \xFC" "ber alles\n"
    "*KEYWORD\n"
    "*TITLE\n"
    "a deck\n"
    "*NODE\n"
    "$   nid               x               y               z      tc      rc\n"
    "       1             0.0             0.0             0.0       0       0\n"
    "       2            10.0             0.0          1.5e-3       0       0\n"
    "       3            10.0            10.0             0.0\n"
    "       4             0.0            10.0             0.0\n"
    "      20            20.0             5.0             0.0\n"
    "*PART\n"
    "$ title\n"
    "T\xFCr innen\n"
    "         5         7         1\n"
    "T\xC3\xBCr au\xC3\x9F" "en\n"
    "         6         8         1\n"
    "*SECTION_SHELL\n"
    "         7         2       1.0         5         0         0         1\n"
    "       0.8       0.8       0.8       0.8\n"
    "       0.0      45.0      90.0     -45.0       0.0\n"
    "         8         2\n"
    "      1.25      1.25      1.25      1.25\n"
    "*MAT_ELASTIC\n"
    "         1   7.85e-9     2.1e5       0.3\n"
    "*ELEMENT_SHELL\n"
    "      11       5       1       2       3       4\n"
    "      12       6       2      20       3       3\n"
    "*END\n"
    "not read\n";
constexpr char const * kI10 =
    "*KEYWORD I10=Y\n*NODE\n"
    "         1             0.0             0.0             0.0\n"
    "         2            10.0             0.0             0.0\n"
    "         3             0.0            10.0             0.0\n"
    "*ELEMENT_SHELL\n"
    "        11         5         1         2         3         0\n"
    "*END\n";
constexpr char const * kLong =
    "*KEYWORD LONG=Y\n*NODE\n"
    "                   1                 0.0                 0.0                 0.0\n"
    "                   2                10.0                 0.0                 0.0\n"
    "                   3                 0.0                10.0                 0.0\n"
    "*ELEMENT_SHELL\n"
    "                  11                   5                   1                   2                   3                   3\n"
    "*PART\nlong one\n"
    "                   5                   9\n"
    "*SECTION_SHELL_TITLE\na title\n"
    "                   9                   2\n"
    "                 0.7                 0.7\n"
    "*END\n";
constexpr char const * kMarked =
    "*KEYWORD\n*NODE %\n"
    "         1             0.0             0.0             0.0\n"
    "         2            10.0             0.0             0.0\n"
    "*NODE+\n"
    "                   3                 0.0                10.0                 0.0\n"
    "*ELEMENT_SHELL\n"
    "11,5,1,2,3,3\n"
    "*END\n";
// clang-format on
std::string const kNodes = "*KEYWORD\n*NODE\n1,0.,0.,0.\n2,10.,0.,0.\n3,0.,10.,0.\n4,10.,10.,0.\n";
std::vector<Row> const kOneTriangle{{1, 2, 3, 1}};
} // namespace

TEST(DynaReader, ReadsNodesShellsPartsAndSections)
{
    MeshModel const model = ReadMeshText(kStandard, "part.k");
    EXPECT_EQ(PointsOf(model), (std::vector<Point>{{0, 0, 0}, {10, 0, 0.0015}, {10, 10, 0}, {0, 10, 0}, {20, 5, 0}}));
    EXPECT_EQ(RowsOf(model), (std::vector<Row>{{1, 2, 3, 4}, {2, 5, 3, 2}}));
    EXPECT_EQ(model.nodeIds, (std::vector<int>{1, 2, 3, 4, 20}));
    EXPECT_EQ(model.elementIds, (std::vector<int>{11, 12}));
    ASSERT_EQ(model.sets.size(), 2U);
    EXPECT_EQ(model.sets[0].id, 5);
    EXPECT_EQ(model.sets[0].name, "T\xC3\xBCr innen"); // Latin-1 becomes UTF-8
    EXPECT_EQ(model.sets[0].thickness, 0.8);
    EXPECT_EQ(model.sets[1].name, "T\xC3\xBCr au\xC3\x9F"
                                  "en");
    EXPECT_EQ(model.sets[1].thickness, 1.25);
    ASSERT_EQ(model.skipped.size(), 1U);
    EXPECT_EQ(SkippedOf(model, "*MAT_ELASTIC"), 1);
    EXPECT_TRUE(model.remarks.empty());
}

TEST(DynaReader, ReadsEachWidth)
{
    for (std::string const text : {kI10, kLong, kMarked})
        EXPECT_EQ(RowsOf(ReadMeshText(text, "part.k")), kOneTriangle) << text;
    EXPECT_EQ(ReadMeshText(kLong, "part.k").sets[0].thickness, 0.7);
}

TEST(DynaReader, TakesTheBareWordLongAndTheMinusBack)
{
    EXPECT_EQ(RowsOf(ReadMeshText("*KEYWORD LONG\n*NODE -\n"
                                  "       1             0.0             0.0             0.0\n"
                                  "       2            10.0             0.0             0.0\n"
                                  "       3             0.0            10.0             0.0\n"
                                  "*ELEMENT_SHELL\n1,5,1,2,3,3\n*END\n",
                                  "part.k")),
              kOneTriangle);
    EXPECT_EQ(RowsOf(ReadMeshText("*KEYWORD\n*NODE long=y\n"
                                  "                   1                 0.0                 0.0                 0.0\n"
                                  "                   2                10.0                 0.0                 0.0\n"
                                  "                   3                 0.0                10.0                 0.0\n"
                                  "*ELEMENT_SHELL\n1,5,1,2,3,3\n*END\n",
                                  "part.k")),
              kOneTriangle);
}

TEST(DynaReader, PassesTheCardsOfThicknessBetaAndOffset)
{
    MeshModel const model = ReadMeshText(
        kNodes +
            "*ELEMENT_SHELL_THICKNESS\n1,1,1,2,3,3\n0.5,0.5,0.5\n2,1,2,4,3,3\n0.5,0.5,0.5\n"
            "*ELEMENT_SHELL_BETA_OFFSET\n3,2,1,2,4,3\n0.6,0.6,0.6,0.6,30.\n-0.25\n"
            "*ELEMENT_SHELL_OFFSET\n4,3,1,2,3,3\n0.1\n"
            "*ELEMENT_SHELL_THICKNESS\n5,4,1,2,4,3,1,2,3,4\n0.4,0.4,0.4,0.4\n0.4,0.4,0.4,0.4\n6,4,1,2,3,3\n\n*END\n",
        "part.k");
    EXPECT_EQ(model.elementIds, (std::vector<int>{1, 2, 3, 4, 5, 6}));
    ASSERT_EQ(model.sets.size(), 4U);
    EXPECT_EQ(model.sets[0].thickness, 0.5);
    EXPECT_EQ(model.sets[1].thickness, 0.6);
    EXPECT_EQ(model.sets[2].thickness, 0.0);
    EXPECT_EQ(model.sets[3].thickness, 0.4);
}

TEST(DynaReader, SaysThatThicknessesOfAPartDiffer)
{
    MeshModel const model = ReadMeshText(
        kNodes + "*ELEMENT_SHELL_THICKNESS\n1,1,1,2,3,3\n0.5,0.5,0.5\n2,1,2,4,3,3\n0.6,0.6,0.6\n*END\n", "part.k");
    EXPECT_EQ(model.sets[0].thickness, 0.0);
    EXPECT_TRUE(HasRemark(model, "The shells of part 1 have thicknesses of their own that differ"));
}

TEST(DynaReader, SkipsOtherShellsByName)
{
    MeshModel const model = ReadMeshText(
        kNodes + "*ELEMENT_SHELL_COMPOSITE\n9,1,1,2,3,3\n1,0.5,0.\n*ELEMENT_SHELL\n1,1,1,2,3,3\n*END\n", "part.k");
    EXPECT_EQ(model.elementIds, std::vector<int>{1});
    EXPECT_EQ(SkippedOf(model, "*ELEMENT_SHELL_COMPOSITE"), 1);
}

TEST(DynaReader, FollowsIncludesAndTheirPathsAndEndsOneFileAtItsEnd)
{
    Folder const folder;
    folder.Write("lib/nodes.k", "*KEYWORD\n*NODE\n1,0.,0.,0.\n2,10.,0.,0.\n*END\n3,7.,7.,7.\n");
    folder.Write("third.k", "*NODE\n3,0.,10.,0.\n");
    std::string const path = folder.Write(
        "part.k", "*KEYWORD\n*INCLUDE_PATH\nlib\n*INCLUDE\nnod +\nes.k\nthird.k\n*ELEMENT_SHELL\n1,1,1,2,3,3\n*END\n");
    MeshModel const model = ReadMesh(path);
    EXPECT_EQ(RowsOf(model), kOneTriangle);
    EXPECT_EQ(PointsOf(model)[2], (Point{0, 10, 0}));
}

TEST(DynaReader, RefusesAMissingIncludeAndALoop)
{
    Folder const folder;
    std::string const missing = folder.Write("missing.k", "*KEYWORD\n*INCLUDE_PATH\nlib\n*INCLUDE\nnone.k\n");
    EXPECT_EQ(MessageOf([&] { ReadMesh(missing); }),
              missing +
                  ":5:1: includes \"none.k\", expected a file of that name beside this one or in the include folders");
    std::string const self = folder.Write("self.k", "*KEYWORD\n*INCLUDE\nself.k\n");
    EXPECT_EQ(MessageOf([&] { ReadMesh(self); }),
              self + ":3:1: includes \"self.k\", which includes this file in turn: a loop");
}

TEST(DynaReader, SaysThatATransformedIncludeWasPassedOver)
{
    MeshModel const model =
        ReadMeshText(kNodes + "*INCLUDE_TRANSFORM\nother.k\n0,0,0\n*ELEMENT_SHELL\n1,1,1,2,3,3\n*END\n", "part.k");
    EXPECT_TRUE(HasRemark(model, "*INCLUDE_TRANSFORM in line 7 of part.k was passed over"));
}

TEST(DynaReader, TellsWhereAndWhatWasExpected)
{
    struct Case
    {
        std::string text, message;
    };
    Case const cases[] = {
        {"*NODE\n       1            nan             0.0             0.0\n",
         "part.k:2:21: found \"nan\", expected x, a finite number"},
        {"*NODE\n1,0.,&height,0.\n", "part.k:2:6: found \"&height\", expected y, a finite number"},
        {"*NODE\n1,0.,0.,1e400\n", "part.k:2:9: found \"1e400\", expected z, a finite number"},
        {"*NODE\n1,0.,0.,-2e9\n", "part.k:2: node 1 has a coordinate of -2e+09 mm, expected at most 1e9 mm"},
        {"*NODE\nx,0.,0.,0.\n", "part.k:2:1: found \"x\", expected the id of a node (1 to 2147483647)"},
        {kNodes + "*ELEMENT_SHELL\n       1       1       1       2       9       9\n",
         "part.k:8:40: shell 1 names node 9, which the file does not have"},
        {"*ELEMENT_SHELL\n1,1,1,2,3\n", "part.k:2:5: shell 1 names node 1, which the file does not have"},
        {kNodes + "*ELEMENT_SHELL\n1,1,1,2\n", "part.k:8: found nothing, expected the id of a corner's node (1 to "
                                               "2147483647)"},
        {kNodes + "1,1.,0.,0.\n*ELEMENT_SHELL\n1,1,1,2,3,3\n",
         "part.k:7: node 1 stands at another place already in line 3 of part.k, expected each id once"},
        {kNodes + "*ELEMENT_SHELL\n1,1,1,2,3,3\n1,2,1,2,3,3\n",
         "part.k:9: shell 1 stands with other data already in line 8 of part.k, expected each id once"},
        {kNodes + "*ELEMENT_SHELL_THICKNESS\n1,1,1,2,3,3\n*END\n",
         "part.k:9: the cards of shell 1 end early, expected its thickness or offset card"},
        {"*PART\na part\n*END\n", "part.k:3: part \"a part\" ends early, expected the card with its id"},
        {"*SECTION_SHELL\n3,2\n*END\n", "part.k:3: section 3 ends early, expected its thickness card"},
        {"*SECTION_SHELL\n3,2\n-1.\n", "part.k:3:1: found \"-1.\", expected a thickness of 0 or more"},
        {"*SECTION_SHELL\n3,2\n1.\n3,2\n2.\n",
         "part.k:5:1: section 3 stands with another thickness already, expected each id once"},
        {"*PART\na\n1,1\na\n1,2\n", "part.k:5:1: part 1 stands with another section already, expected each id once"},
        {"data first\n", "part.k:1:1: found \"data first\", expected a keyword (*KEYWORD)"},
        {"*KEYWORD\n*INCLUDE\nother.k\n", "part.k:3:1: includes \"other.k\", expected a text without includes"},
        {kNodes, "part.k: has no triangles or quadrilaterals; found 4 nodes, expected a LS-DYNA keyword surface mesh"},
        {"", "part.k: is empty, expected a surface mesh"},
    };
    for (Case const & one : cases)
        EXPECT_EQ(MessageOfText(one.text, "part.k"), one.message) << one.text;
}

TEST(DynaReader, SaysThatADeckWithoutEndMayBeCut)
{
    EXPECT_TRUE(HasRemark(ReadMeshText(kNodes + "*ELEMENT_SHELL\n1,1,1,2,3,3\n", "part.k"), "no *END"));
}

TEST(DynaReader, SurvivesEveryPrefixOfAGoodFile)
{
    for (std::string const text : {kStandard, kI10, kLong, kMarked})
        ReadEveryPrefix(text, "part.k");
}

TEST(DynaWriter, WritesWhatReadsBackEqual)
{
    Folder const folder;
    for (std::string const text : {kStandard, kI10, kLong})
    {
        MeshModel const model = ReadMeshText(text, "part.k");
        WriteMesh(model, folder / "again.k");
        ExpectSameModel(ReadMesh(folder / "again.k"), model);
    }
}

TEST(DynaWriter, WidensTheIdsThatEightColumnsDoNotHold)
{
    Folder const folder;
    MeshModel model = SampleModel();
    model.nodeIds = {1, 2, 3, 4, 5, 2000000000};
    WriteMesh(model, folder / "wide.key");
    MeshModel const back = ReadMesh(folder / "wide.key");
    EXPECT_EQ(back.nodeIds, model.nodeIds);
    EXPECT_EQ(RowsOf(back), RowsOf(model));
    EXPECT_EQ(back.sets[1].name, "right");
}
