// PlotsTest.cpp: NASTRAN bulk data and the table of displacements, byte for byte. Files stand in tests/golden/plots.

#include "Plots.h"

#include "CommaLocale.h"
#include "ExportMeshes.h"
#include "FailingNew.h"
#include "FolderFixture.h"
#include "GoldenText.h"
#include "Result.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

using goldentext::firstDifference;
using goldentext::linesOf;
using goldentext::readFile;

namespace
{
class Plots : public FolderFixture
{
protected:
    template <class Write>
    std::string written(Write write)
    {
        std::FILE * const stream = std::fopen("plot.txt", "w");
        EXPECT_EQ(write(stream), 0);
        std::fclose(stream);
        return readFile("plot.txt");
    }
    std::string nastran(VOZCatMesh & mesh, Result & result)
    {
        return written([&](std::FILE * stream) { return WriteNastranFile(stream, mesh, result); });
    }
    std::string displacements(VOZCatMesh & mesh, Result & result, char const * unit = "mm")
    {
        return written([&](std::FILE * stream) { return WriteDisplacements(stream, mesh, result, unit); });
    }
    static std::string golden(char const * name)
    {
        return readFile(goldentext::fs::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "plots" / name);
    }
    std::vector<std::string> reported() const
    {
        std::vector<std::string> texts;
        for (VOZMemoryHost::Report const & report : host.reports)
            texts.push_back(report.text);
        return texts;
    }
};

VOZCatMesh goldenMesh()
{
    return exportmeshes::pair(
        {{0, 0, 0}, {10, 0, 0.5}, {10.25, 12.5, -0.0625}, {-3.0, 1e6 / 3, 1.5e-7}, {1e20, -2e-12, 0.999999999951}});
}

Result goldenResult(VOZCatMesh const & mesh)
{
    Result result(mesh);
    result.thickness(1, 0.7654321F);
    result.thickness(2, 1.25F);
    double const rows[5][3] = {
        {0, 0, 0}, {1.5, -2.25, 1e-7}, {-0.0000004, 123456.789, 3}, {1.0 / 3, 2.0 / 3, -1.0 / 3}, {1e10, -1e-10, 42}};
    for (int n = 1; n <= 5; ++n)
        for (int c = 0; c < 3; ++c)
            result.disp(n, c, static_cast<float>(rows[n - 1][c]));
    return result;
}

std::string format(char const * form, auto... values)
{
    char line[400];
    std::snprintf(line, sizeof line, form, values...);
    return line;
}

double single(double value)
{
    return static_cast<double>(static_cast<float>(value));
}

// The whole listing once more, by printf.
std::string nastranByPrintf(VOZCatMesh const & mesh, Result const & result)
{
    std::string text;
    auto const comments = [&](int count)
    {
        for (int i = 0; i < count; ++i)
            text += format("$..%-40s\n", " ");
    };
    comments(6);
    text += format("$..%10s%-70s\n", " ", "NASTRAN DATA DECK IS GENERATED WITH VOZ TRANSLATOR MODULE");
    comments(4);
    for (int n = 1; n <= mesh.numNode(); ++n)
    {
        std::string const x = format("%10.7e", single(mesh.NodeValue(n, 0)));
        std::string const y = format("%10.7e", single(mesh.NodeValue(n, 1)));
        std::string const z = format("%10.7e", single(mesh.NodeValue(n, 2)));
        text += format("%-10s%-31i%-16s%-16s\n", "GRID*", n, x.c_str(), y.c_str());
        text += format("*       %-16s\n", z.c_str());
    }
    comments(6);
    text += format("$..%10s%-70s\n", " ", "CONNECTING CARDS");
    std::vector<double> sum(static_cast<std::size_t>(mesh.numNode()) + 1);
    std::vector<int> count(sum.size());
    for (int e = 1; e <= mesh.numElem(); ++e)
        for (int k = 0; k < (mesh.isTriangle(e) ? 3 : 4); ++k)
        {
            sum[static_cast<std::size_t>(mesh.elem(e, k))] += static_cast<double>(result.thickness(e));
            ++count[static_cast<std::size_t>(mesh.elem(e, k))];
        }
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        int n[4];
        double t[4];
        for (int k = 0; k < 4; ++k)
        {
            n[k] = mesh.elem(e, k);
            t[k] = sum[static_cast<std::size_t>(n[k])] / count[static_cast<std::size_t>(n[k])];
        }
        int const mark = e + 100000;
        if (mesh.isTriangle(e))
        {
            text +=
                format("%-8s%8i%8i%8i%8i%8i%8s%8s%8s+E%6i\n", "CTRIA3", e, 3, n[0], n[1], n[2], " ", " ", " ", mark);
            text += format("+E%6i%8s%8s%8f%8f%8f\n", mark, " ", " ", t[0], t[1], t[2]);
        }
        else
        {
            text +=
                format("%-8s%8i%8i%8i%8i%8i%8i%8f%8f+E%6i\n", "CQUAD4", e, 4, n[0], n[1], n[2], n[3], 0.0, 0.0, mark);
            text += format("+E%6i%8s%8s%8f%8f%8f%8f\n", mark, " ", " ", t[0], t[1], t[2], t[3]);
        }
    }
    comments(5);
    return text;
}
} // namespace

