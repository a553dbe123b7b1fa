#pragma once

#include <pxr/pxr.h>

#include <string>
#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Returns the readable name of a type: "string" for std::string, no internal namespace.
std::string Tf_Demangle(const char* mangled);
inline std::string Tf_Demangle(std::type_info const& type) { return Tf_Demangle(type.name()); }

PXR_NAMESPACE_CLOSE_SCOPE
