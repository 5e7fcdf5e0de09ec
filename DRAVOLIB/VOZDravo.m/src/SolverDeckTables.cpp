// SolverDeckTables.cpp: the one-step deck from the materials on: constraints, pads, blank holders, beads, curves.
//
// Lengths become inches where it is written so and stand as held elsewhere; stresses, pressures and forces are
// never converted. Record P of block V comes twice, and every bead row carries the last bead's force: the program at
// the other end knows the deck so.

#include "Solver.h"

#include "DeckNumber.h"
#include "SolverDeck.h"

#include "EdgeSets.h"
#include "ElemProperty.h"
#include "FreeEdgeLoops.h"
#include "LoopFilters.h"
#include "Material.h"
#include "Symmetry.h"
#include "VOZBHFConfig.h"
#include "VOZUserUnitBase.h"

#include <cstring>
#include <new>
#include <string>

namespace
{
constexpr double kUpliftPerForce = 0.0001575; // of this deck; the kernel's records have a factor of their own
constexpr double kLeastFriction = 0.001;      // at or below it a holder's force cannot be told from its restraint
constexpr int kLeastCurvePoints = 4;

// clang-format off
constexpr char const * kNone            = "0 0 0"; // a table without entries
constexpr char const * kMaterialLine3   = "0 0.0 0.0 0.0 0.0 0.0 0.0 0.0";
constexpr char const * kXZNodeTail      = "010000 0 0 0 0 0 0 0";
constexpr char const * kYZNodeTail      = "100000 0 0 0 0 0 0 0";
constexpr char const * kPadNodeTail     = "1 0 0 0 0 0 0 0 0";
constexpr char const * kCurveTail       = "0 0 0 0.000000 0.000000 \"material\" \"none\"";
constexpr char const * kFormingTail     = "0 0 0 0 0.000000 0.000000";
// clang-format on

// A number as the deck shows it, for rows that repeat it.
struct NumberText
{
    explicit NumberText(double i_value) { FormatDeckDouble(i_value, text); }
    char text[kDeckNumberSize];
};

// The second line of a held edge: three times the restraint in the deck's own pattern.
std::string restraintRow(double restraint)
{
    NumberText const r(restraint);
    return std::string("0 ") + r.text + " 0 " + r.text + " 0 " + r.text;
}

double deckLength(BlankHolder const & holder, VOZCatMesh const & mesh)
{
    return VOZUserUnitBase::MmToInch(holder.length(&mesh));
}

// A value that is exactly 0 is written without decimals.
void writeDispValue(DeckWriter & out, double held, double value)
{
    out.Text(" ");
    if (held == 0.0)
        out.Text("0");
    else
        out.Number(value);
}
} // namespace

// Block V

void DeckBody::WriteMaterials()
{
    int const count = mJob.property.sizeProperty();
    for (int record = 1; record <= count; ++record)
    {
        WriteMaterial(record);
        int const points = mJob.material.numSSPoints();
        mCurvePoints = points >= kLeastCurvePoints ? points : 0;
    }
    WriteMaterial(count); // the last number once more
}

void DeckBody::WriteMaterial(int i_number)
{
    Material const & m = mJob.material;
    mOut.Row(i_number, "0.0 0.0 0.0", m.yield(), m.nvalue(), m.rBar(), m.intercept());
    mOut.Row("0 0.0 0.0 0.0 0.0", VOZUserUnitBase::MmToInch(m.thickness()), "0.0 0.0");
    mOut.Row(kMaterialLine3);
}

// Block VIII

void DeckBody::WriteDisplacements()
{
    if (mJob.noRestraints)
        return;
    int const symmetryTables = WriteSymmetryTables();
    WriteDispBCHeads(symmetryTables + 1);
    for (int table = 1; table <= mJob.property.sizeDispBC(); ++table)
        WriteDispBCRows(table);
}

// Returns how many tables it wrote. With one plane, whichever it is, the table is that of the yz list: a part that is
// symmetric about xz alone gets a head that says 0 and no rows.
int DeckBody::WriteSymmetryTables()
{
    LoopSymmetryFilter const & onPlane = mBoundary.onPlane;
    bool const both = mJob.symmetry.xzSymmetry() && mJob.symmetry.yzSymmetry();
    if (!mJob.symmetry.xzSymmetry() && !mJob.symmetry.yzSymmetry())
        return 0;
    if (both)
    {
        mOut.Row(1, onPlane.numXZsymmetry(), "0 -1 1 1");
        mOut.Row(2, onPlane.numYZsymmetry(), "0 -2 1 0");
        for (int i = 0; i < onPlane.numXZsymmetry(); ++i)
            mOut.Row(onPlane.xzNode(i), kXZNodeTail);
    }
    else
    {
        mOut.Row(1, onPlane.numYZsymmetry(), "0 -1 1 0");
    }
    for (int i = 0; i < onPlane.numYZsymmetry(); ++i)
        mOut.Row(onPlane.yzNode(i), kYZNodeTail);
    return both ? 2 : 1;
}

