// SpringbackModel.cpp: the figures of a springback.

#include "SpringbackModel.h"

#include "PointMath.h"
#include "Route.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{

namespace
{
constexpr double kNoForming = 1e-9;    // of the part's size: less than this is no springback
constexpr double kInward = 1e-3;       // of the part's size: how far from a rim the section stays
constexpr double kPictureShare = 0.08; // of the section's size: how large the largest deviation is drawn

// All nodes (elements) of the whole that stand for one of the model's.
std::vector<int> Images(std::vector<int> const & i_positions, std::vector<int> const & i_modelOf)
{
    std::vector<int> images;
    for (std::size_t i = 0; i < i_modelOf.size(); ++i)
        if (std::ranges::binary_search(i_positions, i_modelOf[i] + 1))
            images.push_back(static_cast<int>(i) + 1);
    return images;
}

// --- Figures ---------------------------------------------------------------------------------------------------------

// Area of the elements that are left, shared among their nodes.
std::vector<double> NodeAreas(SpringbackOutcome const & i_springback)
{
    VOZCatMesh const & mesh = i_springback.part;
    std::vector<double> areas(static_cast<std::size_t>(mesh.numNode()), 0.0);
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        if (i_springback.trimmed[static_cast<std::size_t>(e) - 1] != 0)
            continue;
        int const corners = mesh.isTriangle(e) != 0 ? 3 : 4;
        Point3 const a = NodeOf(mesh, mesh.ElementValue(e, 0));
        Point3 const b = NodeOf(mesh, mesh.ElementValue(e, 1));
        Point3 const c = NodeOf(mesh, mesh.ElementValue(e, 2));
        Point3 const d = corners == 3 ? a : NodeOf(mesh, mesh.ElementValue(e, 3));
        Point3 const cross = corners == 3
                                 ? Cross(Difference(b, a), Difference(c, a)) // half the diagonals' product else
                                 : Cross(Difference(c, a), Difference(d, b));
        for (int k = 0; k < corners; ++k)
            areas[static_cast<std::size_t>(mesh.ElementValue(e, k)) - 1] += 0.5 * Length(cross) / corners;
    }
    return areas;
}

DeviationFigures FiguresOf(std::vector<Point3> const & i_shifts, std::vector<double> const & i_areas)
{
    DeviationFigures figures;
    double sum = 0.0;
    double area = 0.0;
    for (std::size_t n = 0; n < i_shifts.size(); ++n)
    {
        if (!(i_areas[n] > 0.0)) // cut off
            continue;
        double const deviation = Length(i_shifts[n]);
        sum += i_areas[n] * deviation;
        area += i_areas[n];
        if (deviation > figures.largest)
        {
            figures.largest = deviation;
            figures.largestNode = static_cast<int>(n);
        }
    }
    figures.mean = area > 0.0 ? sum / area : 0.0;
    return figures;
}

void TellPoints(Job const & i_job, JobModel const & i_model, SpringbackOutcome & io_springback)
{
    JobSpringback const & wanted = *i_job.springback;
    auto const tell = [&io_springback](int i_position, std::optional<Point3> const & i_asked)
    {
        SpringbackPoint point;
        point.node = i_position - 1;
        auto const n = static_cast<std::size_t>(point.node);
        point.before = Length(io_springback.before[n]);
        if (!io_springback.after.empty())
            point.after = Length(io_springback.after[n]);
        point.asked = i_asked;
        io_springback.points.push_back(point);
    };
    for (int const id : wanted.watchNodes)
        tell(NodeOfId(id, "springback.watch_nodes", wanted.line, i_job, i_model), std::nullopt);
    for (Point3 const & place : wanted.watchPoints)
        tell(NearestNode(io_springback.part, place), place);
}

