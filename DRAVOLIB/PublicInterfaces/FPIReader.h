// FPIReader.h: a material read out of a file in the format of the one-step deck.
//
// A material library entry is a deck: the reader takes the control lines, the first material record and the name of the
// first stress-strain curve, and passes over all else. A deck has one material here, whatever it announces.
//
// The caller opens and closes the file; it is left where reading ended. Copies share the arrays, which are freed with
// the last of them, and have names of their own.

#ifndef FPIREADER_H
#define FPIREADER_H

#include "CATUnicodeString.h"
#include "ExportedByVOZDravo.h"

#include <cstdio>
#include <memory>

class ExportedByVOZDravo FPIReader
{
public:
    // Reads the whole; the bool has no effect. o_error: 0 read; 1 no deck (no block II where it is expected, no file)
    // or no memory; 10 the file ended inside the control block, and there is no material. A material record that is
    // broken or missing gives 0 all the same, since the curve read after it has the last word: its properties stay 0
    // from the break on. Nothing is raised or shown.
    FPIReader(std::FILE * io_file, int & o_error, bool);
    FPIReader(FPIReader const & i_other);             // shares the arrays
    FPIReader & operator=(FPIReader const & i_other); // shares the arrays
    ~FPIReader();

    int getNumMaterials() const { return mNumMaterials; } // 1, or 0 where nothing was read
    void getFPIControl(int * o_control) const;            // 66 ints; place 2 is 2 whatever the file says

    // Of material i, from 1. Where there is no such material, the output stays as it is.
    //
    // 24 floats, 8 for each line of the record, as the deck has them: 0 is 1.0; 4 the yield, 5 the n-value, 6 the
    // r-value, 7 the K-value (MPa); 13 the thickness (inches).
    void getMatProperty(int i, float * o_properties) const;
    void getMatName(int i, CATUnicodeString & o_name) const; // i up to 24
    void getMatDec(int i, CATUnicodeString & o_description) const;

private:
    friend struct FPIReaderInspection; // of the tests

    static constexpr int kNumControl = 66;
    static constexpr int kNumProperty = 24;
    static constexpr int kMaxNames = 24;

    void ReadDeck(std::FILE * io_file, int & o_error);
    int ReadFPIControl(std::FILE * io_file);            // 0, or 10 at the end of the file
    int LoadMaterial(std::FILE * io_file, int i);       // 0, or 11 at a separator or without a line
    int ReadSSCCurve(std::FILE * io_file);              // 0
    int ReadIDBlock(std::FILE * io_file);               // as SkipBlock; 0
    int ReadMaterialBlockV(std::FILE * io_file);        // material 1; 1 if that failed
    int ReadMaterialProperties(std::FILE * io_file);    // the same, with the rest of the block
    bool SkipBlock(std::FILE * io_file);                // past the next separator; false at the end of the file
    static int GetLastToken(char const * const i_text); // the fifth field; 0 if there are fewer
    void cleanUpMemory();

    std::shared_ptr<int[]> mControl;      // kNumControl
    std::shared_ptr<int[]> mCurveSizes;   // mNumMaterials: points of each curve
    std::shared_ptr<float[]> mProperties; // kNumProperty per material
    int mCurveId;                         // of the last curve read: 1
    int mNumMaterials;
    CATUnicodeString mNames[kMaxNames];
    CATUnicodeString mDescriptions[kMaxNames];
};

#endif
