// ZonesRandomTest.cpp: zones of crooked plates, against the rules told once more.

#include "Zones.h"

#include "EdgeSets.h"
#include "FreeEdgeLoops.h"
#include "ZonesFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <map>
#include <random>
#include <set>

using namespace zonesof;

namespace
{
// The rules told once more: elements one by one, chains as lists of records.
struct SlowRecord
{
    int id;
    int type = 1;
    int visited = 0;
    double value = -1.0;
    Ints elements;

    explicit SlowRecord(int i_id) : id(i_id) {}
};

struct SlowZone
{
    int type;
    double area;
    Ints nodes;
    Point normal;
};

class SlowZones
{
public:
    explicit SlowZones(VOZCatMesh const & i_mesh, Marks const & i_marks) : mMesh(i_mesh)
    {
        for (int n = 0; n <= mMesh.numNode(); ++n)
            mChains.push_back({SlowRecord(n)});
        for (int e = 1; e <= mMesh.numElem(); ++e)
            Enter(e);
        for (std::list<SlowRecord> & chain : mChains)
            chain.reverse();
        MarkTypes();
        for (int n = 1; n <= mMesh.numNode(); ++n)
        {
            auto const mark = i_marks.find(n);
            Own(n).value = mark == i_marks.end() ? 2.0 : mark->second;
        }
        for (int n = 1; n <= mMesh.numNode(); ++n)
        {
            if (Own(n).value == 4.5)
                Build(n, 4.5);
            if (Own(n).value == 0.5)
                Build(n, 0.5);
        }
    }

