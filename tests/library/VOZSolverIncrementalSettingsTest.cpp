// VOZSolverIncrementalSettingsTest.cpp: which entry of the settings database a run gets, and what it takes from it.

#include "VOZSolverIncremental.h"

#include "IncrementalFixture.h"
#include "VOZStatus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace
{
class IncrementalSettings : public IncrementalJob
{
protected:
    IncrementalSettings()
    {
        std::filesystem::create_directory(root.Path("Increment"));
        give(driver);
    }

    // A database of entries "name velocity".
    void write(std::string const & i_file, std::string const & i_entries) const
    {
        root.Write("Increment/" + i_file, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<incrementalSettings>\n" +
                                              i_entries + "</incrementalSettings>\n");
    }
    static std::string entry(std::string const & i_name, std::string const & i_fields)
    {
        return "<settings name=\"" + i_name + "\">" + i_fields + "</settings>\n";
    }
    static std::string velocity(std::string const & i_value)
    {
        return "<punchVelocityFlagClear unit=\"m/s\">" + i_value + "</punchVelocityFlagClear>";
    }

    long readAs(char const * i_name)
    {
        CATUnicodeString name(i_name);
        driver.SetTemplate(name);
        return driver.GetTemplateSettings();
    }

    IncrementalProbe driver;
};
} // namespace

TEST_F(IncrementalSettings, AreThoseOfTheJobsName)
{
    write("a.xml", entry("first", velocity("1.5")) + entry("second", velocity("2.5")));
    write("b.xml", entry("third", velocity("3.5")));
    EXPECT_EQ(readAs("second"), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 2.5);
    EXPECT_EQ(readAs("third"), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 3.5);
    EXPECT_STREQ(driver.m_pSettings->m_strName.ToUnicodeString().ConvertToChar(), "third");
}

TEST_F(IncrementalSettings, FillTheMembersThatComeFromThem)
{
    write("a.xml", entry("press", "<integrationPoints>3</integrationPoints>"
                                  "<punchAcceleration unit=\"m/s2\">7000</punchAcceleration>"
                                  "<punchVelocityFlagSet unit=\"m/s\">1.25</punchVelocityFlagSet>" +
                                      velocity("6") +
                                      "<adaptivityLevel>2</adaptivityLevel><iadpn90>12</iadpn90>"
                                      "<binderGapFactor>0.25</binderGapFactor>"
                                      "<binderAccelFactor>0.75</binderAccelFactor>"
                                      "<smoothContact>yes</smoothContact><hourglassType>5</hourglassType>"
                                      "<outputPositions unit=\"%\">0 20 60 100</outputPositions>"));
    give(driver, 1);
    ASSERT_EQ(readAs("press"), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 1.25);
    EXPECT_EQ(driver.m_dPunchAcceleration, 7000.0);
    EXPECT_EQ(driver.m_nIadpn90, 12);
    EXPECT_EQ(driver.m_dBinderGapFactor, 0.25);
    EXPECT_EQ(driver.m_dBinderAccelFactor, 0.75);
    EXPECT_EQ(driver.m_bSmoothContact, 1);
    EXPECT_EQ(driver.m_nOutputPoints, 4);
    EXPECT_THAT(rowsOf(driver.m_pSettings->m_padOutputPositions, 4), testing::ElementsAre(0.0, 20.0, 60.0, 100.0));
    EXPECT_EQ(driver.m_nSteps, 21);
    EXPECT_EQ(driver.m_dMaxStrain, 0.8);
    // What the run itself brings to the cards is still as it was made.
    EXPECT_EQ(driver.m_nAdaptivityLevel, 4);
    EXPECT_EQ(driver.m_nHourglassType, 0);
    EXPECT_EQ(driver.m_dBlankIntegrationPoints, 3.0);
    ASSERT_EQ(driver.Run(nullptr), 0);
    EXPECT_EQ(driver.m_nAdaptivityLevel, 2);
    EXPECT_EQ(driver.m_nHourglassType, 5);
    EXPECT_EQ(driver.m_dTerminationTime, driver.m_dPunchStroke / 1.25 + 1.25 / 7000.0);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalSettings, StayTheRecordsOwnForANameThatIsNotThere)
{
    write("a.xml", entry("Press", velocity("6")));
    VOZIncrementalSettings const defaults;
    for (char const * const name : {"", "press", "Press ", "Pres", "Presse"})
    {
        EXPECT_EQ(readAs(name), 0) << name;
        EXPECT_EQ(driver.m_dPunchVelocity, defaults.m_dPunchVelocityFlagClear) << name;
        EXPECT_EQ(driver.m_nOutputPoints, defaults.m_nOutputPoints) << name;
    }
    EXPECT_EQ(readAs("Press"), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 6.0);
}

TEST_F(IncrementalSettings, LetARunGoOnWithoutTheirDatabase)
{
    std::filesystem::remove(root.Path("Increment"));
    EXPECT_EQ(readAs("press"), 0);
    EXPECT_EQ(driver.Run(nullptr), 0);
    VOZIncrementalSettings const defaults;
    EXPECT_EQ(driver.m_nOutputPoints, defaults.m_nOutputPoints);
    EXPECT_EQ(driver.m_dPunchVelocity, defaults.m_dPunchVelocityFlagClear);
    EXPECT_THAT(reported(), testing::IsEmpty());
}

TEST_F(IncrementalSettings, StayTheRecordsOwnWhereTheDatabaseIsBroken)
{
    std::string const whole = entry("press", velocity("6"));
    VOZIncrementalSettings const defaults;
    for (std::size_t length = 0; length < whole.size() - 1; ++length)
    {
        write("a.xml", whole.substr(0, length));
        EXPECT_EQ(readAs("press"), 0) << length;
        EXPECT_EQ(driver.m_dPunchVelocity, defaults.m_dPunchVelocityFlagClear) << length;
    }
}

TEST_F(IncrementalSettings, NeedTheFirstVariableOfTheInstallation)
{
    host.environment["KELM7DRAVO3D"] = root.Path();
    host.environment.erase("VOZDRAVO3D");
    EXPECT_EQ(readAs(""), E_FAIL);
    EXPECT_EQ(driver.m_nSteps, 251) << "nothing was copied";
}

TEST_F(IncrementalSettings, AreFoundUnderTheNamesOfThisInstallation)
{
    host.environment["VOZDRAVO3D"] = VOZ_SOURCE_DIR "/InstallRoot";
    EXPECT_EQ(readAs("aluminium"), 0);
    EXPECT_EQ(driver.m_dPunchVelocity, 4.0);
    EXPECT_EQ(driver.m_dPunchAcceleration, 4000.0);
}
