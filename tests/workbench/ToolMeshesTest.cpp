// ToolMeshesTest.cpp. Tools of parts with exact sizes, measured by looking at every pair of element and point.

#include "InputError.h"
#include "ToolMeshesFixture.h"
#include "ToolMeshesParts.h"

#include <cstring>

using namespace voz::workbench;
using namespace toolcases;
namespace examples = voz::examples;

namespace
{
constexpr double kClearance = 0.1;

examples::SquareCup coarseSquareCup()
{
    examples::SquareCup shape = examples::squareCup40();
    shape.rowsBottom = 4;
    shape.rowsArc = 5;
    shape.rowsWall = 4;
    shape.rowsFlange = 4;
    shape.cellsSide = 4;
    shape.cellsCorner = 6;
    return shape;
}

struct Case
{
    char const * name;
    WholeJob whole;
    bool isStrip;
    bool wantsBinder;
};

std::vector<Case> cases()
{
    using examples::Cells;
    using examples::Extent;
    std::vector<Case> all;
    all.push_back({"cylindrical cup", jobOf(examples::cup({}, 1, Extent::Whole, Cells::Quads)), false, true});
    all.push_back({"cup of triangles", jobOf(examples::cup({}, 1, Extent::Whole, Cells::Triangles)), false, true});
    all.push_back(
        {"square cup", jobOf(examples::squareCup(coarseSquareCup(), Extent::Whole, Cells::Quads)), false, true});
    all.push_back({"hat", jobOf(examples::wholeHat({}, 30.0, 6, 4, Cells::Quads)), true, true});
    all.push_back({"hat without a holder", jobOf(examples::wholeHat({}, 30.0, 6, 4, Cells::Quads)), true, false});
    examples::Profile pot({0.0, 0.0}, 0.0); // no flange: its wall ends vertical
    pot.line(32.0, 4).arc(8.0, std::acos(0.0), 6).line(7.0, 2);
    all.push_back({"pot", jobOf(examples::revolve(pot, 6, Extent::Whole, Cells::Quads)), false, true});
    examples::VBend bend;
    bend.rowsNear = 4;
    bend.rowsArc = 12;
    all.push_back({"bend", jobOf(examples::vBend(bend, 20.0, 4, Cells::Quads)), true, false});
    return all;
}

ToolSet toolsOf(Case const & i_case, int i_toolMode = 0, int i_processMode = 2)
{
    ToolRequest request;
    request.toolMode = i_toolMode;
    request.processMode = i_processMode;
    request.wantsBinder = i_case.wantsBinder;
    Outcome const flat = flatOf(i_case.whole, i_case.isStrip);
    return MakeTools(i_case.whole, &flat, request);
}

std::vector<VOZCatMesh const *> meshesOf(ToolSet const & i_tools)
{
    std::vector<VOZCatMesh const *> meshes{&i_tools.blank, &i_tools.die, &i_tools.punch};
    if (i_tools.hasBinder)
        meshes.push_back(&i_tools.binder);
    return meshes;
}

std::string refusal(WholeJob const & i_whole, Outcome const * i_flat, ToolRequest const & i_request)
{
    try
    {
        MakeTools(i_whole, i_flat, i_request);
    }
    catch (InputError const & error)
    {
        return error.what();
    }
    return "";
}

bool holds(std::string const & i_text, char const * i_part)
{
    return i_text.find(i_part) != std::string::npos;
}
} // namespace

TEST(ToolMeshes, ClosedToolsStandOneThicknessAndTheClearanceApart)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c);
        Surface punch = surfaceOf(tools.punch);
        Surface die = surfaceOf(tools.die);
        Lift(punch, tools.stroke);
        Lift(die, kClearance); // level faces close by the clearance: without it all faces are parallel
        auto const [least, greatest] = distances(punch, die);
        EXPECT_NEAR(least, kThickness + kClearance, 0.012) << c.name;
        EXPECT_NEAR(greatest, kThickness + kClearance, 0.012) << c.name;
    }
}

