#include "pxr/usd/usd/primTypeInfoCache.h"

#include <pxr/usd/usd/schemaRegistry.h>

PXR_NAMESPACE_OPEN_SCOPE

const UsdPrimTypeInfo& UsdPrimTypeInfo::GetEmptyPrimType()
{
    return Usd_PrimTypeInfoCache::GetInstance().FindOrCreate(TfToken(), {});
}

Usd_PrimTypeInfoCache& Usd_PrimTypeInfoCache::GetInstance()
{
    // Prims of stages that live until the process ends use the infos to the last.
    static Usd_PrimTypeInfoCache* const instance = new Usd_PrimTypeInfoCache;
    return *instance;
}

const UsdPrimTypeInfo& Usd_PrimTypeInfoCache::FindOrCreate(const TfToken& typeName,
                                                           const TfTokenVector& appliedSchemas)
{
    const std::lock_guard<std::mutex> lock(_mutex);
    std::unique_ptr<const UsdPrimTypeInfo>& info = _infos[_Key(typeName, appliedSchemas)];
    if (!info) {
        info = _Make(typeName, appliedSchemas);
    }
    return *info;
}

std::unique_ptr<const UsdPrimTypeInfo> Usd_PrimTypeInfoCache::_Make(const TfToken& typeName,
                                                                    const TfTokenVector& appliedSchemas)
{
    const UsdSchemaRegistry& registry = UsdSchemaRegistry::GetInstance();
    std::unique_ptr<UsdPrimTypeInfo> info(new UsdPrimTypeInfo);
    info->_typeName = typeName;
    info->_appliedAPISchemas = appliedSchemas;
    info->_schemaType = UsdSchemaRegistry::GetConcreteTypeFromSchemaTypeName(typeName);
    if (info->_schemaType) {
        info->_schemaTypeName = typeName;
    }
    if (!appliedSchemas.empty()) {
        info->_ownedPrimDefinition =
            registry.BuildComposedPrimDefinition(info->_schemaTypeName, appliedSchemas);
        info->_primDefinition = info->_ownedPrimDefinition.get();
    } else if (info->_schemaType) {
        info->_primDefinition = registry.FindConcretePrimDefinition(typeName);
    }
    if (!info->_primDefinition) {
        info->_primDefinition = registry.GetEmptyPrimDefinition();
    }
    return info;
}

PXR_NAMESPACE_CLOSE_SCOPE
