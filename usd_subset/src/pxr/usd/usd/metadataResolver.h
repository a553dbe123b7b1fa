#pragma once

#include "pxr/usd/usd/listOpUtils.h"

#include <pxr/base/vt/value.h>
#include <pxr/pxr.h>
#include <pxr/usd/usd/object.h>

PXR_NAMESPACE_OPEN_SCOPE

/// Resolves metadata of an object: the strongest opinion, dictionaries merged key by key, list edits applied
/// over each other, the schema's fallback last.
///
/// Thread: any, while nobody edits the stage.
class Usd_MetadataResolver
{
public:
    explicit Usd_MetadataResolver(const UsdObject& object);

    /// @param keyPath a key into a dictionary, with ":" between levels; empty for the whole field
    bool Get(const TfToken& field, const TfToken& keyPath, bool useFallbacks, VtValue* value) const;
    bool Has(const TfToken& field, const TfToken& keyPath, bool useFallbacks) const;
    UsdMetadataValueMap GetAll(bool useFallbacks) const;

private:
    /// What all sites, strongest first, say of a field.
    VtValueVector _GetOpinions(const TfToken& field, const TfToken& keyPath, bool firstOnly) const;
    bool _GetSpecial(const TfToken& field, VtValue* value, bool* isSpecial) const;
    bool _GetSpecialOfPrim(const TfToken& field, VtValue* value, bool* isSpecial) const;
    bool _GetWeakest(const TfToken& field, VtValue* value) const;
    bool _GetFallback(const TfToken& field, const TfToken& keyPath, VtValue* value) const;
    TfTokenVector _ListFields(bool useFallbacks) const;
    bool _IsPseudoRoot() const { return _name.IsEmpty() && _prim->IsPseudoRoot(); }

    const UsdObject& _object;
    Usd_PrimDataConstPtr _prim;
    TfToken _name; // empty for prims
};

PXR_NAMESPACE_CLOSE_SCOPE
