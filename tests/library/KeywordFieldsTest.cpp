// KeywordFieldsTest.cpp: numbers and lines of the keyword deck; a deck that cannot be written.

#include "CommaLocale.h"
#include "DeckJobs.h"
#include "FolderFixture.h"
#include "KeywordReference.h"

#include "CATError.h"
#include "VOZFile.h"
#include "VOZStatus.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using deckjobs::firstDifference;
using deckjobs::readFile;
using keywordjob::Driver;
using keywordjob::Numbers;

namespace
{
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// The driver with its stream in the test's hands.
class FieldDriver : public VOZSolverIncremental
{
public:
    using VOZSolverIncremental::DoubleWrite;
    using VOZSolverIncremental::DoubleWriteEnd;
    using VOZSolverIncremental::IntegerWrite;
    using VOZSolverIncremental::IntegerWriteEnd;
    using VOZSolverIncremental::WriteEnd;
    using VOZSolverIncremental::WriteLine;
    using VOZSolverIncremental::WriteValue;

    void open(char const * mode = "w") { m_pStream = VOZOpenFile("fields.txt", mode); }
    void close()
    {
        std::fclose(m_pStream);
        m_pStream = nullptr;
    }
    // What i_write leaves in the file.
    template <class Write>
    std::string text(Write i_write)
    {
        open();
        i_write();
        close();
        return readFile("fields.txt");
    }
    std::string real(double value, int precision, int width, unsigned char full = 1)
    {
        return text([&] { DoubleWrite(value, precision, width, full); });
    }
    std::string integer(int value, int width)
    {
        return text([&] { IntegerWrite(value, width); });
    }
};

class KeywordFields : public FolderFixture
{
protected:
    FieldDriver driver;
};

class KeywordWriting : public FolderFixture
{
protected:
    // A driver that leaves the deck in the middle.
    class Leaving : public Driver
    {
    public:
        using Driver::Driver;
        bool isClosed() const { return m_pStream == nullptr; }
        bool leaves = true;

    protected:
        void WriteToolingTitleBlock() override
        {
            if (leaves)
                throw 7;
            Driver::WriteToolingTitleBlock();
        }
    };
};
} // namespace

TEST_F(KeywordFields, RealNumbersHaveADigitMoreAboveZeroAndOneLessBelow)
{
    struct Row
    {
        double value;
        int precision, width;
        unsigned char full;
        char const * text;
    };
    // clang-format off
    Row const rows[] = {
        {1.5, 3, 10, 1, "1.5000E+00"},
        {0.0, 3, 10, 1, " 0.000E+00"},
        {-1.5, 3, 10, 1, " -1.50E+00"},
        {1.5, 3, 10, 0, " 1.500E+00"},
        {-1.5, 3, 10, 0, " -1.50E+00"},
        {-0.0, 3, 10, 1, "-0.000E+00"},
        {1.5, 3, 10, 200, "1.5000E+00"},
        // carries
        {9.9995, 3, 10, 1, "9.9995E+00"},
        {9.99996, 3, 10, 1, "1.0000E+01"},
        {9.9996, 3, 10, 0, " 1.000E+01"},
        {-9.996, 3, 10, 1, " -1.00E+01"},
        {0.99999999, 3, 10, 1, "1.0000E+00"},
        {9.99996e99, 3, 10, 1, "1.0000E+100"}, // below 1e100 as a number, not as a text
        // exponents of three digits
        {1e100, 3, 10, 1, "1.000E+100"},
        {1e-100, 3, 10, 1, "1.0000E-100"},
        {-1e-100, 3, 10, 1, "-1.00E-100"},
        {-5e-101, 3, 10, 1, "-5.000E-101"}, // counts as not negative
        {-1e100, 3, 10, 1, "-1.00E+100"},
        {kLargest, 3, 10, 1, "1.798E+308"},
        {-kLargest, 3, 10, 1, "-1.80E+308"},
        {std::numeric_limits<double>::min(), 3, 10, 1, "2.2251E-308"},
        {kSmallest, 3, 10, 1, "4.9407E-324"},
        {-kSmallest, 3, 10, 1, "-4.941E-324"},
        {kSmallest, 9, 20, 1, "   4.9406564584E-324"},
        // no numbers
        {kInfinity, 3, 10, 1, "       INF"},
        {-kInfinity, 3, 10, 1, "      -INF"},
        {kNone, 3, 10, 1, "       NAN"},
        {-kNone, 3, 10, 1, "      -NAN"},
        // widths below 7 count as 7; a width cuts the precision
        {1.5, 3, 5, 1, "1.5E+00"},
        {0.0, 3, 5, 1, "  0E+00"},
        {1.5, 3, -20, 0, "  2E+00"},
        {-1.5, 3, 0, 1, " -2E+00"}, // a precision below none is none
        {1.25, 9, 12, 1, "1.250000E+00"},
        {0.0, 9, 12, 1, " 0.00000E+00"},
        {-1.25, 9, 12, 1, " -1.2500E+00"},
        // the other fields of the deck
        {0.0, 9, 20, 1, "     0.000000000E+00"},
        {1.0, 1, 20, 1, "            1.00E+00"},
        {0.0125, 8, 16, 0, "  1.25000000E-02"},
        {-0.0125, 8, 16, 0, "  -1.2500000E-02"},
    };
    // clang-format on
    for (Row const & row : rows)
        EXPECT_EQ(driver.real(row.value, row.precision, row.width, row.full), row.text)
            << row.value << " " << row.precision << " " << row.width;
}

