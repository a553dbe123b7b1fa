#pragma once

#include "pxr/usd/usd/primIndex.h"

#include <pxr/base/gf/interval.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/resolveInfo.h>

#include <typeinfo>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class Usd_ClipSet;

/// Finds where an attribute's value comes from, and the value.
///
/// Thread: any, while nobody edits the stage.
class Usd_ValueResolver
{
public:
    explicit Usd_ValueResolver(const UsdAttribute& attribute);

    /// @param time null: for all numeric times
    /// @param wanted the type that the caller takes, null for any: defaults of other types are passed over
    UsdResolveInfo Resolve(const UsdTimeCode* time, const std::type_info* wanted = nullptr) const;

    /// @param type the type that the caller takes; null when any
    bool Get(VtValue* value, UsdTimeCode time, const std::type_info* type) const;
    bool Get(const UsdResolveInfo& info, VtValue* value, UsdTimeCode time, const std::type_info* type) const;

    std::vector<double> GetTimeSamples(const UsdResolveInfo& info, const GfInterval& interval) const;
    size_t GetNumTimeSamples(const UsdResolveInfo& info) const;
    bool GetBracketingTimeSamples(const UsdResolveInfo& info, double time, double* lower, double* upper,
                                  bool* hasSamples) const;
    bool ValueMightBeTimeVarying(const UsdResolveInfo& info) const;
    bool GetFallback(VtValue* value) const;

private:
    /// Whether a layer settles where the value comes from.
    bool _ResolveAtSite(SdfLayer& layer, const SdfPath& path, const UsdTimeCode* time,
                        const std::type_info* wanted, UsdResolveInfo* info) const;
    UsdResolveInfo _ResolveWithClips(const UsdTimeCode* time, const std::type_info* wanted) const;
    void _ResolveFallback(UsdResolveInfo* info) const;
    /// The set of clips that was found when the info was made; null when there is none any more.
    const Usd_ClipSet* _FindClips(const UsdResolveInfo& info) const;
    bool _GetSample(const UsdResolveInfo& info, VtValue* value, double time,
                    const std::type_info* type) const;
    bool _GetFromClips(const UsdResolveInfo& info, VtValue* value, double time,
                       const std::type_info* type) const;

    void _Localize(const UsdResolveInfo& info, VtValue* value) const;

    const UsdAttribute& _attribute;
    Usd_PrimDataConstPtr _prim;
    const TfToken& _name;
    mutable const Usd_ClipSet* _clips = nullptr; // that Resolve() found
};

PXR_NAMESPACE_CLOSE_SCOPE
