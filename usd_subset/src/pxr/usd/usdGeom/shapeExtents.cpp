#include "pxr/usd/usdGeom/extents.h"

#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/usd/usdGeom/boundableComputeExtent.h>
#include <pxr/usd/usdGeom/capsule.h>
#include <pxr/usd/usdGeom/capsule_1.h>
#include <pxr/usd/usdGeom/cone.h>
#include <pxr/usd/usdGeom/cube.h>
#include <pxr/usd/usdGeom/cylinder.h>
#include <pxr/usd/usdGeom/cylinder_1.h>
#include <pxr/usd/usdGeom/plane.h>
#include <pxr/usd/usdGeom/sphere.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

void UsdGeom_SetSymmetricExtent(const GfVec3d& max, const GfMatrix4d* transform, VtVec3fArray* extent)
{
    if (!transform) {
        UsdGeom_SetExtent(-GfVec3f(max), GfVec3f(max), extent);
        return;
    }
    const GfRange3d range = GfBBox3d(GfRange3d(-max, max), *transform).ComputeAlignedRange();
    UsdGeom_SetExtent(GfVec3f(range.GetMin()), GfVec3f(range.GetMax()), extent);
}

bool UsdGeom_ComputeAxialMax(double halfLength, double radius, const TfToken& axis, GfVec3f* max)
{
    const int index = axis == UsdGeomTokens->x   ? 0
                      : axis == UsdGeomTokens->y ? 1
                      : axis == UsdGeomTokens->z ? 2
                                                 : -1;
    if (index < 0) {
        return false;
    }
    *max = GfVec3f(static_cast<float>(radius));
    (*max)[index] = static_cast<float>(halfLength);
    return true;
}

namespace {

bool _SetAxial(double halfLength, double radius, const TfToken& axis, const GfMatrix4d* transform,
               VtVec3fArray* extent)
{
    GfVec3f max;
    extent->resize(2);
    if (!UsdGeom_ComputeAxialMax(halfLength, radius, axis, &max)) {
        return false;
    }
    UsdGeom_SetSymmetricExtent(GfVec3d(max), transform, extent);
    return true;
}

bool _SetPlane(double width, double length, const TfToken& axis, const GfMatrix4d* transform,
               VtVec3fArray* extent)
{
    const float halfWidth = static_cast<float>(width * 0.5);
    const float halfLength = static_cast<float>(length * 0.5);
    extent->resize(2);
    GfVec3f max;
    if (axis == UsdGeomTokens->x) {
        max = GfVec3f(0, halfLength, halfWidth);
    } else if (axis == UsdGeomTokens->y) {
        max = GfVec3f(halfWidth, 0, halfLength);
    } else if (axis == UsdGeomTokens->z) {
        max = GfVec3f(halfWidth, halfLength, 0);
    } else {
        return false;
    }
    UsdGeom_SetSymmetricExtent(GfVec3d(max), transform, extent);
    return true;
}

} // namespace

// The two static forms of each shape differ in the matrix alone.
#define USD_SHAPE_EXTENT(Class, parameters, compute)                                                         \
    bool Class::ComputeExtent(USD_UNPACK parameters, VtVec3fArray* extent)                                   \
    {                                                                                                        \
        const GfMatrix4d* const matrix = nullptr;                                                            \
        return compute;                                                                                      \
    }                                                                                                        \
    bool Class::ComputeExtent(USD_UNPACK parameters, const GfMatrix4d& transform, VtVec3fArray* extent)      \
    {                                                                                                        \
        const GfMatrix4d* const matrix = &transform;                                                         \
        return compute;                                                                                      \
    }
#define USD_UNPACK(...) __VA_ARGS__

USD_SHAPE_EXTENT(UsdGeomCube, (double size),
                 (UsdGeom_SetSymmetricExtent(GfVec3d(size * 0.5), matrix, extent), true))
USD_SHAPE_EXTENT(UsdGeomSphere, (double radius),
                 (UsdGeom_SetSymmetricExtent(GfVec3d(radius), matrix, extent), true))
USD_SHAPE_EXTENT(UsdGeomCone, (double height, double radius, const TfToken& axis),
                 _SetAxial(height * 0.5, radius, axis, matrix, extent))
USD_SHAPE_EXTENT(UsdGeomCylinder, (double height, double radius, const TfToken& axis),
                 _SetAxial(height * 0.5, radius, axis, matrix, extent))
USD_SHAPE_EXTENT(UsdGeomCapsule, (double height, double radius, const TfToken& axis),
                 _SetAxial(height * 0.5 + radius, radius, axis, matrix, extent))
USD_SHAPE_EXTENT(UsdGeomCylinder_1,
                 (double height, double radiusTop, double radiusBottom, const TfToken& axis),
                 _SetAxial(height * 0.5, std::max(radiusTop, radiusBottom), axis, matrix, extent))
