#include "pxr/usd/sdf/changeManager.h"
#include "pxr/usd/sdf/childPaths.h"

#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

bool isPrimLike(SdfSpecType type)
{
    return type == SdfSpecTypePrim || type == SdfSpecTypeVariant || type == SdfSpecTypeVariantSet;
}

bool isProperty(SdfSpecType type) { return type == SdfSpecTypeAttribute || type == SdfSpecTypeRelationship; }

} // namespace

bool SdfLayer::_IsInert(const SdfPath& path, bool ignoreChildren,
                        bool requiredFieldOnlyPropertiesAreInert) const
{
    const std::vector<TfToken> fields = ListFields(path);
    if (fields.empty()) {
        return true;
    }
    const SdfSpecType type = GetSpecType(path);
    if (GetFieldAs<bool>(path, SdfFieldKeys->Custom, false)) {
        return false;
    }
    if (type == SdfSpecTypePrim &&
        (SdfIsDefiningSpecifier(GetFieldAs<SdfSpecifier>(path, SdfFieldKeys->Specifier, SdfSpecifierOver)) ||
         !GetFieldAs<TfToken>(path, SdfFieldKeys->TypeName).IsEmpty())) {
        return false;
    }
    if (!isPrimLike(type) && !(isProperty(type) && requiredFieldOnlyPropertiesAreInert)) {
        return false;
    }
    const SdfSchemaBase::SpecDefinition* definition = GetSchema().GetSpecDefinition(type);
    for (const TfToken& field : fields) {
        const bool passed = definition->IsRequiredField(field) ||
                            (ignoreChildren && (type == SdfSpecTypePrim || type == SdfSpecTypeVariantSet) &&
                             GetSchema().HoldsChildren(field));
        if (!passed) {
            return false;
        }
    }
    return true;
}

bool SdfLayer::_IsInertSubtree(const SdfPath& path) const
{
    bool inert = true;
    Traverse(path, [&](const SdfPath& below) {
        inert = inert && _IsInert(below, /* ignoreChildren = */ !below.IsPropertyPath(), true);
    });
    return inert;
}

void SdfLayer::ScheduleRemoveIfInert(const SdfSpec& spec) { Sdf_ChangeManager::RemoveSpecIfInert(spec); }

void SdfLayer::_RemoveIfInert(const SdfSpec& spec)
{
    if (spec.IsDormant()) {
        return;
    }
    const SdfSpecHandle handle(spec);
    if (const auto prim = TfDynamic_cast<SdfPrimSpecHandle>(handle)) {
        if (prim->IsInert()) {
            RemovePrimIfInert(prim);
        }
    } else if (const auto property = TfDynamic_cast<SdfPropertySpecHandle>(handle)) {
        RemovePropertyIfHasOnlyRequiredFields(property);
    }
}

void SdfLayer::RemovePrimIfInert(SdfPrimSpecHandle prim)
{
    if (!prim) {
        return;
    }
    const SdfPath path = prim->GetPath();
    if (_RemoveInertDFS(path)) {
        _RemoveInertToRootmost(path);
    }
}

void SdfLayer::RemovePropertyIfHasOnlyRequiredFields(SdfPropertySpecHandle prop)
{
    if (!prop || !prop->HasOnlyRequiredFields()) {
        return;
    }
    const SdfPath path = prop->GetPath();
    SdfChangeBlock block;
    _DeleteSpec(path);
    if (path.IsPrimPropertyPath()) {
        _RemoveInertToRootmost(path.GetPrimOrPrimVariantSelectionPath());
    }
}

void SdfLayer::RemoveInertSceneDescription()
{
    SdfChangeBlock block;
    _RemoveInertDFS(SdfPath::AbsoluteRootPath());
}

// Removes what has no effect below the path, deepest first; says whether the spec itself has none then.
bool SdfLayer::_RemoveInertDFS(const SdfPath& path)
{
    SdfPathVector below;
    Traverse(path, [&below, &path](const SdfPath& spec) {
        if (spec.IsPrimPath() && spec != path) {
            below.push_back(spec);
        }
    });
    for (const SdfPath& prim : below) {
        if (_IsInert(prim, false)) {
            _DeleteSpec(prim);
        }
    }
    return _IsInert(path, false);
}

void SdfLayer::_RemoveInertToRootmost(SdfPath path)
{
    while (path.IsPrimPath() && HasSpec(path) && _IsInert(path, false)) {
        const SdfPath parent = path.GetParentPath();
        _DeleteSpec(path);
        path = parent;
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
