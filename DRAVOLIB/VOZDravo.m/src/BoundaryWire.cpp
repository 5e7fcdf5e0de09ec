// BoundaryWire.cpp: the patch of one closed wire: a star from the centroid, refined by splitting its longest edge.
//
// The method is the system's own. After each split the edges that face a new point are flipped where the other diagonal
// is shorter, and the points inside are smoothed; so the patch ends with edges about as long as the wire's.
//
// Conventions that fix the numbering and every tie:
// - the half edges that leave a vertex are visited from its own edge on, each time to prev->twin: with the faces on the
//   left of their half edges, that is counter-clockwise;
// - a vertex's own edge is the first that was made for it; if that one goes, the next in this order takes its place;
// - a new vertex is joined to the corners of its face from the first half edge named in the call of Fan;
// - positions are single precision; lengths and means are computed in double and rounded once.

#include "HoleFilling.h"
#include "HoleMemory.h"
#include "MeshRows.h"

#include <cmath>
#include <deque>
#include <memory>
#include <new>
#include <utility>

namespace
{
struct WireEdge;

struct WireVertex
{
    int id;
    WireEdge * edge; // one that leaves the vertex
    float x, y, z;
    int level; // 0 on the wire, 1 the centre, 2 and above by round
    WireVertex * next;
};

// A half edge. Its id counts from 1; the sign is a mark.
struct WireEdge
{
    int id;
    WireVertex * vertex; // the one that it leaves
    WireEdge * next;     // around its face
    WireEdge * prev;
    WireEdge * twin;
};

// The running numbers of a call, which sets them first.
thread_local int s_nextEdgeId = 1;
thread_local int s_nextVertexId = 1;

double squaredDistance(WireVertex const & a, WireVertex const & b)
{
    double const dx = static_cast<double>(b.x) - static_cast<double>(a.x);
    double const dy = static_cast<double>(b.y) - static_cast<double>(a.y);
    double const dz = static_cast<double>(b.z) - static_cast<double>(a.z);
    return dx * dx + dy * dy + dz * dz;
}

double squaredLength(WireEdge const & h)
{
    return squaredDistance(*h.vertex, *h.twin->vertex);
}

WireEdge * around(WireEdge const * h)
{
    return h->prev->twin;
}

// Calls visit(h) for each half edge that leaves v. The visit may change what lies before and behind h.
template <class Visit>
void forEachSpoke(WireVertex const & v, Visit visit)
{
    WireEdge * h = v.edge;
    do
    {
        visit(h);
        h = around(h);
    } while (h != v.edge);
}

bool isNeighbour(WireVertex const & v, WireVertex const * other)
{
    bool found = false;
    forEachSpoke(v, [&](WireEdge const * h) { found |= h->twin->vertex == other; });
    return found;
}

void link(WireEdge * first, WireEdge * second)
{
    first->next = second;
    second->prev = first;
}

// The mean of points, taken as it stands when asked.
class MeanPoint
{
public:
    void add(WireVertex const & v)
    {
        mSum[0] += static_cast<double>(v.x);
        mSum[1] += static_cast<double>(v.y);
        mSum[2] += static_cast<double>(v.z);
        ++mCount;
    }
    void moveTo(WireVertex & o_v) const
    {
        o_v.x = static_cast<float>(mSum[0] / mCount);
        o_v.y = static_cast<float>(mSum[1] / mCount);
        o_v.z = static_cast<float>(mSum[2] / mCount);
    }

private:
    double mSum[3] = {0.0, 0.0, 0.0};
    int mCount = 0;
};

class WirePatch
{
public:
    WirePatch(int i_numPoint, int const * i_ids, float const (*i_coords)[3]);

    void refine(int i_maxLevel);
    int numNew() const { return static_cast<int>(mVertices.size()) - mNumWire; }
    int numFace();
    WireVertex const * newest() const { return mHead; }

    // Calls visit(h) with one half edge of each triangle.
    template <class Visit>
    void forEachTriangle(Visit visit);

private:
    WireVertex * pushVertex(int i_id, int i_level);
    WireEdge * makePair(WireVertex * i_from, WireVertex * i_to);
    void turnIfClockwise(int i_numPoint);
    WireEdge * buildRings();
    void fan(WireVertex * i_centre, WireEdge * i_first);
    void addCentre(WireEdge * i_ring);
    WireEdge * longestEdge(double & o_longest) const;
    double splitLongestEdge(int i_level);
    bool flipAcross(WireEdge * i_h);
    void flipEdges();
    void smooth();

