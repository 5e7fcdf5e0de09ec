// OutputRecords.h: which records a file "output.voz" holds, without their values (VOZDynaResults.h tells the layout).

#ifndef OUTPUTRECORDS_H
#define OUTPUTRECORDS_H

#include <string>
#include <vector>

namespace voz::workbench
{

struct OutputRecord
{
    int step = 0;
    int nodes = 0;
    int elements = 0;
    int components = 0; // of each of the four arrays
};

struct OutputRecords
{
    std::vector<OutputRecord> whole; // in the order of the file
    std::string fault;               // why nothing more was read; empty: the file ends with the last whole record
};

// Reads counts and passes over values, so that it costs little whatever the size of the file. Throws InputError where
// the file cannot be opened.
OutputRecords ScanRecords(std::string const & i_path);

} // namespace voz::workbench

#endif
