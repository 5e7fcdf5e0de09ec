// JobTable.h: a table of a job file, read key by key: types, units and unknown keys are looked after here.
//
// Each value that is asked for is noted with its unit, and whether it is the default; that list is what "explain"
// shows. Finish() refuses every key that nobody asked for, and names the nearest that somebody did. All errors are
// InputErrors with the file and the line of the key.

#ifndef JOBTABLE_H
#define JOBTABLE_H

#include "InputError.h"
#include "Outcome.h"
#include "Quantity.h"

#include <optional>
#include <set>
#include <string>
#include <toml++/toml.h>
#include <vector>

namespace voz::workbench
{

struct JobContext
{
    std::string file;
    std::vector<OutcomeParameter> parameters;
    std::vector<std::string> warnings;

    [[noreturn]] void Fail(int i_line, std::string const & i_message) const
    {
        throw InputError(file, i_line, 0, i_message);
    }
};

class JobTable
{
public:
    // i_table: null for a table that the file leaves out; every key then takes its default.
    JobTable(JobContext & io_context, toml::table const * i_table, std::string i_path);

    bool IsPresent() const { return mTable != nullptr; }
    bool Has(std::string const & i_key) const; // also as a quantity with its unit in the key
    int Line() const;
    int LineOf(std::string const & i_key) const; // of the key or of its form with a unit; else of the table

    // Each notes the value under its key. The forms with a default never fail for want of the key.
    std::optional<double> Quantity(std::string const & i_key, Dimension i_dimension);
    double Quantity(std::string const & i_key, Dimension i_dimension, double i_default);
    double NeededQuantity(std::string const & i_key, Dimension i_dimension);
    std::optional<double> Number(std::string const & i_key);
    double Number(std::string const & i_key, double i_default);
    int Integer(std::string const & i_key, int i_default);
    bool Flag(std::string const & i_key, bool i_default);
    std::optional<std::string> Text(std::string const & i_key);
    std::string Text(std::string const & i_key, std::string const & i_default);
    std::string NeededText(std::string const & i_key);
    std::string Choice(std::string const & i_key, std::vector<std::string> const & i_choices,
                       std::string const & i_default);

    // Arrays: empty where the key is missing. A quantity array has its unit in the key ("points_mm").
    std::vector<double> Numbers(std::string const & i_key);
    std::vector<int> Integers(std::string const & i_key);
    std::vector<double> Quantities(std::string const & i_key, Dimension i_dimension);
    std::vector<Point3> Points(std::string const & i_key); // a length each
    std::optional<Point3> Direction(std::string const & i_key);

    JobTable Table(std::string const & i_key);
    JobTable NeededTable(std::string const & i_key, std::string const & i_expected);
    std::vector<JobTable> Tables(std::string const & i_key); // one table or an array of tables

    // Refuses a value of the key, at its line.
    [[noreturn]] void Refuse(std::string const & i_key, std::string const & i_message) const;
    void Warn(std::string const & i_key, std::string const & i_message) const;
    // A value that was worked out from others, for the list.
    void Note(std::string const & i_key, std::string const & i_value, std::string const & i_unit, bool i_isDefault);
    void Effect(std::string const & i_text); // what the value that was noted last does
    void Finish() const;                     // refuses keys that were never asked for

    std::string Name(std::string const & i_key) const; // with the table's path: "blank_holder.level"

private:
    struct Found
    {
        toml::node const * node = nullptr;
        std::string key;             // as the file has it
        Unit const * unit = nullptr; // from the key
    };

    toml::node const * Find(std::string const & i_key);
    Found FindQuantity(std::string const & i_key, Dimension i_dimension);
    [[noreturn]] void Missing(std::string const & i_key, std::string const & i_expected) const;
    double Finite(toml::node const & i_node, std::string const & i_name) const;
    toml::array const * Array(toml::node const * i_node, std::string const & i_name) const;

    JobContext * mContext;
    toml::table const * mTable;
    std::string mPath;
    std::set<std::string> mAsked; // keys that a file may have here
};

} // namespace voz::workbench

#endif
