// VerificationSquareCupTest.cpp: the square cup of NUMISHEET'93, with the published bands; and what must not matter:
// where the part lies, its orientation, its numbering, its units.
//
// The numbers are finite-element values of the same method, computed with separate code on the same mesh; the bands
// allow for another choice of diagonals and normals.

#include "OneStepFixture.h"
#include "SquareCupCases.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace
{

using namespace onesteptest;

constexpr int kRays = 29; // of the quarter: 8 + 12 + 8 cells
constexpr int kRows = 40;

int nodeAt(int row, int ray)
{
    return row == 0 ? 0 : 1 + (row - 1) * kRays + ray;
}

struct Figures
{
    double side, diagonal, area;
    Extremes h;
    int steps;
};

Figures figuresOf(Quarter const & model, char const * name)
{
    Solution const solution = solve(model.problem);
    Figures f{flatRadius(solution, nodeAt(kRows, 0)), flatRadius(solution, nodeAt(kRows, kRays / 2)),
              flatArea(model.problem, solution), extremes(model.problem, solution), solution.newtonSteps};
    tell("%s: %d steps, side %.3f, diagonal %.3f, h3 %.4f to %.4f, major %.3f, minor %.3f, area %.1f, force %.0f N",
         name, f.steps, f.side, f.diagonal, f.h.leastThickness, f.h.greatestThickness, f.h.greatestMajor,
         f.h.leastMinor, f.area, solution.punchForce);
    return f;
}

TEST(VerificationSquareCup, FifteenMillimetresDeepLiesInItsBands)
{
    Figures const f = figuresOf(quarter(squareCup15(), kRestraint, 0.0), "15 mm, 9.4");
    EXPECT_NEAR(f.side, 75.72, 0.05);
    EXPECT_NEAR(f.diagonal, 106.34, 0.05);
    EXPECT_NEAR(f.h.leastThickness, -0.072, 0.003);
}

TEST(VerificationSquareCup, FortyMillimetresDeepLiesInItsBands)
{
    Figures const f = figuresOf(quarter(squareCup40(), kRestraint, 0.0), "40 mm, 9.4");
    EXPECT_NEAR(f.side, 78.36, 0.1);
    EXPECT_NEAR(f.diagonal, 106.46, 0.1);
    EXPECT_NEAR(f.h.leastThickness, -0.113, 0.012);
    EXPECT_NEAR(f.h.greatestThickness, 0.283, 0.015);
    EXPECT_NEAR(f.h.greatestMajor, 0.703, 0.03);
    EXPECT_NEAR(f.area, 5726.0, 8.0);
}

struct Row
{
    double depth, restraint, friction;
    double side, diagonal, leastH3, greatestH3, major, minor, area;
};

// Every restraint from none to past tearing, with and without tool friction: converges straight, to the same blank.
TEST(VerificationSquareCup, EveryRestraintOfTheTableGivesItsBlank)
{
    for (Row const & row : {Row{15, 0, 0, 75.79, 106.41, -0.0666, 0.0650, 0.332, -0.315, 5691.7},
                            Row{15, 9.4, 0.144, 75.71, 106.30, -0.0826, 0.0621, 0.357, -0.307, 5677.0},
                            Row{40, 0, 0, 78.41, 106.65, -0.1067, 0.2895, 0.694, -0.677, 5746.9},
                            Row{40, 9.4, 0.144, 78.64, 105.61, -0.1957, 0.2956, 0.772, -0.690, 5659.9},
                            Row{40, 100, 0, 77.49, 104.41, -0.1957, 0.2124, 0.764, -0.674, 5497.4},
                            Row{40, 200, 0, 73.55, 100.66, -0.4974, 0.0985, 0.790, -0.643, 5012.4}})
    {
        SquareCup const shape = row.depth == 15 ? squareCup15() : squareCup40();
        std::string const name = std::to_string(static_cast<int>(row.depth)) + " mm, " + std::to_string(row.restraint) +
                                 " N/mm, mu " + std::to_string(row.friction);
        Figures const f = figuresOf(quarter(shape, row.restraint, row.friction), name.c_str());
        bool const shallow = row.depth == 15;
        EXPECT_NEAR(f.side, row.side, shallow ? 0.05 : 0.1) << name;
        EXPECT_NEAR(f.diagonal, row.diagonal, shallow ? 0.05 : 0.1) << name;
        EXPECT_NEAR(f.h.leastThickness, row.leastH3, shallow ? 0.003 : 0.012) << name;
        EXPECT_NEAR(f.h.greatestMajor, row.major, 0.03) << name;
        EXPECT_NEAR(f.h.leastMinor, row.minor, 0.03) << name;
        EXPECT_NEAR(f.h.greatestThickness, row.greatestH3, 0.015) << name;
        EXPECT_NEAR(f.area, row.area, 8.0) << name;
    }
}

struct OtherMaterial
{
    double k, n, r, e0;
    double side, diagonal;
};

TEST(VerificationSquareCup, OtherMaterialsGiveTheirBlanks)
{
    for (OtherMaterial const & m :
         {OtherMaterial{400, 0.10, 1.0, 0.002, 79.06, 106.86}, OtherMaterial{900, 0.05, 1.0, 0.001, 79.12, 107.22},
          OtherMaterial{500, 0.2, 0.6, 0.005, 79.35, 107.03}, OtherMaterial{600, 0.35, 2.5, 0.01, 77.91, 106.41},
          OtherMaterial{1000, 0.02, 1.0, 0.001, 79.10, 107.42}})
    {
        std::string const name = "K " + std::to_string(m.k) + " n " + std::to_string(m.n);
        Figures const f =
            figuresOf(quarter(squareCup40(), kRestraint, 0.0, swift(m.k, m.e0, m.n, m.r, 0.78)), name.c_str());
        EXPECT_NEAR(f.side, m.side, 0.1) << name;
        EXPECT_NEAR(f.diagonal, m.diagonal, 0.1) << name;
    }
}

// --- Stations along the part -----------------------------------------------------------------------------------------

struct StationRow
{
    double s, h3, radius; // radius 0: not given
};

void checkStations(int ray, double friction, std::vector<StationRow> const & rows)
{
    Quarter const model = quarter(squareCup40(), kRestraint, friction);
    Solution const solution = solve(model.problem);
    std::vector<double> const h3 = nodalThicknessStrain(model.problem, model.mesh, solution);
    std::vector<double> s{0.0};
    for (int row = 1; row <= kRows; ++row)
    {
        Point3 const & a = model.mesh.nodes[static_cast<std::size_t>(nodeAt(row - 1, ray))];
        Point3 const & b = model.mesh.nodes[static_cast<std::size_t>(nodeAt(row, ray))];
        s.push_back(s.back() + std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]));
    }
    for (StationRow const & wanted : rows)
    {
        int row = 0;
        while (row < kRows && std::fabs(s[static_cast<std::size_t>(row)] - wanted.s) > 0.051)
            ++row;
        int const node = nodeAt(row, ray);
        tell("s %.1f: h3 %.4f (%.3f), R %.3f (%.2f)", wanted.s, h3[static_cast<std::size_t>(node)], wanted.h3,
             flatRadius(solution, node), wanted.radius);
        EXPECT_NEAR(h3[static_cast<std::size_t>(node)], wanted.h3, 0.012) << "s = " << wanted.s;
        if (wanted.radius > 0.0)
        {
            EXPECT_NEAR(flatRadius(solution, node), wanted.radius, 0.1) << "s = " << wanted.s;
        }
    }
}

