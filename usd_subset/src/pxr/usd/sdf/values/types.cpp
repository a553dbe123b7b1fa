#include <pxr/usd/sdf/types.h>

#include "pxr/usd/sdf/values/valueTypeRegistry.h"

#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/path.h>

#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<SdfSpecType>();
    TfType::Define<SdfSpecifier>();
    TfType::Define<SdfPermission>();
    TfType::Define<SdfVariability>();
    TfType::Define<SdfAuthoringError>();
    TfType::Define<SdfLengthUnit>();
    TfType::Define<SdfAngularUnit>();
    TfType::Define<SdfDimensionlessUnit>();
    TfType::Define<SdfTimeSampleMap>().Alias(TfType::GetRoot(), "map<double, VtValue>");
    TfType::Define<SdfVariantSelectionMap>();
    TfType::Define<SdfRelocates>().Alias(TfType::GetRoot(), "vector<pair<SdfPath, SdfPath>>");
    TfType::Define<SdfRelocatesMap>().Alias(TfType::GetRoot(), "map<SdfPath, SdfPath>");
    TfType::Define<SdfUnregisteredValue>();
    TfType::Define<SdfValueBlock>();
}

TF_REGISTRY_FUNCTION(TfEnum)
{
    TF_ADD_ENUM_NAME(SdfSpecTypeUnknown);
    TF_ADD_ENUM_NAME(SdfSpecTypeAttribute);
    TF_ADD_ENUM_NAME(SdfSpecTypeConnection);
    TF_ADD_ENUM_NAME(SdfSpecTypeExpression);
    TF_ADD_ENUM_NAME(SdfSpecTypeMapper);
    TF_ADD_ENUM_NAME(SdfSpecTypeMapperArg);
    TF_ADD_ENUM_NAME(SdfSpecTypePrim);
    TF_ADD_ENUM_NAME(SdfSpecTypePseudoRoot);
    TF_ADD_ENUM_NAME(SdfSpecTypeRelationship);
    TF_ADD_ENUM_NAME(SdfSpecTypeRelationshipTarget);
    TF_ADD_ENUM_NAME(SdfSpecTypeVariant);
    TF_ADD_ENUM_NAME(SdfSpecTypeVariantSet);

    TF_ADD_ENUM_NAME(SdfSpecifierDef, "Def");
    TF_ADD_ENUM_NAME(SdfSpecifierOver, "Over");
    TF_ADD_ENUM_NAME(SdfSpecifierClass, "Class");

    TF_ADD_ENUM_NAME(SdfPermissionPublic, "Public");
    TF_ADD_ENUM_NAME(SdfPermissionPrivate, "Private");

    TF_ADD_ENUM_NAME(SdfVariabilityVarying, "Varying");
    TF_ADD_ENUM_NAME(SdfVariabilityUniform, "Uniform");

    TF_ADD_ENUM_NAME(SdfAuthoringErrorUnrecognizedFields);
    TF_ADD_ENUM_NAME(SdfAuthoringErrorUnrecognizedSpecType);

    TF_ADD_ENUM_NAME(SdfLengthUnitMillimeter, "mm");
    TF_ADD_ENUM_NAME(SdfLengthUnitCentimeter, "cm");
    TF_ADD_ENUM_NAME(SdfLengthUnitDecimeter, "dm");
    TF_ADD_ENUM_NAME(SdfLengthUnitMeter, "m");
    TF_ADD_ENUM_NAME(SdfLengthUnitKilometer, "km");
    TF_ADD_ENUM_NAME(SdfLengthUnitInch, "in");
    TF_ADD_ENUM_NAME(SdfLengthUnitFoot, "ft");
    TF_ADD_ENUM_NAME(SdfLengthUnitYard, "yd");
    TF_ADD_ENUM_NAME(SdfLengthUnitMile, "mi");
    TF_ADD_ENUM_NAME(SdfAngularUnitDegrees, "deg");
    TF_ADD_ENUM_NAME(SdfAngularUnitRadians, "rad");
    TF_ADD_ENUM_NAME(SdfDimensionlessUnitPercent, "%");
    TF_ADD_ENUM_NAME(SdfDimensionlessUnitDefault, "default");
}

namespace {

/// Lets values of an enumeration become TfEnum, and int in both directions.
template <class Enum>
void RegisterEnumCasts()
{
    VtValue::RegisterCast<Enum, TfEnum>(
        [](VtValue const& value) { return VtValue(TfEnum(value.UncheckedGet<Enum>())); });
    VtValue::RegisterSimpleBidirectionalCast<int, Enum>();
}

} // namespace

TF_REGISTRY_FUNCTION(VtValue)
{
    RegisterEnumCasts<SdfPermission>();
    RegisterEnumCasts<SdfSpecifier>();
    RegisterEnumCasts<SdfVariability>();
    RegisterEnumCasts<SdfLengthUnit>();
    RegisterEnumCasts<SdfAngularUnit>();
    RegisterEnumCasts<SdfDimensionlessUnit>();
}

bool SdfValueHasValidType(VtValue const& value)
{
    return static_cast<bool>(Sdf_ValueTypeRegistry::GetInstance().Find(value.GetType(), TfToken()));
}

TfType SdfGetTypeForValueTypeName(TfToken const& name)
{
    return Sdf_ValueTypeRegistry::GetInstance().Find(name).GetType();
}

SdfValueTypeName SdfGetValueTypeNameForValue(VtValue const& value)
{
    return Sdf_ValueTypeRegistry::GetInstance().Find(value.GetType(), TfToken());
}

TfToken SdfGetRoleNameForValueTypeName(TfToken const& typeName)
{
    return Sdf_ValueTypeRegistry::GetInstance().Find(typeName).GetRole();
}

namespace {

template <class Pairs>
std::ostream& StreamLines(std::ostream& out, const Pairs& pairs)
{
    for (const auto& [first, second] : pairs) {
        out << first << ": " << second << "\n";
    }
    return out;
}

} // namespace

std::ostream& operator<<(std::ostream& out, const SdfSpecifier& specifier)
{
    return out << TfEnum::GetDisplayName(specifier) << "\n";
}

std::ostream& operator<<(std::ostream& out, const SdfRelocatesMap& relocates)
{
    return StreamLines(out, relocates);
}
std::ostream& operator<<(std::ostream& out, const SdfRelocates& relocates)
{
    return StreamLines(out, relocates);
}
std::ostream& operator<<(std::ostream& out, const SdfTimeSampleMap& samples)
{
    return StreamLines(out, samples);
}

std::ostream& VtStreamOut(const SdfVariantSelectionMap& selections, std::ostream& out)
{
    out << "{";
    const char* separator = " ";
    for (const auto& [set, variant] : selections) {
        out << separator << set << ": " << variant;
        separator = ", ";
    }
    return out << " }";
}

SdfUnregisteredValue::SdfUnregisteredValue(const std::string& text) : _value(text) {}
SdfUnregisteredValue::SdfUnregisteredValue(const VtDictionary& dictionary) : _value(dictionary) {}
SdfUnregisteredValue::SdfUnregisteredValue(const SdfUnregisteredValueListOp& listOp) : _value(listOp) {}

std::ostream& operator<<(std::ostream& out, const SdfUnregisteredValue& value)
{
    return out << value.GetValue();
}
std::ostream& operator<<(std::ostream& out, SdfValueBlock const&) { return out << "None"; }

std::ostream& operator<<(std::ostream& out, const SdfHumanReadableValue& value)
{
    return out << "<< " << value.GetText() << " >>";
}

PXR_NAMESPACE_CLOSE_SCOPE
