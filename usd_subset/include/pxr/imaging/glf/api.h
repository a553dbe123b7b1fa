#pragma once

/// Export macros of the glf library.

#include <pxr/export.h>

#define GLF_API VESK_USD_API
