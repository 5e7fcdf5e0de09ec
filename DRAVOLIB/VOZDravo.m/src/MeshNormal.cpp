// MeshNormal.cpp: element normals summed to one unit vector.

#include "MeshNormal.h"

#include "ElemNormal.h"
#include "Plane.h"
#include "RowMath.h"

static_assert(sizeof(void *) != 8 || sizeof(MeshNormal) == 32, "three doubles inline, and nothing else");

namespace
{
// Sums term(row, o_term) over all rows, in ascending order, and divides by the length of the sum: no guard.
template <class Term>
void unitSum(ElemNormal const & normals, double * o_sum, Term term)
{
    double sum[3] = {0.0, 0.0, 0.0};
    for (int e = 1; e <= normals.numNormal(); ++e)
    {
        double share[3];
        term(normals.data()[e], share);
        rowmath::add(sum, share);
    }
    rowmath::divide(sum, rowmath::length(sum));
    rowmath::copy(sum, o_sum);
}
} // namespace

MeshNormal::MeshNormal()
{
    init();
}

MeshNormal::MeshNormal(ElemNormal const & i_normals)
{
    compute(i_normals);
}

MeshNormal::MeshNormal(ElemNormal const & i_normals, Plane const & i_plane)
{
    compute(i_normals, i_plane);
}

MeshNormal::MeshNormal(ElemNormal const & i_normals, Plane const & i_first, Plane const & i_second)
{
    compute(i_normals, i_first, i_second);
}

MeshNormal::~MeshNormal() = default;

void MeshNormal::init()
{
    for (double & component : mNormal)
        component = 0.0;
}

void MeshNormal::compute(ElemNormal const & i_normals)
{
    unitSum(i_normals, mNormal, [](double const * n, double * o_share) { rowmath::copy(n, o_share); });
}

void MeshNormal::compute(ElemNormal const & i_normals, Plane const & i_plane)
{
    rowmath::PlaneRow const plane(i_plane);
    unitSum(i_normals, mNormal,
            [&plane](double const * n, double * o_share) { rowmath::project(plane.coefficient, n, o_share); });
}

void MeshNormal::compute(ElemNormal const & i_normals, Plane const & i_first, Plane const & i_second)
{
    Vec common = i_second.normal().cross(i_first.normal());
    common.unit();
    double const line[3] = {common[0], common[1], common[2]};
    unitSum(i_normals, mNormal,
            [&line](double const * n, double * o_share)
            {
                double const along = rowmath::dot(n, line);
                for (int i = 0; i < 3; ++i)
                    o_share[i] = along * line[i];
            });
}
