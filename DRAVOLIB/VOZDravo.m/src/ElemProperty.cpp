// ElemProperty.cpp: who owns the arrays of the process definition, and the few sums over them.
//
// The fields are plain pointers, as the record has it; beside each stands a keeper that copies of the object share.

#include "ElemProperty.h"

#include "CATFatalError.h"
#include "VOZMaterial.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <new>
#include <utility>

namespace
{
constexpr int kPointSize = 3;

// Rows 0 .. n, all zero.
template <class T>
T * NewRows(int n)
{
    return new T[static_cast<std::size_t>(std::max(n, 0)) + 1]();
}

double * CopyOfPoint(double const * i_point)
{
    double * const copy = new (std::nothrow) double[kPointSize];
    if (copy)
        std::copy(i_point, i_point + kPointSize, copy);
    return copy;
}

template <class Record, class Member>
int SumOver(Record const * records, int count, Member Record::*member)
{
    int sum = 0;
    for (int i = 1; i <= count; ++i)
        sum += records[i].*member;
    return sum;
}

double AverageOver(VOZMaterial * const * materials, int count, double VOZMaterial::*field)
{
    double sum = 0.0;
    for (int i = 1; i <= count; ++i)
        sum += materials[i]->*field;
    return sum / count; // NaN without a property
}
} // namespace

class ElemProperty::Keeper
{
public:
    explicit Keeper(std::function<void()> i_free, int i_rows = 0) : mFree(std::move(i_free)), mRows(i_rows) {}
    ~Keeper()
    {
        if (mFree)
            mFree();
    }
    Keeper(Keeper const &) = delete;
    Keeper & operator=(Keeper const &) = delete;

    void Share() { mShared = true; }
    int Rows() const { return mRows; }

    // An array that no copy holds is someone else's, who got it as a bare pointer and frees it.
    void LeaveBe()
    {
        if (!mShared)
            mFree = nullptr;
    }

private:
    std::function<void()> mFree;
    int mRows;
    bool mShared = false;
};

template <class T>
void ElemProperty::Take(int i_array, T *& io_field, T * i_rows)
{
    if (io_field == i_rows)
        return;
    mKeepers[i_array] = i_rows ? std::make_shared<Keeper>([i_rows] { delete[] i_rows; }) : nullptr;
    io_field = i_rows;
}

void ElemProperty::LeaveBe(int i_array)
{
    if (mKeepers[i_array])
        mKeepers[i_array]->LeaveBe();
    mKeepers[i_array].reset();
}

ElemProperty::ElemProperty()
{
    ZeroFields();
}

ElemProperty::ElemProperty(ElemProperty const & i_other)
{
    *this = i_other;
}

ElemProperty & ElemProperty::operator=(ElemProperty const & i_other)
{
    mMaterials = i_other.mMaterials;
    mLimits = i_other.mLimits;
    mPropertyIndex = i_other.mPropertyIndex;
    mNumProperty = i_other.mNumProperty;
    mNumPad = i_other.mNumPad;
    mPadValues = i_other.mPadValues;
    mPadSizes = i_other.mPadSizes;
    mPadNodes = i_other.mPadNodes;
    mPadXYZ = i_other.mPadXYZ;
    mNumDrawBead = i_other.mNumDrawBead;
    mDrawBeads = i_other.mDrawBeads;
    mNumBlankHolder = i_other.mNumBlankHolder;
    mBlankHolders = i_other.mBlankHolders;
    mNumDispBC = i_other.mNumDispBC;
    mDispBCs = i_other.mDispBCs;
    mAutoStrain = i_other.mAutoStrain;
    mTargetPoint = i_other.mTargetPoint;
    mRefPoint = i_other.mRefPoint;
    mTargetStrain = i_other.mTargetStrain;
    mRefStrain = i_other.mRefStrain;
    mAutoStrainValue = i_other.mAutoStrainValue;
    mSprinkbackFixity = i_other.mSprinkbackFixity;
    mAlignmentSize = i_other.mAlignmentSize;
    mAlignment = i_other.mAlignment;
    mTrimmingSize = i_other.mTrimmingSize;
    mTrimming = i_other.mTrimming;
    for (int i = 0; i < kNumArrays; ++i)
    {
        mKeepers[i] = i_other.mKeepers[i];
        if (mKeepers[i])
            mKeepers[i]->Share();
    }
    return *this;
}

ElemProperty::~ElemProperty()
{
    clear();
}

