#pragma once

/// The characters of a layer's text.

#include <pxr/pxr.h>

#include <cstddef>
#include <string>
#include <string_view>

PXR_NAMESPACE_OPEN_SCOPE

inline bool Sdf_IsDigit(char c) { return c >= '0' && c <= '9'; }
inline bool Sdf_IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }

/// Says whether the text starts with one of U+0000 to U+001F or U+007F to U+009F.
bool Sdf_IsControl(std::string_view text);
/// Says whether any of the text's characters is one of those.
bool Sdf_HasControl(std::string_view text);
/// Returns the length of the UTF-8 sequence at the start of the text, 0 for none.
size_t Sdf_Utf8Length(std::string_view text);
/// Appends what the escape at `pos` (behind the backslash) stands for and returns the position behind it.
size_t Sdf_Unescape(std::string_view text, size_t pos, std::string* out);

PXR_NAMESPACE_CLOSE_SCOPE
