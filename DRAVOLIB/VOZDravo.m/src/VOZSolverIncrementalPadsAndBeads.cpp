// VOZSolverIncrementalPadsAndBeads.cpp: pressure pads and draw beads.

#include "VOZSolverIncremental.h"

void VOZSolverIncremental::WritePressurePadData(int, double, bool) {}

void VOZSolverIncremental::WritePressurePadData() {}

void VOZSolverIncremental::WritePressurePadID(int, double) {}

void VOZSolverIncremental::WriteXYforPressurePad(int, double const *) {}

void VOZSolverIncremental::WritePressurePadTitleBlock() {}

void VOZSolverIncremental::WriteDrawBeadTitleBlock() {}

void VOZSolverIncremental::WriteDrawBeadData(int, int, double) {}

void VOZSolverIncremental::WriteDrawBeadData() {}

void VOZSolverIncremental::WriteDrawBeadID(int, double) {}

void VOZSolverIncremental::WriteXYZDrawBead(int, int, int *, int) {}

void VOZSolverIncremental::WriteDrawBeadNodeSetID(int, int, int) {}
