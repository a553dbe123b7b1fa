#pragma once

#include "chunk_building.h"

#include <pxr/usd/usd/prim.h>
#include <pxr/usd/usd/timeCode.h>

#include <string>

namespace vesk::renderers::embree {

/// The shown copies of a point instancer, sorted by prototype.
struct InstancerReading
{
    struct Prototype
    {
        PXR_NS::SdfPath path;
        std::vector<Copy> copies;
    };
    std::vector<Prototype> prototypes;
    std::string problem; ///< a sentence's end, empty where nothing is wrong
};

/// Reads a point instancer without the transforms of its prototypes' roots; inactive and invisible copies
/// are left out, the others keep their numbers.
InstancerReading readInstancer(const PXR_NS::UsdPrim& prim, PXR_NS::UsdTimeCode time);

} // namespace vesk::renderers::embree
