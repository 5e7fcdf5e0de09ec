// JobFixture.h: a folder for the length of a test, with a small part and texts of jobs for it.

#ifndef JOBFIXTURE_H
#define JOBFIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

class JobFixture : public testing::Test
{
protected:
    JobFixture()
    {
        testing::TestInfo const & info = *testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(info.test_suite_name()) + "." + info.name();
        for (char & c : name)
            if (c == '/')
                c = '_';
        mFolder = std::filesystem::temp_directory_path() / "dravo-tests" / name;
        std::filesystem::remove_all(mFolder);
        std::filesystem::create_directories(mFolder);
        Write("part.bdf", PlateText());
    }
    ~JobFixture() override { std::filesystem::remove_all(mFolder); }
    JobFixture(JobFixture const &) = delete;
    JobFixture & operator=(JobFixture const &) = delete;

    std::string Folder() const { return mFolder.string(); }
    std::string JobPath() const { return (mFolder / "job.toml").string(); }
    std::string Write(std::string const & i_name, std::string const & i_text) const
    {
        std::ofstream(mFolder / i_name, std::ios::binary) << i_text;
        return (mFolder / i_name).string();
    }

    // Lines: 1 [mesh], 2 file, 4 [blank], 5 thickness. A [material.NAME] table may follow.
    static std::string Sound()
    {
        return "[mesh]\nfile = \"part.bdf\"\n\n[blank]\nthickness = \"0.78 mm\"\n\n[material]\nK_MPa = 565.32\n"
               "n = 0.2589\nr = 1.79\nyield_MPa = 157\n\n";
    }

    // One action of each kind.
    static std::string Everything()
    {
        return "[[holder]]\nforce = \"5 kN\"\nnodes = [11, 12, 13]\n"
               "[[bead]]\nforce = \"80 N/mm\"\npoints_in = [[0, 0, 0], [1, 0, 0]]\n"
               "[[pad]]\npressure_Pa = 2e6\nset = \"1\"\n"
               "[[constraint]]\nx = \"1.5 mm\"\nbox_mm = [[0, 0, 0], [1, 2, 3]]\n";
    }

    // A plate of 4 x 3 quadrilaterals of 2 mm at z = 0; ids of nodes 1 .. 20, of elements 1 .. 12; the last column of
    // elements is set 2.
    //
    //   16--17--18--19--20
    //   11--12--13--14--15
    //    6---7---8---9--10
    //    1---2---3---4---5
    static std::string PlateText()
    {
        std::string text = "BEGIN BULK\n";
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 5; ++column)
                text += "GRID," + std::to_string(1 + column + 5 * row) + ",," + std::to_string(2 * column) + ".," +
                        std::to_string(2 * row) + ".,0.\n";
        for (int row = 0; row < 3; ++row)
            for (int column = 0; column < 4; ++column)
            {
                int const n = 1 + column + 5 * row;
                text += "CQUAD4," + std::to_string(1 + column + 4 * row) + (column == 3 ? ",2," : ",1,") +
                        std::to_string(n) + "," + std::to_string(n + 1) + "," + std::to_string(n + 6) + "," +
                        std::to_string(n + 5) + "\n";
            }
        return text + "ENDDATA\n";
    }

private:
    std::filesystem::path mFolder;
};

#endif
