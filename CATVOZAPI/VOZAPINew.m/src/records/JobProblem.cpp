// JobProblem.cpp: tests a job's records and converts them.

#include "JobProblem.h"

#include "TextOf.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverAutoBC.h"
#include "VOZSolverBCData.h"

#include <cmath>
#include <cstddef>
#include <span>

namespace
{

using voz::onestep::MaterialLaw;
using voz::onestep::Problem;

constexpr double kMetresPerMillimetre = 0.001; // constraint values come as the process definition holds them
constexpr double kLargestLength = 1000.0;      // metres: no sheet part is larger
constexpr double kLargestForce = 1.0e18;       // N/m: a lock asks for about 1e15
constexpr double kLargestShear = 1.0e12;       // Pa

template <class... Parts>
[[noreturn]] void Refuse(Parts const &... i_parts)
{
    throw JobError(TextOf(i_parts...));
}

// False for NaN.
bool Within(double i_dValue, double i_dLeast, double i_dGreatest)
{
    return i_dValue >= i_dLeast && i_dValue <= i_dGreatest;
}

template <class... Where>
void Expect(double i_dValue, double i_dLeast, double i_dGreatest, char const * i_strWhat, Where const &... i_where)
{
    if (!Within(i_dValue, i_dLeast, i_dGreatest))
        Refuse(i_strWhat, i_where..., " is ", i_dValue, "; expected ", i_dLeast, " to ", i_dGreatest);
}

// The rows of an array that comes as a count and a pointer.
template <class Record>
std::span<Record const> Rows(int i_nCount, Record const * i_pas, char const * i_strWhat)
{
    if (i_nCount < 0)
        Refuse("the number of ", i_strWhat, " is ", i_nCount, "; expected 0 or more");
    if (i_nCount > 0 && !i_pas)
        Refuse("there are ", i_nCount, " ", i_strWhat, " without an array; expected one");
    return {i_pas, i_nCount > 0 ? static_cast<std::size_t>(i_nCount) : 0U};
}

// --- Mesh ----------------------------------------------------------------------------------------------------------

} // namespace

StageFrame::StageFrame(double const * i_padRows, double const * i_padOrigin)
    : m_rows(i_padRows, 9), m_origin(i_padOrigin, 3)
{
    for (std::size_t i = 0; i < 3; ++i)
    {
        Expect(m_origin[i], -kLargestLength, kLargestLength, "the origin of the stage, in metres,");
        for (std::size_t k = 0; k < 3; ++k)
        {
            double dot = 0.0;
            for (std::size_t j = 0; j < 3; ++j)
                dot += m_rows[3 * i + j] * m_rows[3 * k + j];
            if (!(std::fabs(dot - (i == k ? 1.0 : 0.0)) <= 1.0e-6))
                Refuse("the rows ", i, " and ", k, " of the stage's frame have the scalar product ", dot,
                       "; expected three unit vectors at right angles");
        }
    }
    std::span<double const, 9> const a = m_rows;
    double const det =
        a[0] * (a[4] * a[8] - a[5] * a[7]) - a[1] * (a[3] * a[8] - a[5] * a[6]) + a[2] * (a[3] * a[7] - a[4] * a[6]);
    if (!(det > 0.0))
        Refuse("the stage's frame is left-handed; expected the third row to be the first cross the second");
}

std::array<double, 3> StageFrame::Local(double const * i_padPoint) const
{
    std::array<double, 3> local{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k)
            local[i] += m_rows[3 * i + k] * (i_padPoint[k] - m_origin[k]);
    return local;
}

std::array<double, 3> StageFrame::Global(double const * i_padLocal) const
{
    std::array<double, 3> point{};
    for (std::size_t k = 0; k < 3; ++k)
    {
        point[k] = m_origin[k];
        for (std::size_t i = 0; i < 3; ++i)
            point[k] += m_rows[3 * i + k] * i_padLocal[i];
    }
    return point;
}

