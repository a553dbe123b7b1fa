#pragma once

#include "drawing.h"
#include "sampling.h"
#include "surface.h"

#include <vector>

namespace vesk::renderers::embree {

struct FrameView;

/// A hit on its way to a colour.
struct ShadedPoint
{
    SurfaceHit hit;
    SurfacePoint surface;
    Vec3 viewDirection;
    float travelled = 0.0f; ///< before the ray began: of mirrored ones
    std::uint32_t seed = 0;
    Vec3 color;
    float alpha = 1.0f; ///< how much of what lies behind is hidden
    float rays = 0.0f;  ///< that were traced for its light
};

/// Gives the hits of one wave of samples their colours: the material under the frame's lights, with shadows,
/// with the light of the surroundings dimmed where something close is in their way, and mirrored.
class Shader
{
public:
    /// \param mirrors whether mirrored rays see the scene; else they see its surroundings alone
    Shader(const FrameView& view, int sample, bool mirrors = true);

    /// Works out the surface at a hit and how much it hides in the frame's draw mode.
    ShadedPoint prepare(const SurfaceHit& hit, const ViewRay& ray, std::uint32_t seed) const;

    /// Sets the colours of all points.
    void shade(std::vector<ShadedPoint>& points);

    /// A step that leaves the surface at a hit distance.
    float offsetAt(float t) const;

private:
    Sample2 _random(const ShadedPoint& point, std::uint32_t purpose) const;
    void _addUnshadowed(ShadedPoint& point) const;
    void _queueDiffuse(const ShadedPoint& point, std::size_t index);
    void _queueMirror(const ShadedPoint& point, std::size_t index);
    void _queueLights(const ShadedPoint& point, std::size_t index);
    void _queue(const ShadedPoint& point, Vec3 direction, float distance, std::size_t index, Vec3 lit,
                Vec3 blocked);
    void _queueReflected(const ShadedPoint& point, Vec3 direction, Vec3 share, std::size_t index);
    void _resolve(std::vector<ShadedPoint>& points);
    float _passing(const RTCRay& shadowRay, float& traced) const;
    void _resolveThrough(std::vector<ShadedPoint>& points);
    void _resolveMirrors(std::vector<ShadedPoint>& points);
    float _pixelAt(float t) const;
    float _lineAlpha(const ShadedPoint& point, const ViewRay& ray) const;

    /// What a blocked or free ray adds to a point.
    struct Contribution
    {
        std::size_t point;
        Vec3 lit;
        Vec3 blocked;
    };

    const FrameView& m_view;
    SurfaceLooks m_looks;
    int m_sample;
    bool m_mirrors;
    std::vector<RTCRay> m_rays;
    std::vector<Contribution> m_contributions;

    /// A mirrored ray: where it leaves from and how much of what it sees arrives.
    struct Reflected
    {
        std::size_t point;
        ViewRay ray;
        Vec3 share;
    };
    std::vector<Reflected> m_reflected;
};

} // namespace vesk::renderers::embree
