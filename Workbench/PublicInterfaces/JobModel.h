// JobModel.h: a job with its mesh: read, checked, oriented, and laid in its stamping frame; and what acts on it as the
// library's process objects.
//
// Node and element numbers are positions, 1-based, unless they are called ids (those of the mesh file).

#ifndef JOBMODEL_H
#define JOBMODEL_H

#include "ElemProperty.h"
#include "Job.h"
#include "Material.h"
#include "MeshCheck.h"
#include "MeshFile.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"

#include <optional>
#include <string>
#include <vector>

class VOZMaterial;

namespace voz::workbench
{

// The part's mesh, mm, elements in one sense.
struct JobModel
{
    MeshModel mesh;
    MeshReport report;                 // of the mesh as it goes into the run
    std::optional<MeshModel> binder;   // in the same place as the part
    std::vector<std::string> remarks;  // what was done to it
    std::vector<std::string> warnings; // what is unusual about it
};

// Throws InputError for a mesh that no route can take: what is wrong, at which node or element.
JobModel ReadModel(Job const & i_job);

// The stamping frame: local z is the stamping direction; with one plane of symmetry it is local x = 0, with two they
// are local x = 0 and y = 0.
struct Tipping
{
    VOZCatAxis frame;
    Symmetry symmetry;
    int undercutElements = 0;
    double undercutAngle = 0.0; // degrees
    double undercutArea = 0.0;  // mm^2
    double drawDepth = 0.0;     // mm, extent of the mesh along the stamping direction
    std::vector<int> undercut;  // per element, 0-based: 1 if it faces away
};
Tipping FindTipping(VOZCatMesh const & i_mesh, std::vector<JobPlane> const & i_planes,
                    std::optional<Point3> const & i_dieLine);
Tipping FindTipping(Job const & i_job, JobModel const & i_model); // throws InputError where no frame can be found

// mm, of all nodes along an axis of the frame (0, 1, 2); 0 of no node.
double ExtentAlong(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame, int i_axis);

// A plane of symmetry bounds the model: nodes lie on it, and none beyond it. Throws InputError, of i_file, for one that
// cuts the mesh or is not touched by it. i_meanEdge: mm, of the mesh; a thousandth of it is the tolerance.
void RequirePlanes(VOZCatMesh const & i_mesh, double i_meanEdge, std::vector<JobPlane> const & i_planes,
                   std::string const & i_file);

// Throws InputError where the frame has no direction: what would give one is named as i_remedy.
void RequireFrame(Tipping const & i_tipping, std::string const & i_mesh, std::string const & i_remedy);

// Selections as positions, ascending. Throw InputError for ids and sets that the mesh does not have, and for none.
std::vector<int> NodesOf(JobSelection const & i_selection, Job const & i_job, JobModel const & i_model);
std::vector<int> ElementsOf(JobSelection const & i_selection, Job const & i_job, JobModel const & i_model);

// The node nearest to a place, and the node of an id: positions. The latter throws InputError for an id that the mesh
// does not have.
int NearestNode(VOZCatMesh const & i_mesh, Point3 const & i_place);
int NodeOfId(int i_id, std::string const & i_key, int i_line, Job const & i_job, JobModel const & i_model);

// The material of each element, 1-based, entry 0 unused. Throws InputError for elements of two materials or of none.
std::vector<int> MaterialOfElements(Job const & i_job, JobModel const & i_model);

// What acts on the sheet, for every route: mm, holder force N, bead force N/m, pad pressure Pa.
struct Process
{
    Material material;     // mm, MPa
    ElemProperty property; // its kernel material: m, Pa
    Friction friction;
    FullBlankHolder fullHolder;
    std::vector<std::string> warnings;
};
// The rows of a pad: the deck knows a pad by its nodes, the kernel's records by its elements.
enum class PadRows
{
    Nodes,
    Elements
};

// Fills io_process, which must be fresh. Throws InputError.
void BuildProcess(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, PadRows i_padRows,
                  Process & io_process);

// Elements outside a pad all of whose corners are corners of its elements: what a list of nodes cannot leave out.
int ElementsCaught(JobPad const & i_pad, Job const & i_job, JobModel const & i_model);

// Both records of one material: the process model's in mm and MPa, the kernel's in m and Pa.
void FillMaterials(Job const & i_job, JobMaterial const & i_material, Material & io_material,
                   VOZMaterial & io_kernelMaterial);

// With FLD0 as the job has it; where the job gives none, that of thickness and material.
FormingLimit LimitOf(Job const & i_job, JobMaterial const & i_material);
double FldZeroOf(Job const & i_job, JobMaterial const & i_material); // percent

// The limits as the configuration file holds them: true strains for thinning, fractions for shear.
std::string ConfigurationText(JobLimits const & i_limits);

} // namespace voz::workbench

#endif
