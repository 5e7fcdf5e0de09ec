// MeshFile.h: surface meshes from files, and back into files.
//
// Nastran bulk data, LS-DYNA keyword, OBJ and STL; the exact subset of each stands in docs/mesh-formats.md. Triangles
// and quadrilaterals are taken, with the corners alone of quadratic ones; all else is counted by name and skipped.
// Input may be gzipped.
//
// Lengths in a MeshModel are mm. The mesh has label offset 0: rows of its elements hold node positions, 1-based; nodes
// and elements stand in the order of the file, and keep the ids that the file gave them beside the mesh. Formats
// without ids number from 1.

#ifndef MESHFILE_H
#define MESHFILE_H

#include "InputError.h"
#include "Mesh.h"

#include <string>
#include <string_view>
#include <vector>

namespace voz::workbench
{

enum class MeshFormat
{
    Unknown, // to be found from extension and content
    Nastran,
    Dyna,
    Obj,
    Stl
};

// What the file keeps together: a property (Nastran), a part (LS-DYNA), a group or object (OBJ), a solid (STL). Every
// element is in exactly one set; sets ascend by id, elements within one by position.
struct ElementSet
{
    int id = 0;
    std::string name;          // empty if the format or the file has none
    std::vector<int> elements; // positions, 1-based
    double thickness = 0.0;    // mm; 0 if the file gives none
};

struct SkippedItem
{
    std::string name; // of the card or keyword
    long count = 0;   // cards; for a keyword, its occurrences
};

struct MeshModel
{
    VOZCatMesh mesh;
    std::vector<int> nodeIds;    // entry i: the file's id of the node at position i + 1
    std::vector<int> elementIds; // entry i: the file's id of the element at position i + 1
    std::vector<ElementSet> sets;
    std::vector<SkippedItem> skipped; // by name, ascending
    std::string fileUnit;             // the length unit that the file itself names; empty if it names none
    std::vector<std::string> remarks; // what the user ought to know, a sentence each
    MeshFormat format = MeshFormat::Unknown;
};

struct ReadOptions
{
    MeshFormat format = MeshFormat::Unknown;
    double unitLength = 0.0;     // mm per length unit of the file; 0: what the file names, else mm
    double weldTolerance = -1.0; // mm, for STL; below 0: a millionth of the bounding box's diagonal
};

struct MeshFormatName
{
    MeshFormat format;
    char const * name;       // for people: "Nastran bulk data"
    char const * extensions; // with the dot, separated by blanks
};
std::vector<MeshFormatName> const & MeshFormats();
char const * NameOf(MeshFormat i_format);

// By the extension (a closing ".gz" aside); Unknown for one that no format or more than one may have.
MeshFormat FormatOfPath(std::string const & i_path);

// Reads the file, or standard input if i_path is "-". Throws InputError. Includes are sought beside the file that
// names them. A mesh without elements is an error.
MeshModel ReadMesh(std::string const & i_path, ReadOptions const & i_options = {});

// The same from memory; i_name stands for the path, in messages and for the format. An include is an error.
MeshModel ReadMeshText(std::string_view i_content, std::string const & i_name, ReadOptions const & i_options = {});

// Writes the format that the extension tells, in mm; throws OutputError, also for an extension that tells none. What is
// written reads back equal as far as the format can hold it: OBJ and STL have no ids, Nastran no names, and 16 columns
// bound the digits of Nastran and LS-DYNA. STL splits quadrilaterals and leaves out lone nodes; it is binary if one
// solid of single-precision coordinates says it all, else text.
void WriteMesh(MeshModel const & i_model, std::string const & i_path);

} // namespace voz::workbench

#endif
