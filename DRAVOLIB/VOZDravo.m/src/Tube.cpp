// Tube.cpp: the cut along a tube, and the way back onto the cylinder.
//
// The path goes from node to node of the mesh, each step to the neighbour of least cost
//
//     (a . b + 1) distance from the plane,   a the way back in the plane, b the step, both of unit length
//
// among those for which a . b is below 0.1: straight ahead rather than near the plane, and never back. It is the
// system's own rule and knows no way out of a dead end: the tube is then not opened.

#include "Tube.h"

#include "CATFatalError.h"
#include "EdgeSets.h"
#include "ElemProperty.h"
#include "ElementsAt.h"
#include "FreeEdgeLoops.h"
#include "MeshRows.h"
#include "Plane.h"
#include "Result.h"
#include "RowMath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <vector>

namespace
{
constexpr double kPi = 3.141592653589793;
constexpr double kLargestFloat = static_cast<double>(std::numeric_limits<float>::max());
constexpr double kLeastRadius = static_cast<double>(std::numeric_limits<float>::epsilon());
constexpr double kOnPlane = 0.001; // a node this near to the plane is on neither side
constexpr double kWayBack = 0.1;   // cosine above which a step comes back
constexpr double kMetrePerMilli = 0.001;
constexpr int kAlongY = 1;    // of a displacement table
constexpr int kIntoFrame = 2; // of VOZCatMesh::Transform
constexpr int kOutOfFrame = 1;

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

// From a to b, of unit length; NaN where the two coincide.
void direction(double const * a, double const * b, double * o_unit)
{
    rowmath::subtract(b, a, o_unit);
    rowmath::divide(o_unit, rowmath::length(o_unit));
}

double distanceFrom(rowmath::PlaneRow const & plane, double const * p)
{
    return std::fabs(rowmath::height(plane.coefficient, p));
}

int sideOf(rowmath::PlaneRow const & plane, double const * p)
{
    double const height = rowmath::height(plane.coefficient, p);
    if (height > kOnPlane)
        return 1;
    return height < -kOnPlane ? -1 : 0;
}

// One table for the nodes given, which prescribes their local y.
DispBC lipTable(std::vector<int> const & nodes, double displacement)
{
    DispBC table(static_cast<int>(nodes.size()));
    std::copy(nodes.begin(), nodes.end(), table.nodes);
    table.flags[kAlongY] = 1;
    table.values[kAlongY] = displacement;
    return table;
}
} // namespace

struct Tube::WorkingState
{
    double halfLength = 0.0; // of the opened sheet: how far each lip goes
    int startLoop = 0;
    ElementsAt elementsAt;
    int numMapped = 0; // nodes with elements
    std::vector<int> path;

    bool isMapped(int n) const { return elementsAt.references(n) > 0; }
};

Tube::WorkingState & Tube::State()
{
    static WorkingState state;
    return state;
}

Tube::Tube(VOZCatMesh & io_mesh, ElemProperty & io_property, VOZCatAxis const & i_axis, double i_radius)
    : mMesh(&io_mesh), mProperty(&io_property), mAxis(&i_axis), mPlane(std::make_shared<Plane>(0.0, 1.0, 0.0, 0.0)),
      mRadius(i_radius > 0.0 ? i_radius : -1.0)
{
    State() = WorkingState();
    mMesh->Transform(mAxis, kIntoFrame);
}

Tube::Tube(Tube const & i_other) = default;
Tube & Tube::operator=(Tube const & i_other) = default;

Tube::~Tube()
{
    State() = WorkingState();
    mMesh->Transform(mAxis, kOutOfFrame);
}

bool Tube::Eval(double i_radiusFactor)
{
    int error = 0;
    FreeEdgeSet edges(*mMesh);
    FreeEdgeLoops loops(edges, *mMesh, &error);
    if (error != 0)
        return false;
    BuildMap();
    if (!Split(edges, loops, i_radiusFactor) || State().path.empty())
        return false;
    rowmath::PlaneRow const plane(*mPlane);
    for (int const n : State().path)
    {
        double * const row = mMesh->GetNodeData()[n];
        double const height = rowmath::height(plane.coefficient, row);
        for (int c = 0; c < 3; ++c)
            row[c] -= plane.coefficient[c] * height;
    }
    if (UpdateConnectivity() < 0 || !AddPathNodes())
        return false;
    Displacements(edges, loops);
    mMesh->reverse();
    return true;
}

