// NastranReader.cpp: GRID, shells and PSHELL from bulk data.
//
// A card is a line and its continuations. A line with a comma is in free field; else it has a name in columns 1 to 8
// and eight fields of 8 columns, or four of 16 where the name ends with an asterisk; columns 73 to 80 and the first
// field of the next line mark a continuation. Every card of interest ends within its first eight data fields, so that
// further continuations (corner thicknesses, offsets) are passed over.

#include "IncludeFiles.h"
#include "MeshBuilder.h"
#include "NumberText.h"

#include <algorithm>
#include <array>

namespace voz::workbench
{
namespace
{
constexpr std::size_t kFields = 8;      // data fields of a card that are kept
constexpr std::size_t kFieldWidth = 8;  // of the name and of a small field
constexpr std::size_t kLargeWidth = 16; // of a large field
constexpr std::size_t kCardEnd = 72;    // columns beyond hold the mark of the continuation

struct Shell
{
    std::string_view name;
    std::size_t corners;
};
constexpr Shell kShells[] = {{"CTRIA3", 3}, {"CQUAD4", 4}, {"CTRIA6", 3}, {"CQUAD8", 4}};

struct Field
{
    std::string text;
    std::size_t column = 0; // from 1; 0: the card has not that many fields
    int line = 0;
};

// A physical line cut into its name, its data fields and the mark of its continuation.
struct CutLine
{
    std::string_view name; // without blanks
    bool isLarge = false;
    std::array<std::string_view, kFields> fields;
    std::array<std::size_t, kFields> columns{}; // 0: not there
    std::size_t count = 0;                      // fields that the form has: 8 or 4
    std::string_view mark;                      // of the line that continues this one
};

bool isContinuationName(std::string_view name)
{
    return name.empty() || name[0] == '+' || name[0] == '*';
}

// A blank name carries on in the form of the line above.
bool isLargeName(std::string_view name, bool isAfterLarge)
{
    return name.empty() ? isAfterLarge : name.back() == '*' || name.front() == '*';
}

std::string_view markOf(std::string_view text)
{
    text = Trimmed(text);
    if (!text.empty() && (text[0] == '+' || text[0] == '*'))
        text.remove_prefix(1);
    return Trimmed(text);
}

void cutFree(std::string_view line, bool isAfterLarge, CutLine & cut)
{
    std::size_t begin = 0;
    for (std::size_t k = 0; begin <= line.size(); ++k)
    {
        std::size_t const end = std::min(line.find(',', begin), line.size());
        std::string_view const field = line.substr(begin, end - begin);
        std::string_view const text = Trimmed(field);
        if (k == 0)
        {
            cut.name = text;
            cut.isLarge = isLargeName(text, isAfterLarge);
            cut.count = cut.isLarge ? kFields / 2 : kFields;
        }
        else if (k <= cut.count)
        {
            cut.fields[k - 1] = text;
            cut.columns[k - 1] = begin + 1 + (text.empty() ? 0 : static_cast<std::size_t>(text.data() - field.data()));
        }
        else
        {
            cut.mark = text;
            return;
        }
        begin = end + 1;
    }
}

void cutFixed(std::string_view line, bool isAfterLarge, CutLine & cut)
{
    cut.name = Trimmed(line.substr(0, kFieldWidth));
    cut.isLarge = isLargeName(cut.name, isAfterLarge);
    std::size_t const width = cut.isLarge ? kLargeWidth : kFieldWidth;
    cut.count = (kCardEnd - kFieldWidth) / width;
    for (std::size_t k = 0; k < cut.count; ++k)
    {
        std::size_t const begin = kFieldWidth + k * width;
        if (begin >= line.size())
            return;
        std::string_view const field = line.substr(begin, width);
        cut.fields[k] = Trimmed(field);
        cut.columns[k] = begin + 1;
        if (!cut.fields[k].empty())
            cut.columns[k] += static_cast<std::size_t>(cut.fields[k].data() - field.data());
    }
    if (line.size() > kCardEnd)
        cut.mark = line.substr(kCardEnd, kFieldWidth);
}

class NastranReader
{
public:
    NastranReader(ByteSource & source, ReadOptions const & options, Includes includes)
        : mSource(source), mIncludes(source.Name(), includes),
          mBuilder(source.Name(), MeshFormat::Nastran, options, {"GRID", "element"})
    {
    }

    MeshModel Read()
    {
        readFile(mSource);
        if (mHasBegun && !mHasEnded)
            mBuilder.Remark("The file has BEGIN BULK but no ENDDATA: it may have been cut.");
        return mBuilder.Finish();
    }

private:
    // What the card at hand is, once its name has been read.
    enum class Kind
    {
        None, // before the first card, and behind one that is passed over
        Grid,
        GridDefaults,
        Shell,
        Property
    };

