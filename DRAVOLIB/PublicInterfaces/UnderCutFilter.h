// UnderCutFilter.h: the elements that face away from a stamping direction, and how far the worst passes the vertical.

#ifndef UNDERCUTFILTER_H
#define UNDERCUTFILTER_H

#include "ExportedByVOZDravo.h"

class ElemNormal;
class Vec;

class ExportedByVOZDravo UnderCutFilter
{
public:
    UnderCutFilter(ElemNormal const & i_normals, Vec const & i_direction); // direction: a unit vector
    virtual ~UnderCutFilter();
    int numUnderCutElem() const { return mNumUnderCutElem; }
    float maxUnderCutAngle() const { return mMaxUnderCutAngle; } // degrees; 0 if no element is marked
    int isUnderCutElem(int e) const { return mMark[e]; }         // e from 1

private:
    int mNumUnderCutElem;
    float mMaxUnderCutAngle;
    int * mMark;
};

#endif