void Tube::BuildMap()
{
    WorkingState & state = State();
    meshrows::Rows const rows(*mMesh);
    state.elementsAt = ElementsAt(rows, rows.numNode);
    state.numMapped = 0;
    for (int n = 1; n <= rows.numNode; ++n)
        state.numMapped += state.isMapped(n) ? 1 : 0;
}

// The loop whose nodes lie nearest to the origin in the mean; 0 if there is none.
int Tube::ChooseStartLoop(FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops, double & o_meanDistance) const
{
    meshrows::Rows const rows(*mMesh);
    int nearest = 0;
    o_meanDistance = kLargestFloat;
    for (int l = 1; l <= i_loops.numLoops(); ++l)
    {
        double sum = 0.0;
        for (int i = 1; i <= i_loops.numLoopEdges(l); ++i)
            sum += rowmath::length(rows.node(i_edges.startNode(i_loops.loopEdge(l, i))));
        double const mean = sum / i_loops.numLoopEdges(l);
        if (mean < o_meanDistance)
        {
            o_meanDistance = mean;
            nearest = l;
        }
    }
    return nearest;
}

// The edge of the start loop across the plane that is nearest to the plane and to the point at the half length on z.
bool Tube::ChooseFirstEdge(FreeEdgeSet const & i_edges, FreeEdgeLoops const & i_loops, int & o_near, int & o_far) const
{
    WorkingState const & state = State();
    meshrows::Rows const rows(*mMesh);
    rowmath::PlaneRow const plane(*mPlane);
    auto const distance = [&](int n) { return distanceFrom(plane, rows.node(n)); };
    double const target[3] = {0.0, 0.0, state.halfLength};
    double best = kLargestFloat;
    bool isFound = false;
    for (int i = 1; i <= i_loops.numLoopEdges(state.startLoop); ++i)
    {
        int const edge = i_loops.loopEdge(state.startLoop, i);
        int const start = i_edges.startNode(edge);
        int const end = i_edges.endNode(edge);
        double const score = distance(start) + rowmath::distance(target, rows.node(start));
        if (!(score < best) || !IntersectEdge(start, end))
            continue;
        best = score;
        bool const startIsNear = distance(start) <= distance(end);
        o_near = startIsNear ? start : end;
        o_far = startIsNear ? end : start;
        isFound = true;
    }
    return isFound && state.isMapped(o_near);
}

// The neighbour most nearly at right angles to the boundary edge; 0 if there is none.
int Tube::SecondNode(int i_near, int i_far) const
{
    WorkingState const & state = State();
    meshrows::Rows const rows(*mMesh);
    double along[3];
    direction(rows.node(i_near), rows.node(i_far), along);
    int second = 0;
    double best = kLargestFloat;
    auto const look = [&](int e, int)
    {
        for (int corner = 0; corner < meshrows::cornerCount(rows.elems[e]); ++corner)
        {
            int const u = rows.corner(e, corner);
            if (u == i_near || u == i_far || !rows.isNode(u))
                continue;
            double step[3];
            direction(rows.node(i_near), rows.node(u), step);
            double const cosine = std::fabs(rowmath::dot(step, along));
            if (cosine < best)
            {
                best = cosine;
                second = u;
            }
        }
    };
    state.elementsAt.forEach(i_near, look);
    return second;
}

