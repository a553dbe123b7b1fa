#include <pxr/base/gf/bbox3d.h>
#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/frustum.h>
#include <pxr/base/gf/interval.h>
#include <pxr/base/gf/line.h>
#include <pxr/base/gf/lineSeg.h>
#include <pxr/base/gf/plane.h>
#include <pxr/base/gf/ray.h>
#include <pxr/base/gf/rect2i.h>
#include <pxr/base/gf/rotation.h>
#include <pxr/base/gf/size2.h>
#include <pxr/base/gf/size3.h>
#include <pxr/base/gf/transform.h>
#include <pxr/base/tf/enum.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/base/tf/type.h>

PXR_NAMESPACE_OPEN_SCOPE

// The types that can be elements of arrays are defined where arrays are.
TF_REGISTRY_FUNCTION(TfType)
{
    TfType::Define<GfBBox3d>();
    TfType::Define<GfFrustum>();
    TfType::Define<GfInterval>();
    TfType::Define<GfLine>();
    TfType::Define<GfLineSeg>();
    TfType::Define<GfPlane>();
    TfType::Define<GfRay>();
    TfType::Define<GfRect2i>();
    TfType::Define<GfRotation>();
    TfType::Define<GfSize2>();
    TfType::Define<GfSize3>();
    TfType::Define<GfTransform>();
}

TF_REGISTRY_FUNCTION(TfEnum)
{
    TF_ADD_ENUM_NAME(GfCamera::Perspective, "perspective");
    TF_ADD_ENUM_NAME(GfCamera::Orthographic, "orthographic");
    TF_ADD_ENUM_NAME(GfCamera::FOVHorizontal, "FOVHorizontal");
    TF_ADD_ENUM_NAME(GfCamera::FOVVertical, "FOVVertical");
    TF_ADD_ENUM_NAME(GfFrustum::Orthographic);
    TF_ADD_ENUM_NAME(GfFrustum::Perspective);
}

PXR_NAMESPACE_CLOSE_SCOPE