TEST_F(KeywordFields, AFieldIsNeverWiderThanABufferHolds)
{
    EXPECT_EQ(driver.real(kLargest, 1000, 100000), driver.real(kLargest, 112, 119));
    EXPECT_EQ(driver.real(kLargest, 112, 119).size(), 119U); // what 120 characters hold with a NUL
    EXPECT_EQ(driver.real(1.5, 3, 119), std::string(109, ' ') + "1.5000E+00");
    EXPECT_EQ(driver.real(-kSmallest, 1000, 2147483647).size(), 120U);
    EXPECT_EQ(driver.real(kSmallest, 1000, 2147483647).size(), 120U);
    EXPECT_EQ(driver.integer(-5, 2147483647), std::string(117, ' ') + "-5");
    EXPECT_EQ(driver.integer(-5, -2147483647 - 1), "-5" + std::string(117, ' '));
}

TEST_F(KeywordFields, APrecisionBelowNoneIsNone)
{
    for (int const precision : {0, -1, -5, -2147483647 - 1})
        EXPECT_EQ(driver.real(-1.5, precision, 10), "    -2E+00") << precision;
    EXPECT_EQ(driver.real(1.5, -2147483647 - 1, 10), "     2E+00");
}

TEST_F(KeywordFields, RealNumbersAreThoseOfPrintf)
{
    std::mt19937_64 engine(20261121);
    std::string wanted;
    driver.open();
    for (int i = 0; i < 20000; ++i)
    {
        std::uint64_t const bits = engine();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (i % 2 == 0)
            value = std::ldexp(static_cast<double>(bits >> 11), static_cast<int>(bits % 60) - 80);
        int const precision = 1 + static_cast<int>(engine() % 11); // printf takes none below 0
        int const width = 8 + static_cast<int>(engine() % 20);
        bool const full = i % 3 != 0;
        if (std::isnan(value))
            continue; // printf's spelling of its sign is the platform's
        driver.DoubleWriteEnd(value, precision, width, full);
        wanted += keywordreference::R(value, precision, width, full) + "\n";
    }
    driver.close();
    EXPECT_EQ(firstDifference(wanted, readFile("fields.txt")), "");
}

TEST_F(KeywordFields, IntegersStandToTheRight)
{
    EXPECT_EQ(driver.integer(0, 10), "         0");
    EXPECT_EQ(driver.integer(-7, 10), "        -7");
    EXPECT_EQ(driver.integer(-2147483647 - 1, 10), "-2147483648");
    EXPECT_EQ(driver.integer(10000001, 8), "10000001");
    EXPECT_EQ(driver.integer(123, 2), "123");
    EXPECT_EQ(driver.integer(7, 0), "7");
    EXPECT_EQ(driver.integer(7, -4), "7   ");
    EXPECT_EQ(driver.text([&] { driver.IntegerWriteEnd(42); }), "        42\n");
}

