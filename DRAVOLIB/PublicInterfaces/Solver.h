// Solver.h: the file route to the one-step solver: writes the input deck, starts the solver program, reads its text.
//
// Holds references to objects that the caller keeps alive. Deck and output are in inches in the stamping frame; the
// mesh is in mm.

#ifndef SOLVER_H
#define SOLVER_H

#include "ExportedByVOZDravo.h"

#include <cstdio>

class ElemProperty;
class Friction;
class FullBlankHolder;
class Material;
class Result;
class Symmetry;
class VOZCatAxis;
class VOZCatMesh;

class ExportedByVOZDravo Solver
{
public:
    // i_solverDir: handed to the child; what exceeds 255 characters is cut off.
    Solver(VOZCatMesh const & i_mesh, Material const & i_material, ElemProperty const & i_elemProperty,
           Symmetry const & i_symmetry, Friction const & i_friction, FullBlankHolder const & i_fullBlankHolder,
           VOZCatAxis const & i_axis, char * i_solverDir);
    Solver(Solver const & i_other);
    virtual ~Solver();

    // 0; 1 if the file cannot be opened; 2 if the boundary is no set of simple loops (the file is left empty). Whether
    // the stream took the text shows in the file alone. An error of the platform passes on; a truncated deck stays.
    virtual int write(char const * i_file, bool i_noRestraints, bool i_controlFlag, int i_controlValue);

    // Starts the solver and waits: 0; 1 if no process could be made (a command of 1024 characters or more is none);
    // E_FAIL without a configuration path. The program is not quoted; whether it succeeded shows in its output file
    // alone.
    virtual int run(char const * i_program, char const * i_inputFile);
    virtual int run_spb(char const * i_program, char const * i_inputFile); // what the command interpreter returns

    // Fills i_result from the solver's text. A path that holds ".spo" anywhere selects the springback form. Raises
    // CATMfErrUpdate if the file cannot be opened, its element section is missing or a row lacks a number; sections
    // that end early leave the rest as it was.
    virtual void read(char const * i_file, Result & io_result, bool i_unused);

    int PrepAndLaunchRedirectedChild(char * i_commandLine); // 0 or 1

    virtual void write_blankholders_head(std::FILE * io_file, bool i_skip, int i_idOffset);
    virtual void write_blankholders(std::FILE * io_file, bool i_skip);
    virtual void write_drawbeads(std::FILE * io_file, bool i_skip);

protected:
    // Splits i_line in place. 10 slots of the caller: tokens and a closing null. The tokens plus 1 (2 for an empty
    // line), or 10 where the slots ran out.
    int tokens(char * const i_line, char ** const o_tokens);

private:
    VOZCatMesh const & mMesh;
    Material const & mMaterial;
    ElemProperty const & mElemProperty;
    VOZCatAxis const & mAxis;
    Symmetry const & mSymmetry;
    Friction const & mFriction;
    FullBlankHolder const & mFullBlankHolder;
    char mSolverDir[256];
};

#endif
