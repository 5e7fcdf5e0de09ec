// OutcomeAnalysis.cpp: the blank's crossings, and the nodes of a safety code gathered into connected zones.
//
// The library's Zones finds which nodes hang together and what edge they reach. Its areas and normals are its own
// definition (a node counts as often as it is met, and for the element of the same number); those of an outcome are
// summed here: a node stands for an equal share of each element at it, so that all nodes together make the whole
// surface.

#include "OutcomeAnalysis.h"

#include "CATFatalError.h"
#include "CATRawColl.h"
#include "EdgeSets.h"
#include "ElemNormal.h"
#include "VOZHost.h"
#include "Zones.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr std::array<int, 3> kCodes = {0, 1, 4}; // failure, marginal, strong compression
constexpr double kMarked = 4.5;                  // the value of a node that is to be gathered, with its place
constexpr int kAtHole = 2;                       // of Zones
constexpr int kAtEdge = 3;

// Zones takes the numbers of nodes for those of elements, and reports each that no element has. These reports, as many
// as are to be expected, are taken here; any other goes on to the host in force.
class ZoneReports : public VOZHost
{
public:
    ZoneReports() : mOuter(VOZHost::Current()) { Install(this); }
    ~ZoneReports() override { Install(&mOuter); }
    ZoneReports(ZoneReports const &) = delete;
    ZoneReports & operator=(ZoneReports const &) = delete;

    std::optional<std::string> EnvironmentValue(std::string const & i_name) override
    {
        return mOuter.EnvironmentValue(i_name);
    }
    std::shared_ptr<VOZHostDocument> CurrentDocument() override { return mOuter.CurrentDocument(); }
    void BrokenContract(std::string const & i_text, std::string const & i_file, int i_line) override
    {
        if (i_text == "e > 0 && e <= mNumElem" && i_file == "Mesh")
            ++mTaken;
        else
            mOuter.BrokenContract(i_text, i_file, i_line);
    }
    long Taken() const { return mTaken; }

private:
    VOZHost & mOuter;
    long mTaken = 0;
};

std::size_t At(int i)
{
    return static_cast<std::size_t>(i);
}

// The part; of a tube the closed one, without the other lip of its seam.
VOZCatMesh Joined(Outcome const & i_outcome)
{
    VOZCatMesh mesh = i_outcome.part;
    if (!i_outcome.tube)
        return mesh;
    TubeOutcome const & tube = *i_outcome.tube;
    for (int e = 1; e <= mesh.numElem(); ++e)
        for (int & corner : mesh.GetElemData()[e])
            if (corner > tube.closedNodes)
                corner = tube.seam[At(corner - tube.closedNodes - 1)] + 1;
    mesh.sizeNode(tube.closedNodes);
    return mesh;
}

// What a node stands for, 0-based: its share of the elements at it.
struct NodeShares
{
    std::vector<double> area;
    std::vector<Point3> normal; // times twice the area

    NodeShares(Outcome const & i_outcome, VOZCatMesh const & i_mesh)
        : area(At(i_mesh.numNode()), 0.0), normal(At(i_mesh.numNode()), Point3{})
    {
        VOZCatMesh const & mesh = i_mesh;
        ElemNormal const normals(mesh);
        for (int e = 1; e <= mesh.numElem(); ++e)
        {
            int const corners = mesh.isTriangle(e) != 0 ? 3 : 4;
            for (int k = 0; k < corners; ++k)
            {
                std::size_t const n = At(mesh.elem(e, k) - 1);
                if (n >= area.size()) // no node of the mesh
                    continue;
                area[n] += i_outcome.elements[At(e - 1)].area / corners;
                for (int c = 0; c < 3; ++c)
                    normal[n][At(c)] += normals.normal(e, c) / corners;
            }
        }
    }
};

// Nodes of free edges that do not run along a plane of symmetry, 0-based.
std::vector<char> NodesOfTrueEdges(Outcome const & i_outcome)
{
    VOZCatMesh const & mesh = i_outcome.part;
    double whole = 0.0;
    for (ElementOutcome const & element : i_outcome.elements)
        whole += element.area;
    double const tolerance = 1e-3 * std::sqrt(whole / std::max(1.0, static_cast<double>(mesh.numElem())));
    auto const isOnPlane = [&](int n, int axis)
    {
        double distance = 0.0;
        for (int c = 0; c < 3; ++c)
            distance += i_outcome.frame.axis(axis, c) * (mesh.GetNodeData()[n][c] - i_outcome.frame.origin(c));
        return std::abs(distance) <= tolerance;
    };
    FreeEdgeSet const edges(mesh);
    std::vector<char> isThere(i_outcome.nodes.size(), 0);
    for (int k = 1; k <= edges.numEdge(); ++k)
    {
        int const a = edges.startNode(k);
        int const b = edges.endNode(k);
        if ((i_outcome.symmetry.yzSymmetry() && isOnPlane(a, 0) && isOnPlane(b, 0)) ||
            (i_outcome.symmetry.xzSymmetry() && isOnPlane(a, 1) && isOnPlane(b, 1)))
            continue;
        isThere[At(a - 1)] = 1;
        isThere[At(b - 1)] = 1;
    }
    return isThere;
}

