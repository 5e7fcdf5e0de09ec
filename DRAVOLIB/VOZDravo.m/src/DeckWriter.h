// DeckWriter.h: the text of decks and tables on its way into a file.
//
// Text gathers in a block of memory and goes to the stream in one piece. A stream that refuses it is not noticed here:
// who needs the file looks at it afterwards. Numbers are those that printf writes in the "C" locale, whatever the
// locale is.

#ifndef DECKWRITER_H
#define DECKWRITER_H

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

class DeckWriter
{
public:
    explicit DeckWriter(std::FILE * i_file); // lent
    ~DeckWriter() { Flush(); }
    DeckWriter(DeckWriter const &) = delete;
    DeckWriter & operator=(DeckWriter const &) = delete;

    void Text(std::string_view i_text)
    {
        if (i_text.size() > kBlockBytes - mUsed)
            return LongText(i_text);
        std::memcpy(mBlock.get() + mUsed, i_text.data(), i_text.size());
        mUsed += i_text.size();
    }
    void Number(int i_value);
    void Number(double i_value); // as FormatDeckDouble writes it
    void Flush();

    // Fields of at least so many columns, up to 64, more where the value needs them.
    void IntegerField(int i_value, std::size_t i_width);                   // "%*d"
    void LeftNumber(int i_value, std::size_t i_width);                     // "%-*d"
    void RightField(std::string_view i_text, std::size_t i_width);         // "%*s"
    void LeftField(std::string_view i_text, std::size_t i_width);          // "%-*s"
    void FixedField(double i_value, std::size_t i_width, int i_decimals);  // "%*.*f", of up to 20 decimals
    void SignedField(double i_value, std::size_t i_width, int i_decimals); // "%+*.*f", likewise

    // One line: its fields with a blank between them. A field is an int, a double or literal text.
    template <class First, class... Rest>
    void Row(First const & i_first, Rest const &... i_rest)
    {
        Field(i_first);
        ((Text(" "), Field(i_rest)), ...);
        Text("\n");
    }

    // Room for that many bytes, at most a block, behind what is there; Take adds those up to i_end to the text.
    char * Reserve(std::size_t i_bytes)
    {
        if (kBlockBytes - mUsed < i_bytes)
            Flush();
        return mBlock.get() + mUsed;
    }
    void Take(char const * i_end) { mUsed = static_cast<std::size_t>(i_end - mBlock.get()); }

private:
    void Field(int i_value) { Number(i_value); }
    void Field(double i_value) { Number(i_value); }
    void Field(std::string_view i_value) { Text(i_value); }
    void LongText(std::string_view i_text);

    static constexpr std::size_t kBlockBytes = std::size_t{1} << 16;

    std::FILE * mFile;
    std::unique_ptr<char[]> mBlock;
    std::size_t mUsed = 0;
};

#endif