TEST(ToolMeshes, AtTheEndOfTheStrokeTheSmallestGapIsTheThicknessAndThePunchIsThePartsLowerFace)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c);
        Surface punch = surfaceOf(tools.punch);
        Surface const die = surfaceOf(tools.die);
        EXPECT_NEAR(smallestGap(punch, die), tools.smallestGap, 1e-6) << c.name;
        EXPECT_NEAR(tools.stroke, tools.smallestGap - kThickness, 1e-12) << c.name;
        Lift(punch, tools.stroke);
        EXPECT_NEAR(smallestGap(punch, die), kThickness, 1e-6) << c.name;
        auto const [least, greatest] = distances(punch, SurfaceOf(c.whole.part.mesh, tools.frame));
        EXPECT_NEAR(least, 0.5 * kThickness, 0.012) << c.name;
        EXPECT_NEAR(greatest, 0.5 * kThickness, 0.012) << c.name;
        EXPECT_TRUE(tools.warnings.empty()) << c.name << ": " << tools.warnings.front();
    }
}

// Punch and binder lie one thickness higher in their mesh, on the die's face; the stroke closes the meshes on each
// other.
TEST(ToolMeshes, InToolModeOneTheMeshesCloseOnEachOther)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c, 1, 1);
        Surface punch = surfaceOf(tools.punch);
        Surface const die = surfaceOf(tools.die);
        Lift(punch, tools.stroke);
        EXPECT_NEAR(smallestGap(punch, die), 0.0, 1e-6) << c.name;
        EXPECT_NEAR(tools.stroke, toolsOf(c).stroke, 1e-4) << c.name << ": the same way of the punch";
        EXPECT_NEAR(distances(punch, SurfaceOf(c.whole.part.mesh, tools.frame)).first, 0.5 * kThickness, 0.012)
            << c.name;
    }
}

TEST(ToolMeshes, TheBlankLiesOneGapBelowTheDieAndOneAboveThePunchAndTheBinder)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c);
        double const apart = 0.5 * kThickness + 0.1 * kThickness;
        EXPECT_NEAR(smallestGap(surfaceOf(tools.blank), surfaceOf(tools.die)), apart, 1e-9) << c.name;
        EXPECT_NEAR(smallestGap(surfaceOf(tools.punch), surfaceOf(tools.blank)), apart, 1e-9) << c.name;
        EXPECT_EQ(tools.hasBinder, c.wantsBinder) << c.name;
        if (tools.hasBinder)
        {
            EXPECT_NEAR(smallestGap(surfaceOf(tools.binder), surfaceOf(tools.blank)), apart, 1e-9) << c.name;
        }
    }
}

TEST(ToolMeshes, EveryMeshFacesTheSheetAndIsNamed)
{
    for (Case const & c : cases())
    {
        ToolSet const made = toolsOf(c);
        ToolSet tools;
        tools = made; // copies keep the names
        char const * const names[] = {"VOZBlank", "VOZDie", "VOZPunch", "VOZBinder"};
        std::vector<VOZCatMesh const *> const meshes = meshesOf(tools);
        for (std::size_t m = 0; m < meshes.size(); ++m)
        {
            EXPECT_STREQ(meshes[m]->GetName(), names[m]) << c.name;
            double up = 0.0;
            Surface const surface = surfaceOf(*meshes[m]);
            for (auto const & row : surface.elements)
                up += surface.AreaVector(row)[2];
            EXPECT_EQ(up > 0.0, m != 1) << c.name << " " << names[m];
        }
    }
}

TEST(ToolMeshes, LabelsFollowOnEachOther)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c);
        int nodes = 0;
        int elements = 0;
        for (VOZCatMesh const * mesh : meshesOf(tools))
        {
            EXPECT_EQ(mesh->GetFirstNodeNumber(), nodes) << c.name;
            EXPECT_EQ(mesh->GetFirstElementNumber(), elements) << c.name;
            for (int e = 1; e <= mesh->numElem(); ++e)
                for (int k = 0; k < 4; ++k)
                {
                    EXPECT_GT(mesh->ElementValue(e, k), nodes) << c.name;
                    EXPECT_LE(mesh->ElementValue(e, k), nodes + mesh->numNode()) << c.name;
                }
            nodes += mesh->numNode();
            elements += mesh->numElem();
        }
    }
}

TEST(ToolMeshes, LabelsOfTheDrawBeadsAreLeftFree)
{
    Case const c = cases().front();
    ToolSet tools = toolsOf(c);
    ToolPlan plan;
    plan.file = "part.bdf";
    tools.punch.numNode(10000000 - 1 - tools.blank.numNode() - tools.die.numNode());
    tools.hasBinder = false;
    EXPECT_NO_THROW(ArrangeTools(plan, tools));
    tools.punch.numNode(tools.punch.numNode() + 1);
    try
    {
        ArrangeTools(plan, tools);
        FAIL();
    }
    catch (InputError const & error)
    {
        EXPECT_TRUE(holds(error.what(), "the labels reach 10000000")) << error.what();
    }
}

