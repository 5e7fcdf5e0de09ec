// VOZInitEvalPOL.cpp: the offset polyline in space: into the plane of the average normal, out by the offset, and back.

#include "VOZInitEvalPOL.h"

#include "geometry/OffsetPolyline.h"

#include <algorithm>
#include <cmath>
#include <memory>

using namespace voz::geometry;

namespace
{

bool areFinite(double const * i_padValues, std::size_t i_count)
{
    return std::all_of(i_padValues, i_padValues + i_count, [](double value) { return std::isfinite(value); });
}

struct PlaneFrame
{
    Vec3 origin, x, y, z;

    PlaneFrame(Vec3 i_origin, Vec3 i_normal) : origin(i_origin), z(unit(i_normal))
    {
        double const ax = std::fabs(z.x);
        double const ay = std::fabs(z.y);
        double const az = std::fabs(z.z);
        Vec3 const least = ax <= ay && ax <= az ? Vec3{1.0, 0.0, 0.0}
                           : ay <= az           ? Vec3{0.0, 1.0, 0.0}
                                                : Vec3{0.0, 0.0, 1.0};
        x = unit(cross(least, z));
        y = cross(z, x);
    }

    Vec3 toPlane(Vec3 p) const { return {dot(p - origin, x), dot(p - origin, y), dot(p - origin, z)}; }
    Vec3 toSpace(Vec3 p) const { return origin + p.x * x + p.y * y + p.z * z; }
};

Vec3 rowOf(double const * i_padRows, std::size_t i)
{
    return {i_padRows[3 * i], i_padRows[3 * i + 1], i_padRows[3 * i + 2]};
}

bool isUsable(int i_nCount, double const * i_padPoints, double const * i_padNormals, double const * i_padAverageNormal,
              OffsetRules const & i_rules)
{
    if (i_nCount < 3 || i_padPoints == nullptr || i_padNormals == nullptr || i_padAverageNormal == nullptr)
        return false;
    std::size_t const size = 3 * static_cast<std::size_t>(i_nCount);
    double const rules[3] = {i_rules.offset, i_rules.minEdge, i_rules.minAngle};
    if (!areFinite(i_padPoints, size) || !areFinite(i_padNormals, size) || !areFinite(i_padAverageNormal, 3) ||
        !areFinite(rules, 3))
        return false;
    double const size2 = length(rowOf(i_padAverageNormal, 0));
    return i_rules.offset > 0.0 && size2 > 0.0 && std::isfinite(size2);
}

} // namespace

double * VOZInitEvalPOLNew(int & io_nCount, double * i_padPoints, double * i_padNormals,
                           double const * i_padAverageNormal, double i_dOffset, double i_dMinEdge, double i_dMinAngle)
{
    int const count = io_nCount;
    io_nCount = 0;
    OffsetRules const rules = {i_dOffset, i_dMinEdge, i_dMinAngle};
    if (!isUsable(count, i_padPoints, i_padNormals, i_padAverageNormal, rules))
        return nullptr;
    PlaneFrame const frame(rowOf(i_padPoints, 0), rowOf(i_padAverageNormal, 0));
    std::vector<Vec3> wire;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
        wire.push_back(frame.toPlane(rowOf(i_padPoints, i)));
    std::vector<Vec3> const line = offsetOutward(std::move(wire), rules);
    if (line.empty())
        return nullptr;
    std::unique_ptr<double[]> points(new double[3 * line.size()]);
    for (std::size_t i = 0; i < line.size(); ++i)
    {
        Vec3 const p = frame.toSpace(line[i]);
        points[3 * i] = p.x;
        points[3 * i + 1] = p.y;
        points[3 * i + 2] = p.z;
    }
    io_nCount = static_cast<int>(line.size());
    return points.release();
}
