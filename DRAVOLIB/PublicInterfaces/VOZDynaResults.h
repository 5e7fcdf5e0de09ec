// VOZDynaResults.h: the reader of "output.voz", the records that the launcher leaves.
//
// The file is a row of records without a header; all values are 4 bytes, little-endian. A record: step number; number
// of nodes; 3 coordinates each, metres; number of elements; 4 node labels each, 0 as the fourth of a triangle; number
// of components; so many equivalent stresses, strain components of the top, of the bottom, of the middle.

#ifndef VOZDYNARESULTS_H
#define VOZDYNARESULTS_H

#include "ExportedByVOZDravo.h"

#include <cstdio>

class CATUnicodeString;

class ExportedByVOZDravo VOZDynaResults
{
public:
    VOZDynaResults(int i_nMaxRecords, CATUnicodeString const & i_strFile); // the path is lent
    VOZDynaResults(VOZDynaResults const &) = delete;
    VOZDynaResults & operator=(VOZDynaResults const &) = delete;
    virtual ~VOZDynaResults();

    // The next one in place of the last one; true when it was read whole. What is missing, no count above 0, or more
    // than there is memory for ends it there; only the latter two are broken contracts. No array of more than
    // 1 MB is asked for that is over twice as long as what the stream holds for it, whatever its counts say.
    bool ReadRecord(std::FILE * i_pStream);

    // Leaves the record with that step number in the members: 1, or 0 if it is not among the first m_nMaxRecords, or
    // the file cannot be opened. Reads all records ahead of it. A record that breaks off counts as found if its number
    // was still there, and what comes behind a broken one is read as the next.
    int ReadStep(int i_nStep);

    // The record; its arrays are owned by the reader, null where they were not read whole.
    float * m_padStrainComponentsMid;
    float * m_padStrainComponentsTop;
    float * m_padStrainComponentsBot;
    float * m_padEquivalentStress;
    int m_nRecordStep;    // -1 when new
    int m_nNumComponents; // length of each of the four arrays
    float * m_padNodalCoords;
    int m_nNumNodes;
    int * m_panConnectivity;
    int m_nNumElements;
    int m_nMaxRecords;
    CATUnicodeString const * m_pstrFile;

private:
    void FreeArrays();
    bool ReadMesh(std::FILE * i_pStream);
    bool ReadComponents(std::FILE * i_pStream);
};

#endif