TEST(VerificationSquareCup, StationsAlongTheMiddleOfASideLieInTheirBands)
{
    checkStations(0, 0.0,
                  {{27.0, -0.001, 27.01},
                   {32.1, -0.001, 32.11},
                   {37.2, 0.000, 37.21},
                   {42.4, 0.000, 42.45},
                   {53.2, 0.002, 53.19},
                   {63.9, 0.031, 63.95},
                   {68.3, 0.074, 68.25},
                   {71.5, 0.121, 71.44},
                   {74.8, 0.162, 74.45},
                   {79.9, 0.197, 78.36}});
}

TEST(VerificationSquareCup, StationsAlongTheDiagonalLieInTheirBands)
{
    checkStations(14, 0.0,
                  {{28.0, -0.018, 27.89},
                   {37.4, -0.052, 36.93},
                   {42.5, -0.061, 41.77},
                   {47.6, -0.047, 46.41},
                   {52.8, -0.065, 50.34},
                   {58.2, -0.087, 53.37},
                   {63.5, -0.078, 56.10},
                   {74.3, -0.032, 61.52},
                   {81.9, 0.048, 65.97},
                   {85.2, 0.060, 68.44},
                   {98.1, 0.016, 80.55},
                   {123.9, 0.000, 106.46}});
}

