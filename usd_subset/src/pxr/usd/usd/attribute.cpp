#include <pxr/usd/usd/attribute.h>

#include "pxr/usd/usd/propertySites.h"
#include "pxr/usd/usd/specEditor.h"
#include "pxr/usd/usd/stageImpl.h"
#include "pxr/usd/usd/valueResolver.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>
#include <set>

PXR_NAMESPACE_OPEN_SCOPE

SdfVariability UsdAttribute::GetVariability() const
{
    SdfVariability variability = SdfVariabilityVarying;
    GetMetadata(SdfFieldKeys->Variability, &variability);
    return variability;
}

bool UsdAttribute::SetVariability(SdfVariability variability) const
{
    return SetMetadata(SdfFieldKeys->Variability, variability);
}

SdfValueTypeName UsdAttribute::GetTypeName() const
{
    const Usd_PrimData& prim = *Usd_ObjectAccess::GetData(*this);
    TfToken name;
    // The schema has the last word on the type of its attributes.
    const auto builtin = prim.GetPrimDefinition().GetPropertyDefinition(_PropName());
    if (!builtin || !builtin.GetMetadata(SdfFieldKeys->TypeName, &name)) {
        Usd_PropertySites sites(prim, _PropName());
        while (sites && !sites.GetLayer().HasField(sites.GetPath(), SdfFieldKeys->TypeName, &name)) {
            ++sites;
        }
    }
    return SdfSchema::GetInstance().FindType(name);
}

bool UsdAttribute::SetTypeName(const SdfValueTypeName& typeName) const
{
    return SetMetadata(SdfFieldKeys->TypeName, typeName.GetAsToken());
}

TfToken UsdAttribute::GetRoleName() const { return GetTypeName().GetRole(); }

bool UsdAttribute::GetTimeSamples(std::vector<double>* times) const
{
    return GetTimeSamplesInInterval(GfInterval::GetFullInterval(), times);
}

bool UsdAttribute::GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const
{
    const Usd_ValueResolver resolver(*this);
    *times = resolver.GetTimeSamples(resolver.Resolve(nullptr), interval);
    return true;
}

bool UsdAttribute::GetUnionedTimeSamples(const std::vector<UsdAttribute>& attrs, std::vector<double>* times)
{
    return GetUnionedTimeSamplesInInterval(attrs, GfInterval::GetFullInterval(), times);
}

bool UsdAttribute::GetUnionedTimeSamplesInInterval(const std::vector<UsdAttribute>& attrs,
                                                   const GfInterval& interval, std::vector<double>* times)
{
    bool succeeded = true;
    std::set<double> all;
    for (const UsdAttribute& attribute : attrs) {
        std::vector<double> own;
        if (!attribute || !attribute.GetTimeSamplesInInterval(interval, &own)) {
            succeeded = false;
            continue;
        }
        all.insert(own.begin(), own.end());
    }
    times->assign(all.begin(), all.end());
    return succeeded;
}

size_t UsdAttribute::GetNumTimeSamples() const
{
    const Usd_ValueResolver resolver(*this);
    return resolver.GetNumTimeSamples(resolver.Resolve(nullptr));
}

bool UsdAttribute::GetBracketingTimeSamples(double desiredTime, double* lower, double* upper,
                                            bool* hasTimeSamples) const
{
    const Usd_ValueResolver resolver(*this);
    const UsdTimeCode time(desiredTime);
    return resolver.GetBracketingTimeSamples(resolver.Resolve(&time), desiredTime, lower, upper,
                                             hasTimeSamples);
}

bool UsdAttribute::HasValue() const { return GetResolveInfo().GetSource() != UsdResolveInfoSourceNone; }

bool UsdAttribute::HasAuthoredValueOpinion() const { return GetResolveInfo().HasAuthoredValueOpinion(); }

bool UsdAttribute::HasAuthoredValue() const { return GetResolveInfo().HasAuthoredValue(); }

bool UsdAttribute::HasFallbackValue() const { return Usd_ValueResolver(*this).GetFallback(nullptr); }

bool UsdAttribute::ValueMightBeTimeVarying() const
{
    const Usd_ValueResolver resolver(*this);
    return resolver.ValueMightBeTimeVarying(resolver.Resolve(nullptr));
}

bool UsdAttribute::Get(VtValue* value, UsdTimeCode time) const
{
    return Usd_ValueResolver(*this).Get(value, time, nullptr);
}

bool UsdAttribute::_Get(VtValue* value, UsdTimeCode time, const std::type_info& type) const
{
    return Usd_ValueResolver(*this).Get(value, time, &type);
}

UsdResolveInfo UsdAttribute::GetResolveInfo(UsdTimeCode time) const
{
    return Usd_ValueResolver(*this).Resolve(&time);
}

UsdResolveInfo UsdAttribute::GetResolveInfo() const { return Usd_ValueResolver(*this).Resolve(nullptr); }

bool UsdAttribute::Set(const char* value, UsdTimeCode time) const
{
    const TfType type = GetTypeName().GetType();
    if (type == TfType::Find<TfToken>()) {
        return Set(VtValue(TfToken(value)), time);
    }
    if (type == TfType::Find<SdfAssetPath>()) {
        return Set(VtValue(SdfAssetPath(value)), time);
    }
    return Set(VtValue(std::string(value)), time);
}

bool UsdAttribute::Set(const VtValue& value, UsdTimeCode time) const
{
    return Usd_SpecEditor(_Impl()).SetValue(*this, value, time);
}

bool UsdAttribute::Clear() const { return ClearDefault() && ClearMetadata(SdfFieldKeys->TimeSamples); }

bool UsdAttribute::ClearAtTime(UsdTimeCode time) const
{
    return Usd_SpecEditor(_Impl()).ClearValue(*this, time);
}

bool UsdAttribute::ClearDefault() const { return ClearAtTime(UsdTimeCode::Default()); }

void UsdAttribute::Block() const
{
    Clear();
    Set(VtValue(SdfValueBlock()), UsdTimeCode::Default());
}

TfToken UsdAttribute::GetColorSpace() const
{
    TfToken colorSpace;
    GetMetadata(SdfFieldKeys->ColorSpace, &colorSpace);
    return colorSpace;
}

void UsdAttribute::SetColorSpace(const TfToken& colorSpace) const
{
    SetMetadata(SdfFieldKeys->ColorSpace, colorSpace);
}

bool UsdAttribute::HasColorSpace() const { return HasMetadata(SdfFieldKeys->ColorSpace); }

bool UsdAttribute::ClearColorSpace() const { return ClearMetadata(SdfFieldKeys->ColorSpace); }

PXR_NAMESPACE_CLOSE_SCOPE
