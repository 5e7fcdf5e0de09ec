// Html.h: the few pieces of HTML that the page is made of.

#ifndef HTML_H
#define HTML_H

#include <string>
#include <string_view>
#include <vector>

namespace voz::workbench
{

std::string
Escaped(std::string_view i_text); // & < > " ' as references; control characters other than tab and line feed left out

struct HtmlTable
{
    std::string caption;
    std::vector<std::string> header;            // plain text; escaped here
    std::vector<std::vector<std::string>> rows; // the first cell heads its row
};

std::string Table(HtmlTable const & i_table);
std::string Figure(std::string const & i_content, std::string_view i_caption); // content: HTML; caption: plain text

} // namespace voz::workbench

#endif
