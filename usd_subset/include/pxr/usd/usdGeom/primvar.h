#pragma once

#include <pxr/base/tf/hash.h>
#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class SdfPath;

/// An attribute "primvars:<name>" that varies over a surface, possibly given by indices into its values.
class VESK_USD_API UsdGeomPrimvar
{
public:
    UsdGeomPrimvar() = default;
    explicit UsdGeomPrimvar(const UsdAttribute& attr) : _attr(attr) {}

    static bool IsPrimvar(const UsdAttribute& attr);
    static bool IsValidPrimvarName(const TfToken& name);
    static TfToken StripPrimvarsName(const TfToken& name);
    static bool IsValidInterpolation(const TfToken& interpolation);

    /// constant where nothing is authored.
    TfToken GetInterpolation() const;
    bool SetInterpolation(const TfToken& interpolation);
    bool HasAuthoredInterpolation() const;
    /// How many values make one element; 1 where nothing is authored.
    int GetElementSize() const;
    bool SetElementSize(int eltSize);
    bool HasAuthoredElementSize() const;
    void GetDeclarationInfo(TfToken* name, SdfValueTypeName* typeName, TfToken* interpolation,
                            int* elementSize) const;

    operator const UsdAttribute&() const { return _attr; }
    const UsdAttribute& GetAttr() const { return _attr; }
    bool IsDefined() const { return IsPrimvar(_attr); }
    bool HasValue() const { return _attr.HasValue(); }
    bool HasAuthoredValue() const { return _attr.HasAuthoredValue(); }
    explicit operator bool() const { return IsDefined(); }

    const TfToken& GetName() const { return _attr.GetName(); }
    /// The name without "primvars:".
    TfToken GetPrimvarName() const;
    bool NameContainsNamespaces() const;
    TfToken GetBaseName() const { return _attr.GetBaseName(); }
    TfToken GetNamespace() const { return _attr.GetNamespace(); }
    std::vector<std::string> SplitName() const { return _attr.SplitName(); }
    SdfValueTypeName GetTypeName() const { return _attr.GetTypeName(); }

    template <typename T>
    bool Get(T* value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        return _attr.Get(value, time);
    }
    template <typename T>
    bool Set(const T& value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        return _attr.Set(value, time);
    }
    bool GetTimeSamples(std::vector<double>* times) const;
    bool GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const;
    bool ValueMightBeTimeVarying() const;

    bool SetIndices(const VtIntArray& indices, UsdTimeCode time = UsdTimeCode::Default()) const;
    bool GetIndices(VtIntArray* indices, UsdTimeCode time = UsdTimeCode::Default()) const;
    void BlockIndices() const;
    bool IsIndexed() const;
    UsdAttribute GetIndicesAttr() const;
    UsdAttribute CreateIndicesAttr() const;
    /// The index that stands for "no value"; -1 where nothing is authored.
    bool SetUnauthoredValuesIndex(int unauthoredValuesIndex) const;
    int GetUnauthoredValuesIndex() const;

    /// The values with the indices applied; false, with a warning, where an index names no value.
    template <typename ScalarType>
    bool ComputeFlattened(VtArray<ScalarType>* value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        VtValue flattened;
        if (!ComputeFlattened(&flattened, time) || !flattened.IsHolding<VtArray<ScalarType>>()) {
            return false;
        }
        flattened.UncheckedSwap(*value);
        return true;
    }
    bool ComputeFlattened(VtValue* value, UsdTimeCode time = UsdTimeCode::Default()) const;
    static bool ComputeFlattened(VtValue* value, const VtValue& attrVal, const VtIntArray& indices,
                                 std::string* errString);
    static bool ComputeFlattened(VtValue* value, const VtValue& attrVal, const VtIntArray& indices,
                                 int elementSize, std::string* errString);

    friend bool operator==(const UsdGeomPrimvar& lhs, const UsdGeomPrimvar& rhs)
    {
        return lhs._attr == rhs._attr;
    }
    friend bool operator!=(const UsdGeomPrimvar& lhs, const UsdGeomPrimvar& rhs) { return !(lhs == rhs); }
    friend bool operator<(const UsdGeomPrimvar& lhs, const UsdGeomPrimvar& rhs)
    {
        return lhs._attr.GetPath() < rhs._attr.GetPath();
    }

private:
    friend class UsdGeomPrimvarsAPI;

    /// The name with "primvars:" before it; empty, with an error unless `quiet`, for a reserved name.
    static TfToken _MakeNamespaced(const TfToken& name, bool quiet = false);
    UsdAttribute _GetIndicesAttr(bool create) const;

    UsdAttribute _attr;
};

PXR_NAMESPACE_CLOSE_SCOPE
