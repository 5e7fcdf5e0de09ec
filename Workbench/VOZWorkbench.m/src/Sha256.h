// Sha256.h: the hash that names an input's content (FIPS 180-4).

#ifndef SHA256_H
#define SHA256_H

#include <string>
#include <string_view>

namespace voz::workbench
{

// 64 hexadecimal digits.
std::string Sha256(std::string_view i_bytes);

} // namespace voz::workbench

#endif
