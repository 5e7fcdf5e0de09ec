// OneStepSolverTest.cpp: the solver program, by itself and at the end of the file route.
//
// The cup is case A1 of the axisymmetric verification problems (blank radius 67.110 mm, punch force 29369.6 N for the
// whole), A2 with 20 N/mm around its rim (66.897 mm); the values come from the ordinary differential equation of the
// cup. The mesh here is the coarsest one, good for 0.3 % of the radius and 5 % of the force.

#include "DeckJobs.h"
#include "FolderFixture.h"

#include "ElemProperty.h"
#include "FormingLimit.h"
#include "Material.h"
#include "Mesh.h"
#include "Result.h"
#include "Solver.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VOZMaterial.h"
#include "surfaces/Surfaces.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

#if !defined(_WIN32)
#include <sys/wait.h>

using deckjobs::goldenFolder;
using deckjobs::readFile;
using deckjobs::writeFile;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
namespace ex = voz::examples;

namespace
{
std::string program()
{
    return VOZ_BINARY_DIR "/bin/OneStepSolver";
}

constexpr double kThickness = 0.78;
constexpr double kYield = 157.0;
constexpr double kFriction = 0.144;
constexpr double kRim = 57.0; // radius of the cup's rim

// A job of mild steel on a mesh in mm whose x and y axes are planes of symmetry, or not.
struct SheetJob
{
    SheetJob(ex::SurfaceMesh const & i_mesh, Symmetry i_symmetry)
        : mesh(static_cast<int>(i_mesh.nodes.size()), static_cast<int>(i_mesh.elements.size())),
          material(kThickness, 1.79, 0.2589, 565.32, kYield), symmetry(i_symmetry)
    {
        for (std::size_t n = 0; n < i_mesh.nodes.size(); ++n)
            std::copy(i_mesh.nodes[n].begin(), i_mesh.nodes[n].end(), mesh.GetNodeData()[n + 1]);
        for (std::size_t e = 0; e < i_mesh.elements.size(); ++e)
        {
            std::array<int, 4> const & row = i_mesh.elements[e];
            for (std::size_t k = 0; k < 4; ++k)
                mesh.GetElemData()[e + 1][k] = (row[k] < 0 ? row[0] : row[k]) + 1;
        }
        property.sizeProperty(1);
        property.material(1)->m_dThickness = 0.001 * kThickness;
        property.material(1)->m_dYield = 1.0e6 * kYield;
        property.formingLimit(1) = FormingLimit(material, 10.0, 5.0, FldZero::CalculateFLD0(kThickness, 0.2589), 0);
        property.sizePropertyIndex(mesh.numElem());
        for (int e = 1; e <= mesh.numElem(); ++e)
            property.propertyId(e, 1);
        friction.coefficient(kFriction);
    }

    Solver solver()
    {
        char folder[] = ".";
        return Solver(mesh, material, property, symmetry, friction, fullHolder, axis, folder);
    }

    // The whole route. The result is null if the program left none.
    std::unique_ptr<Result> solve(bool controlFlag = false)
    {
        EXPECT_EQ(solver().write("deck.fpi", false, controlFlag, 0), 0);
        testing::internal::CaptureStdout();
        EXPECT_EQ(solver().run(program().c_str(), "deck.fpi"), 0);
        testing::internal::GetCapturedStdout();
        if (!std::filesystem::exists("deck.fpo"))
            return nullptr;
        auto result = std::make_unique<Result>(mesh);
        solver().read("deck.fpo", *result, false);
        return result;
    }

    double flat(Result const & result, int n, int c) const
    {
        return mesh.NodeValue(n, c) + static_cast<double>(result.disp1(n, c));
    }

    // Mean radius of the flat rim.
    double blankRadius(Result const & result) const
    {
        double sum = 0.0;
        int count = 0;
        for (int n = 1; n <= mesh.numNode(); ++n)
            if (std::hypot(mesh.NodeValue(n, 0), mesh.NodeValue(n, 1)) > kRim - 1.0e-6)
            {
                sum += std::hypot(flat(result, n, 0), flat(result, n, 1));
                ++count;
            }
        return sum / count;
    }

