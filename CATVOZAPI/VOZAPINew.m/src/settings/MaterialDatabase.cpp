// MaterialDatabase.cpp: the XML material database; its format stands in docs/materials.md.

#include "MaterialDatabase.h"

#include "TextOf.h"
#include "VOZFile.h"
#include "VOZMaterial.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace
{

std::string Slashed(std::string i_path)
{
    std::replace(i_path.begin(), i_path.end(), '\\', '/');
    return i_path;
}

std::string Contents(std::string const & i_file)
{
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> const pFile(VOZOpenFile(i_file.c_str(), "rb"), std::fclose);
    if (!pFile)
        throw MaterialDatabaseError(i_file + ": cannot be opened: " + std::strerror(errno) +
                                    "; expected a material database in XML");
    std::string text;
    std::array<char, 65536> block;
    while (std::size_t const nRead = std::fread(block.data(), 1, block.size(), pFile.get()))
        text.append(block.data(), nRead);
    if (std::ferror(pFile.get()))
        throw MaterialDatabaseError(i_file + ": cannot be read");
    return text;
}

// A unit of a quantity and the factor that brings it to SI.
struct Unit
{
    char const * name;
    double factor;
};

// One number of a material: element, units (the first stands in messages; none: a pure number), bounds in SI, and
// the place that it fills.
struct Quantity
{
    char const * element;
    std::array<Unit, 3> units;
    double least;
    double greatest;
    double VOZMaterial::*pField;
    bool required;
};

// clang-format off
constexpr std::array<Quantity, 10> kQuantities = {{
    {"thickness",   {{{"mm", 1e-3}, {"m", 1.0}}},                  1e-5,  0.1,   &VOZMaterial::m_dThickness,     true},
    {"n",           {},                                            0.0,   1.0,   &VOZMaterial::m_dNValue,        true},
    {"r",           {},                                            0.05,  20.0,  &VOZMaterial::m_dRValue,        true},
    {"K",           {{{"MPa", 1e6}, {"GPa", 1e9}, {"Pa", 1.0}}},   1e6,   1e10,  &VOZMaterial::m_dKValue,        true},
    {"yield",       {{{"MPa", 1e6}, {"GPa", 1e9}, {"Pa", 1.0}}},   1e5,   1e10,  &VOZMaterial::m_dYield,         true},
    {"density",     {{{"kg/m3", 1.0}, {"g/cm3", 1e3}}},            100.0, 3e4,   &VOZMaterial::m_dDensity,       true},
    {"young",       {{{"GPa", 1e9}, {"MPa", 1e6}, {"Pa", 1.0}}},   1e9,   1e12,  &VOZMaterial::m_dYoungsModulus, true},
    {"poisson",     {},                                            0.0,   0.499, &VOZMaterial::m_dPoisson,       true},
    {"fld0",        {{{"%", 1.0}}},                                0.0,   200.0, &VOZMaterial::m_dFldZero,       false},
    {"fldType",     {},                                            0.0,   1.0,   nullptr,                        false},
}};
// clang-format on

std::string ListOf(std::vector<std::string> const & i_names)
{
    std::string list;
    for (std::size_t i = 0; i < i_names.size(); ++i)
        list += TextOf(i == 0 ? "" : i + 1 == i_names.size() ? " or " : ", ", "\"", i_names[i], "\"");
    return list;
}

std::string Trimmed(std::string_view i_text)
{
    constexpr char const * kBlanks = " \t\r\n";
    std::size_t const first = i_text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(i_text.substr(first, i_text.find_last_not_of(kBlanks) - first + 1));
}

} // namespace

// One file of the database.
class MaterialFile
{
public:
    MaterialFile(std::string const & i_file, VOZMaterialDatabase & io_database)
        : m_file(i_file), m_text(Contents(i_file)), m_database(io_database)
    {
    }

    void Read()
    {
        pugi::xml_parse_result const result =
            m_document.load_buffer(m_text.data(), m_text.size(), pugi::parse_default, pugi::encoding_utf8);
        if (!result)
            Refuse(result.offset, std::string("the XML is broken (") + result.description() + ")",
                   "a well-formed <materials> document");
        pugi::xml_node const root = m_document.document_element();
        if (std::string_view(root.name()) != "materials")
            Refuse(root, TextOf("the document's element is ", Tag(root)), "<materials>");
        for (pugi::xml_node const & node : root.children())
        {
            if (node.type() == pugi::node_element && std::string_view(node.name()) == "material")
                ReadMaterial(node);
            else
                Refuse(node, TextOf("<materials> holds ", Shown(node)), "<material name=\"...\">");
        }
    }

private:
    std::string Place(std::ptrdiff_t i_offset) const
    {
        auto const end = m_text.begin() + std::clamp<std::ptrdiff_t>(i_offset, 0, std::ssize(m_text));
        return m_file + ":" + std::to_string(1 + std::count(m_text.begin(), end, '\n'));
    }

