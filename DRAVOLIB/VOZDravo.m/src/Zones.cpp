// Zones.cpp: chains of neighbours, and the search for zones along them.
//
// The chains come out as if elements were entered one by one, ascending, each at all its nodes. Since no chain depends
// on another, they are built node by node here, with a mark per node for "is in this chain": a node of many elements
// costs no search of its chain per element.

#include "Zones.h"

#include "CATRawColl.h"
#include "EdgeSets.h"
#include "ElementsAt.h"
#include "FreeEdgeLoops.h"
#include "MeshRows.h"
#include "RowMath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

static_assert(sizeof(void *) != 8 || sizeof(Zones) == 56, "the zones of a mesh are their six fields, and nothing else");
static_assert(sizeof(void *) != 8 || sizeof(Zones::Node) == 56, "a record is its seven fields, and nothing else");
static_assert(sizeof(void *) != 8 || sizeof(Zones::Zone) == 48, "a zone is its six fields, and nothing else");

namespace
{
constexpr double kFirstValue = 4.5;
constexpr double kSecondValue = 0.5;
constexpr int kOnInnerLoop = 2;
constexpr int kOnOuterLoop = 3;
constexpr int kSecondValueZone = -1;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

template <class Cell>
void turnRound(Cell *& io_head)
{
    Cell * turned = nullptr;
    while (io_head)
    {
        Cell * const rest = io_head->next;
        io_head->next = turned;
        turned = std::exchange(io_head, rest);
    }
    io_head = turned;
}

void release(Zones::INT_LIST * list)
{
    while (list)
        delete std::exchange(list, list->next);
}

void release(Zones::Node * chain)
{
    while (chain)
    {
        release(chain->elements);
        delete std::exchange(chain, chain->next);
    }
}

bool isZero(Vec const & v)
{
    return v[0] == 0.0 && v[1] == 0.0 && v[2] == 0.0;
}

double triangleArea(meshrows::Rows const & rows, int a, int b, int c)
{
    double toB[3];
    double toC[3];
    double product[3];
    double const * const corner = rows.node(a);
    rowmath::subtract(rows.node(b), corner, toB);
    rowmath::subtract(rows.node(c), corner, toC);
    rowmath::cross(toB, toC, product);
    return std::fabs(0.5 * rowmath::length(product));
}

// The element that the mesh takes for the number: itself, or what it is the label of. 0, and a report, if there is
// none.
int elementOf(meshrows::Rows const & rows, int e)
{
    if (e > 0 && e <= rows.numElem)
        return e;
    rows.mesh.isTriangle(e); // reports, unless the number is a label
    int const position = e > rows.numElem ? meshrows::positionOf(e, rows.mesh.GetFirstElementNumber()) : e;
    return position > 0 && position <= rows.numElem ? position : 0;
}
} // namespace

Zones::Zones(VOZCatMesh & i_mesh)
    : mMesh(&i_mesh), mNumNode(std::max(i_mesh.numNode(), 0)), mNodes(nullptr), mNumZones(0), mZones(nullptr),
      mArea(0.0)
{
    std::vector<std::unique_ptr<Node>> own; // they go again if memory runs out half-way
    own.reserve(at(mNumNode) + 1);
    for (int n = 0; n <= mNumNode; ++n)
        own.emplace_back(AddNode(nullptr, n));
    mNodes = new Node *[own.size()];
    for (std::size_t n = 0; n < own.size(); ++n)
        mNodes[n] = own[n].release();
    int const numElem = meshrows::Rows(i_mesh).numElem;
    for (int e = 1; e <= numElem; ++e)
        mArea += Area(e);
}

Zones::~Zones()
{
    for (int n = 0; n <= mNumNode; ++n)
        release(mNodes[n]);
    delete[] mNodes;
    ReleaseZones();
}

void Zones::ReleaseZones()
{
    while (mZones)
    {
        release(mZones->nodes);
        delete std::exchange(mZones, mZones->next);
    }
    mNumZones = 0;
}

bool Zones::Eval(CATRawColldouble * i_values)
{
    if (!i_values)
        return false;
    BuildMap(); // a refused boundary leaves the nodes interior, and that is all
    if (3LL * mNumNode != i_values->Size())
        return false;
    for (int n = 1; n <= mNumNode; ++n)
        mNodes[n]->value = (*i_values)[3 * n];
    CreateZones();
    return true;
}

bool Zones::BuildMap()
{
    BuildChains();
    return MarkBoundary();
}

// An element enters the list of the record that heads the chain when it is met. That is the own record for the lowest
// element alone: the neighbours that this one brings stand before it from then on.
void Zones::BuildChains()
{
    meshrows::Rows const rows(*mMesh);
    ElementsAt const elementsAt(rows, mNumNode);
    std::vector<int> chainOf(at(mNumNode) + 1, 0); // the last node in whose chain a node was met
    for (int n = 1; n <= mNumNode; ++n)
    {
        Node *& head = mNodes[n];
        for (Node const * record = head; record; record = record->next)
            chainOf[at(record->id)] = n;
        auto const enter = [&](int e, int corner)
        {
            head->elements = AddToList(head->elements, e);
            int const corners = meshrows::cornerCount(rows.elems[e]);
            for (int other = 0; other < corners; ++other)
            {
                int const m = rows.corner(e, other);
                if (other == corner || !IsNode(m) || chainOf[at(m)] == n)
                    continue;
                head = AddNode(head, m);
                chainOf[at(m)] = n;
            }
        };
        elementsAt.forEach(n, enter);
        turnRound(head);
    }
}

