#include "BlankMesh.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace voz::launch
{
namespace
{
constexpr std::int64_t kRigidType = 20;
constexpr std::int64_t kShellWords = 5;
constexpr std::int64_t kShellsAtATime = 4096;

std::vector<std::int64_t> readTable(WordReader & io_reader, std::int64_t at, std::int64_t count)
{
    std::vector<std::int64_t> values(static_cast<std::size_t>(count));
    io_reader.ReadIntegers(io_reader.Advance({}, at), values);
    return values;
}

// Which materials are the blank's, and which rigid; both indexed from 0.
struct Materials
{
    std::vector<bool> isBlank;
    std::vector<bool> isRigid;

    static bool Has(std::vector<bool> const & set, std::int64_t material) // material from 1
    {
        return material >= 1 && material <= static_cast<std::int64_t>(set.size()) &&
               set[static_cast<std::size_t>(material - 1)];
    }
};

// Two tables give the parts' labels, one ascending, one in the order of the materials, and writers differ in which of
// them a shell's material points into. The blank alone is not rigid, which tells where they differ.
std::vector<bool> blankMaterials(std::vector<std::int64_t> const & parts, std::vector<bool> const & isRigid, int part)
{
    std::size_t const count = parts.size() / 2;
    for (std::size_t table : {std::size_t{0}, std::size_t{1}})
    {
        std::vector<bool> isBlank(count);
        bool isFound = false;
        for (std::size_t i = 0; i < count; ++i)
            if (parts[table * count + i] == part && !(i < isRigid.size() && isRigid[i]))
                isBlank[i] = isFound = true;
        if (isFound)
            return isBlank;
    }
    return {};
}

Materials readMaterials(WordReader & io_reader, D3plotLayout const & layout, int part)
{
    Materials materials;
    if (layout.typesAt != D3plotLayout::kNone)
        for (std::int64_t const type : readTable(io_reader, layout.typesAt, layout.numTypes))
            materials.isRigid.push_back(type == kRigidType);
    if (layout.partsAt != D3plotLayout::kNone)
        materials.isBlank =
            blankMaterials(readTable(io_reader, layout.partsAt, 2 * layout.numMaterials), materials.isRigid, part);
    else if (layout.numShells > 0 && part >= 1) // no labels: materials are numbered as in the deck
    {
        materials.isBlank.resize(static_cast<std::size_t>(part));
        materials.isBlank.back() = true;
    }
    return materials;
}

// The blank's shells in the order of the file, their corners being places of nodes, from 0.
std::vector<BlankMesh::Shell> readShells(WordReader & io_reader, D3plotLayout const & layout,
                                         Materials const & materials,
                                         std::vector<std::array<std::int64_t, 4>> & o_nodes)
{
    std::vector<BlankMesh::Shell> shells;
    std::vector<std::int64_t> block;
    std::int64_t numRigid = 0;
    for (std::int64_t first = 0; first < layout.numShells; first += kShellsAtATime)
    {
        std::int64_t const count = std::min(kShellsAtATime, layout.numShells - first);
        block.resize(static_cast<std::size_t>(count * kShellWords));
        io_reader.ReadIntegers(io_reader.Advance({}, layout.shellsAt + first * kShellWords), block);
        for (std::int64_t i = 0; i < count; ++i)
        {
            std::int64_t const * const row = block.data() + i * kShellWords;
            if (layout.numRigidShells > 0 && Materials::Has(materials.isRigid, row[4]))
            {
                ++numRigid;
                continue;
            }
            if (!Materials::Has(materials.isBlank, row[4]))
                continue;
            for (int k = 0; k < 4; ++k)
                if (row[k] < 1 || row[k] > layout.numNodes)
                    throw ResultsError(io_reader.Root().name + ": shell " + std::to_string(first + i + 1) +
                                       " has node " + std::to_string(row[k]) + " of " +
                                       std::to_string(layout.numNodes));
            shells.push_back({first + i, first + i - numRigid, {}});
            o_nodes.push_back({row[0] - 1, row[1] - 1, row[2] - 1, row[3] - 1});
        }
    }
    if (numRigid != layout.numRigidShells)
        throw ResultsError(io_reader.Root().name + ": " + std::to_string(numRigid) + " shells are of rigid " +
                           "materials, the head says " + std::to_string(layout.numRigidShells));
    return shells;
}

// Ascending places of the nodes in use, then by label.
std::vector<std::int64_t> usedNodes(std::vector<std::array<std::int64_t, 4>> const & corners)
{
    std::vector<std::int64_t> used;
    used.reserve(4 * corners.size());
    for (auto const & row : corners)
        used.insert(used.end(), row.begin(), row.end());
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    return used;
}

// Sorts by the labels of the table, one label per place; stays as it is without a table.
template <class Item, class PlaceOf>
void sortByLabel(WordReader & io_reader, std::int64_t labelsAt, std::int64_t count, std::vector<Item> & io_items,
                 PlaceOf placeOf)
{
    if (labelsAt == D3plotLayout::kNone)
        return;
    std::vector<std::int64_t> const labels = readTable(io_reader, labelsAt, count);
    auto const label = [&](Item const & item) { return labels[static_cast<std::size_t>(placeOf(item))]; };
    std::stable_sort(io_items.begin(), io_items.end(),
                     [&](Item const & a, Item const & b) { return label(a) < label(b); });
}
} // namespace

// O(shells log shells), once per root.
BlankMesh ReadBlankMesh(WordReader & io_reader, D3plotLayout const & i_layout, int i_part)
{
    Materials const materials = readMaterials(io_reader, i_layout, i_part);
    std::vector<std::array<std::int64_t, 4>> corners;
    BlankMesh mesh;
    mesh.shells = readShells(io_reader, i_layout, materials, corners);
    if (mesh.shells.empty())
        throw ResultsError(io_reader.Root().name + ": no shells of part " + std::to_string(i_part) + ", the blank");
    if (mesh.shells.size() > static_cast<std::size_t>(std::numeric_limits<int>::max() / 12))
        throw ResultsError(io_reader.Root().name + ": " + std::to_string(mesh.shells.size()) +
                           " shells are more than a record can count");

    mesh.nodes = usedNodes(corners);
    sortByLabel(io_reader, i_layout.nodeLabelsAt, i_layout.numNodes, mesh.nodes, [](std::int64_t p) { return p; });
    std::vector<int> indexOf(static_cast<std::size_t>(i_layout.numNodes), -1);
    for (std::size_t i = 0; i < mesh.nodes.size(); ++i)
        indexOf[static_cast<std::size_t>(mesh.nodes[i])] = static_cast<int>(i);
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        for (std::size_t k = 0; k < 4; ++k)
            mesh.shells[i].corner[k] = indexOf[static_cast<std::size_t>(corners[i][k])];
        if (mesh.shells[i].corner[3] == mesh.shells[i].corner[2]) // how the format closes a triangle
            mesh.shells[i].corner[3] = -1;
    }
    sortByLabel(io_reader, i_layout.shellLabelsAt, i_layout.numShells, mesh.shells,
                [](BlankMesh::Shell const & shell) { return shell.place; });
    return mesh;
}
} // namespace voz::launch
