// ElemProperty.h: the process definition of one forming job.
//
// ElemProperty holds what acts on which element and node: materials and limits per property, pads, draw beads, blank
// holders, prescribed displacements, auto strain, springback lists. Its records stand here too. Plain holders: no
// accessor checks an index; counted arrays are 1-based, row 0 allocated and empty. A count below 0 counts as 0. Node
// and element numbers are mesh positions; the trimming list holds element labels. Lengths in mm, holder force N, bead
// force N/m, pad pressure Pa, auto strain percent.
//
// A copy of an ElemProperty has the same arrays, not copies of them: what is written through one is read through the
// other. An array is freed with the last object that holds it. Copies of the records are deep.

#ifndef ELEMPROPERTY_H
#define ELEMPROPERTY_H

#include "ExportedByVOZDravo.h"
#include "FormingLimit.h"
#include "VOZCatAxis.h"

#include <memory>

class VOZCatMesh;
class VOZMaterial;

// One edge of an element.
class ExportedByVOZDravo EdgeProperty
{
public:
    int element = 0;
    int node1 = 0;
    int node2 = 0;
    double edgeValues[4] = {0.0, 0.0, 0.0, 0.0}; // passed on unchanged by the routes: natural coordinates of both ends

    EdgeProperty() = default;
    EdgeProperty(EdgeProperty const &) = default;
    EdgeProperty & operator=(EdgeProperty const &) = default;

    // Of node1 (i_end 1) or node2 (any other); untouched if the node is no corner of the element.
    void naturalCoord(VOZCatMesh const * i_mesh, int i_end, double & o_xi, double & o_eta) const;
};

class ExportedByVOZDravo DrawBead
{
public:
    int edgeCount = 0;
    double force = 0.0;             // N/m
    double uplift = 0.0;            // the routes overwrite it
    EdgeProperty * edges = nullptr; // rows 0 .. edgeCount - 1, by new[]; owned
    int xyzCount = 0;
    double * xyz = nullptr; // bead line, 3 per point, by new[]; owned

    DrawBead() = default;
    DrawBead(DrawBead const & i_other); // deep
    ~DrawBead();
    DrawBead operator=(DrawBead const & i_other); // deep; returns a copy by value
};

class ExportedByVOZDravo BlankHolder
{
public:
    int edgeCount = 0;
    double force = 0.0;                 // N
    double values[3] = {0.0, 0.0, 0.0}; // copied with the record; no route reads them
    EdgeProperty * edges = nullptr;     // rows 0 .. edgeCount - 1, by new[]; owned

    BlankHolder() = default;
    BlankHolder(BlankHolder const & i_other); // deep
    ~BlankHolder();
    BlankHolder operator=(BlankHolder const & i_other); // deep; returns a copy by value

    double length(VOZCatMesh const * i_mesh) const; // sum over its edges, mesh units; 0 without a mesh
};

// One table of prescribed displacements, from the part to the flat.
class ExportedByVOZDravo DispBC
{
public:
    int kind = 0;
    int tableFlag = 0; // third field of the table's head in the deck
    int size = 0;
    int * nodes = nullptr;                             // rows 0 .. size - 1 of size + 1, by new[]; owned
    int flags[6] = {0, 0, 0, 0, 0, 0};                 // x, y, z, rotations about them: 0 or 1
    double values[6] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0}; // mm for the first three
    VOZCatAxis frame;

    DispBC() = default;
    explicit DispBC(int i_size);
    DispBC(DispBC const & i_other); // as assignment to a fresh table
    ~DispBC();
    DispBC & operator=(DispBC const & i_other); // deep; kind stays

    void Clear();                                  // as DispBC() makes it
    void setSize(int n);                           // zeroes tableFlag, flags and values; n + 1 zero nodes
    void setCode(int i_code);                      // bit k sets flag k
    bool operator==(DispBC const & i_other) const; // size and nodes alone
};

// How strongly the outer edges are held when no individual blank holder is drawn.
class ExportedByVOZDravo FullBlankHolder
{
public:
    double factor() const; // the field if above 0, else by option; -1 means: use totalForce
    void factor(double i_value) { mFactor = i_value; }
    double totalForce() const { return mTotalForce; } // N
    void totalForce(double i_value) { mTotalForce = i_value; }
    int option() const { return mOption; }
    void option(int i_value) { mOption = i_value; }
    bool isActive() const { return mFactor > 0.0 || mTotalForce > 0.0 || mOption > 0; }

private:
    double mFactor = 0.0;
    double mTotalForce = 0.0;
    int mOption = -1;
};

class ExportedByVOZDravo ElemProperty
{
public:
    ElemProperty();
    ElemProperty(ElemProperty const & i_other);             // shares all arrays with its source
    ElemProperty & operator=(ElemProperty const & i_other); // likewise; lets go of its own
    virtual ~ElemProperty();
    void clear();

    // Properties: materials and limits 0 .. P, the materials made by VOZMaterial::Create.
    void sizeProperty(int p);
    int sizeProperty() const { return mNumProperty; } // P
    void sizePropertyIndex(int n);                    // n elements, all of property 0
    int sizePropertyIndex() const;                    // n
    int & propertyIndex(int e) const { return mPropertyIndex[e]; }
    void propertyId(int e, int i_id) { mPropertyIndex[e] = i_id; }
    VOZMaterial * material(int i) const { return mMaterials[i]; }
    FormingLimit & formingLimit(int i) const { return mLimits[i]; }

