// OutlineFit.cpp: a closed polygon as few lines and arcs, within a tolerance.
//
// Greedy: from a start, the longest run of points that one line or one arc replaces; the length of the run is found by
// doubling and bisection. A piece replaces a run if every point of the run lies within the tolerance of the piece, and
// every chord of the run stays within it of the arc (the sag of the arc over the chord), so that the bound holds for
// the whole outline and not at its points alone. Corners sharper than 30 degrees always end a piece.

#include "Exports.h"
#include "FlatGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace voz::workbench
{
namespace
{

constexpr double kCornerCosine = 0.8660254037844387; // of 30 degrees
constexpr double kGreatestBulge = 1.0;               // half a circle a piece
constexpr double kStraight = 0.1;                    // of the tolerance: straight enough to need no arc

struct Piece
{
    double bulge;
    double deviation;
};

class Fitter
{
public:
    Fitter(std::vector<Point2> const & i_loop, double i_tolerance) : mLoop(i_loop), mTolerance(i_tolerance) {}

    FittedOutline Fit() const
    {
        FittedOutline outline;
        std::size_t const count = mLoop.size();
        if (count < 3)
        {
            for (Point2 const & p : mLoop)
                outline.vertices.push_back({p[0], p[1], 0.0});
            return outline;
        }
        std::size_t const start = firstCorner();
        std::size_t done = 0;
        while (done < count)
        {
            auto const [run, piece] = longestRun(start + done, count - done);
            Point2 const & p = at(start + done);
            outline.vertices.push_back({p[0], p[1], piece.bulge});
            outline.deviation = std::max(outline.deviation, piece.deviation);
            done += run;
        }
        return outline;
    }

private:
    Point2 const & at(std::size_t i) const { return mLoop[i % mLoop.size()]; }

    bool isCorner(std::size_t i) const
    {
        Point2 const & a = at(i + mLoop.size() - 1);
        Point2 const & b = at(i);
        Point2 const & c = at(i + 1);
        double const ux = b[0] - a[0];
        double const uy = b[1] - a[1];
        double const vx = c[0] - b[0];
        double const vy = c[1] - b[1];
        return ux * vx + uy * vy < kCornerCosine * std::hypot(ux, uy) * std::hypot(vx, vy);
    }

    std::size_t firstCorner() const
    {
        for (std::size_t i = 0; i < mLoop.size(); ++i)
            if (isCorner(i))
                return i;
        return 0;
    }

    // The most points that one piece spans from i on, and that piece.
    std::pair<std::size_t, Piece> longestRun(std::size_t i, std::size_t most) const
    {
        std::size_t limit = 1; // a corner or the end of the loop
        while (limit < most && !isCorner(i + limit))
            ++limit;
        std::size_t good = 1;
        Piece piece{0.0, 0.0};
        std::size_t step = 1;
        while (good < limit)
        {
            std::size_t const next = std::min(limit, good + step);
            if (std::optional<Piece> const longer = fit(i, next))
            {
                good = next;
                piece = *longer;
                step *= 2;
            }
            else if (step == 1)
                break;
            else
                step /= 2;
        }
        return {good, piece};
    }

    // A line where one is as good as exact; else the better of line and arc.
    std::optional<Piece> fit(std::size_t i, std::size_t run) const
    {
        Piece const line{0.0, deviation(i, run, 0.0)};
        if (line.deviation <= kStraight * mTolerance)
            return line;
        double const bulge = bestBulge(i, run);
        Piece const arc{bulge, std::abs(bulge) <= kGreatestBulge ? deviation(i, run, bulge) : INFINITY};
        Piece const & better = arc.deviation < line.deviation ? arc : line;
        return better.deviation <= mTolerance ? std::optional<Piece>(better) : std::nullopt;
    }

    // The arc through both ends and the point farthest from their chord.
    double bestBulge(std::size_t i, std::size_t run) const
    {
        Point2 const & a = at(i);
        Point2 const & b = at(i + run);
        double const chord = std::hypot(b[0] - a[0], b[1] - a[1]);
        double farthest = 0.0;
        double bulge = 0.0;
        for (std::size_t k = 1; k < run; ++k)
        {
            Point2 const & p = at(i + k);
            double const along = ((p[0] - a[0]) * (b[0] - a[0]) + (p[1] - a[1]) * (b[1] - a[1])) / chord;
            double const left = ((b[0] - a[0]) * (p[1] - a[1]) - (b[1] - a[1]) * (p[0] - a[0])) / chord;
            if (std::abs(left) <= std::abs(farthest))
                continue;
            farthest = left;
            // Inscribed angle: a point of the arc sees the chord under pi less half the arc's angle.
            double const half = std::atan2(std::abs(left), along) + std::atan2(std::abs(left), chord - along);
            bulge = std::copysign(std::tan(0.5 * half), -left);
        }
        return bulge;
    }

    // Of the points of the run from the piece, and of the piece from the chords of the run.
    double deviation(std::size_t i, std::size_t run, double bulge) const
    {
        Point2 const & a = at(i);
        Point2 const & b = at(i + run);
        double const dx = b[0] - a[0];
        double const dy = b[1] - a[1];
        double const chord = std::hypot(dx, dy);
        if (!(chord > 0.0))
            return INFINITY;
        double worst = 0.0;
        if (bulge == 0.0)
        {
            for (std::size_t k = 1; k < run; ++k)
            {
                Point2 const & p = at(i + k);
                double const along = ((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / chord;
                double const across = (dx * (p[1] - a[1]) - dy * (p[0] - a[0])) / chord;
                worst = std::max(worst, std::hypot(across, std::max({0.0, -along, along - chord})));
            }
            return worst;
        }
        // Centre: on the left of the chord at (1 - bulge^2) / (4 bulge) chords.
        double const offset = (1.0 - bulge * bulge) / (4.0 * bulge);
        double const cx = 0.5 * (a[0] + b[0]) - offset * dy;
        double const cy = 0.5 * (a[1] + b[1]) + offset * dx;
        double const radius = std::hypot(a[0] - cx, a[1] - cy);
        for (std::size_t k = 0; k < run; ++k)
        {
            Point2 const & p = at(i + k);
            Point2 const & q = at(i + k + 1);
            worst = std::max(worst, std::abs(std::hypot(p[0] - cx, p[1] - cy) - radius));
            double const half = 0.5 * std::hypot(q[0] - p[0], q[1] - p[1]);
            worst = std::max(worst, half < radius ? radius - std::sqrt(radius * radius - half * half) : half);
        }
        return worst;
    }

    std::vector<Point2> const & mLoop;
    double mTolerance;
};

} // namespace

FittedOutline FitOutline(std::vector<std::array<double, 2>> const & i_loop, double i_tolerance)
{
    return Fitter(i_loop, i_tolerance).Fit();
}

} // namespace voz::workbench
