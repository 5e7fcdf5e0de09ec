// DynaCards.h: the cards of an LS-DYNA keyword deck that are read, cut into their fields.
//
// A line with a comma is in free form; else its fields have fixed widths: the standard ones, ten columns for every id
// (I10), or twenty for every field (long).

#ifndef DYNACARDS_H
#define DYNACARDS_H

#include "NumberText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace voz::workbench::dyna
{

enum class Width
{
    Standard,
    I10,
    Long
};

// A field of a card as the standard form has it; long makes each 20 columns.
enum class Column
{
    Id,  // 8; I10 makes it 10
    Ten, // 10
    Real // 16
};

inline std::size_t columnsOf(Column kind, Width width)
{
    if (width == Width::Long)
        return 20;
    if (kind == Column::Id)
        return width == Width::I10 ? 10 : 8;
    return kind == Column::Ten ? 10 : 16;
}

constexpr std::size_t kMostFields = 10;
constexpr Column kNodeCard[] = {Column::Id, Column::Real, Column::Real, Column::Real};
constexpr Column kShellCard[] = {Column::Id, Column::Id, Column::Id, Column::Id, Column::Id,
                                 Column::Id, Column::Id, Column::Id, Column::Id, Column::Id};
constexpr Column kRealCard[] = {Column::Real, Column::Real, Column::Real, Column::Real, Column::Real};
constexpr Column kTenCard[] = {Column::Ten, Column::Ten, Column::Ten, Column::Ten,
                               Column::Ten, Column::Ten, Column::Ten, Column::Ten};

struct Card
{
    std::array<std::string_view, kMostFields> texts;
    std::array<std::size_t, kMostFields> columns{};
};

template <std::size_t N>
Card cut(std::string_view line, Column const (&kinds)[N], Width width)
{
    Card card;
    bool const isFree = line.find(',') != std::string_view::npos;
    std::size_t begin = 0;
    for (std::size_t k = 0; k < N && begin <= line.size(); ++k)
    {
        std::size_t const end = isFree ? std::min(line.find(',', begin), line.size())
                                       : std::min(begin + columnsOf(kinds[k], width), line.size());
        std::string_view const field = line.substr(begin, end - begin);
        card.texts[k] = Trimmed(field);
        card.columns[k] = begin + 1;
        if (!card.texts[k].empty())
            card.columns[k] += static_cast<std::size_t>(card.texts[k].data() - field.data());
        begin = isFree ? end + 1 : end;
    }
    return card;
}

} // namespace voz::workbench::dyna

#endif
