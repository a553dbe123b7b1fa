#pragma once

/// The file formats of the process.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns all formats; they are made once and live for ever.
const std::vector<SdfFileFormatRefPtr>& Sdf_AllFileFormats();
/// Returns the format of a file's first bytes, or null.
SdfFileFormatConstPtr Sdf_FindFormatByContent(const std::string& firstBytes);
/// Posts the one error of a file that cannot be read; returns false.
bool Sdf_PostReadError(const std::string& path, const std::string& reason);

PXR_NAMESPACE_CLOSE_SCOPE
