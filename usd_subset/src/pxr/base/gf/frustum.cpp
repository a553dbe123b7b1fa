#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/math.h>
#include <pxr/base/gf/ostreamHelpers.h>
#include <pxr/base/tf/diagnostic.h>

#include <algorithm>
#include <cmath>
#include <ostream>

PXR_NAMESPACE_OPEN_SCOPE

GfFrustum::GfFrustum()
    : _position(0),
      _window(GfVec2d(-1.0), GfVec2d(1.0)),
      _nearFar(1.0, 10.0),
      _viewDistance(5.0),
      _projectionType(Perspective)
{
    _rotation.SetIdentity();
}

GfFrustum::GfFrustum(const GfVec3d& position, const GfRotation& rotation, const GfRange2d& window,
                     const GfRange1d& nearFar, GfFrustum::ProjectionType projectionType, double viewDistance)
    : _position(position),
      _rotation(rotation),
      _window(window),
      _nearFar(nearFar),
      _viewDistance(viewDistance),
      _projectionType(projectionType)
{}

GfFrustum::GfFrustum(const GfMatrix4d& camToWorldXf, const GfRange2d& window, const GfRange1d& nearFar,
                     GfFrustum::ProjectionType projectionType, double viewDistance)
    : _window(window), _nearFar(nearFar), _viewDistance(viewDistance), _projectionType(projectionType)
{
    SetPositionAndRotationFromMatrix(camToWorldXf);
}

void GfFrustum::SetPositionAndRotationFromMatrix(const GfMatrix4d& camToWorldXf)
{
    GfMatrix4d rigid = camToWorldXf;
    if (!rigid.IsRightHanded()) {
        rigid = GfMatrix4d(GfVec4d(-1.0, 1.0, 1.0, 1.0)) * rigid;
    }
    rigid.Orthonormalize();
    SetRotation(rigid.ExtractRotation());
    SetPosition(rigid.ExtractTranslation());
}

void GfFrustum::SetPerspective(double fieldOfViewHeight, double aspectRatio, double nearDistance,
                               double farDistance)
{
    SetPerspective(fieldOfViewHeight, true, aspectRatio, nearDistance, farDistance);
}

void GfFrustum::SetPerspective(double fieldOfView, bool isFovVertical, double aspectRatio,
                               double nearDistance, double farDistance)
{
    if (aspectRatio == 0.0) {
        aspectRatio = 1.0;
    }
    const double extent = std::tan(GfDegreesToRadians(fieldOfView / 2.0)) * GetReferencePlaneDepth();
    const GfVec2d max =
        isFovVertical ? GfVec2d(extent * aspectRatio, extent) : GfVec2d(extent, extent / aspectRatio);
    SetProjectionType(Perspective);
    SetWindow(GfRange2d(-max, max));
    SetNearFar(GfRange1d(nearDistance, farDistance));
}

bool GfFrustum::GetPerspective(double* fieldOfViewHeight, double* aspectRatio, double* nearDistance,
                               double* farDistance) const
{
    return GetPerspective(true, fieldOfViewHeight, aspectRatio, nearDistance, farDistance);
}

bool GfFrustum::GetPerspective(bool isFovVertical, double* fieldOfView, double* aspectRatio,
                               double* nearDistance, double* farDistance) const
{
    if (_projectionType != Perspective) {
        return false;
    }
    const GfVec2d size = _window.GetSize();
    *fieldOfView =
        2.0 * GfRadiansToDegrees(std::atan(size[isFovVertical] / (2.0 * GetReferencePlaneDepth())));
    *aspectRatio = size[0] / size[1];
    *nearDistance = _nearFar.GetMin();
    *farDistance = _nearFar.GetMax();
    return true;
}

double GfFrustum::GetFOV(bool isFovVertical) const
{
    double fieldOfView = 0.0, aspectRatio, nearDistance, farDistance;
    GetPerspective(isFovVertical, &fieldOfView, &aspectRatio, &nearDistance, &farDistance);
    return fieldOfView;
}

void GfFrustum::SetOrthographic(double left, double right, double bottom, double top, double nearPlane,
                                double farPlane)
{
    SetProjectionType(Orthographic);
    SetWindow(GfRange2d(GfVec2d(left, bottom), GfVec2d(right, top)));
    SetNearFar(GfRange1d(nearPlane, farPlane));
}

