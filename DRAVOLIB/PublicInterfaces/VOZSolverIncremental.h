// VOZSolverIncremental.h: the route that leaves solving to an explicit solver: it writes a complete LS-DYNA keyword
// deck into a working folder, starts the launcher, and later imports one record of the results.
//
// Handed over besides what every driver takes (VOZSolver.h): the four meshes, told apart by their names "VOZBlank",
// "VOZDie", "VOZPunch" and "VOZBinder" (the last may be absent), with node and element labels that do not overlap and
// stay below 10000000; SetPartName, which is appended to the working path as it stands; SetTemplate, the name of the
// settings; "|mode|" 2 shortens the stroke by one thickness, tool mode 1 offsets punch and binder by one.
//
// The meshes stand in any order, but a binder's force from a level or a force per length is taken over the outer edge
// of the mesh at place 0: the blank is to stand there. A total force is handed over in kilonewtons.
//
// Pads are read from the whole arrays of the process (pressPadSize, pressPadVal, pressPadXYZ), entries 0 .. n - 1:
// number of points, pressure in pascal, outline of 3 doubles per point in mm, in the frame that the meshes are handed
// over in; the deck turns it. Bead lines, 3 doubles per point in mm, are written as they stand: in the stamping frame.
//
// Run changes the meshes in place: to metres, oriented, into the tipping frame. It is therefore not to be called twice
// on the same meshes. The deck is in SI units and must be seen through to its end on one thread.
//
// Operations of type long return 0, or E_FAIL without a text. A failed write raises CATError and leaves the deck
// incomplete.

#ifndef VOZSOLVERINCREMENTAL_H
#define VOZSOLVERINCREMENTAL_H

#include "VOZSolver.h"

#include <cstddef>
#include <cstdio>
#include <initializer_list>

class VOZAPIMesh;
class VOZDynaResults;
class VOZIncrementalSettings;
class VOZMaterial;

class ExportedByVOZDravo VOZSolverIncremental : public VOZSolver
{
    CATDeclareClass;

public:
    VOZSolverIncremental();
    ~VOZSolverIncremental() override;

    // Writes the deck and its include files; solves nothing.
    long Run(CATIProgressTaskUI * i_task) override;

    // Starts the launcher, which lies beside this library, and does not wait.
    long RunLSDyna() override;

    // Reads the current step (9 to begin with) out of "output.voz"; needs nothing of Run. Null asks for the mesh alone
    // (GetResultMesh), in mm; three stores that are sized for that mesh are filled: displacements 0, the rest from the
    // record, of which 4 integration points per element are expected (SetNbIntegrationPoints). What the record lacks
    // reads as 0. Each call makes a new mesh: the one of the last call is the solver's, earlier ones are the caller's.
    long GetResults(Result ** io_apLayers) override;

    // The time step in seconds that mass scaling keeps: of the smallest element that refinement makes, at most
    // i_dMinElementSizeBasedOnThickness (metres, m/s).
    static double EvalMassScalingParameter(int i_nAdaptivityLevel, double i_dMinBlankElementSize,
                                           double i_dMaxBlankElementSize, double i_dFactorForDT2MS,
                                           double i_dSpeedOfSound, double i_dMinElementSizeBasedOnThickness);

    // The times at which the punch, on its trapezoid of velocity, reaches i_nNumPoints positions in percent of the
    // stroke. o_padPoints is new, by new[], the caller's.
    static void EvalOutputTimeIntervals(double i_dPunchStroke, double i_dPunchVelocity, double i_dPunchAcceleration,
                                        int i_nNumPoints, double const * i_padPunchPositions, double *& o_padPoints);

    // Of the blank, Pa: the table of the material, held at its ends; without one the power law, straight below a strain
    // of 0.02 and steeper above 0.7.
    double EvalEquStress(double i_dEquStrain) const;

