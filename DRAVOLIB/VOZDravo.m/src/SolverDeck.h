// SolverDeck.h: the writer of the one-step deck, between its two sources.
//
// SolverDeckFront.cpp holds the frame of the deck, its control lines, nodes and elements; SolverDeckTables.cpp all
// blocks behind them. Numbers of nodes and elements are positions; lengths are in inches, all else as it is held.

#ifndef SOLVERDECK_H
#define SOLVERDECK_H

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string_view>

class ElemProperty;
class FreeEdgeLoops;
class FreeEdgeSet;
class Friction;
class FullBlankHolder;
class LoopSizeFilter;
class LoopSymmetryFilter;
class Material;
class ProcessEdgeSequence;
class Solver;
class Symmetry;
class VOZCatAxis;
class VOZCatMesh;

// Rows of a text file, gathered in a block of memory and handed to the stream in one piece. A stream that refuses them
// is not noticed here: who needs the file looks at it afterwards.
class DeckWriter
{
public:
    explicit DeckWriter(std::FILE * i_file);
    ~DeckWriter() { Flush(); }
    DeckWriter(DeckWriter const &) = delete;
    DeckWriter & operator=(DeckWriter const &) = delete;

    void Text(std::string_view i_text)
    {
        if (i_text.size() > kBlockBytes - mUsed)
            return LongText(i_text);
        std::memcpy(mBlock.get() + mUsed, i_text.data(), i_text.size());
        mUsed += i_text.size();
    }
    void Number(int i_value);
    void Number(double i_value); // as FormatDeckDouble writes it
    void Flush();

    // One line: its fields with a blank between them. A field is an int, a double or literal text.
    template <class First, class... Rest>
    void Row(First const & i_first, Rest const &... i_rest)
    {
        Field(i_first);
        ((Text(" "), Field(i_rest)), ...);
        Text("\n");
    }

private:
    void Field(int i_value) { Number(i_value); }
    void Field(double i_value) { Number(i_value); }
    void Field(std::string_view i_value) { Text(i_value); }
    char * Reserve(std::size_t i_bytes);
    void LongText(std::string_view i_text);

    static constexpr std::size_t kBlockBytes = std::size_t{1} << 16;

    std::FILE * mFile;
    std::unique_ptr<char[]> mBlock;
    std::size_t mUsed = 0;
};

// What one deck is written from.
struct DeckJob
{
    VOZCatMesh const & mesh;
    Material const & material;
    ElemProperty const & property;
    VOZCatAxis const & axis;
    Symmetry const & symmetry;
    Friction const & friction;
    FullBlankHolder const & fullHolder;
    bool noRestraints;
    bool controlFlag;
    int controlValue;
};

// The boundary of the blank, classified.
struct DeckBoundary
{
    FreeEdgeSet const & edges;
    FreeEdgeLoops const & loops;
    LoopSizeFilter const & large;
    LoopSymmetryFilter const & onPlane;
    ProcessEdgeSequence const & held;
};

class DeckBody
{
public:
    // The solver writes single blank holders and draw beads, through its virtual operations.
    DeckBody(Solver & i_solver, DeckJob const & i_job, DeckBoundary const & i_boundary, std::FILE * i_file);

    void Write(char const * i_file); // the whole deck

    void WriteControlLines();  // II
    void WriteNodes();         // III
    void WriteElements();      // IV
    void WriteMaterials();     // V
    void WriteDisplacements(); // VIII
    void WritePads();          // IX
    void WriteHolders();       // XII
    void WriteBeads();         // XVII
    void WriteStressStrain();  // XXVI
    void WriteFormingLimits(); // XXVII
    void WriteFriction();      // XXIX

private:
    struct FullHolderForces
    {
        double force = 0.0;     // N
        double restraint = 0.0; // N/m
        double length = 0.0;    // m
    };

    void WriteMaterial(int i_number);
    int WriteSymmetryTables();
    void WriteDispBCHeads(int i_firstNumber);
    void WriteDispBCRows(int i_table);
    void WriteFullHolder();
    FullHolderForces EvalFullHolder() const;
    void WriteHolderEdge(int i_freeEdge, std::string_view i_restraintRow);
    template <class Visit>
    void ForEachLargeLoop(Visit i_visit) const;

    Solver & mSolver;
    DeckJob const & mJob;
    DeckBoundary const & mBoundary;
    std::FILE * mFile;
    DeckWriter mOut;
    int mCurvePoints = 0; // of the stress-strain table, 0 for a table of fewer than four
};

#endif