    Point Normal(int n)
    {
        Point mean{};
        Ints const & elements = Own(n).elements;
        if (elements.empty())
            return {0, 0, -1};
        for (int const e : elements)
        {
            Point const a = Corner(e, 0);
            Point const b = Corner(e, 1);
            Point const c = Corner(e, 2);
            Point const u{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
            Point const v{c[0] - a[0], c[1] - a[1], c[2] - a[2]};
            mean[0] += u[1] * v[2] - u[2] * v[1];
            mean[1] += u[2] * v[0] - u[0] * v[2];
            mean[2] += u[0] * v[1] - u[1] * v[0];
        }
        for (double & component : mean)
            component /= static_cast<double>(elements.size());
        return mean;
    }

    std::vector<SlowZone> zones;

private:
    SlowRecord & Own(int n) { return mChains[static_cast<std::size_t>(n)].front(); }
    int Corners(int e) const { return mMesh.isTriangle(e) != 0 ? 3 : 4; }
    Point Corner(int e, int k) const
    {
        int const n = mMesh.elem(e, k);
        return {mMesh.node(n, 0), mMesh.node(n, 1), mMesh.node(n, 2)};
    }

    void Enter(int e)
    {
        for (int i = 0; i < Corners(e); ++i)
        {
            std::list<SlowRecord> & chain = mChains[static_cast<std::size_t>(mMesh.elem(e, i))];
            chain.front().elements.insert(chain.front().elements.begin(), e);
            for (int k = 0; k < Corners(e); ++k)
            {
                int const m = mMesh.elem(e, k);
                bool const isThere =
                    std::any_of(chain.begin(), chain.end(), [m](SlowRecord const & record) { return record.id == m; });
                if (k != i && !isThere)
                    chain.push_front(SlowRecord(m));
            }
        }
    }

    void MarkTypes()
    {
        FreeEdgeSet const edges(mMesh);
        int error = 0;
        FreeEdgeLoops const loops(edges, mMesh, &error);
        for (int l = 1; error == 0 && l <= loops.numLoops(); ++l)
            for (int i = 1; i <= loops.numLoopEdges(l); ++i)
                Own(edges.startNode(loops.loopEdge(l, i))).type = l == loops.outerLoopNum() ? 3 : 2;
    }

    static double TriangleArea(Point const & a, Point const & b, Point const & c)
    {
        double const ab[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        double const ac[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
        Vec const product = Vec(static_cast<double const *>(ab)).cross(Vec(static_cast<double const *>(ac)));
        return 0.5 * product.length();
    }

    double Area(int e) const
    {
        if (e > mMesh.numElem())
            return 0.0;
        double area = TriangleArea(Corner(e, 0), Corner(e, 1), Corner(e, 2));
        if (Corners(e) == 4)
            area += TriangleArea(Corner(e, 3), Corner(e, 1), Corner(e, 2));
        return area;
    }

    void Build(int seed, double value)
    {
        if (Own(seed).visited == 1)
            return;
        SlowZone zone{1, 0.0, {seed}, {}};
        std::set<int> frontier{seed};
        while (!frontier.empty())
        {
            std::set<int> fresh;
            for (int const f : frontier)
                for (SlowRecord & record : mChains[static_cast<std::size_t>(f)])
                    if (Own(record.id).value == value && record.visited == 0)
                    {
                        record.visited = 1;
                        zone.nodes.insert(zone.nodes.begin(), record.id);
                        fresh.insert(record.id);
                        if (record.type == 2)
                            zone.type = 2;
                        if (record.type == 3)
                            zone.type = 3;
                    }
            frontier = fresh;
        }
        if (value == 0.5)
            zone.type = -1;
        for (int const n : zone.nodes)
        {
            zone.area += Area(n);
            Point const normal = Normal(n);
            for (std::size_t c = 0; c < 3; ++c)
                zone.normal[c] += normal[c];
        }
        for (double & component : zone.normal)
            component /= static_cast<double>(zone.nodes.size());
        zones.push_back(zone);
    }

    VOZCatMesh const & mMesh;
    std::vector<std::list<SlowRecord>> mChains;
};

// A crooked plate of mixed cells with holes, some of which may touch; numbered at random, with labels.
VOZCatMesh randomMesh(std::mt19937 & random)
{
    Grid grid;
    grid.columns = 2 + static_cast<int>(random() % 7);
    grid.rows = 2 + static_cast<int>(random() % 7);
    std::set<std::pair<int, int>> holes;
    for (unsigned i = random() % 4; i > 0; --i)
        holes.insert({static_cast<int>(random() % 6), static_cast<int>(random() % 6)});
    grid.drop = [&](int column, int row) { return holes.count({column, row}) > 0; };
    VOZCatMesh const cells = grid.mesh();
    Quads rows;
    for (int e = 1; e <= cells.numElem(); ++e)
    {
        int const a = cells.elem(e, 0);
        int const b = cells.elem(e, 1);
        int const c = cells.elem(e, 2);
        int const d = cells.elem(e, 3);
        if (random() % 3 != 0)
            rows.push_back({a, b, c, d});
        else
        {
            rows.push_back({a, b, c, a});
            rows.push_back({a, c, d, a});
        }
    }
    std::shuffle(rows.begin(), rows.end(), random);
    std::uniform_real_distribution<double> number(-0.2, 0.2);
    Points points;
    Ints place;
    for (int n = 1; n <= cells.numNode(); ++n)
    {
        points.push_back({cells.node(n, 0) + number(random), cells.node(n, 1), number(random)});
        place.push_back(n);
    }
    std::shuffle(place.begin(), place.end(), random);
    Points moved(points.size());
    for (std::size_t n = 0; n < points.size(); ++n)
        moved[static_cast<std::size_t>(place[n]) - 1] = points[n];
    for (std::array<int, 4> & row : rows)
        for (int & n : row)
            n = place[static_cast<std::size_t>(n) - 1];
    VOZCatMesh mesh = samples::mesh(moved, rows);
    if (random() % 2 == 0)
        mesh.IdsOffset(static_cast<int>(random() % 1000), 100000);
    return mesh;
}

TEST_F(ZonesTest, RandomZonesAgreeWithTheRulesToTheLastBit)
{
    std::mt19937 random(101);
    std::map<int, int> types;
    for (int round = 0; round < 400; ++round)
    {
        VOZCatMesh mesh = randomMesh(random);
        Marks marks;
        for (int n = 1; n <= mesh.numNode(); ++n)
        {
            double const choices[8] = {4.5, 4.5, 4.5, 0.5, 0.5, 4.4999999, 0.0, -1.0};
            marks[n] = choices[random() % 8];
        }
        Zones zones(mesh);
        ASSERT_TRUE(eval(zones, mesh, marks));
        SlowZones slow(mesh, marks);
        std::vector<Zones::Zone const *> const all = zonesOf(zones);
        ASSERT_EQ(all.size(), slow.zones.size()) << "round " << round;
        ASSERT_EQ(zones.NbZones(), static_cast<int>(all.size()));
        for (std::size_t i = 0; i < all.size(); ++i)
        {
            EXPECT_EQ(all[i]->id, static_cast<int>(i) + 1);
            EXPECT_EQ(all[i]->type, slow.zones[i].type) << "round " << round;
            EXPECT_EQ(listOf(all[i]->nodes), slow.zones[i].nodes) << "round " << round;
            EXPECT_EQ(all[i]->area, slow.zones[i].area) << "round " << round;
            EXPECT_EQ(rowOf(all[i]->normal),
                      std::vector<double>(slow.zones[i].normal.begin(), slow.zones[i].normal.end()));
            ++types[all[i]->type];
        }
        for (int n = 1; n <= mesh.numNode(); ++n)
        {
            Point const normal = slow.Normal(n);
            EXPECT_EQ(rowOf(zones.Normal(n)), std::vector<double>(normal.begin(), normal.end())) << "round " << round;
        }
    }
    for (int const type : {-1, 1, 2, 3})
        EXPECT_GT(types[type], 20) << type;
}
} // namespace
