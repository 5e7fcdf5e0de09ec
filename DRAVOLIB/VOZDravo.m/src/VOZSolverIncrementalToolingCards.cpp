// VOZSolverIncrementalToolingCards.cpp: blank, tools, contacts, the curves that drive them.

#include "VOZSolverIncremental.h"

void VOZSolverIncremental::WriteBlankDataBlock() {}

void VOZSolverIncremental::WritePunchDataBlock() {}

void VOZSolverIncremental::WriteDieDataBlock() {}

void VOZSolverIncremental::WriteBlankHolderDataBlock() {}

void VOZSolverIncremental::WriteCurveLoadPunch() {}

void VOZSolverIncremental::WriteCurveLoadBHolder() {}

void VOZSolverIncremental::WriteCurveBlankStressStrain() {}

void VOZSolverIncremental::WriteThickness() {}

void VOZSolverIncremental::WriteRigidMaterialProperties(int, int, char const *) {}

void VOZSolverIncremental::WriteFriction_Card23(double, double, bool) {}

void VOZSolverIncremental::WriteFriction_Card4_ShootingLogic() {}
