// VOZBHFConfig.h: the blank-holder force from the full blank holder's option, the friction and the material, with
// overrides from the configuration file.

#ifndef VOZBHFCONFIG_H
#define VOZBHFCONFIG_H

#include "CATBaseUnknown.h"
#include "ExportedByVOZDravo.h"

class ElemProperty;
class Friction;
class FullBlankHolder;
class ProcessEdgeSequence;
struct VOZMechanicalProp_s;

class ExportedByVOZDravo VOZBHFConfig : public CATBaseUnknown
{
    CATDeclareClass;

public:
    VOZBHFConfig(Friction const * i_friction, FullBlankHolder const * i_holder, ElemProperty const * i_property,
                 ProcessEdgeSequence const * i_sequence); // all kept by pointer

    // Sets the three results and returns the force. i_records may be null. Without a configuration path it returns 0
    // and sets nothing.
    double EvalForce(VOZMechanicalProp_s const * i_records, int i_recordCount);

private:
    class Settings;
    double Yield(VOZMechanicalProp_s const * i_records, int i_recordCount, int i_range) const;
    double Factor() const;
    void EvalBase(double i_yield);
    void Override(Settings const & i_settings);
    void EvalForceFromRestraint();

    Friction const * m_pFriction;
    FullBlankHolder const * m_pFullBlankHolder;
    ElemProperty const * m_pElemProperty;
    ProcessEdgeSequence const * m_pSequence;

public:
    double m_dForce;     // total, N
    double m_dRestraint; // N/m
    double m_dLength;    // of the outer blank holder, m
};

#endif
