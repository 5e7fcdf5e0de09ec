// JobModesTest.cpp. The tables of a job for what happens beside forming in one stage: binder, auto strain, springback;
// and several materials.

#include "JobFixture.h"

#include "FileRoute.h"
#include "JobModel.h"
#include "SpringbackModel.h"

#include "VOZMaterial.h"

#include <algorithm>
#include <cmath>

using namespace voz::workbench;

namespace
{
class JobModes : public JobFixture
{
protected:
    Job Parsed(std::string const & i_more) const { return ParseJob(Sound() + i_more, JobPath()); }
    std::string RefusalOf(std::string const & i_more) const
    {
        try
        {
            Parsed(i_more);
        }
        catch (InputError const & error)
        {
            return error.what();
        }
        return "taken";
    }
    std::string FileRefusalOf(std::string const & i_more) const
    {
        try
        {
            Job const job = Parsed(i_more);
            CheckFileRoute(job);
            CheckFileModel(job, ReadModel(job));
        }
        catch (InputError const & error)
        {
            return error.what();
        }
        return "taken";
    }
};

bool Holds(std::string const & i_text, std::string const & i_part)
{
    return i_text.find(i_part) != std::string::npos;
}

std::string const kWanted = "[auto_strain]\ntarget_point_mm = [1, 2, 3]\ntarget_strain = \"3 %\"\n";
} // namespace

TEST_F(JobModes, AreOffUnlessTheirTableIsThere)
{
    Job const job = Parsed("");
    EXPECT_FALSE(job.binder);
    EXPECT_FALSE(job.autoStrain);
    EXPECT_FALSE(job.springback);
    EXPECT_FALSE(job.HasSpringback());
}

TEST_F(JobModes, ABinderIsAMeshOfItsOwnInItsOwnUnit)
{
    Write("binder.bdf", PlateText());
    Job const job = Parsed("[binder]\nfile = \"binder.bdf\"\nlength_unit = \"cm\"\n");
    ASSERT_TRUE(job.binder);
    EXPECT_EQ(job.binder->unitLength, 10.0);
    JobModel const model = ReadModel(job);
    ASSERT_TRUE(model.binder);
    EXPECT_EQ(model.binder->mesh.node(5, 0), 80.0) << "cm became mm";
    EXPECT_EQ(model.mesh.mesh.node(5, 0), 8.0);
    EXPECT_TRUE(Holds(RefusalOf("[binder]\nfile = \"none.bdf\"\n"), "binder.file: there is no file"));
    EXPECT_TRUE(Holds(RefusalOf("[binder]\n"), "binder.file is missing"));
}

TEST_F(JobModes, ABinderIsHeldToWhatHoldsForAPart)
{
    Write("binder.bdf", "BEGIN BULK\nGRID,1,,0.,0.,0.\nENDDATA\n");
    Job const job = Parsed("[binder]\nfile = \"binder.bdf\"\n");
    EXPECT_THROW(ReadModel(job), InputError);
}

TEST_F(JobModes, WantedStrainsNeedAPlaceAndAPlaceAStrain)
{
    Job const job = Parsed(kWanted + "value = 1.5\n");
    ASSERT_TRUE(job.autoStrain);
    EXPECT_EQ(job.autoStrain->target, (Point3{1, 2, 3}));
    EXPECT_FALSE(job.autoStrain->reference);
    EXPECT_DOUBLE_EQ(job.autoStrain->targetStrain, 3.0);
    EXPECT_EQ(job.autoStrain->value, 1.5);
    EXPECT_TRUE(Holds(RefusalOf("[auto_strain]\n"), "no strain is wanted"));
    EXPECT_TRUE(Holds(RefusalOf("[auto_strain]\ntarget_point_mm = [1, 2, 3]\n"), "target_strain: is missing"));
    EXPECT_TRUE(Holds(RefusalOf("[auto_strain]\nreference_strain = \"3 %\"\n"), "reference_strain: has no place"));
    EXPECT_TRUE(
        Holds(RefusalOf("[auto_strain]\ntarget_point_mm = [1, 2]\ntarget_strain = \"3 %\"\n"), "three lengths"));
    EXPECT_TRUE(Holds(RefusalOf("[auto_strain]\ntarget_point_mm = [1, 2, 3]\ntarget_strain = \"-98 %\"\n"),
                      "must be above -98 %"));
    EXPECT_TRUE(Holds(RefusalOf(kWanted + "value = -1\n"), "must not be negative"));
}

