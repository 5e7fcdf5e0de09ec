// KeywordDeck.h: reads an LS-DYNA keyword deck as a solver does: by the columns of each card, include files followed.
//
// Names and columns of the cards are those of the LS-DYNA Keyword User's Manual. A line over 80 columns (comments
// aside, and names of include files, which may have 236), a keyword that is not in the table, a card too many or too
// few, text outside the fields, and a field that is no number or runs into the next one are refused with file and line.
//
//     keyworddeck::Deck const deck(folder / "inputls.dyn");
//     double const end = deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM");
//     for (keyworddeck::Block const * part : deck.all("PART"))
//         use(part->card(1).integer("PID"));

#ifndef KEYWORDDECK_H
#define KEYWORDDECK_H

#include "KeywordDeckCards.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace keyworddeck
{
namespace fs = std::filesystem;

class DeckError : public std::runtime_error
{
public:
    DeckError(std::string const & i_file, int i_line, std::string const & i_text)
        : std::runtime_error(i_file + ":" + std::to_string(i_line) + ": " + i_text)
    {
    }
};

// One line of data with the card it is.
class Card
{
public:
    Card(CardLayout const & i_layout, std::string i_text, int i_line)
        : mLayout(&i_layout), mText(std::move(i_text)), mLine(i_line)
    {
    }

    std::string const & line() const { return mText; }
    int number() const { return mLine; } // of the line in its file
    CardLayout const & layout() const { return *mLayout; }

    // A field's text without the blanks around it. Throws std::out_of_range for a name that the card has not.
    std::string text(std::string const & i_name) const { return slice(mLayout->field(i_name)); }
    bool blank(std::string const & i_name) const { return text(i_name).empty(); }

    // What stands in the field, or i_default where it is blank.
    double real(std::string const & i_name, double i_default = 0.0) const
    {
        std::string const at = text(i_name);
        double value = i_default;
        std::from_chars(at.data(), at.data() + at.size(), value);
        return value;
    }
    int integer(std::string const & i_name, int i_default = 0) const
    {
        return static_cast<int>(real(i_name, i_default)); // a whole number, by the check
    }

    std::vector<double> reals(std::vector<std::string> const & i_names) const
    {
        std::vector<double> values;
        for (std::string const & name : i_names)
            values.push_back(real(name));
        return values;
    }

    // Throws DeckError for a field that is not what the card says.
    void check(std::string const & i_file) const
    {
        for (std::size_t i = 0; i < mLayout->fields.size(); ++i)
            checkField(i_file, mLayout->fields[i]);
        std::size_t const width = mLayout->width();
        if (mText.find_first_not_of(' ', width) != std::string::npos)
            throw DeckError(i_file, mLine, "text behind the last field, from column " + std::to_string(width + 1));
    }

private:
    std::string columns(FieldLayout const & i_field) const
    {
        return i_field.first < mText.size() ? mText.substr(i_field.first, i_field.width) : std::string();
    }
    std::string slice(FieldLayout const & i_field) const
    {
        std::string const all = columns(i_field);
        std::size_t const first = all.find_first_not_of(' ');
        return first == std::string::npos ? std::string() : all.substr(first, all.find_last_not_of(' ') - first + 1);
    }

    void checkField(std::string const & i_file, FieldLayout const & i_field) const
    {
        if (i_field.kind == FieldKind::Text)
            return;
        std::string const value = slice(i_field);
        std::string const where = "field " + i_field.name + " (columns " + std::to_string(i_field.first + 1) + " to " +
                                  std::to_string(i_field.first + i_field.width) + "): [" + columns(i_field) + "]";
        bool const touches = i_field.first > 0 && i_field.first < mText.size() && mText[i_field.first] != ' ' &&
                             mText[i_field.first - 1] != ' ';
        if (touches && value.size() < i_field.width) // numbers stand to the right: one that touches fills its field
            throw DeckError(i_file, mLine, where + " runs on from the field ahead of it");
        if (!value.empty() && !isNumber(value, i_field.kind))
            throw DeckError(i_file, mLine,
                            where + (i_field.kind == FieldKind::Real ? " is no number" : " is no integer"));
    }
    static bool isNumber(std::string const & i_text, FieldKind i_kind)
    {
        if (i_kind == FieldKind::Integer && i_text.find_first_not_of("+-0123456789") != std::string::npos)
            return false;
        double value = 0.0;
        char const * const first = i_text.data() + (i_text[0] == '+' ? 1 : 0);
        char const * const last = i_text.data() + i_text.size();
        auto const [end, error] = std::from_chars(first, last, value);
        bool const whole = error == std::errc() && end == last && value - value == 0.0;
        return whole && (i_kind != FieldKind::Count || value == static_cast<double>(static_cast<long long>(value)));
    }

    CardLayout const * mLayout;
    std::string mText;
    int mLine;
};

// A keyword with its cards, in the order of the deck.
struct Block
{
    std::string keyword; // without the asterisk
    std::string file;
    int line = 0;
    std::vector<Card> cards;

    // The i-th, from 0.
    Card const & card(std::size_t i) const { return cards.at(i); }
};

class Deck
{
public:
    explicit Deck(fs::path const & i_file) { read(i_file, 0); }

    std::vector<Block> const & blocks() const { return mBlocks; }

    std::vector<Block const *> all(std::string const & i_keyword) const
    {
        std::vector<Block const *> found;
        for (Block const & block : mBlocks)
            if (block.keyword == i_keyword)
                found.push_back(&block);
        return found;
    }
    // The only one of that keyword.
    Block const & one(std::string const & i_keyword) const
    {
        std::vector<Block const *> const found = all(i_keyword);
        if (found.size() != 1)
            throw std::runtime_error("the deck has " + std::to_string(found.size()) + " blocks *" + i_keyword);
        return *found.front();
    }
    bool has(std::string const & i_keyword) const { return !all(i_keyword).empty(); }

    // The points of the curve of that number.
    std::vector<std::pair<double, double>> curve(int i_id) const
    {
        std::vector<std::pair<double, double>> points;
        for (Block const * const block : all("DEFINE_CURVE"))
            if (block->card(0).integer("LCID") == i_id)
                for (std::size_t i = 1; i < block->cards.size(); ++i)
                    points.emplace_back(block->card(i).real("A1"), block->card(i).real("O1"));
        if (points.empty())
            throw std::runtime_error("the deck has no curve " + std::to_string(i_id));
        return points;
    }

private:
    static constexpr std::size_t kLongestLine = 80;
    static constexpr std::size_t kLongestInclude = 236; // of a file's name
    static constexpr int kDeepest = 8;

    void read(fs::path const & i_file, int i_depth)
    {
        std::ifstream stream(i_file, std::ios::binary);
        if (!stream || i_depth > kDeepest)
            throw DeckError(i_file.string(), 0, stream ? "include files that include each other" : "cannot be opened");
        Reading reading{i_file, i_depth, nullptr, -1, 0, false};
        std::string line;
        while (std::getline(stream, line))
        {
            ++reading.line;
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            take(reading, line);
        }
        closeBlock(reading);
        if (!reading.ended)
            throw DeckError(i_file.string(), reading.line, "the file has no *END");
    }

    struct Reading
    {
        fs::path file;
        int depth;
        KeywordLayout const * layout; // of the open block
        int block;                    // its place in mBlocks, -1: none
        int line;
        bool ended;
    };

    void take(Reading & io_reading, std::string const & i_line)
    {
        if (!i_line.empty() && i_line[0] == '$')
            return;
        std::string const file = io_reading.file.string();
        bool const isName = io_reading.layout && io_reading.layout->keyword == "INCLUDE";
        if (i_line.size() > (isName ? kLongestInclude : kLongestLine))
            throw DeckError(file, io_reading.line, "a line of " + std::to_string(i_line.size()) + " columns");
        if (io_reading.ended)
            throw DeckError(file, io_reading.line, "data behind *END");
        if (!i_line.empty() && i_line[0] == '*')
            openBlock(io_reading, i_line.substr(1));
        else
            addCard(io_reading, i_line);
    }

    void openBlock(Reading & io_reading, std::string i_keyword)
    {
        closeBlock(io_reading);
        i_keyword.erase(i_keyword.find_last_not_of(' ') + 1);
        std::string const file = io_reading.file.string();
        if (io_reading.depth == 0 && mBlocks.empty() && i_keyword != "KEYWORD")
            throw DeckError(file, io_reading.line, "the deck does not begin with *KEYWORD");
        io_reading.ended = i_keyword == "END";
        io_reading.layout = layoutOf(i_keyword);
        if (!io_reading.layout)
            throw DeckError(file, io_reading.line, "a keyword that is not in the table: *" + i_keyword);
        io_reading.block = static_cast<int>(mBlocks.size());
        mBlocks.push_back({i_keyword, file, io_reading.line, {}});
    }

    void closeBlock(Reading & io_reading)
    {
        if (io_reading.block < 0)
            return;
        Block const & block = mBlocks[static_cast<std::size_t>(io_reading.block)];
        if (block.cards.size() < io_reading.layout->required)
            throw DeckError(block.file, block.line,
                            "*" + block.keyword + " needs " + std::to_string(io_reading.layout->required) +
                                " cards and has " + std::to_string(block.cards.size()));
        std::string const include = block.keyword == "INCLUDE" ? block.card(0).text("FILENAME") : std::string();
        io_reading.block = -1;
        io_reading.layout = nullptr;
        if (!include.empty())
            read(io_reading.file.parent_path() / include, io_reading.depth + 1); // an absolute name replaces the folder
    }

    void addCard(Reading & io_reading, std::string const & i_line)
    {
        std::string const file = io_reading.file.string();
        if (io_reading.block < 0)
            throw DeckError(file, io_reading.line, "data ahead of the first keyword");
        Block & block = mBlocks[static_cast<std::size_t>(io_reading.block)];
        CardLayout const * const layout = io_reading.layout->card(block.cards.size());
        if (!layout)
            throw DeckError(file, io_reading.line, "a card too many for *" + block.keyword);
        block.cards.emplace_back(*layout, i_line, io_reading.line);
        block.cards.back().check(file);
    }

    std::vector<Block> mBlocks;
};
} // namespace keyworddeck

#endif
