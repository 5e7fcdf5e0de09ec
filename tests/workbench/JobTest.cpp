// JobTest.cpp. A job is a text; each test says what it becomes, or with which words it is refused.

#include "Job.h"
#include "JobFixture.h"

#include "FormingLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <tuple>

using namespace voz::workbench;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace
{
class JobTest : public JobFixture
{
protected:
    Job Parsed(std::string const & i_text) const { return ParseJob(i_text, JobPath()); }

    // A sound job with more behind it.
    Job With(std::string const & i_more) const { return Parsed(Sound() + i_more); }

    std::string RefusalOf(std::string const & i_text) const
    {
        try
        {
            Parsed(i_text);
        }
        catch (InputError const & error)
        {
            return error.what();
        }
        return "not refused";
    }
    std::string RefusalWith(std::string const & i_more) const { return RefusalOf(Sound() + i_more); }

    std::string InFolder(std::string const & i_name) const
    {
        return (std::filesystem::path(Folder()) / i_name).string();
    }

    // Where the text stands in a file of this many lines before it.
    static std::string At(int i_line) { return "job.toml:" + std::to_string(i_line) + ":"; }
};

std::string Without(std::string i_text, std::string const & i_part)
{
    i_text.erase(i_text.find(i_part), i_part.size());
    return i_text;
}

std::string Replaced(std::string i_text, std::string const & i_part, std::string const & i_by)
{
    return i_text.replace(i_text.find(i_part), i_part.size(), i_by);
}
} // namespace

TEST_F(JobTest, ReadsASoundJobWithItsDefaults)
{
    Job const job = Parsed(Sound());
    EXPECT_EQ(job.name, "JobTest.ReadsASoundJobWithItsDefaults") << "a job.toml goes by its folder";
    EXPECT_EQ(job.title, job.name);
    EXPECT_EQ(ParseJob(Sound(), Folder() + "/cup.toml").name, "cup");
    EXPECT_EQ(job.mesh, InFolder("part.bdf"));
    EXPECT_EQ(job.thickness, 0.78);
    ASSERT_EQ(job.materials.size(), 1U);
    EXPECT_EQ(job.materials[0].strength, 565.32);
    EXPECT_EQ(job.materials[0].modulus, 210000.0);
    EXPECT_EQ(job.materials[0].poisson, 0.3);
    EXPECT_EQ(job.materials[0].density, 7850.0);
    EXPECT_EQ(job.friction, 0.15);
    EXPECT_FALSE(job.toolFriction);
    EXPECT_EQ(job.holder.kind, HolderKind::None);
    EXPECT_TRUE(job.planes.empty());
    EXPECT_FALSE(job.dieLine);
    EXPECT_EQ(job.limits.safetyMargin, 10.0);
    EXPECT_TRUE(job.outputs.report);
    EXPECT_FALSE(job.outputs.tables);
    EXPECT_THAT(job.warnings, IsEmpty());
}

TEST_F(JobTest, ExportsOfTheFormedBlankAreOffUntilTheyAreAskedFor)
{
    for (JobOutputs const & outputs : {ParseJob(Sound(), JobPath()).outputs, JobOutputs()})
        EXPECT_FALSE(outputs.dyna || outputs.nastran || outputs.displacements);
    for (std::string const key : {"dyna", "nastran", "displacements"})
    {
        JobOutputs const outputs = ParseJob(Sound() + "[output]\n" + key + " = true\n", JobPath()).outputs;
        EXPECT_EQ(std::make_tuple(outputs.dyna, outputs.nastran, outputs.displacements),
                  std::make_tuple(key == "dyna", key == "nastran", key == "displacements"));
    }
}

struct LengthCase
{
    char const * text;
    double mm;
};

class JobLengths : public JobFixture, public testing::WithParamInterface<LengthCase>
{
};

TEST_P(JobLengths, EveryUnitInKeyOrTextBecomesMillimetres)
{
    std::string const text = Replaced(Sound(), "thickness = \"0.78 mm\"", GetParam().text);
    EXPECT_DOUBLE_EQ(ParseJob(text, JobPath()).thickness, GetParam().mm);
}