// The way on; 0 if there is none.
int Tube::NextNode(int i_previous, int i_current) const
{
    meshrows::Rows const rows(*mMesh);
    rowmath::PlaneRow const plane(*mPlane);
    double const * const current = rows.node(i_current);
    double back[3];
    rowmath::subtract(rows.node(i_previous), current, back);
    back[1] = 0.0;
    rowmath::divide(back, rowmath::length(back));
    int next = 0;
    double best = kLargestFloat;
    auto const look = [&](int e, int place)
    {
        if (!IntersectElem(e))
            return;
        int const corners = meshrows::cornerCount(rows.elems[e]);
        int const skip = corners == 4 ? (place + 2) % 4 : -1; // across the quadrilateral
        for (int corner = 0; corner < corners; ++corner)
        {
            int const u = rows.corner(e, corner);
            if (corner == skip || u == i_current || u == i_previous || !rows.isNode(u))
                continue;
            double step[3];
            direction(current, rows.node(u), step);
            double const cosine = rowmath::dot(back, step);
            double const cost = (cosine + 1.0) * distanceFrom(plane, rows.node(u));
            if (cost < best && cosine < kWayBack)
            {
                best = cost;
                next = u;
            }
        }
    };
    State().elementsAt.forEach(i_current, look);
    return next;
}

bool Tube::Split(FreeEdgeSet & i_edges, FreeEdgeLoops & i_loops, double i_radiusFactor)
{
    WorkingState & state = State();
    state.path.clear();
    double meanDistance = 0.0;
    state.startLoop = ChooseStartLoop(i_edges, i_loops, meanDistance);
    if (state.startLoop == 0)
        return false;
    if (mRadius < 0.0)
        mRadius = meanDistance * i_radiusFactor;
    state.halfLength = mRadius * kPi;

    std::vector<char> isTarget(at(std::max(mMesh->numNode(), 0)) + 1, 0);
    for (int l = 1; l <= i_loops.numLoops(); ++l)
        for (int i = 1; l != state.startLoop && i <= i_loops.numLoopEdges(l); ++i)
            isTarget[at(i_edges.startNode(i_loops.loopEdge(l, i)))] = 1;

    int previous = 0;
    int far = 0;
    if (!ChooseFirstEdge(i_edges, i_loops, previous, far))
        return false;
    state.path.push_back(previous);
    int current = SecondNode(previous, far);
    if (!state.isMapped(current))
        return false;
    state.path.push_back(current);
    // A round without a way on would stand still, and so would all that follow: there is no need to wait for the limit.
    for (int counter = 1;; ++counter)
    {
        int const next = NextNode(previous, current);
        if (next == 0)
            return false;
        previous = current;
        current = next;
        state.path.push_back(next);
        if (counter > state.numMapped)
            return false;
        if (isTarget[at(next)] != 0)
            return true;
    }
}

bool Tube::IntersectEdge(int a, int b) const
{
    meshrows::Rows const rows(*mMesh);
    rowmath::PlaneRow const plane(*mPlane);
    return std::abs(sideOf(plane, rows.node(a)) + sideOf(plane, rows.node(b))) < 2;
}

bool Tube::IntersectElem(int e) const
{
    meshrows::Rows const rows(*mMesh);
    int const corners = meshrows::cornerCount(rows.elems[e]);
    for (int j = corners - 1; j <= 2 * corners - 2; ++j) // a step of two: 1-2, 2-0, 0-1 or 1-3, 2-0, 3-1, 0-2
        if (IntersectEdge(rows.corner(e, (j + 2 - corners) % corners), rows.corner(e, j % corners)))
            return true;
    return false;
}

int Tube::Side(int e, bool i_skip) const
{
    meshrows::Rows const rows(*mMesh);
    rowmath::PlaneRow const plane(*mPlane);
    double farthest = 0.0;
    int side = 0;
    for (int corner = 0; corner < meshrows::cornerCount(rows.elems[e]); ++corner)
    {
        int const n = rows.corner(e, corner);
        if (n > rows.numNode)
            return -1; // a double, with no coordinates yet
        if (i_skip)
            continue;
        double const distance = distanceFrom(plane, rows.node(n));
        if (distance > farthest)
        {
            farthest = distance;
            side = sideOf(plane, rows.node(n));
        }
    }
    return side;
}

