// DeckBlocks.h: the blocks of a one-step deck, a member each. Each takes its lines up to the separator, and throws
// DeckError at the first that is wrong.

#ifndef DECKBLOCKS_H
#define DECKBLOCKS_H

#include "DeckReader.h"
#include "DeckText.h"

namespace voz::deck
{

class Reader
{
public:
    Reader(std::string const & i_name, std::string_view i_text) : mLines(i_name, i_text) { mDeck.file = i_name; }

    Deck Read();

    void ControlLines();
    void Nodes();
    void Elements();
    void Materials();
    void FastConditions();
    void Displacements();
    void Pads();
    void Holders();
    void NoTable(); // "0 0 0"
    void Beads();
    void Curves();
    void FormingLimits();
    void IntegrationPoints();
    void Friction();
    void Development();
    void Matrix();
    void Empty() {}

private:
    void FirstControlLine();
    void MaterialRecordOf(MaterialRecord & o_record);
    int DisplacementHeads(long long & o_rows);
    void DisplacementRow();
    int HolderHead();
    void HolderEdges(Holder & io_holder, int i_count);
    int NodeNumber(Row const & i_row, int i_field, char const * i_what) const;
    int ElementNumber(Row const & i_row, int i_field, char const * i_what) const;
    std::size_t Prepared(int i_count) const; // rows to reserve: never more than the text can hold

    DeckLines mLines;
    Deck mDeck;
    int mNumNode = 0;
    int mNumElem = 0;
    int mNumMaterial = 0;
    int mNumTables = 0; // of displacements
};

} // namespace voz::deck

#endif
