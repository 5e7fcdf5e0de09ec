// VOZProcessTest.cpp: each command line is started for real; the child (child/EchoArguments.cpp) leaves what it got.

#include "VOZProcess.h"

#include "CATUnicodeString.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>
#include <vector>

namespace
{
using Words = std::vector<std::string>;

std::string program()
{
    return VOZ_ECHO_PROGRAM;
}

bool start(std::string const & line, VOZProcess::Information & o_child)
{
    auto wide = CATUnicodeString(line.c_str()).ConvertToUTF16();
    wide.push_back(0);
    return VOZProcess::CreateProcessW(wide.data(), VOZProcess::CreateNoWindow, o_child);
}

unsigned int waitAndClose(VOZProcess::Information const & child)
{
    unsigned int code = 12345;
    EXPECT_EQ(VOZProcess::WaitForSingleObject(child.hProcess, VOZProcess::Infinite), 0U);
    EXPECT_TRUE(VOZProcess::GetExitCodeProcess(child.hProcess, code));
    EXPECT_EQ(VOZProcess::LastExitCode(), code) << "for whoever did not keep the handle";
    EXPECT_TRUE(VOZProcess::CloseHandle(child.hProcess));
    EXPECT_TRUE(VOZProcess::CloseHandle(child.hThread));
    return code;
}

class Process : public testing::Test
{
protected:
    // What a child gets that is started as: PROGRAM "FILE" tail.
    Words Received(std::string const & tail)
    {
        VOZProcess::Information child;
        EXPECT_TRUE(start(program() + " \"" + folder.Path("got") + "\" " + tail, child));
        mCode = waitAndClose(child);
        return Left();
    }
    Words Left()
    {
        Words words;
        std::string const text = folder.Read("got");
        for (std::size_t at = 0; at < text.size();)
        {
            std::size_t const end = text.find("]\n", at);
            words.push_back(text.substr(at + 1, end - at - 1));
            at = end + 2;
        }
        if (!words.empty())
        {
            mChildFolder = words.front();
            words.erase(words.begin());
        }
        return words;
    }

