// DriverFixture.h: a forming job as the in-process drivers take it, with a working folder of the test's own.

#ifndef DRIVERFIXTURE_H
#define DRIVERFIXTURE_H

#include "ConfigFixture.h"
#include "ElemProperty.h"
#include "Material.h"
#include "Result.h"
#include "SampleMeshes.h"
#include "Symmetry.h"
#include "VOZCatAxis.h"
#include "VOZMaterial.h"
#include "VOZSolver.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

// A shallow dome of 120 mm x 80 mm over a flat rim, wider than high: it flattens without folds.
inline VOZCatMesh dome(int columns = 6, int rows = 4, bool split = true)
{
    samples::Grid grid;
    grid.columns = columns;
    grid.rows = rows;
    grid.x1 = 120.0;
    grid.y1 = 80.0;
    grid.split = split;
    grid.surface = [](double x, double y)
    {
        double const u = std::sin(3.14159265358979 * x / 120.0);
        double const v = std::sin(3.14159265358979 * y / 80.0);
        return samples::Point{x, y, 12.0 * u * u * v * v};
    };
    return grid.mesh();
}

template <class Value>
std::vector<Value> rowsOf(Value const * rows, int count)
{
    return std::vector<Value>(rows, rows + count);
}

// Three stores over one mesh: top, mid-plane, bottom.
struct LayerStores
{
    explicit LayerStores(VOZCatMesh const & mesh) : top(mesh), mid(mesh), bottom(mesh) {}

    Result ** layers() { return pointers.data(); }
    Result & operator[](std::size_t i) { return *pointers[i]; }

    Result top;
    Result mid;
    Result bottom;
    std::array<Result *, 3> pointers = {&top, &mid, &bottom};
};

class DriverFixture : public ConfigFixture
{
protected:
    explicit DriverFixture(VOZCatMesh const & i_part = dome()) : part(i_part)
    {
        config("");
        host.environment["CATTemp"] = work.Path();
        property.sizeProperty(1);
        index(part.numElem());
        property.material(1)->m_dThickness = 0.0008;
        friction.coefficient(0.12);
    }

    // Every element of property 1.
    void index(int i_elements)
    {
        property.sizePropertyIndex(i_elements);
        for (int e = 1; e <= i_elements; ++e)
            property.propertyId(e, 1);
    }

    void give(VOZSolver & io_solver, unsigned char i_flag = 0, int i_mode = 0)
    {
        io_solver.SetBoundaryConditions(meshes.data(), meshCount, &property, &symmetry, &friction, &fullHolder, &axis,
                                        i_flag, i_mode, 0);
    }

    // A table of prescribed displacements behind those that are there.
    void hold(std::vector<int> const & i_nodes, bool i_x, double i_xValue, bool i_y, double i_yValue)
    {
        int const count = property.sizeDispBC();
        std::vector<DispBC> tables;
        for (int i = 1; i <= count; ++i)
            tables.push_back(property.dispBCs(i));
        DispBC table(static_cast<int>(i_nodes.size()));
        std::copy(i_nodes.begin(), i_nodes.end(), table.nodes);
        table.flags[0] = i_x ? 1 : 0;
        table.flags[1] = i_y ? 1 : 0;
        table.values[0] = i_xValue;
        table.values[1] = i_yValue;
        tables.push_back(table);
        property.sizeDispBC(count + 1);
        for (int i = 0; i <= count; ++i)
            property.dispBCs(i + 1, tables[static_cast<std::size_t>(i)]);
    }

    void givePad(int i_pad, double i_value, std::vector<int> const & i_elements)
    {
        property.pressPadSize(i_pad, static_cast<int>(i_elements.size()));
        property.pressPadVal(i_pad, i_value);
        for (std::size_t k = 0; k < i_elements.size(); ++k)
            property.pressPads(i_pad, static_cast<int>(k) + 1, i_elements[k]);
    }

    static EdgeProperty edge(int i_element, int i_node1, int i_node2)
    {
        EdgeProperty result;
        result.element = i_element;
        result.node1 = i_node1;
        result.node2 = i_node2;
        return result;
    }

    static void fill(BlankHolder & o_holder, double i_force, std::vector<EdgeProperty> const & i_edges)
    {
        o_holder.force = i_force;
        o_holder.edgeCount = static_cast<int>(i_edges.size());
        o_holder.edges = new EdgeProperty[i_edges.size()];
        std::copy(i_edges.begin(), i_edges.end(), o_holder.edges);
    }

    static void fill(DrawBead & o_bead, double i_force, std::vector<EdgeProperty> const & i_edges)
    {
        o_bead.force = i_force;
        o_bead.edgeCount = static_cast<int>(i_edges.size());
        o_bead.edges = new EdgeProperty[i_edges.size()];
        std::copy(i_edges.begin(), i_edges.end(), o_bead.edges);
    }

    std::vector<std::string> reported() const
    {
        std::vector<std::string> texts;
        for (VOZMemoryHost::Report const & report : host.reports)
            texts.push_back(report.text);
        return texts;
    }

    TempFolder work;
    VOZCatMesh part;
    VOZCatMesh binder;
    std::vector<VOZCatMesh const *> meshes = {&part, nullptr};
    int meshCount = 1;
    ElemProperty property;
    Symmetry symmetry;
    Friction friction;
    FullBlankHolder fullHolder;
    VOZCatAxis axis;
};

#endif
