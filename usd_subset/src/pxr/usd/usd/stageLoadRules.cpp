#include <pxr/usd/usd/stageLoadRules.h>

#include <algorithm>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

using RuleAt = std::pair<SdfPath, UsdStageLoadRules::Rule>;

// The rule at the path or the nearest above it; null when none holds there.
const RuleAt* nearestRule(const std::vector<RuleAt>& rules, const SdfPath& path)
{
    const RuleAt* nearest = nullptr;
    for (const RuleAt& rule : rules) {
        if (path.HasPrefix(rule.first)) {
            nearest = &rule; // longer prefixes come later
        }
    }
    return nearest;
}

} // namespace

UsdStageLoadRules UsdStageLoadRules::LoadNone()
{
    UsdStageLoadRules rules;
    rules.AddRule(SdfPath::AbsoluteRootPath(), NoneRule);
    return rules;
}

UsdStageLoadRules::_Rules::const_iterator UsdStageLoadRules::_LowerBound(const SdfPath& path) const
{
    return std::lower_bound(_rules.begin(), _rules.end(), path,
                            [](const RuleAt& rule, const SdfPath& p) { return rule.first < p; });
}

void UsdStageLoadRules::_EraseBelow(const SdfPath& path)
{
    _rules.erase(std::remove_if(_rules.begin(), _rules.end(),
                                [&path](const RuleAt& rule) { return rule.first.HasPrefix(path); }),
                 _rules.end());
}

void UsdStageLoadRules::LoadWithDescendants(const SdfPath& path)
{
    _EraseBelow(path);
    AddRule(path, AllRule);
}

void UsdStageLoadRules::LoadWithoutDescendants(const SdfPath& path)
{
    _EraseBelow(path);
    AddRule(path, OnlyRule);
}

void UsdStageLoadRules::Unload(const SdfPath& path)
{
    _EraseBelow(path);
    AddRule(path, NoneRule);
}

void UsdStageLoadRules::LoadAndUnload(const SdfPathSet& loadSet, const SdfPathSet& unloadSet,
                                      UsdLoadPolicy policy)
{
    for (const SdfPath& path : unloadSet) {
        Unload(path);
    }
    for (const SdfPath& path : loadSet) {
        if (policy == UsdLoadWithDescendants) {
            LoadWithDescendants(path);
        } else {
            LoadWithoutDescendants(path);
        }
    }
}

void UsdStageLoadRules::AddRule(const SdfPath& path, Rule rule)
{
    const auto place = _rules.begin() + (_LowerBound(path) - _rules.cbegin());
    if (place != _rules.end() && place->first == path) {
        place->second = rule;
    } else {
        _rules.emplace(place, path, rule);
    }
}

void UsdStageLoadRules::SetRules(const std::vector<std::pair<SdfPath, Rule>>& rules)
{
    _rules = rules;
    std::sort(_rules.begin(), _rules.end());
}

void UsdStageLoadRules::Minimize()
{
    _Rules kept;
    for (const RuleAt& rule : _rules) {
        const RuleAt* const above = nearestRule(kept, rule.first);
        if (rule.second != (above ? above->second : AllRule)) {
            kept.push_back(rule);
        }
    }
    _rules = std::move(kept);
}

bool UsdStageLoadRules::IsLoaded(const SdfPath& path) const
{
    return GetEffectiveRuleForPath(path) != NoneRule;
}

bool UsdStageLoadRules::IsLoadedWithAllDescendants(const SdfPath& path) const
{
    const RuleAt* const above = nearestRule(_rules, path);
    return (!above || above->second == AllRule) &&
           std::all_of(_rules.begin(), _rules.end(), [&path](const RuleAt& rule) {
               return !rule.first.HasPrefix(path) || rule.second == AllRule;
           });
}

bool UsdStageLoadRules::IsLoadedWithNoDescendants(const SdfPath& path) const
{
    const auto own = _LowerBound(path);
    if (own == _rules.end() || own->first != path || own->second != OnlyRule) {
        return false;
    }
    return std::all_of(std::next(own), _rules.end(), [&path](const RuleAt& rule) {
        return !rule.first.HasPrefix(path) || rule.second == NoneRule;
    });
}

UsdStageLoadRules::Rule UsdStageLoadRules::GetEffectiveRuleForPath(const SdfPath& path) const
{
    const RuleAt* const nearest = nearestRule(_rules, path);
    if (!nearest || nearest->second == AllRule) {
        return AllRule;
    }
    if (nearest->first == path && nearest->second == OnlyRule) {
        return OnlyRule;
    }
    // What is loaded below a path keeps the path itself loaded.
    const bool loadsBelow = std::any_of(_rules.begin(), _rules.end(), [&path](const RuleAt& rule) {
        return rule.second != NoneRule && rule.first != path && rule.first.HasPrefix(path);
    });
    return loadsBelow ? OnlyRule : NoneRule;
}

std::ostream& operator<<(std::ostream& os, const UsdStageLoadRules& rules)
{
    static const char* const names[] = {"AllRule", "OnlyRule", "NoneRule"};
    os << "UsdStageLoadRules([";
    const char* separator = "";
    for (const RuleAt& rule : rules.GetRules()) {
        os << separator << "(<" << rule.first.GetString() << ">, " << names[rule.second] << ")";
        separator = ", ";
    }
    return os << "])";
}

PXR_NAMESPACE_CLOSE_SCOPE
