// VOZSolverIncrementalControlCards.cpp: the deck's frame, its fields, its control cards.

#include "VOZSolverIncremental.h"

void VOZSolverIncremental::WriteTitleBlock() {}

void VOZSolverIncremental::WriteControlCardsData() {}

void VOZSolverIncremental::WriteASCIIOutputControlCards() {}

void VOZSolverIncremental::WriteBINARYOutputControlCards() {}

void VOZSolverIncremental::WriteCONTROL_BULK_VISCOSITY_Card() {}

void VOZSolverIncremental::WriteLocalCoordinateSystemDefinitionBlock() {}

void VOZSolverIncremental::WriteToolingTitleBlock() {}

void VOZSolverIncremental::WriteIncludedBlankToolingMeshFiles() {}

void VOZSolverIncremental::DoubleWrite(double, int, int, unsigned char) {}

void VOZSolverIncremental::WriteLine(char const *) {}

void VOZSolverIncremental::WriteEnd() {}

void VOZSolverIncremental::WriteValue(unsigned short const *) {}

void VOZSolverIncremental::DoubleWriteEnd(double, int, int, int) {}

void VOZSolverIncremental::IntegerWrite(int, int) {}

void VOZSolverIncremental::IntegerWriteEnd(int) {}

long VOZSolverIncremental::Write(double, double, double, double, double, double, double, double, double, double, int,
                                 double, int, int, double, double, double, double, double)
{
    return 0;
}
