#include "instancer_reading.h"

#include <pxr/base/vt/array.h>
#include <pxr/base/vt/types.h>
#include <pxr/usd/usd/attribute.h>
#include <pxr/usd/usd/relationship.h>
#include <pxr/usd/usdGeom/pointInstancer.h>

PXR_NAMESPACE_USING_DIRECTIVE

namespace vesk::renderers::embree {
namespace {

// The arrays that place the copies are as long as the list of prototype indices, or empty.
std::string problemOf(const UsdGeomPointInstancer& instancer, UsdTimeCode time, const VtIntArray& indices,
                      std::size_t prototypes)
{
    for (const int index : indices) {
        if (index < 0 || static_cast<std::size_t>(index) >= prototypes)
            return "has a prototype index out of range";
    }
    VtVec3fArray positions;
    instancer.GetPositionsAttr().Get(&positions, time);
    if (positions.size() != indices.size()) return "has not as many positions as prototype indices";
    return {};
}

} // namespace

InstancerReading readInstancer(const UsdPrim& prim, UsdTimeCode time)
{
    InstancerReading reading;
    const UsdGeomPointInstancer instancer(prim);
    SdfPathVector targets;
    instancer.GetPrototypesRel().GetForwardedTargets(&targets);
    VtIntArray indices;
    instancer.GetProtoIndicesAttr().Get(&indices, time);
    if (indices.empty()) return reading;
    reading.problem = problemOf(instancer, time, indices, targets.size());
    if (!reading.problem.empty()) return reading;

    VtArray<GfMatrix4d> places;
    if (!instancer.ComputeInstanceTransformsAtTime(&places, time, time,
                                                   UsdGeomPointInstancer::ExcludeProtoXform,
                                                   UsdGeomPointInstancer::IgnoreMask) ||
        places.size() != indices.size()) {
        reading.problem = "has arrays that do not place its copies";
        return reading;
    }
    const std::vector<bool> mask = instancer.ComputeMaskAtTime(time);
    for (const SdfPath& target : targets)
        reading.prototypes.push_back({target, {}});
    for (std::size_t i = 0; i < indices.size(); ++i) {
        if (!mask.empty() && i < mask.size() && !mask[i]) continue;
        reading.prototypes[static_cast<std::size_t>(indices[i])].copies.push_back(
            {places.cdata()[i], static_cast<int>(i)});
    }
    return reading;
}

} // namespace vesk::renderers::embree
