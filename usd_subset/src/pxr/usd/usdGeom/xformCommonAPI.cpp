#include <pxr/usd/usdGeom/xformCommonAPI.h>

#include <pxr/base/gf/rotation.h>
#include <pxr/base/tf/diagnostic.h>

#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using Ops = UsdGeomXformCommonAPI::Ops;

/// Sorts a prim's ops into translate, pivot, rotate, scale and inverse pivot; false where there are others,
/// or they stand in another order.
bool _SortOps(const UsdGeomXformable& xformable, Ops* ops, bool* resets)
{
    const std::vector<UsdGeomXformOp> found = xformable.GetOrderedXformOps(resets);
    const TfToken translate = UsdGeomXformOp::GetOpName(UsdGeomXformOp::TypeTranslate);
    const TfToken pivot = UsdGeomXformOp::GetOpName(UsdGeomXformOp::TypeTranslate, UsdGeomTokens->pivot);
    const TfToken scale = UsdGeomXformOp::GetOpName(UsdGeomXformOp::TypeScale);
    size_t next = 0;
    const auto take = [&](bool fits, UsdGeomXformOp* op) {
        if (fits) {
            *op = found[next++];
        }
    };
    const auto isNext = [&](const TfToken& name, bool inverse) {
        return next < found.size() && found[next].GetName() == name && found[next].IsInverseOp() == inverse;
    };
    take(isNext(translate, false), &ops->translateOp);
    take(isNext(pivot, false), &ops->pivotOp);
    take(next < found.size() && !found[next].IsInverseOp() &&
             UsdGeomXformCommonAPI::CanConvertOpTypeToRotationOrder(found[next].GetOpType()),
         &ops->rotateOp);
    take(isNext(scale, false), &ops->scaleOp);
    take(isNext(pivot, true), &ops->inversePivotOp);
    return next == found.size() && bool(ops->pivotOp) == bool(ops->inversePivotOp);
}

/// Takes a matrix apart into translation, rotation about X, Y and Z in degrees, and scale.
void _Decompose(const GfMatrix4d& matrix, GfVec3d* translation, GfVec3f* rotation, GfVec3f* scale)
{
    GfMatrix4d scaleOrientation, rotationMatrix, perspective;
    GfVec3d factors(1.0);
    matrix.Factor(&scaleOrientation, &factors, &rotationMatrix, translation, &perspective);
    *scale = GfVec3f(factors);
    if (!rotationMatrix.Orthonormalize(/*issueWarning=*/false)) {
        TF_WARN("A transform has no rotation that could be told apart from its scale.");
    }
    const GfVec3d angles =
        rotationMatrix.ExtractRotation().Decompose(GfVec3d::ZAxis(), GfVec3d::YAxis(), GfVec3d::XAxis());
    *rotation =
        GfVec3f(static_cast<float>(angles[2]), static_cast<float>(angles[1]), static_cast<float>(angles[0]));
}

/// Reads a pivot of either precision.
bool _GetPivot(const UsdGeomXformOp& op, GfVec3f* pivot, UsdTimeCode time)
{
    GfVec3d wide;
    if (op.Get(&wide, time)) {
        *pivot = GfVec3f(wide);
        return true;
    }
    return op.Get(pivot, time);
}

} // namespace

bool UsdGeomXformCommonAPI::_IsCompatible() const
{
    const UsdGeomXformable xformable(GetPrim());
    Ops ops;
    bool resets = false;
    return UsdAPISchemaBase::_IsCompatible() && xformable && _SortOps(xformable, &ops, &resets);
}

bool UsdGeomXformCommonAPI::SetXformVectors(const GfVec3d& translation, const GfVec3f& rotation,
                                            const GfVec3f& scale, const GfVec3f& pivot,
                                            RotationOrder rotOrder, UsdTimeCode time) const
{
    const Ops ops = CreateXformOps(rotOrder, OpTranslate, OpRotate, OpScale, OpPivot);
    return ops.translateOp && ops.rotateOp && ops.scaleOp && ops.pivotOp &&
           ops.translateOp.Set(translation, time) && ops.rotateOp.Set(rotation, time) &&
           ops.scaleOp.Set(scale, time) && ops.pivotOp.Set(pivot, time);
}

