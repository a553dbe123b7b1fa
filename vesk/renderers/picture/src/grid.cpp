#include <vesk/renderers/picture/grid.h>

#include <vesk/renderers/picture/color.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::picture {
namespace {

Vec3 workingColor(const GfVec4f& c, bool corrected)
{
    return displayToWorking(Vec3(c[0], c[1], c[2]), corrected);
}

// How far a coordinate lies from the nearest line.
double toLine(double coordinate, double spacing)
{
    return std::abs(coordinate - spacing * std::round(coordinate / spacing));
}

} // namespace

double gridSpacing(float sceneRadius)
{
    return std::pow(10.0, std::floor(std::log10(std::max(static_cast<double>(sceneRadius), 1e-30)) - 0.3));
}

Grid::Grid(const FrameSettings& settings, bool zUp, const CameraRays& camera, const GfVec3d& sceneOrigin,
           float sceneRadius)
    : m_enabled(settings.gridEnabled && !settings.presentation && !settings.transparentBackground &&
                settings.gridThickness > 0.0f),
      m_zUp(zUp),
      m_perspective(camera.isPerspective()),
      m_origin(sceneOrigin),
      m_spacing(gridSpacing(sceneRadius)),
      m_reach(sceneRadius * 8.0f),
      m_thickness(settings.gridThickness),
      m_pixelWidth(camera.pixelWidth()),
      m_above(workingColor(settings.gridAboveColor, settings.colorCorrection)),
      m_below(workingColor(settings.gridBelowColor, settings.colorCorrection)),
      m_aboveAlpha(settings.gridAboveColor[3]),
      m_belowAlpha(settings.gridBelowColor[3])
{}

// A line of the wanted width, softened over one pixel and fading where lines come closer than pixels.
float Grid::_coverage(double coordinate, double spacing, float pixel) const
{
    const double half = 0.5 * m_thickness * pixel;
    const double distance = toLine(coordinate, spacing);
    const double edge = std::clamp((half + 0.5 * pixel - distance) / pixel, 0.0, 1.0);
    const double crowding = std::clamp(spacing / (14.0 * pixel), 0.0, 1.0);
    return static_cast<float>(edge * crowding * crowding);
}

Grid::Crossing Grid::cross(const ViewRay& ray) const
{
    Crossing result;
    if (!m_enabled) return result;
    const int upAxis = m_zUp ? 2 : 1;
    const float d[3] = {ray.direction.x, ray.direction.y, ray.direction.z};
    const float o[3] = {ray.origin.x, ray.origin.y, ray.origin.z};
    const double height = o[upAxis] + m_origin[upAxis];
    const double slope = d[upAxis];
    if (std::abs(slope) < 1e-6) return result;
    const double t = -height / slope;
    if (!(t > ray.tClip && t < ray.tFar)) return result;

    const int a = 0;
    const int b = m_zUp ? 1 : 2;
    const double x = o[a] + t * d[a] + m_origin[a];
    const double y = o[b] + t * d[b] + m_origin[b];
    const float span = m_perspective ? static_cast<float>(t) : 1.0f;
    const float pixel = std::max(m_pixelWidth * span, 1e-30f);
    // A pixel covers more of the ground along the view than across it, the flatter the ray the more.
    const auto lean = static_cast<float>(1.0 / std::max(std::abs(slope), 0.02));
    const float pixelX = pixel * (1.0f + (lean - 1.0f) * std::abs(d[a]));
    const float pixelY = pixel * (1.0f + (lean - 1.0f) * std::abs(d[b]));

    const float fine = std::max(_coverage(x, m_spacing, pixelX), _coverage(y, m_spacing, pixelY));
    const float coarse =
        std::max(_coverage(x, 10.0 * m_spacing, pixelX), _coverage(y, 10.0 * m_spacing, pixelY));
    const double fromCenter = std::hypot(x - m_origin[a], y - m_origin[b]) / m_reach;
    const auto fade = static_cast<float>(std::clamp(1.0 - fromCenter * fromCenter, 0.0, 1.0));
    const bool fromAbove = slope < 0.0;
    const float strength = std::max(0.45f * fine, coarse) * fade * fade;
    result.t = static_cast<float>(t);
    result.alpha = std::clamp(strength * (fromAbove ? m_aboveAlpha : m_belowAlpha), 0.0f, 1.0f);
    result.color = fromAbove ? m_above : m_below;
    return result;
}

} // namespace vesk::renderers::picture
