#pragma once

/// Iteration over whole containers.

#include <pxr/pxr.h>

/// Loops with an iterator named `var` over a container.
#define TF_FOR_ALL(var, container)                                                                           \
    for (auto var = std::begin(container), var##End = std::end(container); var != var##End; ++var)
