#pragma once

/// Reads values of known types, dictionaries, and values of no known type from the text of a layer.

#include "pxr/usd/sdf/textScanner.h"

#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <string>
#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Values may be nested this deep.
constexpr int kSdf_MaxTextValueDepth = 64;

/// Says whether values of the type can be read.
bool Sdf_CanReadTextValue(const std::type_info& type);
/// Reads a value of a type that can be read.
VtValue Sdf_ReadTextValue(Sdf_TextScanner& scanner, const std::type_info& type);
/// Reads `{ ... }`.
VtDictionary Sdf_ReadTextDictionary(Sdf_TextScanner& scanner, int depth = 0);
/// Reads any value and returns it as text that reads back as the same value.
std::string Sdf_RecordTextValue(Sdf_TextScanner& scanner, int depth = 0);
/// Reads a type's name, `[]` included.
std::string Sdf_ReadTextTypeName(Sdf_TextScanner& scanner, const char* what);
double Sdf_ReadTextDouble(Sdf_TextScanner& scanner, const char* what);

PXR_NAMESPACE_CLOSE_SCOPE
