// FormedExportsTest.cpp: the formed blank as LS-DYNA deck, NASTRAN bulk data and table of displacements, read back by
// the workbench's readers and, for what these pass over, by small ones of the test's own.

#include "Exports.h"

#include "ExportMeshes.h"
#include "GoldenText.h"
#include "Job.h"
#include "MeshFile.h"
#include "OutputFile.h"
#include "TempFolder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using goldentext::linesOf;

namespace voz::workbench
{
namespace
{
std::size_t at(int position)
{
    return static_cast<std::size_t>(position - 1);
}

std::vector<ElementOutcome> randomElements(std::mt19937 & generator, int count)
{
    std::uniform_real_distribution<double> share(0.0, 1.0);
    std::vector<ElementOutcome> elements(static_cast<std::size_t>(count));
    for (ElementOutcome & element : elements)
    {
        element.major = 40.0 * share(generator);
        element.minor = element.major - 50.0 * share(generator);
        element.angle = 3.14159 * share(generator);
        element.equivalentStrain = 60.0 * share(generator);
        element.thickness = 0.5 + share(generator);
    }
    return elements;
}

class FormedExports : public testing::Test
{
protected:
    FormedExports()
    {
        std::mt19937 generator(20261121);
        std::uniform_real_distribution<double> share(-1.0, 1.0);
        outcome.part = exportmeshes::random(generator, 7, 5, 0, 0);
        outcome.firstThickness = 0.8;
        outcome.elements = randomElements(generator, outcome.part.numElem());
        outcome.top = randomElements(generator, outcome.part.numElem());
        outcome.bottom = randomElements(generator, outcome.part.numElem());
        outcome.nodes.resize(static_cast<std::size_t>(outcome.part.numNode()));
        for (NodeOutcome & node : outcome.nodes)
        {
            node.thickness = 0.8 + 0.2 * share(generator);
            node.displacement = {100.0 * share(generator), 100.0 * share(generator), 30.0 * share(generator)};
        }
        materials[0].name = "mild steel";
        materials[0].yield = 160.0;
        materials[0].strength = 520.0;
        materials[0].exponent = 0.22;
        materials[0].modulus = 207000.0;
        materials[0].poisson = 0.28;
        materials[0].density = 7830.0;
    }

    // The lines behind a keyword up to the next one, comments aside.
    std::vector<std::string> block(std::string const & file, std::string const & keyword) const
    {
        std::vector<std::string> result;
        bool inside = false;
        for (std::string const & line : linesOf(folder.Read(file)))
        {
            if (inside && line[0] == '*')
                break;
            if (inside && line[0] != '$')
                result.push_back(line);
            inside = inside || line == keyword;
        }
        return result;
    }

    static std::vector<double> numbers(std::string line)
    {
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream stream(line);
        std::vector<double> result;
        for (double value = 0.0; stream >> value;)
            result.push_back(value);
        return result;
    }

    void expectSameMesh(MeshModel const & model, double relative) const
    {
        ASSERT_EQ(model.mesh.numNode(), outcome.part.numNode());
        ASSERT_EQ(model.mesh.numElem(), outcome.part.numElem());
        for (int n = 1; n <= model.mesh.numNode(); ++n)
            for (int c = 0; c < 3; ++c)
                EXPECT_NEAR(model.mesh.NodeValue(n, c), outcome.part.NodeValue(n, c),
                            relative * std::abs(outcome.part.NodeValue(n, c)));
        for (int e = 1; e <= model.mesh.numElem(); ++e)
            for (int k = 0; k < 4; ++k)
                EXPECT_EQ(model.mesh.ElementValue(e, k), outcome.part.ElementValue(e, k));
    }

