// VOZSolverIncrementalProcess.cpp: the numbers of the process: times, refinement, mass scaling, the stress of the
// blank.
//
// The punch moves on a trapezoid of velocity: it gains v at the acceleration a, keeps it, and loses it again. It so
// covers d0 = v^2 / (2 a) at either end, and the stroke S in the time S / v + v / a.

#include "VOZSolverIncremental.h"

#include "CATFatalError.h"
#include "Material.h"
#include "VOZIncrementalSettings.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>

namespace
{
constexpr double kSpeedOfSound = 5100.0; // of steel, m/s
constexpr int kOffsetTools = 1;          // the mode in which punch and binder keep a thickness off the sheet
constexpr double kAsciiDivisor = -10.0;  // the sign switches the ASCII output off

constexpr double kMillimetresPerMetre = 1000.0;
constexpr double kPassesPerMillimetre = 0.5; // of a long stroke
constexpr double kLongStroke = 80.0;         // mm

constexpr double kThinSheet = 0.001; // m; below it the tools are made denser
constexpr double kDenseTools = 10.0;

constexpr int kTableCurve = 2;
constexpr double kLeastStep = 1.0e-05;  // of a table's strains
constexpr double kElasticStrain = 0.02; // the power law begins there
constexpr double kLargeStrain = 0.7;    // it is steeper from there on
constexpr int kFewestOutputs = 2;       // positions must be more

// The size that halving from level to level ends at; it stops below i_dLeast.
double Refined(double i_dSize, int i_nLevel, double i_dLeast)
{
    double dSize = i_dSize;
    for (int nLevel = 1; nLevel < i_nLevel && dSize >= i_dLeast; ++nLevel)
    {
        double const dHalf = dSize / 2.0;
        if (dHalf == dSize) // 0 or infinite: it never gets there
            break;
        dSize = dHalf;
    }
    return dSize;
}

// The stress at a strain on a table of rows (strain, stress), strains rising; held at both ends.
double Interpolate(double const * i_padPointsXY, int i_nNumPoints, double i_dX)
{
    if (!VOZ_CONTRACT(i_nNumPoints > 0 && i_padPointsXY, "i_nNumPoints > 0 && i_padPointsXY"))
        return 0.0;
    auto const x = [=](int k) { return i_padPointsXY[2 * static_cast<std::ptrdiff_t>(k)]; };
    auto const y = [=](int k) { return i_padPointsXY[2 * static_cast<std::ptrdiff_t>(k) + 1]; };
    int const nLast = i_nNumPoints - 1;
    if (i_dX >= x(nLast))
        return y(nLast);
    if (i_dX <= x(0))
        return y(0);
    for (int k = 1; k <= nLast; ++k)
    {
        if (!(i_dX <= x(k)))
            continue;
        double const dStepX = x(k) - x(k - 1);
        VOZ_CONTRACT(dStepX >= 0.0, "dStepX >= 0.0");
        if (dStepX < kLeastStep)
            return y(k);
        return y(k - 1) + (y(k) - y(k - 1)) * (i_dX - x(k - 1)) / dStepX;
    }
    VOZ_CONTRACT(false, "false");
    return y(nLast);
}
} // namespace

void VOZSolverIncremental::EvalToolOffsets()
{
    bool const isOffset = m_nToolOffsetMode == kOffsetTools;
    m_dOffsetDie = 0.0;
    m_dOffsetPunch = isOffset ? -m_dThickness : 0.0;
    m_dOffsetBinder = m_dOffsetPunch;
}

void VOZSolverIncremental::EvalKinematics()
{
    m_nAdaptivityLevel = m_pSettings->m_nAdaptivityLevel;
    m_dPunchRampTime = m_dPunchVelocity / m_dPunchAcceleration;
    m_dTerminationTime = m_dPunchStroke / m_dPunchVelocity + m_dPunchRampTime;
    m_dPunchPlateauTime = m_dTerminationTime - 2.0 * m_dPunchRampTime;
    m_dAsciiOutputInterval = m_dTerminationTime / kAsciiDivisor;
    m_dBinaryOutputInterval = m_dTerminationTime / (static_cast<double>(m_nOutputPoints) - 1.0);
    // The way that the binder has to close, at its own acceleration.
    m_dBinderCloseTime =
        std::sqrt((m_dThickness * m_dBinderGapFactor * 2.0) / (m_dBinderAccelFactor * m_dPunchAcceleration));
}

void VOZSolverIncremental::EvalAdaptivity()
{
    double const dStroke = m_dPunchStroke * kMillimetresPerMetre;
    bool const isByStroke = m_dPunchStroke > m_pSettings->m_dStrokeThreshold || dStroke > kLongStroke;
    m_dAdaptFrequency =
        m_dTerminationTime / (isByStroke ? dStroke * kPassesPerMillimetre : m_pSettings->m_nAdaptivePasses);
    m_dAdaptSize = m_dThickness * m_pSettings->m_dAdaptSizeFactor;
    m_nAdaptPass = 1;
    m_nAdaptRefine = 0;
    m_dAdaptEnergy = m_dThickness * m_pSettings->m_dAdaptEnergyFactor;
    m_dAdaptThickness = m_dThickness * m_pSettings->m_dAdaptThicknessFactor;
    m_nIadpn90 = m_pSettings->m_nIadpn90;
    m_dMassScalingTimeStep =
        EvalMassScalingParameter(m_nAdaptivityLevel, m_dMinBlankElementSize, m_dMaxBlankElementSize,
                                 m_pSettings->m_dDT2MSFactor, kSpeedOfSound, m_dAdaptSize);
}

