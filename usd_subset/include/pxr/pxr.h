#pragma once

/// The release of OpenUSD whose public API and behaviour this subset reproduces, and its namespaces.

#define PXR_MAJOR_VERSION 0
#define PXR_MINOR_VERSION 24
#define PXR_PATCH_VERSION 11
#define PXR_VERSION 2411

/// Defined by the embedded subset alone, so that a host can tell it from an installed OpenUSD.
#define VESK_OPENUSD_SUBSET 1

#define PXR_USE_NAMESPACES 1

// The internal namespace differs from every OpenUSD build's, hence no symbol of one can bind to the other.
#define PXR_NS pxr
#define PXR_INTERNAL_NS pxrInternal_vesk_subset__pxrReserved__
#define PXR_NS_GLOBAL ::PXR_NS

namespace PXR_INTERNAL_NS {}

namespace PXR_NS {
using namespace PXR_INTERNAL_NS;
}

// clang-format off
#define PXR_NAMESPACE_OPEN_SCOPE namespace PXR_INTERNAL_NS {
#define PXR_NAMESPACE_CLOSE_SCOPE }
#define PXR_NAMESPACE_USING_DIRECTIVE using namespace PXR_NS;
// clang-format on