std::vector<std::array<double, 3>> NodesOf(VOZMesh_s const & i_mesh, StageFrame const & i_frame, char const * i_strMesh)
{
    int const nNumNodes = i_mesh.GetNumNodes();
    std::vector<std::array<double, 3>> nodes;
    nodes.reserve(static_cast<std::size_t>(nNumNodes));
    for (int i = 0; i < nNumNodes; ++i)
    {
        double const * const padPoint = i_mesh.m_padNodalCoords + 3 * static_cast<std::ptrdiff_t>(i);
        for (int k = 0; k < 3; ++k)
            Expect(padPoint[k], -kLargestLength, kLargestLength, "the position, in metres, of node ", i, " of the ",
                   i_strMesh);
        nodes.push_back(i_frame.Local(padPoint));
    }
    return nodes;
}

std::vector<voz::onestep::Element> ElementsOf(VOZMesh_s const & i_mesh, int i_nNumMaterials, char const * i_strMesh)
{
    int const nNumNodes = i_mesh.GetNumNodes();
    int const nNumElements = i_mesh.GetNumElements();
    std::vector<voz::onestep::Element> elements;
    elements.reserve(static_cast<std::size_t>(nNumElements));
    for (int e = 0; e < nNumElements; ++e)
    {
        VOZElement_s const & record = i_mesh.GetElements()[e];
        voz::onestep::Element element;
        for (std::size_t corner = 0; corner < 4; ++corner)
        {
            int const node = record.m_anNodeIndices[corner];
            bool const bTriangle = corner == 3 && node == -1;
            if (!bTriangle && (node < 0 || node >= nNumNodes))
                Refuse("element ", e, " of the ", i_strMesh, " names node ", node, "; expected 0 to ", nNumNodes - 1);
            element.nodes[corner] = node;
        }
        element.material = record.m_nMaterialIndex;
        if (element.material < 0 || element.material >= i_nNumMaterials)
            Refuse("element ", e, " of the ", i_strMesh, " names material ", element.material, "; expected 0 to ",
                   i_nNumMaterials - 1);
        elements.push_back(element);
    }
    return elements;
}

std::vector<std::array<double, 3>> CurvaturesOf(VOZMesh_s const & i_mesh)
{
    std::vector<std::array<double, 3>> curvatures;
    if (!i_mesh.m_padCurvatures)
        return curvatures;
    for (int e = 0; e < i_mesh.GetNumElements(); ++e)
    {
        double const * const pad = i_mesh.m_padCurvatures + 3 * static_cast<std::ptrdiff_t>(e);
        for (int k = 0; k < 3; ++k)
            if (!std::isfinite(pad[k]))
                Refuse("the curvature of element ", e, " of the part is no number; expected one, in 1/m");
        curvatures.push_back({pad[0], pad[1], pad[2]});
    }
    return curvatures;
}

