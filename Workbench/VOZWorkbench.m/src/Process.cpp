// Process.cpp: what acts on the sheet, in the units that the library's process objects hold.

#include "BeadSegments.h"
#include "EdgeSets.h"
#include "JobModel.h"
#include "OutputFile.h"
#include "VOZMaterial.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr double kMetrePerMillimetre = 0.001;
constexpr double kPascalPerMegapascal = 1e6;
constexpr double kNewtonPerMetre = 1000.0; // per N/mm
constexpr int kOptionTotalForce = 5;
constexpr double kLockFactor = 0.8; // the process model reads exactly this factor as "no draw-in"

[[noreturn]] void Refuse(Job const & i_job, int i_line, std::string const & i_message)
{
    throw InputError(i_job.path, i_line, 0, i_message);
}

int SymmetryFactor(Job const & i_job)
{
    return 1 << i_job.planes.size();
}

// A total force is spread over the edge: only with the part does its restraint show.
void CheckTotalForce(Job const & i_job, JobModel const & i_model, Process & io_process)
{
    if (i_job.holder.kind != HolderKind::TotalForce || i_model.report.loops.empty())
        return;
    double const edge = i_model.report.loops.front().length; // planes of symmetry included
    double const restraint = 2.0 * i_job.friction * i_job.holder.force / SymmetryFactor(i_job) / edge;
    double const yielding = i_job.materials.front().yield * i_job.thickness;
    if (restraint > yielding)
        io_process.warnings.push_back("the holder's total force restrains the edge with at least " +
                                      Fixed(restraint, 1) + " N/mm, above the " + Fixed(yielding, 1) +
                                      " N/mm at which the sheet yields; usual are 0 to " + Fixed(0.8 * yielding, 1) +
                                      " N/mm");
}

void FillHolder(Job const & i_job, Process & io_process)
{
    JobHolder const & holder = i_job.holder;
    FullBlankHolder & full = io_process.fullHolder;
    switch (holder.kind)
    {
    case HolderKind::None:
        full.option(0);
        break;
    case HolderKind::Level:
        full.option(holder.level);
        break;
    case HolderKind::ForcePerLength:
    {
        // The routes make factor x thickness x yield of it, in metres and pascals.
        double const yielding = io_process.property.averageThickness() * io_process.property.averageYield();
        double factor = holder.force * kNewtonPerMetre / yielding;
        if (factor == kLockFactor)
            factor = std::nextafter(factor, 0.0);
        full.factor(factor);
        break;
    }
    case HolderKind::TotalForce:
        full.option(kOptionTotalForce);
        full.totalForce(holder.force / SymmetryFactor(i_job)); // the routes spread it over the model's own edges
        break;
    }
}

EdgeProperty EdgeOf(VOZCatMesh const & i_mesh, FreeEdgeSet const & i_edges, int k)
{
    EdgeProperty edge;
    edge.element = i_edges.elem(k);
    edge.node1 = i_edges.startNode(k);
    edge.node2 = i_edges.endNode(k);
    edge.naturalCoord(&i_mesh, 1, edge.edgeValues[0], edge.edgeValues[1]);
    edge.naturalCoord(&i_mesh, 2, edge.edgeValues[2], edge.edgeValues[3]);
    return edge;
}

EdgeProperty * CopyOf(std::vector<EdgeProperty> const & i_edges)
{
    auto * const copy = new EdgeProperty[i_edges.size()]; // the record owns it
    std::ranges::copy(i_edges, copy);
    return copy;
}

void FillEdgeHolders(Job const & i_job, JobModel const & i_model, Process & io_process)
{
    if (i_job.holders.empty())
        return;
    VOZCatMesh const & mesh = i_model.mesh.mesh;
    FreeEdgeSet const freeEdges(mesh);
    io_process.property.sizeBlankHolders(static_cast<int>(i_job.holders.size()));
    int i = 0;
    for (JobEdgeHolder const & holder : i_job.holders)
    {
        std::vector<int> const nodes = NodesOf(holder.edges, i_job, i_model);
        std::vector<EdgeProperty> edges;
        for (int k = 1; k <= freeEdges.numEdge(); ++k)
            if (std::ranges::binary_search(nodes, freeEdges.startNode(k)) &&
                std::ranges::binary_search(nodes, freeEdges.endNode(k)))
                edges.push_back(EdgeOf(mesh, freeEdges, k));
        if (edges.empty())
            Refuse(i_job, holder.edges.line,
                   holder.edges.where + ": no free edge of the part has both ends in the selection");
        BlankHolder record;
        record.edgeCount = static_cast<int>(edges.size());
        record.force = holder.force;
        record.edges = CopyOf(edges);
        io_process.property.blankHolders(++i, record);
    }
}