    // A single holder around the rim, over free edges whose nodes both lie on it.
    void holdRim(double newtonsPerMetre)
    {
        std::vector<EdgeProperty> edges;
        double length = 0.0;
        auto const isRim = [this](int n)
        { return std::hypot(mesh.NodeValue(n, 0), mesh.NodeValue(n, 1)) > kRim - 1.0e-6; };
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int k = 0; k < 4; ++k)
            {
                int const a = mesh.ElementValue(e, k);
                int const b = mesh.ElementValue(e, (k + 1) % 4);
                if (a == b || !isRim(a) || !isRim(b))
                    continue;
                edges.emplace_back();
                edges.back().element = e;
                edges.back().node1 = a;
                edges.back().node2 = b;
                length += std::hypot(mesh.NodeValue(a, 0) - mesh.NodeValue(b, 0),
                                     mesh.NodeValue(a, 1) - mesh.NodeValue(b, 1));
            }
        property.sizeBlankHolders(1);
        BlankHolder & holder = property.blankHolders(1);
        holder.edgeCount = static_cast<int>(edges.size());
        holder.edges = new EdgeProperty[edges.size()];
        std::copy(edges.begin(), edges.end(), holder.edges);
        holder.force = newtonsPerMetre * 0.001 * length / (2.0 * kFriction);
    }

    VOZCatMesh mesh;
    Material material;
    ElemProperty property;
    VOZCatAxis axis;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder fullHolder;
};

ex::SurfaceMesh cup(ex::Cells cells)
{
    return ex::cup(ex::Cup(), 1, ex::Extent::Quarter, cells);
}

struct Ended
{
    int code;
    std::string output;
    std::string errors;
};

class OneStepSolver : public FolderFixture
{
protected:
    static Ended start(std::string const & arguments)
    {
        int const status = std::system(("\"" + program() + "\" " + arguments + " >output.txt 2>errors.txt").c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile("output.txt"), readFile("errors.txt")};
    }
    static void writeCup()
    {
        SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
        ASSERT_EQ(job.solver().write("deck.fpi", false, false, 0), 0);
    }
    static std::vector<std::string> filesHere()
    {
        std::vector<std::string> names;
        for (auto const & entry : std::filesystem::directory_iterator("."))
            names.push_back(entry.path().filename().string());
        return names;
    }
};
} // namespace

// The route from end to end

TEST_F(OneStepSolver, FindsTheBlankOfACupOfTriangles)
{
    SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
    auto const result = job.solve();
    ASSERT_TRUE(result);
    EXPECT_NEAR(job.blankRadius(*result), 67.110, 0.2);
    EXPECT_NEAR(result->PunchForce(), 29369.57 / 4.0, 0.06 * 29369.57 / 4.0);
    for (int n = 1; n <= job.mesh.numNode(); ++n)
        EXPECT_NEAR(job.flat(*result, n, 2), 0.0, 1.0e-5);
}

TEST_F(OneStepSolver, FindsTheBlankOfACupOfQuadrilaterals)
{
    SheetJob job(cup(ex::Cells::Quads), Symmetry(true, true));
    auto const result = job.solve();
    ASSERT_TRUE(result);
    EXPECT_NEAR(job.blankRadius(*result), 67.110, 0.2);
}

TEST_F(OneStepSolver, GivesThicknessAndStrainsThatKeepTheVolume)
{
    for (ex::Cells const cells : {ex::Cells::Triangles, ex::Cells::Quads})
    {
        SheetJob job(cup(cells), Symmetry(true, true));
        auto const result = job.solve();
        ASSERT_TRUE(result);
        for (int e = 1; e <= job.mesh.numElem(); ++e)
        {
            double const h1 = std::log1p(0.01 * static_cast<double>(result->strain(e, 0)));
            double const h2 = std::log1p(0.01 * static_cast<double>(result->strain(e, 1)));
            EXPECT_GE(h1, h2);
            EXPECT_NEAR(result->thickness(e), kThickness * std::exp(-h1 - h2), 0.01 * kThickness) << e;
            // Stress of mild steel in pascals for both kinds, though the text has two units.
            EXPECT_GT(result->stress(e), 1.0e6f) << e;
            EXPECT_LT(result->stress(e), 1.0e9f) << e;
        }
    }
}

