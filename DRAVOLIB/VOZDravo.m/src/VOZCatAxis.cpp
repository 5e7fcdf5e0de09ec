// VOZCatAxis.cpp: a local coordinate frame.

#include "VOZCatAxis.h"

#include "RowMath.h"

static_assert(sizeof(VOZCatAxis) == sizeof(void *) + 12 * sizeof(double),
              "a frame is twelve doubles, and nothing else");

VOZCatAxis::VOZCatAxis()
{
    init();
}

VOZCatAxis::VOZCatAxis(VOZCatAxis const & i_other) = default;
VOZCatAxis::~VOZCatAxis() = default;
VOZCatAxis & VOZCatAxis::operator=(VOZCatAxis const & i_other) = default;

void VOZCatAxis::init()
{
    for (int i = 0; i < 3; ++i)
    {
        for (int j = 0; j < 3; ++j)
            mAxis[i][j] = i == j ? 1.0 : 0.0;
        mOrigin[i] = 0.0;
    }
}

Vec VOZCatAxis::axis(int i) const
{
    return Vec(mAxis[i]);
}

void VOZCatAxis::axis(int i, Vec const & i_axis)
{
    for (int j = 0; j < 3; ++j)
        mAxis[i][j] = i_axis[j];
}

Vec VOZCatAxis::origin() const
{
    return Vec(mOrigin);
}

void VOZCatAxis::origin(Vec const & i_origin)
{
    for (int i = 0; i < 3; ++i)
        mOrigin[i] = i_origin[i];
}

Vec VOZCatAxis::fromGlobal(Vec const & p) const
{
    double const global[3] = {p[0], p[1], p[2]};
    double local[3];
    rowmath::Frame(*this).fromGlobal(global, local);
    return Vec(static_cast<double const *>(local));
}

Vec VOZCatAxis::toGlobal(Vec const & q) const
{
    double const local[3] = {q[0], q[1], q[2]};
    double global[3];
    rowmath::Frame(*this).toGlobal(local, global);
    return Vec(static_cast<double const *>(global));
}

void VOZCatAxis::orient()
{
    Vec z = axis(2);
    z.unit();
    Vec rightHanded = axis(0).cross(axis(1));
    rightHanded.unit();
    if (z.dot(rightHanded) < 0.0)
        axis(2, rightHanded);
}
