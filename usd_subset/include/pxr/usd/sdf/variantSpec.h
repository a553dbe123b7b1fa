#pragma once

/// The spec of one variant of a variant set.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/proxyTypes.h>
#include <pxr/usd/sdf/spec.h>

#include <string>
#include <vector>

PXR_NAMESPACE_OPEN_SCOPE

/// A variant as one layer describes it.
class SDF_API SdfVariantSpec : public SdfSpec
{
    SDF_DECLARE_SPEC(SdfVariantSpec, SdfSpec)

public:
    static SdfVariantSpecHandle New(const SdfVariantSetSpecHandle& owner, const std::string& name);

    std::string GetName() const;
    TfToken GetNameToken() const;
    SdfVariantSetSpecHandle GetOwner() const;
    /// Returns the variant's body, which is edited like a prim.
    SdfPrimSpecHandle GetPrimSpec() const;
    SdfVariantSetsProxy GetVariantSets() const;
    std::vector<std::string> GetVariantNames(const std::string& name) const;
};

/// Returns a variant; makes it, its set and every missing prim where it is not there.
SDF_API SdfVariantSpecHandle SdfCreateVariantInLayer(const SdfLayerHandle& layer, const SdfPath& primPath,
                                                     const std::string& variantSetName,
                                                     const std::string& variantName);

PXR_NAMESPACE_CLOSE_SCOPE
