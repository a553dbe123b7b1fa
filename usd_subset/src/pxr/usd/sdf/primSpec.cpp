#include "pxr/usd/sdf/specEdit.h"

#include <pxr/base/tf/diagnostic.h>
#include <pxr/usd/sdf/attributeSpec.h>
#include <pxr/usd/sdf/changeBlock.h>
#include <pxr/usd/sdf/layer.h>
#include <pxr/usd/sdf/primSpec.h>
#include <pxr/usd/sdf/relationshipSpec.h>
#include <pxr/usd/sdf/schema.h>
#include <pxr/usd/sdf/variantSetSpec.h>
#include <pxr/usd/sdf/variantSpec.h>

PXR_NAMESPACE_OPEN_SCOPE

namespace {

SdfPrimSpecHandle makePrim(const SdfLayerHandle& layer, const SdfPath& parent, const std::string& name,
                           SdfSpecifier specifier, const std::string& typeName)
{
    if (!layer || !layer->HasSpec(parent)) {
        TF_CODING_ERROR("Cannot create prim '%s' because the parent is invalid", name.c_str());
        return SdfPrimSpecHandle();
    }
    if (!SdfPath::IsValidIdentifier(name)) {
        TF_CODING_ERROR("Cannot create prim '%s' because it is not a valid name", name.c_str());
        return SdfPrimSpecHandle();
    }
    const SdfPath path = parent.AppendChild(TfToken(name));
    SdfChangeBlock block;
    const bool inert = specifier == SdfSpecifierOver && typeName.empty();
    if (!Sdf_LayerEdit::CreateSpec(layer, path, SdfSpecTypePrim, inert)) {
        return SdfPrimSpecHandle();
    }
    layer->SetField(path, SdfFieldKeys->Specifier, VtValue(specifier));
    if (!typeName.empty()) {
        layer->SetField(path, SdfFieldKeys->TypeName, VtValue(TfToken(typeName)));
    }
    return layer->GetPrimAtPath(path);
}

} // namespace

SdfPrimSpecHandle SdfPrimSpec::New(const SdfLayerHandle& parentLayer, const std::string& name,
                                   SdfSpecifier spec, const std::string& typeName)
{
    return makePrim(parentLayer, SdfPath::AbsoluteRootPath(), name, spec, typeName);
}

SdfPrimSpecHandle SdfPrimSpec::New(const SdfPrimSpecHandle& parentPrim, const std::string& name,
                                   SdfSpecifier spec, const std::string& typeName)
{
    return makePrim(parentPrim ? parentPrim->GetLayer() : SdfLayerHandle(),
                    parentPrim ? parentPrim->GetPath() : SdfPath(), name, spec, typeName);
}

const std::string& SdfPrimSpec::GetName() const { return GetPath().GetName(); }

TfToken SdfPrimSpec::GetNameToken() const { return GetPath().GetNameToken(); }

bool SdfPrimSpec::CanSetName(const std::string& newName, std::string* whyNot) const
{
    return Sdf_CanRename(*this, TfToken(newName), whyNot);
}

bool SdfPrimSpec::SetName(const std::string& newName, bool validate)
{
    return Sdf_Rename(*this, TfToken(newName), validate);
}

bool SdfPrimSpec::IsValidName(const std::string& name) { return SdfPath::IsValidIdentifier(name); }

SdfPrimSpecHandle SdfPrimSpec::GetNameRoot() const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetPseudoRoot() : SdfPrimSpecHandle();
}

SdfPrimSpecHandle SdfPrimSpec::GetNameParent() const
{
    const SdfPath parent = GetPath().GetParentPath();
    return parent.IsAbsoluteRootPath() ? SdfPrimSpecHandle() : GetRealNameParent();
}

SdfPrimSpecHandle SdfPrimSpec::GetRealNameParent() const
{
    const SdfLayerHandle layer = GetLayer();
    const SdfPath path = GetPath();
    return layer && !path.IsAbsoluteRootPath() ? layer->GetPrimAtPath(path.GetParentPath())
                                               : SdfPrimSpecHandle();
}

SdfPrimSpec::NameChildrenView SdfPrimSpec::GetNameChildren() const
{
    return NameChildrenView(GetLayer(), GetPath());
}

