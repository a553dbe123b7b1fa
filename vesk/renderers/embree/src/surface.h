#pragma once

#include "reflection.h"
#include "trace_scene.h"

namespace vesk::renderers::embree {

/// A hit with everything that shading needs, in the ray tracer's space.
struct SurfacePoint
{
    Vec3 position;
    Vec3 normal;          ///< shading normal, unit length, towards the viewer
    Vec3 geometricNormal; ///< of the flat surface, unit length, towards the viewer
    Vec3 color;           ///< of the surface itself, whatever it is made of
    Reflection reflection;
    Vec3 emission;
    float opacity = 1.0f;
    std::uint32_t face = 0; ///< the authored face, curve or point
};

/// How surfaces are looked at.
struct SurfaceLooks
{
    const Material* defaultMaterial = nullptr; ///< of prims that have none
    bool flat = false;                         ///< the flat surface's normal is used for shading
    bool materials = true;                     ///< false: every prim has the default material
    bool displayColors = true;
};

/// Works out where a hit lies and how the surface is turned there.
/// \param direction of the view ray, unit length
SurfacePoint placeAt(const TraceScene& scene, const SurfaceHit& hit, Vec3 origin, Vec3 direction, bool flat);

/// Works out the surface at a hit with its material.
/// \param pixel how wide a pixel of the picture is at the hit, in stage units; 0 for a point
SurfacePoint surfaceAt(const TraceScene& scene, const SurfaceHit& hit, Vec3 origin, Vec3 direction,
                       const SurfaceLooks& looks, float pixel = 0.0f);

/// How much of what lies behind a hit is hidden by it, from 0 to 1.
float opacityAt(const TraceScene& scene, const SurfaceHit& hit, const SurfaceLooks& looks);

/// The authored face, curve or point that a primitive of the ray tracer is a part of.
inline std::uint32_t elementOf(const Geometry& g, std::uint32_t primitive)
{
    switch (g.kind) {
    case GeometryKind::Triangles:
        return g.faces[primitive];
    case GeometryKind::Curves:
        return g.segmentCurve[primitive];
    default:
        return primitive;
    }
}

/// How far a hit lies from the nearest outline edge of its face, in stage units; a large number for shapes
/// that have no edges.
float distanceToEdge(const TraceScene& scene, const SurfaceHit& hit);

/// How far a hit lies from the nearest point of its shape, in stage units.
float distanceToVertex(const TraceScene& scene, const SurfaceHit& hit, Vec3 position);

} // namespace vesk::renderers::embree
