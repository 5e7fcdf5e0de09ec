// DeckReader.h: the one-step input deck, read back.
//
// A Deck holds what the deck says in the deck's own units and numbers: inches, MPa, node and element numbers from 1
// that equal positions. What each field means stands in docs/deck.md. Every row is tested: counts, order, numbers
// (finite), indices. Rows that may turn out wrong later, when they are turned into records, keep their line.

#ifndef DECKREADER_H
#define DECKREADER_H

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace voz::deck
{

// "file:line: what was found; expected what". Line 0: the file as a whole.
class DeckError : public std::runtime_error
{
public:
    DeckError(std::string const & i_file, int i_line, std::string const & i_text)
        : std::runtime_error(i_file + (i_line > 0 ? ":" + std::to_string(i_line) : std::string()) + ": " + i_text),
          mLine(i_line)
    {
    }
    int Line() const { return mLine; }

private:
    int mLine;
};

struct Element
{
    int line = 0;
    int property = 0;
    int corners = 0; // 3 or 4
    std::array<int, 4> nodes{};
};

struct MaterialRecord
{
    int line = 0;
    int number = 0;
    double yield = 0.0; // MPa
    double nValue = 0.0;
    double rValue = 0.0;
    double kValue = 0.0;                      // MPa
    double thickness = 0.0;                   // inches
    std::vector<std::array<double, 2>> curve; // log plastic strain, MPa; empty: power law
};

struct DisplacedNode
{
    int line = 0;
    int node = 0;
    std::array<bool, 6> flags{};    // x, y, z and the rotations about them
    std::array<double, 6> values{}; // inches for the first three
};

struct Pad
{
    int line = 0;
    double pressure = 0.0; // Pa
    std::vector<int> nodes;
};

struct HolderEdge
{
    int line = 0;
    int element = 0;
    int node1 = 0;
    int node2 = 0;
    double restraint = 0.0; // N per metre or per inch: the head tells
};

struct Holder
{
    int line = 0;
    double force = 0.0;  // N
    double length = 0.0; // metres or inches
    std::vector<HolderEdge> edges;
};

struct BeadSegment
{
    int line = 0;
    int element = 0;
    std::array<double, 4> natural{}; // xi, eta of one end; xi, eta of the other
};

struct Bead
{
    int line = 0;
    double force = 0.0; // N/m
    std::vector<BeadSegment> segments;
};

struct Deck
{
    std::string file; // as it was opened
    bool controlFlag = false;
    int controlValue = 0;
    int holderCount = 0;                      // field 28 of the first control line: not the number of heads
    std::vector<std::array<double, 3>> nodes; // inches, stamping frame; entry i is node i + 1
    std::vector<Element> elements;            // entry i is element i + 1
    std::vector<MaterialRecord> materials;    // in the order of the records; the last number comes twice
    std::vector<DisplacedNode> displaced;     // symmetry and prescribed displacements alike
    std::vector<Pad> pads;
    std::vector<Holder> holders;
    std::vector<Bead> beads;
    double friction = 0.0;
};

Deck ReadDeck(std::string const & i_path); // throws DeckError

// The same from a text; i_name stands in the messages.
Deck ParseDeck(std::string const & i_name, std::string_view i_text);

// The whole of a file. Throws DeckError if it cannot be read (a folder, no such file).
std::string ReadWholeFile(std::string const & i_path);

} // namespace voz::deck

#endif
