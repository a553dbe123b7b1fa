#pragma once

/// The export macro of the Sdf part.

#include <pxr/export.h>
#include <pxr/pxr.h>

#define SDF_API VESK_USD_API
