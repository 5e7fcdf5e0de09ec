// KernelSpringback.cpp: drives the library's springback: whole part in, forming displacements in millimetres, sprung
// shape out before and after it is laid on the chosen points.

#include "KernelSpringback.h"

#include "KernelRun.h"
#include "OutputFile.h"
#include "Result.h"
#include "RouteParts.h"
#include "SpringbackModel.h"
#include "VOZSolverSpringBacks.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace voz::workbench
{

namespace
{
constexpr double kMillimetrePerMetre = 1000.0;
constexpr char const * kFolder = "springback";

int * CopyOf(std::vector<int> const & i_rows)
{
    auto * const copy = new int[i_rows.size()]; // the process definition owns it
    std::ranges::copy(i_rows, copy);
    return copy;
}

// Materials of the elements, and what is held, cut off and laid on points; no force acts any more.
void FillProperty(Job const & i_job, JobModel const & i_model, WholePart const & i_whole, VOZCatAxis const & i_frame,
                  SpringbackSelections const & i_selections, ElemProperty & io_property)
{
    std::vector<int> const materialOf = MaterialOfElements(i_job, i_model);
    io_property.sizeProperty(static_cast<int>(i_job.materials.size()));
    int i = 0;
    for (JobMaterial const & material : i_job.materials)
    {
        Material unused;
        FillMaterials(i_job, material, unused, *io_property.material(++i));
    }
    io_property.sizePropertyIndex(i_whole.mesh.numElem());
    for (int e = 1; e <= i_whole.mesh.numElem(); ++e)
        io_property.propertyId(
            e, materialOf[static_cast<std::size_t>(i_whole.elementOf[static_cast<std::size_t>(e) - 1]) + 1]);
    if (!i_selections.held.empty())
    {
        DispBC table(static_cast<int>(i_selections.held.size()));
        std::ranges::copy(i_selections.held, table.nodes);
        table.setCode(3); // both directions: such a node is held in all three
        table.frame = i_frame;
        io_property.sizeDispBC(1);
        io_property.dispBCs(1, table);
    }
    io_property.setSprinkbackFixity(i_job.springback->isBoundaryHeld);
    if (!i_selections.trimmed.empty())
    {
        io_property.setTrimmingSize(static_cast<int>(i_selections.trimmed.size()));
        io_property.setTrimming(CopyOf(i_selections.trimmed)); // labels: the mesh counts from 1
    }
    if (!i_selections.aligned.empty())
        io_property.setAlignment(CopyOf(i_selections.aligned));
}

std::vector<std::array<double, 3>> FormingOf(WholePart const & i_whole, Outcome const & i_formed)
{
    std::vector<std::array<double, 3>> rows;
    for (std::size_t n = 0; n < i_whole.nodeOf.size(); ++n)
        rows.push_back(ImageOf(i_formed.nodes[static_cast<std::size_t>(i_whole.nodeOf[n])].displacement,
                               i_whole.mirrored[n], i_formed.frame));
    return rows;
}

std::vector<Point3> Shifts(VOZSolverSpringBacks & io_solver, VOZCatMesh const & i_mesh, std::string const & i_what,
                           std::string const & i_folder)
{
    Result top(i_mesh);
    Result mid(i_mesh);
    Result bottom(i_mesh);
    std::array<Result *, 3> layers = {&top, &mid, &bottom};
    Driven(i_what, i_folder, [&] { return io_solver.GetResults(layers.data()); });
    std::vector<Point3> shifts;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        shifts.push_back({kMillimetrePerMetre * static_cast<double>(top.disp1(n, 0)),
                          kMillimetrePerMetre * static_cast<double>(top.disp1(n, 1)),
                          kMillimetrePerMetre * static_cast<double>(top.disp1(n, 2))});
    return shifts;
}

std::string MakeFolder(std::string const & i_folder)
{
    std::string const folder = InFolder(i_folder, kFolder);
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    if (!std::filesystem::is_directory(folder))
        throw OutputError(folder, error.message());
    return folder;
}
} // namespace

SpringbackOutcome KernelSpringback(Job const & i_job, JobModel const & i_model, Outcome const & i_formed,
                                   std::string const & i_folder, RunObserver & io_observer)
{
    WholePart const whole = MakeWhole(i_model.mesh.mesh, i_formed.frame, i_formed.symmetry);
    SpringbackSelections const selections = SelectForSpringback(i_job, i_model, whole);
    ElemProperty property;
    FillProperty(i_job, i_model, whole, i_formed.frame, selections, property);
    std::vector<std::array<double, 3>> const forming = FormingOf(whole, i_formed);

    VOZCatMesh const * meshes[2] = {&whole.mesh, nullptr};
    Symmetry const noPlanes;
    Friction friction;
    friction.coefficient(i_job.friction);
    FullBlankHolder const noHolder;
    std::string const files = MakeFolder(i_folder);
    std::string const what = "the kernel could not unload the part";
    VOZSolverSpringBacks solver;
    VOZSolver & base = solver;
    base.SetBoundaryConditions(meshes, 1, &property, &noPlanes, &friction, &noHolder, &i_formed.frame,
                               i_job.toolFriction ? 1 : 0, 0, 0);
    solver.SetDisplacements(reinterpret_cast<double const(*)[3]>(forming.data()));
    RouteTask task(io_observer);
    RouteHost const host(i_folder, files, i_job.steps);
    Driven(what, files, [&] { return solver.Run(&task); });

    SpringbackOutcome springback;
    springback.before = Shifts(solver, whole.mesh, what, files);
    if (!selections.aligned.empty())
    {
        property.setAlignmentSize(static_cast<int>(selections.aligned.size())); // not before: it would be laid at once
        springback.after = Shifts(solver, whole.mesh, what, files);
    }
    springback.part = whole.mesh;
    springback.modelNodes = i_model.mesh.mesh.numNode();
    springback.trimmed.assign(whole.elementOf.size(), 0);
    for (int const e : selections.trimmed)
        springback.trimmed[static_cast<std::size_t>(e) - 1] = 1;
    for (int const n : selections.aligned)
        springback.aligned.push_back(n - 1);
    FinishSpringback(i_job, i_model, i_formed.frame, springback);
    return springback;
}

} // namespace voz::workbench
