#include "CATIProgressTaskUI.h"

CATImplementClass(CATIProgressTaskUI, CATBaseUnknown)
