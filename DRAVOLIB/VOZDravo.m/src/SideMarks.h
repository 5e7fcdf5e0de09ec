// SideMarks.h: which sides of a mesh's elements are wanted, found in one search and read as often as needed.
//
// A side a-b of element e is shared when some other element at a holds b as well. Numbers are compared, never
// coordinates: unmerged nodes leave a seam open. The other element need not have the side: a and b on opposite corners
// of a quadrilateral are enough. Direction plays no part.

#ifndef SIDEMARKS_H
#define SIDEMARKS_H

#include "EdgeSets.h"
#include "MeshRows.h"

#include <cstddef>
#include <vector>

class SideMarks
{
public:
    // Marks the sides for which wanted(a, b, isShared) holds; isShared() does the search.
    template <class Wanted>
    SideMarks(VOZCatMesh const & i_mesh, Wanted wanted)
        : mRows(i_mesh), mMark(static_cast<std::size_t>(mRows.numElem) + 1, 0), mCount(0)
    {
        NodeElemMap const elemsAt(i_mesh);
        for (int e = 1; e <= mRows.numElem; ++e)
        {
            int const * const row = mRows.elems[e];
            unsigned mark = 0;
            for (int corner = 0; corner < 4; ++corner)
            {
                int const a = row[corner];
                int const b = row[(corner + 1) & 3];
                if (a != b && wanted(a, b, [&] { return isShared(elemsAt, e, a, b); })) // a == b closes a triangle
                {
                    mark |= 1U << corner;
                    ++mCount;
                }
            }
            mMark[static_cast<std::size_t>(e)] = static_cast<unsigned char>(mark);
        }
    }

    int count() const { return mCount; }

    // Calls visit(e, corner, a, b), with positions, for each marked side: elements ascending, then corners.
    template <class Visit>
    void forEach(Visit visit) const
    {
        for (int e = 1; e <= mRows.numElem; ++e)
            for (int corner = 0; corner < 4 && mMark[static_cast<std::size_t>(e)] != 0; ++corner)
                if (((mMark[static_cast<std::size_t>(e)] >> corner) & 1U) != 0)
                    visit(e, corner, mRows.corner(e, corner), mRows.corner(e, (corner + 1) & 3));
    }

private:
    // a, b are labels here: rows are compared as they stand.
    bool isShared(NodeElemMap const & elemsAt, int e, int a, int b) const
    {
        int const node = meshrows::positionOf(a, mRows.firstNode);
        if (node <= 0 || node > elemsAt.numNode())
            return false; // no node: nobody else is listed there
        int const references = elemsAt.references(node);
        for (int i = 0; i < references; ++i)
        {
            int const other = elemsAt.elem(node, i);
            int const * const row = mRows.elems[other];
            if (((row[0] == b) | (row[1] == b) | (row[2] == b) | (row[3] == b)) && other != e)
                return true;
        }
        return false;
    }

    meshrows::Rows mRows;
    std::vector<unsigned char> mMark; // per element, one bit per corner that begins a marked side
    int mCount;
};

#endif
