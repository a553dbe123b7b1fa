#pragma once

#include <pxr/pxr.h>
#include <pxr/usd/sdf/layer.h>

#include <string>
#include <typeinfo>

PXR_NAMESPACE_OPEN_SCOPE

/// Opens a layer without posting errors. Null, with the reason in words, when that fails.
SdfLayerRefPtr Usd_OpenLayer(const std::string& path, std::string* why);

/// The name of a type as C++ writes it, without the internal namespace.
std::string Usd_TypeName(const std::type_info& type);

PXR_NAMESPACE_CLOSE_SCOPE
