#include "StatusFile.h"

#include <charconv>
#include <chrono>
#include <fstream>
#include <system_error>
#include <thread>

namespace voz::launch
{
namespace
{
constexpr char kName[] = "launch.status";
constexpr char kUnderWay[] = "launch.status.new";
constexpr char const * kStates[] = {"starting", "running", "converting", "done", "failed"};
constexpr int kTries = 20; // where a reader holds the file, on systems that then refuse the new one

std::string number(double value)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof(text), value).ptr};
}

std::string oneLine(std::string text)
{
    for (char & c : text)
        if (static_cast<unsigned char>(c) < ' ')
            c = ' ';
    return text;
}
} // namespace

void StatusFile::Remove() const
{
    std::error_code ignored;
    for (char const * name : {kName, kUnderWay})
        std::filesystem::remove(m_folder / name, ignored);
}

bool StatusFile::Show()
{
    std::string const text = std::string("state=") + kStates[static_cast<int>(state)] + "\ntime=" + number(time) +
                             "\nend=" + number(end) + "\nrecords=" + std::to_string(records) +
                             "\nmessage=" + oneLine(message) + "\n";
    if (text == m_shown)
    {
        std::error_code ignored; // a sign of life all the same
        std::filesystem::last_write_time(m_folder / kName, std::filesystem::file_time_type::clock::now(), ignored);
        return true;
    }
    {
        std::ofstream stream(m_folder / kUnderWay, std::ios::binary | std::ios::trunc);
        stream << text;
        if (!stream.flush())
            return false;
    }
    std::error_code error;
    for (int i = 0; i < kTries; ++i)
    {
        std::filesystem::rename(m_folder / kUnderWay, m_folder / kName, error);
        if (!error)
        {
            m_shown = text;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}
} // namespace voz::launch
