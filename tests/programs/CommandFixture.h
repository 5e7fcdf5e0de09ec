// CommandFixture.h: runs the command as a user does, and looks at its exit code and its two streams.

#ifndef COMMANDFIXTURE_H
#define COMMANDFIXTURE_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

struct Ran
{
    int code = -1;
    std::string out;
    std::string err;

    bool Says(std::string const & i_text) const { return err.find(i_text) != std::string::npos; }
    bool Shows(std::string const & i_text) const { return out.find(i_text) != std::string::npos; }
};

class CommandFixture : public testing::Test
{
protected:
    CommandFixture()
    {
        testing::TestInfo const & info = *testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(info.test_suite_name()) + "." + info.name();
        for (char & c : name)
            if (c == '/')
                c = '_';
        mFolder = std::filesystem::temp_directory_path() / "dravo-command-tests" / name;
        std::filesystem::remove_all(mFolder);
        std::filesystem::create_directories(mFolder);
    }
    ~CommandFixture() override { std::filesystem::remove_all(mFolder); }
    CommandFixture(CommandFixture const &) = delete;
    CommandFixture & operator=(CommandFixture const &) = delete;

    std::string Folder() const { return mFolder.string(); }
    std::string Path(std::string const & i_name) const { return (mFolder / i_name).string(); }

    std::string Write(std::string const & i_name, std::string const & i_text) const
    {
        std::ofstream(mFolder / i_name, std::ios::binary) << i_text;
        return Path(i_name);
    }
    std::string Script(std::string const & i_lines) const
    {
        std::string const path = Write("fake_solver", "#!/bin/sh\n" + i_lines + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    static std::string ReadBack(std::string const & i_path)
    {
        std::ifstream file(i_path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    // i_prefix: of the shell, such as variables. The command runs in the test's folder; its standard input is empty.
    Ran Dravo(std::string const & i_arguments, std::string const & i_prefix = "",
              std::string const & i_out = "stdout.txt") const
    {
        std::string const command = "cd '" + Folder() + "' && " + i_prefix + " '" VOZ_BINARY_DIR "/bin/dravo' " +
                                    i_arguments + " >" + i_out + " 2>stderr.txt" +
                                    (i_prefix.find('|') == std::string::npos ? " </dev/null" : "");
        int const status = std::system(command.c_str());
        Ran ran;
        ran.code = status >= 0 && (status & 0x7f) == 0 ? (status >> 8 & 0xff) : -1;
        ran.out = ReadBack(Path("stdout.txt"));
        ran.err = ReadBack(Path("stderr.txt"));
        return ran;
    }

    // A plate of 6 x 6 quadrilaterals with a raised middle: formed in a moment.
    std::string Bump() const
    {
        std::string text = "BEGIN BULK\n";
        constexpr int kSide = 7;
        for (int row = 0; row < kSide; ++row)
            for (int column = 0; column < kSide; ++column)
            {
                bool const isRaised = row >= 2 && row <= 4 && column >= 2 && column <= 4;
                text += "GRID," + std::to_string(1 + column + kSide * row) + ",," + std::to_string(4 * column) + ".," +
                        std::to_string(4 * row) + "." + (isRaised ? ",1.\n" : ",0.\n");
            }
        for (int row = 0; row + 1 < kSide; ++row)
            for (int column = 0; column + 1 < kSide; ++column)
            {
                int const n = 1 + column + kSide * row;
                text += "CQUAD4," + std::to_string(1 + column + (kSide - 1) * row) + ",1," + std::to_string(n) + "," +
                        std::to_string(n + 1) + "," + std::to_string(n + kSide + 1) + "," + std::to_string(n + kSide) +
                        "\n";
            }
        return text + "ENDDATA\n";
    }
    static std::string JobText()
    {
        return "title = \"Bump\"\n[mesh]\nfile = \"bump.bdf\"\n[blank]\nthickness = \"0.8 mm\"\n[material]\n"
               "from = \"mild-140-270\"\n[blank_holder]\nforce_per_length = \"5 N/mm\"\n";
    }
    std::string MakeJob(std::string const & i_more = "") const
    {
        Write("bump.bdf", Bump());
        return Write("bump.toml", JobText() + i_more);
    }

private:
    std::filesystem::path mFolder;
};

#endif
