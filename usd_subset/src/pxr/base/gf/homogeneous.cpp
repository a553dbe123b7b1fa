#include <pxr/base/gf/homogeneous.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

template <class Vec4>
Vec4 Homogenized(Vec4 v)
{
    if (v[3] == 0) {
        v[3] = 1;
    }
    return v /= v[3];
}

template <class Vec3, class Vec4>
Vec4 HomogeneousCross(const Vec4& a, const Vec4& b)
{
    const Vec3 product = GfCross(Vec3(Homogenized(a).data()), Vec3(Homogenized(b).data()));
    return Vec4(product[0], product[1], product[2], 1);
}

} // namespace

GfVec4f GfGetHomogenized(const GfVec4f& v) { return Homogenized(v); }
GfVec4d GfGetHomogenized(const GfVec4d& v) { return Homogenized(v); }

GfVec4f GfHomogeneousCross(const GfVec4f& a, const GfVec4f& b) { return HomogeneousCross<GfVec3f>(a, b); }
GfVec4d GfHomogeneousCross(const GfVec4d& a, const GfVec4d& b) { return HomogeneousCross<GfVec3d>(a, b); }

PXR_NAMESPACE_CLOSE_SCOPE