    // Pressure pads. Node rows k run from 1 to the pad's size.
    void sizePressPads(int n);
    int sizePressPads() const { return mNumPad; }
    int getNbPressurePads() const { return mNumPad; }
    void setNbPressurePads(int n) { mNumPad = n; } // the count alone
    void pressPadSize(int i, int i_size);          // ignored if i is above count + 1 or there are no such rows
    int pressPadSize(int i) const { return mPadSizes[i]; }
    void pressPadVal(int i, double i_value) { mPadValues[i] = i_value; }
    double pressPadVal(int i) const { return mPadValues[i]; }
    int pressPads(int i, int k) const { return mPadNodes[i][k]; }
    int const * pressPadRow(int i) const { return mPadNodes ? mPadNodes[i] : nullptr; } // null: no such rows
    void pressPads(int i, int k, int i_node) { mPadNodes[i][k] = i_node; }

    // Whole arrays, by new[]: the class owns what it is given, and frees what it replaces. Of the coordinates it also
    // owns the rows, each by new[] or null, of the entries 0 .. n - 1, n being the count when they are given.
    void pressPadSize(int * i_sizes);
    int * pressPadSize() const { return mPadSizes; }
    void pressPadVal(double * i_values);
    double * pressPadVal() const { return mPadValues; }
    void pressPadXYZ(double ** i_xyz);
    double ** pressPadXYZ() const { return mPadXYZ; }

    // The four families alike: clear... frees and zeroes; set... zeroes without freeing, for an object whose arrays
    // belong to another; update... overwrites the count alone.
    void clearPressPads();
    void setPressurePad();

    void sizeDrawBeads(int n);
    int sizeDrawBeads() const { return mNumDrawBead; }
    void updateDrawBeads(int n) { mNumDrawBead = n; }
    DrawBead & drawBeads(int i) const { return mDrawBeads[i]; }
    void drawBeads(int i, DrawBead & i_bead) { mDrawBeads[i] = i_bead; }
    int totalDBEdges() const;
    void clearDrawBeads();
    void setDrawBeads();

    void sizeBlankHolders(int n);
    int sizeBlankHolders() const { return mNumBlankHolder; }
    void updateBlankHolders(int n) { mNumBlankHolder = n; }
    BlankHolder & blankHolders(int i) const { return mBlankHolders[i]; }
    void blankHolders(int i, BlankHolder & i_holder) { mBlankHolders[i] = i_holder; }
    int totalBHEdges() const;
    void clearBlankHolders();
    void setBlankHolders();

    void sizeDispBC(int n);
    int sizeDispBC() const { return mNumDispBC; }
    DispBC & dispBCs(int i) const { return mDispBCs[i]; }
    void dispBCs(int i, DispBC & i_table);     // ignored if i is above the count
    void dispBCs(int i, VOZCatAxis & i_frame); // ignored if i is above the count
    void prescDispBC(int i, int i_dof, double i_value) { mDispBCs[i].values[i_dof] = i_value; } // i_dof 0 .. 5
    int totalDispBCNodes() const;
    void clearDispBC();
    void setDispBC();

    // Auto strain: two points of 3 doubles. The setter copies them; a null one leaves the stored point alone. The
    // getter's copies are by new[] and the caller's; an absent point leaves its pointer alone.
    void setAutoStrain(double const * i_target, double const * i_ref, double i_targetStrain, double i_refStrain,
                       double i_value, bool i_on);
    bool getAutoStrain(double *& o_target, double *& o_ref, double & o_targetStrain, double & o_refStrain,
                       double & o_value) const;

    // Springback: lists by new[], owned from the setter on.
    void setSprinkbackFixity(bool i_fix) { mSprinkbackFixity = i_fix; } // the spelling is the name
    bool getSprinkbackFixity() const { return mSprinkbackFixity; }
    void setAlignmentSize(int n) { mAlignmentSize = n; }
    int getAlignmentSize() const { return mAlignmentSize; }
    void setAlignment(int * i_nodes); // node positions
    int * getAlignment() const { return mAlignment; }
    void setTrimmingSize(int n) { mTrimmingSize = n; }
    int getTrimmingSize() const { return mTrimmingSize; }
    void setTrimming(int * i_elements); // element labels
    int * getTrimming() const { return mTrimming; }

    double averageThickness() const; // of the kernel materials 1 .. P, m; NaN without one
    double averageYield() const;     // Pa

private:
    class Keeper; // one per array: frees it with the last object that holds it
    enum
    {
        kMaterials,
        kLimits,
        kPropertyIndex,
        kPadValues,
        kPadSizes,
        kPadNodes,
        kPadXYZ,
        kDrawBeads,
        kBlankHolders,
        kDispBCs,
        kTargetPoint,
        kRefPoint,
        kAlignment,
        kTrimming,
        kNumArrays
    };

    template <class T>
    void Take(int i_array, T *& io_field, T * i_rows); // by new[]; what was there is let go
    void LeaveBe(int i_array);                         // lets go of the array, which must not be freed by that
    void ForgetPressPads();
    void ZeroFields();

    VOZMaterial ** mMaterials;
    FormingLimit * mLimits;
    int * mPropertyIndex;
    int mNumProperty;
    int mNumPad;
    double * mPadValues;
    int * mPadSizes;
    int ** mPadNodes;
    double ** mPadXYZ;
    int mNumDrawBead;
    DrawBead * mDrawBeads;
    int mNumBlankHolder;
    BlankHolder * mBlankHolders;
    int mNumDispBC;
    DispBC * mDispBCs;
    bool mAutoStrain;
    double * mTargetPoint;
    double * mRefPoint;
    double mTargetStrain;
    double mRefStrain;
    double mAutoStrainValue;
    bool mSprinkbackFixity;
    int mAlignmentSize;
    int * mAlignment;
    int mTrimmingSize;
    int * mTrimming;
    std::shared_ptr<Keeper> mKeepers[kNumArrays];
};

#endif