void Measure(VOZCatMesh const & i_mesh, NodeShares const & i_shares, OutcomeZone & io_zone)
{
    Point3 normal{};
    Point3 middle{};
    for (int const n : io_zone.nodes)
    {
        io_zone.area += i_shares.area[At(n)];
        for (std::size_t c = 0; c < 3; ++c)
        {
            normal[c] += i_shares.normal[At(n)][c];
            middle[c] += i_mesh.GetNodeData()[n + 1][c] / static_cast<double>(io_zone.nodes.size());
        }
    }
    if (double const length = std::hypot(normal[0], normal[1], normal[2]); length > 0.0)
        for (std::size_t c = 0; c < 3; ++c)
            io_zone.normal[c] = normal[c] / length;
    auto const distance = [&](int n)
    {
        double const * const p = i_mesh.GetNodeData()[n + 1];
        return std::hypot(p[0] - middle[0], p[1] - middle[1], p[2] - middle[2]);
    };
    io_zone.centre = *std::ranges::min_element(io_zone.nodes, {}, distance);
}

OutcomeZone ZoneOf(Zones::Zone const & i_zone, int i_code)
{
    OutcomeZone zone;
    zone.safety = i_code;
    zone.place = i_zone.type == kAtHole   ? ZonePlace::Hole
                 : i_zone.type == kAtEdge ? ZonePlace::Edge
                                          : ZonePlace::Interior;
    for (Zones::INT_LIST const * cell = i_zone.nodes; cell != nullptr; cell = cell->next)
        zone.nodes.push_back(cell->value - 1);
    std::ranges::sort(zone.nodes);
    zone.nodes.erase(std::unique(zone.nodes.begin(), zone.nodes.end()), zone.nodes.end());
    return zone;
}

void AddZones(Outcome const & i_outcome, int i_code, VOZCatMesh & io_mesh, std::vector<OutcomeZone> & io_zones)
{
    CATRawColldouble values;
    for (int n = 0; n < io_mesh.numNode(); ++n)
        for (double const value : {0.0, 0.0, i_outcome.nodes[At(n)].safety == i_code ? kMarked : -1.0})
            values.Append(value);
    Zones zones(io_mesh);
    long taken = 0;
    {
        ZoneReports const reports;
        zones.Eval(&values);
        taken = reports.Taken();
    }
    long expected = 0;
    for (Zones::Zone const * zone = zones.GetZones(); zone != nullptr; zone = zone->next)
    {
        io_zones.push_back(ZoneOf(*zone, i_code));
        for (Zones::INT_LIST const * cell = zone->nodes; cell != nullptr; cell = cell->next)
            expected += cell->value > io_mesh.numElem() ? 1 : 0;
    }
    VOZ_ASSERTION(taken == expected, "taken == expected");
}
} // namespace

std::vector<OutcomeZone> GatherZones(Outcome const & i_outcome)
{
    std::vector<OutcomeZone> zones;
    VOZCatMesh mesh = Joined(i_outcome);
    for (int const code : kCodes)
        if (std::ranges::count(i_outcome.nodes, code, &NodeOutcome::safety) > 0)
            AddZones(i_outcome, code, mesh, zones);
    if (zones.empty())
        return zones;
    NodeShares const shares(i_outcome, mesh);
    for (OutcomeZone & zone : zones)
    {
        Measure(mesh, shares, zone);
        if (i_outcome.tube && zone.place == ZonePlace::Hole) // both loops are ends
            zone.place = ZonePlace::Edge;
    }
    if (i_outcome.symmetry.xzSymmetry() || i_outcome.symmetry.yzSymmetry())
    {
        std::vector<char> const isEdge = NodesOfTrueEdges(i_outcome);
        for (OutcomeZone & zone : zones)
            if (std::ranges::none_of(zone.nodes, [&](int n) { return isEdge[At(n)] != 0; }))
                zone.place = ZonePlace::Interior;
    }
    auto const isBefore = [](OutcomeZone const & a, OutcomeZone const & b)
    { return a.area != b.area ? a.area > b.area : a.nodes.front() < b.nodes.front(); };
    std::ranges::sort(zones, isBefore);
    return zones;
}

void AnalyseOutcome(Outcome & io_outcome)
{
    VOZCatMesh pattern = io_outcome.part;
    for (int n = 1; n <= pattern.numNode(); ++n)
        std::ranges::copy(io_outcome.nodes[At(n - 1)].flat, pattern.GetNodeData()[n]);
    io_outcome.flat = CheckFlat(pattern);
    io_outcome.zones = GatherZones(io_outcome);
}

char const * ZonePlaceName(ZonePlace i_place)
{
    return i_place == ZonePlace::Edge ? "at the edge" : i_place == ZonePlace::Hole ? "at a hole" : "interior";
}

char const * ZonePlaceKey(ZonePlace i_place)
{
    return i_place == ZonePlace::Edge ? "edge" : i_place == ZonePlace::Hole ? "hole" : "interior";
}

} // namespace voz::workbench
