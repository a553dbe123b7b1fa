#pragma once

#include <pxr/export.h>

#define USDLUX_API VESK_USD_API
