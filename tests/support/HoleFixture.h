// HoleFixture.h: wires and meshes as C arrays, as the operations take and give them; memory that ends.

#ifndef HOLEFIXTURE_H
#define HOLEFIXTURE_H

#include "BoundaryFixture.h"
#include "HoleFilling.h"
#include "HoleMemory.h"
#include "SampleMeshes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <set>
#include <vector>

namespace holes
{
using samples::Grid;
using samples::Ints;
using samples::Point;
using samples::Points;
using samples::Quads;

using FloatPoint = std::array<float, 3>;
using Wire = std::vector<FloatPoint>;
using Face = std::array<int, 4>;

template <class Item>
Item * cArray(std::vector<Item> const & values)
{
    Item * const result = static_cast<Item *>(std::malloc(sizeof(Item) * (values.size() + 1)));
    std::copy(values.begin(), values.end(), result);
    return result;
}

// A call of MeshBoundaryWire on a wire numbered 1, 2, ... (or by the numbers given), with the next number 101.
struct Patch
{
    int numPoint;
    int * ids;
    float (*coords)[3];
    int nextId = 101;
    int numFace = -1;
    int (*faces)[4] = nullptr;
    int result;

    explicit Patch(Wire const & wire, int maxLevel, HoleMemory const & memory = HoleMemory(),
                   std::vector<int> numbers = {})
        : numPoint(static_cast<int>(wire.size()))
    {
        if (numbers.empty())
            numbers = oneTo(numPoint);
        ids = cArray(numbers);
        coords = reinterpret_cast<float(*)[3]>(cArray(wire));
        result = MeshBoundaryWire(&numPoint, &ids, &coords, &nextId, &numFace, &faces, maxLevel, memory);
    }
    Patch(Patch const &) = delete;
    Patch & operator=(Patch const &) = delete;
    ~Patch()
    {
        std::free(ids);
        std::free(coords);
        std::free(faces);
    }

    std::vector<int> allIds() const { return std::vector<int>(ids, ids + numPoint); }
    Wire allCoords() const
    {
        Wire rows;
        for (int i = 0; i < numPoint; ++i)
            rows.push_back({coords[i][0], coords[i][1], coords[i][2]});
        return rows;
    }
    std::vector<Face> allFaces() const // without row 0
    {
        std::vector<Face> rows;
        for (int i = 1; i <= numFace; ++i)
            rows.push_back({faces[i][0], faces[i][1], faces[i][2], faces[i][3]});
        return rows;
    }
};

inline Wire polygon(int n, double radius = 1.0)
{
    Wire wire;
    for (int i = 0; i < n; ++i)
        wire.push_back({static_cast<float>(radius * std::cos(6.283185307179586 * i / n)),
                        static_cast<float>(radius * std::sin(6.283185307179586 * i / n)), 0.0F});
    return wire;
}

// Memory that ends after a number of calls.
inline int s_callsLeft = 0;

inline void * allocateUntil(std::size_t count, std::size_t size)
{
    return s_callsLeft-- > 0 ? std::calloc(count, size) : nullptr;
}

inline void * growUntil(void * old, std::size_t size)
{
    return s_callsLeft-- > 0 ? std::realloc(old, size) : nullptr;
}

inline std::set<std::set<int>> cornerSets(std::vector<Face> const & faces)
{
    std::set<std::set<int>> result;
    for (Face const & face : faces)
        result.insert({face[0], face[1], face[2]});
    return result;
}

// A mesh as C arrays, with its holes filled.
struct Filled
{
    int numNode;
    double (*nodes)[3];
    int numElem;
    int (*elems)[4];
    int result;

    explicit Filled(VOZCatMesh const & mesh, HoleMemory const & memory = HoleMemory())
        : numNode(mesh.numNode()), numElem(mesh.numElem())
    {
        nodes = static_cast<double(*)[3]>(std::malloc(sizeof(double[3]) * static_cast<std::size_t>(numNode + 1)));
        elems = static_cast<int(*)[4]>(std::malloc(sizeof(int[4]) * static_cast<std::size_t>(numElem + 1)));
        for (int n = 0; n < numNode; ++n)
            std::copy_n(mesh.GetNodeData()[n + 1], 3, nodes[n]);
        for (int e = 0; e < numElem; ++e)
            std::copy_n(mesh.GetElemData()[e + 1], 4, elems[e]);
        result = FillAllHoles(numNode, &nodes, numElem, &elems, memory);
    }
    Filled(Filled const &) = delete;
    Filled & operator=(Filled const &) = delete;
    ~Filled()
    {
        std::free(nodes);
        std::free(elems);
    }

    VOZCatMesh mesh() const { return VOZCatMesh(numNode, numElem, nodes, elems); }
};

} // namespace holes

#endif
