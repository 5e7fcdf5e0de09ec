// LaunchCommandTest.cpp. The whole way as a user goes it: a part alone, tools made from it, the deck, the launcher, a
// stand-in for the solver that reads the deck card by card, and the import of what it left.

#include "CommandFixture.h"
#include "MeshFile.h"

#include "child/StandInMotion.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace
{
using nlohmann::json;

class LaunchCommand : public CommandFixture
{
protected:
    LaunchCommand()
    {
        Write("cup.toml",
              "title = \"Cup\"\n[mesh]\nfile = \"" VOZ_SOURCE_DIR
              "/examples/cylindrical_cup/cylindrical_cup.k\"\n[blank]\nthickness = \"0.78 mm\"\n[material]\n"
              "from = \"mild-140-270\"\n[blank_holder]\ntotal_force = \"25 kN\"\n[output]\nvtu = false\n");
    }
    static std::string With(std::string const & i_solver, std::string const & i_mode = "")
    {
        return "VOZDynaSolver='" + i_solver + "' StandInMode='" + i_mode + "'";
    }
    Ran Launch(std::string const & i_solver, std::string const & i_mode = "") const
    {
        return Dravo("run cup.toml --route incremental --launch", With(i_solver, i_mode));
    }
    std::string Status() const { return ReadBack(Path("out/cup-001/solver/launch.status")); }
};
// The stand-in refines by a diagonal in each quadrilateral; triangles stay.
int RefinedElements(std::string const & i_blank)
{
    VOZCatMesh const blank = voz::workbench::ReadMesh(i_blank).mesh;
    int count = 0;
    for (int e = 1; e <= blank.numElem(); ++e)
        count += blank.isTriangle(e) != 0 ? 1 : 2;
    return count;
}
} // namespace

TEST_F(LaunchCommand, FromAPartAloneToImportedStrains)
{
    Ran const ran = Launch(VOZ_STAND_IN_SOLVER);
    ASSERT_EQ(ran.code, 0) << ran.err << ran.out;
    EXPECT_TRUE(ran.Says("dravo: explicit solver") || ran.Says("dravo: conversion of the results") ||
                ran.Shows("Solved"))
        << ran.err;
    json const run = json::parse(ReadBack(Path("out/cup-001/summary.json")));
    std::size_t const states = run["incremental"]["outputs"].size();
    EXPECT_TRUE(ran.Shows("Solved                " + std::to_string(states) + " states")) << ran.out;

    Ran const last = Dravo("import cup.toml --json");
    ASSERT_EQ(last.code, 0) << last.err;
    json const document = json::parse(last.out);
    EXPECT_EQ(document["imported"]["step"], states - 1);
    EXPECT_EQ(document["elements"], run["incremental"]["meshes"][0]["elements"]);
    EXPECT_NEAR(document["imported"]["time_s"].get<double>(), run["incremental"]["end_time_s"].get<double>(), 1e-9);
    double const major = 100.0 * std::expm1(standin::kMajor);
    EXPECT_NEAR(document["strains"]["greatest_major_percent"].get<double>(), major, 0.01 * major);
    double const outer = 100.0 * std::expm1(standin::kMajor + standin::kBending);
    EXPECT_NEAR(document["strains"]["top"]["greatest_major_percent"].get<double>(), outer, 0.01 * outer);
    double const thickness = 0.78 * std::exp(-standin::kMajor - standin::kMinor);
    EXPECT_NEAR(document["sheet"]["least_mm"].get<double>(), thickness, 0.001);

    json const first = json::parse(Dravo("import cup.toml --step 0 --json").out);
    EXPECT_NEAR(first["strains"]["greatest_major_percent"].get<double>(), 0.0, 1e-3);
    EXPECT_NEAR(first["sheet"]["least_mm"].get<double>(), 0.78, 1e-5);
}

TEST_F(LaunchCommand, ARefinedMeshIsImportedWithItsOwnElements)
{
    ASSERT_EQ(Launch(VOZ_STAND_IN_SOLVER, "adaptive").code, 0);
    json const run = json::parse(ReadBack(Path("out/cup-001/summary.json")));
    json const last = json::parse(Dravo("import cup.toml --json").out);
    EXPECT_EQ(last["elements"].get<int>(), RefinedElements(Path("out/cup-001/solver/VOZBlank.mod")));
    EXPECT_GT(last["elements"].get<int>(), run["incremental"]["meshes"][0]["elements"].get<int>());
    Ran const all = Dravo("import cup.toml --all");
    EXPECT_EQ(all.code, 0) << all.err;
    EXPECT_NE(ReadBack(Path("out/cup-001/steps/report.html")).find("Imported steps"), std::string::npos);
}

TEST_F(LaunchCommand, ASolverThatFailsEndsWithItsOwnWords)
{
    Ran const ran = Launch(VOZ_STAND_IN_SOLVER, "crash");
    EXPECT_EQ(ran.code, 4);
    EXPECT_TRUE(ran.Says("the explicit solver failed: ")) << ran.err;
    EXPECT_TRUE(std::filesystem::exists(Path("out/cup-001/report.html"))) << "the deck and its report stay";
}

TEST_F(LaunchCommand, ASolverThatIsNotThereIsTold)
{
    Ran const ran = Launch(Path("no-such-solver"));
    EXPECT_EQ(ran.code, 4);
    EXPECT_TRUE(ran.Says("no-such-solver") || ran.Says("VOZDynaSolver")) << ran.err;
}

// The run is watched until the solver is at work, then interrupted.
TEST_F(LaunchCommand, AnInterruptEndsTheWatchingAndTheSolverGoesOn)
{
    std::string const script = "cd '" + Folder() + "' && " + With(VOZ_STAND_IN_SOLVER, "slow") +
                               " '" VOZ_BINARY_DIR
                               "/bin/dravo' run cup.toml --route incremental --launch >stdout.txt 2>stderr.txt & "
                               "pid=$!; n=0; while ! grep -q state=running '" +
                               Path("out/cup-001/solver/launch.status") +
                               "' 2>/dev/null && [ $n -lt 600 ]; do sleep 0.1; n=$((n+1)); done; kill -INT $pid; "
                               "wait $pid";
    Write("watch.sh", script);
    int const status = std::system(("sh '" + Path("watch.sh") + "'").c_str());
    EXPECT_EQ(status >> 8 & 0xff, 130) << ReadBack(Path("stderr.txt"));
    EXPECT_NE(ReadBack(Path("stderr.txt")).find("the solver goes on in"), std::string::npos)
        << ReadBack(Path("stderr.txt"));
    std::string const wait = "n=0; while ! grep -q state=done '" + Path("out/cup-001/solver/launch.status") +
                             "' && [ $n -lt 600 ]; do sleep 0.1; n=$((n+1)); done";
    EXPECT_EQ(std::system(wait.c_str()), 0);
    EXPECT_NE(Status().find("state=done"), std::string::npos) << Status();
    EXPECT_EQ(Dravo("import cup.toml").code, 0);
}
