// SpringbackDoorTest.cpp: the springback doors: records in, shape and files out, and what they refuse.

#include "CATError.h"
#include "JobFixture.h"
#include "VOZMeshGenerator.h"
#include "VOZSolverSpringback.h"
#include "VOZUtilitySolving.h"
#include "springback/Springback.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <limits>
#include <sstream>

namespace
{

using namespace jobtest;
using testing::HasSubstr;

constexpr double kIdentity[9] = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0};
constexpr double kOrigin[3] = {0.0, 0.0, 0.0};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLeftAlone = -7.0;

// A solved patch of a cylinder as a springback driver hands it over: the part, and the part moved to the flat.
struct Spring
{
    explicit Spring(Cells cells = Cells::Triangles)
        : surface(cylinder(20.0, 0.6, 6, 30.0, 4, cells)), job(jobOf(surface))
    {
        EXPECT_EQ(VOZUtilitySolving::Evaluate(job.data.get(), nullptr, nullptr, nullptr), VOZUtilitySolving::Done);
        part.reset(partOf(surface));
        flat.reset(partOf(surface));
        std::copy_n(job.blank->m_padNodalCoords, 3 * surface.nodes.size(), flat->m_padNodalCoords);
        shape.assign(3 * surface.nodes.size(), kLeftAlone);
    }

    int run()
    {
        return VOZSolverSpringback::Unfold(
            name.empty() ? nullptr : name.c_str(), folder.c_str(), 3, job.data->m_nNumMaterials,
            job.data->m_padInitMaterialThickness, job.data->m_pasMaterialProperties, frame, origin, stop, callback,
            task, nullptr, part.get(), held.get(), nullptr, nullptr, nullptr, nullptr, flat.get(), true, shape.data());
    }

    std::string error()
    {
        try
        {
            run();
        }
        catch (CATError const & raised)
        {
            EXPECT_TRUE(std::ranges::all_of(shape, [](double x) { return x == kLeftAlone; }));
            return raised.Message();
        }
        return "solved";
    }

    void hold(std::vector<int> const & nodes)
    {
        held = std::make_unique<VOZSBConstraints_s>();
        held->m_nCount = static_cast<int>(nodes.size());
        held->m_panNodeIndices = new int[nodes.size()];
        held->m_panCodes = new int[nodes.size()];
        std::copy(nodes.begin(), nodes.end(), held->m_panNodeIndices);
        std::fill_n(held->m_panCodes, nodes.size(), 0x5C5C5C5C);
    }

    double distance(std::size_t a, std::size_t b) const
    {
        return std::hypot(shape[3 * a] - shape[3 * b], shape[3 * a + 1] - shape[3 * b + 1],
                          shape[3 * a + 2] - shape[3 * b + 2]);
    }

    SurfaceMesh surface;
    Job job;
    std::unique_ptr<VOZMesh_s> part, flat;
    std::unique_ptr<VOZSBConstraints_s> held;
    std::basic_string<unsigned short> name, folder;
    double const * frame = kIdentity;
    double const * origin = kOrigin;
    VOZStopFunction stop = nullptr;
    VOZProgressCallback callback = nullptr;
    void * task = nullptr;
    std::vector<double> shape;
};