    TempFolder folder;
    Outcome outcome;
    std::vector<JobMaterial> materials = std::vector<JobMaterial>(1);
};

// The side 1-2 in the element's plane and what lies across it, the normal last; of a quadrilateral by its diagonals.
std::array<Point3, 3> frameOf(VOZCatMesh const & mesh, int e)
{
    auto const way = [&](int from, int to)
    {
        Point3 d;
        for (int c = 0; c < 3; ++c)
            d[static_cast<std::size_t>(c)] = mesh.node(mesh.elem(e, to), c) - mesh.node(mesh.elem(e, from), c);
        return d;
    };
    auto const cross = [](Point3 const & a, Point3 const & b) {
        return Point3{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    };
    auto const unit = [](Point3 const & a)
    {
        double const size = std::hypot(a[0], a[1], a[2]);
        return Point3{a[0] / size, a[1] / size, a[2] / size};
    };
    bool const triangle = mesh.isTriangle(e) == 1;
    Point3 const normal = unit(triangle ? cross(way(0, 1), way(0, 2)) : cross(way(0, 2), way(1, 3)));
    Point3 const across = unit(cross(normal, way(0, 1)));
    return {cross(across, normal), across, normal};
}
} // namespace

TEST_F(FormedExports, TheMainDeckReadsBackAsTheMeshWithItsPart)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    ReadOptions options;
    options.unitLength = 1000.0;
    MeshModel const model = ReadMesh(folder.Path("formed_main.k"), options);
    expectSameMesh(model, 5.1e-9); // nine digits
    ASSERT_EQ(model.sets.size(), 1u);
    EXPECT_EQ(model.sets[0].id, 1);
    EXPECT_EQ(model.sets[0].name, "FORMED BLANK");
    std::vector<int> ids(model.elementIds.size());
    for (std::size_t i = 0; i < ids.size(); ++i)
        ids[i] = static_cast<int>(i) + 1;
    EXPECT_EQ(model.elementIds, ids);
}

TEST_F(FormedExports, TheDeckHasTheThicknessOfEachCornerInMetres)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    std::vector<std::string> const lines = block("formed.k", "*ELEMENT_SHELL_THICKNESS ");
    ASSERT_EQ(lines.size(), 2 * outcome.elements.size());
    for (int e = 1; e <= outcome.part.numElem(); ++e)
    {
        std::vector<double> const values = numbers(lines[2 * at(e) + 1]);
        ASSERT_EQ(values.size(), 4u);
        for (int k = 0; k < 4; ++k)
            EXPECT_NEAR(values[static_cast<std::size_t>(k)],
                        0.001 * outcome.nodes[at(outcome.part.elem(e, k))].thickness, 1e-9);
    }
}

// T a = log(1 + strain) a for both axes, at the angle from the side 1-2; the third value keeps the volume of the
// middle.
TEST_F(FormedExports, TheStrainTensorsGiveBackMajorAndMinorWithTheirAxes)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    std::vector<std::string> const lines = block("formed.k", "*INITIAL_STRAIN_SHELL ");
    ASSERT_EQ(lines.size(), 3 * outcome.elements.size());
    for (int e = 1; e <= outcome.part.numElem(); ++e)
        for (std::size_t row : {std::size_t{1}, std::size_t{2}})
        {
            ElementOutcome const & element = row == 1 ? outcome.bottom[at(e)] : outcome.top[at(e)];
            std::vector<double> const t = numbers(lines[3 * at(e) + row]); // xx, yy, zz, xy, yz, zx
            ASSERT_EQ(t.size(), 6u);
            double const tensor[3][3] = {{t[0], t[3], t[5]}, {t[3], t[1], t[4]}, {t[5], t[4], t[2]}};
            auto const frame = frameOf(outcome.part, e);
            double const c = std::cos(element.angle);
            double const s = std::sin(element.angle);
            ElementOutcome const & middle = outcome.elements[at(e)];
            double const values[3] = {std::log1p(element.major / 100), std::log1p(element.minor / 100),
                                      -std::log1p(middle.major / 100) - std::log1p(middle.minor / 100)};
            for (int axis = 0; axis < 3; ++axis)
                for (std::size_t i = 0; i < 3; ++i)
                {
                    double image = 0.0;
                    auto const component = [&](std::size_t j)
                    {
                        return axis == 0   ? c * frame[0][j] + s * frame[1][j]
                               : axis == 1 ? -s * frame[0][j] + c * frame[1][j]
                                           : frame[2][j];
                    };
                    for (std::size_t j = 0; j < 3; ++j)
                        image += tensor[i][j] * component(j);
                    EXPECT_NEAR(image, values[axis] * component(i), 2e-5) << e;
                }
        }
}

