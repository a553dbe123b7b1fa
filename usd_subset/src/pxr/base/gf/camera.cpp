#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/range1d.h>
#include <pxr/base/gf/range2d.h>
#include <pxr/base/tf/diagnostic.h>

#include <cmath>

PXR_NAMESPACE_OPEN_SCOPE

const double GfCamera::APERTURE_UNIT = 0.1;
const double GfCamera::FOCAL_LENGTH_UNIT = 0.1;
const double GfCamera::DEFAULT_HORIZONTAL_APERTURE = 0.825 * 2.54 / GfCamera::APERTURE_UNIT;
const double GfCamera::DEFAULT_VERTICAL_APERTURE = 0.602 * 2.54 / GfCamera::APERTURE_UNIT;

namespace {

constexpr float kDefaultFocalLength = 50.0f;

} // namespace

GfCamera::GfCamera(const GfMatrix4d& transform, GfCamera::Projection projection, float horizontalAperture,
                   float verticalAperture, float horizontalApertureOffset, float verticalApertureOffset,
                   float focalLength, const GfRange1f& clippingRange,
                   const std::vector<GfVec4f>& clippingPlanes, float fStop, float focusDistance)
    : _transform(transform),
      _projection(projection),
      _horizontalAperture(horizontalAperture),
      _verticalAperture(verticalAperture),
      _horizontalApertureOffset(horizontalApertureOffset),
      _verticalApertureOffset(verticalApertureOffset),
      _focalLength(focalLength),
      _clippingRange(clippingRange),
      _clippingPlanes(clippingPlanes),
      _fStop(fStop),
      _focusDistance(focusDistance)
{}

void GfCamera::SetTransform(const GfMatrix4d& val) { _transform = val; }
void GfCamera::SetProjection(const GfCamera::Projection& val) { _projection = val; }
void GfCamera::SetFocalLength(const float val) { _focalLength = val; }
void GfCamera::SetHorizontalAperture(const float val) { _horizontalAperture = val; }
void GfCamera::SetVerticalAperture(const float val) { _verticalAperture = val; }
void GfCamera::SetHorizontalApertureOffset(const float val) { _horizontalApertureOffset = val; }
void GfCamera::SetVerticalApertureOffset(const float val) { _verticalApertureOffset = val; }
void GfCamera::SetClippingRange(const GfRange1f& val) { _clippingRange = val; }
void GfCamera::SetClippingPlanes(const std::vector<GfVec4f>& val) { _clippingPlanes = val; }
void GfCamera::SetFStop(const float val) { _fStop = val; }
void GfCamera::SetFocusDistance(const float val) { _focusDistance = val; }

void GfCamera::SetPerspectiveFromAspectRatioAndFieldOfView(float aspectRatio, float fieldOfView,
                                                           GfCamera::FOVDirection direction,
                                                           float horizontalAperture)
{
    _projection = Perspective;
    _horizontalAperture = horizontalAperture;
    _verticalAperture = static_cast<float>(horizontalAperture / (aspectRatio != 0.0 ? aspectRatio : 1.0));

    const float aperture = direction == FOVHorizontal ? _horizontalAperture : _verticalAperture;
    const float tangent = static_cast<float>(std::tan(0.5 * GfDegreesToRadians(fieldOfView)));
    if (tangent == 0) {
        _focalLength = kDefaultFocalLength;
        return;
    }
    _focalLength = static_cast<float>(aperture * APERTURE_UNIT / (2 * tangent) / FOCAL_LENGTH_UNIT);
}

void GfCamera::SetOrthographicFromAspectRatioAndSize(float aspectRatio, float orthographicSize,
                                                     FOVDirection direction)
{
    _projection = Orthographic;
    _focalLength = kDefaultFocalLength;
    const float aperture = static_cast<float>(orthographicSize / APERTURE_UNIT);
    if (direction == FOVHorizontal) {
        _horizontalAperture = aperture;
        _verticalAperture = aspectRatio > 0.0 ? aperture / aspectRatio : aperture;
    } else {
        _verticalAperture = aperture;
        _horizontalAperture = aperture * aspectRatio;
    }
}

