// VOZSolverBCData.h: what acts on the sheet: holder edges, bead segments, node constraints, pads, friction. Fixed
// layouts: never reorder.
//
// Indices are 0-based. Forces are in newtons per metre of edge. Arrays that a setter takes are made by new[] and
// belong to the record from then on; a second call frees what the first one gave.

#ifndef VOZSOLVERBCDATA_H
#define VOZSOLVERBCDATA_H

#include "ExportedByVOZAPINew.h"

#include <cstddef>

// One blank-holder edge.
struct VOZSolverBHF_s
{
    int m_nElement = 0;
    int m_nReserved4 = 0;
    double m_dForce = 0.0;     // N/m
    int m_nFirstPosition = -1; // local position in the element of the edge's first node
    int m_nSecondPosition = -1;
};

static_assert(sizeof(VOZSolverBHF_s) == 24, "drivers make arrays of this record");
static_assert(offsetof(VOZSolverBHF_s, m_nElement) == 0, "drivers fill this field");
static_assert(offsetof(VOZSolverBHF_s, m_dForce) == 8, "drivers fill this field");
static_assert(offsetof(VOZSolverBHF_s, m_nFirstPosition) == 16, "drivers fill this field");
static_assert(offsetof(VOZSolverBHF_s, m_nSecondPosition) == 20, "drivers fill this field");

// One draw-bead segment: a line inside an element.
struct VOZSolverDrawbead_s
{
    int m_nElement = -1;
    int m_nReserved4 = 0;
    double m_dForce = 0.0;                           // N/m
    double m_dUplift = 0.0;                          // force x 8.9934075e-07; reported only
    double m_adEdgeValues[4] = {0.0, 0.0, 0.0, 0.0}; // natural coordinates of its ends: xi, eta, xi, eta
};

static_assert(sizeof(VOZSolverDrawbead_s) == 56, "drivers make arrays of this record");
static_assert(offsetof(VOZSolverDrawbead_s, m_nElement) == 0, "drivers fill this field");
static_assert(offsetof(VOZSolverDrawbead_s, m_dForce) == 8, "drivers fill this field");
static_assert(offsetof(VOZSolverDrawbead_s, m_dUplift) == 16, "drivers fill this field");
static_assert(offsetof(VOZSolverDrawbead_s, m_adEdgeValues) == 24, "drivers fill this field");

// One prescribed displacement in the sheet plane. Records left at node -1 are skipped.
struct VOZSolverNodeConstraint2D_s
{
    int m_nNode = -1;
    int m_nReserved4 = 0;
    double m_dAngle = 0.0;        // direction, radians; 1001.0 fixes both directions
    double m_dDisplacement = 0.0; // from the part to the flat, in millimetres as the process definition holds it
    double m_dReserved24 = 0.0;
};

static_assert(sizeof(VOZSolverNodeConstraint2D_s) == 32, "drivers make arrays of this record");
static_assert(offsetof(VOZSolverNodeConstraint2D_s, m_nNode) == 0, "drivers fill this field");
static_assert(offsetof(VOZSolverNodeConstraint2D_s, m_dAngle) == 8, "drivers fill this field");
static_assert(offsetof(VOZSolverNodeConstraint2D_s, m_dDisplacement) == 16, "drivers fill this field");
static_assert(offsetof(VOZSolverNodeConstraint2D_s, m_dReserved24) == 24, "drivers fill this field");

// The nodes that springback holds.
struct ExportedByVOZAPINew VOZSBConstraints_s
{
    VOZSBConstraints_s(); // empty
    ~VOZSBConstraints_s();
    VOZSBConstraints_s(VOZSBConstraints_s const &) = delete;
    VOZSBConstraints_s & operator=(VOZSBConstraints_s const &) = delete;

    int m_nCount;
    int m_nReserved4;
    int * m_panNodeIndices; // made by new[], owned
    int * m_panCodes;       // made by new[], owned
};

static_assert(sizeof(VOZSBConstraints_s) == 24, "drivers make this record");
static_assert(offsetof(VOZSBConstraints_s, m_nCount) == 0, "drivers fill this field");
static_assert(offsetof(VOZSBConstraints_s, m_panNodeIndices) == 8, "drivers fill this field");
static_assert(offsetof(VOZSBConstraints_s, m_panCodes) == 16, "drivers fill this field");

struct ExportedByVOZAPINew VOZSolverBCData_s
{
    VOZSolverBCData_s(); // nothing acts
    ~VOZSolverBCData_s();
    VOZSolverBCData_s(VOZSolverBCData_s const &) = delete;
    VOZSolverBCData_s & operator=(VOZSolverBCData_s const &) = delete;

    void SetBHFs(int i_nCount, VOZSolverBHF_s * i_pasBHFs);
    void SetDrawbeads(int i_nCount, VOZSolverDrawbead_s * i_pasDrawbeads);
    void SetNodeConstraints2D(int i_nCount, VOZSolverNodeConstraint2D_s * i_pasConstraints);
    void SetPressureFrictionValues(double * i_padValues); // friction shear of the pads, 1 per element, Pa
    void SetProcess(bool i_bProcess, double i_dFriction); // the flag switches the friction of the tools on

    int m_nNumBHFs;
    int m_nReserved4;
    VOZSolverBHF_s * m_pasBHFs; // owned
    int m_nNumNodeConstraints2D;
    int m_nReserved20;
    VOZSolverNodeConstraint2D_s * m_pasNodeConstraints2D; // owned; drivers fill it after handing it over
    int m_nNumDrawbeads;
    int m_nReserved36;
    VOZSolverDrawbead_s * m_pasDrawbeads; // owned
    double * m_padPressureFrictionValues; // owned; 1 per element, or null
    unsigned char m_bProcess;
    unsigned char m_abReserved57[7];
    double m_dFriction;
    void * m_apReserved72[6];
    VOZSBConstraints_s * m_psSBConstraints; // owned; null: none
};

static_assert(sizeof(VOZSolverBCData_s) == 128, "drivers make this record");
static_assert(offsetof(VOZSolverBCData_s, m_pasNodeConstraints2D) == 24, "drivers fill the array through this field");
static_assert(offsetof(VOZSolverBCData_s, m_psSBConstraints) == 120, "drivers write this field");

#endif