USD_SHAPE_EXTENT(UsdGeomCapsule_1,
                 (double height, double radiusTop, double radiusBottom, const TfToken& axis),
                 _SetAxial(height * 0.5 + std::max(radiusTop, radiusBottom),
                           std::max(radiusTop, radiusBottom), axis, matrix, extent))
USD_SHAPE_EXTENT(UsdGeomPlane, (double width, double length, const TfToken& axis),
                 _SetPlane(width, length, axis, matrix, extent))
#undef USD_UNPACK
#undef USD_SHAPE_EXTENT

namespace {

/// Reads one double of a shape.
class _Reader
{
public:
    explicit _Reader(const UsdTimeCode& time) : _time(time) {}

    double Number(const UsdAttribute& attribute) { return _Read<double>(attribute, 0.0); }
    TfToken Token(const UsdAttribute& attribute) { return _Read<TfToken>(attribute, TfToken()); }
    /// Whether all reads so far found a value.
    bool IsComplete() const { return _isComplete; }

private:
    template <class T>
    T _Read(const UsdAttribute& attribute, T value)
    {
        _isComplete = attribute.Get(&value, _time) && _isComplete;
        return value;
    }

    UsdTimeCode _time;
    bool _isComplete = true;
};

bool _ComputeCube(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                  VtVec3fArray* extent)
{
    _Reader reader(time);
    const double size = reader.Number(UsdGeomCube(boundable).GetSizeAttr());
    UsdGeom_SetSymmetricExtent(GfVec3d(size * 0.5), transform, extent);
    return reader.IsComplete();
}

bool _ComputeSphere(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                    VtVec3fArray* extent)
{
    _Reader reader(time);
    const double radius = reader.Number(UsdGeomSphere(boundable).GetRadiusAttr());
    UsdGeom_SetSymmetricExtent(GfVec3d(radius), transform, extent);
    return reader.IsComplete();
}

/// Cones, cylinders and, with their caps, capsules.
template <class Shape, bool withCaps>
bool _ComputeAxial(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                   VtVec3fArray* extent)
{
    const Shape shape(boundable);
    _Reader reader(time);
    const double halfHeight = reader.Number(shape.GetHeightAttr()) * 0.5;
    const double radius = reader.Number(shape.GetRadiusAttr());
    const TfToken axis = reader.Token(shape.GetAxisAttr());
    return reader.IsComplete() &&
           _SetAxial(withCaps ? halfHeight + radius : halfHeight, radius, axis, transform, extent);
}

template <class Shape, bool withCaps>
bool _ComputeTapered(const UsdGeomBoundable& boundable, const UsdTimeCode& time, const GfMatrix4d* transform,
                     VtVec3fArray* extent)
{
    const Shape shape(boundable);
    _Reader reader(time);
    const double halfHeight = reader.Number(shape.GetHeightAttr()) * 0.5;
    const double radius =
        std::max(reader.Number(shape.GetRadiusTopAttr()), reader.Number(shape.GetRadiusBottomAttr()));
    const TfToken axis = reader.Token(shape.GetAxisAttr());
    return reader.IsComplete() &&
           _SetAxial(withCaps ? halfHeight + radius : halfHeight, radius, axis, transform, extent);
}

// OpenUSD reads a plane's size at the default time whatever time is asked for.
bool _ComputePlane(const UsdGeomBoundable& boundable, const UsdTimeCode&, const GfMatrix4d* transform,
                   VtVec3fArray* extent)
{
    const UsdGeomPlane plane(boundable);
    _Reader reader(UsdTimeCode::Default());
    const double width = reader.Number(plane.GetWidthAttr());
    const double length = reader.Number(plane.GetLengthAttr());
    const TfToken axis = reader.Token(plane.GetAxisAttr());
    return reader.IsComplete() && _SetPlane(width, length, axis, transform, extent);
}

} // namespace

TF_REGISTRY_FUNCTION(UsdGeomBoundable)
{
    UsdGeomRegisterComputeExtentFunction<UsdGeomCube>(_ComputeCube);
    UsdGeomRegisterComputeExtentFunction<UsdGeomSphere>(_ComputeSphere);
    UsdGeomRegisterComputeExtentFunction<UsdGeomCone>(_ComputeAxial<UsdGeomCone, false>);
    UsdGeomRegisterComputeExtentFunction<UsdGeomCylinder>(_ComputeAxial<UsdGeomCylinder, false>);
    UsdGeomRegisterComputeExtentFunction<UsdGeomCapsule>(_ComputeAxial<UsdGeomCapsule, true>);
    UsdGeomRegisterComputeExtentFunction<UsdGeomCylinder_1>(_ComputeTapered<UsdGeomCylinder_1, false>);
    UsdGeomRegisterComputeExtentFunction<UsdGeomCapsule_1>(_ComputeTapered<UsdGeomCapsule_1, true>);
    UsdGeomRegisterComputeExtentFunction<UsdGeomPlane>(_ComputePlane);
}

PXR_NAMESPACE_CLOSE_SCOPE
