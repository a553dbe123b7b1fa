#include <pxr/usd/usdGeom/boundable.h>

#include <pxr/base/tf/diagnostic.h>
#include <pxr/base/tf/hash.h>
#include <pxr/base/tf/registryManager.h>
#include <pxr/usd/usd/primTypeInfo.h>
#include <pxr/usd/usdGeom/boundableComputeExtent.h>

#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

/// The extent functions by schema type.
class _Functions
{
public:
    static _Functions& Get()
    {
        static _Functions* const functions = new _Functions;
        return *functions;
    }

    bool Add(const TfType& type, UsdGeomComputeExtentFunction function)
    {
        std::unique_lock<std::shared_mutex> lock(_mutex);
        _found.clear();
        return _byType.emplace(type, function).second;
    }

    /// The function of a type or of the nearest type that it derives from; null where there is none.
    UsdGeomComputeExtentFunction Find(const TfType& type)
    {
        {
            std::shared_lock<std::shared_mutex> lock(_mutex);
            const auto known = _found.find(type);
            if (known != _found.end()) {
                return known->second;
            }
        }
        std::vector<TfType> candidates;
        type.GetAllAncestorTypes(&candidates);
        std::unique_lock<std::shared_mutex> lock(_mutex);
        UsdGeomComputeExtentFunction found = nullptr;
        for (const TfType& candidate : candidates) {
            const auto it = _byType.find(candidate);
            if (it != _byType.end()) {
                found = it->second;
                break;
            }
        }
        _found[type] = found;
        return found;
    }

private:
    mutable std::shared_mutex _mutex;
    std::unordered_map<TfType, UsdGeomComputeExtentFunction, TfHash> _byType;
    std::unordered_map<TfType, UsdGeomComputeExtentFunction, TfHash> _found; // answers given before
};

bool _ComputeFromFunction(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                          const GfMatrix4d* transform, VtVec3fArray* extent)
{
    if (!boundable) {
        TF_CODING_ERROR("No extent can be computed: the prim is invalid or not boundable.");
        return false;
    }
    // Runs what TF_REGISTRY_FUNCTION(UsdGeomBoundable) left, here and in other libraries.
    TfRegistryManager::GetInstance().SubscribeTo<UsdGeomBoundable>();
    const UsdPrim prim = boundable.GetPrim();
    const UsdGeomComputeExtentFunction function =
        _Functions::Get().Find(prim.GetPrimTypeInfo().GetSchemaType());
    VtVec3fArray computed;
    if (!function || !function(boundable, time, transform, &computed)) {
        return false;
    }
    if (computed.size() != 2) {
        TF_CODING_ERROR("The extent function for <%s> gave %zu corners instead of 2.",
                        prim.GetPath().GetText(), computed.size());
        return false;
    }
    *extent = std::move(computed);
    return true;
}

} // namespace

bool UsdGeomBoundable::ComputeExtent(const UsdTimeCode& time, VtVec3fArray* extent) const
{
    const UsdAttribute attribute = GetExtentAttr();
    if (attribute.HasAuthoredValue() && attribute.Get(extent, time)) {
        if (extent->size() == 2) {
            return true;
        }
        TF_WARN("The extent authored on <%s> has %zu corners instead of 2; it is computed instead.",
                GetPath().GetText(), extent->size());
    }
    return ComputeExtentFromPlugins(*this, time, extent);
}

bool UsdGeomBoundable::ComputeExtentFromPlugins(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                                                VtVec3fArray* extent)
{
    return _ComputeFromFunction(boundable, time, nullptr, extent);
}

bool UsdGeomBoundable::ComputeExtentFromPlugins(const UsdGeomBoundable& boundable, const UsdTimeCode& time,
                                                const GfMatrix4d& transform, VtVec3fArray* extent)
{
    return _ComputeFromFunction(boundable, time, &transform, extent);
}

void UsdGeomRegisterComputeExtentFunction(const TfType& primType, const UsdGeomComputeExtentFunction& fn)
{
    if (primType.IsUnknown() || !fn) {
        TF_CODING_ERROR("A known type and an extent function are needed; '%s' is registered without.",
                        primType.GetTypeName().c_str());
        return;
    }
    if (!_Functions::Get().Add(primType, fn)) {
        TF_CODING_ERROR("'%s' has an extent function already.", primType.GetTypeName().c_str());
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
