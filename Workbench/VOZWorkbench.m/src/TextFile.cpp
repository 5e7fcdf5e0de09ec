// TextFile.cpp: a whole file as text.

#include "TextFile.h"

#include "InputError.h"
#include "VOZFile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace voz::workbench
{

std::string ReadTextFile(std::string const & i_path, std::size_t i_limit)
{
    struct Closer
    {
        void operator()(std::FILE * i_file) const
        {
            if (i_file != stdin)
                std::fclose(i_file);
        }
    };
    errno = 0;
    std::unique_ptr<std::FILE, Closer> const file(i_path == "-" ? stdin : VOZOpenFile(i_path.c_str(), "rb"));
    if (file == nullptr)
        throw InputError(i_path, 0, 0, std::string("cannot be opened: ") + std::strerror(errno));
    std::string text;
    std::array<char, 1 << 16> block;
    while (std::size_t const read = std::fread(block.data(), 1, block.size(), file.get()))
    {
        text.append(block.data(), read);
        if (text.size() > i_limit)
            throw InputError(i_path, 0, 0, "is larger than " + std::to_string(i_limit) + " bytes");
    }
    if (std::ferror(file.get()) != 0)
        throw InputError(i_path, 0, 0, std::string("cannot be read: ") + std::strerror(errno));
    return text;
}

} // namespace voz::workbench
