#include "pxr/usd/sdf/childPaths.h"

#include <pxr/usd/sdf/schema.h>

PXR_NAMESPACE_OPEN_SCOPE

SdfPath Sdf_ChildPath(const SdfPath& parent, const TfToken& childrenField, const TfToken& name)
{
    const auto& children = *SdfChildrenKeys;
    if (childrenField == children.PrimChildren) {
        return parent.AppendChild(name);
    }
    if (childrenField == children.PropertyChildren) {
        return parent.AppendProperty(name);
    }
    if (childrenField == children.VariantSetChildren) {
        return parent.AppendVariantSelection(name.GetString(), std::string());
    }
    if (childrenField == children.VariantChildren) {
        return parent.GetParentPath().AppendVariantSelection(parent.GetVariantSelection().first,
                                                             name.GetString());
    }
    return SdfPath();
}

void Sdf_AppendChildPaths(const SdfPath& parent, const TfToken& childrenField, const VtValue& children,
                          SdfPathVector* paths)
{
    if (children.IsHolding<std::vector<TfToken>>()) {
        for (const TfToken& name : children.UncheckedGet<std::vector<TfToken>>()) {
            const SdfPath path = Sdf_ChildPath(parent, childrenField, name);
            if (!path.IsEmpty()) {
                paths->push_back(path);
            }
        }
    } else if (children.IsHolding<SdfPathVector>()) {
        for (const SdfPath& target : children.UncheckedGet<SdfPathVector>()) {
            paths->push_back(parent.AppendTarget(target));
        }
    }
}

const TfToken& Sdf_ChildrenFieldOf(const SdfPath& path)
{
    const auto& children = *SdfChildrenKeys;
    if (path.IsPropertyPath()) {
        return children.PropertyChildren;
    }
    if (path.IsPrimVariantSelectionPath()) {
        return path.GetVariantSelection().second.empty() ? children.VariantSetChildren
                                                         : children.VariantChildren;
    }
    return children.PrimChildren;
}

SdfPath Sdf_ListingParentOf(const SdfPath& path)
{
    const SdfPath parent = path.GetParentPath();
    if (path.IsPrimVariantSelectionPath()) {
        const std::pair<std::string, std::string> selection = path.GetVariantSelection();
        return selection.second.empty() ? parent
                                        : parent.AppendVariantSelection(selection.first, std::string());
    }
    return parent;
}

TfToken Sdf_ChildNameOf(const SdfPath& path)
{
    if (path.IsPrimVariantSelectionPath()) {
        const std::pair<std::string, std::string> selection = path.GetVariantSelection();
        return TfToken(selection.second.empty() ? selection.first : selection.second);
    }
    return path.GetNameToken();
}

PXR_NAMESPACE_CLOSE_SCOPE
