#pragma once

/// GfFrustum: what a viewer sees.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/hashCombine.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/plane.h>
#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/gf/ray.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/vec2d.h>
#include <pxr/base/gf/vec3d.h>
#include <pxr/pxr.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <iosfwd>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A perspective or orthographic view volume. The viewer is at a position and looks along -z with +y up,
/// rotated by a rotation; the window is the rectangle that it sees on the plane one unit in front of it
/// (world units for an orthographic view); near and far are distances along the view direction. Window
/// positions are normalized: -1 to 1 from left to right and from bottom to top. Thread: const operations may
/// run at the same time.
class VESK_USD_API GfFrustum
{
public:
    enum ProjectionType
    {
        Orthographic,
        Perspective,
    };

    /// Makes a perspective view from the origin along -z: window -1 to 1, near 1, far 10, view distance 5.
    GfFrustum();
    GfFrustum(const GfVec3d& position, const GfRotation& rotation, const GfRange2d& window,
              const GfRange1d& nearFar, GfFrustum::ProjectionType projectionType, double viewDistance = 5.0);
    /// Takes the place of a camera; see SetPositionAndRotationFromMatrix().
    GfFrustum(const GfMatrix4d& camToWorldXf, const GfRange2d& window, const GfRange1d& nearFar,
              GfFrustum::ProjectionType projectionType, double viewDistance = 5.0);

    friend inline size_t hash_value(const GfFrustum& f)
    {
        return Gf_HashCombine(f._position, f._rotation, f._window, f._nearFar, f._viewDistance,
                              f._projectionType);
    }
    bool operator==(const GfFrustum& f) const
    {
        return _position == f._position && _rotation == f._rotation && _window == f._window &&
               _nearFar == f._nearFar && _viewDistance == f._viewDistance &&
               _projectionType == f._projectionType;
    }
    bool operator!=(const GfFrustum& f) const { return !(*this == f); }

    /// \name What the frustum is made of
    /// @{
    void SetPosition(const GfVec3d& position)
    {
        _position = position;
        _planes.Clear();
    }
    const GfVec3d& GetPosition() const { return _position; }
    void SetRotation(const GfRotation& rotation)
    {
        _rotation = rotation;
        _planes.Clear();
    }
    const GfRotation& GetRotation() const { return _rotation; }
    /// Takes position and rotation of a camera's matrix; mirroring, scale, shear and projection are dropped.
    void SetPositionAndRotationFromMatrix(const GfMatrix4d& camToWorldXf);
    void SetWindow(const GfRange2d& window)
    {
        _window = window;
        _planes.Clear();
    }
    const GfRange2d& GetWindow() const { return _window; }
    /// Returns the distance of the plane that the window is on.
    static double GetReferencePlaneDepth() { return 1.0; }
    void SetNearFar(const GfRange1d& nearFar)
    {
        _nearFar = nearFar;
        _planes.Clear();
    }
    const GfRange1d& GetNearFar() const { return _nearFar; }
    /// Sets the distance of the point that is looked at; the volume does not depend on it.
    void SetViewDistance(double viewDistance) { _viewDistance = viewDistance; }
    double GetViewDistance() const { return _viewDistance; }
    void SetProjectionType(GfFrustum::ProjectionType projectionType)
    {
        _projectionType = projectionType;
        _planes.Clear();
    }
    GfFrustum::ProjectionType GetProjectionType() const { return _projectionType; }
    /// @}

    /// \name Perspective by field of view in degrees and width / height (0 counts as 1), orthographic by
    /// window The getters return false and set nothing for the other kind.
    /// @{
    void SetPerspective(double fieldOfViewHeight, double aspectRatio, double nearDistance,
                        double farDistance);
    void SetPerspective(double fieldOfView, bool isFovVertical, double aspectRatio, double nearDistance,
                        double farDistance);
    bool GetPerspective(double* fieldOfViewHeight, double* aspectRatio, double* nearDistance,
                        double* farDistance) const;
    bool GetPerspective(bool isFovVertical, double* fieldOfView, double* aspectRatio, double* nearDistance,
                        double* farDistance) const;
    /// Returns the field of view in degrees, 0 for an orthographic view.
    double GetFOV(bool isFovVertical = false) const;
    void SetOrthographic(double left, double right, double bottom, double top, double nearPlane,
                         double farPlane);
    bool GetOrthographic(double* left, double* right, double* bottom, double* top, double* nearPlane,
                         double* farPlane) const;
    /// @}

    /// Moves the frustum along its view direction so that it holds a sphere; slack is added to the radius.
    void FitToSphere(const GfVec3d& center, double radius, double slack = 0.0);
    /// Applies a matrix to position, view and up direction and window; the frustum is never sheared,
    /// distances are scaled as the view direction is.
    GfFrustum& Transform(const GfMatrix4d& matrix);

