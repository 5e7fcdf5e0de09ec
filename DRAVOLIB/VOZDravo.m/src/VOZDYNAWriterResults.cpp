// VOZDYNAWriterResults.cpp: initial strains and plastic strains per element, and the geometry that they need.
//
// Strains stand in percent along the principal axes of an element's mid-surface. With a1 the major axis, a2 the minor
// one, a3 the element's normal and true strains e1, e2, e3 = -(e1 + e2), the card takes the components of
//
//     e1 a1 a1^T + e2 a2 a2^T + e3 a3 a3^T
//
// in global axes. The thickness strain is that of the mid-plane for both surfaces.

#include "VOZDYNAWriter.h"

#include "CATFatalError.h"
#include "DeckWriter.h"
#include "MeshRows.h"
#include "Result.h"
#include "RowMath.h"
#include "VOZEngUtility.h"
#include "VOZGeoUtil.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <span>

namespace
{
constexpr int kDim = 3;
constexpr int kNode2 = 1;
constexpr int kNode3 = 2;
constexpr int kNode4 = 3;
constexpr int kMinNodes = 3;
constexpr int kMaxNodes = 4;
constexpr double kSmall = 1e-05;

// Surfaces of the sheet, as the results stand in their array.
constexpr int kTop = 0;
constexpr int kMid = 1;
constexpr int kBottom = 2;

constexpr double kLeastStrain = -98.0;    // percent; at it and below
constexpr double kLeastLogStrain = -3.91; // stands for the logarithm

constexpr double kThreePoints[] = {0.0, -1.0, 1.0};
constexpr double kFivePoints[] = {0.0, -1.0, -0.6546536707079771, 0.6546536707079771, 1.0};

constexpr std::size_t kIdWidth = 8;

// clang-format off
constexpr std::string_view kStrains = "*INITIAL_STRAIN_SHELL \n"
                                      "$    EID \n"
                                      "$    EPSxx   EPSyy   EPSzz   EPSxy   EPSyz   EPSzx \n";
constexpr std::string_view kStresses = "*INITIAL_STRESS_SHELL \n"
                                       "$    EID  NPLANE  NTHICK \n"
                                       "$      T   SIGxx   SIGyy   SIGzz   SIGxy   SIGyz   SIGzx      EPS \n";
constexpr std::string_view kNoStress = ",0.00000,0.00000,0.00000,0.00000,0.00000,0.00000,";
// clang-format on

double LogStrain(Result const & result, int e, int component)
{
    double const percent = static_cast<double>(result.strain(e, component));
    return percent <= kLeastStrain ? kLeastLogStrain : std::log(percent / 100.0 + 1.0);
}

// To unit length; a vector of none stays zero.
void Normalise(double * io_vector)
{
    double const length = rowmath::length(io_vector);
    if (length > 0.0)
        rowmath::divide(io_vector, length);
}

// Corners in their own arrays, as the operations take them, freed with this.
struct ElementCorners
{
    double * points[4] = {};
    int count;

    ElementCorners(DYNAWriter & writer, int e) : count(writer.GetElementNodesCoords(e, points)) {}
    ~ElementCorners()
    {
        for (double const * const point : points)
            delete[] point;
    }
    ElementCorners(ElementCorners const &) = delete;
    ElementCorners & operator=(ElementCorners const &) = delete;
};
} // namespace

void DYNAWriter::EvalTensorComponents(double i_dLambda1, double i_dLambda2, double i_dLambda3,
                                      double const * i_adPrincipalAxis1, double const * i_adPrincipalAxis2,
                                      double const * i_adPrincipalAxis3, double & o_dXX, double & o_dXY, double & o_dXZ,
                                      double & o_dYY, double & o_dYZ, double & o_dZZ)
{
    o_dXX = o_dXY = o_dXZ = o_dYY = o_dYZ = o_dZZ = 0.0;
    if (!VOZ_CONTRACT(i_adPrincipalAxis1 && i_adPrincipalAxis2 && i_adPrincipalAxis3,
                      "i_adPrincipalAxis1 && i_adPrincipalAxis2 && i_adPrincipalAxis3"))
        return;
    double const * const a1 = i_adPrincipalAxis1;
    double const * const a2 = i_adPrincipalAxis2;
    double const * const a3 = i_adPrincipalAxis3;
    auto const component = [=](int i, int j)
    { return i_dLambda1 * a1[i] * a1[j] + i_dLambda2 * a2[i] * a2[j] + i_dLambda3 * a3[i] * a3[j]; };
    o_dXX = component(0, 0);
    o_dXY = component(0, 1);
    o_dXZ = component(0, 2);
    o_dYY = component(1, 1);
    o_dYZ = component(1, 2);
    o_dZZ = component(2, 2);
}

