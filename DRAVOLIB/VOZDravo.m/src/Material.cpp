// Material.cpp: the sheet material's two tables and its uneven copies.

#include "Material.h"

#include <algorithm>
#include <cstddef>

namespace
{
using Row2 = double[2];

// n points need n + 1 rows, the last one spare.
Row2 * NewTable(int n)
{
    return n > 0 ? new Row2[static_cast<std::size_t>(n) + 1]() : nullptr;
}

Row2 * CopyOfTable(Row2 const * rows, int n)
{
    Row2 * const copy = NewTable(n);
    if (copy)
        std::copy(&rows[0][0], &rows[0][0] + 2 * static_cast<std::ptrdiff_t>(n), &copy[0][0]);
    return copy;
}

void ReplaceTable(Row2 *& io_rows, int & io_count, Row2 const * i_rows, int i_count)
{
    Row2 * const copy = CopyOfTable(i_rows, i_count);
    delete[] io_rows;
    io_rows = copy;
    io_count = i_count;
}
} // namespace

Material::Material() : Material(1.0, 1.4, 0.21, 586.054, 227.527) {}

Material::Material(double i_thickness, double i_rBar, double i_nvalue, double i_intercept, double i_yield)
    : mThickness(i_thickness), mRBar(i_rBar), mNvalue(i_nvalue), mIntercept(i_intercept), mYield(i_yield), mNumSS(0),
      mSS(nullptr), mNumFLC(0), mFLC(nullptr)
{
}

Material::Material(double i_thickness, double i_rBar, double i_nvalue, double i_intercept, double i_yield, int i_numSS,
                   int i_numFLC)
    : Material(i_thickness, i_rBar, i_nvalue, i_intercept, i_yield)
{
    sizeSSData(i_numSS);
    sizeFLCData(i_numFLC);
}

Material::Material(Material const & i_other)
    : Material(i_other.mThickness, i_other.mRBar, i_other.mNvalue, i_other.mIntercept, i_other.mYield)
{
}

Material::~Material()
{
    delete[] mSS;
    delete[] mFLC;
}

Material & Material::operator=(Material const & i_other)
{
    if (this == &i_other)
        return *this;
    mThickness = i_other.mThickness;
    mRBar = i_other.mRBar;
    mNvalue = i_other.mNvalue;
    mIntercept = i_other.mIntercept;
    mYield = i_other.mYield;
    mName = i_other.mName;

    ReplaceTable(mSS, mNumSS, i_other.mSS, i_other.mNumSS);
    ReplaceTable(mFLC, mNumFLC, i_other.mFLC, i_other.mNumFLC);
    return *this;
}

void Material::sizeSSData(int n)
{
    if (n <= 0)
        return;
    mNumSS = n;
    mSS = NewTable(n);
}

void Material::sizeFLCData(int n)
{
    if (n <= 0)
        return;
    mNumFLC = n;
    mFLC = NewTable(n);
}
