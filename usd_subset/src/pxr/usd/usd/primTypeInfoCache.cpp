#include "pxr/usd/usd/primTypeInfoCache.h"

#include <pxr/usd/usd/schemaRegistry.h>

PXR_NAMESPACE_OPEN_SCOPE

const UsdPrimTypeInfo& UsdPrimTypeInfo::GetEmptyPrimType()
{
    return Usd_PrimTypeInfoCache::GetInstance().FindOrCreate(TfToken(), TfToken(), {});
}

Usd_PrimTypeInfoCache& Usd_PrimTypeInfoCache::GetInstance()
{
    // Prims of stages that live until the process ends use the infos to the last.
    static Usd_PrimTypeInfoCache* const instance = new Usd_PrimTypeInfoCache;
    return *instance;
}

const UsdPrimTypeInfo& Usd_PrimTypeInfoCache::FindOrCreate(const TfToken& typeName,
                                                           const TfToken& fallbackType,
                                                           const TfTokenVector& appliedSchemas)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    const auto place = _infos.try_emplace(_Key(typeName, fallbackType, appliedSchemas)).first;
    if (!place->second) {
        place->second = _Make(place->first);
    }
    return *place->second;
}

std::unique_ptr<const UsdPrimTypeInfo> Usd_PrimTypeInfoCache::_Make(const _Key& key)
{
    const auto& [typeName, fallbackType, appliedSchemas] = key;
    const TfToken& schemaName = fallbackType.IsEmpty() ? typeName : fallbackType;
    const UsdSchemaRegistry& registry = UsdSchemaRegistry::GetInstance();
    std::unique_ptr<UsdPrimTypeInfo> info(new UsdPrimTypeInfo);
    info->_typeName = typeName;
    info->_appliedAPISchemas = appliedSchemas;
    info->_schemaType = UsdSchemaRegistry::GetConcreteTypeFromSchemaTypeName(schemaName);
    if (info->_schemaType) {
        info->_schemaTypeName = schemaName;
    }
    if (!appliedSchemas.empty()) {
        info->_ownedPrimDefinition =
            registry.BuildComposedPrimDefinition(info->_schemaTypeName, appliedSchemas);
        info->_primDefinition = info->_ownedPrimDefinition.get();
    } else if (info->_schemaType) {
        info->_primDefinition = registry.FindConcretePrimDefinition(schemaName);
    }
    if (!info->_primDefinition) {
        info->_primDefinition = registry.GetEmptyPrimDefinition();
    }
    return info;
}

PXR_NAMESPACE_CLOSE_SCOPE
