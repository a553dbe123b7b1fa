#pragma once

#include "trace_scene.h"

namespace vesk::renderers::embree {

/// A hit with everything that shading needs, in the ray tracer's space.
struct SurfacePoint
{
    Vec3 position;
    Vec3 normal;          ///< shading normal, unit length, towards the viewer
    Vec3 geometricNormal; ///< of the flat surface, unit length, towards the viewer
    Vec3 color;
    float opacity = 1.0f;
    std::uint32_t face = 0; ///< the authored face, curve or point
    const Material* material = nullptr;
};

/// Works out the surface at a hit.
/// \param direction of the view ray, unit length
/// \param defaultMaterial of prims that have none
/// \param flat whether the flat surface's normal is used for shading
SurfacePoint surfaceAt(const TraceScene& scene, const SurfaceHit& hit, Vec3 origin, Vec3 direction,
                       const Material& defaultMaterial, bool flat);

/// How far a hit lies from the nearest outline edge of its face, in stage units; a large number for shapes
/// that have no edges.
float distanceToEdge(const TraceScene& scene, const SurfaceHit& hit);

/// How far a hit lies from the nearest point of its shape, in stage units.
float distanceToVertex(const TraceScene& scene, const SurfaceHit& hit, Vec3 position);

} // namespace vesk::renderers::embree
