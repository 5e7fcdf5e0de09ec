// MeshTopology.cpp: tables built in two passes, walks with a stack of their own.

#include "MeshTopology.h"

#include <algorithm>
#include <array>

namespace voz::workbench
{
namespace
{
// visit(a, b) for each side of the row.
template <class Visit>
void forEachSide(int const (&row)[4], Visit visit)
{
    int const corners = row[0] == row[3] ? 3 : 4;
    for (int k = 0; k < corners; ++k)
        visit(row[k], row[(k + 1) % corners]);
}

template <class Visit>
void forEachTaken(VOZCatMesh const & mesh, std::vector<char> const & isTaken, Visit visit)
{
    for (int e = 1; e <= mesh.numElem(); ++e)
        if (isTaken[static_cast<std::size_t>(e)])
            visit(e, mesh.GetElemData()[e]);
}

// Counts become the first index of each run; one entry more than counts has the whole.
void sumUp(std::vector<std::size_t> & begin)
{
    std::size_t sum = 0;
    for (std::size_t & entry : begin)
        sum += std::exchange(entry, sum);
}

// Walks through all elements that links of the kind allowed join to the first; visit(from, to, link) for each step.
template <class Allowed, class Visit>
void walk(Neighbours const & neighbours, int first, std::vector<char> & isSeen, std::vector<int> & stack,
          Allowed allowed, Visit visit)
{
    stack.assign(1, first);
    isSeen[static_cast<std::size_t>(first)] = 1;
    while (!stack.empty())
    {
        int const from = stack.back();
        stack.pop_back();
        for (Neighbours::Entry const & entry : neighbours.Of(from))
        {
            if (!allowed(entry.link))
                continue;
            bool const isNew = !isSeen[static_cast<std::size_t>(entry.element)];
            visit(from, entry, isNew);
            if (!isNew)
                continue;
            isSeen[static_cast<std::size_t>(entry.element)] = 1;
            stack.push_back(entry.element);
        }
    }
}
} // namespace

EdgeTable::EdgeTable(VOZCatMesh const & i_mesh, std::vector<char> const & i_isTaken)
    : mBegin(static_cast<std::size_t>(i_mesh.numNode()) + 2, 0)
{
    forEachTaken(i_mesh, i_isTaken,
                 [&](int, int const(&row)[4])
                 { forEachSide(row, [&](int a, int b) { ++mBegin[static_cast<std::size_t>(std::min(a, b))]; }); });
    sumUp(mBegin);
    mSides.resize(mBegin.back());
    std::vector<std::size_t> next(mBegin);
    forEachTaken(i_mesh, i_isTaken,
                 [&](int e, int const(&row)[4])
                 {
                     forEachSide(
                         row,
                         [&](int a, int b) {
                             mSides[next[static_cast<std::size_t>(std::min(a, b))]++] = {std::max(a, b), e, a < b};
                         });
                 });
    for (std::size_t n = 0; n + 1 < mBegin.size(); ++n)
        std::sort(mSides.begin() + static_cast<std::ptrdiff_t>(mBegin[n]),
                  mSides.begin() + static_cast<std::ptrdiff_t>(mBegin[n + 1]),
                  [](EdgeSide const & a, EdgeSide const & b)
                  { return std::pair(a.high, a.element) < std::pair(b.high, b.element); });
}

Neighbours::Neighbours(EdgeTable const & i_edges, int i_numElem) : mBegin(static_cast<std::size_t>(i_numElem) + 2, 0)
{
    // Where many elements share an edge, each is linked to the first: enough to join them.
    auto const forEachPair = [&](auto visit)
    {
        i_edges.ForEachEdge(
            [&](int, int, std::span<EdgeSide const> sides)
            {
                for (std::size_t i = 1; i < sides.size(); ++i)
                {
                    Link const link = sides.size() > 2                         ? Link::Branched
                                      : sides[0].isUpward != sides[1].isUpward ? Link::Alike
                                                                               : Link::Against;
                    visit(sides[0].element, sides[i].element, link);
                }
            });
    };
    forEachPair(
        [&](int a, int b, Link)
        {
            ++mBegin[static_cast<std::size_t>(a)];
            ++mBegin[static_cast<std::size_t>(b)];
        });
    sumUp(mBegin);
    mEntries.resize(mBegin.back());
    std::vector<std::size_t> next(mBegin);
    forEachPair(
        [&](int a, int b, Link link)
        {
            mEntries[next[static_cast<std::size_t>(a)]++] = {b, link};
            mEntries[next[static_cast<std::size_t>(b)]++] = {a, link};
        });
}

std::vector<int> PiecesOf(Neighbours const & i_neighbours, std::vector<char> const & i_isTaken)
{
    std::vector<int> pieceOf(i_isTaken.size(), 0);
    std::vector<char> isSeen(i_isTaken.size(), 0);
    std::vector<int> stack;
    int count = 0;
    for (std::size_t e = 1; e < i_isTaken.size(); ++e)
    {
        if (!i_isTaken[e] || isSeen[e])
            continue;
        pieceOf[e] = ++count;
        walk(
            i_neighbours, static_cast<int>(e), isSeen, stack, [](Link) { return true; },
            [&](int, Neighbours::Entry const & entry, bool)
            { pieceOf[static_cast<std::size_t>(entry.element)] = count; });
    }
    return pieceOf;
}

Directions DirectionsOf(Neighbours const & i_neighbours, std::vector<char> const & i_isTaken)
{
    Directions directions;
    directions.isFlipped.assign(i_isTaken.size(), 0);
    std::vector<char> & isAgainst = directions.isFlipped; // the first element of its patch, until the vote
    std::vector<char> isSeen(i_isTaken.size(), 0);
    std::vector<int> stack, patch;
    for (std::size_t e = 1; e < i_isTaken.size(); ++e)
    {
        if (!i_isTaken[e] || isSeen[e])
            continue;
        patch.assign(1, static_cast<int>(e));
        std::size_t const before = directions.contradictions.size();
        auto const step = [&](int from, Neighbours::Entry const & entry, bool isNew)
        {
            char const wanted =
                static_cast<char>(isAgainst[static_cast<std::size_t>(from)] ^ (entry.link == Link::Against));
            char & own = isAgainst[static_cast<std::size_t>(entry.element)];
            if (isNew)
            {
                own = wanted;
                patch.push_back(entry.element);
            }
            else if (own != wanted && from < entry.element) // each pair once
                directions.contradictions.emplace_back(from, entry.element);
        };
        walk(
            i_neighbours, static_cast<int>(e), isSeen, stack, [](Link link) { return link != Link::Branched; }, step);
        auto const against = static_cast<std::size_t>(std::count_if(
            patch.begin(), patch.end(), [&](int k) { return isAgainst[static_cast<std::size_t>(k)] != 0; }));
        bool const isTwisted = directions.contradictions.size() > before;
        for (int const k : patch)
        {
            char & own = isAgainst[static_cast<std::size_t>(k)];
            own = isTwisted ? char{0} : static_cast<char>(2 * against > patch.size() ? !own : own);
        }
    }
    return directions;
}

std::vector<int> EarlierTwins(VOZCatMesh const & i_mesh, std::vector<char> const & i_isTaken)
{
    // By lowest corner, so that only elements at one node are compared.
    std::vector<std::size_t> begin(static_cast<std::size_t>(i_mesh.numNode()) + 2, 0);
    auto const lowest = [](int const(&row)[4]) { return static_cast<std::size_t>(*std::min_element(row, row + 4)); };
    forEachTaken(i_mesh, i_isTaken, [&](int, int const(&row)[4]) { ++begin[lowest(row)]; });
    sumUp(begin);
    struct Corners
    {
        std::array<int, 4> sorted;
        int element;
    };
    std::vector<Corners> all(begin.back());
    std::vector<std::size_t> next(begin);
    forEachTaken(i_mesh, i_isTaken,
                 [&](int e, int const(&row)[4])
                 {
                     Corners & own = all[next[lowest(row)]++];
                     own = {{row[0], row[1], row[2], row[0] == row[3] ? 0 : row[3]}, e};
                     std::sort(own.sorted.begin(), own.sorted.end());
                 });
    std::vector<int> twin(i_isTaken.size(), 0);
    for (std::size_t n = 0; n + 1 < begin.size(); ++n)
    {
        auto const first = all.begin() + static_cast<std::ptrdiff_t>(begin[n]);
        auto const last = all.begin() + static_cast<std::ptrdiff_t>(begin[n + 1]);
        std::sort(first, last,
                  [](Corners const & a, Corners const & b)
                  { return std::pair(a.sorted, a.element) < std::pair(b.sorted, b.element); });
        for (auto k = first, leader = first; k != last; ++k)
            if (k->sorted == leader->sorted && k != leader)
                twin[static_cast<std::size_t>(k->element)] = leader->element;
            else
                leader = k;
    }
    return twin;
}

} // namespace voz::workbench
