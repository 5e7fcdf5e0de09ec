// XmlDatabase.cpp: files, places, numbers and units of XML databases.

#include "XmlDatabase.h"

#include "TextOf.h"
#include "VOZFile.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

namespace
{
std::string Contents(std::string const & i_file, std::string const & i_what)
{
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> const pFile(VOZOpenFile(i_file.c_str(), "rb"), std::fclose);
    if (!pFile)
        throw XmlDatabaseError(i_file + ": cannot be opened: " + std::strerror(errno) + "; expected " + i_what +
                               " in XML");
    std::string text;
    std::array<char, 65536> block;
    while (std::size_t const nRead = std::fread(block.data(), 1, block.size(), pFile.get()))
        text.append(block.data(), nRead);
    if (std::ferror(pFile.get()))
        throw XmlDatabaseError(i_file + ": cannot be read");
    return text;
}
} // namespace

std::vector<std::string> XmlDatabaseFiles(std::string const & i_path, std::string const & i_what)
{
    std::string slashed = i_path;
    std::replace(slashed.begin(), slashed.end(), '\\', '/');
    std::filesystem::path const path(slashed);
    std::error_code error;
    if (!std::filesystem::is_directory(path, error))
        return {i_path};

    std::vector<std::string> files;
    std::filesystem::directory_iterator entries(path, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error))
        if (entries->path().extension() == ".xml")
            files.push_back(entries->path().generic_string());
    if (error)
        throw XmlDatabaseError(i_path + ": the folder cannot be read: " + error.message());
    if (files.empty())
        throw XmlDatabaseError(i_path + ": the folder holds no file; expected " + i_what + " \"*.xml\"");
    std::sort(files.begin(), files.end());
    return files;
}

std::string Trimmed(std::string_view i_text)
{
    constexpr char const * kBlanks = " \t\r\n";
    std::size_t const first = i_text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(i_text.substr(first, i_text.find_last_not_of(kBlanks) - first + 1));
}

std::string ListOf(std::vector<std::string> const & i_names)
{
    std::string list;
    for (std::size_t i = 0; i < i_names.size(); ++i)
        list += TextOf(i == 0 ? "" : i + 1 == i_names.size() ? " or " : ", ", "\"", i_names[i], "\"");
    return list;
}

XmlDatabaseFile::XmlDatabaseFile(std::string const & i_file, std::string const & i_what)
    : m_file(i_file), m_text(Contents(i_file, i_what))
{
}