INSTANTIATE_TEST_SUITE_P(Units, JobLengths,
                         testing::Values(LengthCase{"thickness = \"0.78 mm\"", 0.78},
                                         LengthCase{"thickness = \"0.78mm\"", 0.78},
                                         LengthCase{"thickness = \" +7.8e-1 mm \"", 0.78},
                                         LengthCase{"thickness_mm = 1", 1.0}, LengthCase{"thickness_m = 0.001", 1.0},
                                         LengthCase{"thickness_cm = 0.1", 1.0}, LengthCase{"thickness_um = 780", 0.78},
                                         LengthCase{"thickness_in = 0.05", 1.27},
                                         LengthCase{"thickness = \"0.05 in\"", 1.27}));

TEST_F(JobTest, StressesForcesAndDensitiesKeepTheirMeaningInEveryUnit)
{
    std::string const text =
        Replaced(Replaced(Sound(), "K_MPa = 565.32", "K = \"0.56532 GPa\"\ndensity = \"7.85 g/cm3\"\nE_Pa = 2.1e11"),
                 "yield_MPa = 157", "yield_Pa = 157e6");
    JobMaterial const material = Parsed(text).materials[0];
    EXPECT_DOUBLE_EQ(material.strength, 565.32);
    EXPECT_DOUBLE_EQ(material.yield, 157.0);
    EXPECT_DOUBLE_EQ(material.density, 7850.0);
    EXPECT_DOUBLE_EQ(material.modulus, 210000.0);
}

TEST_F(JobTest, ANumberWithoutAUnitIsRefusedAndShownHowToWriteIt)
{
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "\"0.78 mm\"", "0.78")),
                AllOf(HasSubstr(At(5)), HasSubstr("blank.thickness needs a unit"), HasSubstr("thickness_mm = ")));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "\"0.78 mm\"", "\"0.78\"")), HasSubstr("has no unit (mm, cm, m, um, in)"));
}

TEST_F(JobTest, AUnitOfAnotherDimensionIsRefused)
{
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "0.78 mm", "0.78 MPa")),
                AllOf(HasSubstr(At(5)), HasSubstr("\"MPa\" is a unit of stress, not of length")));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "thickness = \"0.78 mm\"", "thickness_mm = 1\nthickness_kN = 0.78")),
                AllOf(HasSubstr(At(6)), HasSubstr("\"kN\" is no unit of thickness")));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "0.78 mm", "0.78 furlong")), HasSubstr("unknown unit \"furlong\""));
}

TEST_F(JobTest, AnUnknownKeyIsRefusedWithItsLineAndTheNearestKey)
{
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "thickness =", "thicknes =")),
                AllOf(HasSubstr(At(5)), HasSubstr("unknown key \"blank.thicknes\""),
                      HasSubstr("nearest valid key is \"thickness\"")));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "thickness = \"0.78 mm\"", "thicknes_mm = 0.78")),
                HasSubstr("unknown key \"blank.thicknes_mm\"; the nearest valid key is \"thickness_mm\""));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "thickness =", "gauge =")), HasSubstr("blank.thickness is missing"));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "[blank]", "[blank]\nthicknes_mm = 1")),
                AllOf(HasSubstr(At(5)), HasSubstr("unknown key \"blank.thicknes_mm\""),
                      HasSubstr("nearest valid key is \"thickness_mm\"")));
    EXPECT_THAT(RefusalWith("[frictoin]\ncoefficient = 0.1\n"),
                AllOf(HasSubstr("unknown key \"frictoin\""), HasSubstr("\"friction\"")));
    EXPECT_THAT(RefusalWith("[friction]\ncoeficient = 0.1\n"),
                AllOf(HasSubstr("unknown key \"friction.coeficient\""), HasSubstr("\"coefficient\"")));
}

TEST_F(JobTest, AWrongTypeIsRefused)
{
    EXPECT_THAT(RefusalWith("[friction]\ncoefficient = \"low\"\n"),
                HasSubstr("must be a number, not the text \"low\""));
    EXPECT_THAT(RefusalWith("[friction]\ntools = 1\n"), HasSubstr("must be true or false, not a number"));
    EXPECT_THAT(RefusalWith("[solver]\nsteps = 1.5\n"), HasSubstr("must be a whole number"));
    EXPECT_THAT(RefusalWith("[solver]\nsteps = 4\n"), HasSubstr("must be 1, 2 or 3"));
    EXPECT_THAT(RefusalWith("friction = 1\n"), HasSubstr("friction"));
    EXPECT_THAT(RefusalWith("[bead]\nforce = \"1 N/mm\"\npoints_mm = [1, 2]\n"), HasSubstr("points of three numbers"));
}

