#pragma once

/// The export macro of the Tf part.

#include <pxr/export.h>
#include <pxr/pxr.h>

#define TF_API VESK_USD_API