    void readFile(ByteSource & source)
    {
        LineReader lines(source);
        mBuilder.Places().Enter(lines.Name());
        std::string_view line;
        while (!mHasEnded && lines.Next(line))
        {
            std::string_view const text = withoutComment(line);
            if (Trimmed(text).empty())
                continue;
            if (!isDirective(text, lines))
                takeLine(text, lines);
        }
        finishCard(lines);
    }

    // The text before a "$"; tabs become blanks up to the next field.
    std::string_view withoutComment(std::string_view line)
    {
        line = line.substr(0, line.find('$'));
        if (line.find('\t') == std::string_view::npos)
            return line;
        mExpanded.clear();
        for (char const c : line)
            if (c == '\t')
                mExpanded.append(kFieldWidth - mExpanded.size() % kFieldWidth, ' ');
            else
                mExpanded += c;
        return mExpanded;
    }

    // BEGIN BULK, ENDDATA and INCLUDE stand outside the form of a card.
    bool isDirective(std::string_view text, LineReader & lines)
    {
        char const first = Trimmed(text)[0];
        if (first != 'B' && first != 'b' && first != 'E' && first != 'e' && first != 'I' && first != 'i')
            return false;
        std::string_view rest = text;
        std::string const word = Upper(NextWord(rest));
        if (word == "BEGIN")
        {
            finishCard(lines);
            mBuilder.ForgetSkipped(); // what stood before were statements, no cards
            mHasBegun = true;
            return true;
        }
        if (word == "ENDDATA")
        {
            mHasEnded = true;
            return true;
        }
        if (word != "INCLUDE")
            return false;
        finishCard(lines);
        include(std::string(text), lines);
        return true;
    }

    // INCLUDE 'name': a quoted name may run over several lines.
    void include(std::string text, LineReader & lines)
    {
        std::string_view rest = text;
        NextWord(rest);
        rest = Trimmed(rest);
        std::size_t const column = rest.empty() ? 1 : static_cast<std::size_t>(rest.data() - text.data()) + 1;
        std::string name(rest);
        if (!name.empty() && (name[0] == '\'' || name[0] == '"'))
        {
            char const quote = name[0];
            name.erase(0, 1);
            std::string_view more;
            while (name.find(quote) == std::string::npos && name.size() < 4096 && lines.Next(more))
                name += Trimmed(more);
            if (name.find(quote) == std::string::npos)
                lines.Fail(column, "the name of an include has no closing quote");
            name.resize(name.find(quote));
        }
        ByteSource nested = ByteSource::File(mIncludes.Open(name, lines, column));
        readFile(nested);
        mIncludes.Close();
        mBuilder.Places().Enter(lines.Name());
    }

    void takeLine(std::string_view text, LineReader & lines)
    {
        CutLine cut;
        if (text.find(',') != std::string_view::npos)
            cutFree(text, mIsLarge, cut);
        else
            cutFixed(text, mIsLarge, cut);
        if (isContinuationName(cut.name))
        {
            if (mKind != Kind::None)
                continueCard(cut, lines);
            return;
        }
        finishCard(lines);
        beginCard(cut, lines);
    }

    void beginCard(CutLine const & cut, LineReader & lines)
    {
        std::string_view const name = cut.name.back() == '*' ? cut.name.substr(0, cut.name.size() - 1) : cut.name;
        if (cut.name[0] == '=')
            lines.Fail(1, "replication (" + Quoted(cut.name) + ") is not read, expected every card written out");
        mName.assign(name);
        for (char & c : mName)
            if (c >= 'a' && c <= 'z')
                c = static_cast<char>(c - 'a' + 'A');
        mKind = kindOf();
        if (mKind == Kind::None)
        {
            mBuilder.Skip(AsUtf8(mName));
            return;
        }
        mMark = mBuilder.Places().At(lines.Line());
        mLine = lines.Line();
        mCount = 0;
        takeFields(cut, lines);
    }

    Kind kindOf()
    {
        if (mName == "GRID")
            return Kind::Grid;
        for (Shell const & shell : kShells)
            if (mName == shell.name)
            {
                mCorners = shell.corners;
                return Kind::Shell;
            }
        if (mName == "PSHELL")
            return Kind::Property;
        return mName == "GRDSET" ? Kind::GridDefaults : Kind::None;
    }

    void takeFields(CutLine const & cut, LineReader const & lines)
    {
        for (std::size_t k = 0; k < cut.count && mCount < kFields; ++k, ++mCount)
        {
            mFields[mCount].text.assign(cut.fields[k]);
            mFields[mCount].column = cut.columns[k];
            mFields[mCount].line = lines.Line();
        }
        mContinuation.assign(markOf(cut.mark));
        mIsLarge = cut.isLarge;
    }

