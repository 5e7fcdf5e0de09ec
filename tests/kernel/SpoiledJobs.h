// SpoiledJobs.h: what can be wrong with the records of a job, and what the kernel says to it.

#ifndef SPOILEDJOBS_H
#define SPOILEDJOBS_H

#include "JobFixture.h"

#include <functional>
#include <limits>

namespace jobtest
{

// 48 triangles, 35 nodes; the records below are spoiled by these numbers.
inline SurfaceMesh patch(Cells cells)
{
    return cylinder(20.0, 0.6, 6, 30.0, 4, cells);
}

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Spoiled
{
    char const * message;
    std::function<void(Job &)> spoil;
};

inline VOZMechanicalProp_s & prop(Job & job)
{
    return job.data->m_pasMaterialProperties[0];
}

inline void holder(Job & job, VOZSolverBHF_s const & edge)
{
    auto * const edges = new VOZSolverBHF_s[1];
    edges[0] = edge;
    job.bc->SetBHFs(1, edges);
}

inline void bead(Job & job, int element, double force, double xi)
{
    auto * const segments = new VOZSolverDrawbead_s[1];
    segments[0].m_nElement = element;
    segments[0].m_dForce = force;
    segments[0].m_adEdgeValues[2] = xi;
    job.bc->SetDrawbeads(1, segments);
}

inline void constraint(Job & job, double angle, double value)
{
    auto * const records = new VOZSolverNodeConstraint2D_s[1];
    records[0].m_nNode = 0;
    records[0].m_dAngle = angle;
    records[0].m_dDisplacement = value;
    job.bc->SetNodeConstraints2D(1, records);
}

inline void pads(Job & job, double value)
{
    auto * const values = new double[48]();
    values[47] = value;
    job.bc->SetPressureFrictionValues(values);
}

inline void curvature(Job & job)
{
    job.part->m_padCurvatures = new double[48 * 3]();
    job.part->m_padCurvatures[10] = kNaN;
}

inline void table(Job & job, std::vector<double> const & points)
{
    prop(job).m_nNumPoints = static_cast<int>(points.size() / 2);
    prop(job).m_padPoints = new double[points.size()];
    std::copy(points.begin(), points.end(), prop(job).m_padPoints);
    prop(job).m_nCurveType = 2;
}

// Over patch(Cells::Triangles).
inline std::vector<Spoiled> spoiledJobs()
{
    return {
        {"has no stage", [](Job & j) { j.data->m_nNumStages = 0; }},
        {"has no part mesh", [](Job & j) { j.stage->SetPartMeshData(nullptr); }},
        {"has 0 nodes", [](Job & j) { j.part->m_psTopology->m_nNumNodes = 0; }},
        {"and 0 elements", [](Job & j) { j.part->m_psTopology->m_nNumElements = 0; }},
        {"has no blank mesh", [](Job & j) { j.stage->SetBlankMeshData(nullptr); }},
        {"of node 7 of the part is nan", [](Job & j) { j.part->m_padNodalCoords[21] = kNaN; }},
        {"of node 7 of the part is inf", [](Job & j) { j.part->m_padNodalCoords[22] = kInfinity; }},
        {"of node 7 of the part is 1e+30", [](Job & j) { j.part->m_padNodalCoords[23] = 1e30; }},
        {"element 5 of the part names node 35; expected 0 to 34",
         [](Job & j) { j.part->GetElements()[5].m_anNodeIndices[0] = 35; }},
        {"names node -1", [](Job & j) { j.part->GetElements()[5].m_anNodeIndices[2] = -1; }},
        {"names node -2", [](Job & j) { j.part->GetElements()[5].m_anNodeIndices[3] = -2; }},
        {"names material 1; expected 0 to 0", [](Job & j) { j.part->GetElements()[5].m_nMaterialIndex = 1; }},
        {"names material -1", [](Job & j) { j.part->GetElements()[5].m_nMaterialIndex = -1; }},
        {"the curvature of element 3", curvature},
        {"has no material", [](Job & j) { j.data->m_nNumMaterials = 0; }},
        {"the number of materials is -1", [](Job & j) { j.data->m_nNumMaterials = -1; }},
        {"thickness, in metres, of material 0 is 0;", [](Job & j) { j.data->m_padInitMaterialThickness[0] = 0.0; }},
        {"thickness, in metres, of material 0 is nan", [](Job & j) { j.data->m_padInitMaterialThickness[0] = kNaN; }},
        {"r-value of material 0 is 0;", [](Job & j) { prop(j).m_dRValue = 0.0; }},
        {"r-value of material 0 is inf", [](Job & j) { prop(j).m_dRValue = kInfinity; }},
        {"n-value of material 0 is 0;", [](Job & j) { prop(j).m_dNValue = 0.0; }},
        {"n-value of material 0 is nan", [](Job & j) { prop(j).m_dNValue = kNaN; }},
        {"K-value, in Pa, of material 0 is 565.32", [](Job & j) { prop(j).m_dKValue = 565.32; }},
        {"yield stress, in Pa, of material 0 is -1", [](Job & j) { prop(j).m_dYield = -1.0; }},
        {"Young's modulus, in Pa, of material 0 is 210000", [](Job & j) { prop(j).m_dYoungsModulus = 210000.0; }},
        {"Poisson's ratio of material 0 is 0.5", [](Job & j) { prop(j).m_dPoisson = 0.5; }},
        {"without an array",
         [](Job & j)
         {
             prop(j).m_nCurveType = 2;
             prop(j).m_nNumPoints = 3;
         }},
        {"has 1 points",
         [](Job & j) {
             table(j, {0.0, 1e8});
         }},
        {"point 1 of the table of material 0 does not lie beyond",
         [](Job & j) {
             table(j, {0.1, 1e8, 0.1, 2e8});
         }},
        {"the stress, in Pa, of point 1",
         [](Job & j) {
             table(j, {0.0, 1e8, 0.1, kNaN});
         }},
        {"rows 0 and 0 of the stage's frame", [](Job & j) { j.stage->m_adLocalCS[0] = 1.1; }},
        {"rows 0 and 1", [](Job & j) { j.stage->m_adLocalCS[3] = kNaN; }},
        {"left-handed", [](Job & j) { j.stage->m_adLocalCS[8] = -1.0; }},
        {"the origin of the stage", [](Job & j) { j.stage->m_adOrigin[2] = kNaN; }},
        {"blank-holder edge 0 names element 48; expected 0 to 47",
         [](Job & j) {
             holder(j, {48, 0, 1.0, 0, 1});
         }},
        {"blank-holder edge 0 names element -1",
         [](Job & j) {
             holder(j, {-1, 0, 1.0, 0, 1});
         }},
        {"names corner 3 of element 0; expected 0 to 2",
         [](Job & j) {
             holder(j, {0, 0, 1.0, 0, 3});
         }},
        {"names corner -1",
         [](Job & j) {
             holder(j, {0, 0, 1.0, -1, 1});
         }},
        {"from corner 1 to corner 1",
         [](Job & j) {
             holder(j, {0, 0, 1.0, 1, 1});
         }},
        {"force, in N/m, of blank-holder edge 0 is -1",
         [](Job & j) {
             holder(j, {0, 0, -1.0, 0, 1});
         }},
        {"force, in N/m, of blank-holder edge 0 is nan",
         [](Job & j) {
             holder(j, {0, 0, kNaN, 0, 1});
         }},
        {"there are 3 blank-holder edges without an array", [](Job & j) { j.bc->SetBHFs(3, nullptr); }},
        {"number of blank-holder edges is -3", [](Job & j) { j.bc->SetBHFs(-3, nullptr); }},
        {"draw-bead segment 0 names element -1", [](Job & j) { bead(j, -1, 1.0, 0.5); }},
        {"draw-bead segment 0 names element 48", [](Job & j) { bead(j, 48, 1.0, 0.5); }},
        {"of draw-bead segment 0 is inf", [](Job & j) { bead(j, 0, kInfinity, 0.5); }},
        {"natural coordinate of draw-bead segment 0 is 2", [](Job & j) { bead(j, 0, 1.0, 2.0); }},
        {"angle, in radians, of node constraint 0 is nan", [](Job & j) { constraint(j, kNaN, 0.0); }},
        {"displacement, in mm, of node constraint 0 is inf", [](Job & j) { constraint(j, 0.0, kInfinity); }},
        {"of element 47 is nan", [](Job & j) { pads(j, kNaN); }},
        {"of element 47 is -5", [](Job & j) { pads(j, -5.0); }},
        {"the friction coefficient is nan", [](Job & j) { j.bc->SetProcess(true, kNaN); }},
        {"the friction coefficient is 15", [](Job & j) { j.bc->SetProcess(true, 15.0); }},
    };
}

} // namespace jobtest

#endif
