// ResultDerived.cpp: what follows from the strains: zones, equivalent strain, means at the nodes, strain energy.

#include "Result.h"

#include "CATFatalError.h"
#include "ElemProperty.h"
#include "Material.h"
#include "Mesh.h"
#include "ZoneLimits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <new>

void Result::compute(ElemProperty const & i_property)
{
    ZoneLimits limits;
    if (!limits.Read())
        return;
    for (int e = 1; e <= mNumElemResult; ++e)
    {
        FormingLimit const & limit = i_property.formingLimit(i_property.propertyIndex(e));
        double const major = strain(e, 0);
        double const minor = strain(e, 1);
        double const trueMajor = limit.engToTrueStrain(major);
        double const trueMinor = limit.engToTrueStrain(minor);
        mThickStrain[e] = static_cast<float>(limit.trueToEngStrain(-trueMajor - trueMinor)); // constant volume
        limits.Classify(limit, major, minor, mForming[e], mSafety[e]);
    }
}

// The precision of each term is part of the result: squares are formed in single precision, all else in double. No
// root is taken, and the percents become fractions term by term.
void Result::EquivalentStrain(Material const & i_material)
{
    double const r = i_material.rBar();
    double const d = r + 1.0;
    float const a = static_cast<float>(0.5 / d);
    float const b = static_cast<float>(r / d);
    for (int e = 1; e <= mNumElemResult; ++e)
    {
        float const e1 = strain(e, 0);
        float const e2 = strain(e, 1);
        double const square1 = static_cast<float>(e1 * e1);
        double const square2 = static_cast<float>(e2 * e2);
        double const major = e1;
        double const minor = e2;
        double const e3 = -major * 0.01 - minor * 0.01;
        double const value = square2 * 0.01 * 0.01 + square1 * 0.01 * 0.01 + static_cast<double>(a) * e3 * e3 +
                             static_cast<double>(b) * 2.0 * major * minor * 0.01 * 0.01;
        mEquivalentStrain[e] = static_cast<float>(value);
    }
}

int Result::AverageResultsAtNodes(VOZCatMesh const & i_mesh, float * i_pElemRes, float * o_pNodeRes)
{
    bool const given = i_pElemRes != nullptr && o_pNodeRes != nullptr;
    if (!VOZ_ASSERTION(given, "i_pElemRes != NULL && o_pNodeRes != NULL"))
        return 1;
    int const n = std::max(i_mesh.numNode(), 0);
    std::size_t const rows = static_cast<std::size_t>(n) + 1;
    std::unique_ptr<int[]> const pnNumElem(new (std::nothrow) int[rows]());
    if (!pnNumElem)
    {
        std::fputs("Can not allocate the memory for pnNumElem\n", stderr);
        return 1;
    }
    std::fill_n(o_pNodeRes, rows, 0.0F);

    int const(*const elems)[4] = i_mesh.GetElemData();
    int const first = i_mesh.GetFirstNodeNumber();
    int const last = std::min(mNumElemResult, i_mesh.numElem()); // a row that the mesh does not have has no corners
    for (int e = 1; e <= last; ++e)
    {
        int const corners = elems[e][0] == elems[e][3] ? 3 : 4;
        for (int corner = 0; corner < corners; ++corner)
        {
            int const node = elems[e][corner] - first;
            if (node > n)
                continue;
            int const row = VOZ_ASSERTION(node >= 0, "m.elem(i,j) <(nNumNodeResult+1)") ? node : 0;
            o_pNodeRes[row] += i_pElemRes[e];
            ++pnNumElem[row];
        }
    }
    for (int node = 1; node <= n; ++node)
        if (pnNumElem[node] > 0)
            o_pNodeRes[node] /= static_cast<float>(pnNumElem[node]);
    return 0;
}

EnergyCalculator::EnergyCalculator(Result const & i_result, Material const & i_material)
    : mDensity(new double[static_cast<std::size_t>(std::max(i_result.numElemResult(), 0)) + 1]())
{
    double const h = i_material.nvalue() + 1.0;
    double const k = i_material.intercept();
    for (int e = 1; e <= i_result.numElemResult(); ++e)
        mDensity[e] = std::pow(static_cast<double>(i_result.equivalentStrain(e)), h) * k / h;
}

EnergyCalculator::EnergyCalculator(EnergyCalculator const & i_other) = default;
EnergyCalculator & EnergyCalculator::operator=(EnergyCalculator const & i_other) = default;
EnergyCalculator::~EnergyCalculator() = default;

double EnergyCalculator::strainEnergyDensity(int i_elem) const
{
    return mDensity[i_elem];
}
