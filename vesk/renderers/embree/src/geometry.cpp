#include "geometry.h"

#include <limits>

namespace vesk::renderers::embree {

void Geometry::addSmoothNormals()
{
    normals.interpolation = Interpolation::Vertex;
    normals.values.assign(points.size(), Vec3());
    for (const Triangle& t : triangles) {
        const Vec3 a = points[t.point[0]];
        const Vec3 n = cross(points[t.point[1]] - a, points[t.point[2]] - a);
        for (const std::uint32_t p : t.point) {
            normals.values[p] += n;
        }
    }
    for (Vec3& n : normals.values) {
        n = normalized(n);
    }
}

void Geometry::computeBox()
{
    lower = Vec3(points.empty() ? 0.0f : std::numeric_limits<float>::max());
    upper = Vec3(points.empty() ? 0.0f : std::numeric_limits<float>::lowest());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Vec3 r(radii.empty() ? 0.0f : radii[i]);
        const Vec3 low = points[i] - r;
        const Vec3 high = points[i] + r;
        lower = {std::min(lower.x, low.x), std::min(lower.y, low.y), std::min(lower.z, low.z)};
        upper = {std::max(upper.x, high.x), std::max(upper.y, high.y), std::max(upper.z, high.z)};
    }
}

} // namespace vesk::renderers::embree
