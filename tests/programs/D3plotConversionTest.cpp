// D3plotConversionTest.cpp: states become records, byte for byte, whatever the width and order of the words, the files
// that hold them and what else stands in them.

#include "D3plotFixture.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace
{
using Floats = std::vector<float>;

class D3plotConversion : public D3plotFixture
{
protected:
    // One shell's three components at its four places.
    static void AddFour(Floats & io_values, float a, float b, float c)
    {
        for (int place = 0; place < 4; ++place)
            io_values.insert(io_values.end(), {a, b, c});
    }

    static void Append(std::string & io_bytes, int value)
    {
        io_bytes.append(reinterpret_cast<char const *>(&value), 4);
    }

    template <class Value>
    static void Append(std::string & io_bytes, std::vector<Value> const & values)
    {
        io_bytes.append(reinterpret_cast<char const *>(values.data()), 4 * values.size());
    }

    // What the second and third shell of Small() give: their x axes lie along the global one, but for the triangle,
    // whose first side also does; so the tensors' xx, yy and twice xy stand as they are.
    static Record Expected(d3plot::Model const & model, int step, double time)
    {
        d3plot::State const state = StateOf(model, time);
        Record record;
        record.step = step;
        for (std::size_t node : {1U, 2U, 3U, 4U, 5U})
            for (double const x : state.nodes[node])
                record.coordinates.push_back(static_cast<float>(x));
        record.connectivity = {1, 2, 3, 4, 2, 5, 3, 0};
        for (std::size_t shell : {1U, 2U})
        {
            d3plot::ShellValues const & v = state.shells[shell];
            auto const f = [](double x) { return static_cast<float>(x); };
            AddFour(record.stress, f(v.stress[0][0]), f(v.stress[2][0]), f(v.stress[1][0]));
            AddFour(record.top, f(v.outer[0]), f(v.outer[1]), f(2 * v.outer[3]));
            AddFour(record.bottom, f(v.inner[0]), f(v.inner[1]), f(2 * v.inner[3]));
            AddFour(record.middle, f(0.5 * (v.inner[0] + v.outer[0])), f(0.5 * (v.inner[1] + v.outer[1])),
                    f(v.inner[3] + v.outer[3]));
        }
        return record;
    }

    void ExpectTheSmallRecords(d3plot::Model const & model, std::string const & what = "")
    {
        std::vector<Record> const records = Convert({0.0, 0.5, 1.0});
        ASSERT_EQ(records.size(), 3U) << what << Notes();
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(records[static_cast<std::size_t>(i)] == Expected(model, i, 0.5 * i)) << what << " step " << i;
        EXPECT_EQ(Notes(), "") << what;
        EXPECT_TRUE(result.missing.empty());
    }
};

TEST_F(D3plotConversion, ARecordHasItsFieldsInOrderFourBytesEach)
{
    d3plot::Model const model = Small();
    folder.Write("d3plot", OneFile(model, {0.25}));
    EXPECT_EQ(Convert({0.25}).size(), 1U) << Notes();
    Record const r = Expected(model, 0, 0.25);
    std::string bytes;
    Append(bytes, 0);
    Append(bytes, 5);
    Append(bytes, r.coordinates);
    Append(bytes, 2);
    Append(bytes, r.connectivity);
    Append(bytes, 24); // four places, two shells, three components
    for (Floats const * values : {&r.stress, &r.top, &r.bottom, &r.middle})
        Append(bytes, *values);
    EXPECT_TRUE(folder.Read("output.voz") == bytes);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("output.voz.new")));
}

TEST_F(D3plotConversion, WordsMayBeFourOrEightBytesInEitherOrder)
{
    for (int const bytes : {4, 8})
        for (bool const big : {false, true})
        {
            d3plot::Model model = Small();
            model.options.wordBytes = bytes;
            model.options.bigEndian = big;
            folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
            ExpectTheSmallRecords(model, std::to_string(bytes) + (big ? " big" : " little"));
        }
}

