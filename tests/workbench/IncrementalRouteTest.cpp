// IncrementalRouteTest.cpp. Jobs on plates whose numbers are known: what stands in the deck, and what is refused.
//
// The part is 8 x 6 mm and 0.78 mm thick, its rim 28 mm; the yield stress 157 MPa, friction 0.15 where nothing else is
// said. Punch and die are 40 mm apart, at one corner 41.

#include "DeckChecks.h"
#include "DeckFixture.h"
#include "IncrementalReport.h"
#include "MaterialDatabase.h"
#include "OutputFile.h"
#include "RouteParts.h"
#include "ToolMeshes.h"

#include <nlohmann/json.hpp>

#include "IncrementalSummary.h"

#include <cmath>
#include <set>

using namespace voz::workbench;

namespace
{
constexpr double kThickness = 0.78e-3; // m
constexpr double kYield = 157e6;       // Pa
constexpr double kRim = 0.028;         // m
constexpr double kFriction = 0.15;
constexpr double kDigits = 1e-8; // of a curve's row, relative
constexpr int kBinderCurve = 101;

class IncrementalRouteTest : public DeckFixture
{
protected:
    // What the binder's curve ends with, newtons.
    double BinderForce(std::string const & i_holder)
    {
        WriteTools();
        Outcome const outcome = Run(i_holder + Tools(true));
        double const force = Deck().curve(kBinderCurve).back().second;
        EXPECT_NEAR(outcome.incremental->binderForce, force, kDigits * force) << "and the same is told";
        return force;
    }
    std::string ReadText(std::string const & i_name) const { return TextIfThere(InSolver(i_name)); }
    static bool Holds(std::string const & i_text, std::string const & i_part)
    {
        return i_text.find(i_part) != std::string::npos;
    }
};
} // namespace

// --- The binder's force ----------------------------------------------------------------------------------------------

TEST_F(IncrementalRouteTest, ALevelArrivesInNewtons)
{
    double const wanted = 0.35 * kThickness * kYield * kRim / (2.0 * kFriction);
    EXPECT_NEAR(BinderForce("[blank_holder]\nlevel = 2\n"), wanted, 1e-6 * wanted);
}

TEST_F(IncrementalRouteTest, ATotalForceArrivesInNewtons)
{
    EXPECT_NEAR(BinderForce("[blank_holder]\ntotal_force = \"19.6 kN\"\n"), 19600.0, 1e-3);
}

TEST_F(IncrementalRouteTest, AForcePerLengthArrivesInNewtons)
{
    double const wanted = 9400.0 * kRim / (2.0 * 0.1);
    EXPECT_NEAR(BinderForce("[friction]\ncoefficient = 0.1\n[blank_holder]\nforce_per_length = \"9.4 N/mm\"\n"), wanted,
                1e-6 * wanted);
}

TEST_F(IncrementalRouteTest, SingleHoldersAreSummedIntoTheBinder)
{
    std::string const two =
        "[[holder]]\nforce = \"5 kN\"\nnodes = [1, 2]\n[[holder]]\nforce = \"2 kN\"\nnodes = [19, 20]\n";
    EXPECT_NEAR(BinderForce(two), 7000.0, 1e-3);
    EXPECT_NEAR(BinderForce(two + "[blank_holder]\ntotal_force = \"10 kN\"\n"), 17000.0, 1e-3);
    double const around = 9400.0 * kRim / (2.0 * kFriction);
    EXPECT_NEAR(BinderForce(two + "[blank_holder]\nforce_per_length = \"9.4 N/mm\"\n"), 7000.0 + around, 1e-3);
}

TEST_F(IncrementalRouteTest, WithoutAHolderThereIsNoBinder)
{
    WriteTools();
    Outcome const outcome = Run(Tools(false));
    EXPECT_EQ(outcome.incremental->binderForce, 0.0);
    EXPECT_EQ(Deck().all("INCLUDE").size(), 3U);
    EXPECT_FALSE(Deck().has("LOAD_RIGID_BODY"));
    EXPECT_FALSE(std::filesystem::exists(InSolver("VOZBinder.mod")));
}

TEST_F(IncrementalRouteTest, ABinderWithoutFrictionIsRefusedAndNeverLeftOutSilently)
{
    WriteTools();
    for (char const * const holder :
         {"[blank_holder]\nlevel = 2\n", "[blank_holder]\ntotal_force = \"1 kN\"\n",
          "[blank_holder]\nforce_per_length = \"1 N/mm\"\n", "[[holder]]\nforce = \"5 kN\"\nnodes = [1, 2]\n"})
        EXPECT_TRUE(Holds(RefusalOf(std::string("[friction]\ncoefficient = 0.001\n") + holder + Tools(true)),
                          "a binder needs friction"))
            << holder;
}

