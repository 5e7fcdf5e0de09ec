// InvarianceTest.cpp. A part turned, shifted, mirrored, renumbered or told in another unit is the same part: the
// result does not depend on it beyond rounding.

#include "ExamplesFixture.h"

#include "surfaces/Surfaces.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <random>

namespace
{
using voz::examples::Cells;
using voz::examples::SurfaceMesh;

// A panel whose pocket sits out of its middle, on one end of which a holder pulls: nothing of it is symmetric.
SurfaceMesh Skewed(Cells i_cells)
{
    voz::examples::Panel shape;
    shape.rows = 16;
    shape.strips = 12;
    shape.depth = 9.0;
    SurfaceMesh mesh = voz::examples::panel(shape, i_cells);
    for (auto & node : mesh.nodes)
    {
        node[0] += 0.1 * node[1] + 0.002 * node[1] * node[1];
        node[2] += 0.02 * node[0];
    }
    return mesh;
}

struct Numbering
{
    std::vector<int> nodes; // entry: place in the file
    std::vector<int> elements;
};

Numbering Natural(SurfaceMesh const & i_mesh)
{
    Numbering numbering{std::vector<int>(i_mesh.nodes.size()), std::vector<int>(i_mesh.elements.size())};
    std::iota(numbering.nodes.begin(), numbering.nodes.end(), 0);
    std::iota(numbering.elements.begin(), numbering.elements.end(), 0);
    return numbering;
}

std::string ObjText(SurfaceMesh const & i_mesh, Numbering const & i_numbering)
{
    std::string text;
    char line[128];
    std::vector<std::size_t> nodeAt(i_mesh.nodes.size());
    for (std::size_t n = 0; n < nodeAt.size(); ++n)
        nodeAt[static_cast<std::size_t>(i_numbering.nodes[n])] = n;
    for (std::size_t const n : nodeAt)
    {
        auto const & p = i_mesh.nodes[n];
        std::snprintf(line, sizeof line, "v %.17g %.17g %.17g\n", p[0], p[1], p[2]);
        text += line;
    }
    std::vector<std::size_t> elementAt(i_mesh.elements.size());
    for (std::size_t e = 0; e < elementAt.size(); ++e)
        elementAt[static_cast<std::size_t>(i_numbering.elements[e])] = e;
    for (std::size_t const e : elementAt)
    {
        text += "f";
        for (int const n : i_mesh.elements[e])
            if (n >= 0)
                text += " " + std::to_string(i_numbering.nodes[static_cast<std::size_t>(n)] + 1);
        text += "\n";
    }
    return text;
}

class Invariance : public Examples, public testing::WithParamInterface<Cells>
{
protected:
    Outcome FormedMesh(SurfaceMesh const & i_mesh, Numbering const & i_numbering, std::string const & i_unit = "mm")
    {
        Write("part.obj", ObjText(i_mesh, i_numbering));
        std::string held; // the end of the panel
        for (int n = 0; n <= 12; ++n)
            held += (n == 0 ? "" : ", ") + std::to_string(i_numbering.nodes[static_cast<std::size_t>(n)] + 1);
        Job const job = ParseJob("[mesh]\nfile = \"part.obj\"\nlength_unit = \"" + i_unit + "\"\n" + Sheet() +
                                     "[friction]\ncoefficient = 0.1\n[blank_holder]\nlevel = 1\n"
                                     "[[holder]]\nforce = \"30 kN\"\nnodes = [" +
                                     held + "]\n",
                                 Path("part.toml"));
        RunOptions options;
        options.out = Folder();
        RunObserver nobody;
        return RunJob(job, options, nobody).outcome;
    }

