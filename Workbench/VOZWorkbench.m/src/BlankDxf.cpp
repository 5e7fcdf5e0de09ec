// BlankDxf.cpp: the blank's outline for the laser and the die shop.
//
// Group codes after the published DXF reference (R12 and AutoCAD 2000). R2000 asks for tables, blocks and objects with
// handles; they stand here as literal tables, one pair "code, value" a row, in the order of the file. R12 needs header,
// layers and entities alone.

#include "Exports.h"
#include "FlatGeometry.h"
#include "OutputFile.h"

#include <algorithm>
#include <cmath>

namespace voz::workbench
{
namespace
{

struct Layer
{
    char const * name;
    int colour; // AutoCAD colour index
};
constexpr Layer kLayers[] = {{"OUTLINE", 7}, {"HOLES", 1}, {"TRIM", 3}, {"ROLLING_DIRECTION", 5}, {"TEXT", 8}};

// clang-format off
// Symbol tables ahead of the layers and behind them, blocks, and the root dictionary, with fixed handles below 0x30.
constexpr char const * kTablesAhead =
    "0\nTABLE\n2\nVPORT\n5\n8\n100\nAcDbSymbolTable\n70\n0\n0\nENDTAB\n"
    "0\nTABLE\n2\nLTYPE\n5\n5\n100\nAcDbSymbolTable\n70\n3\n"
    "0\nLTYPE\n5\n14\n330\n5\n100\nAcDbSymbolTableRecord\n100\nAcDbLinetypeTableRecord\n2\nByBlock\n70\n0\n3\n\n72\n65\n73\n0\n40\n0.0\n"
    "0\nLTYPE\n5\n15\n330\n5\n100\nAcDbSymbolTableRecord\n100\nAcDbLinetypeTableRecord\n2\nByLayer\n70\n0\n3\n\n72\n65\n73\n0\n40\n0.0\n"
    "0\nLTYPE\n5\n16\n330\n5\n100\nAcDbSymbolTableRecord\n100\nAcDbLinetypeTableRecord\n2\nCONTINUOUS\n70\n0\n3\nSolid line\n72\n65\n73\n0\n40\n0.0\n"
    "0\nENDTAB\n";
constexpr char const * kTablesBehind =
    "0\nTABLE\n2\nSTYLE\n5\n3\n100\nAcDbSymbolTable\n70\n1\n"
    "0\nSTYLE\n5\n11\n330\n3\n100\nAcDbSymbolTableRecord\n100\nAcDbTextStyleTableRecord\n2\nSTANDARD\n70\n0\n40\n0.0\n41\n1.0\n50\n0.0\n71\n0\n42\n2.5\n3\ntxt\n4\n\n"
    "0\nENDTAB\n"
    "0\nTABLE\n2\nVIEW\n5\n6\n100\nAcDbSymbolTable\n70\n0\n0\nENDTAB\n"
    "0\nTABLE\n2\nUCS\n5\n7\n100\nAcDbSymbolTable\n70\n0\n0\nENDTAB\n"
    "0\nTABLE\n2\nAPPID\n5\n9\n100\nAcDbSymbolTable\n70\n1\n"
    "0\nAPPID\n5\n12\n330\n9\n100\nAcDbSymbolTableRecord\n100\nAcDbRegAppTableRecord\n2\nACAD\n70\n0\n"
    "0\nENDTAB\n"
    "0\nTABLE\n2\nDIMSTYLE\n5\nA\n100\nAcDbSymbolTable\n70\n0\n100\nAcDbDimStyleTable\n0\nENDTAB\n"
    "0\nTABLE\n2\nBLOCK_RECORD\n5\n1\n100\nAcDbSymbolTable\n70\n2\n"
    "0\nBLOCK_RECORD\n5\n1F\n330\n1\n100\nAcDbSymbolTableRecord\n100\nAcDbBlockTableRecord\n2\n*Model_Space\n340\n0\n"
    "0\nBLOCK_RECORD\n5\n1B\n330\n1\n100\nAcDbSymbolTableRecord\n100\nAcDbBlockTableRecord\n2\n*Paper_Space\n340\n0\n"
    "0\nENDTAB\n";
constexpr char const * kBlocks =
    "0\nSECTION\n2\nBLOCKS\n"
    "0\nBLOCK\n5\n20\n330\n1F\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockBegin\n2\n*Model_Space\n70\n0\n10\n0.0\n20\n0.0\n30\n0.0\n3\n*Model_Space\n1\n\n"
    "0\nENDBLK\n5\n21\n330\n1F\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockEnd\n"
    "0\nBLOCK\n5\n1C\n330\n1B\n100\nAcDbEntity\n67\n1\n8\n0\n100\nAcDbBlockBegin\n2\n*Paper_Space\n70\n0\n10\n0.0\n20\n0.0\n30\n0.0\n3\n*Paper_Space\n1\n\n"
    "0\nENDBLK\n5\n1D\n330\n1B\n100\nAcDbEntity\n67\n1\n8\n0\n100\nAcDbBlockEnd\n"
    "0\nENDSEC\n";
constexpr char const * kObjects =
    "0\nSECTION\n2\nOBJECTS\n"
    "0\nDICTIONARY\n5\nC\n330\n0\n100\nAcDbDictionary\n281\n1\n3\nACAD_GROUP\n350\nD\n"
    "0\nDICTIONARY\n5\nD\n330\nC\n100\nAcDbDictionary\n281\n1\n"
    "0\nENDSEC\n";
// clang-format on
constexpr int kFirstEntityHandle = 0x100;

class DxfWriter
{
public:
    DxfWriter(DxfVersion i_version, std::string i_path)
        : mFile(std::move(i_path)), mIsR2000(i_version == DxfVersion::R2000)
    {
    }

