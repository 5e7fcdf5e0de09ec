// CATIProgressTaskUI.h: the host's progress window, as far as the library drives it.

#ifndef CATIPROGRESSTASKUI_H
#define CATIPROGRESSTASKUI_H

#include "CATBaseUnknown.h"

class ExportedByVOZPlatform CATIProgressTaskUI : public CATBaseUnknown
{
    CATDeclareClass;

public:
    virtual void SetProgress(short i_percent) = 0; // 0 to 100
};

#endif
