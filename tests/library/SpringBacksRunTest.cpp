// SpringBacksRunTest.cpp: whole runs of the springback driver: a strip is formed by the multi-stage driver, its
// displacements go over in millimetres, and the shape that the kernel gives is compared with what is known of it.

#include "VOZSolverSpringBacks.h"

#include "CATError.h"
#include "CATIProgressTaskUI.h"
#include "DriverFixture.h"
#include "EdgeSets.h"
#include "FreeEdgeLoops.h"
#include "VOZSolverMultiStage.h"
#include "VOZStatus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace
{
constexpr double kPi = 3.141592653589793;
constexpr double kRadius = 10.0; // mm, of the middle of the sheet
constexpr double kLeg = 20.0;    // mm
constexpr double kWidth = 60.0;
constexpr int kArcRows = 24; // facets of the arc
constexpr int kLegRows = 6;
constexpr int kRows = kArcRows + 2 * kLegRows; // along the profile
constexpr int kStrips = 4;                     // across it

// Lengths along the profile; the rows beside the arc are short, as normals smear its end over them.
std::vector<double> stations()
{
    double const beside[kLegRows] = {0.1, 1.0, 3.0, 7.0, 13.0, kLeg};
    double const arc = 0.5 * kPi * kRadius;
    std::vector<double> s;
    for (int i = kLegRows; i > 0; --i)
        s.push_back(-0.5 * arc - beside[i - 1]);
    for (int i = 0; i <= kArcRows; ++i)
        s.push_back(arc * (static_cast<double>(i) / kArcRows - 0.5));
    for (double const b : beside)
        s.push_back(0.5 * arc + b);
    return s;
}

// Two flat legs at 45 degrees and an arc of 90 degrees between them, drawn along y.
samples::Point onV(double s, double y)
{
    double const half = 0.25 * kPi * kRadius;
    double const angle = std::clamp(s / kRadius, -0.25 * kPi, 0.25 * kPi);
    double const beyond = s - std::clamp(s, -half, half);
    return {kRadius * std::sin(angle) + beyond * std::cos(angle), y,
            kRadius * (1.0 - std::cos(angle)) + beyond * std::sin(angle)};
}

VOZCatMesh vStrip()
{
    std::vector<double> const s = stations();
    samples::Grid grid;
    grid.columns = kRows;
    grid.rows = kStrips;
    grid.x1 = kRows;
    grid.y1 = kWidth;
    grid.surface = [&](double x, double y) { return onV(s[static_cast<std::size_t>(std::lround(x))], y); };
    return grid.mesh();
}

int nodeAt(int row, int strip) // its number, from 1
{
    return strip * (kRows + 1) + row + 1;
}

int elementAt(int row, int strip)
{
    return strip * kRows + row + 1;
}

class SpringBacksRun : public DriverFixture
{
protected:
    SpringBacksRun() : DriverFixture(vStrip())
    {
        mildSteel(*property.material(1));
        form();
    }

    static void mildSteel(VOZMaterial & o_material)
    {
        o_material.m_dThickness = 0.00078;
        o_material.m_dNValue = 0.2589;
        o_material.m_dRValue = 1.79;
        o_material.m_dKValue = 565.32e6;
        o_material.m_dYield = 157128163.6;
    }

    // The rows that springback takes: from the part to its blank, mm.
    void form()
    {
        VOZSolverMultiStage solver;
        give(solver);
        ASSERT_EQ(solver.Run(nullptr), 0);
        LayerStores stores(part);
        ASSERT_EQ(solver.GetResults(stores.layers()), 0);
        for (int n = 1; n <= part.numNode(); ++n)
            forming.push_back({1000.0 * static_cast<double>(stores[0].disp(n, 0)),
                               1000.0 * static_cast<double>(stores[0].disp(n, 1)),
                               1000.0 * static_cast<double>(stores[0].disp(n, 2))});
    }

    void give(VOZSolver & io_solver)
    {
        DriverFixture::give(io_solver);
        io_solver.SetDisplacements(reinterpret_cast<double const(*)[3]>(forming.data()));
    }

    static int * copyOf(std::vector<int> const & i_rows)
    {
        int * const copy = new int[i_rows.size()];
        std::copy(i_rows.begin(), i_rows.end(), copy);
        return copy;
    }
    void trim(std::vector<int> const & i_labels)
    {
        property.setTrimming(copyOf(i_labels));
        property.setTrimmingSize(static_cast<int>(i_labels.size()));
    }
    void align(std::vector<int> const & i_nodes)
    {
        property.setAlignment(copyOf(i_nodes));
        property.setAlignmentSize(static_cast<int>(i_nodes.size()));
    }

    // Millimetres from the part to the sprung shape, node after node.
    samples::Points deviations(VOZSolverSpringBacks & io_solver) const
    {
        LayerStores stores(part);
        EXPECT_EQ(io_solver.GetResults(stores.layers()), 0);
        samples::Points rows;
        for (int n = 1; n <= part.numNode(); ++n)
        {
            samples::Point row{};
            for (int k = 0; k < 3; ++k)
            {
                row[static_cast<std::size_t>(k)] = 1000.0 * static_cast<double>(stores[0].disp(n, k));
                EXPECT_EQ(stores[0].dispOnBinder(n, k), stores[0].disp(n, k));
                EXPECT_EQ(stores[1].disp(n, k), 0.0F);
                EXPECT_EQ(stores[2].disp(n, k), 0.0F);
            }
            EXPECT_EQ(stores[0].disp2d(n, 2), 0.0F);
            rows.push_back(row);
        }
        return rows;
    }
    samples::Points sprung()
    {
        VOZSolverSpringBacks solver;
        give(solver);
        EXPECT_EQ(solver.Run(nullptr), 0);
        return deviations(solver);
    }

    // Degrees by which the angle between two stretches of the profile grew, along the middle of the strip.
    double opening(samples::Points const & i_deviations, int i_leftFrom, int i_leftTo, int i_rightFrom,
                   int i_rightTo) const
    {
        auto const heading = [&](int from, int to, double share)
        {
            auto const a = static_cast<std::size_t>(nodeAt(from, kStrips / 2));
            auto const b = static_cast<std::size_t>(nodeAt(to, kStrips / 2));
            auto const along = [&](std::size_t k)
            {
                return part.GetNodeData()[b][k] - part.GetNodeData()[a][k] +
                       share * (i_deviations[b - 1][k] - i_deviations[a - 1][k]);
            };
            return std::atan2(along(2), along(0));
        };
        auto const turn = [&](double share)
        { return heading(i_rightFrom, i_rightTo, share) - heading(i_leftFrom, i_leftTo, share); };
        return (turn(0.0) - turn(1.0)) * 180.0 / kPi;
    }
    double opening(samples::Points const & i_deviations) const
    {
        return opening(i_deviations, 0, kLegRows - 1, kRows - kLegRows + 1, kRows);
    }

    static double length(samples::Point const & a) { return std::hypot(a[0], a[1], a[2]); }
    static double largest(samples::Points const & i_rows)
    {
        double most = 0.0;
        for (samples::Point const & row : i_rows)
            most = std::max(most, length(row));
        return most;
    }

    std::vector<std::array<double, 3>> forming;
};

// What a wide strip loses of its angle: 90 degrees (1 - R/R'), R/R' = 0.946818 for this steel at R = 10 mm and
// t = 0.78 mm in plane strain without a force in the sheet.
constexpr double kOpening = 90.0 * (1.0 - 0.946818);
} // namespace

