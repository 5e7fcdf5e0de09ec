// Viewer.h: the interactive view of the page: the part and its way to the blank, coloured by a field; works from a
// file, without network.

#ifndef VIEWER_H
#define VIEWER_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

// A section's content: canvas, controls, data and script. About 60 bytes an element.
std::string Viewer(Outcome const & i_outcome);

} // namespace voz::workbench

#endif