TEST_F(D3plotConversion, AFamilyOfFilesIsReadAsOne)
{
    d3plot::Model const model = Small();
    d3plot::Writer const writer(model);
    folder.Write("d3plot", writer.Geometry() + writer.EndMark() + std::string(2048, '\0'));
    folder.Write("d3plot01", writer.Of(StateOf(model, 0.0)) + writer.Of(StateOf(model, 0.5)) + writer.EndMark());
    folder.Write("d3plot02", writer.Of(StateOf(model, 1.0)));
    folder.Write("d3plot.log", "not of the family");
    folder.Write("d3plot1", "nor this");
    ExpectTheSmallRecords(model);
}

TEST_F(D3plotConversion, FilesPastTheHundredthFollowInOrder)
{
    d3plot::Model const model = Small();
    d3plot::Writer const writer(model);
    folder.Write("d3plot", writer.Geometry() + writer.EndMark());
    folder.Write("d3plot09", writer.Of(StateOf(model, 0.0)));
    folder.Write("d3plot99", writer.Of(StateOf(model, 0.5)));
    folder.Write("d3plot100", writer.Of(StateOf(model, 1.0)));
    ExpectTheSmallRecords(model);
}

TEST_F(D3plotConversion, AGeometryMayRunOnIntoTheNextFile)
{
    d3plot::Model const model = Small();
    d3plot::Writer const writer(model);
    std::string const all = writer.Geometry();
    for (std::size_t words : {70U, 90U, 120U})
    {
        folder.Write("d3plot", all.substr(0, 4 * words));
        folder.Write("d3plot01", all.substr(4 * words) + writer.Of(StateOf(model, 0.0)));
        folder.Write("d3plot02", writer.Of(StateOf(model, 0.5)) + writer.Of(StateOf(model, 1.0)));
        ExpectTheSmallRecords(model, std::to_string(words));
    }
}

TEST_F(D3plotConversion, TitlesBehindTheGeometryArePassedOver)
{
    for (int const wordBytes : {4, 8})
        for (bool const areStatesBehind : {false, true}) // without the mark that closes the titles
        {
            d3plot::Model model = Small();
            model.options.wordBytes = wordBytes;
            model.options.hasTitles = true;
            d3plot::Writer const writer(model);
            std::string const whole = OneFile(model, {0.0, 0.5, 1.0});
            std::size_t const geometry = writer.Geometry().size();
            std::string const states = whole.substr(geometry), mark = writer.EndMark();
            folder.Write("d3plot", areStatesBehind ? whole.substr(0, geometry - mark.size()) + states
                                                   : whole.substr(0, geometry));
            folder.Write("d3plot01", areStatesBehind ? mark : states);
            ExpectTheSmallRecords(model, std::to_string(wordBytes) + (areStatesBehind ? " behind" : ""));
        }
}

TEST_F(D3plotConversion, TitlesOfAnotherKindEndTheirFile)
{
    d3plot::Model model = Small();
    model.options.hasTitles = true;
    d3plot::Writer const writer(model);
    std::string const whole = OneFile(model, {0.0, 0.5, 1.0});
    std::size_t const geometry = writer.Geometry().size();
    std::string bytes = whole.substr(0, geometry - writer.EndMark().size());
    writer.Integer(bytes, 900100); // lines of the deck
    writer.Integer(bytes, 40);
    bytes.append(std::size_t{40} * 80, '$');
    folder.Write("d3plot", bytes);
    folder.Write("d3plot01", whole.substr(geometry));
    ExpectTheSmallRecords(model);
}

TEST_F(D3plotConversion, ZerosThatFillTheFirstFileAreNoState)
{
    d3plot::Model const model = Small();
    std::string const whole = OneFile(model, {0.0, 0.5, 1.0});
    std::size_t const geometry = d3plot::Writer(model).Geometry().size();
    folder.Write("d3plot", whole.substr(0, geometry) + std::string(16384, '\0'));
    folder.Write("d3plot01", whole.substr(geometry));
    ExpectTheSmallRecords(model);
}

TEST_F(D3plotConversion, RecordsOfAnEarlierConversionGoWhereThereAreNone)
{
    folder.Write("d3plot", OneFile(Small(), {0.5}));
    folder.Write("output.voz", "of an earlier run");
    result = voz::launch::ConvertResults(folder.Path(), {0.0, 1.0});
    EXPECT_EQ(result.records, 0);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("output.voz")));
    EXPECT_FALSE(std::filesystem::exists(folder.Path("output.voz.new")));
}

