// VOZProcess.h: child processes and loaded modules, under the host's names.
//
// A command line is one text, quoted as on Windows, on every system: the program's name runs to the next quote if it
// begins with one and else to the first blank or tab; further on, quotes group, a quote after an odd number of
// backslashes is a plain one, each pair of backslashes ahead of a quote is one backslash, and a doubled quote within
// quotes is one plain quote. Off Windows a backslash in the program's name is a separator, a name without separator is
// sought along PATH, and a program "x.exe" that is not there is started as "x".
//
// On Windows these are the system's own operations of the same name. Texts are UTF-16, closed by a zero. Static
// operations only.

#ifndef VOZPROCESS_H
#define VOZPROCESS_H

#include "ExportedByVOZPlatform.h"

class ExportedByVOZPlatform VOZProcess
{
public:
    struct Information
    {
        void * hProcess = nullptr; // both are closed by CloseHandle
        void * hThread = nullptr;
    };

    static constexpr unsigned int CreateNoWindow = 0x08000000; // CREATE_NO_WINDOW; of no effect off Windows
    static constexpr unsigned int Infinite = 0xFFFFFFFF;       // INFINITE
    static constexpr int ShowMinimized = 6;                    // SW_MINIMIZE; of no effect off Windows

    // Starts a child with the handles, the environment and the folder of this process. False, with o_information null,
    // if no process can be made. Windows may write into the command line.
    static bool CreateProcessW(unsigned short * io_commandLine, unsigned int i_flags, Information & o_information);

    // As CreateProcessW, without a window, in a folder, with standard output and errors in a file (made anew) and no
    // standard input. The child's own children inherit that. No operation of the host's has this name.
    static bool CreateProcessInFolder(unsigned short * io_commandLine, unsigned short const * i_folder,
                                      unsigned short const * i_outputFile, Information & o_information);

    // Waits for the child's end: 0, or 0x102 if the milliseconds ran out first, or 0xFFFFFFFF for a bad handle.
    static unsigned int WaitForSingleObject(void * i_process, unsigned int i_milliseconds);

    // The exit code of a child that has been waited for; off Windows 128 + the signal's number if a signal ended it.
    // False for a child that still runs.
    static bool GetExitCodeProcess(void * i_process, unsigned int & o_code);

    // The exit code of the child that WaitForSingleObject of this thread last saw end: for a caller who had the child
    // started and waited for by others. 0 before there was one.
    static unsigned int LastExitCode();

    static bool CloseHandle(void * i_handle); // the child itself goes on; null gives false

    // The command interpreter runs the command and is waited for; returns the command's exit code. Off Windows one
    // outer pair of quotes is dropped, as the interpreter does there, and the rest is started by the rules above: 127
    // if that cannot be done.
    static int System(char const * i_utf8);

    // Starts a program, whose name may stand in quotes, with parameters in a folder and does not wait. Above 32 on
    // success. The child has no streams of this process, and an interrupt at this process's terminal does not reach it.
    static int ShellExecuteW(unsigned short const * i_program, unsigned short const * i_parameters,
                             unsigned short const * i_folder, int i_show);

    // The loaded module of that file name ("VOZDravo.dll"); null if it is not loaded. The library behind
    // "libVOZDravo.so" bears that name off Windows. Not counted, not to be closed.
    static void * GetModuleHandleW(unsigned short const * i_name);

    // The module's path, "<its folder>/VOZDravo.dll" on every system; for a null handle this program's own path.
    // Returns the length without the closing zero; where it does not fit, i_size with the path cut; 0 for a bad handle.
    static unsigned int GetModuleFileNameW(void * i_module, unsigned short * o_path, unsigned int i_size);
};

#endif
