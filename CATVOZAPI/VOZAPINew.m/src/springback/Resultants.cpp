// Resultants.cpp: sigma(z) = S D h(z) over the thickness,  N = int sigma dz,  M = int sigma z dz.
//
// h(z) is the strain of the layer z, deformation theory as in the one-step solve. The elastic core is a kink in the
// middle of the sheet, so that each half has a Gauss-Legendre rule of its own, of six points; one rule of twelve points
// over the whole would err ten times as much.

#include "springback/Resultants.h"

namespace voz::springback
{

namespace
{

constexpr std::array<double, 3> kAbscissa = {0.2386191860831969, 0.6612093864662645, 0.9324695142031521};
constexpr std::array<double, 3> kWeight = {0.4679139345726910, 0.3607615730481386, 0.1713244923791704};

} // namespace

Resultants integrateStress(material::MembraneLaw const & i_law, onestep::Strain const & i_mid,
                           geometry::Curvature const & i_curvature, double i_thickness)
{
    Resultants sum;
    sum.thickness = i_thickness;
    double const quarter = 0.25 * i_thickness;
    for (double const half : {-quarter, quarter}) // the middles of the halves
        for (std::size_t k = 0; k < kAbscissa.size(); ++k)
            for (double const sign : {-1.0, 1.0})
            {
                double const z = half + sign * kAbscissa[k] * quarter;
                onestep::Strain const h = onestep::layerStrain(i_mid, i_curvature, z);
                material::MembraneLaw::Stress const s = i_law.stress(h.e11, h.e22, 0.5 * h.shear);
                Eigen::Vector3d const stress(s.s11, s.s22, s.s12);
                sum.force += kWeight[k] * quarter * stress;
                sum.moment += kWeight[k] * quarter * z * stress;
            }
    return sum;
}

Resultants turned(Resultants const & i_resultants, double i_cosine, double i_sine)
{
    double const c = i_cosine, s = i_sine;
    Eigen::Matrix3d turn;
    turn << c * c, s * s, -2.0 * c * s, s * s, c * c, 2.0 * c * s, c * s, -c * s, c * c - s * s;
    return {turn * i_resultants.force, turn * i_resultants.moment, i_resultants.thickness};
}

} // namespace voz::springback