void FillBeads(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Process & io_process)
{
    if (i_job.beads.empty())
        return;
    io_process.property.sizeDrawBeads(static_cast<int>(i_job.beads.size()));
    int i = 0;
    for (JobBead const & bead : i_job.beads)
    {
        BeadSegments const found = FindBeadSegments(i_model.mesh.mesh, i_tipping.frame, bead.points);
        if (found.segments.empty())
            Refuse(i_job, bead.line, bead.where + ": the line does not touch the part");
        if (found.covered < 0.99 * found.length)
            io_process.warnings.push_back(bead.where + ": only " + Fixed(found.covered, 2) + " of " +
                                          Fixed(found.length, 2) + " mm of the line lie on the part");
        DrawBead record;
        record.edgeCount = static_cast<int>(found.segments.size());
        record.force = bead.force * kNewtonPerMetre;
        record.edges = CopyOf(found.segments);
        record.xyzCount = static_cast<int>(bead.points.size());
        record.xyz = new double[3 * bead.points.size()]; // the record owns it
        for (std::size_t p = 0; p < bead.points.size(); ++p)
            std::ranges::copy(bead.points[p], record.xyz + 3 * p);
        io_process.property.drawBeads(++i, record);
    }
}

// A pad is a list of nodes there: an element outside the set whose corners are all listed would count as within.
int ElementsCaught(VOZCatMesh const & i_mesh, std::vector<int> const & i_elements, std::vector<char> const & i_isListed)
{
    int caught = 0;
    for (int e = 1; e <= i_mesh.numElem(); ++e)
    {
        bool isListed = true;
        for (int k = 0; k < 4; ++k)
            isListed = isListed && i_isListed[static_cast<std::size_t>(i_mesh.ElementValue(e, k))] != 0;
        if (isListed && !std::ranges::binary_search(i_elements, e))
            ++caught;
    }
    return caught;
}

void FillPads(Job const & i_job, JobModel const & i_model, Process & io_process)
{
    if (i_job.pads.empty())
        return;
    VOZCatMesh const & mesh = i_model.mesh.mesh;
    ElemProperty & property = io_process.property;
    property.sizePressPads(static_cast<int>(i_job.pads.size()));
    int i = 0;
    for (JobPad const & pad : i_job.pads)
    {
        ++i;
        std::vector<int> const elements = ElementsOf(pad.elements, i_job, i_model);
        std::vector<char> isListed(static_cast<std::size_t>(mesh.numNode()) + 1, 0);
        for (int const e : elements)
            for (int k = 0; k < 4; ++k)
                isListed[static_cast<std::size_t>(mesh.ElementValue(e, k))] = 1;
        property.pressPadSize(i, static_cast<int>(std::ranges::count(isListed, 1)));
        property.pressPadVal(i, pad.pressure * kPascalPerMegapascal);
        int row = 0;
        for (int n = 1; n <= mesh.numNode(); ++n)
            if (isListed[static_cast<std::size_t>(n)] != 0)
                property.pressPads(i, ++row, n);
        if (int const caught = ElementsCaught(mesh, elements, isListed); caught > 0)
            io_process.warnings.push_back(pad.elements.where +
                                          ": the file route knows a pad by its nodes, which takes " +
                                          std::to_string(caught) + " more elements with it");
    }
}

void FillConstraints(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Process & io_process)
{
    if (i_job.constraints.empty())
        return;
    ElemProperty & property = io_process.property;
    property.sizeDispBC(static_cast<int>(i_job.constraints.size()));
    int i = 0;
    for (JobConstraint const & constraint : i_job.constraints)
    {
        std::vector<int> const nodes = NodesOf(constraint.nodes, i_job, i_model);
        DispBC table(static_cast<int>(nodes.size()));
        std::ranges::copy(nodes, table.nodes);
        table.setCode((constraint.x ? 1 : 0) | (constraint.y ? 2 : 0));
        table.values[0] = constraint.x.value_or(0.0);
        table.values[1] = constraint.y.value_or(0.0);
        table.frame = i_tipping.frame;
        property.dispBCs(++i, table);
    }
}
} // namespace

