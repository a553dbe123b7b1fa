#pragma once

#include <pxr/export.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/path.h>
#include <pxr/usd/usd/common.h>

#include <iosfwd>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Says which prims' payloads a stage loads: rules at paths, each holding for what is below it until another
/// rule.
class VESK_USD_API UsdStageLoadRules
{
public:
    enum Rule
    {
        AllRule,  ///< The prim and all below.
        OnlyRule, ///< The prim, nothing below.
        NoneRule  ///< Neither.
    };

    UsdStageLoadRules() = default;
    static UsdStageLoadRules LoadAll() { return UsdStageLoadRules(); }
    static UsdStageLoadRules LoadNone();

    void LoadWithDescendants(const SdfPath& path);
    void LoadWithoutDescendants(const SdfPath& path);
    void Unload(const SdfPath& path);
    /// Applies the unloads, then the loads.
    void LoadAndUnload(const SdfPathSet& loadSet, const SdfPathSet& unloadSet, UsdLoadPolicy policy);
    /// Sets a rule literally, replacing one at the same path.
    void AddRule(const SdfPath& path, Rule rule);
    void SetRules(const std::vector<std::pair<SdfPath, Rule>>& rules);
    void SetRules(std::vector<std::pair<SdfPath, Rule>>&& rules) { _rules = std::move(rules); }
    /// Removes rules that follow from others.
    void Minimize();

    bool IsLoaded(const SdfPath& path) const;
    bool IsLoadedWithAllDescendants(const SdfPath& path) const;
    bool IsLoadedWithNoDescendants(const SdfPath& path) const;
    Rule GetEffectiveRuleForPath(const SdfPath& path) const;
    const std::vector<std::pair<SdfPath, Rule>>& GetRules() const { return _rules; }

    bool operator==(const UsdStageLoadRules& other) const { return _rules == other._rules; }
    bool operator!=(const UsdStageLoadRules& other) const { return !(*this == other); }
    void swap(UsdStageLoadRules& other) { _rules.swap(other._rules); }

private:
    using _Rules = std::vector<std::pair<SdfPath, Rule>>;
    _Rules::const_iterator _LowerBound(const SdfPath& path) const;
    void _EraseBelow(const SdfPath& path);

    _Rules _rules; // by path
};

inline void swap(UsdStageLoadRules& l, UsdStageLoadRules& r) { l.swap(r); }
VESK_USD_API std::ostream& operator<<(std::ostream& os, const UsdStageLoadRules& rules);

PXR_NAMESPACE_CLOSE_SCOPE
