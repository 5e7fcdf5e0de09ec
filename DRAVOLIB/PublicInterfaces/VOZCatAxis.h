// VOZCatAxis.h: a local coordinate frame: three axes and an origin, in global coordinates.
//
// Nothing is normalised on the way in: fromGlobal and toGlobal undo each other only if the axes are orthonormal, which
// is the caller's affair.

#ifndef VOZCATAXIS_H
#define VOZCATAXIS_H

#include "Vec.h"

class ExportedByVOZDravo VOZCatAxis
{
public:
    VOZCatAxis(); // the identity frame
    VOZCatAxis(VOZCatAxis const & i_other);
    virtual ~VOZCatAxis();
    VOZCatAxis & operator=(VOZCatAxis const & i_other);
    void init(); // the identity frame

    Vec axis(int i) const; // counted copy of row i: 0 local x, 1 y, 2 z
    double axis(int i, int j) const { return mAxis[i][j]; }
    double axis(int i, int j) { return mAxis[i][j]; } // so that a literal 0 is no null row for the setter
    void axis(int i, Vec const & i_axis);
    Vec origin() const; // counted copy
    double origin(int i) const { return mOrigin[i]; }
    double origin(int i) { return mOrigin[i]; }
    void origin(Vec const & i_origin);

    Vec fromGlobal(Vec const & p) const; // (X . d, Y . d, Z . d) with d = p - origin
    Vec toGlobal(Vec const & q) const;   // q.x X + q.y Y + q.z Z + origin
    void orient();                       // makes the frame right-handed by its z row alone

private:
    double mAxis[3][3];
    double mOrigin[3];
};

#endif
