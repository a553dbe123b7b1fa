#pragma once

#include <pxr/pxr.h>

#include <cstddef>
#include <cstdint>

PXR_NAMESPACE_OPEN_SCOPE

extern const uint32_t Tf_xidStart[];
extern const size_t Tf_xidStartSize;
extern const uint32_t Tf_xidContinue[];
extern const size_t Tf_xidContinueSize;

PXR_NAMESPACE_CLOSE_SCOPE
