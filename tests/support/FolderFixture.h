// FolderFixture.h: a test in a folder of its own, with a host in memory whose install root is that folder.

#ifndef FOLDERFIXTURE_H
#define FOLDERFIXTURE_H

#include "HostFixture.h"

#include <filesystem>
#include <fstream>
#include <string>

class FolderFixture : public HostFixture
{
protected:
    FolderFixture()
    {
        testing::TestInfo const & test = *testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test.test_suite_name()) + "_" + test.name();
        for (char & c : name)
            if (c == '/')
                c = '_';
        folder = std::filesystem::path(VOZ_BINARY_DIR) / "test_folders" / name;
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
        folderBefore = std::filesystem::current_path();
        std::filesystem::current_path(folder);
        host.environment["VOZDRAVO3D"] = folder.string();
        config("");
    }
    ~FolderFixture() override { std::filesystem::current_path(folderBefore); }

    // Writes the configuration file.
    void config(std::string const & text) { std::ofstream(folder / "config.cfg", std::ios::binary) << text; }

    std::filesystem::path folder; // also the current one; left behind for a look
    std::filesystem::path folderBefore;
};

#endif
