// VOZDYNAWriterResultsTest.cpp: the formed blank as keyword cards: thickness, initial strains, plastic strain, and the
// geometry behind them.

#include "VOZDYNAWriter.h"

#include "CommaLocale.h"
#include "ExportStores.h"
#include "FolderFixture.h"
#include "GoldenText.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <utility>
#include <vector>

using goldentext::firstDifference;
using goldentext::linesOf;
using goldentext::readFile;

namespace
{
struct FivePoints : DYNAWriter
{
    FivePoints(VOZCatMesh * mesh, Result ** const results, int const & points, char * path, VOZCatAxis * axis, int part)
        : DYNAWriter(mesh, results, points, path, axis, part)
    {
        m_nThicknessPoints = 5;
    }
};

using Row = std::array<double, 3>;
using Matrix = std::array<Row, 3>;

double dot(Row const & a, Row const & b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// A random rotation: rows of unit length, at right angles, right-handed.
Matrix randomFrame(std::mt19937 & generator)
{
    std::normal_distribution<double> normal;
    double q[4];
    double size = 0.0;
    for (double & part : q)
    {
        part = normal(generator);
        size += part * part;
    }
    for (double & part : q)
        part /= std::sqrt(size);
    double const w = q[0], x = q[1], y = q[2], z = q[3];
    return {Row{1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y)},
            Row{2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x)},
            Row{2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y)}};
}

class DynaResults : public FolderFixture
{
protected:
    DynaResults() : mesh(formedPair()), stores(mesh) { fillFormedPair(stores); }

    template <class Writer = DYNAWriter>
    std::string written(int points = 3)
    {
        char path[] = "formed.k";
        {
            Writer writer(&mesh, stores.stores, points, path, nullptr, 3);
            static_cast<DYNAWriter &>(writer).Write();
        }
        return readFile(path);
    }
    static std::string golden(char const * name)
    {
        return readFile(goldentext::fs::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "dyna" / name);
    }
    std::vector<std::string> reported()
    {
        std::vector<std::string> texts;
        for (VOZMemoryHost::Report const & report : host.reports)
            texts.push_back(report.text);
        host.reports.clear();
        return texts;
    }

    VOZCatMesh mesh;
    ExportStores stores;
    DYNAWriter geometry{&mesh, stores.stores, 3, nullptr, nullptr, 3}; // for what needs no file
};
} // namespace

