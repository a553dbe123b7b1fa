#pragma once

#include <limits>

namespace vesk::framework::usd_viewport {

/// Converts a logical length to physical pixels, rounded towards zero. What no int can hold becomes the
/// nearest int, and a NaN becomes 0.
inline int physicalPixels(int logical, float devicePixelRatio)
{
    constexpr float kLimit = 2147483648.0f;
    const float pixels = static_cast<float>(logical) * devicePixelRatio;
    if (pixels >= kLimit) return std::numeric_limits<int>::max();
    if (pixels <= -kLimit) return std::numeric_limits<int>::min();
    return pixels == pixels ? static_cast<int>(pixels) : 0;
}

/// Width over height in float, 1 for a height below 1.
inline float aspectRatio(const int (&size)[2])
{
    if (size[1] < 1) return 1.0f;
    return static_cast<float>(size[0]) / static_cast<float>(size[1]);
}

} // namespace vesk::framework::usd_viewport
