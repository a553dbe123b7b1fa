#pragma once

/// Reads and writes files as a whole.

#include <pxr/pxr.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// Reads a regular file into memory; where it cannot, it returns false and says why.
bool Sdf_ReadWholeFile(const std::string& path, std::string* bytes, std::string* whyNot);
/// Reads up to `count` bytes from the start of a file; empty where there is none.
std::string Sdf_ReadFileStart(const std::string& path, size_t count);
/// Writes a new file beside `path` and puts it in its place when it is whole, so that a failure leaves the
/// old file as it was; where it cannot, it returns false and says why.
bool Sdf_ReplaceFile(const std::string& path, const std::string& bytes, std::string* whyNot);

PXR_NAMESPACE_CLOSE_SCOPE