void DYNAWriter::Eval3NodeElementNormal(double const * const * i_ppdNodesXYZ, double * o_adNormal)
{
    double side1[kDim];
    double side2[kDim];
    rowmath::subtract(i_ppdNodesXYZ[kNode2], i_ppdNodesXYZ[0], side1);
    rowmath::subtract(i_ppdNodesXYZ[kNode3], i_ppdNodesXYZ[0], side2);
    rowmath::cross(side1, side2, o_adNormal);
    Normalise(o_adNormal);
}

// Of a quadrilateral the product of its diagonals: the sum of the normals at its corners, each as long as the corner's
// triangle is large.
void DYNAWriter::EvalElementNormal(int i_nNumElementNodes, double const * const * i_ppdNodesXYZ, double * o_adNormal)
{
    if (i_nNumElementNodes == kMinNodes)
        return Eval3NodeElementNormal(i_ppdNodesXYZ, o_adNormal);
    std::fill_n(o_adNormal, kDim, 0.0);
    if (!VOZ_CONTRACT(
            i_ppdNodesXYZ[0] && i_ppdNodesXYZ[kNode2] && i_ppdNodesXYZ[kNode3] && i_ppdNodesXYZ[kNode4],
            "i_ppdNodesXYZ[0] && i_ppdNodesXYZ[vozNode2] && i_ppdNodesXYZ[vozNode3] && i_ppdNodesXYZ[vozNode4]"))
        return;
    double diagonal1[kDim];
    double diagonal2[kDim];
    rowmath::subtract(i_ppdNodesXYZ[kNode3], i_ppdNodesXYZ[0], diagonal1);
    rowmath::subtract(i_ppdNodesXYZ[kNode4], i_ppdNodesXYZ[kNode2], diagonal2);
    rowmath::cross(diagonal1, diagonal2, o_adNormal);
    Normalise(o_adNormal);
}

void DYNAWriter::EvalElementCenter(int i_nNumElementNodes, double const * const * i_ppdNodesXYZ, double * o_adCenterXYZ)
{
    if (!VOZ_CONTRACT(i_ppdNodesXYZ && o_adCenterXYZ, "i_ppdNodesXYZ && o_adCenterXYZ"))
        return;
    std::fill_n(o_adCenterXYZ, kDim, 0.0);
    if (!VOZ_CONTRACT(i_nNumElementNodes >= kMinNodes && i_nNumElementNodes <= kMaxNodes,
                      "i_nNumElementNodes >= ::g_nMinNumElementNodes && i_nNumElementNodes <= ::g_nMaxNumElementNodes"))
        return;
    for (int k = 0; k < i_nNumElementNodes; ++k)
        rowmath::add(o_adCenterXYZ, i_ppdNodesXYZ[k]);
    rowmath::divide(o_adCenterXYZ, i_nNumElementNodes);
}

void DYNAWriter::EvalElementLocalCS(int i_nNumElementNodes, double const * const * i_ppdNodesXYZ, double * o_padMatrix,
                                    double * o_adCenterXYZ)
{
    double * const xAxis = o_padMatrix;
    double * const yAxis = o_padMatrix + kDim;
    double * const normal = o_padMatrix + 2 * kDim;
    std::fill_n(o_padMatrix, kDim * kDim, 0.0);
    EvalElementCenter(i_nNumElementNodes, i_ppdNodesXYZ, o_adCenterXYZ);
    if (i_nNumElementNodes < kMinNodes || i_nNumElementNodes > kMaxNodes)
        return;
    EvalElementNormal(i_nNumElementNodes, i_ppdNodesXYZ, normal);
    rowmath::subtract(i_ppdNodesXYZ[kNode2], i_ppdNodesXYZ[0], xAxis);
    Normalise(xAxis);
    double const along = rowmath::dot(xAxis, normal);
    for (int i = 0; i < kDim; ++i)
        xAxis[i] -= along * normal[i];
    Normalise(xAxis);
    VOZ_CONTRACT(std::fabs(VOZGeoUtil::EvalLength3D(o_padMatrix) - 1.0) < kSmall,
                 "fabs(VOZGeoUtil::EvalLength3D(o_padMatrix) - 1.0) < VOZ_SMALL_DOUBLE");
    rowmath::cross(normal, xAxis, yAxis);
    VOZ_CONTRACT(std::fabs(VOZGeoUtil::EvalLength3D(o_padMatrix + 3) - 1.0) < kSmall,
                 "fabs(VOZGeoUtil::EvalLength3D(o_padMatrix + 3) - 1.0) < VOZ_SMALL_DOUBLE");
}

