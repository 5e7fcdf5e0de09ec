#include "D3plotFamily.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <optional>
#include <string_view>
#include <system_error>

namespace voz::launch
{
namespace
{
constexpr std::string_view kStem = "d3plot";
constexpr std::int64_t kBlock = 1 << 16; // words converted at a time

bool isLetter(char c)
{
    return c >= 'a' && c <= 'z';
}

// "d3plotab07": root "d3plotab", number 7. Nothing for a name that is of no family file.
struct MemberName
{
    std::string root;
    int number = 0;
};

std::optional<MemberName> parseName(std::string_view name)
{
    if (name.substr(0, kStem.size()) != kStem)
        return std::nullopt;
    std::string_view rest = name.substr(kStem.size());
    MemberName member{std::string(kStem)};
    if (rest.size() >= 2 && isLetter(rest[0]) && isLetter(rest[1]))
    {
        member.root += rest.substr(0, 2);
        rest.remove_prefix(2);
    }
    if (rest.empty())
        return member;
    auto const parsed = std::from_chars(rest.data(), rest.data() + rest.size(), member.number);
    bool const isWhole = parsed.ec == std::errc() && parsed.ptr == rest.data() + rest.size();
    if (!isWhole || rest.size() < 2 || rest.size() > 4 || member.number <= 0)
        return std::nullopt;
    return member;
}

template <class Value>
Value load(char const * bytes, bool isSwapped)
{
    char turned[sizeof(Value)];
    std::memcpy(turned, bytes, sizeof(Value));
    if (isSwapped)
        std::reverse(std::begin(turned), std::end(turned));
    return std::bit_cast<Value>(turned);
}

// Word by word from raw bytes of one of the two widths.
template <class Narrow, class Wide, class Target>
void convert(char const * raw, WordFormat format, std::span<Target> o_values)
{
    for (std::size_t i = 0; i < o_values.size(); ++i)
        o_values[i] = format.bytes == 4 ? static_cast<Target>(load<Narrow>(raw + 4 * i, format.isSwapped))
                                        : static_cast<Target>(load<Wide>(raw + 8 * i, format.isSwapped));
}

void addFile(std::vector<FamilyRoot> & io_roots, MemberName const & member, std::filesystem::path const & path)
{
    std::error_code error;
    auto const bytes = std::filesystem::file_size(path, error);
    if (error)
        return; // a folder of that name, or gone by now
    auto root = std::find_if(io_roots.begin(), io_roots.end(), [&](auto const & r) { return r.name == member.root; });
    if (root == io_roots.end())
        root = io_roots.insert(root, FamilyRoot{member.root, {}});
    root->files.push_back({path, static_cast<std::int64_t>(bytes), member.number});
}
} // namespace

std::vector<FamilyRoot> FindRoots(std::filesystem::path const & i_folder)
{
    std::vector<FamilyRoot> roots;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(i_folder, error), end; !error && entry != end;
         entry.increment(error))
        if (auto const member = parseName(entry->path().filename().string()))
            addFile(roots, *member, entry->path());
    std::sort(roots.begin(), roots.end(), [](auto const & a, auto const & b) { return a.name < b.name; });
    for (FamilyRoot & root : roots)
        std::sort(root.files.begin(), root.files.end(),
                  [](auto const & a, auto const & b) { return a.number < b.number; });
    return roots;
}

std::vector<FamilyRoot> FindFamily(std::filesystem::path const & i_folder, std::vector<std::string> & o_notes)
{
    std::vector<FamilyRoot> roots = FindRoots(i_folder);
    std::erase_if(roots,
                  [&](FamilyRoot const & root)
                  {
                      if (root.files.front().number == 0)
                          return false;
                      o_notes.push_back("\"" + root.name + "\", the first file of its family, is missing: the " +
                                        "states behind it were left out");
                      return true;
                  });
    return roots;
}

std::int64_t WordReader::WordsOfAll() const
{
    std::int64_t words = 0;
    for (std::size_t i = 0; i < m_root.files.size(); ++i)
        words += WordsOf(i);
    return words;
}

Place WordReader::Advance(Place i_place, std::int64_t i_words) const
{
    i_place.word += i_words;
    while (i_place.file + 1 < m_root.files.size() && i_place.word >= WordsOf(i_place.file))
        i_place.word -= WordsOf(i_place.file++);
    return i_place;
}

void WordReader::ReadRaw(Place i_place, std::int64_t i_words, char * o_bytes)
{
    while (i_words > 0)
    {
        std::int64_t const here = i_place.file < m_root.files.size()
                                      ? std::min(i_words, WordsOf(i_place.file) - i_place.word)
                                      : std::int64_t{-1};
        if (here < 0 || (here == 0 && i_place.file + 1 >= m_root.files.size()))
            throw ResultsError("the family \"" + m_root.name + "\" ends where " + std::to_string(i_words) +
                               " more words were expected");
        if (m_open != i_place.file)
        {
            m_stream.close();
            m_stream.clear();
            m_stream.open(m_root.files[i_place.file].path, std::ios::binary);
            m_open = i_place.file;
        }
        std::int64_t const bytes = here * m_format.bytes;
        m_stream.seekg(i_place.word * m_format.bytes);
        m_stream.read(o_bytes, bytes);
        if (m_stream.gcount() != bytes || !m_stream)
        {
            m_open = static_cast<std::size_t>(-1);
            throw ResultsError(m_root.files[i_place.file].path.filename().string() + ": word " +
                               std::to_string(i_place.word) + " could not be read");
        }
        o_bytes += bytes;
        i_words -= here;
        i_place = {i_place.file + 1, 0};
    }
}

void WordReader::ReadIntegers(Place i_place, std::span<std::int64_t> o_values)
{
    while (!o_values.empty())
    {
        std::int64_t const count = std::min(kBlock, static_cast<std::int64_t>(o_values.size()));
        m_raw.resize(static_cast<std::size_t>(count * m_format.bytes));
        ReadRaw(i_place, count, m_raw.data());
        convert<std::int32_t, std::int64_t>(m_raw.data(), m_format, o_values.first(static_cast<std::size_t>(count)));
        o_values = o_values.subspan(static_cast<std::size_t>(count));
        i_place = Advance(i_place, count);
    }
}

void WordReader::ReadReals(Place i_place, std::span<float> o_values)
{
    if (m_format.bytes == 4 && !m_format.isSwapped) // as they stand
    {
        ReadRaw(i_place, static_cast<std::int64_t>(o_values.size()), reinterpret_cast<char *>(o_values.data()));
        return;
    }
    while (!o_values.empty())
    {
        std::int64_t const count = std::min(kBlock, static_cast<std::int64_t>(o_values.size()));
        m_raw.resize(static_cast<std::size_t>(count * m_format.bytes));
        ReadRaw(i_place, count, m_raw.data());
        convert<float, double>(m_raw.data(), m_format, o_values.first(static_cast<std::size_t>(count)));
        o_values = o_values.subspan(static_cast<std::size_t>(count));
        i_place = Advance(i_place, count);
    }
}

double WordReader::ReadReal(Place i_place)
{
    char raw[8];
    ReadRaw(i_place, 1, raw);
    double value = 0.0;
    convert<float, double>(raw, m_format, std::span<double>(&value, 1));
    return value;
}
} // namespace voz::launch
