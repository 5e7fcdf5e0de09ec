// IncludeFiles.cpp: the search for an include, and the loops that it must not enter.

#include "IncludeFiles.h"

#include "NumberText.h"

#include <algorithm>
#include <filesystem>

namespace voz::workbench
{
namespace
{
namespace fs = std::filesystem;

// Decks come from every system.
std::string withSlashes(std::string path)
{
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string wholePath(fs::path const & path)
{
    std::error_code error;
    fs::path const whole = fs::weakly_canonical(path, error);
    return error ? path.lexically_normal().string() : whole.string();
}

bool isFile(fs::path const & path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}
} // namespace

IncludeFiles::IncludeFiles(std::string const & i_path, Includes i_includes)
    : mIncludes(i_includes),
      mFirstFolder(fs::path(withSlashes(i_path)).parent_path().string()), mOpen{wholePath(withSlashes(i_path))}
{
}

void IncludeFiles::AddFolder(std::string const & i_folder)
{
    mFolders.push_back((fs::path(mFirstFolder) / withSlashes(i_folder)).string());
}

std::string IncludeFiles::Open(std::string const & i_name, LineReader const & i_from, std::size_t i_column)
{
    if (i_name.empty())
        i_from.Fail(i_column, "an include without a file name, expected one");
    if (i_name.find('\0') != std::string::npos)
        i_from.Fail(i_column, "a file name with a null character");
    if (mIncludes == Includes::Refused)
        i_from.Fail(i_column, "includes " + Quoted(i_name) + ", expected a text without includes");
    std::string const name = withSlashes(i_name);
    std::vector<std::string> folders{fs::path(withSlashes(i_from.Name())).parent_path().string(), mFirstFolder};
    folders.insert(folders.end(), mFolders.begin(), mFolders.end());
    for (std::string const & folder : folders)
    {
        fs::path const path = fs::path(folder) / name;
        if (!isFile(path))
            continue;
        std::string const whole = wholePath(path);
        if (std::find(mOpen.begin(), mOpen.end(), whole) != mOpen.end())
            i_from.Fail(i_column, "includes " + Quoted(i_name) + ", which includes this file in turn: a loop");
        if (++mCount > kMostFiles || mOpen.size() >= kDeepest)
            i_from.Fail(i_column, "more than " + std::to_string(kMostFiles) + " includes, or " +
                                      std::to_string(kDeepest) + " inside one another");
        mOpen.push_back(whole);
        return path.string();
    }
    i_from.Fail(i_column, "includes " + Quoted(i_name) + ", expected a file of that name beside this one" +
                              (mFolders.empty() ? "" : " or in the include folders"));
}

} // namespace voz::workbench
