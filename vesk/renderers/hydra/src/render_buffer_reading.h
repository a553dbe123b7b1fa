#pragma once

#include "draw_request.h"

#include <pxr/base/gf/vec2i.h>
#include <pxr/base/gf/vec3f.h>
#include <pxr/imaging/hd/renderBuffer.h>
#include <vesk/renderers/picture/film.h>

#include <vector>

namespace vesk::renderers::hydra {

// Each function reads a rectangle of a render buffer of any delegate into rows from top to bottom; Hydra's
// rows begin at the bottom. Where there is no buffer, or it does not hold the rectangle, nothing is read and
// the result is empty. Thread: the drawing thread, with the context current.

/// Adds colours, multiplied by their opacity, to a film of the rectangle and counts one sample.
void addColors(PXR_NS::HdRenderBuffer* buffer, const PixelRect& rect, picture::Film& film);

std::vector<float> readFloats(PXR_NS::HdRenderBuffer* buffer, const PixelRect& rect);

/// Numbers of prims, instances and elements: 32 bits, packed as colours where the delegate draws them as
/// such.
std::vector<std::int32_t> readIds(PXR_NS::HdRenderBuffer* buffer, const PixelRect& rect);

/// Normals in camera space.
std::vector<PXR_NS::GfVec3f> readNormals(PXR_NS::HdRenderBuffer* buffer, const PixelRect& rect);

} // namespace vesk::renderers::hydra
