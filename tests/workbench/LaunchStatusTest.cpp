// LaunchStatusTest.cpp. What the launcher says of itself, and the wait for its end.

#include "LaunchStatus.h"
#include "JobFixture.h"

#include <gtest/gtest.h>

#include <thread>

using namespace voz::workbench;

namespace
{
class Listener : public RunObserver
{
public:
    void Stage(std::string const & i_name) override { stages += i_name + ";"; }
    void Progress(int i_percent) override { percent = i_percent; }
    bool IsInterrupted() override { return isInterrupted; }

    std::string stages;
    int percent = -1;
    bool isInterrupted = false;
};

class LaunchStatusTest : public JobFixture
{
protected:
    // As the launcher does: under another name, then renamed.
    void Say(std::string const & i_text) const
    {
        Write("launch.status.new", i_text);
        std::filesystem::rename(Folder() + "/launch.status.new", Folder() + "/launch.status");
    }
    std::string FailureOf(LaunchPatience const & i_patience) const
    {
        Listener listener;
        try
        {
            FollowLaunch(Folder(), listener, i_patience);
        }
        catch (SolverError const & error)
        {
            return error.what();
        }
        return "no failure";
    }
};

constexpr LaunchPatience kImpatient{1, 0};
} // namespace

TEST_F(LaunchStatusTest, LinesAreKeysAndValuesInAnyOrder)
{
    LaunchStatus const status =
        ParseLaunchStatus("records=3\r\nend=0.012\nmessage=a = b\nunknown=1\nno key\ntime=0.003\nstate=running\n");
    EXPECT_EQ(status.state, LaunchState::Running);
    EXPECT_EQ(status.time, 0.003);
    EXPECT_EQ(status.end, 0.012);
    EXPECT_EQ(status.records, 3);
    EXPECT_EQ(status.message, "a = b");
    EXPECT_EQ(status.Percent(), 25);
}

TEST_F(LaunchStatusTest, EveryStateHasItsName)
{
    for (auto const & [name, state] : {std::pair{"starting", LaunchState::Starting},
                                       {"running", LaunchState::Running},
                                       {"converting", LaunchState::Converting},
                                       {"done", LaunchState::Done},
                                       {"failed", LaunchState::Failed}})
    {
        EXPECT_EQ(ParseLaunchStatus(std::string("state=") + name).state, state);
        EXPECT_STREQ(NameOf(state), name);
    }
    EXPECT_EQ(ParseLaunchStatus("state=asleep").state, LaunchState::Absent);
    EXPECT_EQ(ReadLaunchStatus(Folder()).state, LaunchState::Absent) << "no file";
}

TEST_F(LaunchStatusTest, TheShareOfTheTimeStaysWithinItsBounds)
{
    EXPECT_EQ(ParseLaunchStatus("time=2\nend=1").Percent(), 100);
    EXPECT_EQ(ParseLaunchStatus("time=1").Percent(), 0) << "no end known";
    EXPECT_EQ(ParseLaunchStatus("time=-1\nend=1").Percent(), 0);
    EXPECT_EQ(ParseLaunchStatus("time=nan\nend=inf").Percent(), 0);
}

TEST_F(LaunchStatusTest, ARunThatIsDoneEndsTheWait)
{
    Say("state=done\ntime=1\nend=1\nrecords=11\n");
    Listener listener;
    EXPECT_EQ(FollowLaunch(Folder(), listener, kImpatient).records, 11);
}

TEST_F(LaunchStatusTest, AFailureIsToldInTheLaunchersWords)
{
    Say("state=failed\nmessage=no solver found; set VOZDynaSolver\n");
    EXPECT_EQ(FailureOf(kImpatient), "the explicit solver failed: no solver found; set VOZDynaSolver");
    Say("state=failed\n");
    EXPECT_NE(FailureOf(kImpatient).find("launch.log"), std::string::npos);
}

TEST_F(LaunchStatusTest, WithoutAnySignTheLauncherCountsAsNotStarted)
{
    EXPECT_NE(FailureOf(kImpatient).find("gave no sign within 0 s"), std::string::npos);
}

TEST_F(LaunchStatusTest, ALauncherThatNoLongerRenewsItsStatusIsTakenForEnded)
{
    Say("state=running\ntime=0.5\nend=1\n");
    EXPECT_NE(FailureOf({1, 20, 0}).find("silent for 0 s"), std::string::npos);
}

TEST_F(LaunchStatusTest, AStatusThatIsRenewedWithTheSameWordsKeepsTheWaitAlive)
{
    Say("state=running\ntime=0.5\nend=1\n");
    std::thread launcher(
        [this]
        {
            for (int i = 0; i < 15; ++i)
            {
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
                std::filesystem::last_write_time(Folder() + "/launch.status",
                                                 std::filesystem::file_time_type::clock::now());
            }
            Say("state=done\n");
        });
    EXPECT_EQ(FailureOf({10, 20, 1}), "no failure");
    launcher.join();
}

TEST_F(LaunchStatusTest, AnInterruptEndsTheWaitAlone)
{
    Say("state=running\ntime=0.5\nend=1\n");
    Listener listener;
    listener.isInterrupted = true;
    EXPECT_THROW(FollowLaunch(Folder(), listener, kImpatient), Interrupted);
    EXPECT_EQ(listener.percent, 50) << "told before";
}

TEST_F(LaunchStatusTest, StagesAndProgressFollowTheStatus)
{
    Say("state=starting\n");
    std::thread launcher(
        [this]
        {
            for (char const * const text : {"state=running\ntime=0.25\nend=1\n", "state=running\ntime=0.75\nend=1\n",
                                            "state=converting\ntime=1\nend=1\n", "state=done\nrecords=2\n"})
            {
                std::this_thread::sleep_for(std::chrono::milliseconds(60));
                Say(text);
            }
        });
    Listener listener;
    EXPECT_EQ(FollowLaunch(Folder(), listener, {2, 5}).records, 2);
    launcher.join();
    EXPECT_EQ(listener.stages, "launcher;explicit solver;conversion of the results;");
    EXPECT_EQ(listener.percent, 75);
}

TEST_F(LaunchStatusTest, TheStatusOfAnEarlierRunGoesBeforeTheNext)
{
    Say("state=done\nrecords=9\n");
    RemoveLaunchStatus(Folder());
    EXPECT_EQ(ReadLaunchStatus(Folder()).state, LaunchState::Absent);
    EXPECT_NO_THROW(RemoveLaunchStatus(Folder())) << "there is none";
}
