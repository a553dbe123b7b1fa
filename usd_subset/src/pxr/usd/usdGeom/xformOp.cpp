#include <pxr/usd/usdGeom/xformOp.h>

#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/prim.h>

#include <array>

PXR_NAMESPACE_OPEN_SCOPE

TF_DEFINE_PUBLIC_TOKENS(UsdGeomXformOpTypes, USDGEOM_XFORM_OP_TYPES);

namespace {

const std::string kPrefix = "xformOp:";
const std::string kInvertPrefix = "!invert!";

/// The tokens of the types in the order of UsdGeomXformOp::Type.
const std::array<TfToken, UsdGeomXformOp::TypeTransform + 1>& _TypeTokens()
{
    static const auto& names = *UsdGeomXformOpTypes;
    static const std::array<TfToken, UsdGeomXformOp::TypeTransform + 1> tokens = {
        TfToken(),       names.translate, names.scale,     names.rotateX,   names.rotateY,
        names.rotateZ,   names.rotateXYZ, names.rotateXZY, names.rotateYXZ, names.rotateYZX,
        names.rotateZXY, names.rotateZYX, names.orient,    names.transform};
    return tokens;
}

UsdGeomXformOp::Type _FindType(const TfToken& token)
{
    const auto& tokens = _TypeTokens();
    for (size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i] == token) {
            return static_cast<UsdGeomXformOp::Type>(i);
        }
    }
    return UsdGeomXformOp::TypeInvalid;
}

/// The value types of a shape in double, float and half precision.
struct _TypeFamily
{
    SdfValueTypeName types[3];
};

const _TypeFamily& _FamilyOf(UsdGeomXformOp::Type opType)
{
    static const auto& names = *SdfValueTypeNames;
    static const _TypeFamily matrix = {{names.Matrix4d, names.Matrix4d, names.Matrix4d}};
    static const _TypeFamily vector = {{names.Double3, names.Float3, names.Half3}};
    static const _TypeFamily scalar = {{names.Double, names.Float, names.Half}};
    static const _TypeFamily quaternion = {{names.Quatd, names.Quatf, names.Quath}};
    static const _TypeFamily none = {};
    switch (opType) {
    case UsdGeomXformOp::TypeInvalid:
        return none;
    case UsdGeomXformOp::TypeTransform:
        return matrix;
    case UsdGeomXformOp::TypeOrient:
        return quaternion;
    case UsdGeomXformOp::TypeRotateX:
    case UsdGeomXformOp::TypeRotateY:
    case UsdGeomXformOp::TypeRotateZ:
        return scalar;
    default:
        return vector;
    }
}

} // namespace

UsdGeomXformOp::UsdGeomXformOp(const UsdAttribute& attr, bool isInverseOp)
    : _attr(attr), _isInverseOp(isInverseOp)
{
    if (!attr) {
        return;
    }
    if (!IsXformOp(attr.GetName())) {
        TF_CODING_ERROR("<%s> is no transform op; their names begin with 'xformOp:'.",
                        attr.GetPath().GetText());
        return;
    }
    _Init();
}

UsdGeomXformOp::UsdGeomXformOp(const UsdPrim& prim, Type opType, Precision precision, const TfToken& opSuffix,
                               bool inverse)
    : _opType(opType), _isInverseOp(inverse)
{
    const SdfValueTypeName& typeName = GetValueTypeName(opType, precision);
    if (!typeName) {
        TF_CODING_ERROR("There is no transform op of type %d to create on <%s>.", int(opType),
                        prim.GetPath().GetText());
        return;
    }
    _attr = prim.CreateAttribute(GetOpName(opType, opSuffix), typeName, /*custom=*/false);
}

void UsdGeomXformOp::_Init()
{
    const std::string& name = GetName().GetString();
    const size_t start = name.find(':');
    const size_t end = start == std::string::npos ? start : name.find(':', start + 1);
    const TfToken type(start == std::string::npos ? std::string() : name.substr(start + 1, end - start - 1));
    _opType = _FindType(type);
    if (_opType == TypeInvalid) {
        TF_CODING_ERROR("<%s> is no transform op: '%s' is none of their types.", _attr.GetPath().GetText(),
                        type.GetText());
    }
}

