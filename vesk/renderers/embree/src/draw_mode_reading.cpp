#include "draw_mode_reading.h"

#include "stage_reading.h"

#include <pxr/base/gf/range3d.h>
#include <pxr/usd/kind/registry.h>
#include <pxr/usd/sdf/assetPath.h>
#include <pxr/usd/usd/modelAPI.h>
#include <pxr/usd/usdGeom/bboxCache.h>
#include <pxr/usd/usdGeom/modelAPI.h>
#include <pxr/usd/usdGeom/tokens.h>

#include <array>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

constexpr float kLineWidth = 0.006f; // of the box's diagonal
constexpr float kCardGap = 1e-4f;    // of the box's diagonal, between the two cards of one axis

/// One of the six directions from which a card shows a model, with the directions of its picture.
struct Side
{
    const char* texture; ///< the attribute
    int axis;
    float sign;
    Vec3 right;
    Vec3 up;
};

// Pictures stand upright along z; those from above and below have y and -y at their upper borders.
const std::array<Side, 6>& sides()
{
    static const std::array<Side, 6> all = {{
        {"model:cardTextureXPos", 0, 1.0f, {0, 1, 0}, {0, 0, 1}},
        {"model:cardTextureXNeg", 0, -1.0f, {0, -1, 0}, {0, 0, 1}},
        {"model:cardTextureYPos", 1, 1.0f, {-1, 0, 0}, {0, 0, 1}},
        {"model:cardTextureYNeg", 1, -1.0f, {1, 0, 0}, {0, 0, 1}},
        {"model:cardTextureZPos", 2, 1.0f, {1, 0, 0}, {0, 1, 0}},
        {"model:cardTextureZNeg", 2, -1.0f, {1, 0, 0}, {0, -1, 0}},
    }};
    return all;
}

struct ModelBox
{
    Vec3 low;
    Vec3 high;
    float diagonal() const { return length(high - low); }
    Vec3 middle() const { return (low + high) * 0.5f; }
};

std::optional<ModelBox> boxOf(const UsdPrim& prim, UsdTimeCode time)
{
    UsdGeomBBoxCache cache(time, {UsdGeomTokens->default_, UsdGeomTokens->proxy, UsdGeomTokens->render},
                           true);
    const GfRange3d range = cache.ComputeUntransformedBound(prim).ComputeAlignedBox();
    if (range.IsEmpty()) return std::nullopt;
    const ModelBox box{Vec3(range.GetMin()), Vec3(range.GetMax())};
    return isFinite(box.low) && isFinite(box.high) ? std::optional<ModelBox>(box) : std::nullopt;
}

void addLine(Geometry& g, Vec3 from, Vec3 to, float radius)
{
    g.segments.push_back(static_cast<std::uint32_t>(g.points.size()));
    g.segmentCurve.push_back(static_cast<std::uint32_t>(g.segmentCurve.size()));
    g.points.insert(g.points.end(), {from, to});
    g.radii.insert(g.radii.end(), {radius, radius});
}

Geometry makeOrigin(const ModelBox& box)
{
    Geometry g;
    g.kind = GeometryKind::Curves;
    const float radius = 0.5f * kLineWidth * std::min(std::max(box.diagonal(), 1e-6f), 1.0f);
    for (const Vec3 end : {Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1)})
        addLine(g, Vec3(), end, radius);
    return g;
}

Geometry makeBounds(const ModelBox& box)
{
    Geometry g;
    g.kind = GeometryKind::Curves;
    const float radius = 0.5f * kLineWidth * std::max(box.diagonal(), 1e-6f);
    const auto corner = [&box](unsigned bits) {
        return Vec3(bits & 1 ? box.high.x : box.low.x, bits & 2 ? box.high.y : box.low.y,
                    bits & 4 ? box.high.z : box.low.z);
    };
    for (unsigned from = 0; from < 8; ++from) {
        for (unsigned bit = 1; bit < 8; bit <<= 1) {
            if (!(from & bit)) addLine(g, corner(from), corner(from | bit), radius);
        }
    }
    return g;
}

// Where a point lies in the picture that was taken from a side: from 0 at its left and lower borders to 1.
Vec4 pictureCoordinates(const Side& side, const ModelBox& box, Vec3 p)
{
    const auto along = [&](Vec3 axis) {
        const Vec3 size = box.high - box.low;
        const float extent = std::abs(dot(size, axis));
        return extent > 0.0f ? dot(p - box.middle(), axis) / extent + 0.5f : 0.5f;
    };
    return {{along(side.right), along(side.up), 0.0f, 1.0f}};
}