    std::deque<WireVertex> mVertices;
    std::deque<WireEdge> mEdges; // those taken out of the patch too
    WireVertex * mHead = nullptr;
    int mNumWire;
    double mMean = 0.0; // of the squared lengths of the wire's segments
};

WirePatch::WirePatch(int i_numPoint, int const * i_ids, float const (*i_coords)[3]) : mNumWire(i_numPoint)
{
    for (int i = i_numPoint - 1; i >= 0; --i) // the last first: the list is in the order given
    {
        WireVertex * const v = pushVertex(i_ids[i], 0);
        v->x = i_coords[i][0];
        v->y = i_coords[i][1];
        v->z = i_coords[i][2];
    }
    turnIfClockwise(i_numPoint);
    WireEdge * const ring = buildRings();
    addCentre(ring);
}

WireVertex * WirePatch::pushVertex(int i_id, int i_level)
{
    mVertices.push_back({i_id, nullptr, 0.0F, 0.0F, 0.0F, i_level, mHead});
    mHead = &mVertices.back();
    return mHead;
}

// The half edge that leaves i_from; its twin leaves i_to. Both become the own edge of a vertex that has none.
WireEdge * WirePatch::makePair(WireVertex * i_from, WireVertex * i_to)
{
    mEdges.push_back({s_nextEdgeId++, i_from, nullptr, nullptr, nullptr});
    WireEdge * const there = &mEdges.back();
    mEdges.push_back({s_nextEdgeId++, i_to, nullptr, nullptr, there});
    WireEdge * const back = &mEdges.back();
    there->twin = back;
    if (!i_from->edge)
        i_from->edge = there;
    if (!i_to->edge)
        i_to->edge = back;
    return there;
}

// By the wire's area in the xy plane, without its last segment and the one that closes it.
void WirePatch::turnIfClockwise(int i_numPoint)
{
    double sum = 0.0;
    WireVertex const * v = mHead;
    for (int i = 0; i < i_numPoint - 2; ++i, v = v->next)
        sum += (static_cast<double>(v->next->y) - static_cast<double>(v->y)) *
               (static_cast<double>(v->next->x) + static_cast<double>(v->x));
    if (!(sum < 0.0))
        return;
    WireVertex * turned = nullptr;
    while (mHead)
    {
        WireVertex * const rest = mHead->next;
        mHead->next = turned;
        turned = mHead;
        mHead = rest;
    }
    mHead = turned;
}

// The inner ring and the outer one; returns the inner half edge of the first segment.
WireEdge * WirePatch::buildRings()
{
    WireEdge * first = nullptr;
    WireEdge * previous = nullptr;
    double sum = 0.0;
    for (WireVertex * v = mHead; v; v = v->next)
    {
        WireEdge * const inner = makePair(v, v->next ? v->next : mHead);
        sum += squaredLength(*inner) + squaredLength(*inner->twin);
        if (previous)
        {
            link(previous, inner);
            link(inner->twin, previous->twin);
        }
        else
            first = inner;
        previous = inner;
    }
    link(previous, first);
    link(first->twin, previous->twin);
    mMean = sum / (2.0 * mNumWire);
    return first;
}

// Joins a vertex inside a face to all its corners, the first being the one that i_first leaves: triangles all round.
void WirePatch::fan(WireVertex * i_centre, WireEdge * i_first)
{
    WireEdge * side = i_first;
    WireEdge * firstSpoke = nullptr;
    WireEdge * before = nullptr; // the spoke to the corner that side leaves
    do
    {
        WireEdge * const following = side->next;
        WireEdge * const spoke = makePair(i_centre, side->vertex);
        if (before)
        {
            link(side->prev, spoke->twin);
            link(spoke->twin, before);
        }
        else
            firstSpoke = spoke;
        link(spoke, side);
        before = spoke;
        side = following;
    } while (side != i_first);
    // The last side still awaits the first spoke.
    WireEdge * const lastSide = before->next;
    link(lastSide, firstSpoke->twin);
    link(firstSpoke->twin, before);
}

void WirePatch::addCentre(WireEdge * i_ring)
{
    MeanPoint mean;
    for (WireVertex const * v = mHead; v; v = v->next)
        mean.add(*v);
    WireVertex * const centre = pushVertex(s_nextVertexId, 1);
    s_nextVertexId = meshrows::labelOf(s_nextVertexId, 1);
    mean.moveTo(*centre);
    fan(centre, i_ring);
}

// Ends too where further rounds would change nothing (points that all coincide) or halve what has no end (infinite
// coordinates): the budget may be any number.
void WirePatch::refine(int i_maxLevel)
{
    if (!std::isfinite(mMean))
        return;
    double longest = mMean + 1.0;
    for (int level = 2; mMean <= longest && level < i_maxLevel; ++level)
    {
        longest = splitLongestEdge(level);
        if (!(longest > 0.0))
            return;
        flipEdges();
        for (int pass = 0; pass < 5; ++pass)
            smooth();
    }
}

WireEdge * WirePatch::longestEdge(double & o_longest) const
{
    o_longest = 0.0;
    WireEdge * longest = nullptr;
    for (WireVertex const * v = mHead; v; v = v->next)
    {
        if (v->level == 0)
            continue;
        forEachSpoke(*v,
                     [&](WireEdge * h)
                     {
                         double const squared = squaredLength(*h);
                         if (squared > o_longest)
                         {
                             o_longest = squared;
                             longest = h;
                         }
                     });
    }
    return longest;
}

// The squared length of the edge that was split; 0 if none has a length.
double WirePatch::splitLongestEdge(int i_level)
{
    double squared = 0.0;
    WireEdge * const removed = longestEdge(squared);
    if (!removed)
        return 0.0;
    WireEdge * const back = removed->twin;
    MeanPoint middle;
    middle.add(*removed->vertex);
    middle.add(*back->vertex);
    for (WireEdge * const h : {removed, back})
        if (h->vertex->edge == h)
            h->vertex->edge = around(h);
    WireEdge * const first = removed->next;
    link(removed->prev, back->next);
    link(back->prev, first);

    WireVertex * const v = pushVertex(s_nextVertexId, i_level);
    s_nextVertexId = meshrows::labelOf(s_nextVertexId, 1);
    middle.moveTo(*v);
    fan(v, first);
    return squared;
}

// i_h leaves v for w in the triangle v, w, x; y is the apex beyond the edge w-x. Puts v-y in the place of w-x if that
// is shorter and can be done.
bool WirePatch::flipAcross(WireEdge * i_h)
{
    WireEdge * const across = i_h->next;
    WireEdge * const back = across->twin;
    WireEdge * const last = i_h->prev;
    WireVertex * const v = i_h->vertex;
    WireVertex * const w = across->vertex;
    WireVertex * const x = last->vertex;
    if (w->level == 0 && x->level == 0) // on the wire
        return false;
    WireVertex * const y = back->prev->vertex;
    // The shorter diagonal first: most edges end here. The three tests are independent of each other.
    if (!(squaredDistance(*v, *y) < squaredDistance(*w, *x)) || isNeighbour(*v, y))
        return false;
    WireEdge * const fromW = back->next;
    WireEdge * const toX = back->prev;
    if (w->edge == across)
        w->edge = around(across);
    if (x->edge == back)
        x->edge = around(back);
    across->vertex = y;
    back->vertex = v;
    link(i_h, fromW);
    link(fromW, across);
    link(across, i_h);
    link(back, toX);
    link(toX, last);
    link(last, back);
    return true;
}

void WirePatch::flipEdges()
{
    for (WireVertex const * v = mHead; v; v = v->next)
        if (v->level > 1)
            forEachSpoke(*v,
                         [this](WireEdge * h)
                         {
                             while (flipAcross(h))
                                 ;
                         });
}

void WirePatch::smooth()
{
    for (WireVertex * v = mHead; v; v = v->next)
    {
        if (v->level == 0)
            continue;
        MeanPoint mean;
        forEachSpoke(*v, [&](WireEdge const * h) { mean.add(*h->twin->vertex); });
        mean.moveTo(*v);
    }
}

// A face of three half edges is a triangle, and the outer ring is none: that of a wire of three points is told by its
// corners, as each triangle of a patch has one inside. Each is seen once: its half edges are marked by their sign.
template <class Visit>
void WirePatch::forEachTriangle(Visit visit)
{
    for (WireVertex const * v = mHead; v; v = v->next)
        forEachSpoke(*v,
                     [&](WireEdge * h)
                     {
                         if (h->id < 0 || h->next->next->next != h)
                             return;
                         if (h->vertex->level == 0 && h->next->vertex->level == 0 && h->prev->vertex->level == 0)
                             return;
                         for (WireEdge * const side : {h, h->next, h->prev})
                             side->id = -side->id;
                         visit(*h);
                     });
    for (WireEdge & h : mEdges)
        if (h.id < 0)
            h.id = -h.id;
}

int WirePatch::numFace()
{
    int count = 0;
    forEachTriangle([&](WireEdge const &) { ++count; });
    return count;
}

struct Freed
{
    void operator()(void * i_memory) const { std::free(i_memory); }
};

template <class Item>
std::unique_ptr<Item[], Freed> newArray(HoleMemory const & i_memory, int i_count)
{
    void * const memory = i_memory.allocate(static_cast<std::size_t>(i_count), sizeof(Item));
    if (!memory)
        throw std::bad_alloc();
    return std::unique_ptr<Item[], Freed>(static_cast<Item *>(memory));
}

// Numbers from the newest point, coordinates from the oldest. i_first is the number of the first new point.
void writePoints(WirePatch const & i_patch, int i_first, int * o_ids, float (*o_coords)[3])
{
    int const count = i_patch.numNew();
    WireVertex const * v = i_patch.newest();
    for (int i = 0; i < count && v->id >= i_first; ++i, v = v->next) // a number beyond the largest int ends them
    {
        o_ids[i] = v->id;
        float * const row = o_coords[count - 1 - i];
        row[0] = v->x;
        row[1] = v->y;
        row[2] = v->z;
    }
}

void writeFaces(WirePatch & io_patch, int (*o_faces)[4])
{
    std::size_t row = 0; // which stays clear
    io_patch.forEachTriangle(
        [&](WireEdge const & h)
        {
            ++row;
            o_faces[row][0] = h.vertex->id;
            o_faces[row][1] = h.next->vertex->id;
            o_faces[row][2] = h.prev->vertex->id;
            o_faces[row][3] = h.vertex->id;
        });
}
} // namespace

