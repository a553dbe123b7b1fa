#pragma once

/// Layers in zip packages.

#include <pxr/pxr.h>
#include <pxr/usd/sdf/fileFormat.h>

PXR_NAMESPACE_OPEN_SCOPE

/// The format of `.usdz` files: the layer is the package's first file. Such a layer cannot be saved; packages
/// are written with UsdZipFileWriter.
class Sdf_PackageFileFormat : public SdfFileFormat
{
public:
    Sdf_PackageFileFormat();

    bool IsPackage() const override;
    std::string GetPackageRootLayerPath(const std::string& resolvedPath) const override;
    bool CanRead(const std::string& file) const override;
    bool Read(SdfLayer* layer, const std::string& resolvedPath, bool metadataOnly) const override;
    bool SupportsWriting() const override;
    bool SupportsEditing() const override;
};

PXR_NAMESPACE_CLOSE_SCOPE
