#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>

namespace vesk::usd::utils {

/// Whether two matrices hold the same bits; any two NaNs count as the same.
bool haveSameBits(const PXR_NS::GfMatrix4d& left, const PXR_NS::GfMatrix4d& right);

/// Whether two cameras have the same bits in everything but the transform; any two NaNs count as the same.
bool haveSameLens(const PXR_NS::GfCamera& left, const PXR_NS::GfCamera& right);

} // namespace vesk::usd::utils
