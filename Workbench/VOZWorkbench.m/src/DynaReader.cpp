// DynaReader.cpp: nodes, shells, parts and sections from an LS-DYNA keyword deck.
//
// A keyword stands behind an asterisk in column 1 and rules the lines up to the next one; "$" opens a comment line. A
// line with a comma is in free form; else its fields have fixed widths: the standard ones, ten columns for every id
// (I10), or twenty for every field (long). "%", "+" and "-" at the end of a keyword choose I10, long and standard for
// it alone.

#include "DynaCards.h"
#include "IncludeFiles.h"
#include "MeshBuilder.h"
#include "NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::workbench
{
namespace
{
using namespace dyna;

// What the elements of a part say of their own thickness (mm per unit not yet applied).
struct OwnThickness
{
    double least = std::numeric_limits<double>::infinity();
    double most = 0.0;
    int elements = 0;
};

class DynaReader
{
public:
    DynaReader(ByteSource & source, ReadOptions const & options, Includes includes)
        : mSource(source), mIncludes(source.Name(), includes),
          mBuilder(source.Name(), MeshFormat::Dyna, options, {"node", "shell"})
    {
    }

    MeshModel Read()
    {
        readFile(mSource);
        if (!mHasEnd)
            mBuilder.Remark("The file has no *END: it may have been cut.");
        joinThickness();
        return mBuilder.Finish();
    }

private:
    enum class Keyword
    {
        None, // before the first
        Skipped,
        Node,
        Shell,
        Part,
        Section,
        Include,
        IncludePath
    };

    // Where a file stands; an include begins anew.
    struct State
    {
        Keyword keyword = Keyword::None;
        Width width = Width::Standard;
        int cardsBefore = 0;   // cards of the item at hand that have been read
        bool hasTitle = false; // *SECTION_SHELL_TITLE
        bool hasThickness = false, hasOffset = false;
        bool hasMidNodes = false;
        bool isPastSection = false;
        int section = 0;     // its id
        int anglesLeft = 0;  // cards of ply angles
        ElementRecord shell; // at hand until its last card
        double shellThickness = 0.0;
        std::string title; // of a part
        std::string name;  // of an include, continued with " +"
    };

    void readFile(ByteSource & source)
    {
        LineReader lines(source);
        mBuilder.Places().Enter(lines.Name());
        State state;
        std::string_view line;
        while (lines.Next(line))
        {
            if (!line.empty() && line[0] == '$')
                continue;
            if (line.empty() || line[0] != '*')
            {
                takeData(state, line, lines);
                continue;
            }
            closeKeyword(state, lines);
            if (takeKeyword(state, line, lines))
            {
                mHasEnd = mHasEnd || &source == &mSource;
                return;
            }
        }
        closeKeyword(state, lines);
    }

    // True at *END.
    bool takeKeyword(State & state, std::string_view line, LineReader & lines)
    {
        std::string const whole = Upper(Trimmed(line.substr(1)));
        std::string_view rest = whole;
        std::string name(NextWord(rest));
        state = State();
        state.width = mWidth;
        if (name == "END")
            return true;
        if (name == "KEYWORD" || name.rfind("KEYWORD_", 0) == 0)
            mWidth = widthTold(rest, mWidth);
        state.width = widthTold(rest, state.width);
        if (name.size() > 1 && (name.back() == '+' || name.back() == '-' || name.back() == '%'))
        {
            state.width = widthMarked(name.back());
            name.pop_back();
        }
        else if (std::string_view const mark = Trimmed(rest); mark == "+" || mark == "-" || mark == "%")
            state.width = widthMarked(mark[0]);
        state.keyword = keywordOf(name, state);
        if (state.keyword == Keyword::Skipped && name != "KEYWORD" && name.rfind("KEYWORD_", 0) != 0 && name != "TITLE")
            mBuilder.Skip("*" + AsUtf8(name));
        if (name.rfind("INCLUDE_", 0) == 0 && state.keyword == Keyword::Skipped)
            mBuilder.Remark("*" + AsUtf8(name) + " in line " + std::to_string(lines.Line()) + " of " + lines.Name() +
                            " was passed over: its file was not read.");
        return false;
    }

    static Width widthMarked(char mark)
    {
        return mark == '+' ? Width::Long : mark == '%' ? Width::I10 : Width::Standard;
    }

    // "LONG=Y", "LONG = Y", "LONG", "I10=Y"; LONG=S and LONG=K read the standard form.
    static Width widthTold(std::string_view options, Width width)
    {
        std::string packed;
        for (char const c : options)
            if (c != ' ' && c != '\t')
                packed += c;
        if (packed.find("LONG=S") != std::string::npos || packed.find("LONG=K") != std::string::npos)
            return Width::Standard;
        if (packed.find("LONG=Y") != std::string::npos ||
            (packed.size() >= 4 && packed.substr(packed.size() - 4) == "LONG"))
            return Width::Long;
        if (packed.find("I10=Y") != std::string::npos)
            return Width::I10;
        return width;
    }

    static Keyword keywordOf(std::string const & name, State & state)
    {
        if (name == "NODE")
            return Keyword::Node;
        if (name == "PART")
            return Keyword::Part;
        if (name == "INCLUDE")
            return Keyword::Include;
        if (name == "INCLUDE_PATH" || name == "INCLUDE_PATH_RELATIVE")
            return Keyword::IncludePath;
        state.hasTitle = name == "SECTION_SHELL_TITLE";
        if (name == "SECTION_SHELL" || state.hasTitle)
            return Keyword::Section;
        return isShell(name, state) ? Keyword::Shell : Keyword::Skipped;
    }

    static bool isShell(std::string const & name, State & state)
    {
        constexpr std::string_view kStem = "ELEMENT_SHELL";
        if (name.rfind(kStem, 0) != 0)
            return false;
        std::string_view options(name);
        for (options.remove_prefix(kStem.size()); !options.empty();)
        {
            if (options[0] != '_')
                return false;
            std::size_t const end = std::min(options.find('_', 1), options.size());
            std::string_view const option = options.substr(1, end - 1);
            if (option == "THICKNESS" || option == "BETA") // BETA is the fifth field of the thickness card
                state.hasThickness = true;
            else if (option == "OFFSET")
                state.hasOffset = true;
            else
                return false;
            options.remove_prefix(end);
        }
        return true;
    }

    void takeData(State & state, std::string_view line, LineReader & lines)
    {
        switch (state.keyword)
        {
        case Keyword::Node:
            takeNode(state, line, lines);
            return;
        case Keyword::Shell:
            takeShell(state, line, lines);
            return;
        case Keyword::Part:
            takePart(state, line, lines);
            return;
        case Keyword::Section:
            takeSection(state, line, lines);
            return;
        case Keyword::Include:
        case Keyword::IncludePath:
            takeInclude(state, line, lines);
            return;
        case Keyword::None:
            if (!Trimmed(line).empty())
                lines.Fail(1, "found " + Quoted(Trimmed(line)) + ", expected a keyword (*KEYWORD)");
            return;
        case Keyword::Skipped:
            return;
        }
    }

    static int id(Card const & card, std::size_t k, char const * what, LineReader const & lines, int least = 1)
    {
        int value = 0;
        if (card.texts[k].empty() && least == 0)
            return 0;
        if (!ParseInteger(card.texts[k], value) || value < least)
            lines.Fail(card.columns[k], "found " + Quoted(card.texts[k]) + ", expected " + what + " (" +
                                            std::to_string(least) + " to 2147483647)");
        return value;
    }

    static double real(Card const & card, std::size_t k, char const * what, LineReader const & lines)
    {
        double value = 0.0;
        if (!card.texts[k].empty() && !ParseReal(card.texts[k], value))
            lines.Fail(card.columns[k], "found " + Quoted(card.texts[k]) + ", expected " + what + ", a finite number");
        return value;
    }

    void takeNode(State const & state, std::string_view line, LineReader const & lines)
    {
        if (Trimmed(line).empty())
            return;
        Card const card = cut(line, kNodeCard, state.width);
        mBuilder.AddNode(id(card, 0, "the id of a node", lines),
                         {real(card, 1, "x", lines), real(card, 2, "y", lines), real(card, 3, "z", lines)},
                         mBuilder.Places().At(lines.Line()));
    }

    // Cards of a shell: corners; thickness and angle; the thickness of mid-side nodes; offset.
    void takeShell(State & state, std::string_view line, LineReader const & lines)
    {
        if (state.cardsBefore == 0)
        {
            if (Trimmed(line).empty())
                return;
            takeCorners(state, cut(line, kShellCard, state.width), lines);
        }
        else if (state.cardsBefore == 1 && state.hasThickness)
            takeThickness(state, cut(line, kRealCard, state.width), lines);
        ++state.cardsBefore;
        int const cards = 1 + (state.hasThickness ? (state.hasMidNodes ? 2 : 1) : 0) + (state.hasOffset ? 1 : 0);
        if (state.cardsBefore < cards)
            return;
        mBuilder.AddElement(state.shell);
        state.cardsBefore = 0;
    }

    void takeCorners(State & state, Card const & card, LineReader const & lines)
    {
        ElementRecord & shell = state.shell;
        shell.id = id(card, 0, "the id of a shell", lines);
        shell.set = id(card, 1, "the id of a part", lines);
        shell.mark = mBuilder.Places().At(lines.Line());
        for (std::size_t k = 0; k < 4; ++k)
        {
            shell.nodes[k] = id(card, 2 + k, "the id of a corner's node", lines, k < 3 ? 1 : 0);
            shell.columns[k] = ColumnByte(card.columns[2 + k]);
        }
        if (shell.nodes[3] == shell.nodes[2])
            shell.nodes[3] = 0; // a triangle, as the format writes it
        state.hasMidNodes = false;
        for (std::size_t k = 6; k < 10; ++k)
            state.hasMidNodes = id(card, k, "the id of a mid-side node", lines, 0) != 0 || state.hasMidNodes;
    }

    void takeThickness(State & state, Card const & card, LineReader const & lines)
    {
        double sum = 0.0;
        int const corners = state.shell.nodes[3] == 0 ? 3 : 4;
        for (int k = 0; k < corners; ++k)
        {
            double const value = real(card, static_cast<std::size_t>(k), "a thickness", lines);
            if (value < 0.0)
                lines.Fail(card.columns[static_cast<std::size_t>(k)],
                           "found " + Quoted(card.texts[static_cast<std::size_t>(k)]) +
                               ", expected a thickness of 0 or more");
            sum += value;
        }
        if (sum <= 0.0)
            return; // the section's holds
        OwnThickness & own = mOwnThickness[state.shell.set];
        own.least = std::min(own.least, sum / corners);
        own.most = std::max(own.most, sum / corners);
        ++own.elements;
    }

    void takePart(State & state, std::string_view line, LineReader const & lines)
    {
        if (state.cardsBefore == 0)
        {
            state.title = AsUtf8(Trimmed(line));
            state.cardsBefore = 1;
            return;
        }
        state.cardsBefore = 0;
        if (Trimmed(line).empty() && state.title.empty())
            return; // blank lines behind the last part
        Card const card = cut(line, kTenCard, state.width);
        int const part = id(card, 0, "the id of a part", lines);
        int const section = id(card, 1, "the id of a section", lines, 0);
        auto const [known, isNew] = mSectionOf.try_emplace(part, section);
        if (!isNew && known->second != section)
            lines.Fail(card.columns[0],
                       "part " + std::to_string(part) + " stands with another section already, expected each id once");
        mBuilder.Set(part).name = state.title;
    }

    // Cards of a section: title, where the keyword says so; id and rule; thickness; ply angles, eight a card.
    void takeSection(State & state, std::string_view line, LineReader const & lines)
    {
        if (state.isPastSection)
            return;
        int const ahead = state.hasTitle ? 1 : 0;
        int const card = state.cardsBefore++ - ahead;
        if (card < 0)
            return;
        Card const fields = cut(line, kTenCard, state.width);
        if (card == 0)
        {
            if (Trimmed(line).empty())
            {
                state.cardsBefore = 0;
                return;
            }
            takeSectionHead(state, fields, lines);
        }
        else if (card == 1)
        {
            double const thickness = real(fields, 0, "a thickness", lines);
            if (thickness < 0.0)
                lines.Fail(fields.columns[0],
                           "found " + Quoted(fields.texts[0]) + ", expected a thickness of 0 or more");
            auto const [known, isNew] = mThicknessOf.try_emplace(state.section, thickness);
            if (!isNew && known->second != thickness)
                lines.Fail(fields.columns[0], "section " + std::to_string(state.section) +
                                                  " stands with another thickness already, expected each id once");
        }
        if (card >= 1 && card - 1 == state.anglesLeft)
            state.cardsBefore = 0;
    }

    void takeSectionHead(State & state, Card const & fields, LineReader const & lines)
    {
        constexpr double kFirstUserRule = 101.0; // element forms with cards of their own
        state.section = id(fields, 0, "the id of a section", lines);
        double const rule = real(fields, 1, "an element form", lines);
        double const points = real(fields, 3, "a number of points", lines);
        bool const hasAngles = real(fields, 6, "0 or 1 for ply angles", lines) == 1.0;
        state.anglesLeft = hasAngles && points > 0.0 && points < 1e6 ? static_cast<int>(std::ceil(points / 8.0)) : 0;
        if (rule >= kFirstUserRule)
        {
            state.isPastSection = true;
            mBuilder.Skip("*SECTION_SHELL of a user's form");
        }
    }

    void takeInclude(State & state, std::string_view line, LineReader const & lines)
    {
        std::string_view text = Trimmed(line);
        if (text.empty())
            return;
        bool const goesOn = text.size() > 2 && text.substr(text.size() - 2) == " +";
        if (goesOn)
            text = Trimmed(text.substr(0, text.size() - 2));
        state.name += text;
        if (goesOn)
            return;
        std::string const name = std::move(state.name);
        state.name.clear();
        if (state.keyword == Keyword::IncludePath)
        {
            mIncludes.AddFolder(name);
            return;
        }
        ByteSource nested = ByteSource::File(mIncludes.Open(name, lines, 1));
        readFile(nested);
        mIncludes.Close();
        mBuilder.Places().Enter(lines.Name());
    }

    // An item whose cards the next keyword, or the end of the file, cuts off.
    void closeKeyword(State const & state, LineReader const & lines) const
    {
        if (state.keyword == Keyword::Shell && state.cardsBefore > 0)
            lines.Fail(0, "the cards of shell " + std::to_string(state.shell.id) +
                              " end early, expected its thickness or offset card");
        if (state.keyword == Keyword::Part && state.cardsBefore == 1 && !state.title.empty())
            lines.Fail(0, "part " + Quoted(state.title) + " ends early, expected the card with its id");
        if (state.keyword == Keyword::Section && !state.isPastSection && state.cardsBefore > (state.hasTitle ? 1 : 0))
            lines.Fail(0, "section " + std::to_string(state.section) + " ends early, expected its thickness card");
    }

    // A part's thickness: the one that all its shells have of their own, else its section's.
    void joinThickness()
    {
        for (auto const & [part, section] : mSectionOf)
            if (auto const found = mThicknessOf.find(section); found != mThicknessOf.end())
                mBuilder.Set(part).thickness = found->second;
        for (auto const & [part, own] : mOwnThickness)
        {
            if (own.least == own.most)
                mBuilder.Set(part).thickness = own.most;
            else
                mBuilder.Remark("The shells of part " + std::to_string(part) +
                                " have thicknesses of their own that differ; they were passed over.");
        }
    }

    ByteSource & mSource;
    IncludeFiles mIncludes;
    MeshBuilder mBuilder;
    Width mWidth = Width::Standard;
    bool mHasEnd = false;
    std::map<int, int> mSectionOf;             // of a part
    std::map<int, double> mThicknessOf;        // of a section, in the file's unit
    std::map<int, OwnThickness> mOwnThickness; // of a part
};
} // namespace

MeshModel ReadDyna(ByteSource & io_source, ReadOptions const & i_options, Includes i_includes)
{
    return DynaReader(io_source, i_options, i_includes).Read();
}

} // namespace voz::workbench
