// VOZUserUnitBase.cpp: the factors, each in one place.

#include "VOZUserUnitBase.h"

#include <cmath>

namespace
{
constexpr double kMmPerInch = 25.4;
constexpr double kPsiPerMPa = 145.033;
constexpr double kKsiPerMPa = 0.145033;
constexpr double kMPaPerPsi = 0.006895;
constexpr double kKsiPerPsi = 0.001;
constexpr double kPsiPerKsi = 1000.0;
constexpr double kMPaPerKsi = 6.895;
constexpr double kLbfPerInchPerNPerMm = 5.7101;
constexpr double kLbfPerTonne = 2204.6225;
constexpr double kNPerLbf = 4.44822;
constexpr double kLbfPerShortTon = 2000.0;
constexpr double kLbfPerLongTon = 2240.0;
constexpr double kKgPerLb = 0.4536;

constexpr double kCutPercent = -98.0;
constexpr double kTrueStrainAtCut = -3.91; // ln(0.02), rounded
} // namespace

double VOZUserUnitBase::InchToMm(double i_value)
{
    return i_value * kMmPerInch;
}

double VOZUserUnitBase::MmToInch(double i_value)
{
    return i_value / kMmPerInch;
}

double VOZUserUnitBase::MPaToPsi(double i_value)
{
    return i_value * kPsiPerMPa;
}

double VOZUserUnitBase::MPaToKsi(double i_value)
{
    return i_value * kKsiPerMPa;
}

double VOZUserUnitBase::PsiToMPa(double i_value)
{
    return i_value * kMPaPerPsi;
}

double VOZUserUnitBase::PsiToKsi(double i_value)
{
    return i_value * kKsiPerPsi;
}

double VOZUserUnitBase::KsiToPsi(double i_value)
{
    return i_value * kPsiPerKsi;
}

double VOZUserUnitBase::KsiToMPa(double i_value)
{
    return i_value * kMPaPerKsi;
}

double VOZUserUnitBase::N_to_mm_To_Lbf_to_in(double i_value)
{
    return i_value * kLbfPerInchPerNPerMm;
}

double VOZUserUnitBase::Lbf_to_in_To_N_to_mm(double i_value)
{
    return i_value / kLbfPerInchPerNPerMm;
}

double VOZUserUnitBase::TonneToLbf(double i_value)
{
    return i_value * kLbfPerTonne;
}

double VOZUserUnitBase::LbfToTonne(double i_value)
{
    return i_value / kLbfPerTonne;
}

double VOZUserUnitBase::NewtonToLbf(double i_value)
{
    return i_value / kNPerLbf;
}

double VOZUserUnitBase::LbfToNewton(double i_value)
{
    return i_value * kNPerLbf;
}

double VOZUserUnitBase::Ton_shortToLbf(double i_value)
{
    return i_value * kLbfPerShortTon;
}

double VOZUserUnitBase::LbfToTon_short(double i_value)
{
    return i_value / kLbfPerShortTon;
}

double VOZUserUnitBase::Ton_longToLbf(double i_value)
{
    return i_value * kLbfPerLongTon;
}

double VOZUserUnitBase::LbfToTon_long(double i_value)
{
    return i_value / kLbfPerLongTon;
}

double VOZUserUnitBase::LbToKg(double i_value)
{
    return i_value * kKgPerLb;
}

double VOZUserUnitBase::KgToLb(double i_value)
{
    return i_value / kKgPerLb;
}

double VOZUserUnitBase::EngToTrueStrain(double i_percent)
{
    return i_percent > kCutPercent ? std::log(i_percent / 100.0 + 1.0) : kTrueStrainAtCut;
}

double VOZUserUnitBase::TrueToEngStrain(double i_true)
{
    return (std::exp(i_true) - 1.0) * 100.0;
}