    [[noreturn]] void Refuse(std::ptrdiff_t i_offset, std::string const & i_found, std::string const & i_expected) const
    {
        throw MaterialDatabaseError(Place(i_offset) + ": " + i_found + "; expected " + i_expected);
    }

    [[noreturn]] void Refuse(pugi::xml_node const & i_node, std::string const & i_found,
                             std::string const & i_expected) const
    {
        Refuse(i_node.offset_debug(), i_found, i_expected);
    }

    static std::string Tag(pugi::xml_node const & i_node) { return TextOf("<", i_node.name(), ">"); }

    static std::string Shown(pugi::xml_node const & i_node)
    {
        if (i_node.type() == pugi::node_element)
            return Tag(i_node);
        return TextOf("the text \"", Trimmed(i_node.value()).substr(0, 40), "\"");
    }

    // The element's attributes are among the given ones.
    void CheckAttributes(pugi::xml_node const & i_node, std::vector<std::string> const & i_known) const
    {
        for (pugi::xml_attribute const & attribute : i_node.attributes())
            if (std::find(i_known.begin(), i_known.end(), attribute.name()) == i_known.end())
                Refuse(i_node, TextOf(Tag(i_node), " has the attribute \"", attribute.name(), "\""),
                       i_known.empty() ? "no attribute" : ListOf(i_known));
    }

    double Number(pugi::xml_node const & i_node, std::string_view i_text, std::string const & i_what) const
    {
        std::string const text = Trimmed(i_text);
        double value = 0.0;
        auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
            Refuse(i_node, TextOf(i_what, " is \"", text.substr(0, 40), "\""), "a number");
        return value;
    }

    double Factor(pugi::xml_node const & i_node, std::array<Unit, 3> const & i_units) const
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

    void ReadQuantity(pugi::xml_node const & i_node, Quantity const & i_quantity, VOZMaterial & io_material) const
    {
        double const factor = Factor(i_node, i_quantity.units);
        double const value = factor * Number(i_node, i_node.child_value(), Tag(i_node));
        if (!(value >= i_quantity.least && value <= i_quantity.greatest))
        {
            Refuse(i_node, TextOf(Tag(i_node), " is ", Trimmed(i_node.child_value())),
                   TextOf(i_quantity.least / factor, " to ", i_quantity.greatest / factor,
                          i_quantity.units.front().name ? " " : "", i_node.attribute("unit").value()));
        }
        if (i_quantity.pField)
            io_material.*i_quantity.pField = value;
        else if (value == 0.0 || value == 1.0)
            io_material.m_nFldType = static_cast<int>(value);
        else
            Refuse(i_node, TextOf("<fldType> is ", Trimmed(i_node.child_value())), "0 or 1");
    }

    // <curve unit="MPa"><point strain="0" stress="157"/> ...: strains rise from 0 or more, stresses do not fall.
    void ReadCurve(pugi::xml_node const & i_node, VOZMaterial & io_material) const
    {
        constexpr std::array<Unit, 3> kStress = {{{"MPa", 1e6}, {"GPa", 1e9}, {"Pa", 1.0}}};
        double const factor = Factor(i_node, kStress);
        std::vector<double> points;
        for (pugi::xml_node const & node : i_node.children())
        {
            if (std::string_view(node.name()) != "point")
                Refuse(node, TextOf("<curve> holds ", Shown(node)), "<point strain=\"...\" stress=\"...\"/>");
            CheckAttributes(node, {"strain", "stress"});
            double const strain = Number(node, node.attribute("strain").value(), "the strain of a point");
            double const stress = factor * Number(node, node.attribute("stress").value(), "the stress of a point");
            if (!(strain >= 0.0 && strain <= 10.0 && stress >= 1e5 && stress <= 1e11))
                Refuse(node,
                       TextOf("a point of the curve lies at strain ", node.attribute("strain").value(), ", stress ",
                              node.attribute("stress").value()),
                       "a log plastic strain of 0 to 10 and a stress of 0.1 MPa to 100 GPa");
            if (!points.empty() && !(strain > points[points.size() - 2] && stress >= points.back()))
                Refuse(node, "a point of the curve does not lie beyond the one before it",
                       "rising strains and stresses that do not fall");
            points.push_back(strain);
            points.push_back(stress);
        }
        if (points.size() < 4)
            Refuse(i_node, "<curve> has fewer than two points", "two <point> or more");
        io_material.m_nNumPoints = static_cast<int>(points.size() / 2);
        io_material.m_padPoints = new double[points.size()];
        std::copy(points.begin(), points.end(), io_material.m_padPoints);
    }

    void ReadMaterial(pugi::xml_node const & i_node) const
    {
        CheckAttributes(i_node, {"name", "group"});
        std::string const name = i_node.attribute("name").value();
        if (name.empty() || name != Trimmed(name))
            Refuse(i_node, "a material has no name", "name=\"...\" without blanks at its ends");
        auto const [known, isNew] = m_database.m_placeOfName.emplace(name, Place(i_node.offset_debug()));
        if (!isNew)
            Refuse(i_node, TextOf("the material \"", name, "\" stands at ", known->second, " already"),
                   "a name of its own");

        MaterialPointer pMaterial(VOZMaterial::Create());
        pMaterial->m_strName = name.c_str();
        std::string const source = ReadElements(i_node, name, *pMaterial);

        m_database.Append(std::move(pMaterial), i_node.attribute("group").value(), source.c_str());
    }

