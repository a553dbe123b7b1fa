#pragma once

/// Layers in zip packages.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The format of `.usdz` files. It knows such a file by its first bytes and refuses it with one error.
class Sdf_PackageFileFormat : public SdfFileFormat
{
public:
    Sdf_PackageFileFormat();

    bool IsPackage() const override;
    bool CanRead(const std::string& file) const override;
    bool Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const override;
    bool SupportsReading() const override;
    bool SupportsWriting() const override;
    bool SupportsEditing() const override;
};

PXR_NAMESPACE_CLOSE_SCOPE
