#pragma once

/// Work on paths of files.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Removes doubled slashes, "." and, as far as the text allows, "..".
VESK_USD_API std::string TfNormPath(const std::string& path, bool stripDriveSpecifier = false);
/// Returns the normalized path from the root; "" stays "".
VESK_USD_API std::string TfAbsPath(const std::string& path);
/// Returns the path with symbolic links resolved; "" where it does not exist, unless a suffix that does not
/// exist is allowed.
VESK_USD_API std::string TfRealPath(const std::string& path, bool allowInaccessibleSuffix = false,
                                    std::string* error = nullptr);
/// Returns what is behind the last dot of the file name; "" for none and for names that start with their only
/// dot.
VESK_USD_API std::string TfGetExtension(const std::string& path);
VESK_USD_API bool TfIsRelativePath(const std::string& path);

PXR_NAMESPACE_CLOSE_SCOPE
