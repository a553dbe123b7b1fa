#include <apps/support/json.h>

#include <cmath>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::apps {

Json jsonNumber(double value)
{
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    return value;
}

Json jsonVector(const GfVec3d& vector)
{
    return Json::array({jsonNumber(vector[0]), jsonNumber(vector[1]), jsonNumber(vector[2])});
}

Json jsonMatrix(const GfMatrix4d& matrix)
{
    Json rows = Json::array();
    for (int r = 0; r < 4; ++r) {
        Json row = Json::array();
        for (int c = 0; c < 4; ++c)
            row.push_back(jsonNumber(matrix[r][c]));
        rows.push_back(std::move(row));
    }
    return rows;
}

Json jsonBounds(const GfRange3f& bounds)
{
    if (bounds.IsEmpty()) return {{"empty", true}, {"min", nullptr}, {"max", nullptr}};
    return {{"empty", false},
            {"min", jsonVector(GfVec3d(bounds.GetMin()))},
            {"max", jsonVector(GfVec3d(bounds.GetMax()))}};
}

Json jsonCamera(const GfCamera& camera)
{
    Json planes = Json::array();
    for (const GfVec4f& plane : camera.GetClippingPlanes()) {
        planes.push_back(
            {jsonNumber(plane[0]), jsonNumber(plane[1]), jsonNumber(plane[2]), jsonNumber(plane[3])});
    }
    const GfRange1f range = camera.GetClippingRange();
    const bool perspective = camera.GetProjection() == GfCamera::Perspective;
    return {{"transform", jsonMatrix(camera.GetTransform())},
            {"projection", perspective ? "perspective" : "orthographic"},
            {"horizontalAperture", jsonNumber(camera.GetHorizontalAperture())},
            {"verticalAperture", jsonNumber(camera.GetVerticalAperture())},
            {"horizontalApertureOffset", jsonNumber(camera.GetHorizontalApertureOffset())},
            {"verticalApertureOffset", jsonNumber(camera.GetVerticalApertureOffset())},
            {"focalLength", jsonNumber(camera.GetFocalLength())},
            {"fStop", jsonNumber(camera.GetFStop())},
            {"focusDistance", jsonNumber(camera.GetFocusDistance())},
            {"clippingRange", Json::array({jsonNumber(range.GetMin()), jsonNumber(range.GetMax())})},
            {"clippingPlanes", std::move(planes)}};
}

} // namespace vesk::apps
