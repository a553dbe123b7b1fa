#pragma once

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Reads a fallback value as schema tables write it: 1, (1, 2, 3), [(0, 0), (1, 1)], "text", @asset@. Empty
/// where the text is no value of the type.
VtValue Usd_ParseSchemaLiteral(const std::string& typeName, const std::string& text);

PXR_NAMESPACE_CLOSE_SCOPE
