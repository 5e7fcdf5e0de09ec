// TubeReference.h: the rules by which a tube is opened, told once more, step by step, in local coordinates.

#ifndef TUBEREFERENCE_H
#define TUBEREFERENCE_H

#include "BoundaryFixture.h"
#include "TubeFixture.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <set>

namespace tubes
{
constexpr double kFloatMax = 3.4028234663852886e38;

// Its own copy of the mesh, opened.
class SlowTube
{
public:
    explicit SlowTube(VOZCatMesh const & i_mesh, double i_radius) : mesh(i_mesh), radius(i_radius > 0 ? i_radius : -1)
    {
    }

    bool eval(double factor)
    {
        FreeEdgeSet const edges(mesh);
        int error = 0;
        FreeEdgeLoops const loops(edges, mesh, &error);
        if (error != 0)
            return false;
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int k = 0; k < corners(e); ++k)
                map[mesh.elem(e, k)].push_back(e);
        if (!split(edges, loops, factor))
            return false;
        for (int const n : path)
            mesh.GetNodeData()[n][1] = 0.0;
        int next = mesh.numNode();
        for (int const p : path)
        {
            ++next;
            for (int const x : map[p])
                if (side(x) < 0)
                    replace(x, p, next);
        }
        for (int const p : path)
        {
            double const row[1][3] = {{y(p, 0), y(p, 1), y(p, 2)}};
            mesh.addNode(row, 1);
        }
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int k = 0; k < corners(e); ++k)
                if (mesh.elem(e, k) == path[0])
                    last = e;
        mesh.reverse();
        return true;
    }

    VOZCatMesh mesh;
    double radius;
    double half = 0.0;
    Ints path;
    int last = 0;
    int rounds = 0;

private:
    double y(int n, int c) const { return mesh.NodeValue(n, c); }
    Vec p(int n) const
    {
        double const row[3] = {y(n, 0), y(n, 1), y(n, 2)};
        return Vec(static_cast<double const *>(row));
    }
    int corners(int e) const { return mesh.isTriangle(e) != 0 ? 3 : 4; }
    int nodeSide(int n) const { return y(n, 1) > 0.001 ? 1 : y(n, 1) < -0.001 ? -1 : 0; }
    bool crosses(int a, int b) const { return std::abs(nodeSide(a) + nodeSide(b)) < 2; }
    bool elementCrosses(int e) const
    {
        if (corners(e) == 4)
            return crosses(mesh.elem(e, 0), mesh.elem(e, 2)) || crosses(mesh.elem(e, 1), mesh.elem(e, 3));
        return crosses(mesh.elem(e, 0), mesh.elem(e, 1)) || crosses(mesh.elem(e, 1), mesh.elem(e, 2)) ||
               crosses(mesh.elem(e, 2), mesh.elem(e, 0));
    }
    int side(int e) const
    {
        double farthest = 0.0;
        int node = 0;
        for (int k = 0; k < corners(e); ++k)
        {
            int const n = mesh.elem(e, k);
            if (n > mesh.numNode())
                return -1;
            if (std::fabs(y(n, 1)) > farthest)
            {
                farthest = std::fabs(y(n, 1));
                node = n;
            }
        }
        return node == 0 ? 0 : nodeSide(node);
    }
    void replace(int e, int n, int next)
    {
        bool const triangle = corners(e) == 3;
        for (int k = 0; k < 4; ++k)
            if (mesh.elem(e, k) == n)
            {
                mesh.elem(e, k, next);
                if (triangle && k == 0)
                    mesh.elem(e, 3, next);
                return;
            }
    }

    bool split(FreeEdgeSet const & edges, FreeEdgeLoops const & loops, double factor)
    {
        int start = 0;
        double best = kFloatMax;
        double const none[3] = {0, 0, 0};
        for (int l = 1; l <= loops.numLoops(); ++l)
        {
            double mean = 0.0;
            for (int const k : walk(loops, l))
                mean += p(edges.startNode(k)).distance(Vec(static_cast<double const *>(none)));
            mean /= loops.numLoopEdges(l);
            if (mean < best)
            {
                best = mean;
                start = l;
            }
        }
        if (radius < 0)
            radius = best * factor;
        half = radius * kPi;
        std::set<int> targets;
        for (int l = 1; l <= loops.numLoops(); ++l)
            for (int const k : walk(loops, l))
                if (l != start)
                    targets.insert(edges.startNode(k));
        double const top[3] = {0, 0, half};
        best = kFloatMax;
        int P = -1;
        int Q = -1;
        for (int const k : walk(loops, start))
        {
            int const s = edges.startNode(k);
            int const e = edges.endNode(k);
            double const score = std::fabs(y(s, 1)) + Vec(static_cast<double const *>(top)).distance(p(s));
            if (score < best && crosses(s, e))
            {
                best = score;
                P = std::fabs(y(s, 1)) <= std::fabs(y(e, 1)) ? s : e;
                Q = P == s ? e : s;
            }
        }
        if (map.count(P) == 0)
            return false;
        path.push_back(P);
        Vec v = p(Q) - p(P);
        v.unit();
        best = kFloatMax;
        int C = -1;
        for (int const x : map[P])
            for (int k = 0; k < corners(x); ++k)
            {
                int const u = mesh.elem(x, k);
                if (u == P || u == Q)
                    continue;
                Vec w = p(u) - p(P);
                w.unit();
                if (std::fabs(w.dot(v)) < best)
                {
                    best = std::fabs(w.dot(v));
                    C = u;
                }
            }
        path.push_back(C);
        return map.count(C) != 0 && follow(P, C, targets);
    }

    bool follow(int prev, int cur, std::set<int> const & targets)
    {
        int next = -1;
        for (;;)
        {
            ++rounds;
            double best = kFloatMax;
            for (int const x : map[cur])
            {
                if (!elementCrosses(x))
                    continue;
                int const skip = corners(x) == 4 ? (mesh.GetElementNodePosition(x, cur) + 2) % 4 : -1;
                for (int k = 0; k < corners(x); ++k)
                {
                    int const u = mesh.elem(x, k);
                    if (k == skip || u == cur || u == prev)
                        continue;
                    Vec a = p(prev) - p(cur);
                    a[1] = 0.0;
                    a.unit();
                    Vec b = p(u) - p(cur);
                    b.unit();
                    double const cosine = a.dot(b);
                    double const cost = (cosine + 1) * std::fabs(y(u, 1));
                    if (cost < best && cosine < 0.1)
                    {
                        best = cost;
                        next = u;
                    }
                }
            }
            if (next < 0)
                return false;
            prev = cur;
            cur = next;
            path.push_back(next);
            if (rounds > static_cast<int>(map.size()))
                return false;
            if (map.count(next) == 0)
                return false;
            if (targets.count(next) != 0)
                return true;
        }
    }

    std::map<int, Ints> map;
};
} // namespace tubes

#endif
