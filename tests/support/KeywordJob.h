// KeywordJob.h: the numbers of a keyword deck, and a driver that writes its deck from them.
//
// The numbers begin as those of a plain job without a binder; a test changes what it is about.

#ifndef KEYWORDJOB_H
#define KEYWORDJOB_H

#include "ElemProperty.h"
#include "VOZSolverIncremental.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace keywordjob
{
using Pairs = std::vector<std::pair<double, double>>;

struct Pad
{
    double pressure;            // Pa
    std::vector<double> points; // 3 per point, mm
};

struct Bead
{
    double force;               // N/m
    std::vector<double> points; // 3 per point, mm
};

struct ToolIds
{
    int part, section, material, set;
};

struct Numbers
{
    std::string folder = ".";
    double endTime = 0.021, rampTime = 0.001, plateauTime = 0.019, closeTime = 0.0002828;
    double velocity = 5.0;
    double massStep = 1.5e-7, asciiInterval = -0.0021;
    double adaptFrequency = 0.0021, adaptSize = 0.0016, adaptEnergy = 0.0, adaptThickness = 0.0004;
    int adaptLevel = 4, adaptPass = 1, adaptRefine = 0, iadpn90 = -1;
    double frictionDie = 0.125, frictionPunch = 0.125, frictionBinder = 0.125;
    double offsetDie = 0.0, offsetPunch = 0.0, offsetBinder = 0.0;
    ToolIds die{1, 1, 1, 1}, punch{2, 2, 2, 2}, binder{3, 3, 3, 3}, blank{5, 5, 5, 5};
    int vectorId = 555, punchCurve = 100, binderCurve = 101, stressCurve = 99;
    int firstPadCurve = 800, firstBeadCurve = 900, firstBeadSet = 11, beadNodes = 10000000;
    double tip[3] = {0.0, 0.0, 1.0};
    double density = 7800.0, young = 2.1e11, poisson = 0.3, yield = 1.8e8, tangent = 2.1e11, rValue = 1.555;
    double thickness = 0.0008, nValue = 0.2, kValue = 6.0e8, beadDepth = 0.0008;
    int steps = 21;
    double maxStrain = 0.8;
    Pairs table; // empty: the curve is generated
    int hourglass = 4;
    double blankPoints = 5.0, toolPoints = 3.0, toolDensity = 10.0;
    bool massScaling = true, smooth = false;
    std::vector<double> outputTimes = {0.0, 0.003, 0.006, 0.009, 0.012, 0.015, 0.018, 0.0195, 0.0205, 0.021};
    double binderForce = 0.0;
    std::string blankName = "VOZBlank", dieName = "VOZDie", punchName = "VOZPunch", binderName = "VOZBinder";
    std::vector<Pad> pads;
    std::vector<Bead> beads;
};

// Base is the driver whose cards are written.
template <class Base>
class BasicDriver : public Base
{
public:
    explicit BasicDriver(Numbers const & i_numbers) : mNumbers(i_numbers)
    {
        TakeProcess();
        TakeTools();
        TakeSheet();
        TakeConditions();
    }

    long write() { return this->Write(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19); } // unread

    ElemProperty property;

protected:
    void TakeProcess()
    {
        this->m_strWorkingFolder = mNumbers.folder.c_str();
        this->m_dTerminationTime = mNumbers.endTime;
        this->m_dPunchRampTime = mNumbers.rampTime;
        this->m_dPunchPlateauTime = mNumbers.plateauTime;
        this->m_dBinderCloseTime = mNumbers.closeTime;
        this->m_dPunchVelocity = mNumbers.velocity;
        this->m_dMassScalingTimeStep = mNumbers.massStep;
        this->m_dAsciiOutputInterval = mNumbers.asciiInterval;
        this->m_dAdaptFrequency = mNumbers.adaptFrequency;
        this->m_dAdaptSize = mNumbers.adaptSize;
        this->m_dAdaptEnergy = mNumbers.adaptEnergy;
        this->m_dAdaptThickness = mNumbers.adaptThickness;
        this->m_nAdaptivityLevel = mNumbers.adaptLevel;
        this->m_nAdaptPass = mNumbers.adaptPass;
        this->m_nAdaptRefine = mNumbers.adaptRefine;
        this->m_nIadpn90 = mNumbers.iadpn90;
        this->m_nHourglassType = mNumbers.hourglass;
        this->m_bMassScaling = mNumbers.massScaling ? 1 : 0;
        this->m_bSmoothContact = mNumbers.smooth ? 1 : 0;
        this->m_nOutputPoints = static_cast<int>(mNumbers.outputTimes.size());
        this->m_padOutputPoints = copyOf(mNumbers.outputTimes);
    }
    void TakeTools()
    {
        TakeIds(mNumbers.die, this->m_nPartDie, this->m_nSectionDie, this->m_nMaterialDie, this->m_nSetDie);
        TakeIds(mNumbers.punch, this->m_nPartPunch, this->m_nSectionPunch, this->m_nMaterialPunch, this->m_nSetPunch);
        TakeIds(mNumbers.binder, this->m_nPartBinder, this->m_nSectionBinder, this->m_nMaterialBinder,
                this->m_nSetBinder);
        TakeIds(mNumbers.blank, this->m_nPartBlank, this->m_nSectionBlank, this->m_nMaterialBlank, this->m_nSetBlank);
        this->m_dFrictionDie = mNumbers.frictionDie;
        this->m_dFrictionPunch = mNumbers.frictionPunch;
        this->m_dFrictionBinder = mNumbers.frictionBinder;
        this->m_dOffsetDie = mNumbers.offsetDie;
        this->m_dOffsetPunch = mNumbers.offsetPunch;
        this->m_dOffsetBinder = mNumbers.offsetBinder;
        this->m_dToolDensityFactor = mNumbers.toolDensity;
        this->m_dBlankIntegrationPoints = mNumbers.blankPoints;
        this->m_dToolIntegrationPoints = mNumbers.toolPoints;
        this->m_nVectorId = mNumbers.vectorId;
        std::copy_n(mNumbers.tip, 3, this->m_adTippingVector);
        TakeName(mNumbers.blankName, this->m_achBlankName);
        TakeName(mNumbers.dieName, this->m_achDieName);
        TakeName(mNumbers.punchName, this->m_achPunchName);
        TakeName(mNumbers.binderName, this->m_achBinderName);
    }
    void TakeSheet()
    {
        this->m_dDensity = mNumbers.density;
        this->m_dYoungsModulus = mNumbers.young;
        this->m_dPoisson = mNumbers.poisson;
        this->m_dYieldStress = mNumbers.yield;
        this->m_dTangentModulus = mNumbers.tangent;
        this->m_dRValue = mNumbers.rValue;
        this->m_dThickness = mNumbers.thickness;
        this->m_dNValue = mNumbers.nValue;
        this->m_dKValue = mNumbers.kValue;
        this->m_nSteps = mNumbers.steps;
        this->m_dMaxStrain = mNumbers.maxStrain;
        std::vector<double> table;
        for (auto const & [strain, stress] : mNumbers.table)
            table.insert(table.end(), {strain, stress});
        this->m_nNumPoints = static_cast<int>(mNumbers.table.size());
        this->m_nCurveType = table.empty() ? 0 : 2;
        this->m_padPoints = copyOf(table);
    }
    void TakeConditions()
    {
        this->m_nCurvePunch = mNumbers.punchCurve;
        this->m_nCurveBinder = mNumbers.binderCurve;
        this->m_nCurveStressStrain = mNumbers.stressCurve;
        this->m_nFirstPadCurve = mNumbers.firstPadCurve;
        this->m_nFirstBeadCurve = mNumbers.firstBeadCurve;
        this->m_nFirstBeadSet = mNumbers.firstBeadSet;
        this->m_nBeadNodeCounter = mNumbers.beadNodes;
        this->m_dBeadDepth = mNumbers.beadDepth;
        this->m_dBlankHolderForce = mNumbers.binderForce;
        TakePads();
        property.sizeDrawBeads(static_cast<int>(mNumbers.beads.size()));
        for (std::size_t i = 0; i < mNumbers.beads.size(); ++i)
        {
            DrawBead & bead = property.drawBeads(static_cast<int>(i) + 1);
            bead.force = mNumbers.beads[i].force;
            bead.xyzCount = static_cast<int>(mNumbers.beads[i].points.size() / 3);
            bead.xyz = copyOf(mNumbers.beads[i].points);
        }
        this->m_pElemProperty = &property;
    }
    void TakePads()
    {
        std::size_t const count = mNumbers.pads.size();
        auto * const sizes = new int[count + 1]();
        auto * const values = new double[count + 1]();
        auto ** const outlines = new double *[count + 1]();
        for (std::size_t i = 0; i < count; ++i)
        {
            sizes[i] = static_cast<int>(mNumbers.pads[i].points.size() / 3);
            values[i] = mNumbers.pads[i].pressure;
            outlines[i] = copyOf(mNumbers.pads[i].points);
        }
        property.setNbPressurePads(static_cast<int>(count));
        property.pressPadSize(sizes);
        property.pressPadVal(values);
        property.pressPadXYZ(outlines);
    }

    static void TakeIds(ToolIds const & ids, int & part, int & section, int & material, int & set)
    {
        part = ids.part;
        section = ids.section;
        material = ids.material;
        set = ids.set;
    }
    static void TakeName(std::string const & name, char (&buffer)[260])
    {
        std::memset(buffer, 0, sizeof buffer);
        std::memcpy(buffer, name.data(), std::min(name.size(), sizeof buffer - 1));
    }
    static double * copyOf(std::vector<double> const & values)
    {
        return std::copy(values.begin(), values.end(), new double[values.size() + 1]) - values.size();
    }

    Numbers mNumbers;
};

using Driver = BasicDriver<VOZSolverIncremental>;
} // namespace keywordjob

#endif