TEST_F(DynaResults, AreWrittenByteForByte)
{
    EXPECT_EQ(firstDifference(golden("results.golden"), written()), "");
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(DynaResults, AreWrittenAtFivePointsByADerivedWriter)
{
    EXPECT_EQ(firstDifference(golden("results_five_points.golden"), written<FivePoints>()), "");
}

TEST_F(DynaResults, AreTheSameUnderALocaleWithADecimalComma)
{
    CommaLocale const comma;
    if (!comma.inForce())
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    EXPECT_EQ(firstDifference(golden("results.golden"), written()), "");
}

TEST_F(DynaResults, HaveThreePointsWhateverTheConstructorIsTold)
{
    for (int const points : {0, 1, 5, 7, -3})
        EXPECT_EQ(firstDifference(golden("results.golden"), written(points)), "") << points;
}

TEST_F(DynaResults, NumberElementsByPositionWhateverTheirLabels)
{
    mesh.IdsOffset(0, 5000);
    EXPECT_EQ(firstDifference(golden("results.golden"), written()), "");
}

// -3.91 stands for the logarithm at and below -98 percent, and not above.
TEST_F(DynaResults, CutTheLogarithmAtMinus98Percent)
{
    mesh = samples::mesh(samples::Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, samples::Triangles{{1, 2, 3}});
    for (Result * store : stores.stores)
        ExportStores::set(*store, 1, 0.0F, 0.0F, 0.0F, 0.0F);
    auto const strainLine = [&](float major)
    {
        stores.bottom.strain(1, 0, major);
        std::vector<std::string> const lines = linesOf(written());
        std::size_t i = 0;
        while (lines[i] != "*INITIAL_STRAIN_SHELL ")
            ++i;
        return lines[i + 4].substr(0, 8);
    };
    EXPECT_EQ(strainLine(-98.0F), "-3.91000");
    EXPECT_EQ(strainLine(-100.0F), "-3.91000");
    EXPECT_EQ(strainLine(-150.0F), "-3.91000");
    EXPECT_EQ(strainLine(-97.9F), "-3.86323");
    EXPECT_EQ(strainLine(0.0F), "0.00000,");
}

TEST_F(DynaResults, WriteTheLowerSurfaceFirstWithTheThicknessStrainOfTheMiddle)
{
    mesh = samples::mesh(samples::Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, samples::Triangles{{1, 2, 3}});
    float const e = static_cast<float>(100.0 * std::expm1(0.1));
    for (Result * store : stores.stores)
        ExportStores::set(*store, 1, 0.0F, 0.0F, 0.0F, 0.0F);
    stores.top.strain(1, 0, e);
    stores.mid.strain(1, 1, e);
    std::vector<std::string> const lines = linesOf(written());
    EXPECT_EQ(lines[30], "       1");
    EXPECT_EQ(lines[31], "0.00000,0.00000,-0.10000,0.00000,0.00000,0.00000 ");
    EXPECT_EQ(lines[32], "0.10000,0.00000,-0.10000,0.00000,0.00000,0.00000 ");
}

TEST_F(DynaResults, AreLeftOutWithoutStores)
{
    char path[] = "formed.k";
    DYNAWriter(&mesh, nullptr, 3, path, nullptr, 3).Write();
    EXPECT_EQ(readFile(path).find("THICKNESS"), std::string::npos);
    EXPECT_NE(readFile(path).find("*ELEMENT_SHELL \n"), std::string::npos);
}

// All three surfaces are needed.
TEST_F(DynaResults, AreLeftOutWhereAStoreIsMissing)
{
    char path[] = "formed.k";
    DYNAWriter(&mesh, nullptr, 3, path, nullptr, 3).Write();
    std::string const plain = readFile(path);
    for (Result *& store : stores.stores)
    {
        Result * const missing = std::exchange(store, nullptr);
        DYNAWriter(&mesh, stores.stores, 3, path, nullptr, 3).Write();
        EXPECT_EQ(firstDifference(plain, readFile(path)), "");
        store = missing;
    }
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(DynaResults, HaveNoThicknessLineInABlockWrittenWithoutStores)
{
    struct ThicknessAlone : DYNAWriter
    {
        using DYNAWriter::DYNAWriter;
        void Write() override { Write_ELEMENT_SHELL_THICKNESS_Block(); }
    };
    char path[] = "formed.k";
    {
        ThicknessAlone writer(&mesh, nullptr, 3, path, nullptr, 3);
        static_cast<DYNAWriter &>(writer).Write();
    }
    std::vector<std::string> const lines = linesOf(readFile(path));
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[4], "       2       3    1002    1005    1003    1003");
}

TEST_F(DynaResults, GiveTheTensorOfThreePrincipalValues)
{
    std::mt19937 generator(3);
    std::uniform_real_distribution<double> strain(-1.0, 1.0);
    for (int i = 0; i < 1000; ++i)
    {
        Matrix const q = randomFrame(generator);
        Row const lambda = {strain(generator), strain(generator), strain(generator)};
        double xx, xy, xz, yy, yz, zz;
        geometry.EvalTensorComponents(lambda[0], lambda[1], lambda[2], q[0].data(), q[1].data(), q[2].data(), xx, xy,
                                      xz, yy, yz, zz);
        double const got[3][3] = {{xx, xy, xz}, {xy, yy, yz}, {xz, yz, zz}};
        for (std::size_t r = 0; r < 3; ++r) // each axis is an eigenvector with its value
            for (std::size_t j = 0; j < 3; ++j)
                EXPECT_NEAR(got[j][0] * q[r][0] + got[j][1] * q[r][1] + got[j][2] * q[r][2], lambda[r] * q[r][j],
                            1e-14);
    }
}

TEST_F(DynaResults, ReportAMissingPrincipalAxis)
{
    double const axis[3] = {1, 0, 0};
    double c[6] = {9, 9, 9, 9, 9, 9};
    geometry.EvalTensorComponents(1, 2, 3, axis, nullptr, axis, c[0], c[1], c[2], c[3], c[4], c[5]);
    EXPECT_THAT(reported(), testing::ElementsAre("i_adPrincipalAxis1 && i_adPrincipalAxis2 && i_adPrincipalAxis3"));
    EXPECT_THAT(c, testing::Each(0.0));
}

TEST_F(DynaResults, GiveTheCornersOfAnElementInArraysOfTheCaller)
{
    double * points[4] = {};
    ASSERT_EQ(geometry.GetElementNodesCoords(1, points), 4);
    EXPECT_THAT(std::vector<double>(points[2], points[2] + 3), testing::ElementsAre(10, 10, 5));
    points[2][0] = 77.0; // a copy
    EXPECT_EQ(mesh.node(3, 0), 10.0);
    for (double * const point : points)
        delete[] point;
    points[3] = points[0];
    ASSERT_EQ(geometry.GetElementNodesCoords(2, points), 3);
    EXPECT_EQ(points[3], nullptr);
    EXPECT_THAT(std::vector<double>(points[1], points[1] + 3), testing::ElementsAre(20, 0, 0));
    for (double * const point : points)
        delete[] point;
    EXPECT_EQ(geometry.GetElementNodesCoords(3, points), 0);
    EXPECT_THAT(points, testing::Each(nullptr));
    EXPECT_EQ(geometry.GetElementNodesCoords(1, nullptr), 0);
    EXPECT_THAT(reported(), testing::ElementsAre("o_ppdPointsXYZ"));
}

TEST_F(DynaResults, ReportACentreOfTooFewOrTooManyCorners)
{
    double const point[3] = {1, 2, 3};
    double const * const points[4] = {point, point, point, point};
    double center[3];
    geometry.EvalElementCenter(4, points, center);
    EXPECT_THAT(center, testing::ElementsAre(1, 2, 3));
    EXPECT_TRUE(reported().empty());
    for (int const count : {2, 5, 0, -1})
    {
        geometry.EvalElementCenter(count, points, center);
        EXPECT_THAT(reported(), testing::ElementsAre("i_nNumElementNodes >= ::g_nMinNumElementNodes && "
                                                     "i_nNumElementNodes <= ::g_nMaxNumElementNodes"));
    }
    geometry.EvalElementCenter(3, nullptr, center);
    geometry.EvalElementCenter(3, points, nullptr);
    EXPECT_THAT(reported(), testing::ElementsAre("i_ppdNodesXYZ && o_adCenterXYZ", "i_ppdNodesXYZ && o_adCenterXYZ"));
}

TEST_F(DynaResults, ReportAQuadrilateralWithoutACorner)
{
    double const point[3] = {1, 2, 3};
    double const * const points[4] = {point, point, nullptr, point};
    double normal[3];
    geometry.EvalElementNormal(4, points, normal);
    EXPECT_THAT(reported(), testing::ElementsAre("i_ppdNodesXYZ[0] && i_ppdNodesXYZ[vozNode2] && "
                                                 "i_ppdNodesXYZ[vozNode3] && i_ppdNodesXYZ[vozNode4]"));
    EXPECT_THAT(normal, testing::Each(0.0));
}

TEST_F(DynaResults, ReportAnElementWithoutAnArea)
{
    double const point[3] = {1, 2, 3};
    double const * const points[3] = {point, point, point};
    double matrix[9];
    double center[3];
    geometry.EvalElementLocalCS(3, points, matrix, center);
    EXPECT_THAT(reported(),
                testing::ElementsAre("fabs(VOZGeoUtil::EvalLength3D(o_padMatrix) - 1.0) < VOZ_SMALL_DOUBLE",
                                     "fabs(VOZGeoUtil::EvalLength3D(o_padMatrix + 3) - 1.0) < VOZ_SMALL_DOUBLE"));
    EXPECT_THAT(matrix, testing::Each(0.0));
    EXPECT_THAT(center, testing::ElementsAre(1, 2, 3));
}

TEST_F(DynaResults, ReportAnElementThatTheStoreHasNot)
{
    double matrix[9];
    double center[3];
    geometry.EvalElementPrincipalAxes(1, 3, matrix, center);
    EXPECT_THAT(reported(), testing::Contains("AssertionFailed:elem >= 0 && elem < (mNumElemResult+1)"));
}

// Random elements: the frame is right-handed, its third axis at right angles to both diagonals (or two sides), its
// first at the angle theta from the side 1-2 as that lies in the plane.
TEST_F(DynaResults, TurnTheLocalFrameByTheAngleOfTheElement)
{
    std::mt19937 generator(20261121);
    std::uniform_real_distribution<float> angle(0.0F, 3.14159F);
    mesh = exportmeshes::random(generator, 12, 9, 300, 40);
    ExportStores own(mesh);
    DYNAWriter writer(&mesh, own.stores, 3, nullptr, nullptr, 1);
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        int const which = e % 3;
        float const theta = angle(generator);
        own.stores[which]->theta(e, theta);
        Matrix m;
        double center[3];
        double rows[9];
        writer.EvalElementPrincipalAxes(which, e, rows, center);
        for (std::size_t i = 0; i < 9; ++i)
            m[i / 3][i % 3] = rows[i];
        auto const side = [&](int from, int to)
        {
            Row d;
            for (int c = 0; c < 3; ++c)
                d[static_cast<std::size_t>(c)] = mesh.node(mesh.elem(e, to), c) - mesh.node(mesh.elem(e, from), c);
            return d;
        };
        bool const triangle = mesh.isTriangle(e) == 1;
        EXPECT_NEAR(dot(m[2], triangle ? side(0, 1) : side(0, 2)), 0.0, 1e-12);
        EXPECT_NEAR(dot(m[2], triangle ? side(0, 2) : side(1, 3)), 0.0, 1e-12);
        EXPECT_GT(m[2][2], 0.0); // counter-clockwise seen from above
        for (std::size_t i = 0; i < 3; ++i)
            for (std::size_t j = 0; j < 3; ++j)
                EXPECT_NEAR(dot(m[i], m[j]), i == j ? 1.0 : 0.0, 1e-12);
        EXPECT_NEAR(m[0][0] * m[1][1] - m[0][1] * m[1][0], m[2][2], 1e-12);
        Row const first = side(0, 1);
        double const seen = std::atan2(-dot(first, m[1]), dot(first, m[0]));
        EXPECT_NEAR(std::remainder(seen - static_cast<double>(theta), 2 * 3.14159265358979323846), 0.0, 1e-9) << e;
        double mean = 0.0;
        for (int k = 0; k < (triangle ? 3 : 4); ++k)
            mean += mesh.node(mesh.elem(e, k), 1) / (triangle ? 3 : 4);
        EXPECT_NEAR(center[1], mean, 1e-12);
    }
    EXPECT_TRUE(host.reports.empty());
}

