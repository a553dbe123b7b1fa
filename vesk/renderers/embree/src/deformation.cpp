#include "deformation.h"

#include <algorithm>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {

GfMatrix4d Deformation::_matrixAt(std::size_t point) const
{
    GfMatrix4d sum(0.0);
    const std::size_t first = isRigid ? 0 : point * perPoint;
    for (std::size_t i = first; i < first + perPoint; ++i) {
        const auto joint = static_cast<std::size_t>(jointIndices[i]);
        if (weights[i] != 0.0f) sum += joints[joint] * static_cast<double>(weights[i]);
    }
    return sum;
}

void Deformation::movePoints(std::vector<Vec3>& points) const
{
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (i < offsets.size()) points[i] += offsets[i];
        if (perPoint == 0) continue;
        // The weights of a point may sum to anything: the matrix's last column is not to be divided by.
        points[i] = Vec3(_matrixAt(i).TransformAffine(points[i].toGfd()));
    }
}

Vec3 Deformation::turnedNormal(Vec3 normal, std::size_t point) const
{
    if (point < normalOffsets.size()) normal += normalOffsets[point];
    if (perPoint != 0) normal = Mat3::forNormals(_matrixAt(point)).apply(normal);
    return normalized(normal, normal);
}

void turnNormals(Primvar<Vec3>& normals, const Deformation& deformation, const std::vector<int>& corners)
{
    const bool byCorner = normals.interpolation == Interpolation::FaceVarying;
    const bool byPoint =
        normals.interpolation == Interpolation::Vertex || normals.interpolation == Interpolation::Varying;
    if (!byCorner && !byPoint) return;
    const std::size_t count =
        byCorner ? std::min(corners.size(), normals.values.size()) : normals.values.size();
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t point = byCorner ? static_cast<std::size_t>(corners[i]) : i;
        normals.values[i] = deformation.turnedNormal(normals.values[i], point);
    }
}

} // namespace vesk::renderers::embree
