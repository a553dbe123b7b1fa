#include "bare_rays.h"

namespace vesk::renderers::embree::bench {

RTCRayHit toBareRay(const ViewRay& ray)
{
    RTCRayHit r{};
    r.ray.org_x = ray.origin.x;
    r.ray.org_y = ray.origin.y;
    r.ray.org_z = ray.origin.z;
    r.ray.dir_x = ray.direction.x;
    r.ray.dir_y = ray.direction.y;
    r.ray.dir_z = ray.direction.z;
    r.ray.tnear = ray.tNear;
    r.ray.tfar = ray.tFar;
    r.ray.mask = 0xffffffffu;
    r.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    r.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    return r;
}

std::size_t traceBarePackets(const FrameView& view, const Tile& tile)
{
    constexpr int side = 4;
    std::size_t hits = 0;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    RTCRayHit16 rays;
    alignas(64) int valid[16];
    for (int top = tile.y0; top < tile.y1; top += side) {
        for (int left = tile.x0; left < tile.x1; left += side) {
            for (int i = 0; i < 16; ++i) {
                const int x = left + i % side;
                const int y = top + i / side;
                valid[i] = x < tile.x1 && y < tile.y1 ? -1 : 0;
                const ViewRay ray = view.camera.at(float(x) + 0.5f, float(y) + 0.5f);
                rays.ray.org_x[i] = ray.origin.x;
                rays.ray.org_y[i] = ray.origin.y;
                rays.ray.org_z[i] = ray.origin.z;
                rays.ray.dir_x[i] = ray.direction.x;
                rays.ray.dir_y[i] = ray.direction.y;
                rays.ray.dir_z[i] = ray.direction.z;
                rays.ray.tnear[i] = ray.tNear;
                rays.ray.tfar[i] = ray.tFar;
                rays.ray.time[i] = 0.0f;
                rays.ray.mask[i] = 0xffffffffu;
                rays.ray.flags[i] = 0;
                rays.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
                rays.hit.instID[0][i] = RTC_INVALID_GEOMETRY_ID;
            }
            rtcIntersect16(valid, view.scene->handle(), &context, &rays);
            for (int i = 0; i < 16; ++i)
                hits += valid[i] != 0 && rays.hit.geomID[i] != RTC_INVALID_GEOMETRY_ID;
        }
    }
    return hits;
}

std::size_t traceBareStream(const FrameView& view, const Tile& tile, std::vector<RTCRayHit>& rays)
{
    rays.clear();
    for (int y = tile.y0; y < tile.y1; ++y) {
        for (int x = tile.x0; x < tile.x1; ++x)
            rays.push_back(toBareRay(view.camera.at(float(x) + 0.5f, float(y) + 0.5f)));
    }
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = RTC_INTERSECT_CONTEXT_FLAG_COHERENT;
    rtcIntersect1M(view.scene->handle(), &context, rays.data(), static_cast<unsigned>(rays.size()),
                   sizeof(RTCRayHit));
    std::size_t hits = 0;
    for (const RTCRayHit& ray : rays)
        hits += ray.hit.geomID != RTC_INVALID_GEOMETRY_ID;
    return hits;
}

} // namespace vesk::renderers::embree::bench