TEST_F(OneStepSolver, GivesTheSameDisplacementsInAnotherFrame)
{
    SheetJob plain(cup(ex::Cells::Triangles), Symmetry(true, true));
    auto const expected = plain.solve();
    SheetJob turned(cup(ex::Cells::Triangles), Symmetry(true, true));
    // Global x is local -y, global y is local x: the planes of symmetry change places and stay planes.
    double const origin[3] = {100.0, -50.0, 7.0};
    double const rows[3][3] = {{0.0, 1.0, 0.0}, {-1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}};
    for (int i = 0; i < 3; ++i)
        turned.axis.axis(i, Vec(rows[i]));
    turned.axis.origin(Vec(static_cast<double const *>(origin)));
    for (int n = 1; n <= turned.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            turned.mesh.GetNodeData()[n][c] += origin[c];
    auto const result = turned.solve();
    ASSERT_TRUE(expected && result);
    for (int n = 1; n <= plain.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(result->disp1(n, c), expected->disp1(n, c), 2.0e-4) << n;
    EXPECT_NEAR(result->PunchForce(), expected->PunchForce(), 0.1);
}

// 20 N/mm around the rim, said in two ways that stand in the deck in different units.
TEST_F(OneStepSolver, FeelsTheFullHolderAndASingleOneAlike)
{
    SheetJob single(cup(ex::Cells::Triangles), Symmetry(true, true));
    single.holdRim(20000.0);
    auto const bySingle = single.solve();
    SheetJob full(cup(ex::Cells::Triangles), Symmetry(true, true));
    full.fullHolder.factor(20000.0 / (0.001 * kThickness * 1.0e6 * kYield));
    auto const byFull = full.solve();
    ASSERT_TRUE(bySingle && byFull);
    EXPECT_NEAR(single.blankRadius(*bySingle), 66.897, 0.2);
    EXPECT_NEAR(full.blankRadius(*byFull), single.blankRadius(*bySingle), 1.0e-4);
    EXPECT_NEAR(byFull->PunchForce(), bySingle->PunchForce(), 0.5);
    EXPECT_GT(byFull->PunchForce(), 1.1 * 29369.57 / 4.0);
}

TEST_F(OneStepSolver, LocksTheRimWhereTheHolderSaysSo)
{
    SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
    job.fullHolder.option(4);
    auto const result = job.solve();
    ASSERT_TRUE(result);
    EXPECT_NEAR(job.blankRadius(*result), kRim, 1.0e-4);
}

namespace
{
// A flat plate of 20 x 10 mm that the flat squeezes by half a millimetre from both sides: uniaxial tension along x.
std::unique_ptr<SheetJob> pulledPlate(ex::Cells cells)
{
    auto job = std::make_unique<SheetJob>(ex::extrude(ex::Profile({0.0, 0.0}, 0.0).line(20.0, 4), 10.0, 2, cells),
                                          Symmetry(false, false));
    job->property.sizeDispBC(2);
    for (int table = 1; table <= 2; ++table)
    {
        double const x = table == 1 ? 0.0 : 20.0;
        std::vector<int> nodes;
        for (int n = 1; n <= job->mesh.numNode(); ++n)
            if (std::fabs(job->mesh.NodeValue(n, 0) - x) < 1.0e-9)
                nodes.push_back(n);
        DispBC & bc = job->property.dispBCs(table);
        bc.setSize(static_cast<int>(nodes.size()));
        std::copy(nodes.begin(), nodes.end(), bc.nodes);
        bc.setCode(0b000001);
        bc.values[0] = table == 1 ? 0.5 : -0.5;
    }
    return job;
}
} // namespace

TEST_F(OneStepSolver, MovesNodesFromThePartToTheFlatAsPrescribed)
{
    auto const job = pulledPlate(ex::Cells::Quads);
    auto const result = job->solve();
    ASSERT_TRUE(result);
    for (int n = 1; n <= job->mesh.numNode(); ++n)
        EXPECT_NEAR(result->disp1(n, 0), 0.5 - 0.05 * job->mesh.NodeValue(n, 0), 2.0e-3) << n;
}

TEST_F(OneStepSolver, GivesEachQuantityOfATensileTestInItsUnit)
{
    double const r = 1.79;
    double const h = std::log(20.0 / 19.0);
    for (ex::Cells const cells : {ex::Cells::Triangles, ex::Cells::Quads})
    {
        auto const job = pulledPlate(cells);
        auto const result = job->solve();
        ASSERT_TRUE(result);
        for (int e = 1; e <= job->mesh.numElem(); ++e)
        {
            EXPECT_NEAR(result->strain(e, 0), 100.0 * std::expm1(h), 0.01);
            EXPECT_NEAR(result->strain(e, 1), 100.0 * std::expm1(-h * r / (1.0 + r)), 0.02);
            EXPECT_NEAR(result->thickness(e), kThickness * std::exp(-h / (1.0 + r)), 1.0e-4);
            EXPECT_NEAR(result->stress(e), 271.0e6, 2.0e6); // the curve at 0.0513, pascals
            if (job->mesh.isTriangle(e) == 0)
                continue;
            double const factor = std::sqrt(2.0 * (2.0 + r) / (3.0 * (1.0 + r)));
            EXPECT_NEAR(result->EquivalentStrain(e), 100.0 * std::expm1(factor * h), 0.01);
            int const a = job->mesh.ElementValue(e, 0);
            int const b = job->mesh.ElementValue(e, 1);
            double const side = std::atan2(job->mesh.NodeValue(b, 1) - job->mesh.NodeValue(a, 1),
                                           job->mesh.NodeValue(b, 0) - job->mesh.NodeValue(a, 0));
            double const angle = static_cast<double>(result->strain(e, 2)) * std::acos(-1.0) / 180.0;
            EXPECT_NEAR(std::sin(side + angle), 0.0, 1.0e-3) << e; // together they turn from x to x
            EXPECT_GE(angle, 0.0);
            EXPECT_LT(angle, 3.1416);
        }
    }
}

TEST_F(OneStepSolver, CarriesBeadsPadsAndToolFriction)
{
    SheetJob job(cup(ex::Cells::Quads), Symmetry(true, true));
    auto const plain = job.solve();
    auto const rubbed = job.solve(true);
    ASSERT_TRUE(plain && rubbed);
    EXPECT_GT(rubbed->PunchForce(), 1.01f * plain->PunchForce()); // the control flag switches tool friction on

    // A pad on the whole sheet.
    job.property.sizePressPads(1);
    job.property.pressPadVal(1, 1.0e6);
    job.property.pressPadSize(1, job.mesh.numNode());
    for (int n = 1; n <= job.mesh.numNode(); ++n)
        job.property.pressPads(1, n, n);
    auto const padded = job.solve();
    ASSERT_TRUE(padded);
    EXPECT_GT(std::fabs(padded->PunchForce() - plain->PunchForce()), 1.0f);
    job.property.clearPressPads();

    // A bead through the middle of the last element, which lies at the rim.
    job.property.sizeDrawBeads(1);
    DrawBead & bead = job.property.drawBeads(1);
    bead.force = 50000.0;
    bead.edgeCount = 1;
    bead.edges = new EdgeProperty[1];
    bead.edges[0].element = job.mesh.numElem();
    double const ends[4] = {-1.0, 0.0, 1.0, 0.0};
    std::copy(ends, ends + 4, bead.edges[0].edgeValues);
    auto const beaded = job.solve();
    ASSERT_TRUE(beaded);
    EXPECT_GT(std::fabs(beaded->PunchForce() - plain->PunchForce()), 0.1f);
}

// The program by itself

TEST_F(OneStepSolver, WritesTheResultBesideTheDeckInRowsOfFewerThan254Characters)
{
    std::filesystem::create_directory("job");
    SheetJob job(cup(ex::Cells::Quads), Symmetry(true, true));
    ASSERT_EQ(job.solver().write("job/my deck.fpi", false, false, 0), 0);
    Ended const ended = start("-pfpi \"job\\my deck.fpi\" -sd \"job\"");
    EXPECT_EQ(ended.code, 0) << ended.errors;
    EXPECT_THAT(ended.errors, IsEmpty()); // no progress where nobody looks
    EXPECT_THAT(ended.output, HasSubstr("punch force"));
    std::string const text = readFile("job/my deck.fpo");
    std::size_t quads = 0;
    for (int e = 1; e <= job.mesh.numElem(); ++e)
        quads += job.mesh.isTriangle(e) == 0 ? 1 : 0;
    std::vector<std::string> const lines = deckjobs::linesOf(text);
    EXPECT_EQ(lines.size(), 3u + static_cast<std::size_t>(job.mesh.numNode()) + 1u +
                                static_cast<std::size_t>(job.mesh.numElem()) + 3u * quads + 3u);
    for (std::string const & line : lines)
        EXPECT_LT(line.size(), 254u);
    EXPECT_FALSE(std::filesystem::exists("job/my deck.fpo.part"));
}

TEST_F(OneStepSolver, GivesTheSameBytesTwice)
{
    writeCup();
    ASSERT_EQ(start("-pfpi deck.fpi -sd .").code, 0);
    std::string const once = readFile("deck.fpo");
    ASSERT_EQ(start("-sd . -pfpi deck.fpi").code, 0);
    EXPECT_EQ(readFile("deck.fpo"), once);
}

TEST_F(OneStepSolver, TakesWhatTheDeckLacksFromSolverCfg)
{
    writeCup();
    ASSERT_EQ(start("-pfpi deck.fpi").code, 0);
    std::string const steel = readFile("deck.fpo");
    writeFile("solver.cfg", "YoungsModulus=210e9\nPoissonsRatio=0.3\nToolFriction=0\n");
    ASSERT_EQ(start("-pfpi deck.fpi -sd .").code, 0);
    EXPECT_EQ(readFile("deck.fpo"), steel);
    writeFile("solver.cfg", "YoungsModulus=70e9\n");
    ASSERT_EQ(start("-pfpi deck.fpi -sd .").code, 0);
    EXPECT_NE(readFile("deck.fpo"), steel);
    writeFile("solver.cfg", "YoungsModulus=70\n");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 3);
    EXPECT_THAT(ended.errors, HasSubstr("solver.cfg:1: YoungsModulus is 70; expected pascals"));
}

TEST_F(OneStepSolver, RefusesAMalformedDeckAndLeavesNoResultNotEvenAnOlderOne)
{
    writeFile("deck.fpo", "of last week");
    writeFile("deck.fpi", "DRAVO3D - version 5.0 - deck.fpi\n***\nblock II: control line\n1 2\n");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 3);
    EXPECT_EQ(ended.errors, "OneStepSolver: deck.fpi:4: the first control line has 2 fields; expected 30\n");
    EXPECT_THAT(filesHere(), testing::Not(testing::Contains(HasSubstr(".fpo"))));
}

