// MeshRepair.cpp: the safe repairs, in the order in which one makes room for the next.

#include "ElementShape.h"
#include "MeshCheck.h"
#include "MeshTopology.h"
#include "ModelEdit.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{
constexpr double kPairFraction = 1e-5; // of the diagonal, as in the check

class MeshMender
{
public:
    explicit MeshMender(MeshModel & model) : mModel(model), mMesh(model.mesh) {}

    std::vector<RepairStep> Run(double tolerance)
    {
        joinNodes(tolerance);
        reduceRows();
        dropTwins();
        dropFlat();
        turnElements();
        dropLoneNodes();
        return std::move(mSteps);
    }

private:
    static std::size_t at(int position) { return static_cast<std::size_t>(position); }
    std::vector<char> allElements() const { return std::vector<char>(at(mMesh.numElem()) + 1, 1); }

    void tell(std::string text, std::vector<int> ids, bool isDone = true)
    {
        if (!ids.empty())
            mSteps.push_back({std::move(text), std::move(ids), isDone});
    }

    static std::string counted(std::size_t count, char const * one, char const * many)
    {
        return std::to_string(count) + " " + (count == 1 ? one : many);
    }

    void joinNodes(double tolerance)
    {
        std::vector<int> const target = NearestEarlier(mMesh, tolerance);
        std::vector<char> isKept(target.size(), 1);
        std::vector<int> ids;
        for (int n = 1; n <= mMesh.numNode(); ++n)
            if (target[at(n)] != n)
            {
                isKept[at(n)] = 0;
                ids.push_back(mModel.nodeIds[at(n - 1)]);
            }
        if (ids.empty())
            return;
        RedirectRows(mMesh, target);
        KeepNodes(mModel, isKept);
        std::string text =
            "joined " + counted(ids.size(), "node", "nodes") + " to another within " + Shortest(tolerance) + " mm";
        tell(std::move(text), std::move(ids));
    }

    void reduceRows()
    {
        std::vector<char> isKept = allElements();
        std::vector<int> reduced, dropped;
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            int(&row)[4] = mMesh.GetElemData()[e];
            bool const wasTriangle = row[0] == row[3];
            int const corners = ReduceRow(row);
            if (corners == 0)
            {
                isKept[at(e)] = 0;
                dropped.push_back(mModel.elementIds[at(e - 1)]);
            }
            else if (corners == 3 && !wasTriangle)
                reduced.push_back(mModel.elementIds[at(e - 1)]);
        }
        if (!dropped.empty())
            KeepElements(mModel, isKept);
        std::string text =
            "made " + counted(reduced.size(), "quadrilateral", "quadrilaterals") + " with a repeated corner triangles";
        tell(std::move(text), std::move(reduced));
        text = "took out " + counted(dropped.size(), "element", "elements") + " without three different corners";
        tell(std::move(text), std::move(dropped));
    }

    void dropTwins()
    {
        std::vector<int> const twin = EarlierTwins(mMesh, allElements());
        std::vector<char> isKept = allElements();
        std::vector<int> dropped;
        for (int e = 1; e <= mMesh.numElem(); ++e)
            if (twin[at(e)] != 0)
            {
                isKept[at(e)] = 0;
                dropped.push_back(mModel.elementIds[at(e - 1)]);
            }
        if (!dropped.empty())
            KeepElements(mModel, isKept);
        std::string text =
            "took out " + counted(dropped.size(), "element that repeats", "elements that repeat") + " an earlier one";
        tell(std::move(text), std::move(dropped));
    }

    // An element without area that joins two others would leave a seam.
    void dropFlat()
    {
        Neighbours const neighbours(EdgeTable(mMesh, allElements()), mMesh.numElem());
        std::vector<char> isKept = allElements();
        std::vector<int> dropped, left;
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            if (!ShapeOf(mMesh, mMesh.GetElemData()[e]).hasNoArea)
                continue;
            int const id = mModel.elementIds[at(e - 1)];
            if (neighbours.Of(e).size() > 1)
            {
                left.push_back(id);
                continue;
            }
            isKept[at(e)] = 0;
            dropped.push_back(id);
        }
        if (!dropped.empty())
            KeepElements(mModel, isKept);
        std::string text = "took out " + counted(dropped.size(), "element", "elements") + " without area";
        tell(std::move(text), std::move(dropped));
        text = "left " + counted(left.size(), "element", "elements") +
               " without area that join others: without them a seam would open; remesh there";
        tell(std::move(text), std::move(left), false);
    }

    void turnElements()
    {
        Neighbours const neighbours(EdgeTable(mMesh, allElements()), mMesh.numElem());
        Directions const directions = DirectionsOf(neighbours, allElements());
        std::vector<int> turned, left;
        for (int e = 1; e <= mMesh.numElem(); ++e)
        {
            if (!directions.isFlipped[at(e)])
                continue;
            int(&row)[4] = mMesh.GetElemData()[e];
            std::swap(row[1], row[row[0] == row[3] ? 2 : 3]);
            turned.push_back(mModel.elementIds[at(e - 1)]);
        }
        for (auto const & [a, b] : directions.contradictions)
        {
            left.push_back(mModel.elementIds[at(a - 1)]);
            left.push_back(mModel.elementIds[at(b - 1)]);
        }
        std::string text =
            "turned " + counted(turned.size(), "element", "elements") + " to run like the rest of their piece";
        tell(std::move(text), std::move(turned));
        text = "left a piece that no choice of directions makes run alike; it contradicts itself at " +
               counted(left.size() / 2, "pair", "pairs") + " of elements";
        tell(std::move(text), std::move(left), false);
    }

    void dropLoneNodes()
    {
        std::vector<char> isUsed(at(mMesh.numNode()) + 1, 0);
        for (int e = 1; e <= mMesh.numElem(); ++e)
            for (int const n : mMesh.GetElemData()[e])
                isUsed[at(n)] = 1;
        std::vector<int> dropped;
        for (int n = 1; n <= mMesh.numNode(); ++n)
            if (!isUsed[at(n)])
                dropped.push_back(mModel.nodeIds[at(n - 1)]);
        if (!dropped.empty())
            KeepNodes(mModel, isUsed);
        std::string text = "took out " + counted(dropped.size(), "node", "nodes") + " without elements";
        tell(std::move(text), std::move(dropped));
    }

    MeshModel & mModel;
    VOZCatMesh & mMesh;
    std::vector<RepairStep> mSteps;
};
} // namespace

std::vector<RepairStep> RepairMesh(MeshModel & io_model, RepairOptions const & i_options)
{
    double const tolerance =
        i_options.pairTolerance >= 0.0 ? i_options.pairTolerance : FractionOfDiagonal(io_model.mesh, kPairFraction);
    return MeshMender(io_model).Run(tolerance);
}

} // namespace voz::workbench
