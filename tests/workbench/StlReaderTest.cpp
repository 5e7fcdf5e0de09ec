// StlReaderTest.cpp: both forms, told apart by size; corners joined.

#include "MeshFixture.h"

#include <cstdint>
#include <cstring>
#include <limits>

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
using Facet = std::array<std::array<float, 3>, 3>;

std::string binary(std::vector<Facet> const & facets, std::string head = "anything")
{
    head.resize(80, '\0');
    auto const append = [&](auto const & value)
    {
        char bytes[sizeof value];
        std::memcpy(bytes, &value, sizeof value);
        head.append(bytes, sizeof value);
    };
    append(static_cast<std::uint32_t>(facets.size()));
    for (Facet const & facet : facets)
    {
        for (int k = 0; k < 3; ++k)
            append(0.0F);
        for (auto const & corner : facet)
            for (float const x : corner)
                append(x);
        append(std::uint16_t{0});
    }
    return head;
}

std::string text(std::vector<Facet> const & facets, std::string const & name)
{
    std::string solid = "solid " + name + "\n";
    for (Facet const & facet : facets)
    {
        solid += "  facet normal nan nan nan\n    outer loop\n";
        for (auto const & corner : facet)
            solid += "      vertex " + Shortest(static_cast<double>(corner[0])) + " " +
                     Shortest(static_cast<double>(corner[1])) + " " + Shortest(static_cast<double>(corner[2])) + "\n";
        solid += "    endloop\n  endfacet\n";
    }
    return solid + "endsolid " + name + "\n";
}

std::vector<Facet> const kSquare{{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}}, {{{0, 0, 0}, {10, 10, 0}, {0, 10, -0.0F}}}};
std::vector<Row> const kSquareRows{{1, 2, 3, 1}, {1, 3, 4, 1}};
} // namespace

TEST(StlReader, ReadsBothFormsAlikeAndJoinsEqualCorners)
{
    for (std::string const & content : {binary(kSquare), text(kSquare, "")})
    {
        MeshModel const model = ReadMeshText(content, "part.stl");
        EXPECT_EQ(RowsOf(model), kSquareRows);
        EXPECT_EQ(PointsOf(model), (std::vector<Point>{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}));
        EXPECT_FALSE(std::signbit(PointsOf(model)[3][2]));
        EXPECT_TRUE(model.remarks.empty());
    }
}

TEST(StlReader, GoesByTheSizeNotByTheWordSolid)
{
    EXPECT_EQ(RowsOf(ReadMeshText(binary(kSquare, "solid of a bad exporter"), "part.stl")), kSquareRows);
}

TEST(StlReader, KeepsSolidsApartAsSetsAndJoinsThemAtTheirCorners)
{
    MeshModel const model = ReadMeshText(text({kSquare[0]}, "one") + "\n" + text({kSquare[1]}, "two b"), "part.stl");
    EXPECT_EQ(RowsOf(model), kSquareRows);
    ASSERT_EQ(model.sets.size(), 2U);
    EXPECT_EQ(model.sets[0].name, "one");
    EXPECT_EQ(model.sets[1].name, "two b");
}

