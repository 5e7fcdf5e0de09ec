// BoundBox.h: an axis-parallel box that grows over points.
//
// The empty box has every lower bound at the largest finite double and every upper bound at its negative.
// Growing tests are strict, so an empty box adds nothing to another.

#ifndef BOUNDBOX_H
#define BOUNDBOX_H

#include "Vec.h"

class ExportedByVOZDravo BoundBox
{
public:
    BoundBox() { reset(); } // empty

    Vec lower() const; // counted copies
    Vec upper() const;
    double lower(int i) const { return mLower[i]; }
    double upper(int i) const { return mUpper[i]; }

    void reset(); // empty again
    void encompass(Vec const & p);
    void encompass(BoundBox const & i_box);

protected:
    void expandLower(Vec const & p);
    void expandUpper(Vec const & p);
    void conform(); // per axis, exchanges the bounds if the lower is the greater

private:
    double mLower[3];
    double mUpper[3];
};

#endif
