#pragma once

#include "drawing.h"

#include <cstdint>

namespace vesk::renderers::embree {

/// Two numbers in [0, 1).
struct Sample2
{
    float x = 0.0f;
    float y = 0.0f;
};

/// A well mixed 32-bit number from another one.
inline std::uint32_t hash(std::uint32_t v)
{
    v ^= v >> 16;
    v *= 0x7feb352du;
    v ^= v >> 15;
    v *= 0x846ca68bu;
    v ^= v >> 16;
    return v;
}

/// The i-th point of an evenly spread sequence (the additive recurrence of the plastic number), shifted by a
/// seed. The same arguments give the same point, so that pictures are the same from run to run.
inline Sample2 sequencePoint(std::uint32_t i, std::uint32_t seed)
{
    constexpr double a1 = 0.7548776662466927;
    constexpr double a2 = 0.5698402909980532;
    const double x = a1 * i + hash(seed) * (1.0 / 4294967296.0);
    const double y = a2 * i + hash(seed ^ 0x9e3779b9u) * (1.0 / 4294967296.0);
    const Sample2 s{static_cast<float>(x - std::floor(x)), static_cast<float>(y - std::floor(y))};
    return {std::min(s.x, 0.99999994f), std::min(s.y, 0.99999994f)};
}

/// Where sample i lies in its pixel; the first one is the pixel's centre.
inline Sample2 pixelSample(std::uint32_t i)
{
    if (i == 0) return {0.5f, 0.5f};
    constexpr double a1 = 0.7548776662466927;
    constexpr double a2 = 0.5698402909980532;
    const double x = 0.5 + a1 * i;
    const double y = 0.5 + a2 * i;
    return {static_cast<float>(x - std::floor(x)), static_cast<float>(y - std::floor(y))};
}

/// Two unit vectors that are perpendicular to `n` and to each other.
inline void basisAround(Vec3 n, Vec3& tangent, Vec3& bitangent)
{
    const float sign = std::copysign(1.0f, n.z);
    const float a = -1.0f / (sign + n.z);
    const float b = n.x * n.y * a;
    tangent = {1.0f + sign * n.x * n.x * a, sign * b, -sign * n.x};
    bitangent = {b, sign + n.y * n.y * a, -n.y};
}

/// A direction about `n` with a density proportional to the cosine.
inline Vec3 cosineDirection(Vec3 n, Sample2 s)
{
    Vec3 t;
    Vec3 b;
    basisAround(n, t, b);
    const float r = std::sqrt(s.x);
    const float phi = 6.2831853f * s.y;
    return normalized(
        t * (r * std::cos(phi)) + b * (r * std::sin(phi)) + n * std::sqrt(std::max(0.0f, 1.0f - s.x)), n);
}

} // namespace vesk::renderers::embree
