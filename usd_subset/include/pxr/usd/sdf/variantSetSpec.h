#pragma once

/// The spec of a variant set.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/spec.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// A variant set as one layer describes it.
class SDF_API SdfVariantSetSpec : public SdfSpec
{
    SDF_DECLARE_SPEC(SdfVariantSetSpec, SdfSpec)

public:
    static SdfVariantSetSpecHandle New(const SdfPrimSpecHandle& prim, const std::string& name);
    static SdfVariantSetSpecHandle New(const SdfVariantSpecHandle& prim, const std::string& name);

    std::string GetName() const;
    TfToken GetNameToken() const;
    /// Returns the prim or variant that the set belongs to.
    SdfSpecHandle GetOwner() const;
    SdfVariantView GetVariants() const;
    SdfVariantSpecHandleVector GetVariantList() const;
    void RemoveVariant(const SdfVariantSpecHandle& variant);
};

PXR_NAMESPACE_CLOSE_SCOPE
