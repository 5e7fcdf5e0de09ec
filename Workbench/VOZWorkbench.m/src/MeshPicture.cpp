// MeshPicture.cpp: triangles by edge functions over their bounding boxes, at twice the size, then averaged two by two.
//
// Edge functions after J. Pineda, Comput. Graph. (SIGGRAPH) 22 (1988) 17.

#include "MeshPicture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace voz::workbench
{
namespace
{

constexpr int kOversampling = 2;
constexpr double kMargin = 0.04;          // of the picture, free on each side
constexpr double kTurn = 30.0;            // degrees about z
constexpr double kElevation = 35.0;       // degrees above the plane
constexpr double kSideWidth = 0.55;       // pixels of the large picture on each side of an element's side
constexpr double kFewestPixelsASide = 12; // denser meshes are drawn without sides

double radians(double degrees)
{
    return degrees * 0.017453292519943295;
}

} // namespace

MeshPicture::MeshPicture(VOZCatMesh const & i_mesh, std::vector<Point3> const & i_nodes, PictureSize i_size)
    : mMesh(i_mesh), mSize(i_size)
{
    mNodes.reserve(i_nodes.size());
    Point2 low{INFINITY, INFINITY};
    Point2 high{-INFINITY, -INFINITY};
    for (Point3 const & node : i_nodes)
    {
        mNodes.push_back(project(node));
        low = {std::min(low[0], mNodes.back().x), std::min(low[1], mNodes.back().y)};
        high = {std::max(high[0], mNodes.back().x), std::max(high[1], mNodes.back().y)};
    }
    if (mNodes.empty())
        return;
    double const roomX = (1.0 - 2.0 * kMargin) * kOversampling * mSize.width;
    double const roomY = (1.0 - 2.0 * kMargin) * kOversampling * mSize.height;
    mScale = std::min(roomX / std::max(high[0] - low[0], 1e-9), roomY / std::max(high[1] - low[1], 1e-9));
    mCentre = {0.5 * (low[0] + high[0]), 0.5 * (low[1] + high[1])};
    for (Screen & node : mNodes)
    {
        node.x = 0.5 * kOversampling * mSize.width + mScale * (node.x - mCentre[0]);
        node.y = 0.5 * kOversampling * mSize.height + mScale * (node.y - mCentre[1]);
        node.depth *= mScale;
    }
    double const area = (high[0] - low[0]) * (high[1] - low[1]) * mScale * mScale;
    mSides = std::sqrt(area / std::max(1, mMesh.numElem())) >= kFewestPixelsASide;
}

MeshPicture::Screen MeshPicture::project(Point3 const & i_point) const
{
    static double const ct = std::cos(radians(kTurn));
    static double const st = std::sin(radians(kTurn));
    static double const ce = std::cos(radians(kElevation));
    static double const se = std::sin(radians(kElevation));
    double const x = ct * i_point[0] - st * i_point[1];
    double const back = st * i_point[0] + ct * i_point[1];
    return {x, -(se * back + ce * i_point[2]), ce * back - se * i_point[2]};
}

Point2 MeshPicture::Place(Point3 const & i_point) const
{
    Screen const at = project(i_point);
    return {0.5 * mSize.width + mScale * (at.x - mCentre[0]) / kOversampling,
            0.5 * mSize.height + mScale * (at.y - mCentre[1]) / kOversampling};
}

Colour MeshPicture::shade(Colour i_colour, Screen const & a, Screen const & b, Screen const & c) const
{
    double const ux = b.x - a.x;
    double const uy = b.y - a.y;
    double const uz = b.depth - a.depth;
    double const vx = c.x - a.x;
    double const vy = c.y - a.y;
    double const vz = c.depth - a.depth;
    double const nx = uy * vz - uz * vy;
    double const ny = uz * vx - ux * vz;
    double const nz = ux * vy - uy * vx;
    double const length = std::sqrt(nx * nx + ny * ny + nz * nz);
    // A light from above left, beside the eye; both sides of the sheet take it.
    double const light = length > 0.0 ? std::abs(-0.35 * nx - 0.5 * ny - 0.79 * nz) / length : 1.0;
    double const factor = 0.62 + 0.38 * light;
    auto const part = [factor](std::uint8_t value) { return static_cast<std::uint8_t>(value * factor); };
    return {part(i_colour.red), part(i_colour.green), part(i_colour.blue)};
}

void MeshPicture::fill(Corner const (&i_corners)[3], Colour i_colour)
{
    Screen const & a = i_corners[0].at;
    Screen const & b = i_corners[1].at;
    Screen const & c = i_corners[2].at;
    double const twice = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
    if (!(std::abs(twice) > 1e-12))
        return;
    int const width = kOversampling * mSize.width;
    int const height = kOversampling * mSize.height;
    int const x0 = std::max(0, static_cast<int>(std::floor(std::min({a.x, b.x, c.x}))));
    int const x1 = std::min(width - 1, static_cast<int>(std::ceil(std::max({a.x, b.x, c.x}))));
    int const y0 = std::max(0, static_cast<int>(std::floor(std::min({a.y, b.y, c.y}))));
    int const y1 = std::min(height - 1, static_cast<int>(std::ceil(std::max({a.y, b.y, c.y}))));
    double const sides[3] = {std::hypot(c.x - b.x, c.y - b.y), std::hypot(a.x - c.x, a.y - c.y),
                             std::hypot(b.x - a.x, b.y - a.y)};
    Colour const plain = shade(i_colour, a, b, c);
    auto const darker = [](std::uint8_t v) { return static_cast<std::uint8_t>(0.72 * v); };
    Colour const side{darker(plain.red), darker(plain.green), darker(plain.blue)};
    for (int y = y0; y <= y1; ++y)
        for (int x = x0; x <= x1; ++x)
        {
            double const px = x + 0.5;
            double const py = y + 0.5;
            double const w[3] = {((b.x - px) * (c.y - py) - (b.y - py) * (c.x - px)) / twice,
                                 ((c.x - px) * (a.y - py) - (c.y - py) * (a.x - px)) / twice,
                                 ((a.x - px) * (b.y - py) - (a.y - py) * (b.x - px)) / twice};
            if (w[0] < -1e-9 || w[1] < -1e-9 || w[2] < -1e-9)
                continue;
            auto const depth = static_cast<float>(w[0] * a.depth + w[1] * b.depth + w[2] * c.depth);
            std::size_t const at =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
            if (depth >= mDepth[at])
                continue;
            mDepth[at] = depth;
            mCovered[at] = 1;
            bool onSide = false;
            for (int k = 0; mSides && k < 3; ++k)
                onSide = onSide || (i_corners[k].sideIsEdge && w[k] * std::abs(twice) < kSideWidth * sides[k]);
            mColour[at] = onSide ? side : plain;
        }
}

void MeshPicture::Draw(std::vector<Colour> const & i_elements)
{
    std::size_t const pixels =
        static_cast<std::size_t>(kOversampling * mSize.width) * static_cast<std::size_t>(kOversampling * mSize.height);
    mDepth.assign(pixels, std::numeric_limits<float>::infinity());
    mColour.assign(pixels, Colour{255, 255, 255});
    mCovered.assign(pixels, 0);
    for (int e = 1; e <= mMesh.numElem(); ++e)
    {
        int const * const row = mMesh.GetElemData()[e];
        auto const corner = [&](int k) -> Screen const &
        { return mNodes[static_cast<std::size_t>(row[k] - mMesh.GetFirstNodeNumber() - 1)]; };
        Colour const colour = i_elements[static_cast<std::size_t>(e - 1)];
        bool const triangle = row[0] == row[3];
        fill({{corner(0), true}, {corner(1), triangle}, {corner(2), true}}, colour);
        if (!triangle)
            fill({{corner(0), true}, {corner(2), true}, {corner(3), false}}, colour);
    }
}

std::vector<std::uint8_t> MeshPicture::Pixels() const
{
    std::vector<std::uint8_t> rgba;
    rgba.reserve(4 * static_cast<std::size_t>(mSize.width) * static_cast<std::size_t>(mSize.height));
    std::size_t const width = static_cast<std::size_t>(kOversampling * mSize.width);
    constexpr int kSamples = kOversampling * kOversampling;
    for (int y = 0; y < mSize.height; ++y)
        for (int x = 0; x < mSize.width; ++x)
        {
            int sum[3] = {0, 0, 0};
            int covered = 0;
            for (int s = 0; s < kSamples; ++s)
            {
                std::size_t const at = static_cast<std::size_t>(kOversampling * y + s / kOversampling) * width +
                                       static_cast<std::size_t>(kOversampling * x + s % kOversampling);
                if (mCovered[at] == 0)
                    continue;
                ++covered;
                sum[0] += mColour[at].red;
                sum[1] += mColour[at].green;
                sum[2] += mColour[at].blue;
            }
            for (int const part : sum)
                rgba.push_back(static_cast<std::uint8_t>(covered > 0 ? part / covered : 255));
            rgba.push_back(static_cast<std::uint8_t>(255 * covered / kSamples));
        }
    return rgba;
}

} // namespace voz::workbench
