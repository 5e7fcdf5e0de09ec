// StlReader.cpp: STL, binary or text, with its corners joined to nodes.
//
// The binary form is 80 bytes of anything, a 32-bit count and 50 bytes a facet: a file of just that size is binary
// whatever its first word, since many binary files begin with "solid". Corners at the same place become one node while
// the file is read, so that memory goes with the mesh; those within the tolerance are joined at the end.

#include "ElementShape.h"
#include "LineReader.h"
#include "MeshBuilder.h"
#include "MeshReaders.h"
#include "ModelEdit.h"
#include "NumberText.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <deque>

namespace voz::workbench
{
namespace
{
constexpr std::size_t kHead = 84;     // header and count
constexpr std::size_t kFacet = 50;    // normal, corners, attribute
constexpr std::size_t kNormal = 12;   // passed over
constexpr double kDefaultWeld = 1e-6; // of the diagonal: some roundings of a single-precision coordinate
constexpr std::size_t kNamed = 5;     // facets that a remark names

using Point = std::array<double, 3>;

std::uint32_t littleEndian(char const * bytes)
{
    std::uint32_t value = 0;
    for (unsigned k = 0; k < 4; ++k)
        value |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[k])) << (8U * k);
    return value;
}

double singleAt(char const * bytes)
{
    std::uint32_t const bits = littleEndian(bytes);
    float value = 0.0F;
    std::memcpy(&value, &bits, sizeof value);
    return static_cast<double>(value) + 0.0; // + 0.0: no negative zero
}

// Nodes by exact place: open addressing over a table of positions.
class CornerTable
{
public:
    // The position of the place, 1-based; one beyond the last if it is new.
    int Find(Point const & place)
    {
        if (2 * (mPlaces.size() + 1) > mSlots.size())
            grow();
        int & slot = mSlots[slotOf(place)];
        if (slot == 0)
        {
            mPlaces.push_back(place);
            slot = static_cast<int>(mPlaces.size());
        }
        return slot;
    }

private:
    std::size_t slotOf(Point const & place) const
    {
        std::uint64_t hash = 0;
        for (double const x : place)
        {
            std::uint64_t bits = 0;
            std::memcpy(&bits, &x, sizeof bits);
            hash = (hash ^ bits) * 0x9E3779B97F4A7C15ULL;
            hash ^= hash >> 29U;
        }
        std::size_t slot = static_cast<std::size_t>(hash) & (mSlots.size() - 1);
        while (mSlots[slot] != 0 && mPlaces[static_cast<std::size_t>(mSlots[slot] - 1)] != place)
            slot = (slot + 1) & (mSlots.size() - 1);
        return slot;
    }

    void grow()
    {
        mSlots.assign(std::max<std::size_t>(1024, 2 * mSlots.size()), 0);
        for (std::size_t i = 0; i < mPlaces.size(); ++i)
            mSlots[slotOf(mPlaces[i])] = static_cast<int>(i + 1);
    }

    std::deque<Point> mPlaces;
    std::vector<int> mSlots; // a position, or 0
};

class StlReader
{
public:
    StlReader(ByteSource & source, ReadOptions const & options)
        : mSource(source), mOptions(options), mBuilder(source.Name(), MeshFormat::Stl, options, {"corner", "facet"})
    {
    }

    MeshModel ReadBinary()
    {
        std::array<char, kHead> head;
        take(head.data(), head.size());
        std::uint32_t const count = littleEndian(head.data() + 80);
        mBuilder.Places().Enter(mSource.Name());
        mSet = 1;
        std::vector<char> part(kFacet * 4096);
        for (std::uint32_t done = 0; done < count;)
        {
            std::size_t const now = std::min<std::size_t>(count - done, part.size() / kFacet);
            take(part.data(), now * kFacet);
            for (std::size_t i = 0; i < now; ++i)
                takeFacet(part.data() + i * kFacet, ++done);
        }
        return finish();
    }

    MeshModel ReadText()
    {
        LineReader lines(mSource);
        mLines = &lines;
        mBuilder.Places().Enter(lines.Name());
        while (nextWord(true))
            readSolid();
        return finish();
    }

private:
    void take(char * to, std::size_t count)
    {
        for (std::size_t had = 0; had < count;)
        {
            std::size_t const got = mSource.Read(to + had, count - had);
            if (got == 0)
                throw InputError(mSource.Name(), 0, 0, "ends within a facet: the file is cut");
            had += got;
        }
    }

