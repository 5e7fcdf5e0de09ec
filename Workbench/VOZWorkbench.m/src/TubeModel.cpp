// TubeModel.cpp: the frame of a tube, its seam, and the way back.

#include "TubeModel.h"

#include "EdgeSets.h"
#include "ElemNormal.h"
#include "FreeEdgeLoops.h"
#include "OutputFile.h"
#include "Result.h"
#include "Tube.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace voz::workbench
{

namespace
{
constexpr double kMetrePerMillimetre = 0.001;
constexpr double kUnequalEnds = 0.01;  // of the radius
constexpr double kAreaTolerance = 1.0; // percent
constexpr double kGapTolerance = 0.01; // of the radius
constexpr double kAlong = 0.99;        // cosine above which the cut lies along the axis
using NodeRow = double[3];

[[noreturn]] void Refuse(Job const & i_job, std::string const & i_message)
{
    throw InputError(i_job.path, i_job.tube->line, 0, "tube: " + i_message);
}

double Dot(Point3 const & a, Point3 const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Point3 Cross(Point3 const & a, Point3 const & b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Point3 Plus(Point3 const & a, double i_factor, Point3 const & b)
{
    return {a[0] + i_factor * b[0], a[1] + i_factor * b[1], a[2] + i_factor * b[2]};
}

Point3 Unit(Point3 const & a)
{
    return Plus({}, 1.0 / std::sqrt(Dot(a, a)), a);
}

Point3 PlaceOf(VOZCatMesh const & i_mesh, int n)
{
    double const * const p = i_mesh.GetNodeData()[n];
    return {p[0], p[1], p[2]};
}

// A loop of free edges at an end.
struct End
{
    std::vector<int> nodes;
    Point3 middle{}; // of its line
};

std::array<End, 2> EndsOf(Job const & i_job, VOZCatMesh const & i_mesh)
{
    int error = 0;
    FreeEdgeSet const edges(i_mesh);
    FreeEdgeLoops const loops(edges, i_mesh, &error);
    if (error != 0)
        Refuse(i_job, "the mesh has no ends that are simple closed loops");
    if (loops.numLoops() != 2)
        Refuse(i_job, "a tube has two open ends and no holes, and the mesh has " + std::to_string(loops.numLoops()) +
                          (loops.numLoops() == 1 ? " loop" : " loops") +
                          " of free edges; \"dravo convert --fill\" closes holes");
    std::array<End, 2> ends;
    for (int l = 1; l <= 2; ++l)
    {
        End & end = ends[static_cast<std::size_t>(l) - 1];
        double length = 0.0;
        for (int i = 1; i <= loops.numLoopEdges(l); ++i)
        {
            int const k = loops.loopEdge(l, i);
            Point3 const a = PlaceOf(i_mesh, edges.startNode(k));
            Point3 const b = PlaceOf(i_mesh, edges.endNode(k));
            Point3 const side = Plus(b, -1.0, a);
            double const share = std::sqrt(Dot(side, side));
            end.nodes.push_back(edges.startNode(k));
            end.middle = Plus(Plus(end.middle, 0.5 * share, a), 0.5 * share, b);
            length += share;
        }
        end.middle = Plus({}, 1.0 / length, end.middle);
    }
    return ends;
}

Point3 AxisOf(Job const & i_job, std::array<End, 2> const & i_ends)
{
    Point3 const between = Plus(i_ends[1].middle, -1.0, i_ends[0].middle);
    if (!i_job.tube->axis)
    {
        if (!(Dot(between, between) > 0.0))
            Refuse(i_job, "the middles of both ends fall together; give the axis");
        return Unit(between);
    }
    return Dot(*i_job.tube->axis, between) < 0.0 ? Plus({}, -1.0, *i_job.tube->axis) : *i_job.tube->axis;
}

Point3 CutOf(Job const & i_job, Point3 const & i_axis)
{
    Point3 cut{};
    if (i_job.tube->cut)
        cut = *i_job.tube->cut;
    else // z before y before x, where two are equally across
    {
        std::size_t best = 2;
        for (std::size_t const c : {1, 0})
            if (std::abs(i_axis[c]) < std::abs(i_axis[best]) - 1e-9)
                best = c;
        cut[best] = 1.0;
    }
    if (std::abs(Dot(cut, i_axis)) > kAlong)
        Refuse(i_job, "the cut points along the tube's axis; it must lead from the axis to the seam");
    return Unit(Plus(cut, -Dot(cut, i_axis), i_axis));
}

VOZCatAxis FrameOf(Job const & i_job, std::array<End, 2> const & i_ends)
{
    Point3 const x = AxisOf(i_job, i_ends);
    Point3 const z = CutOf(i_job, x);
    Point3 const y = Cross(z, x);
    Point3 origin = i_ends[0].middle;
    if (i_job.tube->point) // the place on the axis beside the end
        origin = Plus(*i_job.tube->point, Dot(Plus(origin, -1.0, *i_job.tube->point), x), x);
    VOZCatAxis frame;
    int row = 0;
    for (Point3 const & axis : {x, y, z})
        frame.axis(row++, Vec(axis.data()));
    frame.origin(Vec(origin.data()));
    return frame;
}

Point3 Local(VOZCatAxis const & i_frame, Point3 const & i_place)
{
    Point3 local{};
    for (int row = 0; row < 3; ++row)
        for (int c = 0; c < 3; ++c)
            local[static_cast<std::size_t>(row)] +=
                i_frame.axis(row, c) * (i_place[static_cast<std::size_t>(c)] - i_frame.origin(c));
    return local;
}

// Mean distance of an end's nodes from the axis.
double RadiusOf(End const & i_end, VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame)
{
    double sum = 0.0;
    for (int const n : i_end.nodes)
    {
        Point3 const local = Local(i_frame, PlaceOf(i_mesh, n));
        sum += std::hypot(local[1], local[2]);
    }
    return sum / static_cast<double>(i_end.nodes.size());
}

// The plane of the cut must pass through both ends, with the seam's side of the axis inside them.
void RequireCut(Job const & i_job, std::array<End, 2> const & i_ends, VOZCatMesh const & i_mesh,
                VOZCatAxis const & i_frame)
{
    for (End const & end : i_ends)
    {
        double low[2] = {INFINITY, INFINITY};
        double high[2] = {-INFINITY, -INFINITY};
        for (int const n : end.nodes)
        {
            Point3 const local = Local(i_frame, PlaceOf(i_mesh, n));
            for (std::size_t c = 0; c < 2; ++c)
            {
                low[c] = std::min(low[c], local[c + 1]);
                high[c] = std::max(high[c], local[c + 1]);
            }
        }
        if (!(low[0] < 0.0 && high[0] > 0.0 && low[1] < 0.0 && high[1] > 0.0))
            Refuse(i_job, "the plane of the cut misses the tube: its axis does not pass through the end around " +
                              Fixed(end.middle[0], 3) + ", " + Fixed(end.middle[1], 3) + ", " +
                              Fixed(end.middle[2], 3) + " mm; mind axis and point");
    }
}

// The library opens a tube whose elements face outward.
void FaceOutward(VOZCatMesh & io_mesh, VOZCatAxis const & i_frame)
{
    ElemNormal const normals(io_mesh);
    double outward = 0.0;
    for (int e = 1; e <= io_mesh.numElem(); ++e)
    {
        Point3 const place = Local(i_frame, PlaceOf(io_mesh, io_mesh.elem(e, 0)));
        for (int c = 0; c < 3; ++c)
            outward += normals.normal(e, c) * (place[1] * i_frame.axis(1, c) + place[2] * i_frame.axis(2, c));
    }
    if (outward < 0.0)
        io_mesh.reverse();
}

void NumberDoubles(Job const & i_job, OpenedTube & io_tube)
{
    std::vector<int> & ids = io_tube.model.mesh.nodeIds;
    long long next = *std::ranges::max_element(ids);
    if (next + static_cast<long long>(io_tube.seam.size()) > 2147483647LL)
        Refuse(i_job, "no node ids are left for the other lip of the seam");
    while (ids.size() < static_cast<std::size_t>(io_tube.model.mesh.mesh.numNode()))
        ids.push_back(static_cast<int>(++next));
}

// A path that runs on along an end, as on a tube of one row of elements, leaves nodes of no element.
void RequireSheet(Job const & i_job, VOZCatMesh const & i_mesh)
{
    std::vector<char> isHeld(static_cast<std::size_t>(i_mesh.numNode()) + 1, 0);
    for (int e = 1; e <= i_mesh.numElem(); ++e)
        for (int k = 0; k < 4; ++k)
            isHeld[static_cast<std::size_t>(i_mesh.elem(e, k))] = 1;
    int error = 0;
    FreeEdgeSet const edges(i_mesh);
    FreeEdgeLoops const loops(edges, i_mesh, &error);
    if (error != 0 || loops.numLoops() != 1 || std::count(isHeld.begin() + 1, isHeld.end(), 0) > 0)
        Refuse(i_job, "the seam does not part the tube into one sheet; give the tube at least two rows of elements "
                      "along its axis, or turn the cut to where such rows run along it");
}

void Cut(Job const & i_job, OpenedTube & io_tube)
{
    VOZCatMesh & mesh = io_tube.model.mesh.mesh;
    io_tube.closedNodes = mesh.numNode();
    io_tube.lips.sizeDispBC(kLipTables);
    bool isOpen = false;
    {
        Tube tube(mesh, io_tube.lips, io_tube.tipping.frame, i_job.tube->radius);
        isOpen = tube.Eval(1.0);
        io_tube.radius = tube.Radius();
    }
    if (!isOpen)
        Refuse(i_job, "the seam finds no way along the tube from end to end; turn the cut to where rows of elements "
                      "run along the axis");
    DispBC const & kept = io_tube.lips.dispBCs(kLipTables);
    if (kept.size < 2 || mesh.numNode() != io_tube.closedNodes + kept.size)
        Refuse(i_job, "the seam could not be laid; turn the cut");
    RequireSheet(i_job, mesh);
    for (int i = 0; i < kept.size; ++i)
        io_tube.seam.push_back(kept.nodes[i] - 1);
    for (int i = 1; i <= kLipTables; ++i)
        io_tube.lips.dispBCs(i).frame = io_tube.tipping.frame;
}
} // namespace

OpenedTube OpenTube(Job const & i_job, JobModel const & i_model)
{
    OpenedTube tube;
    tube.model = i_model;
    VOZCatMesh & mesh = tube.model.mesh.mesh;
    std::array<End, 2> const ends = EndsOf(i_job, mesh);
    VOZCatAxis const frame = FrameOf(i_job, ends);
    RequireCut(i_job, ends, mesh, frame);
    tube.tipping.frame = frame;
    tube.tipping.undercut.assign(static_cast<std::size_t>(mesh.numElem()), 0);
    tube.tipping.drawDepth = ExtentAlong(mesh, frame, 2);
    double const radii[2] = {RadiusOf(ends[0], mesh, frame), RadiusOf(ends[1], mesh, frame)};
    if (i_job.tube->radius <= 0.0 && std::abs(radii[1] - radii[0]) > kUnequalEnds * radii[0])
        tube.warnings.push_back("tube: its ends have radii of " + Fixed(radii[0], 3) + " and " + Fixed(radii[1], 3) +
                                " mm; the tube to begin with is taken to have that of the first; tube.radius tells");
    FaceOutward(mesh, frame);
    Cut(i_job, tube);
    NumberDoubles(i_job, tube);
    return tube;
}

void TakeLips(OpenedTube const & i_tube, ElemProperty & io_property)
{
    for (int i = 1; i <= kLipTables; ++i)
        io_property.dispBCs(io_property.sizeDispBC() - kLipTables + i, i_tube.lips.dispBCs(i));
}

namespace
{
// Length of the wrapped tube: the mean over both ends.
double LengthOf(TubeOutcome const & i_tube, Outcome const & i_outcome)
{
    FreeEdgeSet const edges(i_outcome.part);
    double sums[2] = {0.0, 0.0};
    int counts[2] = {0, 0};
    double const middle = 0.5 * ExtentAlong(i_outcome.part, i_outcome.frame, 0);
    std::vector<char> isSeam(i_outcome.nodes.size(), 0);
    for (std::size_t i = 0; i < i_tube.seam.size(); ++i)
        isSeam[static_cast<std::size_t>(i_tube.seam[i])] = 1;
    for (int k = 1; k <= edges.numEdge(); ++k)
    {
        int const n = edges.startNode(k);
        if (n > i_tube.closedNodes || isSeam[static_cast<std::size_t>(n) - 1] != 0)
            continue;
        std::size_t const end = Local(i_outcome.frame, PlaceOf(i_outcome.part, n))[0] > middle ? 1 : 0;
        sums[end] += i_outcome.nodes[static_cast<std::size_t>(n) - 1].flat[0];
        ++counts[end];
    }
    return counts[0] > 0 && counts[1] > 0 ? sums[1] / counts[1] - sums[0] / counts[0] : 0.0;
}

// How far apart the lips' partners come to lie along the axis: round it the cut holds them together.
double GapOf(TubeOutcome const & i_tube, Outcome const & i_outcome)
{
    double gap = 0.0;
    for (std::size_t i = 0; i < i_tube.seam.size(); ++i)
    {
        Point3 const & kept = i_outcome.nodes[static_cast<std::size_t>(i_tube.seam[i])].flat;
        Point3 const & moved = i_outcome.nodes[static_cast<std::size_t>(i_tube.closedNodes) + i].flat;
        double const round = std::abs(kept[1] - moved[1]) - 2.0 * std::numbers::pi * i_tube.radius;
        gap = std::max(gap, std::hypot(kept[0] - moved[0], round));
    }
    return gap;
}

void AddChecks(TubeOutcome const & i_tube, Outcome & io_outcome)
{
    double const percent =
        i_tube.area > 0.0 ? 100.0 * std::abs(io_outcome.summary.blankArea - i_tube.area) / i_tube.area : 100.0;
    io_outcome.checks.push_back({"developed area against the tube's, circumference times length",
                                 Fixed(percent, 3) + " %", "at most " + Fixed(kAreaTolerance, 1) + " %",
                                 percent <= kAreaTolerance, true});
    double const limit = kGapTolerance * i_tube.radius;
    io_outcome.checks.push_back({"gap between the lips of the seam", Fixed(i_tube.gap, 4) + " mm",
                                 "at most " + Fixed(limit, 3) + " mm", i_tube.gap <= limit, true});
}
} // namespace

void WrapTube(OpenedTube const & i_tube, Result & io_result, Outcome & io_outcome)
{
    TubeOutcome tube;
    tube.radius = i_tube.radius;
    tube.closedNodes = i_tube.closedNodes;
    tube.seam = i_tube.seam;
    tube.length = LengthOf(tube, io_outcome);
    tube.area = 2.0 * std::numbers::pi * tube.radius * tube.length;
    tube.gap = GapOf(tube, io_outcome);
    VOZCatMesh mesh = i_tube.model.mesh.mesh;
    VOZCatAxis metres = i_tube.tipping.frame;
    double origin[3];
    for (int c = 0; c < 3; ++c)
        origin[c] = kMetrePerMillimetre * i_tube.tipping.frame.origin(c);
    metres.origin(Vec(static_cast<double const *>(origin)));
    Tube::Update(io_result, mesh, i_tube.closedNodes, metres, kMetrePerMillimetre * i_tube.radius);
    for (int n = 1; n <= tube.closedNodes; ++n)
        tube.wrapped.push_back({static_cast<double>(io_result.disp1(n, 0)) / kMetrePerMillimetre,
                                static_cast<double>(io_result.disp1(n, 1)) / kMetrePerMillimetre,
                                static_cast<double>(io_result.disp1(n, 2)) / kMetrePerMillimetre});
    AddChecks(tube, io_outcome);
    io_outcome.tube = std::move(tube);
}

} // namespace voz::workbench
