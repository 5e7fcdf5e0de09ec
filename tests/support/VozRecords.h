// VozRecords.h: "output.voz" byte by byte: records of 4-byte little-endian values, written by hand.

#ifndef VOZRECORDS_H
#define VOZRECORDS_H

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace vozrecords
{
inline std::string bytes(std::int32_t i_value)
{
    auto const value = static_cast<std::uint32_t>(i_value);
    std::string text;
    for (int shift = 0; shift < 32; shift += 8)
        text.push_back(static_cast<char>((value >> shift) & 0xFFU));
    return text;
}

inline std::string bytes(float i_value)
{
    std::int32_t pattern = 0;
    std::memcpy(&pattern, &i_value, sizeof pattern);
    return bytes(pattern);
}

template <class Value>
std::string bytes(std::vector<Value> const & i_values)
{
    std::string text;
    for (Value const & value : i_values)
        text += bytes(value);
    return text;
}

// A record as the file has it; the counts follow from the lists, unless a test lies about them in bytes of its own.
struct Record
{
    int step = 0;
    std::vector<float> nodes;           // 3 per node, metres
    std::vector<std::int32_t> elements; // 4 per element
    std::vector<float> stress;          // as long as the next three
    std::vector<float> top;
    std::vector<float> bottom;
    std::vector<float> middle;

    std::string text() const
    {
        return bytes(std::int32_t{step}) + bytes(static_cast<std::int32_t>(nodes.size() / 3)) + bytes(nodes) +
               bytes(static_cast<std::int32_t>(elements.size() / 4)) + bytes(elements) +
               bytes(static_cast<std::int32_t>(stress.size())) + bytes(stress) + bytes(top) + bytes(bottom) +
               bytes(middle);
    }
};

// A quadrilateral and a triangle:
//
//   4---3
//   |   | \        the unit is 0.1 m
//   1---2---5
//
// with i_points integration points per element. No two values of the record are equal: component c of the stress is
// 1000 + c, of the top 0.001 c, of the bottom -0.001 c, of the middle 0.0001 c, each plus the step.
inline Record sample(int i_step, int i_points = 4)
{
    Record record;
    record.step = i_step;
    record.nodes = {0.0F, 0.0F, 0.01F, 0.1F, 0.0F, 0.02F, 0.1F, 0.1F, 0.03F, 0.0F, 0.1F, 0.04F, 0.2F, 0.0F, 0.05F};
    record.elements = {1, 2, 3, 4, 2, 5, 3, 0};
    for (int c = 0; c < i_points * 2 * 3; ++c)
    {
        auto const value = static_cast<float>(c);
        auto const shift = static_cast<float>(i_step) * 0.01F;
        record.stress.push_back(1000.0F + value + 100.0F * static_cast<float>(i_step));
        record.top.push_back(0.001F * value + shift);
        record.bottom.push_back(-0.001F * value - shift);
        record.middle.push_back(0.0001F * value + shift);
    }
    return record;
}
} // namespace vozrecords

#endif
