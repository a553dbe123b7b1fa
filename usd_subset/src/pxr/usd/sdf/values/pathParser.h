#pragma once

#include <pxr/usd/sdf/path.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Parses the text of a path. Time is linear in the text; targets nest at most 256 deep.
/// \param path receives the path, the empty one on failure; may be null
/// \param error receives what was wrong and where; may be null
bool Sdf_ParsePath(const std::string& text, SdfPath* path, std::string* error);

PXR_NAMESPACE_CLOSE_SCOPE
