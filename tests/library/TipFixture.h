// TipFixture.h: what a tip gives, kept together, and how it is compared.

#ifndef TIPFIXTURE_H
#define TIPFIXTURE_H

#include "Tip.h"

#include "SampleMeshes.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VecInspection.h"

#include <gtest/gtest.h>

#include <array>

namespace tips
{
using Values = std::array<double, 3>;

struct Tipped
{
    VOZCatAxis axis;
    Symmetry symmetry;
    int numUnderCutElem = -1;
    double maxUnderCutAngle = -1;

    explicit Tipped(Tip & tip) { again(tip); }
    explicit Tipped(Tip && tip) { again(tip); }
    void again(Tip & tip) { tip.tip(axis, symmetry, numUnderCutElem, maxUnderCutAngle); }

    Values row(int i) const { return values(axis.axis(i)); }
    Values origin() const { return values(axis.origin()); }
};

inline void expectNear(Values const & actual, Values const & expected, double tolerance = 1e-12)
{
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

inline bool rightHanded(VOZCatAxis const & axis)
{
    return axis.axis(0).cross(axis.axis(1)).distance(axis.axis(2)) < 1e-9;
}

// A plate of 4 x 3, moved off the origin.
inline VOZCatMesh plate(double x = 5, double y = -7, double z = 2)
{
    samples::Grid grid;
    grid.columns = 4;
    grid.rows = 3;
    grid.x1 = 4;
    grid.y1 = 3;
    VOZCatMesh mesh = grid.mesh();
    mesh.Translate(vec(x, y, z));
    return mesh;
}
} // namespace tips

#endif