TEST_F(SpringBacksRun, TheFormedStripUnrolls)
{
    double const whole = 0.5 * kPi * kRadius + 2.0 * kLeg;
    auto const blank = [&](int node, std::size_t k)
    { return part.GetNodeData()[node][k] + forming[static_cast<std::size_t>(node) - 1][k]; };
    int const a = nodeAt(0, 0);
    int const b = nodeAt(kRows, 0);
    EXPECT_NEAR(std::hypot(blank(b, 0) - blank(a, 0), blank(b, 1) - blank(a, 1), blank(b, 2) - blank(a, 2)), whole,
                2e-3 * whole);
}

TEST_F(SpringBacksRun, AVOpensByWhatItsArcLoses)
{
    VOZCatMesh const before(part);
    samples::Points const deviation = sprung();
    EXPECT_NEAR(opening(deviation), kOpening, 0.01 * kOpening);
    RecordProperty("opening", std::to_string(opening(deviation)));
    for (int n = 1; n <= part.numNode(); ++n)
        for (int k = 0; k < 3; ++k)
            EXPECT_EQ(part.GetNodeData()[n][k], before.GetNodeData()[n][k]) << "the part itself stays";
}

TEST_F(SpringBacksRun, ASecondRunGivesTheSameShape)
{
    trim({elementAt(0, 0)});
    property.setSprinkbackFixity(false);
    VOZSolverSpringBacks solver;
    give(solver);
    ASSERT_EQ(solver.Run(nullptr), 0);
    samples::Points const first = deviations(solver);
    ASSERT_EQ(solver.Run(nullptr), 0);
    EXPECT_EQ(deviations(solver), first);
}

