// ExamplesFixture.h: forms the examples of the repository, in this process.

#ifndef EXAMPLESFIXTURE_H
#define EXAMPLESFIXTURE_H

#include "CommandFixture.h"
#include "Run.h"

#include "VOZHost.h"

#include <string>

using namespace voz::workbench;

class Examples : public CommandFixture
{
protected:
    Examples()
    {
        mHost.environment["VOZDRAVO3D"] = VOZ_SOURCE_DIR "/InstallRoot";
        VOZHost::Install(&mHost);
    }
    ~Examples() override
    {
        EXPECT_TRUE(mHost.reports.empty()) << mHost.reports.front().text;
        VOZHost::Install(nullptr);
    }

    static Job JobOf(std::string const & i_example)
    {
        return ReadJob(VOZ_SOURCE_DIR "/examples/" + i_example + "/job.toml");
    }
    RunRecord Formed(std::string const & i_example, char const * i_route = kKernelRoute)
    {
        return FormedJob(JobOf(i_example), i_route);
    }

    // The cylindrical cup with a process of its own.
    RunRecord FormedCup(std::string const & i_process, char const * i_route = kKernelRoute)
    {
        return FormedJob(ParseJob("[mesh]\nfile = \"" VOZ_SOURCE_DIR "/examples/cylindrical_cup/cylindrical_cup.k\"\n" +
                                      Sheet() + i_process,
                                  Path("cup.toml")),
                         i_route);
    }

    static std::string Sheet()
    {
        return "[blank]\nthickness_mm = 0.78\n[material]\nfrom = \"mild-steel-numisheet93\"\n"
               "[output]\nreport = false\nvtu = false\ndxf = false\nsvg = false\n";
    }

    RunRecord FormedJob(Job const & job, char const * i_route = kKernelRoute)
    {
        EXPECT_TRUE(job.warnings.empty()) << job.warnings.front();
        RunOptions options;
        options.out = Folder();
        options.route = i_route;
        RunObserver nobody;
        RunRecord record = RunJob(job, options, nobody);
        EXPECT_FALSE(HasFailedCheck(record.outcome)) << SummaryText(record);
        EXPECT_EQ(record.outcome.summary.undercutElements, 0);
        return record;
    }

private:
    VOZMemoryHost mHost;
};

#endif
