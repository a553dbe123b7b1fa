#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/vec4d.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

// One bit for each plane, in the order left, right, bottom, top, near, far.
constexpr uint32_t kInsideAll = 0x3f;
constexpr uint32_t kNearAndFar = 0x30;

template <class Planes>
uint32_t InsideMask(const Planes& planes, const GfVec3d& p)
{
    uint32_t mask = 0;
    for (size_t i = 0; i != planes.size(); ++i) {
        mask |= uint32_t(planes[i].IntersectsPositiveHalfSpace(p)) << i;
    }
    return mask;
}

} // namespace

const GfFrustum::_Planes& GfFrustum::_GetPlanes() const
{
    if (const _Planes* known = _planes.Get()) {
        return *known;
    }
    const GfMatrix4d toWorld = ComputeViewInverse();
    std::array<GfVec3d, 4> corners = _EyeSpaceCorners(_nearFar.GetMin());
    for (GfVec3d& corner : corners) {
        corner = toWorld.Transform(corner);
    }
    const auto& [lb, rb, lt, rt] = corners;
    // The points of each plane go round counter-clockwise as seen from inside.
    _Planes planes;
    if (_projectionType == Perspective) {
        const GfVec3d viewer = toWorld.Transform(GfVec3d(0));
        planes[0] = GfPlane(viewer, lb, lt);
        planes[1] = GfPlane(viewer, rt, rb);
        planes[2] = GfPlane(viewer, rb, lb);
        planes[3] = GfPlane(viewer, lt, rt);
    } else {
        const GfVec3d forward = toWorld.TransformDir(-GfVec3d::ZAxis());
        planes[0] = GfPlane(lt + forward, lt, lb);
        planes[1] = GfPlane(rb + forward, rb, rt);
        planes[2] = GfPlane(lb + forward, lb, rb);
        planes[3] = GfPlane(rt + forward, rt, lt);
    }
    planes[4] = GfPlane(rb, lb, lt);
    // The far plane looks back, so that its distance has the other sign.
    planes[5] = GfPlane(-planes[4].GetNormal(),
                        -(planes[4].GetDistanceFromOrigin() + (_nearFar.GetMax() - _nearFar.GetMin())));
    return *_planes.Keep(planes);
}

bool GfFrustum::Intersects(const GfBBox3d& bbox) const
{
    if (bbox.GetBox().IsEmpty()) {
        return false;
    }
    for (GfPlane plane : _GetPlanes()) {
        if (!plane.Transform(bbox.GetInverseMatrix()).IntersectsPositiveHalfSpace(bbox.GetRange())) {
            return false;
        }
    }
    return true;
}

bool GfFrustum::Intersects(const GfVec3d& point) const
{
    return InsideMask(_GetPlanes(), point) == kInsideAll;
}

bool GfFrustum::_SegmentIntersects(const _Planes& planes, const GfVec3d& p0, uint32_t p0Mask,
                                   const GfVec3d& p1, uint32_t p1Mask)
{
    if ((p0Mask | p1Mask) != kInsideAll) {
        return false; // both behind one plane
    }
    if (p0Mask == kInsideAll || p1Mask == kInsideAll) {
        return true;
    }
    // Cut off what is behind each plane between the points; t is 0 at p0 and 1 at p1.
    double t0 = 0.0;
    double t1 = 1.0;
    const GfVec3d v = p1 - p0;
    for (size_t i = 0; i != planes.size(); ++i) {
        const bool p0IsInside = p0Mask & (1u << i);
        const bool p1IsInside = p1Mask & (1u << i);
        if (p0IsInside == p1IsInside) {
            continue;
        }
        const double t = -planes[i].GetDistance(p0) / (planes[i].GetNormal() * v);
        if (p0IsInside) {
            t1 = t < t1 ? t : t1;
        } else {
            t0 = t > t0 ? t : t0;
        }
        if (t0 > t1) {
            return false;
        }
    }
    return true;
}

bool GfFrustum::Intersects(const GfVec3d& p0, const GfVec3d& p1) const
{
    const _Planes& planes = _GetPlanes();
    return _SegmentIntersects(planes, p0, InsideMask(planes, p0), p1, InsideMask(planes, p1));
}

bool GfFrustum::Intersects(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2) const
{
    const _Planes& planes = _GetPlanes();
    const uint32_t m0 = InsideMask(planes, p0);
    const uint32_t m1 = InsideMask(planes, p1);
    const uint32_t m2 = InsideMask(planes, p2);
    if ((m0 | m1 | m2) != kInsideAll) {
        return false; // all behind one plane
    }
    if (m0 == kInsideAll || m1 == kInsideAll || m2 == kInsideAll) {
        return true;
    }
    if (_SegmentIntersects(planes, p0, m0, p1, m1) || _SegmentIntersects(planes, p1, m1, p2, m2) ||
        _SegmentIntersects(planes, p2, m2, p0, m0)) {
        return true;
    }
    // What remains is a triangle that cuts through the middle: it is hit along the frustum's edges. Between
    // near and far plane it meets all four edges or none.
    const GfVec2d edges[4] = {{-1.0, -1.0}, {-1.0, 1.0}, {1.0, 1.0}, {1.0, -1.0}};
    const int edgeCount = (m0 & m1 & m2 & kNearAndFar) == kNearAndFar ? 1 : 4;
    for (int i = 0; i != edgeCount; ++i) {
        double distance;
        if (ComputePickRay(edges[i]).Intersect(p0, p1, p2, &distance)) {
            return true;
        }
    }
    return false;
}

bool GfFrustum::IntersectsViewVolume(const GfBBox3d& bbox, const GfMatrix4d& vpMat)
{
    // The box is outside if all corners are beyond one side of the clip volume, where x, y and z go from -w
    // to w.
    const GfMatrix4d toClip = bbox.GetMatrix() * vpMat;
    uint32_t inside = 0;
    for (size_t i = 0; i != 8; ++i) {
        const GfVec3d corner = bbox.GetRange().GetCorner(i);
        const GfVec4d p = GfVec4d(corner[0], corner[1], corner[2], 1) * toClip;
        for (int axis = 0; axis != 3; ++axis) {
            inside |= uint32_t(p[axis] < p[3]) << (2 * axis);
            inside |= uint32_t(p[axis] > -p[3]) << (2 * axis + 1);
        }
    }
    return inside == kInsideAll;
}

PXR_NAMESPACE_CLOSE_SCOPE