TEST_F(OneStepSolver, RefusesWhatIsNoDeck)
{
    std::filesystem::create_directory("folder.fpi");
    writeFile("empty.fpi", "");
    for (char const * name : {"folder.fpi", "empty.fpi", "missing.fpi"})
    {
        Ended const ended = start(std::string("-pfpi ") + name + " -sd .");
        EXPECT_EQ(ended.code, 3) << name;
        EXPECT_THAT(ended.errors, HasSubstr(name));
    }
}

TEST_F(OneStepSolver, SaysWhyAPartCannotBeSolved)
{
    // One element without any area.
    std::string deck = readFile(goldenFolder() / "no_material.golden");
    deck.replace(deck.find("3 0.000000 1.000000"), 19, "3 0.000000 0.000000");
    writeFile("deck.fpi", deck);
    writeFile("deck.fpo", "of last week");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 4);
    EXPECT_THAT(ended.errors, HasSubstr("element"));
    EXPECT_THAT(ended.errors, HasSubstr("counted from 0 here, in the deck from 1"));
    EXPECT_FALSE(std::filesystem::exists("deck.fpo"));
}

TEST_F(OneStepSolver, SaysSoWhereTheResultCannotBeWritten)
{
    writeCup();
    std::filesystem::create_directories("deck.fpo/in the way");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("cannot write deck.fpo"));
    EXPECT_FALSE(std::filesystem::exists("deck.fpo.part"));
}