// --- Where things stand ----------------------------------------------------------------------------------------------

// The part stands on end: global x is the stamping direction.
TEST_F(IncrementalRouteTest, ABeadStandsInTheStampingFrameOnTheDie)
{
    WriteTools(true);
    Outcome const outcome = Run(Tools(false) + "[[bead]]\nforce = \"80 N/mm\"\npoints_mm = [[0, 1, 2], [0, 5, 2]]\n");
    VOZCatAxis frame = outcome.frame;
    keyworddeck::Deck const deck = Deck();
    std::vector<keyworddeck::Card> beadNodes;
    for (keyworddeck::Block const * const block : deck.all("NODE"))
        for (keyworddeck::Card const & card : block->cards)
            if (card.integer("NID") > 10000000)
                beadNodes.push_back(card);
    ASSERT_EQ(beadNodes.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i)
    {
        double const place[3] = {0.0, i == 0 ? 1.0 : 5.0, 2.0};
        Point3 const wanted = FlatPlace(place, {}, frame);
        EXPECT_NEAR(beadNodes[i].real("X"), 0.001 * wanted[0], 1e-8);
        EXPECT_NEAR(beadNodes[i].real("Y"), 0.001 * wanted[1], 1e-8);
        EXPECT_NEAR(beadNodes[i].real("Z"), 0.020, 1e-8) << "on the die";
    }
    EXPECT_NEAR(deck.curve(900).front().second, 80000.0, 1e-3) << "N/mm became N/m";
}

TEST_F(IncrementalRouteTest, APadIsTheOutlineOfItsElementsInTheStampingFrame)
{
    WriteTools(true);
    Outcome const outcome = Run(Tools(false) + "[[pad]]\npressure = \"2 MPa\"\nelements = [6, 7]\n");
    keyworddeck::Deck const deck = Deck();
    EXPECT_NEAR(deck.curve(800).back().second, 2e6, 1e-2);
    // Elements 6 and 7 are x 2 .. 6, y 2 .. 4 of the plate, which stands at (z, x, y).
    std::set<std::pair<long, long>> wanted;
    for (double const x : {2.0, 6.0})
        for (double const y : {2.0, 4.0})
        {
            double const place[3] = {0.0, x, y};
            Point3 const p = FlatPlace(place, {}, outcome.frame);
            wanted.insert({std::lround(1000.0 * p[0]), std::lround(1000.0 * p[1])});
        }
    std::set<std::pair<long, long>> found;
    auto const outline = deck.curve(801);
    for (auto const & [x, y] : outline)
        found.insert({std::lround(1e6 * x), std::lround(1e6 * y)});
    for (auto const & corner : wanted)
        EXPECT_TRUE(found.count(corner) == 1) << corner.first << ", " << corner.second;
    EXPECT_NEAR(outline.front().first, outline.back().first, 1e-9) << "closed";
    EXPECT_NEAR(outline.front().second, outline.back().second, 1e-9);
}

TEST_F(IncrementalRouteTest, APadOfTwoPiecesIsTwoPadsAndAHoleIsTold)
{
    WriteTools();
    Run(Tools(false) + "[[pad]]\npressure = \"2 MPa\"\nelements = [1, 4]\n");
    EXPECT_EQ(Deck().all("LOAD_MASK").size(), 2U);
    Outcome const ring = Run(Tools(false) + "[[pad]]\npressure = \"2 MPa\"\nelements = [1, 2, 3, 5, 7, 9, 10, 11]\n");
    EXPECT_EQ(Deck().all("LOAD_MASK").size(), 1U);
    bool isTold = false;
    for (std::string const & warning : ring.warnings)
        isTold = isTold || Holds(warning, "its 1 holes are under pressure");
    EXPECT_TRUE(isTold);
}

TEST_F(IncrementalRouteTest, TheBlankIsSetFirstAndLabelsDoNotMeet)
{
    WriteTools();
    Run("[blank_holder]\ntotal_force = \"1 kN\"\n" + Tools(true));
    keyworddeck::Deck const deck = Deck();
    std::set<int> nodes;
    std::set<int> elements;
    std::size_t nodeCount = 0;
    std::size_t elementCount = 0;
    int least = 1000000;
    for (keyworddeck::Block const & block : deck.blocks())
        for (keyworddeck::Card const & card : block.cards)
        {
            if (block.keyword == "NODE")
                nodes.insert(card.integer("NID")), ++nodeCount;
            if (block.keyword == "ELEMENT_SHELL")
                elements.insert(card.integer("EID")), ++elementCount;
            if (block.keyword == "NODE" && Holds(block.file, "VOZBlank"))
                least = std::min(least, card.integer("NID"));
        }
    EXPECT_EQ(nodes.size(), nodeCount);
    EXPECT_EQ(elements.size(), elementCount);
    EXPECT_EQ(nodeCount, 20U + 3U * 42U);
    EXPECT_EQ(least, 1) << "the results count the blank's nodes from 1";
}