TEST_F(JobTest, NumbersThatAreNoneAreRefused)
{
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "\"0.78 mm\"", "\"nan mm\"")), HasSubstr("must be a finite number"));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "thickness = \"0.78 mm\"", "thickness_mm = inf")),
                HasSubstr("must be a finite number"));
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "thickness = \"0.78 mm\"", "thickness_mm = 1e400")), StartsWith(Folder()));
    EXPECT_THAT(RefusalWith("[friction]\ncoefficient = nan\n"), HasSubstr("must be a finite number"));
}

TEST_F(JobTest, TextThatIsNoJobFileIsRefusedWithLineAndColumn)
{
    EXPECT_THAT(RefusalOf("title = \"x\"\n[mesh\n"), HasSubstr("job.toml:2:"));
    EXPECT_THAT(RefusalOf(""), HasSubstr("mesh is missing: a table with the file"));
    EXPECT_THAT(RefusalOf("[mesh]\n"), HasSubstr("mesh.file is missing"));
    EXPECT_THAT(RefusalOf(std::string("\0\0\0", 3)), StartsWith(Folder()));
}

TEST_F(JobTest, EveryPrefixOfASoundJobIsReadOrRefusedInWords)
{
    std::string const text = Sound() + Everything();
    for (std::size_t length = 0; length < text.size(); length += 3)
        EXPECT_THAT(RefusalOf(text.substr(0, length)), testing::Not(IsEmpty()));
}

TEST_F(JobTest, AMissingMeshFileIsRefusedAtItsKey)
{
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "part.bdf", "prt.bdf")), AllOf(HasSubstr(At(2)), HasSubstr("prt.bdf")));
}

TEST_F(JobTest, AFileThatCannotBeReadIsRefused)
{
    EXPECT_THROW(ReadJob(Folder() + "/none.toml"), InputError);
    EXPECT_THROW(ReadJob(Folder()), InputError) << "a folder";
}

TEST_F(JobTest, PathsAreRelativeToTheJobFile)
{
    Job const job = ParseJob(Sound() + "[output]\nfolder = \"results\"\n", JobPath());
    EXPECT_EQ(job.outputs.folder, InFolder("results"));
    std::string const absolute = std::filesystem::path(InFolder("elsewhere")).generic_string();
    EXPECT_EQ(ParseJob(Sound() + "[output]\nfolder = \"" + absolute + "\"\n", JobPath()).outputs.folder, absolute);
}

TEST_F(JobTest, TheYieldStressCanBeSaidByThePrestrain)
{
    Job const job = Parsed(Replaced(Sound(), "yield_MPa = 157", "e0 = 0.007117"));
    EXPECT_NEAR(job.materials[0].yield, 157.128, 0.001);
    EXPECT_THAT(RefusalOf(Replaced(Sound(), "yield_MPa = 157", "e0 = 0.007\nyield_MPa = 157")),
                HasSubstr("yield and e0 say the same thing"));
}

TEST_F(JobTest, AMaterialNeedsItsFigures)
{
    EXPECT_THAT(RefusalOf(Without(Sound(), "n = 0.2589\n")), HasSubstr("material.n: is missing"));
}

TEST_F(JobTest, EngineeringCurvesBecomeLogPlasticStrainAndTrueStress)
{
    // 10 % at 300 MPa: ln 1.1 less 330 MPa over the modulus.
    Job const job = With("[material.curve]\nstrain_kind = \"engineering\"\nstrain_percent = [0, 1, 5, 10, 20]\n"
                         "stress_MPa = [180, 220, 270, 300, 320]\n");
    auto const & curve = job.materials[0].curve;
    ASSERT_EQ(curve.size(), 4U) << "the first point lies on the elastic line";
    EXPECT_NEAR(curve[2][1], 330.0, 1e-9);
    EXPECT_NEAR(curve[2][0], std::log(1.1) - 330.0 / 210000.0, 1e-12);
}

