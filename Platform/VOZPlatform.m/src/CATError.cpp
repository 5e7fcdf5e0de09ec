#include "CATError.h"

CATImplementClass(CATError, CATBaseUnknown)
CATImplementClass(CATMfErrUpdate, CATError)

CATError::CATError(CATUnicodeString const & i_message, char const * i_file, int i_line)
    : mMessage(i_message), mFile(i_file), mLine(i_line)
{
}
