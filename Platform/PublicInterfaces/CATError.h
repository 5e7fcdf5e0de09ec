// CATError.h: platform errors and the frame that catches and passes them on.
//
// An error is a C++ exception thrown by value. CATMfErrUpdate is the kind that the reading of results raises; it
// carries the source's name and line. Work arrays are freed by their owners on the way; where something else must be
// done (a file to close, members to reset), CATXHContext::Guard does it and raises the same error again.

#ifndef CATERROR_H
#define CATERROR_H

#include "CATBaseUnknown.h"
#include "CATUnicodeString.h"

#include <utility>

class ExportedByVOZPlatform CATError : public CATBaseUnknown
{
    CATDeclareClass;

public:
    CATError(CATUnicodeString const & i_message, char const * i_file, int i_line);
    char const * Message() const { return mMessage.ConvertToChar(); }
    char const * File() const { return mFile.ConvertToChar(); }
    int Line() const { return mLine; }

private:
    CATUnicodeString mMessage;
    CATUnicodeString mFile;
    int mLine;
};

class ExportedByVOZPlatform CATMfErrUpdate : public CATError
{
    CATDeclareClass;

public:
    using CATError::CATError;
};

class CATXHContext
{
public:
    // Runs i_body; on any exception runs i_onError and lets the same exception go on.
    template <class Body, class OnError>
    static decltype(auto) Guard(Body && i_body, OnError && i_onError)
    {
        try
        {
            return std::forward<Body>(i_body)();
        }
        catch (...)
        {
            std::forward<OnError>(i_onError)();
            throw;
        }
    }
};

#endif
