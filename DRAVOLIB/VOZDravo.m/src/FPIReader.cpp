// FPIReader.cpp: blocks II, V and XXVI of a deck.
//
// Lines have at most 1023 characters; a longer one goes on as the next. One that begins with "*" is a separator. A
// block is found by the first characters of its label alone, so that block VI answers where there is no block V.

#include "FPIReader.h"

#include "DeckNumber.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>

namespace
{
constexpr int kNoDeck = 1;
constexpr int kEndInControl = 10;
constexpr int kBrokenRecord = 11;

constexpr int kFirstLineFields = 30;
constexpr int kFurtherLineFields = 6;
constexpr int kNumMaterialsPlace = 2; // of the control array
constexpr int kNumMaterialsPlus1 = 2; // what stands there: one material
constexpr int kFieldsPerRecordLine = 8;
constexpr std::size_t kTextLength = 255;
constexpr char const * kSeparators = ", *\t\n"; // the line feed ends the last field

class Line
{
public:
    bool Read(std::FILE * io_file) { return std::fgets(mText, static_cast<int>(sizeof(mText)), io_file) != nullptr; }
    bool IsSeparator() const { return mText[0] == '*'; }
    char const * Text() const { return mText; }

    bool BeginsWith(char const * i_upper, char const * i_lower) const
    {
        return std::strncmp(mText, i_upper, std::strlen(i_upper)) == 0 ||
               std::strncmp(mText, i_lower, std::strlen(i_lower)) == 0;
    }

private:
    char mText[1024] = {};
};

// Reads up to and including the line that is wanted; false at the end of the file.
template <class Wanted>
bool readUpTo(std::FILE * io_file, Wanted wanted)
{
    Line line;
    while (line.Read(io_file))
        if (wanted(line))
            return true;
    return false;
}

bool readUpToLabel(std::FILE * io_file, char const * i_upper, char const * i_lower)
{
    return readUpTo(io_file, [&](Line const & line) { return line.BeginsWith(i_upper, i_lower); });
}

// Calls visit(index, field) for each of the first most fields, cut out of the text: a number must not be sought behind
// its field.
template <class Visit>
void forEachField(char const * text, int most, Visit visit)
{
    for (int i = 0; i < most; ++i)
    {
        text += std::strspn(text, kSeparators);
        std::string const field(text, std::strcspn(text, kSeparators));
        if (field.empty())
            return;
        visit(i, field.c_str());
        text += field.size();
    }
}

// Of UTF-8: any byte of a character but its first.
bool isInsideCharacter(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The first text between double quotes, which leaves the line together with them. Empty if there is none.
std::string takeQuoted(std::string & io_line)
{
    std::size_t const open = io_line.find('"');
    std::size_t const close = open == std::string::npos ? open : io_line.find('"', open + 1);
    if (close == std::string::npos)
        return {};
    std::string text = io_line.substr(open + 1, close - open - 1);
    io_line.erase(open, close - open + 1);
    std::size_t length = std::min(text.size(), kTextLength);
    while (length + 3 > kTextLength && length < text.size() && isInsideCharacter(text[length]))
        --length;
    text.resize(length);
    return text;
}
} // namespace

FPIReader::FPIReader(std::FILE * io_file, int & o_error, bool) : mCurveId(0), mNumMaterials(0)
{
    o_error = kNoDeck;
    if (!io_file)
        return;
    try
    {
        ReadDeck(io_file, o_error);
    }
    catch (std::bad_alloc const &)
    {
        cleanUpMemory();
        o_error = kNoDeck;
    }
}

FPIReader::FPIReader(FPIReader const & i_other) = default;
FPIReader & FPIReader::operator=(FPIReader const & i_other) = default;

FPIReader::~FPIReader()
{
    cleanUpMemory();
}

void FPIReader::cleanUpMemory()
{
    mControl.reset();
    mCurveSizes.reset();
    mProperties.reset();
    mNumMaterials = 0; // of which there are no rows any more
}

void FPIReader::ReadDeck(std::FILE * io_file, int & o_error)
{
    mControl = std::shared_ptr<int[]>(new int[kNumControl]());
    SkipBlock(io_file); // the header
    Line label;
    if (!label.Read(io_file) || !label.BeginsWith("BLOCK II", "block II"))
        return;
    o_error = ReadFPIControl(io_file);
    if (o_error == kEndInControl)
        return;
    int const numMaterials = mControl[kNumMaterialsPlace] - 1;
    mProperties = std::shared_ptr<float[]>(new float[static_cast<std::size_t>(kNumProperty * numMaterials)]());
    mCurveSizes = std::shared_ptr<int[]>(new int[static_cast<std::size_t>(numMaterials)]());
    mNumMaterials = numMaterials;

    readUpToLabel(io_file, "BLOCK V", "block V");
    o_error = ReadMaterialProperties(io_file);
    readUpToLabel(io_file, "BLOCK XXVI", "block XXVI");
    o_error = ReadSSCCurve(io_file); // a broken record is forgotten here
}

int FPIReader::ReadFPIControl(std::FILE * io_file)
{
    int * const control = mControl.get();
    int begin = 0;
    int size = kFirstLineFields;
    Line line;
    bool goesOn = true;
    while (goesOn && begin < kNumControl && line.Read(io_file) && !line.IsSeparator())
    {
        forEachField(line.Text(), size, [&](int i, char const * field) { control[begin + i] = TextToInt(field); });
        begin += size;
        size = kFurtherLineFields;
        goesOn = control[begin - 1] != 0;
    }
    control[kNumMaterialsPlace] = kNumMaterialsPlus1;
    return line.IsSeparator() || SkipBlock(io_file) ? 0 : kEndInControl;
}

int FPIReader::LoadMaterial(std::FILE * io_file, int i)
{
    float * const record = mProperties.get() + static_cast<std::ptrdiff_t>(kNumProperty) * (i - 1);
    Line line;
    for (int begin = 0; begin < kNumProperty; begin += kFieldsPerRecordLine)
    {
        if (!line.Read(io_file))
            return begin == 0 ? kBrokenRecord : 0;
        if (line.IsSeparator())
            return kBrokenRecord;
        forEachField(line.Text(), kFieldsPerRecordLine,
                     [&](int k, char const * field) { record[begin + k] = static_cast<float>(TextToDouble(field)); });
        record[0] = 1.0F; // whatever stands in the record number's place
    }
    return 0;
}

int FPIReader::ReadSSCCurve(std::FILE * io_file)
{
    Line line;
    bool isFound = false;
    for (int i = 0; i < mNumMaterials && !isFound && line.Read(io_file); ++i)
        isFound = !line.IsSeparator();
    if (!isFound)
        return 0;
    std::string text = line.Text();
    mNames[0] = takeQuoted(text).c_str();
    mDescriptions[0] = takeQuoted(text).c_str();
    mCurveId = 1;
    auto const count = [this](int i, char const * field)
    {
        if (i == 1)
            mCurveSizes[0] = TextToInt(field);
    };
    forEachField(text.c_str(), 2, count);
    return 0;
}

int FPIReader::ReadIDBlock(std::FILE * io_file)
{
    SkipBlock(io_file);
    return 0;
}

int FPIReader::ReadMaterialBlockV(std::FILE * io_file)
{
    return LoadMaterial(io_file, 1) == 0 ? 0 : 1;
}

int FPIReader::ReadMaterialProperties(std::FILE * io_file)
{
    int const error = ReadMaterialBlockV(io_file);
    SkipBlock(io_file);
    return error;
}

bool FPIReader::SkipBlock(std::FILE * io_file)
{
    return readUpTo(io_file, [](Line const & line) { return line.IsSeparator(); });
}

int FPIReader::GetLastToken(char const * const i_text)
{
    constexpr int kLast = 4;
    int value = 0;
    auto const take = [&value](int i, char const * field)
    {
        if (i == kLast)
            value = TextToInt(field);
    };
    if (i_text)
        forEachField(i_text, kLast + 1, take);
    return value;
}

void FPIReader::getFPIControl(int * o_control) const
{
    if (mControl)
        std::copy_n(mControl.get(), kNumControl, o_control);
}

void FPIReader::getMatProperty(int i, float * o_properties) const
{
    if (i >= 1 && i <= mNumMaterials)
        std::copy_n(mProperties.get() + static_cast<std::ptrdiff_t>(kNumProperty) * (i - 1), kNumProperty,
                    o_properties);
}

void FPIReader::getMatName(int i, CATUnicodeString & o_name) const
{
    if (i >= 1 && i <= kMaxNames)
        o_name = mNames[i - 1];
}

void FPIReader::getMatDec(int i, CATUnicodeString & o_description) const
{
    if (i >= 1 && i <= kMaxNames)
        o_description = mDescriptions[i - 1];
}
