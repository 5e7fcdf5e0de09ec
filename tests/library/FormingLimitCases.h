// FormingLimitCases.h: a forming limit for tests.

#ifndef FORMINGLIMITCASES_H
#define FORMINGLIMITCASES_H

#include "FormingLimit.h"

// r 1, margin 10, plane-strain band 5 percent, FLD0 as given.
inline FormingLimit limitWith(double fldZero, int type = 0)
{
    return FormingLimit(1.0, 0.2, 1.0, 10.0, 5.0, fldZero, type);
}

#endif
