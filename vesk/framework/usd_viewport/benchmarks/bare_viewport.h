#pragma once

#include <pxr/base/gf/camera.h>
#include <pxr/base/gf/range3f.h>
#include <pxr/base/gf/rotation.h>
#include <vesk/usd/utils/camera_utils.h>

#include <cmath>

namespace vesk::framework::usd_viewport::benchmarks {

/// The gestures' arithmetic and nothing else: one copy of the camera, written out on Gf types. What the
/// camera utilities compute (clipping range, focus) it computes through them, as the model does.
class BareViewport
{
public:
    using GfCamera = PXR_NS::GfCamera;
    using GfMatrix4d = PXR_NS::GfMatrix4d;
    using GfRotation = PXR_NS::GfRotation;
    using GfVec3d = PXR_NS::GfVec3d;

    BareViewport(const GfCamera& start, float startDistance, const int (&size)[2],
                 const PXR_NS::GfRange3f& sceneBounds)
        : camera(start),
          distance(startDistance),
          width(static_cast<float>(size[0])),
          height(static_cast<float>(size[1])),
          bounds(sceneBounds)
    {}

    void orbitBy(float yawDegrees, float pitchDegrees)
    {
        if (yawDegrees == 0.0f && pitchDegrees == 0.0f) return;
        GfCamera next = camera;
        const GfMatrix4d xf = next.GetTransform();
        const GfVec3d u = row(xf, 0), v = row(xf, 1), w = row(xf, 2), p = row(xf, 3);
        const GfRotation yaw(up(), yawDegrees);
        const GfRotation pitch(u, pitchDegrees);
        const GfVec3d u1 = yaw.TransformDir(pitch.TransformDir(u));
        const GfVec3d v1 = yaw.TransformDir(pitch.TransformDir(v));
        const GfVec3d w1 = yaw.TransformDir(pitch.TransformDir(w));
        const double d = distance;
        finish(next, matrix(u1, v1, w1, p - w * d + w1 * d), distance);
    }

    /// As orbitBy() with the matrix of each rotation made once, where GfRotation makes one for every
    /// direction.
    void orbitByMatrices(float yawDegrees, float pitchDegrees)
    {
        if (yawDegrees == 0.0f && pitchDegrees == 0.0f) return;
        GfCamera next = camera;
        const GfMatrix4d xf = next.GetTransform();
        const GfVec3d u = row(xf, 0), v = row(xf, 1), w = row(xf, 2), p = row(xf, 3);
        const GfRotation yaw(up(), yawDegrees);
        const GfRotation pitch(u, pitchDegrees);
        const GfMatrix4d first = GfMatrix4d().SetRotate(pitch);
        const GfMatrix4d second = GfMatrix4d().SetRotate(yaw);
        const GfVec3d u1 = second.TransformDir(first.TransformDir(u));
        const GfVec3d v1 = second.TransformDir(first.TransformDir(v));
        const GfVec3d w1 = second.TransformDir(first.TransformDir(w));
        const double d = distance;
        finish(next, matrix(u1, v1, w1, p - w * d + w1 * d), distance);
    }

    void orbit(float dx, float dy) { orbitBy(-(dx / width) * 360.0f, -(dy / height) * 360.0f); }

    void rotate(float dx, float dy)
    {
        if (dx == 0.0f && dy == 0.0f) return;
        GfCamera next = camera;
        const GfMatrix4d xf = next.GetTransform();
        const GfVec3d u = row(xf, 0);
        const GfRotation turn =
            GfRotation(u, -(dy / height) * 360.0f) * GfRotation(up(), -(dx / width) * 360.0f);
        finish(next,
               matrix(turn.TransformDir(u), turn.TransformDir(row(xf, 1)), turn.TransformDir(row(xf, 2)),
                      row(xf, 3)),
               distance);
    }

    void pan(float dx, float dy)
    {
        if (dx == 0.0f && dy == 0.0f) return;
        GfCamera next = camera;
        const float fov = next.GetFieldOfView(GfCamera::FOVVertical);
        const float t = std::tan(static_cast<float>(static_cast<double>(fov * 0.5f) * 0.017453292519943295));
        const float viewHeight = t * (2.0f * distance);
        const float viewWidth = (width / height) * viewHeight;
        const double alongU = -(dx / width) * viewWidth;
        const double alongV = (dy / height) * viewHeight;
        GfMatrix4d xf = next.GetTransform();
        setPosition(xf, row(xf, 3) + row(xf, 0) * alongU + row(xf, 1) * alongV);
        finish(next, xf, distance);
    }

    void zoom(float dx, float dy)
    {
        if (dx == 0.0f && dy == 0.0f) return;
        GfCamera next = camera;
        const float before = distance;
        const float amount = (dx / width + dy / height) * before;
        distance = before - amount;
        GfMatrix4d xf = next.GetTransform();
        setPosition(xf, row(xf, 3) - row(xf, 2) * static_cast<double>(amount));
        next.SetTransform(xf);
        usd::utils::updateGfCameraNearFar(next, zUp, distance, before, bounds);
        const float delta = distance - before;
        const float focus = next.GetFocusDistance();
        if (focus > 0.0f && focus + delta > 0.0f) next.SetFocusDistance(focus + delta);
        accept(next);
    }

    void move(float du, float dv, float dw)
    {
        if (du == 0.0f && dv == 0.0f && dw == 0.0f) return;
        GfCamera next = camera;
        distance += dw;
        GfMatrix4d xf = next.GetTransform();
        setPosition(xf, row(xf, 3) + row(xf, 0) * static_cast<double>(du) +
                            row(xf, 1) * static_cast<double>(dv) + row(xf, 2) * static_cast<double>(dw));
        finish(next, xf, distance);
    }

    GfCamera camera;
    float distance;
    float width;
    float height;
    bool zUp = false;
    PXR_NS::GfRange3f bounds;

private:
    static GfVec3d row(const GfMatrix4d& m, int index)
    {
        return GfVec3d(m[index][0], m[index][1], m[index][2]);
    }
    static GfMatrix4d matrix(const GfVec3d& u, const GfVec3d& v, const GfVec3d& w, const GfVec3d& p)
    {
        return GfMatrix4d(u[0], u[1], u[2], 0.0, v[0], v[1], v[2], 0.0, w[0], w[1], w[2], 0.0, p[0], p[1],
                          p[2], 1.0);
    }
    static void setPosition(GfMatrix4d& m, const GfVec3d& p)
    {
        m[3][0] = p[0];
        m[3][1] = p[1];
        m[3][2] = p[2];
    }
    GfVec3d up() const { return zUp ? GfVec3d(0.0, 0.0, 1.0) : GfVec3d(0.0, 1.0, 0.0); }

    void finish(GfCamera& next, const GfMatrix4d& transform, float clipDistance)
    {
        next.SetTransform(transform);
        usd::utils::updateGfCameraNearFar(next, zUp, distance, clipDistance, bounds);
        accept(next);
    }
    void accept(GfCamera& next)
    {
        usd::utils::checkGfCameraFocusDistance(next, bounds);
        camera = std::move(next);
    }
};

} // namespace vesk::framework::usd_viewport::benchmarks
