// SolverDeckFront.cpp: the one-step deck: its frame, control lines, nodes and elements.
//
// The deck is positional: a line's meaning follows from its block and place. Literal lines stand here byte for byte,
// odd blanks included: the program at the other end reads them as they stand.

#include "Solver.h"

#include "MeshRows.h"
#include "RowMath.h"
#include "SolverDeck.h"

#include "CATError.h"
#include "EdgeSets.h"
#include "ElemProperty.h"
#include "FreeEdgeLoops.h"
#include "LoopFilters.h"
#include "Symmetry.h"
#include "VOZFile.h"
#include "VOZUserUnitBase.h"

#include <cstring>

namespace
{
constexpr float kLargeLoopRatio = 0.2f;

// A block: its label, then its literal lines or what writes its rows, then a separator.
struct Block
{
    char const * label;
    char const * separator;
    char const * lines;          // null: none
    void (DeckBody::*content)(); // null: none
};

// clang-format off
constexpr char kSeparator[]     = "************************";
constexpr char kBeadSeparator[] = "*************************"; // one more, behind the draw beads alone

constexpr char const * kControlLine2 = "4 3 3 19961024 2 1";
constexpr char const * kControlLine4 = "22 0 1 0 1 1";
constexpr char const * kControlLine5 = "0 0 0 0 0 1";
constexpr char const * kControlLine7 = "0 0 0 0 0 0";

// There is no block XVI, and none from XXIII to XXV. The labels from XXIX onward end in a blank.
constexpr Block kBlocks[] = {
    {"block II: control line",                          kSeparator, nullptr, &DeckBody::WriteControlLines},
    {"block III: nodal coordinates",                    kSeparator, nullptr, &DeckBody::WriteNodes},
    {"block IV: element connectivities",                kSeparator, nullptr, &DeckBody::WriteElements},
    {"block V: material properties",                    kSeparator, nullptr, &DeckBody::WriteMaterials},
    {"block VI: fast boundary condition tables",        kSeparator, "0 0 0 0.0 0.0 0.0 \"\" 0\n"
                                                                    "0.0 0.0 0.0\n", nullptr},
    {"block VII: beam tables",                          kSeparator, nullptr, nullptr},
    {"block VIII: nodal displacement tables",           kSeparator, nullptr, &DeckBody::WriteDisplacements},
    {"block IX PRESSURE PAD",                           kSeparator, nullptr, &DeckBody::WritePads},
    {"block X: rigid constraint equations",             kSeparator, nullptr, nullptr},
    {"block XI: force boundary condition",              kSeparator, nullptr, nullptr},
    {"block XII: blankholder force",                    kSeparator, nullptr, &DeckBody::WriteHolders},
    {"block XIII: friction tables",                     kSeparator, nullptr, nullptr},
    {"block XIV: friction nodes",                       kSeparator, nullptr, nullptr},
    {"block XV: bendline tables",                       kSeparator, "0 0 0\n", nullptr},
    {"block XVII: drawbead tables",                     kBeadSeparator, nullptr, &DeckBody::WriteBeads},
    {"block XVIII: lockbead tables",                    kSeparator, "0 0 0\n", nullptr},
    {"block XIX: neutral surfaces",                     kSeparator, nullptr, nullptr},
    {"block XX: tailor welded blank tables",            kSeparator, "0 0 0\n", nullptr},
    {"block XXI",                                       kSeparator, nullptr, nullptr},
    {"block XXII",                                      kSeparator, nullptr, nullptr},
    {"block XXVI: user defined stress-strain curves",   kSeparator, nullptr, &DeckBody::WriteStressStrain},
    {"block XXVII: user defined forming limit curves",  kSeparator, nullptr, &DeckBody::WriteFormingLimits},
    {"block XXVIII: integration point information",     kSeparator, "0  0  0  0  0\n", nullptr},
    {"block XXIX: friction table ",                     kSeparator, nullptr, &DeckBody::WriteFriction},
    {"block XXX: development table ",                   kSeparator, "1  1\n"
                                                                    "0  0  0  0  0  0  0  0  0  0\n"
                                                                    "0  0  0  0  0  0  0  0  0  0\n", nullptr},
    {"block XXXI: form design 3d table ",               kSeparator, nullptr, nullptr},
    {"block XXXII: boundary condition line tables ",    kSeparator, "0  0  0\n", nullptr},
    {"block XXXIII: transformation matrix ",            kSeparator, "1 0 0 0 \n" // the identity whatever the frame
                                                                    "0 1 0 0 \n"
                                                                    "0 0 1 0 \n"
                                                                    "0 0 0 1 \n", nullptr},
};
// clang-format on
static_assert(sizeof kSeparator == 25 && sizeof kBeadSeparator == 26, "24 asterisks, and 25 behind the beads");
} // namespace

// Solver

Solver::Solver(VOZCatMesh const & i_mesh, Material const & i_material, ElemProperty const & i_elemProperty,
               Symmetry const & i_symmetry, Friction const & i_friction, FullBlankHolder const & i_fullBlankHolder,
               VOZCatAxis const & i_axis, char * i_solverDir)
    : mMesh(i_mesh), mMaterial(i_material), mElemProperty(i_elemProperty), mAxis(i_axis), mSymmetry(i_symmetry),
      mFriction(i_friction), mFullBlankHolder(i_fullBlankHolder), mSolverDir{}
{
    // The rest stays zero, so that a path that is too long is cut and still ends.
    std::memcpy(mSolverDir, i_solverDir, strnlen(i_solverDir, sizeof mSolverDir - 1));
}

