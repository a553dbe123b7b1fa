#pragma once

/// The export macro of the Vt part.

#include <pxr/export.h>
#include <pxr/pxr.h>

#define VT_API VESK_USD_API