bool SdfPrimSpec::RemoveNameChild(const SdfPrimSpecHandle& child)
{
    return child && child->GetLayer() == GetLayer() && child->GetPath().GetParentPath() == GetPath() &&
           Sdf_LayerEdit::DeleteSpec(GetLayer(), child->GetPath());
}

SdfNameChildrenOrderProxy SdfPrimSpec::GetNameChildrenOrder() const
{
    return SdfGetNameOrderProxy(SdfSpecHandle(*this), SdfFieldKeys->PrimOrder);
}

bool SdfPrimSpec::HasNameChildrenOrder() const { return HasField(SdfFieldKeys->PrimOrder); }

void SdfPrimSpec::SetNameChildrenOrder(const std::vector<TfToken>& names)
{
    SetField(SdfFieldKeys->PrimOrder, names.empty() ? VtValue() : VtValue(names));
}

void SdfPrimSpec::ApplyNameChildrenOrder(std::vector<TfToken>* names) const
{
    Sdf_ApplyNameOrder(GetFieldAs<std::vector<TfToken>>(SdfFieldKeys->PrimOrder), names);
}

SdfPrimSpec::PropertySpecView SdfPrimSpec::GetProperties() const
{
    return PropertySpecView(GetLayer(), GetPath());
}

void SdfPrimSpec::RemoveProperty(const SdfPropertySpecHandle& property)
{
    if (property && property->GetLayer() == GetLayer() && property->GetPath().GetParentPath() == GetPath()) {
        Sdf_LayerEdit::DeleteSpec(GetLayer(), property->GetPath());
    }
}

SdfPrimSpec::AttributeSpecView SdfPrimSpec::GetAttributes() const
{
    return AttributeSpecView(GetLayer(), GetPath());
}

SdfPrimSpec::RelationshipSpecView SdfPrimSpec::GetRelationships() const
{
    return RelationshipSpecView(GetLayer(), GetPath());
}

SdfPropertyOrderProxy SdfPrimSpec::GetPropertyOrder() const
{
    return SdfGetNameOrderProxy(SdfSpecHandle(*this), SdfFieldKeys->PropertyOrder);
}

bool SdfPrimSpec::HasPropertyOrder() const { return HasField(SdfFieldKeys->PropertyOrder); }

void SdfPrimSpec::SetPropertyOrder(const std::vector<TfToken>& names)
{
    SetField(SdfFieldKeys->PropertyOrder, names.empty() ? VtValue() : VtValue(names));
}

void SdfPrimSpec::ApplyPropertyOrder(std::vector<TfToken>* names) const
{
    Sdf_ApplyNameOrder(GetFieldAs<std::vector<TfToken>>(SdfFieldKeys->PropertyOrder), names);
}

SdfSpecHandle SdfPrimSpec::GetObjectAtPath(const SdfPath& path) const
{
    const SdfLayerHandle layer = GetLayer();
    return layer ? layer->GetObjectAtPath(path.IsAbsolutePath() ? path : GetPath().AppendPath(path))
                 : SdfSpecHandle();
}

SdfPrimSpecHandle SdfPrimSpec::GetPrimAtPath(const SdfPath& path) const
{
    return TfDynamic_cast<SdfPrimSpecHandle>(GetObjectAtPath(path));
}

SdfPropertySpecHandle SdfPrimSpec::GetPropertyAtPath(const SdfPath& path) const
{
    return TfDynamic_cast<SdfPropertySpecHandle>(GetObjectAtPath(path));
}

SdfAttributeSpecHandle SdfPrimSpec::GetAttributeAtPath(const SdfPath& path) const
{
    return TfDynamic_cast<SdfAttributeSpecHandle>(GetObjectAtPath(path));
}

SdfRelationshipSpecHandle SdfPrimSpec::GetRelationshipAtPath(const SdfPath& path) const
{
    return TfDynamic_cast<SdfRelationshipSpecHandle>(GetObjectAtPath(path));
}

SdfPayloadsProxy SdfPrimSpec::GetPayloadList() const
{
    return SdfGetPayloadEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->Payload);
}

SdfInheritsProxy SdfPrimSpec::GetInheritPathList() const
{
    return SdfGetPathEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->InheritPaths);
}

SdfSpecializesProxy SdfPrimSpec::GetSpecializesList() const
{
    return SdfGetPathEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->Specializes);
}

