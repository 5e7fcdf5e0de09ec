// Mesh.cpp: the mesh: its arrays, their numbering and access, and what is computed from them in one walk.

#include "Mesh.h"

#include "CATFatalError.h"
#include "ElemNormal.h"
#include "MeshNormal.h"
#include "MeshRows.h"
#include "RowMath.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

using meshrows::labelOf;
using meshrows::positionOf;

static_assert(sizeof(void *) != 8 || sizeof(VOZCatMesh) == 64, "a mesh is its eight fields, and nothing else");

namespace
{
using NodeRow = double[3];
using ElemRow = int[4];

// N + 1 rows for N entries, row 0 zero and the others uninitialised; null for none.
template <class Row>
std::unique_ptr<Row[]> newRows(int n)
{
    if (n <= 0)
        return nullptr;
    std::unique_ptr<Row[]> rows(new Row[static_cast<std::size_t>(n) + 1]);
    std::fill(std::begin(rows[0]), std::end(rows[0]), std::remove_extent_t<Row>{});
    return rows;
}

template <class Row>
void copyRows(Row const * source, std::size_t count, Row * o_target)
{
    if (count > 0)
        std::copy_n(source[0], count * std::extent_v<Row>, o_target[0]);
}

// As newRows, with rows 0 .. min(oldCount, n) taken over.
template <class Row>
std::unique_ptr<Row[]> resized(Row const * old, int oldCount, int n)
{
    std::unique_ptr<Row[]> rows = newRows<Row>(n);
    if (rows && old)
        copyRows(old, static_cast<std::size_t>(std::clamp(oldCount, 0, n)) + 1, rows.get());
    return rows;
}

template <class Row>
std::unique_ptr<Row[]> copied(Row const * rows, int n)
{
    return rows ? resized(rows, n, n) : nullptr;
}

constexpr double kLargestFloat = static_cast<double>(std::numeric_limits<float>::max());

// Where there is no array, a broken contract reads zeros, and what it writes is lost.
template <class Row>
auto * nowhere()
{
    thread_local Row row;
    std::fill(std::begin(row), std::end(row), std::remove_extent_t<Row>{});
    return std::begin(row);
}
} // namespace

VOZCatMesh::VOZCatMesh(int i_numNode, int i_numElem)
    : mName(nullptr), mNodes(nullptr), mNumNode(0), mElems(nullptr), mNumElem(0), mFirstNode(0), mFirstElem(0),
      mCurvature(nullptr)
{
    std::unique_ptr<NodeRow[]> nodes = newRows<NodeRow>(i_numNode);
    sizeElem(i_numElem);
    mNodes = nodes.release();
    mNumNode = i_numNode;
}

VOZCatMesh::VOZCatMesh(int i_numNode, int i_numElem, double const (*i_nodes)[3], int const (*i_elems)[4])
    : VOZCatMesh(i_numNode, i_numElem)
{
    if (mNodes && i_nodes)
        copyRows(i_nodes, static_cast<std::size_t>(mNumNode), mNodes + 1);
    if (mElems && i_elems)
        copyRows(i_elems, static_cast<std::size_t>(mNumElem), mElems + 1);
}

VOZCatMesh::VOZCatMesh(VOZCatMesh const & i_other) : VOZCatMesh()
{
    copyArrays(i_other);
}

VOZCatMesh::~VOZCatMesh()
{
    delete[] mNodes;
    delete[] mElems;
    delete[] mCurvature;
    mNumNode = 0;
    mNumElem = 0;
}

VOZCatMesh & VOZCatMesh::operator=(VOZCatMesh const & i_other)
{
    if (this != &i_other)
        copyArrays(i_other);
    return *this;
}

