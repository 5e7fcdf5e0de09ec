// SolverSettings.cpp: reads "solver.cfg".

#include "SolverSettings.h"

#include "DeckReader.h"
#include "DeckText.h"

#include <filesystem>
#include <set>

namespace voz::deck
{

namespace
{
// One entry: its value tested and stored.
class Entry
{
public:
    Entry(std::string const & i_file, int i_line, std::string_view i_key, std::string_view i_value)
        : mRow(i_file, i_line, i_value), mKey(i_key)
    {
    }

    double Real(double i_least, double i_greatest, char const * i_range) const
    {
        double const value = One().Real(1, mKey.c_str());
        if (value < i_least || value > i_greatest)
            mRow.Fail(mKey + " is " + std::string(mRow.Field(1)) + "; expected " + i_range);
        return value;
    }
    int Int(int i_least, int i_greatest) const { return One().Int(1, i_least, i_greatest, mKey.c_str()); }
    [[noreturn]] void Fail(std::string const & i_text) const { mRow.Fail(i_text); }

private:
    Row const & One() const
    {
        mRow.Expect(1, mKey.c_str());
        return mRow;
    }

    Row mRow;
    std::string mKey;
};

void store(std::string_view key, Entry const & entry, SolverSettings & o_settings)
{
    if (key == "YoungsModulus")
        o_settings.youngsModulus = entry.Real(1.0e9, 1.0e12, "pascals, 1e9 to 1e12");
    else if (key == "PoissonsRatio")
        o_settings.poissonsRatio = entry.Real(0.0, 0.499, "0 to 0.499");
    else if (key == "ToolFriction")
        o_settings.toolFriction = entry.Int(0, 1) != 0;
    else if (key == "Steps")
        o_settings.steps = entry.Int(1, 3);
    else
        entry.Fail("unknown key " + Quoted(key) + "; expected YoungsModulus, PoissonsRatio, ToolFriction or Steps");
}
} // namespace

SolverSettings ParseSettings(std::string const & i_name, std::string_view i_text)
{
    SolverSettings settings;
    std::set<std::string_view> seen;
    for (DeckLines lines(i_name, i_text); !lines.AtEnd(); lines.Next())
    {
        std::string_view const line = lines.Line();
        if (line.empty() || line[0] == '#')
            continue;
        std::size_t const equals = line.find('=');
        if (equals == std::string_view::npos)
            lines.Fail("found " + Quoted(line) + "; expected key=value");
        std::string_view const key = line.substr(0, equals);
        if (!seen.insert(key).second)
            lines.Fail("the key " + Quoted(key) + " comes a second time; expected it once");
        store(key, Entry(i_name, lines.Number(), key, line.substr(equals + 1)), settings);
    }
    return settings;
}

SolverSettings ReadSettings(std::string const & i_path)
{
    std::error_code error;
    if (!std::filesystem::exists(i_path, error))
        return {};
    std::string const text = ReadWholeFile(i_path);
    return ParseSettings(i_path, text);
}

} // namespace voz::deck
