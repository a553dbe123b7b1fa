#pragma once

/// GfCamera: a physical camera.

#include <pxr/base/gf/api.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/pxr.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

class GfFrustum;

/// A camera as film and lens describe it. It looks along -z with +y up in its own space. Apertures, their
/// offsets and the focal length are in tenths of a world unit (mm where the world is in cm); clipping range
/// and focus distance are in world units; angles are in degrees.
class VESK_USD_API GfCamera
{
public:
    enum Projection
    {
        Perspective = 0,
        Orthographic,
    };

    /// The direction that a field of view or an orthographic size is about.
    enum FOVDirection
    {
        FOVHorizontal = 0,
        FOVVertical
    };

    /// One unit of an aperture in world units.
    static const double APERTURE_UNIT;
    /// One unit of the focal length in world units.
    static const double FOCAL_LENGTH_UNIT;
    /// The projector aperture of 35 mm film, 0.825 x 0.602 inches, in mm.
    static const double DEFAULT_HORIZONTAL_APERTURE;
    static const double DEFAULT_VERTICAL_APERTURE;

    GfCamera(const GfMatrix4d& transform = GfMatrix4d(1.0), Projection projection = Perspective,
             float horizontalAperture = DEFAULT_HORIZONTAL_APERTURE,
             float verticalAperture = DEFAULT_VERTICAL_APERTURE, float horizontalApertureOffset = 0.0,
             float verticalApertureOffset = 0.0, float focalLength = 50.0,
             const GfRange1f& clippingRange = GfRange1f(1, 1000000),
             const std::vector<GfVec4f>& clippingPlanes = std::vector<GfVec4f>(), float fStop = 0.0,
             float focusDistance = 0.0);

    /// Sets the place in world space.
    void SetTransform(const GfMatrix4d& val);
    void SetProjection(const Projection& val);
    void SetFocalLength(const float val);
    void SetHorizontalAperture(const float val);
    void SetVerticalAperture(const float val);
    void SetHorizontalApertureOffset(const float val);
    void SetVerticalApertureOffset(const float val);
    void SetClippingRange(const GfRange1f& val);
    /// Sets further planes in camera space: points with a x + b y + c z + d < 0 are clipped.
    void SetClippingPlanes(const std::vector<GfVec4f>& val);
    void SetFStop(const float val);
    void SetFocusDistance(const float val);

    /// Makes the camera perspective with the given width / height and field of view, by apertures and focal
    /// length.
    void SetPerspectiveFromAspectRatioAndFieldOfView(float aspectRatio, float fieldOfView,
                                                     FOVDirection direction,
                                                     float horizontalAperture = DEFAULT_HORIZONTAL_APERTURE);
    /// Makes the camera orthographic with the given width / height and size in world units.
    void SetOrthographicFromAspectRatioAndSize(float aspectRatio, float orthographicSize,
                                               FOVDirection direction);
    /// Takes the camera from matrices as GfFrustum makes them; warns where the projection is of neither kind.
    void SetFromViewAndProjectionMatrix(const GfMatrix4d& viewMatrix, const GfMatrix4d& projMatix,
                                        const float focalLength = 50.0);

    GfMatrix4d GetTransform() const;
    Projection GetProjection() const;
    float GetHorizontalAperture() const;
    float GetVerticalAperture() const;
    float GetHorizontalApertureOffset() const;
    float GetVerticalApertureOffset() const;
    /// Returns width / height of the aperture, 0 where the height is 0.
    float GetAspectRatio() const;
    float GetFocalLength() const;
    float GetFieldOfView(FOVDirection direction) const;
    GfRange1f GetClippingRange() const;
    const std::vector<GfVec4f>& GetClippingPlanes() const;
    /// Returns what the camera sees, in world space.
    GfFrustum GetFrustum() const;
    float GetFStop() const;
    float GetFocusDistance() const;

    bool operator==(const GfCamera& other) const;
    bool operator!=(const GfCamera& other) const;

private:
    GfMatrix4d _transform;
    Projection _projection;
    float _horizontalAperture;
    float _verticalAperture;
    float _horizontalApertureOffset;
    float _verticalApertureOffset;
    float _focalLength;
    GfRange1f _clippingRange;
    std::vector<GfVec4f> _clippingPlanes;
    float _fStop;
    float _focusDistance;
};

PXR_NAMESPACE_CLOSE_SCOPE