TEST(VerificationSquareCup, StationsWithToolFrictionLieInTheirBands)
{
    checkStations(0, 0.144,
                  {{27.0, -0.001, 0},
                   {32.1, -0.001, 0},
                   {37.2, 0.000, 0},
                   {42.4, 0.000, 0},
                   {53.2, 0.000, 0},
                   {63.9, 0.024, 0},
                   {68.3, 0.065, 0},
                   {71.5, 0.112, 0},
                   {74.8, 0.153, 0},
                   {79.9, 0.194, 0}});
    checkStations(14, 0.144,
                  {{28.0, -0.013, 0},
                   {37.4, -0.036, 0},
                   {42.5, -0.059, 0},
                   {47.6, -0.079, 0},
                   {52.8, -0.159, 0},
                   {58.2, -0.184, 0},
                   {63.5, -0.164, 0},
                   {74.3, -0.080, 0},
                   {81.9, 0.047, 0},
                   {85.2, 0.061, 0},
                   {98.1, 0.015, 0},
                   {123.9, 0.000, 0}});
}

// --- Other meshes, other laws ----------------------------------------------------------------------------------------

void checkMesh(int m, Cells cells, double side, double diagonal, double leastH3)
{
    SquareCup const shape = meshed(m);
    Quarter const model = quarter(shape, kRestraint, 0.0, mildSteel(), cells);
    Solution const solution = solve(model.problem);
    int const rays = 14 * m + 1;
    int const first = static_cast<int>(model.mesh.nodes.size()) - rays;
    double const least = extremes(model.problem, solution).leastThickness;
    tell("%zu elements: %d steps, side %.3f (%.2f), diagonal %.3f (%.2f), least h3 %.4f (%.4f)",
         model.mesh.elements.size(), solution.newtonSteps, flatRadius(solution, first), side,
         flatRadius(solution, first + rays / 2), diagonal, least, leastH3);
    EXPECT_NEAR(flatRadius(solution, first), side, 0.03);
    EXPECT_NEAR(flatRadius(solution, first + rays / 2), diagonal, 0.03);
    EXPECT_NEAR(least, leastH3, 0.012);
}

TEST(VerificationSquareCup, CoarserAndEqualMeshesGiveTheirPublishedBlanks)
{
    checkMesh(1, Cells::Triangles, 77.72, 106.72, -0.1022);
    checkMesh(2, Cells::Triangles, 78.37, 106.48, -0.1125);
    checkMesh(1, Cells::Quads, 78.57, 106.44, -0.1760);
    checkMesh(2, Cells::Quads, 78.50, 106.37, -0.1230);
}

TEST(SlowVerificationSquareCup, FinerMeshesGiveTheirPublishedBlanks)
{
    checkMesh(4, Cells::Triangles, 78.43, 106.35, -0.0928);
    checkMesh(4, Cells::Quads, 78.44, 106.30, -0.0981);
}

double sideWith(Settings const & settings)
{
    Solution const solution = solve(quarter(squareCup40(), kRestraint, 0.0).problem, settings);
    double const side = flatRadius(solution, nodeAt(kRows, 0));
    tell("kappa %g, theta %g: side %.3f, %d steps", settings.kappa, settings.theta, side, solution.newtonSteps);
    return side;
}

