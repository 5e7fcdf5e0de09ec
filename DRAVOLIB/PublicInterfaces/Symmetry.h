// Symmetry.h: which symmetry planes a part has, in its stamping frame.

#ifndef SYMMETRY_H
#define SYMMETRY_H

#include "ExportedByVOZDravo.h"

class ExportedByVOZDravo Symmetry
{
public:
    Symmetry() = default;
    Symmetry(bool i_xz, bool i_yz) : mXZ(i_xz), mYZ(i_yz) {}

    bool xzSymmetry() const { return mXZ; } // local y = 0 is a plane of symmetry
    bool yzSymmetry() const { return mYZ; } // local x = 0 is one
    void xzSymmetry(bool i_on) { mXZ = i_on; }
    void yzSymmetry(bool i_on) { mYZ = i_on; }

    bool quarterSymmetry() const { return mXZ && mYZ; }
    bool halfSymmetry() const { return mXZ || mYZ; } // at least one: true for a quarter, too
    bool noSymmetry() const { return !mXZ && !mYZ; }

private:
    bool mXZ = false;
    bool mYZ = false;
};

#endif