void addCard(Geometry& g, const Side& side, const Side& picture, const ModelBox& box, bool crosses)
{
    const Vec3 half = (box.high - box.low) * 0.5f;
    const Vec3 out = cross(side.right, side.up);
    const Vec3 middle = box.middle() + out * (crosses ? kCardGap * box.diagonal() : std::abs(dot(half, out)));
    const Vec3 r = side.right * std::abs(dot(half, side.right));
    const Vec3 u = side.up * std::abs(dot(half, side.up));
    const auto first = static_cast<std::uint32_t>(g.points.size());
    for (const Vec3 p : {middle - r - u, middle + r - u, middle + r + u, middle - r + u}) {
        g.points.push_back(p);
        g.primvars.front().values.values.push_back(pictureCoordinates(picture, box, p));
    }
    const auto face = static_cast<std::uint32_t>(g.faceCount++);
    for (const std::array<std::uint32_t, 3>& t : {std::array<std::uint32_t, 3>{0, 1, 2}, {0, 2, 3}}) {
        g.triangles.push_back({{first + t[0], first + t[1], first + t[2]}});
        g.corners.insert(g.corners.end(), {first + t[0], first + t[1], first + t[2]});
        g.faces.push_back(face);
    }
    g.outlineEdges.insert(g.outlineEdges.end(), {0b011, 0b110});
}

std::shared_ptr<const Material> cardMaterial(const std::shared_ptr<const Texture>& texture, Vec3 color)
{
    auto material = std::make_shared<Material>();
    material->usesDisplayColor = false;
    material->isOneSided = true;
    material->diffuse = MaterialInput::of(color);
    if (!texture) return material;
    auto reader = std::make_shared<TextureReader>();
    reader->texture = texture;
    reader->primvar = "st";
    reader->wrapS = reader->wrapT = TextureWrap::Clamp;
    reader->fallback = {{color.x, color.y, color.z, 1.0f}};
    material->diffuse.texture = reader;
    material->opacity.texture = reader;
    material->opacity.channel = 3;
    material->opacityThreshold = 0.1f;
    return material;
}

std::shared_ptr<const Texture> cardTexture(const UsdPrim& prim, const Side& side, UsdTimeCode time,
                                           TextureStore& textures)
{
    const SdfAssetPath asset = readAttribute(prim, side.texture, time, SdfAssetPath());
    const std::string& path =
        asset.GetResolvedPath().empty() ? asset.GetAssetPath() : asset.GetResolvedPath();
    return path.empty() ? nullptr : textures.at(path);
}

// Cards stand on the axes that have a picture, or on all of them where none has; an axis with one picture
// shows it from both sides.
void addCards(const UsdPrim& prim, UsdTimeCode time, TextureStore& textures, const ModelBox& box, Vec3 color,
              Geometry& g, SceneItem& item)
{
    std::array<std::shared_ptr<const Texture>, 6> pictures;
    bool any = false;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        pictures[i] = cardTexture(prim, sides()[i], time, textures);
        any = any || pictures[i];
    }
    const bool crosses =
        readAttribute(prim, "model:cardGeometry", time, UsdGeomTokens->cross) == UsdGeomTokens->cross;
    g.primvars.push_back({"st", {}});
    g.primvars.front().values.interpolation = Interpolation::Vertex;
    auto faces = std::make_shared<std::vector<std::uint16_t>>();
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const std::size_t source = pictures[i] ? i : i ^ 1u;
        if (any && !pictures[source]) continue;
        addCard(g, sides()[i], sides()[source], box, crosses);
        item.materials.subsets.push_back(cardMaterial(pictures[source], color));
        faces->push_back(static_cast<std::uint16_t>(item.materials.subsets.size()));
    }
    item.materials.faceSubset = faces;
}

} // namespace

TfToken appliedDrawMode(const UsdPrim& prim)
{
    if (!prim.IsModel()) return {};
    const UsdGeomModelAPI model(prim);
    bool applies = false;
    const UsdAttribute attribute = model.GetModelApplyDrawModeAttr();
    if (attribute && attribute.HasAuthoredValue()) {
        attribute.Get(&applies);
    } else {
        applies = UsdModelAPI(prim).IsKind(KindTokens->component);
    }
    if (!applies) return {};
    const TfToken mode = model.ComputeModelDrawMode();
    const bool known =
        mode == UsdGeomTokens->cards || mode == UsdGeomTokens->bounds || mode == UsdGeomTokens->origin;
    return known ? mode : TfToken();
}

std::optional<SceneItem> readStandIn(const UsdPrim& prim, const TfToken& mode, UsdTimeCode time,
                                     TextureStore& textures)
{
    const std::optional<ModelBox> box = boxOf(prim, time);
    if (!box) return std::nullopt;
    SceneItem item;
    item.path = prim.GetPath();
    Vec3 color(readAttribute(prim, "model:drawModeColor", time, GfVec3f(0.18f)));
    if (!isFinite(color)) color = Vec3(0.18f);
    item.displayColor = color;
    Geometry geometry;
    if (mode == UsdGeomTokens->cards) {
        addCards(prim, time, textures, *box, color, geometry, item);
    } else {
        geometry = mode == UsdGeomTokens->bounds ? makeBounds(*box) : makeOrigin(*box);
        geometry.faceCount = geometry.segments.size();
    }
    geometry.computeBox();
    item.geometry = std::make_shared<const Geometry>(std::move(geometry));
    return item;
}

} // namespace vesk::renderers::embree
