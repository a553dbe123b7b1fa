#pragma once

#include "drawing.h"
#include "sampling.h"

namespace vesk::renderers::embree {

/// What a surface does with light at one point: diffuse reflection below a microfacet layer (GGX, after
/// Walter et al. 2007, Schlick's Fresnel term) and a clear coat.
struct Reflection
{
    Vec3 diffuse;           ///< albedo, metals have none
    Vec3 specular;          ///< reflectance seen straight on
    float roughness = 0.5f; ///< the square of it is the width of the facets' slopes
    float coat = 0.0f;
    float coatRoughness = 0.01f;
    bool reflective = true; ///< false: it has highlights of lights and no mirrored surroundings

    /// The share of light that goes from one direction to another, times pi, without the cosine. All unit
    /// length and on the normal's side. \param diffuseScale,specularScale of the light
    Vec3 between(Vec3 normal, Vec3 toViewer, Vec3 toLight, float diffuseScale, float specularScale) const;

    /// Whether mirrored surroundings show.
    bool mirrors() const;

    /// A direction from which mirrored light comes, and the share of it that reaches the viewer.
    /// Returns false where the direction lies below the surface.
    bool sampleMirror(Vec3 normal, Vec3 toViewer, Sample2 s, Vec3& direction, Vec3& share) const;
};

} // namespace vesk::renderers::embree