    // The blocks of the deck, each a slot of its own so that a variant of the product can replace one card group.
    virtual void WriteTitleBlock();
    virtual void WriteControlCardsData();
    virtual void WriteASCIIOutputControlCards();
    virtual void WriteBINARYOutputControlCards();
    virtual void WriteCONTROL_BULK_VISCOSITY_Card();
    virtual void WriteLocalCoordinateSystemDefinitionBlock();
    virtual void WriteToolingTitleBlock();
    virtual void WriteBlankDataBlock();
    virtual void WritePunchDataBlock();
    virtual void WriteDieDataBlock();
    virtual void WriteBlankHolderDataBlock();
    virtual void WriteCurveLoadPunch();
    virtual void WriteCurveLoadBHolder();
    virtual void WritePressurePadData(int i_nId, double i_dPressure, bool i_bAlongTipping);
    virtual void WritePressurePadData();
    virtual void WriteMeshData(); // the include files
    virtual void WritePressurePadID(int i_nId, double i_dPressure);
    virtual void WriteXYforPressurePad(int i_nCount, double const * i_padPointsXYZ);
    virtual void WritePressurePadTitleBlock();
    virtual void WriteDrawBeadTitleBlock();
    virtual void WriteDrawBeadData(int i_nCurve, int i_nSet, double i_dForce);
    virtual void WriteDrawBeadData();
    virtual void WriteDrawBeadID(int i_nId, double i_dForce);
    virtual void WriteXYZDrawBead(int i_nSet, int i_nFirst, int * io_nLast, int i_nDrawBeadPos);
    virtual void WriteDrawBeadNodeSetID(int i_nSid, int i_nFirst, int i_nLast);
    virtual void WriteCurveBlankStressStrain();
    virtual void WriteIncludedBlankToolingMeshFiles();
    virtual void WriteThickness();
    virtual void WriteRigidMaterialProperties(int i_nMid, int i_nSid, char const * i_strConstraints);
    virtual void WriteFriction_Card23(double i_dFriction, double i_dOffset, bool i_bDrawBead);
    virtual void WriteFriction_Card4_ShootingLogic();
    virtual void DoubleWrite(double i_dValue, int i_nPrecision, int i_nWidth, unsigned char i_bFullDigits);

    void WriteLine(char const * i_strLine);
    void WriteEnd();
    void WriteValue(unsigned short const * i_chBuffer);
    void DoubleWriteEnd(double i_dValue, int i_nPrecision, int i_nWidth, int i_bFullDigits);
    void IntegerWrite(int i_nValue, int i_nWidth);
    void IntegerWriteEnd(int i_nValue);

    // What the blocks are made of. The deck's usual field is 10 wide, of 3 digits behind the point; a curve's 20 and 9.
    template <std::size_t N>
    void WriteLines(char const * const (&i_aLines)[N])
    {
        for (char const * const line : i_aLines)
            WriteLine(line);
    }
    void WriteText(char const * i_strText); // no line feed
    void WriteReals(std::initializer_list<double> i_values);
    void WriteIntegers(std::initializer_list<int> i_values);
    void WriteCurveRow(double i_dAbscissa, double i_dOrdinate);
    void WriteVectorCard(int i_nId, double i_dX, double i_dY, double i_dZ);
    void WriteHeadLine(char const * i_strName, int i_nId, char const * i_strValue, double i_dValue);
    void WriteIncludes(char const * i_strDeck); // the include files and the end of the deck of that name
    void WriteInclude(char const * i_strName);  // of the mesh
    void WriteBlankPart();                      // banner, set, part
    void WriteBlankMaterial();
    void WriteBlankSection();
    void WriteAdaptivity();
    enum Tool
    {
        kToolDie,
        kToolPunch,
        kToolBinder
    };
    void WriteTool(Tool i_tool);                                   // all of the next three
    void WriteToolPart(Tool i_tool);                               // banner to section
    void WriteToolContact(Tool i_tool, char const * i_strKeyword); // with the blank
    void WriteToolDrive(Tool i_tool);                              // what moves it
    char const * ContactKeyword() const;                           // by m_bSmoothContact

    // Opens the file, writes all blocks in the order of the deck, closes it.
    long WriteDeck(CATUnicodeString const & i_strPath);
    void WriteBlocks();

    // Writes "inputls.dyn". Reads the members alone, whatever the arguments say: they are kept for callers built
    // against them.
    long Write(double, double, double, double, double, double, double, double, double, double, int, double, int, int,
               double, double, double, double, double);

    // The steps of Run that come before the deck, in their order.
    long GetWorkingFolder();          // and makes it, where the part has a name; whether that went well shows later
    long SetMesh();                   // finds the roles; after a failure the meshes seen by then stay changed
    long GetMeshDisplayName();        // the four names
    long GetTemplateSettings();       // a name that the database does not have leaves the record's defaults
    unsigned char GetMatProperties(); // 1 if the material list has the material
    void PunchStrokeAsDZmax();        // the way that the die leaves to the punch along z
    VOZAPIMesh * CreateAPIMesh(VOZCatMesh * i_pMesh); // new, the caller deletes it; null without memory

protected:
    VOZSolverIncremental(VOZSolverIncremental const &) = delete;
    VOZSolverIncremental & operator=(VOZSolverIncremental const &) = delete;