// Unequal values, so that no two of them can have changed places.
TEST_F(JobModes, WantedStrainsReachTheProcessInPercentAndMillimetres)
{
    Job const job = Parsed(kWanted + "reference_point_in = [1, 0, 0]\nreference_strain_fraction = 0.07\nvalue = 1.5\n");
    JobModel const model = ReadModel(job);
    Process process;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Elements, process);
    double * target = nullptr;
    double * reference = nullptr;
    double targetStrain = 0.0;
    double referenceStrain = 0.0;
    double value = 0.0;
    EXPECT_TRUE(process.property.getAutoStrain(target, reference, targetStrain, referenceStrain, value));
    ASSERT_TRUE(target != nullptr && reference != nullptr);
    EXPECT_EQ(target[2], 3.0);
    EXPECT_DOUBLE_EQ(reference[0], 25.4);
    EXPECT_DOUBLE_EQ(targetStrain, 3.0);
    EXPECT_DOUBLE_EQ(referenceStrain, 7.0);
    EXPECT_EQ(value, 1.5);
    delete[] target;
    delete[] reference;
}

TEST_F(JobModes, SpringbackIsReadWithItsSelections)
{
    Job const job = Parsed("[springback]\nfixity = true\nalign_nodes = [3]\nalign_points_mm = [[8, 6, 0]]\n"
                           "watch_points_mm = [[0, 6, 0]]\nexaggeration = 20\nsection_normal = [0, 2, 0]\n"
                           "section_point_mm = [0, 3, 0]\n[springback.trim]\nset = \"2\"\n"
                           "[[springback.constraint]]\nnodes = [1, 2]\n");
    ASSERT_TRUE(job.HasSpringback());
    JobSpringback const & springback = *job.springback;
    EXPECT_TRUE(springback.isBoundaryHeld);
    EXPECT_EQ(springback.section->normal, (Point3{0, 1, 0}));
    JobModel const model = ReadModel(job);
    Tipping const tipping = FindTipping(job, model);
    SpringbackSelections const selections =
        SelectForSpringback(job, model, MakeWhole(model.mesh.mesh, tipping.frame, tipping.symmetry));
    EXPECT_EQ(selections.trimmed, (std::vector<int>{4, 8, 12}));
    EXPECT_EQ(selections.held, (std::vector<int>{1, 2}));
    EXPECT_EQ(selections.aligned, (std::vector<int>{3, 20}));
    EXPECT_FALSE(Parsed("[springback]\non = false\n").HasSpringback());
}

TEST_F(JobModes, SpringbackThatCannotBeIsRefused)
{
    EXPECT_TRUE(Holds(RefusalOf("[springback]\nalign_nodes = [1, 2, 3, 4, 5]\n"), "at most four points"));
    EXPECT_TRUE(Holds(RefusalOf("[springback]\nsection_normal = [0, 1, 0]\n"), "needs both"));
    EXPECT_TRUE(Holds(RefusalOf("[springback]\nexaggeration = -1\n"), "must not be negative"));
    EXPECT_TRUE(Holds(RefusalOf("[springback]\nfixitty = true\n"), "the nearest valid key is \"fixity\""));
    for (auto const & [more, words] :
         {std::pair{"align_nodes = [99]\n", "the mesh has no node 99"},
          std::pair{"align_points_mm = [[0, 0, 0], [0.1, 0, 0]]\n", "name one node"},
          std::pair{"[springback.trim]\nbox_mm = [[-1, -1, -1], [9, 9, 9]]\n", "nothing is left"}})
    {
        Job const job = Parsed(std::string("[springback]\n") + more);
        JobModel const model = ReadModel(job);
        Tipping const tipping = FindTipping(job, model);
        try
        {
            SelectForSpringback(job, model, MakeWhole(model.mesh.mesh, tipping.frame, tipping.symmetry));
            ADD_FAILURE() << words;
        }
        catch (InputError const & error)
        {
            EXPECT_TRUE(Holds(error.what(), words)) << error.what();
        }
    }
}