void VOZCatMesh::copyArrays(VOZCatMesh const & i_other)
{
    // All three are made before one is replaced: a failed allocation leaves the mesh as it was.
    std::unique_ptr<NodeRow[]> nodes = copied(i_other.mNodes, i_other.mNumNode);
    std::unique_ptr<ElemRow[]> elems = copied(i_other.mElems, i_other.mNumElem);
    std::unique_ptr<NodeRow[]> curvature = copied(i_other.mCurvature, i_other.mNumElem);
    delete[] mNodes;
    delete[] mElems;
    delete[] mCurvature;
    mNodes = nodes.release();
    mElems = elems.release();
    mCurvature = curvature.release();
    mNumNode = i_other.mNumNode;
    mNumElem = i_other.mNumElem;
    mFirstNode = i_other.mFirstNode;
    mFirstElem = i_other.mFirstElem;
}

void VOZCatMesh::sizeNode(int n)
{
    std::unique_ptr<NodeRow[]> rows = resized(mNodes, mNumNode, n);
    delete[] mNodes;
    mNodes = rows.release();
    mNumNode = n;
}

void VOZCatMesh::sizeElem(int n)
{
    std::unique_ptr<ElemRow[]> rows = resized(mElems, mNumElem, n);
    if (mElems && mCurvature) // one row per element, or a later copy would read past them
    {
        std::unique_ptr<NodeRow[]> curvature = resized(mCurvature, mNumElem, n);
        delete[] mCurvature;
        mCurvature = curvature.release();
    }
    delete[] mElems;
    mElems = rows.release();
    mNumElem = n;
}

void VOZCatMesh::addNode(double const (*i_rows)[3], int i_count)
{
    if (i_count <= 0)
        return;
    int const old = std::max(mNumNode, 0);
    std::unique_ptr<NodeRow[]> rows = resized(mNodes, mNumNode, old + i_count);
    copyRows(i_rows, static_cast<std::size_t>(i_count), rows.get() + 1 + old);
    delete[] mNodes; // only now: the rows may be the mesh's own
    mNodes = rows.release();
    mNumNode = old + i_count;
}

int VOZCatMesh::nodePosition(int n) const
{
    return n > mNumNode ? positionOf(n, mFirstNode) : n;
}

int VOZCatMesh::elemPosition(int e) const
{
    return e > mNumElem ? positionOf(e, mFirstElem) : e;
}

double * VOZCatMesh::nodeRow(int n, bool i_holds) const
{
    return mNodes ? mNodes[i_holds ? n : 0] : nowhere<NodeRow>();
}

int * VOZCatMesh::elemRow(int e, bool i_holds) const
{
    return mElems ? mElems[i_holds ? e : 0] : nowhere<ElemRow>();
}

double VOZCatMesh::node(int n, int c) const
{
    int const position = nodePosition(n);
    bool const holds = VOZ_CONTRACT(isNode(position) && c >= 0 && c < 3, "n > 0 && n <= mNumNode && c < 3");
    return nodeRow(position, holds)[holds ? c : 0];
}

double VOZCatMesh::node(int n, int c)
{
    return std::as_const(*this).node(n, c);
}

Vec VOZCatMesh::node(int n)
{
    int const position = nodePosition(n);
    bool const holds = VOZ_CONTRACT(isNode(position), "n > 0 && n <= mNumNode");
    return Vec(nodeRow(position, holds));
}

void VOZCatMesh::node(int n, Vec const & i_value)
{
    int const position = nodePosition(n);
    bool const holds = VOZ_CONTRACT(isNode(position), "n > 0 && n <= mNumNode");
    double * const row = nodeRow(position, holds);
    for (int c = 0; c < 3; ++c)
        row[c] = i_value[c];
}

int VOZCatMesh::elem(int e, int k) const
{
    int const position = elemPosition(e);
    bool const holds = VOZ_CONTRACT(isElem(position) && k >= 0 && k < 4, "e > 0 && e <= mNumElem && n < 4");
    return positionOf(elemRow(position, holds)[holds ? k : 0], mFirstNode);
}