void FillMaterials(JobMaterial const & i_material, double i_thickness, JobLimits const & i_limits,
                   Material & io_material, VOZMaterial & io_kernelMaterial)
{
    int const points = static_cast<int>(i_material.curve.size());
    io_material =
        Material(i_thickness, i_material.anisotropy, i_material.exponent, i_material.strength, i_material.yield);
    CATUnicodeString name(i_material.name.c_str());
    io_material.SetName(name);
    io_material.sizeSSData(points);

    VOZMaterial & kernel = io_kernelMaterial;
    kernel.m_strName = name;
    kernel.m_dThickness = i_thickness * kMetrePerMillimetre;
    kernel.m_dNValue = i_material.exponent;
    kernel.m_dRValue = i_material.anisotropy;
    kernel.m_dKValue = i_material.strength * kPascalPerMegapascal;
    kernel.m_dYield = i_material.yield * kPascalPerMegapascal;
    delete[] kernel.m_padPoints;
    kernel.m_nNumPoints = points;
    kernel.m_padPoints = points > 0 ? new double[2 * i_material.curve.size()] : nullptr;
    double * point = kernel.m_padPoints;
    for (int i = 0; i < points; ++i)
    {
        auto const & [strain, stress] = i_material.curve[static_cast<std::size_t>(i)];
        io_material.setSSData(i, 0, strain);
        io_material.setSSData(i, 1, stress);
        *point++ = strain;
        *point++ = stress * kPascalPerMegapascal;
    }
    kernel.m_dDensity = i_material.density;
    kernel.m_dYoungsModulus = i_material.modulus * kPascalPerMegapascal;
    kernel.m_dPoisson = i_material.poisson;
    kernel.m_dFldZero = i_limits.fldZero;
    kernel.m_nFldType = i_limits.isHalved ? 1 : 0;
    kernel.m_dSafetyMargin = i_limits.safetyMargin;
    kernel.m_dPlaneStrainTol = i_limits.planeStrainTolerance;
    kernel.m_dThinningLimit = std::log1p(-i_limits.thinning / 100.0);
    kernel.m_dThinningMargin = std::log1p(-i_limits.thinningMargin / 100.0);
    kernel.m_dShearLimit = i_limits.shear / 100.0;
    kernel.m_dShearMargin = i_limits.shearMargin / 100.0;
    kernel.m_dWrinkleLimit = i_limits.wrinkle / 100.0;
}

FormingLimit LimitOf(Job const & i_job)
{
    JobMaterial const & material = i_job.materials.front();
    return {material.anisotropy,
            material.exponent,
            i_job.thickness * kMetrePerMillimetre, // the class reads metres
            i_job.limits.safetyMargin,
            i_job.limits.planeStrainTolerance,
            i_job.limits.fldZero,
            i_job.limits.isHalved ? 1 : 0};
}

std::string ConfigurationText(JobLimits const & i_limits)
{
    std::string text = "# Settings of one job: the limits of its zones. 0 switches a test off.\nSolverRam=0\n";
    for (auto const & [key, value] : {std::pair{"ThinningLimit", std::log1p(-i_limits.thinning / 100.0)},
                                      {"ThinningMargin", std::log1p(-i_limits.thinningMargin / 100.0)},
                                      {"ShearLimit", i_limits.shear / 100.0},
                                      {"ShearMargin", i_limits.shearMargin / 100.0},
                                      {"WrinkleLimit", i_limits.wrinkle / 100.0}})
        text += std::string(key) + "=" + Shortest(value == 0.0 ? 0.0 : value) + "\n";
    return text;
}

void BuildProcess(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Process & io_process)
{
    ElemProperty & property = io_process.property;
    int const numElem = i_model.mesh.mesh.numElem();
    property.sizeProperty(1);
    property.sizePropertyIndex(numElem);
    for (int e = 1; e <= numElem; ++e)
        property.propertyId(e, 1);
    FillMaterials(i_job.materials.front(), i_job.thickness, i_job.limits, io_process.material, *property.material(1));
    property.formingLimit(1) = LimitOf(i_job);
    io_process.friction.coefficient(i_job.friction);
    FillHolder(i_job, io_process);
    CheckTotalForce(i_job, i_model, io_process);
    FillEdgeHolders(i_job, i_model, io_process);
    FillBeads(i_job, i_model, i_tipping, io_process);
    FillPads(i_job, i_model, io_process);
    FillConstraints(i_job, i_model, i_tipping, io_process);
}

} // namespace voz::workbench
