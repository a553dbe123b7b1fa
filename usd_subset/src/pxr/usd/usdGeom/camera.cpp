#include <pxr/usd/usdGeom/camera.h>

#include <pxr/base/gf/range1f.h>
#include <pxr/base/gf/vec2f.h>
#include <pxr/base/gf/vec4f.h>
#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/vt/array.h>

#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// Reads an attribute and hands its value on; a missing value leaves the camera's own, with a warning.
template <class T, class Use>
void _Read(const UsdAttribute& attribute, const UsdTimeCode& time, const Use& use)
{
    T value;
    if (attribute.Get(&value, time)) {
        use(value);
    } else {
        TF_WARN("<%s> has no value of its type; the camera keeps its default.",
                attribute.GetPath().GetText());
    }
}

GfCamera::Projection _ToProjection(const TfToken& token, const UsdAttribute& attribute)
{
    if (token != UsdGeomTokens->perspective && token != UsdGeomTokens->orthographic) {
        TF_WARN("<%s> is '%s', which is no projection; perspective is taken.", attribute.GetPath().GetText(),
                token.GetText());
    }
    return token == UsdGeomTokens->orthographic ? GfCamera::Orthographic : GfCamera::Perspective;
}

} // namespace

GfCamera UsdGeomCamera::GetCamera(const UsdTimeCode& time) const
{
    GfCamera camera;
    camera.SetTransform(ComputeLocalToWorldTransform(time));
    _Read<TfToken>(GetProjectionAttr(), time, [&](const TfToken& token) {
        camera.SetProjection(_ToProjection(token, GetProjectionAttr()));
    });
    const auto readFloat = [&](const UsdAttribute& attribute, void (GfCamera::*set)(float)) {
        _Read<float>(attribute, time, [&](float value) { (camera.*set)(value); });
    };
    readFloat(GetHorizontalApertureAttr(), &GfCamera::SetHorizontalAperture);
    readFloat(GetVerticalApertureAttr(), &GfCamera::SetVerticalAperture);
    readFloat(GetHorizontalApertureOffsetAttr(), &GfCamera::SetHorizontalApertureOffset);
    readFloat(GetVerticalApertureOffsetAttr(), &GfCamera::SetVerticalApertureOffset);
    readFloat(GetFocalLengthAttr(), &GfCamera::SetFocalLength);
    readFloat(GetFStopAttr(), &GfCamera::SetFStop);
    readFloat(GetFocusDistanceAttr(), &GfCamera::SetFocusDistance);
    _Read<GfVec2f>(GetClippingRangeAttr(), time,
                   [&](const GfVec2f& range) { camera.SetClippingRange(GfRange1f(range[0], range[1])); });
    _Read<VtArray<GfVec4f>>(GetClippingPlanesAttr(), time, [&](const VtArray<GfVec4f>& planes) {
        camera.SetClippingPlanes(std::vector<GfVec4f>(planes.cbegin(), planes.cend()));
    });
    return camera;
}

void UsdGeomCamera::SetFromCamera(const GfCamera& camera, const UsdTimeCode& time)
{
    const GfMatrix4d local = camera.GetTransform() * ComputeParentToWorldTransform(time).GetInverse();
    const UsdGeomXformOp op = MakeMatrixXform();
    if (!op) {
        return;
    }
    op.Set(local, time);
    GetProjectionAttr().Set(camera.GetProjection() == GfCamera::Orthographic ? UsdGeomTokens->orthographic
                                                                             : UsdGeomTokens->perspective,
                            time);
    GetHorizontalApertureAttr().Set(camera.GetHorizontalAperture(), time);
    GetVerticalApertureAttr().Set(camera.GetVerticalAperture(), time);
    GetHorizontalApertureOffsetAttr().Set(camera.GetHorizontalApertureOffset(), time);
    GetVerticalApertureOffsetAttr().Set(camera.GetVerticalApertureOffset(), time);
    GetFocalLengthAttr().Set(camera.GetFocalLength(), time);
    const GfRange1f clipping = camera.GetClippingRange();
    GetClippingRangeAttr().Set(GfVec2f(clipping.GetMin(), clipping.GetMax()), time);
    const std::vector<GfVec4f>& planes = camera.GetClippingPlanes();
    GetClippingPlanesAttr().Set(VtArray<GfVec4f>(planes.begin(), planes.end()), time);
    GetFStopAttr().Set(camera.GetFStop(), time);
    GetFocusDistanceAttr().Set(camera.GetFocusDistance(), time);
}

PXR_NAMESPACE_CLOSE_SCOPE