TEST(StlReader, JoinsCornersWithinTheToleranceAlone)
{
    std::vector<Facet> facets = kSquare;
    facets[1][0] = {0.001F, 0, 0};
    ReadOptions options;
    EXPECT_EQ(ReadMeshText(binary(facets), "part.stl", options).mesh.numNode(), 5);
    options.weldTolerance = 0.002;
    MeshModel const model = ReadMeshText(binary(facets), "part.stl", options);
    EXPECT_EQ(RowsOf(model), kSquareRows);
    EXPECT_EQ(model.nodeIds, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_TRUE(HasRemark(model, "1 corners within 0.002 mm of another were joined to it."));
}

TEST(StlReader, TellsFacetsWithoutAreaAndLeavesOutPoints)
{
    std::vector<Facet> facets = kSquare;
    facets.push_back({{{5, 5, 5}, {5, 5, 5}, {7, 7, 7}}});
    facets.push_back({{{0, 0, 0}, {5, 0, 0}, {10, 0, 0}}});
    MeshModel const model = ReadMeshText(binary(facets), "part.stl");
    EXPECT_EQ(model.mesh.numElem(), 3);
    EXPECT_EQ(model.mesh.numNode(), 5); // the corners of what was left out are gone
    EXPECT_TRUE(HasRemark(model, "1 facet (3) has two corners at one place; left out."));
    EXPECT_TRUE(HasRemark(model, "1 facet (4) has no area."));
}

TEST(StlReader, TellsWhereAndWhatWasExpected)
{
    std::string const good = binary(kSquare);
    std::vector<Facet> bad = kSquare;
    bad[1][2][0] = std::numeric_limits<float>::quiet_NaN();
    struct Case
    {
        std::string content, message;
    };
    Case const cases[] = {
        {good.substr(0, 150),
         "part.stl: its head tells 2 facets, which make 184 bytes, but it has 150: the file is cut"},
        {good + "x",
         "part.stl: its head tells 2 facets, which make 184 bytes, but it has 185: it is no STL file, or damaged"},
        {good.substr(0, 50), "part.stl: has 50 bytes, expected text that begins with \"solid\", or 84 bytes and more"},
        {binary(bad), "part.stl: facet 2, corner 3: found nan, expected a finite coordinate"},
        {binary({}), "part.stl: has no triangles or quadrilaterals; found 0 nodes, expected a STL surface mesh"},
        {"solid\nendsolid\n",
         "part.stl: has no triangles or quadrilaterals; found 0 nodes, expected a STL surface mesh"},
        {"solid x\nfacet normal 0 0 1\nouter loop\nvertex 0 0 x\n",
         "part.stl:4:12: found \"x\", expected a coordinate, a finite number"},
        {"solid x\nfacet normal 0 0 1\nouter loop\nvertex 0 0 inf\n",
         "part.stl:4:12: found \"inf\", expected a coordinate, a finite number"},
        {"solid x\nfacet normal 0 0 1\nvertex 0 0 0\n", "part.stl:3:1: found \"vertex\", expected \"outer\""},
        {"solid x\nvertex 0 0 0\n", "part.stl:2:1: found \"vertex\", expected \"facet\" or \"endsolid\""},
        {"solid x\nfacet normal 0 0 1\n",
         "part.stl:2: the text ends within a solid, expected \"endsolid\": the file is cut"},
        {text(kSquare, "a") + "rubbish\n", "part.stl:17:1: found \"rubbish\", expected \"solid\""},
        {binary({{{{1, 1, 1}, {1, 1, 1}, {2, 2, 2}}}}),
         "part.stl: every facet has two corners at one place, expected triangles"},
        {"", "part.stl: is empty, expected a surface mesh"},
    };
    for (Case const & one : cases)
        EXPECT_EQ(MessageOfText(one.content, "part.stl"), one.message);
}

TEST(StlReader, RefusesEveryPrefixOfAGoodFile)
{
    std::string const asBinary = binary(kSquare);
    for (std::size_t length = 0; length < asBinary.size(); ++length)
        EXPECT_NE(MessageOfText(asBinary.substr(0, length), "part.stl"), "") << length;
    std::string const asText = text(kSquare, "square");
    for (std::size_t length = 0; length < asText.rfind("endsolid") + 8; ++length)
        EXPECT_NE(MessageOfText(asText.substr(0, length), "part.stl"), "") << length;
}

TEST(StlReader, ReadsAZippedFileOfEitherForm)
{
    Folder const folder;
    EXPECT_EQ(RowsOf(ReadMesh(folder.Write("a.stl.gz", Zipped(binary(kSquare))))), kSquareRows);
    EXPECT_EQ(RowsOf(ReadMesh(folder.Write("b.stl.gz", Zipped(text(kSquare, ""))))), kSquareRows);
}

TEST(StlWriter, WritesBinaryWhereThatSaysItAll)
{
    Folder const folder;
    MeshModel const model = ReadMeshText(binary(kSquare), "part.stl");
    WriteMesh(model, folder / "again.stl");
    EXPECT_EQ(ContentOf(folder / "again.stl").size(), 184U);
    ExpectSameModel(ReadMesh(folder / "again.stl"), model);
}

TEST(StlWriter, WritesTextForSolidsWithNamesAndForAllDigits)
{
    Folder const folder;
    MeshModel const named = ReadMeshText(text({kSquare[0]}, "one") + text({kSquare[1]}, "two b"), "part.stl");
    WriteMesh(named, folder / "named.stl");
    ExpectSameModel(ReadMesh(folder / "named.stl"), named);

    MeshModel const model = SampleModel();
    WriteMesh(model, folder / "digits.stl");
    ReadOptions options;
    options.weldTolerance = 0.0;
    MeshModel const back = ReadMesh(folder / "digits.stl", options);
    EXPECT_EQ(PointsOf(back), PointsOf(model));
    EXPECT_EQ(RowsOf(back), (std::vector<Row>{{1, 2, 3, 1}, {1, 3, 4, 1}, {2, 5, 3, 2}, {5, 6, 3, 5}}));
}
