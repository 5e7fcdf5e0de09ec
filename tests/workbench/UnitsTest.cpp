// UnitsTest.cpp. A value of its own goes through every border of the file route, and must come out in the unit that
// docs/units.md states there: job, process objects, deck. (Behind the solver: FileRouteTest.)
//
// The plate is 8 x 6 mm; its rim is 28 mm.

#include "BeadSegments.h"
#include "JobFixture.h"
#include "JobModel.h"
#include "Quantity.h"
#include "Sha256.h"

#include "Solver.h"
#include "VOZHost.h"
#include "VOZMaterial.h"

#include <cmath>
#include <map>
#include <sstream>

using namespace voz::workbench;

namespace
{
using Row = std::vector<std::string>;

class UnitsTest : public JobFixture
{
protected:
    UnitsTest()
    {
        mHost.environment["VOZDRAVO3D"] = Folder();
        VOZHost::Install(&mHost);
    }
    ~UnitsTest() override { VOZHost::Install(nullptr); }

    // Builds the process of a job and writes its deck; keeps the rows of each block, by its label.
    void Write(std::string const & i_more)
    {
        JobFixture::Write("config.cfg", ConfigurationText({}));
        Job const job = ParseJob(Sound() + i_more, JobPath());
        JobModel const model = ReadModel(job);
        Tipping const tipping = FindTipping(job, model);
        BuildProcess(job, model, tipping, PadRows::Nodes, process);
        std::string folder = Folder();
        Solver solver(model.mesh.mesh, process.material, process.property, tipping.symmetry, process.friction,
                      process.fullHolder, tipping.frame, folder.data());
        std::string const path = Folder() + "/deck.fpi";
        ASSERT_EQ(solver.write(path.c_str(), false, job.toolFriction, 0), 0);
        std::ifstream file(path);
        std::string label;
        for (std::string line; std::getline(file, line);)
            if (line.rfind("block ", 0) == 0)
                label = line.substr(6, line.find_first_of(": ", 6) - 6);
            else if (line.rfind("****", 0) != 0 && !label.empty())
            {
                std::istringstream words(line);
                Row row;
                for (std::string word; words >> word;)
                    row.push_back(word);
                deck[label].push_back(row);
            }
    }

    double Value(std::string const & i_block, std::size_t i_row, std::size_t i_field) const
    {
        return std::stod(deck.at(i_block).at(i_row).at(i_field));
    }

    Process process;
    std::map<std::string, std::vector<Row>> deck;

private:
    VOZMemoryHost mHost;
};

constexpr double kInch = 25.4;
constexpr double kDecimals = 5.1e-7; // the deck holds six
} // namespace

TEST_F(UnitsTest, NodesAreMillimetresAndGoOutInInches)
{
    Write("");
    EXPECT_NEAR(Value("III", 4, 1), 8.0 / kInch, kDecimals);
    EXPECT_NEAR(Value("III", 19, 2), 6.0 / kInch, kDecimals);
}

TEST_F(UnitsTest, ThicknessIsMillimetresThereAndMetresInTheKernelsMaterial)
{
    Write("");
    EXPECT_EQ(process.material.thickness(), 0.78);
    EXPECT_DOUBLE_EQ(process.property.material(1)->m_dThickness, 0.00078);
    EXPECT_NEAR(Value("V", 1, 5), 0.78 / kInch, kDecimals);
}

TEST_F(UnitsTest, StressesAreMegapascalsThereAndPascalsInTheKernelsMaterial)
{
    Write("");
    EXPECT_EQ(process.material.yield(), 157.0);
    EXPECT_EQ(process.material.intercept(), 565.32);
    EXPECT_DOUBLE_EQ(process.property.material(1)->m_dYield, 157e6);
    EXPECT_DOUBLE_EQ(process.property.material(1)->m_dKValue, 565.32e6);
    EXPECT_NEAR(Value("V", 0, 4), 157.0, kDecimals) << "order on the line: yield, n, r, K";
    EXPECT_NEAR(Value("V", 0, 5), 0.2589, kDecimals);
    EXPECT_NEAR(Value("V", 0, 6), 1.79, kDecimals);
    EXPECT_NEAR(Value("V", 0, 7), 565.32, kDecimals);
}

TEST_F(UnitsTest, ModuliAndDensityStandInTheKernelsMaterialAlone)
{
    Write("");
    VOZMaterial const & kernel = *process.property.material(1);
    EXPECT_DOUBLE_EQ(kernel.m_dYoungsModulus, 210e9);
    EXPECT_EQ(kernel.m_dPoisson, 0.3);
    EXPECT_EQ(kernel.m_dDensity, 7850.0);
}

