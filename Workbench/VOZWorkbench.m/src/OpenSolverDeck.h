// OpenSolverDeck.h: a second deck beside "inputls.dyn", for open explicit solvers that read keyword decks.
//
// Such solvers know part of the keywords. Their deck has the same meshes, parts, tools and curves; the contacts are
// *CONTACT_AUTOMATIC_ONE_WAY_SURFACE_TO_SURFACE, the material is *MAT_PIECEWISE_LINEAR_PLASTICITY, and what they would
// pass over is left out. Everything that differs is listed with its reason. Source: the keywords that the LS-DYNA
// input manual of Radioss documents and the reader of OpenRadioss converts (as of 2025).

#ifndef OPENSOLVERDECK_H
#define OPENSOLVERDECK_H

#include "VOZSolverIncremental.h"

#include <string>
#include <vector>

namespace voz::workbench
{

constexpr char const * kOpenDeckFile = "inputls_open.dyn";
constexpr char const * kOpenRemarksFile = "inputls_open.txt"; // a line per remark: keyword, colon, reason

struct OpenDeckRemark
{
    std::string keyword;
    std::string reason;
};

// The library's driver, which after its run can write the second deck too.
class OpenDeckSolver : public VOZSolverIncremental
{
public:
    // Both files in the working folder of Run, with Run's numbers; the mesh files are Run's. Throws OutputError.
    // Returns what differs from the forming deck.
    std::vector<OpenDeckRemark> WriteOpenDeck();

    // What would differ.
    std::vector<OpenDeckRemark> Remarks() const;

protected:
    void WriteControlCardsData() override;
    void WriteASCIIOutputControlCards() override;
    void WriteBINARYOutputControlCards() override;
    void WriteCONTROL_BULK_VISCOSITY_Card() override;
    void WriteBlankDataBlock() override;
    void WritePunchDataBlock() override;
    void WriteDieDataBlock() override;
    void WriteBlankHolderDataBlock() override;
    void WritePressurePadData() override;
    void WriteDrawBeadData() override;
    void WriteIncludedBlankToolingMeshFiles() override;
    void WriteRigidMaterialProperties(int i_nMid, int i_nSid, char const * i_strConstraints) override;
    void WriteFriction_Card23(double i_dFriction, double i_dOffset, bool i_bDrawBead) override;
    void WriteFriction_Card4_ShootingLogic() override;

    using VOZSolverIncremental::WriteDrawBeadData;
    using VOZSolverIncremental::WritePressurePadData;

private:
    void WriteOpenTool(Tool i_tool);
    void WriteShellSection(int i_nId, double i_dShearFactor, double i_dPoints);

    bool mIsOpen = false; // while the second deck is written
};

} // namespace voz::workbench

#endif
