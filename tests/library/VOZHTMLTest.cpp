// VOZHTMLTest.cpp: the builders of HTML, text for text. A whole page stands in tests/golden/html.

#include "VOZHTML.h"

#include "GoldenText.h"
#include "HostFixture.h"

#include <limits>
#include <string>
#include <vector>

namespace
{
class Html : public HostFixture
{
protected:
    template <class Build>
    std::string built(Build build)
    {
        EXPECT_EQ(build(buffer), buffer) << "a builder returns its first argument";
        return buffer;
    }
    static std::string golden(char const * name)
    {
        return goldentext::readFile(goldentext::fs::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "html" / name);
    }

    char buffer[4096] = "what stood here before";
};
} // namespace

TEST_F(Html, ConstantTexts)
{
    EXPECT_STREQ(VOZHTML::EndHTMLDoc(), "\n</body>\n</html>\n");
    EXPECT_STREQ(VOZHTML::StartPreformatting(), "<pre>\n");
    EXPECT_STREQ(VOZHTML::EndPreformatting(), "</pre>\n");
    EXPECT_STREQ(VOZHTML::StartParagraph(), "<p>");
    EXPECT_STREQ(VOZHTML::LineFeed(), "<br>\n");
    EXPECT_STREQ(VOZHTML::EndTable(), "</TABLE>\n");
    EXPECT_STREQ(VOZHTML::StartTableRow(), "<TR>\n");
    EXPECT_STREQ(VOZHTML::EndTableRow(), "</TR>\n");
}

TEST_F(Html, WrappersPutTheirTextBetweenTags)
{
    EXPECT_EQ(built([](char * b) { return VOZHTML::AsTitle(b, "x"); }), "<h1>x</h1>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AsSubTitle(b, "x"); }), "<h3>x</h3>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AsBoldScript(b, "x"); }), "<B>x</B>");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AsEmphasizedScript(b, "x"); }), "<EM>x</EM>");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AsSuperScript(b, ""); }), "<SUP></SUP>");
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(Html, WrappersReportNullAndTakeItForEmpty)
{
    struct Wrapper
    {
        char * (*call)(char *, char const *);
        char const * contract;
        char const * empty;
    };
    Wrapper const wrappers[] = {
        {&VOZHTML::AsTitle, "io_chNewStr && i_chTitle", "<h1></h1>\n"},
        {&VOZHTML::AsSubTitle, "io_chNewStr && i_chSubTitle", "<h3></h3>\n"},
        {&VOZHTML::AsBoldScript, "io_chNewStr && i_chText", "<B></B>"},
        {&VOZHTML::AsEmphasizedScript, "io_chNewStr && i_chText", "<EM></EM>"},
        {&VOZHTML::AsSuperScript, "io_chNewStr && i_chText", "<SUP></SUP>"},
    };
    for (Wrapper const & wrapper : wrappers)
    {
        host.reports.clear();
        EXPECT_EQ(wrapper.call(nullptr, "x"), nullptr);
        EXPECT_EQ(built([&](char * b) { return wrapper.call(b, nullptr); }), wrapper.empty);
        ASSERT_EQ(host.reports.size(), 2u);
        EXPECT_EQ(host.reports[0].text, wrapper.contract);
        EXPECT_EQ(host.reports[1].text, wrapper.contract);
    }
}

TEST_F(Html, BuildersReportAMissingBuffer)
{
    EXPECT_EQ(VOZHTML::StartHTMLDoc(nullptr, "t", "s", 1), nullptr);
    EXPECT_EQ(VOZHTML::StartTable(nullptr, "left", 1, 1, 1, "1"), nullptr);
    EXPECT_EQ(VOZHTML::StartTableRow(nullptr, "c", 1, "red"), nullptr);
    EXPECT_EQ(VOZHTML::AddTableData(nullptr, "", "", "", "", 1, 1, 1, 1, ""), nullptr);
    ASSERT_EQ(host.reports.size(), 4u);
    for (VOZMemoryHost::Report const & report : host.reports)
        EXPECT_EQ(report.text, "io_chNewStr");
    EXPECT_EQ(VOZHTML::AddImage(nullptr, "f", 0, nullptr, "", "", 0, 0), nullptr);
    EXPECT_EQ(built([](char * b) { return VOZHTML::AddImage(b, nullptr, 0, nullptr, "left", "top", 0, 0); }),
              "<IMG SRC='' ALIGN=left VALIGN=top>\n");
    EXPECT_EQ(host.reports[4].text, "io_chNewStr && i_chImageFile");
    EXPECT_EQ(host.reports[5].text, "io_chNewStr && i_chImageFile");
}

