// VOZUserUnitBase.h: the one source of conversion factors between the unit systems of the program.
//
// The pressures are rounded independently and are not exact inverses of one another; they stay as they stand.

#ifndef VOZUSERUNITBASE_H
#define VOZUSERUNITBASE_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo VOZUserUnitBase
{
public:
    VOZUserUnitBase() = default;
    VOZUserUnitBase(VOZUserUnitBase const &) = default;
    VOZUserUnitBase & operator=(VOZUserUnitBase const &) { return *this; } // there is nothing to assign

    static double InchToMm(double i_value);
    static double MmToInch(double i_value);
    static double MPaToPsi(double i_value);
    static double MPaToKsi(double i_value);
    static double PsiToMPa(double i_value);
    static double PsiToKsi(double i_value);
    static double KsiToPsi(double i_value);
    static double KsiToMPa(double i_value);
    static double N_to_mm_To_Lbf_to_in(double i_value);
    static double Lbf_to_in_To_N_to_mm(double i_value);
    static double TonneToLbf(double i_value);
    static double LbfToTonne(double i_value);
    static double NewtonToLbf(double i_value);
    static double LbfToNewton(double i_value);
    static double Ton_shortToLbf(double i_value);
    static double LbfToTon_short(double i_value);
    static double Ton_longToLbf(double i_value);
    static double LbfToTon_long(double i_value);
    static double LbToKg(double i_value);
    static double KgToLb(double i_value);

    // Engineering percent to true strain and back. At or below -98 percent the true strain is -3.91. FormingLimit has a
    // pair of its own with another cut; the two stay distinct.
    static double EngToTrueStrain(double i_percent);
    static double TrueToEngStrain(double i_true);
};

#endif
