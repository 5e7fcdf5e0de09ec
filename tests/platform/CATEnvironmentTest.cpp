#include "CATEnvironment.h"

#include "HostFixture.h"
#include "TempFolder.h"

#include <cstdlib>

namespace
{
class Environment : public HostFixture
{
};

void setVariable(char const * name, char const * value)
{
#if defined(_WIN32)
    _putenv_s(name, value);
#else
    setenv(name, value, 1);
#endif
}

TEST_F(Environment, GivesTheHostsValueOrNull)
{
    host.environment["VOZDRAVO3D"] = "/opt/voz";
    EXPECT_STREQ(CATGetEnv("VOZDRAVO3D"), "/opt/voz");
    EXPECT_EQ(CATGetEnv("KELM7DRAVO3D"), nullptr);
    EXPECT_EQ(CATGetEnv(nullptr), nullptr);
}

TEST_F(Environment, AnEmptyValueIsNotAMissingOne)
{
    host.environment["CATTemp"] = "";
    EXPECT_STREQ(CATGetEnv("CATTemp"), "");
    char * value = nullptr;
    EXPECT_EQ(CATGetEnvValue("CATTemp", &value), 0);
    ASSERT_NE(value, nullptr);
    EXPECT_STREQ(value, "");
    std::free(value);
}

TEST_F(Environment, HandsOutNewTextThatTheCallerFrees)
{
    host.environment["VOZMaterialDB"] = "/db";
    char * first = nullptr;
    char * second = nullptr;
    EXPECT_EQ(CATGetEnvValue("VOZMaterialDB", &first), 0);
    EXPECT_EQ(CATGetEnvValue("VOZMaterialDB", &second), 0);
    EXPECT_STREQ(first, "/db");
    EXPECT_NE(first, second);
    std::free(first);
    std::free(second);
}

TEST_F(Environment, AMissingValueIsMinusOneAndNull)
{
    char text[] = "untouched";
    char * value = text;
    EXPECT_EQ(CATGetEnvValue("VOZMaterialDB", &value), -1);
    EXPECT_EQ(value, nullptr);
}

TEST(DefaultHostEnvironment, IsReadAnewAtEachCall)
{
    setVariable("VOZ_TEST_VARIABLE", "one");
    EXPECT_STREQ(CATGetEnv("VOZ_TEST_VARIABLE"), "one");
    setVariable("VOZ_TEST_VARIABLE", "two");
    EXPECT_STREQ(CATGetEnv("VOZ_TEST_VARIABLE"), "two");
    std::string const large(5000, 'x');
    setVariable("VOZ_TEST_VARIABLE", large.c_str());
    EXPECT_EQ(CATGetEnv("VOZ_TEST_VARIABLE"), large);
    EXPECT_EQ(CATGetEnv("VOZ_TEST_VARIABLE_THAT_IS_NOT_SET"), nullptr);
}

TEST(Directory, OpensAFolderThatStandsAndNothingElse)
{
    TempFolder const folder;
    std::string const file = folder.Write("file", "text");
    CATDirectory * directory = nullptr;
    EXPECT_EQ(CATOpenDirectory(folder.Path().c_str(), &directory), 0);
    EXPECT_NE(directory, nullptr);
    EXPECT_EQ(CATCloseDirectory(directory), 0);
    for (std::string const & path : {folder.Path("missing"), file, std::string()})
    {
        EXPECT_EQ(CATOpenDirectory(path.c_str(), &directory), -1) << path;
        EXPECT_EQ(directory, nullptr);
    }
    EXPECT_EQ(CATOpenDirectory(nullptr, &directory), -1);
    EXPECT_EQ(CATCloseDirectory(nullptr), -1);
}

TEST(Directory, CreatesOneLevelOnce)
{
    TempFolder const folder;
    EXPECT_EQ(CATCreateDirectory(folder.Path("a/b").c_str()), -1);
    EXPECT_EQ(CATCreateDirectory((folder.Path() + "\\a").c_str()), 0); // a backslash separates on every system
    EXPECT_EQ(CATCreateDirectory(folder.Path("a").c_str()), -1);
    EXPECT_EQ(CATCreateDirectory(folder.Path("a/b").c_str()), 0);
    CATDirectory * directory = nullptr;
    EXPECT_EQ(CATOpenDirectory((folder.Path() + "\\a\\b").c_str(), &directory), 0);
    EXPECT_EQ(CATCloseDirectory(directory), 0);
}
} // namespace
