#pragma once

/// Export macros of the cameraUtil library.

#include <pxr/export.h>

#define CAMERAUTIL_API VESK_USD_API
