#pragma once

/// How the default resolver reads the text of a path.

#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the path without `.`, `..` and doubled slashes where they can be removed.
std::string Ar_NormalizePath(const std::string& path);
/// Returns the normalized path, against the working directory where it is relative.
std::string Ar_AbsolutePath(const std::string& path);
bool Ar_IsRelativePath(const std::string& path);
/// Says whether a relative path begins with `./` or `../`, which keeps it out of search paths.
bool Ar_IsFileRelativePath(const std::string& path);
/// Returns the path as seen from the directory of the anchor file.
std::string Ar_AnchorPath(const std::string& anchor, const std::string& path);
bool Ar_PathExists(const std::string& path);

PXR_NAMESPACE_CLOSE_SCOPE
