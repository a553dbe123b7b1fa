#pragma once

#include <pxr/export.h>

/// OpenUSD's name of the export mark of this library, for code that is written against OpenUSD.
#ifndef USD_API
#define USD_API VESK_USD_API
#endif
