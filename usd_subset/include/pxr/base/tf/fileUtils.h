#pragma once

/// Questions about files.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns whether anything is at the path; symbolic links count themselves unless they are to be resolved.
VESK_USD_API bool TfPathExists(const std::string& path, bool resolveSymlinks = false);
VESK_USD_API bool TfIsDir(const std::string& path, bool resolveSymlinks = false);
VESK_USD_API bool TfIsFile(const std::string& path, bool resolveSymlinks = false);
VESK_USD_API bool TfIsWritable(const std::string& path);
/// Removes a file; posts a runtime error and returns false when that fails.
VESK_USD_API bool TfDeleteFile(const std::string& path);
/// Makes a folder and those above it. Returns false on failure, and when it exists unless that is allowed.
VESK_USD_API bool TfMakeDirs(const std::string& path, int mode = -1, bool existOk = false);

PXR_NAMESPACE_CLOSE_SCOPE