namespace
{

// --- Materials -----------------------------------------------------------------------------------------------------

void ReadTable(VOZMechanicalProp_s const & i_prop, int i_nMaterial, MaterialLaw & o_law)
{
    for (int i = 0; i < i_prop.m_nNumPoints; ++i)
    {
        double const * const padPoint = i_prop.m_padPoints + 2 * static_cast<std::ptrdiff_t>(i);
        double const strain = padPoint[0];
        double const stress = padPoint[1];
        Expect(strain, 0.0, 100.0, "the strain of point ", i, " of the table of material ", i_nMaterial);
        Expect(stress, 1.0e3, 1.0e12, "the stress, in Pa, of point ", i, " of the table of material ", i_nMaterial);
        if (i > 0 && !(strain > o_law.table.back()[0] && stress >= o_law.table.back()[1]))
            Refuse("point ", i, " of the table of material ", i_nMaterial,
                   " does not lie beyond the one before it; expected rising strains and stresses that do not fall");
        o_law.table.push_back({strain, stress});
    }
    if (o_law.table.size() < 2)
        Refuse("the table of material ", i_nMaterial, " has ", i_prop.m_nNumPoints, " points; expected two or more");
}

MaterialLaw LawOf(VOZMechanicalProp_s const & i_prop, double i_dThickness, int i_nMaterial)
{
    MaterialLaw law;
    Expect(i_dThickness, 1.0e-6, 1.0, "the thickness, in metres, of material ", i_nMaterial);
    Expect(i_prop.m_dRValue, 0.01, 100.0, "the r-value of material ", i_nMaterial);
    law.thickness = i_dThickness;
    law.rValue = i_prop.m_dRValue;
    if (i_prop.m_dYoungsModulus != 0.0) // 0: not completed, the solver's own steel
    {
        Expect(i_prop.m_dYoungsModulus, 1.0e8, 1.0e13, "Young's modulus, in Pa, of material ", i_nMaterial);
        law.youngsModulus = i_prop.m_dYoungsModulus;
    }
    if (i_prop.m_dPoisson != 0.0)
    {
        Expect(i_prop.m_dPoisson, 0.0, 0.499, "Poisson's ratio of material ", i_nMaterial);
        law.poisson = i_prop.m_dPoisson;
    }
    if (i_prop.m_nCurveType == 2)
    {
        Rows(i_prop.m_nNumPoints, i_prop.m_padPoints, "points of a stress-strain table");
        ReadTable(i_prop, i_nMaterial, law);
        return law;
    }
    Expect(i_prop.m_dNValue, 1.0e-6, 1.0, "the n-value of material ", i_nMaterial);
    Expect(i_prop.m_dKValue, 1.0e3, 1.0e12, "the K-value, in Pa, of material ", i_nMaterial);
    Expect(i_prop.m_dYield, 0.0, i_prop.m_dKValue, "the yield stress, in Pa, of material ", i_nMaterial);
    law.nValue = i_prop.m_dNValue;
    law.kValue = i_prop.m_dKValue;
    law.yield = i_prop.m_dYield;
    return law;
}

} // namespace

std::vector<MaterialLaw> LawsOf(int i_nNumMaterials, double const * i_padThicknesses,
                                VOZMechanicalProp_s const * i_pasMaterials)
{
    auto const properties = Rows(i_nNumMaterials, i_pasMaterials, "materials");
    auto const thicknesses = Rows(i_nNumMaterials, i_padThicknesses, "thicknesses");
    if (properties.empty())
        Refuse("the job has no material; expected one or more");
    std::vector<MaterialLaw> laws;
    for (std::size_t i = 0; i < properties.size(); ++i)
        laws.push_back(LawOf(properties[i], thicknesses[i], static_cast<int>(i)));
    return laws;
}

