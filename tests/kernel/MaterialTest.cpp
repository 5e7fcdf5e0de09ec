// MaterialTest.cpp: VOZMaterial, its copies and what it hands to the solver.

#include "VOZMaterial.h"
#include "VOZMechanicalProp.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

struct Destroyed
{
    void operator()(VOZObject * object) const { object->Destroy(); }
};
using MaterialPointer = std::unique_ptr<VOZMaterial, Destroyed>;

MaterialPointer tabled()
{
    MaterialPointer material(VOZMaterial::Create());
    material->m_strName = "tabled";
    material->m_nNumPoints = 2;
    material->m_padPoints = new double[4]{0.0, 1.6e8, 0.2, 4.0e8};
    return material;
}

TEST(KernelMaterial, StartsAsAMildSteelOfOneMillimetreInSI)
{
    MaterialPointer const material(VOZMaterial::Create());
    EXPECT_EQ(material->m_dThickness, 0.001);
    EXPECT_EQ(material->m_dRValue, 1.4);
    EXPECT_EQ(material->m_dNValue, 0.21);
    EXPECT_EQ(material->m_dKValue, 586.054e6);
    EXPECT_EQ(material->m_dYield, 227.527e6);
    EXPECT_EQ(material->m_nNumPoints, 0);
    EXPECT_EQ(material->m_padPoints, nullptr);
    EXPECT_EQ(material->m_dYoungsModulus, 2.1e11);
    EXPECT_EQ(material->m_dPoisson, 0.3);
    EXPECT_TRUE(material->m_strName.IsNull());
    EXPECT_EQ(material->m_dFldZero, 0.0);
    EXPECT_EQ(material->m_nFldType, 0);
}

TEST(KernelMaterial, GivesTheSolverItsNumbersButNotItsTable)
{
    MaterialPointer const material = tabled();
    material->m_dNValue = 0.11;
    material->m_dRValue = 1.22;
    material->m_dKValue = 3.3e8;
    material->m_dYield = 4.4e8;
    material->m_dYoungsModulus = 5.5e10;
    material->m_dPoisson = 0.31;
    material->m_dDensity = 2700.0;
    VOZMechanicalProp_s prop;
    material->EvalMechanicalDataForSolver(prop);
    EXPECT_EQ(prop.m_dNValue, 0.11);
    EXPECT_EQ(prop.m_dRValue, 1.22);
    EXPECT_EQ(prop.m_dKValue, 3.3e8);
    EXPECT_EQ(prop.m_dYield, 4.4e8);
    EXPECT_EQ(prop.m_dYoungsModulus, 5.5e10);
    EXPECT_EQ(prop.m_dPoisson, 0.31);
    EXPECT_EQ(prop.m_dDensity, 2700.0);
    EXPECT_EQ(prop.m_nNumPoints, 0); // the driver copies the table: it owns the record
    EXPECT_EQ(prop.m_padPoints, nullptr);
}

TEST(KernelMaterial, ACopyOwnsItsTable)
{
    MaterialPointer source = tabled();
    VOZMaterial const copy(*source);
    source->m_padPoints[1] = 9.0;
    source.reset();
    EXPECT_EQ(copy.m_padPoints[1], 1.6e8);
    EXPECT_EQ(copy.m_padPoints[3], 4.0e8);
    EXPECT_TRUE(copy.m_strName == "tabled");
}

TEST(KernelMaterial, AssignmentReplacesEveryFieldAndFreesTheOldTable)
{
    MaterialPointer const source = tabled();
    source->m_dThickness = 0.002;
    source->m_dWrinkleLimit = 5.0;
    source->m_dShearMargin = 6.0;
    source->m_nFldType = 1;
    MaterialPointer const target = tabled();
    *target = *source;
    EXPECT_NE(target->m_padPoints, source->m_padPoints);
    EXPECT_EQ(target->m_dThickness, 0.002);
    EXPECT_EQ(target->m_dWrinkleLimit, 5.0);
    EXPECT_EQ(target->m_dShearMargin, 6.0);
    EXPECT_EQ(target->m_nFldType, 1);
    MaterialPointer const plain(VOZMaterial::Create());
    *target = *plain;
    EXPECT_EQ(target->m_nNumPoints, 0);
    EXPECT_EQ(target->m_padPoints, nullptr);
}

TEST(KernelMaterial, AssigningAMaterialToItselfKeepsIt)
{
    MaterialPointer const material = tabled();
    VOZMaterial & same = *material;
    *material = same;
    EXPECT_EQ(material->m_nNumPoints, 2);
    EXPECT_EQ(material->m_padPoints[3], 4.0e8);
}

} // namespace
