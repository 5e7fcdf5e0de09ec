// SolverDeck.h: the body of the one-step deck, between its two sources.
//
// SolverDeckFront.cpp holds the frame of the deck, its control lines, nodes and elements; SolverDeckTables.cpp all
// blocks behind them. Numbers of nodes and elements are positions; lengths are in inches, all else as it is held.

#ifndef SOLVERDECK_H
#define SOLVERDECK_H

#include "DeckWriter.h"

#include <cstdio>
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