TEST_F(JobModes, AreKeptInTheLockedJob)
{
    Write("binder.bdf", PlateText());
    Job const job = Parsed(kWanted + "[binder]\nfile = \"binder.bdf\"\n[springback]\nfixity = true\nalign_nodes = [3]\n"
                                     "watch_points_mm = [[0, 6, 0]]\nsection_normal = [0, 1, 0]\n"
                                     "section_point_mm = [0, 3, 0]\nexaggeration = 5\n[springback.trim]\nset = \"2\"\n"
                                     "[[springback.constraint]]\nnodes = [1, 2]\n");
    std::string const locked = LockedJob(job, {}, Folder());
    Job const again = ParseJob(locked, Folder() + "/again.toml");
    EXPECT_EQ(LockedJob(again, {}, Folder()), locked);
    EXPECT_EQ(again.autoStrain->target, job.autoStrain->target);
    EXPECT_EQ(again.springback->constraints.at(0).ids, (std::vector<int>{1, 2}));
    EXPECT_EQ(again.springback->trimmed->set, "2");
    EXPECT_EQ(again.springback->alignNodes, job.springback->alignNodes);
    EXPECT_EQ(again.springback->exaggeration, 5.0);
}

// --- What a deck cannot say ------------------------------------------------------------------------------------------

TEST_F(JobModes, TheFileRouteRefusesByNameWhatADeckCannotSay)
{
    Write("binder.bdf", PlateText());
    EXPECT_EQ(FileRefusalOf(""), "taken");
    EXPECT_EQ(FileRefusalOf("[springback]\nwatch_nodes = [1]\n"), "taken");
    EXPECT_TRUE(Holds(FileRefusalOf("[binder]\nfile = \"binder.bdf\"\n"), "the file route carries no binder"));
    EXPECT_TRUE(Holds(FileRefusalOf(kWanted), "the file route cannot be asked for strains"));
    EXPECT_TRUE(Holds(FileRefusalOf("[springback]\nfixity = true\n"), "springback.fixity"));
    EXPECT_TRUE(
        Holds(FileRefusalOf("[springback]\n[[springback.constraint]]\nnodes = [1]\n"), "springback.constraint"));
    EXPECT_TRUE(Holds(FileRefusalOf("[springback]\n[springback.trim]\nset = \"2\"\n"), "springback.trim"));
    EXPECT_TRUE(Holds(FileRefusalOf("[springback]\nalign_nodes = [1]\n"), "springback.align_points"));
    EXPECT_EQ(FileRefusalOf("[springback]\non = false\nfixity = true\n"), "taken");
    EXPECT_TRUE(Holds(FileRefusalOf("[springback]\nfixity = true\n"), "--route kernel does"));
}

TEST_F(JobModes, TheFileRouteTakesOneDirectionOfANodeOrBothAsZero)
{
    auto const constraint = [](char const * i_keys, char const * i_nodes)
    { return std::string("[[constraint]]\n") + i_keys + "nodes = " + i_nodes + "\n"; };
    EXPECT_EQ(FileRefusalOf(constraint("x_mm = 1\n", "[1, 2]") + constraint("y_mm = 2\n", "[3]")), "taken");
    EXPECT_EQ(FileRefusalOf(constraint("x_mm = 0\ny_mm = 0\n", "[1]")), "taken");
    EXPECT_EQ(FileRefusalOf(constraint("x_mm = 0\n", "[1]") + constraint("y_mm = 0\n", "[1]")), "taken");
    EXPECT_TRUE(Holds(FileRefusalOf(constraint("x_mm = 1\ny_mm = 0\n", "[1]")), "node 1 has both"));
    EXPECT_TRUE(
        Holds(FileRefusalOf(constraint("x_mm = 1\n", "[1, 2]") + constraint("y_mm = 0\n", "[2]")), "node 2 has both"));
}

