// A caller as the library meets them: a mesh, its normals and its stamping frame, a text of the platform's, a record of
// the kernel's.

#include "BoundBox.h"
#include "CATUnicodeString.h"
#include "Mesh.h"
#include "Symmetry.h"
#include "Tip.h"
#include "VOZCatAxis.h"
#include "VOZTemplatePath.h"

#include <cstdio>

int main()
{
    double const nodes[5][3] = {{0, 0, 0}, {0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}}; // row 0 is not used
    int const elements[2][4] = {{0, 0, 0, 0}, {1, 2, 3, 4}};
    VOZCatMesh const mesh(4, 1, nodes, elements);
    CATUnicodeString text("VOZDravo");
    text.ToLower();
    bool const isRight = mesh.numNode() == 4 && mesh.numElem() == 1 && text == "vozdravo" &&
                         VOZTemplatePath::MetaObject()->IsAKindOf("CATBaseUnknown");
    std::printf("%s\n", isRight ? "right" : "wrong");
    return isRight ? 0 : 1;
}