TEST_F(Plots, NastranFileIsWrittenByteForByte)
{
    VOZCatMesh mesh = goldenMesh();
    Result result = goldenResult(mesh);
    EXPECT_EQ(firstDifference(golden("nastran.golden"), nastran(mesh, result)), "");
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(Plots, DisplacementsAreWrittenByteForByte)
{
    VOZCatMesh mesh = goldenMesh();
    Result result = goldenResult(mesh);
    EXPECT_EQ(firstDifference(golden("displacements.golden"), displacements(mesh, result)), "");
}

TEST_F(Plots, KnowNoLabels)
{
    VOZCatMesh mesh = goldenMesh();
    mesh.IdsOffset(1000, 2000);
    Result result = goldenResult(mesh);
    EXPECT_EQ(firstDifference(golden("nastran.golden"), nastran(mesh, result)), "");
    EXPECT_EQ(firstDifference(golden("displacements.golden"), displacements(mesh, result)), "");
}

TEST_F(Plots, AreTheSameUnderALocaleWithADecimalComma)
{
    VOZCatMesh mesh = goldenMesh();
    Result result = goldenResult(mesh);
    CommaLocale const comma;
    if (!comma.inForce())
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    EXPECT_EQ(firstDifference(golden("nastran.golden"), nastran(mesh, result)), "");
    EXPECT_EQ(firstDifference(golden("displacements.golden"), displacements(mesh, result)), "");
}

TEST_F(Plots, OfANullStreamReturnMinusOne)
{
    VOZCatMesh mesh = goldenMesh();
    Result result(mesh);
    EXPECT_EQ(WriteNastranFile(nullptr, mesh, result), -1);
    EXPECT_EQ(WriteDisplacements(nullptr, mesh, result, "mm"), -1);
}

TEST_F(Plots, OfAnEmptyMeshHaveTheCommentsAndTheHeadAlone)
{
    VOZCatMesh mesh;
    Result result(mesh);
    EXPECT_EQ(firstDifference(golden("empty.golden"), nastran(mesh, result)), "");
    EXPECT_EQ(displacements(mesh, result, "in"),
              "Locations Axis\tGlobal\nValues axis\tGlobal\nx(in)\ty(in)\tz(in)\tC1(in)\tC2(in)\tC3(in)\n");
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(Plots, ReportANodeWithoutAnElement)
{
    VOZCatMesh mesh = goldenMesh();
    Result result = goldenResult(mesh);
    double const apart[1][3] = {{1, 2, 3}};
    mesh.addNode(apart, 1);
    mesh.addNode(apart, 1);
    std::vector<std::string> const lines = linesOf(nastran(mesh, result));
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:ar_nPos[i] > 0", "AssertionFailed:ar_nPos[i] > 0"));
    ASSERT_EQ(lines.size(), linesOf(golden("nastran.golden")).size() + 4); // the report returned: the rest is there
}

// The cards end there, and the listing with them.
TEST_F(Plots, StopAtANodeWithoutAnElementWhereTheReportDoesNotReturn)
{
    struct Stop
    {
    };
    struct Strict : VOZMemoryHost
    {
        void BrokenContract(std::string const &, std::string const &, int) override { throw Stop(); }
    };
    Strict strict;
    VOZHost::Install(&strict);
    VOZCatMesh mesh = goldenMesh();
    mesh.sizeElem(1);
    Result result(mesh);
    std::FILE * const stream = std::fopen("plot.txt", "w");
    EXPECT_THROW(WriteNastranFile(stream, mesh, result), Stop);
    std::fclose(stream);
    VOZHost::Install(&host);
    std::vector<std::string> const lines = linesOf(readFile("plot.txt"));
    ASSERT_EQ(lines.size(), 11u + 10 + 7);
    EXPECT_NE(lines.back().find("CONNECTING CARDS"), std::string::npos);
}

TEST_F(Plots, EndTheElementCardsSilentlyWithoutMemory)
{
    if (!FailingNew::reachesTheLibrary())
        GTEST_SKIP() << "the library has operators of its own here";
    VOZCatMesh mesh = goldenMesh();
    Result result = goldenResult(mesh);
    for (int const which : {1, 2})
    {
        std::string text;
        {
            FailingNew const failing(which);
            text = nastran(mesh, result);
            EXPECT_TRUE(failing.refused());
        }
        EXPECT_EQ(text.find("CTRIA3"), std::string::npos);
        EXPECT_EQ(text.find("CQUAD4"), std::string::npos);
        EXPECT_EQ(linesOf(text).size(), 11u + 10 + 7 + 5);
    }
    EXPECT_TRUE(host.reports.empty());
}

TEST_F(Plots, ReportANodeAndAnElementThatTheStoreHasNot)
{
    VOZCatMesh mesh = goldenMesh();
    Result small(samples::triangles({{1, 2, 3}}));
    displacements(mesh, small);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:node >= 0 && node < (mNumNodeResult+1)",
                                                 "AssertionFailed:node >= 0 && node < (mNumNodeResult+1)"));
    host.reports.clear();
    nastran(mesh, small);
    EXPECT_THAT(reported(), testing::ElementsAre("AssertionFailed:elem >= 0 && elem < (mNumElemResult+1)"));
}