void GfCamera::SetFromViewAndProjectionMatrix(const GfMatrix4d& viewMatrix, const GfMatrix4d& projMatrix,
                                              const float focalLength)
{
    _transform = viewMatrix.GetInverse();
    _focalLength = focalLength;
    const GfMatrix4d& m = projMatrix;
    if (m[2][3] < -0.5) {
        if (!(std::fabs(m[2][3] + 1.0) < 1e-6)) {
            TF_WARN("GfCamera: Given projection matrix does not appear to be valid perspective matrix.");
        }
        _projection = Perspective;
        const float apertureBase =
            static_cast<float>(2.0f * focalLength * (FOCAL_LENGTH_UNIT / APERTURE_UNIT));
        _horizontalAperture = static_cast<float>(apertureBase / m[0][0]);
        _verticalAperture = static_cast<float>(apertureBase / m[1][1]);
        _horizontalApertureOffset = static_cast<float>(0.5 * _horizontalAperture * m[2][0]);
        _verticalApertureOffset = static_cast<float>(0.5 * _verticalAperture * m[2][1]);
        _clippingRange = GfRange1f(static_cast<float>(m[3][2] / (m[2][2] - 1.0)),
                                   static_cast<float>(m[3][2] / (m[2][2] + 1.0)));
        return;
    }
    if (!(std::fabs(m[2][3]) < 1e-6)) {
        TF_WARN("GfCamera: Given projection matrix does not appear to be valid orthographic matrix.");
    }
    _projection = Orthographic;
    _horizontalAperture = static_cast<float>((2.0 / APERTURE_UNIT) / m[0][0]);
    _verticalAperture = static_cast<float>((2.0 / APERTURE_UNIT) / m[1][1]);
    _horizontalApertureOffset = static_cast<float>(-0.5 * _horizontalAperture * m[3][0]);
    _verticalApertureOffset = static_cast<float>(-0.5 * _verticalAperture * m[3][1]);
    const double halfDifference = 1.0 / m[2][2];
    const double halfSum = halfDifference * m[3][2];
    _clippingRange =
        GfRange1f(static_cast<float>(halfSum + halfDifference), static_cast<float>(halfSum - halfDifference));
}

GfMatrix4d GfCamera::GetTransform() const { return _transform; }
GfCamera::Projection GfCamera::GetProjection() const { return _projection; }
float GfCamera::GetHorizontalAperture() const { return _horizontalAperture; }
float GfCamera::GetVerticalAperture() const { return _verticalAperture; }
float GfCamera::GetHorizontalApertureOffset() const { return _horizontalApertureOffset; }
float GfCamera::GetVerticalApertureOffset() const { return _verticalApertureOffset; }
float GfCamera::GetFocalLength() const { return _focalLength; }
GfRange1f GfCamera::GetClippingRange() const { return _clippingRange; }
const std::vector<GfVec4f>& GfCamera::GetClippingPlanes() const { return _clippingPlanes; }
float GfCamera::GetFStop() const { return _fStop; }
float GfCamera::GetFocusDistance() const { return _focusDistance; }

float GfCamera::GetAspectRatio() const
{
    return _verticalAperture == 0.0f ? 0.0f : _horizontalAperture / _verticalAperture;
}

float GfCamera::GetFieldOfView(FOVDirection direction) const
{
    const float aperture = direction == FOVHorizontal ? _horizontalAperture : _verticalAperture;
    const float radians = static_cast<float>(
        2 * std::atan((aperture * APERTURE_UNIT) / (2 * _focalLength * FOCAL_LENGTH_UNIT)));
    return static_cast<float>(GfRadiansToDegrees(radians));
}

GfFrustum GfCamera::GetFrustum() const
{
    const GfVec2d max(_horizontalAperture / 2, _verticalAperture / 2);
    const GfVec2d offset(_horizontalApertureOffset, _verticalApertureOffset);
    GfRange2d window(-max, max);
    window += GfRange2d(offset, offset);
    window *= APERTURE_UNIT;
    if (_projection != Orthographic && _focalLength != 0) {
        window /= _focalLength * FOCAL_LENGTH_UNIT;
    }
    return GfFrustum(_transform, window, GfRange1d(_clippingRange.GetMin(), _clippingRange.GetMax()),
                     _projection == Orthographic ? GfFrustum::Orthographic : GfFrustum::Perspective);
}

bool GfCamera::operator==(const GfCamera& other) const
{
    return _transform == other._transform && _projection == other._projection &&
           _horizontalAperture == other._horizontalAperture && _verticalAperture == other._verticalAperture &&
           _horizontalApertureOffset == other._horizontalApertureOffset &&
           _verticalApertureOffset == other._verticalApertureOffset && _focalLength == other._focalLength &&
           _clippingRange == other._clippingRange && _clippingPlanes == other._clippingPlanes &&
           _fStop == other._fStop && _focusDistance == other._focusDistance;
}

bool GfCamera::operator!=(const GfCamera& other) const { return !(*this == other); }

PXR_NAMESPACE_CLOSE_SCOPE