TEST_F(D3plotConversion, TheWordsBehindTheControlWordsArePassedOver)
{
    for (int const extra : {3, 10, 16, 40})
    {
        d3plot::Model model = Small();
        model.options.extraWords = extra;
        model.nodes.push_back({10, 0, 0}); // solids name eight nodes
        model.nodeLabels.push_back(600);
        model.numSolids = 2;
        model.options.solidTemperatures = 2;
        folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
        ExpectTheSmallRecords(model, std::to_string(extra));
    }
}

TEST_F(D3plotConversion, WhatElseANodeOrAnElementHoldsIsPassedOver)
{
    for (int variant = 0; variant < 32; ++variant)
    {
        d3plot::Model model = Small();
        for (int i = 0; i < 3; ++i) // solids name eight nodes
            model.nodes.push_back({10.0 + i, 0, 0}), model.nodeLabels.push_back(600 + i);
        model.options.hasVelocities = (variant & 1) != 0;
        model.options.hasAccelerations = (variant & 2) != 0;
        model.options.it = (variant & 4) != 0 ? 13 : 0;
        model.numSolids = (variant & 8) != 0 ? 2 : 0;
        model.numBeams = (variant & 8) != 0 ? 3 : 0;
        model.numThickShells = (variant & 16) != 0 ? 1 : 0;
        model.options.extraOfPoint = (variant & 16) != 0 ? 2 : 0;
        model.options.layers = (variant & 16) != 0 ? 5 : 3;
        model.options.globals = variant;
        folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
        ExpectTheSmallRecords(model, std::to_string(variant));
    }
}

TEST_F(D3plotConversion, RigidShellsHaveNoValuesOnlyWhereTheMaterialTypesStand)
{
    d3plot::Model model = Small();
    model.types.clear();
    folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
    ExpectTheSmallRecords(model);
}

TEST_F(D3plotConversion, TheBlankIsFoundWhicheverTableOfPartsItsMaterialPointsInto)
{
    // Material 1 is the blank: by the order of the deck it is part 5, by the ascending list it would be part 2.
    d3plot::Model model = Small();
    for (d3plot::Shell & shell : model.shells)
        shell.material = 3 - shell.material;
    model.parts = {5, 2};
    model.types = {37, d3plot::kRigid};
    folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
    ExpectTheSmallRecords(model, "by the deck");
    model.parts = {5, 2};
    model.orderedParts = {5, 2};
    folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
    ExpectTheSmallRecords(model, "by both");
    model = Small(); // material 2 is the blank: part 5 of the ascending list, though the deck names it first
    model.parts = {5, 2};
    folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
    ExpectTheSmallRecords(model, "ascending");
}

TEST_F(D3plotConversion, NodesAndShellsStandInTheOrderOfTheirLabels)
{
    d3plot::Model model = Small();
    model.shellLabels = {700, 2, 1, 701};
    model.nodeLabels = {500, 1, 5, 3, 4, 2, 501};
    folder.Write("d3plot", OneFile(model, {0.0}));
    std::vector<Record> const records = Convert({0.0});
    ASSERT_EQ(records.size(), 1U) << Notes();
    EXPECT_EQ(records[0].connectivity, (std::vector<int>{5, 2, 3, 0, 1, 5, 3, 4}));
    EXPECT_EQ(records[0].coordinates, (Floats{0, 0, 0, 2, 0, 0, 1, 1, 0, 0, 1, 0, 1, 0, 0}));
    EXPECT_EQ(records[0].stress[0], static_cast<float>(StateOf(model, 0.0).shells[2].stress[0][0]));
}

TEST_F(D3plotConversion, WithoutLabelsTheFifthMaterialIsTheBlank)
{
    d3plot::Model model = Small();
    model.nodeLabels.clear();
    model.parts.clear();
    model.types.clear();
    for (d3plot::Shell & shell : model.shells)
        shell.material = shell.material == 2 ? 5 : 1;
    folder.Write("d3plot", OneFile(model, {0.0, 0.5, 1.0}));
    ExpectTheSmallRecords(model);
}

