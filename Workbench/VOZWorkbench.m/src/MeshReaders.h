// MeshReaders.h: the readers and writers behind ReadMesh and WriteMesh, one pair per format.

#ifndef MESHREADERS_H
#define MESHREADERS_H

#include "ByteSource.h"
#include "MeshFile.h"

#include <vector>

namespace voz::workbench
{

class OutputFile;

// Whether includes may be opened; where a file's own folder is not known they are sought in the current one.
enum class Includes
{
    Followed,
    Refused
};

MeshModel ReadNastran(ByteSource & io_source, ReadOptions const & i_options, Includes i_includes);
MeshModel ReadDyna(ByteSource & io_source, ReadOptions const & i_options, Includes i_includes);
MeshModel ReadObj(ByteSource & io_source, ReadOptions const & i_options);
MeshModel ReadStl(ByteSource & io_source, ReadOptions const & i_options);

void WriteNastran(MeshModel const & i_model, OutputFile & io_file);
void WriteDyna(MeshModel const & i_model, OutputFile & io_file);
void WriteObj(MeshModel const & i_model, OutputFile & io_file);
void WriteStl(MeshModel const & i_model, OutputFile & io_file);

// The set of each element, by position; 1 for one that no set holds. Row 0 unused.
std::vector<int> SetOfElements(MeshModel const & i_model);

inline bool IsTriangleRow(int const (&i_row)[4])
{
    return i_row[0] == i_row[3];
}

} // namespace voz::workbench

#endif
