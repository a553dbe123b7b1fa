#pragma once

#include <pxr/export.h>

#define USDSHADE_API VESK_USD_API