// One run of heads ahead of all rows. Their last field tells whether another one follows; that of the symmetry heads
// before them does not look this far.
void DeckBody::WriteDispBCHeads(int i_firstNumber)
{
    int const count = mJob.property.sizeDispBC();
    for (int table = 1; table <= count; ++table)
    {
        DispBC const & bc = mJob.property.dispBCs(table);
        int const number = i_firstNumber + table - 1;
        mOut.Row(number, bc.size, bc.tableFlag, -number, 1, table < count ? 1 : 0);
    }
}

void DeckBody::WriteDispBCRows(int i_table)
{
    DispBC const & bc = mJob.property.dispBCs(i_table);
    for (int k = 0; k < bc.size; ++k)
    {
        mOut.Number(bc.nodes[k]);
        mOut.Text(" ");
        for (int const flag : bc.flags)
            mOut.Number(flag);
        for (int i = 0; i < 6; ++i)
            writeDispValue(mOut, bc.values[i], i < 3 ? VOZUserUnitBase::MmToInch(bc.values[i]) : bc.values[i]);
        mOut.Row(" 0");
    }
}

// Block IX

void DeckBody::WritePads()
{
    ElemProperty const & property = mJob.property;
    int const count = mJob.noRestraints ? 0 : property.sizePressPads();
    mOut.Row(-1, count);
    for (int pad = 1; pad <= count; ++pad)
    {
        NumberText const pressure(property.pressPadVal(pad));
        int const size = property.pressPadSize(pad);
        mOut.Row(pad, size, pressure.text, 1, 1);
        for (int k = 1; k <= size; ++k)
            mOut.Row(property.pressPads(pad, k), 1, pressure.text, kPadNodeTail);
    }
}

// Block XII

void DeckBody::WriteHolders()
{
    if (mJob.fullHolder.isActive() && !mJob.noRestraints)
    {
        WriteFullHolder();
        return;
    }
    mOut.Flush();
    mSolver.write_blankholders_head(mFile, mJob.noRestraints, 0);
    mSolver.write_blankholders(mFile, mJob.noRestraints);
}

// The inner loops that are held like the outer edge, in the order of their numbers.
template <class Visit>
void DeckBody::ForEachLargeLoop(Visit i_visit) const
{
    for (int loop = 1; loop <= mBoundary.loops.numLoops(); ++loop)
        if (mBoundary.large.isFilteredLoop(loop) != 0 && loop != mBoundary.loops.outerLoopNum())
            i_visit(loop);
}

DeckBody::FullHolderForces DeckBody::EvalFullHolder() const
{
    FullHolderForces result;
    auto * const config =
        new (std::nothrow) VOZBHFConfig(&mJob.friction, &mJob.fullHolder, &mJob.property, &mBoundary.held);
    if (config == nullptr)
        return result;
    config->EvalForce(nullptr, 1);
    result = {config->m_dForce, config->m_dRestraint, config->m_dLength};
    config->Release();
    return result;
}

// The heads of the whole holder, of the large inner loops and of the single holders make one run, and their edges
// make another in the same order. The first length is in metres, the others in inches.
void DeckBody::WriteFullHolder()
{
    FreeEdgeLoops const & loops = mBoundary.loops;
    FullHolderForces const full = EvalFullHolder();
    double const friction = mJob.friction.coefficient();
    mOut.Row(1, mBoundary.held.numBlankHolder(), full.force, 2, friction, full.length, "1 1 0 0 1");

    int number = 1;
    double force = 0.0;
    auto const writeHead = [&](int loop)
    {
        ++number;
        double const length = VOZUserUnitBase::MmToInch(loops.loopLength(loop));
        if (full.length > 0.0)
            force = length * full.force / full.length;
        mOut.Row(number, loops.numLoopEdges(loop), force, 2, friction, length, 1, number, "0 0 1");
    };
    ForEachLargeLoop(writeHead);
    mOut.Flush();
    mSolver.write_blankholders_head(mFile, false, number);

    std::string const restraint = restraintRow(full.restraint);
    for (int i = 1; i <= mBoundary.held.numBlankHolder(); ++i)
        WriteHolderEdge(mBoundary.held.blankHolderEdge(i), restraint);
    auto const writeEdges = [&](int loop)
    {
        for (int k = 1; k <= loops.numLoopEdges(loop); ++k)
            WriteHolderEdge(loops.loopEdge(loop, k), restraint);
    };
    ForEachLargeLoop(writeEdges);
    mOut.Flush();
    mSolver.write_blankholders(mFile, false);
}

