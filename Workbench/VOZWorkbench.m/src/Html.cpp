// Html.cpp: pieces of HTML.

#include "Html.h"

namespace voz::workbench
{

std::string Escaped(std::string_view i_text)
{
    std::string text;
    text.reserve(i_text.size());
    for (char const c : i_text)
    {
        switch (c)
        {
        case '&':
            text += "&amp;";
            break;
        case '<':
            text += "&lt;";
            break;
        case '>':
            text += "&gt;";
            break;
        case '"':
            text += "&quot;";
            break;
        case '\'':
            text += "&#39;";
            break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n')
                text += c;
        }
    }
    return text;
}

std::string Table(HtmlTable const & i_table)
{
    std::string html = "<table>\n<caption>" + Escaped(i_table.caption) + "</caption>\n";
    if (!i_table.header.empty())
    {
        html += "<thead><tr>";
        for (std::string const & cell : i_table.header)
            html += "<th scope=\"col\">" + Escaped(cell) + "</th>";
        html += "</tr></thead>\n";
    }
    html += "<tbody>\n";
    for (std::vector<std::string> const & row : i_table.rows)
    {
        html += "<tr>";
        for (std::size_t i = 0; i < row.size(); ++i)
            html += i == 0 ? "<th scope=\"row\">" + Escaped(row[i]) + "</th>" : "<td>" + Escaped(row[i]) + "</td>";
        html += "</tr>\n";
    }
    return html + "</tbody>\n</table>\n";
}

std::string Figure(std::string const & i_content, std::string_view i_caption)
{
    return "<figure>\n" + i_content + "<figcaption>" + Escaped(i_caption) + "</figcaption>\n</figure>\n";
}

} // namespace voz::workbench