Solver::Solver(Solver const & i_other) = default;

Solver::~Solver() = default;

int Solver::write(char const * i_file, bool i_noRestraints, bool i_controlFlag, int i_controlValue)
{
    std::FILE * file = VOZOpenFile(i_file, "w");
    if (file == nullptr)
        return 1;
    auto const close = [&file]
    {
        if (file != nullptr)
            std::fclose(file);
        file = nullptr;
    };
    auto const writeAndClose = [&]
    {
        FreeEdgeSet const edges(mMesh);
        int error = 0;
        FreeEdgeLoops const loops(edges, mMesh, &error);
        if (error != 0)
        {
            close();
            return 2;
        }
        LoopSizeFilter const large(loops, kLargeLoopRatio);
        LoopSymmetryFilter const onPlane(mMesh, edges, loops, mSymmetry, mAxis);
        ProcessEdgeSequence const held(mMesh, edges, loops, mSymmetry, onPlane, mFullBlankHolder, large);
        DeckJob const job{mMesh,     mMaterial,        mElemProperty,  mAxis,         mSymmetry,
                          mFriction, mFullBlankHolder, i_noRestraints, i_controlFlag, i_controlValue};
        DeckBoundary const boundary{edges, loops, large, onPlane, held};
        DeckBody(*this, job, boundary, file).Write(i_file);
        close();
        return 0;
    };
    return CATXHContext::Guard(writeAndClose, close);
}

// DeckBody

DeckBody::DeckBody(Solver & i_solver, DeckJob const & i_job, DeckBoundary const & i_boundary, std::FILE * i_file)
    : mSolver(i_solver), mJob(i_job), mBoundary(i_boundary), mFile(i_file), mOut(i_file)
{
}

void DeckBody::Write(char const * i_file)
{
    mOut.Text("DRAVO3D - version 5.0 - ");
    mOut.Row(i_file);
    mOut.Row(kSeparator);
    for (Block const & block : kBlocks)
    {
        mOut.Row(block.label);
        if (block.lines != nullptr)
            mOut.Text(block.lines);
        if (block.content != nullptr)
            (this->*block.content)();
        mOut.Row(block.separator);
    }
    mOut.Flush();
}

void DeckBody::WriteControlLines()
{
    ElemProperty const & property = mJob.property;
    bool const restrained = !mJob.noRestraints;
    int const numNode = mJob.mesh.numNode();
    int const numMaterial = property.sizeProperty() + 1;
    int const flag = restrained && mJob.controlFlag ? 1 : 0;
    int displacedNodes = 0;  // rows of block VIII; the xz list of half symmetry counts, though it is not written
    int displacedTables = 0; // tables of block VIII
    int holders = 0;         // heads of block XII
    if (restrained)
    {
        displacedNodes =
            mBoundary.onPlane.numXZsymmetry() + mBoundary.onPlane.numYZsymmetry() + property.totalDispBCNodes();
        displacedTables =
            (mJob.symmetry.xzSymmetry() ? 1 : 0) + (mJob.symmetry.yzSymmetry() ? 1 : 0) + property.sizeDispBC();
        holders = mBoundary.held.outerBHolderCount() + property.sizeBlankHolders();
        if (mJob.fullHolder.isActive())
            holders += mBoundary.large.numFilteredInnerLoops();
    }
    mOut.Row(numNode, mJob.mesh.numElem(), numMaterial, 1, flag, displacedNodes,
             "0 0 0 0 0 0 0 0 0 0 0 0 0 2 0 0 0 0 0 0 0", holders, "0 1");
    mOut.Row(kControlLine2);
    mOut.Row(numNode, "0 0", displacedTables, "0 1");
    mOut.Row(kControlLine4);
    mOut.Row(kControlLine5);
    mOut.Row("0 0 0 0", mJob.controlValue, 1);
    mOut.Row(kControlLine7);
}

void DeckBody::WriteNodes()
{
    meshrows::Rows const rows(mJob.mesh);
    rowmath::Frame const frame(mJob.axis);
    for (int n = 1; n <= rows.numNode; ++n)
    {
        double local[3];
        frame.fromGlobal(rows.nodes[n], local);
        mOut.Row(n, VOZUserUnitBase::MmToInch(local[0]), VOZUserUnitBase::MmToInch(local[1]),
                 VOZUserUnitBase::MmToInch(local[2]));
    }
}

void DeckBody::WriteElements()
{
    meshrows::Rows const rows(mJob.mesh);
    for (int e = 1; e <= rows.numElem; ++e)
    {
        int const property = mJob.property.propertyIndex(e);
        if (meshrows::isTriangle(rows.elems[e]))
            mOut.Row(e, property, "1 0 2", rows.corner(e, 0), rows.corner(e, 1), rows.corner(e, 2));
        else
            mOut.Row(e, property, "1 0 1", rows.corner(e, 0), rows.corner(e, 1), rows.corner(e, 2), rows.corner(e, 3));
    }
}
