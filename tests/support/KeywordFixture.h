// KeywordFixture.h: a test of the keyword deck: numbers to change, mesh files without a mesh, the deck read back.

#ifndef KEYWORDFIXTURE_H
#define KEYWORDFIXTURE_H

#include "FolderFixture.h"
#include "KeywordDeck.h"
#include "KeywordJob.h"

#include <fstream>
#include <string>
#include <vector>

class KeywordFixture : public FolderFixture
{
protected:
    KeywordFixture()
    {
        for (char const * name : {"VOZBlank.mod", "VOZDie.mod", "VOZPunch.mod", "VOZBinder.mod"})
            std::ofstream(folder / name, std::ios::binary) << "*NODE\n*END\n";
    }
    // The forming deck of the numbers, by its columns.
    keyworddeck::Deck deck() const
    {
        EXPECT_EQ(keywordjob::Driver(numbers).write(), 0);
        return keyworddeck::Deck("inputls.dyn");
    }
    // The texts of the broken contracts.
    std::vector<std::string> reported() const
    {
        std::vector<std::string> texts;
        for (auto const & report : host.reports)
            texts.push_back(report.text);
        return texts;
    }

    keywordjob::Numbers numbers;
};

#endif