    void continueCard(CutLine const & cut, LineReader const & lines)
    {
        std::string_view const mark = markOf(cut.name);
        if (!mark.empty() && !mContinuation.empty() && mark != mContinuation)
            lines.Fail(1, "found the continuation " + Quoted(cut.name) + ", expected " + Quoted(mContinuation) +
                              " of the card above");
        takeFields(cut, lines);
    }

    void finishCard(LineReader const & lines)
    {
        Kind const kind = mKind;
        mKind = Kind::None;
        if (kind == Kind::None)
            return;
        for (; mCount < kFields; ++mCount)
            mFields[mCount] = {{}, 0, mLine};
        mLines = &lines;
        if (kind == Kind::Grid)
            takeGrid();
        else if (kind == Kind::Shell)
            takeShell();
        else if (kind == Kind::Property)
            takeProperty();
        else
            refuseFrame(1, "GRDSET");
    }

    [[noreturn]] void fail(std::size_t k, std::string const & message) const
    {
        throw InputError(mLines->Name(), mFields[k].line, static_cast<int>(mFields[k].column), message);
    }

    // k counts data fields from 0. A blank field gives i_blank; -1 there means that it must not be blank.
    int id(std::size_t k, char const * what, int i_blank = -1) const
    {
        int value = 0;
        if (mFields[k].text.empty() && i_blank >= 0)
            return i_blank;
        if (!ParseInteger(mFields[k].text, value) || value < 1)
            fail(k, mName + ": found " + Quoted(mFields[k].text) + ", expected " + what + " (1 to 2147483647)");
        return value;
    }

    double real(std::size_t k, char const * what) const
    {
        double value = 0.0;
        if (!mFields[k].text.empty() && !ParseReal(mFields[k].text, value, Exponent::Bare))
            fail(k, mName + ": found " + Quoted(mFields[k].text) + ", expected " + what + ", a finite number");
        return value;
    }

    void refuseFrame(std::size_t k, std::string const & card) const
    {
        int frame = 0;
        if (mFields[k].text.empty() || (ParseInteger(mFields[k].text, frame) && frame == 0))
            return;
        fail(k, card + " stands in the coordinate system " + Quoted(mFields[k].text) +
                    ", expected blank or 0: write the mesh in the basic system");
    }

    void takeGrid()
    {
        int const number = id(0, "the id of a node");
        refuseFrame(1, "GRID");
        mBuilder.AddNode(number, {real(2, "x"), real(3, "y"), real(4, "z")}, mMark);
    }

    void takeShell()
    {
        ElementRecord element;
        element.id = id(0, "the id of an element");
        element.set = id(1, "the id of a property", element.id);
        element.mark = mMark;
        for (std::size_t k = 0; k < mCorners; ++k)
        {
            Field const & field = mFields[2 + k];
            element.nodes[k] = id(2 + k, "the id of a corner's node");
            element.columns[k] = field.line == mLine ? ColumnByte(field.column) : std::uint8_t{0};
        }
        mBuilder.AddElement(element);
    }

    void takeProperty()
    {
        int const property = id(0, "the id of a property");
        double const thickness = real(2, "a thickness");
        if (thickness < 0.0)
            fail(2, mName + ": found " + Quoted(mFields[2].text) + ", expected a thickness of 0 or more");
        if (auto const [known, isNew] = mThicknessOf.try_emplace(property, thickness);
            !isNew && known->second != thickness)
            fail(0, mName + " " + std::to_string(property) +
                        " stands with another thickness already, expected each id once");
        mBuilder.Set(property).thickness = thickness;
    }

    ByteSource & mSource;
    IncludeFiles mIncludes;
    MeshBuilder mBuilder;
    bool mHasBegun = false;
    bool mHasEnded = false;
    std::string mExpanded;
    std::map<int, double> mThicknessOf; // of a property, in the file's unit

    // The card at hand.
    Kind mKind = Kind::None;
    std::string mName;
    std::string mContinuation; // mark that the next continuation should bear; empty: any
    bool mIsLarge = false;     // form of its last line
    std::size_t mCorners = 0;
    std::array<Field, kFields> mFields;
    std::size_t mCount = 0;
    int mLine = 0;
    PlaceTable::Mark mMark = 0;
    LineReader const * mLines = nullptr; // for messages
};
} // namespace

MeshModel ReadNastran(ByteSource & io_source, ReadOptions const & i_options, Includes i_includes)
{
    return NastranReader(io_source, i_options, i_includes).Read();
}

} // namespace voz::workbench