namespace
{

// --- What acts -------------------------------------------------------------------------------------------------------

// The element of an action, as an index that is safe to use.
voz::onestep::Element const & ElementOf(Problem const & i_problem, int i_nElement, char const * i_strWhat,
                                        std::size_t i_nRow)
{
    if (i_nElement < 0 || static_cast<std::size_t>(i_nElement) >= i_problem.elements.size())
        Refuse(i_strWhat, i_nRow, " names element ", i_nElement, "; expected 0 to ", i_problem.elements.size() - 1);
    return i_problem.elements[static_cast<std::size_t>(i_nElement)];
}

void ReadHolders(VOZSolverBCData_s const & i_bc, Problem & o_problem)
{
    std::size_t row = 0;
    for (VOZSolverBHF_s const & edge : Rows(i_bc.m_nNumBHFs, i_bc.m_pasBHFs, "blank-holder edges"))
    {
        constexpr char const * kWhat = "blank-holder edge ";
        int const nCorners = ElementOf(o_problem, edge.m_nElement, kWhat, row).nodes[3] < 0 ? 3 : 4;
        for (int position : {edge.m_nFirstPosition, edge.m_nSecondPosition})
            if (position < 0 || position >= nCorners)
                Refuse(kWhat, row, " names corner ", position, " of element ", edge.m_nElement, "; expected 0 to ",
                       nCorners - 1);
        int const step = (edge.m_nSecondPosition - edge.m_nFirstPosition + nCorners) % nCorners;
        if (step != 1 && step != nCorners - 1)
            Refuse(kWhat, row, " runs from corner ", edge.m_nFirstPosition, " to corner ", edge.m_nSecondPosition,
                   " of element ", edge.m_nElement, "; expected neighbours");
        Expect(edge.m_dForce, 0.0, kLargestForce, "the force, in N/m, of blank-holder edge ", row);
        o_problem.holders.push_back({edge.m_nElement, edge.m_nFirstPosition, edge.m_nSecondPosition, edge.m_dForce});
        ++row;
    }
}

void ReadBeads(VOZSolverBCData_s const & i_bc, Problem & o_problem)
{
    std::size_t row = 0;
    for (VOZSolverDrawbead_s const & bead : Rows(i_bc.m_nNumDrawbeads, i_bc.m_pasDrawbeads, "draw-bead segments"))
    {
        ElementOf(o_problem, bead.m_nElement, "draw-bead segment ", row);
        Expect(bead.m_dForce, 0.0, kLargestForce, "the force, in N/m, of draw-bead segment ", row);
        voz::onestep::BeadSegment segment{bead.m_nElement, bead.m_dForce, {}};
        for (std::size_t k = 0; k < 4; ++k)
        {
            Expect(bead.m_adEdgeValues[k], -1.001, 1.001, "a natural coordinate of draw-bead segment ", row);
            segment.natural[k] = bead.m_adEdgeValues[k];
        }
        o_problem.beads.push_back(segment);
        ++row;
    }
}

// Drivers allot more records than they write: those that name no node are passed over.
void ReadConstraints(VOZSolverBCData_s const & i_bc, Problem & o_problem)
{
    std::size_t row = 0;
    for (VOZSolverNodeConstraint2D_s const & record :
         Rows(i_bc.m_nNumNodeConstraints2D, i_bc.m_pasNodeConstraints2D, "node constraints"))
    {
        if (record.m_nNode >= 0 && static_cast<std::size_t>(record.m_nNode) < o_problem.nodes.size())
        {
            Expect(record.m_dAngle, -1.0e4, 1.0e4, "the angle, in radians, of node constraint ", row);
            Expect(record.m_dDisplacement, -kLargestLength / kMetresPerMillimetre,
                   kLargestLength / kMetresPerMillimetre, "the displacement, in mm, of node constraint ", row);
            o_problem.constraints.push_back(
                {record.m_nNode, record.m_dAngle, kMetresPerMillimetre * record.m_dDisplacement});
        }
        ++row;
    }
}

void ReadPads(VOZSolverBCData_s const & i_bc, Problem & o_problem)
{
    if (!i_bc.m_padPressureFrictionValues)
        return;
    std::span<double const> const values(i_bc.m_padPressureFrictionValues, o_problem.elements.size());
    bool bAny = false;
    for (std::size_t e = 0; e < values.size(); ++e)
    {
        Expect(values[e], 0.0, kLargestShear, "the pad's friction shear, in Pa, of element ", e);
        bAny = bAny || values[e] > 0.0;
    }
    if (bAny)
        o_problem.padShear.assign(values.begin(), values.end());
}

void ReadActions(VOZSolverBCData_s const * i_pBC, Problem & o_problem)
{
    if (!i_pBC)
        return;
    ReadHolders(*i_pBC, o_problem);
    ReadBeads(*i_pBC, o_problem);
    ReadConstraints(*i_pBC, o_problem);
    ReadPads(*i_pBC, o_problem);
    Expect(i_pBC->m_dFriction, 0.0, 1.0, "the friction coefficient");
    o_problem.toolFriction = i_pBC->m_bProcess != 0 ? i_pBC->m_dFriction : 0.0;
}

// The mesh has topology, elements, coordinates, and one or more nodes and elements.
void CheckMesh(VOZMesh_s const * i_pMesh, char const * i_strWhere, char const * i_strMesh)
{
    if (!i_pMesh || !i_pMesh->m_psTopology || !i_pMesh->GetElements() || !i_pMesh->m_padNodalCoords)
        Refuse(i_strWhere, " has no ", i_strMesh, " mesh; expected one with topology, elements and coordinates");
    if (i_pMesh->GetNumNodes() < 1 || i_pMesh->GetNumElements() < 1)
        Refuse("the ", i_strMesh, " mesh has ", i_pMesh->GetNumNodes(), " nodes and ", i_pMesh->GetNumElements(),
               " elements; expected one or more of each");
}

} // namespace

