#pragma once

/// Forward declarations of the asset resolution part.

#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

class ArAsset;
class ArAssetInfo;
class ArResolvedPath;
class ArResolver;
class ArResolverContext;

PXR_NAMESPACE_CLOSE_SCOPE
