// CATFatalError.h: how a broken contract is reported.
//
// A report is a text with file and line. It goes to the sink of the host in force (see VOZHost.h); the default sink
// writes one line "text (file:line)" to standard error and returns. Where the sink returns, execution goes on: each
// guarded access has a defined continuation inside its object's own arrays.
//
// Two forms, told apart by their text. VOZ_ASSERTION reports "AssertionFailed:<text>" through the 8-bit operation,
// VOZ_CONTRACT reports <text> through the wide-string one. Both are expressions with the value of the condition:
//
//     if (!VOZ_CONTRACT(n > 0 && n <= mNumNode, "n > 0 && n <= mNumNode")) n = 0;
//
// The text is part of the interface and is given explicitly. The file reported is the source's name without
// folder and extension ("Mesh").

#ifndef CATFATALERROR_H
#define CATFATALERROR_H

#include "ExportedByVOZPlatform.h"

ExportedByVOZPlatform void CATFatalError(char const * text, char const * file, int line);
ExportedByVOZPlatform void CATFatalError(wchar_t const * text, wchar_t const * file, int line);

namespace voz::detail
{
// The stem of a source path, made at compile time.
template <class Char, int N>
struct SourceStem
{
    Char text[N] = {};

    constexpr explicit SourceStem(char const (&i_path)[N])
    {
        int begin = 0;
        int end = N - 1;
        for (int i = 0; i < N - 1; ++i)
            if (i_path[i] == '/' || i_path[i] == '\\')
                begin = i + 1;
        for (int i = begin; i < N - 1; ++i)
            if (i_path[i] == '.')
            {
                end = i;
                break;
            }
        for (int i = begin; i < end; ++i)
            text[i - begin] = static_cast<Char>(i_path[i]);
    }
};

template <class Char>
bool ReportBroken(Char const * text, Char const * file, int line)
{
    CATFatalError(text, file, line);
    return false;
}
} // namespace voz::detail

#define VOZ_REPORT(Char, message)                                                                                      \
    [](int vozLine)                                                                                                    \
    {                                                                                                                  \
        static constexpr voz::detail::SourceStem<Char, static_cast<int>(sizeof(__FILE__))> vozFile(__FILE__);          \
        return voz::detail::ReportBroken<Char>(message, vozFile.text, vozLine);                                        \
    }(__LINE__)

#define VOZ_ASSERTION(condition, message) (static_cast<bool>(condition) || VOZ_REPORT(char, "AssertionFailed:" message))
#define VOZ_CONTRACT(condition, message) (static_cast<bool>(condition) || VOZ_REPORT(wchar_t, L"" message))

#endif
