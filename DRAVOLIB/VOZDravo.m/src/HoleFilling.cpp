// HoleFilling.cpp: every inner loop of a mesh closed by a patch.

#include "HoleFilling.h"

#include "EdgeSets.h"
#include "ElemNormal.h"
#include "FreeEdgeLoops.h"
#include "HoleMemory.h"
#include "MeshRows.h"
#include "RowMath.h"

#include <algorithm>
#include <cstdio>
#include <new>

namespace
{
using NodeRow = double[3];
using ElemRow = int[4];

// The arrays of the caller, which only ever grow.
struct GrowingMesh
{
    int & numNode;
    NodeRow *& nodes;
    int & numElem;
    ElemRow *& elems;
};

// What MeshBoundaryWire takes and gives for one hole; freed with it.
struct Hole
{
    int numPoint = 0;
    int * ids = nullptr;
    float (*coords)[3] = nullptr;
    int numFace = 0;
    int (*faces)[4] = nullptr;

    Hole() = default;
    Hole(Hole const &) = delete;
    Hole & operator=(Hole const &) = delete;
    ~Hole()
    {
        std::free(ids);
        std::free(coords);
        std::free(faces);
    }
};

void say(char const * i_message)
{
    std::fputs(i_message, stderr);
}

// Room for one point more than the loop has. False, with its message said, if there is none.
bool allocateWire(int i_size, HoleMemory const & i_memory, Hole & o_hole)
{
    std::size_t const count = static_cast<std::size_t>(i_size) + 1;
    o_hole.coords = static_cast<float(*)[3]>(i_memory.allocate(count, sizeof(float[3])));
    if (!o_hole.coords)
        say("cannot allocal memory for hole nodal coord.\n");
    else
        o_hole.ids = static_cast<int *>(i_memory.allocate(count, sizeof(int)));
    if (o_hole.coords && !o_hole.ids)
        say("cannot allocal memory for hole nodal Id.\n");
    return o_hole.ids != nullptr;
}

// The start nodes of the loop's edges, in walking order.
void takeWire(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops, int i_loop,
              Hole & io_hole)
{
    meshrows::Rows const rows(i_mesh);
    io_hole.numPoint = i_loops.numLoopEdges(i_loop);
    for (int i = 0; i < io_hole.numPoint; ++i)
    {
        io_hole.ids[i] = i_edges.startNode(i_loops.loopEdge(i_loop, i + 1));
        double const * const node = rows.node(io_hole.ids[i]);
        for (int c = 0; c < 3; ++c)
            io_hole.coords[i][c] = static_cast<float>(node[c]);
    }
}

template <class Row>
void grow(Row *& io_rows, int i_count, HoleMemory const & i_memory)
{
    void * const grown = i_memory.grow(io_rows, static_cast<std::size_t>(i_count) * sizeof(Row));
    if (!grown)
        throw std::bad_alloc();
    io_rows = static_cast<Row *>(grown);
}

void addPatch(Hole const & i_hole, HoleMemory const & i_memory, GrowingMesh const & io_mesh)
{
    if (i_hole.numPoint > 0)
    {
        grow(io_mesh.nodes, io_mesh.numNode + i_hole.numPoint, i_memory);
        for (int i = 0; i < i_hole.numPoint; ++i)
            for (int c = 0; c < 3; ++c)
                io_mesh.nodes[io_mesh.numNode + i][c] = static_cast<double>(i_hole.coords[i][c]);
        io_mesh.numNode += i_hole.numPoint;
    }
    if (i_hole.numFace > 0)
    {
        grow(io_mesh.elems, io_mesh.numElem + i_hole.numFace, i_memory);
        for (int i = 0; i < i_hole.numFace; ++i)
            std::copy_n(i_hole.faces[i + 1], 4, io_mesh.elems[io_mesh.numElem + i]);
        io_mesh.numElem += i_hole.numFace;
    }
}

// False if memory for a wire runs out.
bool fillLoops(HoleMemory const & i_memory, GrowingMesh const & io_mesh)
{
    VOZCatMesh const mesh(io_mesh.numNode, io_mesh.numElem, io_mesh.nodes, io_mesh.elems);
    FreeEdgeSet const edges(mesh);
    int refused = 0; // goes no further than this: loops that were refused cannot be read, so there are none
    FreeEdgeLoops const loops(edges, mesh, &refused);
    int const numLoops = refused == 0 ? loops.numLoops() : 0;
    int nextId = io_mesh.numNode + 1;
    for (int l = 1; l <= numLoops; ++l)
    {
        if (l == loops.outerLoopNum())
            continue;
        Hole hole;
        if (!allocateWire(loops.numLoopEdges(l), i_memory, hole))
            return false;
        takeWire(mesh, edges, loops, l, hole);
        if (MeshBoundaryWire(&hole.numPoint, &hole.ids, &hole.coords, &nextId, &hole.numFace, &hole.faces,
                             hole.numPoint, i_memory) == 0)
            say("Error in fill hole.\n"); // and on with what there is: nothing for this hole
        addPatch(hole, i_memory, io_mesh);
    }
    return true;
}

void agreeOrientation(GrowingMesh const & io_mesh)
{
    VOZCatMesh mesh(io_mesh.numNode, io_mesh.numElem, io_mesh.nodes, io_mesh.elems);
    ElemNormal normals;
    normals.compute(mesh);
    normals.CheckFlipAllElemNormals(&mesh);
    for (int e = 1; e <= io_mesh.numElem; ++e)
        for (int k = 0; k < 4; ++k)
            io_mesh.elems[e - 1][k] = mesh.elem(e, k);
}
} // namespace

int FillAllHoles(int & io_numNode, double (**io_nodes)[3], int & io_numElem, int (**io_elems)[4],
                 HoleMemory const & i_memory)
{
    if (!io_nodes || !io_elems || io_numNode < 0 || io_numElem < 0)
        return 1;
    if ((io_numNode > 0 && !*io_nodes) || (io_numElem > 0 && !*io_elems))
        return 1;
    try
    {
        GrowingMesh const mesh = {io_numNode, *io_nodes, io_numElem, *io_elems};
        if (!fillLoops(i_memory, mesh))
            return 1;
        agreeOrientation(mesh);
        return 0;
    }
    catch (...) // a host's own error among them
    {
        say("smffll catch exception.\n");
        return 1;
    }
}

int FillAllHoles(int & io_numNode, double (**io_nodes)[3], int & io_numElem, int (**io_elems)[4])
{
    return FillAllHoles(io_numNode, io_nodes, io_numElem, io_elems, HoleMemory());
}
