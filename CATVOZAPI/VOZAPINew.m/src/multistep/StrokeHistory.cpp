// StrokeHistory.cpp: metrics of the shapes, seen from the flat.
//
// A shape is known to a point by A, the upper triangle with A^T A = metric of the shape in the flat's axes: it takes a
// vector of the flat to its image, in axes of the sheet's own. From shape j to k the inverse gradient is A_j A_k^-1.

#include "multistep/StrokeHistory.h"

#include <algorithm>
#include <cmath>

namespace voz::multistep
{

using geometry::IntegrationPoint;
using geometry::Mat2;
using geometry::Vec2;
using geometry::Vec3;
using material::PlaneTensor;

namespace
{

constexpr double kLeastShare = 1.0e-12; // of a metric's diagonal, where rounding would take the root of nothing

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

Mat2 inverse(Mat2 const & a)
{
    double const d = 1.0 / det(a);
    return {d * a.m22, -d * a.m12, -d * a.m21, d * a.m11};
}

// A of a shape. i_toPart: dx/dX of the formed part at the point, in its frame.
Mat2 stretch(IntegrationPoint const & i_point, Mat2 const & i_toPart, NodePlaces const & i_shape)
{
    Vec3 first, second; // of the shape's places, for the two axes of the point's frame
    for (std::size_t k = 0; k < at(i_point.count); ++k)
    {
        Vec3 const place = i_shape[at(i_point.node[k])];
        first = first + i_point.gradient[k].x * place;
        second = second + i_point.gradient[k].y * place;
    }
    Vec3 const a = i_toPart.m11 * first + i_toPart.m21 * second;
    Vec3 const b = i_toPart.m12 * first + i_toPart.m22 * second;
    double const along = length(a), across = dot(a, b) / along;
    return {along, across, 0.0, std::sqrt(std::max(dot(b, b) - across * across, kLeastShare * dot(b, b)))};
}

// A tensor of the sheet before a step, turned with the material. i_back: the step's inverse gradient, R^T V^-1.
PlaneTensor turned(Mat2 const & i_back, PlaneTensor const & a)
{
    double const angle = std::atan2(i_back.m12 - i_back.m21, i_back.m11 + i_back.m22);
    double const c = std::cos(angle), s = std::sin(angle), mixed = 2.0 * s * c * a.m12;
    return {c * c * a.m11 + s * s * a.m22 - mixed, s * s * a.m11 + c * c * a.m22 + mixed,
            s * c * (a.m11 - a.m22) + (c * c - s * s) * a.m12};
}

} // namespace

std::vector<onestep::PointHistory> strokeHistory(onestep::Piece const & i_piece,
                                                 std::vector<material::MembraneLaw> const & i_laws,
                                                 std::span<Vec2 const> i_flat, std::span<NodePlaces const> i_shapes)
{
    std::vector<onestep::PointHistory> all;
    if (i_shapes.empty())
        return all;
    all.reserve(i_piece.points.points.size());
    for (IntegrationPoint const & point : i_piece.points.points)
    {
        material::MembraneLaw const & law = i_laws[at(i_piece.material[at(point.cell)])];
        Mat2 const toFlat = onestep::inverseGradient(point, i_flat);
        Mat2 const toPart = inverse(toFlat);
        Mat2 before{1.0, 0.0, 0.0, 1.0};
        material::StepHistory history = noHistory(law);
        for (NodePlaces const & shape : i_shapes)
        {
            Mat2 const now = stretch(point, toPart, shape);
            Mat2 const back = before * inverse(now);
            history.start = turned(back, history.start);
            history = afterStep(law, history, onestep::strainTensor(onestep::evaluateStrain(back)));
            before = now;
        }
        history.start = turned(before * toFlat, history.start);
        all.push_back({before, history});
    }
    return all;
}

} // namespace voz::multistep