SdfReferencesProxy SdfPrimSpec::GetReferenceList() const
{
    return SdfGetReferenceEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->References);
}

SdfVariantSetNamesProxy SdfPrimSpec::GetVariantSetNameList() const
{
    return Sdf_GetNameEditorProxy(SdfSpecHandle(*this), SdfFieldKeys->VariantSetNames);
}

bool SdfPrimSpec::HasPayloads() const { return GetPayloadList().HasKeys(); }
void SdfPrimSpec::ClearPayloadList() { GetPayloadList().ClearEdits(); }
bool SdfPrimSpec::HasInheritPaths() const { return GetInheritPathList().HasKeys(); }
void SdfPrimSpec::ClearInheritPathList() { GetInheritPathList().ClearEdits(); }
bool SdfPrimSpec::HasSpecializes() const { return GetSpecializesList().HasKeys(); }
void SdfPrimSpec::ClearSpecializesList() { GetSpecializesList().ClearEdits(); }
bool SdfPrimSpec::HasReferences() const { return GetReferenceList().HasKeys(); }
void SdfPrimSpec::ClearReferenceList() { GetReferenceList().ClearEdits(); }
bool SdfPrimSpec::HasVariantSetNames() const { return GetVariantSetNameList().HasKeys(); }

std::vector<std::string> SdfPrimSpec::GetVariantNames(const std::string& name) const
{
    const SdfPath set = GetPath().AppendVariantSelection(name, std::string());
    return SdfVariantView(GetLayer(), set).keys();
}

SdfVariantSetsProxy SdfPrimSpec::GetVariantSets() const
{
    return SdfVariantSetsProxy(SdfVariantSetView(GetLayer(), GetPath()));
}

void SdfPrimSpec::RemoveVariantSet(const std::string& name) { GetVariantSets().erase(name); }

SdfVariantSelectionProxy SdfPrimSpec::GetVariantSelections() const
{
    return SdfVariantSelectionProxy(SdfSpecHandle(*this), SdfFieldKeys->VariantSelection);
}

void SdfPrimSpec::SetVariantSelection(const std::string& variantSetName, const std::string& variantName)
{
    SdfVariantSelectionProxy selections = GetVariantSelections();
    if (variantName.empty()) {
        selections.erase(variantSetName);
    } else {
        selections[variantSetName] = variantName;
    }
}

void SdfPrimSpec::BlockVariantSelection(const std::string& variantSetName)
{
    GetVariantSelections()[variantSetName] = std::string();
}

SdfRelocatesMapProxy SdfPrimSpec::GetRelocates() const
{
    return SdfRelocatesMapProxy(SdfSpecHandle(*this), SdfFieldKeys->Relocates);
}

void SdfPrimSpec::SetRelocates(const SdfRelocatesMap& newMap) { SetField(SdfFieldKeys->Relocates, newMap); }
bool SdfPrimSpec::HasRelocates() const { return HasField(SdfFieldKeys->Relocates); }
void SdfPrimSpec::ClearRelocates() { ClearField(SdfFieldKeys->Relocates); }

bool SdfJustCreatePrimInLayer(const SdfLayerHandle& layer, const SdfPath& primPath)
{
    if (!layer) {
        TF_CODING_ERROR("Cannot create prim <%s> in an invalid layer", primPath.GetText());
        return false;
    }
    const SdfPath path =
        primPath.IsEmpty() ? primPath : primPath.MakeAbsolutePath(SdfPath::AbsoluteRootPath());
    if (path.IsAbsoluteRootPath()) {
        return true;
    }
    if (!path.IsPrimOrPrimVariantSelectionPath()) {
        TF_CODING_ERROR(
            "Cannot create prim at path '%s' because it is not a valid prim or prim variant selection "
            "path",
            primPath.GetText());
        return false;
    }
    SdfChangeBlock block;
    return Sdf_JustCreatePrim(layer, path);
}

SdfPrimSpecHandle SdfCreatePrimInLayer(const SdfLayerHandle& layer, const SdfPath& primPath)
{
    if (!SdfJustCreatePrimInLayer(layer, primPath)) {
        return SdfPrimSpecHandle();
    }
    return layer->GetPrimAtPath(primPath);
}

PXR_NAMESPACE_CLOSE_SCOPE
