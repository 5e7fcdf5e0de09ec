#include "StateIndex.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace voz::launch
{
namespace
{
constexpr double kEndOfFile = -999999.0;

// What may stand behind the geometry: the titles of the model, the parts, the contacts and of one more kind, a title
// being 72 bytes whatever the width of the words. As reals, kinds up to the last would be nobody's time.
constexpr std::int64_t kTitleOfModel = 90000;
constexpr std::int64_t kTitlesOfParts = 90001;
constexpr std::int64_t kTitlesOfContacts = 90002;
constexpr std::int64_t kFurtherTitles = 90020;
constexpr std::int64_t kLastKind = 1000000;
constexpr std::int64_t kTitleBytes = 72;
constexpr std::int64_t kWordsAtATime = 4096;

bool isList(std::int64_t kind)
{
    return kind == kTitlesOfParts || kind == kTitlesOfContacts || kind == kFurtherTitles;
}

// Walks one root.
class Walker
{
public:
    Walker(WordReader & io_reader, D3plotLayout const & i_layout, std::size_t i_root, StateIndex & io_index,
           std::vector<std::string> & o_notes)
        : m_reader(io_reader), m_layout(i_layout), m_root(i_root), m_index(io_index), m_notes(o_notes)
    {
    }

    void Walk()
    {
        Place place = m_reader.Advance({}, m_layout.geometryEnd);
        bool isMore = Left(place) <= 0 || SkipTitles(place);
        if (isMore)
            WalkFile(place);
        for (std::size_t file = place.file + 1; file < m_reader.Root().files.size(); ++file)
            WalkFile({file, 0});
    }

private:
    std::int64_t Left(Place place) const { return m_reader.WordsOf(place.file) - place.word; }

    // False if no state can follow in this file.
    bool SkipTitles(Place & io_place)
    {
        if (m_reader.ReadReal(io_place) != kEndOfFile)
            return true;
        ++io_place.word;
        std::int64_t const titleWords = kTitleBytes / m_reader.Format().bytes;
        bool hasTitles = false;
        while (Left(io_place) >= 2)
        {
            std::array<std::int64_t, 2> head{}; // kind, count
            m_reader.ReadIntegers(io_place, head);
            std::int64_t words = 0;
            if (head[0] == kTitleOfModel)
                words = 1 + titleWords;
            else if (isList(head[0]) && head[1] >= 0 && head[1] <= Left(io_place))
                words = 2 + head[1] * (1 + titleWords);
            else if (head[0] > kTitleOfModel && head[0] < kLastKind)
                return false; // a kind of unknown length
            else
                break;
            hasTitles = true;
            io_place.word += words;
        }
        if (!hasTitles || Left(io_place) < 1)
            return false;
        if (m_reader.ReadReal(io_place) != kEndOfFile)
            return true;
        ++io_place.word;
        return false;
    }

    // Zeros that only fill the file look like a state at time 0; where all nodes would lie at the origin it is none.
    bool IsFilling(Place place)
    {
        if (m_layout.nodesInState == D3plotLayout::kNone)
            return false;
        std::vector<float> block;
        for (std::int64_t at = 0; at < m_layout.stateWords; at += kWordsAtATime)
        {
            block.resize(static_cast<std::size_t>(std::min(kWordsAtATime, m_layout.stateWords - at)));
            m_reader.ReadReals(m_reader.Advance(place, at), block);
            if (std::any_of(block.begin(), block.end(), [](float value) { return value != 0.0F; }))
                return false;
        }
        return true;
    }

    void WalkFile(Place place)
    {
        for (; Left(place) > 0; place.word += m_layout.stateWords)
        {
            double const time = m_reader.ReadReal(place);
            if (time == kEndOfFile)
                return;
            std::string const name = m_reader.Root().files[place.file].path.filename().string();
            if (!std::isfinite(time) || time < m_lastTime)
            {
                if (time != 0.0) // zeros only fill the file
                    m_notes.push_back(name + ": no state at word " + std::to_string(place.word) +
                                      ", what follows was left out");
                return;
            }
            if (Left(place) < m_layout.stateWords)
            {
                if (time > 0.0 || place.word == 0)
                    m_notes.push_back(name + " is cut short: the state at word " + std::to_string(place.word) +
                                      " has " + std::to_string(Left(place)) + " of " +
                                      std::to_string(m_layout.stateWords) + " words and was left out");
                return;
            }
            if (time == 0.0 && IsFilling(place))
                return;
            m_index.states.push_back({time, m_root, place});
            m_lastTime = time;
        }
    }

    WordReader & m_reader;
    D3plotLayout const & m_layout;
    std::size_t m_root;
    StateIndex & m_index;
    std::vector<std::string> & m_notes;
    double m_lastTime = 0.0;
};
} // namespace

StateIndex IndexStates(std::filesystem::path const & i_folder, std::vector<std::string> & o_notes)
{
    StateIndex index;
    for (FamilyRoot & root : FindFamily(i_folder, o_notes))
        try
        {
            WordReader reader(root);
            D3plotLayout const layout = ReadLayout(reader);
            if (layout.nodesInState == D3plotLayout::kNone && layout.shellWords == 0)
                throw ResultsError(root.name + ": its states hold neither coordinates nor values of shells");
            Walker(reader, layout, index.roots.size(), index, o_notes).Walk();
            index.layouts.push_back(layout);
            index.roots.push_back(std::move(root));
        }
        catch (ResultsError const & error)
        {
            o_notes.push_back(error.what());
        }
    return index;
}
} // namespace voz::launch
