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
/// \param block width of the squares of pixels that share what their middle shows, 1 for each its own
/// The result does not depend on the order of tiles or on the number of threads. Thread: any, one tile at a
/// time.
void traceColor(const FrameView& view, Film& film, const Tile& tile, int first, int last, int block = 1);

/// Writes what lies at the centres of a tile's pixels to a film that has room for it.
void traceGeometry(const FrameView& view, Film& film, const Tile& tile, int block = 1);

/// Turns a ray tracer's answer into a hit; false for a miss.
bool toHit(const RTCRayHit& ray, SurfaceHit& hit);

/// Fills a ray tracer's question from a view ray.
RTCRayHit toRay(const ViewRay& ray);

} // namespace vesk::renderers::embree
