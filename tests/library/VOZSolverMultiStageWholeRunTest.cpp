// VOZSolverMultiStageWholeRunTest.cpp: whole runs of the in-process route, by what any solution must have.

#include "VOZSolverMultiStage.h"

#include "DriverFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{
class WholeRun : public DriverFixture
{
protected:
    explicit WholeRun(VOZCatMesh const & i_part = dome(8, 6, true)) : DriverFixture(i_part) {}

    void runInto(LayerStores & o_stores)
    {
        VOZSolverMultiStage driver;
        give(driver);
        ASSERT_EQ(driver.Run(nullptr), 0);
        ASSERT_EQ(driver.GetResults(o_stores.layers()), 0);
    }

    // Where node n lies in the flat, metres.
    static std::array<double, 3> flatOf(VOZCatMesh const & i_mesh, LayerStores & i_stores, int n)
    {
        std::array<double, 3> p = {};
        for (int k = 0; k < 3; ++k)
            p[static_cast<std::size_t>(k)] = 0.001 * i_mesh.node(n, k) + double{i_stores.top.disp(n, k)};
        return p;
    }
};
} // namespace

// Every element's own area before and after tells its thickness strain: nothing of the solver enters.
TEST_F(WholeRun, ThicknessStrainsAreThoseOfTheAreas)
{
    LayerStores stores(part);
    runInto(stores);
    auto const area = [](std::array<std::array<double, 3>, 3> const & p)
    {
        double u[3];
        double v[3];
        for (std::size_t k = 0; k < 3; ++k)
        {
            u[k] = p[1][k] - p[0][k];
            v[k] = p[2][k] - p[0][k];
        }
        return 0.5 * std::hypot(u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]);
    };
    double largest = 0.0;
    for (int e = 1; e <= part.numElem(); ++e)
    {
        std::array<std::array<double, 3>, 3> formed;
        std::array<std::array<double, 3>, 3> flat;
        for (std::size_t k = 0; k < 3; ++k)
        {
            int const n = part.elem(e, static_cast<int>(k));
            flat[k] = flatOf(part, stores, n);
            for (int c = 0; c < 3; ++c)
                formed[k][static_cast<std::size_t>(c)] = 0.001 * part.node(n, c);
        }
        double const wanted = 100.0 * (area(flat) / area(formed) - 1.0); // constant volume
        EXPECT_NEAR(stores.mid.strain(e, 2), wanted, 2e-3) << e;
        EXPECT_NEAR(stores.mid.thickness(e), 0.0008 * (1.0 + 0.01 * wanted), 2e-8);
        largest = std::max(largest, std::fabs(wanted));
    }
    EXPECT_GT(largest, 0.3); // the dome does stretch the sheet
    EXPECT_GT(stores.mid.stress(10), 1e7F);
    EXPECT_LT(stores.mid.stress(10), 1e9F);
}

TEST_F(WholeRun, AFlatPartStaysAsItIs)
{
    for (int n = 1; n <= part.numNode(); ++n)
        part.GetNodeData()[n][2] = 0.0;
    LayerStores stores(part);
    runInto(stores);
    for (int e = 1; e <= part.numElem(); ++e)
    {
        EXPECT_NEAR(stores.mid.strain(e, 0), 0.0, 1e-4);
        EXPECT_NEAR(stores.mid.strain(e, 1), 0.0, 1e-4);
        EXPECT_NEAR(stores.mid.thickness(e), 0.0008, 1e-9);
    }
}

// A turned and shifted part with its frame has the same results; the global displacement turns with it.
TEST_F(WholeRun, TheFrameCarriesTheResultsWithIt)
{
    LayerStores straight(part);
    runInto(straight);
    for (int n = 1; n <= part.numNode(); ++n)
    {
        double * const p = part.GetNodeData()[n];
        double const x = p[0];
        double const y = p[1];
        double const z = p[2];
        p[0] = 100.0 + z; // local x is global y, local y global z, local z global x
        p[1] = -50.0 + x;
        p[2] = 20.0 + y;
    }
    axis.axis(0, Vec(0.0, 1.0, 0.0));
    axis.axis(1, Vec(0.0, 0.0, 1.0));
    axis.axis(2, Vec(1.0, 0.0, 0.0));
    axis.origin(Vec(100.0, -50.0, 20.0));
    LayerStores turned(part);
    runInto(turned);
    for (int e = 1; e <= part.numElem(); ++e)
        EXPECT_NEAR(turned.mid.strain(e, 0), straight.mid.strain(e, 0), 1e-3);
    for (int n = 1; n <= part.numNode(); ++n)
    {
        EXPECT_NEAR(turned.top.disp2d(n, 0) - turned.top.disp2d(1, 0),
                    straight.top.disp2d(n, 0) - straight.top.disp2d(1, 0), 1e-6);
        EXPECT_NEAR(turned.top.disp(n, 1) - turned.top.disp(1, 1), straight.top.disp(n, 0) - straight.top.disp(1, 0),
                    1e-6);
    }
}

TEST_F(WholeRun, APrescribedDisplacementIsTakenInMillimetres)
{
    hold({1}, true, 5.0, true, 0.0);           // both: the node stays, its values are dropped
    hold({9}, false, 0.0, true, 0.0);          // and the part does not turn about it
    hold({9 * 6 + 9}, true, -1.5, false, 0.0); // the far corner, moved by hand
    LayerStores stores(part);
    runInto(stores);
    EXPECT_NEAR(stores.top.disp(1, 0), 0.0, 1e-9);
    EXPECT_NEAR(stores.top.disp(1, 1), 0.0, 1e-9);
    EXPECT_NEAR(stores.top.disp(63, 0), -0.0015, 1e-9);
}

