#include <pxr/usd/usdLux/blackbody.h>

#include <algorithm>
#include <array>
#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// Colours of black bodies from 1000 K to 10000 K in steps of 500 K, with the ends repeated for the spline.
const std::array<GfVec3f, 22> kColors = {{
    {1.000000f, 0.027490f, 0.000000f}, {1.000000f, 0.027490f, 0.000000f}, {1.000000f, 0.149664f, 0.000000f},
    {1.000000f, 0.256644f, 0.008095f}, {1.000000f, 0.372033f, 0.067450f}, {1.000000f, 0.476725f, 0.153601f},
    {1.000000f, 0.570376f, 0.259196f}, {1.000000f, 0.653480f, 0.377155f}, {1.000000f, 0.726878f, 0.501606f},
    {1.000000f, 0.791543f, 0.628050f}, {1.000000f, 0.848462f, 0.753228f}, {1.000000f, 0.898581f, 0.874905f},
    {1.000000f, 0.942771f, 0.991642f}, {0.906947f, 0.890456f, 1.000000f}, {0.828247f, 0.841838f, 1.000000f},
    {0.765791f, 0.801896f, 1.000000f}, {0.715255f, 0.768579f, 1.000000f}, {0.673683f, 0.740423f, 1.000000f},
    {0.638992f, 0.716359f, 1.000000f}, {0.609681f, 0.695588f, 1.000000f}, {0.609681f, 0.695588f, 1.000000f},
    {0.609681f, 0.695588f, 1.000000f},
}};

} // namespace

GfVec3f UsdLuxBlackbodyTemperatureAsRgb(float colorTemp)
{
    constexpr int segments = 18;
    const float clamped =
        std::isnan(colorTemp) ? 0.0f : std::clamp((colorTemp - 1000.0f) / 9000.0f, 0.0f, 1.0f);
    const float x = clamped * segments;
    const size_t segment = static_cast<size_t>(x);
    const float t = x - static_cast<float>(segment);
    // Catmull-Rom between the second and third of four knots.
    const float t2 = t * t, t3 = t2 * t;
    const float weights[4] = {-0.5f * t3 + t2 - 0.5f * t, 1.5f * t3 - 2.5f * t2 + 1.0f,
                              -1.5f * t3 + 2.0f * t2 + 0.5f * t, 0.5f * t3 - 0.5f * t2};
    GfVec3f rgb(0.0f);
    for (size_t i = 0; i < 4; ++i) {
        rgb += weights[i] * kColors[segment + i];
    }
    // Rec. 709 luminance.
    rgb /= 0.2126f * rgb[0] + 0.7152f * rgb[1] + 0.0722f * rgb[2];
    return GfVec3f(std::max(rgb[0], 0.0f), std::max(rgb[1], 0.0f), std::max(rgb[2], 0.0f));
}

PXR_NAMESPACE_CLOSE_SCOPE
