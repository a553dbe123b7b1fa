#include <pxr/base/gf/gamma.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/gf/vec4h.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

constexpr double kDisplayGamma = 2.2;

template <class Color>
Color Power(Color color, double gamma)
{
    for (size_t i = 0; i != 3; ++i) {
        const auto power = std::pow(static_cast<double>(color[i]), gamma);
        color[i] = static_cast<typename Color::ScalarType>(power);
    }
    return color;
}

} // namespace

double GfGetDisplayGamma() { return kDisplayGamma; }

GfVec3f GfApplyGamma(const GfVec3f& v, double gamma) { return Power(v, gamma); }
GfVec3d GfApplyGamma(const GfVec3d& v, double gamma) { return Power(v, gamma); }
GfVec3h GfApplyGamma(const GfVec3h& v, double gamma) { return Power(v, gamma); }
GfVec4f GfApplyGamma(const GfVec4f& v, double gamma) { return Power(v, gamma); }
GfVec4d GfApplyGamma(const GfVec4d& v, double gamma) { return Power(v, gamma); }
GfVec4h GfApplyGamma(const GfVec4h& v, double gamma) { return Power(v, gamma); }
float GfApplyGamma(const float& v, double gamma)
{
    return static_cast<float>(std::pow(static_cast<double>(v), gamma));
}
unsigned char GfApplyGamma(const unsigned char& v, double gamma)
{
    return static_cast<unsigned char>(GfClamp(std::pow(v / 255.0, gamma) * 255, 0.0, 255.0));
}

#define GF_DEFINE_GAMMA(Color)                                                                               \
    Color GfConvertLinearToDisplay(const Color& v) { return GfApplyGamma(v, 1.0 / kDisplayGamma); }          \
    Color GfConvertDisplayToLinear(const Color& v) { return GfApplyGamma(v, kDisplayGamma); }

GF_DEFINE_GAMMA(GfVec3f)
GF_DEFINE_GAMMA(GfVec3d)
GF_DEFINE_GAMMA(GfVec3h)
GF_DEFINE_GAMMA(GfVec4f)
GF_DEFINE_GAMMA(GfVec4d)
GF_DEFINE_GAMMA(GfVec4h)
GF_DEFINE_GAMMA(float)
GF_DEFINE_GAMMA(unsigned char)

PXR_NAMESPACE_CLOSE_SCOPE
