// MeshFiles.cpp: Nastran bulk data and LS-DYNA keyword files.

#include "MeshFiles.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace voz::examples
{
namespace
{

// A real with as many digits as fit the width, always with a decimal point.
std::string real(double value, int width)
{
    if (std::fabs(value) < 1e-12)
        value = 0.0; // rounding of a cosine
    std::array<char, 64> text;
    for (int digits = 12; digits > 0; --digits)
    {
        auto const end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, digits);
        std::string_view const shown(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
        if (shown.size() > static_cast<std::size_t>(width))
            continue;
        std::size_t const last = shown.find_last_not_of('0');
        return std::string(shown.substr(0, shown[last] == '.' ? last + 2 : last + 1));
    }
    throw std::runtime_error("a coordinate does not fit its column");
}

std::string left(std::string text, std::size_t width)
{
    return text.append(width - text.size(), ' ');
}

std::string right(std::string const & text, std::size_t width)
{
    return std::string(width - text.size(), ' ') + text;
}

void save(std::string const & path, std::string const & text)
{
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path.c_str(), "wb"), std::fclose);
    bool const written = file && std::fwrite(text.data(), 1, text.size(), file.get()) == text.size();
    if (!written || std::fclose(file.release()) != 0)
        throw std::runtime_error(path + ": cannot be written");
}

std::string card(std::string const & name, std::vector<std::string> const & fields, NastranField field)
{
    if (field == NastranField::Free)
    {
        std::string line = name;
        for (std::string const & value : fields)
            line += ',' + value;
        return line + '\n';
    }
    std::string line = left(name, 8);
    for (std::string const & value : fields)
        line += right(value, 8);
    return line + '\n';
}

std::string grid(int label, Point3 const & p, NastranField field)
{
    std::string const id = std::to_string(label);
    switch (field)
    {
    case NastranField::Small:
        return left("GRID", 8) + right(id, 8) + right("", 8) + right(real(p[0], 8), 8) + right(real(p[1], 8), 8) +
               right(real(p[2], 8), 8) + '\n';
    case NastranField::Large:
        return left("GRID*", 8) + right(id, 16) + right("", 16) + right(real(p[0], 16), 16) +
               right(real(p[1], 16), 16) + "*\n" + left("*", 8) + right(real(p[2], 16), 16) + '\n';
    case NastranField::Free:
        break;
    }
    return "GRID," + id + ",," + real(p[0], 12) + ',' + real(p[1], 12) + ',' + real(p[2], 12) + '\n';
}

} // namespace

void writeNastran(std::string const & path, SurfaceMesh const & mesh, Sheet const & sheet, NastranField field)
{
    std::string text = "$ " + sheet.title + "\n$ Mid-surface, mm.\nBEGIN BULK\n";
    text += card("MAT1", {"1", "210000.", "", "0.3"}, field);
    text += card("PSHELL", {"1", "1", real(sheet.thickness, 8)}, field);
    int label = 0;
    for (Point3 const & p : mesh.nodes)
        text += grid(++label, p, field);
    label = 0;
    for (auto const & nodes : mesh.elements)
    {
        bool const triangle = nodes[3] < 0;
        std::vector<std::string> fields{std::to_string(++label), "1"};
        for (std::size_t i = 0; i < (triangle ? 3U : 4U); ++i)
            fields.push_back(std::to_string(nodes[i] + 1));
        text += card(triangle ? "CTRIA3" : "CQUAD4", fields, field);
    }
    save(path, text + "ENDDATA\n");
}

void writeKeyword(std::string const & path, SurfaceMesh const & mesh, Sheet const & sheet, KeywordField field)
{
    bool const commas = field == KeywordField::Commas;
    auto const row = [commas](std::vector<std::string> const & values, std::vector<std::size_t> const & widths)
    {
        std::string line;
        for (std::size_t i = 0; i < values.size(); ++i)
            line += commas ? (i == 0 ? "" : ",") + values[i] : right(values[i], widths[i]);
        return line + '\n';
    };
    std::string text = "*KEYWORD\n*TITLE\n" + sheet.title + "\n$ Mid-surface, mm.\n*PART\nsheet\n";
    text += row({"1", "1", "1"}, {10, 10, 10});
    text += "*SECTION_SHELL\n" + row({"1", "16"}, {10, 10});
    std::string const t = real(sheet.thickness, 10);
    text += row({t, t, t, t}, {10, 10, 10, 10});
    text += "*NODE\n";
    int label = 0;
    for (Point3 const & p : mesh.nodes)
        text += row({std::to_string(++label), real(p[0], commas ? 12 : 15), real(p[1], commas ? 12 : 15),
                     real(p[2], commas ? 12 : 15)},
                    {8, 16, 16, 16});
    text += "*ELEMENT_SHELL\n";
    label = 0;
    for (auto const & nodes : mesh.elements)
    {
        std::vector<std::string> values{std::to_string(++label), "1"};
        for (std::size_t i = 0; i < 4; ++i) // a triangle repeats its third node
            values.push_back(std::to_string((i == 3 && nodes[3] < 0 ? nodes[2] : nodes[i]) + 1));
        text += row(values, {8, 8, 8, 8, 8, 8});
    }
    save(path, text + "*END\n");
}

} // namespace voz::examples