// The legs carry nothing, so what goes of them changes little; the nodes that lose all their elements go along.
TEST_F(SpringBacksRun, WhatIsTrimmedAwayCarriesNothingAndGoesAlong)
{
    samples::Points const whole = sprung();
    std::vector<int> legs;
    for (int strip = 0; strip < kStrips; ++strip)
        for (int row = 0; row < 2; ++row)
            legs.insert(legs.end(), {elementAt(row, strip), elementAt(kRows - 1 - row, strip)});
    part.IdsOffset(1000, 500);
    for (int & label : legs)
        label += 500;
    trim(legs);
    samples::Points const trimmed = sprung();
    EXPECT_NEAR(opening(trimmed, 2, kLegRows - 1, kRows - kLegRows + 1, kRows - 2),
                opening(whole, 2, kLegRows - 1, kRows - kLegRows + 1, kRows - 2), 0.02 * kOpening);
    for (int strip = 0; strip <= kStrips; ++strip)
    {
        auto const at = [&](int row) { return trimmed[static_cast<std::size_t>(nodeAt(row, strip)) - 1]; };
        for (std::size_t k = 0; k < 3; ++k)
        {
            EXPECT_NEAR(at(0)[k], at(2)[k], 1e-6) << "the nearest node that is left";
            EXPECT_NEAR(at(1)[k], at(2)[k], 1e-6);
            EXPECT_NEAR(at(kRows)[k], at(kRows - 2)[k], 1e-6);
        }
    }

    std::vector<int> arc; // where all moments are
    for (int strip = 0; strip < kStrips; ++strip)
        for (int row = kLegRows - 2; row < kRows - kLegRows + 2; ++row)
            arc.push_back(elementAt(row, strip) + 500);
    trim(arc);
    EXPECT_LT(largest(sprung()), 0.02 * largest(whole)) << "two flat legs stay as they are";
}

TEST_F(SpringBacksRun, NodesHeldBothWaysDoNotMoveAndOthersDo)
{
    std::vector<int> leg;
    for (int strip = 0; strip <= kStrips; ++strip)
        leg.insert(leg.end(), {nodeAt(0, strip), nodeAt(1, strip)});
    hold(leg, true, 3.0, true, -2.0); // the values are those of forming
    hold({nodeAt(kRows, 0), nodeAt(kRows, kStrips)}, true, 0.0, false, 0.0);
    samples::Points const deviation = sprung();
    for (int const node : leg)
        EXPECT_LT(length(deviation[static_cast<std::size_t>(node) - 1]), 1e-9) << node;
    EXPECT_GT(length(deviation[static_cast<std::size_t>(nodeAt(kRows, 0)) - 1]), 1.0) << "held in x alone is not held";
    EXPECT_NEAR(opening(deviation), kOpening, 0.01 * kOpening);
}

TEST_F(SpringBacksRun, FixityHoldsTheBoundaryOfWhatIsLeft)
{
    property.setSprinkbackFixity(true);
    samples::Points const whole = sprung();
    FreeEdgeSet const edges(part);
    int error = 0;
    FreeEdgeLoops const loops(edges, part, &error);
    for (int i = 1; i <= loops.numOuter(); ++i)
        EXPECT_LT(length(whole[static_cast<std::size_t>(edges.startNode(loops.edge(i))) - 1]), 1e-9);
    EXPECT_GT(largest(whole), 1e-4) << "what lies inside moves";

    std::vector<int> end;
    for (int strip = 0; strip < kStrips; ++strip)
        end.push_back(elementAt(0, strip));
    trim(end);
    samples::Points const trimmed = sprung();
    for (int strip = 0; strip <= kStrips; ++strip)
        EXPECT_LT(length(trimmed[static_cast<std::size_t>(nodeAt(1, strip)) - 1]), 1e-9) << "the new boundary";
}

// Three nodes of the left leg: their plane is that of the part then, and so is their mean. A turn within the plane
// stays. The right leg's end is off by its lever times the angle.
TEST_F(SpringBacksRun, AlignmentLaysOneLegOnThePart)
{
    std::vector<int> const chosen = {nodeAt(0, 0), nodeAt(0, kStrips), nodeAt(kLegRows - 1, kStrips / 2)};
    align(chosen);
    samples::Points const deviation = sprung();
    for (std::size_t k = 0; k < 3; ++k)
    {
        double sum = 0.0;
        for (int const node : chosen)
            sum += deviation[static_cast<std::size_t>(node) - 1][k];
        EXPECT_NEAR(sum, 0.0, 1e-4);
    }
    for (int strip = 0; strip <= kStrips; ++strip)
        for (int row = 0; row < kLegRows; ++row)
        {
            samples::Point const & d = deviation[static_cast<std::size_t>(nodeAt(row, strip)) - 1];
            EXPECT_NEAR((d[0] + d[2]) * std::sqrt(0.5), 0.0, 0.02) << "off its plane: " << row << ' ' << strip;
        }
    double const ratio = 0.946818; // the arc keeps its length: radius R / ratio, angle 90 degrees x ratio
    double const turn = 0.5 * kPi * ratio;
    double const along = kRadius / ratio * std::sin(turn) + kLeg * std::cos(turn);
    double const across = kRadius / ratio * (1.0 - std::cos(turn)) + kLeg * std::sin(turn);
    double const expected = std::hypot(along - kRadius, across - (kRadius + kLeg)); // against a quarter turn
    EXPECT_NEAR(length(deviation[static_cast<std::size_t>(nodeAt(kRows, kStrips / 2)) - 1]), expected, 0.05 * expected);
}

