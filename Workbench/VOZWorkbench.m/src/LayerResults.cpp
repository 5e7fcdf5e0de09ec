// LayerResults.cpp: what the drivers leave, in the workbench's units.

#include "LayerResults.h"

#include "RouteParts.h"

namespace voz::workbench
{

namespace
{
constexpr double kMillimetrePerMetre = 1000.0;
constexpr double kMegapascalPerPascal = 1e-6;

ElementOutcome ConvertElement(Result const & i_layer, Result const & i_mid, int e, Outcome const & i_outcome)
{
    ElementOutcome element;
    element.thickness = kMillimetrePerMetre * static_cast<double>(i_mid.thickness(e));
    element.thinning = 100.0 * (1.0 - element.thickness / i_outcome.firstThickness);
    element.major = i_layer.strain(e, 0);
    element.minor = i_layer.strain(e, 1);
    element.thicknessStrain = ThicknessStrain(i_outcome.limit, element.major, element.minor);
    element.angle = i_layer.theta(e);
    element.equivalentStrain = i_layer.equivalentStrain(e);
    element.safety = i_layer.safety(e);
    element.forming = i_layer.forming(e);
    SettleZones(element.major, element.minor, element.safety, element.forming);
    return element;
}

// The drivers keep the stress at the nodes: an element takes the mean of its corners.
double StressOf(Result const & i_result, VOZCatMesh const & i_mesh, int e)
{
    int const corners = i_mesh.isTriangle(e) != 0 ? 3 : 4;
    double sum = 0.0;
    for (int k = 0; k < corners; ++k)
        sum += i_result.stress(i_mesh.ElementValue(e, k));
    return kMegapascalPerPascal * sum / corners;
}

NodeOutcome ConvertNode(LayerResults const & i_layers, int n)
{
    NodeOutcome node;
    node.thickness = kMillimetrePerMetre * static_cast<double>(i_layers.mid.NodeThickness(n));
    node.major = i_layers.mid.nstrain(n, 0);
    node.minor = i_layers.mid.nstrain(n, 1);
    node.safety = i_layers.mid.nsafety(n);
    node.forming = i_layers.mid.nforming(n);
    SettleZones(node.major, node.minor, node.safety, node.forming);
    return node;
}
} // namespace

void ConvertLayers(LayerResults const & i_layers, Outcome & io_outcome)
{
    VOZCatMesh const & mesh = io_outcome.part;
    struct Target
    {
        Result const * layer;
        std::vector<ElementOutcome> * elements;
    };
    for (Target const & target : {Target{&i_layers.top, &io_outcome.top}, Target{&i_layers.mid, &io_outcome.elements},
                                  Target{&i_layers.bottom, &io_outcome.bottom}})
        for (int e = 1; e <= mesh.numElem(); ++e)
        {
            target.elements->push_back(ConvertElement(*target.layer, i_layers.mid, e, io_outcome));
            target.elements->back().stress = StressOf(*target.layer, mesh, e);
        }
    for (int n = 1; n <= mesh.numNode(); ++n)
        io_outcome.nodes.push_back(ConvertNode(i_layers, n));
}

} // namespace voz::workbench