    TempFolder folder;
    unsigned int mCode = 0;
    std::string mChildFolder;
};

TEST_F(Process, SplitsACommandLineByTheQuotingRules)
{
    struct Case
    {
        char const * line;
        Words words;
    };
    Case const cases[] = {
        {"", {}},
        {"a  b\tc ", {"a", "b", "c"}},
        {"\"a b\" c", {"a b", "c"}},
        {"-pfpi \"x y.fpi\" -sd \"z\"", {"-pfpi", "x y.fpi", "-sd", "z"}},
        {"a\"b c\"d", {"ab cd"}},
        {"\"\" x", {"", "x"}},
        {"a\\b\\\\c", {"a\\b\\\\c"}},
        {"\"a\\b\\\\\"", {"a\\b\\"}},
        {"\\\"a\\\\\\\"b", {"\"a\\\"b"}},
        {"\"a\\\"b c\"", {"a\"b c"}},
        {"\"a\"\"b c\" d", {"a\"b c", "d"}},
        {"\"open to the end", {"open to the end"}},
        {"\"x\" \"9", {"x", "9"}},
        {"\"folder\\\" tail", {"folder\" tail"}}, // a backslash ahead of the closing quote eats it
    };
    for (Case const & one : cases)
        EXPECT_EQ(Received(one.line), one.words) << one.line;
}

// The inverse of the rules: quotes always, backslashes ahead of a quote doubled.
std::string inQuotes(std::string const & word)
{
    std::string text = "\"";
    std::size_t slashes = 0;
    for (char const c : word)
    {
        slashes = c == '\\' ? slashes + 1 : 0;
        if (c == '"')
        {
            text.append(text.size() - text.find_last_not_of('\\') - 1, '\\');
            text += '\\';
        }
        text += c;
    }
    text.append(slashes, '\\');
    return text + "\"";
}

TEST_F(Process, RandomArgumentsArriveAsTheyWereQuoted)
{
    std::mt19937 random(11);
    char const letters[] = {'a', 'b', ' ', '\t', '"', '\\', '\\', '\'', '$', '*'};
    for (int round = 0; round < 60; ++round)
    {
        Words words(random() % 5);
        std::string tail;
        for (std::string & word : words)
        {
            word.resize(random() % 9);
            for (char & c : word)
                c = letters[random() % sizeof letters];
            tail += inQuotes(word) + " ";
        }
        EXPECT_EQ(Received(tail), words) << tail;
    }
}

TEST_F(Process, TheProgramsNameMayStandInQuotes)
{
#if defined(_WIN32) // a copy would miss the libraries beside it
    std::filesystem::path const copy = program();
#else
    std::filesystem::create_directory(folder.Path("with blank"));
    std::filesystem::path const copy = folder.Path("with blank/echo.exe");
    std::filesystem::copy_file(program(), copy);
#endif
    VOZProcess::Information child;
    ASSERT_TRUE(start("\"" + copy.string() + "\" \"" + folder.Path("got") + "\" x", child));
    waitAndClose(child);
    EXPECT_EQ(Left(), Words({"x"}));
#if !defined(_WIN32) // Windows itself tries a name without quotes up to each of its blanks
    EXPECT_FALSE(start(copy.string(), child));
#endif
}

TEST_F(Process, ABackslashInTheProgramsNameIsASeparator)
{
    std::string name = program();
    for (char & c : name)
        if (c == '/')
            c = '\\';
    VOZProcess::Information child;
    ASSERT_TRUE(start(name + " \"" + folder.Path("got") + "\" a\\b", child));
    waitAndClose(child);
    EXPECT_EQ(Left(), Words({"a\\b"}));
}

TEST_F(Process, AMissingProgramIsNoProcess)
{
    for (std::string const & line : {folder.Path("missing") + " x", std::string(), std::string("   "),
                                     std::string("\"\" x"), std::string("no-such-program-on-any-path"), folder.Path()})
    {
        VOZProcess::Information child{this, this};
        EXPECT_FALSE(start(line, child)) << line;
        EXPECT_EQ(child.hProcess, nullptr);
        EXPECT_EQ(child.hThread, nullptr);
    }
}

TEST_F(Process, TheExitCodeIsTheChilds)
{
    Received("exit=0");
    EXPECT_EQ(mCode, 0U);
    Received("exit=77");
    EXPECT_EQ(mCode, 77U);
}

TEST_F(Process, ACrashedChildHasEndedWithACodeOtherThanZero)
{
    EXPECT_TRUE(Received("crash").empty());
    EXPECT_NE(mCode, 0U);
}

TEST_F(Process, WaitingEndsAtTheTimeLimit)
{
    VOZProcess::Information child;
    ASSERT_TRUE(start(program() + " \"" + folder.Path("got") + "\" sleep=400", child));
    unsigned int code = 5;
    EXPECT_EQ(VOZProcess::WaitForSingleObject(child.hProcess, 20), 0x102U);
    EXPECT_FALSE(VOZProcess::GetExitCodeProcess(child.hProcess, code));
    EXPECT_EQ(code, 5U);
    EXPECT_EQ(waitAndClose(child), 0U);
}

TEST_F(Process, ANullHandleIsRefused)
{
    unsigned int code = 5;
    EXPECT_EQ(VOZProcess::WaitForSingleObject(nullptr, 1), 0xFFFFFFFFU);
    EXPECT_FALSE(VOZProcess::GetExitCodeProcess(nullptr, code));
    EXPECT_FALSE(VOZProcess::CloseHandle(nullptr));
}

TEST_F(Process, AChildThatNobodyWaitsForGoesOn)
{
    VOZProcess::Information child;
    ASSERT_TRUE(start(program() + " \"" + folder.Path("got") + "\" sleep=100", child));
    VOZProcess::CloseHandle(child.hProcess);
    VOZProcess::CloseHandle(child.hThread);
    for (int i = 0; i < 500 && !std::filesystem::exists(folder.Path("got")); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(Left(), Words({"sleep=100"}));
}

TEST_F(Process, TheInterpreterDropsOneOuterPairOfQuotes)
{
    std::string const line = "\"" + program() + "\" \"" + folder.Path("got") + "\" -sd \"a b\" exit=3";
    EXPECT_EQ(VOZProcess::System(("\"" + line + " \"z\"\"").c_str()), 3);
    EXPECT_EQ(Left(), Words({"-sd", "a b", "exit=3", "z"}));
}

TEST_F(Process, TheInterpreterSaysThatACommandIsMissing)
{
    EXPECT_NE(VOZProcess::System(("\"" + folder.Path("missing") + " x\"").c_str()), 0);
}

TEST_F(Process, ShellExecuteStartsInTheFolderAndDoesNotWait)
{
    std::filesystem::create_directory(folder.Path("work"));
    auto const name = CATUnicodeString(("\"" + program() + "\"").c_str()).ConvertToUTF16();
    std::string const tail = "\"" + folder.Path("got") + "\" sleep=50 \"9";
    auto const parameters = CATUnicodeString(tail.c_str()).ConvertToUTF16();
    auto const work = CATUnicodeString(folder.Path("work").c_str()).ConvertToUTF16();
    EXPECT_GT(VOZProcess::ShellExecuteW(name.c_str(), parameters.c_str(), work.c_str(), VOZProcess::ShowMinimized), 32);
    for (int i = 0; i < 500 && !std::filesystem::exists(folder.Path("got")); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(Left(), Words({"sleep=50", "9"}));
    EXPECT_EQ(std::filesystem::weakly_canonical(mChildFolder), std::filesystem::weakly_canonical(folder.Path("work")));
}

#ifdef __linux__
// What interrupts a terminal goes to the processes of its session.
TEST_F(Process, ShellExecuteGivesTheChildASessionOfItsOwn)
{
    auto const session = [](std::string const & i_stat)
    {
        std::ifstream file(i_stat);
        std::string word;
        for (int i = 0; i < 6; ++i)
            file >> word;
        return word;
    };
    auto const name = CATUnicodeString("/bin/sh").ConvertToUTF16();
    std::string const copy = "-c \"cat /proc/self/stat >got.part; mv got.part got\"";
    auto const parameters = CATUnicodeString(copy.c_str()).ConvertToUTF16();
    auto const work = CATUnicodeString(folder.Path("").c_str()).ConvertToUTF16();
    EXPECT_GT(VOZProcess::ShellExecuteW(name.c_str(), parameters.c_str(), work.c_str(), VOZProcess::ShowMinimized), 32);
    for (int i = 0; i < 500 && !std::filesystem::exists(folder.Path("got")); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_NE(session(folder.Path("got")), "");
    EXPECT_NE(session(folder.Path("got")), session("/proc/self/stat"));
}
#endif

TEST_F(Process, AChildOfAFolderWritesItsOutputIntoAFile)
{
    auto const wide = [](std::string const & text) { return CATUnicodeString(text.c_str()).ConvertToUTF16(); };
    auto line = wide("\"" + program() + "\" \"" + folder.Path("got") + "\" \"say=a b\" exit=3");
    line.push_back(0);
    folder.Write("said", "an older and longer text that goes");
    VOZProcess::Information child;
    ASSERT_TRUE(VOZProcess::CreateProcessInFolder(line.data(), wide(folder.Path()).c_str(),
                                                  wide(folder.Path("said")).c_str(), child));
    EXPECT_EQ(waitAndClose(child), 3U);
    EXPECT_EQ(Left(), (Words{"say=a b", "exit=3"}));
    EXPECT_TRUE(std::filesystem::equivalent(mChildFolder, folder.Path()));
    std::string said = folder.Read("said");
    std::erase(said, '\r'); // which some systems write ahead of a line feed
    EXPECT_EQ(said, "a b\nerror a b\n");
}

TEST_F(Process, AChildOfAFolderNeedsProgramFolderAndFile)
{
    auto const wide = [](std::string const & text) { return CATUnicodeString(text.c_str()).ConvertToUTF16(); };
    auto const starts = [&](std::string const & name, std::string const & in, std::string const & out)
    {
        auto line = wide("\"" + name + "\" x");
        line.push_back(0);
        VOZProcess::Information child;
        return VOZProcess::CreateProcessInFolder(line.data(), wide(in).c_str(), wide(out).c_str(), child);
    };
    EXPECT_FALSE(starts(folder.Path("none"), folder.Path(), folder.Path("said")));
    EXPECT_FALSE(starts(program(), folder.Path("none"), folder.Path("said")));
    EXPECT_FALSE(starts(program(), folder.Path(), folder.Path("none/said")));
}

TEST_F(Process, ShellExecuteReportsAMissingProgramOrFolder)
{
    auto const none = CATUnicodeString(folder.Path("missing").c_str()).ConvertToUTF16();
    auto const here = CATUnicodeString(folder.Path().c_str()).ConvertToUTF16();
    unsigned short const empty[] = {0};
    EXPECT_LE(VOZProcess::ShellExecuteW(none.c_str(), empty, here.c_str(), VOZProcess::ShowMinimized), 32);
#if !defined(_WIN32) // Wine starts the program elsewhere then
    auto const name = CATUnicodeString(program().c_str()).ConvertToUTF16();
    EXPECT_LE(VOZProcess::ShellExecuteW(name.c_str(), empty, none.c_str(), VOZProcess::ShowMinimized), 32);
#endif
}

std::string modulePath(void * module, unsigned int size = 4096)
{
    std::vector<unsigned short> buffer(size + 1, 'x');
    unsigned int const length = VOZProcess::GetModuleFileNameW(module, buffer.data(), size);
    EXPECT_EQ(buffer[size], 'x') << "wrote behind the buffer";
    EXPECT_LE(length, size);
    return length == 0 ? std::string() : CATUnicodeString(buffer.data()).ConvertToChar();
}

TEST(Module, IsFoundByItsNameAndLiesInItsFolder)
{
    auto const name = CATUnicodeString("VOZPlatform.dll").ConvertToUTF16();
    void * const module = VOZProcess::GetModuleHandleW(name.c_str());
    ASSERT_NE(module, nullptr);
    std::filesystem::path const path = modulePath(module);
    EXPECT_EQ(path.filename().string(), "VOZPlatform.dll");
    EXPECT_TRUE(path.is_absolute());
    EXPECT_TRUE(std::filesystem::equivalent(path.parent_path(), VOZ_PLATFORM_FOLDER));
}

TEST(Module, IsNullWhereItIsNotLoaded)
{
    for (char const * const name : {"VOZLaunchDyna.dll", "Platform.dll", "lib"})
        EXPECT_EQ(VOZProcess::GetModuleHandleW(CATUnicodeString(name).ConvertToUTF16().c_str()), nullptr) << name;
}

TEST(Module, OfANullHandleIsThisProgram)
{
    EXPECT_EQ(std::filesystem::path(modulePath(nullptr)).stem().string(), "test_platform");
}

TEST(Module, APathThatDoesNotFitIsCutAndFillsTheBuffer)
{
    auto const name = CATUnicodeString("VOZPlatform.dll").ConvertToUTF16();
    void * const module = VOZProcess::GetModuleHandleW(name.c_str());
    std::string const whole = modulePath(module);
    auto const length = static_cast<unsigned int>(whole.size());
    unsigned short buffer[8] = {};
    EXPECT_EQ(VOZProcess::GetModuleFileNameW(module, buffer, 8), 8U);
    EXPECT_STREQ(CATUnicodeString(buffer).ConvertToChar(), whole.substr(0, 7).c_str());
    EXPECT_EQ(modulePath(module, length + 1), whole);
    EXPECT_EQ(modulePath(module, length), whole.substr(0, length - 1));
}
} // namespace
