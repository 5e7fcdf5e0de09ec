// ExportStores.h: the three stores of the golden decks with results.

#ifndef EXPORTSTORES_H
#define EXPORTSTORES_H

#include "ExportMeshes.h"
#include "Result.h"

#include <array>

struct ExportStores
{
    explicit ExportStores(VOZCatMesh const & i_mesh) : top(i_mesh), mid(i_mesh), bottom(i_mesh) {}
    ExportStores(ExportStores const &) = delete;
    ExportStores & operator=(ExportStores const &) = delete;

    static void set(Result & o_store, int e, float major, float minor, float theta, float equivalent)
    {
        o_store.strain(e, 0, major);
        o_store.strain(e, 1, minor);
        o_store.theta(e, theta);
        o_store.equivalentStrain(e, equivalent);
    }

    Result top, mid, bottom;
    Result * stores[3] = {&top, &mid, &bottom};
};

//   4---3
//   | 1 |\       inclined; labels of nodes from 1001
//   1---2-5
inline VOZCatMesh formedPair()
{
    VOZCatMesh mesh = exportmeshes::pair({{0, 0, 0}, {10, 0, 0}, {10, 10, 5}, {0, 10, 5}, {20, 0, 0}});
    mesh.IdsOffset(1000, 0);
    return mesh;
}

inline void fillFormedPair(ExportStores & o_stores)
{
    ExportStores::set(o_stores.top, 1, 25.0F, -10.0F, 0.3F, 30.5F);
    ExportStores::set(o_stores.mid, 1, 20.0F, -5.0F, 0.0F, 25.25F);
    ExportStores::set(o_stores.bottom, 1, 15.0F, -2.0F, 1.2F, 20.0F);
    ExportStores::set(o_stores.top, 2, 12.5F, -99.0F, 0.785398163F, 14.25F);
    ExportStores::set(o_stores.mid, 2, 10.0F, -4.0F, 0.5F, 12.0F);
    ExportStores::set(o_stores.bottom, 2, -98.0F, 7.5F, 3.0F, 10.5F);
    float const thickness[] = {0.8F, 0.75F, 0.7071F, 0.66F, 0.9F};
    for (int n = 1; n <= 5; ++n)
        o_stores.top.NodeThickness(n, thickness[n - 1]);
}

#endif
