// D3plotTimesTest.cpp: which state becomes which record, over adaptive families too.

#include "D3plotFixture.h"

namespace
{
using Ints = std::vector<int>;

class D3plotTimes : public D3plotFixture
{
protected:
    // The steps of the records, and the time of the state behind each, which StateOf puts into the heights.
    std::vector<std::pair<int, float>> Chosen(std::vector<double> const & states, std::vector<double> const & points)
    {
        folder.Write("d3plot", OneFile(Small(), states));
        std::vector<std::pair<int, float>> chosen;
        for (Record const & record : Convert(points))
            chosen.emplace_back(record.step, record.coordinates[2]);
        return chosen;
    }
    using Chosens = std::vector<std::pair<int, float>>;
};

TEST_F(D3plotTimes, TheNearestStateIsTaken)
{
    EXPECT_EQ(Chosen({0.0, 0.24, 0.265, 0.5, 0.76, 1.0}, {0.0, 0.25, 0.5, 0.75, 1.0}),
              (Chosens{{0, 0.0F}, {1, 0.24F}, {2, 0.5F}, {3, 0.76F}, {4, 1.0F}}));
}

TEST_F(D3plotTimes, AStateMayLieOffByATenthOfTheWayToTheNextPoint)
{
    EXPECT_EQ(Chosen({0.0, 0.27}, {0.0, 0.25, 0.5}), (Chosens{{0, 0.0F}, {1, 0.27F}}));
    EXPECT_EQ(Chosen({0.0, 0.28}, {0.0, 0.25, 0.5}), (Chosens{{0, 0.0F}}));
    EXPECT_EQ(result.missing, (Ints{1, 2}));
    EXPECT_EQ(Chosen({0.0, 0.23}, {0.0, 0.25, 0.5}), (Chosens{{0, 0.0F}, {1, 0.23F}}));
    EXPECT_EQ(Chosen({0.0, 0.22}, {0.0, 0.25, 0.5}), (Chosens{{0, 0.0F}}));
}

TEST_F(D3plotTimes, PointsNearerToEachOtherThanTheSolversStepShareItsState)
{
    // The last row of the curve and the end of the run within one step: one state for both, at either's time.
    EXPECT_EQ(Chosen({0.0, 0.5, 1.0}, {0.0, 0.5, 0.9995, 1.0}), (Chosens{{0, 0.0F}, {1, 0.5F}, {2, 1.0F}, {3, 1.0F}}));
    EXPECT_EQ(Chosen({0.0, 0.5, 0.9995}, {0.0, 0.5, 0.9995, 1.0}),
              (Chosens{{0, 0.0F}, {1, 0.5F}, {2, 0.9995F}, {3, 0.9995F}}));
    EXPECT_EQ(Chosen({0.0, 0.5, 0.9995, 1.0}, {0.0, 0.5, 0.9995, 1.0}),
              (Chosens{{0, 0.0F}, {1, 0.5F}, {2, 0.9995F}, {3, 1.0F}}));
    EXPECT_EQ(Chosen({0.0, 0.5, 0.998}, {0.0, 0.5, 0.998, 1.0}), (Chosens{{0, 0.0F}, {1, 0.5F}, {2, 0.998F}}))
        << "further apart than a thousandth of the run";
    EXPECT_EQ(result.missing, Ints{3});
}

TEST_F(D3plotTimes, APointAloneTakesNoStateFarFromIt)
{
    EXPECT_EQ(Chosen({0.0, 0.5}, {1.0}), Chosens{});
    EXPECT_EQ(Chosen({0.0, 0.95}, {1.0}), (Chosens{{0, 0.95F}}));
}

TEST_F(D3plotTimes, EqualPointsTakeTheSameState)
{
    EXPECT_EQ(Chosen({0.0, 1.0}, {0.0, 1.0, 1.0}), (Chosens{{0, 0.0F}, {1, 1.0F}, {2, 1.0F}}));
}

TEST_F(D3plotTimes, ZerosBehindTheLastStateAreNoState)
{
    d3plot::Model const model = Small();
    std::string const bytes = OneFile(model, {0.0, 0.5});
    folder.Write("d3plot", bytes.substr(0, bytes.size() - 4) + std::string(8192, '\0'));
    EXPECT_EQ(Convert({0.0, 0.5}).size(), 2U);
    EXPECT_EQ(Notes(), "");
}

TEST_F(D3plotTimes, EachAdaptationBringsAMeshOfItsOwn)
{
    d3plot::Model const coarse = Small();
    d3plot::Model fine = Small(); // the quadrilateral in two triangles, with other labels
    fine.shells.insert(fine.shells.begin() + 2, {{2, 4, 5, 5}, 2});
    fine.shells[1].node = {2, 3, 4, 4};
    fine.shellLabels = {700, 1, 3, 2, 701};
    folder.Write("d3plot", OneFile(coarse, {0.0, 0.25, 0.5}));
    d3plot::Writer const writer(fine);
    folder.Write("d3plotaa", writer.Geometry() + writer.EndMark());
    folder.Write("d3plotaa01", writer.Of(StateOf(fine, 0.5)) + writer.Of(StateOf(fine, 0.75)));
    folder.Write("d3plotab", OneFile(coarse, {1.0}));
    std::vector<Record> const records = Convert({0.0, 0.25, 0.5, 0.75, 1.0});
    ASSERT_EQ(records.size(), 5U) << Notes();
    Ints shells;
    for (Record const & record : records)
        shells.push_back(static_cast<int>(record.connectivity.size() / 4));
    EXPECT_EQ(shells, (Ints{2, 2, 3, 3, 2})) << "at one time the later mesh is taken";
    EXPECT_EQ(records[3].connectivity, (Ints{1, 2, 3, 0, 2, 5, 3, 0, 1, 3, 4, 0}));
    EXPECT_EQ(records[3].stress.size(), 36U);
}

TEST_F(D3plotTimes, TheTimeOfResultsThatGrowIsThatOfTheLastWholeState)
{
    d3plot::Model const model = Small();
    EXPECT_LT(voz::launch::LastStateTime(folder.Path()), 0.0);
    std::string const bytes = OneFile(model, {0.0, 0.25, 0.5});
    folder.Write("d3plot", bytes.substr(0, 100));
    EXPECT_LT(voz::launch::LastStateTime(folder.Path()), 0.0);
    folder.Write("d3plot", bytes.substr(0, bytes.size() - 100));
    EXPECT_EQ(voz::launch::LastStateTime(folder.Path()), 0.25);
}
} // namespace
