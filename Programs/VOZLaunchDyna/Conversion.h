// Conversion.h: the results of a folder into "output.voz".
//
// Output point i of the deck becomes the record with step number i: of the state nearest to its time, which may lie off
// it by at most a tenth of the way to the next point, or a thousandth of the run: points that are nearer to each other
// than the solver's step share a state. Of several states at one time that of the later mesh is taken, and of one mesh
// the first. A point without a state has no record. Memory: one mesh and one record, whatever the number of states.

#ifndef CONVERSION_H
#define CONVERSION_H

#include "DeckTimes.h"

#include <functional>

namespace voz::launch
{
constexpr int kBlankPart = 5; // PID of the blank in the deck
constexpr char kRecordsFile[] = "output.voz";
constexpr char kRecordsUnderWay[] = "output.voz.new";

// "output.voz" could not be written.
struct OutputError : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

struct Converted
{
    int records = 0;
    std::vector<int> missing;       // output points without a record
    std::vector<std::string> notes; // what was cut or left out, a line each
};

// Writes under kRecordsUnderWay and renames when whole; without a record there is no file. i_progress is called with
// the number of records after each. Throws OutputError.
Converted ConvertResults(std::filesystem::path const & i_folder, std::vector<double> const & i_times,
                         std::function<void(int)> const & i_progress = {});

// The time of the last whole state in the folder, s; negative if there is none. Results that grow may be looked at.
double LastStateTime(std::filesystem::path const & i_folder);
} // namespace voz::launch

#endif
