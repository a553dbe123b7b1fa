#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace vesk::apps {

/// A picture of 8 bits a channel: red, green, blue, opacity; rows from top to bottom.
struct Image
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba; ///< width * height * 4 bytes

    Image() = default;
    /// A picture filled with one colour.
    Image(int w, int h, std::uint8_t red, std::uint8_t green, std::uint8_t blue);

    std::uint8_t* pixel(int x, int y) { return &rgba[(static_cast<std::size_t>(y) * width + x) * 4]; }
    const std::uint8_t* pixel(int x, int y) const
    {
        return &rgba[(static_cast<std::size_t>(y) * width + x) * 4];
    }
};

/// Reads a PNG file of any kind as 8-bit RGBA.
/// Throws: `JobError` that names the file and libpng's reason.
Image readPng(const std::filesystem::path& path);

/// Writes a PNG file; it appears whole or not at all.
/// Throws: `JobError` that names the file and the reason.
void writePng(const std::filesystem::path& path, const Image& image);

} // namespace vesk::apps
