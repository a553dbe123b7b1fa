#pragma once

#include <pxr/base/gf/interval.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/staticTokens.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/attributeQuery.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

// clang-format off
#define USDGEOM_XFORM_OP_TYPES                                                                              \
    (translate) (scale) (rotateX) (rotateY) (rotateZ) (rotateXYZ) (rotateXZY) (rotateYXZ) (rotateYZX)       \
    (rotateZXY) (rotateZYX) (orient) (transform) ((resetXformStack, "!resetXformStack!"))
// clang-format on
TF_DECLARE_PUBLIC_TOKENS(UsdGeomXformOpTypes, VESK_USD_API, USDGEOM_XFORM_OP_TYPES);

/// One operation of a prim's transform: an attribute "xformOp:<type>[:<suffix>]", or its inverse. Angles are
/// degrees.
class VESK_USD_API UsdGeomXformOp
{
public:
    enum Type
    {
        TypeInvalid,
        TypeTranslate,
        TypeScale,
        TypeRotateX,
        TypeRotateY,
        TypeRotateZ,
        TypeRotateXYZ,
        TypeRotateXZY,
        TypeRotateYXZ,
        TypeRotateYZX,
        TypeRotateZXY,
        TypeRotateZYX,
        TypeOrient,
        TypeTransform
    };
    enum Precision
    {
        PrecisionDouble,
        PrecisionFloat,
        PrecisionHalf
    };

    UsdGeomXformOp() = default;
    explicit UsdGeomXformOp(const UsdAttribute& attr, bool isInverseOp = false);

    static bool IsXformOp(const UsdAttribute& attr);
    static bool IsXformOp(const TfToken& attrName);
    static const TfToken& GetOpTypeToken(Type opType);
    static Type GetOpTypeEnum(const TfToken& opTypeToken);
    static Precision GetPrecisionFromValueTypeName(const SdfValueTypeName& typeName);
    static const SdfValueTypeName& GetValueTypeName(Type opType, Precision precision);
    static TfToken GetOpName(Type opType, const TfToken& opSuffix = TfToken(), bool inverse = false);

    Type GetOpType() const { return _opType; }
    Precision GetPrecision() const;
    bool IsInverseOp() const { return _isInverseOp; }
    /// The attribute's name, with "!invert!" before it for an inverse.
    TfToken GetOpName() const;
    bool HasSuffix(const TfToken& suffix) const;

    /// The matrix of a value; the identity where the value cannot be one of the op's type.
    static GfMatrix4d GetOpTransform(Type opType, const VtValue& opVal, bool isInverseOp = false);
    GfMatrix4d GetOpTransform(UsdTimeCode time) const;
    bool MightBeTimeVarying() const;

    operator const UsdAttribute&() const { return _attr; }
    const UsdAttribute& GetAttr() const { return _attr; }
    bool IsDefined() const { return IsXformOp(_attr); }
    explicit operator bool() const { return IsDefined(); }
    friend bool operator==(const UsdGeomXformOp& lhs, const UsdGeomXformOp& rhs)
    {
        return lhs._attr == rhs._attr;
    }
    friend bool operator!=(const UsdGeomXformOp& lhs, const UsdGeomXformOp& rhs) { return !(lhs == rhs); }

    const TfToken& GetName() const { return _attr.GetName(); }
    TfToken GetBaseName() const { return _attr.GetBaseName(); }
    TfToken GetNamespace() const { return _attr.GetNamespace(); }
    std::vector<std::string> SplitName() const { return _attr.SplitName(); }
    SdfValueTypeName GetTypeName() const { return _attr.GetTypeName(); }

    template <typename T>
    bool Get(T* value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        return _query ? _query->Get(value, time) : _attr.Get(value, time);
    }
    /// Reads the value converted to another type of the same shape, such as GfVec3f as GfVec3d.
    template <typename T>
    bool GetAs(T* value, UsdTimeCode time) const
    {
        VtValue held;
        if (!Get(&held, time)) {
            return false;
        }
        held.Cast<T>();
        if (held.IsEmpty()) {
            TF_CODING_ERROR("The value of <%s>, a %s, cannot be read as the type asked for.",
                            _attr.GetPath().GetText(), GetTypeName().GetAsToken().GetText());
            return false;
        }
        *value = held.UncheckedGet<T>();
        return true;
    }
    template <typename T>
    bool Set(const T& value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        if (_isInverseOp) {
            TF_CODING_ERROR("'%s' is an inverse and takes no value; set the op that it inverts.",
                            GetOpName().GetText());
            return false;
        }
        return _attr.Set(value, time);
    }
    bool GetTimeSamples(std::vector<double>* times) const;
    bool GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const;
    size_t GetNumTimeSamples() const;

private:
    friend class UsdGeomXformable;

    UsdGeomXformOp(const UsdPrim& prim, Type opType, Precision precision, const TfToken& opSuffix,
                   bool inverse);

    /// The op that an entry of xformOpOrder names; its attribute may be invalid.
    static UsdAttribute _GetXformOpAttr(const UsdPrim& prim, const TfToken& opName, bool* isInverseOp);
    void _Init();
    /// Makes repeated reads cheap; the op must not outlive an edit of the prim then.
    void _CreateAttributeQuery() { _query = std::make_shared<UsdAttributeQuery>(_attr); }

    UsdAttribute _attr;
    std::shared_ptr<const UsdAttributeQuery> _query;
    Type _opType = TypeInvalid;
    bool _isInverseOp = false;
};

PXR_NAMESPACE_CLOSE_SCOPE
