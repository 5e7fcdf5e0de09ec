// FormingLimit.h: how safe a point of the formed sheet is: one forming limit diagram, and two classifications against
// it.
//
// The limit curve is a pair of parabolas around FLD0, the major strain at plane strain. Strains are engineering
// percent; zones() turns them into true strains where it needs them.
//
// FormingLimit reads its thickness as metres, so that one in millimetres lands on the cap of 0.118 inches. Who wants
// millimetres honoured takes FLD0 from FldZero::CalculateFLD0 and gives it.

#ifndef FORMINGLIMIT_H
#define FORMINGLIMIT_H

#include "ExportedByVOZDravo.h"

class Material;

class ExportedByVOZDravo FormingLimit
{
public:
    FormingLimit(); // all zero
    // With i_fldZero exactly 0 and i_type 0, FLD0 is computed.
    FormingLimit(double i_rBar, double i_exponent, double i_thickness, double i_safetyMargin, double i_planeStrainTol,
                 double i_fldZero, int i_type);
    FormingLimit(Material const & i_material, double i_safetyMargin, double i_planeStrainTol, double i_fldZero,
                 int i_type);
    FormingLimit(FormingLimit const &) = default;
    FormingLimit & operator=(FormingLimit const &) = default;
    virtual ~FormingLimit();

    double thickness() const { return mThickness; }
    double rBar() const { return mRBar; }
    double exponent() const { return mExponent; }
    double safetyMargin() const { return mSafetyMargin; }     // percent major strain below the limit curve
    double planeStrainTol() const { return mPlaneStrainTol; } // percent of the major strain
    double fldZero() const { return mFldZero; }               // percent
    int type() const { return mType; }                        // 0 standard, 1 halves the linear term

    void computeZero();
    void computeZero(Material const & i_material);

    double engToTrueStrain(double i_percent) const; // -5.0 at or below -99 percent
    double trueToEngStrain(double i_true) const;
    double uniaxialTensionMinor(double i_major) const;
    double uniaxialCompressionMinor(double i_major) const;
    void factors(double i_minor, double & o_a, double & o_b) const;
    double limitCurveMajor(double i_minor) const;
    double safetyCurveMajor(double i_minor) const;

    // forming: -1 impossible, 0 biaxial stretching, 1 plane strain, 2 to uniaxial tension, 3 to pure shear, 4 to
    // uniaxial compression, 5 beyond. safety: -1 undefined, 0 failure, 1 marginal, 2 safe, 3 compression, 4 strong
    // compression (wrinkling). Limits of 0 switch their test off; the wrinkle limit plays no part.
    void zones(double i_major, double i_minor, int & o_forming, int & o_safety, double i_thinningLimit,
               double i_thinningMargin, double i_shearLimit, double i_shearMargin, double i_wrinkleLimit) const;

private:
    double mThickness;
    double mRBar;
    double mExponent;
    double mSafetyMargin;
    double mPlaneStrainTol;
    double mFldZero;
    int mType;
};

// A chosen FLD0, and the formula from a thickness in millimetres.
class ExportedByVOZDravo FldZero
{
public:
    FldZero() = default;
    FldZero(double const & i_zero) : mZero(i_zero) {}
    FldZero(FldZero const &) = default;
    FldZero & operator=(FldZero const &) = default;

    double zero() const { return mZero; }
    void zero(double i_value); // 1.0 if it is not within 0 .. 100
    int type() const { return mType; }
    void type(int i_value); // 0 if it is neither 0 nor 1

    static double CalculateFLD0(double i_thicknessMm, double i_n); // percent

private:
    double mZero = 1.0;
    int mType = 0;
};

#endif