void ElemProperty::clear()
{
    for (std::shared_ptr<Keeper> & keeper : mKeepers)
        keeper.reset();
    ZeroFields();
}

void ElemProperty::ZeroFields()
{
    mMaterials = nullptr;
    mLimits = nullptr;
    mPropertyIndex = nullptr;
    mNumProperty = 0;
    ForgetPressPads();
    mNumDrawBead = 0;
    mDrawBeads = nullptr;
    mNumBlankHolder = 0;
    mBlankHolders = nullptr;
    mNumDispBC = 0;
    mDispBCs = nullptr;
    mAutoStrain = false;
    mTargetPoint = nullptr;
    mRefPoint = nullptr;
    mTargetStrain = 0.0;
    mRefStrain = 0.0;
    mAutoStrainValue = 0.0;
    mSprinkbackFixity = false;
    mAlignmentSize = 0;
    mAlignment = nullptr;
    mTrimmingSize = 0;
    mTrimming = nullptr;
}

void ElemProperty::sizeProperty(int p)
{
    mKeepers[kMaterials].reset();
    mNumProperty = std::max(p, 0);
    mMaterials = NewRows<VOZMaterial *>(mNumProperty);
    mKeepers[kMaterials] = std::make_shared<Keeper>(
        [rows = mMaterials, last = mNumProperty]
        {
            for (int i = 0; i <= last; ++i)
                if (rows[i])
                    rows[i]->Destroy();
            delete[] rows;
        });
    for (int i = 0; i <= mNumProperty; ++i)
        mMaterials[i] = VOZMaterial::Create();
    Take(kLimits, mLimits, NewRows<FormingLimit>(mNumProperty));
}

void ElemProperty::sizePropertyIndex(int n)
{
    int * const rows = NewRows<int>(n);
    mKeepers[kPropertyIndex] = std::make_shared<Keeper>([rows] { delete[] rows; }, std::max(n, 0));
    mPropertyIndex = rows;
}

int ElemProperty::sizePropertyIndex() const
{
    return mKeepers[kPropertyIndex] ? mKeepers[kPropertyIndex]->Rows() : 0;
}

void ElemProperty::sizePressPads(int n)
{
    clearPressPads();
    mNumPad = std::max(n, 0);
    int const last = mNumPad + 1; // pressPadSize lets the row behind the last pad pass
    Take(kPadValues, mPadValues, NewRows<double>(last));
    Take(kPadSizes, mPadSizes, NewRows<int>(last));
    mPadNodes = NewRows<int *>(last);
    mKeepers[kPadNodes] = std::make_shared<Keeper>(
        [rows = mPadNodes, last]
        {
            for (int i = 0; i <= last; ++i)
                delete[] rows[i];
            delete[] rows;
        },
        last + 1);
}

void ElemProperty::pressPadSize(int i, int i_size)
{
    if (i < 0 || i > mNumPad + 1 || !mKeepers[kPadNodes] || i >= mKeepers[kPadNodes]->Rows())
        return;
    int const size = std::max(i_size, 0);
    int * const nodes = NewRows<int>(size);
    delete[] mPadNodes[i];
    mPadNodes[i] = nodes;
    mPadSizes[i] = size;
}

void ElemProperty::pressPadSize(int * i_sizes)
{
    Take(kPadSizes, mPadSizes, i_sizes);
}

void ElemProperty::pressPadVal(double * i_values)
{
    Take(kPadValues, mPadValues, i_values);
}

void ElemProperty::pressPadXYZ(double ** i_xyz)
{
    if (mPadXYZ == i_xyz)
        return;
    mPadXYZ = i_xyz;
    mKeepers[kPadXYZ].reset();
    if (!i_xyz)
        return;
    mKeepers[kPadXYZ] = std::make_shared<Keeper>(
        [i_xyz, count = mNumPad]
        {
            for (int i = 0; i < count; ++i)
                delete[] i_xyz[i];
            delete[] i_xyz;
        });
}

void ElemProperty::ForgetPressPads()
{
    mNumPad = 0;
    mPadValues = nullptr;
    mPadSizes = nullptr;
    mPadNodes = nullptr;
    mPadXYZ = nullptr;
}

void ElemProperty::clearPressPads()
{
    for (int const array : {kPadValues, kPadSizes, kPadNodes, kPadXYZ})
        mKeepers[array].reset();
    ForgetPressPads();
}

