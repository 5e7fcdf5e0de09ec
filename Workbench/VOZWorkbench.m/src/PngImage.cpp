// PngImage.cpp: pixels to a PNG in memory, and bytes to text for a page.

#include "MeshPicture.h"
#include "OutputFile.h"

#include <png.h>

namespace voz::workbench
{

std::string PngBytes(std::vector<std::uint8_t> const & i_rgba, PictureSize i_size)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(i_size.width);
    image.height = static_cast<png_uint_32>(i_size.height);
    image.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    if (png_image_write_to_memory(&image, nullptr, &size, 0, i_rgba.data(), 0, nullptr) == 0)
        throw OutputError("a picture", image.message);
    std::string bytes(size, '\0');
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, i_rgba.data(), 0, nullptr) == 0)
        throw OutputError("a picture", image.message);
    bytes.resize(size);
    return bytes;
}

std::string Base64(std::string_view i_bytes)
{
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((i_bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < i_bytes.size(); i += 3)
    {
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (i + k < i_bytes.size() ? static_cast<unsigned char>(i_bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k <= i_bytes.size() ? digits[group >> (18 - 6 * k) & 63U] : '=';
    }
    return text;
}

} // namespace voz::workbench
