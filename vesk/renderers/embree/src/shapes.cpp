#include "shapes.h"

#include <array>

namespace vesk::renderers::embree {
namespace {

constexpr double kPi = 3.14159265358979323846;

/// A ring of a surface of revolution about z: where it lies and how the surface leans there.
struct Ring
{
    double radius;
    double z;
    double normalRadial;
    double normalZ;
};

// z stays z; a shape on x or y is turned so that its axis points there and its handedness is kept.
Vec3 toAxis(double x, double y, double z, ShapeAxis axis)
{
    const auto f = [](double v) { return static_cast<float>(v); };
    switch (axis) {
    case ShapeAxis::X:
        return {f(z), f(x), f(y)};
    case ShapeAxis::Y:
        return {f(y), f(z), f(x)};
    default:
        return {f(x), f(y), f(z)};
    }
}

void addPoint(Geometry& g, Vec3 point, Vec3 normal)
{
    g.points.push_back(point);
    g.normals.values.push_back(normal);
}

void addTriangle(Geometry& g, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint32_t face,
                 std::uint8_t edges)
{
    g.triangles.push_back({{a, b, c}});
    g.faces.push_back(face);
    g.corners.insert(g.corners.end(), {a, b, c});
    g.outlineEdges.push_back(edges);
}

// Joins consecutive rings by bands of quads; rings at the same place with other normals make a crease.
void addRevolution(Geometry& g, const std::vector<Ring>& rings, ShapeAxis axis)
{
    constexpr std::uint32_t columns = kShapeSegments + 1;
    const auto first = static_cast<std::uint32_t>(g.points.size());
    for (const Ring& ring : rings) {
        for (int i = 0; i <= kShapeSegments; ++i) {
            const double angle = i == kShapeSegments ? 0.0 : 2.0 * kPi * i / kShapeSegments;
            const double c = std::cos(angle);
            const double s = std::sin(angle);
            addPoint(g, toAxis(ring.radius * c, ring.radius * s, ring.z, axis),
                     normalized(toAxis(ring.normalRadial * c, ring.normalRadial * s, ring.normalZ, axis)));
        }
    }
    std::uint32_t face = g.faces.empty() ? 0 : g.faces.back() + 1;
    for (std::uint32_t r = 0; r + 1 < rings.size(); ++r) {
        const Ring& low = rings[r];
        const Ring& high = rings[r + 1];
        if (low.radius == high.radius && low.z == high.z) continue;
        for (std::uint32_t i = 0; i < kShapeSegments; ++i, ++face) {
            const std::uint32_t a = first + r * columns + i;
            const std::uint32_t d = a + columns;
            if (low.radius > 0.0) addTriangle(g, a, a + 1, d + 1, face, high.radius > 0.0 ? 0b011 : 0b111);
            if (high.radius > 0.0) addTriangle(g, a, d + 1, d, face, low.radius > 0.0 ? 0b110 : 0b111);
        }
    }
}

Geometry newShape()
{
    Geometry g;
    g.normals.interpolation = Interpolation::Vertex;
    return g;
}

void addSphereRings(std::vector<Ring>& rings, double radius, double centerZ, double fromAngle, double toAngle,
                    int bands)
{
    for (int i = 0; i <= bands; ++i) {
        const double a = fromAngle + (toAngle - fromAngle) * i / bands;
        const bool pole = std::abs(std::abs(a) - kPi / 2) < 1e-12;
        const double c = pole ? 0.0 : std::cos(a);
        rings.push_back({radius * c, centerZ + radius * std::sin(a), c, std::sin(a)});
    }
}

} // namespace

Geometry makeSphere(double radius)
{
    Geometry g = newShape();
    std::vector<Ring> rings;
    addSphereRings(rings, radius, 0.0, -kPi / 2, kPi / 2, kShapeSegments / 2);
    addRevolution(g, rings, ShapeAxis::Z);
    return g;
}

Geometry makeCylinder(double radiusBottom, double radiusTop, double height, ShapeAxis axis)
{
    Geometry g = newShape();
    const double z = height / 2;
    const double slope = radiusBottom - radiusTop;
    const std::vector<Ring> rings = {
        {0.0, -z, 0.0, -1.0},          {radiusBottom, -z, 0.0, -1.0}, {radiusBottom, -z, height, slope},
        {radiusTop, z, height, slope}, {radiusTop, z, 0.0, 1.0},      {0.0, z, 0.0, 1.0}};
    addRevolution(g, rings, axis);
    return g;
}

Geometry makeCone(double radius, double height, ShapeAxis axis)
{
    return makeCylinder(radius, 0.0, height, axis);
}

Geometry makeCapsule(double radiusBottom, double radiusTop, double height, ShapeAxis axis)
{
    // The caps are parts of spheres that meet the side where it touches them; with equal radii they are
    // halves.
    Geometry g = newShape();
    const double lean = height > 0.0 ? std::clamp((radiusBottom - radiusTop) / height, -1.0, 1.0) : 0.0;
    const double seam = std::asin(lean);
    std::vector<Ring> rings;
    addSphereRings(rings, radiusBottom, -height / 2, -kPi / 2, seam, kShapeSegments / 4);
    addSphereRings(rings, radiusTop, height / 2, seam, kPi / 2, kShapeSegments / 4);
    addRevolution(g, rings, axis);
    return g;
}

Geometry makeCube(double size)
{
    Geometry g = newShape();
    const double h = size / 2;
    constexpr std::array<ShapeAxis, 3> axes = {ShapeAxis::X, ShapeAxis::Y, ShapeAxis::Z};
    std::uint32_t face = 0;
    for (const ShapeAxis axis : axes) {
        for (const double side : {-1.0, 1.0}) {
            const auto first = static_cast<std::uint32_t>(g.points.size());
            const Vec3 normal = toAxis(0.0, 0.0, side, axis);
            addPoint(g, toAxis(-h, -h * side, h * side, axis), normal);
            addPoint(g, toAxis(h, -h * side, h * side, axis), normal);
            addPoint(g, toAxis(h, h * side, h * side, axis), normal);
            addPoint(g, toAxis(-h, h * side, h * side, axis), normal);
            addTriangle(g, first, first + 1, first + 2, face, 0b011);
            addTriangle(g, first, first + 2, first + 3, face, 0b110);
            ++face;
        }
    }
    return g;
}

Geometry makePlane(double width, double length, ShapeAxis axis)
{
    // Width runs along x and length along y of a plane on z; on y along x and z, on x along z and y.
    Geometry g = newShape();
    const double w = width / 2;
    const double l = length / 2;
    const Vec3 normal = toAxis(0.0, 0.0, 1.0, axis);
    const auto corner = [&](double a, double b) {
        return axis == ShapeAxis::Z ? toAxis(a, b, 0.0, axis) : toAxis(b, a, 0.0, axis);
    };
    addPoint(g, corner(-w, -l), normal);
    addPoint(g, corner(w, -l), normal);
    addPoint(g, corner(w, l), normal);
    addPoint(g, corner(-w, l), normal);
    addTriangle(g, 0, 1, 2, 0, 0b011);
    addTriangle(g, 0, 2, 3, 0, 0b110);
    return g;
}

} // namespace vesk::renderers::embree