bool Zones::MarkBoundary()
{
    int error = 0;
    FreeEdgeSet const edges(*mMesh);
    FreeEdgeLoops const loops(edges, *mMesh, &error);
    if (error != 0)
        return false;
    for (int l = 1; l <= loops.numLoops(); ++l)
        for (int i = 1; i <= loops.numLoopEdges(l); ++i)
        {
            int const n = edges.startNode(loops.loopEdge(l, i));
            if (IsNode(n))
                mNodes[n]->type = l == loops.outerLoopNum() ? kOnOuterLoop : kOnInnerLoop;
        }
    return true;
}

void Zones::CreateZones()
{
    ReleaseZones();
    for (int n = 1; n <= mNumNode; ++n)
        NodeNormal(n);
    for (int n = 1; n <= mNumNode; ++n)
        for (double const value : {kFirstValue, kSecondValue})
            if (mNodes[n]->value == value)
                BuildZone(mNodes[n], value);
}

// Searches in waves from the seed, over the records: the marks stand on them and not on the nodes. Returns the zone's
// type; each record met puts its node before the list.
int Zones::GatherZone(int i_seed, double i_value, INT_LIST *& io_nodes)
{
    int type = 1;
    std::vector<int> frontier(1, i_seed);
    std::vector<int> fresh;
    while (!frontier.empty())
    {
        fresh.clear();
        for (int const f : frontier)
            for (Node * record = mNodes[f]; record; record = record->next)
            {
                if (record->visited != 0 || mNodes[record->id]->value != i_value)
                    continue;
                record->visited = 1;
                io_nodes = AddToList(io_nodes, record->id);
                fresh.push_back(record->id);
                if (record->type == kOnInnerLoop || record->type == kOnOuterLoop)
                    type = record->type;
            }
        std::sort(fresh.begin(), fresh.end());
        fresh.erase(std::unique(fresh.begin(), fresh.end()), fresh.end());
        frontier.swap(fresh);
    }
    return type;
}

bool Zones::BuildZone(Node * i_seed, double i_value)
{
    if (!i_seed || i_seed->visited == 1)
        return false;
    mZones = AddZone(mZones, nullptr); // before its list: whatever is gathered has an owner
    Zone & zone = *mZones;
    zone.id = ++mNumZones;
    zone.nodes = AddToList(nullptr, i_seed->id);
    zone.type = GatherZone(i_seed->id, i_value, zone.nodes);
    if (i_value == kSecondValue)
        zone.type = kSecondValueZone;

    int cells = 0;
    double sum[3] = {0.0, 0.0, 0.0};
    for (INT_LIST const * cell = zone.nodes; cell; cell = cell->next)
    {
        zone.area += Area(cell->value); // the element of the node's number
        Vec const & normal = mNodes[cell->value]->normal;
        for (int c = 0; c < 3; ++c)
            sum[c] += normal[c];
        ++cells;
    }
    rowmath::divide(sum, cells);
    zone.normal = static_cast<double const *>(sum);
    return true;
}

void Zones::NodeNormal(int n)
{
    if (!IsNode(n))
        return;
    int elements = 0;
    double sum[3] = {0.0, 0.0, 0.0};
    for (INT_LIST const * cell = mNodes[n]->elements; cell; cell = cell->next)
    {
        Vec const normal = ElemNormal(cell->value);
        for (int c = 0; c < 3; ++c)
            sum[c] += normal[c];
        ++elements;
    }
    if (elements == 0)
        sum[2] = -1.0;
    else
        rowmath::divide(sum, elements);
    mNodes[n]->normal = static_cast<double const *>(sum);
}

Vec Zones::ElemNormal(int e) const
{
    meshrows::Rows const rows(*mMesh);
    double product[3] = {0.0, 0.0, 0.0};
    if (int const element = elementOf(rows, e))
    {
        double const * const corner = rows.node(rows.corner(element, 0));
        double first[3];
        double second[3];
        rowmath::subtract(rows.node(rows.corner(element, 1)), corner, first);
        rowmath::subtract(rows.node(rows.corner(element, 2)), corner, second);
        rowmath::cross(first, second, product);
    }
    return Vec(static_cast<double const *>(product));
}

// 3 1 2 is half of a parallelogram, as 0 2 3 is, but not of any other quadrilateral.
double Zones::Area(int e) const
{
    meshrows::Rows const rows(*mMesh);
    int const element = elementOf(rows, e);
    if (element == 0)
        return 0.0;
    auto const area = [&](int i, int j, int k)
    { return triangleArea(rows, rows.corner(element, i), rows.corner(element, j), rows.corner(element, k)); };
    double const first = area(0, 1, 2);
    return meshrows::isTriangle(rows.elems[element]) ? first : first + area(3, 1, 2);
}

Vec Zones::Normal(int n) const
{
    return mNodes[IsNode(n) ? n : 0]->normal;
}

Zones::INT_LIST * Zones::AddToList(INT_LIST * i_next, int i_value)
{
    return new INT_LIST{i_value, i_next};
}

// A record has the zero of the one before which it stands, if that is zero: neighbours' records never need their own.
Zones::Node * Zones::AddNode(Node * i_next, int i_id)
{
    bool const shares = i_next && isZero(i_next->normal);
    return new Node{i_id, 1, 0, -1.0, nullptr, i_next, shares ? i_next->normal : Vec()};
}

Zones::Zone * Zones::AddZone(Zone * i_next, INT_LIST * i_nodes)
{
    return new Zone{0, 1, 0.0, i_nodes, i_next, Vec()};
}
