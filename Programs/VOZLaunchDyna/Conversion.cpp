#include "Conversion.h"

#include "StateRecord.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <optional>

namespace voz::launch
{
namespace
{
static_assert(std::endian::native == std::endian::little, "the records are little-endian and written as they stand");

constexpr double kSameTime = 1e-6; // of the end: what rounding of times in the deck and in the results may take
constexpr double kReach = 0.1;     // of the way to the next point: a solver is late by a step of its own, no more
constexpr double kStep = 1e-3;     // of the end: what such a step may be at most, and the rounding of ENDTIM in a deck

// The states for the output points, in the order of the points; -1 where there is none.
std::vector<std::ptrdiff_t> chooseStates(std::vector<StateEntry> const & states, std::vector<double> const & times)
{
    double const latest = times.empty() ? 0.0 : *std::max_element(times.begin(), times.end());
    double const same = kSameTime * latest;
    std::vector<std::ptrdiff_t> chosen(times.size(), -1);
    for (std::size_t i = 0; i < times.size(); ++i)
    {
        double reach = kReach * latest;
        for (double const other : times)
            if (std::fabs(other - times[i]) > same)
                reach = std::min(reach, kReach * std::fabs(other - times[i]));
        double best = std::max(reach, kStep * latest);
        for (std::size_t k = 0; k < states.size(); ++k)
        {
            double const distance = std::fabs(states[k].time - times[i]);
            bool const isLaterMesh =
                chosen[i] >= 0 && distance <= best && states[k].root > states[static_cast<std::size_t>(chosen[i])].root;
            if ((chosen[i] < 0 && distance <= best) || distance < best || isLaterMesh)
            {
                best = distance;
                chosen[i] = static_cast<std::ptrdiff_t>(k);
            }
        }
    }
    return chosen;
}

class RecordFile
{
public:
    explicit RecordFile(std::filesystem::path const & i_path) : mPath(i_path), mBuffer(1 << 16)
    {
        mStream.rdbuf()->pubsetbuf(mBuffer.data(), static_cast<std::streamsize>(mBuffer.size()));
        mStream.open(i_path, std::ios::binary | std::ios::trunc);
        Check();
    }

    void Write(int i_step, StateRecord const & i_record)
    {
        Put(i_step);
        Put(static_cast<std::int32_t>(i_record.coordinates.size() / 3));
        PutAll(i_record.coordinates);
        Put(static_cast<std::int32_t>(i_record.connectivity.size() / 4));
        PutAll(i_record.connectivity);
        Put(static_cast<std::int32_t>(i_record.stress.size()));
        for (auto const * const values : {&i_record.stress, &i_record.top, &i_record.bottom, &i_record.middle})
            PutAll(*values);
        Check();
    }

    void Close()
    {
        mStream.close();
        Check();
    }

private:
    void Put(std::int32_t i_value) { mStream.write(reinterpret_cast<char const *>(&i_value), sizeof(i_value)); }

    template <class Value>
    void PutAll(std::vector<Value> const & i_values)
    {
        static_assert(sizeof(Value) == 4);
        mStream.write(reinterpret_cast<char const *>(i_values.data()),
                      static_cast<std::streamsize>(4 * i_values.size()));
    }

    void Check() const
    {
        if (!mStream)
            throw OutputError(mPath.string() + " could not be written: " + std::strerror(errno));
    }

    std::filesystem::path mPath;
    std::vector<char> mBuffer;
    std::ofstream mStream;
};

// Goes through the output points in order; keeps the reader of one root at a time.
class Converter
{
public:
    Converter(StateIndex const & i_index, RecordFile & io_file, Converted & io_result)
        : m_index(i_index), m_file(io_file), m_result(io_result)
    {
    }

    bool Convert(int i_step, StateEntry const & i_state)
    {
        std::string why;
        try
        {
            if (!OpenRoot(i_state.root))
                return false;
            if (m_maker->Read(i_state.place, m_record, why))
            {
                m_file.Write(i_step, m_record);
                return true;
            }
        }
        catch (ResultsError const & error)
        {
            why = error.what();
        }
        m_result.notes.push_back("output point " + std::to_string(i_step) + " was left out: " + why);
        return false;
    }

private:
    // False if that root cannot be used, which is said once.
    bool OpenRoot(std::size_t i_root)
    {
        if (m_root == i_root)
            return m_maker.has_value();
        m_root = i_root;
        m_maker.reset();
        m_reader.emplace(m_index.roots[i_root], m_index.layouts[i_root].format);
        try
        {
            m_maker.emplace(*m_reader, m_index.layouts[i_root], kBlankPart);
        }
        catch (ResultsError const & error)
        {
            m_result.notes.push_back(error.what());
        }
        return m_maker.has_value();
    }

    StateIndex const & m_index;
    RecordFile & m_file;
    Converted & m_result;
    std::size_t m_root = static_cast<std::size_t>(-1);
    std::optional<WordReader> m_reader;
    std::optional<RecordMaker> m_maker;
    StateRecord m_record;
};

void finish(std::filesystem::path const & folder, bool isWorthKeeping)
{
    std::error_code error;
    if (isWorthKeeping)
        std::filesystem::rename(folder / kRecordsUnderWay, folder / kRecordsFile, error);
    else
        for (char const * const name : {kRecordsUnderWay, kRecordsFile}) // old records are not of these results
            if (!error)
                std::filesystem::remove(folder / name, error);
    if (error)
        throw OutputError((folder / kRecordsFile).string() + " could not be written: " + error.message());
}
} // namespace

// O(points x states) for the choice, then the words of the chosen states.
Converted ConvertResults(std::filesystem::path const & i_folder, std::vector<double> const & i_times,
                         std::function<void(int)> const & i_progress)
{
    Converted result;
    StateIndex const index = IndexStates(i_folder, result.notes);
    if (index.roots.empty() && result.notes.empty())
        result.notes.push_back("no result files (d3plot) in " + i_folder.string());
    std::vector<std::ptrdiff_t> const chosen = chooseStates(index.states, i_times);
    try
    {
        RecordFile file(i_folder / kRecordsUnderWay);
        Converter converter(index, file, result);
        for (std::size_t i = 0; i < chosen.size(); ++i)
        {
            int const step = static_cast<int>(i);
            if (chosen[i] >= 0 && converter.Convert(step, index.states[static_cast<std::size_t>(chosen[i])]))
                ++result.records;
            else
                result.missing.push_back(step);
            if (i_progress)
                i_progress(result.records);
        }
        file.Close();
    }
    catch (...) // half a file is of no use, and the disk may be full of it
    {
        std::error_code ignored;
        if (!std::filesystem::is_directory(i_folder / kRecordsUnderWay, ignored))
            std::filesystem::remove(i_folder / kRecordsUnderWay, ignored);
        throw;
    }
    finish(i_folder, result.records > 0);
    return result;
}

double LastStateTime(std::filesystem::path const & i_folder)
{
    std::vector<std::string> ignored; // what grows is cut short
    double last = -1.0;
    for (StateEntry const & state : IndexStates(i_folder, ignored).states)
        last = std::max(last, state.time);
    return last;
}
} // namespace voz::launch