TEST_F(KeywordFields, LinesEndInALineFeed)
{
    EXPECT_EQ(driver.text([&] { driver.WriteLine("*NODE"); }), "*NODE\n");
    EXPECT_EQ(driver.text([&] { driver.WriteLine("100% %s"); }), "100% %s\n");
    EXPECT_EQ(driver.text([&] { driver.WriteEnd(); }), "\n");
    EXPECT_EQ(driver.text([&] { driver.DoubleWriteEnd(1.5, 3, 10, 256); }), "1.5000E+00\n");
    EXPECT_EQ(driver.text([&] { driver.DoubleWriteEnd(1.5, 3, 10, 0); }), " 1.500E+00\n");
}

TEST_F(KeywordFields, AValueHasNoCommas)
{
    unsigned short const value[] = {'1', ',', '5', ',', 'x', 0};
    EXPECT_EQ(driver.text([&] { driver.WriteValue(value); }), "1.5.x");
}

TEST_F(KeywordFields, AValueWithoutATextOrAStreamIsReported)
{
    unsigned short const value[] = {'1', 0};
    EXPECT_EQ(driver.text([&] { driver.WriteValue(nullptr); }), "");
    driver.WriteValue(value);
    ASSERT_EQ(host.reports.size(), 2U);
    EXPECT_EQ(host.reports[0].text, "i_chBuffer && m_pStream");
    EXPECT_EQ(host.reports[1].text, "i_chBuffer && m_pStream");
}

TEST_F(KeywordFields, AWriteThatFailsRaisesAnError)
{
    unsigned short const value[] = {'1', 0};
    std::ofstream("fields.txt") << "kept";
    driver.open("r");
    EXPECT_THROW(driver.WriteLine("*NODE"), CATError);
    EXPECT_THROW(driver.WriteEnd(), CATError);
    EXPECT_THROW(driver.WriteValue(value), CATError);
    EXPECT_THROW(driver.DoubleWrite(1.0, 3, 10, 1), CATError);
    EXPECT_THROW(driver.IntegerWriteEnd(1), CATError);
    driver.close();
    EXPECT_EQ(readFile("fields.txt"), "kept");
    EXPECT_THROW(driver.WriteLine("*NODE"), CATError); // there is no stream
}

TEST_F(KeywordWriting, TheLocalesCommaNeverReachesTheDeck)
{
    Numbers numbers;
    numbers.binderForce = 1.5e5;
    numbers.beads = {{1e5, {1.5, 2.5, 3.5}}};
    std::string const wanted = keywordreference::deck(numbers);
    CommaLocale const locale;
    ASSERT_TRUE(locale.inForce());
    ASSERT_EQ(Driver(numbers).write(), 0);
    EXPECT_EQ(firstDifference(wanted, readFile("inputls.dyn")), "");
}

TEST_F(KeywordWriting, ADeckThatCannotBeOpenedIsAFailureWithoutAnError)
{
    Numbers numbers;
    numbers.folder = "no such folder";
    EXPECT_EQ(Driver(numbers).write(), E_FAIL);
    std::filesystem::create_directories("inputls.dyn"); // a folder in its place
    EXPECT_EQ(Driver(Numbers()).write(), E_FAIL);
}

TEST_F(KeywordWriting, AnErrorPassesThroughAndTheStreamIsClosed)
{
    Leaving driver{Numbers()};
    EXPECT_THROW(driver.write(), int);
    EXPECT_TRUE(driver.isClosed());
    EXPECT_NE(readFile("inputls.dyn").find("*DEFINE_VECTOR"), std::string::npos); // what was written stays
    driver.leaves = false;
    EXPECT_EQ(driver.write(), 0);
    EXPECT_TRUE(driver.isClosed());
    EXPECT_EQ(firstDifference(keywordreference::deck(Numbers()), readFile("inputls.dyn")), "");
}

#if defined(__linux__)
TEST_F(KeywordWriting, AFullDeviceRaisesAnError)
{
    std::filesystem::create_symlink("/dev/full", "inputls.dyn");
    EXPECT_THROW(Driver(Numbers()).write(), CATError);
}
#endif
