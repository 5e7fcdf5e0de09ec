// MeshBuilder.h: gathers nodes and elements in the order of a file, and joins them to a MeshModel at its end.
//
// References are resolved at the end, so that elements may stand before their nodes. Until then each entry keeps four
// bytes that tell its line: a mark of the PlaceTable.

#ifndef MESHBUILDER_H
#define MESHBUILDER_H

#include "MeshFile.h"

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <utility>

namespace voz::workbench
{

// Lines of several files, each told by one number. Files are entered and resumed as includes open and close.
class PlaceTable
{
public:
    using Mark = std::uint32_t;

    // The lines marked from here on are those of i_file.
    void Enter(std::string const & i_file);
    Mark At(int i_line); // line of the file entered last
    std::pair<std::string, int> Find(Mark i_mark) const;

private:
    struct Run
    {
        Mark first; // mark of the run's line i_line
        int line;
        std::size_t file;
    };
    std::vector<std::string> mFiles;
    std::vector<Run> mRuns;
    std::size_t mFile = 0;
    bool mIsFresh = true; // no line of the file entered last has been marked
    Mark mLast = 0;
};

// An element as the file has it: ids of nodes; the fourth is 0 for a triangle.
struct ElementRecord
{
    int id = 0;
    int set = 0;
    PlaceTable::Mark mark = 0;
    std::array<std::uint8_t, 4> columns{}; // of the corners, from 1; 0: not told
    std::array<int, 4> nodes{};
};

// A column that fits its byte, else 0.
inline std::uint8_t ColumnByte(std::size_t i_column)
{
    return i_column < 256 ? static_cast<std::uint8_t>(i_column) : std::uint8_t{0};
}

class MeshBuilder
{
public:
    // i_words: how messages of the format call a node and an element, such as "GRID" and "element".
    struct Words
    {
        char const * node;
        char const * element;
    };
    MeshBuilder(std::string i_file, MeshFormat i_format, ReadOptions const & i_options, Words i_words);

    PlaceTable & Places() { return mPlaces; }
    double UnitLength() const { return mUnit; } // mm per unit of the file
    int NumNode() const { return static_cast<int>(mNodes.size()); }
    int NumElement() const { return static_cast<int>(mElements.size()); }

    void AddNode(int i_id, std::array<double, 3> const & i_place, PlaceTable::Mark i_mark); // in the file's unit
    void AddElement(ElementRecord const & i_element);

    ElementSet & Set(int i_id);                // made at first call; its thickness is in the file's unit until Finish
    int SetOfName(std::string const & i_name); // the id of the set of that name, made at first call
    void Skip(std::string const & i_name, long i_count = 1);
    void ForgetSkipped() { mSkipped.clear(); }
    void Remark(std::string i_text) { mRemarks.push_back(std::move(i_text)); }

    MeshModel Finish(); // leaves the builder empty

private:
    struct Node
    {
        std::array<double, 3> place;
        int id;
        PlaceTable::Mark mark;
    };
    [[noreturn]] void fail(PlaceTable::Mark mark, int column, std::string const & message) const;
    void dropRepeatedNodes(std::vector<std::pair<int, int>> const & repeated, std::vector<int> & positionOf);
    void dropRepeatedElements();
    void moveNodes(MeshModel & model);
    void moveElements(MeshModel & model, class IdIndex const & nodes, std::vector<int> const & positionOf);
    void moveSets(MeshModel & model);
    void remarkOnSize(MeshModel & model) const;

    std::string mFile;
    MeshFormat mFormat;
    Words mWords;
    double mUnit;
    bool mIsUnitGiven;
    PlaceTable mPlaces;
    std::deque<Node> mNodes; // a deque: a vector would hold twice the array while it grows
    std::deque<ElementRecord> mElements;
    std::map<int, ElementSet> mSets;
    std::map<std::string, int> mSetOfName;
    std::map<std::string, long> mSkipped;
    std::vector<std::string> mRemarks;
};

// Where an id stands: a table where the ids are dense, else a sorted list.
class IdIndex
{
public:
    // i_idAt(i), i from 0 to i_count - 1: the ids, 1 and above. Fills o_repeated with pairs (first entry, later entry).
    template <class IdAt>
    IdIndex(int i_count, IdAt i_idAt, std::vector<std::pair<int, int>> & o_repeated);

    int Find(int i_id) const; // the first entry of that id, or -1

private:
    int mLow = 0;
    std::vector<int> mTable;                  // entry of id mLow + k, or -1
    std::vector<std::pair<int, int>> mSorted; // id, entry; used where mTable is empty
};

} // namespace voz::workbench

#endif
