// NodeRuns.h: the compressed table behind both node maps: for each node a run of numbers, run after run.

#ifndef NODERUNS_H
#define NODERUNS_H

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace noderuns
{
// Counts, sums, fills. Each pass calls visit(node, entry) for the same entries in the same order. A node outside
// 1 .. i_numNode has no run: its entry is dropped, and the filling pass tells lost() of it.
// o_offset gets i_numNode + 1 entries, o_map one more than there are numbers, both by new[]; an
// exception frees all on its way and leaves both as they were.
template <class CountPass, class FillPass, class Lost>
void build(int i_numNode, CountPass countPass, FillPass fillPass, Lost lost, int *& o_offset, int *& o_map)
{
    int const numNode = std::max(i_numNode, 0);
    std::size_t const size = static_cast<std::size_t>(numNode) + 1;
    std::unique_ptr<int[]> offset(new int[size]());
    countPass(
        [&](int node, int)
        {
            if (node > 0 && node <= numNode)
                ++offset[static_cast<std::size_t>(node)];
        });
    for (std::size_t n = 1; n < size; ++n)
        offset[n] += offset[n - 1];

    std::unique_ptr<int[]> map(new int[static_cast<std::size_t>(offset[size - 1]) + 1]());
    std::vector<int> cursor(size, 0);
    fillPass(
        [&](int node, int entry)
        {
            if (node <= 0 || node > numNode)
            {
                lost();
                return;
            }
            std::size_t const n = static_cast<std::size_t>(node);
            int const target = offset[n - 1] + cursor[n]++;
            map[static_cast<std::size_t>(target)] = entry;
        });
    o_offset = offset.release();
    o_map = map.release();
}
} // namespace noderuns

#endif
