#pragma once

/// Export macros of the gf library.

#include <pxr/export.h>

#define GF_API VESK_USD_API
