#include "pxr/usd/usdShade/connections.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/stringUtils.h>
#include <pxr/usd/usdShade/connectableAPI.h>
#include <pxr/usd/usdShade/tokens.h>

#include <set>

PXR_NAMESPACE_OPEN_SCOPE

std::pair<TfToken, UsdShadeAttributeType> UsdShade_SplitName(const TfToken& fullName)
{
    const std::string& name = fullName.GetString();
    for (const auto type : {UsdShadeAttributeType::Input, UsdShadeAttributeType::Output}) {
        const std::string prefix = UsdShade_FullName(TfToken(), type).GetString();
        if (TfStringStartsWith(name, prefix)) {
            return {TfToken(name.substr(prefix.size())), type};
        }
    }
    return {fullName, UsdShadeAttributeType::Invalid};
}

TfToken UsdShade_FullName(const TfToken& baseName, UsdShadeAttributeType type)
{
    switch (type) {
    case UsdShadeAttributeType::Input:
        return TfToken(UsdShadeTokens->inputs.GetString() + baseName.GetString());
    case UsdShadeAttributeType::Output:
        return TfToken(UsdShadeTokens->outputs.GetString() + baseName.GetString());
    case UsdShadeAttributeType::Invalid:
        break;
    }
    return baseName;
}

namespace {

/// Follows connections through containers to the attributes that give the values.
class _Follower
{
public:
    explicit _Follower(bool shaderOutputsOnly) : _shaderOutputsOnly(shaderOutputsOnly) {}

    /// True where something was found from here on.
    bool Follow(const UsdAttribute& attribute)
    {
        if (!attribute) {
            return false;
        }
        // Ways that part and meet again multiply.
        if (++_steps > kMaxSteps) {
            if (_steps == kMaxSteps + 1) {
                TF_WARN("The connections of <%s> are followed in more than %zu ways; the rest is left out.",
                        attribute.GetPath().GetText(), kMaxSteps);
            }
            return false;
        }
        const SdfPath path = attribute.GetPath();
        const bool isNew = _open.insert(path).second;
        if (!isNew || _open.size() > kMaxDepth) {
            if (isNew) {
                _open.erase(path);
            }
            TF_WARN("The connections of <%s> lead back to it, or on through more than %zu others.",
                    path.GetText(), kMaxDepth);
            return false;
        }
        bool isFound = false;
        for (const UsdShadeConnectionSourceInfo& info :
             UsdShadeConnectableAPI::GetConnectedSources(attribute)) {
            isFound = _FollowSource(info) || isFound;
        }
        _open.erase(path);
        if (!isFound && !_shaderOutputsOnly && attribute.HasAuthoredValue()) {
            _found.push_back(attribute);
            isFound = true;
        }
        return isFound;
    }

    UsdShadeAttributeVector Take() { return std::move(_found); }

private:
    static constexpr size_t kMaxDepth = 1000;
    static constexpr size_t kMaxSteps = 10000;

    bool _FollowSource(const UsdShadeConnectionSourceInfo& info)
    {
        const UsdAttribute source =
            info.source.GetPrim().GetAttribute(UsdShade_FullName(info.sourceName, info.sourceType));
        if (info.source.IsContainer()) {
            return Follow(source);
        }
        if (info.sourceType != UsdShadeAttributeType::Output) {
            return false;
        }
        _found.push_back(source);
        return true;
    }

    bool _shaderOutputsOnly;
    std::set<SdfPath> _open;
    size_t _steps = 0;
    UsdShadeAttributeVector _found;
};

} // namespace

UsdShadeAttributeVector UsdShade_GetValueProducingAttributes(const UsdAttribute& start,
                                                             bool shaderOutputsOnly)
{
    _Follower follower(shaderOutputsOnly);
    follower.Follow(start);
    return follower.Take();
}

PXR_NAMESPACE_CLOSE_SCOPE