    // Every element by its number in the mesh as it was made; distances in the blank by pairs of nodes.
    static void ExpectSame(Outcome const & i_plain, Outcome const & i_other, Numbering const & i_numbering)
    {
        double const size = i_plain.summary.blankPerimeter;
        EXPECT_NEAR(i_other.summary.blankArea, i_plain.summary.blankArea, 1e-6 * i_plain.summary.blankArea);
        EXPECT_NEAR(i_other.summary.blankPerimeter, size, 1e-6 * size);
        EXPECT_NEAR(i_other.summary.punchForce, i_plain.summary.punchForce, 1e-5 * i_plain.summary.punchForce);
        EXPECT_NEAR(i_other.summary.drawDepth, i_plain.summary.drawDepth, 1e-6 * size);
        double thickness = 0.0;
        double major = 0.0;
        std::size_t zones = 0;
        for (std::size_t e = 0; e < i_plain.elements.size(); ++e)
        {
            ElementOutcome const & a = i_plain.elements[e];
            ElementOutcome const & b = i_other.elements[static_cast<std::size_t>(i_numbering.elements[e])];
            thickness = std::max(thickness, std::abs(a.thickness - b.thickness));
            major = std::max(major, std::abs(a.major - b.major));
            zones += a.safety != b.safety ? 1U : 0U;
        }
        EXPECT_LE(thickness, 1e-6 * i_plain.firstThickness);
        EXPECT_LE(major, 1e-3);
        EXPECT_LE(zones, 1U) << "one may lie on a bound";
        auto const place = [&](std::size_t n) -> Point3 const &
        { return i_other.nodes[static_cast<std::size_t>(i_numbering.nodes[n])].flat; };
        std::mt19937 random(3);
        std::uniform_int_distribution<std::size_t> any(0, i_plain.nodes.size() - 1);
        for (int trial = 0; trial < 500; ++trial)
        {
            std::size_t const a = any(random);
            std::size_t const b = any(random);
            Point3 const & pa = i_plain.nodes[a].flat;
            Point3 const & pb = i_plain.nodes[b].flat;
            ASSERT_NEAR(std::hypot(place(a)[0] - place(b)[0], place(a)[1] - place(b)[1]),
                        std::hypot(pa[0] - pb[0], pa[1] - pb[1]), 1e-6 * size);
        }
    }
};
} // namespace

TEST_P(Invariance, OfARunToPlaceTurnMirrorNumbersAndUnit)
{
    SurfaceMesh const mesh = Skewed(GetParam());
    Numbering const natural = Natural(mesh);
    Outcome const plain = FormedMesh(mesh, natural);
    EXPECT_GT(plain.summary.safetyShare[3] + plain.summary.safetyShare[4], 0.0);

    SurfaceMesh moved = mesh; // turned about a slanted axis, then shifted
    double const c = std::cos(1.1);
    double const s = std::sin(1.1);
    double const axis[3] = {2.0 / 3.0, -1.0 / 3.0, 2.0 / 3.0};
    for (auto & p : moved.nodes)
    {
        double const along = p[0] * axis[0] + p[1] * axis[1] + p[2] * axis[2];
        double const cross[3] = {axis[1] * p[2] - axis[2] * p[1], axis[2] * p[0] - axis[0] * p[2],
                                 axis[0] * p[1] - axis[1] * p[0]};
        double const shift[3] = {137.5, -820.0, 61.25};
        for (std::size_t i = 0; i < 3; ++i)
            p[i] = c * p[i] + s * cross[i] + (1.0 - c) * along * axis[i] + shift[i];
    }
    {
        SCOPED_TRACE("turned and shifted");
        ExpectSame(plain, FormedMesh(moved, natural), natural);
    }
    SurfaceMesh mirrored = mesh;
    for (auto & p : mirrored.nodes)
        p[0] = -p[0];
    {
        SCOPED_TRACE("mirrored");
        ExpectSame(plain, FormedMesh(mirrored, natural), natural);
    }
    Numbering shuffled = natural;
    std::mt19937 random(11);
    std::ranges::shuffle(shuffled.nodes, random);
    std::ranges::shuffle(shuffled.elements, random);
    {
        SCOPED_TRACE("renumbered");
        ExpectSame(plain, FormedMesh(mesh, shuffled), shuffled);
    }
    SurfaceMesh inches = mesh;
    for (auto & p : inches.nodes)
        for (double & x : p)
            x /= 25.4;
    {
        SCOPED_TRACE("in inches");
        ExpectSame(plain, FormedMesh(inches, natural, "in"), natural);
    }
}

INSTANTIATE_TEST_SUITE_P(OfBothKindsOfElements, Invariance, testing::Values(Cells::Triangles, Cells::Quads));
