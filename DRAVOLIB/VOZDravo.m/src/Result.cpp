// Result.cpp: the parallel arrays of a forming result: their bounds, one by one.

#include "Result.h"

#include "CATFatalError.h"
#include "Mesh.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace
{
constexpr int kDim = 3;

// A count of the mesh as rows: row 0 stands before the first.
std::size_t Rows(int count)
{
    return static_cast<std::size_t>(std::max(count, 0)) + 1;
}

Vec VecOf(float const * i_row)
{
    double const row[kDim] = {i_row[0], i_row[1], i_row[2]};
    return Vec(row);
}

// Access without a contract: nothing is reported, but what lies beyond the array goes to its index 0.
template <class Value>
Value & Raw(std::vector<Value> & io_values, long long i_index)
{
    bool const within = i_index >= 0 && static_cast<unsigned long long>(i_index) < io_values.size();
    return io_values[within ? static_cast<std::size_t>(i_index) : 0];
}

void Store(Vec const & i_value, float * o_row)
{
    for (int comp = 0; comp < kDim; ++comp)
        o_row[comp] = static_cast<float>(i_value[comp]);
}
} // namespace

struct Result::Arrays
{
    Arrays(std::size_t nodes, std::size_t elems)
        : nodeRows(nodes), disp(kDim * nodes), disp2d(kDim * nodes), thickness(elems), strain(kDim * elems),
          nstrain(kDim * nodes), thickStrain(elems), safety(elems), forming(elems), nsafety(nodes), nforming(nodes),
          elementEquivalentStrain(elems), nodeThickness(nodes), equivalentStrain(std::max(nodes, elems)),
          dispOnBinder(kDim * nodes), theta(elems), stress(std::max(nodes, elems)), dsafety(nodes), dforming(nodes)
    {
    }

    std::size_t nodeRows;
    std::vector<float> disp, disp2d, thickness, strain, nstrain, thickStrain;
    std::vector<int> safety, forming, nsafety, nforming;
    std::vector<float> elementEquivalentStrain, nodeThickness, equivalentStrain, dispOnBinder, theta, stress;
    std::vector<double> dsafety, dforming;
};

Result::Result(VOZCatMesh const & i_mesh)
    : mNumNodeResult(i_mesh.numNode()), mNumElemResult(i_mesh.numElem()), mPunchForce(0.0F),
      mAlloc(std::max(mNumNodeResult, mNumElemResult)),
      mArrays(std::make_shared<Arrays>(Rows(mNumNodeResult), Rows(mNumElemResult)))
{
    mDisp = mArrays->disp.data();
    mDisp2d = mArrays->disp2d.data();
    mThickness = mArrays->thickness.data();
    mStrain = mArrays->strain.data();
    mNstrain = mArrays->nstrain.data();
    mThickStrain = mArrays->thickStrain.data();
    mSafety = mArrays->safety.data();
    mForming = mArrays->forming.data();
    mNsafety = mArrays->nsafety.data();
    mNforming = mArrays->nforming.data();
    mElementEquivalentStrain = mArrays->elementEquivalentStrain.data();
    mNodeThickness = mArrays->nodeThickness.data();
    mEquivalentStrain = mArrays->equivalentStrain.data();
    mDispOnBinder = mArrays->dispOnBinder.data();
    mTheta = mArrays->theta.data();
    mStress = mArrays->stress.data();
    mDsafety = mArrays->dsafety.data();
    mDforming = mArrays->dforming.data();
}

Result::Result(Result const & i_other) = default;
Result & Result::operator=(Result const & i_other) = default;
Result::~Result() = default;

// A count that was raised has no rows of its own: the arrays' size bounds the index too.
int Result::NodeRow(int i_node) const
{
    bool const within = i_node >= 0 && i_node <= mNumNodeResult && static_cast<std::size_t>(i_node) < mArrays->nodeRows;
    return VOZ_ASSERTION(within, "node >= 0 && node < (mNumNodeResult+1)") ? i_node : 0;
}

int Result::ElemRow(int i_elem) const
{
    bool const within = i_elem >= 0 && i_elem <= mNumElemResult;
    return VOZ_ASSERTION(within, "elem >= 0 && elem < (mNumElemResult+1)") ? i_elem : 0;
}

int Result::AllocRow(int i_node) const
{
    bool const within = i_node >= 0 && i_node <= mAlloc;
    return VOZ_ASSERTION(within, "node >= 0 && node < (mAlloc+1)") ? i_node : 0;
}

float Result::disp(int i_node, int i_comp) const
{
    return mDisp[kDim * NodeRow(i_node) + i_comp];
}

void Result::disp(int i_node, int i_comp, float i_value)
{
    mDisp[kDim * NodeRow(i_node) + i_comp] = i_value;
}

Vec Result::disp(int i_node)
{
    return VecOf(mDisp + kDim * NodeRow(i_node));
}

void Result::disp(int i_node, Vec const & i_value)
{
    Store(i_value, mDisp + kDim * NodeRow(i_node));
}

float Result::disp1(int i_node, int i_comp) const
{
    return disp(i_node, i_comp);
}

float Result::disp2d(int i_node, int i_comp) const
{
    return mDisp2d[kDim * NodeRow(i_node) + i_comp];
}

