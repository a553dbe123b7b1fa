#pragma once

/// The spec of a prim.

#include <pxr/base/vt/dictionary.h>
#include <pxr/pxr.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/spec.h>
#include <pxr/usd/sdf/types.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A prim as one layer describes it. The pseudo-root and the body of a variant are seen through this class
/// too.
class SDF_API SdfPrimSpec : public SdfSpec
{
    SDF_DECLARE_SPEC(SdfPrimSpec, SdfSpec)

public:
    typedef SdfPrimSpecView NameChildrenView;
    typedef SdfPropertySpecView PropertySpecView;
    typedef SdfAttributeSpecView AttributeSpecView;
    typedef SdfRelationshipSpecView RelationshipSpecView;

    /// Create a prim below the pseudo-root or below a prim; null, with an error, where the name is bad or
    /// taken.
    static SdfPrimSpecHandle New(const SdfLayerHandle& parentLayer, const std::string& name,
                                 SdfSpecifier spec, const std::string& typeName = std::string());
    static SdfPrimSpecHandle New(const SdfPrimSpecHandle& parentPrim, const std::string& name,
                                 SdfSpecifier spec, const std::string& typeName = std::string());

    const std::string& GetName() const;
    TfToken GetNameToken() const;
    bool CanSetName(const std::string& newName, std::string* whyNot) const;
    /// Renames the prim; handles to it and to what lies below follow.
    bool SetName(const std::string& newName, bool validate = true);
    static bool IsValidName(const std::string& name);

    SdfPrimSpecHandle GetNameRoot() const;
    /// Returns the parent prim; null for a root prim.
    SdfPrimSpecHandle GetNameParent() const;
    /// Returns the parent prim; the pseudo-root for a root prim.
    SdfPrimSpecHandle GetRealNameParent() const;
    NameChildrenView GetNameChildren() const;
    bool RemoveNameChild(const SdfPrimSpecHandle& child);
    SdfNameChildrenOrderProxy GetNameChildrenOrder() const;
    bool HasNameChildrenOrder() const;
    void SetNameChildrenOrder(const std::vector<TfToken>& names);
    void ApplyNameChildrenOrder(std::vector<TfToken>* names) const;

    PropertySpecView GetProperties() const;
    void RemoveProperty(const SdfPropertySpecHandle& property);
    AttributeSpecView GetAttributes() const;
    RelationshipSpecView GetRelationships() const;
    SdfPropertyOrderProxy GetPropertyOrder() const;
    bool HasPropertyOrder() const;
    void SetPropertyOrder(const std::vector<TfToken>& names);
    void ApplyPropertyOrder(std::vector<TfToken>* names) const;

    /// Look up a spec by a path relative to this prim, or by an absolute one.
    SdfSpecHandle GetObjectAtPath(const SdfPath& path) const;
    SdfPrimSpecHandle GetPrimAtPath(const SdfPath& path) const;
    SdfPropertySpecHandle GetPropertyAtPath(const SdfPath& path) const;
    SdfAttributeSpecHandle GetAttributeAtPath(const SdfPath& path) const;
    SdfRelationshipSpecHandle GetRelationshipAtPath(const SdfPath& path) const;

    TfToken GetTypeName() const;
    void SetTypeName(const std::string& value);
    std::string GetComment() const;
    void SetComment(const std::string& value);
    std::string GetDocumentation() const;
    void SetDocumentation(const std::string& value);
    bool GetActive() const;
    void SetActive(bool value);
    bool HasActive() const;
    void ClearActive();
    bool GetHidden() const;
    void SetHidden(bool value);
    TfToken GetKind() const;
    void SetKind(const TfToken& value);
    bool HasKind() const;
    void ClearKind();
    TfToken GetSymmetryFunction() const;
    void SetSymmetryFunction(const TfToken& functionName);
    SdfDictionaryProxy GetSymmetryArguments() const;
    void SetSymmetryArgument(const std::string& name, const VtValue& value);
    std::string GetSymmetricPeer() const;
    void SetSymmetricPeer(const std::string& peerName);
    std::string GetPrefix() const;
    void SetPrefix(const std::string& value);
    std::string GetSuffix() const;
    void SetSuffix(const std::string& value);
    SdfDictionaryProxy GetCustomData() const;
    SdfDictionaryProxy GetAssetInfo() const;
    void SetCustomData(const std::string& name, const VtValue& value);
    void SetAssetInfo(const std::string& name, const VtValue& value);
    SdfSpecifier GetSpecifier() const;
    void SetSpecifier(SdfSpecifier value);
    SdfPermission GetPermission() const;
    void SetPermission(SdfPermission value);
    VtDictionary GetPrefixSubstitutions() const;
    void SetPrefixSubstitutions(const VtDictionary& prefixSubstitutions);
    VtDictionary GetSuffixSubstitutions() const;
    void SetSuffixSubstitutions(const VtDictionary& suffixSubstitutions);
    void SetInstanceable(bool instanceable);
    bool GetInstanceable() const;
    bool HasInstanceable() const;
    void ClearInstanceable();

    SdfPayloadsProxy GetPayloadList() const;
    bool HasPayloads() const;
    void ClearPayloadList();
    SdfInheritsProxy GetInheritPathList() const;
    bool HasInheritPaths() const;
    void ClearInheritPathList();
    SdfSpecializesProxy GetSpecializesList() const;
    bool HasSpecializes() const;
    void ClearSpecializesList();
    SdfReferencesProxy GetReferenceList() const;
    bool HasReferences() const;
    void ClearReferenceList();
    SdfVariantSetNamesProxy GetVariantSetNameList() const;
    bool HasVariantSetNames() const;
    std::vector<std::string> GetVariantNames(const std::string& name) const;
    SdfVariantSetsProxy GetVariantSets() const;
    void RemoveVariantSet(const std::string& name);
    SdfVariantSelectionProxy GetVariantSelections() const;
    /// Selects a variant; an empty name removes the selection.
    void SetVariantSelection(const std::string& variantSetName, const std::string& variantName);
    /// Selects no variant, whatever weaker layers select.
    void BlockVariantSelection(const std::string& variantSetName);
    SdfRelocatesMapProxy GetRelocates() const;
    void SetRelocates(const SdfRelocatesMap& newMap);
    bool HasRelocates() const;
    void ClearRelocates();
};

/// Returns the prim of a path; makes it, and every missing ancestor, as an `over` where it is not there.
SDF_API SdfPrimSpecHandle SdfCreatePrimInLayer(const SdfLayerHandle& layer, const SdfPath& primPath);
/// Does the same without making a handle, and says whether the prim is there.
SDF_API bool SdfJustCreatePrimInLayer(const SdfLayerHandle& layer, const SdfPath& primPath);

PXR_NAMESPACE_CLOSE_SCOPE
