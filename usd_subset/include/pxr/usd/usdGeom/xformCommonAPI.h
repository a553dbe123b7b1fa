#pragma once

#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/usd/usd/apiSchemaBase.h>
#include <pxr/usd/usdGeom/xformable.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Translation, pivot, rotation and scale of a prim whose ops are just these, in this order.
class VESK_USD_API UsdGeomXformCommonAPI : public UsdAPISchemaBase
{
    VESK_USD_API_SCHEMA(UsdGeomXformCommonAPI, UsdAPISchemaBase)

    enum RotationOrder
    {
        RotationOrderXYZ,
        RotationOrderXZY,
        RotationOrderYXZ,
        RotationOrderYZX,
        RotationOrderZXY,
        RotationOrderZYX
    };
    enum OpFlags
    {
        OpNone = 0,
        OpTranslate = 1,
        OpPivot = 2,
        OpRotate = 4,
        OpScale = 8
    };
    struct Ops
    {
        UsdGeomXformOp translateOp;
        UsdGeomXformOp pivotOp;
        UsdGeomXformOp rotateOp;
        UsdGeomXformOp scaleOp;
        UsdGeomXformOp inversePivotOp;
    };

    bool SetXformVectors(const GfVec3d& translation, const GfVec3f& rotation, const GfVec3f& scale,
                         const GfVec3f& pivot, RotationOrder rotOrder, UsdTimeCode time) const;
    /// Reads the five; ops of another form are taken apart as far as a matrix can be.
    bool GetXformVectors(GfVec3d* translation, GfVec3f* rotation, GfVec3f* scale, GfVec3f* pivot,
                         RotationOrder* rotOrder, UsdTimeCode time) const;
    bool GetResetXformStack() const;

    bool SetTranslate(const GfVec3d& translation, UsdTimeCode time = UsdTimeCode::Default()) const;
    bool SetPivot(const GfVec3f& pivot, UsdTimeCode time = UsdTimeCode::Default()) const;
    bool SetRotate(const GfVec3f& rotation, RotationOrder rotOrder = RotationOrderXYZ,
                   UsdTimeCode time = UsdTimeCode::Default()) const;
    bool SetScale(const GfVec3f& scale, UsdTimeCode time = UsdTimeCode::Default()) const;
    bool SetResetXformStack(bool resetXformStack) const;

    /// Creates those of the ops that are asked for and missing; all invalid where the prim's ops have another
    /// form.
    Ops CreateXformOps(RotationOrder rotOrder, OpFlags op1 = OpNone, OpFlags op2 = OpNone,
                       OpFlags op3 = OpNone, OpFlags op4 = OpNone) const;
    Ops CreateXformOps(OpFlags op1 = OpNone, OpFlags op2 = OpNone, OpFlags op3 = OpNone,
                       OpFlags op4 = OpNone) const;

    static GfMatrix4d GetRotationTransform(const GfVec3f& rotation, RotationOrder rotationOrder);
    static UsdGeomXformOp::Type ConvertRotationOrderToOpType(RotationOrder rotOrder);
    static RotationOrder ConvertOpTypeToRotationOrder(UsdGeomXformOp::Type opType);
    static bool CanConvertOpTypeToRotationOrder(UsdGeomXformOp::Type opType);

protected:
    bool _IsCompatible() const override;

private:
    Ops _CreateXformOps(const RotationOrder* rotOrder, int flags) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