TEST(ToolMeshes, TheDieAndTheBinderCoverTheBlankWithTheMargin)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c);
        Surface const die = surfaceOf(tools.die);
        EXPECT_EQ(RimsOf(die).size(), 1U) << c.name;
        Surface const blank = surfaceOf(tools.blank);
        PointBox const box = blank.Box();
        Point3 const middle{0.5 * (box.low[0] + box.high[0]), 0.5 * (box.low[1] + box.high[1]), 0.0};
        for (RimEdge const & edge : FreeEdgesOf(blank))
        {
            Point3 const & p = blank.At(edge.from);
            Point3 const out = Unit(Difference({p[0], p[1], 0.0}, middle));
            Point3 const beyond = Sum(p, out, 4.9);
            EXPECT_TRUE(isInside(beyond, die)) << c.name << " " << p[0] << " " << p[1];
        }
        EXPECT_EQ(foldedPairs(die), 0) << c.name;
        EXPECT_EQ(foldedPairs(surfaceOf(tools.punch)), 0) << c.name;
    }
}

// What the punch passes: no node of it lies over or under an element of the binder.
TEST(ToolMeshes, ThePunchPassesThroughTheBinder)
{
    for (Case const & c : cases())
    {
        ToolSet const tools = toolsOf(c);
        if (!tools.hasBinder)
            continue;
        Surface const punch = surfaceOf(tools.punch);
        Surface const binder = surfaceOf(tools.binder);
        EXPECT_EQ(smallestGap(punch, binder), INFINITY) << c.name;
        EXPECT_EQ(smallestGap(binder, punch), INFINITY) << c.name;
        EXPECT_EQ(RimsOf(binder).size(), 2U) << c.name << ": a ring, or a land on each side";
        EXPECT_EQ(RimsOf(punch).size(), 1U) << c.name;
    }
}

TEST(ToolMeshes, AQuarterGivesTheToolsOfTheWhole)
{
    using examples::Extent;
    std::vector<JobPlane> const planes = {{{1, 0, 0}, {0, 0, 0}}, {{0, 1, 0}, {0, 0, 0}}};
    examples::SquareCup const shape = coarseSquareCup();
    WholeJob const whole = jobOf(examples::squareCup(shape, Extent::Whole, examples::Cells::Quads));
    WholeJob const quarter = jobOf(examples::squareCup(shape, Extent::Quarter, examples::Cells::Quads), planes);
    EXPECT_TRUE(quarter.job.planes.empty());
    EXPECT_EQ(quarter.part.mesh.numNode(), whole.part.mesh.numNode());
    ToolSet const a = toolsOf({"whole", whole, false, true});
    ToolSet const b = toolsOf({"quarter", quarter, false, true});
    std::vector<VOZCatMesh const *> const first = meshesOf(a);
    std::vector<VOZCatMesh const *> const second = meshesOf(b);
    ASSERT_EQ(first.size(), second.size());
    for (std::size_t m = 0; m < first.size(); ++m)
    {
        EXPECT_EQ(first[m]->numElem(), second[m]->numElem()) << m;
        auto box = [](VOZCatMesh const & mesh) { return BoxOf(mesh); };
        for (std::size_t axis = 0; axis < 3; ++axis) // the frames' origins differ: a quarter's lies on its planes
            EXPECT_NEAR(box(*first[m]).high[axis] - box(*first[m]).low[axis],
                        box(*second[m]).high[axis] - box(*second[m]).low[axis], 1e-6)
                << m;
    }
    EXPECT_NEAR(a.stroke, b.stroke, 1e-6);
}

TEST(ToolMeshes, TheSameJobGivesTheSameBytes)
{
    Case const c = cases().front();
    ToolSet const a = toolsOf(c);
    ToolSet const b = toolsOf(c);
    for (std::size_t m = 0; m < 4; ++m)
    {
        VOZCatMesh const & first = *meshesOf(a)[m];
        VOZCatMesh const & second = *meshesOf(b)[m];
        ASSERT_EQ(first.numNode(), second.numNode());
        EXPECT_EQ(std::memcmp(first.GetNodeData()[1], second.GetNodeData()[1],
                              sizeof(double[3]) * static_cast<std::size_t>(first.numNode())),
                  0);
    }
}

