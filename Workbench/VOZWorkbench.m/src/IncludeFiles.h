// IncludeFiles.h: the files that a deck is made of, opened one inside the other.
//
// An include must be a plain file, must not stand open already (a loop), and no deck opens more than kMostFiles.

#ifndef INCLUDEFILES_H
#define INCLUDEFILES_H

#include "LineReader.h"
#include "MeshReaders.h"

#include <string>
#include <vector>

namespace voz::workbench
{

class IncludeFiles
{
public:
    static constexpr int kMostFiles = 10000;
    static constexpr std::size_t kDeepest = 100;

    IncludeFiles(std::string const & i_path, Includes i_includes);

    // Folders where includes are sought after that of the including file and that of the first one.
    void AddFolder(std::string const & i_folder);

    // The path of i_name as the line at hand of i_from includes it; throws InputError at i_column of that line. Open
    // until Close.
    std::string Open(std::string const & i_name, LineReader const & i_from, std::size_t i_column);
    void Close() { mOpen.pop_back(); }

private:
    Includes mIncludes;
    int mCount = 1;
    std::string mFirstFolder;
    std::vector<std::string> mFolders;
    std::vector<std::string> mOpen; // canonical, outermost first
};

} // namespace voz::workbench

#endif