    // Every element once (sources as often as one likes), none unknown, none missing. Gives the sources.
    std::string ReadElements(pugi::xml_node const & i_material, std::string const & i_name,
                             VOZMaterial & io_material) const
    {
        std::string source;
        std::array<bool, kQuantities.size()> seen{};
        for (pugi::xml_node const & node : i_material.children())
        {
            std::string_view const element = node.name();
            auto const found = std::find_if(kQuantities.begin(), kQuantities.end(),
                                            [element](Quantity const & q) { return element == q.element; });
            if (found != kQuantities.end())
            {
                bool & bSeen = seen[static_cast<std::size_t>(found - kQuantities.begin())];
                if (bSeen)
                    Refuse(node, TextOf(Tag(node), " stands twice in \"", i_name, "\""), "it once");
                bSeen = true;
                ReadQuantity(node, *found, io_material);
            }
            else if (element == "source")
                source += (source.empty() ? "" : "; ") + SourceText(node);
            else if (element == "curve" && io_material.m_nNumPoints == 0)
                ReadCurve(node, io_material);
            else
                Refuse(node, TextOf("the material \"", i_name, "\" holds ", Shown(node)), ElementNames());
        }
        for (std::size_t i = 0; i < seen.size(); ++i)
            if (kQuantities[i].required && !seen[i])
                Refuse(i_material, TextOf("the material \"", i_name, "\" has no <", kQuantities[i].element, ">"),
                       "one");
        if (source.empty())
            Refuse(i_material, TextOf("the material \"", i_name, "\" has no <source>"), "where its figures come from");
        return source;
    }

    std::string SourceText(pugi::xml_node const & i_node) const
    {
        CheckAttributes(i_node, {"of"});
        std::string const text = Trimmed(i_node.child_value());
        if (text.empty())
            Refuse(i_node, "<source> is empty", "where the figures come from");
        std::string const of = i_node.attribute("of").value();
        return of.empty() ? text : of + ": " + text;
    }

    static std::string ElementNames()
    {
        std::vector<std::string> names;
        names.reserve(kQuantities.size() + 2);
        for (Quantity const & quantity : kQuantities)
            names.emplace_back(quantity.element);
        names.insert(names.end(), {"curve", "source"});
        return TextOf("each of ", ListOf(names), " once at most");
    }

    std::string m_file;
    std::string m_text;
    pugi::xml_document m_document;
    VOZMaterialDatabase & m_database;
};

void MaterialDestroyer::operator()(VOZMaterial * i_pMaterial) const
{
    i_pMaterial->Destroy();
}

VOZMaterialDatabase::~VOZMaterialDatabase()
{
    Delete(m_pFirst);
}

void VOZMaterialDatabase::Delete(VOZAPIMaterialList * i_pList)
{
    while (i_pList)
    {
        VOZAPIMaterialList * const pNext = i_pList->m_pNext;
        i_pList->m_pMaterial->Destroy();
        delete i_pList;
        i_pList = pNext;
    }
}

void VOZMaterialDatabase::Append(MaterialPointer i_pMaterial, char const * i_strGroup, char const * i_strSource)
{
    VOZAPIMaterialList * const pEntry = new VOZAPIMaterialList;
    pEntry->m_pMaterial = i_pMaterial.release();
    (m_pLast ? m_pLast->m_pNext : m_pFirst) = pEntry;
    m_pLast = pEntry;
    pEntry->m_strGroup = i_strGroup;
    pEntry->m_strSource = i_strSource;
}

VOZAPIMaterialList * VOZMaterialDatabase::Release()
{
    VOZAPIMaterialList * const pList = m_pFirst;
    m_pFirst = nullptr;
    m_pLast = nullptr;
    return pList;
}

void VOZMaterialDatabase::ReadFile(std::string const & i_file)
{
    MaterialFile(i_file, *this).Read();
}

void VOZMaterialDatabase::Read(std::string const & i_path)
{
    std::filesystem::path const path(Slashed(i_path));
    std::error_code error;
    if (!std::filesystem::is_directory(path, error))
        return ReadFile(i_path);

    std::vector<std::string> files;
    std::filesystem::directory_iterator entries(path, error);
    for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error))
        if (entries->path().extension() == ".xml")
            files.push_back(entries->path().generic_string());
    if (error)
        throw MaterialDatabaseError(i_path + ": the folder cannot be read: " + error.message());
    if (files.empty())
        throw MaterialDatabaseError(i_path + ": the folder holds no file; expected a material database \"*.xml\"");
    std::sort(files.begin(), files.end());
    for (std::string const & file : files)
        ReadFile(file);
}
