// ToolMeshesExtension.cpp: the die's face beyond the part's rim.
//
// Seen from above the rim is a closed walk. Each of its nodes has a direction outward and a slope, those of the sheet
// there. The shoulder turns each slope to level over one arc length, the same for all nodes, with the die's radius;
// where the rim is level it just goes on. Then the walk's notches are closed up to its convex hull, and from the hull
// level rows go outward along its normals. Rows along a convex curve's normals never cross.

#include "FlatGeometry.h"
#include "ToolSurface.h"

#include <numbers>
#include <numeric>
#include <stdexcept>

namespace voz::workbench
{

namespace
{
constexpr double kPi = std::numbers::pi;
constexpr double kLevel = 3.0 * kPi / 180.0;        // a rim that slopes less is level
constexpr double kPerRow = 15.0 * kPi / 180.0;      // turn of a row of the shoulder
constexpr double kPerRay = 30.0 * kPi / 180.0;      // turn between rays round a corner of the hull
constexpr double kPlanLength = 0.2;                 // of an edge's length: seen shorter from above it is a wall's end
constexpr double kSharpestMitre = 0.5;              // cosine of half the turn at a node of the rim
constexpr double kNotch = 2e-3;                     // of the part's size: a shallower notch is no notch
constexpr double kWiden = 1.4;                      // from row to row
constexpr double kHolderSlope = 20.0 * kPi / 180.0; // a rim without flange that slopes more is a wall's end

struct Vector2
{
    double x = 0.0;
    double y = 0.0;
};

Vector2 UnitOf(double i_x, double i_y, Vector2 const & i_otherwise)
{
    double const length = std::hypot(i_x, i_y);
    return length > 0.0 ? Vector2{i_x / length, i_y / length} : i_otherwise;
}

double Turn(Point2 const & a, Point2 const & b, Point2 const & c) // twice the area, above 0 to the left
{
    return (b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0]);
}

Point2 Seen(Point3 const & i_point)
{
    return {i_point[0], i_point[1]};
}

struct RimNode
{
    int node = 0;
    Vector2 outward;       // seen from above, longer than 1 at corners, so that rows stay parallel
    double slope = 0.0;    // radians down
    bool isHolder = false; // behind a flange or a wall's end
};

// What the sheet does at an edge of the rim.
struct RimSlope
{
    Vector2 outward;
    double slope = 0.0;
};

RimSlope SlopeAt(Surface const & i_surface, RimEdge const & i_edge)
{
    Point3 const along = Unit(Difference(i_surface.At(i_edge.to), i_surface.At(i_edge.from)));
    Point3 const normal = Unit(i_surface.AreaVector(i_surface.elements[static_cast<std::size_t>(i_edge.element)]));
    Point3 const tangent = Cross(along, normal);
    RimSlope rim;
    Vector2 const inView = UnitOf(tangent[0], tangent[1], {1.0, 0.0});
    rim.outward = std::hypot(along[0], along[1]) > kPlanLength ? UnitOf(along[1], -along[0], inView) : inView;
    double const out = tangent[0] * rim.outward.x + tangent[1] * rim.outward.y;
    rim.slope = std::clamp(std::atan2(-tangent[2], out), -kPi / 2.0, kPi / 2.0);
    return rim;
}

std::vector<RimNode> RimNodesOf(Surface const & i_surface, RimLoop const & i_loop, std::vector<char> const & i_isFlange)
{
    std::size_t const count = i_loop.size();
    std::vector<RimSlope> slopes;
    for (RimEdge const & edge : i_loop)
        slopes.push_back(SlopeAt(i_surface, edge));
    std::vector<RimNode> nodes;
    for (std::size_t i = 0; i < count; ++i)
    {
        std::size_t const before = (i + count - 1) % count;
        RimSlope const & a = slopes[before];
        RimSlope const & b = slopes[i];
        Vector2 const mean = UnitOf(a.outward.x + b.outward.x, a.outward.y + b.outward.y, b.outward);
        double const mitre = 1.0 / std::max(mean.x * b.outward.x + mean.y * b.outward.y, kSharpestMitre);
        RimNode node{i_loop[i].from, {mitre * mean.x, mitre * mean.y}, 0.5 * (a.slope + b.slope), false};
        auto const isFlange = [&](std::size_t edge)
        { return i_isFlange[static_cast<std::size_t>(i_loop[edge].element)] != 0; };
        node.isHolder = isFlange(before) || isFlange(i) || node.slope > kHolderSlope;
        nodes.push_back(node);
    }
    return nodes;
}

// Where a node's shoulder is after an arc length: outward, down.
struct ShoulderPoint
{
    double out;
    double down;
};
ShoulderPoint ShoulderAt(double i_slope, double i_radius, double i_length)
{
    double const steep = std::abs(i_slope);
    double const turned = std::min(i_length / i_radius, steep);
    double const out = i_radius * (std::sin(steep) - std::sin(steep - turned)) + i_length - turned * i_radius;
    double const down = i_radius * (std::cos(steep - turned) - std::cos(steep));
    return {out, std::copysign(down, i_slope)};
}

// A ray of the level rows: where it starts, and how it goes on.
struct Ray
{
    int node; // of the surface
    Point2 from;
    Vector2 outward;
    bool isHolder;
};

class Extender
{
public:
    Extender(Surface const & i_surface, std::vector<char> const & i_isFlange, ExtensionRequest const & i_request)
        : mRequest(i_request)
    {
        mOut.surface = i_surface;
        mOut.isLevel.assign(i_surface.elements.size(), 0);
        RimLoop const loop = RimsOf(i_surface).front(); // holes are filled: there is one
        mWalk = RimNodesOf(i_surface, loop, i_isFlange);
        double length = 0.0;
        for (RimEdge const & edge : loop)
            length += Length(Difference(i_surface.At(edge.to), i_surface.At(edge.from)));
        mStep = length / static_cast<double>(loop.size());
        mNotch = kNotch * i_surface.Box().Diagonal();
    }

