// MeshFixture.h: what the tests of mesh files share: texts, folders, messages, and meshes compared.

#ifndef MESHFIXTURE_H
#define MESHFIXTURE_H

#include "MeshFile.h"
#include "OutputFile.h"

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>
#include <zlib.h>

namespace voz::workbench::meshtest
{

using Row = std::array<int, 4>;
using Point = std::array<double, 3>;

// A folder of the test's own, gone at its end.
class Folder
{
public:
    Folder()
    {
        auto const * const info = ::testing::UnitTest::GetInstance()->current_test_info();
        mPath = std::filesystem::temp_directory_path() /
                (std::string("meshfile_") + info->test_suite_name() + "_" + info->name());
        std::filesystem::remove_all(mPath);
        std::filesystem::create_directories(mPath);
    }
    ~Folder()
    {
        std::error_code error;
        std::filesystem::remove_all(mPath, error);
    }
    Folder(Folder const &) = delete;
    Folder & operator=(Folder const &) = delete;

    std::string operator/(std::string const & name) const { return (mPath / name).string(); }

    std::string Write(std::string const & name, std::string const & content) const
    {
        std::filesystem::create_directories((mPath / name).parent_path());
        std::ofstream file(mPath / name, std::ios::binary);
        file << content;
        return (mPath / name).string();
    }

private:
    std::filesystem::path mPath;
};

inline std::string ContentOf(std::string const & path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

inline std::string Zipped(std::string const & content)
{
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
    std::string zipped(deflateBound(&stream, static_cast<uLong>(content.size())) + 64, '\0');
    std::string copy = content;
    stream.next_in = reinterpret_cast<Bytef *>(copy.data());
    stream.avail_in = static_cast<uInt>(copy.size());
    stream.next_out = reinterpret_cast<Bytef *>(zipped.data());
    stream.avail_out = static_cast<uInt>(zipped.size());
    deflate(&stream, Z_FINISH);
    zipped.resize(stream.total_out);
    deflateEnd(&stream);
    return zipped;
}

inline std::vector<Row> RowsOf(MeshModel const & model)
{
    std::vector<Row> rows;
    for (int e = 1; e <= model.mesh.numElem(); ++e)
        rows.push_back({model.mesh.ElementValue(e, 0), model.mesh.ElementValue(e, 1), model.mesh.ElementValue(e, 2),
                        model.mesh.ElementValue(e, 3)});
    return rows;
}

inline std::vector<Point> PointsOf(MeshModel const & model)
{
    std::vector<Point> points;
    for (int n = 1; n <= model.mesh.numNode(); ++n)
        points.push_back({model.mesh.NodeValue(n, 0), model.mesh.NodeValue(n, 1), model.mesh.NodeValue(n, 2)});
    return points;
}

inline long SkippedOf(MeshModel const & model, std::string const & name)
{
    for (SkippedItem const & item : model.skipped)
        if (item.name == name)
            return item.count;
    return 0;
}

inline bool HasRemark(MeshModel const & model, std::string const & part)
{
    for (std::string const & remark : model.remarks)
        if (remark.find(part) != std::string::npos)
            return true;
    return false;
}

inline void ExpectSameModel(MeshModel const & a, MeshModel const & b)
{
    EXPECT_EQ(PointsOf(a), PointsOf(b));
    EXPECT_EQ(RowsOf(a), RowsOf(b));
    EXPECT_EQ(a.nodeIds, b.nodeIds);
    EXPECT_EQ(a.elementIds, b.elementIds);
    ASSERT_EQ(a.sets.size(), b.sets.size());
    for (std::size_t i = 0; i < a.sets.size(); ++i)
    {
        EXPECT_EQ(a.sets[i].id, b.sets[i].id);
        EXPECT_EQ(a.sets[i].name, b.sets[i].name);
        EXPECT_EQ(a.sets[i].elements, b.sets[i].elements);
        EXPECT_EQ(a.sets[i].thickness, b.sets[i].thickness);
    }
}

// What() of the InputError that the call throws; empty if it throws none.
template <class Call>
std::string MessageOf(Call call)
{
    try
    {
        call();
    }
    catch (InputError const & error)
    {
        return error.what();
    }
    return {};
}

inline std::string MessageOfText(std::string const & content, std::string const & name)
{
    return MessageOf([&] { ReadMeshText(content, name); });
}

// Reads every prefix of a good text: each gives a mesh or an InputError, and never more elements than the whole has.
inline void ReadEveryPrefix(std::string const & content, std::string const & name)
{
    int const whole = ReadMeshText(content, name).mesh.numElem();
    for (std::size_t length = 0; length < content.size(); ++length)
        try
        {
            EXPECT_LE(ReadMeshText(content.substr(0, length), name).mesh.numElem(), whole) << length;
        }
        catch (InputError const &)
        {
        }
}

// A small mesh of a quadrilateral and two triangles in two sets; the coordinates have all digits.
inline MeshModel SampleModel()
{
    double const nodes[6][3] = {{0, 0, 0.1},        {10, 0, 1.0 / 3.0}, {10, 10, -2e-7},
                                {0, 10, 12345.678}, {20, 0, 1e-12},     {20, 10, 7}};
    int const elems[3][4] = {{1, 2, 3, 4}, {2, 5, 3, 2}, {5, 6, 3, 5}};
    MeshModel model;
    model.mesh = VOZCatMesh(6, 3, nodes, elems);
    model.nodeIds = {1, 2, 3, 4, 5, 6};
    model.elementIds = {1, 2, 3};
    model.sets = {{1, "left", {1}, 0.0}, {2, "right", {2, 3}, 0.0}};
    return model;
}

} // namespace voz::workbench::meshtest

#endif
