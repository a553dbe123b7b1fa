#pragma once

#include <pxr/base/gf/interval.h>
#include <pxr/base/vt/value.h>
#include <pxr/usd/sdf/types.h>
#include <pxr/usd/sdf/valueTypeName.h>
#include <pxr/usd/usd/property.h>
#include <pxr/usd/usd/resolveInfo.h>

#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

typedef std::vector<UsdAttribute> UsdAttributeVector;

/// A property with a value that may vary over time. Times are in time codes of the stage.
///
/// Thread: any, while nobody edits the stage.
class VESK_USD_API UsdAttribute : public UsdProperty
{
public:
    UsdAttribute() : UsdProperty(UsdTypeAttribute) {}

    SdfVariability GetVariability() const;
    bool SetVariability(SdfVariability variability) const;
    SdfValueTypeName GetTypeName() const;
    bool SetTypeName(const SdfValueTypeName& typeName) const;
    TfToken GetRoleName() const;

    bool GetTimeSamples(std::vector<double>* times) const;
    bool GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const;
    static bool GetUnionedTimeSamples(const std::vector<UsdAttribute>& attrs, std::vector<double>* times);
    static bool GetUnionedTimeSamplesInInterval(const std::vector<UsdAttribute>& attrs,
                                                const GfInterval& interval, std::vector<double>* times);
    size_t GetNumTimeSamples() const;
    /// The samples around a time; both are the nearest one outside of the samples' range.
    bool GetBracketingTimeSamples(double desiredTime, double* lower, double* upper,
                                  bool* hasTimeSamples) const;

    bool HasValue() const;
    bool HasAuthoredValueOpinion() const;
    bool HasAuthoredValue() const;
    bool HasFallbackValue() const;
    /// False only when the value is surely the same at all times: at most one sample.
    bool ValueMightBeTimeVarying() const;

    /// Resolves the value; false and value untouched when there is none, it is blocked or of another type.
    template <typename T>
    bool Get(T* value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        static_assert(!std::is_const<T>::value, "the value must be writable");
        VtValue found;
        if (!_Get(&found, time, typeid(T)) || !found.IsHolding<T>()) {
            return false;
        }
        *value = found.UncheckedGet<T>();
        return true;
    }
    bool Get(VtValue* value, UsdTimeCode time = UsdTimeCode::Default()) const;

    UsdResolveInfo GetResolveInfo(UsdTimeCode time) const;
    UsdResolveInfo GetResolveInfo() const;

    /// Authors a value or block at the stage's edit target; a value of another type is an error.
    template <typename T>
    bool Set(const T& value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        static_assert(!std::is_pointer<T>::value, "a pointer is no attribute value");
        return Set(VtValue(value), time);
    }
    /// Authors a token, string or asset path.
    bool Set(const char* value, UsdTimeCode time = UsdTimeCode::Default()) const;
    bool Set(const VtValue& value, UsdTimeCode time = UsdTimeCode::Default()) const;

    /// Removes the default value and all samples at the edit target.
    bool Clear() const;
    bool ClearAtTime(UsdTimeCode time) const;
    bool ClearDefault() const;
    /// Removes the samples at the edit target and authors a block, which hides all weaker values.
    void Block() const;

    bool AddConnection(const SdfPath& source,
                       UsdListPosition position = UsdListPositionBackOfPrependList) const;
    bool RemoveConnection(const SdfPath& source) const;
    bool SetConnections(const SdfPathVector& sources) const;
    bool ClearConnections() const;
    bool GetConnections(SdfPathVector* sources) const;
    bool HasAuthoredConnections() const;

    TfToken GetColorSpace() const;
    void SetColorSpace(const TfToken& colorSpace) const;
    bool HasColorSpace() const;
    bool ClearColorSpace() const;

private:
    friend class UsdAttributeQuery;
    friend class UsdObject;
    friend class UsdPrim;
    friend class Usd_ObjectAccess;

    UsdAttribute(UsdObjType objType, const Usd_PrimDataHandle& prim, const SdfPath& proxyPrimPath,
                 const TfToken& propName)
        : UsdProperty(objType, prim, proxyPrimPath, propName)
    {}

    bool _Get(VtValue* value, UsdTimeCode time, const std::type_info& type) const;
};

PXR_NAMESPACE_CLOSE_SCOPE
