#pragma once

#include <pxr/base/gf/interval.h>
#include <pxr/usd/usdGeom/imageable.h>
#include <pxr/usd/usdGeom/xformOp.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A prim with a transform: a list of ops, the first of which is applied last to a point.
class VESK_USD_API UsdGeomXformable : public UsdGeomImageable
{
    VESK_USD_ABSTRACT_SCHEMA(UsdGeomXformable, UsdGeomImageable)

    VESK_USD_SCHEMA_ATTR(XformOpOrder, UsdGeomTokens->xformOpOrder)

    /// A prim's ops, looked up once, for reading its transform at many times.
    class VESK_USD_API XformQuery
    {
    public:
        XformQuery() = default;
        explicit XformQuery(const UsdGeomXformable& xformable);

        bool GetLocalTransformation(GfMatrix4d* transform, UsdTimeCode time) const;
        bool GetResetXformStack() const { return _resetsXformStack; }
        bool TransformMightBeTimeVarying() const;
        bool HasNonEmptyXformOpOrder() const { return !_xformOps.empty(); }
        bool GetTimeSamples(std::vector<double>* times) const;
        bool GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const;
        bool IsAttributeIncludedInLocalTransform(const TfToken& attrName) const;

    private:
        std::vector<UsdGeomXformOp> _xformOps;
        bool _resetsXformStack = false;
    };

    /// Creates an op and appends it to the order; an invalid op and an error where it is there already.
    UsdGeomXformOp AddXformOp(UsdGeomXformOp::Type opType,
                              UsdGeomXformOp::Precision precision = UsdGeomXformOp::PrecisionDouble,
                              const TfToken& opSuffix = TfToken(), bool isInverseOp = false) const;
    /// The op of that name; invalid where the prim has none.
    UsdGeomXformOp GetXformOp(UsdGeomXformOp::Type opType, const TfToken& opSuffix = TfToken(),
                              bool isInverseOp = false) const;

#define VESK_USD_XFORM_OP(Name, DefaultPrecision)                                                            \
    UsdGeomXformOp Add##Name##Op(UsdGeomXformOp::Precision precision = UsdGeomXformOp::DefaultPrecision,     \
                                 const TfToken& opSuffix = TfToken(), bool isInverseOp = false) const        \
    {                                                                                                        \
        return AddXformOp(UsdGeomXformOp::Type##Name, precision, opSuffix, isInverseOp);                     \
    }                                                                                                        \
    UsdGeomXformOp Get##Name##Op(const TfToken& opSuffix = TfToken(), bool isInverseOp = false) const        \
    {                                                                                                        \
        return GetXformOp(UsdGeomXformOp::Type##Name, opSuffix, isInverseOp);                                \
    }
    VESK_USD_XFORM_OP(Translate, PrecisionDouble)
    VESK_USD_XFORM_OP(Scale, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateX, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateY, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateZ, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateXYZ, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateXZY, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateYXZ, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateYZX, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateZXY, PrecisionFloat)
    VESK_USD_XFORM_OP(RotateZYX, PrecisionFloat)
    VESK_USD_XFORM_OP(Orient, PrecisionFloat)
    VESK_USD_XFORM_OP(Transform, PrecisionDouble)
#undef VESK_USD_XFORM_OP

    bool SetResetXformStack(bool resetXform) const;
    bool GetResetXformStack() const;

    bool SetXformOpOrder(const std::vector<UsdGeomXformOp>& orderedXformOps,
                         bool resetXformStack = false) const;
    std::vector<UsdGeomXformOp> GetOrderedXformOps(bool* resetsXformStack) const;
    bool ClearXformOpOrder() const;
    /// Replaces the order by one transform op.
    UsdGeomXformOp MakeMatrixXform() const;

    bool TransformMightBeTimeVarying() const;
    bool TransformMightBeTimeVarying(const std::vector<UsdGeomXformOp>& ops) const;
    bool GetTimeSamples(std::vector<double>* times) const;
    bool GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const;
    static bool GetTimeSamples(const std::vector<UsdGeomXformOp>& orderedXformOps,
                               std::vector<double>* times);
    static bool GetTimeSamplesInInterval(const std::vector<UsdGeomXformOp>& orderedXformOps,
                                         const GfInterval& interval, std::vector<double>* times);

    /// The matrix from the prim's space to its parent's, or to the world's where it resets the stack.
    bool GetLocalTransformation(GfMatrix4d* transform, bool* resetsXformStack,
                                UsdTimeCode time = UsdTimeCode::Default()) const;
    bool GetLocalTransformation(GfMatrix4d* transform, bool* resetsXformStack,
                                const std::vector<UsdGeomXformOp>& ops,
                                UsdTimeCode time = UsdTimeCode::Default()) const;
    static bool GetLocalTransformation(GfMatrix4d* transform, const std::vector<UsdGeomXformOp>& ops,
                                       UsdTimeCode time);

    static bool IsTransformationAffectedByAttrNamed(const TfToken& attrName);

private:
    bool _GetXformOpOrderValue(VtArray<TfToken>* xformOpOrder) const;
    std::vector<UsdGeomXformOp> _GetOrderedXformOps(bool* resetsXformStack, bool withQueries) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
