// FileRouteChecks.cpp: what a deck cannot say.

#include "FileRoute.h"

#include "OutputFile.h"

#include <array>
#include <map>

namespace voz::workbench
{

namespace
{
[[noreturn]] void Refuse(Job const & i_job, int i_line, std::string const & i_message)
{
    throw InputError(i_job.path, i_line, 0, i_message + "; --route kernel does");
}

void CheckMaterials(Job const & i_job)
{
    if (i_job.materials.size() == 1)
    {
        if (JobMaterial const & material = i_job.materials[0]; !material.set.empty())
            throw InputError(i_job.path, material.line, 0,
                             "the file route gives the one material to all elements; leave out its set \"" +
                                 material.set + "\"");
        return;
    }
    std::string names;
    for (JobMaterial const & material : i_job.materials)
        names += (names.empty() ? "\"" : ", \"") + material.name + "\"";
    Refuse(i_job, i_job.materials[1].line,
           "the file route carries no more than one material, the job has " + std::to_string(i_job.materials.size()) +
               ": " + names);
}

void CheckSpringback(Job const & i_job)
{
    if (!i_job.HasSpringback())
        return;
    JobSpringback const & springback = *i_job.springback;
    struct Refused
    {
        bool isAsked;
        char const * text;
    };
    for (Refused const & refused : std::initializer_list<Refused>{
             {springback.isBoundaryHeld, "fixity: the file route cannot hold the boundary"},
             {!springback.constraints.empty(), "constraint: the file route cannot hold nodes"},
             {springback.trimmed.has_value(), "trim: the file route cannot cut elements off"},
             {!springback.alignNodes.empty() || !springback.alignPoints.empty(),
              "align_points: the file route cannot lay the sprung shape on points"}})
        if (refused.isAsked)
            Refuse(i_job, springback.line, std::string("springback.") + refused.text);
}

// Directions and values that the constraints give a node, by position.
struct Prescribed
{
    int directions = 0;
    bool isMoved = false;
    int line = 0;
    std::string where;
};

void CheckConstraints(Job const & i_job, JobModel const & i_model)
{
    std::map<int, Prescribed> nodes;
    for (JobConstraint const & constraint : i_job.constraints)
        for (int const n : NodesOf(constraint.nodes, i_job, i_model))
        {
            Prescribed & node = nodes[n];
            node.directions |= (constraint.x ? 1 : 0) | (constraint.y ? 2 : 0);
            node.isMoved = node.isMoved || constraint.x.value_or(0.0) != 0.0 || constraint.y.value_or(0.0) != 0.0;
            node.line = constraint.nodes.line;
            node.where = constraint.nodes.where;
        }
    for (auto const & [n, node] : nodes)
        if (node.directions == 3 && node.isMoved)
            Refuse(i_job, node.line,
                   node.where + ": the file route carries one prescribed direction of a node, or both as 0; node " +
                       std::to_string(i_model.mesh.nodeIds[static_cast<std::size_t>(n) - 1]) + " has both");
}
} // namespace

void CheckFileRoute(Job const & i_job)
{
    CheckMaterials(i_job);
    if (i_job.binder)
        Refuse(i_job, i_job.binder->line, "binder: the file route carries no binder");
    if (i_job.tube)
        Refuse(i_job, i_job.tube->line, "tube: the file route carries no tube");
    if (i_job.autoStrain)
        Refuse(i_job, i_job.autoStrain->line, "auto_strain: the file route cannot be asked for strains");
    CheckSpringback(i_job);
}

void CheckFileModel(Job const & i_job, JobModel const & i_model)
{
    CheckConstraints(i_job, i_model);
    for (JobPad const & pad : i_job.pads)
        if (int const caught = ElementsCaught(pad, i_job, i_model); caught > 0)
            Refuse(i_job, pad.elements.line,
                   pad.elements.where + ": the file route knows a pad by its nodes, which would take " +
                       std::to_string(caught) + " more elements with it");
}

} // namespace voz::workbench