TEST_F(OneStepSolver, SaysSoWhereTheDiskIsFull)
{
    writeCup();
    std::filesystem::create_symlink("/dev/full", "deck.fpo.part");
    Ended const ended = start("-pfpi deck.fpi -sd .");
    EXPECT_EQ(ended.code, 5);
    EXPECT_THAT(ended.errors, HasSubstr("cannot write deck.fpo: No space left on device"));
    EXPECT_THAT(filesHere(), testing::Not(testing::Contains(HasSubstr(".fpo"))));
}

// The cup's planes of symmetry stay planes, and what is read back are positions in mm in the stamping frame.
TEST_F(OneStepSolver, SpringsACupBackFromEndToEnd)
{
    SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
    ASSERT_EQ(job.solver().write("deck.spi", false, false, 0), 0);
    EXPECT_EQ(job.solver().run_spb(program().c_str(), "deck.spi"), 0);
    ASSERT_TRUE(std::filesystem::exists("deck.spo"));
    EXPECT_THAT(filesHere(), testing::Not(testing::Contains(HasSubstr(".fpo"))));
    EXPECT_THAT(readFile("deck-springback.sum"), HasSubstr("outcome              converged"));
    EXPECT_THAT(readFile("deck.sum"), HasSubstr("punch force N"));
    Result result(job.mesh);
    job.solver().read("deck.spo", result, false);
    double greatest = 0.0;
    for (int n = 1; n <= job.mesh.numNode(); ++n)
        for (int c = 0; c < 3; ++c)
        {
            double const before = job.mesh.NodeValue(n, c);
            double const after = static_cast<double>(result.dispOnBinder1(n, c));
            greatest = std::max(greatest, std::abs(after - before));
            if (c < 2 && before == 0.0)
            {
                EXPECT_NEAR(after, 0.0, 1.0e-5) << n;
            }
        }
    EXPECT_GT(greatest, 0.01); // mm
    EXPECT_LT(greatest, 5.0);
}

