#include <vesk/renderers/picture/color.h>

namespace vesk::renderers::picture {
namespace {

float floatOf(std::uint32_t bits)
{
    float v;
    std::memcpy(&v, &bits, sizeof(v));
    return v;
}

// Positive floats are ordered as their bits are.
float leastValueOf(int byte)
{
    std::uint32_t low = 0;
    std::uint32_t high = 0x3f800000u; // 1, which is the byte 255
    while (low < high) {
        const std::uint32_t middle = low + (high - low) / 2;
        if (toByte(linearToSrgb(floatOf(middle))) >= byte) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return floatOf(high);
}

} // namespace

const DisplayBytes& DisplayBytes::get()
{
    static const DisplayBytes bytes;
    return bytes;
}

DisplayBytes::DisplayBytes()
{
    for (int byte = 0; byte < 256; ++byte)
        m_begins[byte] = leastValueOf(byte);
    std::uint32_t bits = kSmallestBits;
    for (std::uint8_t& first : m_first) {
        first = toByte(linearToSrgb(floatOf(bits)));
        bits += 1u << kShift;
    }
}

} // namespace vesk::renderers::picture
