#include "VOZFile.h"

#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace
{
TEST(OpenFile, TakesABackslashForASeparator)
{
    TempFolder const folder;
    std::filesystem::create_directory(folder.Path("sub"));
    std::FILE * const written = VOZOpenFile((folder.Path() + "\\sub\\name.txt").c_str(), "wb");
    ASSERT_NE(written, nullptr);
    std::fputs("text", written);
    std::fclose(written);
    EXPECT_EQ(folder.Read("sub/name.txt"), "text");
    std::FILE * const read = VOZOpenFile((folder.Path() + "\\sub/name.txt").c_str(), "r");
    ASSERT_NE(read, nullptr);
    std::fclose(read);
}

TEST(OpenFile, TakesNamesInUtf8)
{
    TempFolder const folder;
    std::FILE * const written = VOZOpenFile((folder.Path() + "/bl\xC3\xA4"
                                                             "ch.txt")
                                                .c_str(),
                                            "wb");
    ASSERT_NE(written, nullptr);
    std::fclose(written);
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(folder.Path()) / std::u8string(u8"bl\u00e4ch.txt")));
}

TEST(OpenFile, RefusesAFolder)
{
    TempFolder const folder;
    EXPECT_EQ(VOZOpenFile(folder.Path().c_str(), "r"), nullptr);
    EXPECT_EQ(VOZOpenFile(folder.Path().c_str(), "rb"), nullptr);
    EXPECT_EQ(VOZOpenFile(folder.Path().c_str(), "w"), nullptr);
    EXPECT_NE(errno, 0);
}

TEST(OpenFile, RefusesWhatIsMissingEmptyOrNull)
{
    TempFolder const folder;
    EXPECT_EQ(VOZOpenFile(folder.Path("missing").c_str(), "r"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(VOZOpenFile("", "w"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(VOZOpenFile(nullptr, "w"), nullptr);
}

TEST(RemoveFile, RemovesAFileAndNothingElse)
{
    TempFolder const folder;
    folder.Write("name.txt", "text");
    std::filesystem::create_directory(folder.Path("sub"));
    EXPECT_EQ(VOZRemoveFile((folder.Path() + "\\name.txt").c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("name.txt")));
    EXPECT_EQ(VOZRemoveFile(folder.Path("name.txt").c_str()), -1);
    EXPECT_EQ(VOZRemoveFile(folder.Path("sub").c_str()), -1);
    EXPECT_TRUE(std::filesystem::exists(folder.Path("sub")));
    EXPECT_EQ(VOZRemoveFile(""), -1);
    EXPECT_EQ(VOZRemoveFile(nullptr), -1);
}

#if !defined(_WIN32)
TEST(OpenFile, RefusesADriveLetter)
{
    TempFolder const folder;
    std::filesystem::path const before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    EXPECT_EQ(VOZOpenFile("C:deck.fpi", "w"), nullptr);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(VOZOpenFile("c:\\deck.fpi", "w"), nullptr);
    std::filesystem::current_path(before);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}
#endif
} // namespace
