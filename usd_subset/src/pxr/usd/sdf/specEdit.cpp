#include "pxr/usd/sdf/specEdit.h"

#include "pxr/usd/sdf/childPaths.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/listOp.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/variantSpec.h>

#include <algorithm>

PXR_NAMESPACE_OPEN_SCOPE

bool Sdf_LayerEdit::CreateSpec(const SdfLayerHandle& layer, const SdfPath& path, SdfSpecType type, bool inert)
{
    return layer && layer->_CreateSpec(path, type, inert);
}

bool Sdf_LayerEdit::DeleteSpec(const SdfLayerHandle& layer, const SdfPath& path)
{
    return layer && layer->_DeleteSpec(path);
}

bool Sdf_LayerEdit::MoveSpec(const SdfLayerHandle& layer, const SdfPath& oldPath, const SdfPath& newPath)
{
    return layer && layer->_MoveSpec(oldPath, newPath);
}

bool Sdf_LayerEdit::IsInert(const SdfLayerHandle& layer, const SdfPath& path, bool ignoreChildren,
                            bool requiredFieldOnlyPropertiesAreInert)
{
    return layer && layer->_IsInert(path, ignoreChildren, requiredFieldOnlyPropertiesAreInert);
}

bool Sdf_CanRename(const SdfSpec& spec, const TfToken& newName, std::string* whyNot)
{
    const SdfLayerHandle layer = spec.GetLayer();
    const SdfPath path = spec.GetPath();
    const auto refuse = [whyNot](const std::string& why) {
        if (whyNot) {
            *whyNot = why;
        }
        return false;
    };
    if (!layer || !(path.IsPrimPath() || path.IsPropertyPath())) {
        return refuse("Object does not exist or cannot be renamed");
    }
    if (!layer->PermissionToEdit()) {
        return refuse("Layer is not editable");
    }
    const bool valid = path.IsPropertyPath() ? SdfPath::IsValidNamespacedIdentifier(newName.GetString())
                                             : SdfPath::IsValidIdentifier(newName.GetString());
    if (!valid) {
        return refuse("\"" + newName.GetString() + "\" is not a valid name");
    }
    if (path.GetNameToken() != newName && layer->HasSpec(path.ReplaceName(newName))) {
        return refuse("An object with that name already exists");
    }
    return true;
}

bool Sdf_Rename(const SdfSpec& spec, const TfToken& newName, bool validate)
{
    std::string whyNot;
    if (validate && !Sdf_CanRename(spec, newName, &whyNot)) {
        TF_CODING_ERROR("Cannot rename <%s> to '%s': %s", spec.GetPath().GetText(), newName.GetText(),
                        whyNot.c_str());
        return false;
    }
    const SdfLayerHandle layer = spec.GetLayer();
    const SdfPath oldPath = spec.GetPath();
    const TfToken oldName = oldPath.GetNameToken();
    if (oldName == newName) {
        return true;
    }
    SdfChangeBlock block;
    const SdfPath parent = Sdf_ListingParentOf(oldPath);
    const TfToken& field = Sdf_ChildrenFieldOf(oldPath);
    if (!Sdf_LayerEdit::MoveSpec(layer, oldPath, oldPath.ReplaceName(newName))) {
        return false;
    }
    std::vector<TfToken> names = layer->GetFieldAs<std::vector<TfToken>>(parent, field);
    std::replace(names.begin(), names.end(), oldName, newName);
    layer->SetField(parent, field, VtValue(names));
    return true;
}

bool Sdf_JustCreatePrim(const SdfLayerHandle& layer, const SdfPath& path)
{
    if (layer->HasSpec(path)) {
        return true;
    }
    if (path.IsPrimVariantSelectionPath()) {
        const std::pair<std::string, std::string> selection = path.GetVariantSelection();
        return static_cast<bool>(
            SdfCreateVariantInLayer(layer, path.GetParentPath(), selection.first, selection.second));
    }
    // From the outermost missing prim inwards, without recursion.
    SdfPathVector missing;
    SdfPath existing = path;
    while (!layer->HasSpec(existing) && existing.IsPrimPath()) {
        missing.push_back(existing);
        existing = existing.GetParentPath();
    }
    if (!layer->HasSpec(existing) && !Sdf_JustCreatePrim(layer, existing)) {
        return false;
    }
    for (auto it = missing.rbegin(); it != missing.rend(); ++it) {
        if (!Sdf_LayerEdit::CreateSpec(layer, *it, SdfSpecTypePrim, true)) {
            return false;
        }
        layer->SetField(*it, SdfFieldKeys->Specifier, VtValue(SdfSpecifierOver));
    }
    return true;
}

void Sdf_ApplyNameOrder(const std::vector<TfToken>& order, std::vector<TfToken>* names)
{
    SdfApplyListOrdering(names, order);
}

PXR_NAMESPACE_CLOSE_SCOPE
