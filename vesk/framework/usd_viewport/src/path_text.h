#pragma once

#include <pxr/usd/sdf/path.h>

#include <string>

namespace vesk::framework::usd_viewport {

/// Returns the path that a text spells, the empty path for text that spells none. Unlike the path's own
/// constructor it says nothing about bad text: the caller knows better what to say.
inline PXR_NS::SdfPath pathFromText(const std::string& text)
{
    if (text.empty() || !PXR_NS::SdfPath::IsValidPathString(text)) return PXR_NS::SdfPath();
    return PXR_NS::SdfPath(text);
}

} // namespace vesk::framework::usd_viewport
