// FPIReaderFixture.h: decks as text and as files, and all that the reader makes of one.

#ifndef FPIREADERFIXTURE_H
#define FPIREADERFIXTURE_H

#include "DeckJobs.h"
#include "FPIReader.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

struct FPIReaderInspection
{
    static int curveSize(FPIReader const & reader) { return reader.mCurveSizes ? reader.mCurveSizes[0] : -1; }
    static int curveId(FPIReader const & reader) { return reader.mCurveId; }
    static long useCount(FPIReader const & reader) { return reader.mControl.use_count(); }
    static int lastToken(char const * text) { return FPIReader::GetLastToken(text); }
    static int idBlock(FPIReader & io_reader, std::FILE * file) { return io_reader.ReadIDBlock(file); }
    static int materialBlock(FPIReader & io_reader, std::FILE * file) { return io_reader.ReadMaterialBlockV(file); }
    static int materialProperties(FPIReader & io_reader, std::FILE * file)
    {
        return io_reader.ReadMaterialProperties(file);
    }
    static bool skip(FPIReader & io_reader, std::FILE * file) { return io_reader.SkipBlock(file); }
    static void cleanUp(FPIReader & io_reader) { io_reader.cleanUpMemory(); }
};

namespace fpi
{
namespace fs = std::filesystem;
using Inspection = FPIReaderInspection;
using Control = std::array<int, 66>;
using Properties = std::array<float, 24>;

struct FileCloser
{
    void operator()(std::FILE * file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

inline File fileOf(std::string const & text)
{
    File file(std::tmpfile());
    std::fwrite(text.data(), 1, text.size(), file.get());
    std::rewind(file.get());
    return file;
}

struct Read
{
    int error = -1;
    FPIReader reader;

    explicit Read(std::string const & text) : reader(fileOf(text).get(), error, true) {}

    Control control() const
    {
        Control result;
        result.fill(-99);
        reader.getFPIControl(result.data());
        return result;
    }
    Properties properties(int i = 1) const
    {
        Properties result;
        result.fill(-99.0F);
        reader.getMatProperty(i, result.data());
        return result;
    }
    std::string name(int i = 1) const
    {
        CATUnicodeString result("untouched");
        reader.getMatName(i, result);
        return result.ConvertToChar();
    }
    std::string description(int i = 1) const
    {
        CATUnicodeString result("untouched");
        reader.getMatDec(i, result);
        return result.ConvertToChar();
    }
};

inline std::string const kStars = "************************\n";
inline std::string const kLine1 = "6 3 3 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 2 0 0 0 0 0 0 0 0 0 ";
inline std::string const kControl = "block II: control line\n" + kLine1 + "0\n" + kStars;
inline std::string const kRecord = "1 0.0 0.0 0.0 160.5 0.22 1.5 520\n"
                                   "0 0.0 0.0 0.0 0.0 0.05 0.0 0.0\n"
                                   "0 0.0 0.0 0.0 0.0 0.0 0.0 0.0\n";
inline std::string const kMaterial = "block V: material properties\n" + kRecord + kStars;
inline std::string const kCurve = "block XXVI: curves\n1 4 0 0 0 0.0 0.0 \"steel\" \"mild\"\n" + kStars;

// A deck of a header, the control block, block V and block XXVI; any of them can be given otherwise.
inline std::string deck(std::string const & control = kControl, std::string const & material = kMaterial,
                        std::string const & curve = kCurve)
{
    return "DRAVO3D - version 5.0 - x.fpi\n" + kStars + control + material + curve;
}

inline std::string libraryEntry()
{
    return deckjobs::readFile(fs::path(VOZ_SOURCE_DIR) / "tests" / "golden" / "materials" / "library.fpi");
}

} // namespace fpi

#endif
