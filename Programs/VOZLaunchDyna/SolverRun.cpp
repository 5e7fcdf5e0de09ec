#include "SolverRun.h"

#include "Conversion.h"
#include "D3plotFamily.h"

#include "CATUnicodeString.h"
#include "VOZProcess.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace voz::launch
{
namespace
{
constexpr unsigned int kFirstLook = 50; // milliseconds; doubled up to the second
constexpr unsigned int kLastLook = 1000;
constexpr unsigned int kEnded = 0;
constexpr unsigned int kTimeout = 0x102;
constexpr std::streamoff kTail = 8192; // of the log
constexpr std::size_t kLastWords = 300;
constexpr char kErrorTermination[] = "E r r o r t e r m i n a t i o n"; // as it stands in one line

std::string tailOf(std::filesystem::path const & path)
{
    std::ifstream stream(path, std::ios::binary | std::ios::ate);
    if (!stream)
        return {};
    std::streamoff const size = stream.tellg();
    std::streamoff const length = std::min(size, kTail);
    std::string text(static_cast<std::size_t>(std::max<std::streamoff>(length, 0)), '\0');
    stream.seekg(size - length);
    stream.read(text.data(), length);
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
}

// In one line: runs of blanks and line ends become a blank.
std::string inOneLine(std::string const & text)
{
    std::string words;
    for (char const c : text)
    {
        bool const isBlank = static_cast<unsigned char>(c) <= ' ';
        if (!isBlank)
            words.push_back(c);
        else if (!words.empty() && words.back() != ' ')
            words.push_back(' ');
    }
    while (!words.empty() && words.back() == ' ')
        words.pop_back();
    return words;
}

bool start(Solver const & solver, std::filesystem::path const & folder, VOZProcess::Information & o_child)
{
    std::string line = "\"" + std::filesystem::absolute(solver.program).string() + "\" i=" + kDeck;
    if (!solver.arguments.empty())
        line += " " + solver.arguments;
    auto const wide = [](std::string const & text) { return CATUnicodeString(text.c_str()).ConvertToUTF16(); };
    auto command = wide(line);
    command.push_back(0);
    std::string const whole = std::filesystem::absolute(folder).string();
    return VOZProcess::CreateProcessInFolder(command.data(), wide(whole).c_str(),
                                             wide((std::filesystem::path(whole) / kLog).string()).c_str(), o_child);
}
} // namespace

double TimeInLog(std::string const & i_text)
{
    for (std::size_t at = i_text.rfind(" t "); at != std::string::npos && at > 0; at = i_text.rfind(" t ", at - 1))
    {
        std::size_t const first = i_text.find_first_not_of(' ', at + 3);
        if (first == std::string::npos)
            continue;
        double time = -1.0;
        auto const parsed = std::from_chars(i_text.data() + first, i_text.data() + i_text.size(), time);
        if (parsed.ec == std::errc() &&
            i_text.compare(static_cast<std::size_t>(parsed.ptr - i_text.data()), 3, " dt") == 0)
            return time;
    }
    return -1.0;
}

void RemoveOldResults(std::filesystem::path const & i_folder)
{
    std::error_code ignored;
    for (FamilyRoot const & root : FindRoots(i_folder))
        for (FamilyFile const & file : root.files)
            std::filesystem::remove(file.path, ignored);
    for (char const * name : {kRecordsFile, kRecordsUnderWay})
        std::filesystem::remove(i_folder / name, ignored);
}

SolverEnd RunSolver(Solver const & i_solver, std::filesystem::path const & i_folder,
                    std::function<void(double)> const & i_progress)
{
    SolverEnd end;
    VOZProcess::Information child;
    if (!start(i_solver, i_folder, child))
        return end;
    end.hasStarted = true;
    unsigned int look = kFirstLook;
    unsigned int answer = kTimeout;
    while ((answer = VOZProcess::WaitForSingleObject(child.hProcess, look)) == kTimeout)
    {
        look = std::min(2 * look, kLastLook);
        i_progress(std::max(TimeInLog(tailOf(i_folder / kLog)), LastStateTime(i_folder)));
    }
    if (answer != kEnded || !VOZProcess::GetExitCodeProcess(child.hProcess, end.code))
        end.code = static_cast<unsigned int>(-1);
    VOZProcess::CloseHandle(child.hProcess);
    VOZProcess::CloseHandle(child.hThread);
    end.lastWords = inOneLine(tailOf(i_folder / kLog));
    end.saysError = end.lastWords.find(kErrorTermination) != std::string::npos;
    if (end.lastWords.size() > kLastWords)
        end.lastWords.replace(0, end.lastWords.size() - kLastWords, "...");
    return end;
}
} // namespace voz::launch
