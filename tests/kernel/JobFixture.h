// JobFixture.h: a forming job's records over an example surface, as a driver fills them.

#ifndef JOBFIXTURE_H
#define JOBFIXTURE_H

#include "VOZFormingResult.h"
#include "VOZMaterial.h"
#include "VOZMechanicalProp.h"
#include "VOZMesh.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"
#include "surfaces/Surfaces.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace jobtest
{

using namespace voz::examples;

struct Sheet // one material, SI
{
    double thickness = 0.00078, k = 565.32e6, n = 0.2589, r = 1.79, yield = 157128163.6;
};

struct Job
{
    std::unique_ptr<VOZMultiStageSolverIOData_s> data = std::make_unique<VOZMultiStageSolverIOData_s>();
    VOZSolverStage_s * stage = nullptr;
    VOZMesh_s * part = nullptr;
    VOZMesh_s * blank = nullptr;
    VOZSolverBCData_s * bc = nullptr;
    VOZFormingResult_s * result = nullptr;
};

inline VOZElement_s * elementsOf(SurfaceMesh const & mesh)
{
    auto * const elements = new VOZElement_s[mesh.elements.size()];
    for (std::size_t e = 0; e < mesh.elements.size(); ++e)
        for (std::size_t i = 0; i < 4; ++i)
            elements[e].m_anNodeIndices[i] = mesh.elements[e][i];
    return elements;
}

inline VOZMesh_s * partOf(SurfaceMesh const & mesh)
{
    auto * const topology = new VOZTopologyMesh_s;
    topology->SetNodesElements(static_cast<int>(mesh.nodes.size()), static_cast<int>(mesh.elements.size()),
                               elementsOf(mesh));
    auto * const coords = new double[3 * mesh.nodes.size()];
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
        for (std::size_t k = 0; k < 3; ++k)
            coords[3 * i + k] = 0.001 * mesh.nodes[i][k];
    auto * const part = new VOZMesh_s;
    part->SetData(coords, new double[3 * mesh.nodes.size()](), nullptr, true, topology);
    return part;
}

inline Job jobOf(SurfaceMesh const & mesh, std::vector<Sheet> const & sheets = {Sheet{}})
{
    Job job;
    auto * const thicknesses = new double[sheets.size()];
    auto * const properties = new VOZMechanicalProp_s[sheets.size()];
    for (std::size_t i = 0; i < sheets.size(); ++i)
    {
        thicknesses[i] = sheets[i].thickness;
        properties[i].m_dKValue = sheets[i].k;
        properties[i].m_dNValue = sheets[i].n;
        properties[i].m_dRValue = sheets[i].r;
        properties[i].m_dYield = sheets[i].yield;
        VOZMechanicalProp_s::EvalMechanicalDataForSolver(properties[i]);
    }
    job.data->SetMaterialData(static_cast<int>(sheets.size()), thicknesses, properties);

    job.part = partOf(mesh);
    job.blank = new VOZMesh_s;
    job.blank->SetData(new double[3 * mesh.nodes.size()](), new double[3 * mesh.nodes.size()](),
                       new double[3 * mesh.elements.size()](), false, job.part->m_psTopology);
    job.bc = new VOZSolverBCData_s;
    job.result = new VOZFormingResult_s(job.part);
    job.stage = new VOZSolverStage_s[1];
    job.stage->SetPartMeshData(job.part);
    job.stage->SetBlankMeshData(job.blank);
    job.stage->SetBCData(job.bc);
    job.stage->SetFormingResult(job.result);
    job.data->SetStagesData(1, job.stage);
    return job;
}

// A binder, and a mesh for the blank on it with a mark in every coordinate.
constexpr double kUntouched = -77.0;
inline void giveBinder(Job & job, SurfaceMesh const & binder)
{
    auto const numNodes = static_cast<std::size_t>(job.part->GetNumNodes());
    auto * const coords = new double[3 * numNodes];
    std::fill(coords, coords + 3 * numNodes, kUntouched);
    auto * const onBinder = new VOZMesh_s;
    onBinder->SetData(coords, new double[3 * numNodes](), nullptr, false, job.part->m_psTopology);
    job.data->SetBinderMeshData(partOf(binder), onBinder);
}

// A constraint along x for each node on x = 0 and along y for each on y = 0; some records stay unused at the end.
inline void quarterSymmetry(Job & job, SurfaceMesh const & mesh)
{
    auto * const records = new VOZSolverNodeConstraint2D_s[2 * mesh.nodes.size()];
    std::size_t count = 0;
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
        for (std::size_t axis = 0; axis < 2; ++axis)
            if (mesh.nodes[i][axis] == 0.0)
            {
                records[count].m_nNode = static_cast<int>(i);
                records[count++].m_dAngle = axis == 0 ? 0.0 : 1.5707963267948966;
            }
    job.bc->SetNodeConstraints2D(static_cast<int>(count + 5), records);
}

inline std::basic_string<unsigned short> wide(std::string const & text)
{
    return {text.begin(), text.end()}; // ASCII
}

} // namespace jobtest

#endif
