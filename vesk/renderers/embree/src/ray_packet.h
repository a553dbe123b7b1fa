#pragma once

#include "drawing.h"

#include <embree3/rtcore.h>

#include <cmath>
#include <cstdint>

namespace vesk::renderers::embree {

/// What a ray hit.
struct SurfaceHit
{
    std::uint32_t placement = 0; ///< number of the placement in the scene
    std::uint32_t item = 0;      ///< number of the item in its group
    std::uint32_t primitive = 0;
    float u = 0.0f;
    float v = 0.0f;
    float t = 0.0f;
    Vec3 geometricNormal; ///< in the group's space, not normalised
};

/// Whether Embree can trace a ray: it aborts the program on one that is not finite or begins too far away.
inline bool isTraceable(Vec3 origin, Vec3 direction)
{
    constexpr float most = 1e18f;
    return std::abs(origin.x) <= most && std::abs(origin.y) <= most && std::abs(origin.z) <= most &&
           std::abs(direction.x) <= most && std::abs(direction.y) <= most && std::abs(direction.z) <= most;
}

inline bool isTraceable(const ViewRay& ray)
{
    return isTraceable(ray.origin, ray.direction) && !std::isnan(ray.tNear) && !std::isnan(ray.tFar);
}

/// Up to sixteen rays that are traced at once: faster than one by one where they are alike, such as those of
/// a square of pixels.
class RayPacket
{
public:
    static constexpr int kSize = 16;
    static constexpr int kSide = 4; ///< of the square of pixels that fills a packet

    /// Adds a ray to a packet that is not full. One that cannot be traced hits nothing.
    void add(const ViewRay& ray)
    {
        const int i = m_count++;
        m_valid[i] = isTraceable(ray) ? -1 : 0;
        RTCRay16& r = m_rays.ray;
        r.org_x[i] = ray.origin.x;
        r.org_y[i] = ray.origin.y;
        r.org_z[i] = ray.origin.z;
        r.dir_x[i] = ray.direction.x;
        r.dir_y[i] = ray.direction.y;
        r.dir_z[i] = ray.direction.z;
        r.tnear[i] = ray.tNear;
        r.tfar[i] = ray.tFar;
    }

    bool isFull() const { return m_count == kSize; }
    int count() const { return m_count; }
    void clear() { m_count = 0; }

    /// Finds the nearest hit of each ray.
    void trace(RTCScene scene)
    {
        for (int i = 0; i < kSize; ++i) {
            if (i >= m_count) m_valid[i] = 0;
            m_rays.ray.time[i] = 0.0f;
            m_rays.ray.mask[i] = 0xffffffffu;
            m_rays.ray.flags[i] = 0;
            m_rays.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
            m_rays.hit.instID[0][i] = RTC_INVALID_GEOMETRY_ID;
        }
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
        rtcIntersect16(m_valid, scene, &context, &m_rays);
    }

    bool isHit(int i) const { return m_rays.hit.geomID[i] != RTC_INVALID_GEOMETRY_ID; }
    std::uint32_t placement(int i) const { return m_rays.hit.instID[0][i]; }
    std::uint32_t item(int i) const { return m_rays.hit.geomID[i]; }
    std::uint32_t primitive(int i) const { return m_rays.hit.primID[i]; }
    float distance(int i) const { return m_rays.ray.tfar[i]; }

    SurfaceHit hit(int i) const
    {
        const RTCHit16& h = m_rays.hit;
        return {h.instID[0][i],
                h.geomID[i],
                h.primID[i],
                h.u[i],
                h.v[i],
                m_rays.ray.tfar[i],
                {h.Ng_x[i], h.Ng_y[i], h.Ng_z[i]}};
    }

private:
    RTCRayHit16 m_rays;
    alignas(64) int m_valid[kSize];
    int m_count = 0;
};

} // namespace vesk::renderers::embree
