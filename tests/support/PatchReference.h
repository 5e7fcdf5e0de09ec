// PatchReference.h: the patch of a closed wire, by the same method on a table of directed edges instead of linked
// half edges.

#ifndef PATCHREFERENCE_H
#define PATCHREFERENCE_H

#include "HoleFixture.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace holes
{
// The method on a table: the apex on the left of each directed edge. Vertices are indices: the wire in its list order,
// the centre, the midpoints.
class Star
{
public:
    Star(Wire wire, std::vector<int> numbers, int maxLevel)
    {
        int const n = static_cast<int>(wire.size());
        double sum = 0.0;
        for (std::size_t i = 0; i + 2 < wire.size(); ++i)
            sum += (double(wire[i + 1][1]) - double(wire[i][1])) * (double(wire[i + 1][0]) + double(wire[i][0]));
        if (sum < 0.0)
        {
            std::reverse(wire.begin(), wire.end());
            std::reverse(numbers.begin(), numbers.end());
        }
        positions = wire;
        ids = numbers;
        numWire = n;
        levels.assign(wire.size(), 0);
        firsts.assign(wire.size(), -1);
        double squares = 0.0;
        for (int i = 0; i < n; ++i)
            squares += square(i, (i + 1) % n) + square((i + 1) % n, i);
        double const mean = squares / (2.0 * n);
        star(meanOf(oneTo(n), 1), oneToMinus(n), 1);
        double longest = mean + 1.0;
        for (int level = 2; mean <= longest && level < (maxLevel < 1 ? n : maxLevel); ++level)
        {
            longest = split(level);
            flip();
            for (int pass = 0; pass < 5; ++pass)
                for (int v = last(); v >= numWire; --v)
                    positions[at(v)] = meanOf(neighbours(v), 0);
        }
    }

    Wire newPoints() const { return Wire(positions.begin() + numWire, positions.end()); }

    std::vector<Face> faces() const
    {
        std::vector<Face> rows;
        std::set<std::set<int>> seen;
        for (int v = last(); v >= numWire; --v)
            for (int const w : neighbours(v))
            {
                int const x = apex.at({v, w});
                if (seen.insert({v, w, x}).second)
                    rows.push_back({ids[at(v)], ids[at(w)], ids[at(x)], ids[at(v)]});
            }
        return rows;
    }

private:
    static std::size_t at(int i) { return static_cast<std::size_t>(i); }
    static std::vector<int> oneToMinus(int n)
    {
        std::vector<int> result;
        for (int i = 0; i < n; ++i)
            result.push_back(i);
        return result;
    }
    int last() const { return static_cast<int>(positions.size()) - 1; }

    double square(int a, int b) const
    {
        double sum = 0.0;
        for (std::size_t c = 0; c < 3; ++c)
            sum += (double(positions[at(b)][c]) - double(positions[at(a)][c])) *
                   (double(positions[at(b)][c]) - double(positions[at(a)][c]));
        return sum;
    }

    FloatPoint meanOf(std::vector<int> const & vertices, int base) const
    {
        FloatPoint mean{};
        for (std::size_t c = 0; c < 3; ++c)
        {
            double sum = 0.0;
            for (int const v : vertices)
                sum += double(positions[at(v - base)][c]);
            mean[c] = static_cast<float>(sum / static_cast<double>(vertices.size()));
        }
        return mean;
    }

    std::vector<int> neighbours(int v) const // counter-clockwise
    {
        std::vector<int> result;
        int w = firsts[at(v)];
        do
        {
            result.push_back(w);
            w = apex.at({v, w});
        } while (w != firsts[at(v)]);
        return result;
    }

    void triangle(int a, int b, int c)
    {
        apex[{a, b}] = c;
        apex[{b, c}] = a;
        apex[{c, a}] = b;
    }

    void star(FloatPoint const & position, std::vector<int> const & corners, int level)
    {
        positions.push_back(position);
        levels.push_back(level);
        firsts.push_back(corners.front());
        ids.push_back(101 + last() - numWire);
        for (std::size_t i = 0; i < corners.size(); ++i)
            triangle(corners[i], corners[(i + 1) % corners.size()], last());
    }

    void leave(int a, int b) // a loses its neighbour b
    {
        if (firsts[at(a)] == b)
            firsts[at(a)] = apex.at({a, b});
    }

    double split(int level)
    {
        double longest = 0.0;
        int a = -1;
        int b = -1;
        for (int v = last(); v >= numWire; --v)
            for (int const w : neighbours(v))
                if (square(v, w) > longest)
                {
                    longest = square(v, w);
                    a = v;
                    b = w;
                }
        if (a < 0)
            return 0.0;
        int const p = apex.at({a, b});
        int const q = apex.at({b, a});
        leave(a, b);
        leave(b, a);
        apex.erase({a, b});
        apex.erase({b, a});
        star(meanOf({a, b}, 0), {b, p, a, q}, level);
        return longest;
    }

    void flip()
    {
        for (int v = last(); v > numWire; --v)
        {
            int w = firsts[at(v)];
            do
            {
                while (flipAcross(v, w))
                    ++flips;
                w = apex.at({v, w});
            } while (w != firsts[at(v)]);
        }
    }

    bool flipAcross(int v, int w)
    {
        int const x = apex.at({v, w});
        if (levels[at(w)] == 0 && levels[at(x)] == 0)
            return false;
        int const y = apex.at({x, w});
        if (apex.count({v, y}) > 0 || !(std::sqrt(square(v, y)) < std::sqrt(square(w, x))))
            return false;
        leave(w, x);
        leave(x, w);
        apex.erase({w, x});
        apex.erase({x, w});
        triangle(v, w, y);
        triangle(v, y, x);
        return true;
    }

    Wire positions;
    std::vector<int> ids;
    std::vector<int> levels;
    std::vector<int> firsts;
    std::map<std::pair<int, int>, int> apex;
    int numWire = 0;

public:
    int flips = 0;
};

} // namespace holes

#endif
