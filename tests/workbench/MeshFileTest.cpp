// MeshFileTest.cpp: which format a file is taken for, zipped files, numbers as text.

#include "MeshFixture.h"

#include "LineReader.h"
#include "NumberText.h"

#include <random>

using namespace voz::workbench;
using namespace voz::workbench::meshtest;

namespace
{
std::string const kObj = "v 0 0 0\nv 10 0 0\nv 0 10 0\nf 1 2 3\n";
std::string const kDyna =
    "$ a comment\n*KEYWORD\n*NODE\n1,0.,0.,0.\n2,10.,0.,0.\n3,0.,10.,0.\n*ELEMENT_SHELL\n1,1,1,2,3,3\n*END\n";
std::string const kNastran = "$ a comment\nGRID,1,,0.,0.,0.\nGRID,2,,10.,0.,0.\nGRID,3,,0.,10.,0.\nCTRIA3,1,1,1,2,3\n";
std::string const kStl = "solid\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 10 0 0\nvertex 0 10 0\nendloop\n"
                         "endfacet\nendsolid\n";
} // namespace

TEST(MeshFile, KnowsTheExtensions)
{
    EXPECT_EQ(FormatOfPath("a.bdf"), MeshFormat::Nastran);
    EXPECT_EQ(FormatOfPath("A.NAS"), MeshFormat::Nastran);
    EXPECT_EQ(FormatOfPath("a.b/c.key"), MeshFormat::Dyna);
    EXPECT_EQ(FormatOfPath("a.dyn.gz"), MeshFormat::Dyna);
    EXPECT_EQ(FormatOfPath("a.mod"), MeshFormat::Dyna);
    EXPECT_EQ(FormatOfPath("a.Obj"), MeshFormat::Obj);
    EXPECT_EQ(FormatOfPath("a.stl"), MeshFormat::Stl);
    EXPECT_EQ(FormatOfPath("a"), MeshFormat::Unknown);
    EXPECT_EQ(FormatOfPath("-"), MeshFormat::Unknown);
    EXPECT_EQ(FormatOfPath("a.gz"), MeshFormat::Unknown);
    EXPECT_EQ(FormatOfPath("a.step"), MeshFormat::Unknown);
}

TEST(MeshFile, GoesByTheContentWhereTheNameTellsNothing)
{
    EXPECT_EQ(ReadMeshText(kObj, "-").format, MeshFormat::Obj);
    EXPECT_EQ(ReadMeshText(kDyna, "-").format, MeshFormat::Dyna);
    EXPECT_EQ(ReadMeshText(kNastran, "-").format, MeshFormat::Nastran);
    EXPECT_EQ(ReadMeshText(kStl, "-").format, MeshFormat::Stl);
    EXPECT_EQ(ReadMeshText(kDyna, "mesh.dat").format, MeshFormat::Dyna);
    EXPECT_EQ(ReadMeshText(kNastran, "mesh.dat").format, MeshFormat::Nastran);
}

TEST(MeshFile, TakesTheFormatThatTheCallerTells)
{
    ReadOptions options;
    options.format = MeshFormat::Obj;
    EXPECT_EQ(ReadMeshText(kObj, "mesh.stl", options).format, MeshFormat::Obj);
}

TEST(MeshFile, NamesTheKnownFormatsWhenNoneFits)
{
    EXPECT_EQ(
        MessageOfText("what is this?\n", "a.step"),
        "a.step: neither name nor content tell a mesh format, expected Nastran bulk data (.bdf .nas .dat); LS-DYNA "
        "keyword (.k .key .dyn .mod); OBJ (.obj); STL (.stl)");
}

TEST(MeshFile, RefusesAFolderAMissingFileAndAnEmptyOne)
{
    Folder const folder;
    EXPECT_EQ(MessageOf([&] { ReadMesh(folder / "."); }),
              (folder / ".") + ": cannot be opened: it is a folder, expected a file");
    EXPECT_EQ(MessageOf([&] { ReadMesh(folder / "none.obj"); }),
              (folder / "none.obj") + ": cannot be opened: No such file or directory");
    EXPECT_EQ(MessageOf([&] { ReadMesh(folder.Write("empty.obj", "")); }),
              (folder / "empty.obj") + ": is empty, expected a surface mesh");
}

TEST(MeshFile, ReadsZippedFilesOfSeveralMembersAndPadding)
{
    Folder const folder;
    std::string const zipped =
        Zipped(kObj.substr(0, 12)) + Zipped("") + Zipped(kObj.substr(12)) + std::string(512, '\0');
    EXPECT_EQ(ReadMesh(folder.Write("part.obj.gz", zipped)).mesh.numElem(), 1);
    EXPECT_EQ(ReadMesh(folder.Write("part.obj", zipped)).mesh.numElem(), 1); // the name need not say it
}

TEST(MeshFile, RefusesCutAndDamagedZips)
{
    std::string const zipped = Zipped(kObj);
    for (std::size_t length = 2; length < zipped.size(); ++length)
        EXPECT_EQ(MessageOfText(zipped.substr(0, length), "part.obj.gz"),
                  "part.obj.gz: the gzip data end early: the file is cut")
            << length;
    std::string damaged = zipped;
    damaged[zipped.size() - 6] = static_cast<char>(damaged[zipped.size() - 6] ^ 1); // its checksum
    EXPECT_EQ(MessageOfText(damaged, "part.obj.gz"), "part.obj.gz: the gzip data are damaged");
}

