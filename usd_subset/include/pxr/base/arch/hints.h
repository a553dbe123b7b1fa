#pragma once

/// Hints to the compiler about which way a branch usually goes.

#include <pxr/pxr.h>

#define ARCH_LIKELY(x) (__builtin_expect(static_cast<bool>(x), true))
#define ARCH_UNLIKELY(x) (__builtin_expect(static_cast<bool>(x), false))
