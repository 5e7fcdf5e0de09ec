// SpringBacksFixture.h: the springback driver opened, with a part and its process. Shapes are put into the driver by
// hand: what the kernel makes of a job is tested with the kernel.

#ifndef SPRINGBACKSFIXTURE_H
#define SPRINGBACKSFIXTURE_H

#include "VOZSolverSpringBacks.h"

#include "DriverFixture.h"
#include "EdgeSets.h"
#include "FreeEdgeLoops.h"
#include "VOZMultiStageSolverIOData.h"
#include "VOZSolverBCData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace springbacks
{
class Probe : public VOZSolverSpringBacks
{
public:
    using VOZSolverMultiStage::FillInXenSolverData;
    using VOZSolverSpringBacks::Alignment;
    using VOZSolverSpringBacks::BoundaryFixity;
    using VOZSolverSpringBacks::ConvertMeshData;
    using VOZSolverSpringBacks::SetDispConstraints;
    using VOZSolverSpringBacks::Trimming;

    using VOZSolverSpringBacks::m_nLoopError;
    using VOZSolverSpringBacks::m_nMesh;
    using VOZSolverSpringBacks::m_padXYZ;
    using VOZSolverSpringBacks::m_pFreeEdge;
    using VOZSolverSpringBacks::m_pFreeLoops;
    using VOZSolverSpringBacks::m_psBCData;
    using VOZSolverSpringBacks::m_psFormingResult;
    using VOZSolverSpringBacks::m_psIOData;

    VOZSolverStage_s & stage() { return *m_psIOData->m_pasStages; }
    VOZSBConstraints_s const * held() { return stage().m_psBCData->m_psSBConstraints; }
    std::vector<int> heldNodes()
    {
        return held() ? std::vector<int>(held()->m_panNodeIndices, held()->m_panNodeIndices + held()->m_nCount)
                      : std::vector<int>();
    }
};

class SpringBacks : public DriverFixture
{
protected:
    SpringBacks() : DriverFixture(dome(3, 2, false)) { give(driver); }

    void prepare() { ASSERT_EQ(driver.FillInXenSolverData(), 0); }

    void trim(std::vector<int> const & labels)
    {
        property.setTrimmingSize(static_cast<int>(labels.size()));
        int * const rows = new int[labels.size()];
        std::copy(labels.begin(), labels.end(), rows);
        property.setTrimming(rows);
    }

    void align(std::vector<int> const & nodes)
    {
        property.setAlignmentSize(static_cast<int>(nodes.size()));
        int * const rows = new int[nodes.size()];
        std::copy(nodes.begin(), nodes.end(), rows);
        property.setAlignment(rows);
    }

    // The part in metres, turned by an angle about x and shifted.
    void giveShape(double angle, double shift)
    {
        std::size_t const count = static_cast<std::size_t>(part.numNode());
        delete[] driver.m_padXYZ;
        driver.m_padXYZ = new double[3 * count];
        for (int n = 1; n <= part.numNode(); ++n)
        {
            double * const row = driver.m_padXYZ + 3 * (n - 1);
            double const y = 0.001 * part.node(n, 1);
            double const z = 0.001 * part.node(n, 2);
            row[0] = 0.001 * part.node(n, 0) + shift;
            row[1] = std::cos(angle) * y - std::sin(angle) * z;
            row[2] = std::sin(angle) * y + std::cos(angle) * z - shift;
        }
    }

    double farthest() const // of the shape from the part, metres
    {
        double most = 0.0;
        for (int n = 1; n <= part.numNode(); ++n)
            for (int k = 0; k < 3; ++k)
                most = std::max(most, std::fabs(driver.m_padXYZ[3 * (n - 1) + k] - 0.001 * part.node(n, k)));
        return most;
    }

    // The start nodes, from 0, of all loops of a mesh.
    static std::vector<int> loopNodes(VOZCatMesh const & mesh)
    {
        FreeEdgeSet const edges(mesh);
        int error = 0;
        FreeEdgeLoops const loops(edges, mesh, &error);
        std::vector<int> nodes;
        for (int l = 1; l <= loops.numLoops(); ++l)
            for (int i = 1; i <= loops.numLoopEdges(l); ++i)
                nodes.push_back(edges.startNode(loops.loopEdge(l, i)) - 1);
        return nodes;
    }

    Probe driver;
};
} // namespace springbacks

#endif