TEST_F(Html, IntegersAreWrittenAsText)
{
    EXPECT_STREQ(VOZHTML::IntToString(0), "0");
    EXPECT_STREQ(VOZHTML::IntToString(-42), "-42");
    EXPECT_STREQ(VOZHTML::IntToString(std::numeric_limits<int>::max()), "2147483647");
    EXPECT_STREQ(VOZHTML::IntToString(std::numeric_limits<int>::min()), "-2147483648");
}

// The text of a number may go straight into a builder that writes numbers of its own.
TEST_F(Html, TheTextOfAnIntegerIsATextForEveryBuilder)
{
    EXPECT_EQ(
        built([](char * b) { return VOZHTML::AddTableData(b, VOZHTML::IntToString(42), "c", "", "", 2, 3, 4, 5, ""); }),
        "<TD CLASS=c COLSPAN=2 ROWSPAN=3 WIDTH=4 HEIGHT=5>42</TD>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTable(b, "left", 1, 2, 3, VOZHTML::IntToString(640)); }),
              "<TABLE align=left border=1 cellpadding=2 cellspacing=3 width=640>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTableRow(b, "c", 12, VOZHTML::IntToString(255)); }),
              "<TR CLASS=c HEIGHT=12 BGCOLOR=255>\n");
    EXPECT_EQ(
        built([](char * b) { return VOZHTML::AddImage(b, "a", 1, VOZHTML::IntToString(-7), "left", "top", 2, 3); }),
        "<IMG SRC='a' BORDER=1 ALT='-7' ALIGN=left VALIGN=top WIDTH=2 HEIGHT=3>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AsTitle(b, VOZHTML::IntToString(3)); }), "<h1>3</h1>\n");
}

TEST_F(Html, TheDefaultStyleHasARulePerClass)
{
    EXPECT_EQ(goldentext::firstDifference(golden("style.golden"),
                                          built([](char * b) { return VOZHTML::GenerateDefaultVOZStyle(b); })),
              "");
}

TEST_F(Html, ADocumentWithoutATitleHasNoTitleTag)
{
    for (char const * const title : {static_cast<char const *>(nullptr), ""})
        EXPECT_EQ(built([&](char * b) { return VOZHTML::StartHTMLDoc(b, title, "", -3); }),
                  "<html>\n<head>\n\n</head>\n<body leftmargin=-3%%>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartHTMLDoc(b, "T", "<style>s</style>", 5); }),
              "<html>\n<head>\n<title>T</title>\n<style>s</style>\n</head>\n<body leftmargin=5%%>\n");
}

TEST_F(Html, ATableHasAllItsAttributes)
{
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTable(b, "center", 1, 2, 0, "80%"); }),
              "<TABLE align=center border=1 cellpadding=2 cellspacing=0 width=80%>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTable(b, "", -1, 0, 0, nullptr); }),
              "<TABLE align= border=-1 cellpadding=0 cellspacing=0 width=>\n");
}

TEST_F(Html, ARowLeavesOutWhatIsEmptyOrNotPositive)
{
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTableRow(b, "c", 12, "red"); }),
              "<TR CLASS=c HEIGHT=12 BGCOLOR=red>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTableRow(b, "", 0, ""); }), "<TR>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTableRow(b, nullptr, -5, nullptr); }), "<TR>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::StartTableRow(b, "", 1, "#fff"); }), "<TR HEIGHT=1 BGCOLOR=#fff>\n");
}

TEST_F(Html, ACellOfAnEmptyTextIgnoresEveryOtherArgument)
{
    for (char const * const text : {static_cast<char const *>(nullptr), ""})
        EXPECT_EQ(
            built([&](char * b) { return VOZHTML::AddTableData(b, text, "c", "left", "top", 2, 3, 4, 5, "red"); }),
            "<TD>&nbsp;</TD>");
}

