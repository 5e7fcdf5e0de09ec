// Result.h: what a forming simulation produced for a mesh, in parallel 1-based arrays; filled by every route.
//
// Index 0 exists and is no node or element. Which unit stands in an array depends on the route (mm after the file
// route, m after the in-process routes); strains are engineering percent. An index out of bounds is reported as a
// broken contract, and the access then goes to index 0; operations marked "raw" report nothing, know the arrays' size
// alone and go to index 0 beyond it. No operation checks the component. Copies share all arrays, which are freed with
// the last of them; counts and punch force are their own.

#ifndef RESULT_H
#define RESULT_H

#include "ExportedByVOZDravo.h"
#include "Vec.h"

#include <memory>

class ElemProperty;
class Material;
class VOZCatMesh;

class ExportedByVOZDravo Result
{
public:
    explicit Result(VOZCatMesh const & i_mesh); // sized from the mesh, all zero
    Result(Result const & i_other);             // shares the arrays
    Result & operator=(Result const & i_other); // shares the arrays
    virtual ~Result();

    int numNodeResult() const { return mNumNodeResult; }
    void numNodeResult(int n) { mNumNodeResult = n; } // the count alone
    int numElemResult() const { return mNumElemResult; }

    // Per node, 3 components.
    float disp(int i_node, int i_comp) const;
    float disp(int i_node, int i_comp) { return disp1(i_node, i_comp); } // or a plain 0 could be taken for a Vec
    void disp(int i_node, int i_comp, float i_value);
    Vec disp(int i_node);
    void disp(int i_node, Vec const & i_value);
    float disp1(int i_node, int i_comp) const; // a second name of the getter
    float disp2d(int i_node, int i_comp) const;
    void disp2d(int i_node, int i_comp, float i_value);
    float dispOnBinder(int i_node, int i_comp) const;
    float dispOnBinder(int i_node, int i_comp) { return dispOnBinder1(i_node, i_comp); } // likewise
    void dispOnBinder(int i_node, int i_comp, float i_value);
    Vec dispOnBinder(int i_node);
    void dispOnBinder(int i_node, Vec const & i_value);
    float dispOnBinder1(int i_node, int i_comp) const;
    float nstrain(int i_node, int i_comp) const; // 0 major, 1 minor, 2 thickness strain, percent
    void nstrain(int i_node, int i_comp, float i_value) const;

    // Per node.
    int nsafety(int i_node) const;
    void nsafety(int i_node, int i_value); // raw
    int nforming(int i_node) const;
    void nforming(int i_node, int i_value);
    double dsafety(int i_node) const;
    void dsafety(int i_node, double i_value); // raw
    double dforming(int i_node) const;
    void dforming(int i_node, double i_value);
    float NodeThickness(int i_node) const;
    void NodeThickness(int i_node, float i_value);

    // Per element.
    float thickness(int i_elem) const;
    void thickness(int i_elem, float i_value);
    // 0 major, 1 minor, 2 thickness strain, percent; after the file route 2 is the principal angle in degrees, of a
    // quadrilateral the sum of its four.
    float strain(int i_elem, int i_comp) const; // raw
    void strain(int i_elem, int i_comp, float i_value) const;
    float thickStrain(int i_elem) const;
    void thickStrain(int i_elem, float i_value);
    int safety(int i_elem) const;
    void safety(int i_elem, int i_value);
    int forming(int i_elem) const;
    void forming(int i_elem, int i_value);
    float equivalentStrain(int i_elem) const;
    void equivalentStrain(int i_elem, float i_value);
    float theta(int i_elem) const; // radians, 0 to pi
    void theta(int i_elem, float i_value);

    // Per node or per element, as the writer fills it.
    float EquivalentStrain(int i_node) const;
    void EquivalentStrain(int i_node, float i_value);
    float stress(int i) const;               // raw; Pa
    void stress(int i, float i_value) const; // raw

    float PunchForce() const { return mPunchForce; } // N
    void PunchForce(double i_force) { mPunchForce = static_cast<float>(i_force); }

    // Thickness strain and zones of each element, with the limits of the configuration file: one that is missing there
    // is 0, its test off. Without a configuration file nothing changes.
    void compute(ElemProperty const & i_property);
    // The squared form, per element, as a fraction squared: no root is taken.
    void EquivalentStrain(Material const & i_material);

    // Means over the elements at each node; 0 where there is none. 0 is returned, or 1 with the output untouched if
    // memory runs out or a contract is broken: no output, or a mesh of more nodes than this store.
    int AverageNodeThickness(VOZCatMesh const & i_mesh);              // thickness to NodeThickness
    int AverageNodeStrain(VOZCatMesh const & i_mesh, float * o_node); // EquivalentStrain; numNode + 1 of the mesh
    int AverageNodeStress(VOZCatMesh const & i_mesh, float * o_node); // stress; likewise

protected:
    int AverageResultsAtNodes(VOZCatMesh const & i_mesh, float * i_pElemRes, float * o_pNodeRes);

private:
    struct Arrays;
    int NodeRow(int i_node) const;
    int ElemRow(int i_elem) const;
    int AllocRow(int i_node) const;

    int mNumNodeResult;
    float * mDisp;   // 3 per node
    float * mDisp2d; // 3 per node
    int mNumElemResult;
    float * mThickness; // per element
    float * mStrain;    // 3 per element
    float * mNstrain;   // 3 per node
    float * mThickStrain;
    int * mSafety;  // per element
    int * mForming; // per element
    int * mNsafety;
    int * mNforming;
    float * mElementEquivalentStrain; // equivalentStrain
    float * mNodeThickness;
    float * mEquivalentStrain; // EquivalentStrain: mAlloc + 1
    float * mDispOnBinder;     // 3 per node
    float * mTheta;            // per element
    float * mStress;           // mAlloc + 1
    float mPunchForce;
    int mAlloc; // the larger count
    double * mDsafety;
    double * mDforming;
    std::shared_ptr<Arrays> mArrays; // what the pointers point into
};

// Strain-energy density per element: equivalentStrain^(n + 1) K / (n + 1). It mixes percent and MPa by definition.
class ExportedByVOZDravo EnergyCalculator
{
public:
    EnergyCalculator(Result const & i_result, Material const & i_material);
    EnergyCalculator(EnergyCalculator const & i_other); // shares the array
    EnergyCalculator & operator=(EnergyCalculator const & i_other);
    virtual ~EnergyCalculator();
    double strainEnergyDensity(int i_elem) const; // 1-based, no bounds check

private:
    std::shared_ptr<double[]> mDensity;
};

#endif
