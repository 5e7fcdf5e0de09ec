// Result.h: what a forming simulation produced for a mesh, in parallel 1-based arrays; filled by every route.
//
// Index 0 exists and is no node or element. Which unit stands in an array depends on the route (mm after the file
// route, m after the in-process routes); strains are engineering percent. Bounds are tested where the operation says so
// in the source's table, and a failed one is reported; the access then goes to index 0. Copies share all arrays.

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
    explicit Result(VOZCatMesh const & i_mesh);
    Result(Result const & i_other);             // shares the arrays
    Result & operator=(Result const & i_other); // shares the arrays
    virtual ~Result();

    int numNodeResult() const;
    void numNodeResult(int n); // the count alone
    int numElemResult() const;

    // Per node, 3 components.
    float disp(int i_node, int i_comp) const;
    void disp(int i_node, int i_comp, float i_value);
    Vec disp(int i_node);
    void disp(int i_node, Vec const & i_value);
    float disp1(int i_node, int i_comp) const; // a second name of the getter
    float disp2d(int i_node, int i_comp) const;
    void disp2d(int i_node, int i_comp, float i_value);
    float dispOnBinder(int i_node, int i_comp) const;
    void dispOnBinder(int i_node, int i_comp, float i_value);
    Vec dispOnBinder(int i_node);
    void dispOnBinder(int i_node, Vec const & i_value);
    float dispOnBinder1(int i_node, int i_comp) const;
    float nstrain(int i_node, int i_comp) const; // 0 major, 1 minor, 2 thickness strain, percent
    void nstrain(int i_node, int i_comp, float i_value) const;

    // Per node.
    int nsafety(int i_node) const;
    void nsafety(int i_node, int i_value);
    int nforming(int i_node) const;
    void nforming(int i_node, int i_value);
    double dsafety(int i_node) const;
    void dsafety(int i_node, double i_value);
    double dforming(int i_node) const;
    void dforming(int i_node, double i_value);
    float NodeThickness(int i_node) const;
    void NodeThickness(int i_node, float i_value);

    // Per element.
    float thickness(int i_elem) const;
    void thickness(int i_elem, float i_value);
    float strain(int i_elem, int i_comp) const; // 0 major, 1 minor, 2 thickness strain, percent
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
    float stress(int i) const; // Pa
    void stress(int i, float i_value) const;

    float PunchForce() const; // N
    void PunchForce(double i_force);

    // Derived values.
    void compute(ElemProperty const &
                     i_property); // thickness strain and zones of each element; nothing without a configuration file
    void EquivalentStrain(Material const & i_material);               // the squared form, per element
    int AverageNodeThickness(VOZCatMesh const & i_mesh);              // 0, or 1 if memory runs out
    int AverageNodeStrain(VOZCatMesh const & i_mesh, float * o_node); // numNode + 1
    int AverageNodeStress(VOZCatMesh const & i_mesh, float * o_node);

protected:
    int AverageResultsAtNodes(VOZCatMesh const & i_mesh, float * i_pElemRes, float * o_pNodeRes);

private:
    struct Arrays;
    int mNumNodeResult;
    int mNumElemResult;
    float mPunchForce;
    int mAlloc;
    std::shared_ptr<Arrays> mArrays;
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