void VOZCatMesh::elem(int e, int k, int i_label) const
{
    int const position = elemPosition(e);
    bool const holds = VOZ_CONTRACT(isElem(position) && k >= 0 && k < 4, "e > 0 && e <= mNumElem && n < 4");
    elemRow(position, holds)[holds ? k : 0] = i_label;
}

int * VOZCatMesh::elem(int e) const
{
    if (e < mFirstElem || static_cast<long long>(e) - mFirstElem > mNumElem)
        return nullptr;
    bool const holds = VOZ_CONTRACT(isElem(e), "e > 0 && e <= mNumElem");
    return elemRow(e, holds);
}

int VOZCatMesh::isTriangle(int e) const
{
    int const position = elemPosition(e);
    bool const holds = VOZ_CONTRACT(isElem(position), "e > 0 && e <= mNumElem");
    return meshrows::isTriangle(elemRow(position, holds)) ? 1 : 0;
}

void VOZCatMesh::IdsOffset(int i_nodeOffset, int i_elemOffset)
{
    mFirstNode = labelOf(mFirstNode, i_nodeOffset);
    mFirstElem = labelOf(mFirstElem, i_elemOffset);
    int const rows = mElems ? mNumElem : 0;
    for (int e = 1; e <= rows; ++e)
        for (int & label : mElems[e])
            label = labelOf(label, i_nodeOffset);
}

int VOZCatMesh::GetElementNodePosition(int e, int n) const
{
    int const position = elemPosition(e);
    bool const holds = VOZ_CONTRACT(isElem(position), "e > 0 && e <= mNumElem && n < 4");
    int const * const row = elemRow(position, holds);
    for (int corner = 0; corner < 4; ++corner)
        if (positionOf(row[corner], mFirstNode) == n)
            return corner;
    return -1;
}

void VOZCatMesh::naturalCoord(int i_label, int e, double & o_xi, double & o_eta) const
{
    static constexpr double kQuadrilateral[4][2] = {{-1.0, -1.0}, {1.0, -1.0}, {1.0, 1.0}, {-1.0, 1.0}};
    static constexpr double kTriangle[3][2] = {{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}};

    bool const holds = VOZ_CONTRACT(isElem(e), "elem > 0 && elem <= mNumElem");
    int const * const row = elemRow(e, holds);
    int const corners = meshrows::cornerCount(row);
    double const(*const table)[2] = corners == 3 ? kTriangle : kQuadrilateral;
    for (int corner = 0; corner < corners; ++corner)
        if (row[corner] == i_label)
        {
            o_xi = table[corner][0];
            o_eta = table[corner][1];
        }
}

void VOZCatMesh::reverse()
{
    int const rows = mElems ? mNumElem : 0;
    for (int e = 1; e <= rows; ++e)
        std::swap(mElems[e][1], mElems[e][meshrows::isTriangle(mElems[e]) ? 2 : 3]);
}

void VOZCatMesh::EvalMeshElementSize(double & o_maxEdge, double & o_minEdge) const
{
    o_maxEdge = -kLargestFloat;
    o_minEdge = kLargestFloat;
    meshrows::Rows const rows(*this);
    for (int e = 1; e <= rows.numElem; ++e)
    {
        int const corners = meshrows::cornerCount(rows.elems[e]);
        for (int corner = 0; corner < corners; ++corner)
        {
            int const next = corner + 1 == corners ? 0 : corner + 1;
            double const edge = rowmath::distance(rows.node(rows.corner(e, corner)), rows.node(rows.corner(e, next)));
            if (edge > o_maxEdge)
                o_maxEdge = edge;
            if (edge < o_minEdge)
                o_minEdge = edge;
        }
    }
}

void VOZCatMesh::EvalMeshMinMaxZ(double & o_maxZ, double & o_minZ) const
{
    o_maxZ = -kLargestFloat;
    o_minZ = kLargestFloat;
    meshrows::Rows const rows(*this);
    for (int n = 1; n <= rows.numNode; ++n)
    {
        double const z = rows.nodes[n][2];
        if (z > o_maxZ)
            o_maxZ = z;
        if (z < o_minZ)
            o_minZ = z;
    }
}