void Result::disp2d(int i_node, int i_comp, float i_value)
{
    mDisp2d[kDim * NodeRow(i_node) + i_comp] = i_value;
}

float Result::dispOnBinder(int i_node, int i_comp) const
{
    return mDispOnBinder[kDim * NodeRow(i_node) + i_comp];
}

void Result::dispOnBinder(int i_node, int i_comp, float i_value)
{
    mDispOnBinder[kDim * NodeRow(i_node) + i_comp] = i_value;
}

Vec Result::dispOnBinder(int i_node)
{
    return VecOf(mDispOnBinder + kDim * NodeRow(i_node));
}

void Result::dispOnBinder(int i_node, Vec const & i_value)
{
    Store(i_value, mDispOnBinder + kDim * NodeRow(i_node));
}

float Result::dispOnBinder1(int i_node, int i_comp) const
{
    return dispOnBinder(i_node, i_comp);
}

float Result::nstrain(int i_node, int i_comp) const
{
    return mNstrain[kDim * NodeRow(i_node) + i_comp];
}

void Result::nstrain(int i_node, int i_comp, float i_value) const
{
    mNstrain[kDim * NodeRow(i_node) + i_comp] = i_value;
}

int Result::nsafety(int i_node) const
{
    return mNsafety[NodeRow(i_node)];
}

void Result::nsafety(int i_node, int i_value)
{
    Raw(mArrays->nsafety, i_node) = i_value;
}

int Result::nforming(int i_node) const
{
    return mNforming[NodeRow(i_node)];
}

void Result::nforming(int i_node, int i_value)
{
    mNforming[NodeRow(i_node)] = i_value;
}

double Result::dsafety(int i_node) const
{
    return mDsafety[NodeRow(i_node)];
}

void Result::dsafety(int i_node, double i_value)
{
    Raw(mArrays->dsafety, i_node) = i_value;
}

double Result::dforming(int i_node) const
{
    return mDforming[NodeRow(i_node)];
}

void Result::dforming(int i_node, double i_value)
{
    mDforming[NodeRow(i_node)] = i_value;
}

float Result::NodeThickness(int i_node) const
{
    return mNodeThickness[NodeRow(i_node)];
}

void Result::NodeThickness(int i_node, float i_value)
{
    mNodeThickness[NodeRow(i_node)] = i_value;
}

float Result::thickness(int i_elem) const
{
    return mThickness[ElemRow(i_elem)];
}

void Result::thickness(int i_elem, float i_value)
{
    mThickness[ElemRow(i_elem)] = i_value;
}

float Result::strain(int i_elem, int i_comp) const
{
    return Raw(mArrays->strain, static_cast<long long>(kDim) * i_elem + i_comp);
}

void Result::strain(int i_elem, int i_comp, float i_value) const
{
    mStrain[kDim * ElemRow(i_elem) + i_comp] = i_value;
}

float Result::thickStrain(int i_elem) const
{
    return mThickStrain[ElemRow(i_elem)];
}

void Result::thickStrain(int i_elem, float i_value)
{
    mThickStrain[ElemRow(i_elem)] = i_value;
}

int Result::safety(int i_elem) const
{
    return mSafety[ElemRow(i_elem)];
}

void Result::safety(int i_elem, int i_value)
{
    mSafety[ElemRow(i_elem)] = i_value;
}

int Result::forming(int i_elem) const
{
    return mForming[ElemRow(i_elem)];
}

void Result::forming(int i_elem, int i_value)
{
    mForming[ElemRow(i_elem)] = i_value;
}

float Result::equivalentStrain(int i_elem) const
{
    return mElementEquivalentStrain[ElemRow(i_elem)];
}

void Result::equivalentStrain(int i_elem, float i_value)
{
    mElementEquivalentStrain[ElemRow(i_elem)] = i_value;
}

float Result::theta(int i_elem) const
{
    return mTheta[ElemRow(i_elem)];
}

void Result::theta(int i_elem, float i_value)
{
    mTheta[ElemRow(i_elem)] = i_value;
}

float Result::EquivalentStrain(int i_node) const
{
    return mEquivalentStrain[AllocRow(i_node)];
}

void Result::EquivalentStrain(int i_node, float i_value)
{
    mEquivalentStrain[AllocRow(i_node)] = i_value;
}

float Result::stress(int i) const
{
    return Raw(mArrays->stress, i);
}

void Result::stress(int i, float i_value) const
{
    Raw(mArrays->stress, i) = i_value;
}

int Result::AverageNodeThickness(VOZCatMesh const & i_mesh)
{
    bool const fits = Rows(i_mesh.numNode()) <= mArrays->nodeRows;
    if (!VOZ_ASSERTION(fits, "m.elem(i,j) <(nNumNodeResult+1)"))
        return 1;
    return AverageResultsAtNodes(i_mesh, mThickness, mNodeThickness);
}

int Result::AverageNodeStrain(VOZCatMesh const & i_mesh, float * o_node)
{
    return AverageResultsAtNodes(i_mesh, mEquivalentStrain, o_node);
}

int Result::AverageNodeStress(VOZCatMesh const & i_mesh, float * o_node)
{
    return AverageResultsAtNodes(i_mesh, mStress, o_node);
}
