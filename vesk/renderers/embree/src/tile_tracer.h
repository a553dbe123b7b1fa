#pragma once

#include "drawing.h"
#include "frame_lights.h"
#include "surface.h"
#include "trace_scene.h"

#include <memory>

namespace vesk::renderers::embree {

/// A rectangle of pixels: from (x0, y0) up to but not including (x1, y1).
struct Tile
{
    int x0 = 0;
    int y0 = 0;
    int x1 = 0;
    int y1 = 0;
};

/// Everything about one frame that its tiles share. It never changes while they are traced.
struct FrameView
{
    FrameView(std::shared_ptr<const TraceScene> tracedScene, const FrameSettings& frameSettings,
              const CameraRays& cameraRays);

    std::shared_ptr<const TraceScene> scene;
    FrameSettings settings;
    CameraRays camera;
    FrameLights lights;
    Grid grid;
    Material defaultMaterial;

    /// How surfaces are looked at in the frame's draw mode.
    SurfaceLooks looks() const;
};

/// Adds samples [first, last) of each pixel of a tile to a film.
/// \param tile in pixels of the film
/// \param block width of the square of the picture's pixels that one pixel of the film stands for
/// The result does not depend on the order of tiles or on the number of threads. Thread: any, one tile at a
/// time.
void traceColor(const FrameView& view, Film& film, const Tile& tile, int first, int last, int block = 1);

/// Writes what lies at the centres of a tile's pixels to those parts that the film has.
void traceGeometry(const FrameView& view, Film& film, const Tile& tile, int block = 1);

} // namespace vesk::renderers::embree