// Through the largest deviation, along the stamping direction, across the local axis along which the part springs less.
SectionPlane ChosenSection(SpringbackOutcome const & i_springback, VOZCatAxis const & i_frame)
{
    double along[2] = {0.0, 0.0};
    for (Point3 const & shift : i_springback.Shown())
        for (int axis = 0; axis < 2; ++axis)
            along[axis] += std::pow(Dot(shift, AxisOf(i_frame, axis)), 2);
    SectionPlane section{AxisOf(i_frame, along[0] < along[1] ? 0 : 1),
                         NodeOf(i_springback.part, i_springback.Figures().largestNode + 1)};
    double middle = 0.0;
    for (int n = 1; n <= i_springback.part.numNode(); ++n)
        middle += Dot(NodeOf(i_springback.part, n), section.normal) / i_springback.part.numNode();
    double const inward = middle > Dot(section.point, section.normal) ? 1.0 : -1.0;
    for (std::size_t c = 0; c < 3; ++c) // the largest deviation is often on the rim, which a plane would only touch
        section.point[c] += inward * kInward * BoxOf(i_springback.part).Diagonal() * section.normal[c];
    return section;
}

// 1, 2 or 5 times a power of ten, at least 1.
double RoundExaggeration(double i_value)
{
    if (!(i_value > 1.0) || !std::isfinite(i_value))
        return 1.0;
    double const power = std::pow(10.0, std::floor(std::log10(i_value)));
    double const first = i_value / power;
    return power * (first >= 5.0 ? 5.0 : first >= 2.0 ? 2.0 : 1.0);
}
} // namespace

SpringbackSelections SelectForSpringback(Job const & i_job, JobModel const & i_model, WholePart const & i_whole)
{
    JobSpringback const & wanted = *i_job.springback;
    SpringbackSelections selections;
    if (wanted.trimmed)
        selections.trimmed = Images(ElementsOf(*wanted.trimmed, i_job, i_model), i_whole.elementOf);
    std::vector<int> held;
    for (JobSelection const & selection : wanted.constraints)
        std::ranges::copy(NodesOf(selection, i_job, i_model), std::back_inserter(held));
    std::ranges::sort(held);
    held.erase(std::unique(held.begin(), held.end()), held.end());
    selections.held = Images(held, i_whole.nodeOf);
    for (int const id : wanted.alignNodes)
        selections.aligned.push_back(NodeOfId(id, "springback.align_nodes", wanted.line, i_job, i_model));
    for (Point3 const & place : wanted.alignPoints)
        selections.aligned.push_back(NearestNode(i_whole.mesh, place));
    if (selections.trimmed.size() == i_whole.elementOf.size())
        throw InputError(i_job.path, wanted.trimmed->line, 0, "springback.trim: nothing is left of the part");
    std::vector<int> points = selections.aligned;
    std::ranges::sort(points);
    if (std::ranges::adjacent_find(points) != points.end())
        throw InputError(i_job.path, wanted.line, 0,
                         "springback.align_points: two of the points name one node; expected different ones");
    return selections;
}

void FinishSpringback(Job const & i_job, JobModel const & i_model, VOZCatAxis const & i_frame,
                      SpringbackOutcome & io_springback)
{
    std::vector<double> const areas = NodeAreas(io_springback);
    io_springback.figuresBefore = FiguresOf(io_springback.before, areas);
    if (!io_springback.after.empty())
        io_springback.figuresAfter = FiguresOf(io_springback.after, areas);
    double const size = BoxOf(io_springback.part).Diagonal();
    if (!(io_springback.figuresBefore.largest > kNoForming * size))
        throw SolverError("springback: the solver found no forming to unload; the sprung shape would be the part");
    TellPoints(i_job, i_model, io_springback);
    JobSpringback const & wanted = *i_job.springback;
    io_springback.section = wanted.section ? SectionPlane{wanted.section->normal, wanted.section->point}
                                           : ChosenSection(io_springback, i_frame);
    io_springback.exaggeration = wanted.exaggeration > 0.0
                                     ? wanted.exaggeration
                                     : RoundExaggeration(kPictureShare * size / io_springback.Figures().largest);
}

} // namespace voz::workbench
