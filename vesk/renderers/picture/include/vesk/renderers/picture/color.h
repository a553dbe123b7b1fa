#pragma once

#include <vesk/renderers/picture/export.h>
#include <vesk/renderers/picture/vec3.h>

#include <cstdint>
#include <cstring>

namespace vesk::renderers::picture {

/// Encodes a linear value for display (IEC 61966-2-1).
inline float linearToSrgb(float v)
{
    if (!(v > 0.0f)) return 0.0f;
    return v <= 0.0031308f ? 12.92f * v : 1.055f * std::pow(v, 1.0f / 2.4f) - 0.055f;
}

/// Decodes a display value (IEC 61966-2-1).
inline float srgbToLinear(float v)
{
    if (!(v > 0.0f)) return 0.0f;
    return v <= 0.04045f ? v / 12.92f : std::pow((v + 0.055f) / 1.055f, 2.4f);
}

/// Rounds a value from 0 to 1 to 8 bits; what is not a number becomes 0.
inline std::uint8_t toByte(float v)
{
    if (!(v > 0.0f)) return 0;
    return static_cast<std::uint8_t>(std::min(v, 1.0f) * 255.0f + 0.5f);
}

/// Encodes linear values as display bytes, as `toByte(linearToSrgb(v))` does, without its power function.
class VESK_RENDERERS_PICTURE_EXPORT DisplayBytes
{
public:
    static const DisplayBytes& get();

    std::uint8_t of(float v) const
    {
        if (!(v >= kSmallest)) return 0;
        if (v >= 1.0f) return 255;
        std::uint32_t bits;
        std::memcpy(&bits, &v, sizeof(bits));
        std::uint8_t byte = m_first[(bits - kSmallestBits) >> kShift];
        while (byte < 255 && v >= m_begins[byte + 1])
            ++byte;
        return byte;
    }

private:
    static constexpr float kSmallest = 0.0001220703125f; // 2^-13, still black
    static constexpr std::uint32_t kSmallestBits = 0x39000000u;
    static constexpr int kShift = 16;

    DisplayBytes();

    float m_begins[256];                                             ///< the least value of each byte
    std::uint8_t m_first[((0x3f800000u - kSmallestBits) >> kShift)]; ///< of each range of values
};

/// A display colour as the linear colour that is blended with the scene.
/// \param corrected whether the picture is encoded for display at its end
inline Vec3 displayToWorking(Vec3 c, bool corrected)
{
    return corrected ? Vec3(srgbToLinear(c.x), srgbToLinear(c.y), srgbToLinear(c.z)) : c;
}

} // namespace vesk::renderers::picture