void VOZSolverIncremental::EvalCardValues()
{
    m_nHourglassType = m_pSettings->m_nHourglassType;
    m_dBlankIntegrationPoints = m_pSettings->m_nIntegrationPoints;
    m_dToolIntegrationPoints = m_dBlankIntegrationPoints;
    m_dBeadDepth = m_dThickness;
    m_dToolDensityFactor = m_dThickness < kThinSheet ? kDenseTools : 1.0;
    if (m_pFriction != nullptr)
        m_dFrictionPunch = m_dFrictionDie = m_dFrictionBinder = m_pFriction->coefficient();
}

double VOZSolverIncremental::EvalMassScalingParameter(int i_nAdaptivityLevel, double i_dMinBlankElementSize,
                                                      double i_dMaxBlankElementSize, double i_dFactorForDT2MS,
                                                      double i_dSpeedOfSound, double i_dMinElementSizeBasedOnThickness)
{
    VOZ_CONTRACT(i_nAdaptivityLevel > 0 && i_dMinBlankElementSize > 0.0 && i_dMaxBlankElementSize > 0.0,
                 "i_nAdaptivityLevel > 0 && i_dMinBlankElementSize > 0.0 && i_dMaxBlankElementSize > 0.0");
    VOZ_CONTRACT(i_dFactorForDT2MS > 0.0 && i_dSpeedOfSound > 0.0 && i_dMinElementSizeBasedOnThickness > 0.0,
                 "i_dFactorForDT2MS > 0.0 && i_dSpeedOfSound > 0.0 && i_dMinElementSizeBasedOnThickness > 0.0");
    double const dMax = Refined(i_dMaxBlankElementSize, i_nAdaptivityLevel, i_dMinElementSizeBasedOnThickness);
    double const dMin = Refined(i_dMinBlankElementSize, i_nAdaptivityLevel, i_dMinElementSizeBasedOnThickness);
    double const dSmallest = std::min(std::min(dMax, dMin), i_dMinElementSizeBasedOnThickness);
    return dSmallest * i_dFactorForDT2MS / i_dSpeedOfSound;
}

void VOZSolverIncremental::EvalOutputTimeIntervals(double i_dPunchStroke, double i_dPunchVelocity,
                                                   double i_dPunchAcceleration, int i_nNumPoints,
                                                   double const * i_padPunchPositions, double *& o_padPoints)
{
    o_padPoints = nullptr;
    VOZ_ASSERTION(i_dPunchStroke > 0.0 && i_dPunchVelocity > 0.0 && i_dPunchAcceleration > 0.0,
                  "i_dPunchStroke > 0.0 && i_dPunchVelocity > 0.0 && i_dPunchAcceleration > 0.0");
    VOZ_ASSERTION(i_nNumPoints > kFewestOutputs && i_padPunchPositions, "i_nNumPoints > 2 && i_padPunchPositions");
    if (i_nNumPoints < 1 || i_padPunchPositions == nullptr)
        return;
    std::unique_ptr<double[]> padPoints(new (std::nothrow) double[static_cast<std::size_t>(i_nNumPoints)]());
    if (!VOZ_ASSERTION(padPoints != nullptr, "padPoints"))
        return;
    double const dAcceleration = i_dPunchAcceleration;
    double const dRamp = i_dPunchVelocity * 0.5 * i_dPunchVelocity / dAcceleration;
    for (int i = 0; i < i_nNumPoints; ++i)
    {
        double const d = i_dPunchStroke * i_padPunchPositions[i] / 100.0;
        double & t = padPoints[static_cast<std::size_t>(i)];
        if (d <= dRamp)
            t = std::sqrt(2.0 * d / dAcceleration);
        else if (d > i_dPunchStroke - dRamp)
            t = (i_dPunchStroke / i_dPunchVelocity + i_dPunchVelocity / dAcceleration) -
                std::sqrt(2.0 * std::max(i_dPunchStroke - d, 0.0) / dAcceleration); // a rounding may lie beyond
        else
            t = (i_dPunchVelocity * 0.5) / dAcceleration + d / i_dPunchVelocity;
    }
    o_padPoints = padPoints.release();
}

double VOZSolverIncremental::EvalEquStress(double i_dEquStrain) const
{
    if (!VOZ_CONTRACT(i_dEquStrain >= 0.0, "i_dEquStrain >= 0.0"))
        return 0.0;
    if (m_nCurveType == kTableCurve)
        return Interpolate(m_padPoints, m_nNumPoints, i_dEquStrain);
    VOZ_CONTRACT(m_dKValue > 0.0 && m_dNValue > 0.0, "m_dKValue > 0.0 && m_dNValue > 0.0");
    if (i_dEquStrain < kElasticStrain)
        return m_dKValue * std::pow(kElasticStrain, m_dNValue - 1.0) * i_dEquStrain;
    double const dStress = m_dKValue * std::pow(i_dEquStrain, m_dNValue);
    if (i_dEquStrain <= kLargeStrain)
        return dStress;
    return dStress * ((i_dEquStrain - kLargeStrain) * (m_dNValue / kLargeStrain) + 1.0);
}
