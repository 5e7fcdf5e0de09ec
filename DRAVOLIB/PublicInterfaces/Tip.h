// Tip.h: tipping: the stamping frame of a part, with none, one or two planes of symmetry, with or without a die line.
//
// A Tip keeps a pointer to the mesh, which must outlive it, and never changes it. tip() fills all four arguments:
//
//     axis                row 2 (local z) is the stamping direction; right-handed; lengths in mm
//     symmetry            which of the frame's planes are planes of symmetry
//     numUnderCutElem     elements that face away from the direction
//     maxUnderCutAngle    degrees by which the worst passes the vertical, 0 if none
//
// Nothing is reported: a mesh without elements gives a frame of NaN.

#ifndef TIP_H
#define TIP_H

#include "ExportedByVOZDravo.h"
#include "Plane.h"
#include "Vec.h"

class BoundBox;
class Symmetry;
class VOZCatAxis;
class VOZCatMesh;

class ExportedByVOZDravo Tip
{
public:
    explicit Tip(VOZCatMesh const & i_mesh);
    virtual ~Tip();
    virtual void tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem,
                     double & o_maxUnderCutAngle) = 0;

protected:
    void inwards(Plane & io_plane);                            // its positive side gets the more nodes
    void extents(VOZCatAxis & i_axis, BoundBox & o_box) const; // of all nodes, in local coordinates
    void intersect(Vec & o_point, Plane const & a, Plane const & b, Plane const & c) const; // perpendicular planes only

    // The global position of the lower corner of all nodes' local box. The frame's origin becomes 0.
    Vec lowerCorner(VOZCatAxis & io_axis) const;
    // The frame of a half model: rows from plane and direction, origin on the plane at the lowest y and z.
    void layHalfFrame(VOZCatAxis & o_axis, Plane const & i_plane, Vec const & i_direction) const;

    VOZCatMesh const * mMesh;
};

class ExportedByVOZDravo AverageTip : public Tip
{
public:
    explicit AverageTip(VOZCatMesh const & i_mesh);
    ~AverageTip() override;
    void tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem, double & o_maxUnderCutAngle) override;

protected:
    virtual void orient(VOZCatAxis & o_axis, Vec & io_normal) const;
};

class ExportedByVOZDravo AverageDieLineTip : public Tip
{
public:
    AverageDieLineTip(VOZCatMesh const & i_mesh, Vec const & i_dieLine);
    ~AverageDieLineTip() override;
    void tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem, double & o_maxUnderCutAngle) override;

protected:
    virtual void orient(VOZCatAxis & o_axis, Vec & io_normal) const;

private:
    Vec mDieLine;
};

class ExportedByVOZDravo HalfSymmetryTip : public Tip
{
public:
    HalfSymmetryTip(VOZCatMesh const & i_mesh, Plane const & i_plane);
    ~HalfSymmetryTip() override;
    void tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem, double & o_maxUnderCutAngle) override;

private:
    Plane mPlane; // turned inwards by tip()
};

// A die line shorter than 0.001 leaves all four arguments of tip() untouched.
class ExportedByVOZDravo HalfSymmetryDieLineTip : public Tip
{
public:
    HalfSymmetryDieLineTip(VOZCatMesh const & i_mesh, Plane const & i_plane, Vec const & i_dieLine);
    ~HalfSymmetryDieLineTip() override;
    void tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem, double & o_maxUnderCutAngle) override;

private:
    Vec mDieLine;
    Plane mPlane;
};

class ExportedByVOZDravo FourthSymmetryTip : public Tip
{
public:
    FourthSymmetryTip(VOZCatMesh const & i_mesh, Plane const & i_first, Plane const & i_second);
    ~FourthSymmetryTip() override;
    void tip(VOZCatAxis & o_axis, Symmetry & o_symmetry, int & o_numUnderCutElem, double & o_maxUnderCutAngle) override;

private:
    Plane mFirst; // both turned inwards, and exchanged where the frame needs it, by tip()
    Plane mSecond;
};

#endif
