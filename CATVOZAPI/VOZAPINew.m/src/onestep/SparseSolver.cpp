// SparseSolver.cpp: the engine-independent part.

#include "onestep/SparseSolver.h"

#include <algorithm>

namespace voz::onestep
{

int SparsePattern::find(int i_row, int i_column) const
{
    auto const row = static_cast<std::size_t>(i_row);
    auto const first = column.begin() + rowStart[row];
    auto const last = column.begin() + rowStart[row + 1];
    auto const place = std::lower_bound(first, last, i_column);
    return place != last && *place == i_column ? static_cast<int>(place - column.begin()) : -1;
}

} // namespace voz::onestep
