// OneStep.h: the one-step inverse solve, from the formed part to its flat blank.
//
// Everything here is in the stamping frame (third axis = stamping direction), in metres, newtons, pascals and
// log strains; node and element indices are 0-based. The door of the library (VOZUtilitySolving::Evaluate) checks and
// converts its records into a Problem and writes a Solution back; this header knows no record.

#ifndef ONESTEP_H
#define ONESTEP_H

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace voz::onestep
{

// A hardening curve as the user gives it: a power law K (e0 + e)^n, or a table.
struct MaterialLaw
{
    double thickness = 0.0;                   // of the flat sheet, m
    double rValue = 1.0;                      // normal anisotropy
    double nValue = 0.0;                      // exponent of the power law
    double kValue = 0.0;                      // strength coefficient, Pa
    double yield = 0.0;                       // Pa; 0: the power law starts at the origin (e0 = 0)
    std::vector<std::array<double, 2>> table; // log plastic strain, stress Pa; instead of the power law if not empty
    double youngsModulus = 210.0e9;           // Pa
    double poisson = 0.3;                     // for springback
};

struct Element
{
    std::array<int, 4> nodes{-1, -1, -1, -1}; // a triangle has -1 in the fourth place
    int material = 0;
};

struct HolderEdge // blank-holder restraint along an element's edge
{
    int element;
    int corner1, corner2; // local positions of the edge's nodes
    double force;         // N per m, against draw-in; an enormous one is a lock
};

struct BeadSegment // draw-bead restraint along a line inside an element
{
    int element;
    double force;                  // N per m
    std::array<double, 4> natural; // xi, eta of the first end; xi, eta of the second
};

struct NodeConstraint // X . (cos a, sin a) = p . (cos a, sin a) + v; angle above 1000: both components, X = p
{
    int node;
    double angle; // radians
    double value; // m, from the part to the flat
};

struct Problem
{
    std::vector<std::array<double, 3>> nodes; // the formed mid-surface, stamping frame, m
    std::vector<Element> elements;
    std::vector<MaterialLaw> materials;
    std::vector<HolderEdge> holders;
    std::vector<BeadSegment> beads;
    std::vector<double> padShear;                  // per element, Pa (friction shear); empty: none
    std::vector<std::array<double, 3>> curvatures; // per element: two principal values 1/m and an angle; empty: none
    std::vector<NodeConstraint> constraints;
    double toolFriction = 0.0; // coefficient; 0: the tools do not rub
};

// The method's own numbers. The defaults are the product's; tests of the plain law set kappa and theta to 0.
struct Settings
{
    double kappa = 1.2;        // hardening floor
    double theta = 0.9;        // thickness moderation begins at theta n
    double tolerance = 1.0e-8; // of the relative residual
    int maxSteps = 40;
    int steps = 1; // of the stroke, 1 to 3: 1 is the plain solve, 2 and 3 go over intermediate shapes (multistep/)
};

struct LayerStrains // per integration point: e11, e22, gamma12 in the element's frame; see stride
{
    std::vector<double> mid, top, bottom;
};

enum class Status
{
    Converged,
    Accepted, // residual between the tolerance and 1e-4: results with a warning
    Failed,   // no results; `message` tells which element and node
    Refused,  // the problem cannot be posed (closed mesh, no elements, ...)
    Stopped   // by the stop function
};

struct Solution
{
    Status status = Status::Failed;
    std::string message; // empty, or the reason in plain words
    std::vector<std::string> warnings;
    std::vector<std::array<double, 2>> flat; // X, Y per node, m
    int stride = 1;                       // integration points per element: 4 as soon as one element is a quadrilateral
    LayerStrains strains;                 // 3 per point, stride points per element
    std::vector<double> equivalentStress; // Pa, 3 per point: mid, top, bottom
    double punchForce = 0.0;              // N
    double work = 0.0;                    // of forming, J
    int newtonSteps = 0;                  // of the piece that needed most
    int startSteps = 0;                   // of the start, likewise
    int lockedEdges = 0;                  // holder edges whose force meant "no draw-in"
    double residual = 0.0;                // relative, at the end
    double holdingShare = 0.0;            // |lambda| / F_ref
    double leastDeterminant = 0.0;        // of G
    double greatestStrain = 0.0;          // ebar
    int neckingPoints = 0;                // points thinned beyond theta n
    int fallback = 0;                     // rung of the ladder that was needed; 0: straight from the start
};

struct Progress
{
    std::function<int(double percent)> report;    // may be empty; never runs backwards; a nonzero answer stops the run
    std::function<void(std::string const &)> log; // may be empty; a line of the iteration table or a remark
};

// Solves. Never throws for bad geometry: the status and the message tell. Deterministic to the last bit.
Solution Solve(Problem const & i_problem, Settings const & i_settings, Progress const & i_progress);

} // namespace voz::onestep

#endif
