// PointAlignment.h: a rigid motion that carries up to four source points onto target points.
//
// The method is the system's own: a chain of closed forms in which the first pairs count for more than the later ones,
// and no fit by least squares. Inside, points are single precision in millimetres and matrices are double; differences
// of points and cross products are single, all else is double.
//
// A matrix is 4 x 4, row after row: the rotation in the upper left, the translation in the last column, the last row
// 0, 0, 0, 1. The operations that return an int give 0, or 1 where it is said and for any null pointer.

#ifndef POINTALIGNMENT_H
#define POINTALIGNMENT_H

namespace pointalignment
{
int MatrixIdentity(double * o_matrix);
int MatrixCopy(double const * i_matrix, double * o_matrix);

// The turn through an angle about a unit axis through the origin.
int RotationFromAxis(double * o_matrix, double i_sinA, double i_cosA, float const * i_axis);

// The least turn that brings one direction onto the other. Parallel vectors give no turn, and opposite ones neither. 1,
// with the identity, if a vector has no length.
int RotationBetween(float const * i_from, float const * i_to, double * o_matrix);

// Targets a, sources b. The second pair fits exactly. 1, with the matrix left alone, if two points are one.
int FitTwoPoints(float const * a0, float const * a1, float const * b0, float const * b1, double * io_matrix);

// Turns the source's normal onto the target's; the mean of the three pairs fits.
int FitPlaneNormals(float const * na, float const * nb, float const * const (&a)[3], float const * const (&b)[3],
                    double * o_matrix);

enum FitMode
{
    kTranslation = 1, // the mean
    kCollinear = 2,   // FitTwoPoints, then a third of the rest at the third pair
    kPlane = 3        // FitPlaneNormals with the normals of both triangles
};
int FitThreePoints(float const * const (&a)[3], float const * const (&b)[3], int i_mode, double * io_matrix);
int FitFourPoints(float const * const (&a)[4], float const * const (&b)[4], int i_mode, double * io_matrix);

// 1, with the flag left alone, if the first two points are one.
int IsCollinear(float const * p0, float const * p1, float const * p2, int * o_flag);

// Points of i_count pairs, 3 doubles each, in metres; pairs beyond the fourth play no part. Without a pair (or an
// array) the identity. Where a fit of two points fails the identity stands in its place.
void AlignPoints(double const * i_target, double const * i_source, int i_count, double * o_matrix);
void TransformPoint(double * io_point, double const * i_matrix);
} // namespace pointalignment

#endif