TEST_F(UnitsTest, CurvesAreLogPlasticStrainAndMegapascalsThereAndPascalsInTheKernelsMaterial)
{
    Write("[material.curve]\nstrain_kind = \"plastic\"\nstrain_fraction = [0, 0.05, 0.1, 0.2]\n"
          "stress_MPa = [150, 250, 300, 350]\n");
    ASSERT_EQ(process.material.numSSPoints(), 4);
    EXPECT_EQ(process.material.SSPoint(1, 0), 0.05);
    EXPECT_EQ(process.material.SSPoint(1, 1), 250.0);
    ASSERT_EQ(process.property.material(1)->m_nNumPoints, 4);
    EXPECT_EQ(process.property.material(1)->m_padPoints[2], 0.05);
    EXPECT_DOUBLE_EQ(process.property.material(1)->m_padPoints[3], 250e6);
    EXPECT_NEAR(Value("XXVI", 2, 0), 0.05, kDecimals) << "behind the head";
    EXPECT_NEAR(Value("XXVI", 2, 1), 250.0, kDecimals);
}

TEST_F(UnitsTest, FrictionIsANumberEverywhere)
{
    Write("[friction]\ncoefficient = 0.12\ntools = true\n");
    EXPECT_EQ(process.friction.coefficient(), 0.12);
    EXPECT_NEAR(Value("XXIX", 0, 0), 0.12, kDecimals);
    EXPECT_EQ(deck["II"][0][4], "1") << "the control flag switches tool friction on";
}

// Head: F in N, L in metres; rows: N/m.
TEST_F(UnitsTest, AForcePerLengthArrivesAsNewtonsPerMetre)
{
    Write("[friction]\ncoefficient = 0.1\n[blank_holder]\nforce_per_length = \"9.4 N/mm\"\n");
    EXPECT_NEAR(Value("XII", 0, 5), 0.028, kDecimals);
    EXPECT_NEAR(Value("XII", 0, 2), 9400.0 * 0.028 / (2.0 * 0.1), 1e-3);
    EXPECT_NEAR(Value("XII", 2, 1), 9400.0, 1e-3);
}

TEST_F(UnitsTest, ALevelIsAShareOfTheYieldForcePerLength)
{
    Write("[blank_holder]\nlevel = 2\n");
    EXPECT_NEAR(Value("XII", 2, 1), 0.35 * 0.00078 * 157e6, 1e-3);
}

TEST_F(UnitsTest, LevelFourIsALockAndAForceThatHappensToBeItsShareIsNone)
{
    Write("[blank_holder]\nlevel = 4\n");
    EXPECT_GT(Value("XII", 2, 1), 1e14);
}

TEST_F(UnitsTest, AShareOfExactlyTheLocksIsStillAForce)
{
    // 0.8 x 0.78 mm x 157 MPa
    Write("[blank_holder]\nforce_per_length = \"97.968 N/mm\"\n");
    EXPECT_NEAR(Value("XII", 2, 1), 97968.0, 1e-3);
}

TEST_F(UnitsTest, ATotalForceIsOfTheWholePartWhateverTheModel)
{
    // The quarter's holder edges are two sides, 14 mm, and carry a quarter of the force.
    Write("[symmetry]\nplanes = \"both\"\n[friction]\ncoefficient = 0.1\n[blank_holder]\ntotal_force = \"4 kN\"\n");
    EXPECT_EQ(process.fullHolder.totalForce(), 1000.0);
    EXPECT_NEAR(Value("XII", 0, 5), 0.014, kDecimals);
    EXPECT_NEAR(Value("XII", 0, 2), 1000.0, 1e-3);
    EXPECT_NEAR(Value("XII", 2, 1), 2.0 * 0.1 * 1000.0 / 0.014, 1e-2);
}

// Head: L in inches; rows: N per inch.
TEST_F(UnitsTest, ASingleHolderArrivesAsNewtonsPerInch)
{
    Write("[friction]\ncoefficient = 0.1\n[[holder]]\nforce = \"2 kN\"\nnodes = [1, 2, 3, 4, 5, 12]\n");
    EXPECT_EQ(process.property.sizeBlankHolders(), 1);
    EXPECT_EQ(process.property.blankHolders(1).edgeCount, 4) << "free edges alone";
    EXPECT_EQ(process.property.blankHolders(1).force, 2000.0);
    EXPECT_NEAR(Value("XII", 0, 5), 8.0 / kInch, kDecimals);
    EXPECT_NEAR(Value("XII", 2, 1), 2.0 * 0.1 * 2000.0 / (8.0 / kInch), 1e-2);
}

TEST_F(UnitsTest, BeadsAreNewtonsPerMetre)
{
    Write("[[bead]]\nforce = \"80 N/mm\"\npoints_mm = [[1, 1, 0], [1, 5, 0]]\n");
    EXPECT_EQ(process.property.drawBeads(1).force, 80000.0);
    EXPECT_EQ(process.property.drawBeads(1).edgeCount, 3);
    EXPECT_EQ(process.property.drawBeads(1).xyz[4], 5.0);
    EXPECT_NEAR(Value("XVII", 1, 3), 80000.0, kDecimals);
    EXPECT_NEAR(Value("XVII", 2, 2), 0.0, kDecimals) << "xi of the middle of an element";
}

