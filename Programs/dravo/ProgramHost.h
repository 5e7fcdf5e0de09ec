// ProgramHost.h: the host of a program without a workbench process around it.
//
// The environment is the process's own; where it names no install root, the one that stands beside the program is
// taken. A broken contract ends the program with a clear message.

#ifndef PROGRAMHOST_H
#define PROGRAMHOST_H

#include "VOZHost.h"

class ProgramHost : public VOZHost
{
public:
    ProgramHost();
    ~ProgramHost() override;
    ProgramHost(ProgramHost const &) = delete;
    ProgramHost & operator=(ProgramHost const &) = delete;

    std::optional<std::string> EnvironmentValue(std::string const & i_name) override;
    std::shared_ptr<VOZHostDocument> CurrentDocument() override { return nullptr; }
    [[noreturn]] void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override;

private:
    VOZHost & mDefault;
    std::optional<std::string> mRoot; // beside the program
};

#endif
