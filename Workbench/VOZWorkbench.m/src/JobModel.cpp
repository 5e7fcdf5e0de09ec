// JobModel.cpp: a job's mesh, its selections and its stamping frame.

#include "JobModel.h"

#include "ElemNormal.h"
#include "OutputFile.h"
#include "Plane.h"
#include "Tip.h"
#include "TubeModel.h"
#include "UnderCutFilter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <unordered_map>

namespace voz::workbench
{

namespace
{
Vec ToVec(Point3 const & i_point)
{
    return Vec(static_cast<double const *>(i_point.data()));
}

[[noreturn]] void RefuseMesh(Job const & i_job, std::string const & i_message)
{
    throw InputError(i_job.mesh, 0, 0, i_message + "; \"dravo inspect " + i_job.mesh + "\" shows more");
}

std::string PlaceOf(Finding const & i_finding)
{
    std::string text;
    for (auto const & [name, id] : {std::pair{"element ", i_finding.element},
                                    {"element ", i_finding.otherElement},
                                    {"node ", i_finding.node},
                                    {"node ", i_finding.otherNode}})
        if (id != 0)
            text += (text.empty() ? "" : ", ") + std::string(name) + std::to_string(id);
    return text;
}

void RefuseIfFound(Job const & i_job, MeshReport const & i_report, FindingKind i_kind)
{
    if (i_report.Count(i_kind) == 0)
        return;
    auto const found = std::ranges::find(i_report.findings, i_kind, &Finding::kind);
    std::string const place = found == i_report.findings.end() ? "" : ", first at " + PlaceOf(*found);
    RefuseMesh(i_job, std::to_string(i_report.Count(i_kind)) + " x " + NameOf(i_kind).text + place +
                          ": no sheet can be formed from it");
}

// Turns elements that run against their neighbours; the piece keeps the sense of its first element.
void Orient(Job const & i_job, JobModel & io_model)
{
    long const flipped = io_model.report.Count(FindingKind::Flipped);
    if (flipped == 0)
        return;
    if (!i_job.repairOrientation)
        RefuseMesh(i_job, std::to_string(flipped) + " elements run against their neighbours, and "
                                                    "mesh.repair_orientation is false");
    ElemNormal normals(io_model.mesh.mesh);
    if (normals.CheckFlipAllElemNormals(&io_model.mesh.mesh) != 0)
        RefuseMesh(i_job, "the elements could not be turned into one sense");
    io_model.remarks.push_back(std::to_string(flipped) + " elements that ran against their neighbours were turned");
    io_model.report = CheckMesh(io_model.mesh);
    RefuseIfFound(i_job, io_model.report, FindingKind::Flipped);
}

void CheckFit(Job const & i_job, JobModel & io_model)
{
    for (FindingKind const kind : {FindingKind::NotOrientable, FindingKind::NonManifoldEdge, FindingKind::OpenBoundary,
                                   FindingKind::Duplicate, FindingKind::RepeatedNode, FindingKind::SeparatePiece})
        RefuseIfFound(i_job, io_model.report, kind);
    if (io_model.report.loops.empty())
        RefuseMesh(i_job, "the mesh is closed: a formed sheet has an edge");
    auto const tell = [&io_model](FindingKind i_kind, std::vector<std::string> & io_list)
    {
        if (long const count = io_model.report.Count(i_kind); count > 0)
            io_list.push_back("mesh: " + std::to_string(count) + " x " + NameOf(i_kind).text);
    };
    for (FindingKind const kind : {FindingKind::ZeroArea, FindingKind::LoneNode})
        tell(kind, io_model.warnings);
    for (FindingKind const kind : {FindingKind::Sliver, FindingKind::Aspect, FindingKind::Warp, FindingKind::Concave})
        tell(kind, io_model.remarks);
}

// Usual: 0.5 to 20 times the thickness; a bounding box of 1 to 10 000 mm.
void CheckSizes(Job const & i_job, JobModel & io_model)
{
    MeshReport const & report = io_model.report;
    double const ratio = report.meanEdge / i_job.thickness;
    if (ratio < 0.5 || ratio > 20.0)
        io_model.warnings.push_back("element size " + Fixed(report.meanEdge, 3) + " mm is " + Fixed(ratio, 2) +
                                    " times the thickness; usual are 0.5 to 20 times");
    double longest = 0.0;
    for (std::size_t i = 0; i < 3; ++i)
        longest = std::max(longest, report.boxHigh[i] - report.boxLow[i]);
    if (longest < 1.0 || longest > 10000.0)
        io_model.warnings.push_back("the part is " + Fixed(longest, 3) +
                                    " mm long; usual are 1 to 10 000 mm: is mesh.length_unit right?");
    for (ElementSet const & set : io_model.mesh.sets)
        if (set.thickness > 0.0 && std::abs(set.thickness - i_job.thickness) > 1e-6 * i_job.thickness)
        {
            io_model.warnings.push_back("the mesh file gives set " + std::to_string(set.id) + " a thickness of " +
                                        Shortest(set.thickness) + " mm; the job's " + Shortest(i_job.thickness) +
                                        " mm counts");
            break;
        }
}

[[noreturn]] void RefuseSelection(JobSelection const & i_selection, Job const & i_job, std::string const & i_message)
{
    throw InputError(i_job.path, i_selection.line, 0, i_selection.where + ": " + i_message);
}

ElementSet const & SetOf(JobSelection const & i_selection, Job const & i_job, JobModel const & i_model)
{
    std::string known;
    for (ElementSet const & set : i_model.mesh.sets)
    {
        if (set.name == i_selection.set || std::to_string(set.id) == i_selection.set)
            return set;
        known += (known.empty() ? "" : ", ") + (set.name.empty() ? std::to_string(set.id) : "\"" + set.name + "\"");
    }
    RefuseSelection(i_selection, i_job, "the mesh has no element set \"" + i_selection.set + "\"; it has " + known);
}

void AddIds(JobSelection const & i_selection, std::vector<int> const & i_ids, char const * i_what, Job const & i_job,
            std::vector<int> & io_positions)
{
    if (i_selection.ids.empty())
        return;
    std::unordered_map<int, int> positionOf;
    for (std::size_t i = 0; i < i_ids.size(); ++i)
        positionOf.emplace(i_ids[i], static_cast<int>(i) + 1);
    for (int const id : i_selection.ids)
    {
        auto const found = positionOf.find(id);
        if (found == positionOf.end())
            RefuseSelection(i_selection, i_job, std::string("the mesh has no ") + i_what + " " + std::to_string(id));
        io_positions.push_back(found->second);
    }
}

bool IsInside(std::array<Point3, 2> const & i_box, double const (&i_place)[3])
{
    for (std::size_t i = 0; i < 3; ++i)
        if (!(i_place[i] >= i_box[0][i] && i_place[i] <= i_box[1][i]))
            return false;
    return true;
}

std::vector<int> Sorted(std::vector<int> i_positions, JobSelection const & i_selection, Job const & i_job)
{
    std::ranges::sort(i_positions);
    i_positions.erase(std::unique(i_positions.begin(), i_positions.end()), i_positions.end());
    if (i_positions.empty())
        RefuseSelection(i_selection, i_job, "nothing of the mesh lies in the selection");
    return i_positions;
}

std::unique_ptr<Tip> MakeTip(VOZCatMesh const & i_mesh, std::vector<JobPlane> const & i_planes,
                             std::optional<Point3> const & i_dieLine)
{
    std::vector<Plane> planes;
    for (JobPlane const & plane : i_planes)
        planes.emplace_back(ToVec(plane.point), ToVec(plane.normal));
    if (planes.size() == 2)
        return std::make_unique<FourthSymmetryTip>(i_mesh, planes[0], planes[1]);
    if (planes.size() == 1 && i_dieLine)
        return std::make_unique<HalfSymmetryDieLineTip>(i_mesh, planes[0], ToVec(*i_dieLine));
    if (planes.size() == 1)
        return std::make_unique<HalfSymmetryTip>(i_mesh, planes[0]);
    if (i_dieLine)
        return std::make_unique<AverageDieLineTip>(i_mesh, ToVec(*i_dieLine));
    return std::make_unique<AverageTip>(i_mesh);
}

// The binder's mesh is held to what holds for the part's.
void ReadBinder(Job const & i_job, JobModel & io_model)
{
    if (!i_job.binder)
        return;
    Job named = i_job;
    named.mesh = i_job.binder->mesh;
    ReadOptions options;
    options.unitLength = i_job.binder->unitLength;
    JobModel binder;
    binder.mesh = ReadMesh(named.mesh, options);
    binder.report = CheckMesh(binder.mesh);
    Orient(named, binder);
    CheckFit(named, binder);
    for (auto const & [from, to] :
         {std::pair{&binder.remarks, &io_model.remarks}, std::pair{&binder.warnings, &io_model.warnings}})
        for (std::string const & text : *from)
            to->push_back("binder: " + text);
    io_model.binder = std::move(binder.mesh);
}
} // namespace

JobModel ReadModel(Job const & i_job)
{
    ReadOptions options;
    options.unitLength = i_job.unitLength;
    options.weldTolerance = i_job.weld;
    JobModel model;
    model.mesh = ReadMesh(i_job.mesh, options);
    model.remarks = model.mesh.remarks;
    model.report = CheckMesh(model.mesh);
    Orient(i_job, model);
    CheckFit(i_job, model);
    CheckSizes(i_job, model);
    ReadBinder(i_job, model);
    return model;
}

std::vector<int> ElementsOf(JobSelection const & i_selection, Job const & i_job, JobModel const & i_model)
{
    std::vector<int> elements;
    if (!i_selection.set.empty())
        elements = SetOf(i_selection, i_job, i_model).elements;
    AddIds(i_selection, i_model.mesh.elementIds, "element", i_job, elements);
    VOZCatMesh const & mesh = i_model.mesh.mesh;
    if (i_selection.box)
        for (int e = 1; e <= mesh.numElem(); ++e)
        {
            bool isWithin = true;
            for (int k = 0; k < 4; ++k)
                isWithin = isWithin && IsInside(*i_selection.box, mesh.GetNodeData()[mesh.ElementValue(e, k)]);
            if (isWithin)
                elements.push_back(e);
        }
    return Sorted(std::move(elements), i_selection, i_job);
}

std::vector<int> NodesOf(JobSelection const & i_selection, Job const & i_job, JobModel const & i_model)
{
    std::vector<int> nodes;
    VOZCatMesh const & mesh = i_model.mesh.mesh;
    if (!i_selection.set.empty())
        for (int const e : SetOf(i_selection, i_job, i_model).elements)
            for (int k = 0; k < 4; ++k)
                nodes.push_back(mesh.ElementValue(e, k));
    AddIds(i_selection, i_model.mesh.nodeIds, "node", i_job, nodes);
    if (i_selection.box)
        for (int n = 1; n <= mesh.numNode(); ++n)
            if (IsInside(*i_selection.box, mesh.GetNodeData()[n]))
                nodes.push_back(n);
    return Sorted(std::move(nodes), i_selection, i_job);
}

int NearestNode(VOZCatMesh const & i_mesh, Point3 const & i_place)
{
    int nearest = 1;
    double least = INFINITY;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
    {
        double const * const p = i_mesh.GetNodeData()[n];
        double const distance = std::hypot(p[0] - i_place[0], p[1] - i_place[1], p[2] - i_place[2]);
        if (distance < least)
        {
            least = distance;
            nearest = n;
        }
    }
    return nearest;
}

int NodeOfId(int i_id, std::string const & i_key, int i_line, Job const & i_job, JobModel const & i_model)
{
    std::vector<int> const & ids = i_model.mesh.nodeIds;
    auto const found = std::ranges::find(ids, i_id);
    if (found == ids.end())
        throw InputError(i_job.path, i_line, 0, i_key + ": the mesh has no node " + std::to_string(i_id));
    return static_cast<int>(found - ids.begin()) + 1;
}

double ExtentAlong(VOZCatMesh const & i_mesh, VOZCatAxis const & i_frame, int i_axis)
{
    double low = INFINITY;
    double high = -INFINITY;
    for (int n = 1; n <= i_mesh.numNode(); ++n)
    {
        double const * const row = i_mesh.GetNodeData()[n];
        double along = 0.0;
        for (int c = 0; c < 3; ++c)
            along += i_frame.axis(i_axis, c) * (row[c] - i_frame.origin(c));
        low = std::min(low, along);
        high = std::max(high, along);
    }
    return std::max(high - low, 0.0);
}

Tipping FindTipping(VOZCatMesh const & i_mesh, std::vector<JobPlane> const & i_planes,
                    std::optional<Point3> const & i_dieLine)
{
    Tipping tipping;
    MakeTip(i_mesh, i_planes, i_dieLine)
        ->tip(tipping.frame, tipping.symmetry, tipping.undercutElements, tipping.undercutAngle);
    ElemNormal const normals(i_mesh);
    UnderCutFilter const filter(normals, tipping.frame.axis(2));
    for (int e = 1; e <= i_mesh.numElem(); ++e)
    {
        tipping.undercut.push_back(filter.isUnderCutElem(e));
        if (tipping.undercut.back() != 0)
            tipping.undercutArea += 0.5 * std::hypot(normals.normal(e, 0), normals.normal(e, 1), normals.normal(e, 2));
    }
    tipping.drawDepth = ExtentAlong(i_mesh, tipping.frame, 2);
    return tipping;
}

void RequirePlanes(VOZCatMesh const & i_mesh, double i_meanEdge, std::vector<JobPlane> const & i_planes,
                   std::string const & i_file)
{
    double const tolerance = 1e-3 * i_meanEdge;
    for (JobPlane const & plane : i_planes)
    {
        double least = 0.0;
        double greatest = 0.0;
        double nearest = std::numeric_limits<double>::max();
        auto const * const nodes = i_mesh.GetNodeData();
        for (int n = 1; n <= i_mesh.numNode(); ++n)
        {
            double distance = 0.0;
            for (std::size_t i = 0; i < 3; ++i)
                distance += (nodes[n][i] - plane.point[i]) * plane.normal[i];
            least = std::min(least, distance);
            greatest = std::max(greatest, distance);
            nearest = std::min(nearest, std::abs(distance));
        }
        std::string const name = "the plane of symmetry with normal " + Shortest(plane.normal[0]) + " " +
                                 Shortest(plane.normal[1]) + " " + Shortest(plane.normal[2]);
        if (least < -tolerance && greatest > tolerance)
            throw InputError(i_file, 0, 0,
                             "symmetry: " + name + " cuts the part (from " + Fixed(least, 3) + " to " +
                                 Fixed(greatest, 3) + " mm of it); the model must lie on one side");
        if (nearest > tolerance)
            throw InputError(i_file, 0, 0,
                             "symmetry: no node lies on " + name + " (the nearest is " + Fixed(nearest, 3) +
                                 " mm away); the model must end there");
    }
}

void RequireFrame(Tipping const & i_tipping, std::string const & i_mesh, std::string const & i_remedy)
{
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            if (!std::isfinite(i_tipping.frame.axis(i, j)) || !std::isfinite(i_tipping.frame.origin(j)))
                throw InputError(i_mesh, 0, 0,
                                 "the mean normal of the part vanishes, so it has no stamping direction; give " +
                                     i_remedy);
}

Tipping FindTipping(Job const & i_job, JobModel const & i_model)
{
    if (i_job.tube)
        return OpenTube(i_job, i_model).tipping;
    RequirePlanes(i_model.mesh.mesh, i_model.report.meanEdge, i_job.planes, i_job.path);
    Tipping tipping = FindTipping(i_model.mesh.mesh, i_job.planes, i_job.dieLine);
    RequireFrame(tipping, i_job.mesh, "tip.die_line");
    return tipping;
}

} // namespace voz::workbench
