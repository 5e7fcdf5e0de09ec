// SpringbackTables.h: tables of docs/verification.md for the springback problems.

#ifndef SPRINGBACKTABLES_H
#define SPRINGBACKTABLES_H

#include <string>

std::string springbackMomentTable();   // closed form of the moment against the rule over the thickness
std::string springbackRotationTable(); // sectors of a cylinder: rotation of the free end
std::string springbackTipTable();      // the same: tip on three meshes, with the order
std::string springbackVeeTable();      // two legs and an arc
std::string springbackPatchTable();    // what must be exact

#endif
