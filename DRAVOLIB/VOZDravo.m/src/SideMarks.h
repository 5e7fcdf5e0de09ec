// SideMarks.h: which sides of a mesh's elements are wanted, found in one search and read as often as needed.
//
// A side a-b of element e is shared when some other element at a holds b as well. Numbers are compared, never
// coordinates: unmerged nodes leave a seam open. The other element need not have the side: a and b on opposite corners
// of a quadrilateral are enough. Direction plays no part.
//
// The search goes node by node. Where orientations agree, a side that begins at the node ends at one: another element
// comes to the node from there. These are counted first. What that does not settle (a boundary, an opposite corner,
// orientations at odds, an element that repeats the node) is searched entry by entry.

#ifndef SIDEMARKS_H
#define SIDEMARKS_H

#include "EdgeSets.h"
#include "MeshRows.h"

#include <algorithm>
#include <cstddef>
#include <vector>

class SideMarks
{
public:
    // Marks the sides for which wanted(a, b, shared) holds; a, b are positions.
    template <class Wanted>
    SideMarks(VOZCatMesh const & i_mesh, Wanted wanted)
        : mRows(i_mesh), mElemsAt(i_mesh), mMark(at(mRows.numElem) + 1, 0), mCount(0)
    {
        auto const settle = [&](int e, int corner, bool shared)
        {
            if (wanted(mRows.corner(e, corner), mRows.corner(e, next(corner)), shared))
                mark(e, corner);
        };
        bool const sound = settleLost(settle);
        int widest = 0;
        for (int n = 1; n <= mElemsAt.numNode(); ++n)
            widest = std::max(widest, mElemsAt.references(n));
        std::vector<Spoke> fan(at(widest));
        std::vector<int> arrivals(at(std::max(mElemsAt.numNode(), 0)) + 1, 0);
        for (int n = 1; n <= mElemsAt.numNode(); ++n)
            if (!sound || !settleFan(n, fan.data(), arrivals.data(), settle))
                settleEntries(n, settle);
    }

    int count() const { return mCount; }

    // Calls visit(e, corner, a, b), with positions, for each marked side: elements ascending, then corners.
    template <class Visit>
    void forEach(Visit visit) const
    {
        for (int e = 1; e <= mRows.numElem; ++e)
            for (int corner = 0; corner < 4 && mMark[at(e)] != 0; ++corner)
                if (((mMark[at(e)] >> corner) & 1U) != 0)
                    visit(e, corner, mRows.corner(e, corner), mRows.corner(e, next(corner)));
    }

private:
    // One element at a node: where the node stands in it, and the node before.
    struct Spoke
    {
        int elem;
        int corner;
        int previous;
    };

    // By the set of a row's entries that are the node: its corner, and the entry before. A triangle ends with its first
    // node; any other repetition has no place.
    struct Place
    {
        int corner;
        int previous;
    };
    static constexpr Place kNoPlace{-1, 0};
    static constexpr Place kPlace[16] = {kNoPlace, {0, 3}, {1, 0},   kNoPlace, {2, 1},   kNoPlace, kNoPlace, kNoPlace,
                                         {3, 2},   {0, 2}, kNoPlace, kNoPlace, kNoPlace, kNoPlace, kNoPlace, kNoPlace};

    static std::size_t at(int i) { return static_cast<std::size_t>(i); }
    static int next(int corner) { return (corner + 1) & 3; }
    int label(int position) const { return meshrows::labelOf(position, mRows.firstNode); }

    void mark(int e, int corner)
    {
        unsigned char const bit = static_cast<unsigned char>(1U << corner);
        if ((mMark[at(e)] & bit) == 0)
            ++mCount;
        mMark[at(e)] |= bit;
    }

    // Sides that begin at a number that is no node: nobody is listed there. True if there are no such numbers.
    template <class Settle>
    bool settleLost(Settle settle) const
    {
        int const numNode = mElemsAt.numNode();
        bool sound = true;
        for (int e = 1; e <= mRows.numElem; ++e)
            for (int corner = 0; corner < 4; ++corner)
            {
                int const a = mRows.corner(e, corner);
                if (a > 0 && a <= numNode)
                    continue;
                sound = false;
                if (a != mRows.corner(e, next(corner)))
                    settle(e, corner, false);
            }
        return sound;
    }

    // False, with nothing settled, if an element repeats the node. All entries must be nodes. o_fan has room for the
    // node's elements; io_arrivals is zero for each node before and after.
    template <class Settle>
    bool settleFan(int n, Spoke * o_fan, int * io_arrivals, Settle settle) const
    {
        int const(*const elems)[4] = mRows.elems;
        int const first = mRows.firstNode;
        int const a = label(n);
        int const numElem = mElemsAt.references(n);
        bool placed = true;
        for (int i = 0; i < numElem; ++i)
        {
            int const e = mElemsAt.elem(n, i);
            int const * const row = elems[e];
            Place const place = kPlace[(row[0] == a) | (row[1] == a) << 1 | (row[2] == a) << 2 | (row[3] == a) << 3];
            placed &= place.corner >= 0;
            o_fan[i] = {e, place.corner, meshrows::positionOf(row[place.previous], first)};
            ++io_arrivals[o_fan[i].previous];
        }
        for (int i = 0; placed && i < numElem; ++i)
        {
            Spoke const spoke = o_fan[i];
            int const b = elems[spoke.elem][next(spoke.corner)];
            int const end = meshrows::positionOf(b, first);
            bool const counted = io_arrivals[end] > (spoke.previous == end ? 1 : 0); // not by the element itself
            settle(spoke.elem, spoke.corner, counted || isShared(n, spoke.elem, b));
        }
        for (int i = 0; i < numElem; ++i)
            io_arrivals[o_fan[i].previous] = 0;
        return placed;
    }

    template <class Settle>
    void settleEntries(int n, Settle settle) const
    {
        int const a = label(n);
        for (int i = 0; i < mElemsAt.references(n); ++i)
        {
            int const e = mElemsAt.elem(n, i);
            for (int corner = 0; corner < 4; ++corner)
            {
                int const b = mRows.elems[e][next(corner)];
                if (mRows.elems[e][corner] == a && b != a) // a == b closes a triangle
                    settle(e, corner, isShared(n, e, b));
            }
        }
    }

    // b is a label here: rows are compared as they stand.
    bool isShared(int n, int e, int b) const
    {
        int const numElem = mElemsAt.references(n);
        for (int i = 0; i < numElem; ++i)
        {
            int const other = mElemsAt.elem(n, i);
            int const * const row = mRows.elems[other];
            if (((row[0] == b) | (row[1] == b) | (row[2] == b) | (row[3] == b)) && other != e)
                return true;
        }
        return false;
    }

    meshrows::Rows const mRows;
    NodeElemMap const mElemsAt;
    std::vector<unsigned char> mMark; // per element, one bit per corner that begins a marked side
    int mCount;
};

#endif