TEST_F(WholeRun, AHeavierHolderStretchesTheSheetMore)
{
    double thinnest[2] = {0.0, 0.0};
    for (int i = 0; i < 2; ++i)
    {
        fullHolder.factor(i == 0 ? 0.05 : 0.5);
        LayerStores stores(part);
        runInto(stores);
        for (int e = 1; e <= part.numElem(); ++e)
            thinnest[i] = std::min(thinnest[i], double{stores.mid.strain(e, 2)});
    }
    EXPECT_LT(thinnest[1], thinnest[0] - 0.1);
}

TEST_F(WholeRun, ThePartWithItsQuarterSymmetryFlattensAsTheWhole)
{
    LayerStores whole(part);
    runInto(whole);
    samples::Grid grid;
    grid.columns = 4;
    grid.rows = 3;
    grid.x0 = 60.0;
    grid.x1 = 120.0;
    grid.y0 = 40.0;
    grid.y1 = 80.0;
    grid.surface = [](double x, double y)
    {
        double const u = std::sin(3.14159265358979 * x / 120.0);
        double const v = std::sin(3.14159265358979 * y / 80.0);
        return samples::Point{x, y, 12.0 * u * u * v * v};
    };
    part = dome(8, 6, false);
    index(part.numElem());
    LayerStores wholeQuads(part);
    runInto(wholeQuads);
    part = grid.mesh();
    index(part.numElem());
    symmetry = Symmetry(true, true);
    axis.origin(Vec(60.0, 40.0, 0.0));
    LayerStores quarter(part);
    runInto(quarter);
    for (int row = 0; row <= 3; ++row)
        for (int column = 0; column <= 4; ++column)
        {
            int const small = row * 5 + column + 1;
            int const large = (row + 3) * 9 + column + 4 + 1;
            EXPECT_NEAR(quarter.top.disp(small, 0) - quarter.top.disp(1, 0),
                        wholeQuads.top.disp(large, 0) - wholeQuads.top.disp(3 * 9 + 4 + 1, 0), 2e-6);
        }
}

// A binder that is flat lets the blank lie flat: what is on the binder is then the flat itself, up to a rigid motion.
TEST_F(WholeRun, ABlankOnAFlatBinderIsTheFlatBlank)
{
    samples::Grid plane;
    plane.columns = plane.rows = 4;
    plane.x0 = -60.0;
    plane.x1 = 180.0;
    plane.y0 = -60.0;
    plane.y1 = 140.0;
    binder = plane.mesh();
    meshes[1] = &binder;
    meshCount = 2;
    LayerStores stores(part);
    runInto(stores);
    int moved = 0;
    for (int n = 1; n <= part.numNode(); ++n)
    {
        double const onBinder = std::hypot(stores.top.disp2d(n, 0) - stores.top.disp2d(1, 0),
                                           stores.top.disp2d(n, 1) - stores.top.disp2d(1, 1));
        double const flat =
            std::hypot(stores.top.disp(n, 0) - stores.top.disp(1, 0), stores.top.disp(n, 1) - stores.top.disp(1, 1));
        EXPECT_NEAR(onBinder, flat, 2e-5) << n;
        EXPECT_NEAR(0.001 * part.node(n, 2) + double{stores.top.dispOnBinder(n, 2)}, 0.0, 1e-6) << n; // on the plane
        moved += flat > 1e-5 ? 1 : 0;
    }
    EXPECT_GT(moved, 0);
}

// The strain asked for at the middle of the dome is what comes back there, in percent both ways.
TEST_F(WholeRun, APrescribedStrainIsReachedAtItsNode)
{
    LayerStores before(part);
    runInto(before);
    int const middle = 3 * 9 + 4 + 1;
    double const target[3] = {60.4, 39.8, 12.2}; // nearest: the middle node
    double const wanted = double{before.mid.nstrain(middle, 0)} + 1.5;
    property.setAutoStrain(target, nullptr, wanted, 0.0, 0.0, true);
    LayerStores after(part);
    runInto(after);
    EXPECT_NEAR(after.mid.nstrain(middle, 0), wanted, 0.1);
}

// Both nodes get the strains that a held sheet has there: exchanged, they would be reached at neither.
TEST_F(WholeRun, TwoPrescribedStrainsAreReachedEachAtItsOwnNode)
{
    int const middle = 3 * 9 + 4 + 1;
    int const aside = 3 * 9 + 1 + 1;
    LayerStores held(part);
    fullHolder.factor(0.3);
    runInto(held);
    double const atMiddle = held.mid.nstrain(middle, 0);
    double const atAside = held.mid.nstrain(aside, 0);
    ASSERT_GT(std::fabs(atMiddle - atAside), 0.5);

    fullHolder.factor(0.0);
    double const target[3] = {part.node(middle, 0), part.node(middle, 1), part.node(middle, 2)};
    double const reference[3] = {part.node(aside, 0), part.node(aside, 1), part.node(aside, 2)};
    property.setAutoStrain(target, reference, atMiddle, atAside, 0.0, true);
    LayerStores reached(part);
    runInto(reached);
    EXPECT_NEAR(reached.mid.nstrain(middle, 0), atMiddle, 0.1);
    EXPECT_NEAR(reached.mid.nstrain(aside, 0), atAside, 0.1);
}
