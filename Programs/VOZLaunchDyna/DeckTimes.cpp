#include "DeckTimes.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <map>
#include <optional>
#include <string_view>

namespace voz::launch
{
namespace
{
constexpr std::size_t kMaxPoints = 100000;

struct Line
{
    int number = 0;
    std::string text;
};

std::string_view trimmed(std::string_view text)
{
    std::size_t const first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

std::string upper(std::string_view text)
{
    std::string result(text);
    for (char & c : result)
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    return result;
}

// The data lines of the keywords that are asked for, each card's apart; comments are passed over.
class Cards
{
public:
    explicit Cards(std::filesystem::path const & i_deck) : mName(i_deck.filename().string())
    {
        std::ifstream stream(i_deck, std::ios::binary);
        if (!stream)
            throw DeckError(i_deck.string() +
                            ": the deck is not there; write it first (it is what the run starts from)");
        std::vector<Line> * card = nullptr;
        int number = 0;
        for (std::string text; std::getline(stream, text);)
        {
            ++number;
            if (!text.empty() && text[0] == '$')
                continue;
            if (!text.empty() && text[0] == '*')
            {
                std::string const keyword = upper(trimmed(text));
                if (keyword == "*END")
                    break;
                card = IsKept(keyword) ? &mCards[keyword].emplace_back() : nullptr;
            }
            else if (card != nullptr)
                card->push_back({number, text});
        }
    }

    std::vector<std::vector<Line>> const & Of(std::string const & i_keyword) { return mCards[i_keyword]; }

    // A number in columns of that width, or between commas; nothing for a blank field.
    std::optional<double> Field(Line const & i_line, std::size_t i_index, std::size_t i_width) const
    {
        std::string_view text(i_line.text);
        if (text.find(',') != std::string_view::npos)
        {
            for (; i_index > 0; --i_index)
                text.remove_prefix(
                    std::min(text.size(), text.find(',') == std::string_view::npos ? text.size() : text.find(',') + 1));
            text = text.substr(0, text.find(','));
        }
        else
            text = i_index * i_width < text.size() ? text.substr(i_index * i_width, i_width) : std::string_view();
        text = trimmed(text);
        if (text.empty())
            return std::nullopt;
        if (text.front() == '+')
            text.remove_prefix(1);
        double value = 0.0;
        auto const parsed = std::from_chars(text.data(), text.data() + text.size(), value);
        if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size() || !std::isfinite(value))
            throw DeckError(mName + ", line " + std::to_string(i_line.number) + ": \"" + std::string(text) +
                            "\" is no number; one was expected in field " + std::to_string(i_index + 1));
        return value;
    }

    std::string const & Name() const { return mName; }

private:
    static bool IsKept(std::string const & i_keyword)
    {
        return i_keyword == "*CONTROL_TERMINATION" || i_keyword == "*DATABASE_BINARY_D3PLOT" ||
               i_keyword == "*DEFINE_CURVE";
    }

    std::string mName;
    std::map<std::string, std::vector<std::vector<Line>>> mCards;
};

double endTime(Cards & io_cards)
{
    for (auto const & card : io_cards.Of("*CONTROL_TERMINATION"))
        if (!card.empty())
        {
            double const end = io_cards.Field(card[0], 0, 10).value_or(0.0);
            if (!(end > 0.0))
                throw DeckError(io_cards.Name() + ", line " + std::to_string(card[0].number) + ": ENDTIM is " +
                                card[0].text.substr(0, 10) + ", a time above 0 was expected");
            return end;
        }
    throw DeckError(io_cards.Name() + ": no *CONTROL_TERMINATION with a time; expected one, as the run has to end");
}

// Rows of the curve with that label: LCID, SIDR, SFA, SFO, OFFA, OFFO; then abscissa, ordinate in columns of 20.
std::vector<double> curve(Cards & io_cards, int label)
{
    for (auto const & card : io_cards.Of("*DEFINE_CURVE"))
    {
        if (card.empty() || io_cards.Field(card[0], 0, 10).value_or(0.0) != label)
            continue;
        double scale = io_cards.Field(card[0], 2, 10).value_or(0.0);
        scale = scale == 0.0 ? 1.0 : scale;
        double const offset = io_cards.Field(card[0], 4, 10).value_or(0.0);
        std::vector<double> times;
        for (std::size_t row = 1; row < card.size(); ++row)
            if (!trimmed(card[row].text).empty())
                times.push_back(scale * (io_cards.Field(card[row], 0, 20).value_or(0.0) + offset));
        return times;
    }
    throw DeckError(io_cards.Name() + ": *DATABASE_BINARY_D3PLOT names curve " + std::to_string(label) +
                    ", which the deck does not define");
}

std::vector<double> multiples(double interval, double end)
{
    if (end / interval > static_cast<double>(kMaxPoints))
        throw DeckError("an output interval of " + std::to_string(interval) + " s is too short for the run");
    std::vector<double> times;
    for (int i = 0; i * interval < end * (1.0 - 1e-9); ++i)
        times.push_back(i * interval);
    return times;
}
} // namespace

DeckTimes ReadDeckTimes(std::filesystem::path const & i_deck, int i_count)
{
    Cards cards(i_deck);
    DeckTimes times;
    times.end = endTime(cards);
    for (auto const & card : cards.Of("*DATABASE_BINARY_D3PLOT"))
    {
        if (card.empty())
            continue;
        double const interval = cards.Field(card[0], 0, 10).value_or(0.0);
        double const label = cards.Field(card[0], 1, 10).value_or(0.0);
        if (label >= 1.0 && label < 1e9)
            times.points = curve(cards, static_cast<int>(label));
        else if (interval > 0.0)
            times.points = multiples(interval, times.end);
    }
    if (times.points.empty())
        for (int i = 0; i + 1 < i_count; ++i)
            times.points.push_back(times.end * i / (i_count - 1));
    if (times.points.size() != static_cast<std::size_t>(i_count))
        times.points.push_back(times.end);
    return times;
}
} // namespace voz::launch