    ExtendedSurface Run()
    {
        AddHolders();
        LayShoulder();
        AddHolders();
        FindHull();
        LayRays();
        LayRows();
        mOut.isHolderNode.assign(mOut.surface.nodes.size(), 0);
        for (int const n : mHolders)
            mOut.isHolderNode[static_cast<std::size_t>(n)] = 1;
        return std::move(mOut);
    }

private:
    void AddHolders() // of the row that is the innermost now
    {
        for (RimNode const & node : mWalk)
            if (node.isHolder)
                mHolders.push_back(node.node);
    }
    void LayShoulder();
    void FindHull();
    void LayRays();
    void CloseNotch(std::size_t i_begin, std::size_t i_count);
    void LayRow(std::vector<int> const & i_inner, std::vector<int> const & i_outer, bool i_isLevel);
    void LayRows();
    double ReachNeeded() const;
    Point2 At(std::size_t i_walk) const { return Seen(mOut.surface.At(mWalk[i_walk % mWalk.size()].node)); }
    void AddElement(std::array<int, 4> const & i_row, bool i_isLevel)
    {
        mOut.surface.elements.push_back(i_row);
        mOut.isLevel.push_back(i_isLevel ? 1 : 0);
    }
    int AddNode(Point3 const & i_point)
    {
        mOut.surface.nodes.push_back(i_point);
        return static_cast<int>(mOut.surface.nodes.size()) - 1;
    }