pugi::xml_node XmlDatabaseFile::Root(std::string const & i_name)
{
    // As a fragment: what stands beside the document's element would be passed over without a word otherwise.
    pugi::xml_parse_result const result = m_document.load_buffer(
        m_text.data(), m_text.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
    pugi::xml_node const root = m_document.document_element();
    if (!result || !root)
        Refuse(result.offset, TextOf("the XML is broken (", result ? "there is no element" : result.description(), ")"),
               TextOf("a well-formed <", i_name, "> document"));
    if (root.name() != i_name)
        Refuse(root, TextOf("the document's element is ", Tag(root)), TextOf("<", i_name, ">"));
    for (pugi::xml_node const & node : m_document.children())
        if (node != root)
            Refuse(node, TextOf("beside ", Tag(root), " stands ", Shown(node)), TextOf("one ", Tag(root), " alone"));
    return root;
}

std::string XmlDatabaseFile::NewName(pugi::xml_node const & i_node, std::string const & i_what,
                                     PlacesOfNames & io_placeOfName) const
{
    std::string const name = i_node.attribute("name").value();
    if (name.empty() || name != Trimmed(name))
        Refuse(i_node, TextOf(i_what, " has no name"), "name=\"...\" without blanks at its ends");
    auto const [known, isNew] = io_placeOfName.emplace(name, Place(i_node.offset_debug()));
    if (!isNew)
        Refuse(i_node, TextOf("the name \"", name, "\" stands at ", known->second, " already"), "a name of its own");
    return name;
}

std::string XmlDatabaseFile::Place(std::ptrdiff_t i_offset) const
{
    auto const end = m_text.begin() + std::clamp<std::ptrdiff_t>(i_offset, 0, std::ssize(m_text));
    return m_file + ":" + std::to_string(1 + std::count(m_text.begin(), end, '\n'));
}

void XmlDatabaseFile::Refuse(std::ptrdiff_t i_offset, std::string const & i_found, std::string const & i_expected) const
{
    throw XmlDatabaseError(Place(i_offset) + ": " + i_found + "; expected " + i_expected);
}

void XmlDatabaseFile::Refuse(pugi::xml_node const & i_node, std::string const & i_found,
                             std::string const & i_expected) const
{
    Refuse(i_node.offset_debug(), i_found, i_expected);
}

std::string XmlDatabaseFile::Tag(pugi::xml_node const & i_node)
{
    return TextOf("<", i_node.name(), ">");
}

std::string XmlDatabaseFile::Shown(pugi::xml_node const & i_node)
{
    if (i_node.type() == pugi::node_element)
        return Tag(i_node);
    return TextOf("the text \"", Trimmed(i_node.value()).substr(0, 40), "\"");
}

void XmlDatabaseFile::CheckAttributes(pugi::xml_node const & i_node, std::vector<std::string> const & i_known) const
{
    for (pugi::xml_attribute const & attribute : i_node.attributes())
    {
        if (std::find(i_known.begin(), i_known.end(), attribute.name()) == i_known.end())
            Refuse(i_node, TextOf(Tag(i_node), " has the attribute \"", attribute.name(), "\""),
                   i_known.empty() ? "no attribute" : ListOf(i_known));
        if (i_node.attribute(attribute.name()) != attribute)
            Refuse(i_node, TextOf(Tag(i_node), " has the attribute \"", attribute.name(), "\" twice"), "it once");
    }
}

std::string XmlDatabaseFile::Text(pugi::xml_node const & i_node) const
{
    for (pugi::xml_node const & child : i_node.children())
        if (child != i_node.first_child() || child.type() == pugi::node_element)
            Refuse(child, TextOf(Tag(i_node), " holds ", Shown(child)), "one text alone");
    return Trimmed(i_node.child_value());
}

double XmlDatabaseFile::Number(pugi::xml_node const & i_node, std::string_view i_text, std::string const & i_what) const
{
    std::string const text = Trimmed(i_text);
    double value = 0.0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        Refuse(i_node, TextOf(i_what, " is \"", text.substr(0, 40), "\""), "a number");
    return value;
}

double XmlDatabaseFile::Factor(pugi::xml_node const & i_node, Units const & i_units) const
{
    if (!i_units.front().name)
    {
        CheckAttributes(i_node, {});
        return 1.0;
    }
    CheckAttributes(i_node, {"unit"});
    std::string const unit = i_node.attribute("unit").value();
    std::vector<std::string> names;
    for (Unit const & known : i_units)
    {
        if (!known.name)
            continue;
        if (unit == known.name)
            return known.factor;
        names.emplace_back(known.name);
    }
    Refuse(i_node, TextOf(Tag(i_node), " has ", unit.empty() ? "no unit" : TextOf("the unit \"", unit, "\"")),
           TextOf("unit=", ListOf(names)));
}

double XmlDatabaseFile::Quantity(pugi::xml_node const & i_node, Units const & i_units, double i_dLeast,
                                 double i_dGreatest) const
{
    double const factor = Factor(i_node, i_units);
    std::string const text = Text(i_node);
    double const value = factor * Number(i_node, text, Tag(i_node));
    if (!(value >= i_dLeast && value <= i_dGreatest))
        Refuse(i_node, TextOf(Tag(i_node), " is ", text),
               TextOf(i_dLeast / factor, " to ", i_dGreatest / factor, i_units.front().name ? " " : "",
                      i_node.attribute("unit").value()));
    return value;
}