// The set's complement of a ring catches the element in its middle: all its corners are the ring's.
TEST_F(JobModes, TheFileRouteRefusesAPadWhoseNodesTakeMoreElements)
{
    EXPECT_EQ(FileRefusalOf("[[pad]]\npressure = \"1 MPa\"\nset = \"2\"\n"), "taken");
    EXPECT_TRUE(Holds(FileRefusalOf("[[pad]]\npressure = \"1 MPa\"\nelements = [1, 2, 3, 5, 7, 9, 10, 11]\n"),
                      "would take 1 more elements"));
}

// --- The records of the in-process route -----------------------------------------------------------------------------

TEST_F(JobModes, APadIsItsElementsForTheKernelAndItsNodesForTheDeck)
{
    Job const job = Parsed("[[pad]]\npressure = \"1 MPa\"\nset = \"2\"\n");
    JobModel const model = ReadModel(job);
    Process elements;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Elements, elements);
    EXPECT_EQ(elements.property.pressPadSize(1), 3);
    EXPECT_EQ(elements.property.pressPads(1, 2), 8);
    EXPECT_EQ(elements.property.pressPadVal(1), 1e6);
    Process nodes;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Nodes, nodes);
    EXPECT_EQ(nodes.property.pressPadSize(1), 8);
    EXPECT_EQ(nodes.property.pressPads(1, 1), 4);
}

TEST_F(JobModes, PadsThatOverlapAreWarnedOf)
{
    Job const job =
        Parsed("[[pad]]\npressure = \"1 MPa\"\nset = \"2\"\n[[pad]]\npressure = \"2 MPa\"\nelements = [4]\n");
    JobModel const model = ReadModel(job);
    Process process;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Elements, process);
    ASSERT_EQ(process.warnings.size(), 1U);
    EXPECT_TRUE(Holds(process.warnings[0], "pad[2]: 1 of its elements lie under an earlier pad"));
}

// A record of both directions says "held": values that are not 0 go into a table each.
TEST_F(JobModes, BothDirectionsWithValuesAreTwoTables)
{
    Job const job = Parsed("[[constraint]]\nx_mm = 1\ny_mm = 2\nnodes = [7]\n"
                           "[[constraint]]\nx_mm = 0\ny_mm = 0\nnodes = [8]\n");
    JobModel const model = ReadModel(job);
    Process process;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Elements, process);
    ASSERT_EQ(process.property.sizeDispBC(), 3);
    int const flags[3][2] = {{1, 0}, {0, 1}, {1, 1}};
    double const values[3][2] = {{1, 0}, {0, 2}, {0, 0}};
    for (int i = 0; i < 3; ++i)
        for (int k = 0; k < 2; ++k)
        {
            EXPECT_EQ(process.property.dispBCs(i + 1).flags[k], flags[i][k]) << i;
            EXPECT_EQ(process.property.dispBCs(i + 1).values[k], values[i][k]) << i;
        }
}

namespace
{
std::string TwoMaterials(std::string const & i_first, std::string const & i_second)
{
    return "[mesh]\nfile = \"part.bdf\"\n[blank]\nthickness = \"0.78 mm\"\n"
           "[[material]]\nname = \"soft\"\nK_MPa = 500\nn = 0.25\nr = 1.8\nyield_MPa = 150\n" +
           i_first + "[[material]]\nname = \"hard\"\nK_MPa = 900\nn = 0.15\nr = 1\nyield_MPa = 350\n" + i_second;
}
} // namespace

