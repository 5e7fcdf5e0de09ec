// ElemNormal.cpp: element normals by diagonals, and the walk that makes orientations agree.
//
// A triangle takes its two edges from corner 0, a quadrilateral its two diagonals; the cross product is twice the area
// long in both cases, which is the weight that sums of normals want.

#include "ElemNormal.h"

#include "ElemEdgeTable.h"
#include "MeshRows.h"
#include "RowMath.h"

#include <memory>
#include <new>
#include <vector>

static_assert(sizeof(void *) != 8 || sizeof(ElemNormal) == 24, "the array and its count, and nothing else");

ElemNormal::ElemNormal() : mNormal(nullptr), mNumNormal(0) {}

ElemNormal::ElemNormal(VOZCatMesh const & i_mesh) : ElemNormal()
{
    compute(i_mesh);
}

ElemNormal::~ElemNormal()
{
    delete[] mNormal;
}

void ElemNormal::compute(VOZCatMesh const & i_mesh)
{
    meshrows::Rows const rows(i_mesh);
    std::unique_ptr<double[][3]> normals(new double[static_cast<std::size_t>(rows.numElem) + 1][3]);
    for (int e = 1; e <= rows.numElem; ++e)
    {
        bool const triangle = meshrows::isTriangle(rows.elems[e]);
        double const * const corner0 = rows.node(rows.corner(e, 0));
        double const * const corner1 = rows.node(rows.corner(e, 1));
        double const * const corner2 = rows.node(rows.corner(e, 2));
        double d1[3];
        double d2[3];
        if (triangle)
        {
            rowmath::subtract(corner1, corner0, d1);
            rowmath::subtract(corner2, corner0, d2);
        }
        else
        {
            rowmath::subtract(corner2, corner0, d1);
            rowmath::subtract(rows.node(rows.corner(e, 3)), corner1, d2);
        }
        rowmath::cross(d1, d2, normals[static_cast<std::size_t>(e)]);
    }
    delete[] mNormal;
    mNormal = normals.release();
    mNumNormal = rows.numElem;
}

int ElemNormal::FindNeighbour(int e, int * i_list, int n)
{
    for (int i = 0; i < n; ++i)
        if (i_list[i] != e)
            return i;
    return -1;
}

void ElemNormal::FlipOneNormal(int e, VOZCatMesh * io_mesh)
{
    if (!io_mesh)
        return;
    int const last = io_mesh->isTriangle(e) ? 2 : 3;
    int const first = io_mesh->elem(e, 1);
    io_mesh->elem(e, 1, io_mesh->elem(e, last));
    io_mesh->elem(e, last, first);
}

namespace
{
// The first side of e that joins a and b in either order; the last side, if none does.
void runThrough(VOZCatMesh const & mesh, int e, int a, int b, int & o_from, int & o_to)
{
    int const corners = mesh.isTriangle(e) ? 3 : 4;
    for (int i = 0; i < corners; ++i)
    {
        o_from = mesh.elem(e, i);
        o_to = mesh.elem(e, i + 1 == corners ? 0 : i + 1);
        if ((o_from == a && o_to == b) || (o_from == b && o_to == a))
            return;
    }
}

// Depth first over the elements: whoever is pushed last is visited first.
class OrientationWalk
{
public:
    OrientationWalk(ElemNormal & i_normals, VOZCatMesh & io_mesh)
        : mNormals(i_normals), mMesh(io_mesh), mTable(io_mesh),
          mVisited(static_cast<std::size_t>(mTable.numElem()) + 1), mStack(mVisited.size())
    {
    }

    void run()
    {
        for (int lowest = 1; mNumVisited < mTable.numElem();)
        {
            if (mStackSize > 0)
            {
                visitNeighbours(mStack[--mStackSize]);
                continue;
            }
            while (isVisited(lowest)) // the lowest of the next piece: what is visited stays so
                ++lowest;
            push(lowest);
        }
    }

private:
    bool isVisited(int e) const { return mVisited[static_cast<std::size_t>(e)] != 0; }

    void push(int e)
    {
        mVisited[static_cast<std::size_t>(e)] = 1;
        mStack[mStackSize++] = e;
        ++mNumVisited;
    }

    void visitNeighbours(int e)
    {
        for (int i = 0; i < mTable.localEdges(e); ++i)
        {
            int const k = mTable.elemEdge(e, i);
            int const slot = mNormals.FindNeighbour(e, mTable.edgeElems(k), 2);
            int const neighbour = slot < 0 ? 0 : mTable.edgeElems(k)[slot];
            if (neighbour <= 0 || isVisited(neighbour))
                continue;
            push(neighbour);
            if (mNormals.IsCorrectDirection(e, neighbour, mTable.low(k), mTable.high(k), &mMesh) == 0)
                mNormals.FlipOneNormal(neighbour, &mMesh);
        }
    }

    ElemNormal & mNormals;
    VOZCatMesh & mMesh;
    ElemEdgeTable mTable;
    std::vector<int> mVisited;
    std::vector<int> mStack;
    std::size_t mStackSize = 0;
    int mNumVisited = 0;
};
} // namespace

int ElemNormal::IsCorrectDirection(int e1, int e2, int i_nodeA, int i_nodeB, VOZCatMesh * i_mesh)
{
    if (!i_mesh)
        return 0;
    int from1 = 0;
    int to1 = 0;
    int from2 = 0;
    int to2 = 0;
    runThrough(*i_mesh, e1, i_nodeA, i_nodeB, from1, to1);
    runThrough(*i_mesh, e2, i_nodeA, i_nodeB, from2, to2);
    return from1 == to2 || to1 == from2 ? 1 : 0;
}

int ElemNormal::CheckFlipAllElemNormals(VOZCatMesh * io_mesh)
{
    if (!io_mesh || io_mesh->numElem() <= 0 || !io_mesh->GetElemData())
        return 1;
    try
    {
        OrientationWalk(*this, *io_mesh).run();
    }
    catch (std::bad_alloc const &) // all is allocated before the walk: nothing has been changed
    {
        return 1;
    }
    return 0;
}
