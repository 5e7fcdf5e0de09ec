// FPIReaderRandomTest.cpp: decks, cut and stirred, against the rules told once more.

#include "FPIReader.h"

#include "DeckJobs.h"
#include "FPIReaderFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace fpi;

namespace
{
// The rules told once more, on a list of lines.
struct SlowReader
{
    int error = 1;
    int numMaterials = 0;
    Control control{};
    Properties properties{};
    std::string name;
    std::string description;
    int curveSize = -1;

    explicit SlowReader(std::string const & text)
    {
        for (std::size_t i = 0; i < text.size();)
        {
            std::size_t const feed = text.find('\n', i);
            std::size_t const length =
                std::min<std::size_t>(1023, (feed == std::string::npos ? text.size() : feed + 1) - i);
            lines.push_back(text.substr(i, length).c_str()); // up to a NUL
            i += length;
        }
        run();
    }

private:
    static std::vector<std::string> fields(std::string const & line)
    {
        std::vector<std::string> result;
        std::string field;
        for (char const c : line + " ")
            if (c != ',' && c != ' ' && c != '*' && c != '\t')
                field += c;
            else if (!field.empty())
                result.push_back(std::exchange(field, {}));
        return result;
    }

    static int integer(std::string const & field) // as atoi reads it, but for numbers that no int holds
    {
        return static_cast<int>(std::clamp<long long>(std::strtoll(field.c_str(), nullptr, 10),
                                                      std::numeric_limits<int>::min(),
                                                      std::numeric_limits<int>::max()));
    }

    bool atEnd() const { return next >= lines.size(); }
    bool skip()
    {
        while (!atEnd())
            if (lines[next++][0] == '*')
                return true;
        return false;
    }
    void find(std::string const & upper, std::string const & lower)
    {
        while (!atEnd())
        {
            std::string const begin = lines[next++].substr(0, upper.size());
            if (begin == upper || begin == lower)
                return;
        }
    }

    int readControl()
    {
        bool ended = false;
        std::size_t place = 0;
        for (std::size_t const size : {30U, 6U, 6U, 6U, 6U, 6U, 6U})
        {
            if (atEnd())
                break;
            std::string const line = lines[next++];
            ended = line[0] == '*';
            if (ended)
                break;
            std::vector<std::string> const row = fields(line);
            for (std::size_t i = 0; i < size && i < row.size(); ++i)
                control[place + i] = integer(row[i]);
            place += size;
            if (control[place - 1] == 0)
                break;
        }
        control[2] = 2;
        return ended || skip() ? 0 : 10;
    }

    void readRecord()
    {
        for (std::size_t k = 0; k < 3 && !atEnd(); ++k)
        {
            std::string const line = lines[next++];
            if (line[0] == '*')
                return;
            std::vector<std::string> const row = fields(line);
            for (std::size_t i = 0; i < 8 && i < row.size(); ++i)
                properties[8 * k + i] = static_cast<float>(std::atof(row[i].c_str()));
            properties[0] = 1.0F;
        }
    }

    void run()
    {
        skip();
        if (atEnd())
            return;
        std::string const label = lines[next++].substr(0, 8);
        if (label != "BLOCK II" && label != "block II")
            return;
        error = readControl();
        if (error == 10)
            return;
        numMaterials = 1;
        curveSize = 0;
        find("BLOCK V", "block V");
        readRecord();
        skip();
        find("BLOCK XXVI", "block XXVI");
        if (atEnd() || lines[next][0] == '*')
            return;
        std::string line = lines[next++];
        for (std::string * const text : {&name, &description})
        {
            std::size_t const open = line.find('"');
            std::size_t const close = line.find('"', open + 1);
            if (open == std::string::npos || close == std::string::npos)
                break;
            *text = line.substr(open + 1, std::min<std::size_t>(255, close - open - 1));
            line = line.substr(0, open) + line.substr(close + 1);
        }
        std::vector<std::string> const row = fields(line);
        curveSize = row.size() > 1 ? integer(row[1]) : 0;
    }

    std::vector<std::string> lines;
    std::size_t next = 0;
};

void compare(Read const & read, SlowReader const & slow, std::string const & where)
{
    ASSERT_EQ(read.error, slow.error) << where;
    ASSERT_EQ(read.reader.getNumMaterials(), slow.numMaterials) << where;
    ASSERT_EQ(read.control(), slow.control) << where;
    Properties untouched;
    untouched.fill(-99.0F);
    ASSERT_EQ(read.properties(), slow.numMaterials > 0 ? slow.properties : untouched) << where;
    ASSERT_EQ(read.name(), slow.name) << where;
    ASSERT_EQ(read.description(), slow.description) << where;
    ASSERT_EQ(Inspection::curveSize(read.reader), slow.curveSize) << where;
}

TEST(FPIReader, EveryPrefixOfADeckAgreesWithTheSlowRules)
{
    std::string const text = deckjobs::readFile(deckjobs::goldenFolder() / "plain.golden");
    for (std::string const & whole : {libraryEntry(), text})
        for (std::size_t length = 0; length <= whole.size(); ++length)
        {
            std::string const cut = whole.substr(0, length);
            compare(Read(cut), SlowReader(cut), "cut at " + std::to_string(length));
        }
}

TEST(FPIReader, StirredDecksAgreeWithTheSlowRules)
{
    std::mt19937 random(24);
    std::string const alphabet = "*\n\n ,\t\"01259-.eXVIbBlock\r\x01";
    std::array<int, 3> errors{};
    for (int round = 0; round < 3000; ++round)
    {
        std::string text =
            round % 3 == 0 ? deckjobs::readFile(deckjobs::goldenFolder() / "quarter.golden") : libraryEntry();
        for (unsigned i = random() % 8; i > 0; --i)
        {
            std::size_t const at =
                random() % (random() % 3 == 0 ? std::min<std::size_t>(text.size(), 150) : text.size());
            std::size_t const length = std::min<std::size_t>(text.size() - at, random() % 40);
            switch (random() % 13)
            {
            case 12:
                text.resize(at);
                break;
            case 0:
            case 1:
            case 2:
                text[at] = alphabet[random() % alphabet.size()];
                break;
            case 3:
            case 4:
            case 5:
                text.erase(at, length);
                break;
            case 6:
            case 7:
            case 8:
                text.insert(at, text.substr(random() % text.size(), length));
                break;
            default:
                text.insert(at, std::string(random() % 1200, alphabet[random() % alphabet.size()]));
            }
            if (text.empty())
                break;
        }
        Read const read(text);
        compare(read, SlowReader(text), "round " + std::to_string(round));
        ++errors[read.error == 0 ? 0U : read.error == 1 ? 1U : 2U];
    }
    for (int const count : errors)
        EXPECT_GT(count, 20);
}
} // namespace
