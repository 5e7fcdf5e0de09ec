// EchoArguments.cpp: a child for the tests of processes. "EchoArguments FILE ARGUMENTS..." leaves its folder and its
// arguments in FILE, each in brackets on a line, under the final name only when all is written. An argument "exit=N"
// gives the exit code, "crash" an abort, "sleep=N" milliseconds of delay, "say=T" the text on output and errors.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

int main(int count, char ** words)
{
    int code = 0;
    std::string text = "[" + std::filesystem::current_path().generic_string() + "]\n";
    for (int i = 2; i < count; ++i)
    {
        std::string const word(words[i]);
        text += "[" + word + "]\n";
        if (word.rfind("exit=", 0) == 0)
            code = std::atoi(word.c_str() + 5);
        if (word.rfind("sleep=", 0) == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(word.c_str() + 6)));
        if (word.rfind("say=", 0) == 0)
        {
            std::printf("%s\n", word.c_str() + 4);
            std::fflush(stdout); // so that the two streams follow one another
            std::fprintf(stderr, "error %s\n", word.c_str() + 4);
        }
        if (word == "crash")
            std::abort();
    }
    if (count < 2)
        return 99;
    std::string const file(words[1]);
    std::ofstream(file + ".part", std::ios::binary) << text;
    std::filesystem::rename(file + ".part", file);
    return code;
}
