// MaterialListTest.cpp: the reader of the material database.

#include "VOZAPIMaterialList.h"
#include "VOZMaterial.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>

namespace
{

using testing::HasSubstr;

struct List
{
    explicit List(std::string const & path)
        : first(VOZAPIMaterialList::VOZAPICreateMaterialList(CATUnicodeString(path.c_str()).ConvertToUTF16().c_str(),
                                                             error))
    {
    }
    ~List() { VOZAPIMaterialList::VOZAPIDeleteMaterialList(first); }
    List(List const &) = delete;
    List & operator=(List const &) = delete;

    CATUnicodeString error;
    VOZAPIMaterialList * first;
};

// A folder of its own per test.
class MaterialList : public testing::Test
{
protected:
    MaterialList()
    {
        auto const * const info = testing::UnitTest::GetInstance()->current_test_info();
        folder = std::filesystem::temp_directory_path() / (std::string("voz_materials_") + info->name());
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~MaterialList() override { std::filesystem::remove_all(folder); }

    std::string write(std::string const & name, std::string const & text)
    {
        std::ofstream(folder / name, std::ios::binary) << text;
        return (folder / name).string();
    }

    // The message for a database with this text.
    std::string errorOf(std::string const & text)
    {
        List const list(write("m.xml", text));
        EXPECT_EQ(list.first, nullptr);
        return list.error.ConvertToChar();
    }

    std::filesystem::path folder;
};

std::string const kNumbers =
    "<thickness unit=\"mm\">0.8</thickness>\n<K unit=\"MPa\">541</K>\n<n>0.23</n>\n<r>1.8</r>\n"
    "<yield unit=\"MPa\">140</yield>\n<young unit=\"GPa\">210</young>\n"
    "<poisson>0.3</poisson>\n<density unit=\"kg/m3\">7850</density>\n";
std::string const kSource = "<source>tests</source>\n";

std::string material(std::string const & name, std::string const & inside)
{
    return "<material name=\"" + name + "\" group=\"g\">\n" + inside + "</material>\n";
}

std::string document(std::string const & inside)
{
    return "<materials>\n" + inside + "</materials>\n";
}

std::string with(std::string text, std::string const & from, std::string const & to)
{
    return text.replace(text.find(from), from.size(), to);
}

TEST_F(MaterialList, ReadsEveryNumberIntoSI)
{
    List const list(write("m.xml", document(material("steel", kNumbers + kSource))));
    ASSERT_NE(list.first, nullptr) << list.error.ConvertToChar();
    VOZMaterial const & steel = *list.first->GetMaterial();
    EXPECT_TRUE(steel.m_strName == "steel");
    EXPECT_DOUBLE_EQ(steel.m_dThickness, 0.0008);
    EXPECT_DOUBLE_EQ(steel.m_dKValue, 541.0e6);
    EXPECT_EQ(steel.m_dNValue, 0.23);
    EXPECT_EQ(steel.m_dRValue, 1.8);
    EXPECT_DOUBLE_EQ(steel.m_dYield, 140.0e6);
    EXPECT_DOUBLE_EQ(steel.m_dYoungsModulus, 210.0e9);
    EXPECT_EQ(steel.m_dPoisson, 0.3);
    EXPECT_EQ(steel.m_dDensity, 7850.0);
    EXPECT_EQ(steel.m_nNumPoints, 0);
    EXPECT_TRUE(list.first->GetGroup() == "g");
    EXPECT_TRUE(list.first->GetSource() == "tests");
    EXPECT_EQ(list.first->GetNext(), nullptr);
    EXPECT_TRUE(list.error.IsNull());
}

TEST_F(MaterialList, HonoursEachUnit)
{
    std::string text = with(kNumbers, "<thickness unit=\"mm\">0.8", "<thickness unit=\"m\">0.0008");
    text = with(text, "<K unit=\"MPa\">541", "<K unit=\"GPa\">0.541");
    text = with(text, "<yield unit=\"MPa\">140", "<yield unit=\"Pa\">1.4e8");
    text = with(text, "<young unit=\"GPa\">210", "<young unit=\"MPa\">210000");
    text = with(text, "<density unit=\"kg/m3\">7850", "<density unit=\"g/cm3\">7.85");
    List const list(write("m.xml", document(material("steel", text + kSource))));
    ASSERT_NE(list.first, nullptr) << list.error.ConvertToChar();
    VOZMaterial const & steel = *list.first->GetMaterial();
    EXPECT_DOUBLE_EQ(steel.m_dThickness, 0.0008);
    EXPECT_DOUBLE_EQ(steel.m_dKValue, 541.0e6);
    EXPECT_DOUBLE_EQ(steel.m_dYield, 140.0e6);
    EXPECT_DOUBLE_EQ(steel.m_dYoungsModulus, 210.0e9);
    EXPECT_DOUBLE_EQ(steel.m_dDensity, 7850.0);
}

TEST_F(MaterialList, ReadsACurveAndTheForminglimitFields)
{
    List const list(
        write("m.xml", document(material("steel", kNumbers + kSource +
                                                      "<fld0 unit=\"%\">38</fld0><fldType>1</fldType>"
                                                      "<curve unit=\"MPa\"><point strain=\"0\" stress=\"157\"/>"
                                                      "<point strain=\"0.2\" stress=\"376\"/></curve>"))));
    ASSERT_NE(list.first, nullptr) << list.error.ConvertToChar();
    VOZMaterial const & steel = *list.first->GetMaterial();
    ASSERT_EQ(steel.m_nNumPoints, 2);
    EXPECT_EQ(steel.m_padPoints[0], 0.0);
    EXPECT_DOUBLE_EQ(steel.m_padPoints[1], 157.0e6);
    EXPECT_EQ(steel.m_padPoints[2], 0.2);
    EXPECT_DOUBLE_EQ(steel.m_padPoints[3], 376.0e6);
    EXPECT_EQ(steel.m_dFldZero, 38.0);
    EXPECT_EQ(steel.m_nFldType, 1);
}

TEST_F(MaterialList, KeepsTheOrderOfFilesByNameAndOfMaterialsInThem)
{
    write("b.xml", document(material("third", kNumbers + kSource)));
    write("a.xml", document(material("second", kNumbers + kSource) + material("first", kNumbers + kSource)));
    write("notes.txt", "not a database");
    List const list(folder.string());
    std::string names;
    for (VOZAPIMaterialList * entry = list.first; entry; entry = entry->GetNext())
        names += std::string(entry->GetMaterial()->m_strName.ConvertToChar()) + " ";
    EXPECT_EQ(names, "second first third ");
}

TEST_F(MaterialList, TakesABackslashForASeparator)
{
    write("m.xml", document(material("steel", kNumbers + kSource)));
    std::string path = folder.string() + "\\m.xml";
    EXPECT_NE(List(path).first, nullptr);
    std::string folderPath = folder.parent_path().string() + "\\" + folder.filename().string();
    EXPECT_NE(List(folderPath).first, nullptr);
}

TEST_F(MaterialList, AnEmptyDatabaseGivesNoListAndNoError)
{
    List const list(write("m.xml", document("")));
    EXPECT_EQ(list.first, nullptr);
    EXPECT_TRUE(list.error.IsNull());
}

TEST_F(MaterialList, TellsFileLineFoundAndExpected)
{
    std::string const text = document(material("steel", with(kNumbers, "<n>0.23", "<n>abc") + kSource));
    EXPECT_THAT(errorOf(text), HasSubstr("m.xml:5: <n> is \"abc\"; expected a number"));
}

TEST_F(MaterialList, RefusesWhatItDoesNotUnderstand)
{
    struct Case
    {
        std::string inside;
        char const * message;
    };
    for (Case const & c : {
             Case{kNumbers, "has no <source>"},
             Case{with(kNumbers, "<n>0.23</n>\n", "") + kSource, "has no <n>"},
             Case{with(kNumbers, " unit=\"GPa\">210", ">210") + kSource, "<young> has no unit; expected unit=\"GPa\""},
             Case{with(kNumbers, "\"GPa\">210", "\"psi\">210") + kSource, "<young> has the unit \"psi\""},
             Case{with(kNumbers, "<n>", "<n unit=\"MPa\">") + kSource, "<n> has the attribute \"unit\""},
             Case{with(kNumbers, "<n>0.23", "<n>nan") + kSource, "<n> is \"nan\"; expected a number"},
             Case{with(kNumbers, "<n>0.23", "<n>inf") + kSource, "<n> is \"inf\"; expected a number"},
             Case{with(kNumbers, "<n>0.23", "<n>1e999") + kSource, "<n> is \"1e999\"; expected a number"},
             Case{with(kNumbers, "<n>0.23", "<n>0,23") + kSource, "<n> is \"0,23\"; expected a number"},
             Case{with(kNumbers, "<n>0.23", "<n>") + kSource, "<n> is \"\"; expected a number"},
             Case{with(kNumbers, "<n>0.23", "<n>1.2") + kSource, "<n> is 1.2; expected 0 to 1"},
             Case{with(kNumbers, "\"mm\">0.8", "\"mm\">800") + kSource, "<thickness> is 800; expected 0.01 to 100 mm"},
             Case{kNumbers + kSource + "<n>0.2</n>", "<n> stands twice in \"steel\""},
             Case{kNumbers + kSource + "<colour>red</colour>", "holds <colour>; expected each of \"thickness\""},
             Case{kNumbers + kSource + "loose", "holds the text \"loose\""},
             Case{kNumbers + kSource + "<fldType>0.5</fldType>", "<fldType> is 0.5; expected 0 or 1"},
             Case{kNumbers + "<source/>", "<source> is empty"},
             Case{kNumbers + kSource + "<curve unit=\"MPa\"><point strain=\"0\" stress=\"1\"/></curve>",
                  "fewer than two points"},
             Case{kNumbers + kSource +
                      "<curve unit=\"MPa\"><point strain=\"0.1\" stress=\"1\"/><point strain=\"0.1\" "
                      "stress=\"2\"/></curve>",
                  "does not lie beyond"},
             Case{kNumbers + kSource +
                      "<curve unit=\"MPa\"><point strain=\"0\" stress=\"2\"/><point strain=\"0.1\" "
                      "stress=\"1\"/></curve>",
                  "does not lie beyond"},
             Case{kNumbers + kSource + "<curve unit=\"MPa\"><point strain=\"-1\" stress=\"2\"/></curve>",
                  "a log plastic strain of 0 to 10"},
         })
        EXPECT_THAT(errorOf(document(material("steel", c.inside))), HasSubstr(c.message));
}

TEST_F(MaterialList, RefusesABrokenDocumentWithItsLine)
{
    EXPECT_THAT(errorOf("<materials>\n<material name=\"a\">\n</materials>"), HasSubstr("m.xml:3: the XML is broken"));
    EXPECT_THAT(errorOf(""), HasSubstr("m.xml:1: the XML is broken"));
    EXPECT_THAT(errorOf("<steels/>"), HasSubstr("the document's element is <steels>; expected <materials>"));
    EXPECT_THAT(errorOf(document("<steel/>")), HasSubstr("<materials> holds <steel>"));
    EXPECT_THAT(errorOf(document(material("", kNumbers))), HasSubstr("a material has no name"));
}

TEST_F(MaterialList, EveryPrefixOfAGoodFileIsRefusedOrEmpty)
{
    std::string const text = document(material("steel", kNumbers + kSource));
    for (std::size_t length = 0; length + 2 < text.size(); ++length)
        EXPECT_EQ(List(write("m.xml", text.substr(0, length))).first, nullptr) << length;
}

// Bytes struck out, doubled, changed, and parts of the file swapped: a list, or a message that begins with the file.
TEST_F(MaterialList, MutatedFilesAreReadOrRefused)
{
    std::string const good =
        document(material("steel", kNumbers + kSource + "<curve unit=\"MPa\"><point strain=\"0\" stress=\"157\"/>" +
                                       "<point strain=\"0.2\" stress=\"376\"/></curve>") +
                 material("brass", kNumbers + kSource));
    std::mt19937 random(11);
    auto const below = [&random](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    for (int turn = 0; turn < 400; ++turn)
    {
        std::string text = good;
        for (std::size_t change = 0; change <= below(4); ++change)
        {
            std::size_t const at = below(text.size());
            switch (below(4))
            {
            case 0:
                text.erase(at, 1 + below(30));
                break;
            case 1:
                text[at] = static_cast<char>(random() % 256);
                break;
            case 2:
                text.insert(at, text.substr(below(text.size()), below(60)));
                break;
            default:
                text.insert(at, 1 + below(3), "<>&\"'/=-9e"[below(10)]);
            }
        }
        std::string const file = write("m.xml", text);
        List const list(file);
        if (!list.first && !list.error.IsNull())
        {
            EXPECT_EQ(std::string(list.error.ConvertToChar()).rfind(file, 0), 0U) << list.error.ConvertToChar();
        }
        for (VOZAPIMaterialList * entry = list.first; entry; entry = entry->GetNext())
            EXPECT_TRUE(std::isfinite(entry->GetMaterial()->m_dKValue));
    }
}

TEST_F(MaterialList, RefusesTwoMaterialsOfOneNameAndTellsBothPlaces)
{
    write("a.xml", document(material("steel", kNumbers + kSource)));
    write("b.xml", document(material("steel", kNumbers + kSource)));
    List const list(folder.string());
    EXPECT_EQ(list.first, nullptr);
    EXPECT_THAT(list.error.ConvertToChar(), testing::ContainsRegex("b\\.xml:2: .*a\\.xml:2 already"));
}

TEST_F(MaterialList, RefusesAMissingPathAFolderWithoutDatabaseAndNoPathAtAll)
{
    EXPECT_THAT(List((folder / "nothing.xml").string()).error.ConvertToChar(), HasSubstr("cannot be opened"));
    EXPECT_THAT(List(folder.string()).error.ConvertToChar(), HasSubstr("holds no file"));
    EXPECT_THAT(List("").error.ConvertToChar(), HasSubstr("no path was given"));
    EXPECT_EQ(VOZAPIMaterialList::VOZAPICreateMaterialList(nullptr), nullptr);
    VOZAPIMaterialList::VOZAPIDeleteMaterialList(nullptr);
}

// The shipped database.

TEST(ShippedMaterials, AreAtLeastEightOfSixKindsWithSources)
{
    List const list(std::string(VOZ_SOURCE_DIR) + "/InstallRoot/dat");
    ASSERT_NE(list.first, nullptr) << list.error.ConvertToChar();
    std::multiset<std::string> groups;
    for (VOZAPIMaterialList * entry = list.first; entry; entry = entry->GetNext())
    {
        groups.insert(entry->GetGroup().ConvertToChar());
        EXPECT_GT(entry->GetSource().GetLengthInChar(), 20);
    }
    EXPECT_GE(groups.size(), 8U);
    EXPECT_GE(groups.count("mild steel"), 2U);
    EXPECT_GE(groups.count("high-strength steel"), 1U);
    EXPECT_GE(groups.count("dual-phase steel"), 1U);
    EXPECT_GE(groups.count("stainless steel"), 1U);
    EXPECT_GE(groups.count("aluminium alloy"), 2U);
    EXPECT_GE(groups.count("brass") + groups.count("copper"), 1U);
}

TEST(ShippedMaterials, TheBenchmarkSteelHasItsPublishedLaw)
{
    List const list(std::string(VOZ_SOURCE_DIR) + "/InstallRoot/dat/materials.xml");
    ASSERT_NE(list.first, nullptr) << list.error.ConvertToChar();
    VOZMaterial const & steel = *list.first->GetMaterial();
    ASSERT_TRUE(steel.m_strName == "mild-steel-numisheet93");
    EXPECT_DOUBLE_EQ(steel.m_dKValue, 565.32e6);
    EXPECT_EQ(steel.m_dNValue, 0.2589);
    EXPECT_EQ(steel.m_dRValue, 1.79);
    EXPECT_DOUBLE_EQ(steel.m_dThickness, 0.00078);
    EXPECT_NEAR(std::pow(steel.m_dYield / steel.m_dKValue, 1.0 / steel.m_dNValue), 0.007117, 1e-9);
}

// What a forming engineer would expect of any sheet.
TEST(ShippedMaterials, LieInTheUsualRanges)
{
    List const list(std::string(VOZ_SOURCE_DIR) + "/InstallRoot/dat");
    for (VOZAPIMaterialList * entry = list.first; entry; entry = entry->GetNext())
    {
        VOZMaterial const & m = *entry->GetMaterial();
        char const * const name = m.m_strName.ConvertToChar();
        EXPECT_GE(m.m_dYoungsModulus, 60e9) << name;
        EXPECT_LE(m.m_dYoungsModulus, 220e9) << name;
        EXPECT_GE(m.m_dYield, 50e6) << name;
        EXPECT_LE(m.m_dYield, 1500e6) << name;
        EXPECT_GE(m.m_dNValue, 0.05) << name;
        EXPECT_LE(m.m_dNValue, 0.6) << name;
        EXPECT_GE(m.m_dRValue, 0.3) << name;
        EXPECT_LE(m.m_dRValue, 3.0) << name;
        EXPECT_LT(m.m_dYield, m.m_dKValue) << name;
    }
}

} // namespace
