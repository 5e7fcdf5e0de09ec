// CommaLocale.h: the process under a locale whose decimal point is a comma, for as long as the object lives.
//
// Such a locale is not installed everywhere, so one is made for the purpose where the system's localedef can, from a
// source and a character map of its own; elsewhere the system's German one serves. A test that needs it asserts
// inForce() first.

#ifndef COMMALOCALE_H
#define COMMALOCALE_H

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

class CommaLocale
{
public:
    CommaLocale() : mBefore(std::setlocale(LC_ALL, nullptr))
    {
        mInForce = Made() || std::setlocale(LC_ALL, "de-DE") || std::setlocale(LC_ALL, "German_Germany.1252");
        mInForce = mInForce && std::localeconv()->decimal_point[0] == ',';
    }
    ~CommaLocale() { std::setlocale(LC_ALL, mBefore.c_str()); }
    CommaLocale(CommaLocale const &) = delete;
    CommaLocale & operator=(CommaLocale const &) = delete;

    bool inForce() const { return mInForce; }

private:
#if defined(_WIN32)
    static bool Made()
    {
        return false;
    }
#else
    static void WriteSources(std::filesystem::path const & folder)
    {
        std::ofstream(folder / "source")
            << "LC_NUMERIC\ndecimal_point \",\"\nthousands_sep \".\"\ngrouping 3;3\nEND LC_NUMERIC\n";
        std::ofstream map(folder / "map");
        map << "<code_set_name> ANSI_X3.4-1968\n<comment_char> %\n<escape_char> /\nCHARMAP\n";
        for (unsigned c = 0; c < 128; ++c)
        {
            char line[32];
            std::snprintf(line, sizeof line, "<U%04X> /x%02x X\n", c, c);
            map << line;
        }
        map << "END CHARMAP\n";
    }

    static bool Made()
    {
        namespace fs = std::filesystem;
        std::string pattern = (fs::temp_directory_path() / "voz-locale-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            return false;
        fs::path const folder = pattern;
        WriteSources(folder);
        std::string const command = "cd '" + pattern +
                                    "' && PATH=\"$PATH:/usr/sbin\" localedef --no-archive -c -f ./map -i ./source "
                                    "./comma_COMMA >log 2>&1";
        int const ignored = std::system(command.c_str()); // it warns about the categories that are not there
        static_cast<void>(ignored);
        setenv("LOCPATH", pattern.c_str(), 1);
        bool const made = std::setlocale(LC_NUMERIC, "comma_COMMA") != nullptr;
        unsetenv("LOCPATH");
        fs::remove_all(folder);
        return made;
    }
#endif

    std::string mBefore;
    bool mInForce;
};

#endif
