// Material.h: the sheet material as the file route and the forming limit use it; and the coefficient of friction.
//
// Lengths in mm, stresses in MPa. (The kernel's VOZMaterial is another class, in metres and pascals.)
// A table of n points holds n + 1 rows, zero to begin with: points are rows 0 .. n - 1, the last row is spare. The
// table accessors check nothing.
//
// Copy construction takes the five numbers alone; assignment is deep.

#ifndef MATERIAL_H
#define MATERIAL_H

#include "CATUnicodeString.h"
#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo Material
{
public:
    Material();
    Material(double i_thickness, double i_rBar, double i_nvalue, double i_intercept, double i_yield);
    Material(double i_thickness, double i_rBar, double i_nvalue, double i_intercept, double i_yield, int i_numSS,
             int i_numFLC);
    Material(Material const & i_other); // no tables, no name
    ~Material();
    Material & operator=(Material const & i_other); // tables and name too

    double thickness() const { return mThickness; } // mm
    void setThickness(double i_thickness) { mThickness = i_thickness; }
    double rBar() const { return mRBar; }
    double nvalue() const { return mNvalue; }
    double exponent() const { return mNvalue; }     // the same field
    double intercept() const { return mIntercept; } // K, MPa
    double yield() const { return mYield; }         // MPa

    int numSSPoints() const { return mNumSS; }
    double SSPoint(int i_row, int i_col) const { return mSS[i_row][i_col]; } // log plastic strain, MPa
    void setSSData(int i_row, int i_col, double i_value) { mSS[i_row][i_col] = i_value; }
    void sizeSSData(int n); // nothing if n is not above 0; once on a fresh object: an earlier table is not freed
    int numFLCPoints() const { return mNumFLC; }
    double FLCPoint(int i_row, int i_col) const { return mFLC[i_row][i_col]; }
    void setFLCData(int i_row, int i_col, double i_value) { mFLC[i_row][i_col] = i_value; }
    void sizeFLCData(int n);

    CATUnicodeString GetName() const { return mName; }
    void SetName(CATUnicodeString & i_name) { mName = i_name; }

private:
    double mThickness;
    double mRBar;
    double mNvalue;
    double mIntercept;
    double mYield;
    int mNumSS;
    double (*mSS)[2];
    int mNumFLC;
    double (*mFLC)[2];
    CATUnicodeString mName;
};

class ExportedByVOZDravo Friction
{
public:
    double coefficient() const { return mCoefficient; }
    void coefficient(double i_value) { mCoefficient = i_value; }

private:
    double mCoefficient = 0.15;
};

#endif
