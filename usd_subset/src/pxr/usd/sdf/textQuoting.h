#pragma once

/// Writes strings, asset paths and numbers so that the reader gives back the same.

#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the text between quotes: double ones, or single ones where it holds double ones alone, tripled
/// where it has lines.
std::string Sdf_QuoteString(const std::string& text);
/// Returns the path between @ marks, tripled where it holds one.
std::string Sdf_QuoteAssetPath(const std::string& path);
/// Return the shortest text that reads back as the same number.
std::string Sdf_NumberToText(double value);
std::string Sdf_NumberToText(float value);

PXR_NAMESPACE_CLOSE_SCOPE