    // i_most: how many entities will follow at the most; the header announces a handle beyond them.
    void Begin(std::pair<double, double> x, std::pair<double, double> y, int i_most)
    {
        mFile << "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\n" << (mIsR2000 ? "AC1015\n" : "AC1009\n");
        if (mIsR2000)
        {
            mFile << "9\n$HANDSEED\n5\n" << hex(kFirstEntityHandle + i_most) << '\n';
            mFile << "9\n$INSUNITS\n70\n4\n9\n$MEASUREMENT\n70\n1\n"; // millimetres, metric
        }
        mFile << "9\n$EXTMIN\n10\n" << number(x.first) << "\n20\n" << number(y.first) << "\n30\n0.0\n";
        mFile << "9\n$EXTMAX\n10\n" << number(x.second) << "\n20\n" << number(y.second) << "\n30\n0.0\n";
        mFile << "0\nENDSEC\n";
        if (mIsR2000)
            mFile << "0\nSECTION\n2\nCLASSES\n0\nENDSEC\n";
        mFile << "0\nSECTION\n2\nTABLES\n" << (mIsR2000 ? kTablesAhead : "");
        layers();
        mFile << (mIsR2000 ? kTablesBehind : "") << "0\nENDSEC\n";
        mFile << (mIsR2000 ? kBlocks : "") << "0\nSECTION\n2\nENTITIES\n";
    }

    void Outline(FittedOutline const & outline, char const * layer)
    {
        if (mIsR2000)
        {
            entity("LWPOLYLINE", layer, "AcDbPolyline");
            mFile << "90\n" << static_cast<int>(outline.vertices.size()) << "\n70\n1\n43\n0.0\n";
            for (OutlineVertex const & v : outline.vertices)
            {
                mFile << "10\n" << number(v.x) << "\n20\n" << number(v.y) << '\n';
                if (v.bulge != 0.0)
                    mFile << "42\n" << number(v.bulge) << '\n';
            }
            return;
        }
        mFile << "0\nPOLYLINE\n8\n" << layer << "\n66\n1\n10\n0.0\n20\n0.0\n30\n0.0\n70\n1\n";
        for (OutlineVertex const & v : outline.vertices)
        {
            mFile << "0\nVERTEX\n8\n" << layer << "\n10\n" << number(v.x) << "\n20\n" << number(v.y) << "\n30\n0.0\n";
            if (v.bulge != 0.0)
                mFile << "42\n" << number(v.bulge) << '\n';
        }
        mFile << "0\nSEQEND\n8\n" << layer << '\n';
    }

    void Line(Point2 const & a, Point2 const & b, char const * layer)
    {
        entity("LINE", layer, "AcDbLine");
        mFile << "10\n" << number(a[0]) << "\n20\n" << number(a[1]) << "\n30\n0.0\n";
        mFile << "11\n" << number(b[0]) << "\n21\n" << number(b[1]) << "\n31\n0.0\n";
    }

