#include <cmath>
#include <vesk/usd/utils/camera_utils.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::usd::utils {

namespace {

GfVec3d row(const GfMatrix4d& transform, int index)
{
    return GfVec3d(transform[index][0], transform[index][1], transform[index][2]);
}

// A direction given as amounts along right, up and towards the front.
GfVec3f worldDirection(bool zUp, float right, float up, float front)
{
    return zUp ? GfVec3f(right, -front, up) : GfVec3f(right, up, front);
}

} // namespace

GfVec3d getCameraUDir(const GfMatrix4d& transform) { return row(transform, 0); }

GfVec3d getCameraVDir(const GfMatrix4d& transform) { return row(transform, 1); }

GfVec3d getCameraWDir(const GfMatrix4d& transform) { return row(transform, 2); }

GfVec3d getCameraPosition(const GfMatrix4d& transform) { return row(transform, 3); }

void setCameraPosition(GfMatrix4d& transform, const GfVec3d& position)
{
    for (int column = 0; column < 3; ++column)
        transform[3][column] = position[column];
}

GfVec3d getVec3dUpDir(bool zUp) { return zUp ? GfVec3d(0.0, 0.0, 1.0) : GfVec3d(0.0, 1.0, 0.0); }

GfVec3f frontViewDirection(bool zUp) { return worldDirection(zUp, 0.0f, 0.0f, 1.0f); }

GfVec3f rightViewDirection(bool zUp) { return worldDirection(zUp, 1.0f, 0.0f, 0.0f); }

GfVec3f topViewDirection(bool zUp) { return worldDirection(zUp, 0.0f, 1.0f, 0.0f); }

GfVec3f threeQuartersViewDirection(bool zUp)
{
    constexpr double kDegrees = 0.017453292519943295;
    const double azimuth = 35.0 * kDegrees;
    const double elevation = 25.0 * kDegrees;
    return worldDirection(zUp, static_cast<float>(std::cos(elevation) * std::sin(azimuth)),
                          static_cast<float>(std::sin(elevation)),
                          static_cast<float>(std::cos(elevation) * std::cos(azimuth)));
}

} // namespace vesk::usd::utils
