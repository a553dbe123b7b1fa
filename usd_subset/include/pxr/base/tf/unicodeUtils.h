#pragma once

/// Unicode text in UTF-8.

#include <pxr/base/tf/diagnostic.h>
#include <pxr/export.h>
#include <pxr/pxr.h>

#include <cstdint>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns whether an identifier may start with the code point: class XID_Start of Unicode 15.1. Thread: any.
VESK_USD_API bool TfIsUtf8CodePointXidStart(uint32_t codePoint);
/// Returns whether an identifier may go on with the code point: class XID_Continue of Unicode 15.1. Thread:
/// any.
VESK_USD_API bool TfIsUtf8CodePointXidContinue(uint32_t codePoint);

/// What ill-formed bytes decode to: the replacement character.
inline constexpr uint32_t Tf_invalidCodePoint = 0xfffd;

/// Decodes the code point at `*text`, which is before `end`, and moves past it.
VESK_USD_API uint32_t Tf_NextCodePoint(const char** text, const char* end);

PXR_NAMESPACE_CLOSE_SCOPE
