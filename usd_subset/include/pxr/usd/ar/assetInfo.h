#pragma once

/// What a resolver knows about an asset besides its place.

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Extra facts about one asset; the default resolver fills none of them.
class ArAssetInfo
{
public:
    std::string version;
    std::string assetName;
    std::string repoPath;
    VtValue resolverInfo;
};

inline bool operator==(const ArAssetInfo& a, const ArAssetInfo& b)
{
    return a.version == b.version && a.assetName == b.assetName && a.repoPath == b.repoPath &&
           a.resolverInfo == b.resolverInfo;
}
inline bool operator!=(const ArAssetInfo& a, const ArAssetInfo& b) { return !(a == b); }

PXR_NAMESPACE_CLOSE_SCOPE