// --- Materials and settings ------------------------------------------------------------------------------------------

TEST_F(IncrementalRouteTest, AnInlineMaterialStandsInTheDatabaseOfTheJobAndInTheDeck)
{
    WriteTools();
    std::string text = Sound();
    text.insert(text.find("K_MPa"),
                "name = \"my <steel>\"\nE = \"190 GPa\"\npoisson = 0.29\ndensity = \"7700 kg/m3\"\n");
    Job const job = ParseJob(text + Tools(false), JobPath());
    RouteOptions options;
    options.folder = Folder() + "/solver";
    RunObserver nobody;
    IncrementalRoute().Run(job, ReadModel(job), options, nobody);
    std::vector<DatabaseMaterial> const database = ReadDatabase(InSolver("materials.xml"));
    JobMaterial const & material = FindMaterial(database, "my <steel>", "").material;
    EXPECT_EQ(database.size(), 1U);
    EXPECT_NEAR(material.strength, 565.32, 1e-9);
    EXPECT_NEAR(material.modulus, 190000.0, 1e-6);
    keyworddeck::Deck const deck = Deck();
    keyworddeck::Card const & card = deck.one("MAT_TRANSVERSELY_ANISOTROPIC_ELASTIC_PLASTIC").card(0);
    EXPECT_NEAR(card.real("RO"), 7700.0, 0.1);
    EXPECT_NEAR(card.real("E"), 190e9, 1e6);
    EXPECT_NEAR(card.real("PR"), 0.29, 1e-6);
    EXPECT_NEAR(card.real("SIGY"), 157e6, 1e3);
    EXPECT_NEAR(card.real("R"), 1.79, 1e-6);
}

TEST_F(IncrementalRouteTest, ATemplateThatIsNotThereIsRefusedWithTheNamesThatAre)
{
    WriteTools();
    std::string const refusal = RefusalOf(Tools(false) + "template = \"no-such-settings\"\n");
    EXPECT_TRUE(Holds(refusal, "job.toml:")) << refusal;
    EXPECT_TRUE(Holds(refusal, "incremental.template: there are no settings \"no-such-settings\"")) << refusal;
    EXPECT_TRUE(Holds(refusal, "has \"")) << refusal;
}

// --- Numbers and checks ----------------------------------------------------------------------------------------------

TEST_F(IncrementalRouteTest, TheProcessNumbersAreThoseOfTheDeck)
{
    WriteTools();
    Outcome const outcome = Run(Tools(false));
    IncrementalFigures const & figures = *outcome.incremental;
    keyworddeck::Deck const deck = Deck();
    EXPECT_NEAR(figures.leastGap, 40.0, 1e-6);
    EXPECT_NEAR(figures.greatestGap, 41.0, 1e-6);
    EXPECT_NEAR(figures.stroke, 40.0 - 0.78, 1e-6) << "process mode 2";
    EXPECT_NEAR(figures.endTime, 0.001 * figures.stroke / figures.velocity + figures.velocity / figures.acceleration,
                1e-12);
    EXPECT_NEAR(deck.one("CONTROL_TERMINATION").card(0).real("ENDTIM"), figures.endTime, 1e-4 * figures.endTime);
    auto const curve = deck.curve(100);
    ASSERT_EQ(curve.size(), figures.punchCurve.size());
    for (std::size_t i = 0; i < curve.size(); ++i)
    {
        EXPECT_NEAR(curve[i].first, figures.punchCurve[i][0], 1e-9);
        EXPECT_NEAR(curve[i].second, figures.punchCurve[i][1], 1e-9);
    }
    auto const states = deck.curve(44);
    ASSERT_EQ(states.size() + 1, figures.outputs.size()) << "the last is the end of the run";
    for (std::size_t i = 0; i < states.size(); ++i)
        EXPECT_NEAR(states[i].first, figures.outputs[i].time, 1e-9);
    EXPECT_EQ(figures.outputs.front().time, 0.0);
    EXPECT_EQ(figures.outputs.back().time, figures.endTime);
    for (OutcomeCheck const & check : outcome.checks)
        EXPECT_TRUE(check.passed || Holds(check.name, "include line")) << check.name << ": " << check.value;
}

