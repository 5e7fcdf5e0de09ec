// VOZSolverIncrementalFields.cpp: what the deck's lines are made of: texts, and numbers in fields.
//
// Numbers are formed as printf forms them in the "C" locale, without asking the locale.

#include "VOZSolverIncremental.h"

#include "CATError.h"
#include "CATFatalError.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace
{
void Put(std::FILE * i_stream, char const * i_text)
{
    if (i_stream == nullptr || std::fputs(i_text, i_stream) < 0)
        throw CATError("the keyword deck cannot be written", "VOZSolverIncremental", __LINE__);
}

// A number's field: its text with blanks ahead of it up to the width, a NUL behind. No text outgrows the buffer: a
// field is at most kWidest wide, and the text of a real number, whose exponent may have three digits, at most 1 longer.
class Field
{
public:
    static constexpr int kWidest = 119;

    // As "%<width>.<precision>E" writes it, infinities and what is no number included.
    Field(double i_value, int i_precision, int i_width)
    {
        char text[kSize];
        auto const end =
            std::to_chars(text, text + kSize, i_value, std::chars_format::scientific, std::max(i_precision, 0)).ptr;
        std::transform(text, end, text,
                       [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
        Align(text, end, i_width);
    }
    // As "%<width>i" writes it: a width below 0 puts the blanks behind.
    Field(int i_value, int i_width)
    {
        char text[kSize];
        auto const end = std::to_chars(text, text + kSize, i_value).ptr;
        Align(text, end, i_width);
    }
    unsigned short const * Wide() const { return mText; }

private:
    void Align(char const * i_first, char const * i_last, int i_width)
    {
        auto const blanks = std::max<std::ptrdiff_t>(std::abs(i_width) - (i_last - i_first), 0);
        unsigned short * at = mText;
        at = i_width > 0 ? std::fill_n(at, blanks, static_cast<unsigned short>(' ')) : at;
        at = std::transform(i_first, i_last, at, [](char c) { return static_cast<unsigned char>(c); });
        at = i_width < 0 ? std::fill_n(at, blanks, static_cast<unsigned short>(' ')) : at;
        *at = 0;
    }

    static constexpr int kSize = kWidest + 2;
    unsigned short mText[kSize];
};
} // namespace

void VOZSolverIncremental::WriteLine(char const * i_strLine)
{
    Put(m_pStream, i_strLine);
    WriteEnd();
}

void VOZSolverIncremental::WriteEnd()
{
    Put(m_pStream, "\n");
}

void VOZSolverIncremental::WriteText(char const * i_strText)
{
    Put(m_pStream, i_strText);
}

void VOZSolverIncremental::WriteValue(unsigned short const * i_chBuffer)
{
    if (!VOZ_CONTRACT(i_chBuffer && m_pStream, "i_chBuffer && m_pStream"))
        return;
    CATUnicodeString text(i_chBuffer);
    text.ReplaceSubString(",", ".");
    Put(m_pStream, text.ConvertToChar());
}

void VOZSolverIncremental::DoubleWrite(double i_dValue, int i_nPrecision, int i_nWidth, unsigned char i_bFullDigits)
{
    int const width = std::clamp(i_nWidth, 7, Field::kWidest);
    int precision = std::clamp(i_nPrecision, -1, width - 7); // the room of sign, digit, point and exponent
    if (i_bFullDigits && i_dValue > 0.0)
        ++precision; // no sign: its place is a digit's
    if (i_dValue >= 1e+100 ||
        i_dValue <= -1e-100) // the second bound lets every negative number but the tiniest lose one
        --precision;
    WriteValue(Field(i_dValue, precision, width).Wide());
}

void VOZSolverIncremental::DoubleWriteEnd(double i_dValue, int i_nPrecision, int i_nWidth, int i_bFullDigits)
{
    DoubleWrite(i_dValue, i_nPrecision, i_nWidth, i_bFullDigits != 0);
    WriteEnd();
}

void VOZSolverIncremental::IntegerWrite(int i_nValue, int i_nWidth)
{
    WriteValue(Field(i_nValue, std::clamp(i_nWidth, -Field::kWidest, Field::kWidest)).Wide());
}

void VOZSolverIncremental::IntegerWriteEnd(int i_nValue)
{
    IntegerWrite(i_nValue, 10);
    WriteEnd();
}

void VOZSolverIncremental::WriteReals(std::initializer_list<double> i_values)
{
    for (double const value : i_values)
        DoubleWrite(value, 3, 10, 1);
}

void VOZSolverIncremental::WriteIntegers(std::initializer_list<int> i_values)
{
    for (int const value : i_values)
        IntegerWrite(value, 10);
}

void VOZSolverIncremental::WriteCurveRow(double i_dAbscissa, double i_dOrdinate)
{
    DoubleWrite(i_dAbscissa, 9, 20, 1);
    DoubleWriteEnd(i_dOrdinate, 9, 20, 1);
}
