#include <pxr/base/gf/matrix3d.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/matrix4f.h>
#include <pxr/base/gf/quatd.h>
#include <pxr/base/gf/quatf.h>
#include <pxr/base/gf/quath.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/base/gf/vec3h.h>
#include <pxr/usd/usdGeom/xformOp.h>

#include <cmath>
#include <optional>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

std::optional<double> _AsNumber(const VtValue& value)
{
    if (value.IsHolding<double>()) {
        return value.UncheckedGet<double>();
    }
    if (value.IsHolding<float>()) {
        return value.UncheckedGet<float>();
    }
    if (value.IsHolding<GfHalf>()) {
        return static_cast<float>(value.UncheckedGet<GfHalf>());
    }
    return std::nullopt;
}

std::optional<GfVec3d> _AsVector(const VtValue& value)
{
    if (value.IsHolding<GfVec3d>()) {
        return value.UncheckedGet<GfVec3d>();
    }
    if (value.IsHolding<GfVec3f>()) {
        return GfVec3d(value.UncheckedGet<GfVec3f>());
    }
    if (value.IsHolding<GfVec3h>()) {
        return GfVec3d(value.UncheckedGet<GfVec3h>());
    }
    return std::nullopt;
}

template <class Quat>
GfQuatd _ToDouble(const Quat& quat)
{
    return GfQuatd(quat.GetReal(), GfVec3d(quat.GetImaginary()));
}

std::optional<GfQuatd> _AsQuaternion(const VtValue& value)
{
    if (value.IsHolding<GfQuatd>()) {
        return value.UncheckedGet<GfQuatd>();
    }
    if (value.IsHolding<GfQuatf>()) {
        return _ToDouble(value.UncheckedGet<GfQuatf>());
    }
    if (value.IsHolding<GfQuath>()) {
        return _ToDouble(value.UncheckedGet<GfQuath>());
    }
    return std::nullopt;
}

std::optional<GfMatrix4d> _AsMatrix(const VtValue& value, bool isInverseOp)
{
    GfMatrix4d matrix;
    if (value.IsHolding<GfMatrix4d>()) {
        matrix = value.UncheckedGet<GfMatrix4d>();
    } else if (value.IsHolding<GfMatrix4f>()) {
        matrix = GfMatrix4d(value.UncheckedGet<GfMatrix4f>());
    } else {
        return std::nullopt;
    }
    if (isInverseOp) {
        double determinant = 0.0;
        matrix = matrix.GetInverse(&determinant);
        if (std::abs(determinant) < 1e-9) {
            TF_CODING_ERROR("A transform op inverts a matrix that is singular.");
        }
    }
    return matrix;
}

GfVec3d _Axis(int axis)
{
    GfVec3d vector(0.0);
    vector[axis] = 1.0;
    return vector;
}

/// Three rotations about the axes, applied in the order that the type's name spells; reversed for the
/// inverse.
GfMatrix4d _RotateThrice(UsdGeomXformOp::Type opType, const GfVec3d& degrees, bool isInverseOp)
{
    const std::string& name = UsdGeomXformOp::GetOpTypeToken(opType).GetString();
    const std::string order = name.substr(name.size() - 3);
    GfMatrix3d rotation(1.0);
    for (int i = 0; i < 3; ++i) {
        const int axis = order[size_t(isInverseOp ? 2 - i : i)] - 'X';
        rotation *= GfMatrix3d(GfRotation(_Axis(axis), isInverseOp ? -degrees[axis] : degrees[axis]));
    }
    return GfMatrix4d(1.0).SetRotate(rotation);
}

std::optional<GfMatrix4d> _FromVector(UsdGeomXformOp::Type opType, const GfVec3d& vector, bool isInverseOp)
{
    if (opType == UsdGeomXformOp::TypeTranslate) {
        return GfMatrix4d(1.0).SetTranslate(isInverseOp ? -vector : vector);
    }
    if (opType == UsdGeomXformOp::TypeScale) {
        return GfMatrix4d(1.0).SetScale(
            isInverseOp ? GfVec3d(1.0 / vector[0], 1.0 / vector[1], 1.0 / vector[2]) : vector);
    }
    if (opType >= UsdGeomXformOp::TypeRotateXYZ && opType <= UsdGeomXformOp::TypeRotateZYX) {
        return _RotateThrice(opType, vector, isInverseOp);
    }
    return std::nullopt;
}

std::optional<GfMatrix4d> _ToMatrix(UsdGeomXformOp::Type opType, const VtValue& value, bool isInverseOp)
{
    if (opType == UsdGeomXformOp::TypeTransform) {
        return _AsMatrix(value, isInverseOp);
    }
    if (opType >= UsdGeomXformOp::TypeRotateX && opType <= UsdGeomXformOp::TypeRotateZ) {
        if (const std::optional<double> degrees = _AsNumber(value)) {
            const GfVec3d axis = _Axis(opType - UsdGeomXformOp::TypeRotateX);
            return GfMatrix4d(1.0).SetRotate(GfRotation(axis, isInverseOp ? -*degrees : *degrees));
        }
        return std::nullopt;
    }
    if (opType == UsdGeomXformOp::TypeOrient) {
        if (const std::optional<GfQuatd> quaternion = _AsQuaternion(value)) {
            const GfRotation rotation(*quaternion);
            return GfMatrix4d(isInverseOp ? rotation.GetInverse() : rotation, GfVec3d(0.0));
        }
        return std::nullopt;
    }
    const std::optional<GfVec3d> vector = _AsVector(value);
    return vector ? _FromVector(opType, *vector, isInverseOp) : std::nullopt;
}

} // namespace

GfMatrix4d UsdGeomXformOp::GetOpTransform(Type opType, const VtValue& opVal, bool isInverseOp)
{
    const std::optional<GfMatrix4d> matrix = _ToMatrix(opType, opVal, isInverseOp);
    if (!matrix) {
        TF_CODING_ERROR("A transform op of type '%s' cannot have a value of type %s; it moves nothing.",
                        GetOpTypeToken(opType).GetText(), opVal.GetTypeName().c_str());
    }
    return matrix.value_or(GfMatrix4d(1.0));
}

GfMatrix4d UsdGeomXformOp::GetOpTransform(UsdTimeCode time) const
{
    VtValue value;
    return Get(&value, time) ? GetOpTransform(_opType, value, _isInverseOp) : GfMatrix4d(1.0);
}

PXR_NAMESPACE_CLOSE_SCOPE