    ExtensionRequest const & mRequest;
    ExtendedSurface mOut;
    std::vector<RimNode> mWalk;     // the innermost row of what comes next
    std::vector<std::size_t> mHull; // places in the walk, ascending
    std::vector<Ray> mRays;
    std::vector<int> mHolders; // nodes
    double mStep = 0.0;        // mean edge of the rim
    double mNotch = 0.0;
};

void Extender::LayRow(std::vector<int> const & i_inner, std::vector<int> const & i_outer, bool i_isLevel)
{
    for (std::size_t i = 0; i < i_inner.size(); ++i)
    {
        std::size_t const next = (i + 1) % i_inner.size();
        if (i_inner[i] == i_inner[next]) // rays round a corner
            AddElement({i_inner[i], i_outer[i], i_outer[next], i_inner[i]}, i_isLevel);
        else
            AddElement({i_inner[i], i_outer[i], i_outer[next], i_inner[next]}, i_isLevel);
    }
}

void Extender::LayShoulder()
{
    double steepest = 0.0;
    for (RimNode const & node : mWalk)
        steepest = std::max(steepest, std::abs(node.slope));
    mOut.steepest = steepest * 180.0 / kPi;
    if (steepest <= kLevel)
        return;
    int const rows = std::max(2, static_cast<int>(std::ceil(steepest / kPerRow)));
    double const length = mRequest.dieRadius * steepest;
    std::vector<Point3> base;
    std::vector<int> inner;
    for (RimNode const & node : mWalk)
    {
        base.push_back(mOut.surface.At(node.node));
        inner.push_back(node.node);
    }
    for (int row = 1; row <= rows; ++row)
    {
        std::vector<int> outer;
        for (std::size_t i = 0; i < mWalk.size(); ++i)
        {
            RimNode const & node = mWalk[i];
            ShoulderPoint const at = ShoulderAt(node.slope, mRequest.dieRadius, length * row / rows);
            outer.push_back(AddNode(
                {base[i][0] + at.out * node.outward.x, base[i][1] + at.out * node.outward.y, base[i][2] - at.down}));
        }
        LayRow(inner, outer, false);
        for (std::size_t i = 0; i < mWalk.size(); ++i)
        {
            bool const isLevel = std::abs(mWalk[i].slope) <= kLevel;
            if (isLevel && std::abs(mWalk[(i + 1) % mWalk.size()].slope) <= kLevel)
                mOut.isLevel[mOut.isLevel.size() - mWalk.size() + i] = 1;
            if (isLevel && mWalk[i].isHolder)
                mHolders.push_back(outer[i]);
        }
        inner = std::move(outer);
    }
    for (std::size_t i = 0; i < mWalk.size(); ++i)
        mWalk[i].node = inner[i];
}

// Andrew's monotone chain over the walk's points (Inf. Process. Lett. 9 (1979) 216); of equal points the first counts.
void Extender::FindHull()
{
    std::vector<std::size_t> order(mWalk.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, [this](std::size_t a, std::size_t b) { return At(a) < At(b); });
    auto const half = [this](auto i_begin, auto i_end)
    {
        std::vector<std::size_t> chain;
        for (auto i = i_begin; i != i_end; ++i)
        {
            while (chain.size() > 1 && !(Turn(At(chain[chain.size() - 2]), At(chain.back()), At(*i)) > 0.0))
                chain.pop_back();
            chain.push_back(*i);
        }
        chain.pop_back();
        return chain;
    };
    mHull = half(order.begin(), order.end());
    std::vector<std::size_t> const upper = half(order.rbegin(), order.rend());
    mHull.insert(mHull.end(), upper.begin(), upper.end());
    std::ranges::rotate(mHull, std::ranges::min_element(mHull));
    if (mHull.size() < 3 || !std::ranges::is_sorted(mHull))
        throw std::runtime_error("the rim of the part crosses itself, seen along the stamping direction");
}

void Extender::CloseNotch(std::size_t i_begin, std::size_t i_count)
{
    std::vector<Point2> polygon{At(i_begin)}; // the hull's edge first, then back along the walk
    std::vector<int> nodes{mWalk[i_begin].node};
    for (std::size_t k = i_count; k > 0; --k)
    {
        polygon.push_back(At(i_begin + k));
        nodes.push_back(mWalk[(i_begin + k) % mWalk.size()].node);
    }
    std::vector<std::array<int, 3>> const triangles = TrianglesOf(polygon);
    if (triangles.empty())
        throw std::runtime_error("the rim of the part crosses itself in a notch, seen along the stamping direction");
    for (std::array<int, 3> const & t : triangles)
    {
        auto const node = [&](std::size_t k) { return nodes[static_cast<std::size_t>(t[k])]; };
        AddElement({node(0), node(1), node(2), node(0)}, true);
    }
}

// From each corner of the hull a ray, or a fan of them; along its edges one from each node of the walk.
void Extender::LayRays()
{
    std::size_t const corners = mHull.size();
    std::vector<Vector2> normals;
    for (std::size_t c = 0; c < corners; ++c)
    {
        Point2 const a = At(mHull[c]);
        Point2 const b = At(mHull[(c + 1) % corners]);
        normals.push_back(UnitOf(b[1] - a[1], a[0] - b[0], {1.0, 0.0}));
    }
    for (std::size_t c = 0; c < corners; ++c)
    {
        std::size_t const begin = mHull[c];
        std::size_t const count = (mHull[(c + 1) % corners] + mWalk.size() - begin) % mWalk.size();
        Vector2 const before = normals[(c + corners - 1) % corners];
        Vector2 const after = normals[c];
        double const turn =
            std::atan2(before.x * after.y - before.y * after.x, before.x * after.x + before.y * after.y);
        int const fans = std::max(1, static_cast<int>(std::ceil(turn / kPerRay)));
        // The outline round a corner touches the circle about it, first and last where the straight ones do.
        double const heading = std::atan2(before.y, before.x);
        double const stretch = 1.0 / std::cos(0.5 * turn / fans);
        auto const addRay = [&](double i_angle, double i_length)
        {
            mRays.push_back({mWalk[begin].node,
                             At(begin),
                             {i_length * std::cos(i_angle), i_length * std::sin(i_angle)},
                             mWalk[begin].isHolder});
        };
        if (fans > 1)
            addRay(heading, 1.0);
        for (int f = 0; f < fans; ++f)
            addRay(heading + turn * (f + 0.5) / fans, stretch);
        if (fans > 1)
            addRay(heading + turn, 1.0);
        Point2 const a = At(begin);
        Point2 const b = At(mHull[(c + 1) % corners]);
        double const edge = std::hypot(b[0] - a[0], b[1] - a[1]);
        double deepest = 0.0;
        for (std::size_t k = 1; k < count; ++k)
            deepest = std::max(deepest, Turn(a, b, At(begin + k)) / edge);
        if (deepest > mNotch)
        {
            CloseNotch(begin, count);
            continue;
        }
        double last = 0.0;
        for (std::size_t k = 1; k < count; ++k)
        {
            Point2 const p = At(begin + k);
            last = std::clamp((p[0] - a[0]) * -after.y + (p[1] - a[1]) * after.x, last, edge);
            mRays.push_back({mWalk[(begin + k) % mWalk.size()].node,
                             {a[0] - last * after.y, a[1] + last * after.x},
                             after,
                             mWalk[(begin + k) % mWalk.size()].isHolder});
        }
    }
}

double Extender::ReachNeeded() const
{
    std::vector<Point2> outline;
    for (Point3 const & p : mRequest.outline)
        outline.push_back(Seen(p));
    outline = ConvexHull(std::move(outline));
    double reach = 0.0;
    for (Point2 const & p : outline)
    {
        bool isInside = true;
        double nearest = INFINITY;
        for (std::size_t c = 0; c < mHull.size(); ++c)
        {
            Point2 const a = At(mHull[c]);
            Point2 const b = At(mHull[(c + 1) % mHull.size()]);
            isInside = isInside && Turn(a, b, p) >= 0.0;
            double const edge = (b[0] - a[0]) * (b[0] - a[0]) + (b[1] - a[1]) * (b[1] - a[1]);
            double const along =
                std::clamp(((p[0] - a[0]) * (b[0] - a[0]) + (p[1] - a[1]) * (b[1] - a[1])) / edge, 0.0, 1.0);
            nearest =
                std::min(nearest, std::hypot(p[0] - a[0] - along * (b[0] - a[0]), p[1] - a[1] - along * (b[1] - a[1])));
        }
        if (!isInside)
            reach = std::max(reach, nearest);
    }
    return reach + mRequest.margin;
}

void Extender::LayRows()
{
    mOut.reach = ReachNeeded();
    std::vector<double> places{0.0}; // of the rows: each wider than the one before
    for (double width = mStep; places.back() < mOut.reach; width *= kWiden)
        places.push_back(places.back() + width);
    double const shrink = mOut.reach / places.back();
    std::vector<int> inner;
    for (Ray const & ray : mRays)
        inner.push_back(ray.node);
    for (std::size_t row = 1; row < places.size(); ++row)
    {
        std::vector<int> outer;
        for (Ray const & ray : mRays)
        {
            double const out = places[row] * shrink;
            outer.push_back(AddNode(
                {ray.from[0] + out * ray.outward.x, ray.from[1] + out * ray.outward.y, mOut.surface.At(ray.node)[2]}));
        }
        LayRow(inner, outer, true);
        for (std::size_t i = 0; i < mRays.size(); ++i)
            if (mRays[i].isHolder)
                mHolders.push_back(outer[i]);
        inner = std::move(outer);
    }
}
} // namespace

