#include "pxr/usd/sdf/childPaths.h"
#include "pxr/usd/sdf/specEdit.h"

#include <pxr/usd/sdf/childrenProxy.h>
#include <pxr/usd/sdf/childrenView.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/mapEditProxy.h>
#include <pxr/usd/sdf/schema.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

const TfToken& fieldOf(Sdf_ChildKind kind)
{
    switch (kind) {
    case Sdf_ChildKind::Prim:
        return SdfChildrenKeys->PrimChildren;
    case Sdf_ChildKind::VariantSet:
        return SdfChildrenKeys->VariantSetChildren;
    case Sdf_ChildKind::Variant:
        return SdfChildrenKeys->VariantChildren;
    default:
        return SdfChildrenKeys->PropertyChildren;
    }
}

} // namespace

bool Sdf_ChildNames::IsValid() const { return _layer && _layer->HasSpec(_parent); }

SdfPath Sdf_ChildNames::ChildPath(const TfToken& name) const
{
    return Sdf_ChildPath(_parent, fieldOf(_kind), name);
}

std::vector<TfToken> Sdf_ChildNames::Names() const
{
    if (!_layer) {
        return {};
    }
    std::vector<TfToken> names = _layer->GetFieldAs<std::vector<TfToken>>(_parent, fieldOf(_kind));
    if (_kind == Sdf_ChildKind::Attribute || _kind == Sdf_ChildKind::Relationship) {
        const SdfSpecType wanted =
            _kind == Sdf_ChildKind::Attribute ? SdfSpecTypeAttribute : SdfSpecTypeRelationship;
        names.erase(std::remove_if(
                        names.begin(), names.end(),
                        [&](const TfToken& name) { return _layer->GetSpecType(ChildPath(name)) != wanted; }),
                    names.end());
    }
    return names;
}

SdfSpecHandle Sdf_ChildNames::Child(const TfToken& name) const
{
    return Has(name) ? _layer->GetObjectAtPath(ChildPath(name)) : SdfSpecHandle();
}

bool Sdf_ChildNames::Has(const TfToken& name) const
{
    if (!_layer || name.IsEmpty()) {
        return false;
    }
    const bool valid = fieldOf(_kind) == SdfChildrenKeys->PropertyChildren
                           ? SdfPath::IsValidNamespacedIdentifier(name.GetString())
                           : _kind != Sdf_ChildKind::Prim || SdfPath::IsValidIdentifier(name.GetString());
    if (!valid) {
        return false;
    }
    const SdfSpecType type = _layer->GetSpecType(ChildPath(name));
    return type != SdfSpecTypeUnknown &&
           (_kind != Sdf_ChildKind::Attribute || type == SdfSpecTypeAttribute) &&
           (_kind != Sdf_ChildKind::Relationship || type == SdfSpecTypeRelationship);
}

bool Sdf_EraseChild(const Sdf_ChildNames& names, const TfToken& name)
{
    return names.Has(name) && Sdf_LayerEdit::DeleteSpec(names.GetLayer(), names.ChildPath(name));
}

VtValue Sdf_GetMapField(const SdfSpecHandle& owner, const TfToken& field)
{
    return owner ? owner->GetField(field) : VtValue();
}

void Sdf_SetMapField(const SdfSpecHandle& owner, const TfToken& field, const VtValue& map)
{
    if (owner) {
        owner->SetField(field, map);
    }
}

PXR_NAMESPACE_CLOSE_SCOPE
