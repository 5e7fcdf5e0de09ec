#include "StateRecord.h"

#include "ShellFrame.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace voz::launch
{
namespace
{
constexpr std::int64_t kNodesAtATime = 1 << 15;
constexpr std::int64_t kWordsAtATime = 1 << 17; // of shells
constexpr std::size_t kStressWords = 6;

bool areFinite(std::vector<float> const & values)
{
    double sum = 0.0; // finite only where all are: floats do not run over in it
    for (float const value : values)
        sum += static_cast<double>(value);
    return std::isfinite(sum);
}
} // namespace

RecordMaker::RecordMaker(WordReader & io_reader, D3plotLayout const & i_layout, int i_part)
    : m_reader(io_reader), m_layout(i_layout), m_mesh(ReadBlankMesh(io_reader, i_layout, i_part)),
      m_nodes(3 * m_mesh.nodes.size()), m_isDeleted(m_mesh.shells.size()), m_byRow(m_mesh.shells.size()),
      m_byPlace(m_mesh.nodes.size()), m_shellIndex(m_mesh.shells.size()), m_nodeIndex(m_mesh.nodes.size())
{
    std::iota(m_byPlace.begin(), m_byPlace.end(), std::size_t{0});
    std::sort(m_byPlace.begin(), m_byPlace.end(),
              [this](std::size_t a, std::size_t b) { return m_mesh.nodes[a] < m_mesh.nodes[b]; });
    std::iota(m_byRow.begin(), m_byRow.end(), std::size_t{0});
    std::sort(m_byRow.begin(), m_byRow.end(),
              [this](std::size_t a, std::size_t b) { return m_mesh.shells[a].row < m_mesh.shells[b].row; });
}

// The table is read in blocks; each node of the mesh finds its own. Without coordinates in the state the first ones
// hold.
void RecordMaker::ReadNodes(Place i_state)
{
    bool const isInState = m_layout.nodesInState != D3plotLayout::kNone;
    Place const table =
        isInState ? m_reader.Advance(i_state, m_layout.nodesInState) : m_reader.Advance({}, m_layout.coordinatesAt);
    std::int64_t const last = m_mesh.nodes[m_byPlace.back()];
    for (std::size_t next = 0; next < m_byPlace.size();)
    {
        std::int64_t const first = m_mesh.nodes[m_byPlace[next]];
        std::int64_t const count = std::min(kNodesAtATime, last + 1 - first);
        m_block.resize(static_cast<std::size_t>(3 * count));
        m_reader.ReadReals(m_reader.Advance(table, 3 * first), m_block);
        for (; next < m_byPlace.size() && m_mesh.nodes[m_byPlace[next]] < first + count; ++next)
            std::copy_n(m_block.data() + 3 * (m_mesh.nodes[m_byPlace[next]] - first), 3,
                        m_nodes.data() + 3 * m_byPlace[next]);
    }
}

void RecordMaker::ReadDeletions(Place i_state)
{
    std::fill(m_isDeleted.begin(), m_isDeleted.end(), char{0});
    if (m_layout.deletionInState == D3plotLayout::kNone)
        return;
    std::int64_t const count = m_layout.isDeletionByNode ? m_layout.numNodes : m_layout.numShells;
    m_block.resize(static_cast<std::size_t>(count));
    m_reader.ReadReals(m_reader.Advance(i_state, m_layout.deletionInState), m_block);
    auto const isGone = [this](std::int64_t place) { return m_block[static_cast<std::size_t>(place)] == 0.0F; };
    for (std::size_t i = 0; i < m_mesh.shells.size(); ++i)
    {
        BlankMesh::Shell const & shell = m_mesh.shells[i];
        bool isDeleted = !m_layout.isDeletionByNode && isGone(shell.place);
        for (int const corner : shell.corner)
            if (m_layout.isDeletionByNode && corner >= 0)
                isDeleted = isDeleted || isGone(m_mesh.nodes[static_cast<std::size_t>(corner)]);
        m_isDeleted[i] = isDeleted ? 1 : 0;
    }
}

// Labels of nodes and shells in the record, ascending; a node without a shell gets none.
void RecordMaker::Connect(StateRecord & o_record)
{
    std::fill(m_nodeIndex.begin(), m_nodeIndex.end(), 0);
    std::int32_t numShells = 0;
    for (std::size_t i = 0; i < m_mesh.shells.size(); ++i)
    {
        m_shellIndex[i] = m_isDeleted[i] ? -1 : numShells++;
        for (int const corner : m_mesh.shells[i].corner)
            if (!m_isDeleted[i] && corner >= 0)
                m_nodeIndex[static_cast<std::size_t>(corner)] = 1;
    }
    o_record.coordinates.clear();
    std::int32_t numNodes = 0;
    for (std::size_t i = 0; i < m_nodeIndex.size(); ++i)
        if (m_nodeIndex[i] != 0)
        {
            m_nodeIndex[i] = ++numNodes;
            o_record.coordinates.insert(o_record.coordinates.end(),
                                        m_nodes.begin() + static_cast<std::ptrdiff_t>(3 * i),
                                        m_nodes.begin() + static_cast<std::ptrdiff_t>(3 * i + 3));
        }
    o_record.connectivity.clear();
    for (std::size_t i = 0; i < m_mesh.shells.size(); ++i)
        if (!m_isDeleted[i])
            for (int const corner : m_mesh.shells[i].corner)
                o_record.connectivity.push_back(corner < 0 ? 0 : m_nodeIndex[static_cast<std::size_t>(corner)]);
    std::size_t const values = static_cast<std::size_t>(numShells) * StateRecord::kPlaces * StateRecord::kComponents;
    for (auto * const array : {&o_record.stress, &o_record.top, &o_record.bottom, &o_record.middle})
        array->assign(values, 0.0F);
}

// One shell's values into all its places.
void RecordMaker::PlaceValues(BlankMesh::Shell const & i_shell, float const * i_values, std::size_t i_index,
                              StateRecord & io_record)
{
    std::array<float, 3> stress{}, top{}, bottom{}, middle{};
    if (m_layout.strainAt != D3plotLayout::kNone)
    {
        Row3 corners[4] = {};
        for (std::size_t k = 0; k < 4; ++k)
            if (i_shell.corner[k] >= 0)
                for (std::size_t axis = 0; axis < 3; ++axis)
                    corners[k][axis] =
                        static_cast<double>(m_nodes[3 * static_cast<std::size_t>(i_shell.corner[k]) + axis]);
        ShellFrame const frame = FrameOf(corners, i_shell.corner[3] < 0);
        bottom = MembranePart(frame, i_values + m_layout.strainAt);
        top = MembranePart(frame, i_values + m_layout.strainAt + 6);
        for (std::size_t k = 0; k < 3; ++k)
            middle[k] = 0.5F * (bottom[k] + top[k]);
    }
    if (m_layout.hasStress && m_layout.numLayers > 0)
    {
        constexpr std::size_t kLayerOf[3] = {0, 2, 1}; // middle, outer, inner
        for (std::size_t k = 0; k < 3; ++k)
        {
            std::int64_t const layer = static_cast<std::int64_t>(kLayerOf[k]);
            std::int64_t const at = layer < m_layout.numLayers ? layer * m_layout.layerWords : 0;
            stress[k] = EquivalentStress(i_values + at);
        }
    }
    for (std::size_t place = 0; place < StateRecord::kPlaces; ++place)
    {
        std::size_t const at = (i_index * StateRecord::kPlaces + place) * StateRecord::kComponents;
        std::copy_n(stress.data(), 3, io_record.stress.data() + at);
        std::copy_n(top.data(), 3, io_record.top.data() + at);
        std::copy_n(bottom.data(), 3, io_record.bottom.data() + at);
        std::copy_n(middle.data(), 3, io_record.middle.data() + at);
    }
}

// Blocks of rows, whatever part they are of: the blank's rows mostly stand together.
void RecordMaker::ReadShells(Place i_state, StateRecord & o_record)
{
    bool const hasValues = m_layout.strainAt != D3plotLayout::kNone || (m_layout.hasStress && m_layout.numLayers > 0);
    if (!hasValues || m_layout.shellWords == 0)
        return;
    std::int64_t const rowsAtATime = std::max<std::int64_t>(1, kWordsAtATime / m_layout.shellWords);
    Place const table = m_reader.Advance(i_state, m_layout.shellsInState);
    std::int64_t const lastRow = m_mesh.shells[m_byRow.back()].row;
    for (std::size_t next = 0; next < m_byRow.size();)
    {
        std::int64_t const first = m_mesh.shells[m_byRow[next]].row;
        std::int64_t const count = std::min(rowsAtATime, lastRow + 1 - first);
        m_block.resize(static_cast<std::size_t>(count * m_layout.shellWords));
        m_reader.ReadReals(m_reader.Advance(table, first * m_layout.shellWords), m_block);
        for (; next < m_byRow.size() && m_mesh.shells[m_byRow[next]].row < first + count; ++next)
        {
            std::size_t const i = m_byRow[next];
            BlankMesh::Shell const & shell = m_mesh.shells[i];
            if (m_shellIndex[i] >= 0)
                PlaceValues(shell, m_block.data() + (shell.row - first) * m_layout.shellWords,
                            static_cast<std::size_t>(m_shellIndex[i]), o_record);
        }
    }
}

bool RecordMaker::Read(Place i_state, StateRecord & o_record, std::string & o_why)
{
    ReadNodes(i_state);
    ReadDeletions(i_state);
    Connect(o_record);
    if (o_record.connectivity.empty())
    {
        o_why = "all shells of the blank are deleted";
        return false;
    }
    ReadShells(i_state, o_record);
    for (auto const * const array : {&o_record.coordinates, &o_record.stress, &o_record.top, &o_record.bottom})
        if (!areFinite(*array))
        {
            o_why = "it holds values that are no numbers";
            return false;
        }
    return true;
}
} // namespace voz::launch
