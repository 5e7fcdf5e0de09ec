// ModelEdit.cpp: compaction in place, order kept.

#include "ModelEdit.h"

#include "PointGrid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace voz::workbench
{

double FractionOfDiagonal(VOZCatMesh const & i_mesh, double i_fraction)
{
    double square = 0.0;
    for (int c = 0; c < 3 && i_mesh.numNode() > 0; ++c)
    {
        double low = i_mesh.NodeValue(1, c), high = low;
        for (int n = 2; n <= i_mesh.numNode(); ++n)
        {
            low = std::min(low, i_mesh.NodeValue(n, c));
            high = std::max(high, i_mesh.NodeValue(n, c));
        }
        square += (high - low) * (high - low);
    }
    return i_fraction * std::sqrt(square);
}

std::vector<int> NearestEarlier(VOZCatMesh const & i_mesh, double i_tolerance)
{
    int const count = i_mesh.numNode();
    std::vector<int> target(static_cast<std::size_t>(count) + 1);
    std::iota(target.begin(), target.end(), 0);
    PointGrid grid(i_mesh.GetNodeData(), count, i_tolerance);
    for (int n = 1; n <= count; ++n)
        if (int const near = grid.FindNear(n); near != 0)
            target[static_cast<std::size_t>(n)] = near;
        else
            grid.Add(n);
    return target;
}

void RedirectRows(VOZCatMesh & io_mesh, std::vector<int> const & i_target)
{
    for (int e = 1; e <= io_mesh.numElem(); ++e)
        for (int & entry : io_mesh.GetElemData()[e])
            entry = i_target[static_cast<std::size_t>(entry)];
}

int ReduceRow(int (&io_row)[4])
{
    std::array<int, 4> corners{};
    std::size_t count = 0;
    for (int const entry : io_row)
        if (count == 0 || corners[count - 1] != entry)
            corners[count++] = entry;
    while (count > 1 && corners[count - 1] == corners[0])
        --count;
    bool isMetTwice = false;
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t k = i + 1; k < count; ++k)
            isMetTwice = isMetTwice || corners[i] == corners[k];
    if (count < 3 || isMetTwice)
        return 0;
    if (count == 3)
        corners[3] = corners[0];
    std::copy(corners.begin(), corners.end(), io_row);
    return static_cast<int>(count);
}

void KeepElements(MeshModel & io_model, std::vector<char> const & i_isKept)
{
    int const count = io_model.mesh.numElem();
    int(*const rows)[4] = io_model.mesh.GetElemData();
    std::vector<int> positionOf(static_cast<std::size_t>(count) + 1, 0);
    int kept = 0;
    for (int e = 1; e <= count; ++e)
    {
        if (!i_isKept[static_cast<std::size_t>(e)])
            continue;
        positionOf[static_cast<std::size_t>(e)] = ++kept;
        std::copy_n(rows[e], 4, rows[kept]);
        io_model.elementIds[static_cast<std::size_t>(kept - 1)] = io_model.elementIds[static_cast<std::size_t>(e - 1)];
    }
    io_model.mesh.sizeElem(kept);
    io_model.elementIds.resize(static_cast<std::size_t>(kept));
    for (ElementSet & set : io_model.sets)
    {
        for (int & e : set.elements)
            e = positionOf[static_cast<std::size_t>(e)];
        set.elements.erase(std::remove(set.elements.begin(), set.elements.end(), 0), set.elements.end());
    }
    auto const isEmpty = [](ElementSet const & set) { return set.elements.empty(); };
    io_model.sets.erase(std::remove_if(io_model.sets.begin(), io_model.sets.end(), isEmpty), io_model.sets.end());
}

void KeepNodes(MeshModel & io_model, std::vector<char> const & i_isKept)
{
    int const count = io_model.mesh.numNode();
    double(*const rows)[3] = io_model.mesh.GetNodeData();
    std::vector<int> positionOf(static_cast<std::size_t>(count) + 1, 0);
    int kept = 0;
    for (int n = 1; n <= count; ++n)
    {
        if (!i_isKept[static_cast<std::size_t>(n)])
            continue;
        positionOf[static_cast<std::size_t>(n)] = ++kept;
        std::copy_n(rows[n], 3, rows[kept]);
        io_model.nodeIds[static_cast<std::size_t>(kept - 1)] = io_model.nodeIds[static_cast<std::size_t>(n - 1)];
    }
    RedirectRows(io_model.mesh, positionOf);
    io_model.mesh.sizeNode(kept);
    io_model.nodeIds.resize(static_cast<std::size_t>(kept));
}

} // namespace voz::workbench
