#include "mesh_extraction.h"
#include "shapes.h"
#include "stage_reading.h"

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

ShapeAxis readAxis(const UsdPrim& prim, UsdTimeCode time)
{
    const TfToken axis = readAttribute(prim, "axis", time, TfToken("Z"));
    return axis == "X" ? ShapeAxis::X : axis == "Y" ? ShapeAxis::Y : ShapeAxis::Z;
}

double readLength(const UsdPrim& prim, const char* name, UsdTimeCode time, double fallback)
{
    return readAttribute(prim, name, time, fallback);
}

bool usable(std::initializer_list<double> lengths)
{
    return std::all_of(lengths.begin(), lengths.end(), [](double l) { return std::isfinite(l) && l >= 0.0; });
}

Geometry makeShape(const UsdPrim& prim, UsdTimeCode time, std::string& problem)
{
    const TfToken type = prim.GetTypeName();
    const double radius = readLength(prim, "radius", time, type == "Capsule" ? 0.5 : 1.0);
    const double bottom = readLength(prim, "radiusBottom", time, type == "Capsule_1" ? 0.5 : 1.0);
    const double top = readLength(prim, "radiusTop", time, type == "Capsule_1" ? 0.5 : 1.0);
    const double height =
        readLength(prim, "height", time, type == "Capsule" || type == "Capsule_1" ? 1.0 : 2.0);
    const double size = readLength(prim, "size", time, 2.0);
    const double width = readLength(prim, "width", time, 2.0);
    const double length = readLength(prim, "length", time, 2.0);
    if (!usable({radius, bottom, top, height, size, width, length})) {
        problem = "has a size that is negative or not finite";
        return {};
    }
    const ShapeAxis axis = readAxis(prim, time);
    if (type == "Sphere") return makeSphere(radius);
    if (type == "Cube") return makeCube(size);
    if (type == "Cone") return makeCone(radius, height, axis);
    if (type == "Cylinder") return makeCylinder(radius, radius, height, axis);
    if (type == "Cylinder_1") return makeCylinder(bottom, top, height, axis);
    if (type == "Capsule") return makeCapsule(radius, radius, height, axis);
    if (type == "Capsule_1") return makeCapsule(bottom, top, height, axis);
    return makePlane(width, length, axis);
}

} // namespace

ShapeReading readImplicitShape(const UsdPrim& prim, UsdTimeCode time)
{
    ShapeReading reading;
    reading.geometry = makeShape(prim, time, reading.problem);
    if (!reading.problem.empty()) return reading;
    // The parts of an implicit shape have no names on the stage: its first colour stands for all of it.
    readDisplayPrimvars(prim, time, 1, 1, 1, reading.geometry);
    if (!reading.geometry.colors.empty()) {
        reading.geometry.colors.values.resize(1);
        reading.geometry.colors.interpolation = Interpolation::Constant;
    }
    if (!reading.geometry.opacities.empty()) {
        reading.geometry.opacities.values.resize(1);
        reading.geometry.opacities.interpolation = Interpolation::Constant;
    }
    reading.drawable = !reading.geometry.triangles.empty();
    return reading;
}

} // namespace vesk::renderers::embree