TEST(VerificationSquareCup, TheBlankHardlyDependsOnTheTwoNumbersOfTheLaw)
{
    Settings settings;
    for (auto const & [kappa, side] : {std::pair{1.0, 78.38}, std::pair{1.5, 78.32}, std::pair{2.0, 78.25}})
    {
        settings.kappa = kappa;
        EXPECT_NEAR(sideWith(settings), side, 0.03);
    }
    settings = {};
    for (auto const & [theta, side] : {std::pair{0.5, 78.31}, std::pair{1.5, 78.39}, std::pair{0.0, 78.40}})
    {
        settings.theta = theta;
        EXPECT_NEAR(sideWith(settings), side, 0.03);
    }
}

TEST(VerificationSquareCup, ThePlainLawSolvesTheShallowCup)
{
    Settings plain;
    plain.kappa = 0.0;
    plain.theta = 0.0;
    Figures const f = figuresOf(quarter(squareCup15(), kRestraint, 0.0), "15 mm");
    Solution const solution = solve(quarter(squareCup15(), kRestraint, 0.0).problem, plain);
    EXPECT_NEAR(flatRadius(solution, nodeAt(kRows, 0)), f.side, 0.05);
}

// Beyond the limit of ellipticity no answer may look like one.
TEST(SlowVerificationSquareCup, ThePlainLawDoesNotSolveTheDeepCupAndSaysSo)
{
    Settings plain;
    plain.kappa = 0.0;
    plain.theta = 0.0;
    Solution const solution = voz::onestep::Solve(quarter(squareCup40(), kRestraint, 0.0).problem, plain, {});
    tell("status %d after %d steps: %s", static_cast<int>(solution.status), solution.newtonSteps,
         solution.message.c_str());
    EXPECT_EQ(solution.status, Status::Failed);
    EXPECT_FALSE(solution.message.empty());
    EXPECT_TRUE(solution.flat.empty());
}

// --- What must not matter
// ----------------------------------------------------------------------------------------------

struct Whole
{
    SurfaceMesh mesh;
    Problem problem;
};

Whole whole()
{
    Whole model{squareCup(squareCup40(), Extent::Whole, Cells::Triangles), {}};
    model.problem = problemOf(model.mesh, mildSteel());
    for (FreeSide const & side : freeSides(model.mesh))
        model.problem.holders.push_back({side.element, side.corner1, side.corner2, 1000.0 * kRestraint});
    return model;
}

double span(Solution const & solution, int a, int b)
{
    Point2 const p = flat(solution, a);
    Point2 const q = flat(solution, b);
    return std::hypot(p[0] - q[0], p[1] - q[1]);
}

constexpr int kWholeRays = 112;
int wholeNodeAt(int ray)
{
    return 1 + (kRows - 1) * kWholeRays + ray;
}

TEST(VerificationInvariance, TheWholePartFreeOfConstraintsTurnedAndMovedGivesTheQuartersBlank)
{
    Quarter const small = quarter(squareCup40(), kRestraint, 0.0);
    Solution const one = solve(small.problem);
    Whole model = whole();
    double const c = std::cos(0.3);
    double const s = std::sin(0.3);
    for (auto & p : model.problem.nodes)
        p = {c * p[0] - s * p[1] + 0.300, s * p[0] + c * p[1] - 0.050, p[2]};
    Settings tight;
    tight.tolerance = 1e-11; // the holding share follows the residual down
    Solution const solution = solve(model.problem, tight);
    double const side = 0.5 * span(solution, wholeNodeAt(0), wholeNodeAt(56));
    double const diagonal = 0.5 * span(solution, wholeNodeAt(14), wholeNodeAt(70));
    tell("whole: side %.4f, diagonal %.4f, holding share %.2g, %d steps; quarter: %.4f, %.4f", side, diagonal,
         solution.holdingShare, solution.newtonSteps, flatRadius(one, nodeAt(kRows, 0)),
         flatRadius(one, nodeAt(kRows, kRays / 2)));
    EXPECT_NEAR(side, flatRadius(one, nodeAt(kRows, 0)), 1e-4);
    EXPECT_NEAR(diagonal, flatRadius(one, nodeAt(kRows, kRays / 2)), 1e-4);
    EXPECT_LT(solution.holdingShare, 1e-10);
    EXPECT_NEAR(solution.punchForce / one.punchForce, 4.0, 1e-5);
}