VOZSolverStage_s & StageOf(VOZMultiStageSolverIOData_s & io_data)
{
    if (io_data.m_nNumStages < 1 || !io_data.m_pasStages)
        Refuse("the job has no stage; expected one");
    VOZSolverStage_s & stage = io_data.m_pasStages[0];
    VOZMesh_s const * const pPart = stage.m_psPartMesh;
    CheckMesh(pPart, "the stage", "part");
    VOZMesh_s const * const pBlank = stage.m_psBlankMesh;
    if (!pBlank || !pBlank->m_padNodalCoords || pBlank->GetNumNodes() != pPart->GetNumNodes())
        Refuse("the stage has no blank mesh for the answer; expected one with coordinates for ", pPart->GetNumNodes(),
               " nodes");
    if (!stage.m_psFormingResult)
        Refuse("the stage has no record for the forming result; expected one");
    return stage;
}

voz::onestep::Problem ProblemOf(VOZMultiStageSolverIOData_s const & i_data, VOZSolverStage_s const & i_stage)
{
    StageFrame const frame(i_stage.m_adLocalCS, i_stage.m_adOrigin);
    Problem problem;
    problem.materials =
        LawsOf(i_data.m_nNumMaterials, i_data.m_padInitMaterialThickness, i_data.m_pasMaterialProperties);
    problem.nodes = NodesOf(*i_stage.m_psPartMesh, frame, "part");
    problem.elements = ElementsOf(*i_stage.m_psPartMesh, i_data.m_nNumMaterials, "part");
    problem.curvatures = CurvaturesOf(*i_stage.m_psPartMesh);
    ReadActions(i_stage.m_psBCData, problem);
    return problem;
}

voz::binder::BinderSurface BinderOf(VOZMultiStageSolverIOData_s const & i_data, VOZSolverStage_s const & i_stage)
{
    StageFrame const frame(i_stage.m_adLocalCS, i_stage.m_adOrigin);
    CheckMesh(i_data.m_psBinderMesh, "the job", "binder");
    VOZMesh_s const * const pOnBinder = i_data.m_psBlankOnBinderMesh;
    int const nNumPartNodes = i_stage.m_psPartMesh->GetNumNodes();
    if (!pOnBinder || !pOnBinder->m_padNodalCoords || pOnBinder->GetNumNodes() != nNumPartNodes)
        Refuse("the job has no mesh for the blank on the binder; expected one with coordinates for ", nNumPartNodes,
               " nodes");
    return {NodesOf(*i_data.m_psBinderMesh, frame, "binder"),
            ElementsOf(*i_data.m_psBinderMesh, i_data.m_nNumMaterials, "binder")};
}

voz::autostrain::Task TaskOf(VOZSolverAutoBC_s const * i_pWanted, voz::onestep::Problem const & i_problem)
{
    constexpr double kLargestStrain = 5.0; // log
    if (!i_pWanted)
        Refuse("there is no record of wanted strains; expected one");
    VOZSolverAutoBC_s const & wanted = *i_pWanted;
    auto const read = [&](char const * i_strWhich, int i_nNode, double i_dStrain)
    {
        int const nNumNodes = static_cast<int>(i_problem.nodes.size());
        if (i_nNode < -1 || i_nNode >= nNumNodes)
            Refuse("the ", i_strWhich, " node of the wanted strains is ", i_nNode, "; expected 0 to ", nNumNodes - 1,
                   ", or -1 for none");
        if (i_nNode >= 0)
            Expect(i_dStrain, -kLargestStrain, kLargestStrain, "the wanted log strain at the ", i_strWhich, " node");
        return voz::autostrain::Wish{i_nNode, i_dStrain};
    };
    voz::autostrain::Task task;
    task.target = read("target", wanted.m_nTargetNode, wanted.m_dTargetStrain);
    task.reference = read("reference", wanted.m_nReferenceNode, wanted.m_dReferenceStrain);
    if (!std::isfinite(wanted.m_dValue))
        Refuse("the factor of the first guess of the wanted strains is no number; expected one");
    task.guessFactor = wanted.m_dValue > 0.0 ? wanted.m_dValue : 1.0;
    return task;
}
