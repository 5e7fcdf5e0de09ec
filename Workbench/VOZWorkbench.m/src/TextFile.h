// TextFile.h: a whole file as text.

#ifndef TEXTFILE_H
#define TEXTFILE_H

#include <cstddef>
#include <string>

namespace voz::workbench
{

// The bytes of the file, or of standard input for "-". Throws InputError: what cannot be opened, a folder, and what is
// larger than i_limit bytes.
std::string ReadTextFile(std::string const & i_path, std::size_t i_limit);

} // namespace voz::workbench

#endif
