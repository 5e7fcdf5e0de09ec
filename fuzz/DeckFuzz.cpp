// DeckFuzz.cpp: any text as a deck: read and turned into records, or refused with a message.
//
//     DeckFuzz -dict=fuzz/dictionaries/DeckFuzz.dict fuzz/seeds/DeckFuzz

#include "DeckReader.h"
#include "DeckRecords.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * i_data, std::size_t i_size)
{
    try
    {
        std::string_view const text(reinterpret_cast<char const *>(i_data), i_size);
        voz::deck::MakeRecords(voz::deck::ParseDeck("deck.fpi", text), voz::deck::SolverSettings());
    }
    catch (voz::deck::DeckError const &)
    {
    }
    return 0;
}
