// Process.cpp: what acts on the sheet, in the units that the library's process objects hold.

#include "BeadSegments.h"
#include "EdgeSets.h"
#include "JobModel.h"
#include "OutputFile.h"
#include "TubeModel.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace voz::workbench
{

namespace
{
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

// Marks of the nodes of some elements, by position.
std::vector<char> CornersOf(std::vector<int> const & i_elements, VOZCatMesh const & i_mesh)
{
    std::vector<char> isCorner(static_cast<std::size_t>(i_mesh.numNode()) + 1, 0);
    for (int const e : i_elements)
        for (int k = 0; k < 4; ++k)
            isCorner[static_cast<std::size_t>(i_mesh.ElementValue(e, k))] = 1;
    return isCorner;
}

std::vector<int> PadRowsOf(std::vector<int> const & i_elements, VOZCatMesh const & i_mesh, PadRows i_padRows)
{
    if (i_padRows == PadRows::Elements)
        return i_elements;
    std::vector<char> const isCorner = CornersOf(i_elements, i_mesh);
    std::vector<int> nodes;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
        if (isCorner[static_cast<std::size_t>(n)] != 0)
            nodes.push_back(n);
    return nodes;
}

void FillPads(Job const & i_job, JobModel const & i_model, PadRows i_padRows, Process & io_process)
{
    if (i_job.pads.empty())
        return;
    ElemProperty & property = io_process.property;
    property.sizePressPads(static_cast<int>(i_job.pads.size()));
    std::vector<int> padOf(static_cast<std::size_t>(i_model.mesh.mesh.numElem()) + 1, 0);
    int i = 0;
    for (JobPad const & pad : i_job.pads)
    {
        ++i;
        std::vector<int> const elements = ElementsOf(pad.elements, i_job, i_model);
        std::vector<int> const rows = PadRowsOf(elements, i_model.mesh.mesh, i_padRows);
        property.pressPadSize(i, static_cast<int>(rows.size()));
        property.pressPadVal(i, pad.pressure * kPascalPerMegapascal);
        int row = 0;
        for (int const entry : rows)
            property.pressPads(i, ++row, entry);
        int shared = 0;
        for (int const e : elements)
            shared += std::exchange(padOf[static_cast<std::size_t>(e)], i) != 0 ? 1 : 0;
        if (shared > 0)
            io_process.warnings.push_back(pad.elements.where + ": " + std::to_string(shared) +
                                          " of its elements lie under an earlier pad, too; the later pad counts");
    }
}

struct PrescribedTable
{
    JobConstraint const * constraint;
    std::optional<double> x;
    std::optional<double> y;
};

// A table of both directions says in the kernel's records that its nodes stay where they are: values other than 0 need
// a table each.
std::vector<PrescribedTable> TablesOf(std::vector<JobConstraint> const & i_constraints)
{
    std::vector<PrescribedTable> tables;
    for (JobConstraint const & constraint : i_constraints)
        if (constraint.x.value_or(0.0) != 0.0 || constraint.y.value_or(0.0) != 0.0)
        {
            if (constraint.x)
                tables.push_back({&constraint, constraint.x, std::nullopt});
            if (constraint.y)
                tables.push_back({&constraint, std::nullopt, constraint.y});
        }
        else
            tables.push_back({&constraint, constraint.x, constraint.y});
    return tables;
}

void FillConstraints(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, Process & io_process)
{
    std::vector<PrescribedTable> const tables = TablesOf(i_job.constraints);
    int const lips = i_job.tube ? kLipTables : 0;
    if (tables.empty() && lips == 0)
        return;
    ElemProperty & property = io_process.property;
    property.sizeDispBC(static_cast<int>(tables.size()) + lips);
    int i = 0;
    for (PrescribedTable const & prescribed : tables)
    {
        std::vector<int> const nodes = NodesOf(prescribed.constraint->nodes, i_job, i_model);
        DispBC table(static_cast<int>(nodes.size()));
        std::ranges::copy(nodes, table.nodes);
        table.setCode((prescribed.x ? 1 : 0) | (prescribed.y ? 2 : 0));
        table.values[0] = prescribed.x.value_or(0.0);
        table.values[1] = prescribed.y.value_or(0.0);
        table.frame = i_tipping.frame;
        property.dispBCs(++i, table);
    }
}

void FillAutoStrain(Job const & i_job, Process & io_process)
{
    if (!i_job.autoStrain)
        return;
    JobAutoStrain const & wanted = *i_job.autoStrain;
    io_process.property.setAutoStrain(wanted.target ? wanted.target->data() : nullptr,
                                      wanted.reference ? wanted.reference->data() : nullptr, wanted.targetStrain,
                                      wanted.referenceStrain, wanted.value, true);
}

void FillProperties(Job const & i_job, JobModel const & i_model, Process & io_process)
{
    ElemProperty & property = io_process.property;
    std::vector<int> const materialOf = MaterialOfElements(i_job, i_model);
    property.sizeProperty(static_cast<int>(i_job.materials.size()));
    property.sizePropertyIndex(i_model.mesh.mesh.numElem());
    for (int e = 1; e <= i_model.mesh.mesh.numElem(); ++e)
        property.propertyId(e, materialOf[static_cast<std::size_t>(e)]);
    int i = 0;
    for (JobMaterial const & material : i_job.materials)
    {
        Material unused;
        ++i;
        FillMaterials(i_job, material, i == 1 ? io_process.material : unused, *property.material(i));
        property.formingLimit(i) = LimitOf(i_job, material);
    }
}
} // namespace

int ElementsCaught(JobPad const & i_pad, Job const & i_job, JobModel const & i_model)
{
    VOZCatMesh const & mesh = i_model.mesh.mesh;
    std::vector<int> const elements = ElementsOf(i_pad.elements, i_job, i_model);
    std::vector<char> const isListed = CornersOf(elements, mesh);
    int caught = 0;
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        bool isCaught = !std::ranges::binary_search(elements, e);
        for (int k = 0; k < 4; ++k)
            isCaught = isCaught && isListed[static_cast<std::size_t>(mesh.ElementValue(e, k))] != 0;
        caught += isCaught ? 1 : 0;
    }
    return caught;
}

void BuildProcess(Job const & i_job, JobModel const & i_model, Tipping const & i_tipping, PadRows i_padRows,
                  Process & io_process)
{
    FillProperties(i_job, i_model, io_process);
    io_process.friction.coefficient(i_job.friction);
    FillHolder(i_job, io_process);
    CheckTotalForce(i_job, i_model, io_process);
    FillEdgeHolders(i_job, i_model, io_process);
    FillBeads(i_job, i_model, i_tipping, io_process);
    FillPads(i_job, i_model, i_padRows, io_process);
    FillConstraints(i_job, i_model, i_tipping, io_process);
    FillAutoStrain(i_job, io_process);
}

} // namespace voz::workbench