int DYNAWriter::GetElementNodesCoords(int i_nElem, double ** o_ppdPointsXYZ)
{
    if (!VOZ_CONTRACT(o_ppdPointsXYZ, "o_ppdPointsXYZ"))
        return 0;
    std::fill_n(o_ppdPointsXYZ, kMaxNodes, nullptr);
    if (m_pMesh == nullptr)
        return 0;
    meshrows::Rows const rows(*m_pMesh);
    if (i_nElem < 1 || i_nElem > rows.numElem)
        return 0;
    int const count = meshrows::cornerCount(rows.elems[i_nElem]);
    std::unique_ptr<double[]> points[kMaxNodes]; // until all are there
    for (int k = 0; k < count; ++k)
    {
        points[k].reset(new double[kDim]);
        rowmath::copy(rows.node(rows.corner(i_nElem, k)), points[k].get());
    }
    for (int k = 0; k < count; ++k)
        o_ppdPointsXYZ[k] = points[k].release();
    return count;
}

void DYNAWriter::EvalElementPrincipalAxes(int i_nResult, int i_nElem, double * o_padMatrix, double * o_adCenterXYZ)
{
    {
        ElementCorners const corners(*this, i_nElem);
        EvalElementLocalCS(corners.count, corners.points, o_padMatrix, o_adCenterXYZ);
    }
    bool const isThere = i_nResult >= 0 && i_nResult < 3 && m_apResults[i_nResult] != nullptr;
    double const theta = isThere ? static_cast<double>(m_apResults[i_nResult]->theta(i_nElem)) : 0.0;
    double axis[kDim] = {std::cos(theta), std::sin(theta), 0.0};
    VOZGeoUtil::ConvertCoordLocalToGlobal(o_adCenterXYZ, o_padMatrix, axis);
    rowmath::subtract(axis, o_adCenterXYZ, o_padMatrix);
    Normalise(o_padMatrix);
    rowmath::cross(o_padMatrix + 2 * kDim, o_padMatrix, o_padMatrix + kDim);
    VOZ_CONTRACT(std::fabs(VOZGeoUtil::EvalLength3D(o_padMatrix + kDim) - 1.0) < kSmall,
                 "fabs(VOZGeoUtil::EvalLength3D(o_padMatrix + voz3D) - 1.0) < VOZ_SMALL_DOUBLE");
}

// The lower surface first. Two frames and three logarithms per surface and element.
void DYNAWriter::Write_INITIAL_STRAIN_SHELL_Block()
{
    if (m_pStream == nullptr)
        return;
    DeckWriter out(m_pStream);
    out.Text(kStrains);
    if (m_pMesh == nullptr || !HasResults())
        return;
    int const count = meshrows::Rows(*m_pMesh).numElem;
    for (int e = 1; e <= count; ++e)
    {
        out.IntegerField(e, kIdWidth);
        out.Text("\n");
        double const thicknessStrain = -(LogStrain(*m_apResults[kMid], e, 0) + LogStrain(*m_apResults[kMid], e, 1));
        for (int const surface : {kBottom, kTop})
        {
            double axes[kDim * kDim];
            double center[kDim];
            EvalElementPrincipalAxes(surface, e, axes, center);
            double xx, xy, xz, yy, yz, zz;
            EvalTensorComponents(LogStrain(*m_apResults[surface], e, 0), LogStrain(*m_apResults[surface], e, 1),
                                 thicknessStrain, axes, axes + kDim, axes + 2 * kDim, xx, xy, xz, yy, yz, zz);
            char const * parting = "";
            for (double const component : {xx, yy, zz, xy, yz, xz})
            {
                out.Text(parting);
                out.FixedField(component, 7, 5);
                parting = ",";
            }
            out.Text(" \n");
        }
    }
}

void DYNAWriter::Write_INITIAL_STRESS_SHELL_Block()
{
    if (m_pStream == nullptr)
        return;
    DeckWriter out(m_pStream);
    out.Text(kStresses);
    if (m_pMesh == nullptr || !HasResults())
        return;
    std::span<double const> points = kThreePoints;
    if (m_nThicknessPoints == 5)
        points = kFivePoints;
    int const count = meshrows::Rows(*m_pMesh).numElem;
    for (int e = 1; e <= count; ++e)
    {
        out.IntegerField(e, kIdWidth);
        out.IntegerField(1, kIdWidth);
        out.IntegerField(static_cast<int>(points.size()), kIdWidth);
        out.Text("\n");
        double const mid = static_cast<double>(m_apResults[kMid]->equivalentStrain(e));
        double const top = static_cast<double>(m_apResults[kTop]->equivalentStrain(e));
        double const bottom = static_cast<double>(m_apResults[kBottom]->equivalentStrain(e));
        for (double const t : points)
        {
            out.SignedField(t, 7, 5);
            out.Text(kNoStress);
            out.SignedField(VOZEngUtility::EvalEquivalentStrainThroughThickness(t, mid, top, bottom), 7, 5);
            out.Text(" \n");
        }
    }
}