    void EvalToolsPosition() {} // the tools stay where their meshes are

    CATUnicodeString m_strWorkingFolder;
    CATUnicodeString m_astrMeshFiles[4]; // of the mesh at that place of the array
    std::FILE * m_pStream;               // the deck's, while it is written
    double m_dTerminationTime;           // s
    double m_dPunchVelocity;             // m/s
    double m_dPunchStroke;               // m
    double m_dPunchAcceleration;         // m/s^2
    double m_dBinderCloseTime;           // s; when the ramps of binder and pads have reached their value
    double m_dPunchRampTime;             // s
    double m_dPunchPlateauTime;          // s
    double m_dMassScalingTimeStep;       // s, positive
    double m_dAsciiOutputInterval;       // s; not above 0: no ASCII output
    double m_dBinaryOutputInterval;      // s; no card reads it
    double m_dAdaptFrequency;            // s
    int m_nAdaptivityLevel;
    double m_dFrictionPunch;
    double m_dFrictionDie;
    double m_dFrictionBinder;
    int m_nPartDie, m_nPartPunch, m_nPartBinder, m_nPartBlank;
    int m_nSectionDie, m_nSectionPunch, m_nSectionBinder, m_nSectionBlank;
    int m_nMaterialDie, m_nMaterialPunch, m_nMaterialBinder, m_nMaterialBlank;
    int m_nSetDie, m_nSetPunch, m_nSetBinder, m_nSetBlank;
    int m_nVectorId; // and the next two: the local frame, the opposite vector
    double m_adTippingVector[3];
    int m_nCurvePunch;
    int m_nCurveBinder;
    int m_nCurveStressStrain;
    int m_nFirstPadCurve;
    int m_nFirstBeadCurve;
    int m_nFirstBeadSet;
    int m_nBeadNodeCounter; // label
    double m_dDensity;      // kg/m^3
    double m_dYoungsModulus;
    double m_dPoisson;
    double m_dYieldStress;
    double m_dTangentModulus;
    double m_dRValue;
    double m_dThickness; // m
    double m_dNValue;
    double m_dKValue; // Pa
    double m_dOffsetDie;
    double m_dOffsetPunch;
    double m_dOffsetBinder;
    double m_dBeadDepth;           // m
    int m_nSteps;                  // rows of the generated curve
    double m_dMaxStrain;           // of the generated curve
    int m_nCurveType;              // 2: a table
    int m_nNumPoints;              // of the table
    double * m_padPoints;          // 2 per point: strain, stress Pa; owned
    double m_dMaxBlankElementSize; // m
    double m_dMinBlankElementSize; // m
    double m_dStrokeAsDZmax;       // m
    char m_achPunchName[260];
    char m_achDieName[260];
    char m_achBinderName[260];
    char m_achBlankName[260];
    VOZCatMesh * m_pPunchMesh; // lent, like the next three
    VOZCatMesh * m_pDieMesh;
    VOZCatMesh * m_pBinderMesh;
    VOZCatMesh * m_pBlankMesh;
    double m_dAdaptSize; // m
    double m_dAdaptEnergy;
    double m_dAdaptThickness;
    int m_nAdaptPass;
    int m_nAdaptRefine;
    int m_nIadpn90;
    int m_nHourglassType; // 0: none
    double m_dBlankIntegrationPoints;
    double m_dToolIntegrationPoints;
    double m_dToolDensityFactor;
    unsigned char m_bMassScaling;
    double * m_padOutputPoints; // s; owned
    int m_nOutputPoints;
    unsigned char m_bSmoothContact;
    double m_dBinderAccelFactor;
    double m_dBinderGapFactor;
    VOZIncrementalSettings * m_pSettings; // owned

private:
    void EvalToolOffsets();
    void EvalKinematics();
    void EvalAdaptivity();
    void EvalCardValues();
    void KeepTable(VOZMaterial const & i_material);
    bool TakeRole(VOZCatMesh & io_mesh, double i_dAlongTipping);
    void WriteMeshFile(VOZCatMesh * i_pMesh, int i_nPart);
    long KeepResultMesh(VOZDynaResults const & i_record);
    long KeepComponents(VOZDynaResults const & i_record);
};

#endif
