// D3plotFixture.h: folders with small result families, and the records that are made of them.

#ifndef D3PLOTFIXTURE_H
#define D3PLOTFIXTURE_H

#include "Conversion.h"
#include "D3plotWriter.h"
#include "TempFolder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

// A record of "output.voz", read with no help of the library's.
struct Record
{
    int step = -1;
    std::vector<float> coordinates;
    std::vector<int> connectivity;
    std::vector<float> stress, top, bottom, middle;

    bool operator==(Record const &) const = default;
};

inline std::vector<Record> recordsIn(std::string const & i_bytes)
{
    std::vector<Record> records;
    std::size_t at = 0;
    auto const integer = [&]
    {
        int value = 0;
        std::memcpy(&value, i_bytes.data() + at, 4);
        at += 4;
        return value;
    };
    auto const array = [&](auto & o_values, std::size_t count)
    {
        ASSERT_LE(at + 4 * count, i_bytes.size());
        o_values.resize(count);
        std::memcpy(o_values.data(), i_bytes.data() + at, 4 * count);
        at += 4 * count;
    };
    while (at < i_bytes.size())
    {
        Record & record = records.emplace_back();
        record.step = integer();
        array(record.coordinates, 3 * static_cast<std::size_t>(integer()));
        array(record.connectivity, 4 * static_cast<std::size_t>(integer()));
        auto const values = static_cast<std::size_t>(integer());
        for (auto * const field : {&record.stress, &record.top, &record.bottom, &record.middle})
            array(*field, values);
    }
    return records;
}

class D3plotFixture : public testing::Test
{
protected:
    // A quadrilateral and a triangle of the blank (material 2, part 5) between two tool shells (material 1, part 2).
    static d3plot::Model Small()
    {
        d3plot::Model model;
        model.nodes = {{9, 9, 9}, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {8, 8, 8}};
        model.shells = {{{1, 7, 2, 2}, 1}, {{2, 3, 4, 5}, 2}, {{3, 6, 4, 4}, 2}, {{1, 7, 3, 3}, 1}};
        model.nodeLabels = {500, 1, 2, 3, 4, 5, 501};
        model.shellLabels = {700, 1, 2, 701};
        model.parts = {2, 5};
        model.types = {d3plot::kRigid, 37};
        return model;
    }

    // A state whose numbers differ everywhere.
    static d3plot::State StateOf(d3plot::Model const & i_model, double i_time)
    {
        d3plot::State state;
        state.time = i_time;
        double number = 1.0 + 64.0 * i_time;
        for (d3plot::Point const & p : i_model.nodes)
            state.nodes.push_back({p[0], p[1], p[2] + i_time});
        for (std::size_t i = 0; i < i_model.shells.size(); ++i)
        {
            d3plot::ShellValues values;
            for (int layer = 0; layer < i_model.options.layers; ++layer)
                values.stress.push_back({++number, 0, 0, 0, 0, 0}); // its equivalent is the number itself
            values.inner = {number / 256, number / 512, 0, number / 1024, 0, 0};
            values.outer = {number / 128, number / 64, 0, number / 4096, 0, 0};
            state.shells.push_back(values);
        }
        if (i_model.options.deletion != 0)
            state.alive.assign(
                i_model.options.deletion == 1
                    ? i_model.nodes.size()
                    : i_model.shells.size() +
                          static_cast<std::size_t>(i_model.numSolids + i_model.numBeams + i_model.numThickShells),
                1.0);
        return state;
    }

    // One file with states at these times.
    static std::string OneFile(d3plot::Model const & i_model, std::vector<double> const & i_times)
    {
        d3plot::Writer const writer(i_model);
        std::string bytes = writer.Geometry();
        for (double const time : i_times)
            bytes += writer.Of(StateOf(i_model, time));
        return bytes + writer.EndMark();
    }

    std::vector<Record> Convert(std::vector<double> const & i_times)
    {
        result = voz::launch::ConvertResults(folder.Path(), i_times);
        return recordsIn(folder.Read("output.voz"));
    }

    std::string Notes() const
    {
        std::string all;
        for (std::string const & note : result.notes)
            all += note + "\n";
        return all;
    }

    TempFolder folder;
    voz::launch::Converted result;
};

#endif