TEST_F(Html, ACellAlwaysHasItsSpansAndLeavesOutWhatIsEmptyOrNotPositive)
{
    EXPECT_EQ(built([](char * b) { return VOZHTML::AddTableData(b, "x", "c", "left", "top", 2, 3, 4, 5, "red"); }),
              "<TD CLASS=c ALIGN=left VALIGN=top COLSPAN=2 ROWSPAN=3 WIDTH=4 HEIGHT=5 BGCOLOR=red>x</TD>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AddTableData(b, "x", "", "", "", 0, -1, 0, -1, ""); }),
              "<TD COLSPAN=0 ROWSPAN=-1>x</TD>\n");
    EXPECT_EQ(
        built([](char * b) { return VOZHTML::AddTableData(b, "x", nullptr, nullptr, nullptr, 1, 1, 0, 7, nullptr); }),
        "<TD COLSPAN=1 ROWSPAN=1 HEIGHT=7>x</TD>\n");
}

// The alternative text goes by the pointer, the alignments stand always.
TEST_F(Html, AnImageLeavesOutItsAlternativeTextForNullAlone)
{
    EXPECT_EQ(built([](char * b) { return VOZHTML::AddImage(b, "a.png", 1, "alt", "left", "top", 640, 480); }),
              "<IMG SRC='a.png' BORDER=1 ALT='alt' ALIGN=left VALIGN=top WIDTH=640 HEIGHT=480>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AddImage(b, "a.png", 0, "", "", "", 0, 0); }),
              "<IMG SRC='a.png' ALT='' ALIGN= VALIGN=>\n");
    EXPECT_EQ(built([](char * b) { return VOZHTML::AddImage(b, "a.png", -1, nullptr, nullptr, nullptr, -1, 1); }),
              "<IMG SRC='a.png' ALIGN= VALIGN= HEIGHT=1>\n");
}

TEST_F(Html, APageIsPutTogetherFromThePieces)
{
    std::string page;
    auto const add = [&](char const * piece) { page += piece; };
    char style[4096];
    add(VOZHTML::StartHTMLDoc(buffer, "Formed blank", VOZHTML::GenerateDefaultVOZStyle(style), 5));
    add(VOZHTML::AsTitle(buffer, "Cup"));
    add(VOZHTML::AsSubTitle(buffer, "Thickness"));
    add(VOZHTML::StartTable(buffer, "center", 1, 2, 0, "80%"));
    add(VOZHTML::StartTableRow(buffer, "rowshaded", 20, "#ffffff"));
    add(VOZHTML::AddTableData(buffer, "least", "celltitle", "left", "top", 2, 1, 100, 12, "red"));
    add(VOZHTML::AddTableData(buffer, "", "celltitle", "left", "top", 2, 1, 100, 12, "red"));
    add(VOZHTML::EndTableRow());
    add(VOZHTML::StartTableRow());
    add(VOZHTML::AddTableData(buffer, "0.71", "", "", "", 1, 1, 0, 0, ""));
    add(VOZHTML::EndTableRow());
    add(VOZHTML::EndTable());
    add(VOZHTML::StartParagraph());
    add(VOZHTML::AsBoldScript(buffer, "bold"));
    add(VOZHTML::AsEmphasizedScript(buffer, "soft"));
    add(VOZHTML::AsSuperScript(buffer, "2"));
    add(VOZHTML::LineFeed());
    add(VOZHTML::StartPreformatting());
    add(VOZHTML::IntToString(42));
    add(VOZHTML::EndPreformatting());
    add(VOZHTML::AddImage(buffer, "cup.png", 1, "the cup", "left", "top", 640, 480));
    add(VOZHTML::EndHTMLDoc());
    EXPECT_EQ(goldentext::firstDifference(golden("page.golden"), page), "");
}

TEST_F(Html, AnObjectHasNoState)
{
    VOZHTML first;
    VOZHTML second(first);
    second = first;
    EXPECT_EQ(sizeof(VOZHTML), sizeof(void *)); // the virtual destructor alone
}