    void takeFacet(char const * bytes, std::uint32_t number)
    {
        std::array<Point, 3> corners;
        for (std::size_t k = 0; k < 9; ++k)
        {
            double const x = singleAt(bytes + kNormal + 4 * k);
            if (!std::isfinite(x))
                throw InputError(mSource.Name(), 0, 0,
                                 "facet " + std::to_string(number) + ", corner " + std::to_string(k / 3 + 1) +
                                     ": found " + Shortest(x) + ", expected a finite coordinate");
            corners[k / 3][k % 3] = x;
        }
        addFacet(corners, 0);
    }

    void addFacet(std::array<Point, 3> const & corners, PlaceTable::Mark mark)
    {
        ElementRecord element;
        for (std::size_t k = 0; k < 3; ++k)
        {
            element.nodes[k] = mCorners.Find(corners[k]);
            if (element.nodes[k] > mBuilder.NumNode())
                mBuilder.AddNode(element.nodes[k], corners[k], mark);
        }
        element.id = mBuilder.NumElement() + 1;
        element.set = mSet;
        element.mark = mark;
        mBuilder.AddElement(element);
    }

    // The next word of the text, whatever its line; false at the end, which is an error unless it may end here.
    bool nextWord(bool mayEnd = false)
    {
        while ((mWord = NextWord(mRest)).empty())
        {
            if (!mLines->Next(mLine))
            {
                if (mayEnd)
                    return false;
                mLines->Fail(0, "the text ends within a solid, expected \"endsolid\": the file is cut");
            }
            mRest = mLine;
        }
        return true;
    }

    std::size_t column() const { return static_cast<std::size_t>(mWord.data() - mLine.data()) + 1; }

    bool isWord(std::string_view expected) const { return Upper(mWord) == expected; }

    void expect(std::string_view word, char const * shown)
    {
        if (!isWord(word))
            mLines->Fail(column(), "found " + Quoted(mWord) + ", expected \"" + shown + "\"");
    }

    void readSolid()
    {
        expect("SOLID", "solid");
        mBuilder.Set(++mSet).name = AsUtf8(Trimmed(mRest));
        mRest = {};
        for (nextWord(); !isWord("ENDSOLID"); nextWord())
        {
            if (!isWord("FACET"))
                mLines->Fail(column(), "found " + Quoted(mWord) + ", expected \"facet\" or \"endsolid\"");
            readFacet();
        }
        mRest = {}; // the name once more
    }

    void readFacet()
    {
        PlaceTable::Mark const mark = mBuilder.Places().At(mLines->Line());
        follow("NORMAL", "normal");
        for (int k = 0; k < 3; ++k)
            nextWord(); // the corners tell it better
        follow("OUTER", "outer");
        follow("LOOP", "loop");
        std::array<Point, 3> corners;
        for (Point & corner : corners)
        {
            follow("VERTEX", "vertex");
            for (double & x : corner)
            {
                nextWord();
                if (!ParseReal(mWord, x))
                    mLines->Fail(column(), "found " + Quoted(mWord) + ", expected a coordinate, a finite number");
                x += 0.0; // no negative zero
            }
        }
        follow("ENDLOOP", "endloop");
        follow("ENDFACET", "endfacet");
        addFacet(corners, mark);
    }

    void follow(std::string_view word, char const * shown)
    {
        nextWord();
        expect(word, shown);
    }

    MeshModel finish()
    {
        mCorners = {};
        MeshModel model = mBuilder.Finish();
        double const tolerance =
            mOptions.weldTolerance >= 0.0 ? mOptions.weldTolerance : FractionOfDiagonal(model.mesh, kDefaultWeld);
        std::vector<int> const target = NearestEarlier(model.mesh, tolerance);
        std::vector<char> isNodeKept(target.size(), 1);
        long joined = 0;
        for (std::size_t n = 1; n < target.size(); ++n)
            if (target[n] != static_cast<int>(n))
            {
                isNodeKept[n] = 0;
                ++joined;
            }
        if (joined > 0)
        {
            RedirectRows(model.mesh, target);
            KeepNodes(model, isNodeKept);
            model.remarks.push_back(std::to_string(joined) + " corners within " + Shortest(tolerance) +
                                    " mm of another were joined to it.");
        }
        dropPoints(model, mSource.Name());
        renumber(model);
        return model;
    }

