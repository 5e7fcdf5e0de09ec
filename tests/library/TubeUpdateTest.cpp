// TubeUpdateTest.cpp: results of the opened tube, wrapped back.

#include "Tube.h"

#include "Result.h"
#include "TubeFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace tubes;

namespace
{
TEST_F(TubeTest, UpdateWrapsTheFlatSheetBackOntoTheTube)
{
    for (bool const isTurned : {false, true})
    {
        Pipe const pipe;
        VOZCatAxis axis = isTurned ? turnedFrame() : VOZCatAxis();
        double const nowhere[3] = {0, 0, 0};
        axis.origin(Vec(static_cast<double const *>(nowhere)));
        VOZCatMesh mesh = pipe.mesh();
        mesh.Transform(&axis, 1);
        VOZCatMesh const before = mesh;
        ElemProperty property;
        property.sizeDispBC(2);
        {
            Tube tube(mesh, property, axis, 0.0);
            ASSERT_TRUE(tube.Eval(1.0));
        }
        // the sheet, rolled out by hand: y is the arc from the bottom, z is 0; 1 mm longer
        Result result(mesh);
        for (int n = 1; n <= mesh.numNode(); ++n)
        {
            int const original = n <= 84 ? n : 12 * (n - 85) + 1;
            Vec const local = axis.fromGlobal(mesh.node(original));
            double arc = 10.0 * std::atan2(local[1], -local[2]);
            if (std::fabs(local[1]) < 1e-9 && local[2] > 0.0)
                arc = n <= 84 ? 10.0 * kPi : -10.0 * kPi;
            double const flat[3] = {local[0] + 1.0, arc, 0.0};
            Vec const global = axis.toGlobal(Vec(static_cast<double const *>(flat)));
            for (int c = 0; c < 3; ++c)
                result.disp(n, c, static_cast<float>(0.001 * (global[c] - mesh.NodeValue(n, c))));
        }
        Tube::Update(result, mesh, 84, axis, 0.010);
        EXPECT_EQ(mesh.numNode(), 84);
        EXPECT_EQ(result.numNodeResult(), 84);
        for (int n = 1; n <= 84; ++n)
            for (int c = 0; c < 3; ++c)
            {
                double const wanted = 0.001 * axis.axis(0, c); // 1 mm along the tube, and nothing else
                EXPECT_NEAR(result.disp(n, c), wanted, 1e-7) << n;
                EXPECT_EQ(result.dispOnBinder(n, c), result.disp(n, c));
                EXPECT_NEAR(mesh.NodeValue(n, c), before.NodeValue(n, c), 1e-12);
            }
        EXPECT_TRUE(host.reports.empty());
    }
}

TEST_F(TubeTest, UpdateWithoutARadiusLeavesAllAlone)
{
    for (double const radius : {0.0, -1.0, 1.19e-7, std::numeric_limits<double>::quiet_NaN()})
    {
        VOZCatMesh mesh = Pipe().mesh();
        Result result(mesh);
        result.disp(3, 1, 0.25F);
        Tube::Update(result, mesh, 10, VOZCatAxis(), radius);
        EXPECT_EQ(mesh.numNode(), 84);
        EXPECT_EQ(result.numNodeResult(), 84);
        EXPECT_EQ(result.disp(3, 1), 0.25F);
        EXPECT_EQ(result.dispOnBinder(3, 1), 0.0F);
    }
    VOZCatMesh mesh = Pipe().mesh();
    Result result(mesh);
    Tube::Update(result, mesh, 10, VOZCatAxis(), 1.1920928955078125e-07); // the bound itself is a radius
    EXPECT_EQ(mesh.numNode(), 10);
    EXPECT_EQ(result.numNodeResult(), 10);
}

TEST_F(TubeTest, UpdateFollowsItsFormulaToTheLastBit)
{
    VOZCatAxis const axis = turnedFrame();
    VOZCatMesh mesh = Pipe().mesh();
    Result result(mesh);
    std::mt19937 random(1021);
    std::uniform_real_distribution<float> number(-0.05F, 0.05F);
    std::vector<Vec> wanted;
    for (int n = 1; n <= 84; ++n)
    {
        for (int c = 0; c < 3; ++c)
            result.disp(n, c, number(random));
        Vec const p = mesh.node(n) * 0.001;
        Vec const l = axis.fromGlobal(p + result.disp(n));
        double const w[3] = {l[0], 0.02 * std::sin(l[1] / 0.02), -0.02 * std::cos(l[1] / 0.02)};
        wanted.push_back(axis.toGlobal(Vec(static_cast<double const *>(w))) - p);
    }
    Tube::Update(result, mesh, 84, axis, 0.02);
    for (int n = 1; n <= 84; ++n)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(result.disp(n, c), static_cast<float>(wanted[at(n - 1)][c]));
}

TEST_F(TubeTest, UpdateBeyondTheMeshKeepsTheMeshsCount)
{
    for (int const count : {85, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        host.reports.clear();
        VOZCatMesh mesh = Pipe().mesh();
        Result result(mesh);
        Tube::Update(result, mesh, count, VOZCatAxis(), 0.01);
        EXPECT_EQ(host.reports.size(), 1U) << count;
        EXPECT_EQ(mesh.numNode(), 84);
        EXPECT_EQ(result.numNodeResult(), 84);
    }
}

TEST_F(TubeTest, AResultOfFewerNodesIsABrokenContractAndTheNodesThatItHasAreWrapped)
{
    VOZCatMesh mesh = Pipe().mesh();
    VOZCatMesh few = mesh;
    few.sizeNode(10);
    Result whole(mesh);
    Result result(few);
    Tube::Update(whole, mesh, 84, VOZCatAxis(), 0.01);
    EXPECT_TRUE(host.reports.empty());
    Tube::Update(result, mesh, 84, VOZCatAxis(), 0.01);
    ASSERT_EQ(host.reports.size(), 74U * 9U); // of each node three read, and three written to each of two fields
    for (VOZMemoryHost::Report const & report : host.reports)
        ASSERT_EQ(report.text, "AssertionFailed:node >= 0 && node < (mNumNodeResult+1)");
    for (int n = 1; n <= 10; ++n)
        for (int c = 0; c < 3; ++c)
            EXPECT_EQ(result.disp(n, c), whole.disp(n, c));
}
} // namespace
