#pragma once

/// Files inside packages as assets.

#include "pxr/usd/ar/zipDirectory.h"

#include <pxr/pxr.h>
#include <pxr/usd/ar/api.h>
#include <pxr/usd/ar/asset.h>

#include <memory>
#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// An open package: its bytes and what it holds. Thread: any.
struct Ar_Package
{
    std::shared_ptr<ArAsset> asset;
    std::shared_ptr<const std::vector<Ar_ZipEntry>> entries;
};

/// Opens a package, which may lie in a package itself. Where it cannot, the asset is null, and `whyNot` says
/// why. The lists of packages that were opened last are kept for as long as their files do not change.
AR_API Ar_Package Ar_OpenPackage(const std::string& packagePath, std::string* whyNot);
/// Says whether a path names a file that can be opened as a package.
AR_API bool Ar_IsPackagePath(const std::string& path);
/// Opens a file, which may lie in a package; null, with the reason, where there is none or it cannot be read.
AR_API std::shared_ptr<ArAsset> Ar_OpenAsset(const std::string& resolvedPath, std::string* whyNot);

PXR_NAMESPACE_CLOSE_SCOPE
