#pragma once

/// CameraUtilScreenWindowParameters: a camera as screen window, field of view and view matrix.

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/matrix4d.h>
#include <pxr/base/gf/vec4d.h>
#include <pxr/imaging/cameraUtil/api.h>
#include <pxr/pxr.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The parameters with which renderers of the RenderMan interface are set up.
class VESK_USD_API CameraUtilScreenWindowParameters
{
public:
    /// The screen window of a perspective camera has size 2 in the fit direction.
    CameraUtilScreenWindowParameters(const GfCamera& camera,
                                     GfCamera::FOVDirection fitDirection = GfCamera::FOVHorizontal);

    /// Returns (left, right, bottom, top).
    const GfVec4d& GetScreenWindow() const { return _screenWindow; }
    /// Returns the angle in degrees between (-1, 0) and (1, 0) of the screen window.
    double GetFieldOfView() const { return _fieldOfView; }
    /// Returns the matrix from world space to that of a camera that looks along +z with +y up.
    const GfMatrix4d& GetZFacingViewMatrix() const { return _zFacingViewMatrix; }

private:
    GfVec4d _screenWindow;
    double _fieldOfView;
    GfMatrix4d _zFacingViewMatrix;
};

PXR_NAMESPACE_CLOSE_SCOPE