TEST_F(D3plotConversion, DeletedShellsAndTheirNodesAreLeftOut)
{
    for (int kind : {1, 2})
    {
        d3plot::Model model = Small();
        model.options.deletion = kind;
        d3plot::Writer const writer(model);
        d3plot::State state = StateOf(model, 0.5);
        state.alive[kind == 1 ? 4 : 1] = 0.0; // node 5 or shell 2: of the quadrilateral alone
        folder.Write("d3plot", OneFile(model, {0.0}));
        folder.Write("d3plot01", writer.Of(state));
        std::vector<Record> const records = Convert({0.0, 0.5});
        ASSERT_EQ(records.size(), 2U) << Notes();
        EXPECT_EQ(records[0].connectivity.size(), 8U);
        EXPECT_EQ(records[1].connectivity, (std::vector<int>{1, 3, 2, 0})) << kind;
        EXPECT_EQ(records[1].coordinates, (Floats{1, 0, 0.5F, 1, 1, 0.5F, 2, 0, 0.5F}));
        EXPECT_EQ(records[1].stress.size(), 12U);
        EXPECT_EQ(records[1].stress[0], static_cast<float>(state.shells[2].stress[0][0]));
    }
}

TEST_F(D3plotConversion, AStateWithoutAShellLeftIsNoRecord)
{
    d3plot::Model model = Small();
    model.options.deletion = 2;
    d3plot::State state = StateOf(model, 0.0);
    state.alive.assign(4, 0.0);
    folder.Write("d3plot", d3plot::Writer(model).Geometry() + d3plot::Writer(model).Of(state));
    EXPECT_TRUE(Convert({0.0}).empty());
    EXPECT_NE(Notes().find("deleted"), std::string::npos) << Notes();
    EXPECT_EQ(result.missing, std::vector<int>{0});
}

TEST_F(D3plotConversion, AStateWithAValueThatIsNoNumberIsNoRecord)
{
    for (int place = 0; place < 4; ++place)
    {
        d3plot::Model const model = Small();
        d3plot::State state = StateOf(model, 0.0);
        double const bad = place % 2 == 0 ? std::nan("") : HUGE_VAL;
        (place == 0   ? state.nodes[1][2]
         : place == 1 ? state.shells[2].stress[0][3]
         : place == 2 ? state.shells[1].inner[0]
                      : state.shells[1].outer[3]) = bad;
        folder.Write("d3plot", d3plot::Writer(model).Geometry() + d3plot::Writer(model).Of(state) +
                                   d3plot::Writer(model).Of(StateOf(model, 0.5)));
        EXPECT_EQ(Convert({0.0, 0.5}).size(), 1U) << place;
        EXPECT_NE(Notes().find("no numbers"), std::string::npos) << Notes();
    }
}

TEST_F(D3plotConversion, WhatTheSolverDidNotWriteIsZero)
{
    for (int variant = 0; variant < 4; ++variant)
    {
        d3plot::Model model = Small();
        model.options.hasStrain = (variant & 1) != 0;
        model.options.hasStress = (variant & 2) != 0;
        model.options.hasResultants = variant != 3;
        model.options.hasThickness = variant != 3;
        folder.Write("d3plot", OneFile(model, {0.5}));
        std::vector<Record> const records = Convert({0.5});
        ASSERT_EQ(records.size(), 1U) << Notes();
        Record expected = Expected(model, 0, 0.5);
        if (!model.options.hasStrain)
            expected.top = expected.bottom = expected.middle = Floats(24);
        if (!model.options.hasStress)
            expected.stress = Floats(24);
        EXPECT_TRUE(records[0] == expected) << variant;
    }
}

TEST_F(D3plotConversion, WithoutCoordinatesInTheStatesTheFirstOnesHold)
{
    d3plot::Model model = Small();
    model.options.hasCoordinates = false;
    folder.Write("d3plot", OneFile(model, {0.5}));
    std::vector<Record> const records = Convert({0.5});
    ASSERT_EQ(records.size(), 1U) << Notes();
    EXPECT_EQ(records[0].coordinates, (Floats{0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, 2, 0, 0}));
}
} // namespace