TEST(VerificationInvariance, ReversedElementsGiveTheSameBlank)
{
    Quarter const model = quarter(squareCup40(), kRestraint, 0.0);
    Solution const given = solve(model.problem);
    Problem reversed = model.problem;
    for (auto & element : reversed.elements)
        std::swap(element.nodes[1], element.nodes[2]);
    for (auto & holder : reversed.holders)
        for (int * corner : {&holder.corner1, &holder.corner2})
            *corner = *corner == 0 ? 0 : 3 - *corner;
    Solution const solution = solve(reversed);
    double worst = 0.0;
    for (int i = 0; i < static_cast<int>(model.mesh.nodes.size()); ++i)
        worst = std::max(
            worst, std::hypot(flat(given, i)[0] - flat(solution, i)[0], flat(given, i)[1] - flat(solution, i)[1]));
    tell("largest move of a node %.3g mm", worst);
    EXPECT_LT(worst, 1e-6);
    // Top and bottom belong to the orientation that came in.
    double swapped = 0.0;
    for (std::size_t e = 0; e < model.problem.elements.size(); ++e)
        swapped = std::max(swapped, std::fabs(strainAt(given, e, 0, given.strains.top).major -
                                              strainAt(solution, e, 0, solution.strains.bottom).major));
    EXPECT_LT(swapped, 1e-6);
}

TEST(VerificationInvariance, RenumberedNodesAndShuffledElementsGiveTheSameBlank)
{
    Quarter const model = quarter(squareCup40(), kRestraint, 0.0);
    Solution const given = solve(model.problem);
    std::vector<int> newNode(model.problem.nodes.size());
    std::iota(newNode.begin(), newNode.end(), 0);
    std::mt19937 random(3);
    std::shuffle(newNode.begin(), newNode.end(), random);
    Problem renumbered = model.problem;
    for (std::size_t i = 0; i < newNode.size(); ++i)
        renumbered.nodes[static_cast<std::size_t>(newNode[i])] = model.problem.nodes[i];
    for (auto & element : renumbered.elements)
        for (int & node : element.nodes)
            node = node < 0 ? node : newNode[static_cast<std::size_t>(node)];
    for (auto & constraint : renumbered.constraints)
        constraint.node = newNode[static_cast<std::size_t>(constraint.node)];
    Solution const solution = solve(renumbered);
    double worst = 0.0;
    for (std::size_t i = 0; i < newNode.size(); ++i)
    {
        Point2 const p = flat(given, static_cast<int>(i));
        Point2 const q = flat(solution, newNode[i]);
        worst = std::max(worst, std::hypot(p[0] - q[0], p[1] - q[1]));
    }
    tell("largest move of a node %.3g mm", worst);
    EXPECT_LT(worst, 1e-6); // 1e-9 of a metre
}

TEST(VerificationInvariance, UnitsDoNotMatter)
{
    Quarter const model = quarter(squareCup40(), kRestraint, 0.0);
    Solution const metres = solve(model.problem);
    Problem scaled = model.problem; // millimetres, newtons, megapascals
    for (auto & p : scaled.nodes)
        for (double & x : p)
            x *= 1000.0;
    for (auto & holder : scaled.holders)
        holder.force *= 0.001;
    MaterialLaw & law = scaled.materials.front();
    law.thickness *= 1000.0;
    for (double * stress : {&law.kValue, &law.yield, &law.youngsModulus})
        *stress *= 1e-6;
    Solution const millimetres = solve(scaled);
    double worst = 0.0;
    for (std::size_t i = 0; i < metres.strains.mid.size(); ++i)
        worst = std::max(worst, std::fabs(metres.strains.mid[i] - millimetres.strains.mid[i]));
    tell("largest change of a strain %.3g", worst);
    EXPECT_LT(worst, 1e-12);
}

TEST(VerificationInvariance, TwoRunsAgreeToTheLastBit)
{
    Quarter const model = quarter(squareCup15(), kRestraint, 0.0);
    Solution const a = solve(model.problem);
    Solution const b = solve(model.problem);
    EXPECT_EQ(a.flat, b.flat);
    EXPECT_EQ(a.strains.mid, b.strains.mid);
}

} // namespace
