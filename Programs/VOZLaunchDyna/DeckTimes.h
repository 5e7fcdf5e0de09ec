// DeckTimes.h: when the deck "inputls.dyn" asks for output.

#ifndef DECKTIMES_H
#define DECKTIMES_H

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace voz::launch
{
// The deck cannot be used; the text says file, line and what was expected.
struct DeckError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

struct DeckTimes
{
    double end = 0.0;           // ENDTIM, s
    std::vector<double> points; // s, one per record; the last is the end
};

// Reads *CONTROL_TERMINATION, *DATABASE_BINARY_D3PLOT and the curve that it names, of which each abscissa is an output;
// the end of the run is one more, unless the curve has i_count rows already. A fixed interval instead of a curve gives
// its multiples. Without either, i_count points are spread evenly. Throws DeckError.
DeckTimes ReadDeckTimes(std::filesystem::path const & i_deck, int i_count);
} // namespace voz::launch

#endif
