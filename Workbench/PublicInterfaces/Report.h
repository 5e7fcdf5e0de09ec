// Report.h: the page that an engineer opens, mails and prints: one HTML file, its pictures within, no network.

#ifndef REPORT_H
#define REPORT_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

// Writes the page. Valid HTML5; the same outcome gives the same bytes. Throws OutputError (OutputFile.h).
void WriteReport(Outcome const & i_outcome, std::string const & i_path);

} // namespace voz::workbench

#endif
