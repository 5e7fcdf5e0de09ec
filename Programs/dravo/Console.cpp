// Console.cpp: how the command speaks.

#include "Console.h"

#include "VOZConsole.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
constexpr int kStages = 6; // of most runs; a route may have one less, springback is one more

volatile std::sig_atomic_t g_interrupted = 0;

extern "C" void NoteInterrupt(int i_signal)
{
    g_interrupted = 1;
    std::signal(i_signal, SIG_DFL); // a second one ends the program at once
}

bool IsSet(char const * i_variable)
{
    char const * const value = std::getenv(i_variable);
    return value != nullptr && *value != '\0';
}

bool IsDumb()
{
    char const * const term = std::getenv("TERM");
    return term != nullptr && std::strcmp(term, "dumb") == 0;
}

bool HasColour()
{
    if (IsSet("NO_COLOR"))
        return false;
    char const * const forced = std::getenv("CLICOLOR_FORCE");
    if (forced != nullptr && std::strcmp(forced, "0") != 0 && *forced != '\0')
        return true;
    return VOZConsole::IsTerminal(stderr) && !IsDumb();
}

void Tell(char const * i_colour, char const * i_kind, std::string const & i_text)
{
    std::string const kind = HasColour() ? std::string(i_colour) + i_kind + "\x1b[0m" : std::string(i_kind);
    std::fprintf(stderr, "dravo: %s: %s\n", kind.c_str(), i_text.c_str());
}
} // namespace

Console::Console(Talk i_talk)
    : mTalk(i_talk), mHasBar(i_talk != Talk::Quiet && VOZConsole::IsTerminal(stderr) && !IsDumb())
{
}

void Console::Stage(std::string const & i_name)
{
    ++mStage;
    if (mTalk == Talk::Quiet)
        return;
    if (!mHasBar)
    {
        std::fprintf(stderr, "dravo: %s\n", i_name.c_str());
        return;
    }
    mStageName = i_name;
    mPercent = -1;
    ShowBar();
    if (i_name == "solver program") // which shows its own progress below
        EndBar();
    std::fflush(stderr);
}

void Console::Progress(int i_percent)
{
    if (!mHasBar || i_percent == mPercent)
        return;
    mPercent = i_percent;
    ShowBar();
    std::fflush(stderr);
}

void Console::ShowBar()
{
    std::string bar(kStages, '.');
    for (int i = 0; i < mStage && i < kStages; ++i)
        bar[static_cast<std::size_t>(i)] = '#';
    std::string const percent = mPercent < 0 ? "" : " " + std::to_string(mPercent) + " %";
    std::fprintf(stderr, "\r\x1b[K[%s] %s%s", bar.c_str(), mStageName.c_str(), percent.c_str());
    mIsBarOpen = true;
}

void Console::EndBar()
{
    if (mIsBarOpen)
        std::fputs("\n", stderr);
    mIsBarOpen = false;
}

void Console::Warning(std::string const & i_text)
{
    if (mTalk == Talk::Quiet)
        return;
    EndBar();
    Tell("\x1b[33m", "warning", i_text);
}

void Console::Remark(std::string const & i_text)
{
    if (mTalk == Talk::Verbose)
        Note(i_text);
}

void Console::Note(std::string const & i_text)
{
    if (mTalk == Talk::Quiet)
        return;
    EndBar();
    std::fprintf(stderr, "dravo: %s\n", i_text.c_str());
}

bool Console::IsInterrupted()
{
    return g_interrupted != 0;
}

void Console::Error(std::string const & i_text)
{
    Tell("\x1b[31m", "error", i_text);
}

void Console::Print(std::string const & i_text)
{
    std::fwrite(i_text.data(), 1, i_text.size(), stdout);
}

void Console::WatchForInterrupt()
{
    std::signal(SIGINT, NoteInterrupt);
    std::signal(SIGTERM, NoteInterrupt);
}