bool UsdGeomXformCommonAPI::GetXformVectors(GfVec3d* translation, GfVec3f* rotation, GfVec3f* scale,
                                            GfVec3f* pivot, RotationOrder* rotOrder, UsdTimeCode time) const
{
    if (!TF_VERIFY(translation && rotation && scale && pivot && rotOrder)) {
        return false;
    }
    const UsdGeomXformable xformable(GetPrim());
    Ops ops;
    bool resets = false;
    if (!_SortOps(xformable, &ops, &resets)) {
        GfMatrix4d local(1.0);
        xformable.GetLocalTransformation(&local, &resets, time);
        _Decompose(local, translation, rotation, scale);
        *pivot = GfVec3f(0.0f);
        *rotOrder = RotationOrderXYZ;
        return true;
    }
    if (!ops.translateOp || !ops.translateOp.Get(translation, time)) {
        *translation = GfVec3d(0.0);
    }
    if (!ops.rotateOp || !ops.rotateOp.Get(rotation, time)) {
        *rotation = GfVec3f(0.0f);
    }
    if (!ops.scaleOp || !ops.scaleOp.Get(scale, time)) {
        *scale = GfVec3f(1.0f);
    }
    if (!ops.pivotOp || !_GetPivot(ops.pivotOp, pivot, time)) {
        *pivot = GfVec3f(0.0f);
    }
    *rotOrder = ops.rotateOp ? ConvertOpTypeToRotationOrder(ops.rotateOp.GetOpType()) : RotationOrderXYZ;
    return true;
}

bool UsdGeomXformCommonAPI::GetResetXformStack() const
{
    return UsdGeomXformable(GetPrim()).GetResetXformStack();
}

bool UsdGeomXformCommonAPI::SetResetXformStack(bool resetXformStack) const
{
    return UsdGeomXformable(GetPrim()).SetResetXformStack(resetXformStack);
}

bool UsdGeomXformCommonAPI::SetTranslate(const GfVec3d& translation, UsdTimeCode time) const
{
    const Ops ops = CreateXformOps(OpTranslate);
    return ops.translateOp && ops.translateOp.Set(translation, time);
}

bool UsdGeomXformCommonAPI::SetPivot(const GfVec3f& pivot, UsdTimeCode time) const
{
    const Ops ops = CreateXformOps(OpPivot);
    return ops.pivotOp && ops.pivotOp.Set(pivot, time);
}

bool UsdGeomXformCommonAPI::SetRotate(const GfVec3f& rotation, RotationOrder rotOrder, UsdTimeCode time) const
{
    const Ops ops = CreateXformOps(rotOrder, OpRotate);
    return ops.rotateOp && ops.rotateOp.Set(rotation, time);
}

bool UsdGeomXformCommonAPI::SetScale(const GfVec3f& scale, UsdTimeCode time) const
{
    const Ops ops = CreateXformOps(OpScale);
    return ops.scaleOp && ops.scaleOp.Set(scale, time);
}

UsdGeomXformCommonAPI::Ops UsdGeomXformCommonAPI::CreateXformOps(RotationOrder rotOrder, OpFlags op1,
                                                                 OpFlags op2, OpFlags op3, OpFlags op4) const
{
    return _CreateXformOps(&rotOrder, op1 | op2 | op3 | op4);
}

UsdGeomXformCommonAPI::Ops UsdGeomXformCommonAPI::CreateXformOps(OpFlags op1, OpFlags op2, OpFlags op3,
                                                                 OpFlags op4) const
{
    return _CreateXformOps(nullptr, op1 | op2 | op3 | op4);
}

