// ExportsTest.cpp: DXF, SVG, VTU and tables, read back by small readers of the test's own.

#include "Exports.h"
#include "MeshPicture.h"
#include "OutputFile.h"
#include "Report.h"
#include "SyntheticOutcome.h"

#include <pugixml.hpp>
#include <zlib.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

namespace voz::workbench
{
namespace
{

struct Exports : testing::Test
{
    Outcome outcome = test::plateWithHole(100.0, 60.0, 10.0, 64, 6);
    std::string folder;

    void SetUp() override
    {
        Summarise(outcome);
        folder = testing::TempDir() + "exports-" + testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    static std::string bytes(std::string const & path)
    {
        std::ifstream file(path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }
};

struct Pair
{
    int code;
    std::string value;
};

std::vector<Pair> dxfPairs(std::string const & text)
{
    std::vector<Pair> pairs;
    std::istringstream lines(text);
    std::string code;
    std::string value;
    while (std::getline(lines, code) && std::getline(lines, value))
        pairs.push_back({std::stoi(code), value});
    return pairs;
}

TEST_F(Exports, DxfIsPairsFromFirstSectionToEof)
{
    for (DxfVersion const version : {DxfVersion::R12, DxfVersion::R2000})
    {
        WriteBlankDxf(outcome, {0.05, version}, folder + "/blank.dxf");
        std::string const text = bytes(folder + "/blank.dxf");
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n') % 2, 0);
        std::vector<Pair> const pairs = dxfPairs(text);
        EXPECT_EQ(pairs.front().value, "SECTION");
        EXPECT_EQ(pairs.back().value, "EOF");
        int open = 0;
        for (Pair const & pair : pairs)
            open += pair.code == 0 ? (pair.value == "SECTION") - (pair.value == "ENDSEC") : 0;
        EXPECT_EQ(open, 0);
    }
}

TEST_F(Exports, DxfHoldsOneClosedOutlineAndOneHoleInMillimetres)
{
    double const deviation = WriteBlankDxf(outcome, {}, folder + "/blank.dxf");
    EXPECT_LE(deviation, 0.05);
    std::vector<Pair> const pairs = dxfPairs(bytes(folder + "/blank.dxf"));
    int outlines = 0;
    int holes = 0;
    for (std::size_t i = 0; i < pairs.size(); ++i)
    {
        if (pairs[i].code == 9 && pairs[i].value == "$INSUNITS")
        {
            EXPECT_EQ(pairs[i + 1].value, "4");
        }
        if (pairs[i].code != 0 || pairs[i].value != "LWPOLYLINE")
            continue;
        for (std::size_t k = i + 1; pairs[k].code != 0; ++k)
        {
            outlines += pairs[k].code == 8 && pairs[k].value == "OUTLINE";
            holes += pairs[k].code == 8 && pairs[k].value == "HOLES";
            if (pairs[k].code == 70)
            {
                EXPECT_EQ(pairs[k].value, "1") << "closed";
            }
        }
    }
    EXPECT_EQ(outlines, 1);
    EXPECT_EQ(holes, 1);
}

TEST_F(Exports, DxfHandlesAreUniqueAndBelowTheSeed)
{
    WriteBlankDxf(outcome, {}, folder + "/blank.dxf");
    std::vector<Pair> const pairs = dxfPairs(bytes(folder + "/blank.dxf"));
    std::set<std::string> handles;
    long seed = 0;
    for (std::size_t i = 0; i < pairs.size(); ++i)
    {
        if (i > 0 && pairs[i - 1].value == "$HANDSEED")
            seed = std::stol(pairs[i].value, nullptr, 16);
        else if (pairs[i].code == 5)
        {
            EXPECT_TRUE(handles.insert(pairs[i].value).second) << pairs[i].value;
        }
    }
    for (std::string const & handle : handles)
        EXPECT_LT(std::stol(handle, nullptr, 16), seed);
}

TEST_F(Exports, SvgIsWellFormedWithTheSizeOfTheBlankInMillimetres)
{
    WriteBlankSvg(outcome, {}, folder + "/blank.svg");
    pugi::xml_document document;
    ASSERT_TRUE(document.load_file((folder + "/blank.svg").c_str()));
    pugi::xml_node const svg = document.child("svg");
    EXPECT_EQ(std::string(svg.attribute("width").value()), "128.000mm"); // 100 and a margin of 14 on both sides
    std::string const text = bytes(folder + "/blank.svg");
    EXPECT_NE(text.find(">100.00 mm</text>"), std::string::npos);
    EXPECT_NE(text.find(">60.00 mm</text>"), std::string::npos);
    EXPECT_NE(text.find("id=\"HOLES\""), std::string::npos);
}

// Inflates the array of that name.
template <class T>
std::vector<T> vtuArray(std::string const & text, std::string const & name)
{
    std::size_t const tag = text.find("Name=\"" + name + "\"");
    EXPECT_NE(tag, std::string::npos) << name;
    std::size_t const offset = std::stoul(text.substr(text.find("offset=\"", tag) + 8));
    char const * at = text.data() + text.find("<AppendedData encoding=\"raw\">\n_") + 31 + offset;
    auto const count = [&]
    {
        std::uint64_t value;
        std::memcpy(&value, at, sizeof value);
        at += sizeof value;
        return value;
    };
    std::uint64_t const blocks = count();
    std::uint64_t const blockSize = count();
    std::uint64_t const lastSize = count();
    std::vector<std::uint64_t> sizes;
    for (std::uint64_t i = 0; i < blocks; ++i)
        sizes.push_back(count());
    std::string raw;
    for (std::uint64_t i = 0; i < blocks; ++i)
    {
        uLongf size = i + 1 == blocks && lastSize != 0 ? lastSize : blockSize;
        std::string out(size, '\0');
        EXPECT_EQ(
            uncompress(reinterpret_cast<Bytef *>(out.data()), &size, reinterpret_cast<Bytef const *>(at), sizes[i]),
            Z_OK);
        at += sizes[i];
        raw += out;
    }
    std::vector<T> values(raw.size() / sizeof(T));
    std::memcpy(values.data(), raw.data(), raw.size());
    return values;
}

TEST_F(Exports, VtuReadsBackEqual)
{
    outcome.nodes[3].displacement = {1.0, -2.0, 3.5};
    WriteVtu(outcome, folder);
    std::string const part = bytes(folder + "/part.vtu");
    std::vector<double> const points = vtuArray<double>(part, "Points");
    ASSERT_EQ(points.size(), 3u * outcome.nodes.size());
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
        for (std::size_t c = 0; c < 3; ++c)
            EXPECT_EQ(points[3 * n + c], outcome.part.GetNodeData()[n + 1][c]);
    std::vector<float> const thinning = vtuArray<float>(part, "thinning (%)");
    std::vector<std::int32_t> const safety = vtuArray<std::int32_t>(part, "safety zone");
    std::vector<std::int32_t> const connectivity = vtuArray<std::int32_t>(part, "connectivity");
    std::vector<std::uint8_t> const types = vtuArray<std::uint8_t>(part, "types");
    ASSERT_EQ(thinning.size(), outcome.elements.size());
    for (std::size_t e = 0; e < outcome.elements.size(); ++e)
    {
        EXPECT_EQ(thinning[e], static_cast<float>(outcome.elements[e].thinning));
        EXPECT_EQ(safety[e], outcome.elements[e].safety);
        EXPECT_EQ(types[e], 9);
        for (std::size_t k = 0; k < 4; ++k)
            EXPECT_EQ(connectivity[4 * e + k], outcome.part.GetElemData()[e + 1][k] - 1);
    }
    std::vector<double> const flat = vtuArray<double>(bytes(folder + "/blank.vtu"), "Points");
    EXPECT_EQ(flat[9], points[9] + 1.0);
    EXPECT_EQ(flat[10], points[10] - 2.0);
    EXPECT_EQ(flat[11], points[11] + 3.5);
}

TEST_F(Exports, ArraysOfWholeBlocksAreToldWithALastSizeOfZero)
{
    outcome =
        test::plateWithHole(100.0, 60.0, 10.0, 256, 1023); // 262,144 nodes: displacement fields of exactly 3 blocks
    WriteVtu(outcome, folder);
    EXPECT_EQ(vtuArray<float>(bytes(folder + "/part.vtu"), "displacement part to blank (mm)").size(), 3u * 262144u);
}

TEST_F(Exports, TablesHaveAHeaderWithUnitsAndARowPerEntry)
{
    WriteTables(outcome, folder);
    std::string const nodes = bytes(folder + "/nodes.csv");
    EXPECT_TRUE(nodes.starts_with("node,x (mm),y (mm),z (mm),flat x (mm)"));
    EXPECT_EQ(std::count(nodes.begin(), nodes.end(), '\n'), 1 + static_cast<long>(outcome.nodes.size()));
    std::string const fld = bytes(folder + "/fld.csv");
    EXPECT_EQ(std::count(fld.begin(), fld.end(), '\n'), 1 + static_cast<long>(outcome.elements.size()));
    std::string const second = fld.substr(fld.find('\n') + 1, fld.find('\n', fld.find('\n') + 1) - fld.find('\n') - 1);
    EXPECT_TRUE(second.starts_with("1,-2,5,")) << second;
}

TEST_F(Exports, AFullDeviceIsAnErrorThatNamesThePath)
{
    try
    {
        WriteBlankSvg(outcome, {}, "/dev/full");
        FAIL() << "nothing was said";
    }
    catch (OutputError const & error)
    {
        EXPECT_NE(std::string(error.what()).find("/dev/full"), std::string::npos);
    }
}

TEST_F(Exports, AMissingFolderIsAnErrorAndLeavesNothing)
{
    EXPECT_THROW(WriteBlankDxf(outcome, {}, folder + "/none/blank.dxf"), OutputError);
    EXPECT_FALSE(std::filesystem::exists(folder + "/none"));
}

TEST_F(Exports, ThePageIsTheSameBytesTwiceAndEscapesTheTitle)
{
    WriteReport(outcome, folder + "/a.html");
    WriteReport(outcome, folder + "/b.html");
    std::string const page = bytes(folder + "/a.html");
    EXPECT_EQ(page, bytes(folder + "/b.html"));
    EXPECT_TRUE(page.starts_with("<!DOCTYPE html>\n<html lang=\"en\">"));
    EXPECT_NE(page.find("<title>plate &amp; hole &lt;test&gt;</title>"), std::string::npos);
    for (char const * id : {"summary", "part", "fld", "blank", "forces", "tipping", "checks", "provenance"})
        EXPECT_NE(page.find("<section id=\"" + std::string(id) + "\">"), std::string::npos) << id;
    for (char const * lost : {">nan", " nan", "\"nan", "inf "})
        EXPECT_EQ(page.find(lost), std::string::npos) << lost;
}

TEST_F(Exports, EveryElementStandsInTheFormingLimitDiagram)
{
    WriteReport(outcome, folder + "/page.html");
    std::string const page = bytes(folder + "/page.html");
    std::size_t points = 0;
    for (std::size_t at = page.find("h0"); at != std::string::npos; at = page.find("h0", at + 2))
        ++points;
    EXPECT_GE(points, 2u * outcome.elements.size()); // a rim and a dot each
}

TEST(MeshPicture, CoversTheMeshAndLeavesTheRestClear)
{
    Outcome const outcome = test::plateWithHole(100.0, 60.0, 10.0, 64, 6);
    std::vector<Point3> nodes;
    for (NodeOutcome const & node : outcome.nodes)
        nodes.push_back(node.flat);
    MeshPicture picture(outcome.part, nodes, {300, 200});
    picture.Draw(std::vector<Colour>(outcome.elements.size(), Colour{0, 158, 115}));
    std::vector<std::uint8_t> const rgba = picture.Pixels();
    ASSERT_EQ(rgba.size(), 4u * 300u * 200u);
    auto const alpha = [&](Point2 const & at)
    { return rgba[4 * (static_cast<std::size_t>(at[1]) * 300 + static_cast<std::size_t>(at[0])) + 3]; };
    EXPECT_EQ(alpha(picture.Place({30.0, 0.0, 0.0})), 255);
    EXPECT_EQ(alpha(picture.Place({0.0, 0.0, 0.0})), 0) << "the hole";
    EXPECT_EQ(alpha({2.0, 2.0}), 0) << "the corner of the picture";
}

TEST(MeshPicture, TheNearerSheetHidesTheOther)
{
    // Two squares over each other: the upper one is seen from above.
    double const nodes[8][3] = {{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0},
                                {0, 0, 1}, {10, 0, 1}, {10, 10, 1}, {0, 10, 1}};
    int const elems[2][4] = {{5, 6, 7, 8}, {1, 2, 3, 4}};
    VOZCatMesh const mesh(8, 2, nodes, elems);
    std::vector<Point3> points;
    for (auto const & node : nodes)
        points.push_back({node[0], node[1], node[2]});
    MeshPicture picture(mesh, points, {300, 200});
    picture.Draw({Colour{255, 0, 0}, Colour{0, 0, 255}});
    std::vector<std::uint8_t> const rgba = picture.Pixels();
    Point2 const at = picture.Place({5.0, 5.0, 1.0});
    std::size_t const pixel = 4 * (static_cast<std::size_t>(at[1]) * 300 + static_cast<std::size_t>(at[0]));
    EXPECT_GT(rgba[pixel], 100);
    EXPECT_EQ(rgba[pixel + 2], 0);
}

TEST(Base64, MatchesTheVectorsOfRfc4648)
{
    EXPECT_EQ(Base64(""), "");
    EXPECT_EQ(Base64("f"), "Zg==");
    EXPECT_EQ(Base64("fo"), "Zm8=");
    EXPECT_EQ(Base64("foo"), "Zm9v");
    EXPECT_EQ(Base64("foobar"), "Zm9vYmFy");
}

TEST(NumberText, NeverShowsAMinusZero)
{
    EXPECT_EQ(Fixed(-0.001, 2), "0.00");
    EXPECT_EQ(Fixed(-0.01, 2), "-0.01");
    EXPECT_EQ(Shortest(0.1), "0.1");
}

} // namespace
} // namespace voz::workbench
