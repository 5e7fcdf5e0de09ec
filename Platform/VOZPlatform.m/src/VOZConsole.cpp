// VOZConsole.cpp: the streams of this process. The calls have the same shape on both kinds of system, under two names.

#include "VOZConsole.h"

#include "VOZFile.h"

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#else
#include <cerrno>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace
{
constexpr int kUsualWidth = 80;

#ifdef _WIN32
int FileNumber(std::FILE * i_stream)
{
    return _fileno(i_stream);
}
int Duplicate(int i_number)
{
    return _dup(i_number);
}
void DuplicateTo(int i_number, int i_target)
{
    _dup2(i_number, i_target);
}
void Close(int i_number)
{
    _close(i_number);
}
bool IsTerminalNumber(int i_number)
{
    return _isatty(i_number) != 0;
}
int TerminalWidth()
{
    CONSOLE_SCREEN_BUFFER_INFO info;
    return GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info)
               ? info.srWindow.Right - info.srWindow.Left + 1
               : 0;
}
#else
int FileNumber(std::FILE * i_stream)
{
    return fileno(i_stream);
}
int Duplicate(int i_number)
{
    return dup(i_number);
}
void DuplicateTo(int i_number, int i_target)
{
    while (dup2(i_number, i_target) < 0 && errno == EINTR)
    {
    }
}
void Close(int i_number)
{
    close(i_number);
}
bool IsTerminalNumber(int i_number)
{
    return isatty(i_number) != 0;
}
int TerminalWidth()
{
    winsize size{};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}
#endif
} // namespace

bool VOZConsole::IsTerminal(std::FILE * i_stream)
{
    return IsTerminalNumber(FileNumber(i_stream));
}

int VOZConsole::Width()
{
    int const width = TerminalWidth();
    return width > 0 ? width : kUsualWidth;
}

VOZStreamsToFile::VOZStreamsToFile(char const * i_path, bool i_errorsToo)
{
    std::FILE * const file = VOZOpenFile(i_path, "ab");
    if (file == nullptr)
        return;
    std::fflush(stdout);
    std::fflush(stderr);
    mOutput = Duplicate(FileNumber(stdout));
    DuplicateTo(FileNumber(file), FileNumber(stdout));
    if (i_errorsToo)
    {
        mErrors = Duplicate(FileNumber(stderr));
        DuplicateTo(FileNumber(file), FileNumber(stderr));
    }
    std::fclose(file);
}

VOZStreamsToFile::~VOZStreamsToFile()
{
    std::fflush(stdout);
    std::fflush(stderr);
    if (mOutput >= 0)
    {
        DuplicateTo(mOutput, FileNumber(stdout));
        Close(mOutput);
    }
    if (mErrors >= 0)
    {
        DuplicateTo(mErrors, FileNumber(stderr));
        Close(mErrors);
    }
}
