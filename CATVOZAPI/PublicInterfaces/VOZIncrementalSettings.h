// VOZIncrementalSettings.h: the process settings of an incremental simulation, and the database that they come from.
//
// SI units. A database is one XML file or a folder, of which every "*.xml" is read in the order of the names; the
// format stands in docs/incremental-settings.md.

#ifndef VOZINCREMENTALSETTINGS_H
#define VOZINCREMENTALSETTINGS_H

#include "ExportedByVOZAPINew.h"
#include "VOZString.h"
#include "VOZTemplate.h"

class CATUnicodeString;

class ExportedByVOZAPINew VOZIncrementalSettings
{
public:
    static constexpr int kType = 1; // of this kind of record

    VOZIncrementalSettings(); // every field as docs/incremental-settings.md lists it, no name, id 0
    VOZIncrementalSettings(VOZIncrementalSettings const & i_other);             // deep; neither id nor parent
    VOZIncrementalSettings & operator=(VOZIncrementalSettings const & i_other); // deep; keeps its own id and parent
    virtual ~VOZIncrementalSettings();

    virtual VOZIncrementalSettings * Clone() const; // the caller deletes it
    virtual int GetID() const;
    virtual void SetID(int i_nId);
    virtual int GetType() const;
    virtual void SetParent(VOZIncrementalSettings * i_pParent); // lent
    virtual VOZIncrementalSettings * GetParent() const;

    // Gives the record i_nNum output points and a copy of their positions; without positions it has none.
    void SetOutputPositions(int i_nNum, double const * i_padPositions);

    VOZString m_strName;
    int m_nIntegrationPoints; // through the thickness, of blank and tools
    int m_nSpareSetting;
    double m_dPunchAcceleration;      // m/s^2
    double m_dPunchVelocityFlagSet;   // m/s, where the process flag is 1
    double m_dPunchVelocityFlagClear; // m/s, otherwise
    int m_nAdaptivityLevel;           // of the finest element; 1: no refinement
    int m_nAdaptivePasses;            // over the stroke
    double m_dStrokeThreshold;        // m; beyond it a pass comes every 2 mm of stroke
    double m_dAdaptSizeFactor;        // times the thickness: smallest element
    int m_nIadpn90;
    double m_dAdaptEnergyFactor;    // times the thickness
    double m_dAdaptThicknessFactor; // times the thickness
    double m_dDT2MSFactor;          // times size over speed of sound: the time step of mass scaling
    double m_dBinderGapFactor;      // times the thickness: the way the binder closes
    double m_dBinderAccelFactor;    // times the punch's acceleration: the binder's
    bool m_bSmoothContact;
    int m_nHourglassType; // 0: none
    int m_nOutputPoints;
    double * m_padOutputPositions; // 1 per output point: percent of the stroke, rising; owned, made by new[]

private:
    int m_nId;
    VOZIncrementalSettings * m_pParent;
};

// Appends the settings of the database in the order of files and entries; the caller deletes them. Returns 0, or E_FAIL
// where anything cannot be read: nothing is appended then, and the text, if one is given, says "file:line: what was
// found, what was expected".
ExportedByVOZAPINew long
ReadIncrementSettingsFromXMLDatabase(unsigned short const * i_strPath, CATUnicodeString * o_pstrError,
                                     VOZTPtrArray<VOZIncrementalSettings, int> & io_apSettings);

#endif
