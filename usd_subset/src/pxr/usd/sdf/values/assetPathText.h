#pragma once

#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Whether a text can be an asset path: UTF-8 without control characters; otherwise says why not.
bool Sdf_IsAssetPathText(const std::string& path, std::string* whyNot);

PXR_NAMESPACE_CLOSE_SCOPE
