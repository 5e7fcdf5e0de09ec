// MeshUtilTest.cpp: which meshes can be worked with.

#include "JobFixture.h"
#include "VOZMeshUtil.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using namespace jobtest;

std::unique_ptr<VOZMesh_s> triangleAndQuad()
{
    SurfaceMesh const mesh{{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}}, {{0, 1, 2, 3}, {1, 4, 2, -1}}};
    return std::unique_ptr<VOZMesh_s>(partOf(mesh));
}

bool isGood(std::unique_ptr<VOZMesh_s> const & mesh)
{
    return VOZMeshUtil::EvalMeshBoundaries(mesh.get());
}

TEST(MeshUtil, ASheetOfTrianglesAndQuadrilateralsCanBeWorkedWith)
{
    EXPECT_TRUE(isGood(triangleAndQuad()));
}

TEST(MeshUtil, NoMeshNoTopologyNoArraysAndNoRowsCannot)
{
    EXPECT_FALSE(VOZMeshUtil::EvalMeshBoundaries(nullptr));
    EXPECT_FALSE(isGood(std::make_unique<VOZMesh_s>()));
    for (int count : {0, -1, std::numeric_limits<int>::min()})
    {
        auto mesh = triangleAndQuad();
        mesh->m_psTopology->m_nNumNodes = count;
        EXPECT_FALSE(isGood(mesh));
        mesh = triangleAndQuad();
        mesh->m_psTopology->m_nNumElements = count;
        EXPECT_FALSE(isGood(mesh));
    }
    auto mesh = triangleAndQuad();
    mesh->m_psTopology->SetNodesElements(5, 2, nullptr);
    EXPECT_FALSE(isGood(mesh));
    mesh = triangleAndQuad();
    delete[] mesh->m_padNodalCoords;
    mesh->m_padNodalCoords = nullptr;
    EXPECT_FALSE(isGood(mesh));
}

TEST(MeshUtil, EveryCornerIsANodeAndOnlyTheFourthMayBeAbsent)
{
    for (int element = 0; element < 2; ++element)
        for (int corner = 0; corner < 4; ++corner)
            for (int node : {-1, -2, 5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
            {
                auto const mesh = triangleAndQuad();
                mesh->GetElements()[element].m_anNodeIndices[corner] = node;
                EXPECT_EQ(isGood(mesh), corner == 3 && node == -1) << element << " " << corner << " " << node;
            }
}

// A solve tells what is wrong with these; a plain "no" would hide it.
TEST(MeshUtil, WhatASolveRefusesInWordsPasses)
{
    SurfaceMesh const tetrahedron{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
                                  {{0, 2, 1, -1}, {0, 1, 3, -1}, {1, 2, 3, -1}, {2, 0, 3, -1}}};
    EXPECT_TRUE(isGood(std::unique_ptr<VOZMesh_s>(partOf(tetrahedron))));
    SurfaceMesh const threeAtASide{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}},
                                   {{0, 1, 2, -1}, {1, 0, 3, -1}, {0, 1, 4, -1}}};
    EXPECT_TRUE(isGood(std::unique_ptr<VOZMesh_s>(partOf(threeAtASide))));
    auto mesh = triangleAndQuad();
    mesh->m_padNodalCoords[4] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(isGood(mesh));
    mesh = triangleAndQuad();
    mesh->GetElements()[1].m_anNodeIndices[2] = 4; // twice the same node
    EXPECT_TRUE(isGood(mesh));
}

} // namespace
