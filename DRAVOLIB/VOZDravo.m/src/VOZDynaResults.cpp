// VOZDynaResults.cpp: the records of "output.voz", front to back.
//
// A count is the file's word and may be anything: an array begins with 1 MB and doubles with what was really read, so
// that the file's length, not its counts, decides what memory is asked for. An array that is cut short stays null.

#include "VOZDynaResults.h"

#include "CATFatalError.h"
#include "CATUnicodeString.h"
#include "VOZFile.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

namespace
{
constexpr std::size_t kFirstValues = std::size_t{1} << 18; // of an array, made before any of it was read

static_assert(sizeof(int) == 4 && sizeof(float) == 4, "the file's values are 4 bytes");

enum class Reading
{
    Whole,
    Cut,      // the stream has fewer values
    NoMemory, // for what it has
};

template <class Value>
void SwapOnBigEndian(Value * io_values, std::size_t i_nCount)
{
    if constexpr (std::endian::native == std::endian::big)
        for (std::size_t i = 0; i < i_nCount; ++i)
        {
            unsigned char bytes[sizeof(Value)];
            std::memcpy(bytes, &io_values[i], sizeof bytes);
            std::reverse(std::begin(bytes), std::end(bytes));
            std::memcpy(&io_values[i], bytes, sizeof bytes);
        }
}

bool ReadCount(std::FILE * i_pStream, int & o_nCount)
{
    int nRead = 0;
    if (std::fread(&nRead, sizeof nRead, 1, i_pStream) != 1)
        return false;
    SwapOnBigEndian(&nRead, 1);
    o_nCount = nRead;
    return true;
}

// i_nWidth * i_nRows values into a new array, which is put into the field only if they are all there.
template <class Value>
Reading ReadRows(std::FILE * i_pStream, int i_nRows, int i_nWidth, Value *& o_rows)
{
    std::size_t const nCount = static_cast<std::size_t>(i_nRows) * static_cast<std::size_t>(i_nWidth);
    std::unique_ptr<Value[]> rows;
    std::size_t nHave = 0;
    for (std::size_t nRoom = std::min(nCount, kFirstValues);; nRoom = std::min(nCount, 2 * nRoom))
    {
        std::unique_ptr<Value[]> larger(new (std::nothrow) Value[nRoom]);
        if (larger == nullptr)
            return Reading::NoMemory;
        std::copy_n(rows.get(), nHave, larger.get());
        rows = std::move(larger);
        std::size_t const nWanted = nRoom - nHave;
        if (std::fread(rows.get() + nHave, sizeof(Value), nWanted, i_pStream) != nWanted)
            return Reading::Cut;
        nHave = nRoom;
        if (nHave == nCount)
            break;
    }
    SwapOnBigEndian(rows.get(), nCount);
    o_rows = rows.release();
    return Reading::Whole;
}
} // namespace

VOZDynaResults::VOZDynaResults(int i_nMaxRecords, CATUnicodeString const & i_strFile)
    : m_padStrainComponentsMid(nullptr), m_padStrainComponentsTop(nullptr), m_padStrainComponentsBot(nullptr),
      m_padEquivalentStress(nullptr), m_nRecordStep(-1), m_nNumComponents(0), m_padNodalCoords(nullptr), m_nNumNodes(0),
      m_panConnectivity(nullptr), m_nNumElements(0), m_nMaxRecords(i_nMaxRecords), m_pstrFile(&i_strFile)
{
}

VOZDynaResults::~VOZDynaResults()
{
    FreeArrays();
}

// The counts go with the arrays that they count.
void VOZDynaResults::FreeArrays()
{
    for (float ** pField : {&m_padStrainComponentsMid, &m_padStrainComponentsTop, &m_padStrainComponentsBot,
                            &m_padEquivalentStress, &m_padNodalCoords})
    {
        delete[] * pField;
        *pField = nullptr;
    }
    delete[] m_panConnectivity;
    m_panConnectivity = nullptr;
    m_nNumComponents = 0;
    m_nNumNodes = 0;
    m_nNumElements = 0;
}

bool VOZDynaResults::ReadRecord(std::FILE * i_pStream)
{
    FreeArrays();
    return i_pStream != nullptr && ReadCount(i_pStream, m_nRecordStep) && ReadMesh(i_pStream) &&
           ReadComponents(i_pStream);
}

bool VOZDynaResults::ReadMesh(std::FILE * i_pStream)
{
    if (!ReadCount(i_pStream, m_nNumNodes) || !VOZ_ASSERTION(m_nNumNodes > 0, "m_nNumNodes > 0"))
        return false;
    Reading const nodes = ReadRows(i_pStream, m_nNumNodes, 3, m_padNodalCoords);
    if (!VOZ_ASSERTION(nodes != Reading::NoMemory, "m_padNodalCoords != NULL") || nodes != Reading::Whole)
        return false;
    if (!ReadCount(i_pStream, m_nNumElements) || !VOZ_ASSERTION(m_nNumElements > 0, "m_nNumElements > 0"))
        return false;
    Reading const elements = ReadRows(i_pStream, m_nNumElements, 4, m_panConnectivity);
    return VOZ_ASSERTION(elements != Reading::NoMemory, "m_panConnectivity != NULL") && elements == Reading::Whole;
}

bool VOZDynaResults::ReadComponents(std::FILE * i_pStream)
{
    if (!ReadCount(i_pStream, m_nNumComponents) || !VOZ_ASSERTION(m_nNumComponents > 0, "m_nNumComponents > 0"))
        return false;
    Reading const stress = ReadRows(i_pStream, m_nNumComponents, 1, m_padEquivalentStress);
    if (!VOZ_ASSERTION(stress != Reading::NoMemory, "m_padEquivalentStress != NULL") || stress != Reading::Whole)
        return false;
    Reading const top = ReadRows(i_pStream, m_nNumComponents, 1, m_padStrainComponentsTop);
    if (!VOZ_ASSERTION(top != Reading::NoMemory, "m_padStrainComponentsTop != NULL") || top != Reading::Whole)
        return false;
    Reading const bottom = ReadRows(i_pStream, m_nNumComponents, 1, m_padStrainComponentsBot);
    if (!VOZ_ASSERTION(bottom != Reading::NoMemory, "m_padStrainComponentsBot != NULL") || bottom != Reading::Whole)
        return false;
    Reading const mid = ReadRows(i_pStream, m_nNumComponents, 1, m_padStrainComponentsMid);
    return VOZ_ASSERTION(mid != Reading::NoMemory, "m_padStrainComponentsMid != NULL") && mid == Reading::Whole;
}

// A record that is cut short counts if its number is the one sought: the arrays say what there was of it.
int VOZDynaResults::ReadStep(int i_nStep)
{
    FreeArrays();
    m_nRecordStep = -1;
    if (m_pstrFile == nullptr)
        return 0;
    struct Closing
    {
        void operator()(std::FILE * i_pStream) const { std::fclose(i_pStream); }
    };
    std::unique_ptr<std::FILE, Closing> const stream(VOZOpenFile(m_pstrFile->ConvertToChar(), "rb"));
    if (stream == nullptr)
        return 0;
    bool isAtEnd = false; // nothing can change any more
    for (int i = 0; i < m_nMaxRecords && !isAtEnd; ++i)
    {
        ReadRecord(stream.get());
        if (m_nRecordStep == i_nStep)
            return 1;
        FreeArrays();
        isAtEnd = std::feof(stream.get()) != 0 || std::ferror(stream.get()) != 0;
    }
    return 0;
}
