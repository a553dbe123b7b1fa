#pragma once

/// The spec of a relationship.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/propertySpec.h>

#include <string>

PXR_NAMESPACE_OPEN_SCOPE

/// A relationship as one layer describes it.
class SDF_API SdfRelationshipSpec : public SdfPropertySpec
{
    SDF_DECLARE_SPEC(SdfRelationshipSpec, SdfPropertySpec)

public:
    typedef SdfRelationshipSpec This;
    typedef SdfPropertySpec Parent;

    /// Creates a relationship; null, with an error, where the owner or the name is bad or the name is taken.
    static SdfRelationshipSpecHandle New(const SdfPrimSpecHandle& owner, const std::string& name,
                                         bool custom = true,
                                         SdfVariability variability = SdfVariabilityUniform);

    SdfTargetsProxy GetTargetPathList() const;
    bool HasTargetPathList() const;
    void ClearTargetPathList() const;
    void ReplaceTargetPath(const SdfPath& oldPath, const SdfPath& newPath);
    void RemoveTargetPath(const SdfPath& path, bool preserveTargetOrder = false);
    bool GetNoLoadHint() const;
    void SetNoLoadHint(bool noload);
};

PXR_NAMESPACE_CLOSE_SCOPE
