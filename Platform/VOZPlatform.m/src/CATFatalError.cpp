#include "CATFatalError.h"

#include "TextCodes.h"
#include "VOZHost.h"

void CATFatalError(char const * text, char const * file, int line)
{
    VOZHost::Current().BrokenContract(text != nullptr ? text : "", file != nullptr ? file : "", line);
}

void CATFatalError(wchar_t const * text, wchar_t const * file, int line)
{
    VOZHost::Current().BrokenContract(voz::platform::Utf8FromWide(text), voz::platform::Utf8FromWide(file), line);
}