TEST(MeshFile, RefusesAUnitThatIsNone)
{
    ReadOptions options;
    options.unitLength = -1.0;
    EXPECT_EQ(MessageOf([&] { ReadMeshText(kObj, "a.obj", options); }),
              "a.obj: the length unit of the file is told as -1 mm, expected more than 0");
}

TEST(MeshFile, WritesOnlyWhatItsExtensionTells)
{
    Folder const folder;
    EXPECT_THROW(WriteMesh(SampleModel(), folder / "a.step"), OutputError);
    EXPECT_THROW(WriteMesh(SampleModel(), folder / "a.obj.gz"), OutputError);
    EXPECT_THROW(WriteMesh(SampleModel(), folder / "no/folder/a.obj"), OutputError);
}

TEST(LineReader, GivesLinesWhateverTheirEndsAndTheBuffer)
{
    std::string const longLine(700000, 'x');
    std::string const text = "one\r\n\n" + longLine + "\nlast";
    ByteSource source = ByteSource::Memory("text", text);
    LineReader lines(source);
    std::string_view line;
    ASSERT_TRUE(lines.Next(line));
    EXPECT_EQ(line, "one");
    ASSERT_TRUE(lines.Next(line));
    EXPECT_EQ(line, "");
    ASSERT_TRUE(lines.Next(line));
    EXPECT_EQ(line, longLine);
    ASSERT_TRUE(lines.Next(line));
    EXPECT_EQ(line, "last");
    EXPECT_EQ(lines.Line(), 4);
    EXPECT_FALSE(lines.Next(line));
}

TEST(NumberText, ReadsRealsOfEachSpelling)
{
    struct Case
    {
        char const * text;
        double value;
    };
    for (Case const & one : {Case{"1.5-3", 1.5e-3},
                             {"-1.5+3", -1500.0},
                             {"1.D2", 100.0},
                             {"+2.e1", 20.0},
                             {".5", 0.5},
                             {"5.", 5.0},
                             {"7", 7.0},
                             {"1.5d+2", 150.0},
                             {"-.25-1", -0.025}})
    {
        double value = -1.0;
        EXPECT_TRUE(ParseReal(one.text, value, Exponent::Bare)) << one.text;
        EXPECT_EQ(value, one.value) << one.text;
    }
    for (char const * const bad :
         {"",     "-",        "+",    ".",   "e5",  "1e",    "1.5-",   "1.5+-3", "nan", "inf",
          "-inf", "infinity", "0x10", "1,5", "1 2", "1e999", "1.5-3x", "--1",    "+-1", "1.5e3-2"})
    {
        double value = 42.0;
        EXPECT_FALSE(ParseReal(bad, value, Exponent::Bare)) << bad;
        EXPECT_EQ(value, 42.0) << bad;
    }
}

TEST(NumberText, WritesRealsThatFitTheirColumnsAndReadBackNear)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> digits(-10.0, 10.0);
    std::uniform_int_distribution<int> powers(-30, 9);
    for (int i = 0; i < 20000; ++i)
    {
        double const value = digits(random) * std::pow(10.0, powers(random));
        for (Exponent const style : {Exponent::Bare, Exponent::WithLetter})
        {
            std::string const text = RealInColumns(value, 16, style);
            double back = 0.0;
            ASSERT_LE(text.size(), 16U) << text;
            ASSERT_NE(text.find('.'), std::string::npos) << text;
            ASSERT_TRUE(ParseReal(text, back, style)) << text;
            EXPECT_NEAR(back, value, 5e-10 * std::abs(value)) << text;
            EXPECT_EQ(RealInColumns(back, 16, style), text);
        }
    }
}

TEST(NumberText, WritesTheShorterOfPlainAndExponent)
{
    EXPECT_EQ(RealInColumns(0.0, 16, Exponent::Bare), "0.");
    EXPECT_EQ(RealInColumns(10.0, 16, Exponent::Bare), "10.");
    EXPECT_EQ(RealInColumns(-0.5, 16, Exponent::Bare), "-.5");
    EXPECT_EQ(RealInColumns(1.5e-7, 16, Exponent::Bare), "1.5-7");
    EXPECT_EQ(RealInColumns(1.5e-7, 16, Exponent::WithLetter), "1.5e-7");
    EXPECT_EQ(RealInColumns(1.0 / 3.0, 16, Exponent::Bare), ".333333333333333");
    EXPECT_EQ(RealInColumns(9.99999999999999999e5, 8, Exponent::Bare), "1.+6");
}

TEST(NumberText, MakesUtf8OfLatin1AndLeavesUtf8)
{
    EXPECT_EQ(AsUtf8("T\xFCr"), "T\xC3\xBCr");
    EXPECT_EQ(AsUtf8("T\xC3\xBCr"), "T\xC3\xBCr");
    EXPECT_EQ(AsUtf8("a\tb\x01"), "a b ");
    EXPECT_EQ(AsUtf8("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80"); // a surrogate is no UTF-8
    EXPECT_EQ(Quoted(""), "nothing");
    EXPECT_EQ(Quoted(std::string(50, 'x')), "\"" + std::string(40, 'x') + "...\"");
}
