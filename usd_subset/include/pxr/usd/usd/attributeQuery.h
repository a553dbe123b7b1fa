#pragma once

#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/resolveInfo.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Reads one attribute many times: where the value comes from is looked up once. It must be made again after
/// the stage was edited.
class VESK_USD_API UsdAttributeQuery
{
public:
    UsdAttributeQuery() = default;
    explicit UsdAttributeQuery(const UsdAttribute& attr);
    UsdAttributeQuery(const UsdPrim& prim, const TfToken& attrName);
    static std::vector<UsdAttributeQuery> CreateQueries(const UsdPrim& prim, const TfTokenVector& attrNames);

    const UsdAttribute& GetAttribute() const { return _attr; }
    bool IsValid() const { return _attr.IsValid(); }
    explicit operator bool() const { return IsValid(); }

    template <typename T>
    bool Get(T* value, UsdTimeCode time = UsdTimeCode::Default()) const
    {
        VtValue found;
        if (!_Get(&found, time, &typeid(T)) || !found.IsHolding<T>()) {
            return false;
        }
        *value = found.UncheckedGet<T>();
        return true;
    }
    bool Get(VtValue* value, UsdTimeCode time = UsdTimeCode::Default()) const;

    bool GetTimeSamples(std::vector<double>* times) const;
    bool GetTimeSamplesInInterval(const GfInterval& interval, std::vector<double>* times) const;
    static bool GetUnionedTimeSamples(const std::vector<UsdAttributeQuery>& attrQueries,
                                      std::vector<double>* times);
    static bool GetUnionedTimeSamplesInInterval(const std::vector<UsdAttributeQuery>& attrQueries,
                                                const GfInterval& interval, std::vector<double>* times);
    size_t GetNumTimeSamples() const;
    bool GetBracketingTimeSamples(double desiredTime, double* lower, double* upper,
                                  bool* hasTimeSamples) const;

    bool HasValue() const;
    bool HasAuthoredValueOpinion() const;
    bool HasAuthoredValue() const;
    bool HasFallbackValue() const;
    bool ValueMightBeTimeVarying() const;

private:
    bool _Get(VtValue* value, UsdTimeCode time, const std::type_info* type) const;

    UsdAttribute _attr;
    UsdResolveInfo _resolveInfo;
};

PXR_NAMESPACE_CLOSE_SCOPE
