// MaterialDatabase.cpp: the XML material database; its format stands in docs/materials.md.

#include "MaterialDatabase.h"

#include "TextOf.h"
#include "VOZMaterial.h"
#include "XmlDatabase.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace
{

constexpr char const * kWhat = "a material database";

// One number of a material: element, units, bounds in SI, and the place that it fills.
struct MaterialQuantity
{
    char const * element;
    Units units;
    double least;
    double greatest;
    double VOZMaterial::*pField;
    bool required;
};

// clang-format off
constexpr std::array<MaterialQuantity, 10> kQuantities = {{
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

} // namespace

// One file of the database.
class MaterialFile : private XmlDatabaseFile
{
public:
    MaterialFile(std::string const & i_file, VOZMaterialDatabase & io_database)
        : XmlDatabaseFile(i_file, kWhat), m_database(io_database)
    {
    }

    void Read()
    {
        for (pugi::xml_node const & node : Root("materials").children())
        {
            if (node.type() == pugi::node_element && std::string_view(node.name()) == "material")
                ReadMaterial(node);
            else
                Refuse(node, TextOf("<materials> holds ", Shown(node)), "<material name=\"...\">");
        }
    }

private:
    void ReadQuantity(pugi::xml_node const & i_node, MaterialQuantity const & i_quantity,
                      VOZMaterial & io_material) const
    {
        double const value = Quantity(i_node, i_quantity.units, i_quantity.least, i_quantity.greatest);
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
        constexpr Units kStress = {{{"MPa", 1e6}, {"GPa", 1e9}, {"Pa", 1.0}}};
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
        std::string const name = NewName(i_node, "a material", m_database.m_placeOfName);
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
                                            [element](MaterialQuantity const & q) { return element == q.element; });
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
        std::string const text = Text(i_node);
        if (text.empty())
            Refuse(i_node, "<source> is empty", "where the figures come from");
        std::string const of = i_node.attribute("of").value();
        return of.empty() ? text : of + ": " + text;
    }

    static std::string ElementNames()
    {
        std::vector<std::string> names;
        names.reserve(kQuantities.size() + 2);
        for (MaterialQuantity const & quantity : kQuantities)
            names.emplace_back(quantity.element);
        names.insert(names.end(), {"curve", "source"});
        return TextOf("each of ", ListOf(names), " once at most");
    }

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

void VOZMaterialDatabase::Read(std::string const & i_path)
{
    for (std::string const & file : XmlDatabaseFiles(i_path, kWhat))
        MaterialFile(file, *this).Read();
}
