// VOZDYNAWriter.h: a mesh as an LS-DYNA keyword file, with or without results.
//
// Without results: *NODE and *ELEMENT_SHELL, as the incremental deck includes them. With three results (top, mid-plane,
// bottom): the formed blank with nodal thickness, initial strains and plastic strain per element. Coordinates and
// thickness go out in the unit that they are held in. There is no *KEYWORD: another deck includes the file.

#ifndef VOZDYNAWRITER_H
#define VOZDYNAWRITER_H

#include "ExportedByVOZDravo.h"

#include <cstdio>

class Result;
class VOZCatAxis;
class VOZCatMesh;

class ExportedByVOZDravo DYNAWriter
{
public:
    // Opens the file anew. i_apResults: three stores, or null. Everything is lent for the writer's life.
    DYNAWriter(VOZCatMesh * i_pMesh, Result ** const i_apResults, int const & i_nThicknessPoints, char * i_strPath,
               VOZCatAxis * i_pAxis, int i_nPartId);
    DYNAWriter(DYNAWriter const &) = delete;
    DYNAWriter & operator=(DYNAWriter const &) = delete;
    virtual ~DYNAWriter();

    virtual void Write(); // nothing where the file could not be opened

    // The value with that many digits behind the point, at least 1, the first of them not 0: " .150000000E+01" for 1.5
    // and 9. Rounded from the exact value, a tie to the even digit; a blank or a minus, which -0.0 has too, in front.
    // Infinities and NaN have the digits "1#INF" and "1#QNAN". o_text holds i_nDigits + 8 bytes.
    void DoubleConvert(double const & i_dValue, int i_nDigits, char * o_text);
    void WriteLine(char * i_strLine);

    // The components of the tensor with three principal values along three axes.
    void EvalTensorComponents(double i_dLambda1, double i_dLambda2, double i_dLambda3,
                              double const * i_adPrincipalAxis1, double const * i_adPrincipalAxis2,
                              double const * i_adPrincipalAxis3, double & o_dXX, double & o_dXY, double & o_dXZ,
                              double & o_dYY, double & o_dYZ, double & o_dZZ);

    // Corners are rows of 3; elements are positions, from 1. A matrix is 9 doubles, its rows the axes. The normal of a
    // quadrilateral is the product of its diagonals. A local frame has its x axis along side 1-2; where corners fall
    // together, so that an axis has no length, it is zero and breaks a contract.
    void Eval3NodeElementNormal(double const * const * i_ppdNodesXYZ, double * o_adNormal);
    void EvalElementNormal(int i_nNumElementNodes, double const * const * i_ppdNodesXYZ, double * o_adNormal);
    void EvalElementCenter(int i_nNumElementNodes, double const * const * i_ppdNodesXYZ, double * o_adCenterXYZ);
    void EvalElementLocalCS(int i_nNumElementNodes, double const * const * i_ppdNodesXYZ, double * o_padMatrix,
                            double * o_adCenterXYZ);
    // Returns 3 or 4; 0 where there is no such element. o_ppdPointsXYZ has 4 places; what they get is made by new[],
    // the caller's.
    int GetElementNodesCoords(int i_nElem, double ** o_ppdPointsXYZ);
    // The local frame turned about its normal by the angle theta of the element in one of the three stores.
    void EvalElementPrincipalAxes(int i_nResult, int i_nElem, double * o_padMatrix, double * o_adCenterXYZ);

    void WriteTitleBlock();
    void WriteNodalPointCardsTitleBlock();
    void Write_NODE_Block();
    void WriteShellElementCardsTitleBlock();
    void Write_ELEMENT_SHELL_Block();
    void Write_ELEMENT_SHELL_THICKNESS_Block();
    void Write_INITIAL_STRESS_SHELL_Block();
    void Write_INITIAL_STRAIN_SHELL_Block();
    void WriteEndBlock();

protected:
    bool HasResults() const { return m_apResults[0] && m_apResults[1] && m_apResults[2]; }

    VOZCatMesh * m_pMesh;
    Result * m_apResults[3];
    int m_nThicknessPoints; // 3, or 5 where a derived class says so
    std::FILE * m_pStream;
    VOZCatAxis * m_pAxis;
    int m_nPartId;
};

#endif