TEST_F(FormedExports, ThePlasticStrainIsLogarithmicAtTheMiddleTheLowerAndTheUpperSurface)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    std::vector<std::string> const lines = block("formed.k", "*INITIAL_STRESS_SHELL ");
    ASSERT_EQ(lines.size(), 4 * outcome.elements.size());
    std::vector<ElementOutcome> const * const layers[3] = {&outcome.elements, &outcome.bottom, &outcome.top};
    double const heights[3] = {0.0, -1.0, 1.0};
    for (int e = 1; e <= outcome.part.numElem(); ++e)
        for (std::size_t i = 0; i < 3; ++i)
        {
            std::vector<double> const values = numbers(lines[4 * at(e) + 1 + i]);
            ASSERT_EQ(values.size(), 8u);
            EXPECT_EQ(values[0], heights[i]);
            EXPECT_NEAR(values[7], std::log1p((*layers[i])[at(e)].equivalentStrain / 100), 1e-5);
        }
}

TEST_F(FormedExports, ARouteWithoutLayersGivesTheMiddleToBothSurfaces)
{
    outcome.top.clear();
    outcome.bottom.clear();
    WriteFormedDyna(outcome, materials, folder.Path());
    std::vector<std::string> const lines = block("formed.k", "*INITIAL_STRESS_SHELL ");
    EXPECT_EQ(lines[1].substr(9), lines[2].substr(9));
    EXPECT_EQ(lines[1].substr(9), lines[3].substr(9));
}

TEST_F(FormedExports, TheMainDeckIsWrittenByteForByte)
{
    materials[0].curve = {{0.0, 160.0}, {0.1, 300.5}, {0.55, 421.0}};
    WriteFormedDyna(outcome, materials, folder.Path());
    std::string const golden =
        goldentext::readFile(goldentext::fs::path(VOZ_SOURCE_DIR) / "tests/golden/formed/formed_main.golden");
    EXPECT_EQ(goldentext::firstDifference(golden, folder.Read("formed_main.k")), "");
}

TEST_F(FormedExports, TheCurveOfAPowerLawBeginsAtYieldAndFollowsIt)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    std::vector<std::string> const lines = block("formed_main.k", "*DEFINE_CURVE");
    ASSERT_EQ(lines.size(), 42u);
    double const first = std::pow(160.0 / 520.0, 1.0 / 0.22);
    double before = -1.0;
    for (std::size_t i = 1; i < lines.size(); ++i)
    {
        std::vector<double> const point = numbers(lines[i]);
        ASSERT_EQ(point.size(), 2u);
        EXPECT_GT(point[0], before);
        before = point[0];
        EXPECT_NEAR(point[1], 520e6 * std::pow(first + point[0], 0.22), 1.0);
    }
    EXPECT_NEAR(numbers(lines[1])[1], 160e6, 1.0);
    EXPECT_EQ(before, 1.0);
}

TEST_F(FormedExports, TheMainDeckSaysThatOnePartStandsForSeveralMaterials)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    EXPECT_EQ(folder.Read("formed_main.k").find("several materials"), std::string::npos);
    materials.resize(2);
    WriteFormedDyna(outcome, materials, folder.Path());
    EXPECT_NE(folder.Read("formed_main.k").find("several materials"), std::string::npos);
}

TEST_F(FormedExports, TheNastranListingReadsBackInSinglePrecision)
{
    WriteFormedNastran(outcome, materials, folder.Path());
    MeshModel const model = ReadMesh(folder.Path("formed.nas"));
    expectSameMesh(model, 1e-7);
    ASSERT_EQ(model.sets.size(), 2u); // triangles and quadrilaterals
    EXPECT_EQ(model.sets[0].id + model.sets[1].id, 7);
}

TEST_F(FormedExports, TheBulkDataReadBackEqual)
{
    WriteFormedNastran(outcome, materials, folder.Path());
    MeshModel const model = ReadMesh(folder.Path("formed.bdf"));
    expectSameMesh(model, 1e-11);
    ASSERT_EQ(model.sets.size(), 1u);
    EXPECT_EQ(model.sets[0].thickness, 0.8);
    std::vector<std::string> skipped;
    for (SkippedItem const & item : model.skipped)
        skipped.push_back(item.name);
    EXPECT_THAT(skipped, testing::ElementsAre("EIGRL", "MAT1")); // nothing of the mesh
}