TEST_F(JobTest, TrueAndPlasticCurvesKeepTheirStress)
{
    std::string const points = "strain_fraction = [0.002, 0.01, 0.05, 0.1]\nstress_MPa = [180, 220, 270, 300]\n";
    auto const plastic = With("[material.curve]\nstrain_kind = \"plastic\"\n" + points).materials[0].curve;
    auto const total = With("[material.curve]\nstrain_kind = \"true\"\n" + points).materials[0].curve;
    ASSERT_EQ(plastic.size(), 4U);
    EXPECT_EQ(plastic[1][0], 0.01);
    EXPECT_EQ(plastic[1][1], 220.0);
    EXPECT_NEAR(total[1][0], 0.01 - 220.0 / 210000.0, 1e-15);
    EXPECT_EQ(total[1][1], 220.0);
}

TEST_F(JobTest, ACurveMustSayItsStrainsAndRise)
{
    EXPECT_THAT(RefusalWith("[material.curve]\nstrain_percent = [1,2,3,4]\nstress_MPa = [1,2,3,4]\n"),
                HasSubstr("strain_kind is missing"));
    EXPECT_THAT(RefusalWith("[material.curve]\nstrain_kind = \"plastic\"\nstrain_percent = [1,2,2,4]\n"
                            "stress_MPa = [1,2,3,4]\n"),
                HasSubstr("must rise from point to point"));
    EXPECT_THAT(RefusalWith("[material.curve]\nstrain_kind = \"plastic\"\nstrain_percent = [1,2,3]\n"
                            "stress_MPa = [1,2,3]\n"),
                HasSubstr("at least 4 points"));
    EXPECT_THAT(RefusalWith("[material.curve]\nstrain_kind = \"plastic\"\nstrain_percent = [1,2,3,4]\n"
                            "stress_MPa = [1,2,3]\n"),
                HasSubstr("has 3 values, strain 4"));
    EXPECT_THAT(RefusalWith("[material.curve]\nstrain_kind = \"plastic\"\nstrain = [1,2,3,4]\n"
                            "stress_MPa = [1,2,3,4]\n"),
                HasSubstr("needs a unit in its key"));
}

TEST_F(JobTest, TheHolderIsALevelAForcePerLengthOrATotal)
{
    EXPECT_EQ(With("[blank_holder]\nlevel = 3\n").holder.level, 3);
    JobHolder const line = With("[blank_holder]\nforce_per_length = \"9400 N/m\"\n").holder;
    EXPECT_EQ(line.kind, HolderKind::ForcePerLength);
    EXPECT_DOUBLE_EQ(line.force, 9.4);
    JobHolder const total = With("[blank_holder]\ntotal_force = \"19.6 kN\"\n").holder;
    EXPECT_EQ(total.kind, HolderKind::TotalForce);
    EXPECT_DOUBLE_EQ(total.force, 19600.0);
    EXPECT_EQ(With("[blank_holder]\nlevel = 5\ntotal_force = \"1 kN\"\n").holder.kind, HolderKind::TotalForce);
    EXPECT_EQ(With("[blank_holder]\nlevel = 0\n").holder.kind, HolderKind::None);
    EXPECT_EQ(With("[blank_holder]\nforce_per_length = \"0 N/mm\"\n").holder.kind, HolderKind::None);
}

TEST_F(JobTest, TheHolderIsSaidOnce)
{
    EXPECT_THAT(RefusalWith("[blank_holder]\nlevel = 2\ntotal_force = \"1 kN\"\n"), HasSubstr("given twice"));
    EXPECT_THAT(RefusalWith("[blank_holder]\nlevel = 6\n"), HasSubstr("must be from 0 (none) to 5"));
    EXPECT_THAT(RefusalWith("[blank_holder]\nlevel = 5\n"), HasSubstr("total_force, which is missing"));
    EXPECT_THAT(RefusalWith("[blank_holder]\ntotal_force = \"-1 kN\"\n"), HasSubstr("must not be negative"));
}

