// Console.h: how the command speaks: results on standard output, all else on standard error.
//
// Colour and the progress bar need a terminal; NO_COLOR and TERM=dumb switch them off, CLICOLOR_FORCE switches
// colour on. In a pipe a stage is one plain line.

#ifndef CONSOLE_H
#define CONSOLE_H

#include "Route.h"

#include <string>

enum class Talk
{
    Quiet, // errors alone
    Usual,
    Verbose
};

class Console : public voz::workbench::RunObserver
{
public:
    explicit Console(Talk i_talk);
    ~Console() override { EndBar(); }

    void Stage(std::string const & i_name) override;
    void Warning(std::string const & i_text) override;
    void Remark(std::string const & i_text) override; // where the talk is verbose
    void Progress(int i_percent) override;            // in the bar
    bool IsInterrupted() override;

    void Note(std::string const & i_text); // unless the talk is quiet
    void EndBar();

    bool HasBar() const { return mHasBar; }

    static void Error(std::string const & i_text);
    static void Print(std::string const & i_text); // to standard output
    static void WatchForInterrupt();

private:
    void ShowBar();

    Talk mTalk;
    bool mHasBar;
    bool mIsBarOpen = false;
    int mStage = 0;
    std::string mStageName;
    int mPercent = -1;
};

#endif