// An independent writer of the strain and stress cards for random stores, by printf.
TEST_F(DynaResults, AgreeWithPrintfOnRandomStores)
{
    std::mt19937 generator(99);
    std::uniform_real_distribution<float> strain(-110.0F, 60.0F);
    std::uniform_real_distribution<float> angle(0.0F, 3.14F);
    mesh = exportmeshes::random(generator, 6, 5, 0, 0);
    ExportStores random(mesh);
    Result * const(&own)[3] = random.stores;
    DYNAWriter frames(&mesh, random.stores, 3, nullptr, nullptr, 3);
    for (Result * store : own)
        for (int e = 1; e <= mesh.numElem(); ++e)
            ExportStores::set(*store, e, strain(generator), strain(generator), angle(generator), strain(generator));
    char path[] = "random.k";
    {
        DYNAWriter writer(&mesh, random.stores, 3, path, nullptr, 3);
        writer.Write();
    }
    auto const log = [](float percent)
    { return percent <= -98.0F ? -3.91 : std::log(static_cast<double>(percent) / 100.0 + 1.0); };
    std::string wanted = "*INITIAL_STRAIN_SHELL \n$    EID \n$    EPSxx   EPSyy   EPSzz   EPSxy   EPSyz   EPSzx \n";
    char line[200];
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        std::snprintf(line, sizeof line, "%8d\n", e);
        wanted += line;
        for (int const i : {2, 0})
        {
            double m[9], center[3], t[6] = {};
            frames.EvalElementPrincipalAxes(i, e, m, center);
            double const third = -(log(own[1]->strain(e, 0)) + log(own[1]->strain(e, 1)));
            double const value[3] = {log(own[i]->strain(e, 0)), log(own[i]->strain(e, 1)), third};
            int const places[6][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {1, 2}, {2, 0}};
            for (int k = 0; k < 6; ++k)
                for (int a = 0; a < 3; ++a)
                    t[k] += value[a] * m[3 * a + places[k][0]] * m[3 * a + places[k][1]];
            std::snprintf(line, sizeof line, "%7.5f,%7.5f,%7.5f,%7.5f,%7.5f,%7.5f \n", t[0], t[1], t[2], t[3], t[4],
                          t[5]);
            wanted += line;
        }
    }
    wanted += "*INITIAL_STRESS_SHELL \n$    EID  NPLANE  NTHICK \n"
              "$      T   SIGxx   SIGyy   SIGzz   SIGxy   SIGyz   SIGzx      EPS \n";
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        std::snprintf(line, sizeof line, "%8d%8d%8d\n", e, 1, 3);
        wanted += line;
        for (auto const & [t, store] : {std::pair(0.0, 1), std::pair(-1.0, 2), std::pair(1.0, 0)})
        {
            std::snprintf(line, sizeof line, "%+7.5f,%7.5f,%7.5f,%7.5f,%7.5f,%7.5f,%7.5f,%+7.5f \n", t, 0.0, 0.0, 0.0,
                          0.0, 0.0, 0.0, static_cast<double>(own[store]->equivalentStrain(e)));
            wanted += line;
        }
    }
    wanted += "*END\n";
    std::string const got = readFile(path);
    EXPECT_EQ(firstDifference(wanted, got.substr(got.find("*INITIAL_STRAIN"))), "");
}
