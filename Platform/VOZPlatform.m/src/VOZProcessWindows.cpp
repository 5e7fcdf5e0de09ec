#if defined(_WIN32)

#include "VOZProcess.h"

#include "TextCodes.h"

#include <windows.h>

#include <shellapi.h>

#include <cstdlib>

namespace
{
static_assert(sizeof(wchar_t) == sizeof(unsigned short), "the system's wide text is 16-bit text");

thread_local unsigned int g_lastExitCode = 0;

wchar_t * wide(unsigned short * text)
{
    return reinterpret_cast<wchar_t *>(text);
}

wchar_t const * wide(unsigned short const * text)
{
    return reinterpret_cast<wchar_t const *>(text);
}

// A file's handle that a child inherits, closed with its owner.
class InheritedFile
{
public:
    InheritedFile(wchar_t const * i_path, DWORD i_access, DWORD i_disposition)
    {
        SECURITY_ATTRIBUTES inherited = {sizeof(inherited), nullptr, TRUE};
        mHandle = ::CreateFileW(i_path, i_access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, i_disposition,
                                FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    ~InheritedFile()
    {
        if (IsOpen())
            ::CloseHandle(mHandle);
    }
    InheritedFile(InheritedFile const &) = delete;
    InheritedFile & operator=(InheritedFile const &) = delete;

    bool IsOpen() const { return mHandle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return mHandle; }

private:
    HANDLE mHandle;
};
} // namespace

bool VOZProcess::CreateProcessW(unsigned short * io_commandLine, unsigned int i_flags, Information & o_information)
{
    o_information = {};
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION made = {};
    if (!::CreateProcessW(nullptr, wide(io_commandLine), nullptr, nullptr, TRUE, i_flags, nullptr, nullptr, &startup,
                          &made))
        return false;
    o_information = {made.hProcess, made.hThread};
    return true;
}

bool VOZProcess::CreateProcessInFolder(unsigned short * io_commandLine, unsigned short const * i_folder,
                                       unsigned short const * i_outputFile, Information & o_information)
{
    o_information = {};
    InheritedFile const input(L"NUL", GENERIC_READ, OPEN_EXISTING);
    InheritedFile const output(wide(i_outputFile), GENERIC_WRITE, CREATE_ALWAYS);
    if (!input.IsOpen() || !output.IsOpen())
        return false;
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.Get();
    startup.hStdOutput = output.Get();
    startup.hStdError = output.Get();
    PROCESS_INFORMATION made = {};
    if (!::CreateProcessW(nullptr, wide(io_commandLine), nullptr, nullptr, TRUE, CreateNoWindow, nullptr,
                          wide(i_folder), &startup, &made))
        return false;
    o_information = {made.hProcess, made.hThread};
    return true;
}

unsigned int VOZProcess::WaitForSingleObject(void * i_process, unsigned int i_milliseconds)
{
    DWORD const answer = ::WaitForSingleObject(i_process, i_milliseconds);
    DWORD code = 0;
    if (answer == WAIT_OBJECT_0 && ::GetExitCodeProcess(i_process, &code))
        g_lastExitCode = code;
    return answer;
}

unsigned int VOZProcess::LastExitCode()
{
    return g_lastExitCode;
}

bool VOZProcess::GetExitCodeProcess(void * i_process, unsigned int & o_code)
{
    DWORD code = 0;
    if (!::GetExitCodeProcess(i_process, &code) || code == STILL_ACTIVE)
        return false;
    o_code = code;
    return true;
}

bool VOZProcess::CloseHandle(void * i_handle)
{
    return ::CloseHandle(i_handle) != 0;
}

int VOZProcess::System(char const * i_utf8)
{
    return _wsystem(voz::platform::WideFromUtf8(i_utf8).c_str());
}

int VOZProcess::ShellExecuteW(unsigned short const * i_program, unsigned short const * i_parameters,
                              unsigned short const * i_folder, int i_show)
{
    HINSTANCE const result =
        ::ShellExecuteW(nullptr, L"open", wide(i_program), wide(i_parameters), wide(i_folder), i_show);
    return static_cast<int>(reinterpret_cast<INT_PTR>(result));
}

void * VOZProcess::GetModuleHandleW(unsigned short const * i_name)
{
    return ::GetModuleHandleW(wide(i_name));
}

unsigned int VOZProcess::GetModuleFileNameW(void * i_module, unsigned short * o_path, unsigned int i_size)
{
    unsigned int const length = ::GetModuleFileNameW(static_cast<HMODULE>(i_module), wide(o_path), i_size);
    if (i_size > 0 && length >= i_size) // older systems leave a cut path open
        o_path[i_size - 1] = 0;
    return length;
}

#endif