bool UsdGeomXformOp::IsXformOp(const UsdAttribute& attr) { return attr && IsXformOp(attr.GetName()); }

bool UsdGeomXformOp::IsXformOp(const TfToken& attrName)
{
    return TfStringStartsWith(attrName.GetString(), kPrefix);
}

const TfToken& UsdGeomXformOp::GetOpTypeToken(Type opType)
{
    const auto& tokens = _TypeTokens();
    return tokens[opType >= 0 && size_t(opType) < tokens.size() ? opType : TypeInvalid];
}

UsdGeomXformOp::Type UsdGeomXformOp::GetOpTypeEnum(const TfToken& opTypeToken)
{
    const Type type = _FindType(opTypeToken);
    if (type == TypeInvalid && !opTypeToken.IsEmpty()) {
        TF_CODING_ERROR("'%s' is no type of transform ops.", opTypeToken.GetText());
    }
    return type;
}

UsdGeomXformOp::Precision UsdGeomXformOp::GetPrecisionFromValueTypeName(const SdfValueTypeName& typeName)
{
    for (const Type opType : {TypeTransform, TypeTranslate, TypeRotateX, TypeOrient}) {
        const _TypeFamily& family = _FamilyOf(opType);
        for (int precision = PrecisionDouble; precision <= PrecisionHalf; ++precision) {
            if (family.types[precision] == typeName) {
                return static_cast<Precision>(precision);
            }
        }
    }
    TF_CODING_ERROR("'%s' is no value type of transform ops.", typeName.GetAsToken().GetText());
    return PrecisionDouble;
}

const SdfValueTypeName& UsdGeomXformOp::GetValueTypeName(Type opType, Precision precision)
{
    if (opType == TypeTransform && precision != PrecisionDouble) {
        TF_CODING_ERROR("Transform ops of type 'transform' are always of double precision.");
    }
    return _FamilyOf(opType).types[precision];
}

TfToken UsdGeomXformOp::GetOpName(Type opType, const TfToken& opSuffix, bool inverse)
{
    std::string name =
        (inverse ? kInvertPrefix : std::string()) + kPrefix + GetOpTypeToken(opType).GetString();
    if (!opSuffix.IsEmpty()) {
        name += ":" + opSuffix.GetString();
    }
    return TfToken(name);
}

UsdGeomXformOp::Precision UsdGeomXformOp::GetPrecision() const
{
    return GetPrecisionFromValueTypeName(GetTypeName());
}

TfToken UsdGeomXformOp::GetOpName() const
{
    return _isInverseOp ? TfToken(kInvertPrefix + GetName().GetString()) : GetName();
}

bool UsdGeomXformOp::HasSuffix(const TfToken& suffix) const
{
    return TfStringEndsWith(GetName().GetString(), suffix.GetString());
}

bool UsdGeomXformOp::MightBeTimeVarying() const
{
    return _query ? _query->ValueMightBeTimeVarying() : _attr.ValueMightBeTimeVarying();
}

bool UsdGeomXformOp::GetTimeSamples(std::vector<double>* times) const
{
    return _query ? _query->GetTimeSamples(times) : _attr.GetTimeSamples(times);
}

bool UsdGeomXformOp::GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const
{
    return _query ? _query->GetTimeSamplesInInterval(interval, times)
                  : _attr.GetTimeSamplesInInterval(interval, times);
}

size_t UsdGeomXformOp::GetNumTimeSamples() const
{
    return _query ? _query->GetNumTimeSamples() : _attr.GetNumTimeSamples();
}

UsdAttribute UsdGeomXformOp::_GetXformOpAttr(const UsdPrim& prim, const TfToken& opName, bool* isInverseOp)
{
    static const std::string invertedPrefix = kInvertPrefix + kPrefix;
    *isInverseOp = TfStringStartsWith(opName.GetString(), invertedPrefix);
    return prim.GetAttribute(*isInverseOp ? TfToken(opName.GetString().substr(kInvertPrefix.size()))
                                          : opName);
}

PXR_NAMESPACE_CLOSE_SCOPE