ExtendedSurface ExtendSurface(Surface const & i_surface, std::vector<char> const & i_isFlange,
                              ExtensionRequest const & i_request)
{
    return Extender(i_surface, i_isFlange, i_request).Run();
}

// Ears are cut off one by one (G. H. Meisters, Am. Math. Mon. 82 (1975) 648).
std::vector<std::array<int, 3>> TrianglesOf(std::vector<std::array<double, 2>> const & i_polygon)
{
    std::vector<int> left(i_polygon.size());
    std::iota(left.begin(), left.end(), 0);
    auto const at = [&](int i) -> Point2 const & { return i_polygon[static_cast<std::size_t>(i)]; };
    auto const isEar = [&](int a, int b, int c)
    {
        if (!(Turn(at(a), at(b), at(c)) > 0.0))
            return false;
        return std::ranges::none_of(left,
                                    [&](int p)
                                    {
                                        return at(p) != at(a) && at(p) != at(b) && at(p) != at(c) &&
                                               Turn(at(a), at(b), at(p)) >= 0.0 && Turn(at(b), at(c), at(p)) >= 0.0 &&
                                               Turn(at(c), at(a), at(p)) >= 0.0;
                                    });
    };
    std::vector<std::array<int, 3>> triangles;
    std::size_t k = 0;
    for (std::size_t tried = 0; left.size() > 3 && tried <= left.size(); ++tried)
    {
        std::size_t const count = left.size();
        std::array<int, 3> const ear{left[(k + count - 1) % count], left[k % count], left[(k + 1) % count]};
        if (!isEar(ear[0], ear[1], ear[2]))
        {
            k = (k + 1) % count;
            continue;
        }
        triangles.push_back(ear);
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(k % count));
        k = (k + 1) % left.size(); // not the next one at once: no fans
        tried = 0;
    }
    if (left.size() != 3 || !(Turn(at(left[0]), at(left[1]), at(left[2])) > 0.0))
        return {};
    triangles.push_back({left[0], left[1], left[2]});
    return triangles;
}

} // namespace voz::workbench
