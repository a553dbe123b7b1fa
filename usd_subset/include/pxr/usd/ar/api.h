#pragma once

/// The export macro of the Ar part.

#include <pxr/export.h>
#include <pxr/pxr.h>

#define AR_API VESK_USD_API
