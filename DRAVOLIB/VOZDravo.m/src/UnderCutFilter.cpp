// UnderCutFilter.cpp: elements against a stamping direction.

#include "UnderCutFilter.h"

#include "ElemNormal.h"
#include "RowMath.h"

#include <cmath>

namespace
{
constexpr double kRightAngle = 1.5707963267948966;
constexpr double kDegreesPerRadian = 57.29577951308232;
} // namespace

UnderCutFilter::UnderCutFilter(ElemNormal const & i_normals, Vec const & i_direction)
    : mNumUnderCutElem(0), mMaxUnderCutAngle(0.0F),
      mMark(new int[static_cast<std::size_t>(i_normals.numNormal()) + 1]())
{
    double const direction[3] = {i_direction[0], i_direction[1], i_direction[2]};
    double worst = 2.0; // the cosine behind the present maximum: the angle grows as it falls
    for (int e = 1; e <= i_normals.numNormal(); ++e)
    {
        double const * const normal = i_normals.data()[e];
        double const d = rowmath::dot(direction, normal);
        if (!(d < 0.0))
            continue;
        mMark[e] = 1;
        ++mNumUnderCutElem;
        double const cosine = d / rowmath::length(normal);
        if (!(cosine < worst))
            continue; // not above the maximum, and so no need of its angle
        double const angle = (std::acos(cosine) - kRightAngle) * kDegreesPerRadian;
        if (angle > static_cast<double>(mMaxUnderCutAngle))
        {
            mMaxUnderCutAngle = static_cast<float>(angle);
            worst = cosine;
        }
    }
}

UnderCutFilter::~UnderCutFilter()
{
    delete[] mMark;
}
