// IncrementalEndToEndTest.cpp: the whole way of the incremental route: the library writes a deck, starts the launcher
// beside it, a stand-in reads the deck card by card and forms the blank in a known way, the launcher converts, the
// library imports.

#include "LaunchFixture.h"

#include <filesystem>
#include <fstream>

namespace
{
class IncrementalEndToEnd : public LaunchFixture
{
protected:
    void Launch(std::string const & i_mode = "")
    {
        ASSERT_EQ(Run(), 0);
        ASSERT_TRUE(std::filesystem::exists(Folder() + "/inputls.dyn"));
        standInMode.Set(i_mode);
        ASSERT_EQ(solver.RunLSDyna(), 0);
        states = Wait();
        ASSERT_FALSE(states.empty()) << "the launcher gave no sign";
    }

    // Each import makes a mesh; the one that it takes the place of is the caller's.
    long GetResults(VOZSolverIncremental & io_solver, Result ** io_apLayers)
    {
        VOZCatMesh * const earlier = io_solver.GetResultMesh();
        long const status = io_solver.GetResults(io_apLayers);
        if (io_solver.GetResultMesh() != earlier)
            replaced.emplace_back(earlier);
        return status;
    }

    // The mesh of one step, then results sized for it; null if the step is not there.
    std::unique_ptr<LayerStores> Import(VOZSolverIncremental & io_solver, int i_step)
    {
        Prepare(io_solver);
        io_solver.SetCurrentStepIndex(i_step);
        if (GetResults(io_solver, nullptr) != 0)
            return nullptr;
        VOZCatMesh const & mesh = *io_solver.GetResultMesh();
        index(mesh.numElem());
        auto stores = std::make_unique<LayerStores>(mesh);
        EXPECT_EQ(GetResults(io_solver, stores->layers()), 0);
        return stores;
    }

    static double Percent(double logarithmic) { return 100.0 * (std::exp(logarithmic) - 1.0); }

    // Every element has the strains of the motion at that share of the way.
    void ExpectTheMotion(LayerStores & io_stores, int i_elements, double i_share)
    {
        for (int layer = 0; layer < 3; ++layer)
        {
            double const side = 1.0 - layer; // top, middle, bottom
            double const major = i_share * (standin::kMajor + side * standin::kBending);
            double const minor = i_share * standin::kMinor;
            Result const & result = io_stores[static_cast<std::size_t>(layer)];
            for (int e = 1; e <= i_elements; ++e)
            {
                ASSERT_NEAR(result.strain(e, 0), Percent(major), 2e-4) << layer << " element " << e;
                ASSERT_NEAR(result.strain(e, 1), Percent(minor), 2e-4) << layer << " element " << e;
                ASSERT_NEAR(result.strain(e, 2), Percent(-major - minor), 2e-4) << layer << " element " << e;
                ASSERT_NEAR(result.thickness(e), kThickness * std::exp(-major - minor), 1e-9);
            }
            for (int n = 1; n <= result.numNodeResult(); ++n)
                ASSERT_NEAR(result.stress(n), standin::kYield * (1.0 + i_share), 1e-6 * standin::kYield);
        }
    }

    // Positions in mm of a mesh that began as that one, in metres by now.
    static void ExpectTheShape(VOZCatMesh & i_mesh, VOZCatMesh & i_first, double i_share)
    {
        ASSERT_EQ(i_mesh.numNode(), i_first.numNode());
        double way = 0.0;
        for (int n = 1; n <= i_mesh.numNode(); ++n)
        {
            std::array<double, 3> first{}, now{};
            for (std::size_t k = 0; k < 3; ++k)
            {
                first[k] = i_first.GetNodeData()[n][k];
                now[k] = i_mesh.GetNodeData()[n][k] * 0.001;
            }
            if (n == 1)
                way = now[2] - first[2];
            auto const moved = standin::Moved(first, i_share, way);
            for (std::size_t k = 0; k < 3; ++k)
                ASSERT_NEAR(now[k], moved[k], 2e-8) << "node " << n;
        }
    }