void DeckBody::WriteHolderEdge(int i_freeEdge, std::string_view i_restraintRow)
{
    FreeEdgeSet const & edges = mBoundary.edges;
    mOut.Row(edges.elem(i_freeEdge), edges.startNode(i_freeEdge), -1, edges.endNode(i_freeEdge));
    mOut.Row(i_restraintRow);
}

void Solver::write_blankholders_head(std::FILE * io_file, bool i_skip, int i_idOffset)
{
    if (i_skip)
        return;
    DeckWriter out(io_file);
    double const mu = mFriction.coefficient();
    for (int i = 1; i <= mElemProperty.sizeBlankHolders(); ++i)
    {
        BlankHolder const & holder = mElemProperty.blankHolders(i);
        double const length = deckLength(holder, mMesh);
        // Not shortened: the deck shows what these operations in this order round to.
        double const force = mu <= kLeastFriction ? 0.0 : ((mu * 2.0 * holder.force / length) * length * 0.5) / mu;
        out.Row(i + i_idOffset, holder.edgeCount, force, 2, mu, length, 1, i + i_idOffset, "0 0 1");
    }
}

void Solver::write_blankholders(std::FILE * io_file, bool i_skip)
{
    if (i_skip)
        return;
    DeckWriter out(io_file);
    double const mu = mFriction.coefficient();
    for (int i = 1; i <= mElemProperty.sizeBlankHolders(); ++i)
    {
        BlankHolder const & holder = mElemProperty.blankHolders(i);
        std::string const restraint = restraintRow((mu * 2.0 * holder.force) / deckLength(holder, mMesh));
        for (int k = 0; k < holder.edgeCount; ++k)
        {
            EdgeProperty const & edge = holder.edges[k];
            out.Row(edge.element, edge.node1, -1, edge.node2);
            out.Row(restraint);
        }
    }
}

// Block XVII

void DeckBody::WriteBeads()
{
    mOut.Flush();
    mSolver.write_drawbeads(mFile, mJob.noRestraints);
}

void Solver::write_drawbeads(std::FILE * io_file, bool i_skip)
{
    DeckWriter out(io_file);
    int const count = i_skip ? 0 : mElemProperty.sizeDrawBeads();
    if (count < 1)
    {
        out.Row(kNone);
        return;
    }
    out.Row(count, mElemProperty.totalDBEdges(), mElemProperty.totalDBEdges());
    char force[kDeckNumberSize];
    char uplift[kDeckNumberSize];
    for (int i = 1; i <= count; ++i)
    {
        DrawBead const & bead = mElemProperty.drawBeads(i);
        FormatDeckDouble(bead.force, force);
        FormatDeckDouble(bead.force * kUpliftPerForce, uplift);
        out.Row(i, 0, bead.edgeCount, force, uplift, 1);
    }
    // The two texts are by now those of the last bead, and every row of every bead shows them.
    for (int i = 1; i <= count; ++i)
    {
        DrawBead const & bead = mElemProperty.drawBeads(i);
        for (int k = 0; k < bead.edgeCount; ++k)
        {
            EdgeProperty const & edge = bead.edges[k];
            double const(&ends)[4] = edge.edgeValues;
            out.Row(edge.element, 1, ends[0], ends[1], ends[2], ends[3], force, uplift);
        }
    }
}

// Blocks XXVI, XXVII, XXIX

void DeckBody::WriteStressStrain()
{
    Material const & material = mJob.material;
    int const count = mJob.property.sizeProperty();
    for (int record = 1; record <= count; ++record)
        mOut.Row(record, mCurvePoints, kCurveTail);
    for (int record = 1; record <= count; ++record)
        for (int row = 0; row < mCurvePoints; ++row)
            mOut.Row(material.SSPoint(row, 0), material.SSPoint(row, 1));
}

void DeckBody::WriteFormingLimits()
{
    for (int record = 1; record <= mJob.property.sizeProperty(); ++record)
        mOut.Row(record, kFormingTail);
}

void DeckBody::WriteFriction()
{
    mOut.Row(mJob.friction.coefficient(), " 0  0");
}
