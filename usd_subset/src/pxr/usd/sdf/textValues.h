#pragma once

/// Reads values of known types, dictionaries, and values of no known type from the text of a layer.

#include "pxr/usd/sdf/textScanner.h"

#include <pxr/base/tf/token.h>
#include <pxr/base/vt/dictionary.h>
#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>

#include <string>
#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Values may be nested this deep.
constexpr int kSdf_MaxTextValueDepth = 64;

/// A type by its name, and how its values are read; a type that nobody knows has no reader.
struct Sdf_TextType
{
    typedef VtValue (*Reader)(Sdf_TextScanner&);
    TfToken name;
    Reader read = nullptr;
};

/// Returns how values of a C++ type are read.
Sdf_TextType Sdf_TextTypeOf(const std::type_info& type);
/// Returns the type of a name, `[]` included.
Sdf_TextType Sdf_FindTextType(const std::string& name);

/// Reads a value: one of the type, or a path, which may stand for a value of any type. A value of a type that
/// nobody knows is kept as text.
VtValue Sdf_ReadTextValue(Sdf_TextScanner& scanner, const Sdf_TextType& type);
/// Reads `{ ... }`.
VtDictionary Sdf_ReadTextDictionary(Sdf_TextScanner& scanner);
/// Reads any value and returns it as text that reads back as the same value.
std::string Sdf_RecordTextValue(Sdf_TextScanner& scanner);
/// Reads any list that is not empty and returns it as text.
std::string Sdf_RecordTextList(Sdf_TextScanner& scanner);
/// Reads `[]` behind a type's name where it is there.
bool Sdf_AcceptArrayBrackets(Sdf_TextScanner& scanner);

PXR_NAMESPACE_CLOSE_SCOPE
