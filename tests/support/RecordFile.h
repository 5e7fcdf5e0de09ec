// RecordFile.h: a file "output.voz" as the launcher leaves it, from plain numbers.

#ifndef RECORDFILE_H
#define RECORDFILE_H

#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

struct Record
{
    int step = 0;
    std::vector<std::array<float, 3>> nodes;  // m
    std::vector<std::array<int, 4>> elements; // labels from 1; 0 as the fourth of a triangle
    std::vector<float> stress;                // Pa
    std::vector<float> top;                   // log strains: 11, 22, engineering shear
    std::vector<float> bottom;
    std::vector<float> middle;

    // A plate of columns x rows quadrilaterals of i_side metres at a height; every point of an element has the same
    // strains, those of the surfaces i_bend more and less in the first direction.
    static Record Plate(int i_step, int i_columns, int i_rows, float i_side, float i_height,
                        std::array<float, 2> const & i_strain, float i_bend, float i_stress)
    {
        Record record;
        record.step = i_step;
        for (int r = 0; r <= i_rows; ++r)
            for (int c = 0; c <= i_columns; ++c)
                record.nodes.push_back({i_side * static_cast<float>(c), i_side * static_cast<float>(r), i_height});
        for (int r = 0; r < i_rows; ++r)
            for (int c = 0; c < i_columns; ++c)
            {
                int const n = 1 + c + (i_columns + 1) * r;
                record.elements.push_back({n, n + 1, n + i_columns + 2, n + i_columns + 1});
            }
        for (std::size_t point = 0; point < 4 * record.elements.size(); ++point)
        {
            record.middle.insert(record.middle.end(), {i_strain[0], i_strain[1], 0.0F});
            record.top.insert(record.top.end(), {i_strain[0] + i_bend, i_strain[1], 0.0F});
            record.bottom.insert(record.bottom.end(), {i_strain[0] - i_bend, i_strain[1], 0.0F});
            record.stress.insert(record.stress.end(), {i_stress, 0.0F, 0.0F});
        }
        return record;
    }

    std::string Bytes() const
    {
        std::string bytes;
        Put(bytes, step);
        Put(bytes, static_cast<int>(nodes.size()));
        for (auto const & node : nodes)
            for (float const c : node)
                Put(bytes, c);
        Put(bytes, static_cast<int>(elements.size()));
        for (auto const & element : elements)
            for (int const n : element)
                Put(bytes, n);
        Put(bytes, static_cast<int>(middle.size()));
        for (std::vector<float> const * const values : {&stress, &top, &bottom, &middle})
            for (float const value : *values)
                Put(bytes, value);
        return bytes;
    }

    template <class T>
    static void Put(std::string & io_bytes, T i_value) // little-endian
    {
        std::uint32_t word = 0;
        static_assert(sizeof i_value == sizeof word);
        std::memcpy(&word, &i_value, sizeof word);
        for (int i = 0; i < 4; ++i)
            io_bytes += static_cast<char>(word >> (8 * i) & 0xffU);
    }
};

inline void WriteRecords(std::vector<Record> const & i_records, std::string const & i_path)
{
    std::ofstream file(i_path, std::ios::binary);
    for (Record const & record : i_records)
        file << record.Bytes();
}

#endif
