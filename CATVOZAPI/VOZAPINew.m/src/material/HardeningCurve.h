// HardeningCurve.h: the uniaxial curve of deformation theory, from the elastic line to large strains.
//
//     sbar(e) = S(e) e,   Et = d sbar / d e        e: total log strain >= 0; stresses in Pa
//
// Built in three layers: the user's curve (power law or table), a floor under its logarithmic slope that keeps the
// membrane elliptic, and the elastic line joined by a smooth minimum. A value class; the law must have passed the
// checks of the solver (positive stresses, ascending strains).

#ifndef HARDENINGCURVE_H
#define HARDENINGCURVE_H

#include "onestep/OneStep.h"

namespace voz::material
{

// Settings of the law. lineShare and youngsFactor serve the fallbacks of the solver alone.
struct LawOptions
{
    double kappa = 1.2;        // hardening floor; 0: none
    double theta = 0.9;        // thickness moderation from theta n on; 0: none
    double lineShare = 0.0;    // share of the straight line K e in the base curve
    double youngsFactor = 1.0; // on Young's modulus
};

class HardeningCurve
{
public:
    HardeningCurve(onestep::MaterialLaw const & i_law, LawOptions const & i_options);

    struct Moduli
    {
        double secant;  // S
        double tangent; // Et
    };
    // i_before: strain of earlier steps, from where the curve goes on; the elastic line starts anew at i_strain = 0.
    Moduli moduli(double i_strain, double i_before = 0.0) const;
    double stress(double i_strain) const { return moduli(i_strain).secant * i_strain; } // sbar
    double work(double i_strain) const;                                                 // integral of sbar, J/m^3

    // The curve without the elastic line.
    struct Plastic
    {
        double stress, slope;
    };
    Plastic plastic(double i_strain) const;

    // Where the floor first takes over; a negative number if nowhere.
    double floorStart() const;

    double youngsModulus() const { return m_youngsModulus; }

    // The strain at which a bar of this curve would neck: the exponent of a power law; of a table the strain where the
    // logarithmic slope is 1, held between 0.02 and 0.5.
    double neckingStrain() const { return m_neckingStrain; }

private:
    struct Span // of strain, with the base curve or the floor's own curve, times a factor
    {
        double start;
        bool isFloor;
        double factor;
    };

    void layTable(onestep::MaterialLaw const & i_law);
    Plastic tableValue(double i_strain) const;
    Plastic base(double i_strain) const;
    double logSlope(double i_strain) const; // of the base curve
    void layFloor();
    double crossing(double i_low, double i_high) const;
    double findNeckingStrain() const;

    bool m_isTable = false;
    double m_strength = 0.0, m_exponent = 0.0, m_prestrain = 0.0; // K, n, e0
    std::vector<double> m_strain, m_stress, m_slope;              // table: points and Fritsch-Carlson slopes
    double m_tailExponent = 0.0;                                  // power law beyond the table
    double m_lineShare = 0.0, m_lineModulus = 0.0;
    double m_kappa = 0.0;
    double m_youngsModulus = 0.0;
    double m_neckingStrain = 0.0;
    std::vector<Span> m_spans; // ascending; the first starts at 0
};

} // namespace voz::material

#endif