UsdGeomXformCommonAPI::Ops UsdGeomXformCommonAPI::_CreateXformOps(const RotationOrder* rotOrder,
                                                                  int flags) const
{
    const UsdGeomXformable xformable(GetPrim());
    Ops ops;
    bool resets = false;
    if (!xformable) {
        return Ops();
    }
    if (!_SortOps(xformable, &ops, &resets)) {
        TF_WARN("The transform ops of <%s> are not translate, pivot, rotate, scale and inverse pivot.",
                xformable.GetPath().GetText());
        return Ops();
    }
    if ((flags & OpRotate) && rotOrder && ops.rotateOp &&
        ConvertOpTypeToRotationOrder(ops.rotateOp.GetOpType()) != *rotOrder) {
        TF_CODING_ERROR("<%s> rotates by '%s', not in the order asked for.", xformable.GetPath().GetText(),
                        ops.rotateOp.GetOpName().GetText());
        return Ops();
    }
    bool isNew = false;
    const auto add = [&](int flag, UsdGeomXformOp* op, auto&& create) {
        if ((flags & flag) && !*op) {
            *op = create();
            isNew = true;
        }
    };
    add(OpTranslate, &ops.translateOp, [&] { return xformable.AddTranslateOp(); });
    add(OpPivot, &ops.pivotOp, [&] {
        const UsdGeomXformOp pivot =
            xformable.AddTranslateOp(UsdGeomXformOp::PrecisionFloat, UsdGeomTokens->pivot);
        ops.inversePivotOp = xformable.AddTranslateOp(UsdGeomXformOp::PrecisionFloat, UsdGeomTokens->pivot,
                                                      /*isInverseOp=*/true);
        return pivot;
    });
    add(OpRotate, &ops.rotateOp, [&] {
        return xformable.AddXformOp(ConvertRotationOrderToOpType(rotOrder ? *rotOrder : RotationOrderXYZ),
                                    UsdGeomXformOp::PrecisionFloat);
    });
    add(OpScale, &ops.scaleOp, [&] { return xformable.AddScaleOp(); });
    if (isNew) {
        std::vector<UsdGeomXformOp> order;
        for (const UsdGeomXformOp* op :
             {&ops.translateOp, &ops.pivotOp, &ops.rotateOp, &ops.scaleOp, &ops.inversePivotOp}) {
            if (*op) {
                order.push_back(*op);
            }
        }
        xformable.SetXformOpOrder(order, resets);
    }
    return ops;
}

GfMatrix4d UsdGeomXformCommonAPI::GetRotationTransform(const GfVec3f& rotation, RotationOrder rotationOrder)
{
    return UsdGeomXformOp::GetOpTransform(ConvertRotationOrderToOpType(rotationOrder), VtValue(rotation));
}

// The six orders stand in the same sequence in both enumerations.
UsdGeomXformOp::Type UsdGeomXformCommonAPI::ConvertRotationOrderToOpType(RotationOrder rotOrder)
{
    if (rotOrder < RotationOrderXYZ || rotOrder > RotationOrderZYX) {
        TF_CODING_ERROR("%d is no rotation order.", int(rotOrder));
        return UsdGeomXformOp::TypeRotateXYZ;
    }
    return static_cast<UsdGeomXformOp::Type>(UsdGeomXformOp::TypeRotateXYZ + rotOrder);
}

UsdGeomXformCommonAPI::RotationOrder
UsdGeomXformCommonAPI::ConvertOpTypeToRotationOrder(UsdGeomXformOp::Type opType)
{
    if (!CanConvertOpTypeToRotationOrder(opType)) {
        TF_CODING_ERROR("'%s' does not rotate about three axes.",
                        UsdGeomXformOp::GetOpTypeToken(opType).GetText());
        return RotationOrderXYZ;
    }
    return static_cast<RotationOrder>(opType - UsdGeomXformOp::TypeRotateXYZ);
}

bool UsdGeomXformCommonAPI::CanConvertOpTypeToRotationOrder(UsdGeomXformOp::Type opType)
{
    return opType >= UsdGeomXformOp::TypeRotateXYZ && opType <= UsdGeomXformOp::TypeRotateZYX;
}

PXR_NAMESPACE_CLOSE_SCOPE
