// ElemProperty.h: the process definition of one forming job.
//
// ElemProperty holds what acts on which element and node: materials and limits per property, pads, draw beads, blank
// holders, prescribed displacements, auto strain, springback lists. Its records stand here too. Plain holders: no
// accessor checks an index; counted arrays are 1-based, row 0 allocated and empty. Node and element numbers are mesh
// positions; the trimming list holds element labels. Lengths in mm, holder force N, bead force N/m, pad pressure Pa,
// auto strain percent.

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
    DispBC(DispBC const & i_other);
    ~DispBC();
    DispBC & operator=(DispBC const & i_other);

    void Clear();
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
    double factorField() const { return mFactor; }    // the field itself
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
    ElemProperty & operator=(ElemProperty const & i_other); // shares all arrays with its source
    virtual ~ElemProperty();
    void clear();

    // Properties: materials and limits 0 .. P.
    void sizeProperty(int p);
    int sizeProperty() const;
    void sizePropertyIndex(int n);
    int & propertyIndex(int e) const; // 1-based by element
    void propertyId(int e, int i_id);
    VOZMaterial * material(int i) const;
    FormingLimit & formingLimit(int i) const;

    // Pressure pads.
    void sizePressPads(int n);
    int sizePressPads() const;
    int getNbPressurePads() const { return sizePressPads(); }
    void setNbPressurePads(int n);        // the count alone
    void pressPadSize(int i, int i_size); // ignored if i is above count + 1
    int pressPadSize(int i) const;
    void pressPadVal(int i, double i_value);
    double pressPadVal(int i) const;
    int pressPads(int i, int k) const;
    void pressPads(int i, int k, int i_node);
    void pressPadSize(int * i_sizes); // whole arrays by new[]: the class owns what it is given
    int * pressPadSize() const;
    void pressPadVal(double * i_values);
    double * pressPadVal() const;
    void pressPadXYZ(double ** i_xyz);
    double ** pressPadXYZ() const;
    void clearPressPads();
    void setPressurePad(); // zero without freeing

    // Draw beads.
    void sizeDrawBeads(int n);
    int sizeDrawBeads() const;
    void updateDrawBeads(int n); // the count alone
    DrawBead & drawBeads(int i) const;
    void drawBeads(int i, DrawBead & i_bead);
    int totalDBEdges() const;
    void clearDrawBeads();
    void setDrawBeads();

    // Blank holders.
    void sizeBlankHolders(int n);
    int sizeBlankHolders() const;
    void updateBlankHolders(int n);
    BlankHolder & blankHolders(int i) const;
    void blankHolders(int i, BlankHolder & i_holder);
    int totalBHEdges() const;
    void clearBlankHolders();
    void setBlankHolders();

    // Prescribed displacements.
    void sizeDispBC(int n);
    int sizeDispBC() const;
    DispBC & dispBCs(int i) const;
    void dispBCs(int i, DispBC & i_table);     // ignored if i is above the count
    void dispBCs(int i, VOZCatAxis & i_frame); // ignored if i is above the count
    void prescDispBC(int i, int i_dof, double i_value);
    int totalDispBCNodes() const;
    void clearDispBC();
    void setDispBC();

    // Auto strain: two points (copied; the getter's copies by new[] are the caller's), target strains in engineering
    // percent.
    void setAutoStrain(double const * i_target, double const * i_ref, double i_targetStrain, double i_refStrain,
                       double i_value, bool i_on);
    bool getAutoStrain(double *& o_target, double *& o_ref, double & o_targetStrain, double & o_refStrain,
                       double & o_value) const;

    // Springback: lists by new[], owned from the setter on.
    void setSprinkbackFixity(bool i_fix); // the spelling is the name
    bool getSprinkbackFixity() const;
    void setAlignmentSize(int n);
    int getAlignmentSize() const;
    void setAlignment(int * i_nodes); // node positions
    int * getAlignment() const;
    void setTrimmingSize(int n);
    int getTrimmingSize() const;
    void setTrimming(int * i_elements); // element labels
    int * getTrimming() const;

    double averageThickness() const; // of the kernel materials 1 .. P, m; NaN without one
    double averageYield() const;     // Pa

private:
    struct Arrays;
    std::shared_ptr<Arrays> mArrays; // shared by copies, freed with the last one
};

#endif