TEST_F(IncrementalRouteTest, ModesOfTheJobReachTheDeck)
{
    WriteTools();
    EXPECT_NEAR(Run(Tools(false) + "process_mode = 0\n").incremental->stroke, 40.0, 1e-6);
    IncrementalFigures const offset = *Run(Tools(false) + "tool_mode = 1\n").incremental;
    EXPECT_NEAR(offset.toolOffset, 0.78, 1e-9);
    double const clear = Run(Tools(false)).incremental->velocity;
    double const set = Run(Tools(false) + "process_flag = true\n").incremental->velocity;
    EXPECT_NE(clear, set) << "the settings hold two velocities";
}

TEST_F(IncrementalRouteTest, AGivenBlankLeavesAnOutcomeWithoutResults)
{
    WriteTools();
    Outcome const outcome = Run(Tools(false));
    EXPECT_EQ(outcome.route, "incremental");
    EXPECT_FALSE(outcome.HasResults());
    EXPECT_FALSE(outcome.hasBlank);
    EXPECT_FALSE(std::filesystem::exists(InSolver("kernel")));
}

TEST_F(IncrementalRouteTest, TheSectionOfTheReportShowsNumbersTimesAndCurve)
{
    WriteTools();
    Outcome const outcome = Run(Tools(false));
    std::string const html = DeckSection(outcome);
    for (char const * const part : {"Process numbers", "Output states", "die.bdf", "<svg", "velocity of the punch, m/s",
                                    "travel of the punch, mm", "no binder", "39.220 mm"})
        EXPECT_TRUE(Holds(html, part)) << part;
    EXPECT_EQ(DeckSection(Outcome()), "");
    nlohmann::json const json = IncrementalJson(outcome);
    EXPECT_NEAR(json["incremental"]["stroke_mm"].get<double>(), 39.22, 1e-6);
    EXPECT_EQ(json["incremental"]["meshes"].size(), 3U);
}

TEST_F(IncrementalRouteTest, TheDeckForOpenSolversStandsBesideTheOtherWithWhatDiffers)
{
    WriteTools();
    EXPECT_TRUE(Run(Tools(false)).incremental->openDeck.empty());
    EXPECT_FALSE(std::filesystem::exists(InSolver("inputls_open.dyn")));
    Outcome const outcome = Run(Tools(false) + "open_solver = true\n");
    EXPECT_FALSE(outcome.incremental->openDeck.empty());
    EXPECT_TRUE(Holds(ReadText("inputls_open.dyn"), "*CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE"));
    EXPECT_TRUE(Holds(ReadText("inputls.dyn"), "*CONTACT_FORMING_ONE_WAY_SURFACE_TO_SURFACE"));
    EXPECT_TRUE(Holds(DeckSection(outcome), outcome.incremental->openDeck.front().first));
}

// --- Refused ---------------------------------------------------------------------------------------------------------

TEST_F(IncrementalRouteTest, WhatNoDeckCanSayIsRefusedByName)
{
    WriteTools();
    EXPECT_TRUE(
        Holds(RefusalOf(Tools(false) + "[[constraint]]\nx_mm = 0\nnodes = [1]\n"), "prescribes no displacements"));
    EXPECT_TRUE(Holds(RefusalOf(Tools(false) + "[auto_strain]\ntarget_point_mm = [1, 2, 3]\ntarget_strain = \"3 %\"\n"),
                      "cannot be asked for strains"));
    EXPECT_TRUE(Holds(RefusalOf(Tools(true) + "[blank_holder]\nlevel = 4\n"), "level 4 holds the edge fast"));
    std::string text = Sound();
    text.replace(text.find("[material]"), 10, "[material]\nset = \"1\"");
    Job const job = ParseJob(text + Tools(false), JobPath());
    EXPECT_THROW(IncrementalRoute().CheckJob(job), InputError);
}

TEST_F(IncrementalRouteTest, ADieBelowThePunchIsRefused)
{
    WriteTools();
    WritePlate("die.bdf", {-2, -2, 2, 6, 5, -30});
    EXPECT_NE(RefusalOf(Tools(false)), "not refused");
    WriteTools();
    WritePlate("punch.bdf", {-2, -2, 2, 6, 5, -20});
    EXPECT_TRUE(Holds(RefusalOf(Tools(false)), "40.000 mm apart everywhere"));
}

