#pragma once

/// Environment variables.

#include <pxr/export.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

VESK_USD_API std::string TfGetenv(const std::string& name, const std::string& fallback = "");
VESK_USD_API int TfGetenvInt(const std::string& name, int fallback);
/// True for "true", "yes", "on" and "1" in any letter case; the fallback when unset or empty.
VESK_USD_API bool TfGetenvBool(const std::string& name, bool fallback);
VESK_USD_API double TfGetenvDouble(const std::string& name, double fallback);

PXR_NAMESPACE_CLOSE_SCOPE
