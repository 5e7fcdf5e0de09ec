// VOZDYNAWriterTest.cpp: a mesh as keyword cards, byte for byte. Whole files stand in tests/golden/dyna.

#include "VOZDYNAWriter.h"

#include "CommaLocale.h"
#include "ExportMeshes.h"
#include "FolderFixture.h"
#include "GoldenText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

using goldentext::firstDifference;
using goldentext::linesOf;
using goldentext::readFile;

namespace
{
std::string convert(double value, int digits = 9)
{
    DYNAWriter writer(nullptr, nullptr, 3, nullptr, nullptr, 1);
    std::string text(static_cast<std::size_t>(std::max(digits, 1)) + 8, '#');
    writer.DoubleConvert(value, digits, text.data());
    EXPECT_NE(text.find('\0'), std::string::npos) << "within digits + 8 bytes";
    return text.c_str();
}

// The digits of printf's "%.*e", put behind the point.
std::string byPrintf(double value, int digits)
{
    char scientific[400];
    std::snprintf(scientific, sizeof scientific, "%.*e", digits - 1, std::fabs(value));
    std::string const text = scientific;
    std::size_t const mark = text.find('e');
    std::string figures = text.substr(0, mark);
    std::erase(figures, '.');
    int const position = value == 0.0 ? 0 : std::atoi(text.c_str() + mark + 1) + 1;
    char wanted[800];
    std::snprintf(wanted, sizeof wanted, "%c.%sE%c%02d", std::signbit(value) ? '-' : ' ', figures.c_str(),
                  position < 0 ? '-' : '+', std::abs(position));
    return wanted;
}

class DynaPlain : public FolderFixture
{
protected:
    std::string written(VOZCatMesh & mesh, int part = 7)
    {
        char path[] = "mesh.mod";
        {
            DYNAWriter writer(&mesh, nullptr, 3, path, nullptr, part);
            writer.Write();
        }
        return readFile(path);
    }
    static std::string golden(char const * name)
    {
        return readFile(goldentext::fs::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "dyna" / name);
    }
};

VOZCatMesh goldenMesh()
{
    VOZCatMesh mesh = exportmeshes::pair(
        {{0, 0, 0}, {10, 0, 0.5}, {10.25, -12.5, -0.0625}, {-3.0, 1e6 / 3, 1.5e-7}, {1e100, -2e-120, 0.999999999951}});
    mesh.IdsOffset(1000, 2000);
    return mesh;
}
} // namespace

TEST(DynaDoubleConvert, PutsAllDigitsBehindThePoint)
{
    EXPECT_EQ(convert(1.5), " .150000000E+01");
    EXPECT_EQ(convert(-1.5), "-.150000000E+01");
    EXPECT_EQ(convert(0.5), " .500000000E+00");
    EXPECT_EQ(convert(0.05), " .500000000E-01");
    EXPECT_EQ(convert(123456789.25), " .123456789E+09");
}

TEST(DynaDoubleConvert, WritesZeroWithTheExponentZero)
{
    EXPECT_EQ(convert(0.0), " .000000000E+00");
    EXPECT_EQ(convert(-0.0), "-.000000000E+00"); // the sign bit shows
    EXPECT_EQ(convert(0.0, 1), " .0E+00");
}

TEST(DynaDoubleConvert, CarriesIntoTheNextPowerOfTen)
{
    EXPECT_EQ(convert(0.9999999996), " .100000000E+01");
    EXPECT_EQ(convert(999999999.6), " .100000000E+10");
    EXPECT_EQ(convert(0.09999999999), " .100000000E+00");
}

TEST(DynaDoubleConvert, RoundsATieToTheEvenDigit)
{
    EXPECT_EQ(convert(0.125, 2), " .12E+00");
    EXPECT_EQ(convert(0.375, 2), " .38E+00");
    EXPECT_EQ(convert(2.5, 1), " .2E+01");
    EXPECT_EQ(convert(1000000005.0), " .100000000E+10");
    EXPECT_EQ(convert(1000000015.0), " .100000002E+10");
    EXPECT_EQ(convert(2.675, 3), " .267E+01"); // the double lies below the tie
}

TEST(DynaDoubleConvert, TakesOneDigitForACountBelowOne)
{
    EXPECT_EQ(convert(1.5, 1), " .2E+01");
    EXPECT_EQ(convert(1.25, 0), " .1E+01");
    EXPECT_EQ(convert(1.25, -7), " .1E+01");
}

TEST(DynaDoubleConvert, WritesExponentsOfThreeDigits)
{
    EXPECT_EQ(convert(std::numeric_limits<double>::max()), " .179769313E+309");
    EXPECT_EQ(convert(std::numeric_limits<double>::denorm_min()), " .494065646E-323");
    EXPECT_EQ(convert(-std::numeric_limits<double>::min()), "-.222507386E-307");
    EXPECT_EQ(convert(1e99), " .100000000E+100");
    EXPECT_EQ(convert(1e-100), " .100000000E-99");
}

TEST(DynaDoubleConvert, WritesExactDigitsBeyondThoseOfADouble)
{
    EXPECT_EQ(convert(0.1, 30), " .100000000000000005551115123126E+00");
    EXPECT_EQ(convert(0.5, 40), " ." + ("5" + std::string(39, '0')) + "E+00");
}

