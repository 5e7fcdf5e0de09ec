// Vec.cpp: the three storage modes of the 3-vector.

#include "Vec.h"

#include "RowMath.h"

#include <memory>

static_assert(sizeof(Vec) == 2 * sizeof(void *), "a vector is its block and its count, and nothing else");

namespace
{
constexpr double kZero[3] = {0.0, 0.0, 0.0};

double * newBlock(double x, double y, double z)
{
    return new double[3]{x, y, z};
}
} // namespace

Vec::Vec() : Vec(kZero) {}

Vec::Vec(double const * i_row) : mValues(nullptr), mCount(nullptr)
{
    std::unique_ptr<double[]> block(newBlock(i_row[0], i_row[1], i_row[2]));
    mCount = new int(1);
    mValues = block.release();
}

Vec::Vec(float * i_row)
    : mValues(newBlock(static_cast<double>(i_row[0]), static_cast<double>(i_row[1]), static_cast<double>(i_row[2]))),
      mCount(nullptr)
{
}

Vec::Vec(double x, double y, double z) : mValues(newBlock(x, y, z)), mCount(nullptr) {}

Vec::Vec(Vec const & i_other) : mValues(i_other.mValues), mCount(i_other.mCount)
{
    increment();
    if (!mCount)
        copy();
}

// A vector of count 1 assigned to itself is outside the contract, so there is no test.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
Vec & Vec::operator=(Vec const & i_other)
{
    if (!mCount || (*mCount == 1 && !i_other.mCount))
    {
        for (int i = 0; i < 3; ++i)
            mValues[i] = i_other.mValues[i];
        return *this;
    }
    release();
    mValues = i_other.mValues;
    mCount = i_other.mCount;
    increment();
    if (!mCount)
        copy();
    return *this;
}

Vec & Vec::operator=(double * i_row)
{
    release();
    mValues = i_row;
    mCount = nullptr;
    return *this;
}

Vec & Vec::operator=(double const * i_row)
{
    Vec const fresh(i_row); // before the release: the row may lie in this vector's own block
    release();
    mValues = fresh.mValues;
    mCount = fresh.mCount;
    increment();
    return *this;
}

void Vec::zero()
{
    *this = Vec();
}

Vec & Vec::operator+=(Vec const & i_other)
{
    unique();
    for (int i = 0; i < 3; ++i)
        mValues[i] += i_other.mValues[i];
    return *this;
}

Vec & Vec::operator-=(Vec const & i_other)
{
    unique();
    for (int i = 0; i < 3; ++i)
        mValues[i] -= i_other.mValues[i];
    return *this;
}

Vec & Vec::operator*=(double i_factor)
{
    unique();
    for (int i = 0; i < 3; ++i)
        mValues[i] *= i_factor;
    return *this;
}

Vec & Vec::operator/=(double i_divisor)
{
    unique();
    rowmath::divide(mValues, i_divisor);
    return *this;
}

double & Vec::operator[](int i)
{
    unique();
    return mValues[i];
}

double Vec::dot(Vec const & i_other) const
{
    return rowmath::dot(mValues, i_other.mValues);
}

double Vec::length() const
{
    return rowmath::length(mValues);
}

double Vec::distance(Vec const & i_other) const
{
    return rowmath::distance(mValues, i_other.mValues);
}

double Vec::area(Vec const & b, Vec const & c) const
{
    double toB[3];
    double toC[3];
    double product[3];
    rowmath::subtract(b.mValues, mValues, toB);
    rowmath::subtract(c.mValues, mValues, toC);
    rowmath::cross(toB, toC, product);
    return 0.5 * rowmath::length(product);
}

Vec Vec::cross(Vec const & i_other) const
{
    double product[3];
    rowmath::cross(mValues, i_other.mValues, product);
    return Vec(static_cast<double const *>(product));
}

void Vec::unit()
{
    *this /= length();
}

Vec Vec::operator-() const
{
    double const result[3] = {-mValues[0], -mValues[1], -mValues[2]};
    return Vec(result);
}

Vec Vec::operator+(Vec const & i_other) const
{
    double result[3];
    rowmath::copy(mValues, result);
    rowmath::add(result, i_other.mValues);
    return Vec(static_cast<double const *>(result));
}

Vec Vec::operator-(Vec const & i_other) const
{
    double result[3];
    rowmath::subtract(mValues, i_other.mValues, result);
    return Vec(static_cast<double const *>(result));
}

Vec Vec::operator*(double i_factor) const
{
    double const result[3] = {mValues[0] * i_factor, mValues[1] * i_factor, mValues[2] * i_factor};
    return Vec(result);
}

Vec Vec::operator/(double i_divisor) const
{
    double const result[3] = {mValues[0] / i_divisor, mValues[1] / i_divisor, mValues[2] / i_divisor};
    return Vec(result);
}

bool Vec::operator==(Vec const & i_other) const
{
    return mValues[0] == i_other.mValues[0] && mValues[1] == i_other.mValues[1] && mValues[2] == i_other.mValues[2];
}

bool Vec::operator!=(Vec const & i_other) const
{
    return !(*this == i_other);
}

void Vec::increment()
{
    if (mCount)
        ++*mCount;
}

void Vec::copy()
{
    std::unique_ptr<double[]> block(newBlock(mValues[0], mValues[1], mValues[2]));
    std::unique_ptr<int> count(new int(1));
    release();
    mValues = block.release();
    mCount = count.release();
}

void Vec::unique()
{
    if (mCount && *mCount > 1)
        copy();
}

void Vec::release()
{
    if (!mCount || --*mCount > 0)
        return;
    delete[] mValues;
    delete mCount;
}
