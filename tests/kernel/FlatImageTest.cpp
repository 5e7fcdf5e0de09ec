// FlatImageTest.cpp: the way from a place in the flat back to the binder, and the smooth filling of its openings.

#include "OneStepMeshes.h"
#include "binder/Binder.h"
#include "binder/HarmonicFill.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

using namespace voz::examples;
using namespace onesteptest;
using voz::onestep::Solution;

// The image against a search through all elements, on a mesh of crooked quadrilaterals and triangles.
TEST(FlatImage, FindsWhatASearchThroughAllElementsFinds)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> shake(-3.0, 3.0), anywhere(-0.06, 0.06);
    auto const place = [&](double x, double y) {
        return Point3{x + shake(random), y + shake(random), 0.1 * x - 0.2 * y};
    };
    for (Cells const cells : {Cells::Triangles, Cells::Quads})
    {
        Problem const binder =
            gridPart(10, 10, cells, [&](double u, double v) { return place(100.0 * u - 50.0, 100.0 * v - 50.0); });
        Solution solution;
        for (auto const & p : binder.nodes)
            solution.flat.push_back({p[0], p[1]}); // its own projection serves as image
        voz::binder::FlatImage const image = voz::binder::imageOf(binder, solution);
        int hits = 0;
        for (int k = 0; k < 2000; ++k)
        {
            double const x = anywhere(random), y = anywhere(random);
            bool inside = false;
            for (auto const & element : binder.elements)
            {
                std::size_t const corners = element.nodes[3] < 0 ? 3 : 4;
                bool left = true;
                for (std::size_t c = 0; c < corners; ++c)
                {
                    auto const & a = binder.nodes[at(element.nodes[c])];
                    auto const & b = binder.nodes[at(element.nodes[(c + 1) % corners])];
                    left = left && (b[0] - a[0]) * (y - a[1]) - (b[1] - a[1]) * (x - a[0]) >= 0.0;
                }
                inside = inside || left;
            }
            auto const found = image.find({x, y});
            EXPECT_EQ(found.size(), inside ? 1U : 0U) << x << " " << y;
            if (found.size() != 1)
                continue;
            ++hits;
            EXPECT_NEAR(found[0].x, x, 1e-13);
            EXPECT_NEAR(found[0].y, y, 1e-13);
            EXPECT_FALSE(image.overOpening({x, y}));
        }
        EXPECT_GT(hits, 1000);
    }
}

// A smooth field in the hole never leaves the range of what surrounds it, on a bad mesh either.
TEST(HarmonicFill, NeverOvershootsAndLeavesAloneWhatHasNothingAround)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> shake(-0.45, 0.45);
    std::vector<voz::geometry::Cell> cells;
    std::vector<voz::geometry::Vec2> flat;
    for (int r = 0; r <= 8; ++r)
        for (int c = 0; c <= 8; ++c)
            flat.push_back({c + shake(random), r + shake(random)});
    for (int r = 0; r < 8; ++r)
        for (int c = 0; c < 8; ++c)
        {
            int const a = 9 * r + c;
            cells.push_back({{a, a + 1, a + 10, a + 9}, 4, 1.0});
        }
    flat.push_back({50.0, 50.0}); // in no cell
    std::vector<double> value(flat.size(), 7.0);
    std::vector<bool> known(flat.size(), false);
    for (int r = 0; r <= 8; ++r)
        for (int c = 0; c <= 8; ++c)
            if (r == 0 || c == 0 || r == 8 || c == 8)
            {
                known[at(9 * r + c)] = true;
                value[at(9 * r + c)] = shake(random);
            }
    ASSERT_TRUE(voz::binder::fillHarmonically(cells, flat, value, known));
    for (std::size_t i = 0; i + 1 < flat.size(); ++i)
    {
        EXPECT_TRUE(known[i]);
        EXPECT_LE(std::abs(value[i]), 0.45);
    }
    EXPECT_FALSE(known.back());
    EXPECT_EQ(value.back(), 7.0);
}

} // namespace