bool GfFrustum::GetOrthographic(double* left, double* right, double* bottom, double* top, double* nearPlane,
                                double* farPlane) const
{
    if (_projectionType != Orthographic) {
        return false;
    }
    *left = _window.GetMin()[0];
    *right = _window.GetMax()[0];
    *bottom = _window.GetMin()[1];
    *top = _window.GetMax()[1];
    *nearPlane = _nearFar.GetMin();
    *farPlane = _nearFar.GetMax();
    return true;
}

void GfFrustum::FitToSphere(const GfVec3d& center, double radius, double slack)
{
    if (_projectionType == Orthographic) {
        _viewDistance = radius + slack;
        SetWindow(GfRange2d(GfVec2d(-radius), GfVec2d(radius)));
    } else {
        // The half size of the window in its smaller dimension, the larger half where it is off centre.
        const size_t dimension = ComputeAspectRatio() > 1.0 ? 1 : 0;
        const double min = _window.GetMin()[dimension];
        const double max = _window.GetMax()[dimension];
        const bool useMin = !(min > 0.0) && (max < 0.0 || -min > max);
        double halfSize = std::fabs(useMin ? min : max);
        if (halfSize == 0.0) {
            halfSize = 1.0;
        }
        _viewDistance = radius * (1.0 / halfSize) * std::sqrt(GfSqr(halfSize) + GfSqr(_nearFar.GetMin()));
    }
    const double nearDistance = _viewDistance - (radius + slack);
    SetNearFar(GfRange1d(nearDistance, nearDistance + 2.0 * (radius + slack)));
    SetPosition(center - _viewDistance * ComputeViewDirection());
}

namespace {

// The rotation of a frame given by where the view and the up direction come to lie.
GfRotation RotationOfFrame(const GfVec3d& view, const GfVec3d& up)
{
    GfMatrix4d frame(1.0);
    frame.SetRow3(0, GfCross(view, up).GetNormalized());
    frame.SetRow3(1, up);
    frame.SetRow3(2, -view);
    return frame.ExtractRotation();
}

} // namespace

GfFrustum& GfFrustum::Transform(const GfMatrix4d& matrix)
{
    GfVec3d view = matrix.TransformDir(ComputeViewDirection());
    GfVec3d up = matrix.TransformDir(ComputeUpVector());
    const double scale = view.Normalize();
    up.Normalize();

    GfFrustum moved;
    moved._projectionType = _projectionType;
    moved._position = matrix.Transform(_position);
    moved._rotation = RotationOfFrame(view, up);
    moved._nearFar = _nearFar * scale;
    moved._viewDistance = _viewDistance * scale;

    // The window's corners are moved as points and then brought back to the plane in front of the new viewer.
    GfVec3d corners[2] = {GfVec3d(_window.GetMin()[0], _window.GetMin()[1], -1.0),
                          GfVec3d(_window.GetMax()[0], _window.GetMax()[1], -1.0)};
    for (GfVec3d& corner : corners) {
        corner = matrix.Transform(_position + _rotation.TransformDir(corner)) - moved._position;
        corner = moved._rotation.GetInverse().TransformDir(corner);
        if (_projectionType == Perspective) {
            corner /= scale;
        }
    }
    // A mirroring matrix exchanges the sides.
    for (int i = 0; i != 2; ++i) {
        if (corners[0][i] > corners[1][i]) {
            std::swap(corners[0][i], corners[1][i]);
        }
    }
    moved._window = GfRange2d(GfVec2d(corners[0].data()), GfVec2d(corners[1].data()));
    return *this = moved;
}

std::ostream& operator<<(std::ostream& out, const GfFrustum& f)
{
    const bool isPerspective = f.GetProjectionType() == GfFrustum::Perspective;
    return out << '[' << f.GetPosition() << " " << f.GetRotation() << " " << f.GetWindow() << " "
               << f.GetNearFar() << " " << Gf_OstreamHelperP(f.GetViewDistance()) << " "
               << (isPerspective ? "Perspective" : "Orthographic") << ']';
}

PXR_NAMESPACE_CLOSE_SCOPE
