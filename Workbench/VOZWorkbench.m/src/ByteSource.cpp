// ByteSource.cpp: plain and gzip bytes through one door.

#include "ByteSource.h"

#include "InputError.h"
#include "VOZFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>
#include <zlib.h>

namespace voz::workbench
{
namespace
{
constexpr std::size_t kRawBuffer = 1 << 17;
constexpr int kGzipWindow = 16 + MAX_WBITS; // inflate takes the gzip wrapping alone

bool startsGzip(char const * bytes)
{
    return bytes[0] == '\x1f' && bytes[1] == '\x8b';
}

std::optional<std::uint64_t> sizeOf(std::FILE * file)
{
    if (std::fseek(file, 0, SEEK_END) != 0)
        return {};
    long const size = std::ftell(file);
    if (std::fseek(file, 0, SEEK_SET) != 0 || size < 0)
        return {};
    return static_cast<std::uint64_t>(size);
}
} // namespace

void ByteSource::CloseFile::operator()(std::FILE * file) const
{
    if (file != stdin)
        std::fclose(file);
}

void ByteSource::EndInflate::operator()(z_stream_s * stream) const
{
    inflateEnd(stream);
    delete stream;
}

ByteSource::ByteSource(std::string i_name) : mName(std::move(i_name)) {}
ByteSource::ByteSource(ByteSource &&) noexcept = default;
ByteSource::~ByteSource() = default;

ByteSource ByteSource::File(std::string const & i_path)
{
    ByteSource source(i_path == "-" ? "standard input" : i_path);
    errno = 0;
    source.mFile.reset(i_path == "-" ? stdin : VOZOpenFile(i_path.c_str(), "rb"));
    if (!source.mFile)
    {
        std::string const reason =
            errno == EISDIR ? "it is a folder, expected a file" : std::generic_category().message(errno);
        throw InputError(source.mName, 0, 0, "cannot be opened: " + reason);
    }
    if (source.mFile.get() != stdin)
        source.mSize = sizeOf(source.mFile.get());
    source.begin();
    return source;
}

ByteSource ByteSource::Memory(std::string const & i_name, std::string_view i_content)
{
    ByteSource source(i_name);
    source.mContent = i_content;
    source.mSize = i_content.size();
    source.begin();
    return source;
}

void ByteSource::begin()
{
    mRaw.resize(kRawBuffer);
    while (mRawEnd < 2 && refill())
    {
    }
    if (mRawEnd < 2 || !startsGzip(mRaw.data()))
        return;
    auto stream = std::make_unique<z_stream>();
    if (inflateInit2(stream.get(), kGzipWindow) != Z_OK)
        throw InputError(mName, 0, 0, "no memory to inflate it");
    mInflate.reset(stream.release());
    mIsInMember = true;
    mSize.reset();
}

// Appends to mRaw; false at the end of the bytes.
bool ByteSource::refill()
{
    if (mRawBegin == mRawEnd)
        mRawBegin = mRawEnd = 0;
    std::size_t const count = readRaw(mRaw.data() + mRawEnd, mRaw.size() - mRawEnd);
    mRawEnd += count;
    return count > 0;
}

std::size_t ByteSource::readRaw(char * o_to, std::size_t i_most)
{
    if (mFile)
    {
        errno = 0;
        std::size_t const count = std::fread(o_to, 1, i_most, mFile.get());
        if (count == 0 && std::ferror(mFile.get()) != 0)
            throw InputError(mName, 0, 0, "cannot be read: " + std::generic_category().message(errno));
        return count;
    }
    std::size_t const count = std::min(i_most, mContent.size());
    if (count > 0)
        std::memcpy(o_to, mContent.data(), count);
    mContent.remove_prefix(count);
    return count;
}

std::size_t ByteSource::readInflated(char * o_to, std::size_t i_most)
{
    for (;;)
    {
        if (mRawBegin == mRawEnd && !refill())
        {
            if (mIsInMember)
                throw InputError(mName, 0, 0, "the gzip data end early: the file is cut");
            return 0;
        }
        if (!mIsInMember)
        {
            if (mRaw[mRawBegin] != '\x1f') // padding behind the last member
                return 0;
            inflateReset(mInflate.get());
            mIsInMember = true;
        }
        mInflate->next_in = reinterpret_cast<Bytef *>(mRaw.data() + mRawBegin);
        mInflate->avail_in = static_cast<uInt>(mRawEnd - mRawBegin);
        mInflate->next_out = reinterpret_cast<Bytef *>(o_to);
        mInflate->avail_out = static_cast<uInt>(std::min<std::size_t>(i_most, 1U << 30));
        uInt const room = mInflate->avail_out;
        int const status = inflate(mInflate.get(), Z_NO_FLUSH);
        mRawBegin = mRawEnd - mInflate->avail_in;
        if (status == Z_STREAM_END)
            mIsInMember = false;
        else if (status != Z_OK && status != Z_BUF_ERROR)
            throw InputError(mName, 0, 0, "the gzip data are damaged");
        if (mInflate->avail_out < room)
            return room - mInflate->avail_out;
    }
}

std::size_t ByteSource::readThrough(char * o_to, std::size_t i_most)
{
    if (i_most == 0)
        return 0;
    if (mInflate)
        return readInflated(o_to, i_most);
    if (mRawBegin == mRawEnd)
        return readRaw(o_to, i_most);
    std::size_t const count = std::min(i_most, mRawEnd - mRawBegin);
    std::memcpy(o_to, mRaw.data() + mRawBegin, count);
    mRawBegin += count;
    return count;
}

std::size_t ByteSource::Read(char * o_to, std::size_t i_most)
{
    if (mAheadBegin == mAhead.size())
        return readThrough(o_to, i_most);
    std::size_t const count = std::min(i_most, mAhead.size() - mAheadBegin);
    std::memcpy(o_to, mAhead.data() + mAheadBegin, count);
    mAheadBegin += count;
    return count;
}

std::string_view ByteSource::Peek(std::size_t i_most)
{
    mAhead.erase(mAhead.begin(), mAhead.begin() + static_cast<std::ptrdiff_t>(mAheadBegin));
    mAheadBegin = 0;
    while (mAhead.size() < i_most)
    {
        std::size_t const had = mAhead.size();
        mAhead.resize(i_most);
        std::size_t const count = readThrough(mAhead.data() + had, i_most - had);
        mAhead.resize(had + count);
        if (count == 0)
            break;
    }
    return {mAhead.data(), std::min(i_most, mAhead.size())};
}

std::string ByteSource::ReadAll()
{
    std::string text;
    std::vector<char> part(kRawBuffer);
    while (std::size_t const count = Read(part.data(), part.size()))
        text.append(part.data(), count);
    return text;
}

} // namespace voz::workbench