int Tube::UpdateConnectivity()
{
    WorkingState const & state = State();
    int const first = mMesh->GetFirstNodeNumber();
    int next = mMesh->numNode();
    for (int const p : state.path)
    {
        if (!state.isMapped(p))
            return -1;
        ++next;
        auto const move = [&](int e, int)
        {
            int * const row = mMesh->GetElemData()[e];
            int const corner = mMesh->GetElementNodePosition(e, p);
            if (corner < 0 || Side(e, false) >= 0)
                return;
            bool const isTriangle = meshrows::isTriangle(row);
            row[corner] = meshrows::labelOf(next, first);
            if (isTriangle && corner == 0)
                row[3] = row[0];
        };
        state.elementsAt.forEach(p, move);
    }
    return next;
}

// The doubles, at the numbers that the elements have already.
bool Tube::AddPathNodes()
{
    std::vector<int> const & path = State().path;
    try
    {
        using NodeRow = double[3];
        std::unique_ptr<NodeRow[]> const rows(new NodeRow[path.size()]);
        for (std::size_t i = 0; i < path.size(); ++i)
            rowmath::copy(mMesh->GetNodeData()[path[i]], rows[i]);
        mMesh->addNode(rows.get(), static_cast<int>(path.size()));
    }
    catch (std::bad_alloc const &)
    {
        return false;
    }
    return true;
}

void Tube::Displacements(FreeEdgeSet &, FreeEdgeLoops &)
{
    WorkingState const & state = State();
    int const tables = mProperty->sizeDispBC();
    int last = 0; // the highest element that still holds the path's first node
    if (!state.path.empty())
        state.elementsAt.forEach(state.path.front(),
                                 [&](int e, int)
                                 {
                                     if (mMesh->GetElementNodePosition(e, state.path.front()) >= 0)
                                         last = e;
                                 });
    if (last == 0)
        return;
    meshrows::Rows const rows(*mMesh);
    rowmath::PlaneRow const plane(*mPlane);
    int sides = 0;
    for (int corner = 0; corner < meshrows::cornerCount(rows.elems[last]); ++corner)
        sides += sideOf(plane, rows.node(rows.corner(last, corner)));
    double const lift = (sides >= 0 ? 1.0 : -1.0) * state.halfLength;

    std::vector<int> doubles;
    for (std::size_t i = 0; i < state.path.size(); ++i)
        doubles.push_back(rows.numNode - static_cast<int>(state.path.size()) + 1 + static_cast<int>(i));
    DispBC kept = lipTable(state.path, lift);
    DispBC moved = lipTable(doubles, -lift);
    VOZ_CONTRACT(tables >= 2, "sizeDispBC() >= 2");
    if (tables >= 1)
        mProperty->dispBCs(tables, kept);
    if (tables >= 2)
        mProperty->dispBCs(tables - 1, moved);
}

void Tube::Update(Result & io_result, VOZCatMesh & io_mesh, int i_numNode, VOZCatAxis const & i_axis, double i_radius)
{
    if (!(i_radius >= kLeastRadius))
        return;
    bool const holds = VOZ_CONTRACT(i_numNode >= 0 && i_numNode <= io_mesh.numNode(),
                                    "i_numNode >= 0 && i_numNode <= io_mesh.numNode()");
    int const numNode = holds ? i_numNode : io_mesh.numNode();
    io_result.numNodeResult(numNode);
    io_mesh.numNode(numNode);
    meshrows::Rows const rows(io_mesh);
    rowmath::Frame const frame(i_axis);
    for (int n = 1; n <= rows.numNode; ++n)
    {
        double flat[3];
        double local[3];
        double round[3];
        for (int c = 0; c < 3; ++c)
            flat[c] = rows.nodes[n][c] * kMetrePerMilli + static_cast<double>(io_result.disp1(n, c));
        frame.fromGlobal(flat, local);
        double const angle = local[1] / i_radius; // on the sheet y is the length of the arc
        double const wrapped[3] = {local[0], i_radius * std::sin(angle), -i_radius * std::cos(angle)};
        frame.toGlobal(wrapped, round);
        for (int c = 0; c < 3; ++c)
        {
            float const displacement = static_cast<float>(round[c] - rows.nodes[n][c] * kMetrePerMilli);
            io_result.disp(n, c, displacement);
            io_result.dispOnBinder(n, c, displacement);
        }
    }
}