// A whole part that nothing holds: only distances are known.
TEST_F(OneStepSolver, ThreePinsHoldAWholePart)
{
    SheetJob job(ex::cup(ex::Cup(), 1, ex::Extent::Whole, ex::Cells::Triangles), Symmetry(false, false));
    ASSERT_EQ(job.solver().write("deck.spi", false, false, 0), 0);
    Ended const ended = start("-pspi deck.spi -sd .");
    EXPECT_EQ(ended.code, 0) << ended.errors;
    EXPECT_THAT(ended.output, HasSubstr("outcome              converged"));
    EXPECT_THAT(readFile("deck-springback.log"), HasSubstr("6 rigid motions are pinned"));
}

TEST_F(OneStepSolver, TellsHowItIsUsed)
{
    EXPECT_EQ(start("--help").code, 0);
    EXPECT_THAT(start("--help").output, AllOf(HasSubstr("-pfpi"), HasSubstr("Exit codes"), HasSubstr("Example")));
    struct Case
    {
        char const * arguments;
        char const * message;
    };
    for (Case const & c :
         {Case{"", "no deck"}, Case{"-sd .", "no deck"}, Case{"-pfpi", "-pfpi has no value"},
          Case{"deck.fpi", "unknown option \"deck.fpi\""}, Case{"-pfpi a.fpi -pfpi b.fpi", "a second deck with -pfpi"},
          Case{"-pspi deck.spi -pfpi deck.fpi -sd .", "a second deck"},
          Case{"-pfpi deck.fpo -sd .", "the extension of results"}})
    {
        Ended const ended = start(c.arguments);
        EXPECT_EQ(ended.code, 2) << c.arguments;
        EXPECT_THAT(ended.errors, HasSubstr(c.message));
    }
}
#endif
