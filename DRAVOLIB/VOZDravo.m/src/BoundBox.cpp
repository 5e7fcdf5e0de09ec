// BoundBox.cpp: growing an axis-parallel box.

#include "BoundBox.h"

#include <limits>
#include <utility>

static_assert(sizeof(BoundBox) == 6 * sizeof(double), "a box is its two corners, and nothing else");

Vec BoundBox::lower() const
{
    return Vec(mLower);
}

Vec BoundBox::upper() const
{
    return Vec(mUpper);
}

void BoundBox::reset()
{
    for (int i = 0; i < 3; ++i)
    {
        mLower[i] = std::numeric_limits<double>::max();
        mUpper[i] = -std::numeric_limits<double>::max();
    }
}

void BoundBox::encompass(Vec const & p)
{
    expandLower(p);
    expandUpper(p);
}

void BoundBox::encompass(BoundBox const & i_box)
{
    // Corner by corner: the corners of an empty box fail both tests, though neither is a point of it.
    for (int i = 0; i < 3; ++i)
    {
        if (i_box.mLower[i] < mLower[i])
            mLower[i] = i_box.mLower[i];
        if (i_box.mUpper[i] > mUpper[i])
            mUpper[i] = i_box.mUpper[i];
    }
}

void BoundBox::expandLower(Vec const & p)
{
    for (int i = 0; i < 3; ++i)
        if (p[i] < mLower[i])
            mLower[i] = p[i];
}

void BoundBox::expandUpper(Vec const & p)
{
    for (int i = 0; i < 3; ++i)
        if (p[i] > mUpper[i])
            mUpper[i] = p[i];
}

void BoundBox::conform()
{
    for (int i = 0; i < 3; ++i)
        if (mLower[i] > mUpper[i])
            std::swap(mLower[i], mUpper[i]);
}