    // Facets with two corners at one node are none; those without area stay and are told.
    static void dropPoints(MeshModel & model, std::string const & file)
    {
        int const count = model.mesh.numElem();
        std::vector<char> isKept(static_cast<std::size_t>(count) + 1, 1);
        std::vector<int> dropped, flat;
        for (int e = 1; e <= count; ++e)
        {
            int const(&row)[4] = model.mesh.GetElemData()[e];
            if (row[0] == row[1] || row[1] == row[2] || row[2] == row[0])
            {
                isKept[static_cast<std::size_t>(e)] = 0;
                dropped.push_back(e);
            }
            else if (ShapeOf(model.mesh, row).hasNoArea)
                flat.push_back(e);
        }
        if (static_cast<int>(dropped.size()) == count)
            throw InputError(file, 0, 0, "every facet has two corners at one place, expected triangles");
        if (!flat.empty())
            model.remarks.push_back(named(flat) + " no area.");
        if (dropped.empty())
            return;
        KeepElements(model, isKept);
        std::vector<char> isUsed(static_cast<std::size_t>(model.mesh.numNode()) + 1, 0);
        for (int e = 1; e <= model.mesh.numElem(); ++e)
            for (int const n : model.mesh.GetElemData()[e])
                isUsed[static_cast<std::size_t>(n)] = 1;
        KeepNodes(model, isUsed);
        model.remarks.push_back(named(dropped) + " two corners at one place; left out.");
    }

    static std::string named(std::vector<int> const & facets)
    {
        std::string text = std::to_string(facets.size()) + (facets.size() == 1 ? " facet (" : " facets (");
        for (std::size_t i = 0; i < std::min(kNamed, facets.size()); ++i)
            text += (i > 0 ? ", " : "") + std::to_string(facets[i]);
        return text + (facets.size() > kNamed ? ", ...)" : ")") + (facets.size() == 1 ? " has" : " have");
    }

    static void renumber(MeshModel & model)
    {
        for (std::size_t i = 0; i < model.nodeIds.size(); ++i)
            model.nodeIds[i] = static_cast<int>(i + 1);
        for (std::size_t i = 0; i < model.elementIds.size(); ++i)
            model.elementIds[i] = static_cast<int>(i + 1);
    }

    ByteSource & mSource;
    ReadOptions const & mOptions;
    MeshBuilder mBuilder;
    CornerTable mCorners;
    int mSet = 0;
    LineReader * mLines = nullptr; // of the text form
    std::string_view mLine, mRest, mWord;
};

bool isText(std::string_view start)
{
    if (start.find('\0') != std::string_view::npos)
        return false;
    if (start.substr(0, 3) == "\xEF\xBB\xBF")
        start.remove_prefix(3);
    std::size_t const begin = std::min(start.find_first_not_of(" \t\r\n"), start.size());
    return Upper(start.substr(begin, 5)) == "SOLID";
}
} // namespace

MeshModel ReadStl(ByteSource & io_source, ReadOptions const & i_options)
{
    if (!io_source.Size()) // zipped, or a pipe: only the whole tells its size
    {
        std::string const whole = io_source.ReadAll();
        ByteSource inMemory = ByteSource::Memory(io_source.Name(), whole);
        if (!inMemory.Size())
            throw InputError(io_source.Name(), 0, 0, "is gzip within gzip, expected STL");
        return ReadStl(inMemory, i_options);
    }
    std::uint64_t const size = *io_source.Size();
    std::string_view const start = io_source.Peek(1024);
    std::uint64_t const facets = start.size() >= kHead ? littleEndian(start.data() + 80) : 0;
    bool const isBinary = start.size() >= kHead && size == kHead + kFacet * facets;
    if (isBinary)
        return StlReader(io_source, i_options).ReadBinary();
    if (isText(start))
        return StlReader(io_source, i_options).ReadText();
    if (start.size() < kHead)
        throw InputError(io_source.Name(), 0, 0,
                         "has " + std::to_string(size) +
                             " bytes, expected text that begins with \"solid\", or 84 bytes and more");
    throw InputError(io_source.Name(), 0, 0,
                     "its head tells " + std::to_string(facets) + " facets, which make " +
                         std::to_string(kHead + kFacet * facets) + " bytes, but it has " + std::to_string(size) +
                         (size < kHead + kFacet * facets ? ": the file is cut" : ": it is no STL file, or damaged"));
}

} // namespace voz::workbench
