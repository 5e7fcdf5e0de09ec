// Outcome.h: what a route gave, in the workbench's one form: mm, percent, MPa, N, kg; the same whatever the route.
//
// Each route converts once, behind its read-back; report and exports see only this. Arrays are 0-based: entry i belongs
// to node position i + 1 or element position i + 1 of the mesh.

#ifndef OUTCOME_H
#define OUTCOME_H

#include "FlatCheck.h"
#include "FormingLimit.h"
#include "Mesh.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace voz::workbench
{

using Point3 = std::array<double, 3>;

// The strain components are engineering percent; angles radians.
struct ElementOutcome
{
    double thickness = 0.0;        // mm
    double thinning = 0.0;         // percent of the first thickness, positive where the sheet got thinner
    double major = 0.0;            // percent
    double minor = 0.0;            // percent
    double thicknessStrain = 0.0;  // percent, from constant volume
    double angle = 0.0;            // of the major strain, from side 1-2 of the element
    double equivalentStrain = 0.0; // percent
    double stress = 0.0;           // equivalent, MPa
    int safety = -1;               // 0 failure, 1 marginal, 2 safe, 3 compression, 4 strong compression, -1 undefined
    int forming = -1;              // 0 biaxial .. 5 beyond uniaxial compression, -1 impossible
    double area = 0.0;             // of the formed element, mm^2
};

struct NodeOutcome
{
    Point3 flat{};          // position in the flat blank: stamping frame, mm (z is one value for all)
    Point3 displacement{};  // part to flat, global, mm
    Point3 onBinder{};      // part to binder, global, mm; the same as displacement without a binder
    double thickness = 0.0; // mm
    double major = 0.0;     // percent
    double minor = 0.0;     // percent
    int safety = -1;
    int forming = -1;
};

// A closed outline of the flat blank: node positions (0-based) in walking order, and their places.
struct BlankLoop
{
    std::vector<int> nodes;
    std::vector<std::array<double, 2>> points; // stamping frame, mm; the outer loop counter-clockwise, holes clockwise
    bool outer = false;
    double length = 0.0; // mm
};

enum class ZonePlace
{
    Interior,
    Hole, // reaches the edge of a hole
    Edge  // reaches the outer edge
};

// Nodes of one safety code that hang together. A plane of symmetry is no edge.
struct OutcomeZone
{
    int safety = -1;
    ZonePlace place = ZonePlace::Interior;
    double area = 0.0;      // mm^2, of the formed model: each node counts for its share of the elements at it
    Point3 normal{};        // mean over that area, unit, global; (0, 0, 0) where it vanishes
    std::vector<int> nodes; // 0-based, ascending
    int centre = 0;         // the node nearest to the mean place of all
};

// The distance of the sprung shape from the formed part, node by node, mm.
struct DeviationFigures
{
    double largest = 0.0;
    int largestNode = 0; // 0-based
    double mean = 0.0;   // over the surface that is left after trimming
};

struct SpringbackPoint // whose deviation is told
{
    int node = 0;                // 0-based
    double before = 0.0;         // mm
    std::optional<double> after; // aligned
    std::optional<Point3> asked; // the place that the job names, mm; none: the job names the node
};

struct SectionPlane
{
    Point3 normal{}; // unit, global
    Point3 point{};  // mm
};

// The shape after the tools let go. A model with planes of symmetry springs back as the whole part: the mesh here holds
// the model first, then its images.
struct SpringbackOutcome
{
    VOZCatMesh part;            // formed, whole, global, mm
    int modelNodes = 0;         // of its nodes are those of the model
    std::vector<Point3> before; // per node: part to sprung shape, global, mm, as the solver leaves it
    std::vector<Point3> after;  // the same once it is laid on the part at the chosen points; empty without such points
    std::vector<int> trimmed;   // per element: 1 if it was cut off
    std::vector<int> aligned;   // the chosen points, 0-based nodes
    DeviationFigures figuresBefore;
    DeviationFigures figuresAfter;
    std::vector<SpringbackPoint> points;
    SectionPlane section;
    double exaggeration = 1.0; // of the picture of the section
    std::vector<std::string> remarks;

    std::vector<Point3> const & Shown() const { return after.empty() ? before : after; }
    DeviationFigures const & Figures() const { return after.empty() ? figuresBefore : figuresAfter; }
};

// A closed tube: the outcome's part is opened along a seam, where its nodes are doubled, and its blank is the developed
// tube. Wrapped round its axis again, that is the tube to begin with.
struct TubeOutcome
{
    double radius = 0.0;         // mm, of the tube to begin with
    double length = 0.0;         // mm, of that tube along its axis
    double area = 0.0;           // mm^2, circumference times length
    double gap = 0.0;            // mm, the largest between the lips of the seam on that tube
    int closedNodes = 0;         // the first so many nodes are the tube's own, the rest the other lip
    std::vector<int> seam;       // along the path, 0-based; its double is node closedNodes + i
    std::vector<Point3> wrapped; // per node of the tube's own: part to that tube, global, mm
};

// --- The incremental route -------------------------------------------------------------------------------------------

struct IncrementalMesh // of a deck
{
    std::string role;   // "blank"
    std::string origin; // "made from the part", or the path of its file
    int nodes = 0;
    int elements = 0;
};

struct IncrementalOutput // a state that the solver writes
{
    double position = 0.0; // of the punch, percent of the stroke
    double time = 0.0;     // s
};

// The process numbers of a deck for an explicit solver, as the library worked them out.
struct IncrementalFigures
{
    std::string settings;             // name of the template; empty: the settings' own defaults
    double stroke = 0.0;              // mm
    double leastGap = 0.0;            // mm, from the punch to the die along the stroke, before it
    double greatestGap = 0.0;         // mm
    double velocity = 0.0;            // m/s, of the punch
    double acceleration = 0.0;        // m/s^2
    double rampTime = 0.0;            // s
    double plateauTime = 0.0;         // s, of constant velocity
    double endTime = 0.0;             // s
    double binderCloseTime = 0.0;     // s
    double adaptFrequency = 0.0;      // s, ADPFREQ: from one pass of refinement to the next
    int adaptivityLevel = 0;          // MAXLVL
    double adaptSize = 0.0;           // mm, ADPSIZE: the smallest element of refinement
    double massScalingTimeStep = 0.0; // s, the magnitude of DT2MS
    double binderForce = 0.0;         // N; 0: no binder
    double friction = 0.0;            // of all tools
    double toolOffset = 0.0;          // mm, by which contact takes punch and binder nearer
    double greatestElement = 0.0;     // mm, of the blank
    double leastElement = 0.0;        // mm
    std::vector<IncrementalOutput> outputs;
    std::vector<IncrementalMesh> meshes;
    std::vector<std::array<double, 2>> punchCurve;             // corners: s, m/s
    std::vector<std::string> remarks;                          // what was made, and how
    std::vector<std::string> files;                            // of the deck, in its folder
    std::vector<std::pair<std::string, std::string>> openDeck; // what differs in a deck for open solvers: keyword, why
};

struct ImportedStep // of the explicit solver's results
{
    int step = 0;               // 0 is the first state
    int steps = 0;              // that the results hold
    IncrementalOutput output{}; // which state it is; 0 for what the results hold beyond the settings' output points
};

// What an engineer asks first. A model with planes of symmetry is told for the model and, where it adds up, for the
// whole part.
struct OutcomeSummary
{
    double blankArea = 0.0;      // mm^2, of the model, holes taken off
    double blankPerimeter = 0.0; // mm, outer loop
    double blankWidth = 0.0;     // mm, bounding rectangle along local x and y
    double blankHeight = 0.0;
    std::array<double, 3>
        smallestRectangle{}; // smallest rotated rectangle: long side, short side mm, angle of the long side in degrees
    double blankMass = 0.0;  // kg
    int symmetryFactor = 1;  // the whole part is this many models
    double leastThickness = 0.0; // mm
    double greatestThickness = 0.0;
    int leastThicknessElement = 0; // 0-based
    int greatestThicknessElement = 0;
    std::array<double, 6> safetyShare{}; // share of the elements with safety code -1 .. 4, at index code + 1; sums to 1
    std::array<double, 6> safetyAreaShare{}; // the same by formed area
    double punchForce = 0.0;                 // N, of the model
    int undercutElements = 0;
    double undercutAngle = 0.0; // degrees
    double drawDepth = 0.0;     // mm, extent of the part along the stamping direction
};

// A check of the result, with its limit: printed in the report, and a warning or failure of the command.
struct OutcomeCheck
{
    std::string name;
    std::string value; // with unit
    std::string limit; // with unit
    bool passed = true;
    bool isWarning = true; // a failed check that is no warning fails the run
};

// One value that went into the run, for the page's provenance.
struct OutcomeParameter
{
    std::string key; // job key
    std::string value;
    std::string unit; // empty if it has none
    bool isDefault = false;
    std::string effect = {}; // what the value does, where its name does not say it
};

struct OutcomeStage
{
    std::string name;
    double seconds = 0.0;
};

struct OutcomeInput
{
    std::string path; // as the job names it
    std::string sha256;
};

struct Outcome
{
    std::string title; // of the job
    std::string route; // "kernel", "file", "incremental"
    VOZCatMesh part;   // formed part, global, mm
    VOZCatAxis frame;  // stamping frame
    Symmetry symmetry;
    std::string materialName;
    std::string materialSource;           // where its figures come from
    double firstThickness = 0.0;          // mm
    double density = 0.0;                 // kg/m^3
    FormingLimit limit;                   // with FLD0 and margins in percent; of several materials the lowest
    std::string limitSource;              // formula or origin of the curve, in words
    std::vector<FormingLimit> limits;     // of each material where there are several
    std::vector<int> materials;           // per element: 0-based, where there are several
    std::vector<int> undercut;            // per element: 1 if it faces away from the stamping direction
    std::vector<ElementOutcome> elements; // mid-surface
    std::vector<ElementOutcome> top; // the sheet's surfaces, from a route that gives them; thickness, stress: middle's
    std::vector<ElementOutcome> bottom;
    std::vector<NodeOutcome> nodes;
    bool hasBinder = false; // and the nodes' places on it
    bool hasBlank = true;   // and the nodes' places in it: a step of an explicit solver has none
    std::optional<SpringbackOutcome> springback;
    std::optional<TubeOutcome> tube;
    std::vector<BlankLoop> blank;   // outer loop first
    FlatFaults flat;                // of the blank, stamping frame
    std::vector<OutcomeZone> zones; // failure, marginal, strong compression; largest first
    std::optional<IncrementalFigures> incremental;
    std::optional<ImportedStep> imported;
    std::vector<Outcome> steps; // where several steps were imported: all, ascending; the last one is this outcome
    OutcomeSummary summary;
    std::vector<OutcomeCheck> checks;
    std::vector<OutcomeParameter> parameters;
    std::vector<OutcomeInput> inputs;
    std::vector<OutcomeStage> stages;
    std::vector<std::string> warnings;
    std::string command; // to repeat the run
    std::string version; // of the program
    std::string log;     // the solver's iteration table

    bool HasResults() const { return !elements.empty(); } // a deck alone has none

    FormingLimit const & LimitOf(std::size_t i_element) const // of the element's material
    {
        return limits.empty() ? limit : limits[static_cast<std::size_t>(materials[i_element])];
    }
};

// Fills loops, areas, rectangle, shares and extremes from part, frame, nodes, elements, symmetry, density and
// thickness.
void Summarise(Outcome & io_outcome);

} // namespace voz::workbench

#endif
