// MeshArguments.h: what the verbs of a mesh share: the mesh to read, and what is said of it.

#ifndef MESHARGUMENTS_H
#define MESHARGUMENTS_H

#include "MeshFile.h"

#include <CLI/CLI.hpp>
#include <string>

struct MeshArguments
{
    std::string in;
    double unitLength = 0.0; // mm; 0: what the file says, else mm
    bool isForced = false;

    void AddTo(CLI::App & io_verb);
    voz::workbench::MeshModel Read() const; // with its remarks on standard error
};

#endif