    /// \name Directions, points and matrices in world space
    /// @{
    GfVec3d ComputeViewDirection() const;
    GfVec3d ComputeUpVector() const;
    void ComputeViewFrame(GfVec3d* side, GfVec3d* up, GfVec3d* view) const;
    GfVec3d ComputeLookAtPoint() const;
    /// Returns the matrix from world to eye space.
    GfMatrix4d ComputeViewMatrix() const;
    GfMatrix4d ComputeViewInverse() const;
    /// Returns the matrix from eye to clip space, in which x, y and z go from -w to w.
    GfMatrix4d ComputeProjectionMatrix() const;
    /// Returns |width / height| of the window, 0 where the height is 0.
    double ComputeAspectRatio() const;
    /// Returns the corners: left bottom, right bottom, left top, right top of the near, then of the far
    /// plane.
    std::vector<GfVec3d> ComputeCorners() const;
    /// Returns the four corners at a distance from the viewer.
    std::vector<GfVec3d> ComputeCornersAtDistance(double d) const;
    /// @}

    /// \name A part of the frustum, for picking
    /// The window is centred on the point, its size multiplied by size (0 to 1), and cut off at this window.
    /// @{
    GfFrustum ComputeNarrowedFrustum(const GfVec2d& windowPos, const GfVec2d& size) const;
    /// Warns and returns the frustum itself for a point that is not in front of the viewer.
    GfFrustum ComputeNarrowedFrustum(const GfVec3d& worldPoint, const GfVec2d& size) const;
    /// @}

    /// \name Rays through a window position or a point in world space
    /// A pick ray starts on the near plane, the other kind at the viewer.
    /// @{
    GfRay ComputeRay(const GfVec2d& windowPos) const;
    GfRay ComputeRay(const GfVec3d& worldSpacePos) const;
    GfRay ComputePickRay(const GfVec2d& windowPos) const;
    GfRay ComputePickRay(const GfVec3d& worldSpacePos) const;
    /// @}

    /// \name Whether something is at least partly inside
    /// @{
    /// Never false for a box inside; may be true for one that is outside near an edge.
    bool Intersects(const GfBBox3d& bbox) const;
    bool Intersects(const GfVec3d& point) const;
    bool Intersects(const GfVec3d& p0, const GfVec3d& p1) const;
    bool Intersects(const GfVec3d& p0, const GfVec3d& p1, const GfVec3d& p2) const;
    /// The same for any view and projection matrix; may be true for a box outside.
    static bool IntersectsViewVolume(const GfBBox3d& bbox, const GfMatrix4d& vpMat);
    /// @}

private:
    using _Planes = std::array<GfPlane, 6>;

    /// The planes around the frustum, computed when first asked for; copies start without.
    class _PlaneCache
    {
    public:
        _PlaneCache() = default;
        _PlaneCache(const _PlaneCache&) {}
        _PlaneCache& operator=(const _PlaneCache&)
        {
            Clear();
            return *this;
        }
        ~_PlaneCache() { Clear(); }
        void Clear() { delete _planes.exchange(nullptr, std::memory_order_acq_rel); }
        const _Planes* Get() const { return _planes.load(std::memory_order_acquire); }
        /// Keeps the planes, or those of another thread that was faster; returns what is kept.
        const _Planes* Keep(const _Planes& planes) const
        {
            const _Planes* own = new _Planes(planes);
            const _Planes* kept = nullptr;
            if (_planes.compare_exchange_strong(kept, own, std::memory_order_acq_rel)) {
                return own;
            }
            delete own;
            return kept;
        }

    private:
        mutable std::atomic<const _Planes*> _planes{nullptr};
    };

    const _Planes& _GetPlanes() const;
    std::array<GfVec3d, 4> _EyeSpaceCorners(double distance) const;
    GfFrustum _ComputeNarrowedFrustumSub(const GfVec2d& windowPoint, const GfVec2d& size) const;
    GfRay _EyeSpaceRay(const GfVec2d& windowPos) const;
    GfRay _EyeSpaceRay(const GfVec3d& worldSpacePos) const;
    GfRay _FromNearPlane(const GfRay& eyeSpaceRay) const;
    static bool _SegmentIntersects(const _Planes& planes, const GfVec3d& p0, uint32_t p0Mask,
                                   const GfVec3d& p1, uint32_t p1Mask);

    GfVec3d _position;
    GfRotation _rotation;
    GfRange2d _window;
    GfRange1d _nearFar;
    double _viewDistance;
    ProjectionType _projectionType;
    _PlaneCache _planes;
};

/// Writes [(position) [rotation] [window] [nearFar] viewDistance type].
VESK_USD_API std::ostream& operator<<(std::ostream& out, const GfFrustum& f);

PXR_NAMESPACE_CLOSE_SCOPE