bool VOZCatMesh::orient(Vec * i_reference) const
{
    static constexpr double kUp[3] = {0.0, 0.0, 1.0};
    double facing[3];
    EvalAverageNormal(facing);
    Vec const reference = i_reference ? *i_reference : Vec(kUp);
    return Vec(facing).dot(reference) < 0.0;
}

void VOZCatMesh::EvalAverageNormal(double * const o_normal) const
{
    MeshNormal const facing{ElemNormal(*this)};
    for (int c = 0; c < 3; ++c)
        o_normal[c] = facing.normal(c);
}

namespace
{
// Adds the unit normal of each element to the rows of its corners and counts it there. A corner that is no node counts
// in row 0.
void gatherUnitNormals(VOZCatMesh const & mesh, NodeRow * io_sums, int * io_counts)
{
    ElemNormal const normals(mesh);
    meshrows::Rows const rows(mesh);
    for (int e = 1; e <= rows.numElem; ++e)
    {
        double unit[3];
        rowmath::copy(normals.data()[e], unit);
        rowmath::divide(unit, rowmath::length(unit));
        int const corners = meshrows::cornerCount(rows.elems[e]);
        for (int corner = 0; corner < corners; ++corner)
        {
            int const position = rows.corner(e, corner);
            int const n = rows.isNode(position) ? position : 0;
            rowmath::add(io_sums[n], unit);
            ++io_counts[n];
        }
    }
}
} // namespace

int VOZCatMesh::EvalNodesNormal(double *& o_normals) const
{
    if (mNumNode <= 0)
        return 0;
    std::size_t const count = static_cast<std::size_t>(mNumNode);
    std::unique_ptr<NodeRow[]> const p_arVec(new (std::nothrow) NodeRow[count + 1]());
    std::unique_ptr<int[]> const ar_nOccurances(new (std::nothrow) int[count + 1]());
    bool const sized = VOZ_CONTRACT(p_arVec != nullptr, "p_arVec");
    if (!VOZ_CONTRACT(ar_nOccurances != nullptr, "ar_nOccurances") || !sized)
        return 0;
    gatherUnitNormals(*this, p_arVec.get(), ar_nOccurances.get());

    std::unique_ptr<double[]> normals(new (std::nothrow) double[3 * count]);
    if (!VOZ_CONTRACT(normals != nullptr, "o_padNormals"))
        return 0;
    for (int n = 1; n <= mNumNode; ++n)
    {
        VOZ_CONTRACT(ar_nOccurances[n] > 0, "ar_nOccurances[n] > 0");
        double * const mean = normals.get() + 3 * (static_cast<std::size_t>(n) - 1);
        rowmath::copy(p_arVec[n], mean);
        rowmath::divide(mean, ar_nOccurances[n]);
    }
    o_normals = normals.release();
    return mNumNode;
}

void VOZCatMesh::Transform(VOZCatAxis const * i_axis, int i_direction)
{
    if (!i_axis)
        return;
    rowmath::Frame const frame(*i_axis);
    int const rows = mNodes ? mNumNode : 0;
    for (int n = 1; n <= rows; ++n)
    {
        double moved[3];
        if (i_direction == 2)
            frame.fromGlobal(mNodes[n], moved);
        else
            frame.toGlobal(mNodes[n], moved);
        rowmath::copy(moved, mNodes[n]);
    }
}

void VOZCatMesh::Translate(double const * const i_vector)
{
    double vector[3]; // a copy: the vector may be one of the rows
    rowmath::copy(i_vector, vector);
    int const rows = mNodes ? mNumNode : 0;
    for (int n = 1; n <= rows; ++n)
        rowmath::add(mNodes[n], vector);
}

void VOZCatMesh::Translate(Vec const & i_vector)
{
    double const vector[3] = {i_vector[0], i_vector[1], i_vector[2]};
    Translate(vector);
}