TEST_F(JobModes, EachElementHasTheMaterialOfItsSetAndTheRestTheOneWithout)
{
    Job const job = ParseJob(TwoMaterials("", "set = \"2\"\n"), JobPath());
    JobModel const model = ReadModel(job);
    Process process;
    BuildProcess(job, model, FindTipping(job, model), PadRows::Elements, process);
    EXPECT_EQ(process.property.sizeProperty(), 2);
    for (int e = 1; e <= 12; ++e)
        EXPECT_EQ(process.property.propertyIndex(e), e % 4 == 0 ? 2 : 1) << e;
    EXPECT_DOUBLE_EQ(process.property.material(2)->m_dKValue, 900e6);
    EXPECT_GT(process.property.material(1)->m_dFldZero, process.property.material(2)->m_dFldZero)
        << "each has the FLD0 of its own n";
    EXPECT_TRUE(Holds(
        [&]
        {
            try
            {
                CheckFileRoute(job);
            }
            catch (InputError const & error)
            {
                return std::string(error.what());
            }
            return std::string("taken");
        }(),
        "\"soft\", \"hard\""));
}

TEST_F(JobModes, ElementsOfTwoMaterialsOrOfNoneAreRefused)
{
    for (auto const & [first, second, words] : {std::tuple{"set = \"2\"\n", "set = \"2\"\n", "both take element 4"},
                                                std::tuple{"set = \"1\"\n", "set = \"1\"\n", "both take element 1"},
                                                std::tuple{"", "", "one alone takes the rest"}})
        try
        {
            Job const job = ParseJob(TwoMaterials(first, second), JobPath());
            MaterialOfElements(job, ReadModel(job));
            ADD_FAILURE() << words;
        }
        catch (InputError const & error)
        {
            EXPECT_TRUE(Holds(error.what(), words)) << error.what();
        }
    Job job = Parsed("");
    job.materials[0].set = "2";
    EXPECT_THROW(MaterialOfElements(job, ReadModel(job)), InputError) << "elements without a material";
}

// --- The whole of a model --------------------------------------------------------------------------------------------

TEST_F(JobModes, AQuarterBecomesAWholeWithTheModelFirst)
{
    Job const job = Parsed("[symmetry]\nplanes = \"both\"\n");
    JobModel const model = ReadModel(job);
    Tipping const tipping = FindTipping(job, model);
    WholePart const whole = MakeWhole(model.mesh.mesh, tipping.frame, tipping.symmetry);
    EXPECT_EQ(whole.mesh.numNode(), 9 * 7) << "nodes on a plane are their own images";
    EXPECT_EQ(whole.mesh.numElem(), 48);
    for (int n = 1; n <= 20; ++n)
        EXPECT_EQ(whole.mesh.node(n, 0), model.mesh.mesh.node(n, 0));
    double low = 0.0;
    for (int n = 1; n <= whole.mesh.numNode(); ++n)
        low = std::min(low, whole.mesh.node(n, 1));
    EXPECT_NEAR(low, -6.0, 1e-12);
    MeshModel checked;
    checked.mesh = whole.mesh;
    checked.nodeIds.resize(63);
    checked.elementIds.resize(48);
    MeshReport const report = CheckMesh(checked);
    EXPECT_EQ(report.Count(FindingKind::Flipped), 0) << "images are turned, so that all run in one sense";
    EXPECT_EQ(report.Count(FindingKind::Duplicate), 0);
    EXPECT_EQ(report.loops.size(), 1U);
}

TEST_F(JobModes, VectorsOfImagesAreMirroredInTheFrame)
{
    VOZCatAxis const frame;
    EXPECT_EQ(ImageOf({1, 2, 3}, 0U, frame), (Point3{1, 2, 3}));
    EXPECT_EQ(ImageOf({1, 2, 3}, 1U, frame), (Point3{-1, 2, 3}));
    EXPECT_EQ(ImageOf({1, 2, 3}, 3U, frame), (Point3{-1, -2, 3}));
}
