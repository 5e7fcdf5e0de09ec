// ObjMesh.cpp: OBJ, read and written: v and f, sets by g and o.
//
// Faces of five corners and more are fanned from their first. Other statements without geometry of their own (normals,
// textures, materials, smoothing) are passed over; lines, points and free-form geometry are counted as skipped.

#include "LineReader.h"
#include "MeshBuilder.h"
#include "MeshReaders.h"
#include "NumberText.h"
#include "OutputFile.h"

#include <algorithm>

namespace voz::workbench
{
namespace
{
constexpr std::string_view kPassedOver[] = {"vt", "vn",    "vp",       "s",        "usemtl", "mtllib",
                                            "mg", "bevel", "c_interp", "d_interp", "lod"};

class ObjReader
{
public:
    ObjReader(ByteSource & source, ReadOptions const & options)
        : mLines(source), mBuilder(source.Name(), MeshFormat::Obj, options, {"vertex", "face"})
    {
        mBuilder.Places().Enter(source.Name());
    }

    MeshModel Read()
    {
        std::string_view line;
        while (mLines.Next(line))
        {
            int const first = mLines.Line();
            if (!line.empty() && line.back() == '\\')
                line = joined(line);
            mMark = mBuilder.Places().At(first);
            takeLine(line);
        }
        return mBuilder.Finish();
    }

private:
    // A backslash at its end carries a line on.
    std::string_view joined(std::string_view line)
    {
        mJoined.assign(line);
        while (!mJoined.empty() && mJoined.back() == '\\' && mJoined.size() < LineReader::kLongestLine)
        {
            mJoined.back() = ' ';
            std::string_view more;
            if (mLines.Next(more))
                mJoined += more;
        }
        return mJoined;
    }

    void takeLine(std::string_view line)
    {
        mLine = line.substr(0, line.find('#'));
        std::string_view rest = mLine;
        std::string_view const word = NextWord(rest);
        if (word == "v")
            takeVertex(rest);
        else if (word == "f" || word == "fo") // fo: an old name of the same
            takeFace(rest);
        else if (word == "g" || word == "o")
            mSet = mBuilder.SetOfName(AsUtf8(Trimmed(rest)));
        else if (!word.empty() &&
                 std::find(std::begin(kPassedOver), std::end(kPassedOver), word) == std::end(kPassedOver))
            mBuilder.Skip(AsUtf8(word));
    }

    std::size_t columnOf(std::string_view word) const
    {
        return word.empty() ? mLine.size() + 1 : static_cast<std::size_t>(word.data() - mLine.data()) + 1;
    }

    void takeVertex(std::string_view rest)
    {
        std::array<double, 3> place{};
        for (double & x : place)
        {
            std::string_view const word = NextWord(rest);
            if (!ParseReal(word, x))
                mLines.Fail(columnOf(word), "found " + Quoted(word) + ", expected a coordinate, a finite number");
        }
        mBuilder.AddNode(mBuilder.NumNode() + 1, place, mMark);
    }

    // "i", "i/t", "i//n", "i/t/n"; negative counts back from the last vertex.
    int vertex(std::string_view word) const
    {
        int const count = mBuilder.NumNode();
        int index = 0;
        if (!ParseInteger(word.substr(0, word.find('/')), index))
            mLines.Fail(columnOf(word), "found " + Quoted(word) + ", expected the number of a vertex");
        int const position = index < 0 ? count + 1 + std::max(index, -count - 1) : index;
        if (position < 1 || position > count)
            mLines.Fail(columnOf(word), "found vertex " + std::to_string(index) + ", expected 1 to " +
                                            std::to_string(count) + " or -1 to -" + std::to_string(count) +
                                            ", the vertices above this line");
        return position;
    }

    void takeFace(std::string_view rest)
    {
        mCorners.clear();
        for (std::string_view word = NextWord(rest); !word.empty(); word = NextWord(rest))
            mCorners.push_back(vertex(word));
        if (mCorners.size() < 3)
            mLines.Fail(1, "found a face of " + std::to_string(mCorners.size()) + " corners, expected 3 or more");
        if (mSet == 0)
            mSet = mBuilder.SetOfName("");
        if (mCorners.size() == 4)
        {
            addElement({mCorners[0], mCorners[1], mCorners[2], mCorners[3]});
            return;
        }
        for (std::size_t k = 2; k < mCorners.size(); ++k)
            addElement({mCorners[0], mCorners[k - 1], mCorners[k], 0});
        mFanned += mCorners.size() > 4 ? 1 : 0;
        if (mFanned == 1 && mCorners.size() > 4)
            mBuilder.Remark("Faces of more than four corners were cut into triangles, the first in line " +
                            std::to_string(mLines.Line()) + ".");
    }

    void addElement(std::array<int, 4> const & nodes)
    {
        ElementRecord element;
        element.id = mBuilder.NumElement() + 1;
        element.set = mSet;
        element.mark = mMark;
        element.nodes = nodes;
        mBuilder.AddElement(element);
    }

    LineReader mLines;
    MeshBuilder mBuilder;
    std::string mJoined;
    std::string_view mLine;
    PlaceTable::Mark mMark = 0;
    std::vector<int> mCorners;
    int mSet = 0;
    int mFanned = 0;
};

// A name is the rest of one line; "#" would begin a comment.
std::string nameOf(ElementSet const & set)
{
    std::string name = set.name.empty() ? "set_" + std::to_string(set.id) : AsUtf8(set.name);
    std::replace(name.begin(), name.end(), '#', '_');
    if (name.back() == '\\')
        name.back() = '_';
    return name;
}
} // namespace

MeshModel ReadObj(ByteSource & io_source, ReadOptions const & i_options)
{
    return ObjReader(io_source, i_options).Read();
}

void WriteObj(MeshModel const & i_model, OutputFile & io_file)
{
    VOZCatMesh const & mesh = i_model.mesh;
    io_file << "# Lengths in mm.\n";
    for (int n = 1; n <= mesh.numNode(); ++n)
        io_file << "v " << Shortest(mesh.NodeValue(n, 0)) << ' ' << Shortest(mesh.NodeValue(n, 1)) << ' '
                << Shortest(mesh.NodeValue(n, 2)) << '\n';
    std::vector<int> const setOf = SetOfElements(i_model);
    std::map<int, std::string> names;
    if (i_model.sets.size() > 1 || (i_model.sets.size() == 1 && !i_model.sets[0].name.empty()))
        for (ElementSet const & set : i_model.sets)
            names[set.id] = nameOf(set);
    int set = 0;
    for (int e = 1; e <= mesh.numElem(); ++e)
    {
        int const own = setOf[static_cast<std::size_t>(e)];
        if (own != set && names.count(own) != 0)
            io_file << "g " << names[own] << '\n';
        set = own;
        int const(&row)[4] = mesh.GetElemData()[e];
        io_file << 'f';
        for (int k = 0; k < (IsTriangleRow(row) ? 3 : 4); ++k)
            io_file << ' ' << row[k];
        io_file << '\n';
    }
}

} // namespace voz::workbench
