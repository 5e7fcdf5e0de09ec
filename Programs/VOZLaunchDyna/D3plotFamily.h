// D3plotFamily.h: the files of a d3plot result family, and their words.
//
// "d3plot", "d3plot01", "d3plot02", ... are one root; each adaptation of the mesh begins a further one, "d3plotaa",
// "d3plotaa01", ..., "d3plotab", ... Every root begins with control words and a geometry of its own, and the states
// that follow are laid out by them. A word is 4 or 8 bytes wide, in the byte order of the machine that wrote it;
// integers and reals have the same width.
//
// Source: LS-DYNA Database, Binary Output Files (Livermore Software Technology, revised Feb 2017), State database.

#ifndef D3PLOTFAMILY_H
#define D3PLOTFAMILY_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace voz::launch
{
// The results cannot be read; the text says which file, where, and what was expected.
struct ResultsError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

struct WordFormat
{
    int bytes = 4;          // of a word
    bool isSwapped = false; // against the order of this machine
};

struct FamilyFile
{
    std::filesystem::path path;
    std::int64_t bytes = 0;
    int number = 0; // 0 for the file that begins the root
};

struct FamilyRoot
{
    std::string name; // "d3plot", "d3plotaa"
    std::vector<FamilyFile> files;
};

// The roots of the folder in the order of the run, each with its files ascending.
std::vector<FamilyRoot> FindRoots(std::filesystem::path const & i_folder);

// The same without those whose first file is missing, with a line in o_notes for each.
std::vector<FamilyRoot> FindFamily(std::filesystem::path const & i_folder, std::vector<std::string> & o_notes);

// A word of a root: file and word in it, both from 0.
struct Place
{
    std::size_t file = 0;
    std::int64_t word = 0;
};

// Reads words of one root; keeps one file open. The root is lent.
class WordReader
{
public:
    explicit WordReader(FamilyRoot const & i_root, WordFormat i_format = {}) : m_root(i_root), m_format(i_format) {}

    void SetFormat(WordFormat i_format) { m_format = i_format; }
    WordFormat Format() const { return m_format; }
    FamilyRoot const & Root() const { return m_root; }
    std::int64_t WordsOf(std::size_t i_file) const { return m_root.files[i_file].bytes / m_format.bytes; }
    std::int64_t WordsOfAll() const;

    // The place so many words on, in a further file where the first ones are too short.
    Place Advance(Place i_place, std::int64_t i_words) const;

    // Words that may run on into further files. Throws ResultsError where the root ends ahead of them.
    void ReadIntegers(Place i_place, std::span<std::int64_t> o_values);
    void ReadReals(Place i_place, std::span<float> o_values);
    double ReadReal(Place i_place);

private:
    void ReadRaw(Place i_place, std::int64_t i_words, char * o_bytes);

    FamilyRoot const & m_root;
    WordFormat m_format;
    std::ifstream m_stream;
    std::size_t m_open = static_cast<std::size_t>(-1);
    std::vector<char> m_raw; // for words that must be converted
};
} // namespace voz::launch

#endif
