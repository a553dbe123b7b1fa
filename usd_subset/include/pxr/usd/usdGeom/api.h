#pragma once

#include <pxr/export.h>

#define USDGEOM_API VESK_USD_API
#define USDGEOM_LOCAL