int MeshBoundaryWire(int * io_numPoint, int ** io_ids, float (**io_coords)[3], int * io_nextId, int * o_numFace,
                     int (**o_faces)[4], int i_maxLevel, HoleMemory const & i_memory)
{
    int const numWire = io_numPoint ? std::exchange(*io_numPoint, 0) : 0;
    if (o_numFace)
        *o_numFace = 0;
    if (o_faces)
        *o_faces = nullptr;
    if (!io_ids || !io_coords || !io_nextId || !o_numFace || !o_faces)
        return 0;
    if (numWire < 3 || !*io_ids || !*io_coords)
        return 0;
    try
    {
        s_nextEdgeId = 1;
        s_nextVertexId = *io_nextId;
        WirePatch patch(numWire, *io_ids, *io_coords);
        patch.refine(i_maxLevel < 1 ? numWire : i_maxLevel);

        int const numFace = patch.numFace();
        std::unique_ptr<int[], Freed> ids = newArray<int>(i_memory, patch.numNew());
        std::unique_ptr<float[][3], Freed> coords(newArray<float[3]>(i_memory, patch.numNew()).release());
        std::unique_ptr<int[][4], Freed> faces(newArray<int[4]>(i_memory, numFace + 1).release());
        writePoints(patch, *io_nextId, ids.get(), coords.get());
        writeFaces(patch, faces.get());

        std::free(std::exchange(*io_ids, ids.release()));
        std::free(std::exchange(*io_coords, coords.release()));
        *o_faces = faces.release();
        *io_numPoint = patch.numNew();
        *io_nextId = s_nextVertexId;
        *o_numFace = numFace;
        return 1;
    }
    catch (std::bad_alloc const &)
    {
        return 0;
    }
}

int MeshBoundaryWire(int * io_numPoint, int ** io_ids, float (**io_coords)[3], int * io_nextId, int * o_numFace,
                     int (**o_faces)[4], int i_maxLevel)
{
    return MeshBoundaryWire(io_numPoint, io_ids, io_coords, io_nextId, o_numFace, o_faces, i_maxLevel, HoleMemory());
}
