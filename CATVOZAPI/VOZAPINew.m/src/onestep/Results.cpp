// Results.cpp: the blank is flat, so all the curvature of the part is bending strain.

#include "onestep/Results.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace voz::onestep
{

using geometry::Curvature;
using geometry::IntegrationPoint;
using geometry::Vec2;
using geometry::Vec3;

namespace
{

constexpr double kGreatestBend = 1.9; // |K t|: keeps 1 + zeta K positive

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

Curvature fromPrincipal(geometry::PrincipalCurvature const & i_principal)
{
    double const c = i_principal.cosine, s = i_principal.sine;
    return {i_principal.k1 * c * c + i_principal.k2 * s * s, i_principal.k1 * s * s + i_principal.k2 * c * c,
            (i_principal.k1 - i_principal.k2) * s * c};
}

// i_beyond: what earlier steps of the stroke hardened with beyond the total strain.
double equivalentStress(material::MembraneLaw const & i_law, Strain const & i_strain, double i_beyond)
{
    double const mean = 0.5 * (i_strain.e11 + i_strain.e22);
    double const radius = std::hypot(0.5 * (i_strain.e11 - i_strain.e22), 0.5 * i_strain.shear);
    return i_law.curve().stress(i_law.equivalentStrain(mean + radius, mean - radius) + i_beyond);
}

// The force that passes between the nodes below a level and those above, greatest over all levels. Where a step turns
// the stress about, contact forces of either sign stand side by side, whose sizes add up to nothing that the punch
// feels.
double forceThroughLevels(Piece const & i_piece, std::vector<Vec3> const & i_forces)
{
    std::vector<std::size_t> order(i_forces.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b)
                     { return i_piece.mesh.position[a].z < i_piece.mesh.position[b].z; });
    double sum = 0.0, greatest = 0.0;
    for (std::size_t i = 0; i < order.size(); ++i)
    {
        sum += i_forces[order[i]].z;
        greatest = std::max(greatest, std::abs(sum));
    }
    return greatest;
}

} // namespace

Strain midStrain(PointStrain const & i_strain)
{
    double const c = i_strain.cosine, s = i_strain.sine;
    return {i_strain.h1 * c * c + i_strain.h2 * s * s, i_strain.h1 * s * s + i_strain.h2 * c * c,
            2.0 * (i_strain.h1 - i_strain.h2) * s * c};
}

Curvature bendingCurvature(Curvature const & i_mesh, std::array<double, 3> const * i_given, double i_thickness)
{
    geometry::PrincipalCurvature principal = principalCurvature(i_mesh);
    if (i_given != nullptr)
    {
        double const a = std::abs((*i_given)[0]), b = std::abs((*i_given)[1]);
        principal.k1 = std::copysign(std::max(a, b), principal.k1);
        principal.k2 = std::copysign(std::min(a, b), principal.k2);
    }
    double const limit = kGreatestBend / i_thickness;
    principal.k1 = std::clamp(principal.k1, -limit, limit);
    principal.k2 = std::clamp(principal.k2, -limit, limit);
    return fromPrincipal(principal);
}

Strain layerStrain(Strain const & i_mid, Curvature const & i_curvature, double i_zeta)
{
    geometry::PrincipalCurvature const p = principalCurvature(i_curvature);
    Curvature const bend = fromPrincipal({std::log1p(i_zeta * p.k1), std::log1p(i_zeta * p.k2), p.cosine, p.sine});
    return {i_mid.e11 + bend.k11, i_mid.e22 + bend.k22, i_mid.shear + 2.0 * bend.k12};
}

std::vector<PointResult> pointResults(MembraneSystem const & i_system, std::span<Vec2 const> i_flat,
                                      std::vector<std::array<double, 3>> const & i_given)
{
    Piece const & piece = i_system.piece();
    std::vector<Curvature> const curvatures =
        geometry::pointCurvatures(piece.mesh, piece.points, piece.symmetry, piece.rimSides);
    std::vector<PointResult> results;
    results.reserve(curvatures.size());
    for (std::size_t q = 0; q < curvatures.size(); ++q)
    {
        IntegrationPoint const & point = piece.points.points[q];
        material::MembraneLaw const & law = i_system.law(point.cell);
        PointStrain const strain = evaluateStrain(inverseGradient(point, i_flat));
        double const thickness = law.thickness() * strain.j;
        auto const * const given = i_given.empty() ? nullptr : &i_given[at(piece.elementOf[at(point.cell)])];
        Curvature const curvature = bendingCurvature(curvatures[q], given, thickness);
        double const sign = piece.mesh.cells[at(point.cell)].sign; // top is the side of the normal that came in
        PointResult result;
        result.mid = midStrain(strain);
        result.top = layerStrain(result.mid, curvature, 0.5 * sign * thickness);
        result.bottom = layerStrain(result.mid, curvature, -0.5 * sign * thickness);
        double const beyond = i_system.hardeningStrain(q, i_flat) - law.equivalentStrain(strain.h1, strain.h2);
        result.stress = {equivalentStress(law, result.mid, beyond), equivalentStress(law, result.top, beyond),
                         equivalentStress(law, result.bottom, beyond)};
        for (Strain * const layer : {&result.mid, &result.top, &result.bottom})
            layer->shear *= sign; // e2 of a turned cell looks the other way
        results.push_back(result);
    }
    return results;
}

PieceSummary summarise(MembraneSystem const & i_system, std::span<Vec2 const> i_flat)
{
    Piece const & piece = i_system.piece();
    PieceSummary summary;
    std::vector<Vec3> const forces = i_system.nodeForces(i_flat);
    for (Vec3 const & force : forces)
        summary.punchForce += 0.5 * std::abs(force.z);
    if (i_system.hasHistory())
        summary.punchForce = forceThroughLevels(piece, forces);
    double thinnest = 0.0;
    for (std::size_t q = 0; q < piece.points.points.size(); ++q)
    {
        IntegrationPoint const & point = piece.points.points[q];
        material::MembraneLaw const & law = i_system.law(point.cell);
        PointStrain const strain = evaluateStrain(inverseGradient(point, i_flat));
        double const equivalent = i_system.hardeningStrain(q, i_flat);
        double const thinning = strain.h1 + strain.h2; // -h3
        summary.greatestStrain = std::max(summary.greatestStrain, equivalent);
        // the sheet's volume is that of the blank: A t = A0 t0
        summary.work += point.area * law.thickness() * strain.j * law.curve().work(equivalent);
        if (law.moderationStart() > 0.0 && thinning > law.moderationStart())
        {
            ++summary.neckingPoints;
            if (thinning > thinnest)
            {
                thinnest = thinning;
                summary.neckingElement = piece.elementOf[at(point.cell)];
            }
        }
    }
    return summary;
}

} // namespace voz::onestep
