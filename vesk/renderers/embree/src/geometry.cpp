#include "geometry.h"

#include <limits>

namespace vesk::renderers::embree {

void Geometry::addSmoothNormals(float leastCosine)
{
    std::vector<Vec3> faceNormals;
    std::size_t cornerCount = 0;
    std::vector<std::vector<std::uint32_t>> facesAround(points.size());
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        const std::uint32_t* p = triangles[i].point;
        if (faces[i] >= faceNormals.size()) faceNormals.resize(faces[i] + std::size_t(1));
        faceNormals[faces[i]] += cross(points[p[1]] - points[p[0]], points[p[2]] - points[p[0]]);
        for (int k = 0; k < 3; ++k) {
            cornerCount =
                std::max<std::size_t>(cornerCount, corners[3 * i + static_cast<std::size_t>(k)] + 1);
            std::vector<std::uint32_t>& around = facesAround[p[k]];
            // The triangles of one face follow each other.
            if (around.empty() || around.back() != faces[i]) around.push_back(faces[i]);
        }
    }
    normals.interpolation = Interpolation::FaceVarying;
    normals.values.assign(cornerCount, Vec3());
    for (std::size_t i = 0; i < triangles.size(); ++i) {
        const Vec3 own = normalized(faceNormals[faces[i]]);
        for (std::size_t k = 0; k < 3; ++k) {
            Vec3 sum;
            for (const std::uint32_t face : facesAround[triangles[i].point[k]]) {
                if (dot(own, normalized(faceNormals[face])) >= leastCosine) sum += faceNormals[face];
            }
            normals.values[corners[3 * i + k]] = normalized(sum, own);
        }
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