TEST_F(Plots, StayInTheirArraysForCornersThatAreNoNodes)
{
    VOZCatMesh mesh = goldenMesh();
    Result result = goldenResult(mesh);
    mesh.GetElemData()[2][1] = 2000000000;
    mesh.GetElemData()[1][2] = -7;
    std::string const text = nastran(mesh, result);
    EXPECT_NE(text.find("CTRIA3         2       3       22000000000       3"), std::string::npos);
}

TEST_F(Plots, AgreeWithPrintfOnRandomMeshes)
{
    std::mt19937 generator(20261121);
    std::uniform_real_distribution<float> thickness(0.1F, 12.0F);
    std::uniform_real_distribution<float> displacement(-500.0F, 500.0F);
    for (int trial = 0; trial < 40; ++trial)
    {
        VOZCatMesh mesh = exportmeshes::random(generator, 1 + trial % 13, 1 + trial % 7, 100 * trial, trial);
        Result result(mesh);
        for (int e = 1; e <= mesh.numElem(); ++e)
            result.thickness(e, thickness(generator));
        std::string table = "Locations Axis\tGlobal\nValues axis\tGlobal\nx(m)\ty(m)\tz(m)\tC1(m)\tC2(m)\tC3(m)\n";
        for (int n = 1; n <= mesh.numNode(); ++n)
        {
            double const d[3] = {displacement(generator), displacement(generator), displacement(generator)};
            result.disp(n, Vec(d));
            table += format("%f\t%f\t%f\t%f\t%f\t%f\n", single(mesh.NodeValue(n, 0)), single(mesh.NodeValue(n, 1)),
                            single(mesh.NodeValue(n, 2)), single(d[0]), single(d[1]), single(d[2]));
        }
        ASSERT_EQ(firstDifference(nastranByPrintf(mesh, result), nastran(mesh, result)), "") << trial;
        ASSERT_EQ(firstDifference(table, displacements(mesh, result, "m")), "") << trial;
    }
}