TEST_F(JobTest, PlanesOfSymmetryAreNamedOrGiven)
{
    EXPECT_EQ(With("[symmetry]\nplanes = \"xz\"\ny = \"2 mm\"\n").planes[0].normal, (Point3{0, 1, 0}));
    EXPECT_EQ(With("[symmetry]\nplanes = \"xz\"\ny = \"2 mm\"\n").planes[0].point, (Point3{0, 2, 0}));
    EXPECT_EQ(With("[symmetry]\nplanes = \"both\"\n").planes.size(), 2U);
    Job const general = With("[[symmetry.plane]]\nnormal = [0, 0, 2]\npoint_mm = [1, 2, 3]\n");
    EXPECT_EQ(general.planes[0].normal, (Point3{0, 0, 1}));
    EXPECT_THAT(RefusalWith("[symmetry]\nplanes = \"zx\"\n"), HasSubstr("the nearest is \"xz\""));
    EXPECT_THAT(RefusalWith("[symmetry]\nplanes = \"xz\"\nx = \"1 mm\"\n"), HasSubstr("symmetry.x"))
        << "a place of a plane that is not there";
    EXPECT_THAT(RefusalWith("[[symmetry.plane]]\nnormal = [1,0,0]\npoint_mm = [0,0,0]\n"
                            "[[symmetry.plane]]\nnormal = [1,1,0]\npoint_mm = [0,0,0]\n"),
                HasSubstr("must be perpendicular"));
}

TEST_F(JobTest, TheDieLineMustGoWithThePlanes)
{
    EXPECT_EQ(*With("[tip]\ndie_line = [0, 0, -5]\n").dieLine, (Point3{0, 0, -1}));
    EXPECT_THAT(RefusalWith("[tip]\ndie_line = [0, 0, 0]\n"), HasSubstr("has no length"));
    EXPECT_THAT(RefusalWith("[symmetry]\nplanes = \"yz\"\n[tip]\ndie_line = [1, 0, 1]\n"),
                HasSubstr("must lie in the plane of symmetry"));
    EXPECT_THAT(RefusalWith("[symmetry]\nplanes = \"both\"\n[tip]\ndie_line = [0, 0, 1]\n"),
                HasSubstr("the line that both share"));
}

TEST_F(JobTest, ActionsKeepTheirUnits)
{
    Job const job = With(Everything());
    ASSERT_EQ(job.holders.size(), 1U);
    EXPECT_EQ(job.holders[0].force, 5000.0);
    EXPECT_EQ(job.holders[0].edges.ids, (std::vector<int>{11, 12, 13}));
    ASSERT_EQ(job.beads.size(), 1U);
    EXPECT_EQ(job.beads[0].force, 80.0);
    EXPECT_EQ(job.beads[0].points[1], (Point3{25.4, 0, 0}));
    ASSERT_EQ(job.pads.size(), 1U);
    EXPECT_EQ(job.pads[0].pressure, 2.0);
    EXPECT_EQ(job.pads[0].elements.set, "1");
    ASSERT_EQ(job.constraints.size(), 1U);
    EXPECT_EQ(job.constraints[0].x, 1.5);
    EXPECT_FALSE(job.constraints[0].y);
    EXPECT_EQ((*job.constraints[0].nodes.box)[1], (Point3{1, 2, 3}));
}

TEST_F(JobTest, ActionsNeedWhatTheyActOn)
{
    EXPECT_THAT(RefusalWith("[[pad]]\npressure = \"2 MPa\"\n"), HasSubstr("nothing is selected"));
    EXPECT_THAT(RefusalWith("[[bead]]\nforce = \"2 N/mm\"\npoints_mm = [[0,0,0]]\n"), HasSubstr("at least two points"));
    EXPECT_THAT(RefusalWith("[[constraint]]\nnodes = [1]\n"), HasSubstr("prescribes x, y or both"));
    EXPECT_THAT(RefusalWith("[[constraint]]\nx = \"0 mm\"\nbox_mm = [[1,0,0],[0,1,1]]\n"),
                HasSubstr("first corner must be the lower one"));
}

TEST_F(JobTest, FldZeroFollowsFromTheMillimetresOfTheThicknessUnlessItIsGiven)
{
    EXPECT_DOUBLE_EQ(Parsed(Sound()).limits.fldZero, FldZero::CalculateFLD0(0.78, 0.2589));
    EXPECT_NEAR(Parsed(Sound()).limits.fldZero, (356.7 * 0.78 / 25.4 + 23.36) * 0.2589 / 0.2116, 1e-12);
    EXPECT_EQ(With("[limits]\nfld0 = \"40 %\"\n").limits.fldZero, 40.0);
    EXPECT_EQ(With("[limits]\nfld0_fraction = 0.4\n").limits.fldZero, 40.0);
}

