#pragma once

#include <pxr/base/gf/vec3f.h>
#include <pxr/imaging/hd/renderBuffer.h>
#include <vesk/renderers/picture/film.h>

#include <vector>

namespace vesk::renderers::hydra {

// Reads render buffers of any delegate into rows from top to bottom; a null buffer is empty. Hydra's rows
// begin at the bottom. Thread: the drawing thread, with the context current.

/// Adds a buffer of colours, multiplied by their opacity, to a film of the same size and counts one sample.
void addColors(PXR_NS::HdRenderBuffer& buffer, picture::Film& film);

std::vector<float> readFloats(PXR_NS::HdRenderBuffer* buffer);

/// Numbers of prims, instances and elements: 32 bits, packed as colours where the delegate draws them as
/// such.
std::vector<std::int32_t> readIds(PXR_NS::HdRenderBuffer* buffer);

/// Normals in camera space.
std::vector<PXR_NS::GfVec3f> readNormals(PXR_NS::HdRenderBuffer* buffer);

} // namespace vesk::renderers::hydra
