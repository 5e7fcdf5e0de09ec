// DeckFixture.h: jobs of the incremental route on plates, and the decks that they leave.

#ifndef DECKFIXTURE_H
#define DECKFIXTURE_H

#include "IncrementalRoute.h"
#include "JobFixture.h"
#include "KeywordDeck.h"

class DeckFixture : public JobFixture
{
protected:
    DeckFixture() { std::filesystem::create_directories(Folder() + "/solver"); }

    struct Plate
    {
        double x, y, side;
        int columns, rows;
        double z;
        bool isStanding = false; // (x, y, z) stands at (z, x, y)
        double dent = 0.0;       // by which the last node lies lower: no two tools are parallel
    };
    void WritePlate(std::string const & i_name, Plate const & i_plate) const
    {
        std::string text = "BEGIN BULK\n";
        int n = 0;
        for (int r = 0; r <= i_plate.rows; ++r)
            for (int c = 0; c <= i_plate.columns; ++c)
            {
                std::string const x = Real(i_plate.x + c * i_plate.side);
                std::string const y = Real(i_plate.y + r * i_plate.side);
                bool const isLast = r == i_plate.rows && c == i_plate.columns;
                std::string const z = Real(i_plate.z - (isLast ? i_plate.dent : 0.0));
                text += "GRID," + std::to_string(++n) + ",," +
                        (i_plate.isStanding ? z + "," + x + "," + y : x + "," + y + "," + z) + "\n";
            }
        int e = 0;
        for (int r = 0; r < i_plate.rows; ++r)
            for (int c = 0; c < i_plate.columns; ++c)
            {
                int const a = 1 + c + (i_plate.columns + 1) * r;
                int const b = a + i_plate.columns + 1;
                text += "CQUAD4," + std::to_string(++e) + ",1," + std::to_string(a) + "," + std::to_string(a + 1) +
                        "," + std::to_string(b + 1) + "," + std::to_string(b) + "\n";
            }
        Write(i_name, text + "ENDDATA\n");
    }

    // Tools 20 mm above and below a part of 8 x 6 mm, a binder and the blank between: the gap is 40 to 41 mm.
    void WriteTools(bool i_isStanding = false) const
    {
        WritePlate("part.bdf", {0, 0, 2, 4, 3, 0, i_isStanding});
        WritePlate("blank.bdf", {0, 0, 2, 4, 3, 0, i_isStanding});
        WritePlate("die.bdf", {-2, -2, 2, 6, 5, 20, i_isStanding});
        WritePlate("punch.bdf", {-2, -2, 2, 6, 5, -20, i_isStanding, 1.0});
        WritePlate("binder.bdf", {-2, -2, 2, 6, 5, -10, i_isStanding});
    }
    static std::string Tools(bool i_hasBinder)
    {
        return std::string("[incremental]\nblank = \"blank.bdf\"\ndie = \"die.bdf\"\npunch = \"punch.bdf\"\n") +
               (i_hasBinder ? "binder = \"binder.bdf\"\n" : "");
    }

    voz::workbench::Job JobOf(std::string const & i_more) const
    {
        return voz::workbench::ParseJob(Sound() + i_more, JobPath());
    }
    voz::workbench::Outcome Run(std::string const & i_more) const
    {
        voz::workbench::RouteOptions options;
        options.folder = Folder() + "/solver";
        voz::workbench::RunObserver nobody;
        voz::workbench::Job const job = JobOf(i_more);
        return voz::workbench::IncrementalRoute().Run(job, voz::workbench::ReadModel(job), options, nobody);
    }
    std::string RefusalOf(std::string const & i_more) const
    {
        try
        {
            Run(i_more);
        }
        catch (voz::workbench::InputError const & error)
        {
            return error.what();
        }
        return "not refused";
    }

    std::string InSolver(std::string const & i_name) const { return Folder() + "/solver/" + i_name; }
    keyworddeck::Deck Deck() const { return keyworddeck::Deck(InSolver("inputls.dyn")); }

private:
    static std::string Real(double i_value)
    {
        std::string const text = std::to_string(i_value);
        return text.substr(0, text.find('.') + 4);
    }
};

#endif
