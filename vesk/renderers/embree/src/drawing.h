#pragma once

#include <vesk/renderers/picture/camera_rays.h>
#include <vesk/renderers/picture/color.h>
#include <vesk/renderers/picture/film.h>
#include <vesk/renderers/picture/frame_settings.h>
#include <vesk/renderers/picture/grid.h>
#include <vesk/renderers/picture/host_callbacks.h>
#include <vesk/renderers/picture/image_io.h>
#include <vesk/renderers/picture/outputs.h>
#include <vesk/renderers/picture/vec3.h>

namespace vesk::renderers::embree {

// What all renderers draw with is named here as if it were this renderer's own.
using namespace picture;

} // namespace vesk::renderers::embree
