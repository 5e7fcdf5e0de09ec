// VOZSolver.h: the base of the solver objects that share one protocol: boundary conditions in, Run, results out.
//
// An object serves one job: construct, SetBoundaryConditions, the setters wanted, Run, GetResults, destroy. Meshes and
// process data are lent for as long as the object lives; a mesh is in millimetres. Operations of type long return 0,
// or E_FAIL without a text; errors of the kernel pass through as CATError.
//
// The base class marshals into VOZSolverIOData and solves nothing. It does not make that record: a class that uses it
// makes and frees it, and without one Run returns E_FAIL. The protected operations are not virtual: a class that has
// one of the same name hides it, and each class calls its own.

#ifndef VOZSOLVER_H
#define VOZSOLVER_H

#include "CATBaseUnknown.h"
#include "CATUnicodeString.h"
#include "ExportedByVOZDravo.h"
#include "VOZResult.h"

class CATIProgressTaskUI;
class ElemProperty;
class FreeEdgeLoops;
class FreeEdgeSet;
class Friction;
class FullBlankHolder;
class LoopSizeFilter;
class LoopSymmetryFilter;
class ProcessEdgeSequence;
class Result;
class Symmetry;
class VOZCatAxis;
class VOZCatMesh;
struct VOZBasicMeshData_s;
struct VOZSolverIOData;

class ExportedByVOZDravo VOZSolver : public CATBaseUnknown
{
    CATDeclareClass;

public:
    VOZSolver();
    VOZSolver(VOZSolver const &) = delete;
    VOZSolver & operator=(VOZSolver const &) = delete;
    ~VOZSolver() override;

    virtual long Run(CATIProgressTaskUI * i_task);   // the task may be null
    virtual long RunLSDyna();                        // 0
    virtual long GetResults(Result ** io_apLayers);  // three stores: [0] top, [1] mid-plane, [2] bottom
    virtual void SetCurrentStepIndex(int i_nStep);   // 1 to begin with
    virtual void SetNbIntegrationPoints(int i_nNum); // per element, 1 or 4; 4 once a quadrilateral was converted
    virtual VOZCatMesh * GetResultMesh();            // owned by the solver; null if the results are on the part's mesh

    // Stores the pointers. i_ppMesh holds i_nMesh meshes: [0] the part, [1] the binder; a binder counts only if i_nMesh
    // is 2. i_nToolMode is the incremental route's affair.
    void SetBoundaryConditions(VOZCatMesh const ** i_ppMesh, int i_nMesh, ElemProperty const * i_pElemProperty,
                               Symmetry const * i_pSymmetry, Friction const * i_pFriction,
                               FullBlankHolder const * i_pFullBlankHolder, VOZCatAxis const * i_pAxis,
                               unsigned char i_bFlag, int i_nMode, int i_nToolMode);
    void SetPartName(CATUnicodeString & i_strName) { m_strPartName = i_strName; }
    void SetTemplate(CATUnicodeString & i_strName) { m_strTemplateName = i_strName; }
    void SetDisplacements(double const (*i_adDisp)[3]) { m_adDisp = i_adDisp; } // a row per node, 0-based, mm; lent

    // What every kernel run gets: shows the percentage on the CATIProgressTaskUI i_pTask, where there is one; what is
    // no percentage shows as 100. Returns 0: go on.
    static int ProgressIndicator(double i_dPercent, void * i_pTask, void * i_pReserved);

    // Grows the mesh outward to an offset of its outer loop, where the configuration file's "ExtendMeshPart" asks for
    // it. i_dOffset in mm, at most 0.001: a multiple of the perimeter; the last two go to VOZInitEvalPOLNew.
    static void MeshExtension(VOZCatMesh & io_mesh, double i_dOffset, double i_dPolylineA, double i_dPolylineB);

protected:
    VOZCatMesh const * PartMesh() const;   // m_ppMesh[0]; null without one
    VOZCatMesh const * BinderMesh() const; // m_ppMesh[1] of two; null otherwise

    // Working folder and summary name, from the configuration's "TmpDirectory" if files can be made there, else from
    // the environment's "CATTemp".
    long GetFilesFoldersPaths();

    // Input.
    long ConvertMeshData(VOZCatMesh const * i_pMesh, VOZBasicMeshData_s *& io_pM, int & o_nNodesPerElem);
    long FillInXenSolverData(VOZCatMesh const * i_pMesh, unsigned char i_bSkipConditions);
    long EvalBoundaries(); // the boundary objects of the part, for both drivers' conditions
    long SetBoundaryConditions();
    long SetBlankHolderForce();
    long SetDrawBeads();
    long SetPressurePads();
    long SetDispConstraints();
    long EvalBinder();

    // Results. Elements and nodes are 1-based, points 0-based; layer 0 is the top, 2 the bottom, any other the mid.
    VOZResult GetResults(int i_nPoint, int i_nElement, double i_dRValue, double i_dThickness, int i_nLayer);
    void SetElemResults(int i_nElement, VOZResult & i_sRecord, Result & io_result);
    void SetNodeResults(int i_nNode, VOZResult & i_sRecord, Result & io_result);
    void EvalZones(int i_nElement, VOZResult & io_sRecord);
    void SetDisplacementResults(Result ** io_apLayers);
    void SetStressStrainResults(Result ** io_apLayers);
    double ConvertAngleToO_PiInterval(double i_dAngle); // radians; the spelling is the name
    void EvalPrincipalStrains(double i_dE11, double i_dE22, double i_dS, float & o_fE1, float & o_fE2);
    double EvalEquivalentStrain(double i_dRValue, double i_dE1, double i_dE2, double i_dE3);
    double EvalThickness(double i_dInitialThickness, double i_dStrain);
    double EvalPrincipalAngle(double i_dE11, double i_dE22, double i_dS); // i_dS: half the engineering shear

    // What both drivers do with the results of points: elements, then nodes, then what the mid-plane decides.
    typedef VOZResult (*PointResults)(VOZSolver & io_driver, int i_nPoint, int i_nElement, double i_dRValue,
                                      double i_dThickness, int i_nLayer);
    void FillLayers(Result ** io_apLayers, PointResults i_pointResults);
    VOZResult EvalPointResults(double const * i_padStrains, double i_dStress, double i_dRValue, double i_dThickness);

    VOZCatMesh const ** m_ppMesh; // lent, like all const pointers here
    ElemProperty const * m_pElemProperty;
    Symmetry const * m_pSymmetry;
    Friction const * m_pFriction;
    FullBlankHolder const * m_pFullBlankHolder;
    VOZCatAxis const * m_pAxis;
    double const (*m_adDisp)[3];
    int m_nMesh;
    int m_nProcessMode;
    int m_nToolOffsetMode;
    unsigned char m_bProcessFlag;
    CATUnicodeString m_strPartName;
    CATUnicodeString m_strTemplateName;
    FreeEdgeLoops * m_pFreeLoops; // owned, like the next four
    LoopSymmetryFilter * m_pSymmetryFilter;
    ProcessEdgeSequence * m_pProcessEdges;
    LoopSizeFilter * m_pSizeFilter;
    FreeEdgeSet * m_pFreeEdge;
    unsigned short m_szSummaryFile[260];
    unsigned short m_szWorkDir[260];
    VOZSolverIOData * m_pSolverIOData; // made and freed by the class that uses it
    int m_nNbIntegrationPoints;
    int m_nCurrentStepIndex;
    VOZCatMesh * m_pResultMesh; // owned
    double m_dBlankHolderForce;
    int m_nLoopError; // 0: the loops are clean

private:
    class Layers;
};

#endif
