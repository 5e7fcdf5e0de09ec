// ResultFixture.h: a result store on a small mesh, and what it has reported.

#ifndef RESULTFIXTURE_H
#define RESULTFIXTURE_H

#include "Result.h"

#include "ConfigFixture.h"
#include "Mesh.h"
#include "SampleMeshes.h"

#include <string>
#include <vector>

namespace resulttest
{
//   4---3
//   | 1 |\       element 2 is a triangle; node 6 belongs to none
//   1---2-5  6
inline VOZCatMesh fiveAndOne()
{
    return samples::mesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0}, {3, 0, 0}},
                         {{{1, 2, 3, 4}}, {{2, 5, 3, 2}}});
}

// Two nodes more than elements the one way, elements alone the other.
inline VOZCatMesh meshOf(int nodes, int elems)
{
    VOZCatMesh mesh(nodes, elems);
    for (int e = 1; e <= elems; ++e)
        for (int k = 0; k < 4; ++k)
            mesh.GetElemData()[e][k] = 1 + (e + k) % nodes;
    return mesh;
}

class ResultStore : public ConfigFixture
{
protected:
    ResultStore() : mesh(fiveAndOne()), result(mesh) {}

    std::vector<std::string> reported()
    {
        std::vector<std::string> texts;
        for (VOZMemoryHost::Report const & report : host.reports)
            texts.push_back(report.text);
        host.reports.clear();
        return texts;
    }

    VOZCatMesh mesh;
    Result result;
};
} // namespace resulttest

#endif