    static constexpr double kThickness = 0.0008; // m
    std::vector<std::string> states;
    std::vector<std::unique_ptr<VOZCatMesh>> replaced;
};

TEST_F(IncrementalEndToEnd, TheKnownStrainsAndTheShapeComeBack)
{
    Launch();
    ASSERT_EQ(states.back(), "done") << Status("message");
    VOZSolverIncremental importer; // nothing of the run is needed
    auto const last = Import(importer, 9);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(importer.GetResultMesh()->numElem(), part.numElem());
    ExpectTheMotion(*last, part.numElem(), 1.0);
    ExpectTheShape(*importer.GetResultMesh(), part, 1.0);

    VOZSolverIncremental first;
    auto const begin = Import(first, 0);
    ASSERT_NE(begin, nullptr);
    ExpectTheMotion(*begin, part.numElem(), 0.0);
}

TEST_F(IncrementalEndToEnd, EveryOutputPointHasARecordOfItsStep)
{
    Launch("double");
    ASSERT_EQ(states.back(), "done") << Status("message");
    int const records = std::stoi(Status("records"));
    EXPECT_GE(records, 3);
    float before = -1.0F;
    for (int step = 0; step < records; ++step)
    {
        VOZSolverIncremental importer;
        auto const stores = Import(importer, step);
        ASSERT_NE(stores, nullptr) << step;
        EXPECT_GT(stores->mid.strain(1, 0), before) << "the punch goes on";
        before = static_cast<float>(stores->mid.strain(1, 0));
    }
    VOZSolverIncremental importer;
    EXPECT_EQ(Import(importer, records), nullptr) << "there are no more";
}

TEST_F(IncrementalEndToEnd, AMeshThatWasRefinedOnTheWayIsImportedAsItIsThen)
{
    Launch("adaptive");
    ASSERT_EQ(states.back(), "done") << Status("message");
    VOZSolverIncremental early, late;
    ASSERT_NE(Import(early, 1), nullptr);
    EXPECT_EQ(early.GetResultMesh()->numElem(), part.numElem());
    auto const last = Import(late, 9);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(late.GetResultMesh()->numElem(), 2 * part.numElem());
    EXPECT_EQ(late.GetResultMesh()->elem(1, 3), late.GetResultMesh()->elem(1, 0)) << "a triangle";
    ExpectTheMotion(*last, 2 * part.numElem(), 1.0);
}

TEST_F(IncrementalEndToEnd, TheStatusFollowsTheRun)
{
    Launch("slow");
    ASSERT_EQ(states.back(), "done") << Status("message");
    EXPECT_NE(std::find(states.begin(), states.end(), "running"), states.end());
    EXPECT_EQ(Status("time"), Status("end"));
    EXPECT_GT(std::stod(Status("end")), 0.0);
    EXPECT_NE(Read("launch.log").find("N o r m a l"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Folder() + "/output.voz.new"));
}

TEST_F(IncrementalEndToEnd, ASolverThatCrashesIsSaidAndWhatIsWholeIsConverted)
{
    Launch("crash");
    EXPECT_EQ(states.back(), "failed");
    EXPECT_NE(Status("message").find("ended with code 7"), std::string::npos) << Status("message");
    EXPECT_NE(Status("message").find("negative area"), std::string::npos) << "the log's last words";
    EXPECT_NE(Status("message").find("5 of 10 records"), std::string::npos) << Status("message");
    EXPECT_EQ(Status("records"), "5");
    VOZSolverIncremental importer;
    EXPECT_NE(Import(importer, 4), nullptr);
}

TEST_F(IncrementalEndToEnd, ALastStateThatIsCutIsSaid)
{
    Launch("halfway");
    EXPECT_EQ(states.back(), "failed");
    EXPECT_NE(Status("message").find("ended with an error"), std::string::npos) << Status("message");
    EXPECT_NE(Status("message").find("9 of 10 records"), std::string::npos) << Status("message");
    EXPECT_NE(Status("message").find("cut short"), std::string::npos) << Status("message");
}

TEST_F(IncrementalEndToEnd, ResultsThatAreNoneAreSaid)
{
    for (char const * const bad : {"garbage", "nothing"})
    {
        if (std::string(bad) == "garbage")
            Launch(bad);
        else
        {
            standInMode.Set(bad);
            std::filesystem::remove(Folder() + "/launch.status");
            ASSERT_EQ(solver.RunLSDyna(), 0);
            states = Wait();
        }
        EXPECT_EQ(states.back(), "failed") << bad;
        EXPECT_NE(Status("message").find("0 of 10 records"), std::string::npos) << Status("message");
        EXPECT_FALSE(std::filesystem::exists(Folder() + "/output.voz")) << bad;
    }
}

TEST_F(IncrementalEndToEnd, ASolverThatIsNotThereIsSaidWithWhatToSet)
{
    standIn.Set(work.Path("no-solver"));
    Launch();
    EXPECT_EQ(states.back(), "failed");
    EXPECT_NE(Status("message").find("VOZDynaSolver names"), std::string::npos) << Status("message");
}
} // namespace