void ElemProperty::setPressurePad()
{
    for (int const array : {kPadValues, kPadSizes, kPadNodes, kPadXYZ})
        LeaveBe(array);
    ForgetPressPads();
}

void ElemProperty::sizeDrawBeads(int n)
{
    mNumDrawBead = std::max(n, 0);
    Take(kDrawBeads, mDrawBeads, NewRows<DrawBead>(n));
}

int ElemProperty::totalDBEdges() const
{
    return SumOver(mDrawBeads, mNumDrawBead, &DrawBead::edgeCount);
}

void ElemProperty::clearDrawBeads()
{
    mNumDrawBead = 0;
    Take<DrawBead>(kDrawBeads, mDrawBeads, nullptr);
}

void ElemProperty::setDrawBeads()
{
    LeaveBe(kDrawBeads);
    mNumDrawBead = 0;
    mDrawBeads = nullptr;
}

void ElemProperty::sizeBlankHolders(int n)
{
    mNumBlankHolder = std::max(n, 0);
    Take(kBlankHolders, mBlankHolders, NewRows<BlankHolder>(n));
}

int ElemProperty::totalBHEdges() const
{
    return SumOver(mBlankHolders, mNumBlankHolder, &BlankHolder::edgeCount);
}

void ElemProperty::clearBlankHolders()
{
    mNumBlankHolder = 0;
    Take<BlankHolder>(kBlankHolders, mBlankHolders, nullptr);
}

void ElemProperty::setBlankHolders()
{
    LeaveBe(kBlankHolders);
    mNumBlankHolder = 0;
    mBlankHolders = nullptr;
}

void ElemProperty::sizeDispBC(int n)
{
    mNumDispBC = std::max(n, 0);
    Take(kDispBCs, mDispBCs, NewRows<DispBC>(n));
}

void ElemProperty::dispBCs(int i, DispBC & i_table)
{
    if (i <= mNumDispBC)
        mDispBCs[i] = i_table;
}

void ElemProperty::dispBCs(int i, VOZCatAxis & i_frame)
{
    if (i <= mNumDispBC)
        mDispBCs[i].frame = i_frame;
}

int ElemProperty::totalDispBCNodes() const
{
    return SumOver(mDispBCs, mNumDispBC, &DispBC::size);
}

void ElemProperty::clearDispBC()
{
    mNumDispBC = 0;
    Take<DispBC>(kDispBCs, mDispBCs, nullptr);
}

void ElemProperty::setDispBC()
{
    LeaveBe(kDispBCs);
    mNumDispBC = 0;
    mDispBCs = nullptr;
}

void ElemProperty::setAutoStrain(double const * i_target, double const * i_ref, double i_targetStrain,
                                 double i_refStrain, double i_value, bool i_on)
{
    mAutoStrain = i_on;
    if (i_target)
    {
        Take(kTargetPoint, mTargetPoint, CopyOfPoint(i_target));
        VOZ_CONTRACT(mTargetPoint, "mTargetPoint");
    }
    if (i_ref)
    {
        Take(kRefPoint, mRefPoint, CopyOfPoint(i_ref));
        VOZ_CONTRACT(mRefPoint, "mRefPoint");
    }
    mTargetStrain = i_targetStrain;
    mRefStrain = i_refStrain;
    mAutoStrainValue = i_value;
}

bool ElemProperty::getAutoStrain(double *& o_target, double *& o_ref, double & o_targetStrain, double & o_refStrain,
                                 double & o_value) const
{
    if (mTargetPoint)
    {
        o_target = CopyOfPoint(mTargetPoint);
        VOZ_CONTRACT(o_target, "o_arTarget");
    }
    if (mRefPoint)
    {
        o_ref = CopyOfPoint(mRefPoint);
        VOZ_CONTRACT(o_ref, "o_adRef");
    }
    o_targetStrain = mTargetStrain;
    o_refStrain = mRefStrain;
    o_value = mAutoStrainValue;
    return mAutoStrain;
}

void ElemProperty::setAlignment(int * i_nodes)
{
    Take(kAlignment, mAlignment, i_nodes);
}

void ElemProperty::setTrimming(int * i_elements)
{
    Take(kTrimming, mTrimming, i_elements);
}

double ElemProperty::averageThickness() const
{
    return AverageOver(mMaterials, mNumProperty, &VOZMaterial::m_dThickness);
}

double ElemProperty::averageYield() const
{
    return AverageOver(mMaterials, mNumProperty, &VOZMaterial::m_dYield);
}
