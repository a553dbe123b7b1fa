#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vesk::renderers::embree {

/// A decoded picture, four channels a pixel, the top row first. One of the two buffers is filled.
struct DecodedImage
{
    int width = 0;
    int height = 0;
    int channels = 0; ///< of the file: 1 or 2 grey, 3 or 4 colour
    std::vector<std::uint8_t> bytes;
    std::vector<float> floats;
};

/// Pictures with more pixels are refused.
inline constexpr std::int64_t kMostPixels = 64 * 1024 * 1024;

/// Decodes PNG, JPEG, OpenEXR, Radiance HDR and TGA from memory.
/// Throws: `std::runtime_error` with a sentence's end for anything else, for damage and for too large
/// pictures.
DecodedImage decodeImage(const char* data, std::size_t size);

} // namespace vesk::renderers::embree