// No reader takes these for a number.
TEST(DynaDoubleConvert, MarksWhatIsNoNumber)
{
    double const infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(convert(infinity), " .1#INF0000E+01");
    EXPECT_EQ(convert(-infinity), "-.1#INF0000E+01");
    EXPECT_EQ(convert(std::numeric_limits<double>::quiet_NaN()), " .1#QNAN000E+01");
    EXPECT_EQ(convert(infinity, 3), " .1#IE+01");
}

TEST(DynaDoubleConvert, AgreesWithPrintfOnRandomDoubles)
{
    std::mt19937_64 generator(20261121);
    std::uniform_int_distribution<int> digits(1, 25);
    for (int i = 0; i < 200000; ++i)
    {
        double const value = std::bit_cast<double>(static_cast<std::uint64_t>(generator()));
        int const count = digits(generator);
        if (!std::isfinite(value))
            continue;
        ASSERT_EQ(convert(value, count), byPrintf(value, count)) << value << " " << count;
    }
}

TEST(DynaDoubleConvert, AgreesWithPrintfOnCoordinates)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> coordinate(-2000.0, 2000.0);
    for (int i = 0; i < 100000; ++i)
    {
        double const value = coordinate(generator);
        ASSERT_EQ(convert(value), byPrintf(value, 9)) << value;
        double const round = std::round(value * 64.0) / 64.0; // ties among them
        ASSERT_EQ(convert(round, 4), byPrintf(round, 4)) << round;
    }
}

TEST_F(DynaPlain, IsWrittenByteForByte)
{
    VOZCatMesh mesh = goldenMesh();
    EXPECT_EQ(firstDifference(golden("plain.golden"), written(mesh)), "");
}

TEST_F(DynaPlain, IsTheSameUnderALocaleWithADecimalComma)
{
    VOZCatMesh mesh = goldenMesh();
    CommaLocale const comma;
    if (!comma.inForce())
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    EXPECT_EQ(firstDifference(golden("plain.golden"), written(mesh)), "");
}

TEST_F(DynaPlain, LabelsNodesAndElementsByTheirOffsets)
{
    samples::Grid grid;
    VOZCatMesh mesh = grid.mesh();
    mesh.IdsOffset(1000, 0);
    std::vector<std::string> const lines = linesOf(written(mesh));
    ASSERT_EQ(lines.size(), 11u + 3 + 2 + 25 + 3 + 2 + 16 + 1);
    EXPECT_EQ(lines[16].substr(0, 8), "    1001");
    EXPECT_EQ(lines[40].substr(0, 8), "    1025");
    EXPECT_EQ(lines[46], "       1       7    1001    1002    1007    1006");
}

TEST_F(DynaPlain, WidensAFieldForANumberOfMoreThanEightDigits)
{
    VOZCatMesh mesh = samples::triangles({{1, 2, 3}});
    mesh.IdsOffset(123456788, 0);
    std::vector<std::string> const lines = linesOf(written(mesh, -1234567));
    EXPECT_EQ(lines[16].substr(0, 12), "123456789  .");
    EXPECT_EQ(lines[24], "       1-1234567123456789123456790123456791123456791");
}

TEST_F(DynaPlain, OfAnEmptyMeshHasTheHeadsAlone)
{
    VOZCatMesh mesh;
    std::vector<std::string> const lines = linesOf(written(mesh));
    ASSERT_EQ(lines.size(), 22u);
    EXPECT_EQ(lines[14], "*NODE");
    EXPECT_EQ(lines[19], "*ELEMENT_SHELL ");
    EXPECT_EQ(lines[21], "*END");
}

TEST_F(DynaPlain, OfAFileThatCannotBeOpenedDoesNothing)
{
    VOZCatMesh mesh = goldenMesh();
    char path[] = "no/such/folder/mesh.mod";
    testing::internal::CaptureStderr();
    DYNAWriter writer(&mesh, nullptr, 3, path, nullptr, 1);
    writer.Write();
    char line[] = "line";
    writer.WriteLine(line);
    writer.Write_NODE_Block();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_FALSE(std::filesystem::exists("no"));
}

TEST_F(DynaPlain, IsPutTogetherBlockByBlockByADerivedWriter)
{
    struct Own : DYNAWriter
    {
        using DYNAWriter::DYNAWriter;
        void Write() override
        {
            char comment[] = "$ my own";
            WriteLine(comment);
            Write_NODE_Block();
            WriteEndBlock();
        }
    };
    VOZCatMesh mesh = samples::triangles({{1, 2, 3}});
    mesh.sizeNode(1);
    char path[] = "own.k";
    {
        Own own(&mesh, nullptr, 3, path, nullptr, 1);
        static_cast<DYNAWriter &>(own).Write();
    }
    EXPECT_THAT(linesOf(readFile(path)),
                testing::ElementsAre("$ my own", "*NODE",
                                     "$   NODE               X               Y               Z      TC      RC",
                                     "       1  .100000000E+01  .000000000E+00  .000000000E+00", "*END"));
}

TEST_F(DynaPlain, ReplacesAnOlderFile)
{
    std::ofstream("mesh.mod") << std::string(100000, 'x');
    VOZCatMesh mesh = goldenMesh();
    EXPECT_EQ(firstDifference(golden("plain.golden"), written(mesh)), "");
}
