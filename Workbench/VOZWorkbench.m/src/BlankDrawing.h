// BlankDrawing.h: the drawing of the blank, for its own SVG file and for the page.

#ifndef BLANKDRAWING_H
#define BLANKDRAWING_H

#include "Outcome.h"

#include <string>

namespace voz::workbench
{

struct BlankDrawing
{
    std::string viewBox; // of the svg element around the content, mm
    std::string content; // groups OUTLINE, HOLES, TEXT, ROLLING_DIRECTION; CROSSINGS where the blank lies over itself
    double width = 0.0;  // mm
    double height = 0.0;
    double deviation = 0.0; // mm, the largest between the blank's loops and the drawn pieces
};

BlankDrawing DrawBlank(Outcome const & i_outcome, double i_tolerance); // the blank has at least its outer loop

} // namespace voz::workbench

#endif