TEST_F(IncrementalRouteTest, GivenMeshesThatDoNotFitAreRefusedWithTheJobAndTheLineOfItsTable)
{
    WriteTools();
    WritePlate("die.bdf", {-2, -2, 2, 6, 5, -30});
    std::string const refusal = RefusalOf(Tools(false));
    EXPECT_TRUE(Holds(refusal, "job.toml:")) << refusal;
    EXPECT_TRUE(Holds(refusal, ": tools: the die lies below the punch")) << refusal;
}

// --- What cannot work, or was not written ----------------------------------------------------------------------------

// Tools 4 mm apart: the velocity of 5 m/s is reached and left again within 5 mm at 5000 m/s2.
TEST_F(IncrementalRouteTest, AStrokeTooShortForTheVelocityFailsTheCheck)
{
    WriteTools();
    WritePlate("die.bdf", {-2, -2, 2, 6, 5, 2});
    WritePlate("punch.bdf", {-2, -2, 2, 6, 5, -2, false, 1.0});
    Outcome const outcome = Run(Tools(false));
    EXPECT_NEAR(outcome.incremental->stroke, 4.0 - 0.78, 1e-6);
    auto const check = std::ranges::find(outcome.checks, "way of the punch by its velocity curve", &OutcomeCheck::name);
    ASSERT_NE(check, outcome.checks.end());
    EXPECT_FALSE(check->passed);
    EXPECT_FALSE(check->isWarning);
    EXPECT_TRUE(Holds(check->limit, "settings with a lower velocity"));
}

TEST_F(IncrementalRouteTest, ADeckOrAMeshThatIsCutOrMissingIsNoDeck)
{
    WriteTools();
    Run(Tools(false));
    std::string const folder = Folder() + "/solver";
    EXPECT_NO_THROW(RequireWholeDeck(folder));
    for (char const * const name : {"VOZDie.mod", "VOZBlank.mod", "inputls.dyn"})
    {
        std::string const text = ReadText(name);
        Write(std::string("solver/") + name, text.substr(0, text.rfind("*END") + 2));
        EXPECT_THROW(RequireWholeDeck(folder), OutputError) << name;
        Write(std::string("solver/") + name, "");
        EXPECT_THROW(RequireWholeDeck(folder), OutputError) << name;
        std::filesystem::remove(InSolver(name));
        EXPECT_THROW(RequireWholeDeck(folder), OutputError) << name;
        Write(std::string("solver/") + name, text);
        EXPECT_NO_THROW(RequireWholeDeck(folder)) << name;
    }
}

TEST_F(IncrementalRouteTest, TheSurfaceOfTheKernelsBinderIsToldToStayOut)
{
    WriteTools();
    WritePlate("surface.bdf", {-2, -2, 2, 6, 5, 0});
    bool isTold = false;
    for (std::string const & warning : Run(Tools(false) + "[binder]\nfile = \"surface.bdf\"\n").warnings)
        isTold = isTold || Holds(warning, "[binder] is the surface of the kernel's run");
    EXPECT_TRUE(isTold);
}

// --- Whole from a quarter --------------------------------------------------------------------------------------------

TEST_F(IncrementalRouteTest, AQuarterIsMirroredToTheWholeWithItsBeads)
{
    WritePlate("part.bdf", {0, 0, 2, 4, 3, 0});
    WritePlate("blank.bdf", {0, 0, 2, 4, 3, 0});
    WritePlate("die.bdf", {0, 0, 2, 5, 4, 20});
    WritePlate("punch.bdf", {0, 0, 2, 5, 4, -20, false, 1.0});
    WritePlate("binder.bdf", {0, 0, 2, 5, 4, -10});
    Outcome const outcome = Run("[symmetry]\nplanes = \"both\"\n[blank_holder]\ntotal_force = \"12 kN\"\n" +
                                Tools(true) + "[[bead]]\nforce = \"80 N/mm\"\npoints_mm = [[6, 1, 0], [6, 5, 0]]\n");
    IncrementalFigures const & figures = *outcome.incremental;
    ASSERT_EQ(figures.meshes.size(), 4U);
    EXPECT_EQ(figures.meshes[0].elements, 48);
    EXPECT_EQ(figures.meshes[0].nodes, 63) << "9 x 7";
    EXPECT_EQ(figures.meshes[1].elements, 80);
    EXPECT_NEAR(Deck().curve(kBinderCurve).back().second, 12000.0, 1e-3) << "of the whole part";
    EXPECT_EQ(Deck().all("CONTACT_DRAWBEAD").size(), 4U);
    bool isTold = false;
    for (std::string const & remark : figures.remarks)
        isTold = isTold || Holds(remark, "mirrored to the whole part");
    EXPECT_TRUE(isTold);
}