TEST_F(UnitsTest, PadsArePascals)
{
    Write("[[pad]]\npressure = \"2 MPa\"\nset = \"2\"\n");
    EXPECT_EQ(process.property.sizePressPads(), 1);
    EXPECT_EQ(process.property.pressPadVal(1), 2e6);
    EXPECT_EQ(process.property.pressPadSize(1), 8);
    EXPECT_EQ(process.property.pressPads(1, 1), 4);
    EXPECT_NEAR(Value("IX", 1, 2), 2e6, kDecimals);
}

TEST_F(UnitsTest, PrescribedDisplacementsAlongXAreMillimetresAndGoOutInInches)
{
    Write("[[constraint]]\nx = \"2.54 mm\"\nnodes = [1, 2]\n");
    EXPECT_EQ(process.property.dispBCs(1).values[0], 2.54);
    EXPECT_EQ(deck["VIII"][1][1], "100000");
    EXPECT_NEAR(Value("VIII", 1, 2), 0.1, kDecimals);
}

TEST_F(UnitsTest, PrescribedDisplacementsAlongYAreMillimetresAndGoOutInInches)
{
    Write("[[constraint]]\ny = \"-1 mm\"\nnodes = [1, 2]\n");
    EXPECT_EQ(process.property.dispBCs(1).values[1], -1.0);
    EXPECT_EQ(deck["VIII"][1][1], "010000");
    EXPECT_NEAR(Value("VIII", 1, 3), -1.0 / kInch, kDecimals);
}

TEST_F(UnitsTest, LimitsAreTrueStrainsAndFractionsInTheConfiguration)
{
    JobLimits limits;
    limits.thinning = 25.0;
    limits.shear = 120.0;
    EXPECT_NE(ConfigurationText(limits).find("ThinningLimit=-0.2876820724517"), std::string::npos);
    EXPECT_NE(ConfigurationText(limits).find("ShearLimit=1.2\n"), std::string::npos);
    limits.thinning = 0.0;
    EXPECT_NE(ConfigurationText(limits).find("ThinningLimit=0\n"), std::string::npos) << "off, and no negative zero";
}

TEST_F(UnitsTest, TheLimitCurveHonoursTheMillimetresOfTheThickness)
{
    Write("");
    EXPECT_NEAR(process.property.formingLimit(1).fldZero(), (356.7 * 0.78 / 25.4 + 23.36) * 0.2589 / 0.2116, 1e-12);
    EXPECT_NEAR(process.property.formingLimit(1).thickness(), 0.00078, 1e-18);
}

// --- The pieces of a bead line ---------------------------------------------------------------------------------------

namespace
{
class BeadTest : public JobFixture
{
protected:
    BeadSegments Found(std::vector<Point3> const & i_line) const
    {
        Job const job = ParseJob(Sound(), JobPath());
        return FindBeadSegments(ReadModel(job).mesh.mesh, VOZCatAxis(), i_line);
    }
};
} // namespace

TEST_F(BeadTest, ALineAcrossElementsIsCutAtTheirSides)
{
    BeadSegments const found = Found({{1, 1, 0}, {7, 1, 0}});
    ASSERT_EQ(found.segments.size(), 4U) << "the two halves of a quadrilateral are one piece";
    EXPECT_NEAR(found.covered, 6.0, 1e-9);
    EXPECT_EQ(found.segments.front().element, 1);
    EXPECT_EQ(found.segments.back().element, 4);
    EXPECT_NEAR(found.segments.front().edgeValues[0], 0.0, 1e-9);
}

TEST_F(BeadTest, ALineAlongACommonSideCountsOnce)
{
    BeadSegments const found = Found({{0, 2, 0}, {8, 2, 0}});
    EXPECT_NEAR(found.covered, 8.0, 1e-9);
    EXPECT_EQ(found.segments.size(), 4U);
}

TEST_F(BeadTest, TheHeightOfTheLineDoesNotMatterOnASingleLayer)
{
    EXPECT_NEAR(Found({{1, 1, 30}, {7, 5, -20}}).covered, std::hypot(6.0, 4.0), 1e-9);
}

TEST_F(BeadTest, WhatLeavesThePartIsNotCovered)
{
    BeadSegments const found = Found({{-2, 1, 0}, {10, 1, 0}});
    EXPECT_NEAR(found.length, 12.0, 1e-12);
    EXPECT_NEAR(found.covered, 8.0, 1e-9);
    EXPECT_TRUE(Found({{20, 0, 0}, {30, 0, 0}}).segments.empty());
}

// --- Small things ----------------------------------------------------------------------------------------------------

// The examples of FIPS 180-4 and its companion of test vectors.
TEST(Sha256, GivesThePublishedHashes)
{
    EXPECT_EQ(Sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(Sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(Sha256("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(Sha256(std::string(1000000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(EditDistance, CountsInsertionsDeletionsAndReplacements)
{
    EXPECT_EQ(EditDistance("", ""), 0);
    EXPECT_EQ(EditDistance("abc", ""), 3);
    EXPECT_EQ(EditDistance("kitten", "sitting"), 3);
    EXPECT_EQ(EditDistance("flaw", "lawn"), 2);
}