class SpringbackFiles : public testing::Test
{
public:
    void SetUp() override
    {
        folder = std::filesystem::temp_directory_path() /
                 (std::string("springback-") + testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    void useFolder(Spring & spring) const
    {
        spring.name = wide("sum.txt");
        spring.folder = wide(folder.string());
    }

    std::string read(char const * name) const
    {
        std::ifstream in(folder / name);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    std::filesystem::path folder;
};

} // namespace

TEST(SpringbackDoor, OpensACylinderInTheCoordinatesOfItsMeshes)
{
    Spring spring;
    ASSERT_EQ(spring.run(), VOZSolverSpringback::Done);
    auto const count = spring.surface.nodes.size();
    auto const & nodes = spring.surface.nodes;
    double before = 0.0, after = 0.0;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t j = 0; j < i; ++j)
        {
            double const formed =
                0.001 * std::hypot(nodes[i][0] - nodes[j][0], nodes[i][1] - nodes[j][1], nodes[i][2] - nodes[j][2]);
            if (formed > before)
            {
                before = formed;
                after = spring.distance(i, j);
            }
        }
    EXPECT_GT(after, before * (1.0 + 1e-4)); // corner to corner
}

TEST(SpringbackDoor, WhicheverMeshIsFlatTheShapeIsThatOfThePart)
{
    Spring one, other;
    std::swap(other.part, other.flat);
    EXPECT_EQ(one.run(), VOZSolverSpringback::Done);
    EXPECT_EQ(other.run(), VOZSolverSpringback::Done);
    EXPECT_EQ(one.shape, other.shape);
}

TEST(SpringbackDoor, TheAnswerFollowsTheFrame)
{
    Spring plain(Cells::Quads), turned(Cells::Quads);
    double const rows[9] = {0.0, 1.0, 0.0, 0.0, 0.0, 1.0, 1.0, 0.0, 0.0}; // local (x, y, z) is global (y, z, x)
    double const origin[3] = {0.5, -0.3, 0.1};
    for (VOZMesh_s * const mesh : {turned.part.get(), turned.flat.get()})
        for (std::size_t i = 0; i < turned.surface.nodes.size(); ++i)
        {
            double * const x = mesh->m_padNodalCoords + 3 * i;
            std::array<double, 3> const local = {x[0], x[1], x[2]};
            for (std::size_t k = 0; k < 3; ++k)
                x[k] = origin[k] + rows[k] * local[0] + rows[3 + k] * local[1] + rows[6 + k] * local[2];
        }
    turned.frame = rows;
    turned.origin = origin;
    ASSERT_EQ(plain.run(), 0);
    ASSERT_EQ(turned.run(), 0);
    for (std::size_t i = 0; i < turned.surface.nodes.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_NEAR(turned.distance(i, j), plain.distance(i, j), 1e-10);
    double const u = turned.shape[0] - turned.part->m_padNodalCoords[0];
    EXPECT_LT(std::abs(u), 1e-3); // the shape lies at the part
}

TEST(SpringbackDoor, ListedNodesStayWhateverTheirCodesAndIndicesOutsideTheMeshAreSkipped)
{
    Spring spring;
    spring.hold({-1, 0, 4, 20, 1000000, 0x5C5C5C5C, 30});
    ASSERT_EQ(spring.run(), VOZSolverSpringback::Done);
    for (std::size_t const node : {0U, 4U, 20U, 30U})
        for (std::size_t k = 0; k < 3; ++k)
            EXPECT_EQ(spring.shape[3 * node + k], 0.001 * spring.surface.nodes[node][k]);

    Spring none, unlisted;
    unlisted.hold({-1, -1});
    ASSERT_EQ(none.run(), 0);
    ASSERT_EQ(unlisted.run(), 0);
    EXPECT_EQ(none.shape, unlisted.shape);
}

TEST(SpringbackDoor, ElementsOfStatusOneCarryNothing)
{
    Spring plain, trimmed;
    int const elements = trimmed.part->GetNumElements();
    auto * const status = new int[static_cast<std::size_t>(elements)]();
    std::fill_n(status, elements / 2, 1);
    status[elements - 1] = 2; // not a mark of trimming
    trimmed.part->SetElementsStatus(status);
    ASSERT_EQ(plain.run(), 0);
    ASSERT_EQ(trimmed.run(), 0);
    EXPECT_NE(plain.shape, trimmed.shape);
    std::fill_n(status, elements, 1);
    trimmed.shape.assign(trimmed.shape.size(), kLeftAlone);
    EXPECT_EQ(trimmed.run(), VOZSolverSpringback::Failed);
    EXPECT_EQ(trimmed.shape[0], kLeftAlone);
}

TEST(SpringbackDoor, StopFunctionAndCallbackEndTheRunAtEachStep)
{
    struct Counter
    {
        int calls = 0, stopAt = -1;
        double last = 0.0;
    } counter;
    auto const callback = [](double percent, void * task, void *)
    {
        auto & c = *static_cast<Counter *>(task);
        EXPECT_GE(percent, c.last);
        c.last = percent;
        return c.calls++ == c.stopAt ? -1 : 0;
    };
    Spring spring;
    spring.callback = callback;
    spring.task = &counter;
    ASSERT_EQ(spring.run(), VOZSolverSpringback::Done);
    EXPECT_EQ(counter.last, 100.0);
    int const calls = counter.calls;
    spring.shape.assign(spring.shape.size(), kLeftAlone);
    for (int i = 0; i < calls; ++i)
    {
        counter = {0, i, 0.0};
        EXPECT_EQ(spring.run(), VOZSolverSpringback::Stopped) << i;
        EXPECT_EQ(counter.calls, i + 1);
    }
    spring.callback = nullptr;
    spring.stop = [] { return 1; };
    EXPECT_EQ(spring.run(), VOZSolverSpringback::Stopped);
    EXPECT_EQ(spring.shape[0], kLeftAlone);
}

TEST(SpringbackDoor, RefusesRecordsThatCannotBeRead)
{
    struct Case
    {
        std::function<void(Spring &)> damage;
        char const * text;
    };
    for (Case const & c :
         {
             Case{[](Spring & s) { s.part.reset(); }, "there is no blank mesh"},
             Case{[](Spring & s) { s.flat.reset(); }, "there is no deformed mesh"},
             Case{[](Spring & s) { s.part = std::make_unique<VOZMesh_s>(); }, "there is no blank mesh"},
             Case{[](Spring & s) { s.part->m_psTopology->m_nNumNodes = 0; }, "0 nodes"},
             Case{[](Spring & s) { s.flat->m_psTopology->m_nNumNodes -= 1; }, "expected the same mesh twice"},
             Case{[](Spring & s) { s.part->m_padNodalCoords[5] = kNaN; }, "node 1 of the blank mesh"},
             Case{[](Spring & s) { s.flat->m_padNodalCoords[7] = kNaN; }, "node 2 of the deformed mesh"},
             Case{[](Spring & s) { s.part->GetElements()[3].m_anNodeIndices[1] = -2; }, "element 3"},
             Case{[](Spring & s) { s.part->GetElements()[4].m_nMaterialIndex = 1; }, "material 1"},
             Case{[](Spring & s) { s.frame = nullptr; }, "no frame"},
             Case{[](Spring & s) { s.origin = nullptr; }, "no frame"},
             Case{[](Spring & s) { s.job.data->m_padInitMaterialThickness[0] = kNaN; }, "thickness"},
             Case{[](Spring & s) { s.job.data->m_pasMaterialProperties[0].m_dKValue = kNaN; }, "K-value"},
             Case{[](Spring & s)
                  {
                      s.hold({1});
                      s.held->m_nCount = -4;
                  },
                  "is -4"},
             Case{[](Spring & s)
                  {
                      s.held = std::make_unique<VOZSBConstraints_s>();
                      s.held->m_nCount = 4;
                  },
                  "without an array"},
         })
    {
        Spring spring;
        c.damage(spring);
        EXPECT_THAT(spring.error(), HasSubstr(c.text));
    }
}

TEST_F(SpringbackFiles, LeavesASummaryAndALogThatRepeat)
{
    Spring spring;
    useFolder(spring);
    ASSERT_EQ(spring.run(), 0);
    std::string const summary = read("sum.txt"), log = read("sum.log");
    EXPECT_THAT(summary, HasSubstr("outcome              converged\n"));
    EXPECT_THAT(summary, HasSubstr("load steps           4\n"));
    EXPECT_THAT(log, HasSubstr("6 rigid motions are pinned, at nodes "));
    EXPECT_THAT(log, HasSubstr("load 0.25  step 0  residual "));
    EXPECT_THAT(log, testing::EndsWith("converged\n"));
    ASSERT_EQ(spring.run(), 0);
    EXPECT_EQ(read("sum.txt"), summary);
    EXPECT_EQ(read("sum.log"), log);
}

TEST_F(SpringbackFiles, TellsARefusalAndNoForming)
{
    Spring spring;
    useFolder(spring);
    for (std::size_t i = 0; i < spring.shape.size(); ++i) // displacements a thousand times too small
    {
        double const part = spring.part->m_padNodalCoords[i];
        spring.flat->m_padNodalCoords[i] = part + 0.001 * (spring.flat->m_padNodalCoords[i] - part);
    }
    ASSERT_EQ(spring.run(), VOZSolverSpringback::Done);
    for (std::size_t i = 0; i < spring.shape.size(); ++i)
        EXPECT_NEAR(spring.shape[i], spring.part->m_padNodalCoords[i], 1e-15);
    EXPECT_THAT(read("sum.txt"), HasSubstr("outcome              no forming\n"));
    EXPECT_THAT(read("sum.log"), HasSubstr("nothing was formed"));

    spring.part->m_padNodalCoords[0] = kNaN;
    EXPECT_THROW(spring.run(), CATError);
    EXPECT_THAT(read("sum.txt"), HasSubstr("node 0 of the blank mesh"));
    EXPECT_THAT(read("sum.log"), HasSubstr("refused: "));
}

TEST_F(SpringbackFiles, AFolderThatVanishesIsNoFailure)
{
    Spring spring;
    useFolder(spring);
    spring.task = this;
    spring.callback = [](double, void * task, void *)
    {
        std::filesystem::remove_all(static_cast<SpringbackFiles *>(task)->folder);
        return 0;
    };
    EXPECT_EQ(spring.run(), VOZSolverSpringback::Done);
}

TEST(SpringbackDoor, AStageKeepsItsPlanesOfSymmetry)
{
    SurfaceMesh const quarter = cup({}, 1, Extent::Quarter, Cells::Triangles);
    Job job = jobOf(quarter);
    quarterSymmetry(job, quarter);
    std::vector<double> shape(3 * quarter.nodes.size(), kLeftAlone);
    ASSERT_EQ(VOZUtilitySolving::Evaluate(job.data.get(), nullptr, nullptr, nullptr), 0);
    ASSERT_EQ(VOZSolverSpringback::UnfoldStage(job.data.get(), nullptr, nullptr, nullptr, nullptr, shape.data()), 0);
    double move = 0.0;
    for (std::size_t i = 0; i < quarter.nodes.size(); ++i)
        for (std::size_t k = 0; k < 3; ++k)
        {
            move = std::max(move, std::abs(shape[3 * i + k] - 0.001 * quarter.nodes[i][k]));
            if (k < 2 && quarter.nodes[i][k] == 0.0)
            {
                EXPECT_NEAR(shape[3 * i + k], 0.0, 1e-15) << i;
            }
        }
    EXPECT_GT(move, 1e-5);
    EXPECT_LT(move, 5e-3);
    EXPECT_THROW(VOZSolverSpringback::UnfoldStage(nullptr, nullptr, nullptr, nullptr, nullptr, shape.data()), CATError);
    EXPECT_THROW(VOZSolverSpringback::UnfoldStage(job.data.get(), nullptr, nullptr, nullptr, nullptr, nullptr),
                 CATError);
}

TEST(SpringbackDoor, TheMeshGeneratorChecksAndChangesNothing)
{
    std::unique_ptr<VOZMesh_s> const mesh(partOf(cylinder(20.0, 0.6, 8, 20.0, 4, Cells::Quads)));
    std::vector<double> const before(mesh->m_padNodalCoords, mesh->m_padNodalCoords + 3 * mesh->GetNumNodes());
    auto const check = [](VOZMesh_s * m)
    { VOZMeshGenerator::ModifyMeshTopolgyForSpringBack(m, nullptr, nullptr, nullptr, nullptr); };
    check(mesh.get());
    EXPECT_EQ(before, std::vector<double>(mesh->m_padNodalCoords, mesh->m_padNodalCoords + 3 * mesh->GetNumNodes()));
    EXPECT_THROW(check(nullptr), CATError);
    mesh->GetElements()[2].m_anNodeIndices[3] = 9999;
    EXPECT_THROW(check(mesh.get()), CATError);
}
