// JobTable.cpp: a table of a job file, read key by key.

#include "JobTable.h"

#include "OutputFile.h"

#include <cmath>
#include <limits>
#include <sstream>

namespace voz::workbench
{

namespace
{
int LineOfNode(toml::node const & i_node)
{
    return static_cast<int>(i_node.source().begin.line);
}

std::string Described(toml::node const & i_node)
{
    switch (i_node.type())
    {
    case toml::node_type::table:
        return "a table";
    case toml::node_type::array:
        return "an array";
    case toml::node_type::string:
        return "the text \"" + i_node.as_string()->get() + "\"";
    case toml::node_type::integer:
    case toml::node_type::floating_point:
        return "a number";
    case toml::node_type::boolean:
        return "true or false";
    default:
        return "a date or time";
    }
}

bool IsNumber(toml::node const & i_node)
{
    return i_node.is_integer() || i_node.is_floating_point();
}

std::string Joined(std::vector<std::string> const & i_texts)
{
    std::string list;
    for (std::string const & text : i_texts)
        list += (list.empty() ? "\"" : ", \"") + text + "\"";
    return list;
}
} // namespace

JobTable::JobTable(JobContext & io_context, toml::table const * i_table, std::string i_path)
    : mContext(&io_context), mTable(i_table), mPath(std::move(i_path))
{
}

int JobTable::Line() const
{
    return mTable == nullptr ? 0 : LineOfNode(*mTable);
}

std::string JobTable::Name(std::string const & i_key) const
{
    return mPath.empty() ? i_key : mPath + "." + i_key;
}

bool JobTable::Has(std::string const & i_key) const
{
    if (mTable == nullptr)
        return false;
    if (mTable->contains(i_key))
        return true;
    for (auto const & [key, node] : *mTable)
        if (key.str().size() > i_key.size() + 1 && key.str().starts_with(i_key) && key.str()[i_key.size()] == '_' &&
            FindSuffix(key.str().substr(i_key.size() + 1)) != nullptr)
            return true;
    return false;
}

int JobTable::LineOf(std::string const & i_key) const
{
    if (mTable == nullptr)
        return 0;
    if (toml::node const * const node = mTable->get(i_key))
        return LineOfNode(*node);
    for (auto const & [key, node] : *mTable)
        if (key.str().starts_with(i_key + "_"))
            return LineOfNode(node);
    return Line();
}

void JobTable::Refuse(std::string const & i_key, std::string const & i_message) const
{
    mContext->Fail(LineOf(i_key), Name(i_key) + ": " + i_message);
}

void JobTable::Warn(std::string const & i_key, std::string const & i_message) const
{
    mContext->warnings.push_back(Name(i_key) + ": " + i_message);
}

void JobTable::Note(std::string const & i_key, std::string const & i_value, std::string const & i_unit,
                    bool i_isDefault)
{
    mContext->parameters.push_back({Name(i_key), i_value, i_unit, i_isDefault, {}});
}

void JobTable::Effect(std::string const & i_text)
{
    mContext->parameters.back().effect = i_text;
}

toml::node const * JobTable::Find(std::string const & i_key)
{
    mAsked.insert(i_key);
    return mTable == nullptr ? nullptr : mTable->get(i_key);
}

JobTable::Found JobTable::FindQuantity(std::string const & i_key, Dimension i_dimension)
{
    Found found;
    found.node = Find(i_key);
    found.key = i_key;
    for (Unit const & unit : AllUnits())
    {
        if (unit.dimension != i_dimension)
            continue;
        std::string const key = i_key + "_" + std::string(unit.suffix);
        toml::node const * const node = Find(key);
        if (node == nullptr)
            continue;
        if (found.node != nullptr)
            mContext->Fail(LineOfNode(*node),
                           Name(i_key) + " is given twice, as \"" + found.key + "\" and as \"" + key + "\"");
        found = {node, key, &unit};
    }
    return found;
}

double JobTable::Finite(toml::node const & i_node, std::string const & i_name) const
{
    if (!IsNumber(i_node))
        mContext->Fail(LineOfNode(i_node), i_name + " must be a number, not " + Described(i_node));
    double const value = *i_node.value<double>();
    if (!std::isfinite(value))
        mContext->Fail(LineOfNode(i_node), i_name + " must be a finite number");
    return value;
}

std::optional<double> JobTable::Quantity(std::string const & i_key, Dimension i_dimension)
{
    Found const found = FindQuantity(i_key, i_dimension);
    if (found.node == nullptr)
        return std::nullopt;
    int const line = LineOfNode(*found.node);
    std::string const example = "\"... " + std::string(BaseUnit(i_dimension).text) + "\" or " + i_key + "_" +
                                std::string(BaseUnit(i_dimension).suffix) + " = ...";
    double value = 0.0;
    if (found.unit != nullptr)
        value = Finite(*found.node, Name(found.key)) * found.unit->factor;
    else if (toml::value<std::string> const * const text = found.node->as_string())
    {
        ParsedQuantity const parsed = ParseQuantity(text->get(), i_dimension);
        if (!parsed.error.empty())
            mContext->Fail(line, Name(i_key) + ": " + parsed.error);
        value = parsed.value;
        if (!std::isfinite(value))
            mContext->Fail(line, Name(i_key) + " must be a finite number");
    }
    else if (IsNumber(*found.node))
        mContext->Fail(line, Name(i_key) + " needs a unit: write " + i_key + " = " + example);
    else
        mContext->Fail(line, Name(i_key) + " must be " + std::string(NameOf(i_dimension)) + " (" + example + "), not " +
                                 Described(*found.node));
    Note(i_key, Shortest(value), std::string(BaseUnit(i_dimension).text), false);
    return value;
}

double JobTable::Quantity(std::string const & i_key, Dimension i_dimension, double i_default)
{
    if (std::optional<double> const value = Quantity(i_key, i_dimension))
        return *value;
    Note(i_key, Shortest(i_default), std::string(BaseUnit(i_dimension).text), true);
    return i_default;
}

double JobTable::NeededQuantity(std::string const & i_key, Dimension i_dimension)
{
    if (std::optional<double> const value = Quantity(i_key, i_dimension))
        return *value;
    Missing(i_key, std::string(NameOf(i_dimension)) + " (" + UnitsOf(i_dimension) + ")");
}

std::optional<double> JobTable::Number(std::string const & i_key)
{
    toml::node const * const node = Find(i_key);
    if (node == nullptr)
        return std::nullopt;
    double const value = Finite(*node, Name(i_key));
    Note(i_key, Shortest(value), "", false);
    return value;
}

double JobTable::Number(std::string const & i_key, double i_default)
{
    if (std::optional<double> const value = Number(i_key))
        return *value;
    Note(i_key, Shortest(i_default), "", true);
    return i_default;
}

int JobTable::Integer(std::string const & i_key, int i_default)
{
    toml::node const * const node = Find(i_key);
    if (node == nullptr)
    {
        Note(i_key, std::to_string(i_default), "", true);
        return i_default;
    }
    std::optional<std::int64_t> const value = node->is_integer() ? node->value<std::int64_t>() : std::nullopt;
    if (!value || *value < std::numeric_limits<int>::min() || *value > std::numeric_limits<int>::max())
        mContext->Fail(LineOfNode(*node), Name(i_key) + " must be a whole number, not " + Described(*node));
    Note(i_key, std::to_string(*value), "", false);
    return static_cast<int>(*value);
}

bool JobTable::Flag(std::string const & i_key, bool i_default)
{
    toml::node const * const node = Find(i_key);
    if (node == nullptr)
    {
        Note(i_key, i_default ? "true" : "false", "", true);
        return i_default;
    }
    if (!node->is_boolean())
        mContext->Fail(LineOfNode(*node), Name(i_key) + " must be true or false, not " + Described(*node));
    bool const value = *node->value<bool>();
    Note(i_key, value ? "true" : "false", "", false);
    return value;
}

std::optional<std::string> JobTable::Text(std::string const & i_key)
{
    toml::node const * const node = Find(i_key);
    if (node == nullptr)
        return std::nullopt;
    if (!node->is_string())
        mContext->Fail(LineOfNode(*node), Name(i_key) + " must be a text, not " + Described(*node));
    std::string text = node->as_string()->get();
    if (text.find('\0') != std::string::npos)
        mContext->Fail(LineOfNode(*node), Name(i_key) + " holds a zero character");
    Note(i_key, text, "", false);
    return text;
}

std::string JobTable::Text(std::string const & i_key, std::string const & i_default)
{
    if (std::optional<std::string> text = Text(i_key))
        return *text;
    Note(i_key, i_default, "", true);
    return i_default;
}

std::string JobTable::NeededText(std::string const & i_key)
{
    if (std::optional<std::string> text = Text(i_key))
        return *text;
    Missing(i_key, "a text");
}

std::string JobTable::Choice(std::string const & i_key, std::vector<std::string> const & i_choices,
                             std::string const & i_default)
{
    std::string text = Text(i_key, i_default);
    for (std::string const & choice : i_choices)
        if (text == choice)
            return text;
    Refuse(i_key, "\"" + text + "\" is none of " + Joined(i_choices) + "; the nearest is \"" +
                      std::string(Nearest(text, i_choices)) + "\"");
}

toml::array const * JobTable::Array(toml::node const * i_node, std::string const & i_name) const
{
    if (i_node == nullptr)
        return nullptr;
    if (!i_node->is_array())
        mContext->Fail(LineOfNode(*i_node), i_name + " must be an array, not " + Described(*i_node));
    return i_node->as_array();
}

std::vector<double> JobTable::Numbers(std::string const & i_key)
{
    std::vector<double> values;
    toml::array const * const array = Array(Find(i_key), Name(i_key));
    if (array == nullptr)
        return values;
    for (toml::node const & node : *array)
        values.push_back(Finite(node, Name(i_key)));
    Note(i_key, std::to_string(values.size()) + " numbers", "", false);
    return values;
}

std::vector<int> JobTable::Integers(std::string const & i_key)
{
    std::vector<int> values;
    toml::array const * const array = Array(Find(i_key), Name(i_key));
    if (array == nullptr)
        return values;
    for (toml::node const & node : *array)
    {
        std::optional<std::int64_t> const value = node.is_integer() ? node.value<std::int64_t>() : std::nullopt;
        if (!value || *value < 0 || *value > std::numeric_limits<int>::max())
            mContext->Fail(LineOfNode(node), Name(i_key) + " must hold whole numbers, not " + Described(node));
        values.push_back(static_cast<int>(*value));
    }
    Note(i_key, std::to_string(values.size()) + " numbers", "", false);
    return values;
}

std::vector<double> JobTable::Quantities(std::string const & i_key, Dimension i_dimension)
{
    std::vector<double> values;
    Found const found = FindQuantity(i_key, i_dimension);
    toml::array const * const array = Array(found.node, Name(found.key));
    if (array == nullptr)
        return values;
    if (found.unit == nullptr)
        mContext->Fail(LineOfNode(*found.node), Name(i_key) + " needs a unit in its key: write " + i_key + "_" +
                                                    std::string(BaseUnit(i_dimension).suffix) + " = [...]");
    for (toml::node const & node : *array)
        values.push_back(Finite(node, Name(found.key)) * found.unit->factor);
    Note(i_key, std::to_string(values.size()) + " values", std::string(BaseUnit(i_dimension).text), false);
    return values;
}

std::vector<Point3> JobTable::Points(std::string const & i_key)
{
    std::vector<Point3> points;
    Found const found = FindQuantity(i_key, Dimension::Length);
    toml::array const * const array = Array(found.node, Name(found.key));
    if (array == nullptr)
        return points;
    if (found.unit == nullptr)
        mContext->Fail(LineOfNode(*found.node),
                       Name(i_key) + " needs a unit in its key: write " + i_key + "_mm = [[x, y, z], ...]");
    for (toml::node const & node : *array)
    {
        toml::array const * const row = node.as_array();
        if (row == nullptr || row->size() != 3)
            mContext->Fail(LineOfNode(node), Name(found.key) + " must hold points of three numbers, [x, y, z]");
        Point3 point;
        for (std::size_t i = 0; i < 3; ++i)
            point[i] = Finite(*row->get(i), Name(found.key)) * found.unit->factor;
        points.push_back(point);
    }
    Note(i_key, std::to_string(points.size()) + " points", "mm", false);
    return points;
}

std::optional<Point3> JobTable::Direction(std::string const & i_key)
{
    toml::node const * const node = Find(i_key);
    if (node == nullptr)
        return std::nullopt;
    toml::array const * const array = node->as_array();
    if (array == nullptr || array->size() != 3)
        mContext->Fail(LineOfNode(*node), Name(i_key) + " must be a direction of three numbers, [x, y, z]");
    Point3 direction;
    for (std::size_t i = 0; i < 3; ++i)
        direction[i] = Finite(*array->get(i), Name(i_key));
    double const length = std::hypot(direction[0], direction[1], direction[2]);
    if (!(length > 0.0) || !std::isfinite(length))
        mContext->Fail(LineOfNode(*node), Name(i_key) + " has no length: a direction needs one");
    for (double & component : direction)
        component /= length;
    Note(i_key, Shortest(direction[0]) + " " + Shortest(direction[1]) + " " + Shortest(direction[2]), "", false);
    return direction;
}

JobTable JobTable::Table(std::string const & i_key)
{
    toml::node const * const node = Find(i_key);
    if (node != nullptr && !node->is_table())
        mContext->Fail(LineOfNode(*node), Name(i_key) + " must be a table, not " + Described(*node));
    return {*mContext, node == nullptr ? nullptr : node->as_table(), Name(i_key)};
}

JobTable JobTable::NeededTable(std::string const & i_key, std::string const & i_expected)
{
    JobTable table = Table(i_key);
    if (!table.IsPresent())
        Missing(i_key, i_expected);
    return table;
}

std::vector<JobTable> JobTable::Tables(std::string const & i_key)
{
    std::vector<JobTable> tables;
    toml::node const * const node = Find(i_key);
    if (node == nullptr)
        return tables;
    if (node->is_table())
    {
        tables.emplace_back(*mContext, node->as_table(), Name(i_key));
        return tables;
    }
    if (!node->is_array())
        mContext->Fail(LineOfNode(*node),
                       Name(i_key) + " must be a table or an array of tables, not " + Described(*node));
    for (toml::node const & entry : *node->as_array())
    {
        if (!entry.is_table())
            mContext->Fail(LineOfNode(entry), Name(i_key) + " must hold tables, not " + Described(entry));
        tables.emplace_back(*mContext, entry.as_table(), Name(i_key) + "[" + std::to_string(tables.size() + 1) + "]");
    }
    return tables;
}

namespace
{
// "thickness" of "thickness_mm"; the key itself where it ends in no unit.
std::string WithoutUnit(std::string const & i_key)
{
    for (Unit const & unit : AllUnits())
        if (std::string const suffix = "_" + std::string(unit.suffix); i_key.ends_with(suffix))
            return i_key.substr(0, i_key.size() - suffix.size());
    return i_key;
}
} // namespace

// A key that stands in the table and differs from the missing one by a slip of the pen is what is wrong.
void JobTable::Missing(std::string const & i_key, std::string const & i_expected) const
{
    constexpr int kSlip = 2; // letters
    if (mTable != nullptr)
        for (auto const & [tomlKey, node] : *mTable)
        {
            std::string const key(tomlKey.str());
            std::string const name = WithoutUnit(key);
            if (!mAsked.contains(key) && EditDistance(name, i_key) <= kSlip)
                mContext->Fail(static_cast<int>(tomlKey.source().begin.line),
                               "unknown key \"" + Name(key) + "\"; the nearest valid key is \"" + i_key +
                                   key.substr(name.size()) + "\"");
        }
    mContext->Fail(Line(), Name(i_key) + " is missing: " + i_expected);
}

void JobTable::Finish() const
{
    if (mTable == nullptr)
        return;
    std::vector<std::string> const names(mAsked.begin(), mAsked.end());
    for (auto const & [tomlKey, node] : *mTable)
    {
        std::string const key(tomlKey.str());
        if (mAsked.contains(key))
            continue;
        // "thickness_kg": the quantity is known, the unit is none of it.
        for (Unit const & unit : AllUnits())
            for (std::string const & name : names)
                if (key == name + "_" + std::string(unit.suffix))
                    mContext->Fail(static_cast<int>(tomlKey.source().begin.line),
                                   Name(key) + ": \"" + std::string(unit.text) + "\" is no unit of " + name +
                                       "; the nearest valid key is \"" + std::string(Nearest(key, names)) + "\"");
        mContext->Fail(static_cast<int>(tomlKey.source().begin.line), "unknown key \"" + Name(key) +
                                                                          "\"; the nearest valid key is \"" +
                                                                          std::string(Nearest(key, names)) + "\"");
    }
}

} // namespace voz::workbench
