// XmlDatabase.h: what the readers of XML databases share: their files, the place of a mistake, numbers with units.
//
// A database is one XML file or a folder, of which every "*.xml" is read in the order of the names. Every refusal is an
// XmlDatabaseError whose text is "file:line: what was found; what was expected".

#ifndef XMLDATABASE_H
#define XMLDATABASE_H

#include <pugixml.hpp>

#include <array>
#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

class XmlDatabaseError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The files of the database at this path, a backslash being a separator; i_what names it in messages.
std::vector<std::string> XmlDatabaseFiles(std::string const & i_path, std::string const & i_what);

std::string Trimmed(std::string_view i_text);

// "a", "b" or "c".
std::string ListOf(std::vector<std::string> const & i_names);

// A unit of a quantity and the factor that brings it to SI.
struct Unit
{
    char const * name;
    double factor;
};
using Units = std::array<Unit, 3>; // the first stands in messages; none: a pure number

// Where each name stands: "file:line".
using PlacesOfNames = std::map<std::string, std::string>;

// One file of a database, parsed, and its refusals.
class XmlDatabaseFile
{
protected:
    XmlDatabaseFile(std::string const & i_file, std::string const & i_what);

    // The document's element, which has this name and stands alone.
    pugi::xml_node Root(std::string const & i_name);

    // The element's name="...", which no other entry of the database has; i_what is the kind of entry.
    std::string NewName(pugi::xml_node const & i_node, std::string const & i_what,
                        PlacesOfNames & io_placeOfName) const;

    [[noreturn]] void Refuse(pugi::xml_node const & i_node, std::string const & i_found,
                             std::string const & i_expected) const;

    static std::string Tag(pugi::xml_node const & i_node);
    static std::string Shown(pugi::xml_node const & i_node); // an element's tag, or the text that stands there

    // The element's attributes are among the given ones, each once.
    void CheckAttributes(pugi::xml_node const & i_node, std::vector<std::string> const & i_known) const;

    // The text of an element that holds nothing else, trimmed.
    std::string Text(pugi::xml_node const & i_node) const;

    double Number(pugi::xml_node const & i_node, std::string_view i_text, std::string const & i_what) const;

    // The factor of the element's unit; 1 for a quantity without units.
    double Factor(pugi::xml_node const & i_node, Units const & i_units) const;

    // The element's number in SI, within these bounds in SI.
    double Quantity(pugi::xml_node const & i_node, Units const & i_units, double i_dLeast, double i_dGreatest) const;

private:
    std::string Place(std::ptrdiff_t i_offset) const;
    [[noreturn]] void Refuse(std::ptrdiff_t i_offset, std::string const & i_found,
                             std::string const & i_expected) const;

    std::string m_file;
    std::string m_text;
    pugi::xml_document m_document;
};

#endif
