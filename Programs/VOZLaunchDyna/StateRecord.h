// StateRecord.h: one state of the blank as a record of "output.voz".
//
// Per shell four places of integration (each with the same values: the solver has one point in the plane) of three
// components. Strains, logarithmic, in the shell's own axes: e11, e22 and the engineering shear; top is the outer
// surface, bottom the inner one, the middle their mean. Stress: the equivalent stress of the middle, the outer and the
// inner point. Where the solver wrote no strains or no stresses the values are 0.

#ifndef STATERECORD_H
#define STATERECORD_H

#include "BlankMesh.h"
#include "StateIndex.h"

namespace voz::launch
{
struct StateRecord
{
    static constexpr std::size_t kPlaces = 4;     // of integration, per shell
    static constexpr std::size_t kComponents = 3; // per place

    std::vector<float> coordinates;         // 3 per node, metres
    std::vector<std::int32_t> connectivity; // 4 per shell, from 1; 0 as the fourth of a triangle
    std::vector<float> stress, top, bottom, middle;
};

// Makes the records of one root; its arrays are made once and used again. Everything handed in is lent.
class RecordMaker
{
public:
    RecordMaker(WordReader & io_reader, D3plotLayout const & i_layout, int i_part);

    // Reads the state that stands there. False, with the reason in o_why, if it has no shells left or holds values that
    // are no numbers. Throws ResultsError if the files end ahead of it.
    bool Read(Place i_state, StateRecord & o_record, std::string & o_why);

private:
    void ReadNodes(Place i_state);
    void ReadDeletions(Place i_state);
    void Connect(StateRecord & o_record);
    void ReadShells(Place i_state, StateRecord & o_record);
    void PlaceValues(BlankMesh::Shell const & i_shell, float const * i_values, std::size_t i_index,
                     StateRecord & io_record);

    WordReader & m_reader;
    D3plotLayout const & m_layout;
    BlankMesh m_mesh;
    std::vector<float> m_nodes;             // 3 per node of the mesh
    std::vector<char> m_isDeleted;          // per shell of the mesh
    std::vector<std::size_t> m_byRow;       // shells of the mesh by their row in the state
    std::vector<std::size_t> m_byPlace;     // nodes of the mesh by their place in the root
    std::vector<std::int32_t> m_shellIndex; // per shell of the mesh: its index in the record, -1 if deleted
    std::vector<std::int32_t> m_nodeIndex;  // per node of the mesh: its label in the record, 0 if unused
    std::vector<float> m_block;             // of a table of the state
};
} // namespace voz::launch

#endif