TEST_F(JobTest, LimitsThatContradictThemselvesAreRefused)
{
    EXPECT_THAT(RefusalWith("[limits]\nthinning_percent = 10\nthinning_margin_percent = 20\n"),
                HasSubstr("must not be above thinning"));
    EXPECT_THAT(RefusalWith("[limits]\nthinning_percent = 100\n"), HasSubstr("below 100 %"));
    EXPECT_THAT(RefusalWith("[limits]\nfld0_percent = 0\n"), HasSubstr("above 0 %"));
}

TEST_F(JobTest, SeveralMaterialsAreReadWithTheirSets)
{
    std::string const text = Replaced(Sound(), "[material]", "[[material]]\nset = \"1\"") +
                             "[[material]]\nset = \"2\"\nK_MPa = 500\nn = 0.2\nr = 1\nyield_MPa = 200\n";
    EXPECT_EQ(Parsed(text).materials[1].set, "2");
}

// Warnings name the number and the usual range.
struct SenseCase
{
    char const * part;
    char const * by;
    char const * warning;
};

class JobSense : public JobFixture, public testing::WithParamInterface<SenseCase>
{
};

TEST_P(JobSense, WarnsOfTheUnusual)
{
    Job const job = ParseJob(Replaced(Sound(), GetParam().part, GetParam().by), JobPath());
    EXPECT_THAT(job.warnings, testing::ElementsAre(HasSubstr(GetParam().warning)));
}

INSTANTIATE_TEST_SUITE_P(
    Ranges, JobSense,
    testing::Values(SenseCase{"0.78 mm", "0.1 mm", "thickness 0.1 mm is outside the usual 0.2 to 8 mm"},
                    SenseCase{"0.78 mm", "9 mm", "thickness 9 mm is outside"},
                    SenseCase{"yield_MPa = 157", "yield_MPa = 157e6", "looks like a value in Pa"},
                    SenseCase{"yield_MPa = 157", "yield_MPa = 20", "yield 20 MPa is outside the usual 50 to 1500 MPa"},
                    SenseCase{"n = 0.2589", "n = 0.7", "n 0.7 is outside the usual 0.05 to 0.6"},
                    SenseCase{"r = 1.79", "r = 4", "r 4 is outside the usual 0.3 to 3"},
                    SenseCase{"r = 1.79", "r = 1.79\nE_GPa = 21", "E 21000 MPa is outside the usual 60000 to 220000"},
                    SenseCase{"[blank]", "[friction]\ncoefficient = 0.5\n[blank]", "friction coefficient 0.5"},
                    SenseCase{"[blank]", "[friction]\ncoefficient = 0\n[blank_holder]\ntotal_force = \"1 kN\"\n[blank]",
                              "restrains nothing"},
                    SenseCase{"[blank]", "[blank_holder]\nforce_per_length = \"200 N/mm\"\n[blank]",
                              "above the 122.5 N/mm at which the sheet yields"}));

TEST_F(JobTest, ExplainsEveryValueWithItsUnitAndWhetherItIsADefault)
{
    std::vector<OutcomeParameter> const values = Parsed(Sound()).parameters;
    auto const find = [&values](std::string const & i_key)
    {
        for (OutcomeParameter const & value : values)
            if (value.key == i_key)
                return value.value + "|" + value.unit + (value.isDefault ? "|default" : "|job");
        return std::string("missing");
    };
    EXPECT_EQ(find("blank.thickness"), "0.78|mm|job");
    EXPECT_EQ(find("material.K"), "565.32|MPa|job");
    EXPECT_EQ(find("material.E"), "210000|MPa|default");
    EXPECT_EQ(find("friction.coefficient"), "0.15||default");
    EXPECT_EQ(find("blank_holder.level"), "0||default");
    EXPECT_THAT(find("limits.fld0"), AllOf(HasSubstr("|%|default"), StartsWith("41.98")));
    EXPECT_EQ(find("output.outline_tolerance"), "0.05|mm|default");
}