TEST_F(FormedExports, TheBulkDataHaveCornerThicknessesPropertiesAndMaterials)
{
    materials.push_back(materials[0]);
    materials[1].modulus = 70000.0;
    materials[1].density = 2700.0;
    outcome.materials.assign(outcome.elements.size(), 0);
    outcome.materials[4] = 1;
    WriteFormedNastran(outcome, materials, folder.Path());
    std::vector<std::string> const lines = linesOf(folder.Read("formed.bdf"));
    int e = 0;
    for (std::size_t i = 0; i < lines.size(); ++i)
    {
        EXPECT_LE(lines[i].size(), 80u);
        if (lines[i].rfind("CTRIA3", 0) != 0 && lines[i].rfind("CQUAD4", 0) != 0)
            continue;
        ++e;
        EXPECT_EQ(std::stoi(lines[i].substr(8, 8)), e);
        EXPECT_EQ(std::stoi(lines[i].substr(16, 8)), e == 5 ? 2 : 1);
        std::string const & second = lines[i + 1];
        EXPECT_EQ(second.substr(0, 24), "+" + std::string(23, ' '));
        int const corners = outcome.part.isTriangle(e) ? 3 : 4;
        ASSERT_EQ(second.size(), static_cast<std::size_t>(24 + 8 * corners));
        for (int k = 0; k < corners; ++k)
            EXPECT_NEAR(std::stod(second.substr(static_cast<std::size_t>(24 + 8 * k), 8)),
                        outcome.nodes[at(outcome.part.elem(e, k))].thickness, 1e-6);
    }
    EXPECT_EQ(e, outcome.part.numElem());
    std::vector<std::string> const tail(lines.end() - 5, lines.end());
    EXPECT_THAT(tail, testing::ElementsAre("PSHELL  1       1       .8      1               1       ",
                                           "MAT1    1       2.07+5          .28     7.83-9  ",
                                           "PSHELL  2       2       .8      2               2       ",
                                           "MAT1    2       7.+4            .28     2.7-9   ", "ENDDATA"));
    EXPECT_THAT(lines, testing::Contains("SOL 103"));
    EXPECT_THAT(lines, testing::Contains("BEGIN BULK"));
}

TEST_F(FormedExports, TheDisplacementsReadBackInMillimetres)
{
    WriteDisplacementTable(outcome, folder.Path("displacements.txt"));
    std::vector<std::string> const lines = linesOf(folder.Read("displacements.txt"));
    ASSERT_EQ(lines.size(), 3 + outcome.nodes.size());
    EXPECT_EQ(lines[2], "x(mm)\ty(mm)\tz(mm)\tC1(mm)\tC2(mm)\tC3(mm)");
    for (std::size_t n = 0; n < outcome.nodes.size(); ++n)
    {
        std::vector<double> const values = numbers(lines[3 + n]);
        ASSERT_EQ(values.size(), 6u);
        for (std::size_t c = 0; c < 3; ++c)
        {
            EXPECT_NEAR(values[c], outcome.part.NodeValue(static_cast<int>(n) + 1, static_cast<int>(c)), 1e-5);
            EXPECT_NEAR(values[3 + c], outcome.nodes[n].displacement[c], 1e-5);
        }
    }
}

TEST_F(FormedExports, LeaveNothingUnderAnotherName)
{
    WriteFormedDyna(outcome, materials, folder.Path());
    WriteFormedNastran(outcome, materials, folder.Path());
    WriteDisplacementTable(outcome, folder.Path("displacements.txt"));
    std::vector<std::string> names;
    for (auto const & entry : std::filesystem::directory_iterator(folder.Path()))
        names.push_back(entry.path().filename().string());
    EXPECT_THAT(names, testing::UnorderedElementsAre("formed.k", "formed_main.k", "formed.nas", "formed.bdf",
                                                     "displacements.txt"));
}

TEST_F(FormedExports, RefuseAFolderThatIsNotThere)
{
    std::string const missing = folder.Path("no/such");
    EXPECT_THROW(WriteFormedDyna(outcome, materials, missing), OutputError);
    EXPECT_THROW(WriteFormedNastran(outcome, materials, missing), OutputError);
    EXPECT_THROW(WriteDisplacementTable(outcome, missing + "/displacements.txt"), OutputError);
}

TEST_F(FormedExports, NameANodeThatBelongsToNoElement)
{
    double const apart[1][3] = {{1, 2, 3}};
    outcome.part.addNode(apart, 1);
    outcome.nodes.emplace_back();
    try
    {
        WriteFormedNastran(outcome, materials, folder.Path());
        FAIL() << "it is written";
    }
    catch (OutputError const & error)
    {
        EXPECT_THAT(error.what(), testing::HasSubstr("node 49 of the part belongs to no element"));
    }
}
} // namespace voz::workbench