TEST(ToolMeshes, ThePartIsTurnedSoThatItsRimIsItsLowerEnd)
{
    WholeJob const up = jobOf(examples::cup({}, 1, examples::Extent::Whole, examples::Cells::Quads));
    bool isTurned = false;
    VOZCatAxis const frame = ToolFrame(up, isTurned);
    Surface const part = SurfaceOf(up.part.mesh, frame);
    double rim = 0.0;
    for (RimEdge const & edge : FreeEdgesOf(part))
        rim = part.At(edge.from)[2];
    EXPECT_NEAR(rim, part.Box().low[2], 1e-9);
    EXPECT_TRUE(isTurned) << "the example opens along its stamping direction";
    EXPECT_NEAR(frame.axis(0, 0), up.tipping.frame.axis(0, 0), 1e-15) << "half a turn about local x";
}

TEST(ToolMeshes, RequestsThatFormNothingAreRefusedInWords)
{
    WholeJob const whole = jobOf(examples::cup({}, 1, examples::Extent::Whole, examples::Cells::Quads));
    Outcome const flat = flatOf(whole);
    EXPECT_TRUE(holds(refusal(whole, nullptr, {}), "give a mesh of the blank"));
    ToolRequest request;
    request.processMode = 1;
    EXPECT_TRUE(holds(refusal(whole, &flat, request), "through the sheet"));
    request = {};
    request.gap = 0.0;
    EXPECT_TRUE(holds(refusal(whole, &flat, request), "expected above 0"));
    request = {};
    request.die = VOZCatMesh(whole.part.mesh);
    EXPECT_TRUE(holds(refusal(whole, &flat, request), "a die needs a punch"));
    Outcome other = flat;
    other.nodes.pop_back();
    EXPECT_TRUE(holds(refusal(whole, &other, {}), "run the job anew"));
    WholeJob const level =
        jobOf(examples::extrude(examples::Profile({0.0, 0.0}, 0.0).line(20.0, 4), 20.0, 4, examples::Cells::Quads));
    Outcome const levelFlat = flatOf(level, true);
    EXPECT_TRUE(holds(refusal(level, &levelFlat, {}), "the part is flat"));
}

TEST(ToolMeshes, GivenMeshesAreTakenAsTheyStandAndChecked)
{
    Case const c = cases().front();
    ToolSet const made = toolsOf(c);
    ToolRequest given;
    given.blank = made.blank;
    given.die = made.die;
    given.punch = made.punch;
    given.binder = made.binder;
    given.wantsBinder = true;
    ToolSet const same = MakeTools(c.whole, nullptr, given);
    EXPECT_NEAR(same.stroke, made.stroke, 1e-12);
    EXPECT_EQ(sortedNodes(same.punch), sortedNodes(made.punch));
    EXPECT_FALSE(same.areToolsMade);
    EXPECT_EQ(same.binder.GetFirstNodeNumber(), made.binder.GetFirstNodeNumber());

    ToolRequest changed = given;
    std::swap(changed.die, changed.punch);
    EXPECT_TRUE(holds(refusal(c.whole, nullptr, changed), "the die lies below the punch"));
    changed = given;
    changed.die->Translate(Vec(0.0, 0.0, -made.stroke));
    EXPECT_TRUE(holds(refusal(c.whole, nullptr, changed), "the stroke is")) << "closed tools";
    changed = given;
    changed.die->Translate(Vec(1000.0, 0.0, 0.0));
    EXPECT_TRUE(holds(refusal(c.whole, nullptr, changed), "lay them over each other"));
    changed = given;
    changed.blank->Translate(Vec(0.0, 0.0, 0.5));
    EXPECT_TRUE(holds(refusal(c.whole, nullptr, changed), "the blank comes as near as"));
    changed = given;
    changed.binder->Translate(Vec(0.0, 0.0, 0.2));
    EXPECT_TRUE(holds(refusal(c.whole, nullptr, changed), "the binder comes as near as"));
    changed = given;
    for (int n = 1; n <= changed.die->numNode(); ++n)
        for (double & value : changed.die->GetNodeData()[n])
            value *= 0.001;
    EXPECT_TRUE(holds(refusal(c.whole, nullptr, changed), "length unit"));
    changed = given;
    changed.binder.reset();
    EXPECT_EQ(MakeTools(c.whole, nullptr, changed).warnings.size(), 1U);
}
