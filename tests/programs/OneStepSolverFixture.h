// OneStepSolverFixture.h: sheets as jobs of the file route, and the solver program started on their decks.

#ifndef ONESTEPSOLVERFIXTURE_H
#define ONESTEPSOLVERFIXTURE_H

#include "DeckJobs.h"
#include "FolderFixture.h"

#include "ElemProperty.h"
#include "FormingLimit.h"
#include "Material.h"
#include "Mesh.h"
#include "Result.h"
#include "Solver.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VOZMaterial.h"
#include "surfaces/Surfaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

#if !defined(_WIN32)
#include <sys/wait.h>

namespace sheetjobs
{
namespace ex = voz::examples;

inline std::string program()
{
    return VOZ_BINARY_DIR "/bin/OneStepSolver";
}

constexpr double kThickness = 0.78;
constexpr double kYield = 157.0;
constexpr double kFriction = 0.144;
constexpr double kRim = 57.0; // radius of the cup's rim

// A job of mild steel on a mesh in mm whose x and y axes are planes of symmetry, or not.
struct SheetJob
{
    SheetJob(ex::SurfaceMesh const & i_mesh, Symmetry i_symmetry)
        : mesh(static_cast<int>(i_mesh.nodes.size()), static_cast<int>(i_mesh.elements.size())),
          material(kThickness, 1.79, 0.2589, 565.32, kYield), symmetry(i_symmetry)
    {
        for (std::size_t n = 0; n < i_mesh.nodes.size(); ++n)
            std::copy(i_mesh.nodes[n].begin(), i_mesh.nodes[n].end(), mesh.GetNodeData()[n + 1]);
        for (std::size_t e = 0; e < i_mesh.elements.size(); ++e)
        {
            std::array<int, 4> const & row = i_mesh.elements[e];
            for (std::size_t k = 0; k < 4; ++k)
                mesh.GetElemData()[e + 1][k] = (row[k] < 0 ? row[0] : row[k]) + 1;
        }
        property.sizeProperty(1);
        property.material(1)->m_dThickness = 0.001 * kThickness;
        property.material(1)->m_dYield = 1.0e6 * kYield;
        property.formingLimit(1) = FormingLimit(material, 10.0, 5.0, FldZero::CalculateFLD0(kThickness, 0.2589), 0);
        property.sizePropertyIndex(mesh.numElem());
        for (int e = 1; e <= mesh.numElem(); ++e)
            property.propertyId(e, 1);
        friction.coefficient(kFriction);
    }

    Solver solver()
    {
        char folder[] = ".";
        return Solver(mesh, material, property, symmetry, friction, fullHolder, axis, folder);
    }

    // The whole route. The result is null if the program left none.
    std::unique_ptr<Result> solve(bool controlFlag = false)
    {
        EXPECT_EQ(solver().write("deck.fpi", false, controlFlag, 0), 0);
        testing::internal::CaptureStdout();
        EXPECT_EQ(solver().run(program().c_str(), "deck.fpi"), 0);
        testing::internal::GetCapturedStdout();
        if (!std::filesystem::exists("deck.fpo"))
            return nullptr;
        auto result = std::make_unique<Result>(mesh);
        solver().read("deck.fpo", *result, false);
        return result;
    }

    double flat(Result const & result, int n, int c) const
    {
        return mesh.NodeValue(n, c) + static_cast<double>(result.disp1(n, c));
    }

    // Mean radius of the flat rim.
    double blankRadius(Result const & result) const
    {
        double sum = 0.0;
        int count = 0;
        for (int n = 1; n <= mesh.numNode(); ++n)
            if (std::hypot(mesh.NodeValue(n, 0), mesh.NodeValue(n, 1)) > kRim - 1.0e-6)
            {
                sum += std::hypot(flat(result, n, 0), flat(result, n, 1));
                ++count;
            }
        return sum / count;
    }

    // A single holder around the rim, over free edges whose nodes both lie on it.
    void holdRim(double newtonsPerMetre)
    {
        std::vector<EdgeProperty> edges;
        double length = 0.0;
        auto const isRim = [this](int n)
        { return std::hypot(mesh.NodeValue(n, 0), mesh.NodeValue(n, 1)) > kRim - 1.0e-6; };
        for (int e = 1; e <= mesh.numElem(); ++e)
            for (int k = 0; k < 4; ++k)
            {
                int const a = mesh.ElementValue(e, k);
                int const b = mesh.ElementValue(e, (k + 1) % 4);
                if (a == b || !isRim(a) || !isRim(b))
                    continue;
                edges.emplace_back();
                edges.back().element = e;
                edges.back().node1 = a;
                edges.back().node2 = b;
                length += std::hypot(mesh.NodeValue(a, 0) - mesh.NodeValue(b, 0),
                                     mesh.NodeValue(a, 1) - mesh.NodeValue(b, 1));
            }
        property.sizeBlankHolders(1);
        BlankHolder & holder = property.blankHolders(1);
        holder.edgeCount = static_cast<int>(edges.size());
        holder.edges = new EdgeProperty[edges.size()];
        std::copy(edges.begin(), edges.end(), holder.edges);
        holder.force = newtonsPerMetre * 0.001 * length / (2.0 * kFriction);
    }

    VOZCatMesh mesh;
    Material material;
    ElemProperty property;
    VOZCatAxis axis;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder fullHolder;
};

inline ex::SurfaceMesh cup(ex::Cells cells)
{
    return ex::cup(ex::Cup(), 1, ex::Extent::Quarter, cells);
}

struct Ended
{
    int code;
    std::string output;
    std::string errors;
};

class OneStepSolver : public FolderFixture
{
protected:
    static Ended start(std::string const & arguments)
    {
        int const status = std::system(("\"" + program() + "\" " + arguments + " >output.txt 2>errors.txt").c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, deckjobs::readFile("output.txt"),
                deckjobs::readFile("errors.txt")};
    }
    static void writeCup()
    {
        SheetJob job(cup(ex::Cells::Triangles), Symmetry(true, true));
        ASSERT_EQ(job.solver().write("deck.fpi", false, false, 0), 0);
    }
    static std::vector<std::string> filesHere()
    {
        std::vector<std::string> names;
        for (auto const & entry : std::filesystem::directory_iterator("."))
            names.push_back(entry.path().filename().string());
        return names;
    }
};
} // namespace sheetjobs
#endif

#endif
