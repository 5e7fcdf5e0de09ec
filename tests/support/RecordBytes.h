// RecordBytes.h: what stands at an offset of a record whose layout others rely on.

#ifndef RECORDBYTES_H
#define RECORDBYTES_H

#include <cstddef>
#include <cstring>

template <class Value>
Value valueAt(void const * i_record, std::size_t i_offset)
{
    Value value;
    std::memcpy(&value, static_cast<char const *>(i_record) + i_offset, sizeof value);
    return value;
}

#endif
