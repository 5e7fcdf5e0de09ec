// ProcessRecords.cpp: the records of the process definition: edges, draw beads, blank holders, displacement tables.

#include "ElemProperty.h"

#include "Mesh.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace
{
// The first n rows, and `spare` rows of zeros behind them.
template <class T>
T * CopyOfRows(T const * rows, int n, int spare)
{
    std::size_t const count = rows && n > 0 ? static_cast<std::size_t>(n) : 0;
    std::size_t const size = count + static_cast<std::size_t>(spare);
    if (size == 0)
        return nullptr;
    T * const copy = new T[size]();
    std::copy_n(rows, count, copy);
    return copy;
}

template <class T>
void ReplaceRows(T *& io_rows, T * i_rows)
{
    delete[] io_rows;
    io_rows = i_rows;
}

double Distance(VOZCatMesh const & mesh, int a, int b)
{
    double const dx = mesh.node(b, 0) - mesh.node(a, 0);
    double const dy = mesh.node(b, 1) - mesh.node(a, 1);
    double const dz = mesh.node(b, 2) - mesh.node(a, 2);
    return std::sqrt(dx * dx + dy * dy + dz * dz);
}
} // namespace

// The mesh compares stored labels and takes element positions; the record holds node positions, and an element as
// callers of the mesh give it.
void EdgeProperty::naturalCoord(VOZCatMesh const * i_mesh, int i_end, double & o_xi, double & o_eta) const
{
    if (!i_mesh)
        return;
    int const node = i_end == 1 ? node1 : node2;
    int const position = element > i_mesh->numElem() ? element - i_mesh->GetFirstElementNumber() : element;
    i_mesh->naturalCoord(node + i_mesh->GetFirstNodeNumber(), position, o_xi, o_eta);
}

DrawBead::DrawBead(DrawBead const & i_other)
    : edgeCount(i_other.edgeCount), force(i_other.force), uplift(i_other.uplift),
      edges(CopyOfRows(i_other.edges, i_other.edgeCount, 0)), xyzCount(i_other.xyzCount),
      xyz(CopyOfRows(i_other.xyz, 3 * i_other.xyzCount, 0))
{
}

DrawBead::~DrawBead()
{
    delete[] edges;
    delete[] xyz;
}

DrawBead DrawBead::operator=(DrawBead const & i_other)
{
    if (this != &i_other)
    {
        ReplaceRows(edges, CopyOfRows(i_other.edges, i_other.edgeCount, 0));
        ReplaceRows(xyz, CopyOfRows(i_other.xyz, 3 * i_other.xyzCount, 0));
        edgeCount = i_other.edgeCount;
        force = i_other.force;
        uplift = i_other.uplift;
        xyzCount = i_other.xyzCount;
    }
    return *this;
}

BlankHolder::BlankHolder(BlankHolder const & i_other)
    : edgeCount(i_other.edgeCount),
      force(i_other.force), values{i_other.values[0], i_other.values[1], i_other.values[2]},
      edges(CopyOfRows(i_other.edges, i_other.edgeCount, 0))
{
}

BlankHolder::~BlankHolder()
{
    delete[] edges;
}

BlankHolder BlankHolder::operator=(BlankHolder const & i_other)
{
    if (this != &i_other)
    {
        ReplaceRows(edges, CopyOfRows(i_other.edges, i_other.edgeCount, 0));
        edgeCount = i_other.edgeCount;
        force = i_other.force;
        std::copy(std::begin(i_other.values), std::end(i_other.values), values);
    }
    return *this;
}

double BlankHolder::length(VOZCatMesh const * i_mesh) const
{
    double sum = 0.0;
    for (int i = 0; i_mesh && i < edgeCount; ++i)
        sum += Distance(*i_mesh, edges[i].node1, edges[i].node2);
    return sum;
}

DispBC::DispBC(int i_size)
{
    setSize(i_size);
}

DispBC::DispBC(DispBC const & i_other)
{
    *this = i_other;
}

DispBC::~DispBC()
{
    delete[] nodes;
}

DispBC & DispBC::operator=(DispBC const & i_other)
{
    if (this != &i_other)
    {
        ReplaceRows(nodes, CopyOfRows(i_other.nodes, i_other.size, 1));
        size = i_other.size;
        tableFlag = i_other.tableFlag;
        std::copy(std::begin(i_other.flags), std::end(i_other.flags), flags);
        std::copy(std::begin(i_other.values), std::end(i_other.values), values);
        frame = i_other.frame;
    }
    return *this;
}

void DispBC::Clear()
{
    setSize(0);
    ReplaceRows<int>(nodes, nullptr);
    kind = 0;
    frame.init();
}

void DispBC::setSize(int n)
{
    size = std::max(n, 0);
    ReplaceRows(nodes, new int[static_cast<std::size_t>(size) + 1]());
    tableFlag = 0;
    std::fill(std::begin(flags), std::end(flags), 0);
    std::fill(std::begin(values), std::end(values), 0.0);
}

void DispBC::setCode(int i_code)
{
    for (int k = 0; k < 6; ++k)
        flags[k] = (i_code >> k) & 1;
}

bool DispBC::operator==(DispBC const & i_other) const
{
    return size == i_other.size && std::equal(nodes, nodes + size, i_other.nodes);
}

double FullBlankHolder::factor() const
{
    if (mFactor > 0.0)
        return mFactor;
    switch (mOption)
    {
    case 1:
        return 0.1;
    case 2:
        return 0.35;
    case 3:
        return 0.6;
    case 4:
        return 0.8;
    case 5:
        return -1.0; // the total force is to be used
    default:
        return 0.0;
    }
}
