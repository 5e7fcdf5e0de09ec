// ElementsAt.h: the elements at each node, ascending, with the corner at which each holds it.
//
// Unlike NodeElemMap it passes over corners that are no nodes without a word, and knows the corner. A snapshot.

#ifndef ELEMENTSAT_H
#define ELEMENTSAT_H

#include "MeshRows.h"
#include "NodeRuns.h"

#include <cstddef>
#include <memory>

class ElementsAt
{
public:
    ElementsAt() : mNumNode(0) {} // of no node

    ElementsAt(meshrows::Rows const & i_rows, int i_numNode) : mNumNode(i_numNode)
    {
        auto const pass = [&i_rows](auto visit)
        {
            for (int e = 1; e <= i_rows.numElem; ++e)
                for (int corner = 0; corner < meshrows::cornerCount(i_rows.elems[e]); ++corner)
                    visit(i_rows.corner(e, corner), 4 * e + corner);
        };
        int * offset = nullptr;
        int * map = nullptr;
        noderuns::build(
            i_numNode, pass, pass, [] {}, offset, map);
        mOffset.reset(offset);
        mMap.reset(map);
    }

    // Elements at node n, one that repeats it counted each time; 0 if there is no such node.
    int references(int n) const { return n > 0 && n <= mNumNode ? mOffset[at(n)] - mOffset[at(n) - 1] : 0; }

    // Calls visit(element, corner) for each; n must be a node.
    template <class Visit>
    void forEach(int n, Visit visit) const
    {
        for (int i = mOffset[at(n) - 1]; i < mOffset[at(n)]; ++i)
            visit(mMap[at(i)] / 4, mMap[at(i)] % 4);
    }

private:
    static std::size_t at(int i) { return static_cast<std::size_t>(i); }

    int mNumNode;
    std::unique_ptr<int[]> mOffset;
    std::unique_ptr<int[]> mMap;
};

#endif
