// ByteSource.h: the bytes of a file, of standard input or of memory, inflated where they are gzip.
//
// Gzip is told by its first two bytes, not by the name; several members one behind the other are one text. Failures are
// InputErrors that name the file.

#ifndef BYTESOURCE_H
#define BYTESOURCE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct z_stream_s;

namespace voz::workbench
{

class ByteSource
{
public:
    static ByteSource File(std::string const & i_path);                               // "-": standard input
    static ByteSource Memory(std::string const & i_name, std::string_view i_content); // not copied

    ByteSource(ByteSource &&) noexcept;
    ~ByteSource();

    std::string const & Name() const { return mName; }
    std::size_t Read(char * o_to, std::size_t i_most); // 0 at the end alone
    std::string_view Peek(std::size_t i_most);         // what Read gives next; valid until the next Read or Peek
    std::string ReadAll();

    // Bytes in all, as Read gives them, where that is known without reading them.
    std::optional<std::uint64_t> Size() const { return mSize; }

private:
    struct CloseFile
    {
        void operator()(std::FILE * file) const;
    };
    struct EndInflate
    {
        void operator()(z_stream_s * stream) const;
    };

    explicit ByteSource(std::string i_name);
    void begin();
    std::size_t readRaw(char * o_to, std::size_t i_most);
    std::size_t readThrough(char * o_to, std::size_t i_most);
    std::size_t readInflated(char * o_to, std::size_t i_most);
    bool refill();

    std::string mName;
    std::unique_ptr<std::FILE, CloseFile> mFile;
    std::string_view mContent; // of memory, what is not yet read
    std::optional<std::uint64_t> mSize;
    std::unique_ptr<z_stream_s, EndInflate> mInflate; // null: the bytes as they stand
    bool mIsInMember = false;
    std::vector<char> mRaw; // bytes of the file, mRawBegin .. mRawEnd not yet taken
    std::size_t mRawBegin = 0;
    std::size_t mRawEnd = 0;
    std::vector<char> mAhead; // peeked at, mAheadBegin .. end not yet read
    std::size_t mAheadBegin = 0;
};

} // namespace voz::workbench

#endif
