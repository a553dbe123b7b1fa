#include <pxr/usd/usdGeom/primvar.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/usd/prim.h>

#include <utility>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

const std::string kPrefix = "primvars:";
const std::string kIndicesSuffix = ":indices";

} // namespace

bool UsdGeomPrimvar::IsPrimvar(const UsdAttribute& attr)
{
    return attr && IsValidPrimvarName(attr.GetName());
}

bool UsdGeomPrimvar::IsValidPrimvarName(const TfToken& name)
{
    return TfStringStartsWith(name.GetString(), kPrefix) &&
           !TfStringEndsWith(name.GetString(), kIndicesSuffix);
}

TfToken UsdGeomPrimvar::StripPrimvarsName(const TfToken& name)
{
    return TfStringStartsWith(name.GetString(), kPrefix) ? TfToken(name.GetString().substr(kPrefix.size()))
                                                         : name;
}

TfToken UsdGeomPrimvar::_MakeNamespaced(const TfToken& name, bool quiet)
{
    const TfToken full =
        TfStringStartsWith(name.GetString(), kPrefix) ? name : TfToken(kPrefix + name.GetString());
    if (IsValidPrimvarName(full)) {
        return full;
    }
    if (!quiet) {
        TF_CODING_ERROR("No primvar can be called '%s': names that end in '%s' are reserved.", name.GetText(),
                        kIndicesSuffix.c_str());
    }
    return TfToken();
}

bool UsdGeomPrimvar::IsValidInterpolation(const TfToken& interpolation)
{
    return interpolation == UsdGeomTokens->constant || interpolation == UsdGeomTokens->uniform ||
           interpolation == UsdGeomTokens->vertex || interpolation == UsdGeomTokens->varying ||
           interpolation == UsdGeomTokens->faceVarying;
}

TfToken UsdGeomPrimvar::GetInterpolation() const
{
    TfToken interpolation;
    return _attr.GetMetadata(UsdGeomTokens->interpolation, &interpolation) ? interpolation
                                                                           : UsdGeomTokens->constant;
}

bool UsdGeomPrimvar::SetInterpolation(const TfToken& interpolation)
{
    if (!IsValidInterpolation(interpolation)) {
        TF_CODING_ERROR("'%s' is no interpolation that <%s> could have.", interpolation.GetText(),
                        _attr.GetPath().GetText());
        return false;
    }
    return _attr.SetMetadata(UsdGeomTokens->interpolation, interpolation);
}

bool UsdGeomPrimvar::HasAuthoredInterpolation() const
{
    return _attr.HasAuthoredMetadata(UsdGeomTokens->interpolation);
}

int UsdGeomPrimvar::GetElementSize() const
{
    int size = 1;
    _attr.GetMetadata(UsdGeomTokens->elementSize, &size);
    return size;
}

bool UsdGeomPrimvar::SetElementSize(int eltSize)
{
    if (eltSize < 1) {
        TF_CODING_ERROR("The element size of <%s> has to be at least 1, not %d.", _attr.GetPath().GetText(),
                        eltSize);
        return false;
    }
    return _attr.SetMetadata(UsdGeomTokens->elementSize, eltSize);
}

bool UsdGeomPrimvar::HasAuthoredElementSize() const
{
    return _attr.HasAuthoredMetadata(UsdGeomTokens->elementSize);
}

void UsdGeomPrimvar::GetDeclarationInfo(TfToken* name, SdfValueTypeName* typeName, TfToken* interpolation,
                                        int* elementSize) const
{
    *name = GetPrimvarName();
    *typeName = GetTypeName();
    *interpolation = GetInterpolation();
    *elementSize = GetElementSize();
}

TfToken UsdGeomPrimvar::GetPrimvarName() const { return StripPrimvarsName(GetName()); }

bool UsdGeomPrimvar::NameContainsNamespaces() const
{
    return GetPrimvarName().GetString().find(':') != std::string::npos;
}

bool UsdGeomPrimvar::GetTimeSamples(std::vector<double>* times) const
{
    return GetTimeSamplesInInterval(GfInterval::GetFullInterval(), times);
}

bool UsdGeomPrimvar::GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const
{
    if (const UsdAttribute indices = GetIndicesAttr()) {
        return UsdAttribute::GetUnionedTimeSamplesInInterval({_attr, indices}, interval, times);
    }
    return _attr.GetTimeSamplesInInterval(interval, times);
}

bool UsdGeomPrimvar::ValueMightBeTimeVarying() const
{
    const UsdAttribute indices = GetIndicesAttr();
    return _attr.ValueMightBeTimeVarying() || (indices && indices.ValueMightBeTimeVarying());
}

UsdAttribute UsdGeomPrimvar::_GetIndicesAttr(bool create) const
{
    const TfToken name(GetName().GetString() + kIndicesSuffix);
    return create ? _attr.GetPrim().CreateAttribute(name, SdfValueTypeNames->IntArray, /*custom=*/false)
                  : _attr.GetPrim().GetAttribute(name);
}

UsdAttribute UsdGeomPrimvar::GetIndicesAttr() const { return _GetIndicesAttr(/*create=*/false); }

UsdAttribute UsdGeomPrimvar::CreateIndicesAttr() const { return _GetIndicesAttr(/*create=*/true); }

bool UsdGeomPrimvar::SetIndices(const VtIntArray& indices, UsdTimeCode time) const
{
    if (!GetTypeName().IsArray()) {
        TF_CODING_ERROR("<%s> can have no indices: it is no array.", _attr.GetPath().GetText());
        return false;
    }
    return CreateIndicesAttr().Set(indices, time);
}

bool UsdGeomPrimvar::GetIndices(VtIntArray* indices, UsdTimeCode time) const
{
    const UsdAttribute attribute = GetIndicesAttr();
    return attribute && attribute.Get(indices, time);
}

void UsdGeomPrimvar::BlockIndices() const
{
    if (!GetTypeName().IsArray()) {
        TF_CODING_ERROR("<%s> can have no indices: it is no array.", _attr.GetPath().GetText());
        return;
    }
    CreateIndicesAttr().Block();
}

bool UsdGeomPrimvar::IsIndexed() const
{
    const UsdAttribute attribute = GetIndicesAttr();
    return attribute && attribute.HasAuthoredValue();
}

bool UsdGeomPrimvar::SetUnauthoredValuesIndex(int unauthoredValuesIndex) const
{
    return _attr.SetMetadata(UsdGeomTokens->unauthoredValuesIndex, unauthoredValuesIndex);
}

int UsdGeomPrimvar::GetUnauthoredValuesIndex() const
{
    int index = -1;
    _attr.GetMetadata(UsdGeomTokens->unauthoredValuesIndex, &index);
    return index;
}

PXR_NAMESPACE_CLOSE_SCOPE
