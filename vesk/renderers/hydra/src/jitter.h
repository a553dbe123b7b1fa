#pragma once

#include <pxr/base/gf/vec2d.h>

namespace vesk::renderers::hydra {

/// By which part of a pixel a picture's drawing is shifted, so that all its drawings together cover pixels
/// evenly: the Halton sequence of bases 2 and 3 over a quarter of a pixel, because each drawing has four
/// samples at places of its own that lie a quarter of a pixel apart. \param index of the drawing, from 1; the
/// first drawing of a picture, 0, is not shifted
PXR_NS::GfVec2d jitterOf(int index, int count);

} // namespace vesk::renderers::hydra