    void Text(Point2 const & at, std::string const & text, double height, char const * layer)
    {
        entity("TEXT", layer, "AcDbText");
        mFile << "10\n" << number(at[0]) << "\n20\n" << number(at[1]) << "\n30\n0.0\n40\n" << number(height) << '\n';
        mFile << "1\n" << text << '\n';
        if (mIsR2000)
            mFile << "100\nAcDbText\n";
    }

    void End()
    {
        mFile << "0\nENDSEC\n" << (mIsR2000 ? kObjects : "") << "0\nEOF\n";
        mFile.Commit();
    }

private:
    static std::string number(double value) { return Fixed(value, 6); }

    static std::string hex(int value)
    {
        std::string text;
        for (; value > 0; value /= 16)
            text.insert(text.begin(), "0123456789ABCDEF"[value % 16]);
        return text;
    }

    void layers()
    {
        int const count = static_cast<int>(std::size(kLayers)) + 1; // layer 0 is always there
        mFile << "0\nTABLE\n2\nLAYER\n" << (mIsR2000 ? "5\n2\n100\nAcDbSymbolTable\n" : "");
        mFile << "70\n" << count << '\n';
        layer({"0", 7}, 0x10);
        for (std::size_t i = 0; i < std::size(kLayers); ++i)
            layer(kLayers[i], 0x30 + static_cast<int>(i));
        mFile << "0\nENDTAB\n";
    }

    void layer(Layer const & i_layer, int handle)
    {
        mFile << "0\nLAYER\n";
        if (mIsR2000)
            mFile << "5\n" << hex(handle) << "\n330\n2\n100\nAcDbSymbolTableRecord\n100\nAcDbLayerTableRecord\n";
        mFile << "2\n" << i_layer.name << "\n70\n0\n62\n" << i_layer.colour << "\n6\nCONTINUOUS\n";
    }

    void entity(char const * type, char const * layer, char const * subclass)
    {
        mFile << "0\n" << type << '\n';
        if (mIsR2000)
            mFile << "5\n" << hex(mNextHandle++) << "\n330\n1F\n100\nAcDbEntity\n";
        mFile << "8\n" << layer << '\n';
        if (mIsR2000)
            mFile << "100\n" << subclass << '\n';
    }

    OutputFile mFile;
    bool mIsR2000;
    int mNextHandle = kFirstEntityHandle;
};

} // namespace

double WriteBlankDxf(Outcome const & i_outcome, BlankExportOptions const & i_options, std::string const & i_path)
{
    if (i_outcome.blank.empty())
        throw OutputError(i_path, "the blank has no closed outline");
    std::vector<Point2> const & outer = i_outcome.blank.front().points;
    auto const x = Extent(outer, 0);
    auto const y = Extent(outer, 1);
    double const size = std::max(x.second - x.first, y.second - y.first);

    DxfWriter dxf(i_options.version, i_path);
    dxf.Begin(x, y, static_cast<int>(i_outcome.blank.size()) + 8);
    double deviation = 0.0;
    for (BlankLoop const & loop : i_outcome.blank)
    {
        FittedOutline const outline = FitOutline(loop.points, i_options.tolerance);
        deviation = std::max(deviation, outline.deviation);
        dxf.Outline(outline, loop.outer ? "OUTLINE" : "HOLES");
    }
    // Rolling direction: the frame's x, an arrow below the blank.
    double const below = y.first - 0.06 * size;
    Point2 const tail{x.first, below};
    Point2 const tip{x.first + 0.25 * size, below};
    dxf.Line(tail, tip, "ROLLING_DIRECTION");
    dxf.Line(tip, {tip[0] - 0.03 * size, below + 0.01 * size}, "ROLLING_DIRECTION");
    dxf.Line(tip, {tip[0] - 0.03 * size, below - 0.01 * size}, "ROLLING_DIRECTION");

    OutcomeSummary const & summary = i_outcome.summary;
    double const height = 0.025 * size;
    dxf.Text({x.first, below - 2.0 * height},
             "blank " + Fixed(summary.blankWidth, 2) + " x " + Fixed(summary.blankHeight, 2) +
                 " mm, t = " + Fixed(i_outcome.firstThickness, 3) + " mm",
             height, "TEXT");
    dxf.Text({x.first, below - 3.6 * height},
             "area " + Fixed(summary.blankArea, 1) + " mm2, perimeter " + Fixed(summary.blankPerimeter, 1) + " mm",
             height, "TEXT");
    dxf.End();
    return deviation;
}

} // namespace voz::workbench