TEST_F(SpringBacksRun, WithoutFormingTheShapeIsThePart)
{
    for (double const share : {0.0, 0.001}) // none at all; metres instead of millimetres
    {
        std::vector<std::array<double, 3>> const whole = forming;
        for (std::array<double, 3> & row : forming)
            for (double & d : row)
                d *= share;
        EXPECT_LT(largest(sprung()), 1e-9);
        EXPECT_NE(work.Read("sum.txt").find("no forming"), std::string::npos);
        forming = whole;
    }
}

TEST_F(SpringBacksRun, AKernelThatFindsNoShapeIsAnErrorWithItsDiagnostic)
{
    std::vector<int> all;
    for (int e = 1; e <= part.numElem(); ++e)
        all.push_back(e);
    trim(all);
    VOZSolverSpringBacks solver;
    give(solver);
    try
    {
        solver.Run(nullptr);
        FAIL() << "nothing is left of the part";
    }
    catch (CATMfErrUpdate const & error)
    {
        EXPECT_STREQ(error.Message(), "Failed to compute springback results!");
    }
    LayerStores stores(part);
    stores[0].disp(3, 1, 7.0F);
    EXPECT_EQ(solver.GetResults(stores.layers()), 0);
    EXPECT_EQ(stores[0].disp(3, 1), 7.0F) << "there is no shape";
    property.setSprinkbackFixity(true);
    EXPECT_EQ(solver.Run(nullptr), E_FAIL) << "the boundary fails first";

    property.setSprinkbackFixity(false);
    property.setTrimmingSize(0);
    EXPECT_EQ(solver.Run(nullptr), 0) << "and the object is as good as new";
    EXPECT_NEAR(opening(deviations(solver)), kOpening, 0.01 * kOpening);
}

TEST_F(SpringBacksRun, ABlankThatIsFoldedOverIsNoShapeEither)
{
    for (std::array<double, 3> & row : forming)
        row[0] *= -4.0; // x = 5 x(part) - 4 x(blank): onward along the arc, back along the legs
    VOZSolverSpringBacks solver;
    give(solver);
    EXPECT_THROW(solver.Run(nullptr), CATMfErrUpdate);
    EXPECT_NE(work.Read("sum.txt").find("folded"), std::string::npos) << work.Read("sum.txt");
}

// A record that cannot be read is the kernel's own error, and it goes through as it is.
TEST_F(SpringBacksRun, TheKernelsOwnErrorPassesThrough)
{
    property.material(1)->m_dThickness = -1.0;
    VOZSolverSpringBacks solver;
    give(solver);
    try
    {
        solver.Run(nullptr);
        FAIL() << "no sheet is thinner than nothing";
    }
    catch (CATMfErrUpdate const & error)
    {
        FAIL() << error.Message();
    }
    catch (CATError const & error)
    {
        EXPECT_NE(std::string(error.Message()).find("thickness"), std::string::npos) << error.Message();
    }
}

// Two properties: the thin one lies on all elements, so the shape is that of a thin part.
TEST_F(SpringBacksRun, EachElementSpringsWithItsOwnMaterial)
{
    property.material(1)->m_dThickness = 0.0005;
    samples::Points const thin = sprung();
    property.sizeProperty(2);
    mildSteel(*property.material(1));
    mildSteel(*property.material(2));
    property.material(2)->m_dThickness = 0.0005;
    index(part.numElem());
    for (int e = 1; e <= part.numElem(); ++e)
        property.propertyId(e, 2);
    EXPECT_EQ(sprung(), thin);
    EXPECT_GT(opening(thin), 1.2 * kOpening);
}

class ShownProgress : public CATIProgressTaskUI
{
public:
    void SetProgress(short i_percent) override { shown.push_back(i_percent); }
    std::vector<short> shown;
};

TEST_F(SpringBacksRun, ProgressRunsForwardToItsEnd)
{
    VOZSolverSpringBacks solver;
    give(solver);
    ShownProgress task;
    ASSERT_EQ(solver.Run(&task), 0);
    ASSERT_FALSE(task.shown.empty());
    EXPECT_TRUE(std::is_sorted(task.shown.begin(), task.shown.end()));
    EXPECT_EQ(task.shown.back(), 100);
}