TEST_F(JobTest, TheLockedJobReadsBackEqual)
{
    Job const job = With(Everything() + "[symmetry]\nplanes = \"yz\"\n[tip]\ndie_line = [0, 0.6, 0.8]\n"
                                        "[friction]\ncoefficient = 0.12\ntools = true\n"
                                        "[blank_holder]\nforce_per_length = \"9.4 N/mm\"\n"
                                        "[limits]\nfld0 = \"33.3 %\"\nshear = \"0 %\"\nshear_margin = \"0 %\"\n");
    std::vector<OutcomeInput> const inputs = {{job.mesh, std::string(64, 'a')}};
    std::string const text = LockedJob(job, inputs, Folder());
    Job const again = ParseJob(text, JobPath());
    EXPECT_EQ(LockedJob(again, inputs, Folder()), text);
    EXPECT_EQ(again.mesh, job.mesh);
    EXPECT_EQ(again.limits.fldZero, job.limits.fldZero);
    EXPECT_EQ(again.beads[0].points, job.beads[0].points);
    EXPECT_EQ(again.holder.force, job.holder.force);
    EXPECT_EQ(*again.dieLine, *job.dieLine);
    ASSERT_EQ(again.lockedInputs.size(), 1U);
    EXPECT_EQ(again.lockedInputs[0].sha256, inputs[0].sha256);
}

TEST_F(JobTest, ALockedCurveReadsBackEqual)
{
    Job const job = With("[material.curve]\nstrain_kind = \"engineering\"\nstrain_percent = [1, 2, 5, 10, 20]\n"
                         "stress_MPa = [200, 220, 270, 300, 320]\n");
    Job const again = ParseJob(LockedJob(job, {}, Folder()), JobPath());
    EXPECT_EQ(again.materials[0].curve, job.materials[0].curve);
    EXPECT_EQ(again.materials[0].exponent, job.materials[0].exponent);
}

TEST_F(JobTest, TextsOfAnyKindSurviveTheLock)
{
    Job const job = ParseJob("title = \"a \\\"quote\\\", a \\\\ and a \\t tab, \xC3\xBC\"\n" + Sound(), JobPath());
    EXPECT_EQ(ParseJob(LockedJob(job, {}, Folder()), JobPath()).title, job.title);
}

TEST_F(JobTest, TheStarterJobIsSoundButForItsMesh)
{
    EXPECT_THAT(
        RefusalOf(Replaced(StarterJob(), "from = \"mild-140-270\"", "K_MPa = 500\nn = 0.2\nr = 1\nyield_MPa = 200")),
        "not refused");
}

TEST_F(JobTest, AMaterialComesFromTheDatabaseAndCanBeChanged)
{
    std::string const text = "[mesh]\nfile = \"part.bdf\"\n[blank]\nthickness_mm = 0.78\n[material]\n"
                             "from = \"mild-steel-numisheet93\"\ndatabase = \"" VOZ_SOURCE_DIR "/InstallRoot/dat\"\n";
    JobMaterial const material = Parsed(text).materials[0];
    EXPECT_NEAR(material.strength, 565.32, 1e-9);
    EXPECT_NEAR(material.yield, 157.12816, 1e-9);
    EXPECT_NEAR(material.modulus, 210000.0, 1e-6);
    EXPECT_THAT(material.source, HasSubstr("NUMISHEET"));
    JobMaterial const changed = Parsed(text + "r = 1.2\n").materials[0];
    EXPECT_EQ(changed.anisotropy, 1.2);
    EXPECT_EQ(changed.exponent, material.exponent);
}

TEST_F(JobTest, AnUnknownMaterialIsRefusedWithTheNearestName)
{
    EXPECT_THAT(
        RefusalOf("[mesh]\nfile = \"part.bdf\"\n[blank]\nthickness_mm = 1\n[material]\nfrom = \"mild-140-280\"\n"
                  "database = \"" VOZ_SOURCE_DIR "/InstallRoot/dat\"\n"),
        AllOf(HasSubstr(At(6)), HasSubstr("the nearest is \"mild-140-270\"")));
    EXPECT_THAT(RefusalOf("[mesh]\nfile = \"part.bdf\"\n[blank]\nthickness_mm = 1\n[material]\nfrom = \"x\"\n"
                          "database = \"none\"\n"),
                HasSubstr("no material database"));
}
