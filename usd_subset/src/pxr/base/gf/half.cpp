#include <pxr/base/gf/half.h>

#include <istream>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace pxr_half {

namespace {

uint32_t BitsOf(float f)
{
    uint32_t bits;
    std::memcpy(&bits, &f, sizeof(bits));
    return bits;
}

float FloatOf(uint32_t bits)
{
    float f;
    std::memcpy(&f, &bits, sizeof(f));
    return f;
}

// Drops count low bits, rounding to the nearest and halfway cases to even.
uint32_t ShiftRounding(uint32_t value, unsigned count)
{
    const uint32_t even = (value >> count) & 1u;
    return (value + (1u << (count - 1)) - 1 + even) >> count;
}

} // namespace

uint16_t half::_FromFloat(float f)
{
    const uint32_t bits = BitsOf(f);
    const uint32_t magnitude = bits & 0x7fffffffu;
    const uint32_t sign = (bits >> 16) & 0x8000u;
    uint32_t result;
    if (magnitude > 0x7f800000u) {
        // A NaN keeps its upper fraction bits and stays one where those are 0.
        const uint32_t fraction = (magnitude >> 13) & 0x3ffu;
        result = 0x7c00u | fraction | (fraction == 0);
    } else if (magnitude >= 0x477ff000u) {
        result = 0x7c00u; // 65520 and above
    } else if (magnitude >= 0x38800000u) {
        result = ShiftRounding(magnitude - 0x38000000u, 13); // the exponent's bias shrinks from 127 to 15
    } else if (magnitude >= 0x33000000u) {
        // Below 2^-14 the hidden bit becomes visible, and the unit of the last place stays 2^-24.
        result = ShiftRounding((magnitude & 0x7fffffu) | 0x800000u, 126 - (magnitude >> 23));
    } else {
        result = 0; // below 2^-25
    }
    return static_cast<uint16_t>(sign | result);
}

float half::_ToFloat(uint16_t bits)
{
    const uint32_t sign = (bits & 0x8000u) << 16;
    const uint32_t exponent = (bits >> 10) & 0x1fu;
    const uint32_t fraction = bits & 0x3ffu;
    if (exponent == 31) {
        return FloatOf(sign | 0x7f800000u | (fraction << 13));
    }
    if (exponent == 0) {
        const float magnitude = static_cast<float>(fraction) * 5.9604644775390625e-08f; // 2^-24
        return sign ? -magnitude : magnitude;
    }
    return FloatOf(sign | ((exponent + 112) << 23) | (fraction << 13));
}

std::ostream& operator<<(std::ostream& os, half h) { return os << static_cast<float>(h); }

std::istream& operator>>(std::istream& is, half& h)
{
    float f;
    if (is >> f) {
        h = half(f);
    }
    return is;
}

} // namespace pxr_half

PXR_NAMESPACE_CLOSE_SCOPE
