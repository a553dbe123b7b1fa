#pragma once

/// Paths of assets inside packages: `Scene.usdz[textures/wood.png]`.

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>

#include <string>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Says whether the path names an asset inside a package.
AR_API bool ArIsPackageRelativePath(const std::string& path);
/// Joins packages and packaged paths, outermost first.
AR_API std::string ArJoinPackageRelativePath(const std::vector<std::string>& paths);
AR_API std::string ArJoinPackageRelativePath(const std::pair<std::string, std::string>& paths);
AR_API std::string ArJoinPackageRelativePath(const std::string& packagePath, const std::string& packagedPath);
/// Splits off the outermost package: `a.usdz[b.usdz[c]]` gives `a.usdz` and `b.usdz[c]`.
AR_API std::pair<std::string, std::string> ArSplitPackageRelativePathOuter(const std::string& path);
/// Splits off the innermost packaged path: `a.usdz[b.usdz[c]]` gives `a.usdz[b.usdz]` and `c`.
AR_API std::pair<std::string, std::string> ArSplitPackageRelativePathInner(const std::string& path);

PXR_NAMESPACE_CLOSE_SCOPE
