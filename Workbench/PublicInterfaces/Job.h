// Job.h: a forming job as its file describes it, with every default filled in and every value in the workbench's units.
//
// Lengths mm, stresses MPa, forces N, forces per length N/mm, densities kg/m^3, shares and strains of the limits
// percent. Paths of the file are relative to its folder; here they can be opened as they stand. docs/job-file.md lists
// the keys. Selections name nodes and elements by the ids of the mesh file; they are looked up when the mesh is read
// (JobModel.h).

#ifndef JOB_H
#define JOB_H

#include "InputError.h"
#include "Outcome.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace voz::workbench
{

// Which nodes, elements or edges something acts on. Everything that is named counts together.
struct JobSelection
{
    std::string set;                          // element set, by name or by id
    std::vector<int> ids;                     // of nodes or elements, as the key says
    std::optional<std::array<Point3, 2>> box; // mm, global: lower and upper corner
    int line = 0;                             // of the file, for messages
    std::string where;                        // the table's name: "pad[1]"
    bool IsEmpty() const { return set.empty() && ids.empty() && !box; }
};

struct JobMaterial
{
    std::string name;
    std::string source;      // where the figures come from
    double yield = 0.0;      // MPa
    double strength = 0.0;   // K of K (e0 + e)^n, MPa
    double exponent = 0.0;   // n
    double anisotropy = 1.0; // normal, r
    double modulus = 210000.0;
    double poisson = 0.3;
    double density = 7850.0;
    std::vector<std::array<double, 2>> curve; // log plastic strain, true stress MPa; empty: the power law
    std::string set;                          // the elements that are of it; empty: all
    int line = 0;
};

struct JobPlane
{
    Point3 normal{}; // unit
    Point3 point{};  // mm
};

// The planes that have a name: "none", "xz" (y = i_y), "yz" (x = i_x), "both" (yz first); mm. One function for the job
// file and for the commands, so that a symmetry means the same wherever it is named.
std::vector<JobPlane> NamedPlanes(std::string const & i_name, double i_x, double i_y);

// Why a die line cannot be the stamping direction beside these planes of symmetry; empty if it can.
std::string DieLineFault(std::vector<JobPlane> const & i_planes, Point3 const & i_dieLine);

enum class HolderKind
{
    None,
    Level,          // 1 .. 4 of the process model's scale
    ForcePerLength, // N/mm
    TotalForce      // N, of the whole part
};

struct JobHolder // the blank holder all round
{
    HolderKind kind = HolderKind::None;
    int level = 0;
    double force = 0.0; // N/mm or N, as the kind says
};

struct JobEdgeHolder // a blank holder on some free edges
{
    double force = 0.0; // N
    JobSelection edges; // by the nodes at both ends
};

struct JobBead
{
    double force = 0.0; // N/mm
    std::vector<Point3> points;
    int line = 0;
    std::string where;
};

struct JobPad
{
    double pressure = 0.0; // MPa
    JobSelection elements;
};

struct JobConstraint // displacement from the part to the flat, in the stamping frame
{
    std::optional<double> x; // mm
    std::optional<double> y;
    JobSelection nodes;
};

struct JobBinder // on which the blank lies when it has closed
{
    std::string mesh; // path that can be opened
    int line = 0;
    double unitLength = 0.0; // mm per length unit of the mesh file; 0: what the file says, else mm
};

struct JobAutoStrain // the restraint at the rim follows from strains that are to be reached
{
    std::optional<Point3> target; // mm, global: the nearest node counts
    std::optional<Point3> reference;
    double targetStrain = 0.0; // percent, engineering, major
    double referenceStrain = 0.0;
    double value = 0.0; // above 0: scales the first guess
    int line = 0;
};

struct JobSpringback // the shape after the tools let go
{
    bool isOn = true;
    bool isBoundaryHeld = false;           // all free edges of what is left of the part
    std::vector<JobSelection> constraints; // nodes that are held
    std::optional<JobSelection> trimmed;   // elements that are cut off before
    std::vector<int> alignNodes;           // ids; up to four, these and the points together
    std::vector<Point3> alignPoints;       // mm, global: the nearest nodes count
    std::vector<int> watchNodes;           // ids of the nodes whose deviation is told
    std::vector<Point3> watchPoints;
    std::optional<JobPlane> section; // of the picture; none: through the largest deviation
    double exaggeration = 0.0;       // of the picture; 0: chosen
    int line = 0;
};

struct JobIncremental // the route that leaves solving to an explicit solver
{
    std::string templateName; // of the settings database; empty: the settings record's own defaults
    bool processFlag = false; // which of the settings' two punch velocities counts
    int processMode = 2;      // -2 .. 2; of size 2 the stroke is one thickness shorter than the gap
    int toolMode = 0;         // 1: contact takes punch and binder one thickness nearer to the sheet
    double clearance = -1.0;  // mm, between punch and die besides the thickness; below 0: chosen
    std::string blank;        // mesh paths that can be opened; empty: the mesh is made from the part
    std::string die;
    std::string punch;
    std::string binder;
    double unitLength = 0.0;   // mm per length unit of these files; 0: what the file says, else mm
    bool isOpenSolver = false; // a variant of the deck for open solvers is written beside it
    int line = 0;
};

struct JobTube // the part is a closed tube with two open ends
{
    std::optional<Point3> axis;  // unit; none: from the middle of one end to that of the other
    std::optional<Point3> point; // mm, on the axis; none: the middle of an end
    std::optional<Point3> cut;   // from the axis to the seam; none: the global axis that is most nearly across
    double radius = 0.0;         // mm, of the tube to begin with; 0: that of an end
    int line = 0;
};

struct JobLimits
{
    double fldZero = 0.0; // percent
    bool isFldZeroGiven = false;
    bool isHalved = false;             // the linear term of the limit curve is halved
    double safetyMargin = 10.0;        // percent of major strain
    double planeStrainTolerance = 5.0; // percent of the major strain
    // Further tests, each off at 0. Shear: (major less minor true strain) / 2, as engineering strain.
    double thinning = 25.0;       // percent of the first thickness: failure
    double thinningMargin = 20.0; // marginal
    double shear = 120.0;
    double shearMargin = 100.0;
    double wrinkle = 5.0; // handed on; no zone depends on it
};

struct JobOutputs
{
    std::string folder; // the numbered folder of a run is made in it; empty: "out" in the current folder
    bool report = true;
    bool vtu = true;
    bool dxf = true;
    bool svg = true;
    bool tables = false;
    bool dyna = false;              // the formed blank as an LS-DYNA deck
    bool nastran = false;           // and as NASTRAN bulk data
    bool displacements = false;     // of the nodes, as a table
    double outlineTolerance = 0.05; // mm
    bool isDxfR12 = false;
};

struct Job
{
    std::string path;   // of the job file
    std::string sha256; // of the file's bytes
    std::string folder; // where its relative paths begin
    std::string name;   // of the file without its extension; of its folder for a file "job.toml"
    std::string title;

    std::string mesh; // path that can be opened
    int meshLine = 0;
    double unitLength = 0.0; // mm per length unit of the mesh file; 0: what the file says, else mm
    double weld = -1.0;      // mm; below 0: the reader's own
    bool repairOrientation = true;

    double thickness = 0.0; // mm
    std::vector<JobMaterial> materials;

    std::vector<JobPlane> planes; // of symmetry, none to two
    std::optional<Point3> dieLine;

    double friction = 0.15;
    bool toolFriction = false;
    JobHolder holder;
    std::vector<JobEdgeHolder> holders;
    std::vector<JobBead> beads;
    std::vector<JobPad> pads;
    std::vector<JobConstraint> constraints;
    std::optional<JobBinder> binder;
    std::optional<JobAutoStrain> autoStrain;
    std::optional<JobSpringback> springback;
    std::optional<JobIncremental> incremental;
    std::optional<JobTube> tube;
    JobLimits limits;
    JobOutputs outputs;
    int steps = 1; // of the stroke, 1 to 3; 1: one step from the flat to the part

    std::vector<OutcomeParameter> parameters; // every value, in the order of the file's description
    std::vector<OutcomeInput> lockedInputs;   // of a locked job: what the inputs were
    std::vector<std::string> warnings;

    bool HasSpringback() const { return springback && springback->isOn; }
};

// Throws InputError. i_path "-" reads standard input, with paths relative to the current folder.
Job ReadJob(std::string const & i_path);

// The same from memory; i_path names the job in messages, and its folder is where relative paths begin.
Job ParseJob(std::string_view i_text, std::string const & i_path);

// A job file that says all that i_job holds, defaults filled in, with the hashes of its inputs; it can be run.
// i_folder: where the file will stand, so that its paths are told from there.
std::string LockedJob(Job const & i_job, std::vector<OutcomeInput> const & i_inputs, std::string const & i_folder);

// A commented job file to begin with.
std::string StarterJob();

} // namespace voz::workbench

#endif
