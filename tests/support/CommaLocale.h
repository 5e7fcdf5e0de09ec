// CommaLocale.h: a locale with a decimal comma, in force for the length of an object.
//
// A real one where the system has it or can make it; otherwise localeconv() alone tells of a comma. The definition of
// localeconv stands here for both cases: it asks the C library unless a comma is to be played.

#ifndef COMMALOCALE_H
#define COMMALOCALE_H

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#if !defined(_WIN32)
#include <dlfcn.h>

namespace commalocale
{
inline bool playsComma = false;
}

extern "C" __attribute__((weak)) lconv * localeconv() noexcept
{
    using Function = lconv * (*)();
    static Function const real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "localeconv"));
    static char comma[] = ",";
    lconv * const result = real();
    if (!commalocale::playsComma)
        return result;
    static lconv played;
    played = *result;
    played.decimal_point = comma;
    return &played;
}
#endif

class CommaLocale
{
public:
    CommaLocale()
    {
        for (char const * name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "German_Germany.1252"})
            if (!mIsReal)
                mIsReal = std::setlocale(LC_ALL, name) != nullptr && std::localeconv()->decimal_point[0] == ',';
        mIsReal = mIsReal || Make();
        Play(!mIsReal);
    }
    ~CommaLocale()
    {
        Play(false);
        std::setlocale(LC_ALL, "C");
    }
    CommaLocale(CommaLocale const &) = delete;
    CommaLocale & operator=(CommaLocale const &) = delete;

    bool isReal() const { return mIsReal; }

private:
#if defined(_WIN32)
    static bool Make()
    {
        return false;
    }
    static void Play(bool) {}
#else
    // Where the sources of locales are installed, one is made in the temporary folder.
    static bool Make()
    {
        namespace fs = std::filesystem;
        if (!fs::exists("/usr/share/i18n/locales/de_DE"))
            return false;
        fs::path const folder = fs::temp_directory_path() / "vozdravo_locales";
        std::error_code error;
        fs::create_directories(folder, error);
        std::string const path = folder.string();
        if (!fs::exists(folder / "de_DE.utf8"))
        {
            std::string const command = "localedef -i de_DE -f UTF-8 '" + path + "/de_DE.utf8' >/dev/null 2>&1";
            if (std::system(command.c_str()) < 0)
                return false;
        }
        setenv("LOCPATH", path.c_str(), 1);
        bool const made = std::setlocale(LC_ALL, "de_DE.utf8") != nullptr;
        unsetenv("LOCPATH");
        return made && std::localeconv()->decimal_point[0] == ',';
    }
    static void Play(bool i_on)
    {
        commalocale::playsComma = i_on;
    }
#endif

    bool mIsReal = false;
};

#endif
